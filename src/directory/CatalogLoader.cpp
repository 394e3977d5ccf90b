#include "directory/CatalogLoader.h"

#include "directory/Query.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <set>

namespace directory {

namespace {

const std::set<std::string> knownCodecs {
    "mp3", "aac", "ogg", "opus", "flac", "hls", "wma", "flash"};
const std::set<std::string> knownPlaylists {"", "m3u", "pls", "asx", "xspf"};
const std::set<std::string> knownMenus {"music", "talk", "sports"};
const std::set<std::string> knownAvailabilities {"", "georestricted", "restricted", "nostream"};

/// The names used in the file and the ids they stand for.
using Names = std::map<std::string, std::string>;

class Loader {
public:
    Catalog load(const YAML::Node &root);

private:
    void claim(const YamlEntry &entry, const std::string &id);
    static std::string named(
        const YamlEntry &entry, const char *key, const std::string &name, const Names &names);
    static void menu(const YamlEntry &entry, std::string &out);

    void texts(const YamlEntry &root);
    void streamSets(const YamlEntry &root);
    void genre(const YAML::Node &node);
    void category(const YAML::Node &node);
    void language(const YAML::Node &node);
    void continent(const YAML::Node &node);
    void country(const YAML::Node &node, const std::string &parent);
    void area(const YAML::Node &node, const std::string &parent);
    void city(const YAML::Node &node, const std::string &parent);
    std::size_t addRegion(const YamlEntry &entry, Region::Kind kind, const std::string &parent);
    Stream stream(const YAML::Node &node);
    void station(const YAML::Node &node);
    void frequency(const YamlEntry &entry, Station &station);
    void show(const YAML::Node &node);
    Slot slot(const YAML::Node &node);
    void topics(const YamlEntry &entry, Show &show);
    void artist(const YAML::Node &node);
    void languageSample(const YAML::Node &node);
    void streamSample(const YAML::Node &node);

