// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/stations/StationsGatherer.h"

#include "api/web/VeskUrl.h"

namespace {

StationsSkip reasonAgainst(const QString &address)
{
    const QString text = address.trimmed();
    const QString scheme = VeskUrl(text.left(StationsLimits::Address)).scheme().toLower();
    const bool isWeb = scheme == QLatin1String("http") || scheme == QLatin1String("https");
    // An address in other characters than ASCII is longer than it looks.
    const bool isLong = VeskUrl(text).toString().size() > StationsLimits::Address;
    return isWeb && isLong ? StationsSkip::TooLong : StationsSkip::NoWebAddress;
}

/// A slash that stands alone separates.
bool standsAlone(const QString &text, int at)
{
    const auto isEdge
        = [&text](int i) { return i < 0 || i >= text.size() || text.at(i) == QLatin1Char(' '); };
    return isEdge(at - 1) && isEdge(at + 1);
}

} // namespace

void StationsGatherer::addStation(const QStringList &folders, StationsEntry entry)
{
    const QString address = stationsAddress(entry.address);
    if (address.isEmpty())
        return skip(reasonAgainst(entry.address));
    // Before the folder, which is not made for a station that has no place any more.
    if (m_count >= StationsLimits::Entries)
        return skip(StationsSkip::TooMany);
    std::vector<StationsEntry> *const entries = folder(folders);
    if (!entries || !takePlace())
        return;
    entry.address = address;
    entry.title = stationsText(entry.title, StationsLimits::Title);
    if (entry.title.isEmpty())
        entry.title = stationsTitle(address);
    entry.picture = stationsAddress(entry.picture);
    entry.description = stationsText(entry.description, StationsLimits::Description);
    entries->push_back(std::move(entry));
}

std::vector<StationsEntry> *StationsGatherer::folder(const QStringList &folders)
{
    if (folders.size() > StationsLimits::Depth) {
        skip(StationsSkip::TooDeep);
        return nullptr;
    }
    std::vector<StationsEntry> *entries = &m_file->entries;
    for (const QString &name : folders) {
        const QString title = stationsText(name, StationsLimits::Title);
        if (title.isEmpty())
            continue;
        StationsEntry *found = stationsFolderIn(*entries, title);
        if (!found) {
            if (!takePlace())
                return nullptr;
            entries->push_back({title, {}, {}, {}});
            found = &entries->back();
        }
        entries = &found->entries;
    }
    return entries;
}

/// For one more entry, which takes it.
bool StationsGatherer::takePlace()
{
    if (m_count >= StationsLimits::Entries) {
        skip(StationsSkip::TooMany);
        return false;
    }
    ++m_count;
    return true;
}

QString joinStationsFolders(const QStringList &folders)
{
    QStringList escaped;
    for (const QString &folder : folders) {
        QString text;
        for (int i = 0; i < folder.size(); ++i) {
            const QChar c = folder.at(i);
            if (c == QLatin1Char('\\') || (c == QLatin1Char('/') && standsAlone(folder, i)))
                text.append(QLatin1Char('\\'));
            text.append(c);
        }
        escaped.append(text);
    }
    return escaped.join(QLatin1String(" / "));
}

QStringList splitStationsFolders(const QString &text)
{
    QStringList folders {QString()};
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        const QChar next = i + 1 < text.size() ? text.at(i + 1) : QChar();
        if (c == QLatin1Char('\\') && (next == QLatin1Char('\\') || next == QLatin1Char('/'))) {
            folders.last().append(next);
            ++i;
        } else if (c == QLatin1Char('/') && standsAlone(text, i)) {
            folders.append(QString());
        } else {
            folders.last().append(c);
        }
    }
    for (QString &folder : folders)
        folder = folder.trimmed();
    folders.removeAll(QString());
    return folders;
}
