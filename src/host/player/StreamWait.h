// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"

#include <chrono>
#include <condition_variable>
#include <functional>

/// The pauses of a reader's thread between two tries, which other threads can end. Any thread, but
/// for wait().
class StreamWait {
public:
    using Milliseconds = std::chrono::milliseconds;

    /// For good.
    void stop();
    bool isStopped() const;
    /// Ends the present wait.
    void cutShort();
    /// Waits for \a time, or until \a isOver, which is asked twice a second, holds. The reader's
    /// thread.
    void wait(Milliseconds time, const std::function<bool()> &isOver);

private:
    mutable VeskMutex m_mutex;
    std::condition_variable m_changed;
    bool m_stop VESK_GUARDED_BY(m_mutex) = false;
    bool m_cutShort VESK_GUARDED_BY(m_mutex) = false;
};
