// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/Result.h"
#include "host/alarm/AlarmClock.h"

#include <QObject>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

class Database;
class PlayLogic;
class PlayerFade;

/// Stops the player after a time, and fades out before. The time runs whatever the clock is set to,
/// and over changes of the station, pauses, breaks, and a new start of the host. It ends early when
/// the listener stops the player, or an alarm rings. Main thread.
class SleepTimer : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::minutes Longest {24 * 60};
    static constexpr std::chrono::seconds LongestFade {600};

    using Answer = std::function<void(const Result<void, QString> &)>;

    /// All of them must outlive it.
    SleepTimer(PlayLogic *logic, PlayerFade *fade, Database *database, AlarmClock *clock,
        QObject *parent = nullptr);
    ~SleepTimer() override;

    /// Goes on with a timer of before the host's start.
    void load();
    /// The host ends; the timer goes on after its next start.
    void leave();

    /// Replaces the present one. It runs at once; \a done is called when it is on the disk, or with
    /// the reason why not, in words: then it does not run. \a fade is not longer than \a time.
    void start(std::chrono::minutes time, std::chrono::seconds fade, const Answer &done);
    void stop(const Answer &done);

    /// By the present time of the clock; nothing while there is no timer.
    std::optional<Moment> ends() const;
    /// Rounded up; zero while there is no timer.
    std::chrono::seconds left() const;

Q_SIGNALS:
    /// There is another timer, or none.
    void changed();

private:
    void run(std::chrono::seconds time, std::chrono::seconds fade);
    void fadeOut();
    void fallAsleep();
    void end(bool isSoundOver = false);
    void save(const Answer &done);

    PlayLogic *const m_logic;
    PlayerFade *const m_playerFade;
    Database *const m_database;
    AlarmClock *const m_clock;
    const std::unique_ptr<AlarmTimer> m_timer; ///< until the fade, then until the end
    std::chrono::seconds m_fade {0};
    bool m_isRunning = false;
    bool m_isFading = false;
    int m_number = 0; ///< of start() and stop()
};
