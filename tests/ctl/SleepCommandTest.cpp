// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/ctl/FakeHost.h"

#include <gmock/gmock.h>

namespace {

const QString StartCall = QStringLiteral("sleep.start");
const QString StopCall = QStringLiteral("sleep.stop");
const QString StateCall = QStringLiteral("sleep.state");

class SleepCommandTest : public testing::Test {
protected:
    FakeHost m_host {{{StartCall, R"("result":{"ends":"2026-11-22T23:30:00+01:00"})"},
        {StopCall, R"("result":{})"}, {StateCall, R"("result":{"ends":null,"left":0})"}}};
};

TEST_F(SleepCommandTest, TellsWhenItEnds)
{
    EXPECT_EQ(run(m_host.url(), words("sleep")).out, "no sleep timer\n");
    m_host.setResult(StateCall, R"("result":{"ends":"2026-11-22T23:30:00+01:00","left":1685})");
    EXPECT_EQ(run(m_host.url(), words("sleep")).out, "the sound stops at 23:30, in 28:05\n");
    EXPECT_EQ(run(m_host.url(), words("sleep --json")).out,
        "{\"ends\":\"2026-11-22T23:30:00+01:00\",\"left\":1685}\n");
}

TEST_F(SleepCommandTest, StartsIt)
{
    const struct {
        const char *line;
        QVariantHash params;
    } cases[] {{"sleep 30", {{QStringLiteral("minutes"), 30}}},
        {"sleep 1h30m", {{QStringLiteral("minutes"), 90}}},
        {"sleep 24h", {{QStringLiteral("minutes"), 1440}}},
        {"sleep 5 --fade 0", {{QStringLiteral("minutes"), 5}, {QStringLiteral("fade"), 0}}}};
    for (const auto &[line, params] : cases) {
        const Outcome outcome = run(m_host.url(), words(line));
        EXPECT_EQ(outcome.status, 0) << line << outcome.errors;
        EXPECT_EQ(outcome.out, "the sound stops at 23:30\n");
        EXPECT_EQ(m_host.paramsOf(StartCall), params) << line;
    }
}

TEST_F(SleepCommandTest, EndsIt)
{
    EXPECT_EQ(run(m_host.url(), words("sleep off")).out, "no sleep timer\n");
    EXPECT_EQ(m_host.timesAsked(StopCall), 1);
}

TEST_F(SleepCommandTest, RefusesWhatIsNoTime)
{
    for (const char *line : {"sleep 0", "sleep 1441", "sleep 90s", "sleep 1:30", "sleep soon",
             "sleep +30", "sleep 2.5", "sleep 25h", "sleep OFF"}) {
        const Outcome outcome = run(m_host.url(), words(line));
        EXPECT_EQ(outcome.status, 2) << line;
        EXPECT_THAT(outcome.errors, testing::HasSubstr("is no time to sleep for")) << line;
    }
    EXPECT_EQ(run(m_host.url(), words("sleep -5")).status, 2);
    EXPECT_EQ(m_host.asked(), QStringList());
}

} // namespace
