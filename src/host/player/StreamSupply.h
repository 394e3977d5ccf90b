// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "host/player/StreamConsumer.h"
#include "host/player/StreamDecoder.h"
#include "host/player/StreamReader.h"

#include <QObject>

#include <memory>

class AudioOutput;
class DecoderProcess;

/// Supplies an AudioOutput with the audio of one source: owns a StreamReader and a StreamDecoder at
/// a time. Created and destroyed on the output's thread, where its signals are emitted. The output
/// must outlive it. The destructor waits for the reader and the decoder, so call
/// AudioOutput::refuse() before.
class StreamSupply : public QObject, private StreamConsumer {
    Q_OBJECT

public:
    StreamSupply(const StreamSource &source, AudioOutput &output, const StreamReader::Times &times);
    /// Stops the reader and the decoder and waits for their threads.
    ~StreamSupply() override;

    void start();
    /// Ends a delay before a retry.
    void tryNow() { m_reader.tryNow(); }

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

private:
    void beginAudio() override;
    Taken takeAudio(const char *data, std::size_t size) override;
    bool endAudio() override;
    void forgetAudio() override;
    void takeTitle(const QString &title) override;
    void takeBitRate(int bitRate) override;
    bool isUsable() const override;
    std::chrono::milliseconds decoded() const override;
    std::chrono::milliseconds ahead() const override;
    std::chrono::milliseconds silence() const override;
    bool wasHeard() const override;
    StreamDecoderCallbacks decoderCallbacks();
    void replaceDecoder(std::unique_ptr<StreamDecoder> decoder);

    AudioOutput &m_output;
    /// Started early, while the server has not responded yet; null once a decoder uses it.
    std::unique_ptr<DecoderProcess> m_nextProcess;
    VeskMutex m_mutex;
    /// Replaced only by the reader thread, under m_mutex; so that thread may read it without the
    /// lock.
    std::unique_ptr<StreamDecoder> m_decoder;
    bool m_stopped VESK_GUARDED_BY(m_mutex) = false;
    StreamReader m_reader;
};
