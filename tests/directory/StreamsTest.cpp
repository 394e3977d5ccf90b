// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Streams.h"
#include "directory/Hls.h"
#include "tests/directory/TestDirectory.h"

#include <gmock/gmock.h>
#include <set>

using namespace directory;
using namespace directory::test;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;
using testing::StartsWith;

namespace {

constexpr char Here[] = "http://directory.test:8080";

class StreamsPage : public DirectoryTest {
protected:
    /// The request targets of the addresses in a playlist of any kind, in order.
    std::vector<std::string> entries(const std::string &target)
    {
        std::vector<std::string> found;
        const std::string text = answer(target).body;
        for (std::size_t at = text.find(Here); at != std::string::npos; at = text.find(Here, at)) {
            at += sizeof Here - 1;
            found.push_back(text.substr(at, text.find_first_of("\"<\n", at) - at));
        }
        return found;
    }
    std::string type(const std::string &target) { return answer(target).contentType; }
    /// Follows the first entry of each playlist to the audio; counts the playlists.
    int depth(std::string target)
    {
        int lists = 0;
        for (; lists < 30 && !answer(target).audio; ++lists)
            target = entries(target).at(0);
        return lists;
    }
};

TEST_F(StreamsPage, DescribesAStreamInHeaders)
{
    const Answer stream = answer("/stream/s29001/1.mp3");
    EXPECT_EQ(stream.status, 200);
    EXPECT_EQ(stream.contentType, "audio/mpeg");
    EXPECT_THAT(stream.headers,
        ElementsAre(Pair("Cache-Control", "no-cache"), Pair("icy-name", "Trial 01 Every Codec"),
            Pair("icy-genre", "Folk"), Pair("icy-br", "128")));
    ASSERT_TRUE(stream.audio.live);
    EXPECT_FALSE(stream.audio.live->title);
}

TEST_F(StreamsPage, EveryStreamOfTheCodecHasTitlesOnRequest)
{
    const auto metaint = Pair("icy-metaint", "16000");
    for (const auto &[target, titles] :
        {std::pair<const char *, bool> {"/stream/s29001/1.mp3", true},
            {"/stream/s29001/2.aac", true}, {"/stream/s29001/3.ogg", false},
            {"/stream/s29001/4.opus", false}, {"/stream/s29001/5.flac", false}}) {
        ApiRequest request = requestFor(target);
        request.wantsTitles = true;
        const Answer stream = ask(request);
        EXPECT_EQ(testing::Value(stream.headers, Contains(metaint)), titles) << target;
        EXPECT_EQ(static_cast<bool>(stream.audio.live->title), titles);
    }
}

TEST_F(StreamsPage, TitlesChangeWithTheSongs)
{
    ApiRequest request = requestFor("/stream/s29016/1.mp3?title_seconds=10");
    request.wantsTitles = true;
    const Answer stream = ask(request);
    std::set<std::string> titles;
    for (const double second : {0.0, 9.9, 10.0, 20.0, 30.0})
        titles.insert(stream.audio.live->title(second));
    EXPECT_THAT(titles,
        testing::UnorderedElementsAre("Sinéad O'Moor - Don't Wait Up",
            "Jürgen Öhler - Zwölf Brücken über die Spree", "The '73s - It's 5 o'Clock; Isn't It?",
            "Ράδιο - Φεγγάρι"));
    // Without the parameter, the titles are those that the lists show.
    request = requestFor("/stream/s20105/1.mp3");
    request.wantsTitles = true;
    const std::string playing = body("/Describe.ashx?c=nowplaying&id=s20105&render=json").dump();
    EXPECT_THAT(playing, HasSubstr(ask(request).audio.live->title(0)));
}

TEST_F(StreamsPage, PlaylistsOfEachKindLeadToTheAudio)
{
    const std::vector<std::pair<std::string, std::string>> kinds {{"1.m3u", "audio/x-mpegurl"},
        {"2.m3u8", "application/vnd.apple.mpegurl"}, {"3.pls", "audio/x-scpls"},
        {"4.asx", "video/x-ms-asf"}, {"5.xspf", "application/xspf+xml"}};
    for (const auto &[file, contentType] : kinds) {
        const std::string target = "/stream/s29015/" + file;
        EXPECT_EQ(type(target), contentType);
        EXPECT_THAT(
            entries(target), ElementsAre("/stream/s29015/" + std::string(1, file[0]) + ".mp3"));
        EXPECT_TRUE(answer(entries(target)[0]).audio.live) << file;
    }
    EXPECT_THAT(answer("/stream/s29015/1.m3u").body, StartsWith("#EXTM3U\n#EXTINF:-1,Trial 15"));
    EXPECT_THAT(answer("/stream/s29015/3.pls").body, StartsWith("[playlist]\nNumberOfEntries=1\n"));
    EXPECT_THAT(answer("/stream/s29015/4.asx").body, StartsWith("<ASX version=\"3.0\">"));
    EXPECT_THAT(answer("/stream/s29015/5.xspf").body, StartsWith("<?xml"));
}

TEST_F(StreamsPage, PlaylistsCanBeNestedOrCircular)
{
    EXPECT_EQ(depth("/stream/s29015/1.m3u"), 1);
    EXPECT_EQ(depth("/stream/s29002/1.m3u"), 2);
    EXPECT_EQ(depth("/stream/s29003/1.pls"), 6);
    EXPECT_THAT(entries("/stream/s29004/1.m3u"), ElementsAre("/stream/s29004/1.m3u"));
    EXPECT_EQ(answer("/stream/s29002/1/2.asx").status, 404);
}

TEST_F(StreamsPage, TrialsBehaveAsTheirNamesSay)
{
    EXPECT_EQ(answer("/stream/s29005/1.mp3").status, 404);
    EXPECT_TRUE(answer("/stream/s29005/2.mp3").audio.live);
    EXPECT_THAT(valuesOf(body("/Tune.ashx?id=s29006&render=json"), "url"),
        ElementsAre(
            "http://127.0.0.1:1/stream/s29006/1.mp3", std::string(Here) + "/stream/s29006/2.mp3"));
    const std::vector<std::string> deadFirst = entries("/stream/s29007/1.m3u");
    ASSERT_EQ(deadFirst.size(), 2u);
    EXPECT_EQ(answer(deadFirst[0]).status, 404);
    EXPECT_TRUE(answer(deadFirst[1]).audio.live);
    const Answer endless = answer("/stream/s29009/1.m3u");
    EXPECT_EQ(endless.contentType, "audio/mpeg");
    EXPECT_TRUE(endless.audio.live);
    EXPECT_EQ(type("/stream/s29010/1.pls"), "text/html");
    EXPECT_THAT(answer("/stream/s29010/1.pls").body, StartsWith("[playlist]"));
    EXPECT_GE(answer("/stream/s29011/1.m3u").body.size(), 256u * 1024u);
    EXPECT_TRUE(answer(entries("/stream/s29011/1.m3u").at(0)).audio.live);
    EXPECT_EQ(entries("/stream/s29012/1.m3u").size(), 1000u);
    EXPECT_THAT(answer("/stream/s29013/1.m3u").body, StartsWith("<!DOCTYPE html>"));
}

TEST_F(StreamsPage, TrialsAreFoundBySearch)
{
    std::size_t found = 0;
    for (const Json &row : body("/Search.ashx?query=trial&formats=*&render=json")) {
        const Json rows = row.value("children", Json::array({row}));
        for (const Json &each : rows)
            found += each.value("text", "").rfind("Trial ", 0) == 0 ? 1 : 0;
    }
    EXPECT_EQ(found, 17u);
}

TEST_F(StreamsPage, EverySampleExists)
{
    for (const Json &row : body("/Search.ashx?query=aa2")) {
        const std::string url = row["URL"];
        const Answer sample = answer(url.substr(sizeof Here - 1));
        EXPECT_EQ(sample.status, 200) << url;
        if (sample.audio)
            continue;
        for (const std::string &entry : entries(url.substr(sizeof Here - 1)))
            EXPECT_TRUE(answer(entry).audio.live) << entry;
    }
}

TEST_F(StreamsPage, UnknownPathsAre404)
{
    for (const char *target : {"/stream/", "/stream/s29001", "/stream/s29001/", "/stream/s1/1.mp3",
             "/stream/s29001/0.mp3", "/stream/s29001/9.mp3", "/stream/s29001/1.ogg",
             "/stream/s29001/1", "/stream/s29001/x.mp3", "/stream/s29001/1.mp3/more/still",
             "/stream/s29001/1/1.m3u", "/stream/s29001/6/1-.ts", "/stream/s29001/6/3-1.ts",
             "/stream/s29001/6/1-99999999999999999999.ts", "/stream/s29001/6/1-1.ts",
             "/stream/t1/1.mp3", "/stream/t300301/2.mp3", "/stream/sample/tone.wav"})
        EXPECT_EQ(answer(target).status, 404) << target;
}

TEST_F(StreamsPage, ReturnsTheMelodyOfEachStream)
{
    const Json tunes = Json::parse(answer("/_tunes?id=s29002").body);
    EXPECT_EQ(tunes["id"], "s29002");
    ASSERT_EQ(tunes["streams"].size(), 1u);
    EXPECT_EQ(tunes["streams"][0]["path"], "/stream/s29002/1.m3u");
    EXPECT_EQ(tunes["streams"][0]["leads_to"], "/stream/s29002/1.mp3");
    EXPECT_EQ((tunes["streams"][0]["notes"].get<std::array<double, Melody::NoteCount>>()),
        Melody("s29002", 0).notes());
    EXPECT_EQ(tunes["streams"][0]["note_seconds"], 0.5);
    EXPECT_EQ(answer("/_tunes?id=s1").status, 404);
}

TEST_F(StreamsPage, InvalidRangesAreIgnored)
{
    for (const char *range : {"bytes=5-1x", "bytes=-", "items=1-2", "bytes=1-2,5-6", "bytes=x-"}) {
        ApiRequest request = requestFor("/stream/t300301/1.mp3");
        request.range = range;
        EXPECT_EQ(ask(request).status, 200) << range;
    }
}

TEST(Hls, TheWindowEndsWithTheLastCompleteSegment)
{
    const std::uint64_t now = 1000 * Hls::SegmentMilliseconds + 5;
    EXPECT_EQ(Hls::newest(now), 999u);
    const std::string playlist = Hls::mediaPlaylist("x-", now);
    EXPECT_THAT(playlist, HasSubstr("#EXT-X-MEDIA-SEQUENCE:995\n#EXTINF:2.048,\nx-995.ts\n"));
    EXPECT_THAT(playlist, testing::EndsWith("x-999.ts\n"));
    EXPECT_TRUE(Hls::available(999, now));
    EXPECT_FALSE(Hls::available(1000, now));
    EXPECT_TRUE(Hls::available(990, now));
    EXPECT_FALSE(Hls::available(989, now));
    EXPECT_THAT(Hls::mediaPlaylist("", now + Hls::SegmentMilliseconds),
        HasSubstr("#EXT-X-MEDIA-SEQUENCE:996\n"));
}

/// The presentation time of a segment's first audio in 1/90000 s (ISO 13818-1, 2.4.3.7).
std::uint64_t firstTime(const std::string &segment)
{
    const std::size_t start = segment.find(std::string("\0\0\1\xC0", 4));
    const auto byte = [&](std::size_t at) {
        return std::uint64_t {static_cast<unsigned char>(segment.at(start + at))};
    };
    return (byte(9) >> 1 & 7) << 30 | (byte(10) << 7 | byte(11) >> 1) << 15
        | (byte(12) << 7 | byte(13) >> 1);
}

TEST(Hls, SegmentsAreWholePacketsThatContinueInTime)
{
    constexpr std::uint64_t Number = 876594977;
    const Melody melody("s29001", 0);
    const std::string first = Hls::segment(melody, 64, Number);
    const std::string second = Hls::segment(melody, 64, Number + 1);
    // Transport packets are 188 bytes long and begin with a sync byte (ISO 13818-1, 2.4.3.2).
    for (const std::string &segment : {first, second}) {
        ASSERT_EQ(segment.size() % 188, 0u);
        for (std::size_t at = 0; at < segment.size(); at += 188)
            ASSERT_EQ(segment[at], 0x47) << at;
    }
    // Presentation times wrap at 33 bits.
    constexpr std::uint64_t Mask = (std::uint64_t {1} << 33) - 1;
    EXPECT_EQ((firstTime(second) - firstTime(first)) & Mask, Hls::SegmentMilliseconds * 90);
}

TEST(Hls, SegmentsFitIntoTheBandwidthOfTheMasterPlaylist)
{
    for (const int bitrate : {16, 64, 128, 256}) {
        const std::string playlist = Hls::masterPlaylist({{"a", bitrate}});
        const std::string attribute = "BANDWIDTH=";
        const std::size_t start = playlist.find(attribute) + attribute.size();
        const auto bandwidth = static_cast<std::size_t>(
            parseNumber(playlist.substr(start, playlist.find(',') - start)));
        const std::size_t bytes = Hls::segment(Melody("s29001", 0), bitrate, 876594977).size();
        EXPECT_LE(bytes * 8 * 1000 / Hls::SegmentMilliseconds, bandwidth) << bitrate;
    }
}

} // namespace
