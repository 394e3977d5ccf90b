// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/CatalogLoader.h"

#include "tests/directory/TestDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace directory;
using namespace directory::test;

namespace {

/// A small data file; line 25 is the station's first.
std::string smallFile(const std::string &station, const std::string &shows = " []")
{
    return "page: {stations: 25, shows: 6}\n"
           "home: Dublin\n"
           "stream_sets:\n"
           "  standard:\n"
           "    - {codec: mp3, bitrate: 128}\n"
           "texts:\n"
           "  en: {browse: Browse}\n"
           "genres:\n"
           "  - {id: g1, name: Folk, menu: music}\n"
           "categories: []\n"
           "languages:\n"
           "  - {id: l1, name: English}\n"
           "regions:\n"
           "  - id: r1\n"
           "    name: Europe\n"
           "    countries:\n"
           "      - {id: r2, name: Ireland, country: n1, iso: IE, language: English,\n"
           "         time_zone: GMT, utc_offset: 0,\n"
           "         regions: [{id: r3, name: Leinster,\n"
           "         cities: [{id: r4, name: Dublin, latitude: 53, longitude: -6}]}]}\n"
           "artists: []\n"
           "language_samples: []\n"
           "stream_samples: []\n"
           "stations:\n"
        + station + "shows:" + shows + '\n';
}

const char *const goodStation = "  - id: s1\n    name: One\n    city: Dublin\n    genre: Folk\n";

void expectMistake(const std::string &yaml, int line, const std::string &part)
{
    const auto catalog = parseCatalog(yaml);
    ASSERT_FALSE(catalog) << "no mistake was found";
    EXPECT_EQ(catalog.error().line(), line) << catalog.error().what();
    EXPECT_THAT(catalog.error().what(), testing::HasSubstr(part));
}

TEST(ShippedData, HasEnoughContentToBrowse)
{
    const Catalog &catalog = shippedCatalog();
    std::set<std::string> genres;
    std::set<std::string> countries;
    for (const Station &station : catalog.stations) {
        genres.insert(station.genre);
        countries.insert(catalog.above(station.city, Region::Kind::Country)->id);
    }
    EXPECT_GE(catalog.stations.size(), 300u);
    EXPECT_GE(genres.size(), 20u);
    EXPECT_GE(countries.size(), 12u);
    EXPECT_GE(catalog.shows.size(), 40u);
    for (const Show &show : catalog.shows)
        EXPECT_GE(show.topics.size(), 3u) << show.title;
}

TEST(ShippedData, GivesAllStationsButTheListedExceptionsSeveralStreams)
{
    std::size_t few = 0;
    for (const Station &station : shippedCatalog().stations) {
        const bool forTrying = station.name.rfind("Trial ", 0) == 0;
        few += !forTrying && station.streams.size() < 3 ? 1 : 0;
    }
    EXPECT_EQ(few, 1u);
}

TEST(ShippedData, HasWordsForAllMenusInEnglish)
{
    const auto &english = shippedCatalog().texts.at("en");
    for (const auto &language : shippedCatalog().texts) {
        for (const auto &word : language.second)
            EXPECT_EQ(english.count(word.first), 1u) << language.first << ' ' << word.first;
    }
}

TEST(CatalogLoader, FillsInDefaultsOfAStation)
{
    const Catalog catalog = *parseCatalog(smallFile(goodStation));
    const Station *station = catalog.station("s1");
    ASSERT_NE(station, nullptr);
    EXPECT_EQ(station->language, "l1");
    EXPECT_EQ(station->city, "r4");
    EXPECT_EQ(station->streams.size(), 1u);
    EXPECT_EQ(station->availability, "");
    EXPECT_TRUE(catalog.within("r4", "r1"));
    EXPECT_FALSE(catalog.within("r1", "r4"));
}

TEST(CatalogLoader, DerivesTopicIdsFromTheShow)
{
    const Catalog catalog = *parseCatalog(smallFile(goodStation,
        "\n  - {id: p30, title: S, genre: Folk, topics: ["
        "{title: A, minutes: 5, date: 2026-03-14}, {title: B, minutes: 5, date: 2026-03-07}]}"));
    EXPECT_EQ(catalog.show("p30")->topics, (std::vector<std::string> {"t3001", "t3002"}));
    EXPECT_EQ(catalog.topic("t3002")->title, "B");
}

TEST(CatalogLoader, ReportsTheLineOfAMistake)
{
    expectMistake(smallFile("  - id: s1\n    name: One\n    city: Paris\n    genre: Folk\n"), 25,
        "no city \"Paris\"");
    expectMistake(smallFile(std::string(goodStation) + "    colour: red\n"), 29, "colour");
    expectMistake(smallFile(std::string(goodStation) + goodStation), 29, "used twice");
    expectMistake(smallFile(std::string(goodStation) + "    frequency: [1]\n"), 29, "frequency");
    expectMistake(
        smallFile(std::string(goodStation) + "    streams: nowhere\n"), 25, "\"nowhere\"");
    const std::string streams = std::string(goodStation) + "    streams: ";
    expectMistake(
        smallFile(streams + "[{codec: mp3, bitrate: 64, trick: loop}]\n"), 29, "trick loop");
    expectMistake(smallFile(streams + "[{codec: mp3, bitrate: 64, playlist: m3u, depth: 21}]\n"),
        29, "depth");
    expectMistake(smallFile("  - just a text\n"), 25, "mapping");
    expectMistake(smallFile("  - id: 17\n"), 25, "\"id\"");
    expectMistake(smallFile("  - id: s1\n  broken: [\n"), 26, "");
}

TEST(CatalogLoader, RefusesAShowWithoutItsStation)
{
    expectMistake(smallFile(goodStation,
                      "\n  - {id: p1, title: S, genre: Folk, station: s9,"
                      " slot: {days: daily, start: \"06:00\", minutes: 60}}"),
        30, "no station s9");
    expectMistake(smallFile(goodStation, "\n  - {id: p1, title: S, genre: Folk, station: s1}"), 30,
        "belong together");
}

TEST(CatalogLoader, RefusesValuesOutOfBounds)
{
    const std::string slot = "\n  - {id: p1, title: S, genre: Folk, station: s1, slot: ";
    expectMistake(smallFile(goodStation, slot + "{days: daily, start: \"25:00\", minutes: 60}}"),
        30, "start");
    expectMistake(smallFile(goodStation, slot + "{days: daily, start: \"06:00\", minutes: 0}}"), 30,
        "minutes");
    expectMistake(
        smallFile(goodStation, slot + "{days: never, start: \"06:00\", minutes: 9}}"), 30, "days");
    const std::string tooLong(YamlEntry::MaxText + 1, 'x');
    expectMistake(
        smallFile(std::string(goodStation) + "    slogan: " + tooLong + '\n'), 29, "too long");
}

TEST(CatalogLoader, ReadsOtherServers)
{
    const auto file = [](const std::string &host, const std::string &rest) {
        return smallFile(goodStation)
            + "other_servers:\n"
              "  - {id: s2, host: \"a.example.org:80\", name: A, genre: Folk, fault: reset,\n"
              "     stream: {codec: mp3, bitrate: 128}}\n"
              "  - {id: s3, host: \""
            + host + "\", name: B, genre: Folk, stream: {codec: aac, bitrate: 64}, " + rest + "}\n";
    };
    const Catalog catalog = *parseCatalog(file("b.example.org:81", "path: /b.aac, fault: stall"));
    ASSERT_EQ(catalog.otherServers.size(), 2u);
    EXPECT_EQ(catalog.otherServers[0].path, "/");
    EXPECT_EQ(catalog.otherServers[1].path, "/b.aac");
    EXPECT_EQ(catalog.otherServers[1].station.name, "B");
    EXPECT_EQ(catalog.stations.size(), 1u);

    expectMistake(file("a.example.org:80", "fault: stall"), 33, "twice");
    expectMistake(file("b.example.org", "fault: stall"), 33, "host");
    expectMistake(file("b.example.org:x", "fault: stall"), 33, "host");
    expectMistake(file("b.example.org:81", "fault: nonsense"), 33, "nonsense");
    expectMistake(file("b.example.org:81", "fault: stall, path: b"), 33, "path");
    expectMistake(file("b.example.org:81", "path: /b"), 33, "fault");
}

TEST(CatalogLoader, ReportsAMissingFile)
{
    const auto catalog = loadCatalog("/nonexistent/directory.yaml");
    ASSERT_FALSE(catalog);
    EXPECT_EQ(catalog.error().line(), 0);
    EXPECT_THAT(catalog.error().what(), testing::HasSubstr("cannot be read"));
}

} // namespace
