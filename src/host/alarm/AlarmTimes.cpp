// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/alarm/AlarmTimes.h"

#include <QDate>
#include <QDateTime>
#include <QRegularExpression>

#include <algorithm>

namespace {

constexpr Moment Hour = 3600;
constexpr Moment Day = 24 * Hour;
/// No zone has ever been further from UTC than this.
constexpr Moment MaxOffset = 16 * Hour;
/// Two changes of an offset are further apart than this.
constexpr Moment Step = Hour;
/// A date line that moves can take away the one day in a week.
constexpr int MaxDays = 15;

Moment shown(Moment moment, const UtcOffset &offset)
{
    return moment + offset(moment);
}

/// The first moment after \a before with another offset than there; \a until has another one.
Moment changeBetween(Moment before, Moment until, const UtcOffset &offset)
{
    const int old = offset(before);
    while (until - before > 1) {
        const Moment middle = before + (until - before) / 2;
        (offset(middle) == old ? before : until) = middle;
    }
    return until;
}

/// The first moment at which clocks show \a local, or more. Clocks that are set make that more than
/// the opposite of shown(). \a local is in seconds since the clocks showed the beginning of 1970.
Moment firstMoment(Moment local, const UtcOffset &offset)
{
    Moment from = local - MaxOffset;
    const Moment end = local + MaxOffset;
    while (from < end) {
        const int present = offset(from);
        Moment until = from + Step;
        const bool isChange = offset(until) != present;
        if (isChange)
            until = changeBetween(from, until, offset);
        const Moment wanted = std::max(from, local - present);
        if (wanted < until)
            return wanted;
        from = until;
    }
    return end;
}

Moment floorToDay(Moment local)
{
    const Moment inDay = local % Day;
    return local - (inDay < 0 ? inDay + Day : inDay);
}

/// 1 to 7.
int weekday(Moment startOfDay)
{
    return QDate(1970, 1, 1).addDays(startOfDay / Day).dayOfWeek();
}

/// Whether clocks ever show the day that begins at \a startOfDay.
bool exists(Moment startOfDay, const UtcOffset &offset)
{
    return shown(firstMoment(startOfDay, offset), offset) < startOfDay + Day;
}

} // namespace

std::optional<WeeklyTime> WeeklyTime::parse(const QString &text)
{
    static const QRegularExpression form(QStringLiteral("\\A([01][0-9]|2[0-3]):([0-5][0-9])\\z"));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return {};
    return WeeklyTime {match.captured(1).toInt(), match.captured(2).toInt()};
}

QString WeeklyTime::text() const
{
    const QLatin1Char zero('0');
    return QStringLiteral("%1:%2").arg(hour, 2, 10, zero).arg(minute, 2, 10, zero);
}

std::optional<Moment> nextMoment(const WeeklyTime &time, Moment after, const UtcOffset &offset)
{
    // From the day before, whose alarm the end of a gap may have put into this one.
    Moment day = floorToDay(shown(after, offset)) - Day;
    for (int i = 0; i <= MaxDays; ++i, day += Day) {
        if (!time.days.isEmpty() && !time.days.contains(weekday(day)))
            continue;
        const Moment moment = firstMoment(day + time.hour * Hour + time.minute * 60, offset);
        if (moment <= after)
            continue;
        if (shown(moment, offset) < day + Day || exists(day, offset))
            return moment;
    }
    return {};
}

QString isoText(Moment moment, const UtcOffset &offset)
{
    return QDateTime::fromSecsSinceEpoch(moment)
        .toOffsetFromUtc(offset(moment))
        .toString(Qt::ISODate);
}
