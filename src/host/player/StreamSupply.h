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

/// Brings one source's audio to an output: a reader and, one after the other, decoders. Made and
/// destroyed on the output's thread, which the destructor may hold up; the output must outlive it
/// and, when this is destroyed, refuse to be written to. Signals come on that thread.
class StreamSupply : public QObject, private StreamConsumer {
    Q_OBJECT

public:
    StreamSupply(const StreamSource &source, AudioOutput &output, const StreamReader::Times &times);
    /// Stops and waits.
    ~StreamSupply() override;

    void start();
    void tryNow() { m_reader.tryNow(); }

Q_SIGNALS:
    void titleChanged(const QString &title);
    void bitRateChanged(int bitRate);
    /// Everything is in the output.
    void ended();
    void gaveUp(const TrString &problem);
    /// What was brought is old: another supply joins the station as it is on the air now.
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
    /// Started while the stream's server is still to answer; null once it is in use.
    std::unique_ptr<DecoderProcess> m_nextProcess;
    VeskMutex m_mutex;
    /// Set by the reader's thread alone and under m_mutex; that thread reads it without.
    std::unique_ptr<StreamDecoder> m_decoder;
    bool m_stopped VESK_GUARDED_BY(m_mutex) = false;
    StreamReader m_reader;
};
