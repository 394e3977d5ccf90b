// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <chrono>

/// Keeps what fails at once from running servers over: the first fifteen connections of a while as
/// they come, then one a second, so that no half minute sees more than 45. A playlist may name as
/// many entries as it likes, on whatever servers. Not thread-safe.
class ConnectPace {
public:
    using Clock = std::chrono::steady_clock;
    static constexpr int Burst = 15;
    static constexpr std::chrono::milliseconds Interval {1000};

    /// Counts a connection; returns how long to wait before it.
    std::chrono::milliseconds next(Clock::time_point now);

private:
    Clock::time_point m_due; ///< of the next connection if they came evenly
};
