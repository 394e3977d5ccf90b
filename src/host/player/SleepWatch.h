// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <chrono>
#include <functional>

/// Detects that the machine slept or the process was stopped: more time passed between two checks
/// than the calling thread ever leaves between them. Not thread-safe.
class SleepWatch {
public:
    using Milliseconds = std::chrono::milliseconds;
    /// The time since boot, including suspend; replaceable for tests.
    using Now = std::function<Milliseconds()>;

    /// \a longest is the longest regular time between two checks.
    explicit SleepWatch(Milliseconds longest, Now now = {});

    /// Whether the machine slept since the previous call; false on the first one.
    bool hasSlept();

private:
    const Milliseconds m_longest;
    Now m_now;
    Milliseconds m_last {-1};
};
