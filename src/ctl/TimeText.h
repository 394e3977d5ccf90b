// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QList>
#include <QString>
#include <QVariant>

#include <optional>

/// \file
/// Times and numbers as users type and read them. What is typed is read strictly: nothing for
/// anything that is not wholly one. Pure functions, main thread.

/// A number without a sign, of at most six digits.
std::optional<int> parseNumber(const QString &text);
/// Seconds: "1:20:00" and "4:05" (hours, minutes, seconds), "90" (seconds), "90s", "5m", "1h20m".
/// Less than 1,000 hours.
std::optional<int> parseDuration(const QString &text);
/// "0:05", "4:05", "1:20:00".
QString durationText(int seconds);
/// A host's number of seconds, from 0 to less than 1,000 hours.
int wholeSeconds(const QVariant &seconds);
/// How far behind live something is; empty when it is not.
QString behindText(const QVariant &seconds);

/// A time of day, as "07:30": from "7:30" or "07:30".
std::optional<QString> parseTimeOfDay(const QString &text);
/// Days of the week from 1 (Monday) to 7, ascending: from "mon", "mon-fri", "sat,sun", "1-5",
/// "fri-mon", "daily", "weekdays" or "weekends"; none for "once".
std::optional<QList<int>> parseDays(const QString &text);
/// Such days in the present language: "Mon-Fri", "Sat, Sun", "every day", "once".
QString daysText(const QList<int> &days);

/// The time of day of \a time, which is ISO 8601, as its own time zone has it: "23:30", and with
/// \a withDay "Mon 23:30". Empty for no time.
QString clockText(const QString &time, bool withDay);
