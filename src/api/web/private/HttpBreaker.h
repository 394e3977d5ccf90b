// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"

#include <QByteArray>
#include <QHash>

#include <chrono>
#include <functional>

/// Which addresses have just timed out: asking them again at once would make each caller wait for
/// as long again. Bounded. One thread.
class VESK_API HttpBreaker {
public:
    using Clock = std::chrono::steady_clock;
    using Now = std::function<Clock::time_point()>;

    /// For so long an address that timed out is not asked again.
    static constexpr std::chrono::seconds OpenTime {30};
    static constexpr int MaxAddresses = 64;

    /// \a now is the time; empty for the machine's.
    explicit HttpBreaker(Now now = {});

    void timedOut(const QByteArray &address);
    void answered(const QByteArray &address) { m_until.remove(address); }
    bool isOpen(const QByteArray &address);

private:
    void forgetOld();

    const Now m_now;
    QHash<QByteArray, Clock::time_point> m_until;
};
