// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "host/player/AudioOutput.h"
#include "media/GstHandles.h"

#include <condition_variable>

struct _GstAppSrc;

/// appsrc ! audioconvert ! audioresample ! (the sink). Audio waits in a queue of our own, so that
/// it can be thrown away, and goes into the pipeline shortly before it is due, in pieces of a tenth
/// of a second whatever the decoder's were: each wakes the sink. Buffers follow each other in time;
/// after a lack of audio they go on at the time that the pipeline has reached. Any thread.
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
    /// What was written and not heard yet.
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
    static GstBusSyncReply onMessage(GstBus *, GstMessage *message, gpointer self);
    void tell(GstMessage *message);
    void fail(const char *problem);

    AudioOutput &m_output;
    GstPtr<GstElement> m_pipeline;
    GstElement *m_source = nullptr;
    GstElement *m_encoder = nullptr; ///< of a file; null without
    GstElement *m_automatic = nullptr; ///< which finds a sound device; null without
    std::atomic<bool> m_broken {false};

    mutable VeskMutex m_mutex;
    std::condition_variable m_changed;
    AudioFormat m_format VESK_GUARDED_BY(m_mutex);
    GstPtr<_GstAdapter> m_waiting VESK_PT_GUARDED_BY(m_mutex);
    /// The running time at which what is in the pipeline ends.
    GstClockTime m_end VESK_GUARDED_BY(m_mutex) = 0;
    /// All that is in the pipeline has reached the sink.
    bool m_hungry VESK_GUARDED_BY(m_mutex) = false;
    bool m_running VESK_GUARDED_BY(m_mutex) = false;
    /// The running time at which it was halted.
    GstClockTime m_reached VESK_GUARDED_BY(m_mutex) = 0;
    bool m_refuse VESK_GUARDED_BY(m_mutex) = false;
    bool m_closed VESK_GUARDED_BY(m_mutex) = false;
    bool m_finishing VESK_GUARDED_BY(m_mutex) = false;
    bool m_endReached VESK_GUARDED_BY(m_mutex) = false;
};
