// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/stations/StationsGatherer.h"
#include "modules/stations/StationsParsers.h"

#include "api/core/qtversions.h"
#include "api/core/utf8.h"

#include <QStringList>
#include <QXmlStreamReader>

namespace {

bool isName(const VeskStringRef &name, const char *expected)
{
    return name.compare(QLatin1String(expected), Qt::CaseInsensitive) == 0;
}

/// Reads one XML file. What is neither an outline nor a track is passed over.
class XmlFile {
public:
    template <class Text>
    explicit XmlFile(const Text &text)
        : m_reader(text)
    {
    }

    StationsFile read();

private:
    void readTitle();
    void readOpml();
    void readBody();
    void readOutline();
    void skipOutline();
    void readXspf();
    void readTracks();
    void readTrack();
    bool next();
    QString attribute(std::initializer_list<const char *> names) const;
    QString text() { return m_reader.readElementText(QXmlStreamReader::SkipChildElements); }

    QXmlStreamReader m_reader;
    StationsFile m_file;
    StationsGatherer m_gatherer {&m_file};
    QStringList m_folders; ///< around the present outline
};

/// Advances to the next child element; false at the end of the present one.
bool XmlFile::next()
{
    return m_reader.readNextStartElement();
}

StationsFile XmlFile::read()
{
    // Up to the root only a definition of the document type may stand, which could define entities.
    while (!m_reader.atEnd() && !m_reader.isStartElement() && !m_reader.isDTD())
        m_reader.readNext();
    StationsFile refused;
    if (m_reader.isDTD()) {
        refused.error = stationsTr(QT_TRANSLATE_NOOP(
            "Stations", "The file defines a document type (DOCTYPE), which is not read."));
        return refused;
    }
    if (m_reader.isStartElement() && isName(m_reader.name(), "opml")) {
        readOpml();
    } else if (m_reader.isStartElement() && isName(m_reader.name(), "playlist")) {
        readXspf();
    } else if (!m_reader.hasError()) {
        refused.error = stationsTr(QT_TRANSLATE_NOOP("Stations", "This is no list of stations."));
        return refused;
    }
    // What follows the root has to be XML as well: half a file is not read.
    while (!m_reader.atEnd())
        m_reader.readNext();
    if (!m_reader.hasError())
        return m_file;
    refused.error = stationsTr(
        QT_TRANSLATE_NOOP("Stations", "The file is damaged: line %1 cannot be read as XML."),
        {TrArg(QString::number(m_reader.lineNumber()))});
    return refused;
}

void XmlFile::readTitle()
{
    m_file.title = stationsText(text(), StationsLimits::Title);
}

void XmlFile::readOpml()
{
    while (next()) {
        if (isName(m_reader.name(), "head")) {
            while (next())
                isName(m_reader.name(), "title") ? readTitle() : m_reader.skipCurrentElement();
        } else if (isName(m_reader.name(), "body")) {
            readBody();
        } else {
            m_reader.skipCurrentElement();
        }
    }
}

void XmlFile::readBody()
{
    while (next())
        isName(m_reader.name(), "outline") ? readOutline() : m_reader.skipCurrentElement();
}

QString XmlFile::attribute(std::initializer_list<const char *> names) const
{
    const QXmlStreamAttributes attributes = m_reader.attributes();
    for (const char *name : names) {
        for (const QXmlStreamAttribute &each : attributes) {
            if (isName(each.name(), name) && !each.value().isEmpty())
                return each.value().toString();
        }
    }
    return {};
}

/// With an address it is a station, or a link to another outline; else a folder, unless its type
/// says that it is a remark.
void XmlFile::readOutline()
{
    const QString type = attribute({"type"}).toLower();
    const QString title = stationsText(attribute({"text", "title"}), StationsLimits::Title);
    StationsEntry entry {title, attribute({"URL", "xmlUrl"}),
        attribute({"image", "imageUrl", "logo", "icon"}), attribute({"description", "subtext"})};
    const bool leadsOn = type == QLatin1String("link") || type == QLatin1String("include");
    const bool isStation = !entry.address.isEmpty() && !leadsOn;
    if (isStation)
        m_gatherer.addStation(m_folders, std::move(entry));
    else if (leadsOn && !entry.address.isEmpty())
        m_gatherer.skip(StationsSkip::NoStation);
    else if (type.isEmpty() && !title.isEmpty() && m_folders.size() < StationsLimits::Depth)
        m_gatherer.addFolder(m_folders + QStringList(title));

    const bool isTooDeep = m_folders.size() > StationsLimits::Depth;
    m_folders.append(title);
    while (next()) {
        if (!isName(m_reader.name(), "outline"))
            m_reader.skipCurrentElement();
        else if (isTooDeep)
            skipOutline();
        else
            readOutline();
    }
    m_folders.removeLast();
}

/// Each outline with an address counts, however deep. Without recursion: there may be thousands in
/// each other.
void XmlFile::skipOutline()
{
    int open = 0;
    do {
        if (m_reader.isStartElement()) {
            ++open;
            if (!attribute({"URL", "xmlUrl"}).isEmpty())
                m_gatherer.skip(StationsSkip::TooDeep);
        } else if (m_reader.isEndElement()) {
            --open;
        }
    } while (open > 0 && !m_reader.atEnd() && (m_reader.readNext(), true));
}

void XmlFile::readXspf()
{
    while (next()) {
        if (isName(m_reader.name(), "title"))
            readTitle();
        else if (isName(m_reader.name(), "trackList"))
            readTracks();
        else
            m_reader.skipCurrentElement();
    }
}

void XmlFile::readTracks()
{
    while (next())
        isName(m_reader.name(), "track") ? readTrack() : m_reader.skipCurrentElement();
}

void XmlFile::readTrack()
{
    StationsEntry entry;
    QStringList folders;
    while (next()) {
        const VeskStringRef name = m_reader.name();
        if (isName(name, "location")) {
            // A track may have several, of which the first that can be played counts.
            const QString address = text();
            if (stationsAddress(entry.address).isEmpty() && !address.trimmed().isEmpty())
                entry.address = address;
        } else if (isName(name, "title")) {
            entry.title = text();
        } else if (isName(name, "image")) {
            entry.picture = text();
        } else if (isName(name, "annotation")) {
            entry.description = text();
        } else if (isName(name, "meta") && attribute({"rel"}) == stationsFolderRelation()) {
            folders = splitStationsFolders(text());
        } else {
            m_reader.skipCurrentElement();
        }
    }
    if (!entry.address.isEmpty())
        m_gatherer.addStation(folders, std::move(entry));
    else if (!folders.isEmpty())
        m_gatherer.addFolder(folders);
    else
        m_gatherer.skip(StationsSkip::NoWebAddress);
}

} // namespace

StationsFile readStationsXml(const QByteArray &bytes)
{
    StationsFile file = XmlFile(bytes).read();
    if (file.error.isEmpty())
        return file;
    if (veskIsUtf8(bytes))
        return file;
    // It says that it is UTF-8, or nothing, and is not.
    const StationsFile latin1 = XmlFile(QString::fromLatin1(bytes)).read();
    return latin1.error.isEmpty() ? latin1 : file;
}
