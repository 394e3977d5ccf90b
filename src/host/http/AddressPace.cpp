// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/http/AddressPace.h"

#include <algorithm>

bool AddressPace::Bucket::take(const Rate &rate, Clock::time_point now)
{
    const double earned = std::chrono::duration<double>(now - at).count() * rate.perSecond;
    used = std::max(0.0, used - earned);
    at = now;
    if (used + 1 > rate.burst)
        return false;
    used += 1;
    return true;
}

bool AddressPace::take(const QByteArray &address, bool isPaired, Clock::time_point now)
{
    Known &from = known(address, now);
    return isPaired ? from.paired.take(Paired, now) : from.stranger.take(Stranger, now);
}

std::chrono::milliseconds AddressPace::wrongToken(const QByteArray &address, Clock::time_point now)
{
    Known &from = known(address, now);
    if (now - from.lastWrong > Forgiven)
        from.wrong = 0;
    from.lastWrong = now;
    ++from.wrong;
    return std::min<std::chrono::milliseconds>(std::chrono::seconds(from.wrong), LongestWait);
}

AddressPace::Known &AddressPace::known(const QByteArray &address, Clock::time_point now)
{
    if (m_known.size() >= MaxAddresses && !m_known.contains(address)) {
        const auto oldest = std::min_element(m_known.begin(), m_known.end(),
            [](const Known &a, const Known &b) { return a.seen < b.seen; });
        m_known.erase(oldest);
    }
    Known &from = m_known[address];
    from.seen = now;
    return from;
}
