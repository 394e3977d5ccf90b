// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/directory/Fetch.h"
#include "tests/directory/RunningServer.h"
#include "tests/directory/StreamClient.h"
#include "tests/support/Ear.h"

#include "directory/AudioDelivery.h"
#include "directory/HttpServer.h"
#include "directory/IcyMetadata.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <list>
#include <sstream>
#include <thread>

using namespace directory;
using namespace directory::test;
using namespace ear;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

/// The melodies of a station's streams, from "/_tunes".
class Tunes {
public:
    Tunes(const RunningServer &server, const std::string &id)
        : m_streams(Json::parse(fetch(server.url("/_tunes?id=" + id)).body)["streams"])
    {
    }
    std::size_t count() const { return m_streams.size(); }
    const Json &operator[](std::size_t index) const { return m_streams[index]; }
    std::vector<double> notes(std::size_t index) const { return m_streams[index]["notes"]; }
    std::string path(std::size_t index) const { return m_streams[index]["path"]; }

private:
    Json m_streams;
};

struct Case {
    std::size_t index;
    std::string type;
};

void PrintTo(const Case &each, std::ostream *out)
{
    *out << each.index << ' ' << each.type;
}

class EachCodec : public testing::TestWithParam<Case> { };

TEST_P(EachCodec, StartsWithABurstOfItsMelody)
{
    const RunningServer server;
    const Tunes tunes(server, "s29001");
    const std::size_t index = GetParam().index;
    StreamClient client(server.port(), tunes.path(index));
    client.readFor(1000);
    EXPECT_EQ(client.end(), StreamClient::End::Open);
    EXPECT_EQ(client.status(), 200);
    EXPECT_EQ(client.header("content-type"), GetParam().type);
    EXPECT_EQ(client.header("connection"), "close");
    EXPECT_EQ(client.header("content-length"), "");
    EXPECT_EQ(client.header("transfer-encoding"), "");
    EXPECT_EQ(client.header("icy-metaint"), "");
    EXPECT_EQ(client.header("icy-name"), "Trial 01 Every Codec");
    EXPECT_EQ(client.header("icy-genre"), "Folk");
    EXPECT_EQ(client.header("icy-br"), std::to_string(tunes[index]["bitrate"].get<int>()));

    const Sound sound = decoded(client.body());
    EXPECT_EQ(sound.error, "");
    EXPECT_GT(sound.seconds(), 3.5);
    EXPECT_LT(sound.seconds(), 6);
    // A sine of -12 dB has -15 dB of energy.
    EXPECT_NEAR(sound.loudness(), 0.177, 0.03);
    const std::vector<double> heard = sound.notes();
    for (std::size_t other = 0; other < tunes.count(); ++other)
        EXPECT_EQ(isPartOf(heard, tunes.notes(other), 6), other == index) << other;
}

INSTANTIATE_TEST_SUITE_P(StreamServer, EachCodec,
    testing::Values(Case {0, "audio/mpeg"}, Case {1, "audio/aac"}, Case {2, "audio/ogg"},
        Case {3, "audio/ogg"}, Case {4, "audio/flac"}, Case {6, "audio/mpeg"},
        Case {7, "audio/aac"}));

TEST(StreamServer, IsPacedInRealTimeAfterTheBurst)
{
    constexpr double BytesPerSecond = 128 * 1000 / 8;
    const RunningServer server;
    const auto start = std::chrono::steady_clock::now();
    StreamClient client(server.port(), "/stream/s29001/1.mp3");
    // Seconds of audio ahead of real time; both sides may stand still, which is made up for.
    const auto ahead = [&] {
        const std::chrono::duration<double> gone = std::chrono::steady_clock::now() - start;
        return static_cast<double>(client.body().size()) / BytesPerSecond - gone.count();
    };
    double most = 0;
    for (int i = 0; i < 20 && most <= 2.5; ++i) {
        client.readFor(500);
        most = std::max(most, ahead());
    }
    EXPECT_GT(most, 2.5);
    for (int i = 0; i < 20 && client.body().size() < 8 * BytesPerSecond; ++i) {
        client.readFor(500);
        most = std::max(most, ahead());
    }
    EXPECT_GE(client.body().size(), 8 * BytesPerSecond);
    EXPECT_LT(most, 5.5);
}

