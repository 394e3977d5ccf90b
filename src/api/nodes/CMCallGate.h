// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "api/nodes/CMAbstractWorker.h"

#include <algorithm>
#include <condition_variable>
#include <memory>
#include <utility>
#include <vector>

/// Guards a worker against calls from other threads while it is removed: counts the calls that are
/// inside the worker, and admits no more once it is closed. Any thread.
class CMCallGate {
public:
    explicit CMCallGate(CMAbstractWorker *worker)
        : m_worker(worker)
    {
    }

    CMAbstractWorker *worker() const { return m_worker; }

    /// Returns once no other thread is inside. The calling thread may be: a worker may remove
    /// itself while it is being called.
    void close()
    {
        const auto mine = std::count(visited.begin(), visited.end(), this);
        VeskMutexLock lock(m_mutex);
        m_open = false;
        while (m_inside != mine)
            lock.wait(m_left);
    }

    /// A call into the worker; null when there is no gate or it is closed.
    class Visit {
    public:
        explicit Visit(std::shared_ptr<CMCallGate> gate)
            : m_gate(std::move(gate))
        {
            if (m_gate && !m_gate->enter())
                m_gate.reset();
        }
        Visit(const Visit &) = delete;
        Visit &operator=(const Visit &) = delete;
        ~Visit()
        {
            if (m_gate)
                m_gate->leave();
        }

        explicit operator bool() const { return m_gate != nullptr; }
        CMAbstractWorker *operator->() const { return m_gate->m_worker; }

    private:
        std::shared_ptr<CMCallGate> m_gate;
    };

private:
    bool enter()
    {
        const VeskMutexLock lock(m_mutex);
        if (!m_open)
            return false;
        ++m_inside;
        visited.push_back(this);
        return true;
    }

    void leave()
    {
        visited.pop_back();
        const VeskMutexLock lock(m_mutex);
        --m_inside;
        m_left.notify_all();
    }

    /// The gates that the calling thread is inside, one entry per call.
    static inline thread_local std::vector<const CMCallGate *> visited;

    CMAbstractWorker *const m_worker;

    VeskMutex m_mutex;
    std::condition_variable m_left;
    std::ptrdiff_t m_inside VESK_GUARDED_BY(m_mutex) = 0;
    bool m_open VESK_GUARDED_BY(m_mutex) = true;
};
