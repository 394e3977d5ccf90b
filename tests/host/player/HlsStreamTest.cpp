// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/host/player/StreamReaderFixture.h"

namespace {

/// HTTP Live Streaming with the faults of real stations and networks.
class HlsStreamTest : public StreamReaderFixture {
protected:
    using Request = ScriptedServer::Request;

    /// A playlist of the segments from \a first to before \a end, in \a folder.
    static QByteArray list(int first, int end, const QByteArray &folder = {})
    {
        QByteArray text = "#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXT-X-MEDIA-SEQUENCE:"
            + QByteArray::number(first) + "\n";
        for (int i = first; i < end; ++i)
            text += "#EXTINF:1.0,\n" + folder + "s" + QByteArray::number(i) + ".aac\n";
        return text;
    }
    void serveSegments(int count, const QByteArray &folder = "/")
    {
        for (int i = 0; i < count; ++i)
            serve(folder + "s" + QByteArray::number(i) + ".aac", file(segment(i)));
    }
    void serveMaster()
    {
        serve("/master.m3u8",
            file("#EXTM3U\n#EXT-X-STREAM-INF:BANDWIDTH=64000\nlow.m3u8\n"
                 "#EXT-X-STREAM-INF:BANDWIDTH=128000\nhigh.m3u8\n"));
    }
    static QByteArray segment(int number) { return audio(1000, char('A' + number)); }
    static QByteArray segments(int first, int end)
    {
        QByteArray bytes;
        for (int i = first; i < end; ++i)
            bytes += segment(i);
        return bytes;
    }
};

TEST_F(HlsStreamTest, ADeadVariantIsReplacedAtTheStart)
{
    serveMaster();
    serve("/low.m3u8", file(list(0, 3)));
    serveSegments(3);
    play("/master.m3u8");
    ASSERT_TRUE(waitForBytes(3000));
    EXPECT_EQ(requests("/high.m3u8"), 1);
    EXPECT_EQ(requests("/master.m3u8"), 1);
}

TEST_F(HlsStreamTest, AVariantThatSaysNothingIsLeftForTheNext)
{
    times.entry = Milliseconds(300);
    times.http.connect = Milliseconds(60000);
    times.giveUp = Milliseconds(5000);
    serveMaster();
    serve("/high.m3u8", {200, "", {}, End::StallBeforeHead, 0});
    serve("/low.m3u8", file(list(0, 3)));
    serveSegments(3);
    play("/master.m3u8");
    EXPECT_TRUE(waitForBytes(3000));
}

TEST_F(HlsStreamTest, AVariantThatDiesIsReplacedWithoutGapOrRepeat)
{
    serveMaster();
    // One variant loses its segments from the fourth on.
    serve("/high.m3u8", file(list(0, 9, "high/") + "#EXT-X-ENDLIST\n"));
    serveSegments(3, "/high/");
    serve("/low.m3u8", file(list(0, 9, "low/") + "#EXT-X-ENDLIST\n"));
    serveSegments(9, "/low/");
    play("/master.m3u8", false);
    ASSERT_TRUE(waitForEnd());
    EXPECT_TRUE(ended);
    EXPECT_EQ(consumer.bytes(), segments(0, 9));
    EXPECT_EQ(requests("/low/s2.aac"), 0);
}

TEST_F(HlsStreamTest, WaitsGrowWhileAllVariantsAreDead)
{
    serveMaster();
    serveSegments(3);
    const Response dead {503, "", {}, End::Complete, 0};
    serve("/low.m3u8", dead);
    const auto tries = serveAndTime("/high.m3u8", file(list(0, 3)), dead);
    play("/master.m3u8");
    ASSERT_TRUE(waitForBytes(3000));
    ASSERT_TRUE(spinUntil([this] { return requests("/master.m3u8") >= 4; }, 20000));
    reader.reset();
    const auto tried = tries->all();
    ASSERT_GE(tried.size(), 3U);
    EXPECT_GE(tried.back() - tried.at(tried.size() - 2), Milliseconds(900));
    EXPECT_EQ(consumer.bytes(), segments(0, 3));
}

TEST_F(HlsStreamTest, AFileWhoseLastPieceIsSilentHasEnded)
{
    serve("/a.m3u8",
        file("#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\ns0.aac\n#EXT-X-DISCONTINUITY\n"
             "#EXTINF:1,\nsilent.aac\n#EXT-X-ENDLIST\n"));
    serveSegments(1);
    serve("/silent.aac", file(QByteArray(1000, '\0')));
    play("/a.m3u8", false);
    ASSERT_TRUE(waitForEnd());
    EXPECT_TRUE(ended);
    EXPECT_TRUE(problem.isEmpty());
}

TEST_F(HlsStreamTest, AStationThatEndsIsJoinedAnewAndRepeatsNothing)
{
    answers["/live.m3u8"] = [count = 0](const Request &) mutable {
        return file(++count < 3 ? list(0, 3) + "#EXT-X-ENDLIST\n" : list(2, 5));
    };
    serveSegments(5);
    play("/live.m3u8");
    ASSERT_TRUE(waitForBytes(5000));
    EXPECT_FALSE(ended);
    EXPECT_EQ(consumer.bytes(), segments(0, 5));
}

TEST_F(HlsStreamTest, APlaylistThatStandsStillRepeatsNothing)
{
    serve("/live.m3u8", file(list(0, 3)));
    serveSegments(3);
    play("/live.m3u8");
    // The list stops growing: the reader takes it for ended and joins it again, at least once.
    ASSERT_TRUE(spinUntil([this] { return !told.isEmpty(); }, 20000));
    const int before = requests("/live.m3u8");
    ASSERT_TRUE(spinUntil([&] { return requests("/live.m3u8") >= before + 3; }, 20000));
    EXPECT_EQ(consumer.bytes(), segments(0, 3));
}

TEST_F(HlsStreamTest, AServerThatLagsBehindAnotherRepeatsNothing)
{
    answers["/live.m3u8"] = [count = 0](const Request &) mutable {
        ++count;
        return file(count == 1 ? list(0, 5) : count == 2 ? list(0, 3) : list(2, 6));
    };
    serveSegments(6);
    play("/live.m3u8");
    ASSERT_TRUE(waitForBytes(4000));
    EXPECT_EQ(consumer.bytes(), segments(2, 6));
}

TEST_F(HlsStreamTest, NumbersThatBeganAnewAreFollowed)
{
    answers["/live.m3u8"] = [count = 0](const Request &) mutable {
        return file(++count == 1 ? list(15, 18) : list(0, 3));
    };
    serveSegments(18);
    play("/live.m3u8");
    ASSERT_TRUE(waitForBytes(6000));
    EXPECT_EQ(consumer.bytes(), segments(15, 18) + segments(0, 3));
}

TEST_F(HlsStreamTest, AStationThatWasAwayForLongIsJoinedWhereItIsNow)
{
    answers["/live.m3u8"] = [count = 0](const Request &) mutable {
        ++count;
        if (count == 1)
            return file(list(0, 3));
        // After the outage the list is 37 segments longer and still names the first ones.
        return count < 6 ? Response {503, "", {}, End::Complete, 0} : file(list(0, 40));
    };
    for (int i = 0; i < 40; ++i)
        serve("/s" + QByteArray::number(i) + ".aac", file(segment(i)));
    play("/live.m3u8");
    ASSERT_TRUE(spinUntil([this] { return requests("/s39.aac") > 0; }, 20000));
    EXPECT_EQ(requests("/s3.aac"), 0);
    EXPECT_EQ(requests("/s36.aac"), 0);
    EXPECT_EQ(requests("/s37.aac"), 1);
}

TEST_F(HlsStreamTest, AnEmptyPlaylistIsAProblemInWords)
{
    times.giveUp = Milliseconds(5000);
    serve("/live.m3u8", file("#EXTM3U\n#EXT-X-TARGETDURATION:10\n"));
    serve("/ended.m3u8", file("#EXTM3U\n#EXT-X-TARGETDURATION:10\n#EXT-X-ENDLIST\n"));
    for (const char *path : {"/live.m3u8", "/ended.m3u8"}) {
        for (const bool live : {true, false}) {
            problem.clear();
            play(path, live);
            ASSERT_TRUE(waitForEnd());
            EXPECT_EQ(problem, QStringLiteral("The stream's playlist is empty.")) << path << live;
            EXPECT_FALSE(ended);
        }
    }
}

TEST_F(HlsStreamTest, ASegmentThatCannotBeDecodedCostsAGap)
{
    serve("/live.m3u8", file(list(0, 3)));
    serveSegments(3);
    answers["/s1.aac"] = [this](const Request &) {
        consumer.usable = false;
        return file(segment(1));
    };
    play("/live.m3u8");
    ASSERT_TRUE(spinUntil([this] { return consumer.bytes().endsWith(segment(2)); }));
    EXPECT_EQ(consumer.begins(), 2);
    EXPECT_EQ(requests("/live.m3u8"), 1);
}

} // namespace
