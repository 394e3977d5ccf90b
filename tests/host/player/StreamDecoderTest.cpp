// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/StreamDecoder.h"

#include "host/player/DecoderProcess.h"
#include "tests/host/player/Recording.h"
#include "tests/support/WorkerThread.h"

#include <QElapsedTimer>
#include <QList>
#include <QStringList>

#include <csignal>
#include <cstring>
#include <gmock/gmock.h>
#include <thread>

namespace {

using Taken = StreamConsumer::Taken;

/// Collects a decoder's audio; `rises`, the upward zero crossings of its first channel, measures
/// the pitch.
class Listener {
public:
    StreamDecoderCallbacks callbacks()
    {
        StreamDecoderCallbacks callbacks;
        callbacks.takeAudio = [this](const AudioFormat &taken, const char *data, std::size_t size) {
            format = taken;
            return take(data, size);
        };
        callbacks.ahead = [this] { return ahead; };
        callbacks.takeTitle = [this](const QString &title) { titles.append(title); };
        callbacks.takeBitRate = [this](int rate) { bitRate = rate; };
        return callbacks;
    }

    double seconds() const { return static_cast<double>(frames) / format.rate; }
    double pitch() const { return rises / seconds(); }

    AudioFormat format;
    QStringList titles;
    std::atomic<long> frames {0};
    std::atomic<int> bitRate {0};
    std::atomic<bool> refuse {false};
    std::chrono::milliseconds ahead {0};

private:
    Taken take(const char *data, std::size_t size)
    {
        std::vector<float> samples(size / sizeof(float));
        std::memcpy(samples.data(), data, size);
        const auto channels = static_cast<std::size_t>(format.channels);
        const std::size_t count = samples.size() / channels;
        for (std::size_t i = 0; i < count; ++i) {
            const float now = samples[i * channels];
            // Above the noise that encoders leave in the silence at both ends.
            if (m_below && now > 0.05F) {
                ++rises;
                m_below = false;
            } else if (now < -0.05F) {
                m_below = true;
            }
        }
        frames += static_cast<long>(count);
        return refuse ? Taken::Refused : Taken::All;
    }

