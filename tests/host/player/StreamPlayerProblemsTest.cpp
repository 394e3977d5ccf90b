// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/StreamPlayer.h"
#include "tests/host/player/BrokenMedia.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/WorkerThread.h"

#include <atomic>
#include <gmock/gmock.h>

namespace {

using Milliseconds = std::chrono::milliseconds;
using Response = ScriptedServer::Response;
using End = ScriptedServer::End;

/// The problems that a player reports to its listener, with real decoders and an output.
class StreamPlayerProblemsTest : public testing::Test {
protected:
    StreamPlayerProblemsTest()
        : good(soundMedia().at(0).repeated(5))
        , server([this](const ScriptedServer::Request &) { return answer(); })
        , player({AudioOutputSpec::Null, {}})
    {
        times.sinceBoot = [this] { return now.load(); };
        player.setTimes(times);
        QObject::connect(
            &player, &MediaPlayer::audibleChanged, [this](bool heard) { audible = heard; });
        QObject::connect(&player, &MediaPlayer::problemChanged,
            [this](const TrString &problem) { told.append(problem.toString()); });
    }
    ~StreamPlayerProblemsTest() override
    {
        player.stop();
        EXPECT_TRUE(player.waitForEnd(std::chrono::seconds(10)));
    }

    Response answer()
    {
        const int number = requests++;
        return number < script.size() ? script.at(number)
                                      : Response {200, good, {}, End::Stall, INT_MAX};
    }
    void play()
    {
        StreamSource source;
        source.url = QUrl(QStringLiteral("http://127.0.0.1:%1/live").arg(server.port()));
        player.play(source);
    }

    const QByteArray good;
    QList<Response> script; ///< the first responses; set before play()
    std::atomic<int> requests {0};
    std::atomic<Milliseconds> now {Milliseconds(1000)};
    ScriptedServer server;
    StreamReader::Times times;
    StreamPlayer player;
    bool audible = false;
    QStringList told;
};

TEST_F(StreamPlayerProblemsTest, AreReportedWhileNothingIsHeard)
{
    script = {{503, "", {}, End::Complete, 0}, {503, "", {}, End::Complete, 0}};
    play();
    ASSERT_TRUE(spinUntil([this] { return audible; }));
    ASSERT_TRUE(spinUntil([this] { return told.contains(QString()); }));
    EXPECT_EQ(told.first(),
        QStringLiteral("The stream's server refused it (code 503). Trying again in 1 s."));
    EXPECT_EQ(told.count(QString()), 1);
    EXPECT_EQ(told.last(), QString());
}

TEST_F(StreamPlayerProblemsTest, AreNotReportedWhileTheBufferIsHeard)
{
    script = {{200, good, {}, End::Close, 0}};
    play();
    ASSERT_TRUE(server.waitForRequests(2));
    ASSERT_TRUE(spinUntil([this] { return audible; }));
    EXPECT_THAT(told, testing::IsEmpty());
}

TEST_F(StreamPlayerProblemsTest, EndWithTheirPlay)
{
    script = QList<Response> {{503, "", {{"Retry-After", "60"}}, End::Complete, 0}};
    play();
    ASSERT_TRUE(spinUntil([this] { return !told.isEmpty(); }));
    player.stop();
    EXPECT_EQ(told.last(), QString());
    const int before = told.size();
    spinUntil([] { return false; }, 200);
    EXPECT_EQ(told.size(), before);
}

TEST_F(StreamPlayerProblemsTest, AfterASleepTheStationIsJoinedAnew)
{
    play();
    ASSERT_TRUE(spinUntil([this] { return audible; }));
    EXPECT_EQ(requests, 1);
    now = now.load() + Milliseconds(60000);
    ASSERT_TRUE(server.waitForRequests(2));
    EXPECT_TRUE(spinUntil([this] { return audible; }));
    EXPECT_THAT(told, testing::IsEmpty());
}

} // namespace
