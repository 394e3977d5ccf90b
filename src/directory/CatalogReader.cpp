// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/CatalogReader.h"

namespace directory {

namespace {

const std::set<std::string> KnownCodecs {
    "mp3", "aac", "ogg", "opus", "flac", "hls", "wma", "flash"};
const std::set<std::string> KnownPlaylists {"", "m3u", "m3u8", "pls", "asx", "xspf"};
const std::set<std::string> KnownTricks {"", "missing", "refused"};
const std::set<std::string> KnownPlaylistTricks {"", "loop", "dead-first", "preroll", "endless",
    "mislabelled", "huge", "many", "html", "missing", "refused"};
const std::set<std::string> KnownMenus {"music", "talk", "sports"};

} // namespace

void CatalogReader::claim(const YamlEntry &entry, const std::string &id)
{
    if (!m_ids.insert(id).second)
        entry.fail("the id " + id + " is used twice");
}

std::string CatalogReader::named(
    const YamlEntry &entry, const char *key, const std::string &name, const Names &names)
{
    const auto found = names.find(name);
    if (found == names.end())
        entry.fail(std::string("there is no ") + key + " \"" + name + '"');
    return found->second;
}

void CatalogReader::menu(const YamlEntry &entry, std::string &out)
{
    out = entry.text("menu");
    if (KnownMenus.count(out) == 0)
        entry.fail("\"menu\" must be music, talk or sports");
}

void CatalogReader::texts(const YamlEntry &root)
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

Stream CatalogReader::stream(const YAML::Node &node)
{
    const YamlEntry entry(
        node, "stream", {"codec", "bitrate", "playlist", "reliability", "trick", "depth"});
    Stream stream;
    stream.codec = entry.text("codec");
    stream.bitrate = entry.number("bitrate", 8, 10000);
    stream.playlist = entry.text("playlist", "");
    stream.reliability = entry.number("reliability", 0, 100, 99);
    if (KnownCodecs.count(stream.codec) == 0)
        entry.fail("unknown codec " + stream.codec);
    if (KnownPlaylists.count(stream.playlist) == 0)
        entry.fail("unknown playlist " + stream.playlist);
    stream.trick = entry.text("trick", "");
    stream.depth = entry.number("depth", 1, 20, 1);
    if ((stream.playlist.empty() ? KnownTricks : KnownPlaylistTricks).count(stream.trick) == 0)
        entry.fail("unknown trick " + stream.trick);
    return stream;
}

void CatalogReader::streamSets(const YamlEntry &root)
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

void CatalogReader::genre(const YAML::Node &node)
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

void CatalogReader::category(const YAML::Node &node)
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

void CatalogReader::language(const YAML::Node &node)
{
    const YamlEntry entry(node, "language", {"id", "name"});
    Language language {entry.id("id", "l"), entry.text("name")};
    claim(entry, language.id);
    m_languages.emplace(language.name, language.id);
    m_catalog.languages.push_back(std::move(language));
}

std::size_t CatalogReader::addRegion(
    const YamlEntry &entry, Region::Kind kind, const std::string &parent)
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

void CatalogReader::continent(const YAML::Node &node)
{
    const YamlEntry entry(node, "continent", {"id", "name", "countries"});
    const std::size_t at = addRegion(entry, Region::Kind::Continent, "r0");
    const std::string id = m_catalog.regions[at].id;
    entry.eachOf("countries", [this, &id](const YAML::Node &each) { country(each, id); });
}

void CatalogReader::country(const YAML::Node &node, const std::string &parent)
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

void CatalogReader::area(const YAML::Node &node, const std::string &parent)
{
    const YamlEntry entry(node, "region", {"id", "name", "cities"});
    const std::string id = m_catalog.regions[addRegion(entry, Region::Kind::Area, parent)].id;
    m_cityLanguages[id] = m_cityLanguages[parent];
    entry.eachOf("cities", [this, &id](const YAML::Node &each) { city(each, id); });
}

void CatalogReader::city(const YAML::Node &node, const std::string &parent)
{
    const YamlEntry entry(node, "city", {"id", "name", "latitude", "longitude"});
    Region &region = m_catalog.regions[addRegion(entry, Region::Kind::City, parent)];
    region.position.latitude = entry.real("latitude", -90, 90);
    region.position.longitude = entry.real("longitude", -180, 180);
    m_cityLanguages[region.id] = m_cityLanguages[parent];
    if (!m_cities.emplace(region.name, region.id).second)
        entry.fail("the name \"" + region.name + "\" is used twice");
}

Catalog CatalogReader::load(const YAML::Node &node)
{
    const YamlEntry root(node, "data file",
        {"page", "home", "stream_sets", "texts", "genres", "categories", "languages", "regions",
            "stations", "shows", "artists", "language_samples", "stream_samples", "other_servers"});
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

    const auto each
        = [this, &root](const char *key, void (CatalogReader::*read)(const YAML::Node &)) {
              root.eachOf(key, [this, read](const YAML::Node &item) { (this->*read)(item); });
          };
    each("genres", &CatalogReader::genre);
    each("categories", &CatalogReader::category);
    each("languages", &CatalogReader::language);
    each("regions", &CatalogReader::continent);
    each("stations", &CatalogReader::station);
    each("shows", &CatalogReader::show);
    each("artists", &CatalogReader::artist);
    each("language_samples", &CatalogReader::languageSample);
    each("stream_samples", &CatalogReader::streamSample);
    if (root.has("other_servers"))
        each("other_servers", &CatalogReader::otherServer);
    m_catalog.homeCity = named(root, "city", root.text("home"), m_cities);
    m_catalog.buildIndex();
    return std::move(m_catalog);
}

} // namespace directory
