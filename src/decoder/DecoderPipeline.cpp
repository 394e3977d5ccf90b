// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "decoder/DecoderPipeline.h"

#include <algorithm>
#include <cstdlib>
#include <gst/app/gstappsink.h>
#include <gst/app/gstappsrc.h>
#include <gst/audio/audio.h>

namespace {

/// Encoded bytes to queue.
constexpr guint64 MaxQueuedBytes = 32 * 1024;
/// Decoded buffers to queue before takeSamples().
constexpr guint MaxQueuedBuffers = 4;

GstElement *required(const char *factory)
{
    GstElement *element = gst_element_factory_make(factory, nullptr);
    // Part of GStreamer's base plug-ins, on which the program depends.
    if (!element)
        std::abort();
    return element;
}

const char *nameOf(GstCaps *caps)
{
    return gst_caps_is_empty(caps) || gst_caps_is_any(caps)
        ? ""
        : gst_structure_get_name(gst_caps_get_structure(caps, 0));
}

bool isWithinLimits(GstCaps *caps)
{
    const GstStructure *structure = gst_caps_get_structure(caps, 0);
    int rate = 0;
    int channels = 0;
    return gst_structure_get_int(structure, "rate", &rate)
        && gst_structure_get_int(structure, "channels", &channels)
        && rate >= int(DecoderLimits::MinRate) && rate <= int(DecoderLimits::MaxRate)
        && channels >= 1 && channels <= int(DecoderLimits::MaxChannels);
}

} // namespace

/// appsrc ! decodebin ! audioconvert ! audioresample ! appsink
DecoderPipeline::DecoderPipeline(const DecoderFormat &wanted, Callbacks callbacks)
    : m_callbacks(std::move(callbacks))
    , m_pipeline(GST_ELEMENT(gst_object_ref_sink(gst_pipeline_new(nullptr))))
{
    m_source = add("appsrc");
    GstElement *decode = add("decodebin");
    m_convert = add("audioconvert");
    GstElement *resample = add("audioresample");
    m_sink = add("appsink");

    // Not "block": once the pipeline has failed, nothing would end a wait inside of appsrc.
    g_object_set(m_source, "stream-type", GST_APP_STREAM_TYPE_STREAM, "format", GST_FORMAT_BYTES,
        "max-bytes", MaxQueuedBytes, nullptr);
    GstAppSrcCallbacks source {};
    source.need_data = &DecoderPipeline::onHungry;
    gst_app_src_set_callbacks(GST_APP_SRC(m_source), &source, this, nullptr);
    g_object_set(m_sink, "sync", FALSE, "max-buffers", MaxQueuedBuffers, nullptr);
    setWanted(wanted);
    GstAppSinkCallbacks sink {};
    sink.eos = &DecoderPipeline::onEnd;
    sink.new_sample = &DecoderPipeline::onSample;
    gst_app_sink_set_callbacks(GST_APP_SINK(m_sink), &sink, this, nullptr);
    g_signal_connect(decode, "pad-added", G_CALLBACK(&DecoderPipeline::onPadAdded), this);
    g_signal_connect(decode, "no-more-pads", G_CALLBACK(&DecoderPipeline::onNoMorePads), this);
    const GstPtr<GstPad> input(gst_element_get_static_pad(m_convert, "sink"));
    gst_pad_add_probe(
        input.get(), GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM, &DecoderPipeline::onInput, this, nullptr);

    gst_element_link(m_source, decode);
    gst_element_link_many(m_convert, resample, m_sink, nullptr);
    const GstPtr<GstBus> bus(gst_element_get_bus(m_pipeline.get()));
    // Messages are handled on the thread that posts them; there is no GLib main loop.
    gst_bus_set_sync_handler(bus.get(), &DecoderPipeline::onMessage, this, nullptr);
    gst_element_set_state(m_pipeline.get(), GST_STATE_PLAYING);
}

DecoderPipeline::~DecoderPipeline()
{
    gst_element_set_state(m_pipeline.get(), GST_STATE_NULL);
    const GstPtr<GstBus> bus(gst_element_get_bus(m_pipeline.get()));
    gst_bus_set_sync_handler(bus.get(), nullptr, nullptr, nullptr);
}

GstElement *DecoderPipeline::add(const char *factory)
{
    GstElement *element = required(factory);
    gst_bin_add(GST_BIN(m_pipeline.get()), element);
    return element;
}

