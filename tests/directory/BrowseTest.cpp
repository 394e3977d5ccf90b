// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/directory/TestDirectory.h"

#include <algorithm>
#include <gmock/gmock.h>

using namespace directory;
using namespace directory::test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

using Browse = DirectoryTest;

/// Calls `visit` for every outline of a body, children included.
void eachOutline(const Json &body, const std::function<void(const Json &)> &visit)
{
    for (const Json &row : body) {
        visit(row);
        if (row.contains("children"))
            eachOutline(row["children"], visit);
    }
}

TEST_F(Browse, RootListsTheMenusInOrder)
{
    const Json answer = json("/Browse.ashx?render=json");
    EXPECT_EQ(answer["head"].dump(), R"({"title":"Browse","status":"200"})");
    EXPECT_THAT(valuesOf(answer["body"], "key"),
        ElementsAre("local", "music", "talk", "sports", "location", "language", "podcast"));
    EXPECT_EQ(answer["body"][1].dump(),
        R"({"element":"outline","type":"link","text":"Music",)"
        R"("URL":"http://opml.radiotime.com/Browse.ashx?c=music","key":"music"})");
}

TEST_F(Browse, RootOffersFavoritesToAKnownPartnerAndDevice)
{
    EXPECT_EQ(body("/?partnerId=P&serial=S")[0]["key"], "presets");
    EXPECT_EQ(body("/?partnerId=&serial=S")[0]["key"], "local");
    EXPECT_EQ(body("/?partnerId=P")[0]["key"], "local");
}

TEST_F(Browse, PageNamesAreCaseInsensitive)
{
    EXPECT_EQ(json("/browse.ASHX?c=music")["head"]["title"], "Music");
}

TEST_F(Browse, LinksRepeatTheGlobalParametersButNeverRender)
{
    const Json rows = body("/Browse.ashx?c=music&render=json&serial=00:1A&partnerId=P"
                           "&formats=mp3,aac&locale=en-US&latlon=53,-6");
    const std::string url = rows[0]["URL"];
    EXPECT_THAT(
        url, HasSubstr("&formats=mp3,aac&partnerId=P&serial=00:1A&locale=en-US&latlon=53,-6"));
    EXPECT_THAT(url, Not(HasSubstr("render")));
}

TEST_F(Browse, LinksHaveNoDuplicateParameters)
{
    for (const char *target :
        {"/Browse.ashx?id=c57943&filter=s&serial=S&offset=25", "/Browse.ashx?c=lang&filter=l1",
            "/Browse.ashx?id=r100346&filter=s", "/Browse.ashx?c=lang&serial=S&filter="}) {
        eachOutline(body(target), [target](const Json &row) {
            const std::string url = row.value("URL", "");
            std::set<std::string> names;
            const std::string query = url.substr(std::min(url.find('?'), url.size()));
            const Query parsed = Query::parse(query.substr(std::min<std::size_t>(1, query.size())));
            for (const QueryItem &item : parsed.items())
                EXPECT_TRUE(names.insert(lowered(item.name)).second) << target << ": " << url;
        });
    }
}

TEST_F(Browse, MenusLeadToCategoriesAndGenres)
{
    for (const char *menu : {"music", "talk", "sports"}) {
        const Json rows = body(std::string("/Browse.ashx?c=") + menu);
        EXPECT_GE(rows.size(), 3u) << menu;
        for (const Json &row : rows) {
            EXPECT_EQ(row["type"], "link");
            const Json page = json(targetOf(row));
            EXPECT_EQ(page["head"]["title"], row["text"]);
            EXPECT_EQ(statusOf(page), "200");
        }
    }
}

TEST_F(Browse, AGenrePageHasSectionsWithTheCursorsLast)
{
    const Json page = body("/Browse.ashx?id=c57943");
    EXPECT_THAT(valuesOf(page, "key"), ElementsAre("local", "stations", "shows", "related"));
    for (const Json &each : page)
        EXPECT_FALSE(each.contains("type"));
    const Json stations = sectionOf(page, "stations")["children"];
    EXPECT_EQ(stations.size(), catalog().pageSize + 1);
    EXPECT_EQ(stations.back()["key"], "nextStations");
    EXPECT_FALSE(stations.back().contains("guide_id"));
    EXPECT_THAT(std::string(page[0]["text"]), HasSubstr("Local Stations ("));
}

TEST_F(Browse, CursorsVisitEachStationOfACategoryOnce)
{
    std::set<std::string> seen;
    Json rows = sectionOf(body("/Browse.ashx?id=c57943"), "stations")["children"];
    int pages = 1;
    for (Json next = rowWith(rows, "key", "nextStations"); pages < 20; ++pages) {
        for (const Json &row : rows) {
            if (row["type"] == "audio") {
                EXPECT_TRUE(seen.insert(row["guide_id"]).second) << row.dump();
            }
        }
        if (next.is_null())
            break;
        const Json page = json(targetOf(next));
        EXPECT_EQ(page["head"]["title"], "More Stations - Pop & Hits");
        rows = page["body"];
        next = rowWith(rows, "key", "nextStations");
    }
    std::size_t expected = 0;
    for (const Station &station : catalog().stations) {
        const auto &genres = catalog().category("c57943")->genres;
        expected += std::count(genres.begin(), genres.end(), station.genre);
    }
    EXPECT_GE(pages, 3);
    EXPECT_EQ(seen.size(), expected);
}

TEST_F(Browse, AnOffsetBeyondTheEndGivesTheEmptyRow)
{
    for (const char *offset : {"100000", "999999999"}) {
        const Json rows = body(std::string("/Browse.ashx?id=c57943&filter=s&offset=") + offset);
        ASSERT_EQ(rows.size(), 1u);
        EXPECT_EQ(rows[0].dump(),
            R"({"element":"outline","type":"text","text":"No stations or shows available"})");
    }
}

TEST_F(Browse, InvalidOffsetsStartAtTheFirstRow)
{
    const Json first = body("/Browse.ashx?id=c57943&filter=s");
    for (const char *offset : {"-5", "abc", "99999999999999999999"})
        EXPECT_EQ(body(std::string("/Browse.ashx?id=c57943&filter=s&offset=") + offset).size(),
            first.size());
}

TEST_F(Browse, PivotsSplitAGenreByCountryAndByName)
{
    const Json countries = body("/Browse.ashx?id=g92&pivot=country&filter=s");
    const Json germany = rowWith(countries, "text", "Germany");
    ASSERT_FALSE(germany.is_null());
    for (const Json &row : body(targetOf(germany)))
        EXPECT_THAT(std::string(row["text"]), HasSubstr("Germany"));

    const Json letters = body("/Browse.ashx?id=g92&pivot=name&filter=s");
    const Json h = rowWith(letters, "text", "H");
    ASSERT_FALSE(h.is_null());
    for (const Json &row : body(targetOf(h)))
        EXPECT_EQ(std::string(row["text"]).front(), 'H');
}

TEST_F(Browse, RegionsLeadFromTheWorldToACity)
{
    std::string target = "/Browse.ashx?id=r0";
    for (const char *step : {"Europe", "Ireland", "Leinster", "Dublin"}) {
        const Json row = rowWith(body(target), "text", step);
        ASSERT_FALSE(row.is_null()) << step;
        target = targetOf(row);
    }
    const Json city = body(target);
    EXPECT_THAT(valuesOf(city, "key"), ElementsAre("stations", "pivotGenre"));
    const Json folk = rowWith(sectionOf(city, "pivotGenre")["children"], "text", "Folk");
    const Json rows = body(targetOf(folk));
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0]["guide_id"], stationNamed("The Half Door").id);
}

