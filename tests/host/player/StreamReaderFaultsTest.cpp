// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/host/player/StreamReaderFixture.h"

#include "api/web/AddressPolicy.h"
#include "api/web/HttpClient.h"
#include "tests/host/player/ScriptedResolver.h"
#include "tests/support/TestAuthority.h"

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;

/// Faults of stations' servers, and how the reader recovers from them or gives up.
class StreamReaderFaultsTest : public StreamReaderFixture {
protected:
    using Request = ScriptedServer::Request;

    ~StreamReaderFaultsTest() override
    {
        reader.reset();
        ScriptedResolver::release();
        HttpClient::setConnectTo({});
        AddressPolicy::setCurrent(AddressReach::Machine);
    }

    static Response stall() { return {200, "", {}, End::StallBeforeHead, 0}; }
    static Response busy() { return {503, "busy", {}, End::Complete, 0}; }
    /// A response that the server begins after \a time.
    static Response late(Milliseconds time, const Response &response)
    {
        std::this_thread::sleep_for(time);
        return response;
    }
    /// The first request gets \a first, the others \a then.
    void serveOnce(const QByteArray &path, const Response &first, const Response &then)
    {
        answers[path] = [first, then, count = 0](
                            const Request &) mutable { return ++count == 1 ? first : then; };
    }
    void serveList(const QByteArray &path, const QList<QByteArray> &entries)
    {
        QByteArray text = "#EXTM3U\n";
        for (const QByteArray &entry : entries)
            text += address(entry) + '\n';
        serve(path, file(text));
    }
    /// Plays \a path, whose fault is permanent; returns the problem with which the reader gave up.
    QString problemOf(const QByteArray &path)
    {
        problem.clear();
        ended = false;
        play(path);
        return waitForEnd() ? problem : QStringLiteral("no end");
    }
};

TEST_F(StreamReaderFaultsTest, AnEntryThatSaysNothingIsLeftForTheNext)
{
    times.entry = Milliseconds(300);
    times.http.connect = Milliseconds(60000);
    times.giveUp = Milliseconds(30000);
    serveList("/list.m3u", {"/silent", "/headOnly", "/live"});
    serve("/silent", stall());
    serve("/headOnly", {200, audio(1000), {}, End::Stall, 0});
    serve("/live", endless(audio(3000)));
    QElapsedTimer clock;
    clock.start();
    play("/list.m3u");
    ASSERT_TRUE(waitForBytes(3000));
    // Each of the two silent entries takes times.entry.
    EXPECT_GE(clock.elapsed(), 600);
    EXPECT_LT(clock.elapsed(), 10000);
}

TEST_F(StreamReaderFaultsTest, TheLastEntryHasItsFullTime)
{
    times.entry = Milliseconds(300);
    times.http.connect = Milliseconds(5000);
    times.giveUp = Milliseconds(10000);
    serveList("/list.m3u", {"/busy", "/slow"});
    serve("/busy", busy());
    // Longer than times.entry, which applies only while there are further entries.
    answers["/slow"]
        = [](const Request &) { return late(Milliseconds(800), endless(audio(3000))); };
    play("/list.m3u");
    ASSERT_TRUE(waitForBytes(3000));
    EXPECT_EQ(requests("/slow"), 1);
}

TEST_F(StreamReaderFaultsTest, ASlowEntryIsWaitedForLongerInEachRound)
{
    times.entry = Milliseconds(2500);
    times.http.connect = Milliseconds(30000);
    times.giveUp = Milliseconds(30000);
    serveList("/list.m3u", {"/slow", "/busy"});
    serve("/busy", busy());
    // Longer than times.entry, but not than the second round allows, by far.
    answers["/slow"] = [count = 0](const Request &) mutable {
        return ++count == 1 ? stall() : late(Milliseconds(2700), endless(audio(3000)));
    };
    play("/list.m3u");
    ASSERT_TRUE(waitForBytes(3000));
    EXPECT_EQ(requests("/slow"), 2);
    EXPECT_EQ(requests("/busy"), 1);
}

