// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/directory/TestDirectory.h"

#include <gmock/gmock.h>

using namespace directory;
using namespace directory::test;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

using Tune = DirectoryTest;

TEST_F(Tune, ResolvesAStationToItsStreamsInOrder)
{
    const Station &station = stationNamed("The Half Door");
    const Json answer = json("/Tune.ashx?render=json&formats=mp3,aac,ogg&id=" + station.id);
    EXPECT_EQ(answer["head"].dump(), R"({"status":"200"})");
    EXPECT_THAT(valuesOf(answer["body"], "media_type"), ElementsAre("mp3", "aac", "ogg"));
    const Json &first = answer["body"][0];
    EXPECT_EQ(first["element"], "audio");
    EXPECT_EQ(first["url"], "http://directory.test:8080/stream/" + station.id + "/1.mp3");
    EXPECT_TRUE(first["bitrate"].is_number());
    EXPECT_TRUE(first["reliability"].is_number());
    EXPECT_TRUE(first["is_direct"].is_boolean());
    EXPECT_EQ(first["is_hls_advanced"], "false");
    EXPECT_EQ(first["guide_id"], 'e' + station.id.substr(1) + '1');
}

TEST_F(Tune, AnswersPlainM3uWithoutRender)
{
    const Station &station = stationNamed("The Half Door");
    const Answer given = answer("/Tune.ashx?formats=mp3,aac&id=" + station.id);
    EXPECT_EQ(given.contentType, "audio/x-mpegurl");
    const std::string base = "http://directory.test:8080/stream/" + station.id;
    EXPECT_EQ(given.body, base + "/1.mp3\n" + base + "/2.aac\n");
    const Answer failed = answer("/Tune.ashx?id=s0");
    EXPECT_EQ(failed.status, 200);
    EXPECT_EQ(failed.body, "#STATUS: 400\n");
}

TEST_F(Tune, MarksPlaylistsAsIndirectStreams)
{
    for (const Station &station : catalog().stations) {
        if (station.streams.front().playlist != "m3u")
            continue;
        const Json items = body("/Tune.ashx?render=json&formats=mp3,aac&id=" + station.id);
        EXPECT_EQ(items[0]["is_direct"], false);
        EXPECT_EQ(items[0]["playlist_type"], "m3u");
        EXPECT_EQ(items[2]["is_direct"], true);
        EXPECT_FALSE(items[2].contains("playlist_type"));
        return;
    }
    FAIL() << "no station with a playlist";
}

TEST_F(Tune, AnswersUnplayableStationsWithAPlaceholder)
{
    const auto url = [this](const char *name) {
        const Json answer = json("/Tune.ashx?render=json&id=" + stationNamed(name).id);
        EXPECT_EQ(statusOf(answer), "200");
        EXPECT_EQ(answer["body"].size(), 1u);
        EXPECT_EQ(answer["body"][0]["bitrate"], 24);
        return std::string(answer["body"][0]["url"]);
    };
    EXPECT_THAT(url("Tidewrack Talk"), HasSubstr("/service/Audio/notcompatible.enUS.mp3"));
    EXPECT_THAT(url("Grand Bleu"), HasSubstr("/service/Audio/georestricted.enUS.mp3"));
    EXPECT_THAT(url("Sable Island Drift"), HasSubstr("/service/Audio/nostream.enUS.mp3"));
    EXPECT_THAT(url("Otago Oval"), HasSubstr("/service/Audio/restricted.enUS.mp3"));
}

TEST_F(Tune, ResolvesTopicsShowsAndSingleStreams)
{
    const Show &podcast = showNamed("Jazz Letters");
    const std::string topic = podcast.topics.front();
    EXPECT_EQ(body("/Tune.ashx?render=json&sid=p1&id=" + topic)[0]["guide_id"], topic);
    EXPECT_EQ(body("/Tune.ashx?render=json&id=" + podcast.id)[0]["guide_id"], topic);
    const Show &live = showNamed("Morning Folk");
    EXPECT_THAT(std::string(body("/Tune.ashx?render=json&id=" + live.id)[0]["url"]),
        HasSubstr("/stream/" + live.station + "/1.mp3"));
    const std::string stream = 'e' + live.station.substr(1) + '2';
    EXPECT_THAT(std::string(body("/Tune.ashx?render=json&id=" + stream)[0]["url"]),
        HasSubstr("/stream/" + live.station + "/2.aac"));
}

TEST_F(Tune, RefusesInvalidIdsAndMethods)
{
    for (const char *query : {"id=g92", "id=", "x=1", "c=nope&id=s1"}) {
        const Json answer = json(std::string("/Tune.ashx?render=json&") + query);
        EXPECT_EQ(statusOf(answer), "404") << query;
        EXPECT_EQ(faultCodeOf(answer), "api.methodNotFound") << query;
    }
    for (const char *id : {"s0", "t0", "p0", "e0", "e99999999991"}) {
        const Json answer = json(std::string("/Tune.ashx?render=json&id=") + id);
        EXPECT_EQ(faultCodeOf(answer), "request.idInvalid") << id;
    }
}

TEST_F(Tune, ListsTheStreamsOfAStationToChooseFrom)
{
    const Station &station = stationNamed("The Half Door");
    const Json rows = body("/Tune.ashx?c=ebrowse&formats=mp3,aac&id=" + station.id);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[1]["type"], "audio");
    EXPECT_EQ(rows[1]["bitrate"], "64");
    const std::string id = 'e' + station.id.substr(1) + '2';
    EXPECT_EQ(targetOf(rows[1]), "/Tune.ashx?id=" + id + "&sid=" + station.id + "&formats=mp3,aac");
    EXPECT_EQ(rows[1]["guide_id"], id);
    EXPECT_EQ(rows[1]["station_id"], station.id); // the station's own
}

TEST_F(Tune, ShowsTheContentsOfAShowOnTheAir)
{
    const Show &show = showNamed("Morning Folk");
    const Json answer = json("/Tune.ashx?c=pbrowse&id=" + show.id);
    EXPECT_EQ(answer["head"]["title"], "Morning Folk Listening Options");
    EXPECT_THAT(valuesOf(answer["body"], "key"), ElementsAre("liveShow", "topics"));
    const Json topic = answer["body"][1]["children"][0];
    EXPECT_EQ(topic["item"], "topic");
    EXPECT_EQ(topic["stream_type"], "download");
    EXPECT_EQ(topic["text"], "Fiddles (1h, 11m)");
    EXPECT_EQ(topic["topic_duration"], "4260");
    EXPECT_EQ(topic["subtext"], "Saturday Mar 14");
    EXPECT_EQ(targetOf(topic), "/Tune.ashx?id=" + show.topics.front() + "&sid=" + show.id);
}

TEST_F(Tune, ShowsTheStationOfAShowThatIsNotOn)
{
    m_now += 6 * 3600;
    const Json page = body("/Tune.ashx?c=pbrowse&id=" + showNamed("Morning Folk").id);
    EXPECT_THAT(valuesOf(page, "key"), ElementsAre("topics", "stations"));
}

TEST_F(Tune, ReturnsTheRemainingTimeOfAShow)
{
    const Show &show = showNamed("Morning Folk"); // 7:00 to 10:00 in Dublin
    const Json rows = body("/Tune.ashx?c=sbrowse&id=" + show.id);
    EXPECT_EQ(rows[0]["seconds_remaining"], "9000");
}

} // namespace
