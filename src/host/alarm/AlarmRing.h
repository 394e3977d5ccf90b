// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/alarm/AlarmBook.h"
#include "host/alarm/AlarmClock.h"
#include "host/alarm/PlayerFade.h"

#include <QObject>

#include <chrono>
#include <memory>
#include <optional>

class PlayLogic;

/// Lets one alarm ring at a time: plays its row, louder and louder, at the alarm's volume, also if
/// the player is muted. If that is silent for Patience, at the start or later, or ends for good,
/// the host's own sound takes its place until the end. What played before is stopped and does not
/// come back.
///
/// The alarm rings until stop() is called, until the listener pauses, stops or plays something
/// else, or for Longest; the host's own sound ends then, a station goes on playing. Volume and mute
/// come back with the end of the sound, unless the listener has changed them meanwhile; if
/// something else is played, it is not muted. Main thread.
class AlarmRing : public QObject {
    Q_OBJECT

public:
    /// How long there may be no sound before the host's own one.
    static constexpr std::chrono::seconds Patience {20};
    /// How often a row that cannot be played is tried again meanwhile.
    static constexpr std::chrono::seconds RetryTime {2};
    /// How often the host's own sound is tried while there is no output.
    static constexpr std::chrono::seconds OutputRetryTime {10};
    static constexpr std::chrono::hours Longest {1};
    /// The least volume of an alarm that has none of its own.
    static constexpr int LeastVolume = 20;

    /// The player as it was before, for after the alarm.
    struct Loudness {
        int volume = 0;
        bool isMuted = false;
    };

    /// What is pointed to must outlive it.
    AlarmRing(PlayLogic *logic, VolumeControl volume, PlayerFade *fade, AlarmClock *clock,
        QObject *parent = nullptr);
    ~AlarmRing() override;

    /// Replaces an alarm that rings.
    void start(const Alarm &alarm);
    /// Ends the sound of the alarm, if it rings.
    void stop();
    /// The host ends: the alarm neither stops nor rings any more.
    void leave();

    /// The id of the alarm that rings; empty: none.
    QString ringing() const { return m_phase == Phase::Ringing ? m_alarm.id : QString(); }
    /// What is still to be brought back.
    std::optional<Loudness> before() const { return m_before; }
    /// After a start of the host: what an earlier one could not bring back.
    void bringBack(const Loudness &before);

Q_SIGNALS:
    /// ringing() has become empty by itself, not by stop().
    void ended();
    /// before() is another one.
    void beforeChanged();

private:
    enum class Phase {
        Idle,
        Ringing,
        PlayingOn, ///< nobody stopped it in time; its station plays at its volume
    };

    void play(const VeskRoles &row);
    void playRow();
    void playOwnSound();
    void lookLater();
    void look();
    void lookAtEnd(bool hasFailed);
    void onLongest();
    void finish(bool isSoundOver);
    void restore(bool isSoundOver);

    PlayLogic *const m_logic;
    const VolumeControl m_volume;
    PlayerFade *const m_fade;
    Phase m_phase = Phase::Idle;
    Alarm m_alarm;
    VeskHash m_playId; ///< of the alarm's play
    bool m_isOwnSound = false;
    bool m_isSounding = false;
    bool m_isStopRequested = false; ///< by the listener
    bool m_isLookPosted = false;
    std::optional<Loudness> m_before;
    int m_set = 0; ///< the volume that the alarm has set
    std::unique_ptr<AlarmTimer> m_patience;
    std::unique_ptr<AlarmTimer> m_retry;
    std::unique_ptr<AlarmTimer> m_longest;
};
