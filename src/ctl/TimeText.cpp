// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/TimeText.h"

#include "api/core/Language.h"
#include "ctl/HostSession.h"

#include <QDateTime>
#include <QLocale>
#include <QRegularExpression>

#include <algorithm>

namespace {

constexpr int SecondsPerMinute = 60;
constexpr int SecondsPerHour = 3600;
constexpr int DaysPerWeek = 7;

int numberIn(const QRegularExpressionMatch &match, const char *name)
{
    return match.captured(QLatin1String(name)).toInt();
}

QRegularExpressionMatch matchOf(const QString &pattern, const QString &text)
{
    return QRegularExpression(QRegularExpression::anchoredPattern(pattern)).match(text);
}

/// From 1; 0 when it is none. The English names, from two letters on.
int dayIn(const QString &text)
{
    static const QStringList names {QStringLiteral("monday"), QStringLiteral("tuesday"),
        QStringLiteral("wednesday"), QStringLiteral("thursday"), QStringLiteral("friday"),
        QStringLiteral("saturday"), QStringLiteral("sunday")};
    for (int day = 1; day <= DaysPerWeek; ++day) {
        if (text == QString::number(day)
            || (text.size() >= 2 && names.at(day - 1).startsWith(text)))
            return day;
    }
    return 0;
}

/// Days by a word for several of them.
std::optional<QList<int>> namedDays(const QString &text)
{
    if (text == QLatin1String("once"))
        return QList<int>();
    if (text == QLatin1String("daily"))
        return QList<int> {1, 2, 3, 4, 5, 6, 7};
    if (text == QLatin1String("weekdays"))
        return QList<int> {1, 2, 3, 4, 5};
    if (text == QLatin1String("weekends"))
        return QList<int> {6, 7};
    return std::nullopt;
}

QString dayText(int day)
{
    QString name = QLocale(Language::current()).standaloneDayName(day, QLocale::ShortFormat);
    return name.remove(QLatin1Char('.'));
}

} // namespace

std::optional<int> parseNumber(const QString &text)
{
    const auto match = matchOf(QStringLiteral("[0-9]{1,6}"), text);
    return match.hasMatch() ? std::optional(text.toInt()) : std::nullopt;
}

std::optional<int> parseDuration(const QString &text)
{
    auto match = matchOf(QStringLiteral("(?:(?<h>[0-9]{1,3}):(?=[0-9]{2}:))?(?<m>[0-9]{1,3}):"
                                        "(?<s>[0-5][0-9])"),
        text);
    const bool hasHours = !match.captured(QStringLiteral("h")).isEmpty();
    if (match.hasMatch() && hasHours && numberIn(match, "m") >= SecondsPerMinute)
        return std::nullopt;
    if (!match.hasMatch())
        match = matchOf(QStringLiteral("(?=.)(?:(?<h>[0-9]{1,3})h)?(?:(?<m>[0-9]{1,5})m)?"
                                       "(?:(?<s>[0-9]{1,6})s?)?"),
            text);
    if (!match.hasMatch())
        return std::nullopt;
    return numberIn(match, "h") * SecondsPerHour + numberIn(match, "m") * SecondsPerMinute
        + numberIn(match, "s");
}

QString durationText(int seconds)
{
    const int minutes = seconds / SecondsPerMinute;
    const auto twoDigits
        = [](int number) { return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0')); };
    const QString rest = twoDigits(seconds % SecondsPerMinute);
    if (seconds < SecondsPerHour)
        return QStringLiteral("%1:%2").arg(minutes).arg(rest);
    return QStringLiteral("%1:%2:%3")
        .arg(seconds / SecondsPerHour)
        .arg(twoDigits(minutes % SecondsPerMinute), rest);
}

int wholeSeconds(const QVariant &seconds)
{
    constexpr double Most = 1000.0 * SecondsPerHour - 1;
    const double number = seconds.toDouble();
    // Not a number compares false with everything.
    return number > 0 ? static_cast<int>(std::min(number, Most)) : 0;
}

QString behindText(const QVariant &seconds)
{
    const int whole = wholeSeconds(seconds);
    return whole > 0 ? ctlText("%1 behind live").arg(durationText(whole)) : QString();
}

std::optional<QString> parseTimeOfDay(const QString &text)
{
    const auto match = matchOf(QStringLiteral("(?:[01]?[0-9]|2[0-3]):[0-5][0-9]"), text);
    if (!match.hasMatch())
        return std::nullopt;
    constexpr int Whole = 5;
    return text.rightJustified(Whole, QLatin1Char('0'));
}

std::optional<QList<int>> parseDays(const QString &text)
{
    const QString wanted = text.toLower();
    if (const auto days = namedDays(wanted))
        return days;
    QList<int> days;
    const QStringList parts = wanted.split(QLatin1Char(','));
    for (const QString &part : parts) {
        const QStringList ends = part.split(QLatin1Char('-'));
        int day = dayIn(ends.first());
        const int last = dayIn(ends.last());
        if (ends.size() > 2 || day == 0 || last == 0)
            return std::nullopt;
        for (days.append(day); day != last; days.append(day))
            day = day % DaysPerWeek + 1;
    }
    std::sort(days.begin(), days.end());
    days.erase(std::unique(days.begin(), days.end()), days.end());
    return days;
}

QString daysText(const QList<int> &days)
{
    if (days.isEmpty())
        return ctlText("once");
    if (days.size() == DaysPerWeek)
        return ctlText("every day");
    QStringList parts;
    for (int i = 0; i < days.size();) {
        int end = i;
        while (end + 1 < days.size() && days.at(end + 1) == days.at(end) + 1)
            ++end;
        constexpr int LeastRange = 2;
        if (end - i < LeastRange)
            end = i;
        const QString first = dayText(days.at(i));
        parts.append(end == i ? first : QStringLiteral("%1-%2").arg(first, dayText(days.at(end))));
        i = end + 1;
    }
    return parts.join(QLatin1String(", "));
}

QString clockText(const QString &time, bool withDay)
{
    const QDateTime at = QDateTime::fromString(time, Qt::ISODate);
    if (!at.isValid())
        return {};
    const QString clock = at.time().toString(QStringLiteral("HH:mm"));
    return withDay ? QStringLiteral("%1 %2").arg(dayText(at.date().dayOfWeek()), clock) : clock;
}