    bool m_below = true;
    int rises = 0;
};

bool push(StreamDecoder &decoder, const char *data, std::size_t size)
{
    Taken taken = Taken::None;
    while (taken == Taken::None)
        taken = decoder.push(data, size);
    return taken == Taken::All;
}

bool pushAll(StreamDecoder &decoder, const QByteArray &bytes, int piece = 4096)
{
    for (int at = 0; at < bytes.size(); at += piece) {
        const int size = qMin(piece, bytes.size() - at);
        if (!push(decoder, bytes.constData() + at, static_cast<std::size_t>(size)))
            return false;
    }
    return true;
}

void finish(StreamDecoder &decoder)
{
    while (!decoder.finish()) { }
}

struct Codec {
    const char *name;
    const char *encoder;
};

class StreamDecoderCodecTest : public testing::TestWithParam<Codec> { };

TEST_P(StreamDecoderCodecTest, SoundsAsItWasRecorded)
{
    const QByteArray stream = recordedTone(GetParam().encoder, 440, 3);
    ASSERT_FALSE(stream.isEmpty());
    for (const int piece : {16384, 1000}) {
        Listener listener;
        StreamDecoder decoder({}, listener.callbacks());
        EXPECT_TRUE(pushAll(decoder, stream, piece));
        finish(decoder);
        EXPECT_TRUE(decoder.isUsable());
        EXPECT_NEAR(listener.seconds(), 3, 0.15);
        EXPECT_NEAR(listener.pitch(), 440, 22);
        EXPECT_EQ(listener.format.channels, 2);
        EXPECT_NEAR(static_cast<double>(decoder.decoded().count()), listener.seconds() * 1000, 60);
    }
}

INSTANTIATE_TEST_SUITE_P(Codecs, StreamDecoderCodecTest,
    testing::Values(Codec {"mp3", "lamemp3enc"},
        Codec {"aac",
            "voaacenc ! aacparse ! "
            "audio/mpeg,stream-format=adts"},
        Codec {"vorbis", "vorbisenc ! oggmux"}, Codec {"opus", "audioresample ! opusenc ! oggmux"},
        Codec {"flac", "flacenc"}, Codec {"ts", "voaacenc ! aacparse ! mpegtsmux"},
        Codec {"mp4", "voaacenc ! aacparse ! mp4mux fragment-duration=500 streamable=true"}),
    [](const auto &codec) { return std::string(codec.param.name); });

TEST(StreamDecoderTest, GivesTheFormatThatIsWanted)
{
    Listener listener;
    StreamDecoder decoder({48000, 1}, listener.callbacks());
    EXPECT_TRUE(pushAll(decoder, recordedTone("flacenc", 440, 2), 4096));
    finish(decoder);
    EXPECT_EQ(listener.format, (AudioFormat {48000, 1}));
    EXPECT_NEAR(listener.seconds(), 2, 0.1);
    EXPECT_NEAR(listener.pitch(), 440, 22);
}

TEST(StreamDecoderTest, TakesInLargePiecesWhatThereIsPlentyOf)
{
    Listener listener;
    listener.ahead = StreamConsumer::Plenty;
    StreamDecoder decoder({}, listener.callbacks());
    EXPECT_TRUE(pushAll(decoder, recordedTone("lamemp3enc", 440, 20)));
    finish(decoder);
    EXPECT_NEAR(listener.seconds(), 20, 0.2);
    EXPECT_NEAR(listener.pitch(), 440, 22);
}

TEST(StreamDecoderTest, IsAbortedAtOnceWhileThereIsPlenty)
{
    const QByteArray stream = recordedTone("lamemp3enc", 440, 2);
    // A machine that stands still delays some rounds, what waits for its time all of them.
    qint64 shortest = INT_MAX;
    for (int round = 0; round < 5 && shortest >= 200; ++round) {
        Listener listener;
        listener.ahead = StreamConsumer::Plenty;
        StreamDecoder decoder({}, listener.callbacks());
        EXPECT_TRUE(pushAll(decoder, stream));
        EXPECT_TRUE(spinUntil([&] { return listener.frames > 0; }));
        QElapsedTimer clock;
        clock.start();
        decoder.abort();
        EXPECT_TRUE(decoder.finish());
        shortest = std::min(shortest, clock.elapsed());
    }
    EXPECT_LT(shortest, 200);
}

TEST(StreamDecoderTest, JoinsAStreamInTheMiddleOfAFrame)
{
    const QByteArray stream = recordedTone("lamemp3enc", 440, 4);
    Listener listener;
    StreamDecoder decoder({}, listener.callbacks());
    EXPECT_TRUE(pushAll(decoder, stream.mid(stream.size() / 2 + 77), 4096));
    finish(decoder);
    EXPECT_NEAR(listener.seconds(), 2, 0.2);
}

TEST(StreamDecoderTest, TakesTitlesThatAreInTheStream)
{
    Listener listener;
    StreamDecoder decoder({}, listener.callbacks());
    const QByteArray stream
        = recordedTone("taginject tags=\"title=One,artist=Ann\" ! vorbisenc ! oggmux", 440, 1);
    ASSERT_FALSE(stream.isEmpty());
    pushAll(decoder, stream, 4096);
    finish(decoder);
    EXPECT_TRUE(listener.titles.contains(QStringLiteral("Ann - One")))
        << listener.titles.join(QLatin1Char('|')).toStdString();
}

TEST(StreamDecoderTest, WhatIsNoAudioIsNotUsable)
{
    const QList<QByteArray> streams {QByteArray(200000, 'x'),
        QByteArray("#EXTM3U\nhttp://a/\n").repeated(1000),
        QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16) + QByteArray(100000, '\x07')};
    for (const QByteArray &stream : streams) {
        Listener listener;
        StreamDecoder decoder({}, listener.callbacks());
        pushAll(decoder, stream, 4096);
        finish(decoder);
        EXPECT_FALSE(decoder.isUsable()) << stream.left(10).toStdString();
        EXPECT_FALSE(listener.format.isKnown());
    }
}

TEST(StreamDecoderTest, WhatIsNotOfferedIsNotDecoded)
{
    for (const char *encoder : {"wavenc", "vorbisenc ! matroskamux", "lamemp3enc ! avimux"}) {
        const QByteArray stream = recordedTone(encoder, 440, 2);
        ASSERT_FALSE(stream.isEmpty()) << encoder;
        Listener listener;
        StreamDecoder decoder({}, listener.callbacks());
        pushAll(decoder, stream);
        finish(decoder);
        EXPECT_FALSE(decoder.isUsable()) << encoder;
        EXPECT_FALSE(listener.format.isKnown()) << encoder;
    }
}

struct Change {
    const char *name;
    const char *first;
    int firstRate;
    const char *second;
    int secondRate;
};

class StreamDecoderChangeTest : public testing::TestWithParam<Change> { };

/// The server switches to another codec, rate or container in the middle of a connection.
TEST_P(StreamDecoderChangeTest, GoesOnInTheSameFormatAndLosesNothing)
{
    const Change &change = GetParam();
    const QByteArray stream = recordedTone(change.first, 440, 4, change.firstRate)
        + recordedTone(change.second, 440, 4, change.secondRate);
    Listener listener;
    StreamDecoder decoder({}, listener.callbacks());
    EXPECT_TRUE(pushAll(decoder, stream, 1000));
    finish(decoder);
    EXPECT_TRUE(decoder.isUsable());
    EXPECT_EQ(listener.format, (AudioFormat {change.firstRate, 2}));
    EXPECT_NEAR(listener.seconds(), 8, 0.4);
    EXPECT_NEAR(listener.pitch(), 440, 22);
}

constexpr const char *Adts = "voaacenc ! aacparse ! audio/mpeg,stream-format=adts";

