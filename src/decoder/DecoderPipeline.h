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

/// Decodes one stream, whose format it finds out by itself: encoded bytes in, 32-bit floating-point
/// samples out, with one or two channels, in one format from the first sample on, whatever the
/// stream turns into. push(), finish() and the questions belong to one thread; the callbacks come
/// on GStreamer's threads, until the destructor returns.
class DecoderPipeline {
public:
    struct Callbacks {
        /// May block; false ends the decoding.
        std::function<bool(const DecoderFormat &format, const char *data, std::size_t size)>
            takeSamples;
        std::function<void(const std::string &title)> takeTitle;
        std::function<void(std::uint32_t bitRate)> takeBitRate;
        /// All bytes were taken from the queue, or the state has changed: look.
        std::function<void()> wake;
    };

    enum class State { Decoding, Ended, Failed };

    /// Bytes that one push() should bring at most: what was decoded is known as finely.
    static constexpr std::size_t Piece = 512;

    /// Samples come in \a wanted when that is known, else as the stream's first ones are.
    DecoderPipeline(const DecoderFormat &wanted, Callbacks callbacks);
    /// Takes the whole pipeline down at once, also while takeSamples() blocks only as long as that
    /// does.
    ~DecoderPipeline();
    DecoderPipeline(const DecoderPipeline &) = delete;
    DecoderPipeline &operator=(const DecoderPipeline &) = delete;

    /// Whether push() should be called now; wake() tells when that becomes true.
    bool hasSpace() const;
    void push(const char *data, std::size_t size);
    /// There is no more to come: the state becomes Ended or Failed.
    void finish();

    State state() const { return m_state; }
    /// Why the state is Failed.
    std::string reason() const;
    /// Bytes pushed that left the queue before the last sample came out.
    std::uint64_t bytesToLastSample() const { return m_bytesToLastSample; }
    /// Bytes that left the queue so far.
    std::uint64_t bytesTaken() const;
    std::uint64_t framesDecoded() const { return m_frames; }
    /// Whether takeSamples() blocks, so that bytes may be taken without a sample to show for it.
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
    /// Of the samples that came out; zeros before the first.
    DecoderFormat m_format VESK_GUARDED_BY(m_mutex);
    /// A pad that comes now begins the next of chained streams.
    bool m_groupComplete VESK_GUARDED_BY(m_mutex) = false;
};
