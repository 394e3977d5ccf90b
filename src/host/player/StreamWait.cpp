// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/StreamWait.h"

#include <algorithm>

namespace {

/// The interval of isOver(). Short enough to notice that the machine slept.
constexpr std::chrono::milliseconds Look {500};

} // namespace

void StreamWait::stop()
{
    {
        const VeskMutexLock lock(m_mutex);
        m_stop = true;
    }
    m_changed.notify_all();
}

bool StreamWait::isStopped() const
{
    const VeskMutexLock lock(m_mutex);
    return m_stop;
}

void StreamWait::cutShort()
{
    {
        const VeskMutexLock lock(m_mutex);
        m_cutShort = true;
    }
    m_changed.notify_all();
}

void StreamWait::wait(Milliseconds time, const std::function<bool()> &isOver)
{
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + time;
    VeskMutexLock lock(m_mutex);
    m_cutShort = false;
    while (!m_stop && !m_cutShort && Clock::now() < end) {
        // Call the caller's code without the lock.
        lock.unlock();
        const bool over = isOver();
        lock.lock();
        if (over)
            return;
        const auto next = std::min(end, Clock::now() + Look);
        while (!m_stop && !m_cutShort && lock.waitUntil(m_changed, next)) { }
    }
}
