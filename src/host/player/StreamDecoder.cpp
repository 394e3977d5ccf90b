#include "host/player/StreamDecoder.h"

#include "api/core/log.h"
#include "api/core/vesk.h"
#include "host/player/StreamText.h"
#include "media/GstHandles.h"

#include <condition_variable>
#include <gst/app/gstappsink.h>
#include <gst/app/gstappsrc.h>
#include <gst/audio/audio.h>

VESK_LOGGER("Player")

namespace {

/// Encoded bytes that wait for the decoder.
constexpr guint64 MaxQueuedBytes = 64 * 1024;
constexpr guint MaxQueuedBuffers = 4;

/// Whether what cannot be decoded is beside the audio, as in the streams of television stations.
bool isAboutPictures(GstMessage *message)
{
    const GstStructure *structure = gst_message_get_structure(message);
    GstCaps *caps = nullptr;
    if (!gst_structure_get(structure, "detail", GST_TYPE_CAPS, &caps, nullptr) || !caps)
        return false;
    const GstPtr<GstCaps> detail(caps);
    const char *name = gst_caps_is_empty(caps) || gst_caps_is_any(caps)
        ? ""
        : gst_structure_get_name(gst_caps_get_structure(caps, 0));
    return g_str_has_prefix(name, "video/") || g_str_has_prefix(name, "image/");
}

} // namespace

/// appsrc ! decodebin ! audioconvert ! audioresample ! appsink
class StreamDecoder::Pipeline {
public:
    Pipeline(StreamDecoder &decoder, const AudioFormat &wanted);
    ~Pipeline();

    bool push(const char *data, std::size_t size);
    void finish();
    void abort();

private:
    GstElement *add(const char *factory);
    void setFormat(GstElement *sink, const AudioFormat &wanted);
    static void onPadAdded(GstElement *, GstPad *pad, gpointer self);
    static GstFlowReturn onSample(GstAppSink *sink, gpointer self);
    static void onEnd(GstAppSink *sink, gpointer self);
    static GstBusSyncReply onMessage(GstBus *, GstMessage *message, gpointer self);
    void link(GstPad *pad);
    GstFlowReturn take(GstSample *sample);
    void takeTags(GstMessage *message);
    void end();

    StreamDecoder &m_decoder;
    GstPtr<GstElement> m_pipeline;
    GstElement *m_source = nullptr;
    GstElement *m_convert = nullptr;

    std::mutex m_mutex;
    std::condition_variable m_changed;
    /// Guarded by m_mutex.
    bool m_ended = false;
    QString m_title;
};

StreamDecoder::Pipeline::Pipeline(StreamDecoder &decoder, const AudioFormat &wanted)
    : m_decoder(decoder)
    , m_pipeline(GST_ELEMENT(gst_object_ref_sink(gst_pipeline_new(nullptr))))
{
    m_source = add("appsrc");
    GstElement *decode = add("decodebin");
    m_convert = add("audioconvert");
    GstElement *resample = add("audioresample");
    GstElement *sink = add("appsink");

    g_object_set(m_source, "stream-type", GST_APP_STREAM_TYPE_STREAM, "format", GST_FORMAT_BYTES,
        "block", TRUE, "max-bytes", MaxQueuedBytes, nullptr);
    g_object_set(sink, "sync", FALSE, "max-buffers", MaxQueuedBuffers, nullptr);
    setFormat(sink, wanted);
    GstAppSinkCallbacks callbacks {};
    callbacks.eos = &Pipeline::onEnd;
    callbacks.new_sample = &Pipeline::onSample;
    gst_app_sink_set_callbacks(GST_APP_SINK(sink), &callbacks, this, nullptr);
    g_signal_connect(decode, "pad-added", G_CALLBACK(&Pipeline::onPadAdded), this);

    VESK_ASSERT(gst_element_link(m_source, decode));
    VESK_ASSERT(gst_element_link_many(m_convert, resample, sink, nullptr));
    const GstPtr<GstBus> bus(gst_element_get_bus(m_pipeline.get()));
    gst_bus_set_sync_handler(bus.get(), &Pipeline::onMessage, this, nullptr);
    gst_element_set_state(m_pipeline.get(), GST_STATE_PLAYING);
}

