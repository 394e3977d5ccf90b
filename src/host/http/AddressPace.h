// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QHash>

#include <chrono>

/// How fast requests may come from one client, a device or a stranger's address, and how long one
/// waits that guesses tokens. Not thread-safe. Times are the caller's, so that nothing here waits.
class AddressPace {
public:
    using Clock = std::chrono::steady_clock;

    /// Requests that an address may send at once, and then in each second.
    struct Rate {
        double burst;
        double perSecond;
    };
    /// A page with its pictures, scrolled fast.
    static constexpr Rate Paired {600, 100};
    /// The pairing page, and somebody who types.
    static constexpr Rate Stranger {60, 5};
    /// After so long without a wrong token, an address begins anew.
    static constexpr std::chrono::seconds Forgiven {60};
    static constexpr std::chrono::seconds LongestWait {10};
    /// Addresses that are remembered; with more, the one seen longest ago is forgotten.
    static constexpr int MaxAddresses = 1024;

    /// Whether a request may come now; counts it, if so.
    bool take(const QByteArray &address, bool isPaired, Clock::time_point now);
    /// A wrong token was shown. How long the answer has to wait: a second longer each time.
    std::chrono::milliseconds wrongToken(const QByteArray &address, Clock::time_point now);
    int addresses() const { return m_known.size(); }

private:
    struct Bucket {
        double used = 0;
        Clock::time_point at;
        bool take(const Rate &rate, Clock::time_point now);
    };
    struct Known {
        Bucket paired;
        Bucket stranger;
        int wrong = 0;
        Clock::time_point lastWrong;
        Clock::time_point seen;
    };

    Known &known(const QByteArray &address, Clock::time_point now);

    QHash<QByteArray, Known> m_known;
};
