// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <chrono>
#include <functional>

/// Notices that the machine slept, or that the process was halted: the time between two looks is
/// longer than the thread that looks ever takes. Not thread-safe.
class SleepWatch {
public:
    using Milliseconds = std::chrono::milliseconds;
    /// The time since the machine was started, its sleep included; a test moves its own.
    using Now = std::function<Milliseconds()>;

    /// \a longest is the longest time between two looks of one who is awake.
    explicit SleepWatch(Milliseconds longest, Now now = {});

    /// Looks, and tells whether it slept since the last look. Not at the first one.
    bool hasSlept();

private:
    const Milliseconds m_longest;
    Now m_now;
    Milliseconds m_last {-1};
};
