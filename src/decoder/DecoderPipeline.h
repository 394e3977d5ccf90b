// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "decoder/DecoderFrames.h"
#include "media/GstHandles.h"

#include <atomic>
#include <cstddef>
#include <functional>
#include <string>

struct _GstAppSink;
struct _GstAppSrc;

/// A GStreamer pipeline that decodes one stream, whose format it detects. Delivers interleaved
/// 32-bit floating-point samples with one or two channels, in the same format from the first sample
/// on, even when the stream's changes. push(), finish() and the const functions belong to one
/// thread; the callbacks are called on GStreamer's threads, until the destructor returns.
class DecoderPipeline {
public:
    struct Callbacks {
        /// Takes \a size bytes of whole frames. May block; returns false to end decoding.
        std::function<bool(const DecoderFormat &format, const char *data, std::size_t size)>
            takeSamples;
        std::function<void(const std::string &title)> takeTitle;
        std::function<void(std::uint32_t bitRate)> takeBitRate;
        /// The queue is empty or the state has changed.
        std::function<void()> wake;
    };

    enum class State { Decoding, Ended, Failed };

    /// The most bytes to pass to one push(): bytesToLastSample() is as precise as that.
    static constexpr std::size_t Piece = 512;

    /// Samples are delivered in \a wanted unless that is zeros, else in the format of the stream's
    /// first samples.
    DecoderPipeline(const DecoderFormat &wanted, Callbacks callbacks);
    /// Stops the pipeline. Waits for a running takeSamples().
    ~DecoderPipeline();
    DecoderPipeline(const DecoderPipeline &) = delete;
    DecoderPipeline &operator=(const DecoderPipeline &) = delete;

    /// Whether push() should be called now; wake() is called when that may become true.
    bool hasSpace() const;
    /// Copies the bytes into the queue. Does not block; ignored after the end.
    void push(const char *data, std::size_t size);
    /// No more bytes follow; the state will become Ended or Failed.
    void finish();

    State state() const { return m_state; }
    /// Why the state is Failed.
    std::string reason() const;
    /// How many of the bytes pushed had left the queue when the last samples were delivered.
    std::uint64_t bytesToLastSample() const { return m_bytesToLastSample; }
    /// How many of the bytes pushed have left the queue.
    std::uint64_t bytesTaken() const;
    /// Audio frames delivered.
    std::uint64_t framesDecoded() const { return m_frames; }
    /// Whether takeSamples() is running. While it blocks, bytes can leave the queue without further
    /// samples.
    bool isWaiting() const { return m_waiting; }
    DecoderFormat format() const;

private:
    GstElement *add(const char *factory);
    void setWanted(const DecoderFormat &format);
    void link(GstPad *pad);
    GstFlowReturn take(GstSample *sample);
    void takeMessage(GstMessage *message);
    void takeTags(GstMessage *message);
    void end(State state, const std::string &reason);

    static void onPadAdded(GstElement *, GstPad *pad, gpointer self);
    static void onNoMorePads(GstElement *, gpointer self);
    static GstPadProbeReturn onInput(GstPad *, GstPadProbeInfo *info, gpointer self);
    static GstFlowReturn onSample(_GstAppSink *sink, gpointer self);
    static void onEnd(_GstAppSink *sink, gpointer self);
    static void onHungry(_GstAppSrc *, guint, gpointer self);
    static GstBusSyncReply onMessage(GstBus *, GstMessage *message, gpointer self);

    const Callbacks m_callbacks;
    GstPtr<GstElement> m_pipeline;
    GstElement *m_source = nullptr;
    GstElement *m_convert = nullptr;
    GstElement *m_sink = nullptr;

    std::atomic<State> m_state {State::Decoding};
    std::atomic<std::uint64_t> m_pushed {0};
    std::atomic<std::uint64_t> m_bytesToLastSample {0};
    std::atomic<std::uint64_t> m_frames {0};
    std::atomic<bool> m_waiting {false};

    mutable VeskMutex m_mutex;
    std::string m_reason VESK_GUARDED_BY(m_mutex);
    std::string m_title VESK_GUARDED_BY(m_mutex);
    /// Format of the delivered samples; zeros before the first.
    DecoderFormat m_format VESK_GUARDED_BY(m_mutex);
    /// decodebin has added all pads of the current stream; another pad belongs to the next stream
    /// of a chain.
    bool m_groupComplete VESK_GUARDED_BY(m_mutex) = false;
};
