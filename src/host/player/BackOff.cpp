// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/BackOff.h"

#include <QRandomGenerator>

#include <algorithm>

namespace {

/// The most jitter to add, relative to the wait. LongestBase leaves room for it.
constexpr double Jitter = 0.5;
constexpr BackOff::Milliseconds LongestBase {
    static_cast<int>(BackOff::Longest.count() / (1 + Jitter))};

} // namespace

BackOff::BackOff(std::function<double()> random)
    : m_random(std::move(random))
{
    if (!m_random)
        m_random = [] { return QRandomGenerator::global()->generateDouble(); };
}

BackOff::Milliseconds BackOff::next(Milliseconds asked)
{
    const double factor = 1 + Jitter * m_random();
    const auto wait = std::chrono::duration_cast<Milliseconds>(m_base * factor);
    m_base = std::min(2 * m_base, LongestBase);
    return std::max(wait, std::min(asked, LongestAsked));
}
