// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Encoder.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <gst/app/gstappsink.h>
#include <gst/app/gstappsrc.h>
#include <gst/gst.h>
#include <mutex>
#include <stdexcept>
#include <utility>

namespace directory {

namespace {

constexpr std::uint64_t SamplesPerFrame = 1024; // of AAC
/// For the next piece: an encoder gives dozens a second.
constexpr GstClockTime LongestWait = 10 * GST_SECOND;

constexpr std::array<int, 17> Mp3Rates {
    8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320};

struct Codec {
    const char *name;
    unsigned rate;
    int lowest; ///< kbit/s
    int highest;
    const char *before; ///< the pipeline's part up to the bit rate
    int factor; ///< what the bit rate is multiplied with
    const char *after;
};

constexpr Codec Codecs[] = {
    {"mp3", 44100, 8, 320,
        "lamemp3enc target=bitrate cbr=true encoding-engine-quality=fast bitrate=", 1, ""},
    {"aac", 44100, 16, 256, "voaacenc bitrate=", 1000,
        " ! audio/mpeg,mpegversion=4,stream-format=adts"},
    {"ogg", 44100, 48, 240, "vorbisenc bitrate=", 1000, " ! oggmux"},
    {"opus", 48000, 8, 256, "opusenc complexity=4 bitrate=", 1000, " ! oggmux"},
    {"flac", 44100, 0, 0, "flacenc blocksize=4096 streamable-subset=true padding=", 0, ""},
};

const Codec *codecNamed(const std::string &name)
{
    const auto *found = std::find_if(std::begin(Codecs), std::end(Codecs),
        [&name](const Codec &codec) { return name == codec.name; });
    return found == std::end(Codecs) ? nullptr : found;
}

int nearestMp3Rate(int bitrate)
{
    return *std::min_element(Mp3Rates.begin(), Mp3Rates.end(),
        [bitrate](int a, int b) { return std::abs(a - bitrate) < std::abs(b - bitrate); });
}

std::string descriptionOf(const AudioFormat &format)
{
    const Codec *codec = codecNamed(format.codec);
    if (!codec)
        throw std::runtime_error("nothing here makes " + format.codec);
    int bitrate = std::clamp(format.bitrate, codec->lowest, codec->highest);
    if (format.codec == "mp3")
        bitrate = nearestMp3Rate(bitrate);
    return "appsrc name=in format=time caps=audio/x-raw,format=S16LE,layout=interleaved,rate="
        + std::to_string(format.rate) + ",channels=" + std::to_string(format.channels)
        + " ! audioconvert ! " + codec->before + std::to_string(bitrate * codec->factor)
        + codec->after + " ! appsink name=out sync=false";
}

GstBuffer *timed(GstBuffer *buffer, std::uint64_t firstSample, std::uint64_t samples, unsigned rate)
{
    const GstClockTime begin = gst_util_uint64_scale(firstSample, GST_SECOND, rate);
    GST_BUFFER_PTS(buffer) = begin;
    GST_BUFFER_DURATION(buffer)
        = gst_util_uint64_scale(firstSample + samples, GST_SECOND, rate) - begin;
    return buffer;
}

GstBuffer *bufferOf(
    const std::vector<std::int16_t> &samples, std::uint64_t firstFrame, const AudioFormat &format)
{
    return timed(gst_buffer_new_memdup(samples.data(), samples.size() * sizeof samples.front()),
        firstFrame, samples.size() / format.channels, format.rate);
}

/// Drops the reference to the sample.
std::string bytesOf(GstSample *sample)
{
    std::string bytes;
    GstMapInfo map;
    GstBuffer *buffer = gst_sample_get_buffer(sample);
    if (buffer && gst_buffer_map(buffer, &map, GST_MAP_READ)) {
        bytes.assign(reinterpret_cast<const char *>(map.data), map.size);
        gst_buffer_unmap(buffer, &map);
    }
    gst_sample_unref(sample);
    return bytes;
}

} // namespace

/// A pipeline from an appsrc "in" to an appsink "out". Its destructor waits for its threads.
class AudioPipeline {
public:
    explicit AudioPipeline(const std::string &description);
    ~AudioPipeline();
    AudioPipeline(const AudioPipeline &) = delete;
    AudioPipeline &operator=(const AudioPipeline &) = delete;

    /// Takes over the buffers, and waits until all of them have come through.
    std::vector<std::string> run(const std::vector<GstBuffer *> &buffers);

    GstElement *element;
    GstAppSrc *in = nullptr;
    GstAppSink *out = nullptr;
};

AudioPipeline::AudioPipeline(const std::string &description)
{
    static std::once_flag once;
    std::call_once(once, [] { gst_init(nullptr, nullptr); });
    GError *error = nullptr;
    element = gst_parse_launch(description.c_str(), &error);
    if (!element || error) {
        const std::string reason = error ? error->message : "no pipeline";
        g_clear_error(&error);
        gst_clear_object(&element);
        throw std::runtime_error("no audio can be made: " + reason);
    }
    in = GST_APP_SRC(gst_bin_get_by_name(GST_BIN(element), "in"));
    out = GST_APP_SINK(gst_bin_get_by_name(GST_BIN(element), "out"));
}

AudioPipeline::~AudioPipeline()
{
    gst_element_set_state(element, GST_STATE_NULL);
    gst_object_unref(in);
    gst_object_unref(out);
    gst_object_unref(element);
}

std::vector<std::string> AudioPipeline::run(const std::vector<GstBuffer *> &buffers)
{
    gst_element_set_state(element, GST_STATE_PLAYING);
    for (GstBuffer *buffer : buffers)
        gst_app_src_push_buffer(in, buffer);
    gst_app_src_end_of_stream(in);
    std::vector<std::string> pieces;
    while (GstSample *sample = gst_app_sink_try_pull_sample(out, LongestWait))
        pieces.push_back(bytesOf(sample));
    GstBus *bus = gst_element_get_bus(element);
    GstMessage *error = gst_bus_pop_filtered(bus, GST_MESSAGE_ERROR);
    gst_object_unref(bus);
    const bool complete = !error && gst_app_sink_is_eos(out);
    g_clear_pointer(&error, gst_message_unref);
    if (!complete)
        throw std::runtime_error("encoding failed");
    return pieces;
}

/// Shared by the pipeline's thread and the owner's. A pending wake-up keeps it alive beyond the
/// encoder.
struct Encoder::Shared : std::enable_shared_from_this<Encoder::Shared> {
    ~Shared() { g_main_context_unref(context); }

