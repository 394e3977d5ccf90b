// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/CatalogReader.h"

#include "directory/Faults.h"
#include "directory/Query.h"

#include <cstdio>

namespace directory {

namespace {

const std::set<std::string> KnownAvailabilities {"", "georestricted", "restricted", "nostream"};

} // namespace

void CatalogReader::frequency(const YamlEntry &entry, Station &station)
{
    const std::vector<std::string> words = split(entry.text("frequency", ""), ' ');
    if (words.empty())
        return;
    if (words.size() != 2)
        entry.fail("\"frequency\" must be a number and a band");
    const bool numberFirst = words[0].front() >= '0' && words[0].front() <= '9';
    station.frequency = words[numberFirst ? 0 : 1];
    station.band = words[numberFirst ? 1 : 0];
}

void CatalogReader::station(const YAML::Node &node)
{
    const YamlEntry entry(node, "station",
        {"id", "name", "city", "genre", "language", "frequency", "slogan", "streams", "playing",
            "availability", "call_sign", "description"});
    Station station;
    station.id = entry.id("id", "s");
    claim(entry, station.id);
    station.name = entry.text("name");
    station.city = named(entry, "city", entry.text("city"), m_cities);
    station.genre = named(entry, "genre", entry.text("genre"), m_genres);
    station.language = entry.has("language")
        ? named(entry, "language", entry.text("language"), m_languages)
        : m_cityLanguages[station.city];
    frequency(entry, station);
    station.slogan = entry.text("slogan", "");
    station.callSign = entry.text("call_sign", "");
    station.description = entry.text("description", "");
    station.availability = entry.text("availability", "");
    if (KnownAvailabilities.count(station.availability) == 0)
        entry.fail("\"availability\" must be georestricted, restricted or nostream");
    station.playing = entry.texts("playing");
    if (entry.has("streams") && entry.child("streams").IsSequence()) {
        entry.eachOf("streams",
            [this, &station](const YAML::Node &each) { station.streams.push_back(stream(each)); });
    } else {
        const auto set = m_streamSets.find(entry.text("streams", "standard"));
        if (set == m_streamSets.end())
            entry.fail("there is no set of streams \"" + entry.text("streams") + '"');
        station.streams = set->second;
    }
    if (station.streams.empty() || station.streams.size() > 9)
        entry.fail("a station has 1 to 9 streams");
    m_catalog.stations.push_back(std::move(station));
}

Slot CatalogReader::slot(const YAML::Node &node)
{
    const YamlEntry entry(node, "slot", {"days", "start", "minutes"});
    static const std::map<std::string, std::array<bool, 7>> patterns {
        {"daily", {true, true, true, true, true, true, true}},
        {"weekdays", {false, true, true, true, true, true, false}},
        {"weekends", {true, false, false, false, false, false, true}},
        {"Sun", {true}},
        {"Mon", {false, true}},
        {"Tue", {false, false, true}},
        {"Wed", {false, false, false, true}},
        {"Thu", {false, false, false, false, true}},
        {"Fri", {false, false, false, false, false, true}},
        {"Sat", {false, false, false, false, false, false, true}},
    };
    Slot slot;
    const auto pattern = patterns.find(entry.text("days"));
    if (pattern == patterns.end())
        entry.fail("\"days\" must be daily, weekdays, weekends or a day such as Mon");
    slot.days = pattern->second;
    const std::vector<std::string> start = split(entry.text("start"), ':');
    const int hour = start.size() == 2 ? parseNumber(start[0]) : -1;
    const int minute = start.size() == 2 ? parseNumber(start[1]) : -1;
    if (hour < 0 || hour > 23 || minute < 0 || minute > 59)
        entry.fail("\"start\" must be a time such as \"06:30\"");
    slot.startMinute = hour * 60 + minute;
    slot.minutes = entry.number("minutes", 1, 1440);
    return slot;
}

void CatalogReader::topics(const YamlEntry &entry, Show &show)
{
    if (!entry.has("topics"))
        return;
    entry.eachOf("topics", [&](const YAML::Node &node) {
        const YamlEntry item(node, "topic", {"id", "title", "minutes", "date"});
        Topic topic;
        char number[8];
        std::snprintf(
            number, sizeof number, "%02u", static_cast<unsigned>(show.topics.size() + 1) % 100);
        topic.id = item.has("id") ? item.id("id", "t") : 't' + show.id.substr(1) + number;
        topic.show = show.id;
        topic.title = item.text("title");
        topic.minutes = item.number("minutes", 1, 1440);
        topic.date = item.text("date");
        const std::vector<std::string> date = split(topic.date, '-');
        if (topic.date.size() != 10 || date.size() != 3 || parseNumber(date[0]) < 1970
            || parseNumber(date[1]) < 1 || parseNumber(date[1]) > 12 || parseNumber(date[2]) < 1
            || parseNumber(date[2]) > 31)
            item.fail("\"date\" must be a date such as 2026-03-14");
        claim(item, topic.id);
        show.topics.push_back(topic.id);
        m_catalog.topics.push_back(std::move(topic));
    });
}

void CatalogReader::show(const YAML::Node &node)
{
    const YamlEntry entry(node, "show",
        {"id", "title", "hosts", "genre", "station", "slot", "description", "topics"});
    Show show;
    show.id = entry.id("id", "p");
    claim(entry, show.id);
    show.title = entry.text("title");
    show.hosts = entry.text("hosts", "");
    show.genre = named(entry, "genre", entry.text("genre"), m_genres);
    show.description = entry.text("description", "");
    if (entry.has("station") != entry.has("slot"))
        entry.fail("\"station\" and \"slot\" belong together");
    if (entry.has("station")) {
        show.station = entry.id("station", "s");
        if (m_ids.count(show.station) == 0)
            entry.fail("there is no station " + show.station);
        show.slot = slot(entry.child("slot"));
    }
    topics(entry, show);
    m_catalog.shows.push_back(std::move(show));
}

void CatalogReader::artist(const YAML::Node &node)
{
    const YamlEntry entry(node, "artist", {"id", "name", "genre", "songs"});
    Artist artist;
    artist.id = entry.id("id", "m");
    claim(entry, artist.id);
    artist.name = entry.text("name");
    artist.genre = named(entry, "genre", entry.text("genre"), m_genres);
    artist.songs = entry.texts("songs");
    if (artist.songs.empty())
        entry.fail("an artist has at least one song");
    m_catalog.artists.push_back(std::move(artist));
}

void CatalogReader::languageSample(const YAML::Node &node)
{
    const YamlEntry entry(node, "sample", {"text", "subtext", "station", "language"});
    Sample sample;
    sample.text = entry.text("text");
    sample.subtext = entry.text("subtext", "");
    if (entry.has("language")) {
        sample.language = named(entry, "language", entry.text("language"), m_languages);
    } else {
        sample.station = entry.id("station", "s");
        if (m_ids.count(sample.station) == 0)
            entry.fail("there is no station " + sample.station);
    }
    m_catalog.languageSamples.push_back(std::move(sample));
}

void CatalogReader::streamSample(const YAML::Node &node)
{
    const YamlEntry entry(node, "sample", {"text", "stream", "file"});
    Sample sample;
    sample.text = entry.text("text");
    sample.stream = stream(entry.child("stream"));
    sample.file = entry.text("file");
    if (sample.file.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-.")
        != std::string::npos)
        entry.fail("\"file\" must be small letters, digits, dots and dashes");
    m_catalog.streamSamples.push_back(std::move(sample));
}

void CatalogReader::otherServer(const YAML::Node &node)
{
    const YamlEntry entry(
        node, "other server", {"id", "host", "path", "name", "genre", "stream", "fault"});
    OtherServer server;
    server.host = entry.text("host");
    const std::size_t colon = server.host.find(':');
    if (colon == std::string::npos || parseNumber(server.host.substr(colon + 1)) < 1
        || server.host.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789.-:")
            != std::string::npos)
        entry.fail("\"host\" must be a name in small letters, and a port");
    for (const OtherServer &other : m_catalog.otherServers) {
        if (other.host == server.host)
            entry.fail("the host " + server.host + " is there twice");
    }
    server.path = entry.text("path", "/");
    if (server.path.front() != '/')
        entry.fail("\"path\" must begin with a slash");
    server.fault = entry.text("fault");
    if (const auto fault = Faults::parse(server.fault); !fault)
        entry.fail(fault.error());
    server.station.id = entry.id("id", "s");
    claim(entry, server.station.id);
    server.station.name = entry.text("name");
    server.station.genre = named(entry, "genre", entry.text("genre"), m_genres);
    server.station.streams.push_back(stream(entry.child("stream")));
    m_catalog.otherServers.push_back(std::move(server));
    if (m_catalog.otherServers.size() > Faults::MaxFaults)
        entry.fail("there are too many other servers");
}

} // namespace directory
