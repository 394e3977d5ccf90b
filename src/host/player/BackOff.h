// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <chrono>
#include <functional>

/// How long to wait before the next try: from half a second, twice as long after each failure, up
/// to fifteen seconds, with a random part so that not everybody comes back to a restarted server at
/// once. Not thread-safe.
class BackOff {
public:
    using Milliseconds = std::chrono::milliseconds;
    static constexpr Milliseconds Shortest {500};
    static constexpr Milliseconds Longest {15000};
    /// The most that a server's Retry-After is heeded.
    static constexpr Milliseconds LongestAsked {120000};

    /// \a random gives numbers from 0 to below 1.
    explicit BackOff(std::function<double()> random = {});

    /// The time to wait now. \a asked is what the server asked for; zero when it did not.
    Milliseconds next(Milliseconds asked = Milliseconds::zero());
    /// What was tried went well.
    void reset() { m_base = Shortest; }

private:
    std::function<double()> m_random;
    Milliseconds m_base = Shortest;
};
