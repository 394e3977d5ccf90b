// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "host/player/PauseBuffer.h"
#include "host/player/StreamConsumer.h"
#include "host/player/StreamDecoder.h"
#include "host/player/StreamReader.h"

#include <QObject>

#include <atomic>
#include <chrono>
#include <memory>

class AudioOutput;
class DecoderProcess;
class PlayClock;

/// Supplies an AudioOutput with the audio of one source: owns a StreamReader and a StreamDecoder at
/// a time. What arrives while the output is paused can be kept in a PauseBuffer, from which it is
/// decoded later. Created and destroyed on the output's thread, where its signals are emitted. The
/// output and the clock must outlive it. The destructor waits for the reader and the decoder, so
/// call AudioOutput::refuse() before.
class StreamSupply : public QObject, private StreamConsumer {
    Q_OBJECT

public:
    StreamSupply(const StreamSource &source, AudioOutput &output, PlayClock &clock,
        const StreamReader::Times &times);
    /// Stops the reader and the decoder and waits for their threads.
    ~StreamSupply() override;

    /// \a decoder is for the first stream that comes.
    void start(std::unique_ptr<DecoderProcess> decoder);
    /// Ends a delay before a retry.
    void tryNow() { m_reader.tryNow(); }
    /// From now on what arrives is kept if it cannot be decoded; after keepNoMore() until all that
    /// was kept is decoded.
    void keep() { m_keeping = true; }
    void keepNoMore() { m_keeping = false; }

Q_SIGNALS:
    void titleChanged(const QString &title);
    void bitRateChanged(int bitRate);
    /// All audio was decoded and written to the output.
    void ended();
    void gaveUp(const TrString &problem);
    /// The machine slept, so the buffered audio is out of date; create another supply to rejoin the
    /// station live.
    void fellBehind();
    void problemChanged(const TrString &problem);
    /// The beginning of the file that plays, or the duration of one that has segments.
    void fileKnown(const StreamFile &file);
    void durationKnown(std::chrono::microseconds duration);
    /// There is no room for more of what arrives.
    void keptTooMuch();
    /// What was kept of one connection is decoded, and \a age is the age of what follows.
    void rejoined(std::chrono::milliseconds age);

private:
    void beginAudio() override;
    Taken takeAudio(const char *data, std::size_t size) override;
    bool endAudio() override;
    void forgetAudio() override;
    void takeTitle(const QString &title) override;
    void takeBitRate(int bitRate) override;
    void takeFile(const StreamFile &file) override;
    void takeDuration(std::chrono::microseconds duration) override;
    void placeAudio(const AudioPlace &place) override;
    void look() override;
    bool isUsable() const override;
    std::chrono::milliseconds decoded() const override;
    std::chrono::milliseconds ahead() const override;
    std::chrono::milliseconds silence() const override;
    bool wasHeard() const override;
    StreamDecoderCallbacks decoderCallbacks();
    Taken write(const AudioFormat &format, const char *samples, std::size_t size);
    bool isKeeping() const { return m_keeping || !m_kept.isEmpty(); }
    Taken keep(const char *data, std::size_t size);
    bool decodeFirst();
    void startDecoder();
    void tellTitle(const QString &title);
    void replaceDecoder(std::unique_ptr<StreamDecoder> decoder);

    AudioOutput &m_output;
    PlayClock &m_clock;
    std::atomic<bool> m_keeping {false};
    // Reader thread only.
    PauseBuffer m_kept;
    std::size_t m_keptSinceBegin = 0; ///< bytes of the latest stream that were kept
    bool m_toldTooMuch = false;
    /// Started early, while the server has not responded yet; null once a decoder uses it.
    std::unique_ptr<DecoderProcess> m_nextProcess;
    VeskMutex m_mutex;
    /// Replaced only by the reader thread, under m_mutex; so that thread may read it without the
    /// lock.
    std::unique_ptr<StreamDecoder> m_decoder;
    bool m_stopped VESK_GUARDED_BY(m_mutex) = false;
    StreamReader m_reader;
};
