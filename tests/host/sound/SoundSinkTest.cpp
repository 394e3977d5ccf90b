// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/sound/SoundSink.h"

#include "base/files/Descriptor.h"
#include "host/sound/SinkHealth.h"
#include "media/GstHandles.h"
#include "tests/support/Text.h"

#include <QTemporaryDir>

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;

/// Plays a tone of another format than that of the sink into it.
class Pipeline {
public:
    explicit Pipeline(const AudioOutputSpec &spec)
    {
        startGStreamer();
        m_pipeline.reset(
            gst_parse_launch("audiotestsrc is-live=false samplesperbuffer=4410 freq=1000"
                             " ! audio/x-raw,format=F32LE,rate=44100,channels=1"
                             " ! audioconvert ! audioresample name=last",
                nullptr));
        auto sink = makeSoundSink(spec);
        EXPECT_TRUE(sink);
        m_sink = *sink;
        const GstPtr<GstElement> last(gst_bin_get_by_name(GST_BIN(m_pipeline.get()), "last"));
        gst_bin_add(GST_BIN(m_pipeline.get()), m_sink.element);
        EXPECT_TRUE(gst_element_link(last.get(), m_sink.element));
    }
    ~Pipeline() { gst_element_set_state(m_pipeline.get(), GST_STATE_NULL); }

    void play() { gst_element_set_state(m_pipeline.get(), GST_STATE_PLAYING); }
    const SoundSink &sink() const { return m_sink; }
    /// What was told within this time after the first, for which it waits.
    QStringList told(std::chrono::milliseconds time)
    {
        QStringList texts;
        const GstPtr<GstBus> bus(gst_element_get_bus(m_pipeline.get()));
        auto end = Clock::now() + 10s;
        while (Clock::now() < end) {
            GstMessage *message = gst_bus_timed_pop(bus.get(), 10 * GST_MSECOND);
            if (!message)
                continue;
            const auto health = sinkHealth(message);
            if (health && texts.isEmpty())
                end = Clock::now() + time;
            if (health)
                texts.append(health->isEmpty() ? text("well") : health->toSourceString());
            gst_message_unref(message);
        }
        return texts;
    }

private:
    GstPtr<GstElement> m_pipeline;
    SoundSink m_sink;
};

AudioOutputSpec spec(const QString &text)
{
    const auto parsed = AudioOutputSpec::parse(text);
    EXPECT_TRUE(parsed);
    return *parsed;
}

} // namespace

TEST(SoundSinkTest, AFifoGetsItsFormatInRealTimeAndIsToldOnceWhatIsWrong)
{
    std::signal(SIGPIPE, SIG_IGN);
    const QTemporaryDir folder;
    const QString file = folder.filePath(text("fifo"));
    ASSERT_EQ(::mkfifo(file.toUtf8().constData(), 0600), 0);
    Pipeline pipeline(spec(text("pipe:") + file));
    EXPECT_EQ(pipeline.sink().fixed, (AudioFormat {48000, 2}));
    EXPECT_FALSE(pipeline.sink().isFile);
    pipeline.play();
    const QString nobody = text("Nobody reads the sound from %1.").arg(file);
    EXPECT_EQ(pipeline.told(1000ms), QStringList {nobody});

    files::Descriptor reader(::open(file.toUtf8().constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    // Holds five seconds: this thread may stand still.
    ASSERT_GT(::fcntl(reader.number(), F_SETPIPE_SZ, 1 << 20), 0);
    std::string bytes;
    const auto begin = Clock::now();
    std::chrono::duration<double> time {};
    while ((time = Clock::now() - begin).count() < 2) {
        char buffer[65536];
        const ssize_t count = ::read(reader.number(), buffer, sizeof buffer);
        if (count > 0)
            bytes.append(buffer, static_cast<std::size_t>(count));
        else
            std::this_thread::sleep_for(5ms);
    }
    EXPECT_EQ(pipeline.told(100ms), QStringList {text("well")});
    EXPECT_NEAR(static_cast<double>(bytes.size()) / 4 / 48000, time.count(), 0.3);
    // 1 kHz at 48 kHz in both channels: each sample is there again after 48 frames.
    const auto *samples = reinterpret_cast<const std::int16_t *>(bytes.data());
    int loudest = 0;
    for (std::size_t i = 0; i < 4800; ++i) {
        EXPECT_NEAR(samples[2 * i], samples[2 * i + 1], 5) << "but for the dither";
        EXPECT_NEAR(samples[2 * i], samples[2 * (i + 48)], 50);
        loudest = std::max(loudest, std::abs(static_cast<int>(samples[2 * i])));
    }
    EXPECT_NEAR(loudest, 0.8 * 32768, 500);
    reader = {};
    EXPECT_EQ(pipeline.told(500ms), QStringList {nobody});
}

TEST(SoundSinkTest, AServerThatIsNotThereIsTold)
{
    // A port of the system's, at which nothing listens.
    Pipeline pipeline(spec(text("tcp:127.0.0.1:1")));
    pipeline.play();
    EXPECT_EQ(pipeline.told(1000ms),
        QStringList {text("The sound server 127.0.0.1:1 cannot be reached.")});
}

TEST(SoundSinkTest, AFileThatIsNoFifoIsTold)
{
    Pipeline pipeline(spec(text("pipe:/dev/null")));
    pipeline.play();
    EXPECT_EQ(pipeline.told(500ms),
        QStringList {text("Sound cannot be written to /dev/null: not a FIFO")});
}

TEST(SoundSinkTest, OutputsOfTheMachineHaveTheirDevice)
{
    startGStreamer();
    const struct {
        const char *spec;
        const char *property;
        const char *value;
    } rows[] = {
        {"alsa:hw:0", "device", "hw:0"},
        {"pulse:kitchen", "device", "kitchen"},
        {"pipewire:bath", "target-object", "bath"},
    };
    for (const auto &row : rows) {
        auto sink = makeSoundSink(spec(text(row.spec)));
        ASSERT_TRUE(sink) << row.spec;
        const GstPtr<GstElement> element(GST_ELEMENT(gst_object_ref_sink(sink->element)));
        gchar *value = nullptr;
        g_object_get(element.get(), row.property, &value, nullptr);
        EXPECT_STREQ(value, row.value);
        g_free(value);
        EXPECT_EQ(sink->deviceVolume != nullptr, QByteArray(row.spec).startsWith("pulse"));
    }
}
