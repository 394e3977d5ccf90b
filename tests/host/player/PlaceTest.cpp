// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/PauseBuffer.h"
#include "host/player/StreamPlayer.h"
#include "tests/host/player/Chirp.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/WorkerThread.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace {

using Request = ScriptedServer::Request;
using Response = ScriptedServer::Response;
using End = ScriptedServer::End;
using Milliseconds = std::chrono::milliseconds;

constexpr int Seconds = 90;

/// The first and the last byte that are asked for; the whole \a size without a range.
std::pair<int, int> rangeOf(const Request &request, int size)
{
    const QByteArray range = request.header("Range");
    const QList<QByteArray> ends = range.mid(range.indexOf('=') + 1).split('-');
    if (range.isEmpty() || ends.size() != 2)
        return {0, size - 1};
    return {ends.at(0).toInt(), ends.at(1).isEmpty() ? size - 1 : ends.at(1).toInt()};
}

Response part(const Request &request, const QByteArray &whole)
{
    if (request.header("Range").isEmpty())
        return {200, whole, {}, End::Complete, 0};
    const auto [first, last] = rangeOf(request, whole.size());
    if (first >= whole.size())
        return {416, "", {}, End::Complete, 0};
    return {206, whole.mid(first, last - first + 1),
        {{"Content-Range",
            "bytes " + QByteArray::number(first) + '-' + QByteArray::number(last) + '/'
                + QByteArray::number(whole.size())}},
        End::Complete, 0};
}

/// A player that plays to a file, in which the places are measured.
class PlaceTest : public testing::Test {
protected:
    PlaceTest()
        : server([this](const Request &request) { return answer(request); })
        , wav(folder.filePath(QStringLiteral("out.wav")))
        , player({AudioOutputSpec::Wav, wav})
    {
        QObject::connect(
            &player, &MediaPlayer::audibleChanged, [this](bool now) { audible = now; });
        QObject::connect(&player, &MediaPlayer::gaveUp,
            [this](const TrString &why) { problem = why.sourceText(); });
        QObject::connect(&player, &MediaPlayer::ended, [this] { ended = true; });
        QObject::connect(&player, &MediaPlayer::sought, [this](const TrString &why) {
            ++sought;
            refusal = why.sourceText();
        });
    }

    Response answer(const Request &request)
    {
        return handler ? handler(request) : part(request, bytes);
    }
    static const QByteArray &mp3()
    {
        static const QByteArray made
            = chirp::recorded("lamemp3enc target=bitrate cbr=true bitrate=64", Seconds);
        return made;
    }
    void play(double startSeconds = 0, bool live = false)
    {
        StreamSource source;
        source.url = QUrl(QStringLiteral("http://127.0.0.1:%1/file").arg(server.port()));
        source.live = live;
        source.start.position = std::chrono::microseconds(static_cast<qint64>(startSeconds * 1e6));
        player.play(source);
    }
    bool waitForSound()
    {
        return spinUntil([this] { return audible; });
    }
    bool waitForDuration()
    {
        return spinUntil([this] { return player.place().duration.has_value(); });
    }
    bool seek(double seconds)
    {
        const int before = sought;
        player.seek(Milliseconds(static_cast<qint64>(seconds * 1000)));
        return spinUntil([&] { return sought > before; }, 15000);
    }
    double position() const
    {
        return static_cast<double>(player.place().position.value_or(Milliseconds(-1000)).count())
            / 1000;
    }
    static void wait(int milliseconds)
    {
        spinUntil([] { return false; }, milliseconds);
    }
    ear::Sound recordedSound()
    {
        player.stop();
        EXPECT_TRUE(player.waitForEnd(std::chrono::seconds(5)));
        QFile file(wav);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return ear::decoded(file.readAll().toStdString());
    }
    /// A busy machine takes its time.
    bool waitForPosition(double seconds)
    {
        return spinUntil([&] { return position() >= seconds; }, 15000);
    }
    /// Until nothing more is on its way to the output.
    void pause()
    {
        ASSERT_TRUE(waitForSound());
        player.pause();
        ASSERT_TRUE(spinUntil([this] { return !audible; }));
        wait(200);
    }
    /// Pauses, and compares the position then with what was heard last.
    void expectPositionIsHeard(double tolerance)
    {
        pause();
        const double told = position();
        const ear::Sound sound = recordedSound();
        EXPECT_NEAR(chirp::placeAtEnd(sound), told, tolerance);
    }

