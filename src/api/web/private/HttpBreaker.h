// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QHash>

#include <chrono>
#include <functional>

/// A circuit breaker: remembers which URLs have just timed out, because requesting them again at
/// once would make each caller wait for the whole timeout again. Remembers at most MaxAddresses
/// URLs. Not thread-safe.
class HttpBreaker {
public:
    using Clock = std::chrono::steady_clock;
    using Now = std::function<Clock::time_point()>;

    /// For how long a URL that timed out is not requested again.
    static constexpr std::chrono::seconds OpenTime {30};
    static constexpr int MaxAddresses = 64;

    /// \a now replaces the system clock, for tests.
    explicit HttpBreaker(Now now = {});

    void timedOut(const QByteArray &address);
    void answered(const QByteArray &address) { m_until.remove(address); }
    bool isOpen(const QByteArray &address);

private:
    void forgetOld();

    const Now m_now;
    QHash<QByteArray, Clock::time_point> m_until;
};
