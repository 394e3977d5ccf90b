// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "host/player/AudioOutput.h"
#include "media/GstHandles.h"

#include <condition_variable>

struct _GstAppSrc;

/// appsrc ! audioconvert ! audioresample ! sink. Audio is held in a GstAdapter, from which it can
/// be dropped, and enters the pipeline shortly before it is due, in buffers of a tenth of a second
/// whatever the size of the decoder's: each buffer wakes the sink's thread once. Buffers get
/// consecutive timestamps; after an underrun they continue at the pipeline's current running time.
/// Any thread.
class AudioOutput::Pipeline {
public:
    Pipeline(AudioOutput &output, const AudioOutputSpec &spec);
    ~Pipeline();

    StreamConsumer::Taken write(const AudioFormat &format, const char *samples, std::size_t size);
    void finish();
    void flush();
    void refuse(bool refuse);
    void setRunning(bool running);
    void close();
    AudioFormat format() const;
    /// Duration of the audio that was written and not heard yet.
    Milliseconds ahead() const;
    bool isBroken() const { return m_broken; }

private:
    GstElement *add(const char *factory);
    GstElement *addSink(const AudioOutputSpec &spec);
    void setFormat(const AudioFormat &format) VESK_REQUIRES(m_mutex);
    bool isOpen() const VESK_REQUIRES(m_mutex);
    GstClockTime now() const VESK_REQUIRES(m_mutex);
    GstClockTime aheadInPipeline() const VESK_REQUIRES(m_mutex);
    GstClockTime timeOf(std::size_t size) const VESK_REQUIRES(m_mutex);
    Milliseconds aheadLocked() const VESK_REQUIRES(m_mutex);
    void feed() VESK_REQUIRES(m_mutex);
    void push(GstBuffer *audio) VESK_REQUIRES(m_mutex);
    void completeFile();
    static void onHungry(_GstAppSrc *, guint, gpointer self);
    // Called on GStreamer's streaming threads.
    static GstBusSyncReply onMessage(GstBus *, GstMessage *message, gpointer self);
    void tell(GstMessage *message);
    void fail(const char *problem);

    AudioOutput &m_output;
    GstPtr<GstElement> m_pipeline;
    GstElement *m_source = nullptr;
    GstElement *m_encoder = nullptr; ///< wavenc; null without an output file
    GstElement *m_automatic = nullptr; ///< autoaudiosink; null for the other outputs
    std::atomic<bool> m_broken {false};

    mutable VeskMutex m_mutex;
    /// Notified when isOpen() may have changed and at the end of the stream.
    std::condition_variable m_changed;
    AudioFormat m_format VESK_GUARDED_BY(m_mutex);
    /// Audio that has not entered the pipeline yet.
    GstPtr<_GstAdapter> m_waiting VESK_PT_GUARDED_BY(m_mutex);
    /// Running time at which the audio in the pipeline ends.
    GstClockTime m_end VESK_GUARDED_BY(m_mutex) = 0;
    /// The appsrc is empty and wants data (need-data).
    bool m_hungry VESK_GUARDED_BY(m_mutex) = false;
    bool m_running VESK_GUARDED_BY(m_mutex) = false;
    /// Running time at the last pause.
    GstClockTime m_reached VESK_GUARDED_BY(m_mutex) = 0;
    bool m_refuse VESK_GUARDED_BY(m_mutex) = false;
    bool m_closed VESK_GUARDED_BY(m_mutex) = false;
    /// finish() was called: end the stream after the last buffer.
    bool m_finishing VESK_GUARDED_BY(m_mutex) = false;
    bool m_endReached VESK_GUARDED_BY(m_mutex) = false;
};