StreamDecoder::Pipeline::~Pipeline()
{
    gst_element_set_state(m_pipeline.get(), GST_STATE_NULL);
    const GstPtr<GstBus> bus(gst_element_get_bus(m_pipeline.get()));
    gst_bus_set_sync_handler(bus.get(), nullptr, nullptr, nullptr);
}

GstElement *StreamDecoder::Pipeline::add(const char *factory)
{
    GstElement *element = gst_element_factory_make(factory, nullptr);
    // All of them come with GStreamer's base plug-ins, which the program depends on.
    VESK_ASSERT(element);
    gst_bin_add(GST_BIN(m_pipeline.get()), element);
    return element;
}

void StreamDecoder::Pipeline::setFormat(GstElement *sink, const AudioFormat &wanted)
{
    const GstPtr<GstCaps> caps(gst_caps_new_simple("audio/x-raw", "format", G_TYPE_STRING,
        GST_AUDIO_NE(F32), "layout", G_TYPE_STRING, "interleaved", nullptr));
    if (wanted.isKnown()) {
        gst_caps_set_simple(caps.get(), "rate", G_TYPE_INT, wanted.rate, "channels", G_TYPE_INT,
            wanted.channels, nullptr);
    } else {
        gst_caps_set_simple(caps.get(), "channels", GST_TYPE_INT_RANGE, 1, 2, nullptr);
    }
    gst_app_sink_set_caps(GST_APP_SINK(sink), caps.get());
}

void StreamDecoder::Pipeline::onPadAdded(GstElement *, GstPad *pad, gpointer self)
{
    static_cast<Pipeline *>(self)->link(pad);
}

/// The first audio of the stream is played; what else is in it, pictures say, goes nowhere.
void StreamDecoder::Pipeline::link(GstPad *pad)
{
    GstPtr<GstCaps> caps(gst_pad_get_current_caps(pad));
    if (!caps)
        caps.reset(gst_pad_query_caps(pad, nullptr));
    const char *name = gst_caps_is_empty(caps.get()) || gst_caps_is_any(caps.get())
        ? ""
        : gst_structure_get_name(gst_caps_get_structure(caps.get(), 0));
    const GstPtr<GstPad> input(gst_element_get_static_pad(m_convert, "sink"));
    if (g_str_has_prefix(name, "audio/x-raw") && !gst_pad_is_linked(input.get())) {
        if (gst_pad_link(pad, input.get()) == GST_PAD_LINK_OK)
            return;
    }
    GstElement *nowhere = gst_element_factory_make("fakesink", nullptr);
    VESK_ASSERT(nowhere);
    g_object_set(nowhere, "async", FALSE, nullptr);
    gst_bin_add(GST_BIN(m_pipeline.get()), nowhere);
    gst_element_sync_state_with_parent(nowhere);
    const GstPtr<GstPad> end(gst_element_get_static_pad(nowhere, "sink"));
    gst_pad_link(pad, end.get());
}

GstFlowReturn StreamDecoder::Pipeline::onSample(GstAppSink *sink, gpointer self)
{
    const GstPtr<GstSample> sample(gst_app_sink_pull_sample(sink));
    return sample ? static_cast<Pipeline *>(self)->take(sample.get()) : GST_FLOW_EOS;
}

GstFlowReturn StreamDecoder::Pipeline::take(GstSample *sample)
{
    GstAudioInfo info;
    GstBuffer *buffer = gst_sample_get_buffer(sample);
    if (!buffer || !gst_audio_info_from_caps(&info, gst_sample_get_caps(sample)))
        return GST_FLOW_ERROR;
    const auto frames = static_cast<long long>(
        gst_buffer_get_size(buffer) / static_cast<std::size_t>(GST_AUDIO_INFO_BPF(&info)));
    const AudioFormat format {GST_AUDIO_INFO_RATE(&info), GST_AUDIO_INFO_CHANNELS(&info)};
    if (!m_decoder.m_callbacks.takeAudio(format, gst_buffer_ref(buffer)))
        return GST_FLOW_EOS;
    m_decoder.m_decodedMs += frames * 1000 / format.rate;
    return GST_FLOW_OK;
}

