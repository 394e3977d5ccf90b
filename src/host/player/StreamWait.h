// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>

/// The waits of a reader's thread, which other threads end. Any thread, but for wait().
class StreamWait {
public:
    using Milliseconds = std::chrono::milliseconds;

    /// For good.
    void stop();
    bool isStopped() const;
    /// Ends the present wait.
    void cutShort();
    /// Waits for \a time at most, also while \a isOver, asked twice a second, says no. The reader's
    /// thread.
    void wait(Milliseconds time, const std::function<bool()> &isOver);

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    /// Guarded by m_mutex.
    bool m_stop = false;
    bool m_cutShort = false;
};
