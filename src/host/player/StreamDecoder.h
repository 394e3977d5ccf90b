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

/// What a decoder hands on. Called on its receiving thread, until its destructor returns.
struct StreamDecoderCallbacks {
    /// Takes whole frames of \a format, 32-bit floating-point samples; None is asked again at once.
    /// May wait for StreamConsumer::MaxWait.
    std::function<StreamConsumer::Taken(
        const AudioFormat &format, const char *samples, std::size_t size)>
        takeAudio;
    /// How much of what was taken is not heard yet.
    std::function<std::chrono::milliseconds()> ahead;
    /// Titles in the stream itself, as Ogg has them.
    std::function<void(const QString &title)> takeTitle;
    /// In bit/s.
    std::function<void(int bitRate)> takeBitRate;
};

/// Decodes one stream, whose format it finds out by itself, in a confined process of its own: bytes
/// of hostile servers meet codecs there that were written for files one trusts. A decoder that
/// crashes, hangs or wants too much memory is a stream that cannot be decoded, and nothing worse.
///
/// push(), finish() and the destructor belong to one thread; abort() and the questions may come
/// from any. Nothing waits for longer than StreamConsumer::MaxWait, but the destructor for a
/// takeAudio() that does.
class StreamDecoder {
public:
    /// Audio comes in \a wanted when that is known, else as the stream begins, with two channels at
    /// most; whatever the stream turns into, the format stays. A \a process that was started before
    /// saves the time of its start.
    StreamDecoder(const AudioFormat &wanted, StreamDecoderCallbacks callbacks,
        std::unique_ptr<DecoderProcess> process = nullptr);
    /// Aborts.
    ~StreamDecoder();
    StreamDecoder(const StreamDecoder &) = delete;
    StreamDecoder &operator=(const StreamDecoder &) = delete;

    StreamConsumer::Taken push(const char *data, std::size_t size);
    /// There is no more to come. Returns whether everything is decoded and taken, or never will be;
    /// to be called again until then.
    bool finish();
    /// Ends every wait; nothing is decoded any more.
    void abort();

    /// False once the stream turned out to be none that can be decoded.
    bool isUsable() const { return !m_failed; }
    /// How much audio was taken.
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
    std::atomic<long long> m_frames {0}; ///< taken
    std::atomic<int> m_rate {0}; ///< of them

    // The pushing thread's.
    std::vector<char> m_unsent; ///< one frame at most
    std::size_t m_sent = 0; ///< of m_unsent
    bool m_finishing = false; ///< End is on its way

    AudioFormat m_format; ///< the receiving thread's

    VeskMutex m_mutex;
    std::condition_variable m_changed;
    bool m_ended VESK_GUARDED_BY(m_mutex) = false; ///< No audio will come any more.

    std::thread m_receiver;
};
