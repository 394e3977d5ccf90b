// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/host/player/StreamReaderFixture.h"

#include "api/core/Language.h"

namespace {

class StreamReaderTest : public StreamReaderFixture { };

TEST_F(StreamReaderTest, AFileEndsWhenAllOfItWasTaken)
{
    serve("/a.mp3", file(audio(5000)));
    play("/a.mp3", false);
    ASSERT_TRUE(waitForEnd());
    EXPECT_TRUE(ended);
    EXPECT_EQ(consumer.bytes(), audio(5000));
    EXPECT_EQ(consumer.begins(), 1);
    EXPECT_EQ(consumer.ends(), 1);
    EXPECT_EQ(server.requestLines().size(), 1);
}

TEST_F(StreamReaderTest, ProbesAndPlaysOverOneConnection)
{
    serve("/live", endless(audio(50000)));
    play("/live");
    ASSERT_TRUE(waitForBytes(50000));
    EXPECT_EQ(server.requests().first().header("Icy-MetaData"), "1");
    EXPECT_TRUE(consumer.bytes().startsWith(audio(50000)));
    EXPECT_EQ(consumer.begins(), 1);
}

TEST_F(StreamReaderTest, AStationThatEndsIsJoinedAnewAfterHalfASecond)
{
    // The shortest of several waits: the machine may stand still in some.
    const auto tries = serveAndTime("/live", endless(audio(3000)), endless(audio(3000)));
    play("/live");
    ASSERT_TRUE(spinUntil([&] { return tries->all().size() >= 5; }, 30000));
    ASSERT_TRUE(waitForBytes(4 * 3000));
    reader.reset();
    const auto all = tries->all();
    Milliseconds shortest = all.at(1) - all.at(0);
    for (std::size_t i = 2; i < all.size(); ++i)
        shortest = std::min(shortest, all.at(i) - all.at(i - 1));
    EXPECT_GE(shortest, Milliseconds(450));
    EXPECT_LE(shortest, Milliseconds(1500));
    EXPECT_EQ(consumer.begins(), consumer.bytes().size() / 3000);
    EXPECT_FALSE(ended);
}

TEST_F(StreamReaderTest, NeverGivesUpWhatWasHeardOnce)
{
    answers["/live"] = [count = 0](const ScriptedServer::Request &) mutable {
        return ++count == 1 ? endless(audio(3000)) : Response {500, "", {}, End::Complete, 0};
    };
    times.giveUp = Milliseconds(5000);
    play("/live");
    ASSERT_TRUE(waitForBytes(3000));
    // Longer than the time after which the reader gives up on a stream that was never heard.
    EXPECT_FALSE(spinUntil([this] { return !problem.isEmpty(); }, 6000));
    EXPECT_GE(server.requestLines().size(), 2);
}

TEST_F(StreamReaderTest, GivesUpWhatIsNeverThereAndSaysWhy)
{
    times.giveUp = Milliseconds(5000);
    serve("/busy", {500, "", {}, End::Complete, 0});
    play("/busy");
    QElapsedTimer clock;
    clock.start();
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(problem, QStringLiteral("The stream's server refused it (code 500)."));
    EXPECT_GE(clock.elapsed(), 4900);
    EXPECT_LE(clock.elapsed(), 9000);
    // The first try, another one and the last one shortly before giving up.
    EXPECT_GE(server.requestLines().size(), 3);
}

TEST_F(StreamReaderTest, ComesBackAfterThreeTimesServiceUnavailable)
{
    times.giveUp = Milliseconds(20000);
    answers["/live"] = [count = 0](const ScriptedServer::Request &) mutable {
        return ++count <= 3 ? Response {503, "busy", {}, End::Complete, 0} : endless(audio(3000));
    };
    play("/live");
    ASSERT_TRUE(waitForBytes(3000));
    EXPECT_TRUE(problem.isEmpty());
}

TEST_F(StreamReaderTest, HeedsWhenTheServerSaysToComeBackLater)
{
    times.giveUp = Milliseconds(20000);
    answers["/live"] = [count = 0](const ScriptedServer::Request &) mutable {
        return ++count == 1 ? Response {503, "busy", {{"Retry-After", "2"}}, End::Complete, 0}
                            : endless(audio(3000));
    };
    QElapsedTimer clock;
    clock.start();
    play("/live");
    ASSERT_TRUE(waitForBytes(3000));
    EXPECT_GE(clock.elapsed(), 2000);
    EXPECT_LE(clock.elapsed(), 5000);
}

TEST_F(StreamReaderTest, TriesAtOnceWhenTheNetworkIsBack)
{
    times.giveUp = Milliseconds(60000);
    answers["/live"] = [count = 0](const ScriptedServer::Request &) mutable {
        return ++count == 1 ? Response {503, "", {{"Retry-After", "30"}}, End::Complete, 0}
                            : endless(audio(3000));
    };
    play("/live");
    ASSERT_TRUE(server.waitForRequests(1));
    QElapsedTimer clock;
    clock.start();
    // tryNow() has no effect before the reader waits: repeat it until the stream is there.
    ASSERT_TRUE(spinUntil([this] {
        reader->tryNow();
        return consumer.bytes().size() >= 3000;
    }));
    EXPECT_LT(clock.elapsed(), 5000);
}

TEST_F(StreamReaderTest, NoticesAStreamThatStalls)
{
    times.http.silence = Milliseconds(500);
    serve("/live", {200, audio(100000), {}, End::Stall, 2000});
    play("/live");
    ASSERT_TRUE(waitForBytes(2000));
    EXPECT_TRUE(server.waitForRequests(2));
}

TEST_F(StreamReaderTest, NoticesAConnectionThatIsReset)
{
    answers["/live"] = [count = 0](const ScriptedServer::Request &) mutable {
        return ++count == 1 ? Response {200, audio(100000), {}, End::Reset, 2000}
                            : endless(audio(3000, '\x02'));
    };
    play("/live");
    ASSERT_TRUE(
        spinUntil([this] { return consumer.bytes().endsWith(audio(3000, '\x02').right(9)); }));
}

TEST_F(StreamReaderTest, LeavesAConnectionOnWhichNothingIsHeard)
{
    times.silence = Milliseconds(300);
    times.http.silence = Milliseconds(10000);
    serve("/live", {200, audio(100000), {}, End::Stall, 2000});
    play("/live");
    ASSERT_TRUE(waitForBytes(2000));
    consumer.silent = Milliseconds(10000);
    EXPECT_TRUE(server.waitForRequests(2));
}

TEST_F(StreamReaderTest, LeavesWhatCannotBeDecoded)
{
    serve("/live", {200, audio(100000), {}, End::Stall, 2000});
    times.http.silence = Milliseconds(10000);
    play("/live");
    ASSERT_TRUE(waitForBytes(2000));
    consumer.usable = false;
    EXPECT_TRUE(server.waitForRequests(2));
}

TEST_F(StreamReaderTest, GoesOnWithABrokenFileWhereItBroke)
{
    QByteArray whole = audio(20000);
    for (int i = 4; i < whole.size(); ++i)
        whole[i] = static_cast<char>(i % 251);
    answers["/a.mp3"] = [whole](const ScriptedServer::Request &request) {
        const QByteArray range = request.header("Range");
        if (range.isEmpty())
            return Response {200, whole, {}, End::Truncate, 7000};
        const int from = range.mid(range.indexOf('=') + 1).split('-').first().toInt();
        return Response {206, whole.mid(from),
            {{"Content-Range", "bytes " + QByteArray::number(from) + "-19999/20000"}},
            End::Complete, 0};
    };
    play("/a.mp3", false);
    ASSERT_TRUE(waitForEnd());
    EXPECT_TRUE(ended);
    EXPECT_EQ(consumer.bytes(), whole);
    EXPECT_EQ(consumer.begins(), 1);
}

TEST_F(StreamReaderTest, SkipsWhatItHasWhenTheServerKnowsNoRanges)
{
    QByteArray whole = audio(20000);
    for (int i = 4; i < whole.size(); ++i)
        whole[i] = static_cast<char>(i % 251);
    answers["/a.mp3"] = [whole, count = 0](const ScriptedServer::Request &) mutable {
        return ++count == 1 ? Response {200, whole, {}, End::Truncate, 7000} : file(whole);
    };
    play("/a.mp3", false);
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(consumer.bytes(), whole);
    EXPECT_EQ(consumer.begins(), 1);
}

TEST_F(StreamReaderTest, TakesTitlesOutOfTheStream)
{
    const QByteArray metadata = QByteArray("StreamTitle='Ann - One';").leftJustified(32, '\0');
    const QByteArray body = audio(1000) + '\x02' + metadata + QByteArray(1000, '\x01') + '\0'
        + QByteArray(500, '\x01');
    serve("/live", endless(body, "icy-metaint: 1000\r\nicy-br: 128\r\n"));
    play("/live");
    ASSERT_TRUE(waitForBytes(2500));
    EXPECT_EQ(consumer.bytes().left(2500), audio(2500));
    EXPECT_EQ(consumer.titles().value(0), QStringLiteral("Ann - One"));
    EXPECT_EQ(consumer.bitRate(), 128000);
}

TEST_F(StreamReaderTest, UnderstandsTheFirstLineOfOldServers)
{
    Response response;
    response.body = "ICY 200 OK\r\nicy-name: Old\r\n\r\n" + audio(3000);
    response.end = End::Raw;
    serve("/live", response);
    play("/live");
    ASSERT_TRUE(waitForBytes(3000));
}

TEST_F(StreamReaderTest, TriesTheEntriesOfAPlaylistInOrder)
{
    serve("/list.m3u",
        file("#EXTM3U\n" + address("/dead") + "\n" + address("/live") + "\n" + address("/other")
            + "\n"));
    serve("/live", endless(audio(3000)));
    play("/list.m3u");
    ASSERT_TRUE(waitForBytes(3000));
    const QList<QByteArray> expected {"GET /list.m3u", "GET /dead", "GET /live"};
    EXPECT_EQ(server.requestLines().mid(0, 3), expected);
    EXPECT_FALSE(server.requestLines().contains("GET /other"));
}

TEST_F(StreamReaderTest, StaysWithTheEntryThatWasHeard)
{
    serve("/list.m3u", file(address("/dead") + "\n" + address("/live") + "\n"));
    serve("/live", endless(audio(3000)));
    play("/list.m3u");
    ASSERT_TRUE(waitForBytes(6000));
    EXPECT_EQ(server.requestLines().count("GET /list.m3u"), 1);
    EXPECT_EQ(server.requestLines().count("GET /dead"), 1);
}

TEST_F(StreamReaderTest, TakesAnotherEntryWhenTheOneThatWasHeardIsGone)
{
    serve("/list.m3u", file(address("/first") + "\n" + address("/second") + "\n"));
    answers["/first"] = [count = 0](const ScriptedServer::Request &) mutable {
        return ++count == 1 ? endless(audio(3000)) : Response {404, "", {}, End::Complete, 0};
    };
    serve("/second", endless(audio(3000, '\x02')));
    play("/list.m3u");
    ASSERT_TRUE(spinUntil([this] { return consumer.bytes().contains('\x02'); }));
}

TEST_F(StreamReaderTest, PlaysWhatComesBeforeTheStationOnceAndThenTheStation)
{
    serve("/list.m3u", file(address("/preroll.mp3") + "\n" + address("/live") + "\n"));
    serve("/preroll.mp3", file(audio(2000, '\x03')));
    serve("/live", endless(audio(3000)));
    play("/list.m3u");
    ASSERT_TRUE(waitForBytes(2000 + 3000 + 3000));
    EXPECT_EQ(server.requestLines().count("GET /preroll.mp3"), 1);
    EXPECT_GE(server.requestLines().count("GET /live"), 2);
    EXPECT_EQ(consumer.bytes().left(2000), audio(2000, '\x03'));
    EXPECT_FALSE(ended);
}

TEST_F(StreamReaderTest, UnwrapsPlaylistsFiveDeepAndNoDeeper)
{
    for (int i = 1; i <= 6; ++i) {
        serve("/" + QByteArray::number(i),
            file("[playlist]\nFile1=" + address("/" + QByteArray::number(i + 1)) + "\n"));
    }
    serve("/7", endless(audio(3000)));
    serve("/live", endless(audio(3000)));
    play("/1");
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(problem, QStringLiteral("The playlists never lead to a stream."));
    play("/2");
    ASSERT_TRUE(waitForBytes(3000));
}

TEST_F(StreamReaderTest, APlaylistThatIncludesItselfIsReadOnce)
{
    serve("/loop", file(address("/loop") + "\n"));
    play("/loop");
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(problem, QStringLiteral("The playlists never lead to a stream."));
    EXPECT_EQ(requests("/loop"), 1);
}

TEST_F(StreamReaderTest, APlaylistByNameThatIsAStreamIsPlayed)
{
    serve("/live.m3u", endless(audio(5000), "Content-Type: audio/x-mpegurl\r\n"));
    play("/live.m3u");
    ASSERT_TRUE(waitForBytes(5000));
}

TEST_F(StreamReaderTest, ALoginPageIsNoAudio)
{
    serve("/live", file("<!DOCTYPE html><html><body>Please log in</body></html>"));
    play("/live");
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(problem, QStringLiteral("There is a web page in place of the stream."));
    EXPECT_EQ(consumer.begins(), 0);
}

TEST_F(StreamReaderTest, SpokenExcusesAreErrorsAndNotAudio)
{
    SpokenExcuses excuses;
    excuses.add(QStringLiteral("/sorry.*mp3"), Language::ntr(QStringLiteral("Sorry.")));
    serve("/audio/Sorry.enUS.mp3", file(audio(3000)));
    serve("/station", {302, "", {{"Location", "/audio/Sorry.enUS.mp3"}}, End::Complete, 0});
    for (const char *start : {"/audio/Sorry.enUS.mp3", "/station"}) {
        problem.clear();
        play({QUrl::fromEncoded(address(start)), true, false, excuses});
        ASSERT_TRUE(waitForEnd()) << "at once, long before it is given up";
        EXPECT_EQ(problem, QStringLiteral("Sorry."));
    }
    EXPECT_EQ(consumer.begins(), 0);
}

TEST_F(StreamReaderTest, ReadsInLargePiecesWhatThereIsPlentyOf)
{
    consumer.plenty = StreamConsumer::Plenty;
    serve("/a.mp3", file(audio(400000)));
    play("/a.mp3", false);
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(consumer.bytes(), audio(400000));
}

TEST_F(StreamReaderTest, StopsAtOnceWhileThereIsPlenty)
{
    consumer.plenty = StreamConsumer::Plenty;
    serve("/live", {200, audio(100000), {}, End::Stall, 3000});
    EXPECT_TRUE(stopsWithin(Milliseconds(300), [this] {
        const int before = consumer.bytes().size();
        play("/live");
        EXPECT_TRUE(waitForBytes(before + 3000));
    }));
}

TEST_F(StreamReaderTest, FollowsFiveRedirectsAndNoMore)
{
    for (int i = 1; i <= 6; ++i) {
        serve("/" + QByteArray::number(i),
            {302, "", {{"Location", "/" + QByteArray::number(i + 1)}}, End::Complete, 0});
    }
    serve("/7", endless(audio(3000)));
    play("/1");
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(problem, QStringLiteral("The stream leads from address to address."));
    play("/2");
    ASSERT_TRUE(waitForBytes(3000));
}

TEST_F(StreamReaderTest, ReadsNoFilesForAServer)
{
    serve("/live", {302, "", {{"Location", "file:///etc/passwd"}}, End::Complete, 0});
    play("/live");
    ASSERT_TRUE(waitForEnd());
    EXPECT_FALSE(problem.isEmpty());
    EXPECT_TRUE(consumer.bytes().isEmpty());
}

TEST_F(StreamReaderTest, ARefusedConnectionIsAProblemInWords)
{
    times.giveUp = Milliseconds(1500);
    play({QUrl(QStringLiteral("http://127.0.0.1:1/")), true});
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(problem, QStringLiteral("The stream's server cannot be reached."));
}

TEST_F(StreamReaderTest, StopsAtOnceWhateverItWaitsFor)
{
    times.giveUp = Milliseconds(60000);
    times.http.connect = Milliseconds(60000);
    times.http.silence = Milliseconds(60000);
    serve("/head", {200, "", {}, End::StallBeforeHead, 0});
    serve("/body", {200, audio(100000), {}, End::Stall, 2000});
    serve("/busy", {503, "", {{"Retry-After", "60"}}, End::Complete, 0});
    for (const char *path : {"/head", "/body", "/busy"}) {
        EXPECT_TRUE(stopsWithin(Milliseconds(1000), [&] {
            const int before = server.requestLines().size();
            play(path);
            EXPECT_TRUE(server.waitForRequests(before + 1));
        })) << path;
    }
    EXPECT_FALSE(ended);
    EXPECT_TRUE(problem.isEmpty());
}

TEST_F(StreamReaderTest, PlaysLiveSegmentsInOrderWithoutGapOrRepeat)
{
    answers["/live.m3u8"] = [loads = 0](const ScriptedServer::Request &) mutable {
        const int first = loads++;
        QByteArray text = "#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXT-X-MEDIA-SEQUENCE:"
            + QByteArray::number(first) + "\n";
        for (int i = first; i < first + 5; ++i)
            text += "#EXTINF:1.0,\nsegment" + QByteArray::number(i) + ".aac\n";
        return file(text);
    };
    for (int i = 0; i < 20; ++i)
        serve("/segment" + QByteArray::number(i) + ".aac", file(audio(1000, char('A' + i))));
    play("/live.m3u8");
    ASSERT_TRUE(waitForBytes(6000));
    reader.reset();
    // Joins three segments before the end of the first list (RFC 8216, section 6.3.3), then reads
    // each new one.
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(consumer.bytes().at(i * 1000 + 500), char('A' + 2 + i)) << i;
    EXPECT_EQ(consumer.begins(), 1);
}

TEST_F(StreamReaderTest, TakesTheBestVariantThatAudioNeeds)
{
    serve("/master.m3u8",
        file("#EXTM3U\n#EXT-X-STREAM-INF:BANDWIDTH=64000\nlow.m3u8\n"
             "#EXT-X-STREAM-INF:BANDWIDTH=128000\nhigh.m3u8\n"
             "#EXT-X-STREAM-INF:BANDWIDTH=3000000\nvideo.m3u8\n"));
    serve("/high.m3u8",
        file("#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\na.aac\n#EXTINF:1,\nb.aac\n"
             "#EXT-X-ENDLIST\n"));
    serve("/a.aac", file(audio(1000, 'a')));
    serve("/b.aac", file(audio(1000, 'b')));
    play("/master.m3u8", false);
    ASSERT_TRUE(waitForEnd());
    EXPECT_TRUE(ended);
    EXPECT_EQ(consumer.bytes(), audio(1000, 'a') + audio(1000, 'b'));
}

TEST_F(StreamReaderTest, AnEncryptedStreamIsAProblemInWords)
{
    serve("/live.m3u8",
        file("#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXT-X-KEY:METHOD=AES-128,URI=\"key\"\n"
             "#EXTINF:1,\na.aac\n"));
    play("/live.m3u8");
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(problem, QStringLiteral("The stream is encrypted."));
}

} // namespace
