// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/ctl/FakeHost.h"

#include <gmock/gmock.h>

namespace {

const QString ListCall = QStringLiteral("outputs.list");
const QString ChooseCall = QStringLiteral("outputs.choose");

constexpr char Outputs[] = R"("result":{"outputs":[
    {"output":"auto","name":"Automatic","current":false,"available":true},
    {"output":"pulse:usb","name":"USB headset","current":true,"available":true},
    {"output":"alsa:hw:1","name":"USB speakers","current":false,"available":false},
    {"output":"jack","name":"","current":false,"available":true}]})";

class OutputCommandsTest : public testing::Test {
protected:
    Outcome outputs(const QStringList &arguments = {}, int width = 0)
    {
        Surroundings around;
        around.width = width;
        return run(m_host.url(), QStringList {QStringLiteral("outputs")} + arguments, around);
    }

    Outcome choose(const char *output)
    {
        return outputs({QStringLiteral("--choose"), QString::fromUtf8(output)});
    }

    FakeHost m_host {{{ListCall, Outputs}, {ChooseCall, R"("result":{})"}}};
};

TEST_F(OutputCommandsTest, ListsThem)
{
    const Outcome fields = outputs();
    EXPECT_EQ(fields.status, 0) << fields.errors;
    EXPECT_EQ(fields.out,
        "0\tauto\tAutomatic\t\t\n"
        "1\tpulse:usb\tUSB headset\tcurrent\t\n"
        "2\talsa:hw:1\tUSB speakers\t\tunavailable\n"
        "3\tjack\t\t\t\n");
    EXPECT_EQ(outputs({}, 80).out,
        "   0   Automatic                 auto\n"
        "   1 ▶ USB headset               pulse:usb\n"
        "   2   USB speakers (not there)  alsa:hw:1\n"
        "   3   jack\n");
    EXPECT_THAT(outputs({QStringLiteral("--json")}).out,
        testing::StartsWith(R"({"outputs":[{"available":true,)"));
}

TEST_F(OutputCommandsTest, NoOutputIsNoFailure)
{
    m_host.setResult(ListCall, R"("result":{"outputs":[]})");
    const Outcome outcome = outputs();
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.errors, "veskctl: there is no output\n");
}

TEST_F(OutputCommandsTest, ChoosesOne)
{
    const struct {
        const char *wanted;
        const char *output;
        const char *told;
    } cases[] {{"1", "pulse:usb", "USB headset"}, {"pulse:usb", "pulse:usb", "USB headset"},
        {"HEADSET", "pulse:usb", "USB headset"}, {"usb speakers", "alsa:hw:1", "USB speakers"},
        {"3", "jack", "jack"}, {"jack", "jack", "jack"},
        {"wav:/tmp/radio.wav", "wav:/tmp/radio.wav", "wav:/tmp/radio.wav"}};
    for (const auto &[wanted, output, told] : cases) {
        const Outcome outcome = choose(wanted);
        EXPECT_EQ(outcome.status, 0) << wanted << outcome.errors;
        EXPECT_EQ(outcome.out, "the sound goes to: " + std::string(told) + "\n");
        EXPECT_EQ(
            m_host.paramsOf(ChooseCall).value(QStringLiteral("output")).toString().toStdString(),
            output);
    }
}

TEST_F(OutputCommandsTest, RefusesWhatIsNone)
{
    const Outcome several = choose("usb");
    EXPECT_EQ(several.status, 2);
    EXPECT_EQ(
        several.errors, "veskctl: several outputs are called \"usb\": USB headset, USB speakers\n");
    const Outcome none = choose("kitchen");
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.errors, "veskctl: there is no output \"kitchen\"\n");
    EXPECT_EQ(choose("4").status, 1);
    EXPECT_EQ(m_host.timesAsked(ChooseCall), 0);
}

TEST_F(OutputCommandsTest, TellsWhyItCannotBeUsed)
{
    m_host.setResult(ChooseCall, R"("error":{"code":-32000,"message":"It is not there."})");
    const Outcome outcome = choose("2");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.errors, "veskctl: It is not there.\n");
}

} // namespace
