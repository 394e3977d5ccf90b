// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/stations/StationsFormats.h"
#include "modules/stations/StationsGatherer.h"
#include "modules/stations/StationsParsers.h"

#include "api/core/utf8.h"

#include <QStringList>

#include <map>
#include <optional>

namespace {

QStringList linesOf(const QByteArray &bytes)
{
    QString text = veskUtf8OrLatin1(bytes);
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return text.split(QLatin1Char('\n'));
}

/// What follows \a name at the beginning of \a line, in any case.
std::optional<QString> after(const char *name, const QString &line)
{
    const QLatin1String start(name);
    if (!line.startsWith(start, Qt::CaseInsensitive))
        return std::nullopt;
    return line.mid(start.size()).trimmed();
}

/// The lines about an entry, which stand before its address.
struct M3uEntry {
    StationsEntry entry;
    QString group;
    QString groupTitle;

    QStringList folders() const
    {
        if (!group.isEmpty())
            return splitStationsFolders(group);
        return groupTitle.isEmpty() ? QStringList() : QStringList(groupTitle);
    }
};

/// `-1 tvg-logo="http://a/b.png" group-title="Jazz",Title, with a comma`.
void readExtInf(const QString &text, M3uEntry &into)
{
    bool quoted = false;
    int begin = 0; // of the word
    int i = 0;
    const auto readWord = [&] {
        const QString word = text.mid(begin, i - begin);
        QString value = word.section(QLatin1Char('='), 1);
        value.remove(QLatin1Char('"'));
        if (after("tvg-logo=", word))
            into.entry.picture = value;
        else if (after("group-title=", word))
            into.groupTitle = value;
    };
    for (; i < text.size() && (quoted || text.at(i) != QLatin1Char(',')); ++i) {
        if (text.at(i) == QLatin1Char('"'))
            quoted = !quoted;
        if (quoted || !text.at(i).isSpace())
            continue;
        readWord();
        begin = i + 1;
    }
    // An attribute without its second quote took all of the line: the title follows the comma.
    if (i == text.size()) {
        into.entry.title = text.section(QLatin1Char(','), 1);
        return;
    }
    readWord();
    into.entry.title = text.mid(i + 1);
}

/// What a line "#NAME:..." says about the entry after it, or the file.
void readM3uRemark(
    const QString &line, M3uEntry &next, StationsFile &file, StationsGatherer &gatherer)
{
    std::optional<QString> text;
    if ((text = after("#EXTINF:", line))) {
        readExtInf(*text, next);
    } else if ((text = after("#EXTIMG:", line))) {
        // Some say before the address what it is a picture of.
        next.entry.picture = text->section(QLatin1Char(' '), -1);
    } else if ((text = after("#EXTDESC:", line))) {
        next.entry.description = *text;
    } else if ((text = after("#EXTGRP:", line))) {
        next.group = *text;
        gatherer.addFolder(splitStationsFolders(*text));
    } else if ((text = after("#PLAYLIST:", line))) {
        file.title = stationsText(*text, StationsLimits::Title);
    }
}

struct PlsEntry {
    StationsEntry entry;
    QString folder;
};

/// "File12" is member "file" of entry 12.
void readPlsLine(const QString &line, std::map<int, PlsEntry> &entries, StationsGatherer &gatherer)
{
    constexpr int MostDigits = 9;
    const int equals = line.indexOf(QLatin1Char('='));
    int digits = equals;
    while (digits > 0 && line.at(digits - 1).isDigit())
        --digits;
    const QString name = line.left(std::max(0, digits)).toLower();
    const int number
        = equals - digits <= MostDigits ? line.mid(digits, equals - digits).toInt() : 0;
    static const std::map<QString, QString StationsEntry::*> members {
        {QStringLiteral("file"), &StationsEntry::address},
        {QStringLiteral("title"), &StationsEntry::title},
        {QStringLiteral("picture"), &StationsEntry::picture},
        {QStringLiteral("description"), &StationsEntry::description},
    };
    const auto member = members.find(name);
    const bool isFolder = name == QLatin1String("folder");
    if (number <= 0 || (!isFolder && member == members.end()))
        return;
    const bool isNew = entries.find(number) == entries.end();
    if (isNew && entries.size() >= StationsLimits::Entries) {
        if (name == QLatin1String("file"))
            gatherer.skip(StationsSkip::TooMany);
        return;
    }
    PlsEntry &entry = entries[number];
    (isFolder ? entry.folder : entry.entry.*(member->second)) = line.mid(equals + 1).trimmed();
}

TrString notAList()
{
    return stationsTr(QT_TRANSLATE_NOOP("Stations", "This is no list of stations."));
}

} // namespace