TEST(StreamServer, AnswersHeadWithHeadersOnly)
{
    const RunningServer server;
    StreamClient client(server.port(), "/stream/s29001/1.mp3", "Icy-MetaData: 1\r\n", 0, "HEAD");
    EXPECT_EQ(client.readToEnd(), StreamClient::End::Closed);
    EXPECT_EQ(client.header("content-type"), "audio/mpeg");
    EXPECT_EQ(client.header("icy-metaint"), std::to_string(IcyMetadata::Interval));
    EXPECT_EQ(client.body(), "");
}

TEST(StreamServer, StreamsOverTls)
{
    const RunningServer server;
    FetchOptions options;
    options.caFile = TEST_CERTIFICATE;
    options.timeoutMilliseconds = 3000;
    const Fetched answer = fetch(server.secureUrl("/stream/s29001/1.mp3"), options);
    EXPECT_EQ(answer.code, CURLE_OPERATION_TIMEDOUT);
    EXPECT_TRUE(isPartOf(decoded(answer.body).notes(), Tunes(server, "s29001").notes(0), 6));
}

/// The titles in a stream, and the audio between them.
struct Unwoven {
    std::vector<std::string> titles;
    std::string audio;
};

Unwoven unwoven(const std::string &body)
{
    Unwoven result;
    std::size_t at = 0;
    while (at + IcyMetadata::Interval < body.size()) {
        result.audio += body.substr(at, IcyMetadata::Interval);
        at += IcyMetadata::Interval;
        const std::size_t length = static_cast<unsigned char>(body[at]) * 16u;
        if (length > 0)
            result.titles.emplace_back(body.substr(at + 1, length).c_str());
        at += 1 + length;
    }
    result.audio += body.substr(std::min(at, body.size()));
    return result;
}

TEST(StreamServer, InsertsChangingTitlesOnRequest)
{
    const RunningServer server;
    const Tunes tunes(server, "s29016");
    // The burst and one more block, which follows after one or two seconds.
    constexpr std::size_t Wanted[] {84000, 52000};
    for (std::size_t i = 0; i < tunes.count(); ++i) {
        const std::string path = tunes.path(i);
        StreamClient client(server.port(), path + "?title_seconds=1", "Icy-MetaData: 1\r\n");
        EXPECT_TRUE(client.readBytes(Wanted[i]));
        EXPECT_EQ(client.header("icy-metaint"), std::to_string(IcyMetadata::Interval));
        const Unwoven content = unwoven(client.body());
        ASSERT_GE(content.titles.size(), 2u) << path;
        EXPECT_NE(content.titles[0], content.titles[1]);
        for (const std::string &title : content.titles) {
            EXPECT_THAT(title, StartsWith("StreamTitle='"));
            EXPECT_THAT(title, testing::EndsWith("';"));
            EXPECT_THAT(title, HasSubstr(" - "));
        }
        const Sound sound = decoded(content.audio);
        EXPECT_EQ(sound.error, "");
        EXPECT_TRUE(isPartOf(sound.notes(), tunes.notes(i), 8));
    }
}

TEST(StreamServer, LimitsTheNumberOfStreams)
{
    const RunningServer server;
    // Streams that have not started count as well, and need no encoder.
    server.fail("slow-headers@/stream/:3600*" + std::to_string(HttpServer::MaxStreams));
    std::list<StreamClient> clients;
    std::string left;
    for (std::size_t i = 0; i < HttpServer::MaxStreams; ++i) {
        clients.emplace_back(server.port(), "/stream/s29001/8.aac");
        left = fetch(server.url("/_faults"))
                   .body; // a round trip, so that the backlog of connections does not fill up
    }
    for (int i = 0; i < 1000 && left != "{\"faults\":[]}\n"; ++i)
        left = fetch(server.url("/_faults")).body;
    ASSERT_EQ(left, "{\"faults\":[]}\n");
    StreamClient tooMany(server.port(), "/stream/s29001/8.aac");
    tooMany.readToEnd();
    EXPECT_EQ(tooMany.status(), 503);
    EXPECT_EQ(tooMany.header("retry-after"), "5");
    // A closed stream makes room once the server has noticed its end.
    clients.pop_front();
    int status = 503;
    for (int i = 0; i < 100 && status == 503; ++i) {
        StreamClient again(server.port(), "/stream/s29001/8.aac");
        again.readBytes(1);
        status = again.status();
    }
    EXPECT_EQ(status, 200);
}

