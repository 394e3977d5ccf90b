// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/directory/TestDirectory.h"

#include <gmock/gmock.h>

using namespace directory;
using namespace directory::test;
using testing::Contains;
using testing::Pair;

namespace {

using Describe = DirectoryTest;

TEST_F(Describe, ListsGenresLanguagesAndCountries)
{
    const Json genres = json("/Describe.ashx?c=genres");
    EXPECT_EQ(genres["head"].dump(), R"({"status":"200"})");
    EXPECT_EQ(rowWith(genres["body"], "guide_id", "g79").dump(),
        R"({"element":"outline","type":"text","text":"Folk","guide_id":"g79"})");
    EXPECT_EQ(rowWith(body("/Describe.ashx?c=languages"), "guide_id", "l109")["text"], "German");
    const Json germany = rowWith(body("/Describe.ashx?c=countries"), "guide_id", "n88");
    EXPECT_EQ(germany["text"], "Germany");
    EXPECT_EQ(germany["iso"], "DE");
    EXPECT_EQ(body("/Describe.ashx?c=formats").size(), 16u);
    EXPECT_GE(body("/Describe.ashx?c=locales").size(), 4u);
}

TEST_F(Describe, TaxonomiesAreCacheableAndUserDataAreNot)
{
    EXPECT_THAT(
        answer("/Describe.ashx?c=genres").headers, Contains(Pair("Cache-Control", "max-age=3600")));
    const std::string id = stationNamed("The Half Door").id;
    EXPECT_THAT(answer("/Describe.ashx?c=nowplaying&id=" + id).headers,
        Contains(Pair("Cache-Control", "max-age=30")));
    EXPECT_THAT(
        answer("/Describe.ashx?id=" + id).headers, Contains(Pair("Cache-Control", "no-store")));
    EXPECT_TRUE(answer("/Browse.ashx?c=music").headers.empty());
    EXPECT_TRUE(answer("/Search.ashx?query=jazz").headers.empty());
    EXPECT_TRUE(answer("/Tune.ashx?id=" + id).headers.empty());
}

TEST_F(Describe, DescribesAStationWithMixedTypes)
{
    const Station &station = stationNamed("The Half Door");
    const Json object = body("/Describe.ashx?id=" + station.id)[0];
    EXPECT_EQ(object["element"], "station");
    EXPECT_EQ(object["name"], "The Half Door");
    EXPECT_EQ(object["is_preset"], false);
    EXPECT_EQ(object["has_schedule"], true);
    EXPECT_TRUE(object["country_region_id"].is_number());
    EXPECT_TRUE(object["echoed_count"].is_null());
    EXPECT_EQ(object["has_profile"], "true");
    EXPECT_EQ(object["location"], "Dublin, Ireland");
    EXPECT_EQ(object["frequency"], "94.7");
    EXPECT_EQ(object["band"], "FM");
}

TEST_F(Describe, AcceptsABandBeforeTheFrequency)
{
    const Json object = body("/Describe.ashx?id=" + stationNamed("Beaver Valley Gold").id)[0];
    EXPECT_EQ(object["frequency"], "1020");
    EXPECT_EQ(object["band"], "AM");
    EXPECT_EQ(object["call_sign"], "KQZX");
}

TEST_F(Describe, NamesAShowByItsTitle)
{
    const Json object = body("/Describe.ashx?id=" + showNamed("Morning Folk").id)[0];
    EXPECT_EQ(object["element"], "show");
    EXPECT_EQ(object["title"], "Morning Folk");
    EXPECT_FALSE(object.contains("name"));
    EXPECT_NE(std::string(object["description"]).find("\r\n"), std::string::npos);
    EXPECT_EQ(object["start"], "2026-03-16T07:00:00");
}

TEST_F(Describe, DescribesATopic)
{
    const Show &show = showNamed("Morning Folk");
    const Json object = body("/Describe.ashx?id=" + show.topics.front())[0];
    EXPECT_EQ(object["element"], "topic");
    EXPECT_EQ(object["show_id"], show.id);
}

TEST_F(Describe, ReturnsNothingForOtherIds)
{
    for (const char *id : {"g79", "zzz", ""}) {
        const Json answer = json(std::string("/Describe.ashx?id=") + id);
        EXPECT_EQ(statusOf(answer), "200");
        EXPECT_TRUE(answer["body"].empty());
    }
}

TEST_F(Describe, ReturnsWhatIsPlaying)
{
    const Station &station = stationNamed("The Half Door");
    const Json rows = body("/Describe.ashx?c=nowplaying&id=" + station.id);
    ASSERT_GE(rows.size(), 5u);
    EXPECT_EQ(rows[0]["key"], "station");
    EXPECT_EQ(rows[1]["key"], "show");
    EXPECT_EQ(rows[1]["seconds_remaining"], "9000");
    EXPECT_EQ(rows.back()["text"], "150m remaining");
}

TEST_F(Describe, RefusesUnknownMethods)
{
    EXPECT_EQ(faultCodeOf(json("/Describe.ashx?c=nope")), "api.methodNotFound");
    EXPECT_EQ(faultCodeOf(json("/Describe.ashx?c=nowplaying&id=x")), "request.idInvalid");
}

TEST_F(Describe, CompositeWrapsTheStationInASection)
{
    const Json page = body("/Describe.ashx?c=composite&id=" + stationNamed("The Half Door").id);
    EXPECT_EQ(sectionOf(page, "listing")["children"][0]["element"], "station");
}

} // namespace
