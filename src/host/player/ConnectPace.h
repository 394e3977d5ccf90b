// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <chrono>

/// Rate limit for connections: a burst of fifteen, then one per second, so at most 45 in any half
/// minute. Without it, a playlist of many entries that fail at once would flood the servers it
/// names. Not thread-safe.
class ConnectPace {
public:
    using Clock = std::chrono::steady_clock;
    static constexpr int Burst = 15;
    static constexpr std::chrono::milliseconds Interval {1000};

    /// Registers a connection and returns how long to wait before opening it.
    std::chrono::milliseconds next(Clock::time_point now);

private:
    Clock::time_point m_due; ///< when the next connection is due at the even rate
};
