// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/AudioPipeline.h"

#include "api/core/log.h"
#include "api/core/vesk.h"
#include "host/player/PlayerText.h"

#include <algorithm>
#include <gst/app/gstappsrc.h>
#include <gst/audio/audio.h>
#include <gst/base/gstadapter.h>

VESK_LOGGER("Player")

namespace {

using Milliseconds = std::chrono::milliseconds;

/// How far ahead of playback audio enters the pipeline.
constexpr Milliseconds InPipeline {400};
/// Duration of one buffer.
constexpr Milliseconds Piece {100};
/// The longest wait for an output file to be completed.
constexpr Milliseconds CloseTime {2000};

GstClockTime toGst(Milliseconds time)
{
    return static_cast<GstClockTime>(time.count()) * GST_MSECOND;
}

std::size_t frameSize(const AudioFormat &format)
{
    return sizeof(float) * static_cast<std::size_t>(format.channels);
}

/// Size in bytes of the whole frames that last for \a time.
std::size_t sizeOf(const AudioFormat &format, Milliseconds time)
{
    return static_cast<std::size_t>(format.rate * time.count() / 1000) * frameSize(format);
}

} // namespace

AudioOutput::Pipeline::Pipeline(AudioOutput &output, const AudioOutputSpec &spec)
    : m_output(output)
{
    startGStreamer();
    m_waiting.reset(gst_adapter_new());
    m_pipeline.reset(GST_ELEMENT(gst_object_ref_sink(gst_pipeline_new(nullptr))));
    m_source = add("appsrc");
    g_object_set(
        m_source, "stream-type", GST_APP_STREAM_TYPE_STREAM, "format", GST_FORMAT_TIME, nullptr);
    // No limit: feed() decides how much is in the pipeline.
    gst_app_src_set_max_bytes(GST_APP_SRC(m_source), 0);
    GstAppSrcCallbacks callbacks {};
    callbacks.need_data = &Pipeline::onHungry;
    gst_app_src_set_callbacks(GST_APP_SRC(m_source), &callbacks, this, nullptr);
    GstElement *convert = add("audioconvert");
    GstElement *resample = add("audioresample");
    VESK_ASSERT(gst_element_link_many(m_source, convert, resample, nullptr));
    VESK_ASSERT(gst_element_link(resample, addSink(spec)));
    const GstPtr<GstBus> bus(gst_element_get_bus(m_pipeline.get()));
    // Messages are handled on the thread that posts them; there is no GLib main loop.
    gst_bus_set_sync_handler(bus.get(), &Pipeline::onMessage, this, nullptr);
    gst_element_set_state(m_pipeline.get(), GST_STATE_PAUSED);
}

AudioOutput::Pipeline::~Pipeline()
{
    close();
    const GstPtr<GstBus> bus(gst_element_get_bus(m_pipeline.get()));
    gst_bus_set_sync_handler(bus.get(), nullptr, nullptr, nullptr);
}

GstElement *AudioOutput::Pipeline::add(const char *factory)
{
    GstElement *element = gst_element_factory_make(factory, nullptr);
    VESK_ASSERT(element);
    gst_bin_add(GST_BIN(m_pipeline.get()), element);
    return element;
}

/// Adds the elements after the conversion and returns the first of them.
GstElement *AudioOutput::Pipeline::addSink(const AudioOutputSpec &spec)
{
    switch (spec.kind) {
    case AudioOutputSpec::Auto:
        return m_automatic = add("autoaudiosink");
    case AudioOutputSpec::Null: {
        GstElement *sink = add("fakesink");
        g_object_set(sink, "sync", TRUE, nullptr);
        return sink;
    }
    case AudioOutputSpec::Wav:
        break;
    }
    GstElement *filter = add("capsfilter");
    GstElement *pace = add("clocksync");
    m_encoder = add("wavenc");
    GstElement *sink = add("filesink");
    const GstPtr<GstCaps> caps(
        gst_caps_new_simple("audio/x-raw", "format", G_TYPE_STRING, "S16LE", nullptr));
    g_object_set(filter, "caps", caps.get(), nullptr);
    // Unbuffered, so that the file always contains what has been heard.
    constexpr int Unbuffered = 2;
    g_object_set(sink, "async", FALSE, "sync", FALSE, "buffer-mode", Unbuffered, "location",
        spec.file.toUtf8().constData(), nullptr);
    VESK_ASSERT(gst_element_link_many(filter, pace, m_encoder, sink, nullptr));
    return filter;
}