TEST_F(StreamReaderFaultsTest, AnEntryThatBringsNothingToHearIsLeftForTheNext)
{
    times.silence = Milliseconds(400);
    times.http.silence = Milliseconds(60000);
    times.giveUp = Milliseconds(5000);
    serveList("/list.m3u", {"/zeros", "/live"});
    serve("/zeros", {200, QByteArray(500000, '\0'), {}, End::Stall, 400000});
    serve("/live", endless(audio(3000, '\x02')));
    consumer.silent = Milliseconds(60000);
    play("/list.m3u");
    EXPECT_TRUE(spinUntil([this] { return consumer.bytes().contains('\x02'); }));
}

TEST_F(StreamReaderFaultsTest, NoAddressIsTriedTwiceInARound)
{
    times.lastTry = Milliseconds(2000);
    times.giveUp = Milliseconds(5000);
    QList<QByteArray> entries {"/list.m3u", "/busy", "/busy", "/list.m3u", "/busy"};
    serveList("/list.m3u", entries);
    serve("/busy", busy());
    play("/list.m3u");
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(requests("/busy"), requests("/list.m3u"));
    EXPECT_GE(requests("/busy"), 2);
}

TEST_F(StreamReaderFaultsTest, AStationWhoseAnswerHasAnEndIsJoinedAnew)
{
    serve("/live", file(audio(3000)));
    play("/live");
    ASSERT_TRUE(waitForBytes(9000));
    EXPECT_FALSE(ended);
    EXPECT_GE(requests("/live"), 3);
}

TEST_F(StreamReaderFaultsTest, AfterItsEndAStationIsJoinedWithoutWhatCameBeforeIt)
{
    serveList("/list.m3u", {"/preroll.mp3", "/live"});
    serve("/preroll.mp3", file(audio(2000, '\x03')));
    serve("/live", file(audio(3000)));
    play("/list.m3u");
    ASSERT_TRUE(waitForBytes(2000 + 3 * 3000));
    EXPECT_EQ(requests("/preroll.mp3"), 1);
    EXPECT_EQ(requests("/list.m3u"), 1);
    EXPECT_FALSE(ended);
}

TEST_F(StreamReaderFaultsTest, AFileOfWhichNothingCanBeDecodedHasNotEnded)
{
    serve("/a.mp3", file(QByteArray(3000, '\0')));
    play("/a.mp3", false);
    ASSERT_TRUE(waitForEnd());
    EXPECT_FALSE(ended);
    EXPECT_EQ(problem, QStringLiteral("The stream cannot be decoded."));
}

TEST_F(StreamReaderFaultsTest, AStationWhoseAnswerEndsWithoutASoundIsTriedAgain)
{
    serveOnce("/live", file(QByteArray(5, '\0')), endless(audio(3000)));
    play("/live");
    EXPECT_TRUE(waitForBytes(3000));
    EXPECT_FALSE(ended);
}

TEST_F(StreamReaderFaultsTest, AudioThatIsDecodedLateCountsForItsConnection)
{
    serveList("/list.m3u", {"/dead", "/live"});
    serve("/live", endless(audio(3000)));
    consumer.late = 100;
    play("/list.m3u");
    ASSERT_TRUE(waitForBytes(6000));
    EXPECT_EQ(requests("/list.m3u"), 1);
}

TEST_F(StreamReaderFaultsTest, WaitsGrowThoughTheLastConnectionWasGood)
{
    const auto tries = serveAndTime("/live", endless(audio(3000)), endless("\xFF\xFB\x90\x01"));
    play("/live");
    ASSERT_TRUE(spinUntil([&] { return tries->all().size() >= 4; }));
    reader.reset();
    EXPECT_GE(tries->all().at(3) - tries->all().at(2), Milliseconds(1900));
}

TEST_F(StreamReaderFaultsTest, LimitsHoldWhileTheDecoderTakesNothing)
{
    times.giveUp = Milliseconds(1500);
    consumer.full = true;
    serve("/live", {200, audio(500000), {}, End::Stall, 400000});
    play("/live");
    QElapsedTimer clock;
    clock.start();
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(problem, QStringLiteral("There is nothing to hear on the stream."));
    EXPECT_LT(clock.elapsed(), 9000);
}

