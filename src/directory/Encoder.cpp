// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Encoder.h"

#include <algorithm>
#include <array>
#include <condition_variable>
#include <cstdlib>
#include <gst/app/gstappsink.h>
#include <gst/app/gstappsrc.h>
#include <gst/gst.h>
#include <mutex>
#include <stdexcept>
#include <utility>

namespace directory {

namespace {

constexpr std::array<int, 17> mp3Rates {
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

constexpr Codec codecs[] = {
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
    const auto *found = std::find_if(std::begin(codecs), std::end(codecs),
        [&name](const Codec &codec) { return name == codec.name; });
    return found == std::end(codecs) ? nullptr : found;
}

int nearestMp3Rate(int bitrate)
{
    return *std::min_element(mp3Rates.begin(), mp3Rates.end(),
        [bitrate](int a, int b) { return std::abs(a - bitrate) < std::abs(b - bitrate); });
}

std::string pipelineFor(const AudioFormat &format)
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

void initialise()
{
    static std::once_flag once;
    std::call_once(once, [] { gst_init(nullptr, nullptr); });
}

} // namespace

/// What the pipeline's thread fills. It outlives the encoder by as long as a call back is under
/// way.
struct Encoder::Shared : std::enable_shared_from_this<Encoder::Shared> {
    ~Shared() { g_main_context_unref(context); }

    void add(GstSample *sample);
    void end(bool broken);
    void wake();
    static GstFlowReturn onSample(GstAppSink *sink, gpointer self);
    static void onEnd(GstAppSink *, gpointer self) { static_cast<Shared *>(self)->end(false); }
    static GstBusSyncReply onMessage(GstBus *, GstMessage *message, gpointer self);

    GMainContext *const context = g_main_context_ref_thread_default();
    // The owner's thread
    std::function<void()> ready;
    GstElement *pipeline = nullptr;
    GstElement *in = nullptr;

    std::mutex mutex; // what follows
    std::condition_variable ended;
    std::vector<std::string> pieces;
    bool atEnd = false;
    bool failed = false;
    bool woken = false;
};

void Encoder::Shared::add(GstSample *sample)
{
    GstMapInfo map;
    GstBuffer *buffer = gst_sample_get_buffer(sample);
    if (!buffer || !gst_buffer_map(buffer, &map, GST_MAP_READ))
        return;
    const std::lock_guard<std::mutex> lock(mutex);
    pieces.emplace_back(reinterpret_cast<const char *>(map.data), map.size);
    gst_buffer_unmap(buffer, &map);
    wake();
}

void Encoder::Shared::end(bool broken)
{
    const std::lock_guard<std::mutex> lock(mutex);
    atEnd = true;
    failed = failed || broken;
    ended.notify_all();
    wake();
}

/// With the mutex held.
void Encoder::Shared::wake()
{
    if (woken)
        return;
    woken = true;
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

GstFlowReturn Encoder::Shared::onSample(GstAppSink *sink, gpointer self)
{
    if (GstSample *sample = gst_app_sink_pull_sample(sink)) {
        static_cast<Shared *>(self)->add(sample);
        gst_sample_unref(sample);
    }
    return GST_FLOW_OK;
}

GstBusSyncReply Encoder::Shared::onMessage(GstBus *, GstMessage *message, gpointer self)
{
    if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR)
        static_cast<Shared *>(self)->end(true);
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
{
    initialise();
    GError *error = nullptr;
    m_shared->ready = std::move(ready);
    m_shared->pipeline = gst_parse_launch(pipelineFor(m_format).c_str(), &error);
    if (!m_shared->pipeline || error) {
        const std::string reason = error ? error->message : "no pipeline";
        g_clear_error(&error);
        gst_clear_object(&m_shared->pipeline);
        throw std::runtime_error("no " + m_format.codec + " can be made: " + reason);
    }
    m_shared->in = gst_bin_get_by_name(GST_BIN(m_shared->pipeline), "in");
    GstElement *out = gst_bin_get_by_name(GST_BIN(m_shared->pipeline), "out");
    GstAppSinkCallbacks callbacks {};
    callbacks.new_sample = Shared::onSample;
    callbacks.eos = Shared::onEnd;
    gst_app_sink_set_callbacks(GST_APP_SINK(out), &callbacks, m_shared.get(), nullptr);
    gst_object_unref(out);
    GstBus *bus = gst_element_get_bus(m_shared->pipeline);
    gst_bus_set_sync_handler(bus, Shared::onMessage, m_shared.get(), nullptr);
    gst_object_unref(bus);
    gst_element_set_state(m_shared->pipeline, GST_STATE_PLAYING);
}

Encoder::~Encoder()
{
    m_shared->ready = nullptr;
    gst_element_set_state(m_shared->pipeline, GST_STATE_NULL); // its thread has ended then
    gst_object_unref(m_shared->in);
    gst_object_unref(m_shared->pipeline);
}

void Encoder::feed(const std::vector<std::int16_t> &samples)
{
    const std::size_t size = samples.size() * sizeof samples.front();
    const std::uint64_t frames = samples.size() / m_format.channels;
    GstBuffer *buffer = gst_buffer_new_memdup(samples.data(), size);
    GST_BUFFER_PTS(buffer) = gst_util_uint64_scale(m_fed, GST_SECOND, m_format.rate);
    m_fed += frames;
    GST_BUFFER_DURATION(buffer)
        = gst_util_uint64_scale(m_fed, GST_SECOND, m_format.rate) - GST_BUFFER_PTS(buffer);
    gst_app_src_push_buffer(GST_APP_SRC(m_shared->in), buffer);
}

std::vector<std::string> Encoder::take()
{
    const std::lock_guard<std::mutex> lock(m_shared->mutex);
    m_shared->woken = false;
    return std::exchange(m_shared->pieces, {});
}

bool Encoder::failed() const
{
    const std::lock_guard<std::mutex> lock(m_shared->mutex);
    return m_shared->failed;
}

std::vector<std::string> Encoder::finish()
{
    gst_app_src_end_of_stream(GST_APP_SRC(m_shared->in));
    std::unique_lock<std::mutex> lock(m_shared->mutex);
    m_shared->ended.wait(lock, [this] { return m_shared->atEnd; });
    return std::exchange(m_shared->pieces, {});
}

std::vector<std::string> encoded(
    const AudioFormat &format, const std::vector<std::int16_t> &samples)
{
    Encoder encoder(format, nullptr);
    encoder.feed(samples);
    std::vector<std::string> pieces = encoder.finish();
    if (encoder.failed())
        throw std::runtime_error("encoding " + format.codec + " failed");
    return pieces;
}

} // namespace directory
