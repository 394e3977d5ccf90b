// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/tunein/NewQThread.h"

#include "tests/modules/tunein/TuneInHost.h"
#include "tests/support/WorkerThread.h"

#include <QPointer>

#include <gtest/gtest.h>

#include <pthread.h>

#include <array>
#include <functional>
#include <future>

namespace {

/// Records the thread that created it.
class Probe : public QObject {
public:
    Probe()
        : builtOn(QThread::currentThread())
    {
        std::array<char, 16> buffer {};
        pthread_getname_np(pthread_self(), buffer.data(), buffer.size());
        threadName = QString::fromLatin1(buffer.data());
    }

    QThread *builtOn;
    QString threadName;
};

/// A thread without a function to run.
class ThreadOfNothing : public NewQThread<Probe> {
public:
    using NewQThread<Probe>::run;
};

/// Deletes \a probe on its thread, which then ends.
void end(Probe *probe)
{
    const QPointer<QThread> thread(probe->thread());
    QMetaObject::invokeMethod(probe, [probe] {
        delete probe;
        QThread::currentThread()->exit();
    });
    EXPECT_TRUE(spinUntil([&] { return thread.isNull(); }));
}

} // namespace

TEST(NewQThreadTest, CreatesItsObjectOnANewNamedThread)
{
    Probe *probe = createInNewQThread<Probe>("ProbeThread"_s);
    ASSERT_NE(probe, nullptr);
    EXPECT_NE(probe->builtOn, QThread::currentThread());
    EXPECT_EQ(probe->builtOn, probe->thread());
    EXPECT_EQ(probe->threadName, "ProbeThread"_s);
    end(probe);
}

TEST(NewQThreadTest, RunsAnEventLoopForItsObject)
{
    Probe *probe = createInNewQThread<Probe>("ProbeThread"_s);
    std::promise<QThread *> ranOn;
    QMetaObject::invokeMethod(probe, [&] { ranOn.set_value(QThread::currentThread()); });
    EXPECT_EQ(ranOn.get_future().get(), probe->thread());
    end(probe);
}

TEST(NewQThreadTest, StartsAThreadForEachObject)
{
    Probe *first = createInNewQThread<Probe>("ProbeThread"_s);
    Probe *second = createInNewQThread<Probe>("ProbeThread"_s);
    EXPECT_NE(first->thread(), second->thread());
    end(first);
    end(second);
}

TEST(NewQThreadTest, ThrowsWithoutAFunctionToRun)
{
    ThreadOfNothing thread;
    // An event loop, if run() got that far, would end at once.
    thread.exit();
    EXPECT_THROW(thread.run(), std::bad_function_call);
}

TEST(NewQThreadTest, IsDeletedEvenWhenTheCallersEventLoopNeverRunsAgain)
{
    QPointer<QThread> thread;
    std::thread caller([&thread] {
        Probe *probe = createInNewQThread<Probe>("ProbeThread"_s);
        thread = probe->thread();
        QMetaObject::invokeMethod(probe, [probe] {
            delete probe;
            QThread::currentThread()->exit();
        });
        joinNewQThread(thread);
        EXPECT_TRUE(thread.isNull());
    });
    caller.join();
}
