// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/StreamPlayer.h"

#include "api/web/HttpClient.h"
#include "tests/host/player/BrokenMedia.h"
#include "tests/support/Ear.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/WorkerThread.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using Response = ScriptedServer::Response;
using End = ScriptedServer::End;

/// Milliseconds; generous for a busy machine, and less than the shortest wait for a thread that
/// hangs, SoundOutput::LeaveTime.
constexpr int LongestTurn = 2500;

/// Measures the longest time for which the calling thread's event loop was blocked.
class LoopWatch {
public:
    LoopWatch()
    {
        m_clock.start();
        QObject::connect(&m_timer, &QTimer::timeout, [this] { note(); });
        m_timer.start(10);
    }
    qint64 longest()
    {
        note();
        return m_longest;
    }

private:
    void note() { m_longest = std::max(m_longest, m_clock.restart()); }

    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_longest = 0;
};

class StreamPlayerTest : public testing::Test {
protected:
    StreamPlayerTest()
        : server([this](const ScriptedServer::Request &request) {
            return Response {200, bodies.value(request.path()), {}, End::Stall, INT_MAX};
        })
        , good(soundMedia().at(0).repeated(5))
    {
        bodies.insert("/good", good);
    }

    void open(const AudioOutputSpec &spec)
    {
        player = std::make_unique<StreamPlayer>(spec);
        StreamReader::Times times;
        times.giveUp = std::chrono::milliseconds(3000);
        times.silence = std::chrono::milliseconds(2000);
        player->setTimes(times);
        QObject::connect(
            player.get(), &MediaPlayer::audibleChanged, [this](bool now) { audible = now; });
        QObject::connect(player.get(), &MediaPlayer::gaveUp,
            [this](const TrString &why) { problem = why.sourceText(); });
        QObject::connect(player.get(), &MediaPlayer::outputFailed,
            [this](const TrString &why) { outputProblem = why.sourceText(); });
    }
    void play(const char *path)
    {
        audible = false;
        problem.clear();
        StreamSource source;
        source.url = QUrl(QStringLiteral("http://127.0.0.1:%1%2")
                              .arg(server.port())
                              .arg(QString::fromLatin1(path)));
        player->play(source);
    }
    bool isHeard()
    {
        play("/good");
        return spinUntil([this] { return audible; });
    }
    void wait(int milliseconds) const
    {
        spinUntil([] { return false; }, milliseconds);
    }

    QMap<QByteArray, QByteArray> bodies;
    ScriptedServer server;
    const QByteArray good;
    std::unique_ptr<StreamPlayer> player;
    bool audible = false;
    QString problem;
    QString outputProblem;
};

/// AAC headers without sound once blocked the main thread for good.
TEST_F(StreamPlayerTest, AStationThatCannotBeDecodedNeverStopsTheMainLoop)
{
    std::mt19937 random(1);
    for (const char *path : {"/zeros", "/noise", "/broken"})
        bodies.insert(path, scrambledAac(random, path == QByteArray("/zeros")).repeated(20));
    bodies.insert("/broken", brokenMedia(random));
    open({AudioOutputSpec::Null, {}});
    LoopWatch watch;
    for (const char *path : {"/zeros", "/noise", "/broken"}) {
        play(path);
        wait(500);
        player->stop();
        play(path);
        wait(300);
        EXPECT_TRUE(isHeard()) << path;
        play(path);
        EXPECT_TRUE(spinUntil([this] { return !problem.isEmpty() || audible; }, 15000)) << path;
    }
    EXPECT_TRUE(isHeard());
    player->stop();
    EXPECT_LT(watch.longest(), LongestTurn);
    EXPECT_TRUE(player->waitForEnd(std::chrono::seconds(5)));
}

TEST_F(StreamPlayerTest, AnOutputThatHangsIsLeftBehindAndReported)
{
    // A FIFO without a reader: opening it for writing blocks.
    const QTemporaryDir folder;
    const QByteArray fifo = QFile::encodeName(folder.filePath(QStringLiteral("out.wav")));
    ASSERT_EQ(::mkfifo(fifo.constData(), 0600), 0);
    open({AudioOutputSpec::Wav, QFile::decodeName(fifo)});
    {
        LoopWatch watch;
        play("/good");
        wait(500);
        player->pause();
        player->resume();
        player->stop();
        wait(200);
        EXPECT_LT(watch.longest(), LongestTurn);
    }
    EXPECT_FALSE(player->waitForEnd(std::chrono::milliseconds(300)));
    const int reader = ::open(fifo.constData(), O_RDONLY | O_NONBLOCK);
    EXPECT_TRUE(player->waitForEnd(std::chrono::seconds(10)));
    ::close(reader);
}

TEST_F(StreamPlayerTest, AnOutputThatFailsIsNoFaultOfTheStream)
{
    const QTemporaryDir folder;
    open({AudioOutputSpec::Wav, folder.filePath(QStringLiteral("nowhere/out.wav"))});
    play("/good");
    EXPECT_TRUE(spinUntil([this] { return !outputProblem.isEmpty(); }));
    EXPECT_EQ(problem, QString());
}

TEST_F(StreamPlayerTest, TheNextPlayWaitsForTheFileOfTheOneBefore)
{
    const QTemporaryDir folder;
    const QString wav = folder.filePath(QStringLiteral("out.wav"));
    open({AudioOutputSpec::Wav, wav});
    for (int i = 0; i < 5; ++i) {
        ASSERT_TRUE(isHeard());
        wait(200);
    }
    wait(800);
    player->stop();
    ASSERT_TRUE(player->waitForEnd(std::chrono::seconds(5)));
    QFile file(wav);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const ear::Sound sound = ear::decoded(file.readAll().toStdString());
    EXPECT_NEAR(sound.seconds(), 1.2, 0.5);
    EXPECT_GT(sound.share(3000, 6000, 440), 0.9);
}

TEST_F(StreamPlayerTest, NothingIsHeardOfAPlayThatIsOverOrPaused)
{
    open({AudioOutputSpec::Null, {}});
    for (int i = 0; i < 20; ++i) {
        play("/good");
        wait(i * 15);
        if (i % 2)
            player->pause();
        else
            player->stop();
        audible = false;
        wait(100);
        EXPECT_FALSE(audible) << i;
    }
    player->pause();
    player->resume();
    EXPECT_TRUE(isHeard());
}

} // namespace
