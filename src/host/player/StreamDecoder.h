#pragma once

#include "media/AudioFormat.h"

#include <QString>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>

/// What a decoder learns about its stream beside the audio. Called on a thread of GStreamer.
struct StreamDecoderCallbacks {
    /// \a audio is a GstBuffer, which the callback takes over. May block; false ends the decoding.
    std::function<bool(const AudioFormat &format, void *audio)> takeAudio;
    /// Titles in the stream itself, as Ogg has them.
    std::function<void(const QString &title)> takeTitle;
    /// In bit/s.
    std::function<void(int bitRate)> takeBitRate;
};

/// Decodes one stream, whose format it finds out by itself: encoded bytes in, audio out, by
/// GStreamer. push(), finish() and the destructor belong to one thread; abort() and the questions
/// may come from any.
class StreamDecoder {
public:
    /// Audio comes in \a wanted when that is known, else as the stream has it, with two channels at
    /// most.
    StreamDecoder(const AudioFormat &wanted, StreamDecoderCallbacks callbacks);
    ~StreamDecoder();
    StreamDecoder(const StreamDecoder &) = delete;
    StreamDecoder &operator=(const StreamDecoder &) = delete;

    /// Waits while the decoder has enough. False when it is aborted or cannot use the stream.
    bool push(const char *data, std::size_t size);
    /// There is no more to come: waits until all of it is decoded and taken, or abort().
    void finish();
    /// Ends every wait; nothing is decoded any more.
    void abort();

    /// False once the stream turned out to be none that can be decoded.
    bool isUsable() const { return !m_failed; }
    /// How much audio was taken.
    std::chrono::milliseconds decoded() const;

private:
    class Pipeline;

    const StreamDecoderCallbacks m_callbacks;
    std::atomic<bool> m_failed {false};
    std::atomic<bool> m_aborted {false};
    std::atomic<long long> m_decodedMs {0};
    std::unique_ptr<Pipeline> m_pipeline;
};