TEST(StreamServer, DropsAClientThatDoesNotRead)
{
    const RunningServer server;
    StreamClient lazy(server.port(), "/stream/s20105/1.mp3", {}, 4096);
    const Tunes others(server, "s29001"); // other clients are served meanwhile
    EXPECT_EQ(others.count(), 8u);
    std::this_thread::sleep_for(std::chrono::duration<double>(AudioDelivery::PatienceSeconds + 2));
    lazy.readToEnd();
    EXPECT_NE(lazy.end(), StreamClient::End::Open);
    // Only what the kernel and the server had buffered, not seven seconds of audio at 320 kbit/s.
    EXPECT_LT(lazy.body().size(), 4 * AudioDelivery::MaxWaiting);
}

TEST(StreamServer, EpisodesAreFilesWithLengthAndRanges)
{
    const RunningServer server;
    const Tunes tunes(server, "t300301");
    StreamClient head(server.port(), tunes.path(0), {}, 0, "HEAD");
    EXPECT_EQ(head.readToEnd(), StreamClient::End::Closed);
    const std::size_t length = 64 * 60 * 96 * 1000 / 8; // 64 minutes
    EXPECT_EQ(head.header("content-length"), std::to_string(length));
    EXPECT_EQ(head.header("accept-ranges"), "bytes");

    StreamClient middle(server.port(), tunes.path(0), "Range: bytes=20000100-20150099\r\n");
    EXPECT_EQ(middle.readToEnd(), StreamClient::End::Closed);
    EXPECT_EQ(middle.status(), 206);
    EXPECT_EQ(middle.header("content-range"), "bytes 20000100-20150099/" + std::to_string(length));
    EXPECT_EQ(middle.body().size(), 150000u);
    const Sound sound = decoded(middle.body());
    EXPECT_NEAR(sound.seconds(), 12.5, 0.1);
    EXPECT_TRUE(isPartOf(sound.notes(), tunes.notes(0), 22));

    StreamClient end(server.port(), tunes.path(0), "Range: bytes=-1000\r\n");
    end.readToEnd();
    EXPECT_EQ(end.body().size(), 1000u);
    StreamClient rest(
        server.port(), tunes.path(0), "Range: bytes=" + std::to_string(length - 500) + "-\r\n");
    rest.readToEnd();
    EXPECT_EQ(rest.body(), end.body().substr(500));
    StreamClient beyond(
        server.port(), tunes.path(0), "Range: bytes=" + std::to_string(length) + "-\r\n");
    beyond.readToEnd();
    EXPECT_EQ(beyond.status(), 416);
    EXPECT_EQ(beyond.header("content-range"), "bytes */" + std::to_string(length));
}

TEST(StreamServer, APrerollIsAShortFileWithItsOwnMelody)
{
    const RunningServer server;
    const Json preroll = Tunes(server, "s29008")[0]["preroll"];
    const Fetched list = fetch(server.url("/stream/s29008/1.pls"));
    const std::string path = preroll["path"];
    ASSERT_LT(list.body.find(path), list.body.find("/stream/s29008/1.mp3\n"));
    const Fetched clip = fetch(server.url(path));
    EXPECT_EQ(clip.code, CURLE_OK);
    const Sound sound = decoded(clip.body);
    EXPECT_NEAR(sound.seconds(), 4, 0.1);
    EXPECT_TRUE(isPartOf(sound.notes(), preroll["notes"], 7));
    EXPECT_FALSE(isPartOf(sound.notes(), Tunes(server, "s29008").notes(0), 1));
}

std::vector<std::string> addresses(const std::string &playlist)
{
    std::vector<std::string> found;
    for (const std::string &line : split(playlist, '\n')) {
        if (line.front() != '#')
            found.push_back(line);
    }
    return found;
}

