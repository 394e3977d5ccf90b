// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/VeskRoles.h"
#include "host/alarm/AlarmTimes.h"

#include <QString>
#include <QVector>

#include <optional>

/// An alarm, and how far its past is accounted for.
struct Alarm {
    /// The longest fade.
    static constexpr int MaxFade = 600;

    QString id; ///< a number from 1 on, never given twice
    WeeklyTime time;
    bool enabled = true;
    /// 0 to 100; nothing: the player's own.
    std::optional<int> volume = {};
    int fade = 0; ///< in seconds, from silence to the volume
    /// What to play, as its screen listed it; empty: the host's own sound.
    VeskRoles row = {};

    bool isOnce() const { return time.days.isEmpty(); }

    /// Its times up to here have rung, or were told as missed, or were before it was set.
    Moment accounted = 0;
    /// The last of its times that rang; 0 before the first.
    Moment rung = 0;
    /// A time that does not ring, because it rang before the clock was set back; 0: none.
    Moment skipped = 0;
    /// When it rings again after a snooze; 0: not.
    Moment snoozedUntil = 0;
};

/// An alarm that did not ring, because the host or the machine did not run.
struct MissedAlarm {
    QString id;
    Moment at = 0;

    bool operator==(const MissedAlarm &other) const { return id == other.id && at == other.at; }
};

/// The alarms, and which of them are due: a value, without clock, sound or disk. No time rings
/// twice, and none is lost without being told, whatever the clock is set to and however long nobody
/// looked:
///
/// - What is due for no longer than Lateness rings; what is older is missed.
/// - When the clock is set back, the times that come again have not been missed after all. The one
///   that rang does not ring again, unless the clock was set back by ClockError or more: then it
///   was wrong, and the time that it showed meant nothing.
class AlarmBook {
public:
    static constexpr int MaxAlarms = 64;
    static constexpr Moment Lateness = 15 * 60;
    static constexpr Moment ClockError = 12 * 3600;
    /// The most that are told as missed: the latest ones, and of a clock that was set forward, or a
    /// host that was off for longer, those of the last two weeks.
    static constexpr int MaxMissed = 64;
    static constexpr Moment MissedTime = 14 * 24 * 3600;

    const QVector<Alarm> &alarms() const { return m_alarms; }
    const QVector<MissedAlarm> &missed() const { return m_missed; }
    /// Null if there is none.
    const Alarm *find(const QString &id) const;

    /// Adds it, or replaces the one with its id; without more than MaxAlarms.
    void put(const Alarm &alarm);
    void remove(const QString &id);
    void setMissed(const QVector<MissedAlarm> &missed) { m_missed = missed; }
    void snooze(const QString &id, Moment until);

    /// When \a alarm rings, but for a snooze; nothing while it is off.
    static std::optional<Moment> next(const Alarm &alarm, const UtcOffset &offset);
    /// When the first of them does.
    std::optional<Moment> next(const UtcOffset &offset) const;

    /// An alarm that is due now.
    struct Due {
        QString id;
        Moment at = 0;
    };
    struct Advance {
        QVector<Due> due; ///< in the order of their times
        QVector<QString> changed; ///< alarms that are not as they were
        bool isMissedChanged = false;
    };
    /// Accounts for everything up to \a now.
    Advance advance(Moment now, const UtcOffset &offset);

private:
    bool turnBack(Alarm &alarm, Moment now);
    void miss(const Alarm &alarm, Moment at);

    QVector<Alarm> m_alarms; ///< by id
    QVector<MissedAlarm> m_missed; ///< the earliest first
};
