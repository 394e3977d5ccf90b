// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "host/player/StreamConsumer.h"
#include "media/AudioFormat.h"

#include <QString>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <thread>
#include <vector>

class DecoderProcess;
enum class DecoderFrame : std::uint8_t;

/// Where a decoder's output goes. Called on its receiver thread, until its destructor returns.
struct StreamDecoderCallbacks {
    /// Takes \a size bytes of whole frames, interleaved 32-bit floating-point samples in \a format.
    /// May wait for StreamConsumer::MaxWait; called again at once after None.
    std::function<StreamConsumer::Taken(
        const AudioFormat &format, const char *samples, std::size_t size)>
        takeAudio;
    /// How much of the audio taken was not heard yet.
    std::function<std::chrono::milliseconds()> ahead;
    /// A title from the stream's own tags, such as Ogg comments.
    std::function<void(const QString &title)> takeTitle;
    /// In bit/s.
    std::function<void(int bitRate)> takeBitRate;
};

/// Decodes one stream, whose format it detects, in a sandboxed process: the bytes come from
/// untrusted servers, and codecs are not safe against malicious input. A decoder that crashes,
/// hangs or exceeds its memory limit makes the stream undecodable, without further damage.
///
/// push(), finish() and the destructor belong to one thread; abort() and the const functions may be
/// called from any. No call waits for longer than StreamConsumer::MaxWait, except the destructor if
/// takeAudio() does.
class StreamDecoder {
public:
    /// Audio is delivered in \a wanted if that is known, else in the stream's initial format with
    /// at most two channels. The format then stays the same, even when the stream's changes. A \a
    /// process started beforehand saves its start-up time; null: a new one.
    StreamDecoder(const AudioFormat &wanted, StreamDecoderCallbacks callbacks,
        std::unique_ptr<DecoderProcess> process = nullptr);
    /// Aborts and waits for the receiver thread.
    ~StreamDecoder();
    StreamDecoder(const StreamDecoder &) = delete;
    StreamDecoder &operator=(const StreamDecoder &) = delete;

    /// Takes all \a size bytes or nothing. At most DecoderLimits::MaxPayload. Waits for space for
    /// \a wait.
    StreamConsumer::Taken push(const char *data, std::size_t size,
        std::chrono::milliseconds wait = StreamConsumer::MaxWait);
    /// No more bytes follow. Returns whether everything was decoded and taken, or decoding failed;
    /// call it again until then. Waits for that for \a wait.
    bool finish(std::chrono::milliseconds wait = StreamConsumer::MaxWait);
    /// Kills the process and ends every wait. Decoding cannot be continued.
    void abort();

    /// False once decoding failed.
    bool isUsable() const { return !m_failed; }
    /// Duration of the audio that takeAudio() accepted.
    std::chrono::milliseconds decoded() const;

private:
    void queue(DecoderFrame kind, const void *payload, std::size_t size);
    bool flush(std::chrono::milliseconds wait);
    void receive();
    void waitForMore(bool hadSome);
    bool hasEnded();
    bool takeFrame(DecoderFrame kind, std::string_view payload);
    bool takeFormat(std::string_view payload);
    bool takeSamples(std::string_view payload);
    void fail(const QString &reason);
    void end();

    const StreamDecoderCallbacks m_callbacks;
    const std::unique_ptr<DecoderProcess> m_process;
    std::atomic<bool> m_failed {false};
    std::atomic<bool> m_aborted {false};
    std::atomic<long long> m_frames {0}; ///< accepted by takeAudio()
    std::atomic<int> m_rate {0}; ///< of these frames, per second

    // Used by the thread that calls push() and finish().
    std::vector<char> m_unsent; ///< at most one frame
    std::size_t m_sent = 0; ///< bytes of m_unsent already sent
    bool m_finishing = false; ///< the End frame was queued

    AudioFormat m_format; ///< used by the receiver thread

    VeskMutex m_mutex;
    std::condition_variable m_changed;
    bool m_ended VESK_GUARDED_BY(m_mutex) = false; ///< no more audio will be delivered

    std::thread m_receiver;
};
