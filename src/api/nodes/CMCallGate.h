// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMAbstractWorker.h"

#include <algorithm>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

/// Through which other threads call a worker: it knows who is inside, and once closed it lets
/// nobody in. Any thread.
class CMCallGate {
public:
    explicit CMCallGate(CMAbstractWorker *worker)
        : m_worker(worker)
    {
    }

    CMAbstractWorker *worker() const { return m_worker; }

    /// Returns when no other thread is inside.
    void close()
    {
        const auto mine = std::count(visited.begin(), visited.end(), this);
        std::unique_lock<std::mutex> lock(m_mutex);
        m_open = false;
        m_left.wait(lock, [this, mine] { return m_inside == mine; });
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
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_open)
            return false;
        ++m_inside;
        visited.push_back(this);
        return true;
    }

    void leave()
    {
        visited.pop_back();
        const std::lock_guard<std::mutex> lock(m_mutex);
        --m_inside;
        m_left.notify_all();
    }

    /// The gates that the calling thread is inside of, once for each call.
    static inline thread_local std::vector<const CMCallGate *> visited;

    CMAbstractWorker *const m_worker;

    std::mutex m_mutex;
    std::condition_variable m_left;
    /// Guarded by m_mutex.
    std::ptrdiff_t m_inside = 0;
    bool m_open = true;
};
