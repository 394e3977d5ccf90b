// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/player/AudioOutput.h"
#include "media/GstHandles.h"

#include <condition_variable>
#include <deque>
#include <gst/gst.h>

struct _GstAppSrc;

/// appsrc ! audioconvert ! audioresample ! (the sink). Audio waits in a queue of our own, so that
/// it can be thrown away, and goes into the pipeline shortly before it is due. Buffers follow each
/// other in time; after a lack of audio they go on at the time that the pipeline has reached.
class AudioOutput::Pipeline {
public:
    Pipeline(AudioOutput &output, const AudioOutputSpec &spec);
    ~Pipeline();

    StreamConsumer::Taken write(const AudioFormat &format, GstPtr<GstBuffer> audio);
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
    void setFormat(const AudioFormat &format);
    GstClockTime now() const;
    GstClockTime aheadInPipeline() const;
    void feed();
    void push(GstBuffer *audio);
    void clear();
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

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    /// Guarded by m_mutex.
    AudioFormat m_format;
    std::deque<GstPtr<GstBuffer>> m_waiting;
    GstClockTime m_waitingTime = 0;
    GstClockTime m_end = 0; ///< running time at which what is in the pipeline ends
    bool m_running = false;
    GstClockTime m_reached = 0; ///< running time at which it was halted
    bool m_refuse = false;
    bool m_closed = false;
    bool m_finishing = false;
    bool m_endReached = false;
};
