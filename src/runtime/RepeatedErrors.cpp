// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "runtime/RepeatedErrors.h"

#include <algorithm>

bool RepeatedErrors::isNews(const std::string &error, Clock::time_point now)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    while (!m_told.empty() && now - m_told.front().time >= Silence)
        m_told.pop_front();
    const bool isTold = std::any_of(
        m_told.begin(), m_told.end(), [&error](const Told &told) { return told.error == error; });
    if (isTold)
        return false;
    if (m_told.size() == MaxErrors)
        m_told.pop_front();
    m_told.push_back({error, now});
    return true;
}
