// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/Watchdog.h"

#include "plugin/runtime/Logging.h"
#include "tests/host/HostProcess.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QTimer>

#include <gmock/gmock.h>

#include <chrono>
#include <csignal>
#include <ctime>
#include <unistd.h>

namespace {

using namespace std::chrono_literals;
using testing::AllOf;
using testing::ContainsRegex;
using testing::ExitedWithCode;
using testing::KilledBySignal;
using testing::Not;

/// Runs the event loop for that time, with \a task in it.
template <class Task>
void spin(std::chrono::milliseconds time, const Task &task)
{
    QEventLoop loop;
    QTimer::singleShot(time, &loop, &QEventLoop::quit);
    QTimer::singleShot(0, &loop, task);
    loop.exec();
}

QByteArray contentOf(const QString &file)
{
    QFile source(file);
    return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray();
}

/// How often the watching thread of \a process has waited for something; -1 when there is none.
int wakeUps(qint64 process)
{
    const QDir tasks(QStringLiteral("/proc/%1/task").arg(process));
    for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        if (contentOf(tasks.filePath(task + QStringLiteral("/comm"))) != "Watchdog\n")
            continue;
        const QByteArray name = "\nvoluntary_ctxt_switches:";
        const QByteArray status = contentOf(tasks.filePath(task + QStringLiteral("/status")));
        const int begin = status.indexOf(name) + name.size();
        return status.mid(begin, status.indexOf('\n', begin) - begin).trimmed().toInt();
    }
    return -1;
}

void runFor(std::chrono::nanoseconds processorTime)
{
    timespec used {};
    do
        ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
    while (
        std::chrono::seconds(used.tv_sec) + std::chrono::nanoseconds(used.tv_nsec) < processorTime);
}

[[noreturn]] void hang()
{
    if (!setUpLogging(QStringLiteral("info"), QString()))
        std::_Exit(1);
    const Watchdog watchdog(500ms);
    spin(10s, [] {
        for (;;)
            ::pause();
    });
    std::_Exit(0);
}

TEST(WatchdogDeathTest, EndsAProcessWhoseLoopHangs)
{
    QElapsedTimer elapsed;
    elapsed.start();
    EXPECT_EXIT(hang(), KilledBySignal(SIGABRT),
        AllOf(ContainsRegex("FATAL Host.Watchdog [^\n]*The main loop has not turned for 0\\.[5-9]"),
            ContainsRegex("FATAL Host.Watchdog [^\n]*    pause \\(libc\\.so\\.6\\+0x[0-9a-f]+\\)"),
            ContainsRegex("    [^\n]*hang\\(\\)[^\n]* WatchdogTest\\.cpp:[0-9]+\n")));
    EXPECT_LT(elapsed.elapsed(), 8000);
}

TEST(WatchdogDeathTest, EndsAProcessThatNeverRunsItsLoop)
{
    EXPECT_EXIT(
        {
            const Watchdog watchdog(500ms);
            for (;;)
                ::pause();
        },
        KilledBySignal(SIGABRT), "");
}

/// Logs into a full pipe: the thread that hangs holds the log's lock.
[[noreturn]] void hangInTheLog()
{
    int ends[2] = {-1, -1};
    if (::pipe(ends) != 0)
        std::_Exit(1);
    static_cast<void>(
        setUpLogging(QStringLiteral("info"), QStringLiteral("/dev/fd/%1").arg(ends[1])));
    const Watchdog watchdog(500ms);
    for (;;)
        qInfo("%s", QByteArray(1000, 'x').constData());
}

TEST(WatchdogDeathTest, EndsAProcessThatHangsWithTheLogLocked)
{
    QElapsedTimer elapsed;
    elapsed.start();
    EXPECT_EXIT(hangInTheLog(), KilledBySignal(SIGABRT), "");
    EXPECT_LT(elapsed.elapsed(), 25000);
}

/// One turn in which the process stands still for 4 s, and works for less than the limit.
[[noreturn]] void beStopped()
{
    const Watchdog watchdog(3s);
    spin(5s, [] {
        const QByteArray id = QByteArray::number(static_cast<int>(::getpid()));
        const QByteArray command = "(kill -STOP " + id + "; sleep 4; kill -CONT " + id + ") &";
        QElapsedTimer elapsed;
        elapsed.start();
        if (std::system(command.constData()) != 0)
            std::_Exit(1);
        // The signal comes when the scheduler runs its sender.
        while (elapsed.elapsed() < 4000)
            runFor(10ms);
        runFor(400ms);
        std::_Exit(0);
    });
    std::_Exit(3);
}

