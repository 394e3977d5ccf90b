// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/stations/StationsData.h"

#include "api/web/VeskUrl.h"

#include <algorithm>
#include <numeric>

bool operator==(const StationsEntry &a, const StationsEntry &b)
{
    return a.title == b.title && a.address == b.address && a.picture == b.picture
        && a.description == b.description && a.entries == b.entries;
}

int StationsFile::skippedCount() const
{
    return std::accumulate(skipped.begin(), skipped.end(), 0,
        [](int count, const auto &reason) { return count + reason.second; });
}

TrString stationsTr(const char *source, const QVector<TrArg> &arguments)
{
    return stationsCountTr(source, -1, arguments);
}

TrString stationsCountTr(const char *source, int count, const QVector<TrArg> &arguments)
{
    return TrString(
        QStringLiteral("Stations"), QString::fromLatin1(source), QString(), count, arguments);
}

QString stationsText(const QString &text, int longest)
{
    // Cut before it is looked at any closer: it may be a megabyte.
    QString line = text.left(4 * longest);
    for (int i = 0; i < line.size(); ++i) {
        const QChar c = line.at(i);
        const bool isPair
            = c.isHighSurrogate() && i + 1 < line.size() && line.at(i + 1).isLowSurrogate();
        if (isPair)
            ++i;
        else if (c.category() == QChar::Other_Control || c.isSurrogate() || c >= QChar(0xFFFE))
            line[i] = QLatin1Char(' ');
    }
    line = line.simplified().left(longest);
    if (!line.isEmpty() && line.at(line.size() - 1).isHighSurrogate())
        line.chop(1);
    return line.trimmed();
}

QString stationsAddress(const QString &text)
{
    const QString trimmed = text.trimmed();
    if (trimmed.size() > StationsLimits::Address)
        return {};
    const VeskUrl url(trimmed);
    const QString scheme = url.scheme().toLower();
    const bool isWeb = scheme == QLatin1String("http") || scheme == QLatin1String("https");
    if (!isWeb || url.host().isEmpty() || url.toString().size() > StationsLimits::Address)
        return {};
    return url.toString();
}

QString stationsTitle(const QString &address)
{
    const VeskUrl url(address);
    QString path = url.path();
    while (path.endsWith(QLatin1Char('/')))
        path.chop(1);
    return stationsText(url.host() + path, StationsLimits::Title);
}

int stationsCount(const std::vector<StationsEntry> &entries)
{
    return std::accumulate(
        entries.begin(), entries.end(), 0, [](int count, const StationsEntry &entry) {
            return count + (entry.isFolder() ? stationsCount(entry.entries) : 1);
        });
}

StationsEntry *stationsFolderIn(std::vector<StationsEntry> &entries, const QString &title)
{
    const auto found = std::find_if(entries.begin(), entries.end(),
        [&title](const StationsEntry &entry) { return entry.isFolder() && entry.title == title; });
    return found == entries.end() ? nullptr : &*found;
}