void AudioOutput::Pipeline::setFormat(const AudioFormat &format)
{
    const GstPtr<GstCaps> caps(gst_caps_new_simple("audio/x-raw", "format", G_TYPE_STRING,
        GST_AUDIO_NE(F32), "layout", G_TYPE_STRING, "interleaved", "rate", G_TYPE_INT, format.rate,
        "channels", G_TYPE_INT, format.channels, nullptr));
    if (format.channels > 2) {
        gst_caps_set_simple(caps.get(), "channel-mask", GST_TYPE_BITMASK,
            gst_audio_channel_get_fallback_mask(format.channels), nullptr);
    }
    gst_app_src_set_caps(GST_APP_SRC(m_source), caps.get());
    m_format = format;
}

StreamConsumer::Taken AudioOutput::Pipeline::write(
    const AudioFormat &format, const char *samples, std::size_t size)
{
    using Taken = StreamConsumer::Taken;
    const auto deadline = std::chrono::steady_clock::now() + StreamConsumer::MaxWait;
    VeskMutexLock lock(m_mutex);
    if (!m_format.isKnown())
        setFormat(format);
    // Playback makes space without notifying m_changed, so an output that is full costs the whole
    // wait. Only a closed or refusing output ends it early.
    while (isOpen() && aheadLocked() > Ahead && lock.waitUntil(m_changed, deadline)) { }
    if (!isOpen() || format != m_format)
        return Taken::Refused;
    if (aheadLocked() > Ahead)
        return Taken::None;
    gst_adapter_push(m_waiting.get(), gst_buffer_new_memdup(samples, size));
    feed();
    return Taken::All;
}

bool AudioOutput::Pipeline::isOpen() const
{
    return !m_closed && !m_refuse && !m_broken;
}

/// Pushes audio until enough is in the pipeline. One buffer more when the appsrc asked for data:
/// then the sink buffers more than InPipeline by itself.
void AudioOutput::Pipeline::feed()
{
    const std::size_t piece = sizeOf(m_format, Piece);
    while (const std::size_t waiting = gst_adapter_available(m_waiting.get())) {
        if (!m_hungry && aheadInPipeline() >= toGst(InPipeline))
            return;
        push(gst_adapter_take_buffer(m_waiting.get(), std::min(waiting, piece)));
        m_hungry = false;
    }
    if (m_finishing)
        gst_app_src_end_of_stream(GST_APP_SRC(m_source));
}

void AudioOutput::Pipeline::push(GstBuffer *audio)
{
    const GstClockTime reached = now();
    const bool isLate = m_end < reached;
    m_end = std::max(m_end, reached);
    GST_BUFFER_PTS(audio) = m_end;
    GST_BUFFER_DURATION(audio) = timeOf(gst_buffer_get_size(audio));
    GST_BUFFER_DTS(audio) = GST_CLOCK_TIME_NONE;
    GST_BUFFER_OFFSET(audio) = GST_BUFFER_OFFSET_NONE;
    GST_BUFFER_OFFSET_END(audio) = GST_BUFFER_OFFSET_NONE;
    if (isLate)
        GST_BUFFER_FLAG_SET(audio, GST_BUFFER_FLAG_DISCONT);
    else
        GST_BUFFER_FLAG_UNSET(audio, GST_BUFFER_FLAG_DISCONT);
    m_end += GST_BUFFER_DURATION(audio);
    gst_app_src_push_buffer(GST_APP_SRC(m_source), audio);
}

void AudioOutput::Pipeline::onHungry(GstAppSrc *, guint, gpointer self)
{
    auto *pipeline = static_cast<Pipeline *>(self);
    const VeskMutexLock lock(pipeline->m_mutex);
    pipeline->m_hungry = true;
    pipeline->feed();
}

/// The pipeline's running time. While paused this is the time at the last pause, because
/// GStreamer's value keeps advancing; and so it is while the pipeline starts, because GStreamer's
/// value is the system clock's until then.
GstClockTime AudioOutput::Pipeline::now() const
{
    GstState state = GST_STATE_NULL;
    gst_element_get_state(m_pipeline.get(), &state, nullptr, 0);
    if (!m_running || state != GST_STATE_PLAYING)
        return m_reached;
    const GstClockTime time = gst_element_get_current_running_time(m_pipeline.get());
    return time == GST_CLOCK_TIME_NONE ? m_reached : time;
}

GstClockTime AudioOutput::Pipeline::aheadInPipeline() const
{
    const GstClockTime reached = now();
    return m_end > reached ? m_end - reached : 0;
}

