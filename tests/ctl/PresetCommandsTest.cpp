// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/ctl/FakeHost.h"

#include <gmock/gmock.h>

namespace {

const QString ListCall = QStringLiteral("presets.list");
const QString PlayCall = QStringLiteral("presets.play");
const QString SaveCall = QStringLiteral("presets.save");
const QString ClearCall = QStringLiteral("presets.clear");
const QString StateCall = QStringLiteral("player.state");

class PresetCommandsTest : public testing::Test {
protected:
    PresetCommandsTest()
    {
        m_host.setResult(ListCall, R"("result":{"presets":[
            {"number":1,"title":"Jazz FM","icon":"","path":"a:1"},
            {"number":12,"title":"Night\u001b","icon":"","path":"a:2"}]})");
        m_host.setResult(PlayCall, R"("result":{"playId":{"id":"7"}})");
        m_host.setResult(SaveCall, R"("result":{})");
        m_host.setResult(ClearCall, R"("result":{})");
        m_host.setResult(StateCall,
            R"("result":{"state":2,"title":"Jazz FM","path":"a:1","playId":{"id":"7"}})");
        m_host.setScreen(
            QStringLiteral("Good:music"), {row(1, "Folder", "Good:folder"), row(3, "Two", "a:2")});
    }

    FakeHost m_host;
};

TEST_F(PresetCommandsTest, ListsThem)
{
    for (const char *command : {"presets", "preset"}) {
        const Outcome outcome = run(m_host.url(), words(command));
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        EXPECT_EQ(outcome.out, "1\tJazz FM\ta:1\n12\tNight\ufffd\ta:2\n");
    }
    EXPECT_EQ(run(m_host.url(), words("presets"), {{}, 80}).out,
        "   1 ▶ Jazz FM\n"
        "  12 ♪ Night\ufffd\n");
    EXPECT_THAT(run(m_host.url(), words("presets --json")).out,
        testing::StartsWith(R"({"presets":[{"icon":"","number":1,)"));
}

TEST_F(PresetCommandsTest, NoPresetIsNoFailure)
{
    m_host.setResult(ListCall, R"("result":{"presets":[]})");
    const Outcome outcome = run(m_host.url(), words("presets"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.errors, testing::HasSubstr("no preset is taken"));
}

TEST_F(PresetCommandsTest, PlaysOne)
{
    const Outcome outcome = run(m_host.url(), words("preset 12"));
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.out, "playing  Jazz FM\n");
    EXPECT_EQ(m_host.paramsOf(PlayCall), (QVariantHash {{QStringLiteral("number"), 12}}));
    EXPECT_EQ(run(m_host.url(), words("preset 1 --wait")).out, "playing  Jazz FM\n");
}

TEST_F(PresetCommandsTest, FailsForAPresetThatCannotPlay)
{
    m_host.setResult(PlayCall, R"("error":{"code":-32000,"message":"Preset 3 is free."})");
    const Outcome outcome = run(m_host.url(), words("preset 3"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "veskctl: Preset 3 is free.\n");
}

TEST_F(PresetCommandsTest, RefusesWhatIsNoNumber)
{
    for (const char *line :
        {"preset 0", "preset 13", "preset save 0", "preset save x", "preset clear 13",
            "preset clear 1x", "preset clear 1 2", "preset save +3", "preset 3x"}) {
        const Outcome outcome = run(m_host.url(), words(line));
        EXPECT_EQ(outcome.status, 2) << line;
        EXPECT_THAT(outcome.errors, testing::HasSubstr("is no preset: they are numbered 1 to 12"));
    }
    EXPECT_EQ(m_host.asked(), QStringList());
    EXPECT_EQ(run(m_host.url(), words("preset svae 3")).errors,
        "\"svae\" is no command; did you mean \"save\"?");
}

TEST_F(PresetCommandsTest, KeepsWhatPlays)
{
    const Outcome outcome = run(m_host.url(), words("preset save 3"));
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.out, "preset 3: Jazz FM\n");
    EXPECT_EQ(m_host.paramsOf(SaveCall), (QVariantHash {{QStringLiteral("number"), 3}}));
    EXPECT_EQ(run(m_host.url(), words("preset save 3 --json")).out,
        "{\"number\":3,\"title\":\"Jazz FM\"}\n");
}

TEST_F(PresetCommandsTest, KeepsNothingWhereNothingPlays)
{
    m_host.setResult(StateCall, R"("result":{"state":0,"title":"","path":""})");
    const Outcome outcome = run(m_host.url(), words("preset save 3"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "veskctl: nothing plays\n");
    EXPECT_EQ(m_host.timesAsked(SaveCall), 0);
}

TEST_F(PresetCommandsTest, KeepsARow)
{
    const Outcome outcome = run(m_host.url(), words("preset save 4 Good:music 1"));
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.out, "preset 4: Two\n");
    EXPECT_EQ(m_host.paramsOf(SaveCall),
        (QVariantHash {{QStringLiteral("number"), 4},
            {QStringLiteral("screen"), QStringLiteral("Good:music")}, {QStringLiteral("row"), 1},
            {QStringLiteral("path"), QStringLiteral("a:2")}}));
    EXPECT_EQ(run(m_host.url(), words("preset save 4 Good:music")).errors,
        "veskctl: \"Good:music\" is a list, or a row that was not shown lately\n");
    EXPECT_EQ(run(m_host.url(), words("preset save 4 Good:music 7")).status, 1);
    EXPECT_EQ(m_host.timesAsked(SaveCall), 1);
}

TEST_F(PresetCommandsTest, FreesANumber)
{
    EXPECT_EQ(run(m_host.url(), words("preset clear 3")).out, "preset 3: free\n");
    EXPECT_EQ(m_host.paramsOf(ClearCall), (QVariantHash {{QStringLiteral("number"), 3}}));
}

} // namespace
