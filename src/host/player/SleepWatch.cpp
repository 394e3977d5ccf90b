// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/SleepWatch.h"

#include <ctime>
#include <utility>

namespace {

/// steady_clock is CLOCK_MONOTONIC, which stands still during suspend.
std::chrono::milliseconds sinceBoot()
{
    timespec now {};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return std::chrono::seconds(now.tv_sec)
        + std::chrono::milliseconds(now.tv_nsec / (1000 * 1000));
}

} // namespace

SleepWatch::SleepWatch(Milliseconds longest, Now now)
    : m_longest(longest)
    , m_now(now ? std::move(now) : Now(&sinceBoot))
{
}

bool SleepWatch::hasSlept()
{
    const Milliseconds now = m_now();
    const bool slept = m_last >= Milliseconds::zero() && now - m_last > m_longest;
    m_last = now;
    return slept;
}