TEST_F(Browse, ACountryStartsWithItsPivots)
{
    const Json page = body("/Browse.ashx?id=r100346");
    EXPECT_EQ(page[0]["key"], "pivot");
    EXPECT_THAT(
        valuesOf(page[0]["children"], "key"), ElementsAre("popular", "pivotGenre", "pivotName"));
    for (const Json &link : page[0]["children"])
        EXPECT_GE(body(targetOf(link)).size(), 5u) << link.dump();
}

TEST_F(Browse, LanguagesListTheirStations)
{
    const Json languages = body("/Browse.ashx?c=lang");
    const Json greek = rowWith(languages, "text", "Greek");
    EXPECT_EQ(targetOf(greek), "/Browse.ashx?c=lang&filter=l113");
    const Json rows = body(targetOf(greek));
    EXPECT_FALSE(rowWith(rows, "guide_id", stationNamed("Ράδιο Φεγγάρι").id).is_null());
    const Json basque = body(targetOf(rowWith(languages, "text", "Basque")));
    EXPECT_EQ(basque[0]["text"], "No stations or shows available");
}

TEST_F(Browse, AnUnknownLanguageGivesTheUnfilteredList)
{
    EXPECT_FALSE(
        rowWith(body("/Browse.ashx?c=lang&filter=l99999"), "key", "nextStations").is_null());
}