TEST_F(StreamReaderFaultsTest, ADecoderThatStopsTakingIsLeftWhenItIsSilent)
{
    times.silence = Milliseconds(300);
    serve("/live", {200, audio(500000), {}, End::Stall, 400000});
    play("/live");
    ASSERT_TRUE(waitForBytes(2000));
    consumer.full = true;
    consumer.silent = Milliseconds(60000);
    EXPECT_TRUE(server.waitForRequests(2));
}

TEST_F(StreamReaderFaultsTest, WhatIsRefusedForGoodIsGivenUpAtOnce)
{
    times.giveUp = Milliseconds(30000);
    serve("/404", {404, "", {}, End::Complete, 0});
    serve("/410", {410, "", {}, End::Complete, 0});
    serve("/page", file("<html><body>Log in</body></html>"));
    serve("/self", file(address("/self") + "\n"));
    serve("/none", file("#EXTM3U\n"));
    serveList("/list", {"/404", "/page"});
    for (const char *path : {"/404", "/410", "/page", "/self", "/none", "/list"}) {
        server.clearRequests();
        const QString why = problemOf(path);
        EXPECT_FALSE(why.isEmpty() || why == QLatin1String("no end")) << path;
        EXPECT_EQ(requests(path), 1) << path;
    }
}

TEST_F(StreamReaderFaultsTest, ARefusedEntryLeadsToTheNextAndWhatMayComeBackIsTriedAgain)
{
    times.giveUp = Milliseconds(30000);
    serveList("/list", {"/busy", "/404"});
    serveOnce("/busy", busy(), endless(audio(3000)));
    play("/list");
    ASSERT_TRUE(waitForBytes(3000));
    EXPECT_GE(requests("/404"), 1);
}

TEST_F(StreamReaderFaultsTest, AStationThatWasHeardIsTriedForThoughItIsRefused)
{
    answers["/live"] = [count = 0](const Request &) mutable {
        ++count;
        return count == 2 || count == 3 ? Response {404, "", {}, End::Complete, 0}
                                        : endless(audio(3000));
    };
    play("/live");
    ASSERT_TRUE(waitForBytes(6000));
    EXPECT_TRUE(problem.isEmpty());
}

TEST_F(StreamReaderFaultsTest, WhatHasAlternativesIsGivenUpAtItsFirstFailure)
{
    times.entry = Milliseconds(300);
    serve("/busy", busy());
    serve("/silent", stall());
    for (const char *path : {"/busy", "/silent"}) {
        problem.clear();
        server.clearRequests();
        play({QUrl::fromEncoded(address(path)), true, true});
        ASSERT_TRUE(waitForEnd()) << path;
        EXPECT_EQ(requests(path), 1) << path;
    }
}

TEST_F(StreamReaderFaultsTest, AnEpisodeThatCannotBeHadAnyMoreEndsWithAnError)
{
    times.giveUpFile = Milliseconds(1500);
    consumer.silent = Milliseconds(1);
    serveOnce(
        "/a.mp3", {200, audio(20000), {}, End::Truncate, 7000}, {404, "", {}, End::Complete, 0});
    play("/a.mp3", false);
    QElapsedTimer clock;
    clock.start();
    ASSERT_TRUE(waitForEnd());
    EXPECT_FALSE(ended);
    EXPECT_EQ(problem, QStringLiteral("The stream's server refused it (code 404)."));
    EXPECT_GE(clock.elapsed(), 1400);
    EXPECT_GE(requests("/a.mp3"), 3);
}

TEST_F(StreamReaderFaultsTest, AnEpisodeWaitsForAListenerWhoPaused)
{
    times.giveUpFile = Milliseconds(300);
    serveOnce("/a.mp3", {200, audio(20000), {}, End::Truncate, 7000}, busy());
    play("/a.mp3", false);
    ASSERT_TRUE(server.waitForRequests(4));
    EXPECT_TRUE(problem.isEmpty());
}

