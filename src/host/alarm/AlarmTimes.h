// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>
#include <QVector>

#include <functional>
#include <optional>

/// \file
/// When alarms go off: the clock on the wall as a function of the time that passes. Pure functions,
/// any thread.

/// Whole seconds since 1970, UTC.
using Moment = qint64;

/// How many seconds the clocks are ahead of UTC at a moment. Of a time zone with summer time it
/// returns different values over the year.
using UtcOffset = std::function<int(Moment)>;

/// A time on the clock, and the days that have it.
struct WeeklyTime {
    int hour = 0; ///< 0 to 23
    int minute = 0; ///< 0 to 59
    /// 1 (Monday) to 7; empty: every day.
    QVector<int> days = {};

    /// "07:30"; exactly five characters. Nothing for any other text. Leaves `days` empty.
    static std::optional<WeeklyTime> parse(const QString &text);
    /// The opposite of parse().
    QString text() const;

    bool operator==(const WeeklyTime &other) const
    {
        return hour == other.hour && minute == other.minute && days == other.days;
    }
};

/// The first moment after \a after at which clocks with \a offset show \a time on one of its days.
///
/// A time that a day does not have, because the clocks are set forward over it, stands for the
/// first moment after the gap. Of a time that a day has twice, because the clocks are set back over
/// it, only the first one counts. A day that does not exist at all is left out. Nothing if there is
/// no such moment within two weeks, which takes a zone without that day of the week.
std::optional<Moment> nextMoment(const WeeklyTime &time, Moment after, const UtcOffset &offset);

/// "2026-11-23T07:30:00+01:00".
QString isoText(Moment moment, const UtcOffset &offset);