TEST_F(Browse, LocalRadioFollowsThePosition)
{
    const Json home = body("/Browse.ashx?c=local");
    EXPECT_EQ(home[0]["key"], "localCountry");
    EXPECT_EQ(home[0]["text"], "Germany");
    const Json there = body("/Browse.ashx?c=local&latlon=45.5,-122.6");
    EXPECT_EQ(there[0]["text"], "United States");
    EXPECT_FALSE(rowWith(there, "guide_id", stationNamed("Wet Moss Radio").id).is_null());
    EXPECT_EQ(body("/Browse.ashx?c=local&latlon=nowhere")[0]["text"], "Germany");
}

TEST_F(Browse, PodcastsAreCategoriesInSections)
{
    const Json page = body("/Browse.ashx?c=podcast");
    EXPECT_THAT(valuesOf(page, "key"), ElementsAre("music", "talk", "sports"));
    const Json jazz = rowWith(page[0]["children"], "text", "Jazz");
    EXPECT_FALSE(rowWith(body(targetOf(jazz)), "text", "Jazz Letters").is_null());
}

TEST_F(Browse, TrendingIsAPlainListOfStations)
{
    const Json rows = body("/Browse.ashx?c=trending&formats=*");
    EXPECT_EQ(rows.size(), catalog().pageSize);
    for (const Json &row : rows)
        EXPECT_EQ(row["type"], "audio");
}

TEST_F(Browse, StationRowsHaveTheKeysOfTheWebApi)
{
    const Station &station = stationNamed("The Half Door");
    const Json row
        = rowWith(sectionOf(body("/Browse.ashx?id=g79&formats=mp3,aac"), "stations")["children"],
            "guide_id", station.id);
    std::vector<std::string> keys;
    for (const auto &item : row.items()) {
        keys.push_back(item.key());
        EXPECT_TRUE(item.value().is_string()) << item.key();
    }
    EXPECT_THAT(keys,
        ElementsAre("element", "type", "text", "URL", "bitrate", "reliability", "guide_id",
            "subtext", "genre_id", "formats", "playing", "playing_image", "show_id", "item",
            "image", "current_track", "now_playing_id", "preset_id"));
    EXPECT_EQ(row["show_id"], showNamed("Morning Folk").id);
    EXPECT_EQ(row["image"], "http://directory.test:8080/logo/" + station.id + "q.png");
}

TEST_F(Browse, StationsThatCannotBePlayedAreUnavailableRows)
{
    const Station &blocked = stationNamed("Grand Bleu");
    const Json georestricted
        = rowWith(sectionOf(body("/Browse.ashx?id=r100384&formats=*"), "stations")["children"],
            "guide_id", blocked.id);
    EXPECT_EQ(georestricted["key"], "unavailable");
    EXPECT_EQ(
        georestricted["URL"], "http://directory.test:8080/service/Audio/georestricted.enUS.mp3");
    EXPECT_EQ(georestricted["subtext"], "Not available in your country");

    const Station &flash = stationNamed("Tidewrack Talk");
    const std::string bristol = "/Browse.ashx?id=r100372&formats=";
    const auto row = [&](const std::string &formats) {
        return rowWith(
            sectionOf(body(bristol + formats), "stations")["children"], "guide_id", flash.id);
    };
    EXPECT_EQ(row("mp3,aac")["subtext"], "No compatible stream");
    EXPECT_FALSE(row("flash").contains("key"));
    EXPECT_FALSE(row("*").contains("key"));
}

TEST_F(Browse, WithoutFormatsOnlyMp3CountsAsPlayable)
{
    for (const Station &station : catalog().stations) {
        if (station.streams.front().codec != "aac" || !station.availability.empty())
            continue;
        const std::string city = "/Browse.ashx?id=" + station.city;
        EXPECT_EQ(
            rowWith(sectionOf(body(city), "stations")["children"], "guide_id", station.id)["key"],
            "unavailable");
        EXPECT_EQ(rowWith(sectionOf(body(city + "&formats=aac"), "stations")["children"],
                      "guide_id", station.id)["bitrate"],
            "96");
        return;
    }
    FAIL() << "no station without mp3";
}

TEST_F(Browse, KeysHaveNoneOfTheCharactersThatClientsJoinThemWith)
{
    for (const char *target : {"/", "/Browse.ashx?id=g92", "/Browse.ashx?c=podcast",
             "/Browse.ashx?id=r100346", "/Browse.ashx?id=r100348", "/Search.ashx?query=jazz"}) {
        eachOutline(body(target), [](const Json &row) {
            EXPECT_EQ(row.value("key", "").find_first_of("_~"), std::string::npos) << row.dump();
        });
    }
}

