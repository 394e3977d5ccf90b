#include "host/player/BackOff.h"

#include <QRandomGenerator>

#include <algorithm>

namespace {

/// The random part, as a share of the wait.
constexpr double Jitter = 0.5;

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
    m_base = std::min(2 * m_base, Longest);
    return std::max(std::min(wait, Longest), std::min(asked, LongestAsked));
}