    std::function<Response(const Request &)> handler;
    QByteArray bytes;
    ScriptedServer server;
    const QTemporaryDir folder;
    const QString wav;
    StreamPlayer player;
    bool audible = false;
    bool ended = false;
    int sought = 0;
    QString refusal;
    QString problem;
};

struct Format {
    const char *name;
    const char *encoder;
    double tolerance; ///< seconds
};

void PrintTo(const Format &format, std::ostream *out)
{
    *out << format.name;
}

class PlaceFormatTest : public PlaceTest, public testing::WithParamInterface<Format> {
protected:
    void SetUp() override
    {
        bytes = chirp::recorded(GetParam().encoder, Seconds);
        if (bytes.isEmpty())
            GTEST_SKIP() << "this machine cannot make it";
    }
};

TEST_P(PlaceFormatTest, ThePlaceThatIsHeardIsTheOneThatIsTold)
{
    play();
    ASSERT_TRUE(waitForSound());
    ASSERT_TRUE(waitForDuration());
    EXPECT_NEAR(static_cast<double>(player.place().duration->count()) / 1000, Seconds, 0.6);
    EXPECT_TRUE(player.place().isSeekable);
    for (const double place : {60.0, 20.0}) {
        ASSERT_TRUE(seek(place));
        EXPECT_EQ(refusal, QString());
        EXPECT_NEAR(position(), place, 0.3);
        EXPECT_TRUE(waitForPosition(place + 0.8));
    }
    expectPositionIsHeard(GetParam().tolerance);
}

TEST_P(PlaceFormatTest, AnEpisodeBeginsWhereItWasLeft)
{
    play(47.5);
    ASSERT_TRUE(waitForSound());
    EXPECT_NEAR(position(), 47.5, 0.5);
    wait(700);
    pause();
    const double told = position();
    const ear::Sound sound = recordedSound();
    EXPECT_NEAR(chirp::placeAtEnd(sound), told, GetParam().tolerance);
    EXPECT_NEAR(chirp::placeAt(sound, 0.2), 47.5 + 0.4, GetParam().tolerance);
}

INSTANTIATE_TEST_SUITE_P(Formats, PlaceFormatTest,
    testing::Values(Format {"Mp3", "lamemp3enc target=bitrate cbr=true bitrate=64", 0.15},
        Format {"Mp3Vbr", "lamemp3enc target=quality quality=4 ! xingmux", 0.5},
        Format {"Aac", "voaacenc bitrate=64000 ! audio/mpeg,stream-format=adts", 0.5},
        Format {"Vorbis", "vorbisenc bitrate=64000 ! oggmux", 0.15},
        Format {"Opus", "opusenc bitrate=48000 ! oggmux", 0.15}, Format {"Flac", "flacenc", 0.15}),
    [](const auto &format) { return format.param.name; });

TEST_F(PlaceTest, APauseHoldsThePlace)
{
    bytes = mp3();
    play();
    ASSERT_TRUE(waitForSound());
    ASSERT_TRUE(waitForDuration());
    ASSERT_TRUE(seek(30));
    wait(800);
    pause();
    const double paused = position();
    wait(1000);
    EXPECT_EQ(position(), paused);
    player.resume();
    ASSERT_TRUE(waitForSound());
    EXPECT_TRUE(waitForPosition(paused + 0.5));
    expectPositionIsHeard(0.15);
}

TEST_F(PlaceTest, ASeekWhilePausedIsHeardAfterwards)
{
    bytes = mp3();
    play();
    ASSERT_TRUE(waitForSound());
    ASSERT_TRUE(waitForDuration());
    player.pause();
    ASSERT_TRUE(spinUntil([this] { return !audible; }));
    ASSERT_TRUE(seek(70));
    EXPECT_NEAR(position(), 70, 0.1);
    EXPECT_FALSE(audible);
    player.resume();
    ASSERT_TRUE(waitForSound());
    wait(1200);
    expectPositionIsHeard(0.15);
}

TEST_F(PlaceTest, ThePlaceIsKeptWhenTheConnectionBreaks)
{
    bytes = mp3();
    handler = [this, count = 0](const Request &request) mutable {
        Response response = part(request, bytes);
        if (rangeOf(request, bytes.size()).second == bytes.size() - 1 && ++count == 2) {
            response.end = End::Truncate;
            response.sendBytes = 30000;
        }
        return response;
    };
    play();
    ASSERT_TRUE(waitForSound());
    ASSERT_TRUE(waitForDuration());
    ASSERT_TRUE(seek(40));
    wait(6000);
    EXPECT_GE(server.requests().size(), 4);
    expectPositionIsHeard(0.15);
}

