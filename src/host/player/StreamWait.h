// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"

#include <chrono>
#include <condition_variable>
#include <functional>

/// An interruptible sleep for the reader thread. All functions but wait() may be called from any
/// thread.
class StreamWait {
public:
    using Milliseconds = std::chrono::milliseconds;

    /// Ends the current wait and all later ones.
    void stop();
    bool isStopped() const;
    /// Ends the current wait.
    void cutShort();
    /// Waits for \a time, or until \a isOver returns true, which is called twice a second. Reader
    /// thread.
    void wait(Milliseconds time, const std::function<bool()> &isOver);

private:
    mutable VeskMutex m_mutex;
    std::condition_variable m_changed;
    bool m_stop VESK_GUARDED_BY(m_mutex) = false;
    bool m_cutShort VESK_GUARDED_BY(m_mutex) = false;
};