/// Sets the format of the appsink. Without a wanted one, the first samples decide. From then on it
/// is fixed, and the converters before the sink adapt format changes in the stream without a gap.
void DecoderPipeline::setWanted(const DecoderFormat &format)
{
    const GstPtr<GstCaps> caps(gst_caps_new_simple("audio/x-raw", "format", G_TYPE_STRING,
        GST_AUDIO_NE(F32), "layout", G_TYPE_STRING, "interleaved", nullptr));
    if (format.rate > 0) {
        gst_caps_set_simple(caps.get(), "rate", G_TYPE_INT, int(format.rate), "channels",
            G_TYPE_INT, int(format.channels), nullptr);
    } else {
        gst_caps_set_simple(caps.get(), "rate", GST_TYPE_INT_RANGE, int(DecoderLimits::MinRate),
            int(DecoderLimits::MaxRate), "channels", GST_TYPE_INT_RANGE, 1, 2, nullptr);
    }
    gst_app_sink_set_caps(GST_APP_SINK(m_sink), caps.get());
}

void DecoderPipeline::onPadAdded(GstElement *, GstPad *pad, gpointer self)
{
    static_cast<DecoderPipeline *>(self)->link(pad);
}

void DecoderPipeline::onNoMorePads(GstElement *, gpointer self)
{
    auto *decoder = static_cast<DecoderPipeline *>(self);
    const GstPtr<GstPad> input(gst_element_get_static_pad(decoder->m_convert, "sink"));
    if (!gst_pad_is_linked(input.get()))
        decoder->end(State::Failed, "there is no audio in the stream");
    const VeskMutexLock lock(decoder->m_mutex);
    decoder->m_groupComplete = true;
}

/// Links the first audio pad of the stream, and of each stream chained to it (as in Ogg). All other
/// pads end in a fakesink.
void DecoderPipeline::link(GstPad *pad)
{
    GstPtr<GstCaps> caps(gst_pad_get_current_caps(pad));
    if (!caps)
        caps.reset(gst_pad_query_caps(pad, nullptr));
    const GstPtr<GstPad> input(gst_element_get_static_pad(m_convert, "sink"));
    if (g_str_has_prefix(nameOf(caps.get()), "audio/x-raw")) {
        {
            const VeskMutexLock lock(m_mutex);
            const GstPtr<GstPad> before(m_groupComplete ? gst_pad_get_peer(input.get()) : nullptr);
            if (before)
                gst_pad_unlink(before.get(), input.get());
            m_groupComplete = false;
        }
        if (!gst_pad_is_linked(input.get()) && gst_pad_link(pad, input.get()) == GST_PAD_LINK_OK)
            return;
    }
    GstElement *nowhere = required("fakesink");
    g_object_set(nowhere, "async", FALSE, nullptr);
    gst_bin_add(GST_BIN(m_pipeline.get()), nowhere);
    gst_element_sync_state_with_parent(nowhere);
    const GstPtr<GstPad> end(gst_element_get_static_pad(nowhere, "sink"));
    gst_pad_link(pad, end.get());
}

/// Rejects formats beyond DecoderLimits: a header may claim any rate and number of channels, and
/// converters allocate accordingly.
GstPadProbeReturn DecoderPipeline::onInput(GstPad *, GstPadProbeInfo *info, gpointer self)
{
    GstEvent *event = gst_pad_probe_info_get_event(info);
    if (GST_EVENT_TYPE(event) != GST_EVENT_CAPS)
        return GST_PAD_PROBE_OK;
    GstCaps *caps = nullptr;
    gst_event_parse_caps(event, &caps);
    if (isWithinLimits(caps))
        return GST_PAD_PROBE_OK;
    static_cast<DecoderPipeline *>(self)->end(
        State::Failed, "the stream's rate or number of channels is out of bounds");
    return GST_PAD_PROBE_DROP;
}

GstFlowReturn DecoderPipeline::onSample(GstAppSink *sink, gpointer self)
{
    const GstPtr<GstSample> sample(gst_app_sink_pull_sample(sink));
    return sample ? static_cast<DecoderPipeline *>(self)->take(sample.get()) : GST_FLOW_EOS;
}

