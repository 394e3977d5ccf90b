// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/private/HttpBreaker.h"

#include <algorithm>

HttpBreaker::HttpBreaker(Now now)
    : m_now(now ? std::move(now) : Now(&Clock::now))
{
}

void HttpBreaker::timedOut(const QByteArray &address)
{
    forgetOld();
    if (m_until.size() >= MaxAddresses)
        m_until.erase(std::min_element(m_until.begin(), m_until.end()));
    m_until.insert(address, m_now() + OpenTime);
}

bool HttpBreaker::isOpen(const QByteArray &address)
{
    if (m_until.isEmpty())
        return false;
    forgetOld();
    return m_until.contains(address);
}

void HttpBreaker::forgetOld()
{
    const Clock::time_point now = m_now();
    for (auto it = m_until.begin(); it != m_until.end();)
        it = it.value() <= now ? m_until.erase(it) : std::next(it);
}
