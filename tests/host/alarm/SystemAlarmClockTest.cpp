// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/alarm/SystemAlarmClock.h"

#include "tests/support/Text.h"
#include "tests/support/WorkerThread.h"

#include <QDateTime>
#include <QFile>
#include <QTemporaryDir>
#include <QTimeZone>

#include <gmock/gmock.h>

#include <cstdlib>

namespace {

constexpr Moment Winter = 1763820000; // 2025-11-22T14:00:00Z
constexpr Moment Summer = 1751378400; // 2025-07-01T14:00:00Z

class SystemAlarmClockTest : public testing::Test {
protected:
    SystemAlarmClockTest()
    {
        QObject::connect(&clock, &AlarmClock::reached, [this] { ++reached; });
        QObject::connect(&clock, &AlarmClock::changed, [this] { ++changes; });
    }
    ~SystemAlarmClockTest() override
    {
        if (m_zone.isNull())
            qunsetenv("TZ");
        else
            qputenv("TZ", m_zone);
        tzset();
    }
    QString zoneFile() const { return m_folder.filePath(text("localtime")); }

private:
    const QByteArray m_zone = qgetenv("TZ");
    const QTemporaryDir m_folder;

protected:
    SystemAlarmClock clock {zoneFile()};
    int reached = 0;
    int changes = 0;
};

TEST_F(SystemAlarmClockTest, WakesOnceAtTheMomentAndNotBefore)
{
    const Moment due = clock.now() + 2;
    clock.wakeAt(due);
    EXPECT_TRUE(spinUntil([&] { return reached > 0; }));
    EXPECT_GE(clock.now(), due);
    EXPECT_LE(clock.now(), due + 1);
    EXPECT_FALSE(spinUntil([&] { return reached > 1; }, 100));
    EXPECT_EQ(changes, 0);
}

TEST_F(SystemAlarmClockTest, WakesAtOnceForWhatIsPast)
{
    for (const Moment past : {clock.now() - 3600, Moment(0), Moment(-5)}) {
        reached = 0;
        clock.wakeAt(past);
        EXPECT_TRUE(spinUntil([&] { return reached == 1; })) << past;
    }
}

TEST_F(SystemAlarmClockTest, WakesNoMoreOnceNothingIsWaitedFor)
{
    clock.wakeAt(clock.now() + 1);
    clock.wakeAt({});
    EXPECT_FALSE(spinUntil([&] { return reached > 0; }, 1500));
}

TEST_F(SystemAlarmClockTest, ATimerCallsOnceAfterItsTime)
{
    const auto timer = clock.makeTimer();
    int calls = 0;
    timer->start(std::chrono::milliseconds(50), [&] { ++calls; });
    EXPECT_GT(timer->left(), std::chrono::milliseconds(0));
    EXPECT_LE(timer->left(), std::chrono::milliseconds(50));
    EXPECT_TRUE(spinUntil([&] { return calls == 1; }));
    EXPECT_EQ(timer->left(), std::chrono::milliseconds(0));
    EXPECT_FALSE(spinUntil([&] { return calls > 1; }, 150));
}

TEST_F(SystemAlarmClockTest, ATimerMayBeStartedAnewOrDestroyedByItsAction)
{
    auto timer = clock.makeTimer();
    int calls = 0;
    timer->start(std::chrono::milliseconds(0), [&] {
        ++calls;
        timer->start(std::chrono::milliseconds(1), [&] {
            ++calls;
            timer.reset();
        });
    });
    EXPECT_TRUE(spinUntil([&] { return !timer; }));
    EXPECT_EQ(calls, 2);
}

TEST_F(SystemAlarmClockTest, ATimerThatIsStoppedDoesNotCall)
{
    const auto timer = clock.makeTimer();
    int calls = 0;
    timer->start(std::chrono::milliseconds(20), [&] { ++calls; });
    timer->stop();
    EXPECT_FALSE(spinUntil([&] { return calls > 0; }, 100));
}

TEST_F(SystemAlarmClockTest, TheZoneIsReadAnew)
{
    struct Zone {
        const char *name;
        int winter;
        int summer;
    };
    for (const Zone &zone : {Zone {"Europe/Berlin", 3600, 7200},
             {"America/St_Johns", -12600, -9000}, {"Australia/Lord_Howe", 39600, 37800},
             {"Pacific/Apia", 46800, 46800}, {"Asia/Tehran", 12600, 12600},
             {"Nowhere/At_All", 0, 0}, {"", 0, 0}, {"CET-1CEST,M3.5.0,M10.5.0/3", 3600, 7200}}) {
        qputenv("TZ", zone.name);
        EXPECT_EQ(clock.zone()(Winter), zone.winter) << zone.name;
        EXPECT_EQ(clock.zone()(Summer), zone.summer) << zone.name;
    }
}

TEST_F(SystemAlarmClockTest, AZoneFileThatIsReplacedOrWrittenIsNoticed)
{
    const QString berlin = text("/usr/share/zoneinfo/Europe/Berlin");
    const QString tehran = text("/usr/share/zoneinfo/Asia/Tehran");
    ASSERT_TRUE(QFile::link(berlin, zoneFile()));
    const auto wait = [this] {
        clock.wakeAt(clock.now() + 3600);
        changes = 0;
    };
    wait();
    // As timedatectl does: another link, renamed into its place.
    const QString next = zoneFile() + text(".next");
    ASSERT_TRUE(QFile::link(tehran, next));
    ASSERT_EQ(std::rename(qPrintable(next), qPrintable(zoneFile())), 0);
    EXPECT_TRUE(spinUntil([&] { return changes > 0; }));
    // As others do: removed, and a copy made.
    wait();
    ASSERT_TRUE(QFile::remove(zoneFile()));
    ASSERT_TRUE(QFile::copy(berlin, zoneFile()));
    EXPECT_TRUE(spinUntil([&] { return changes > 0; }));
    // Written in its place.
    wait();
    QFile file(zoneFile());
    ASSERT_TRUE(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner));
    ASSERT_TRUE(file.open(QFile::WriteOnly | QFile::Truncate));
    file.write("TZif2");
    file.close();
    EXPECT_TRUE(spinUntil([&] { return changes > 0; }));
    EXPECT_EQ(reached, 0);
}

TEST_F(SystemAlarmClockTest, NothingIsWatchedWhileNothingIsWaitedFor)
{
    clock.wakeAt(clock.now() + 3600);
    clock.wakeAt({});
    QFile file(zoneFile());
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    file.close();
    EXPECT_FALSE(spinUntil([&] { return changes > 0; }, 200));
}

} // namespace
