// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "api/core/ThreadCheck.h"
#include "api/core/vesk.h"

#include <QString>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <thread>
#include <utility>
#include <vector>

/// Changes on their way to the disk: a thread writes them in their order, those that come while it
/// writes all at once, so that a slow disk delays nobody else.
template <class Change>
class DiskQueue {
public:
    /// One more change is refused.
    static constexpr std::size_t MaxWaiting = 256;
    /// How long the end waits for the disk.
    static constexpr std::chrono::seconds EndTime {10};

    using Clock = std::chrono::steady_clock;
    using Changes = std::vector<Change>;

    /// \a write is called on the thread, and must not throw.
    explicit DiskQueue(std::function<void(Changes)> write)
        : m_write(std::move(write))
    {
    }
    /// As close(), but waits as long as it takes.
    ~DiskQueue()
    {
        if (!close(Clock::now()))
            m_writer.join();
    }
    Q_DISABLE_COPY(DiskQueue)

    /// Starts the thread, with this name. Once.
    void open(const QString &name)
    {
        {
            const VeskMutexLock lock(m_mutex);
            m_isOpen = true;
        }
        m_writer = std::thread([this, name] { run(name); });
    }

    /// Any thread. False when too many wait or the queue is not open; \a change is as it was then.
    [[nodiscard]] bool push(Change &change) VESK_EXCLUDES(m_mutex)
    {
        const VeskMutexLock lock(m_mutex);
        if (!m_isOpen || m_waiting.size() >= MaxWaiting)
            return false;
        m_waiting.push_back(std::move(change));
        m_wake.notify_all();
        return true;
    }

    /// Accepts no more changes and waits until all are written. Returns false when that takes
    /// beyond \a deadline. On the thread that called open().
    bool close(Clock::time_point deadline) VESK_EXCLUDES(m_mutex)
    {
        if (!m_writer.joinable())
            return true;
        {
            VeskMutexLock lock(m_mutex);
            m_isOpen = false;
            m_wake.notify_all();
            while (!m_hasEnded) {
                if (!lock.waitUntil(m_wake, deadline) && !m_hasEnded)
                    return false;
            }
        }
        m_writer.join();
        return true;
    }

private:
    void run(const QString &name) VESK_EXCLUDES(m_mutex)
    {
        veskSetThreadName(name);
        VeskMutexLock lock(m_mutex);
        for (;;) {
            while (m_isOpen && m_waiting.empty())
                lock.wait(m_wake);
            if (m_waiting.empty())
                break;
            Changes changes;
            changes.swap(m_waiting);
            lock.unlock();
            m_write(std::move(changes));
            lock.lock();
        }
        m_hasEnded = true;
        m_wake.notify_all();
    }

    const std::function<void(Changes)> m_write;
    std::thread m_writer;
    VeskMutex m_mutex;
    std::condition_variable m_wake; ///< of both threads, when one of these has changed
    bool m_isOpen VESK_GUARDED_BY(m_mutex) = false;
    /// The thread is done with everything but its return.
    bool m_hasEnded VESK_GUARDED_BY(m_mutex) = false;
    Changes m_waiting VESK_GUARDED_BY(m_mutex);
};