TEST_F(PlaceTest, TheLastOfManySeeksCounts)
{
    bytes = mp3();
    play();
    ASSERT_TRUE(waitForSound());
    ASSERT_TRUE(waitForDuration());
    for (const int place : {10, 80, 20, 70})
        player.seek(std::chrono::seconds(place));
    ASSERT_TRUE(seek(50));
    EXPECT_NEAR(position(), 50, 0.2);
    wait(1000);
    expectPositionIsHeard(0.15);
}

TEST_F(PlaceTest, APlaceBehindTheEndIsTheEnd)
{
    bytes = mp3();
    play();
    ASSERT_TRUE(waitForSound());
    ASSERT_TRUE(waitForDuration());
    ASSERT_TRUE(seek(100000));
    EXPECT_EQ(refusal, QString());
    EXPECT_TRUE(spinUntil([this] { return ended; }));
}

struct Fault {
    const char *name;
    std::function<Response(const Request &, const QByteArray &)> answer; ///< to requests for parts
    const char *words;
};

void PrintTo(const Fault &fault, std::ostream *out)
{
    *out << fault.name;
}

class PlaceFaultTest : public PlaceTest, public testing::WithParamInterface<Fault> { };

TEST_P(PlaceFaultTest, IsToldInWordsAndThePlayGoesOn)
{
    bytes = mp3();
    handler = [this](const Request &request) {
        return request.header("Range").isEmpty() ? part(request, bytes)
                                                 : GetParam().answer(request, bytes);
    };
    play();
    ASSERT_TRUE(waitForSound());
    ASSERT_TRUE(waitForDuration());
    wait(300);
    ASSERT_TRUE(seek(60));
    EXPECT_EQ(refusal.toStdString(), GetParam().words);
    EXPECT_TRUE(audible);
    const double now = position();
    EXPECT_LT(now, 20);
    EXPECT_TRUE(waitForPosition(now + 0.5));
    expectPositionIsHeard(0.15);
}

Response answerPart(const Request &request, const QByteArray &whole, const QByteArray &range)
{
    Response response = part(request, whole);
    response.headers = {{"Content-Range", range}};
    return response;
}

const Fault Faults[] = {
    {"NoRanges",
        [](const Request &, const QByteArray &whole) {
            return Response {200, whole, {}, End::Complete, 0};
        },
        "The server of this sends no parts of it: it can only be heard from its beginning."},
    {"AnotherPart",
        [](const Request &request, const QByteArray &whole) {
            return answerPart(request, whole, "bytes 0-65535/720000");
        },
        "The stream's server sent another part of the file."},
    {"AnotherLength",
        [](const Request &request, const QByteArray &whole) {
            const auto [first, last] = rangeOf(request, whole.size());
            return answerPart(request, whole,
                "bytes " + QByteArray::number(first) + '-' + QByteArray::number(last) + "/5");
        },
        "The stream's server sent another part of the file."},
    {"NoContentRange",
        [](const Request &request, const QByteArray &whole) {
            Response response = part(request, whole);
            response.headers.clear();
            return response;
        },
        "The stream's server sent another part of the file."},
    {"EndsEarly",
        [](const Request &request, const QByteArray &whole) {
            Response response = part(request, whole);
            response.body = response.body.left(1000);
            return response;
        },
        "The file at the server is shorter than it said."},
    {"IsShorter",
        [](const Request &, const QByteArray &) {
            return Response {416, "", {}, End::Complete, 0};
        },
        "The file at the server is shorter than it said."},
    {"IsNoLongerThere",
        [](const Request &, const QByteArray &) {
            return Response {404, "no", {}, End::Complete, 0};
        },
        "The stream's server refused it (code %1)."},
    {"IsSomethingElse",
        [](const Request &request, const QByteArray &whole) {
            Response response = part(request, whole);
            response.body.fill('x');
            return response;
        },
        "This place cannot be found in the file."},
    {"SaysNothing",
        [](const Request &, const QByteArray &) {
            return Response {206, "", {}, End::StallBeforeHead, 0};
        },
        "The stream's server does not answer."},
    {"Stalls",
        [](const Request &request, const QByteArray &whole) {
            Response response = part(request, whole);
            response.end = End::Stall;
            response.sendBytes = 500;
            return response;
        },
        "The stream's server has stopped sending."},
    {"BreaksOff",
        [](const Request &request, const QByteArray &whole) {
            Response response = part(request, whole);
            response.end = End::Reset;
            response.sendBytes = 500;
            return response;
        },
        "The connection to the stream was lost."},
};

INSTANTIATE_TEST_SUITE_P(Faults, PlaceFaultTest, testing::ValuesIn(Faults),
    [](const auto &fault) { return fault.param.name; });