    void wake();
    static GstFlowReturn onSample(GstAppSink *, gpointer self);
    static GstBusSyncReply onMessage(GstBus *, GstMessage *message, gpointer self);

    GMainContext *const context = g_main_context_ref_thread_default();
    std::function<void()> ready; ///< the owner's thread only
    std::atomic<bool> woken {false}; ///< until take()
    std::atomic<bool> failed {false};
};

/// From the pipeline's thread: calls `ready` on the owner's, once until take().
void Encoder::Shared::wake()
{
    if (woken.exchange(true))
        return;
    GSource *source = g_idle_source_new();
    g_source_set_priority(source, G_PRIORITY_DEFAULT);
    g_source_set_callback(
        source,
        [](gpointer data) -> gboolean {
            const std::shared_ptr<Shared> self = *static_cast<std::shared_ptr<Shared> *>(data);
            const std::function<void()> call = self->ready;
            if (call)
                call();
            return G_SOURCE_REMOVE;
        },
        new std::shared_ptr<Shared>(shared_from_this()),
        [](gpointer data) { delete static_cast<std::shared_ptr<Shared> *>(data); });
    g_source_attach(source, context);
    g_source_unref(source);
}

GstFlowReturn Encoder::Shared::onSample(GstAppSink *, gpointer self)
{
    static_cast<Shared *>(self)->wake(); // the sample stays in the sink's queue until take()
    return GST_FLOW_OK;
}

GstBusSyncReply Encoder::Shared::onMessage(GstBus *, GstMessage *message, gpointer self)
{
    if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR) {
        static_cast<Shared *>(self)->failed = true;
        static_cast<Shared *>(self)->wake();
    }
    gst_message_unref(message);
    return GST_BUS_DROP;
}

AudioFormat formatFor(const std::string &codec, int bitrate)
{
    AudioFormat format;
    format.codec = codec;
    format.bitrate = bitrate;
    if (const Codec *known = codecNamed(codec))
        format.rate = known->rate;
    format.channels = bitrate < 64 ? 1 : 2;
    return format;
}

bool canEncode(const std::string &codec)
{
    return codecNamed(codec) != nullptr;
}

Encoder::Encoder(AudioFormat format, std::function<void()> ready)
    : m_format(std::move(format))
    , m_shared(std::make_shared<Shared>())
    , m_pipeline(std::make_unique<AudioPipeline>(descriptionOf(m_format)))
{
    m_shared->ready = std::move(ready);
    GstAppSinkCallbacks callbacks {};
    callbacks.new_sample = Shared::onSample;
    gst_app_sink_set_callbacks(m_pipeline->out, &callbacks, m_shared.get(), nullptr);
    GstBus *bus = gst_element_get_bus(m_pipeline->element);
    gst_bus_set_sync_handler(bus, Shared::onMessage, m_shared.get(), nullptr);
    gst_object_unref(bus);
    gst_element_set_state(m_pipeline->element, GST_STATE_PLAYING);
}

Encoder::~Encoder()
{
    m_shared->ready = nullptr;
}

void Encoder::feed(const std::vector<std::int16_t> &samples)
{
    gst_app_src_push_buffer(m_pipeline->in, bufferOf(samples, m_fed, m_format));
    m_fed += samples.size() / m_format.channels;
}

std::vector<std::string> Encoder::take()
{
    m_shared->woken = false; // first: what arrives from here on wakes again
    std::vector<std::string> pieces;
    while (GstSample *sample = gst_app_sink_try_pull_sample(m_pipeline->out, 0))
        pieces.push_back(bytesOf(sample));
    return pieces;
}

bool Encoder::failed() const
{
    return m_shared->failed;
}

std::vector<std::string> encoded(
    const AudioFormat &format, const std::vector<std::int16_t> &samples)
{
    return AudioPipeline(descriptionOf(format)).run({bufferOf(samples, 0, format)});
}

std::string transportStream(
    const std::vector<std::string> &frames, std::uint64_t first, const AudioFormat &format)
{
    // The tables stand once at the beginning: clients read a segment as a whole.
    AudioPipeline pipeline("appsrc name=in format=time "
                           "caps=audio/mpeg,mpegversion=4,stream-format=adts,framed=true,rate="
        + std::to_string(format.rate) + ",channels=" + std::to_string(format.channels)
        + " ! mpegtsmux pat-interval=270000 pmt-interval=270000 ! appsink name=out sync=false");
    std::vector<GstBuffer *> buffers;
    buffers.reserve(frames.size());
    for (const std::string &frame : frames) {
        buffers.push_back(timed(gst_buffer_new_memdup(frame.data(), frame.size()),
            first * SamplesPerFrame, SamplesPerFrame, format.rate));
        ++first;
    }
    std::string out;
    for (const std::string &piece : pipeline.run(buffers))
        out += piece;
    return out;
}

} // namespace directory
