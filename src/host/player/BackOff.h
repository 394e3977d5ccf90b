// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <chrono>
#include <functional>

/// Exponential back-off between tries: from half a second, doubled after each failure, up to
/// fifteen seconds, with random jitter so that clients do not all return to a restarted server at
/// the same time. Not thread-safe.
class BackOff {
public:
    using Milliseconds = std::chrono::milliseconds;
    static constexpr Milliseconds Shortest {500};
    static constexpr Milliseconds Longest {15000};
    /// The longest Retry-After that is honoured.
    static constexpr Milliseconds LongestAsked {120000};

    /// \a random returns numbers in [0, 1); empty: the global generator.
    explicit BackOff(std::function<double()> random = {});

    /// The time to wait before the next try. \a asked is the server's Retry-After; zero without
    /// one.
    Milliseconds next(Milliseconds asked = Milliseconds::zero());
    /// A try succeeded.
    void reset() { m_base = Shortest; }

private:
    std::function<double()> m_random;
    Milliseconds m_base = Shortest;
};