StationsFile readStationsM3u(const QByteArray &bytes)
{
    StationsFile file;
    StationsGatherer gatherer(&file);
    M3uEntry next;
    const QStringList lines = linesOf(bytes);
    bool isMarked = false;
    for (const QString &each : lines) {
        const QString line = each.trimmed();
        if (after("#EXT-X-TARGETDURATION", line) || after("#EXT-X-STREAM-INF", line)) {
            StationsFile refused;
            refused.error = stationsTr(QT_TRANSLATE_NOOP(
                "Stations", "This is the playlist of one stream. Add the stream by its address."));
            return refused;
        }
        isMarked = isMarked || after("#EXTM3U", line);
        if (line.startsWith(QLatin1Char('#'))) {
            readM3uRemark(line, next, file, gatherer);
        } else if (!line.isEmpty()) {
            next.entry.address = line;
            gatherer.addStation(next.folders(), std::move(next.entry));
            next = {};
        }
    }
    // Any text is a list of something; without an address it is not one of stations.
    if (isMarked || stationsCount(file.entries) > 0)
        return file;
    StationsFile refused;
    refused.error = notAList();
    return refused;
}

StationsFile readStationsPls(const QByteArray &bytes)
{
    StationsFile file;
    StationsGatherer gatherer(&file);
    std::map<int, PlsEntry> entries;
    const QStringList lines = linesOf(bytes);
    for (const QString &line : lines) {
        if (const auto title = after("X-GNOME-Title=", line.trimmed()))
            file.title = stationsText(*title, StationsLimits::Title);
        else
            readPlsLine(line.trimmed(), entries, gatherer);
    }
    for (auto &[number, each] : entries) {
        const QStringList folders = splitStationsFolders(each.folder);
        if (!each.entry.address.isEmpty())
            gatherer.addStation(folders, std::move(each.entry));
        else if (!folders.isEmpty())
            gatherer.addFolder(folders);
        else
            gatherer.skip(StationsSkip::NoWebAddress);
    }
    return file;
}

StationsFile readStations(const QByteArray &bytes)
{
    StationsFile file;
    if (bytes.size() > StationsLimits::Bytes) {
        file.error = stationsTr(QT_TRANSLATE_NOOP("Stations", "The file is larger than 1 MiB."));
        return file;
    }
    constexpr int Beginning = 1000;
    QByteArray beginning = bytes.left(Beginning);
    const bool isUtf16 = beginning.startsWith("\xFF\xFE") || beginning.startsWith("\xFE\xFF");
    if (beginning.startsWith("\xEF\xBB\xBF"))
        beginning.remove(0, 3);
    beginning = beginning.trimmed();
    if (beginning.startsWith('<') || isUtf16)
        return readStationsXml(bytes);
    if (beginning.left(10).toLower() == "[playlist]")
        return readStationsPls(bytes);
    return readStationsM3u(bytes);
}

StationsFormat stationsFormat(const QString &name)
{
    for (const StationsFormat format :
        {StationsFormat::Pls, StationsFormat::Xspf, StationsFormat::Opml}) {
        if (name == stationsFormatName(format))
            return format;
    }
    return StationsFormat::M3u;
}

QString stationsFormatName(StationsFormat format)
{
    switch (format) {
    case StationsFormat::Pls:
        return QStringLiteral("pls");
    case StationsFormat::Xspf:
        return QStringLiteral("xspf");
    case StationsFormat::Opml:
        return QStringLiteral("opml");
    case StationsFormat::M3u:
        break;
    }
    return QStringLiteral("m3u");
}
