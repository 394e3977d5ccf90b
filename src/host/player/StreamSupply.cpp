// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/StreamSupply.h"

#include "api/core/ThreadCheck.h"
#include "api/core/vesk.h"
#include "host/player/AudioOutput.h"
#include "host/player/DecoderProcess.h"
#include "host/player/PlayClock.h"

#include <thread>

namespace {

using Milliseconds = std::chrono::milliseconds;

/// What a second of a stream that is kept is assumed to have, to tell whether a connection brings
/// audio.
constexpr std::size_t BytesPerSecond = 16000;

} // namespace

StreamSupply::StreamSupply(const StreamSource &source, AudioOutput &output, PlayClock &clock,
    const StreamReader::Times &times)
    : m_output(output)
    , m_clock(clock)
    , m_reader(source, *this, times)
{
    veskConnect(&m_reader, &StreamReader::ended, this, &StreamSupply::ended);
    veskConnect(&m_reader, &StreamReader::gaveUp, this, &StreamSupply::gaveUp);
    veskConnect(&m_reader, &StreamReader::fellBehind, this, &StreamSupply::fellBehind);
    veskConnect(&m_reader, &StreamReader::problemChanged, this, &StreamSupply::problemChanged);
}

void StreamSupply::start(std::unique_ptr<DecoderProcess> decoder)
{
    VESK_ASSERT_OWN_THREAD();
    m_nextProcess = std::move(decoder);
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
    m_keptSinceBegin = 0;
    if (isKeeping())
        m_kept.append(PauseBuffer::Item::Begin, PauseBuffer::Clock::now());
    else
        startDecoder();
}

void StreamSupply::startDecoder()
{
    replaceDecoder(std::make_unique<StreamDecoder>(
        m_output.format(), decoderCallbacks(), std::move(m_nextProcess)));
}

void StreamSupply::forgetAudio()
{
    m_kept.skipStream();
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
        return write(format, samples, size);
    };
    callbacks.ahead = [this] { return m_output.ahead(); };
    callbacks.takeTitle = [this](const QString &title) { tellTitle(title); };
    callbacks.takeBitRate = [this](int bitRate) { takeBitRate(bitRate); };
    return callbacks;
}

/// Decoder's thread.
StreamConsumer::Taken StreamSupply::write(
    const AudioFormat &format, const char *samples, std::size_t size)
{
    const std::size_t frame = sizeof(float) * static_cast<std::size_t>(format.channels);
    const std::size_t frames = size / frame;
    const std::size_t dropped = m_clock.toDrop(format, frames);
    if (dropped < frames) {
        const Taken taken
            = m_output.write(format, samples + dropped * frame, (frames - dropped) * frame);
        if (taken != Taken::All)
            return taken;
        m_clock.wrote(format, frames - dropped);
    }
    m_clock.dropped(dropped);
    return Taken::All;
}

StreamConsumer::Taken StreamSupply::takeAudio(const char *data, std::size_t size)
{
    if (isKeeping())
        return keep(data, size);
    return m_decoder ? m_decoder->push(data, size) : Taken::Refused;
}

StreamConsumer::Taken StreamSupply::keep(const char *data, std::size_t size)
{
    const bool isTaken = m_kept.append(data, size, PauseBuffer::Clock::now());
    m_keptSinceBegin += isTaken ? size : 0;
    look();
    if (isTaken)
        return Taken::All;
    if (m_keeping && !m_toldTooMuch) {
        m_toldTooMuch = true;
        QMetaObject::invokeMethod(
            this, [this] { Q_EMIT keptTooMuch(); }, Qt::QueuedConnection);
    }
    std::this_thread::sleep_for(MaxWait);
    return Taken::None;
}

/// Passes on what was kept, as far as the decoder has room for it.
void StreamSupply::look()
{
    while (!m_kept.isEmpty() && decodeFirst())
        m_kept.removeFirst();
}

/// Whether the first item is done with.
bool StreamSupply::decodeFirst()
{
    const PauseBuffer::Item &item = m_kept.first();
    switch (item.kind) {
    case PauseBuffer::Item::Begin: {
        startDecoder();
        const auto age
            = std::chrono::duration_cast<Milliseconds>(PauseBuffer::Clock::now() - item.arrived);
        QMetaObject::invokeMethod(
            this, [this, age] { Q_EMIT rejoined(age); }, Qt::QueuedConnection);
        return true;
    }
    case PauseBuffer::Item::Bytes:
        // What cannot be decoded is dropped: there is no server to ask for it again.
        return !m_decoder
            || m_decoder->push(item.bytes.constData(), static_cast<std::size_t>(item.bytes.size()),
                   Milliseconds(0))
            != Taken::None;
    case PauseBuffer::Item::End:
        return !m_decoder || m_decoder->finish(Milliseconds(0));
    case PauseBuffer::Item::Title:
        tellTitle(item.title);
        return true;
    }
    return true;
}

bool StreamSupply::endAudio()
{
    if (isKeeping()) {
        m_kept.append(PauseBuffer::Item::End, PauseBuffer::Clock::now());
        return true;
    }
    return !m_decoder || m_decoder->finish();
}

void StreamSupply::placeAudio(const AudioPlace &place)
{
    m_clock.begin(place.position, place.skip);
}

void StreamSupply::takeFile(const StreamFile &file)
{
    QMetaObject::invokeMethod(
        this, [this, file] { Q_EMIT fileKnown(file); }, Qt::QueuedConnection);
}

void StreamSupply::takeDuration(std::chrono::microseconds duration)
{
    QMetaObject::invokeMethod(
        this, [this, duration] { Q_EMIT durationKnown(duration); }, Qt::QueuedConnection);
}

/// The reader's titles come with the bytes that they belong to.
void StreamSupply::takeTitle(const QString &title)
{
    if (isKeeping())
        m_kept.append(PauseBuffer::Item::Title, PauseBuffer::Clock::now(), title);
    else
        tellTitle(title);
}

void StreamSupply::tellTitle(const QString &title)
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
    if (m_kept.hasBegin())
        return Milliseconds(m_keptSinceBegin * 1000 / BytesPerSecond);
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
