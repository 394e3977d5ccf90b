// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <chrono>
#include <functional>

/// Notices that the machine slept, or that the process was halted: more time passed between two
/// checks than the checking thread ever lets pass. Not thread-safe.
class SleepWatch {
public:
    using Milliseconds = std::chrono::milliseconds;
    /// The time since the machine was started, its sleep included; a test moves its own.
    using Now = std::function<Milliseconds()>;

    /// \a longest is the longest time between two checks while neither happens.
    explicit SleepWatch(Milliseconds longest, Now now = {});

    /// Whether the machine slept since the last check; false at the first.
    bool hasSlept();

private:
    const Milliseconds m_longest;
    Now m_now;
    Milliseconds m_last {-1};
};