    Catalog m_catalog;
    std::set<std::string> m_ids;
    Names m_genres;
    Names m_languages;
    Names m_cities;
    Names m_cityLanguages;
    std::map<std::string, std::vector<Stream>> m_streamSets;
};

void Loader::claim(const YamlEntry &entry, const std::string &id)
{
    if (!m_ids.insert(id).second)
        entry.fail("the id " + id + " is used twice");
}

std::string Loader::named(
    const YamlEntry &entry, const char *key, const std::string &name, const Names &names)
{
    const auto found = names.find(name);
    if (found == names.end())
        entry.fail(std::string("there is no ") + key + " \"" + name + '"');
    return found->second;
}

void Loader::menu(const YamlEntry &entry, std::string &out)
{
    out = entry.text("menu");
    if (knownMenus.count(out) == 0)
        entry.fail("\"menu\" must be music, talk or sports");
}

void Loader::texts(const YamlEntry &root)
{
    const YAML::Node languages = root.child("texts");
    if (!languages.IsMap() || !languages["en"].IsDefined())
        root.fail("\"texts\" must map languages, \"en\" among them, to their words");
    for (const auto &language : languages) {
        if (!language.second.IsMap())
            throw DataError(language.first.Mark().line + 1, "texts: the words are missing");
        auto &words = m_catalog.texts[language.first.as<std::string>()];
        for (const auto &word : language.second) {
            if (!word.second.IsScalar())
                throw DataError(word.first.Mark().line + 1, "texts: a word must be a text");
            words[word.first.as<std::string>()] = word.second.Scalar();
        }
    }
}

Stream Loader::stream(const YAML::Node &node)
{
    const YamlEntry entry(node, "stream", {"codec", "bitrate", "playlist", "reliability"});
    Stream stream;
    stream.codec = entry.text("codec");
    stream.bitrate = entry.number("bitrate", 8, 10000);
    stream.playlist = entry.text("playlist", "");
    stream.reliability = entry.number("reliability", 0, 100, 99);
    if (knownCodecs.count(stream.codec) == 0)
        entry.fail("unknown codec " + stream.codec);
    if (knownPlaylists.count(stream.playlist) == 0)
        entry.fail("unknown playlist " + stream.playlist);
    return stream;
}

void Loader::streamSets(const YamlEntry &root)
{
    const YAML::Node sets = root.child("stream_sets");
    if (!sets.IsMap() || !sets["standard"].IsDefined())
        root.fail("\"stream_sets\" must map names, \"standard\" among them, to streams");
    for (const auto &set : sets) {
        auto &streams = m_streamSets[set.first.as<std::string>()];
        if (!set.second.IsSequence() || set.second.size() == 0 || set.second.size() > 9)
            throw DataError(set.first.Mark().line + 1, "a set must be a list of 1 to 9 streams");
        for (const auto &node : set.second)
            streams.push_back(stream(node));
    }
}

void Loader::genre(const YAML::Node &node)
{
    const YamlEntry entry(node, "genre", {"id", "name", "menu", "listed"});
    Genre genre;
    genre.id = entry.id("id", "g");
    genre.name = entry.text("name");
    genre.listed = entry.flag("listed", true);
    menu(entry, genre.menu);
    claim(entry, genre.id);
    if (!m_genres.emplace(genre.name, genre.id).second)
        entry.fail("the name \"" + genre.name + "\" is used twice");
    m_catalog.genres.push_back(std::move(genre));
}

void Loader::category(const YAML::Node &node)
{
    const YamlEntry entry(node, "category", {"id", "name", "menu", "genres"});
    Category category;
    category.id = entry.id("id", "c");
    category.name = entry.text("name");
    menu(entry, category.menu);
    for (const std::string &name : entry.texts("genres"))
        category.genres.push_back(named(entry, "genre", name, m_genres));
    claim(entry, category.id);
    m_catalog.categories.push_back(std::move(category));
}

void Loader::language(const YAML::Node &node)
{
    const YamlEntry entry(node, "language", {"id", "name"});
    Language language {entry.id("id", "l"), entry.text("name")};
    claim(entry, language.id);
    m_languages.emplace(language.name, language.id);
    m_catalog.languages.push_back(std::move(language));
}

std::size_t Loader::addRegion(const YamlEntry &entry, Region::Kind kind, const std::string &parent)
{
    Region region;
    region.id = entry.id("id", "r");
    region.name = entry.text("name");
    region.kind = kind;
    region.parent = parent;
    claim(entry, region.id);
    for (Region &other : m_catalog.regions) {
        if (other.id == parent)
            other.children.push_back(region.id);
    }
    m_catalog.regions.push_back(std::move(region));
    return m_catalog.regions.size() - 1;
}

void Loader::continent(const YAML::Node &node)
{
    const YamlEntry entry(node, "continent", {"id", "name", "countries"});
    const std::size_t at = addRegion(entry, Region::Kind::Continent, "r0");
    const std::string id = m_catalog.regions[at].id;
    entry.eachOf("countries", [this, &id](const YAML::Node &each) { country(each, id); });
}

void Loader::country(const YAML::Node &node, const std::string &parent)
{
    const YamlEntry entry(node, "country",
        {"id", "name", "country", "iso", "language", "time_zone", "utc_offset", "regions"});
    Region &region = m_catalog.regions[addRegion(entry, Region::Kind::Country, parent)];
    region.countryId = entry.id("country", "n");
    claim(entry, region.countryId);
    region.iso = entry.text("iso");
    region.language = named(entry, "language", entry.text("language"), m_languages);
    region.timeZone = entry.text("time_zone");
    region.utcOffsetMinutes = entry.number("utc_offset", -720, 840);
    const std::string id = region.id;
    m_cityLanguages[id] = region.language;
    entry.eachOf("regions", [this, &id](const YAML::Node &each) { area(each, id); });
}

void Loader::area(const YAML::Node &node, const std::string &parent)
{
    const YamlEntry entry(node, "region", {"id", "name", "cities"});
    const std::string id = m_catalog.regions[addRegion(entry, Region::Kind::Area, parent)].id;
    m_cityLanguages[id] = m_cityLanguages[parent];
    entry.eachOf("cities", [this, &id](const YAML::Node &each) { city(each, id); });
}

void Loader::city(const YAML::Node &node, const std::string &parent)
{
    const YamlEntry entry(node, "city", {"id", "name", "latitude", "longitude"});
    Region &region = m_catalog.regions[addRegion(entry, Region::Kind::City, parent)];
    region.position.latitude = entry.real("latitude", -90, 90);
    region.position.longitude = entry.real("longitude", -180, 180);
    m_cityLanguages[region.id] = m_cityLanguages[parent];
    if (!m_cities.emplace(region.name, region.id).second)
        entry.fail("the name \"" + region.name + "\" is used twice");
}

void Loader::frequency(const YamlEntry &entry, Station &station)
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

void Loader::station(const YAML::Node &node)
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
    if (knownAvailabilities.count(station.availability) == 0)
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

Slot Loader::slot(const YAML::Node &node)
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

void Loader::topics(const YamlEntry &entry, Show &show)
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

void Loader::show(const YAML::Node &node)
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

void Loader::artist(const YAML::Node &node)
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

void Loader::languageSample(const YAML::Node &node)
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

void Loader::streamSample(const YAML::Node &node)
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

Catalog Loader::load(const YAML::Node &node)
{
    const YamlEntry root(node, "data file",
        {"page", "home", "stream_sets", "texts", "genres", "categories", "languages", "regions",
            "stations", "shows", "artists", "language_samples", "stream_samples"});
    const YamlEntry page(root.child("page"), "page", {"stations", "shows"});
    m_catalog.pageSize = static_cast<std::size_t>(page.number("stations", 1, 1000));
    m_catalog.showsPerPage = static_cast<std::size_t>(page.number("shows", 1, 1000));
    texts(root);
    streamSets(root);

    Region world;
    world.id = "r0";
    world.name = "World";
    m_ids.insert(world.id);
    m_catalog.regions.push_back(std::move(world));

    const auto each = [this, &root](const char *key, void (Loader::*read)(const YAML::Node &)) {
        root.eachOf(key, [this, read](const YAML::Node &item) { (this->*read)(item); });
    };
    each("genres", &Loader::genre);
    each("categories", &Loader::category);
    each("languages", &Loader::language);
    each("regions", &Loader::continent);
    each("stations", &Loader::station);
    each("shows", &Loader::show);
    each("artists", &Loader::artist);
    each("language_samples", &Loader::languageSample);
    each("stream_samples", &Loader::streamSample);
    m_catalog.homeCity = named(root, "city", root.text("home"), m_cities);
    m_catalog.buildIndex();
    return std::move(m_catalog);
}

} // namespace

Catalog parseCatalog(const std::string &yaml)
{
    try {
        return Loader().load(YAML::Load(yaml));
    } catch (const YAML::Exception &error) {
        throw DataError(error.mark.line + 1, error.msg);
    }
}

Catalog loadCatalog(const std::string &file)
{
    std::ifstream in(file, std::ios::binary);
    std::string text;
    char buffer[65536];
    while (in.read(buffer, sizeof buffer) || in.gcount() > 0) {
        text.append(buffer, static_cast<std::size_t>(in.gcount()));
        if (text.size() > maxDataFile)
            throw DataError(0, "the file is too large");
    }
    if (!in.eof())
        throw DataError(0, "the file cannot be read");
    return parseCatalog(text);
}

} // namespace directory