TEST_F(StreamReaderFaultsTest, AFileGoesOnWhereItBrokeThoughItWasRefusedMeanwhile)
{
    QByteArray whole = audio(20000);
    for (int i = 4; i < whole.size(); ++i)
        whole[i] = static_cast<char>(1 + i % 250);
    answers["/a.mp3"] = [whole, count = 0](const Request &request) mutable {
        ++count;
        if (count == 1)
            return Response {200, whole, {}, End::Truncate, 7000};
        if (count == 2)
            return Response {503, "", {}, End::Complete, 0};
        const QByteArray range = request.header("Range");
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

TEST_F(StreamReaderFaultsTest, ARedirectThatHasExpiredIsGoneThroughAgain)
{
    const QByteArray whole = audio(20000);
    answers["/a.mp3"] = [count = 0](const Request &) mutable {
        return Response {302, "", {{"Location", "/key" + QByteArray::number(++count) + ".mp3"}},
            End::Complete, 0};
    };
    serveOnce(
        "/key1.mp3", {200, whole, {}, End::Truncate, 7000}, {403, "expired", {}, End::Complete, 0});
    serve("/key2.mp3", file(whole));
    play("/a.mp3", false);
    ASSERT_TRUE(waitForEnd());
    EXPECT_TRUE(ended);
    EXPECT_EQ(consumer.bytes(), whole);
}

TEST_F(StreamReaderFaultsTest, SaysWhatItDoesAboutAFaultUntilThereIsAudio)
{
    times.giveUp = Milliseconds(20000);
    serveOnce("/live", busy(), {200, audio(100000), {}, End::Stall, 3000});
    play("/live");
    ASSERT_TRUE(spinUntil([this] { return told.size() >= 3; }));
    EXPECT_THAT(told,
        ElementsAre(
            QStringLiteral("The stream's server refused it (code 503). Trying again in 1 s."),
            QStringLiteral("The stream's server refused it (code 503). Trying again."), QString()));
}

TEST_F(StreamReaderFaultsTest, SaysThatTheServerWantsALongBreak)
{
    times.giveUp = Milliseconds(600000);
    serve("/live", {503, "", {{"Retry-After", "7200"}}, End::Complete, 0});
    play("/live");
    ASSERT_TRUE(spinUntil([this] { return !told.isEmpty(); }));
    EXPECT_EQ(told.first(),
        QStringLiteral("The stream's server refused it (code 503). It asks for a break of 120 min. "
                       "Trying again in 120 s."));
}

TEST_F(StreamReaderFaultsTest, SaysThatTheNextAddressIsTried)
{
    serveList("/list.m3u", {"/404", "/silent"});
    serve("/silent", stall());
    play("/list.m3u");
    ASSERT_TRUE(spinUntil([this] { return !told.isEmpty(); }));
    EXPECT_EQ(told.first(),
        QStringLiteral("The stream's server refused it (code 404). Trying the next address."));
}

TEST_F(StreamReaderFaultsTest, EachFaultHasItsOwnWords)
{
    times.giveUp = Milliseconds(2500);
    times.lastTry = times.http.connect = Milliseconds(1000);
    const struct {
        const char *what;
        Response response;
        const char *words;
    } faults[] = {
        {"HTTP/0.9", {0, audio(3000), {}, End::Raw, 0}, "The stream's server does not speak HTTP."},
        {"long head",
            {0, "HTTP/1.1 200 OK\r\n" + QByteArray("X-Filler: and so on\r\n").repeated(50000), {},
                End::RawStall, 0},
            "The head of the stream's server's answer is too long."},
        {"long line",
            {0, "HTTP/1.1 200 OK\r\nX: " + QByteArray(1000000, 'x'), {}, End::RawStall, 0},
            "The head of the stream's server's answer is too long."},
        {"endless head", {0, "HTTP/1.1 200 OK\r\nX: y\r\n", {}, End::RawStall, 0},
            "The head of the stream's server's answer never ends."},
        {"no body", {200, audio(3000), {}, End::Stall, 0}, "The stream's server sends nothing."},
        {"no answer", stall(), "The stream's server does not answer."},
        {"file", {302, "", {{"Location", "file:///etc/passwd"}}, End::Complete, 0},
            "The stream leads to what is no web address."},
        {"loop", {302, "", {{"Location", "/fault"}}, End::Complete, 0},
            "The stream leads from address to address."},
        // libcurl's text for the error code, not that of its error buffer for this transfer.
        {"no length", {0, "HTTP/1.1 200 OK\r\nContent-Length: k3y\r\n\r\n", {}, End::Raw, 0},
            "The stream cannot be received (Weird server reply)."},
        {"reset", {200, "", {}, End::ResetBeforeHead, 0}, "The connection to the stream was lost."},
    };
    for (const auto &fault : faults) {
        serve("/fault", fault.response);
        EXPECT_EQ(problemOf("/fault"), QLatin1String(fault.words)) << fault.what;
    }
}

TEST_F(StreamReaderFaultsTest, TheLastTryIsCutOffAndReportsItsReason)
{
    times.http.connect = Milliseconds(60000);
    times.giveUp = Milliseconds(500);
    serve("/silent", stall());
    EXPECT_EQ(problemOf("/silent"), QStringLiteral("The stream's server does not answer."));
}

TEST_F(StreamReaderFaultsTest, AServerBehindARedirectThatSaysNothingDoesNotAnswer)
{
    times.giveUp = Milliseconds(1500);
    times.http.connect = Milliseconds(400);
    serve("/live", {302, "", {{"Location", "/silent"}}, End::Complete, 0});
    serve("/silent", stall());
    EXPECT_EQ(problemOf("/live"), QStringLiteral("The stream's server does not answer."));
}

TEST_F(StreamReaderFaultsTest, AStreamThatStallsHasWordsOfItsOwn)
{
    times.http.silence = Milliseconds(500);
    serve("/live", {200, audio(100000), {}, End::Stall, 3000});
    play("/live");
    ASSERT_TRUE(spinUntil([this] { return !told.isEmpty(); }));
    EXPECT_THAT(told.first().toStdString(), HasSubstr("The stream's server has stopped sending."));
}

TEST_F(StreamReaderFaultsTest, FromASafeAddressNoneLeadsToOneThatIsNot)
{
    TestAuthority authority("Test Authority");
    const auto files = authority.issue("safe.scripted.test");
    const ScriptedServer safe(
        [this](const Request &) {
            return Response {302, "", {{"Location", address("/live")}}, End::Complete, 0};
        },
        files.certificateFile, files.keyFile);
    ASSERT_TRUE(HttpClient::setCaFile(authority.file()));
    HttpClient::setConnectTo({QString::fromLatin1(safe.connectTo("safe.scripted.test"))});
    serve("/live", endless(audio(3000)));
    play({QUrl(QStringLiteral("https://safe.scripted.test/")), true});
    ASSERT_TRUE(waitForEnd());
    HttpClient::setCaFile(QString());
    EXPECT_EQ(problem, QStringLiteral("The stream leads from a safe address to one that is not."));
    EXPECT_EQ(requests("/live"), 0);
}

TEST_F(StreamReaderFaultsTest, WhatIsNoWebAddressIsGivenUpAtOnce)
{
    for (const char *url : {"mms://127.0.0.1/live", "file:///etc/passwd", "", "http:///live"}) {
        problem.clear();
        play({QUrl(QString::fromLatin1(url)), true});
        ASSERT_TRUE(waitForEnd());
        EXPECT_EQ(problem, QStringLiteral("The stream's address is no web address.")) << url;
    }
}

TEST_F(StreamReaderFaultsTest, AddressesOfTheMachineAreForStationsOnlyWhenAllowed)
{
    times.giveUp = Milliseconds(30000);
    serve("/live", endless(audio(3000)));
    AddressPolicy::setCurrent(AddressReach::Internet);
    EXPECT_EQ(problemOf("/live"),
        QStringLiteral("The stream leads inside the local network, where no station may lead."));
    EXPECT_EQ(server.connections(), 0);
    AddressPolicy::setCurrent(AddressReach::Machine);
    play("/live");
    EXPECT_TRUE(waitForBytes(3000));
}

TEST_F(StreamReaderFaultsTest, NoRedirectLeadsToWhereCloudsKeepTheirSecrets)
{
    times.giveUp = Milliseconds(30000);
    serve("/live", {302, "", {{"Location", "http://169.254.169.254/latest/"}}, End::Complete, 0});
    EXPECT_EQ(problemOf("/live"),
        QStringLiteral("The stream leads inside the local network, where no station may lead."));
}

TEST_F(StreamReaderFaultsTest, AServerThatMovesIsFoundAgain)
{
    times.giveUp = Milliseconds(20000);
    serve("/live", endless(audio(3000)));
    // No server listens on this address.
    ScriptedResolver::answer("moving.scripted.test", "127.0.0.2");
    play({QUrl(QStringLiteral("http://moving.scripted.test:%1/live").arg(server.port())), true});
    ASSERT_TRUE(spinUntil([this] { return !told.isEmpty(); }));
    ScriptedResolver::answer("moving.scripted.test", "127.0.0.1");
    ASSERT_TRUE(waitForBytes(3000));
    EXPECT_GE(ScriptedResolver::questions("moving.scripted.test"), 2);
}

TEST_F(StreamReaderFaultsTest, StopsAtOnceWhileTheNameServerDoesNotAnswer)
{
    times.http.connect = Milliseconds(60000);
    ScriptedResolver::hang("hanging.scripted.test");
    EXPECT_TRUE(stopsWithin(Milliseconds(1000), [this] {
        const int before = ScriptedResolver::questions("hanging.scripted.test");
        play({QUrl(QStringLiteral("http://hanging.scripted.test/live")), true});
        EXPECT_TRUE(spinUntil(
            [&] { return ScriptedResolver::questions("hanging.scripted.test") > before; }));
    }));
}

TEST_F(StreamReaderFaultsTest, ANameServerThatDoesNotAnswerIsAFaultLikeAnyOther)
{
    times.giveUp = Milliseconds(1500);
    times.http.connect = Milliseconds(300);
    ScriptedResolver::hang("hanging.scripted.test");
    play({QUrl(QStringLiteral("http://hanging.scripted.test/live")), true});
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(problem, QStringLiteral("The stream's server does not answer."));
}

TEST_F(StreamReaderFaultsTest, ConnectionsArePacedWhateverAPlaylistNames)
{
    times.giveUp = Milliseconds(4000);
    // Each list names 200 more; none leads to audio.
    answers["/list"] = [this](const Request &request) {
        QByteArray text = "#EXTM3U\n";
        for (int i = 0; i < 200; ++i)
            text += address("/list?") + request.query() + QByteArray::number(i) + ".\n";
        return file(text);
    };
    play("/list");
    ASSERT_TRUE(waitForEnd());
    // A burst of fifteen, then one a second.
    EXPECT_GE(server.requestLines().size(), 15);
    EXPECT_LE(server.requestLines().size(), 20);
}

TEST_F(StreamReaderFaultsTest, AfterASleepOfTheMachineAStationIsLeftToBeJoinedAnew)
{
    std::atomic<Milliseconds> now {Milliseconds(1000)};
    times.sinceBoot = [&now] { return now.load(); };
    times.http.silence = Milliseconds(60000);
    times.giveUp = Milliseconds(60000);
    serve("/live", {200, audio(100000), {}, End::Stall, 3000});
    serve("/busy", {503, "", {{"Retry-After", "60"}}, End::Complete, 0});
    for (const char *path : {"/busy", "/live"}) {
        fellBehind = false;
        told.clear();
        play(path);
        ASSERT_TRUE(
            spinUntil([this] { return !told.isEmpty() || consumer.bytes().size() >= 3000; }));
        EXPECT_FALSE(fellBehind) << path;
        now = now.load() + Milliseconds(60000);
        ASSERT_TRUE(spinUntil([this] { return fellBehind.load(); })) << path;
        EXPECT_TRUE(reader->wait(10000));
        EXPECT_TRUE(problem.isEmpty());
    }
}

TEST_F(StreamReaderFaultsTest, AFileGoesOnAfterASleepOfTheMachine)
{
    times.http.silence = Milliseconds(500);
    std::atomic<Milliseconds> now {Milliseconds(1000)};
    times.sinceBoot = [&now] { return now.load(); };
    serveOnce("/a.mp3", {200, audio(20000), {}, End::Stall, 7000}, file(audio(20000)));
    play("/a.mp3", false);
    ASSERT_TRUE(waitForBytes(7000));
    now = now.load() + Milliseconds(60000);
    ASSERT_TRUE(waitForEnd());
    EXPECT_TRUE(ended);
    EXPECT_FALSE(fellBehind);
    EXPECT_EQ(consumer.bytes(), audio(20000));
}

} // namespace