GstFlowReturn DecoderPipeline::take(GstSample *sample)
{
    GstAudioInfo info;
    GstBuffer *buffer = gst_sample_get_buffer(sample);
    GstMapInfo map;
    if (m_state != State::Decoding || !buffer
        || !gst_audio_info_from_caps(&info, gst_sample_get_caps(sample))
        || !gst_buffer_map(buffer, &map, GST_MAP_READ))
        return GST_FLOW_ERROR;
    const DecoderFormat format {static_cast<std::uint32_t>(GST_AUDIO_INFO_RATE(&info)),
        static_cast<std::uint32_t>(GST_AUDIO_INFO_CHANNELS(&info))};
    {
        const VeskMutexLock lock(m_mutex);
        if (m_format.rate == 0) {
            m_format = format;
            setWanted(format);
        }
    }
    const auto frame = static_cast<std::size_t>(GST_AUDIO_INFO_BPF(&info));
    const std::size_t frames = map.size / frame;
    m_waiting = true;
    const bool taken
        = m_callbacks.takeSamples(format, reinterpret_cast<const char *>(map.data), frames * frame);
    gst_buffer_unmap(buffer, &map);
    m_bytesToLastSample = bytesTaken();
    m_frames += frames;
    m_waiting = false;
    return taken ? GST_FLOW_OK : GST_FLOW_EOS;
}

void DecoderPipeline::onEnd(GstAppSink *, gpointer self)
{
    static_cast<DecoderPipeline *>(self)->end(State::Ended, {});
}

void DecoderPipeline::onHungry(GstAppSrc *, guint, gpointer self)
{
    static_cast<DecoderPipeline *>(self)->m_callbacks.wake();
}

void DecoderPipeline::end(State state, const std::string &reason)
{
    State expected = State::Decoding;
    {
        const VeskMutexLock lock(m_mutex);
        if (!m_state.compare_exchange_strong(expected, state))
            return;
        m_reason = reason;
    }
    m_callbacks.wake();
}

GstBusSyncReply DecoderPipeline::onMessage(GstBus *, GstMessage *message, gpointer self)
{
    static_cast<DecoderPipeline *>(self)->takeMessage(message);
    gst_message_unref(message);
    return GST_BUS_DROP;
}

void DecoderPipeline::takeMessage(GstMessage *message)
{
    if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR)
        end(State::Failed, gstMessageText(message));
    else if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_TAG)
        takeTags(message);
}

void DecoderPipeline::takeTags(GstMessage *message)
{
    GstTagList *tags = nullptr;
    gst_message_parse_tag(message, &tags);
    guint bitRate = 0;
    if ((gst_tag_list_get_uint(tags, GST_TAG_NOMINAL_BITRATE, &bitRate)
            || gst_tag_list_get_uint(tags, GST_TAG_BITRATE, &bitRate))
        && bitRate > 0)
        m_callbacks.takeBitRate(bitRate);
    const auto text = [tags](const char *tag) {
        gchar *value = nullptr;
        gst_tag_list_get_string(tags, tag, &value);
        const std::string read = value ? value : "";
        g_free(value);
        return read.substr(0, DecoderLimits::MaxText / 2);
    };
    const std::string name = text(GST_TAG_TITLE);
    const std::string artist = text(GST_TAG_ARTIST);
    gst_tag_list_unref(tags);
    if (name.empty())
        return;
    const std::string title = artist.empty() ? name : artist + " - " + name;
    {
        const VeskMutexLock lock(m_mutex);
        if (title == m_title)
            return;
        m_title = title;
    }
    m_callbacks.takeTitle(title);
}

bool DecoderPipeline::hasSpace() const
{
    return gst_app_src_get_current_level_bytes(GST_APP_SRC(m_source)) < MaxQueuedBytes;
}

std::uint64_t DecoderPipeline::bytesTaken() const
{
    const std::uint64_t pushed = m_pushed;
    return pushed - std::min(pushed, gst_app_src_get_current_level_bytes(GST_APP_SRC(m_source)));
}

void DecoderPipeline::push(const char *data, std::size_t size)
{
    if (m_state != State::Decoding)
        return;
    GstBuffer *buffer = gst_buffer_new_memdup(data, size);
    m_pushed += size;
    gst_app_src_push_buffer(GST_APP_SRC(m_source), buffer);
}

void DecoderPipeline::finish()
{
    gst_app_src_end_of_stream(GST_APP_SRC(m_source));
}

std::string DecoderPipeline::reason() const
{
    const VeskMutexLock lock(m_mutex);
    return m_reason;
}

DecoderFormat DecoderPipeline::format() const
{
    const VeskMutexLock lock(m_mutex);
    return m_format;
}
