// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/ctl/FakeHost.h"

#include <gmock/gmock.h>

namespace {

const QString VolumeCall = QStringLiteral("player.volume");
const QString MuteCall = QStringLiteral("player.mute");
const QString SeekCall = QStringLiteral("player.seek");

constexpr char Forty[] = R"("result":{"volume":40,"mute":false})";
constexpr char Muted[] = R"("result":{"volume":40,"mute":true})";

TEST(VolumeCommandsTest, TellsTheVolume)
{
    FakeHost host({{VolumeCall, Forty}});
    const Outcome outcome = run(host.url(), words("volume"));
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.out, "40\n");
    EXPECT_EQ(host.lastParams(), QVariantHash());
    host.setResult(VolumeCall, Muted);
    EXPECT_EQ(run(host.url(), words("volume")).out, "40, muted\n");
    EXPECT_EQ(run(host.url(), words("volume --json")).out, "{\"mute\":true,\"volume\":40}\n");
}

TEST(VolumeCommandsTest, ChangesIt)
{
    FakeHost host({{VolumeCall, Forty}});
    const struct {
        const char *level;
        QVariantHash params;
    } cases[] {{"40", {{QStringLiteral("volume"), 40}}}, {"0", {{QStringLiteral("volume"), 0}}},
        {"100%", {{QStringLiteral("volume"), 100}}}, {"+5", {{QStringLiteral("change"), 5}}},
        {"-5", {{QStringLiteral("change"), -5}}}, {"-10%", {{QStringLiteral("change"), -10}}},
        {"mute", {{QStringLiteral("mute"), true}}}, {"unmute", {{QStringLiteral("mute"), false}}}};
    for (const auto &[level, params] : cases) {
        const Outcome outcome
            = run(host.url(), QStringList {QStringLiteral("volume"), QLatin1String(level)});
        EXPECT_EQ(outcome.status, 0) << level << outcome.errors;
        EXPECT_EQ(outcome.out, "40\n");
        EXPECT_EQ(host.lastParams(), params) << level;
    }
}

TEST(VolumeCommandsTest, RefusesWhatIsNoVolume)
{
    FakeHost host({{VolumeCall, Forty}});
    for (const char *level : {"101", "-101", "loud", "++5", "+-5", "5+", "4.5", "40 %", "1000", "%",
             "+", "0x10", "MUTE"}) {
        const Outcome outcome
            = run(host.url(), QStringList {QStringLiteral("volume"), QLatin1String(level)});
        EXPECT_EQ(outcome.status, 2) << level;
        EXPECT_EQ(outcome.errors,
            "veskctl: \"" + std::string(level)
                + "\" is no volume: that is 0 to 100, +5, -5, mute or unmute\n");
    }
    EXPECT_EQ(host.timesAsked(VolumeCall), 0);
}

TEST(VolumeCommandsTest, MutesAndUnmutes)
{
    FakeHost host({{MuteCall, Muted}});
    EXPECT_EQ(run(host.url(), words("mute")).out, "40, muted\n");
    EXPECT_EQ(host.lastParams(), (QVariantHash {{QStringLiteral("mute"), true}}));
    host.setResult(MuteCall, Forty);
    EXPECT_EQ(run(host.url(), words("unmute")).out, "40\n");
    EXPECT_EQ(host.lastParams(), (QVariantHash {{QStringLiteral("mute"), false}}));
}

TEST(VolumeCommandsTest, AHostThatIsTooOldIsTold)
{
    FakeHost host(
        {{VolumeCall, R"("error":{"code":-32601,"message":"There is no method of this name."})"}});
    const Outcome outcome = run(host.url(), words("volume 40"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(
        outcome.errors, "veskctl: this host does not know that: it is older than this veskctl\n");
    EXPECT_THAT(run(host.url(), words("volume --json")).out, testing::HasSubstr("-32601"));
}

TEST(SeekCommandTest, GoesWhereItIsTold)
{
    FakeHost host({{SeekCall, R"("result":{"position":4830.25,"behind":0})"}});
    const struct {
        const char *position;
        QVariantHash params;
    } cases[] {{"+30", {{QStringLiteral("offset"), 30}}},
        {"-30", {{QStringLiteral("offset"), -30}}}, {"-1:30", {{QStringLiteral("offset"), -90}}},
        {"+1m", {{QStringLiteral("offset"), 60}}},
        {"1:20:00", {{QStringLiteral("position"), 4800}}},
        {"90s", {{QStringLiteral("position"), 90}}}, {"0", {{QStringLiteral("position"), 0}}},
        {"live", {{QStringLiteral("live"), true}}}};
    for (const auto &[position, params] : cases) {
        const Outcome outcome
            = run(host.url(), QStringList {QStringLiteral("seek"), QLatin1String(position)});
        EXPECT_EQ(outcome.status, 0) << position << outcome.errors;
        EXPECT_EQ(outcome.out, "1:20:30\n");
        EXPECT_EQ(host.lastParams(), params) << position;
    }
    EXPECT_EQ(
        run(host.url(), words("seek -30 --json")).out, "{\"behind\":0,\"position\":4830.25}\n");
}

TEST(SeekCommandTest, TellsWhereAStationIs)
{
    FakeHost host({{SeekCall, R"("result":{"position":null,"behind":150.4})"}});
    EXPECT_EQ(run(host.url(), words("seek -30")).out, "2:30 behind live\n");
    host.setResult(SeekCall, R"("result":{"position":null,"behind":0})");
    EXPECT_EQ(run(host.url(), words("seek live")).out, "live\n");
}

TEST(SeekCommandTest, RefusesWhatIsNoPlace)
{
    FakeHost host({{SeekCall, R"("result":{"position":0,"behind":0})"}});
    for (const char *position :
        {"now", "+", "-", "+-3", "1:2", "1:60", "1.5", "LIVE", "50%", "1 0"}) {
        const Outcome outcome
            = run(host.url(), QStringList {QStringLiteral("seek"), QLatin1String(position)});
        EXPECT_EQ(outcome.status, 2) << position;
        EXPECT_THAT(outcome.errors, testing::HasSubstr("is no place to go to: that is +30"))
            << position;
    }
    EXPECT_EQ(host.timesAsked(SeekCall), 0);
}

TEST(SeekCommandTest, TellsWhyItCannot)
{
    FakeHost host({{SeekCall, R"("error":{"code":-32000,"message":"This is live."})"}});
    const Outcome outcome = run(host.url(), words("seek -30"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "veskctl: This is live.\n");
}

} // namespace
