// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/stations/StationsFormats.h"
#include "modules/stations/StationsGatherer.h"
#include "modules/stations/StationsParsers.h"

#include <QStringList>
#include <QXmlStreamWriter>

#include <functional>

namespace {

/// A station, or an empty folder, with the folders around it; a folder's own title is the last of
/// them.
using Write = std::function<void(const QStringList &folders, const StationsEntry &entry)>;

/// Folders that hold something are told by what they hold.
void writeEach(
    const std::vector<StationsEntry> &entries, const QStringList &folders, const Write &write)
{
    for (const StationsEntry &entry : entries) {
        const QStringList inside = entry.isFolder() ? folders + QStringList(entry.title) : folders;
        if (entry.isFolder() && !entry.entries.empty())
            writeEach(entry.entries, inside, write);
        else
            write(inside, entry);
    }
}

QByteArray m3u(const QString &title, const std::vector<StationsEntry> &entries)
{
    QString text = QStringLiteral("#EXTM3U\n");
    const auto line = [&text](const char *name, const QString &value) {
        if (!value.isEmpty())
            text += QLatin1String(name) + value + QLatin1Char('\n');
    };
    line("#PLAYLIST:", title);
    bool isGroupOpen = false; // a group holds for the next address, which an empty folder has not
    writeEach(entries, {}, [&](const QStringList &folders, const StationsEntry &entry) {
        if (folders.isEmpty() && isGroupOpen)
            text += QStringLiteral("#EXTGRP:\n");
        line("#EXTGRP:", joinStationsFolders(folders));
        isGroupOpen = entry.isFolder();
        if (entry.isFolder())
            return;
        line("#EXTINF:-1,", entry.title);
        line("#EXTIMG:", entry.picture);
        line("#EXTDESC:", entry.description);
        line("", entry.address);
    });
    return text.toUtf8();
}

QByteArray pls(const QString &title, const std::vector<StationsEntry> &entries)
{
    int number = 0;
    QString text = QStringLiteral("[playlist]\n");
    const auto line = [&text, &number](const char *name, const QString &value) {
        if (!value.isEmpty()) {
            text += QLatin1String(name) + QString::number(number) + QLatin1Char('=') + value
                + QLatin1Char('\n');
        }
    };
    if (!title.isEmpty())
        text += QStringLiteral("X-GNOME-Title=") + title + QLatin1Char('\n');
    writeEach(entries, {}, [&](const QStringList &folders, const StationsEntry &entry) {
        ++number;
        line("Folder", joinStationsFolders(folders));
        if (entry.isFolder())
            return;
        line("File", entry.address);
        line("Title", entry.title);
        line("Length", QStringLiteral("-1"));
        line("Picture", entry.picture);
        line("Description", entry.description);
    });
    text += QStringLiteral("NumberOfEntries=%1\nVersion=2\n").arg(number);
    return text.toUtf8();
}

QByteArray xspf(const QString &title, const std::vector<StationsEntry> &entries)
{
    QByteArray bytes;
    QXmlStreamWriter writer(&bytes);
    writer.setAutoFormatting(true);
    const auto element = [&writer](const char *name, const QString &value) {
        if (!value.isEmpty())
            writer.writeTextElement(QLatin1String(name), value);
    };
    writer.writeStartDocument();
    writer.writeStartElement(QStringLiteral("playlist"));
    writer.writeDefaultNamespace(QStringLiteral("http://xspf.org/ns/0/"));
    writer.writeAttribute(QStringLiteral("version"), QStringLiteral("1"));
    element("title", title);
    writer.writeStartElement(QStringLiteral("trackList"));
    writeEach(entries, {}, [&](const QStringList &folders, const StationsEntry &entry) {
        writer.writeStartElement(QStringLiteral("track"));
        element("location", entry.address);
        if (!entry.isFolder())
            element("title", entry.title);
        element("annotation", entry.description);
        element("image", entry.picture);
        if (!folders.isEmpty()) {
            writer.writeStartElement(QStringLiteral("meta"));
            writer.writeAttribute(QStringLiteral("rel"), stationsFolderRelation());
            writer.writeCharacters(joinStationsFolders(folders));
            writer.writeEndElement();
        }
        writer.writeEndElement();
    });
    writer.writeEndDocument();
    return bytes;
}

void writeOutlines(QXmlStreamWriter &writer, const std::vector<StationsEntry> &entries)
{
    for (const StationsEntry &entry : entries) {
        const auto attribute = [&writer](const char *name, const QString &value) {
            if (!value.isEmpty())
                writer.writeAttribute(QLatin1String(name), value);
        };
        writer.writeStartElement(QStringLiteral("outline"));
        attribute("text", entry.title);
        if (!entry.isFolder()) {
            attribute("type", QStringLiteral("audio"));
            attribute("URL", entry.address);
            attribute("image", entry.picture);
            attribute("description", entry.description);
        }
        writeOutlines(writer, entry.entries);
        writer.writeEndElement();
    }
}

QByteArray opml(const QString &title, const std::vector<StationsEntry> &entries)
{
    QByteArray bytes;
    QXmlStreamWriter writer(&bytes);
    writer.setAutoFormatting(true);
    writer.writeStartDocument();
    writer.writeStartElement(QStringLiteral("opml"));
    writer.writeAttribute(QStringLiteral("version"), QStringLiteral("2.0"));
    writer.writeStartElement(QStringLiteral("head"));
    writer.writeTextElement(QStringLiteral("title"), title);
    writer.writeEndElement();
    writer.writeStartElement(QStringLiteral("body"));
    writeOutlines(writer, entries);
    writer.writeEndDocument();
    return bytes;
}

} // namespace

QByteArray writeStations(
    StationsFormat format, const QString &title, const std::vector<StationsEntry> &entries)
{
    switch (format) {
    case StationsFormat::Pls:
        return pls(title, entries);
    case StationsFormat::Xspf:
        return xspf(title, entries);
    case StationsFormat::Opml:
        return opml(title, entries);
    case StationsFormat::M3u:
        break;
    }
    return m3u(title, entries);
}
