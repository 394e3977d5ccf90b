// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/core/vesk.h"

#include "api/core/log.h"
#include "tests/support/LogCapture.h"

#include <gmock/gmock.h>

#include <log4cplus/fileappender.h>
#include <log4cplus/layout.h>

#include <QCoreApplication>
#include <QFile>

#include <pthread.h>

#include <atomic>
#include <string>
#include <thread>

namespace {

std::string threadName()
{
    char name[16] = {};
    pthread_getname_np(pthread_self(), name, sizeof name);
    return name;
}

std::string threadNameAfter(const QString &name)
{
    std::string result;
    std::thread([&] {
        veskSetThreadName(name);
        result = threadName();
    }).join();
    return result;
}

/// Logging runs threads, which a plain fork would not copy: the "threadsafe" style executes the
/// test program again.
class AssertDeathTest : public testing::Test {
protected:
    AssertDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

} // namespace

TEST(Assert, DoesNothingWhenTheConditionHolds)
{
    int evaluated = 0;
    VESK_ASSERT(++evaluated == 1);
    EXPECT_EQ(evaluated, 1);
}

TEST_F(AssertDeathTest, StopsTheProcessAndSaysWhere)
{
    const QString guideId;
    EXPECT_EXIT(VESK_ASSERT(!guideId.isEmpty()), testing::KilledBySignal(SIGABRT),
        "Assertion failed: !guideId.isEmpty\\(\\), file tests/api/core/veskTest.cpp, line [0-9]+");
}

TEST_F(AssertDeathTest, KeepsTheConditionLiteral)
{
    EXPECT_EXIT(VESK_ASSERT(!"requestPath.base().startsWith(\"browse\") %1 %s"),
        testing::KilledBySignal(SIGABRT),
        testing::HasSubstr(
            R"(Assertion failed: !"requestPath.base().startsWith(\"browse\") %1 %s", file )"));
}

TEST_F(AssertDeathTest, LeavesAWholeRecordInTheLogFile)
{
    // The dying process runs this test from its start, so both processes must compute the same
    // name.
    const QString file = QCoreApplication::applicationFilePath() + QStringLiteral(".assert.log");
    QFile::remove(file);
    const auto fail = [&file] {
        const log4cplus::SharedAppenderPtr appender(
            new log4cplus::FileAppender(file.toStdString(), std::ios::trunc, false));
        appender->setLayout(std::make_unique<log4cplus::PatternLayout>("%p %c %F:%L %m%n"));
        log4cplus::Logger::getRoot().addAppender(appender);
        // The record is written even when logging is off.
        log4cplus::Logger::getRoot().setLogLevel(log4cplus::OFF_LOG_LEVEL);
        veskAssertionFailed("1 == 2", "src/host/main.cpp", 77);
    };
    EXPECT_EXIT(fail(), testing::KilledBySignal(SIGABRT), "");
    QFile log(file);
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    const QByteArray record = log.readAll();
    log.remove();
    EXPECT_EQ(record,
        QByteArray("FATAL Vesk host/main:77 "
                   "Assertion failed: 1 == 2, file src/host/main.cpp, line 77\n"));
}

TEST_F(AssertDeathTest, LeavesStandardErrorToTheLogWhenThereIsOne)
{
    const auto fail = [] {
        LogCapture capture("Vesk");
        veskAssertionFailed("1 == 2", "f", 1);
    };
    EXPECT_EXIT(fail(), testing::KilledBySignal(SIGABRT),
        testing::Not(testing::HasSubstr("Assertion failed")));
}

TEST_F(AssertDeathTest, WritesOneWholeRecordWhenThreadsFailTogether)
{
    const auto fail = [] {
        std::atomic<int> waiting {8};
        std::thread threads[8];
        for (std::thread &thread : threads) {
            thread = std::thread([&waiting] {
                --waiting;
                while (waiting > 0) { }
                veskAssertionFailed("together", "f", 1);
            });
        }
        for (std::thread &thread : threads)
            thread.join();
    };
    // Whether the failures coincide is up to the scheduler; their output must never interleave.
    for (int i = 0; i < 10; ++i)
        EXPECT_EXIT(fail(), testing::KilledBySignal(SIGABRT),
            testing::StrEq("Assertion failed: together, file f, line 1\n"));
}

TEST(ThreadName, IsWhatLinuxShows)
{
    EXPECT_EQ(threadNameAfter(QStringLiteral("TuneInHttp")), "TuneInHttp");
    EXPECT_EQ(threadNameAfter(QString()), "");
}

TEST(ThreadName, IsCutToFifteenBytes)
{
    EXPECT_EQ(threadNameAfter(QStringLiteral("123456789012345")), "123456789012345");
    EXPECT_EQ(threadNameAfter(QStringLiteral("1234567890123456")), "123456789012345");
}

TEST(ThreadName, IsNeverCutInsideACharacter)
{
    EXPECT_EQ(threadNameAfter(QStringLiteral("12345678901234\u00e9")), "12345678901234");
    EXPECT_EQ(threadNameAfter(QStringLiteral("1234567890123\u20ac")), "1234567890123");
    EXPECT_EQ(threadNameAfter(QStringLiteral("1234567890123\u00e9")), "1234567890123\xc3\xa9");
}
