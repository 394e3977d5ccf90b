// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/sound/SoundDevice.h"

#include "api/core/log.h"
#include "api/core/vesk.h"
#include "host/sound/SinkHealth.h"

#include <algorithm>
#include <cstring>
#include <gst/app/gstappsrc.h>
#include <gst/audio/audio.h>
#include <gst/audio/streamvolume.h>

VESK_LOGGER("Player")

namespace {

constexpr GstClockTime Tolerance = 80 * GST_MSECOND;

} // namespace

SoundDevice::SoundDevice(const SoundSink &sink, Callbacks callbacks)
    : m_sink(sink)
    , m_callbacks(std::move(callbacks))
    , m_pipeline(GST_ELEMENT(gst_object_ref_sink(gst_pipeline_new(nullptr))))
{
    m_source = add("appsrc");
    g_object_set(
        m_source, "stream-type", GST_APP_STREAM_TYPE_STREAM, "format", GST_FORMAT_TIME, nullptr);
    // No limit: the one who pushes decides how much is on its way.
    gst_app_src_set_max_bytes(GST_APP_SRC(m_source), 0);
    GstAppSrcCallbacks appCallbacks {};
    appCallbacks.need_data = &SoundDevice::onHungry;
    gst_app_src_set_callbacks(GST_APP_SRC(m_source), &appCallbacks, this, nullptr);
    GstElement *convert = add("audioconvert");
    GstElement *resample = add("audioresample");
    gst_bin_add(GST_BIN(m_pipeline.get()), m_sink.element);
    VESK_ASSERT(gst_element_link_many(m_source, convert, resample, m_sink.element, nullptr));
    GstElementFactory *factory = gst_element_get_factory(m_sink.element);
    m_automatic = factory && std::strcmp(GST_OBJECT_NAME(factory), "autoaudiosink") == 0;
    const GstPtr<GstBus> bus(gst_element_get_bus(m_pipeline.get()));
    // Messages are handled on the thread that posts them; there is no GLib main loop.
    gst_bus_set_sync_handler(bus.get(), &SoundDevice::onMessage, this, nullptr);
}

SoundDevice::~SoundDevice()
{
    close();
    if (m_volume)
        g_signal_handlers_disconnect_by_data(m_volume.get(), this);
    const GstPtr<GstBus> bus(gst_element_get_bus(m_pipeline.get()));
    gst_bus_set_sync_handler(bus.get(), nullptr, nullptr, nullptr);
}

GstElement *SoundDevice::add(const char *factory)
{
    GstElement *element = gst_element_factory_make(factory, nullptr);
    VESK_ASSERT(element);
    gst_bin_add(GST_BIN(m_pipeline.get()), element);
    return element;
}

void SoundDevice::open()
{
    if (gst_element_set_state(m_pipeline.get(), GST_STATE_PAUSED) == GST_STATE_CHANGE_FAILURE)
        fail(QT_TRANSLATE_NOOP("Player", "The sound output does not work."));
    else
        findVolume();
}

void SoundDevice::findVolume()
{
    GstElement *element = m_sink.deviceVolume;
    if (element)
        m_volume.reset(GST_ELEMENT(gst_object_ref(element)));
    else if (GST_IS_BIN(m_sink.element))
        m_volume.reset(gst_bin_get_by_interface(GST_BIN(m_sink.element), GST_TYPE_STREAM_VOLUME));
    if (!m_volume)
        return;
    g_signal_connect(m_volume.get(), "notify::volume", G_CALLBACK(&SoundDevice::onVolume), this);
    g_signal_connect(m_volume.get(), "notify::mute", G_CALLBACK(&SoundDevice::onVolume), this);
}

void SoundDevice::onVolume(GObject *, GParamSpec *, gpointer self)
{
    static_cast<SoundDevice *>(self)->m_callbacks.volumeChanged();
}

void SoundDevice::setVolume(double volume, bool muted)
{
    if (!m_volume)
        return;
    auto *stream = GST_STREAM_VOLUME(m_volume.get());
    gst_stream_volume_set_volume(stream, GST_STREAM_VOLUME_FORMAT_CUBIC, volume);
    gst_stream_volume_set_mute(stream, muted ? TRUE : FALSE);
}

double SoundDevice::volume() const
{
    return gst_stream_volume_get_volume(
        GST_STREAM_VOLUME(m_volume.get()), GST_STREAM_VOLUME_FORMAT_CUBIC);
}

bool SoundDevice::isMuted() const
{
    return gst_stream_volume_get_mute(GST_STREAM_VOLUME(m_volume.get())) != FALSE;
}

void SoundDevice::setFormat(const AudioFormat &format)
{
    const GstPtr<GstCaps> caps(gst_caps_new_simple("audio/x-raw", "format", G_TYPE_STRING,
        GST_AUDIO_NE(F32), "layout", G_TYPE_STRING, "interleaved", "rate", G_TYPE_INT, format.rate,
        "channels", G_TYPE_INT, format.channels, nullptr));
    if (format.channels > 2) {
        gst_caps_set_simple(caps.get(), "channel-mask", GST_TYPE_BITMASK,
            gst_audio_channel_get_fallback_mask(format.channels), nullptr);
    }
    gst_app_src_set_caps(GST_APP_SRC(m_source), caps.get());
    const VeskMutexLock lock(m_mutex);
    m_format = format;
}

