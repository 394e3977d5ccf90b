// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <mutex>
#include <string>

/// Remembers which errors the log was told lately: one that is met with every request, because a
/// client asks every few seconds, is told once and not again for ten minutes. Any thread.
class RepeatedErrors {
public:
    using Clock = std::chrono::steady_clock;

    static constexpr std::chrono::minutes Silence {10};
    /// Errors beyond these push out the ones that were told first.
    static constexpr std::size_t MaxErrors = 64;

    /// Whether \a error, its source and its text, is to be told at that time.
    bool isNews(const std::string &error, Clock::time_point now);

private:
    struct Told {
        std::string error;
        Clock::time_point time;
    };

    std::mutex m_mutex;
    /// Guarded by m_mutex: in the order in which they were told.
    std::deque<Told> m_told;
};
