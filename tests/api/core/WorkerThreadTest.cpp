// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/support/WorkerThread.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTimer>

#include <atomic>

namespace {

struct Log {
    std::atomic<QThread *> created {nullptr};
    std::atomic<QThread *> deleted {nullptr};
};

class Resident : public QObject {
public:
    explicit Resident(Log *log)
        : m_log(log)
    {
        m_log->created = QThread::currentThread();
    }
    ~Resident() override { m_log->deleted = QThread::currentThread(); }

private:
    Log *m_log;
};

} // namespace

TEST(WorkerThread, CreatesAndDeletesItsObjectThere)
{
    Log log;
    QThread *thread = nullptr;
    {
        WorkerThread worker([&log] { return new Resident(&log); });
        thread = &worker;
        ASSERT_NE(worker.object(), nullptr);
        EXPECT_EQ(worker.object()->thread(), &worker);
        EXPECT_EQ(log.created, thread);
        EXPECT_EQ(log.deleted, nullptr);
    }
    EXPECT_EQ(log.deleted, thread);
}

TEST(WorkerThread, RunsCallsThereAndWaitsForThem)
{
    WorkerThread worker([] { return nullptr; });
    int calls = 0;
    for (int i = 0; i < 100; ++i) {
        worker.call([&] {
            EXPECT_EQ(QThread::currentThread(), &worker);
            worker.call([&] { ++calls; });
        });
        EXPECT_EQ(calls, i + 1);
    }
}

TEST(WorkerThread, RunsAnEventLoop)
{
    WorkerThread worker([] { return new QObject; });
    std::atomic<bool> fired {false};
    worker.call([&] { QTimer::singleShot(0, worker.object(), [&fired] { fired = true; }); });
    EXPECT_TRUE(spinUntil([&fired] { return fired.load(); }));
}

TEST(SpinUntil, RunsTheCallersEventLoop)
{
    bool fired = false;
    QTimer::singleShot(0, [&fired] { fired = true; });
    EXPECT_FALSE(fired);
    EXPECT_TRUE(spinUntil([&fired] { return fired; }));
}

TEST(SpinUntil, DeletesWhatIsToBeDeletedLater)
{
    bool deleted = false;
    auto *const object = new QObject;
    QObject::connect(object, &QObject::destroyed, object, [&deleted] { deleted = true; });
    object->deleteLater();
    EXPECT_TRUE(spinUntil([&deleted] { return deleted; }));
}

TEST(SpinUntil, GivesUpInTheEnd)
{
    EXPECT_FALSE(spinUntil([] { return false; }, 20));
}
