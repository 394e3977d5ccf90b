// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/directory/TestDirectory.h"

#include <gmock/gmock.h>

using namespace directory;
using namespace directory::test;
using testing::HasSubstr;

namespace {

using SearchPage = DirectoryTest;

TEST_F(SearchPage, FindsStationsShowsAndArtists)
{
    const Json answer = json("/Search.ashx?query=jazz&formats=mp3");
    EXPECT_EQ(answer["head"]["title"], "Search Results: jazz");
    const Json &rows = answer["body"];
    EXPECT_FALSE(rowWith(rows, "item", "station").is_null());
    EXPECT_FALSE(rowWith(rows, "item", "show").is_null());
    const Json artist = rowWith(rows, "text", "Artist: Jazz Orchard Five");
    EXPECT_EQ(artist["type"], "link");
    EXPECT_EQ(targetOf(artist), "/Browse.ashx?id=m503&formats=mp3");
}

TEST_F(SearchPage, RanksHitsInTheNameFirst)
{
    const Json rows = body("/Search.ashx?query=reggae&formats=*");
    EXPECT_EQ(rows[0]["guide_id"], stationNamed("Magnolia Reggae").id);
    EXPECT_FALSE(rowWith(rows, "guide_id", stationNamed("Dub Bridge").id).is_null());
}

TEST_F(SearchPage, MatchesTheBeginningsOfWordsWithoutCaseAndAccents)
{
    const Station &station = stationNamed("Radio Éléphant");
    for (const char *query : {"elephant", "%C3%89L%C3%89PH", "radio+eleph", "eleph%20radio"}) {
        const Json rows = body(std::string("/Search.ashx?query=") + query);
        EXPECT_FALSE(rowWith(rows, "guide_id", station.id).is_null()) << query;
    }
    EXPECT_TRUE(rowWith(body("/Search.ashx?query=lephant"), "guide_id", station.id).is_null());
}

TEST_F(SearchPage, FindsNamesInOtherScripts)
{
    const Json rows = body("/Search.ashx?query=%D0%A0&formats=*");
    EXPECT_EQ(rows[0]["type"], "text");
    const Json greek = body("/Search.ashx?query=%CF%86%CE%B5%CE%B3%CE%B3&formats=*");
    EXPECT_EQ(greek[0]["guide_id"], stationNamed("Ράδιο Φεγγάρι").id);
}

TEST_F(SearchPage, ListsUnplayableStationsInASectionOfTheirOwn)
{
    const Json rows = body("/Search.ashx?query=tidewrack");
    const Json section = sectionOf(rows, "unavailable");
    EXPECT_EQ(section["text"], "Search results (not playable)");
    EXPECT_EQ(section["children"][0]["guide_id"], stationNamed("Tidewrack Talk").id);
}

TEST_F(SearchPage, LimitsResultsToTheGivenKind)
{
    for (const Json &row : body("/Search.ashx?query=jazz&types=show"))
        EXPECT_EQ(row["item"], "show");
    for (const Json &row : body("/Search.ashx?query=jazz&types=station&formats=*"))
        EXPECT_EQ(row["item"], "station");
}

TEST_F(SearchPage, IgnoresUnknownKinds)
{
    const Json all = json("/Search.ashx?query=jazz")["body"];
    for (const char *types : {"station,show", "show,station", "artist", "nonsense"}) {
        const Json rows = json(std::string("/Search.ashx?query=jazz&types=") + types)["body"];
        EXPECT_EQ(rows.size(), all.size()) << types;
        EXPECT_FALSE(rowWith(rows, "text", "Artist: Jazz Orchard Five").is_null()) << types;
    }
}

TEST_F(SearchPage, HasARowForNoResults)
{
    EXPECT_EQ(json("/Search.ashx?query=xyzzy")["body"].dump(),
        R"([{"element":"outline","type":"text","text":"No results for xyzzy"}])");
    EXPECT_EQ(body("/Search.ashx?query=%21%21")[0]["type"], "text");
    EXPECT_EQ(
        body("/Search.ashx?query=" + std::string(Search::MaxQuery + 1, 'a'))[0]["type"], "text");
}

TEST_F(SearchPage, AnswersInvalidUtf8WithValidJson)
{
    const Json answer = json("/Search.ashx?query=%FF%FEjazz");
    EXPECT_EQ(statusOf(answer), "200");
}

TEST_F(SearchPage, RefusesAnEmptyQuery)
{
    for (const char *target :
        {"/Search.ashx", "/Search.ashx?query=", "/Search.ashx?query=%20%20"}) {
        const Json answer = json(target);
        EXPECT_EQ(statusOf(answer), "400");
        EXPECT_EQ(faultCodeOf(answer), "request.queryInvalid");
    }
}

TEST_F(SearchPage, LimitsItsRows)
{
    EXPECT_LE(body("/Search.ashx?query=r&formats=*").size(), Search::MaxRows + 1);
}

TEST_F(SearchPage, Aa1ListsSamplesOfManyScripts)
{
    const Json rows = body("/Search.ashx?query=aa1&formats=*&serial=S");
    EXPECT_GE(rows.size(), 20u);
    for (const char *text : {"Ελληνικά", "العربية", "עברית", "日本語", "हिन्दी"})
        EXPECT_FALSE(rowWith(rows, "text", text).is_null()) << text;
    for (const Json &row : rows) {
        EXPECT_EQ(statusOf(json(targetOf(row) + "&render=json")), "200") << row.dump();
        EXPECT_THAT(std::string(row["URL"]), HasSubstr("serial=S"));
    }
}

TEST_F(SearchPage, Aa2ListsAStreamOfEachKind)
{
    std::set<std::string> endings;
    for (const Json &row : body("/Search.ashx?query=aa2")) {
        EXPECT_EQ(row["type"], "audio");
        const std::string url = row["URL"];
        EXPECT_EQ(url.rfind("http://directory.test:8080/stream/", 0), 0u) << url;
        endings.insert(url.substr(url.rfind('.') + 1));
    }
    for (const char *ending :
        {"mp3", "aac", "ogg", "opus", "flac", "m3u8", "m3u", "pls", "asx", "xspf"})
        EXPECT_EQ(endings.count(ending), 1u) << ending;
}

} // namespace