/// Counts the pieces of 20 ms that are not a pure tone of the melody, by position within a note.
std::array<int, 25> uncleanPieces(const Sound &sound, const std::vector<double> &melody)
{
    constexpr std::size_t Piece = Sound::Rate / 50;
    std::array<int, 25> unclean {};
    for (std::size_t i = 0; (i + 1) * Piece <= sound.samples.size(); ++i) {
        double best = 0;
        for (const double note : melody)
            best = std::max(best, sound.share(i * Piece, Piece, note));
        unclean[i % unclean.size()] += best < 0.9 ? 1 : 0;
    }
    return unclean;
}

TEST(StreamServer, HlsSegmentsPlayWithoutGaps)
{
    const RunningServer server;
    const Tunes tunes(server, "s29001");
    const Fetched playlist = fetch(server.url(tunes.path(5)));
    EXPECT_THAT(playlist.headers, HasSubstr("application/vnd.apple.mpegurl"));
    std::string stream;
    const std::vector<std::string> segments = addresses(playlist.body);
    ASSERT_EQ(segments.size(), 5u);
    for (const std::string &segment : segments) {
        const Fetched answer = fetch(server.url("/stream/s29001/" + segment));
        ASSERT_EQ(answer.status, 200) << segment;
        EXPECT_THAT(answer.headers, HasSubstr("video/mp2t"));
        stream += answer.body;
    }
    const Sound sound = decoded(stream);
    EXPECT_EQ(sound.error, "");
    EXPECT_NEAR(sound.seconds(), 5 * 2.048, 0.05);
    EXPECT_TRUE(isPartOf(sound.notes(), tunes.notes(5), 18));
    // Transitions between notes are impure, always at the same position within a note. A gap
    // between segments would show at other positions, as a segment is not a whole number of notes.
    int places = 0;
    for (const int count : uncleanPieces(sound, tunes.notes(5)))
        places += count > 0 ? 1 : 0;
    EXPECT_LE(places, 3);
}

TEST(StreamServer, TheHlsWindowMovesInRealTime)
{
    const RunningServer server;
    const auto segments
        = [&] { return addresses(fetch(server.url("/stream/s29001/6.m3u8")).body); };
    // Whoever looks too seldom finds that it has moved by more than one segment, and looks again.
    const auto isNext = [](const std::vector<std::string> &old,
                            const std::vector<std::string> &now) {
        return now != old && std::equal(old.begin() + 1, old.end(), now.begin(), now.end() - 1);
    };
    std::vector<std::string> before = segments();
    std::vector<std::string> after = before;
    for (int i = 0; i < 400 && !isNext(before, after); ++i) {
        before = after;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        after = segments();
    }
    ASSERT_TRUE(isNext(before, after));
    EXPECT_EQ(fetch(server.url("/stream/s29001/" + before.front())).status, 200);
    EXPECT_EQ(fetch(server.url("/stream/s29001/6/1-5.ts")).status, 404);
}

TEST(StreamServer, HlsVariantsPlayTheSameMelody)
{
    const RunningServer server;
    const Fetched master = fetch(server.url("/stream/s29014/1.m3u8"));
    EXPECT_THAT(master.body, HasSubstr("#EXT-X-STREAM-INF:BANDWIDTH="));
    const std::vector<std::string> variants = addresses(master.body);
    ASSERT_EQ(variants.size(), 2u);
    std::string other;
    for (const std::string &variant : variants) {
        const std::string address = "/stream/s29014/" + variant;
        const std::string folder = address.substr(0, address.rfind('/') + 1);
        std::string bytes;
        for (const std::string &segment : addresses(fetch(server.url(address)).body))
            bytes += fetch(server.url(folder + segment)).body;
        EXPECT_TRUE(isPartOf(decoded(bytes).notes(), Tunes(server, "s29014").notes(0), 18));
        EXPECT_NE(bytes, other);
        other = bytes;
    }
}

TEST(StreamServer, DoesNotLogRequestsForMelodies)
{
    const std::string file = testing::TempDir() + "directory-streams-test.log";
    std::remove(file.c_str());
    {
        const RunningServer server(file);
        const Tunes tunes(server, "s29001");
        fetch(server.url("/stream/s29002/1.m3u"));
    }
    std::stringstream text;
    text << std::ifstream(file).rdbuf();
    EXPECT_EQ(text.str(), "GET /stream/s29002/1.m3u\n");
    std::remove(file.c_str());
}

} // namespace
