#include "host/player/StreamDecoder.h"

#include "media/GstHandles.h"
#include "tests/host/player/Recording.h"

#include <QList>
#include <QStringList>

#include <cmath>
#include <gmock/gmock.h>
#include <thread>

namespace {

/// Collects what a decoder makes; tells its pitch by counting how often the first channel rises
/// through zero.
class Listener {
public:
    StreamDecoderCallbacks callbacks()
    {
        StreamDecoderCallbacks callbacks;
        callbacks.takeAudio = [this](const AudioFormat &taken, void *audio) {
            format = taken;
            return take(static_cast<GstBuffer *>(audio));
        };
        callbacks.takeTitle = [this](const QString &title) { titles.append(title); };
        callbacks.takeBitRate = [this](int rate) { bitRate = rate; };
        return callbacks;
    }

    double seconds() const { return static_cast<double>(frames) / format.rate; }
    double pitch() const { return rises / seconds(); }

    AudioFormat format;
    QStringList titles;
    std::atomic<int> bitRate {0};
    std::atomic<bool> refuse {false};

private:
    bool take(GstBuffer *buffer)
    {
        GstMapInfo map;
        EXPECT_TRUE(gst_buffer_map(buffer, &map, GST_MAP_READ));
        const auto *samples = reinterpret_cast<const float *>(map.data);
        const auto channels = static_cast<std::size_t>(format.channels);
        const std::size_t count = map.size / sizeof(float) / channels;
        for (std::size_t i = 0; i < count; ++i) {
            const float now = samples[i * channels];
            // Encoders leave some noise around the silence at the ends.
            if (m_below && now > 0.05F) {
                ++rises;
                m_below = false;
            } else if (now < -0.05F) {
                m_below = true;
            }
        }
        frames += static_cast<long>(count);
        gst_buffer_unmap(buffer, &map);
        gst_buffer_unref(buffer);
        return !refuse;
    }

    bool m_below = true;
    long frames = 0;
    int rises = 0;
};

bool pushAll(StreamDecoder &decoder, const QByteArray &bytes, int piece)
{
    for (int at = 0; at < bytes.size(); at += piece) {
        const int size = qMin(piece, bytes.size() - at);
        if (!decoder.push(bytes.constData() + at, static_cast<std::size_t>(size)))
            return false;
    }
    return true;
}

struct Codec {
    const char *name;
    const char *encoder;
};

class StreamDecoderCodecTest : public testing::TestWithParam<Codec> { };

TEST_P(StreamDecoderCodecTest, soundsAsItWasRecorded)
{
    const QByteArray stream = recordedTone(GetParam().encoder, 440, 3);
    ASSERT_FALSE(stream.isEmpty());
    for (const int piece : {stream.size(), 1000}) {
        Listener listener;
        StreamDecoder decoder({}, listener.callbacks());
        EXPECT_TRUE(pushAll(decoder, stream, piece));
        decoder.finish();
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
        Codec {"wav", "wavenc"}),
    [](const auto &codec) { return std::string(codec.param.name); });

TEST(StreamDecoderTest, givesTheFormatThatIsWanted)
{
    Listener listener;
    StreamDecoder decoder({48000, 1}, listener.callbacks());
    EXPECT_TRUE(pushAll(decoder, recordedTone("flacenc", 440, 2), 4096));
    decoder.finish();
    EXPECT_EQ(listener.format, (AudioFormat {48000, 1}));
    EXPECT_NEAR(listener.seconds(), 2, 0.1);
    EXPECT_NEAR(listener.pitch(), 440, 22);
}

TEST(StreamDecoderTest, joinsAStreamInTheMiddleOfAFrame)
{
    const QByteArray stream = recordedTone("lamemp3enc", 440, 4);
    Listener listener;
    StreamDecoder decoder({}, listener.callbacks());
    EXPECT_TRUE(pushAll(decoder, stream.mid(stream.size() / 2 + 77), 4096));
    decoder.finish();
    EXPECT_NEAR(listener.seconds(), 2, 0.2);
}

TEST(StreamDecoderTest, takesTitlesThatAreInTheStream)
{
    Listener listener;
    StreamDecoder decoder({}, listener.callbacks());
    const QByteArray stream
        = recordedTone("taginject tags=\"title=One,artist=Ann\" ! vorbisenc ! oggmux", 440, 1);
    ASSERT_FALSE(stream.isEmpty());
    pushAll(decoder, stream, 4096);
    decoder.finish();
    EXPECT_TRUE(listener.titles.contains(QStringLiteral("Ann - One")))
        << listener.titles.join(QLatin1Char('|')).toStdString();
}

TEST(StreamDecoderTest, whatIsNoAudioIsNotUsable)
{
    const QList<QByteArray> streams {QByteArray(200000, 'x'),
        QByteArray("#EXTM3U\nhttp://a/\n").repeated(1000),
        QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16) + QByteArray(100000, '\x07')};
    for (const QByteArray &stream : streams) {
        Listener listener;
        StreamDecoder decoder({}, listener.callbacks());
        pushAll(decoder, stream, 4096);
        decoder.finish();
        EXPECT_FALSE(decoder.isUsable()) << stream.left(10).toStdString();
        EXPECT_FALSE(listener.format.isKnown());
    }
}

TEST(StreamDecoderTest, anAbortEndsAWaitForRoom)
{
    // Nobody takes the audio, so pushing must wait at some time.
    std::atomic<bool> aborted {false};
    StreamDecoderCallbacks callbacks = Listener().callbacks();
    callbacks.takeAudio = [&aborted](const AudioFormat &, void *audio) {
        gst_buffer_unref(static_cast<GstBuffer *>(audio));
        while (!aborted)
            std::this_thread::yield();
        return false;
    };
    callbacks.takeTitle = [](const QString &) {};
    callbacks.takeBitRate = [](int) {};
    StreamDecoder decoder({}, callbacks);
    const QByteArray stream = recordedTone("flacenc", 440, 30);
    std::thread other([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        aborted = true;
        decoder.abort();
    });
    EXPECT_FALSE(pushAll(decoder, stream.repeated(20), 4096));
    other.join();
    decoder.finish();
}

} // namespace
