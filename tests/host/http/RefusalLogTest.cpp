// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/http/RefusalLog.h"

#include "tests/support/WorkerThread.h"

#include <QElapsedTimer>

#include <gmock/gmock.h>

#include <string>
#include <vector>

using testing::ElementsAre;

namespace {

constexpr int Second = 100; // milliseconds, to keep the tests short

class RefusalLogTest : public testing::Test {
protected:
    std::unique_ptr<RefusalLog> makeLog()
    {
        return std::make_unique<RefusalLog>(
            [this](const QByteArray &line) { m_lines.push_back(line.toStdString()); }, Second);
    }
    bool waitForLines(std::size_t count)
    {
        return spinUntil([this, count] { return m_lines.size() >= count; });
    }

    std::vector<std::string> m_lines;
};

TEST_F(RefusalLogTest, LogsTheFirstLineAndTheCountOfTheOthers)
{
    const auto log = makeLog();
    for (int i = 0; i < 1000; ++i)
        log->log("wrong host");
    EXPECT_THAT(m_lines, ElementsAre("wrong host"));
    ASSERT_TRUE(waitForLines(2));
    EXPECT_EQ(m_lines[1], "wrong host (999 more times)");
    log->log("wrong host");
    EXPECT_EQ(m_lines.size(), 2u) << "the count begins another second";
    ASSERT_TRUE(waitForLines(3));
    EXPECT_EQ(m_lines[2], "wrong host (1 more times)");
}

TEST_F(RefusalLogTest, LogsAtOnceAfterAQuietSecond)
{
    const auto log = makeLog();
    log->log("wrong host");
    QElapsedTimer quiet;
    quiet.start();
    ASSERT_TRUE(spinUntil([&] { return quiet.elapsed() > 2 * Second; }));
    EXPECT_THAT(m_lines, ElementsAre("wrong host")) << "no count without suppressed lines";
    log->log("wrong host");
    EXPECT_THAT(m_lines, ElementsAre("wrong host", "wrong host"));
}

TEST_F(RefusalLogTest, LogsEachKindSeparately)
{
    const auto log = makeLog();
    for (int i = 0; i < 3; ++i) {
        log->log("wrong host");
        log->log("too large");
    }
    EXPECT_THAT(m_lines, ElementsAre("wrong host", "too large"));
}

TEST_F(RefusalLogTest, ManyKindsShareALine)
{
    const auto log = makeLog();
    for (int i = 0; i < 10000; ++i)
        log->log("kind " + QByteArray::number(i));
    EXPECT_EQ(m_lines.size(), RefusalLog::MaxKinds + 1);
    EXPECT_EQ(m_lines.back(), "other refusals");
}

TEST_F(RefusalLogTest, LogsOpenCountsAtItsEnd)
{
    auto log = makeLog();
    log->log("wrong host");
    log->log("wrong host");
    log.reset();
    EXPECT_THAT(m_lines, ElementsAre("wrong host", "wrong host (1 more times)"));
}

} // namespace
