#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QThread>

#include <gmock/gmock.h>
#include <log4cplus/initializer.h>

namespace {

/// A QThread counts as finished while the system's thread still frees what libraries keep per
/// thread; a leak checker that looks in that moment sees a leak where there is none.
void waitForOtherThreads()
{
    const QDir tasks(QStringLiteral("/proc/self/task"));
    const QDeadlineTimer deadline(5000);
    while (tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot).size() > 1 && !deadline.hasExpired())
        QThread::yieldCurrentThread();
}

} // namespace

/// Test programs run with an application object, which Qt's threads and timers expect, and with
/// logging initialised.
int main(int argc, char **argv)
{
    testing::InitGoogleMock(&argc, argv);
    // log4cplus has threads of its own, which a plain fork would leave behind.
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    int result = 0;
    {
        log4cplus::Initializer logging;
        QCoreApplication application(argc, argv);
        result = RUN_ALL_TESTS();
    }
    waitForOtherThreads();
    return result;
}