INSTANTIATE_TEST_SUITE_P(Changes, StreamDecoderChangeTest,
    testing::Values(Change {"aacRate", Adts, 44100, Adts, 32000},
        Change {"mp3Rate", "lamemp3enc", 44100, "lamemp3enc", 48000},
        Change {"mp3ToAac", "lamemp3enc", 44100, Adts, 44100},
        Change {"aacToMp3", Adts, 44100, "lamemp3enc", 48000},
        Change {"flacToMp3", "flacenc", 44100, "lamemp3enc", 44100},
        Change {"chainedOgg", "vorbisenc ! oggmux", 44100, "vorbisenc ! oggmux", 48000},
        Change {"vorbisToOpus", "vorbisenc ! oggmux", 48000, "opusenc ! oggmux", 48000}),
    [](const auto &change) { return std::string(change.param.name); });

/// The rest of a truncated frame may look like the start of another one in the same codec.
TEST(StreamDecoderTest, GoesOnWhereverTheCodecBeforeWasCutOff)
{
    const QByteArray aac = recordedTone(
        "voaacenc bitrate=96000 ! audio/mpeg,mpegversion=4,stream-format=adts", 440, 5, 48000);
    const QByteArray mp3 = recordedTone("lamemp3enc target=bitrate cbr=true bitrate=128", 440, 12);
    for (int cut = aac.size() * 3 / 5; cut < aac.size() * 3 / 5 + 400; cut += 37) {
        Listener listener;
        StreamDecoder decoder({}, listener.callbacks());
        const QByteArray stream = aac.left(cut) + mp3;
        // Paced like a station's stream: each piece is decoded before the next arrives.
        for (int at = 0; at < stream.size(); at += 1600) {
            EXPECT_TRUE(pushAll(decoder, stream.mid(at, 1600)));
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        EXPECT_TRUE(spinUntil([&] { return listener.frames > 13 * 48000; }, 3000)) << cut;
    }
}

TEST(StreamDecoderTest, APushWithoutSpaceComesBackWithinAQuarterOfASecond)
{
    // No audio is taken, so the decoder's buffers fill up sooner or later.
    StreamDecoderCallbacks callbacks = Listener().callbacks();
    callbacks.takeAudio = [](const AudioFormat &, const char *, std::size_t) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        return Taken::None;
    };
    callbacks.ahead = [] { return std::chrono::milliseconds(0); };
    callbacks.takeTitle = [](const QString &) {};
    callbacks.takeBitRate = [](int) {};
    StreamDecoder decoder({}, callbacks);
    const QByteArray stream = recordedTone("flacenc", 440, 30);
    QElapsedTimer clock;
    Taken taken = Taken::All;
    for (int at = 0; taken == Taken::All; at = (at + 4096) % (stream.size() - 4096)) {
        clock.restart();
        taken = decoder.push(stream.constData() + at, 4096);
    }
    EXPECT_EQ(taken, Taken::None);
    EXPECT_GE(clock.elapsed(), 200);
    EXPECT_LT(clock.elapsed(), 1500);
    EXPECT_FALSE(decoder.finish());

    clock.restart();
    decoder.abort();
    EXPECT_EQ(decoder.push(stream.constData(), 4096), Taken::Refused);
    EXPECT_TRUE(decoder.finish());
    EXPECT_LT(clock.elapsed(), 500);
}

TEST(StreamDecoderTest, AProcessThatDiesIsAStreamThatCannotBeDecoded)
{
    Listener listener;
    auto process = std::make_unique<DecoderProcess>();
    ASSERT_TRUE(process->isRunning());
    const pid_t pid = process->pid();
    StreamDecoder decoder({}, listener.callbacks(), std::move(process));
    const QByteArray stream = recordedTone("lamemp3enc", 440, 2);
    EXPECT_TRUE(pushAll(decoder, stream));
    ::kill(pid, SIGSEGV);
    finish(decoder);
    EXPECT_FALSE(decoder.isUsable());
    EXPECT_EQ(decoder.push(stream.constData(), 100), Taken::Refused);
}

TEST(StreamDecoderTest, AStoppedProcessDelaysNeitherPushNorDestruction)
{
    Listener listener;
    auto process = std::make_unique<DecoderProcess>();
    const pid_t pid = process->pid();
    ::kill(pid, SIGSTOP);
    QElapsedTimer clock;
    clock.start();
    {
        StreamDecoder decoder({}, listener.callbacks(), std::move(process));
        const QByteArray stream = recordedTone("lamemp3enc", 440, 20).repeated(10);
        Taken taken = Taken::All;
        for (int at = 0; taken == Taken::All && at + 4096 < stream.size(); at += 4096)
            taken = decoder.push(stream.constData() + at, 4096);
        EXPECT_EQ(taken, Taken::None);
        clock.restart();
    }
    EXPECT_LT(clock.elapsed(), 1000);
    EXPECT_EQ(::kill(pid, 0), -1);
}

} // namespace
