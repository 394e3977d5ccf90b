// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QHash>
#include <QObject>
#include <QStringList>

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

class QThread;

/// The directory's servers, all of which offer the same: looked up when they are first asked for
/// and again after an hour, in random order, so that listeners spread over them. One that failed
/// is not named for five minutes, unless all have failed.
///
/// Own thread only, whose event loop brings what the look-up found. The look-up runs on a thread of
/// its own, which the destructor waits for.
class RadioBrowserServers : public QObject {
    Q_OBJECT

public:
    using Clock = std::chrono::steady_clock;
    using Now = std::function<Clock::time_point()>;
    /// Blocks; returns the servers' addresses ("https://de1.api.radio-browser.info"), none when it
    /// failed. Runs on any thread.
    using LookUp = std::function<QStringList()>;
    using Found = std::function<void(const QStringList &servers)>;

    static constexpr std::chrono::minutes PenaltyTime {5};
    static constexpr std::chrono::minutes LookUpLifetime {60};
    /// Until the next attempt after a look-up that brought nothing.
    static constexpr std::chrono::minutes FailedLookUpLifetime {1};

    explicit RadioBrowserServers(LookUp lookUp, Now now = &Clock::now);
    ~RadioBrowserServers() override;

    /// Has nothing looked up: \a server is the only one. An address that may not be used (no https,
    /// nor http to this machine) is logged and changes nothing.
    void setOnly(const QString &server);

    /// Calls \a found, now or later, with the servers to try, best first. Never empty: when the
    /// look-up fails it is the name that stands for all of them.
    void find(Found found);
    /// \a server did not answer, or not as a server should.
    void noteFailed(const QString &server);

private:
    void startLookUp();
    void takeLookUp(QStringList servers);
    QStringList usable();

    const LookUp m_lookUp;
    const Now m_now;
    std::unique_ptr<QThread> m_thread; ///< while a look-up runs
    std::vector<Found> m_waiting; ///< the same
    QStringList m_servers;
    Clock::time_point m_goodUntil = Clock::time_point::min();
    QHash<QString, Clock::time_point> m_failedUntil;
};
