// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/alarm/AlarmBook.h"

#include <algorithm>

const Alarm *AlarmBook::find(const QString &id) const
{
    const auto found = std::find_if(
        m_alarms.begin(), m_alarms.end(), [&](const Alarm &alarm) { return alarm.id == id; });
    return found == m_alarms.end() ? nullptr : &*found;
}

void AlarmBook::put(const Alarm &alarm)
{
    const auto place = std::find_if(m_alarms.begin(), m_alarms.end(),
        [&](const Alarm &other) { return other.id.toLongLong() >= alarm.id.toLongLong(); });
    if (place != m_alarms.end() && place->id == alarm.id)
        *place = alarm;
    else if (m_alarms.size() < MaxAlarms)
        m_alarms.insert(place, alarm);
}

void AlarmBook::remove(const QString &id)
{
    m_alarms.erase(std::remove_if(m_alarms.begin(), m_alarms.end(),
                       [&](const Alarm &alarm) { return alarm.id == id; }),
        m_alarms.end());
}

void AlarmBook::snooze(const QString &id, Moment until)
{
    for (Alarm &alarm : m_alarms) {
        if (alarm.id == id)
            alarm.snoozedUntil = until;
    }
}

std::optional<Moment> AlarmBook::next(const Alarm &alarm, const UtcOffset &offset)
{
    if (!alarm.enabled)
        return {};
    const auto next = nextMoment(alarm.time, alarm.accounted, offset);
    return next && *next == alarm.skipped ? nextMoment(alarm.time, *next, offset) : next;
}

std::optional<Moment> AlarmBook::next(const UtcOffset &offset) const
{
    std::optional<Moment> first;
    for (const Alarm &alarm : m_alarms) {
        const auto next = AlarmBook::next(alarm, offset);
        if (next && (!first || *next < *first))
            first = next;
    }
    return first;
}

AlarmBook::Advance AlarmBook::advance(Moment now, const UtcOffset &offset)
{
    Advance advance;
    for (Alarm &alarm : m_alarms) {
        const auto missedBefore = m_missed;
        bool isChanged = turnBack(alarm, now);
        while (const auto next = AlarmBook::next(alarm, offset)) {
            if (*next > now)
                break;
            isChanged = true;
            alarm.accounted = *next;
            if (now - *next <= Lateness) {
                alarm.rung = *next;
                advance.due.append({alarm.id, *next});
            } else if (*next != alarm.rung) {
                // Else the host ended while it rang.
                miss(alarm, *next);
            }
            if (alarm.isOnce())
                alarm.enabled = false;
            else
                alarm.accounted = std::max(alarm.accounted, now - MissedTime);
        }
        if (isChanged)
            advance.changed.append(alarm.id);
        advance.isMissedChanged |= m_missed != missedBefore;
    }
    std::stable_sort(advance.due.begin(), advance.due.end(),
        [](const Due &a, const Due &b) { return a.at < b.at; });
    return advance;
}

/// If the clock shows less than the alarm has behind it, the times from now on are yet to come.
/// Returns whether that is so.
bool AlarmBook::turnBack(Alarm &alarm, Moment now)
{
    if (now >= alarm.accounted)
        return false;
    const auto isToCome
        = [&](const MissedAlarm &missed) { return missed.id == alarm.id && missed.at > now; };
    // What switched it off was that it was missed, unless it was set since.
    const bool wasMissed = m_missed.contains({alarm.id, alarm.accounted});
    if (alarm.isOnce() && wasMissed)
        alarm.enabled = true;
    m_missed.erase(std::remove_if(m_missed.begin(), m_missed.end(), isToCome), m_missed.end());
    if (alarm.rung > now)
        alarm.skipped = alarm.rung - now < ClockError ? alarm.rung : 0;
    alarm.accounted = now;
    return true;
}

void AlarmBook::miss(const Alarm &alarm, Moment at)
{
    const auto place = std::upper_bound(m_missed.begin(), m_missed.end(), at,
        [](Moment moment, const MissedAlarm &missed) { return moment < missed.at; });
    m_missed.insert(place, {alarm.id, at});
    if (m_missed.size() > MaxMissed)
        m_missed.removeFirst();
}