TEST_F(Browse, ShowRowsCarryTheStationOnlyWhenThereIsOne)
{
    const Json shows = sectionOf(body("/Browse.ashx?id=g92"), "shows")["children"];
    EXPECT_THAT(std::string(rowWith(shows, "text", "Kettle & Keys")["URL"]),
        HasSubstr("&sid=" + stationNamed("Hafenlicht Jazz").id));
    EXPECT_THAT(std::string(rowWith(shows, "text", "Jazz Letters")["URL"]), Not(HasSubstr("sid=")));
}

TEST_F(Browse, RecentEpisodesAreTopicsWithTheirShow)
{
    const Json rows = body("/Browse.ashx?id=g92&filter=p:topic");
    ASSERT_GE(rows.size(), 5u);
    for (const Json &row : rows) {
        EXPECT_EQ(row["item"], "topic");
        EXPECT_THAT(std::string(row["URL"]), HasSubstr("&sid=p"));
    }
}

TEST_F(Browse, AStationHasRelatedContent)
{
    const Json page = body("/Browse.ashx?id=" + stationNamed("Hafenlicht Jazz").id);
    EXPECT_THAT(
        valuesOf(page, "key"), ElementsAre("recommendations", "shows", "genres", "affiliates"));
    EXPECT_FALSE(page[3]["children"][0].contains("guide_id"));
    EXPECT_GE(body(targetOf(page[3]["children"][0])).size(), 5u);
}

TEST_F(Browse, ArtistsListTheStationsThatPlayThem)
{
    const Json rows = body("/Browse.ashx?id=m501&formats=*");
    ASSERT_GE(rows.size(), 5u);
    EXPECT_EQ(rows[0]["genre_id"], "g92");
}

TEST_F(Browse, TheScheduleHasLocalTimeAndUtc)
{
    const Station &station = stationNamed("Hafenlicht Jazz");
    const Json rows = body("/Browse.ashx?c=schedule&id=" + station.id);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0]["start"], "2026-03-16T06:00:00");
    EXPECT_EQ(rows[0]["start_utc"], "2026-03-16T05:00:00");
    EXPECT_EQ(rows[0]["duration"], "10800");
    EXPECT_EQ(rows[0]["tz"], "CET");
    EXPECT_THAT(std::string(rows[0]["URL"]), HasSubstr("title=Kettle+%26+Keys"));
    EXPECT_EQ(json(targetOf(rows[0]))["head"]["title"], "Kettle & Keys");
}

TEST_F(Browse, SchedulesAreLimitedToAWeek)
{
    const std::string id = stationNamed("Hafenlicht Jazz").id;
    const Json week = body("/Browse.ashx?c=schedule&start=20260316&stop=99991231&id=" + id);
    EXPECT_EQ(week.size(), 5u + 7u);
}

TEST_F(Browse, InvalidIdsAndCategoriesAreFaults)
{
    for (const char *id : {"x1", "s0", "c1", "r9", "zzzz", "%F0%9F%8E%B7"}) {
        const Json answer = json(std::string("/Browse.ashx?id=") + id);
        EXPECT_EQ(answer.dump(),
            R"({"head":{"status":"400","fault":"Invalid ID for browse",)"
            R"("fault_code":"request.idInvalid"},"body":[]})");
    }
    EXPECT_EQ(json("/Browse.ashx?c=pbrowse").dump(),
        R"({"head":{"status":"400","fault":"Invalid root category"},"body":[]})");
    EXPECT_EQ(statusOf(json("/Browse.ashx?c=schedule&id=s0")), "400");
}

TEST_F(Browse, TitlesFollowTheLocale)
{
    EXPECT_EQ(json("/?locale=de-DE")["head"]["title"], "Durchsuchen");
    EXPECT_EQ(json("/?locale=es_MX")["head"]["title"], "Navegar");
    EXPECT_EQ(json("/?locale=fr")["body"][1]["text"], "Musique");
    EXPECT_EQ(json("/?locale=tlh")["head"]["title"], "Browse");
    EXPECT_EQ(json("/?locale=")["head"]["title"], "Browse");
}

TEST_F(Browse, EveryMenuLinkOfTheRootWorks)
{
    for (const Json &row : body("/?partnerId=P&serial=S")) {
        const Json page = json(targetOf(row));
        EXPECT_EQ(statusOf(page), "200") << row.dump();
        EXPECT_FALSE(page["body"].empty()) << row.dump();
    }
}

} // namespace