TEST_F(PlaceTest, AServerWithoutPartsPlaysFromTheBeginningInPlaceOfAKeptPlace)
{
    bytes = mp3();
    handler = [this](const Request &) { return Response {200, bytes, {}, End::Complete, 0}; };
    play(40);
    ASSERT_TRUE(waitForSound());
    EXPECT_LT(position(), 2);
    wait(500);
    expectPositionIsHeard(0.15);
}

TEST_F(PlaceTest, AFileWithoutALengthSaysThatItHasNoPlaces)
{
    handler = [](const Request &) {
        Response response;
        response.body = "HTTP/1.0 200 OK\r\nContent-Type: audio/mpeg\r\n\r\n" + mp3();
        response.end = End::Raw;
        return response;
    };
    play();
    ASSERT_TRUE(waitForSound());
    wait(500);
    EXPECT_FALSE(player.place().duration.has_value());
    EXPECT_FALSE(player.place().isSeekable);
    ASSERT_TRUE(seek(10));
    EXPECT_EQ(refusal,
        QStringLiteral(
            "This does not say how long it is: it can only be heard from its beginning."));
    EXPECT_GT(position(), 0.3);
    EXPECT_LT(position(), 20);
}

TEST_F(PlaceTest, SegmentsArePlaces)
{
    const QByteArray aac
        = chirp::recorded("voaacenc bitrate=64000 ! audio/mpeg,stream-format=adts", 40);
    ASSERT_FALSE(aac.isEmpty());
    // Segments of 94 frames of 1024 samples, 2.005 s.
    QList<QByteArray> segments {QByteArray()};
    int frames = 0;
    for (int at = 0; at + 7 <= aac.size();) {
        const auto byte = [&](int i) { return static_cast<unsigned char>(aac.at(at + i)); };
        const int size = (byte(3) & 3) << 11 | byte(4) << 3 | byte(5) >> 5;
        if (frames++ % 94 == 0 && frames > 1)
            segments.append(QByteArray());
        segments.last() += aac.mid(at, size);
        at += size;
    }
    QByteArray list = "#EXTM3U\n#EXT-X-TARGETDURATION:3\n";
    for (int i = 0; i < segments.size(); ++i)
        list += "#EXTINF:2.005,\ns" + QByteArray::number(i) + "\n";
    list += "#EXT-X-ENDLIST\n";
    handler = [list, segments](const Request &request) {
        const QByteArray path = request.path();
        return Response {200, path == "/file" ? list : segments.value(path.mid(2).toInt()), {},
            End::Complete, 0};
    };
    play();
    ASSERT_TRUE(waitForSound());
    ASSERT_TRUE(waitForDuration());
    EXPECT_NEAR(static_cast<double>(player.place().duration->count()) / 1000, 40, 2.1);
    ASSERT_TRUE(seek(25));
    EXPECT_TRUE(waitForPosition(26));
    expectPositionIsHeard(0.15);
}

/// A station that is paused: its server sends \c bytes at once, then nothing more.
class LivePauseTest : public PlaceTest {
protected:
    LivePauseTest()
    {
        bytes = mp3();
        StreamReader::Times times;
        times.http.silence = Milliseconds(60000);
        times.silence = Milliseconds(60000);
        player.setTimes(times);
        player.setPauseBuffer(Milliseconds(60000));
        handler = [this](const Request &) {
            const QByteArray head = "HTTP/1.0 200 OK\r\nContent-Type: audio/mpeg\r\n\r\n";
            return Response {200, head + bytes, {}, End::RawStall, 0};
        };
    }
    void pauseFor(int milliseconds)
    {
        QElapsedTimer clock;
        clock.start();
        player.pause();
        ASSERT_TRUE(spinUntil([this] { return !audible; }));
        wait(milliseconds);
        player.resume();
        ASSERT_TRUE(waitForSound());
        paused = static_cast<double>(clock.elapsed()) / 1000;
    }
    double paused = 0; ///< the last time, at most, in seconds
    double behind() const { return static_cast<double>(player.place().behind.count()) / 1000; }
};

TEST_F(LivePauseTest, AStationHasNoPlace)
{
    play(0, true);
    ASSERT_TRUE(waitForSound());
    EXPECT_FALSE(player.place().position.has_value());
    EXPECT_FALSE(player.place().duration.has_value());
    EXPECT_FALSE(player.place().isSeekable);
    EXPECT_EQ(player.place().behind, Milliseconds(0));
}

