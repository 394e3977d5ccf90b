// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/support/WorkerThread.h"

#include "api/core/Mutex.h"
#include "api/core/vesk.h"

#include <QCoreApplication>
#include <QEvent>
#include <QEventLoop>
#include <QTimer>

#include <chrono>
#include <deque>
#include <future>

/// The queue of functions to run on the thread. They are handed off under a VeskMutex; the posted
/// event only wakes the event loop, because ThreadSanitizer cannot see into Qt's own locks.
class WorkerThread::Inbox : public QObject {
public:
    /// False once the queue is closed.
    bool post(std::packaged_task<void()> task)
    {
        const VeskMutexLock lock(m_mutex);
        if (m_closed)
            return false;
        m_tasks.push_back(std::move(task));
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
        return true;
    }

    /// Fulfilled as the last thing that the thread does.
    std::promise<void> ended;

    /// Drops the functions that have not run; callers that wait for one get an exception.
    void close()
    {
        const VeskMutexLock lock(m_mutex);
        m_closed = true;
        m_tasks.clear();
    }

protected:
    bool event(QEvent *event) override
    {
        if (event->type() != QEvent::User)
            return QObject::event(event);
        for (std::packaged_task<void()> task = take(); task.valid(); task = take())
            task();
        return true;
    }

private:
    std::packaged_task<void()> take()
    {
        const VeskMutexLock lock(m_mutex);
        if (m_tasks.empty())
            return {};
        std::packaged_task<void()> task = std::move(m_tasks.front());
        m_tasks.pop_front();
        return task;
    }

    VeskMutex m_mutex;
    std::deque<std::packaged_task<void()>> m_tasks VESK_GUARDED_BY(m_mutex);
    bool m_closed VESK_GUARDED_BY(m_mutex) = false;
};

WorkerThread::WorkerThread(std::function<QObject *()> create)
    : m_create(std::move(create))
    , m_inbox(new Inbox)
{
    m_inbox->moveToThread(this);
    start();
    call([this] { m_object = m_create(); });
}

WorkerThread::~WorkerThread()
{
    quit();
    m_inbox->ended.get_future().wait();
    wait();
}

void WorkerThread::call(const std::function<void()> &function)
{
    if (QThread::currentThread() == this) {
        function();
        return;
    }
    std::packaged_task<void()> task(function);
    std::future<void> done = task.get_future();
    const bool posted = m_inbox->post(std::move(task));
    VESK_ASSERT(posted);
    done.get();
}

void WorkerThread::run()
{
    exec();
    m_inbox->close();
    delete m_object;
    m_inbox->ended.set_value();
}

bool spinUntil(const std::function<bool()> &condition, int milliseconds)
{
    if (condition())
        return true;
    using Clock = std::chrono::steady_clock;
    const auto deadline = Clock::now() + std::chrono::milliseconds(milliseconds);
    bool holds = false;
    QEventLoop loop;
    // Another thread may make the condition true without an event here: poll.
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &loop, [&] {
        holds = condition();
        if (holds || Clock::now() >= deadline)
            loop.quit();
    });
    look.start(1);
    loop.exec();
    return holds;
}