void StreamDecoder::Pipeline::onEnd(GstAppSink *, gpointer self)
{
    static_cast<Pipeline *>(self)->end();
}

void StreamDecoder::Pipeline::end()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_ended = true;
    }
    m_changed.notify_all();
}

GstBusSyncReply StreamDecoder::Pipeline::onMessage(GstBus *, GstMessage *message, gpointer self)
{
    auto *pipeline = static_cast<Pipeline *>(self);
    switch (GST_MESSAGE_TYPE(message)) {
    case GST_MESSAGE_ERROR:
        VESK_INFO(
            "the stream cannot be decoded: " << QString::fromStdString(gstMessageText(message)));
        pipeline->m_decoder.m_failed = true;
        pipeline->end();
        break;
    case GST_MESSAGE_ELEMENT:
        // Text and formats that nobody decodes: there is no error, only silence.
        if (gst_message_has_name(message, "missing-plugin") && !isAboutPictures(message)) {
            VESK_INFO("the stream's format is none that can be decoded here");
            pipeline->m_decoder.m_failed = true;
            pipeline->end();
        }
        break;
    case GST_MESSAGE_TAG:
        pipeline->takeTags(message);
        break;
    default:
        break;
    }
    gst_message_unref(message);
    return GST_BUS_DROP;
}

void StreamDecoder::Pipeline::takeTags(GstMessage *message)
{
    GstTagList *tags = nullptr;
    gst_message_parse_tag(message, &tags);
    guint bitRate = 0;
    if (gst_tag_list_get_uint(tags, GST_TAG_NOMINAL_BITRATE, &bitRate)
        || gst_tag_list_get_uint(tags, GST_TAG_BITRATE, &bitRate)) {
        if (bitRate > 0 && bitRate < G_MAXINT)
            m_decoder.m_callbacks.takeBitRate(static_cast<int>(bitRate));
    }
    const auto text = [tags](const char *tag) {
        gchar *value = nullptr;
        gst_tag_list_get_string(tags, tag, &value);
        const QString read = value ? streamText(QByteArray(value)) : QString();
        g_free(value);
        return read;
    };
    const QString name = text(GST_TAG_TITLE);
    const QString artist = text(GST_TAG_ARTIST);
    gst_tag_list_unref(tags);
    if (name.isEmpty())
        return;
    const QString title = artist.isEmpty() ? name : QStringLiteral("%1 - %2").arg(artist, name);
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (title == m_title)
            return;
        m_title = title;
    }
    m_decoder.m_callbacks.takeTitle(title);
}

bool StreamDecoder::Pipeline::push(const char *data, std::size_t size)
{
    GstBuffer *buffer = gst_buffer_new_memdup(data, size);
    return gst_app_src_push_buffer(GST_APP_SRC(m_source), buffer) == GST_FLOW_OK;
}

void StreamDecoder::Pipeline::finish()
{
    gst_app_src_end_of_stream(GST_APP_SRC(m_source));
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait(lock, [this] { return m_ended || m_decoder.m_aborted; });
}

void StreamDecoder::Pipeline::abort()
{
    // Whoever waits in push() is let go; the streaming threads come to rest in the destructor.
    gst_element_set_state(m_source, GST_STATE_READY);
    end();
}

StreamDecoder::StreamDecoder(const AudioFormat &wanted, StreamDecoderCallbacks callbacks)
    : m_callbacks(std::move(callbacks))
{
    startGStreamer();
    m_pipeline = std::make_unique<Pipeline>(*this, wanted);
}

StreamDecoder::~StreamDecoder() = default;

bool StreamDecoder::push(const char *data, std::size_t size)
{
    return !m_failed && !m_aborted && m_pipeline->push(data, size) && !m_failed;
}

void StreamDecoder::finish()
{
    m_pipeline->finish();
}

void StreamDecoder::abort()
{
    m_aborted = true;
    m_pipeline->abort();
}

std::chrono::milliseconds StreamDecoder::decoded() const
{
    return std::chrono::milliseconds(m_decodedMs.load());
}