TEST_F(LivePauseTest, APausedStationGoesOnWhereItWasAndIsBehind)
{
    play(0, true);
    ASSERT_TRUE(waitForSound());
    wait(500);
    pauseFor(1500);
    EXPECT_GE(behind(), 1.1);
    EXPECT_LE(behind(), paused);
    wait(500);
    const double before = behind();
    pauseFor(700);
    const double after = behind();
    EXPECT_GE(after, before + 0.4);
    EXPECT_LE(after, before + paused);
    wait(15000);
    EXPECT_EQ(behind(), after);
    EXPECT_EQ(server.requests().size(), 1);
    // Nothing is missing in the sound, and nothing was heard twice.
    const ear::Sound sound = recordedSound();
    EXPECT_GT(sound.seconds(), 14);
    EXPECT_NEAR(chirp::placeAtEnd(sound), sound.seconds(), 0.15);
}

TEST_F(LivePauseTest, AfterTheTimeThatIsKeptItIsRejoinedLive)
{
    player.setPauseBuffer(Milliseconds(500));
    play(0, true);
    ASSERT_TRUE(waitForSound());
    wait(300);
    pauseFor(1200);
    EXPECT_EQ(behind(), 0);
    EXPECT_EQ(server.requests().size(), 2);
}

TEST_F(LivePauseTest, WithoutABufferItIsDisconnected)
{
    player.setPauseBuffer(Milliseconds(0));
    play(0, true);
    ASSERT_TRUE(waitForSound());
    wait(300);
    pauseFor(100);
    EXPECT_EQ(behind(), 0);
    EXPECT_EQ(server.requests().size(), 2);
}

TEST_F(LivePauseTest, CanBeRejoinedLive)
{
    play(0, true);
    ASSERT_TRUE(waitForSound());
    wait(300);
    pauseFor(700);
    ASSERT_GT(behind(), 0.5);
    const int before = sought;
    player.rejoinLive();
    ASSERT_TRUE(spinUntil([&] { return sought > before; }));
    EXPECT_EQ(refusal, QString());
    EXPECT_EQ(behind(), 0);
    EXPECT_TRUE(server.waitForRequests(2));
    ASSERT_TRUE(waitForSound());
}

TEST_F(LivePauseTest, RejoiningAPausedStationIsHeardAfterwards)
{
    play(0, true);
    ASSERT_TRUE(waitForSound());
    player.pause();
    ASSERT_TRUE(spinUntil([this] { return !audible; }));
    player.rejoinLive();
    ASSERT_TRUE(spinUntil([this] { return sought == 1; }));
    wait(300);
    EXPECT_FALSE(audible);
    EXPECT_EQ(server.requests().size(), 1);
    player.resume();
    ASSERT_TRUE(waitForSound());
    EXPECT_EQ(server.requests().size(), 2);
    EXPECT_EQ(behind(), 0);
}

TEST_F(LivePauseTest, ABreakDuringAPauseIsHeardInItsPlace)
{
    constexpr int FirstBytes = 6 * 64000 / 8;
    handler = [this, count = 0](const Request &) mutable {
        Response response {200, bytes, {}, End::Stall, INT_MAX};
        if (++count == 1) {
            response.end = End::Reset;
            response.sendBytes = FirstBytes;
        }
        return response;
    };
    player.setPauseBuffer(Milliseconds(60000));
    play(0, true);
    ASSERT_TRUE(waitForSound());
    player.pause();
    ASSERT_TRUE(spinUntil([this] { return !audible; }));
    ASSERT_TRUE(server.waitForRequests(2));
    wait(1500);
    player.resume();
    ASSERT_TRUE(waitForSound());
    wait(8000);
    // The first part is heard to its end, then the second from its beginning.
    const ear::Sound sound = recordedSound();
    EXPECT_NEAR(chirp::placeAt(sound, 5.0), 5.2, 0.15);
    EXPECT_NEAR(chirp::placeAtEnd(sound), sound.seconds() - 6, 0.4);
    EXPECT_LT(behind(), 3);
}

TEST_F(LivePauseTest, MemoryIsBoundedHoweverMuchTheServerSends)
{
    bytes = mp3().repeated(static_cast<int>(PauseBuffer::MaxSize * 5 / 4) / mp3().size());
    play(0, true);
    ASSERT_TRUE(waitForSound());
    player.pause();
    ASSERT_TRUE(spinUntil([this] { return !audible; }));
    // It was left: resuming connects anew, long before the minute is over.
    wait(10000);
    player.resume();
    EXPECT_TRUE(server.waitForRequests(2));
    ASSERT_TRUE(waitForSound());
    EXPECT_EQ(behind(), 0);
}

} // namespace