TEST(WatchdogDeathTest, DoesNotCountTheTimeInWhichTheProcessIsStopped)
{
    EXPECT_EXIT(beStopped(), ExitedWithCode(0), "");
}

TEST(WatchdogTest, AllowsABusyLoop)
{
    const Watchdog watchdog(4s); // longer than the machine lets the loop stand still
    int turns = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&turns] { ++turns; });
    timer.start(0);
    spin(6s, [] {});
    EXPECT_GT(turns, 1000);
}

TEST(WatchdogTest, CountsTheTurnsOfNestedLoops)
{
    const Watchdog watchdog(4s);
    bool done = false;
    spin(12s, [&done] {
        spin(5s, [] {});
        QElapsedTimer elapsed;
        elapsed.start();
        while (elapsed.elapsed() < 5000)
            QCoreApplication::processEvents();
        done = true;
    });
    EXPECT_TRUE(done);
}

TEST(WatchdogTest, LooksAtMostTwiceInItsLimit)
{
    const Watchdog watchdog(500ms);
    QTimer timer;
    timer.start(1);
    spin(100ms, [] {});
    const int before = wakeUps(::getpid());
    ASSERT_GE(before, 0);
    spin(3s, [] {});
    EXPECT_GE(wakeUps(::getpid()) - before, 3) << "it does wake up";
    EXPECT_LE(wakeUps(::getpid()) - before, 14);
}

TEST(WatchdogTest, DoesNotWakeWhileTheLoopWaits)
{
    const Watchdog watchdog(200ms);
    int before = -1;
    int after = -1;
    QTimer::singleShot(2500, [&after] { after = wakeUps(::getpid()); });
    QTimer::singleShot(500, [&before] { before = wakeUps(::getpid()); });
    spin(3s, [] {});
    ASSERT_GE(before, 0);
    // The turn in which the first number is read makes the watchdog wake up once more.
    EXPECT_LE(after - before, 1);
}

TEST(WatchdogTest, CanBeStartedAgain)
{
    for (int i = 0; i < 100; ++i) {
        // Sometimes so long that it looks. It ends the process if the machine lets the main thread
        // stand still for its limit in the middle of a turn: that is long.
        const bool looks = i % 10 == 0;
        const Watchdog watchdog(looks ? 1000ms : 10000ms);
        spin(std::chrono::milliseconds(looks ? 490 + i / 5 : i % 20), [] {});
    }
    EXPECT_EQ(wakeUps(::getpid()), -1);
}

TEST(HostWatchdogTest, EndsAHostThatHangsWithTheStackInTheLog)
{
    HostProcess host(QStringLiteral(HOST_PROGRAM),
        {QStringLiteral("--plugin"), QStringLiteral(TEST_PLUGINS "/libvesk_cb_hanging.so"),
            QStringLiteral("--in-process"), QStringLiteral("--watchdog"), QStringLiteral("1")});
    QElapsedTimer elapsed;
    elapsed.start();
    EXPECT_EQ(host.waitForEnd(), -1) << "killed by a signal";
    EXPECT_LT(elapsed.elapsed(), 8000);
    EXPECT_THAT(host.errors().toStdString(),
        AllOf(ContainsRegex("FATAL Host.Watchdog [^\n]*The main loop has not turned for 1"),
            ContainsRegex("FATAL Host.Watchdog [^\n]*    standStillForEver[^\n]*\\.so")));
}

TEST(HostWatchdogTest, DoesNotWakeInAnIdleHost)
{
    // With plug-ins in its process: the supervision of other processes wakes up once a second.
    HostProcess host(QStringLiteral(HOST_PROGRAM),
        {QStringLiteral("--plugin"), QStringLiteral(TEST_PLUGINS "/libvesk_cb_good.so"),
            QStringLiteral("--in-process"), QStringLiteral("--watchdog"), QStringLiteral("0.4")});
    ASSERT_TRUE(host.isReady()) << host.errors().toStdString();
    // Some work is done after the start; then nothing wakes the host.
    int before = -1;
    int after = wakeUps(host.id());
    for (int tries = 0; tries < 10 && after != before; ++tries) {
        before = after;
        ::sleep(3);
        after = wakeUps(host.id());
    }
    EXPECT_GT(after, 0);
    EXPECT_EQ(after, before) << "in three seconds, fifteen times as long as it would wait to look";
}

} // namespace
