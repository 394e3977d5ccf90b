// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/StreamSupply.h"

#include "api/core/ThreadCheck.h"
#include "api/core/vesk.h"
#include "host/player/AudioOutput.h"
#include "host/player/DecoderProcess.h"

StreamSupply::StreamSupply(
    const StreamSource &source, AudioOutput &output, const StreamReader::Times &times)
    : m_output(output)
    , m_reader(source, *this, times)
{
    veskConnect(&m_reader, &StreamReader::ended, this, &StreamSupply::ended);
    veskConnect(&m_reader, &StreamReader::gaveUp, this, &StreamSupply::gaveUp);
    veskConnect(&m_reader, &StreamReader::fellBehind, this, &StreamSupply::fellBehind);
    veskConnect(&m_reader, &StreamReader::problemChanged, this, &StreamSupply::problemChanged);
}

void StreamSupply::start()
{
    VESK_ASSERT_OWN_THREAD();
    m_nextProcess = std::make_unique<DecoderProcess>();
    m_reader.start();
}

StreamSupply::~StreamSupply()
{
    m_reader.stop();
    {
        const VeskMutexLock lock(m_mutex);
        // The reader thread may be about to start another decoder; replaceDecoder() sees m_stopped.
        m_stopped = true;
        if (m_decoder)
            m_decoder->abort();
    }
    m_reader.wait();
}

void StreamSupply::beginAudio()
{
    replaceDecoder(std::make_unique<StreamDecoder>(
        m_output.format(), decoderCallbacks(), std::move(m_nextProcess)));
}

void StreamSupply::forgetAudio()
{
    replaceDecoder(nullptr);
}

/// The old decoder is destroyed outside of the lock, because its thread may be waiting for the
/// output.
void StreamSupply::replaceDecoder(std::unique_ptr<StreamDecoder> decoder)
{
    {
        const VeskMutexLock lock(m_mutex);
        m_decoder.swap(decoder);
        if (m_stopped && m_decoder)
            m_decoder->abort();
    }
}

StreamDecoderCallbacks StreamSupply::decoderCallbacks()
{
    StreamDecoderCallbacks callbacks;
    callbacks.takeAudio = [this](const AudioFormat &format, const char *samples, std::size_t size) {
        return m_output.write(format, samples, size);
    };
    callbacks.ahead = [this] { return m_output.ahead(); };
    callbacks.takeTitle = [this](const QString &title) { takeTitle(title); };
    callbacks.takeBitRate = [this](int bitRate) { takeBitRate(bitRate); };
    return callbacks;
}

StreamConsumer::Taken StreamSupply::takeAudio(const char *data, std::size_t size)
{
    return m_decoder ? m_decoder->push(data, size) : Taken::Refused;
}

bool StreamSupply::endAudio()
{
    return !m_decoder || m_decoder->finish();
}

void StreamSupply::takeTitle(const QString &title)
{
    // Called on the reader's and the decoder's threads. Queued to this object: a posted call is
    // dropped when it is destroyed.
    QMetaObject::invokeMethod(
        this, [this, title] { Q_EMIT titleChanged(title); }, Qt::QueuedConnection);
}

void StreamSupply::takeBitRate(int bitRate)
{
    QMetaObject::invokeMethod(
        this, [this, bitRate] { Q_EMIT bitRateChanged(bitRate); }, Qt::QueuedConnection);
}

bool StreamSupply::isUsable() const
{
    return !m_decoder || m_decoder->isUsable();
}

std::chrono::milliseconds StreamSupply::decoded() const
{
    return m_decoder ? m_decoder->decoded() : std::chrono::milliseconds(0);
}

std::chrono::milliseconds StreamSupply::ahead() const
{
    return m_output.ahead();
}

std::chrono::milliseconds StreamSupply::silence() const
{
    return m_output.silence();
}

bool StreamSupply::wasHeard() const
{
    return m_output.wasAudible();
}