/// Duration of \a size bytes of audio.
GstClockTime AudioOutput::Pipeline::timeOf(std::size_t size) const
{
    return m_format.isKnown()
        ? gst_util_uint64_scale_int(size / frameSize(m_format), GST_SECOND, m_format.rate)
        : 0;
}

void AudioOutput::Pipeline::finish()
{
    const VeskMutexLock lock(m_mutex);
    m_finishing = true;
    feed();
}

void AudioOutput::Pipeline::flush()
{
    {
        const VeskMutexLock lock(m_mutex);
        gst_adapter_clear(m_waiting.get());
    }
    m_changed.notify_all();
}

void AudioOutput::Pipeline::refuse(bool refuse)
{
    {
        const VeskMutexLock lock(m_mutex);
        m_refuse = refuse;
    }
    m_changed.notify_all();
}

void AudioOutput::Pipeline::setRunning(bool running)
{
    if (!running) {
        const VeskMutexLock lock(m_mutex);
        m_reached = now();
        m_running = false;
    }
    gst_element_set_state(m_pipeline.get(), running ? GST_STATE_PLAYING : GST_STATE_PAUSED);
    if (running) {
        const VeskMutexLock lock(m_mutex);
        m_running = true;
    }
}

void AudioOutput::Pipeline::close()
{
    {
        const VeskMutexLock lock(m_mutex);
        if (m_closed)
            return;
        m_closed = true;
    }
    m_changed.notify_all();
    if (m_encoder && format().isKnown() && !m_broken)
        completeFile();
    gst_element_set_state(m_pipeline.get(), GST_STATE_NULL);
    flush();
}

/// wavenc completes the header of the file at the end of the stream (EOS). The event is sent
/// straight to the encoder: audio still upstream of it was not heard and does not get into the
/// file.
void AudioOutput::Pipeline::completeFile()
{
    // A paused pipeline does not process EOS.
    setRunning(true);
    const GstPtr<GstPad> pad(gst_element_get_static_pad(m_encoder, "sink"));
    gst_pad_send_event(pad.get(), gst_event_new_eos());
    const auto deadline = std::chrono::steady_clock::now() + CloseTime;
    VeskMutexLock lock(m_mutex);
    while (!m_endReached && !m_broken && lock.waitUntil(m_changed, deadline)) { }
}

AudioFormat AudioOutput::Pipeline::format() const
{
    const VeskMutexLock lock(m_mutex);
    return m_format;
}

Milliseconds AudioOutput::Pipeline::ahead() const
{
    const VeskMutexLock lock(m_mutex);
    return aheadLocked();
}

Milliseconds AudioOutput::Pipeline::aheadLocked() const
{
    const std::size_t waiting = gst_adapter_available(m_waiting.get());
    return Milliseconds((aheadInPipeline() + timeOf(waiting)) / GST_MSECOND);
}

GstBusSyncReply AudioOutput::Pipeline::onMessage(GstBus *, GstMessage *message, gpointer self)
{
    static_cast<Pipeline *>(self)->tell(message);
    gst_message_unref(message);
    return GST_BUS_DROP;
}

void AudioOutput::Pipeline::tell(GstMessage *message)
{
    AudioOutput *output = &m_output;
    if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_WARNING) {
        VESK_WARN("sound output: " << QString::fromStdString(gstMessageText(message)));
        // Without a device autoaudiosink falls back to a silent sink, and only warns.
        if (GST_MESSAGE_SRC(message) == GST_OBJECT(m_automatic))
            fail(QT_TRANSLATE_NOOP("Player", "There is no sound device."));
    } else if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR) {
        VESK_ERROR("sound output: " << QString::fromStdString(gstMessageText(message)));
        fail(QT_TRANSLATE_NOOP("Player", "The sound output does not work."));
    } else if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_EOS) {
        {
            const VeskMutexLock lock(m_mutex);
            m_endReached = true;
        }
        m_changed.notify_all();
        QMetaObject::invokeMethod(
            output,
            [output] {
                output->setAudible(false);
                Q_EMIT output->drained();
            },
            Qt::QueuedConnection);
    }
}

void AudioOutput::Pipeline::fail(const char *problem)
{
    m_broken = true;
    m_changed.notify_all();
    AudioOutput *output = &m_output;
    QMetaObject::invokeMethod(
        output, [output, problem] { Q_EMIT output->failed(playerText(problem)); },
        Qt::QueuedConnection);
}