AudioFormat SoundDevice::format() const
{
    const VeskMutexLock lock(m_mutex);
    return m_format;
}

void SoundDevice::push(GstBuffer *audio)
{
    {
        const VeskMutexLock lock(m_mutex);
        const GstClockTime reached = nowLocked();
        // What comes when it is due is a little late; that is no gap.
        const bool isLate = m_end + (takesAll() ? Tolerance : 0) < reached;
        if (isLate)
            m_end = reached;
        const gsize frames = gst_buffer_get_size(audio)
            / (sizeof(float) * static_cast<std::size_t>(m_format.channels));
        GST_BUFFER_PTS(audio) = m_end;
        GST_BUFFER_DURATION(audio) = gst_util_uint64_scale_int(frames, GST_SECOND, m_format.rate);
        GST_BUFFER_DTS(audio) = GST_CLOCK_TIME_NONE;
        GST_BUFFER_OFFSET(audio) = GST_BUFFER_OFFSET_NONE;
        GST_BUFFER_OFFSET_END(audio) = GST_BUFFER_OFFSET_NONE;
        if (isLate)
            GST_BUFFER_FLAG_SET(audio, GST_BUFFER_FLAG_DISCONT);
        else
            GST_BUFFER_FLAG_UNSET(audio, GST_BUFFER_FLAG_DISCONT);
        m_end += GST_BUFFER_DURATION(audio);
    }
    m_hungry = false;
    gst_app_src_push_buffer(GST_APP_SRC(m_source), audio);
}

void SoundDevice::onHungry(GstAppSrc *, guint, gpointer self)
{
    auto *device = static_cast<SoundDevice *>(self);
    device->m_hungry = true;
    device->m_callbacks.hungry(device);
}

/// While halted this is the time at which it was halted, because GStreamer's value keeps advancing;
/// and so it is while the pipeline starts, because GStreamer's value is the system clock's until
/// then.
GstClockTime SoundDevice::nowLocked() const
{
    GstState state = GST_STATE_NULL;
    gst_element_get_state(m_pipeline.get(), &state, nullptr, 0);
    if (!m_running || state != GST_STATE_PLAYING)
        return m_reached;
    const GstClockTime time = gst_element_get_current_running_time(m_pipeline.get());
    return time == GST_CLOCK_TIME_NONE ? m_reached : time;
}

GstClockTime SoundDevice::now() const
{
    const VeskMutexLock lock(m_mutex);
    return nowLocked();
}

GstClockTime SoundDevice::end() const
{
    const VeskMutexLock lock(m_mutex);
    return m_end;
}

std::chrono::nanoseconds SoundDevice::remaining() const
{
    const VeskMutexLock lock(m_mutex);
    const GstClockTime reached = nowLocked();
    return std::chrono::nanoseconds(m_end > reached ? m_end - reached : 0);
}

void SoundDevice::setRunning(bool running)
{
    if (!running) {
        const VeskMutexLock lock(m_mutex);
        m_reached = nowLocked();
        m_running = false;
    }
    gst_element_set_state(m_pipeline.get(), running ? GST_STATE_PLAYING : GST_STATE_PAUSED);
    if (running)
        m_running = true;
}

void SoundDevice::close()
{
    if (m_closed)
        return;
    m_closed = true;
    if (isFile() && format().isKnown() && !m_broken)
        complete();
    gst_element_set_state(m_pipeline.get(), GST_STATE_NULL);
}

/// The encoder completes the head of the file at the end of the stream.
void SoundDevice::complete()
{
    // A halted pipeline does not process EOS.
    setRunning(true);
    gst_app_src_end_of_stream(GST_APP_SRC(m_source));
    const auto deadline = std::chrono::steady_clock::now() + CloseTime;
    VeskMutexLock lock(m_mutex);
    while (!m_endReached && !m_broken && lock.waitUntil(m_changed, deadline)) { }
}

GstBusSyncReply SoundDevice::onMessage(GstBus *, GstMessage *message, gpointer self)
{
    static_cast<SoundDevice *>(self)->tell(message);
    gst_message_unref(message);
    return GST_BUS_DROP;
}

void SoundDevice::tell(GstMessage *message)
{
    if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_WARNING) {
        VESK_WARN("sound output: " << QString::fromStdString(gstMessageText(message)));
        // Without a device autoaudiosink falls back to a silent sink, and only warns.
        if (m_automatic && GST_MESSAGE_SRC(message) == GST_OBJECT(m_sink.element))
            fail(QT_TRANSLATE_NOOP("Player", "There is no sound device."));
    } else if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR) {
        VESK_ERROR("sound output: " << QString::fromStdString(gstMessageText(message)));
        fail(QT_TRANSLATE_NOOP("Player", "The sound output does not work."));
    } else if (const auto health = sinkHealth(message)) {
        if (health->isEmpty())
            VESK_INFO("sound output: all is well again");
        else
            VESK_WARN("sound output: " << health->toSourceString());
        if (m_callbacks.healthChanged)
            m_callbacks.healthChanged(*health);
    } else if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_EOS) {
        {
            const VeskMutexLock lock(m_mutex);
            m_endReached = true;
        }
        m_changed.notify_all();
    }
}

void SoundDevice::fail(const char *problem)
{
    if (m_broken.exchange(true))
        return;
    m_changed.notify_all();
    m_callbacks.failed(TrString("Player", problem));
}
