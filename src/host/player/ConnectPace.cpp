// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/ConnectPace.h"

#include <algorithm>

std::chrono::milliseconds ConnectPace::next(Clock::time_point now)
{
    // A token bucket: connections may run ahead of the even rate by the burst.
    const auto allowance = Interval * (Burst - 1);
    m_due = std::max(m_due, now - allowance);
    const auto wait = std::max(m_due - now, Clock::duration::zero());
    m_due += Interval;
    return std::chrono::ceil<std::chrono::milliseconds>(wait);
}
