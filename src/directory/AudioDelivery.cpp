// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/AudioDelivery.h"

#include <algorithm>
#include <limits>

namespace directory {

namespace {

constexpr unsigned TickMilliseconds = 100;
constexpr double LongestFeed = 1; ///< seconds; a longer backlog is encoded in several ticks
constexpr std::int64_t Microseconds = 1000000;

} // namespace

AudioDelivery::AudioDelivery(GIOStream *stream, const Answer &answer, const Delivery &delivery,
    std::string path, std::function<void()> done)
    : m_audio(answer.audio)
    , m_delivery(delivery)
    , m_path(std::move(path))
    , m_done(std::move(done))
    , m_waiting(headOf(answer) + "\r\n")
    , m_headLeft(m_waiting.size())
    , m_wire(stream, [this] { finish(); })
{
    m_wire.boundSendBuffer(static_cast<int>(MaxWaiting));
    if (!m_audio.live)
        return;
    m_encoder = std::make_unique<Encoder>(m_audio.live->format, [this] { takeEncoded(); });
    if (m_audio.live->title)
        m_metadata
            = std::make_unique<IcyMetadata>([this] { return m_audio.live->title(elapsed()); });
}

void AudioDelivery::start()
{
    m_timer.onTime(static_cast<unsigned>(m_delivery.delaySeconds) * 1000, [this] { begin(); });
}

void AudioDelivery::begin()
{
    m_started = m_lastProgress = g_get_monotonic_time();
    if (m_delivery.disturbance)
        disturb(*m_delivery.disturbance);
    tick();
}

double AudioDelivery::elapsed() const
{
    return static_cast<double>(g_get_monotonic_time() - m_started) / Microseconds;
}

void AudioDelivery::tick()
{
    if (impatient())
        return finish();
    m_timer.onTime(TickMilliseconds, [this] { tick(); });
    if (m_encoder)
        feed();
    write();
}

bool AudioDelivery::impatient() const
{
    return m_wire.waitsForRoom()
        && static_cast<double>(g_get_monotonic_time() - m_lastProgress)
        > PatienceSeconds * Microseconds;
}

void AudioDelivery::feed()
{
    if (m_waiting.size() >= MaxWaiting)
        return;
    const AudioFormat &format = m_encoder->format();
    const double due = m_frames == 0
        ? BurstSeconds
        : std::min(
            BurstSeconds + elapsed() - static_cast<double>(m_frames) / format.rate, LongestFeed);
    if (due <= 0)
        return;
    const auto frames = static_cast<std::size_t>(due * format.rate);
    m_encoder->feed(m_audio.live->melody.samples(m_frames, frames, format.rate, format.channels));
    m_frames += frames;
}

void AudioDelivery::takeEncoded()
{
    if (m_encoder->failed())
        return finish();
    for (std::string &piece : m_encoder->take())
        add(m_metadata ? m_metadata->woven(piece) : std::move(piece));
    write();
}

void AudioDelivery::add(std::string bytes)
{
    const std::size_t spoilt = std::min(m_garbageLeft, bytes.size());
    for (std::size_t i = 0; i < spoilt; ++i)
        bytes[i] = static_cast<char>(m_random() >> 8);
    m_garbageLeft -= spoilt;
    if (!m_silent)
        m_waiting += bytes;
}

void AudioDelivery::refill()
{
    if (!m_audio.file)
        return;
    const FileAudio &file = *m_audio.file;
    while (m_waiting.size() < MaxWaiting && m_copied < file.length) {
        const std::size_t at
            = static_cast<std::size_t>((file.offset + m_copied) % file.loop->size());
        const auto size = static_cast<std::size_t>(
            std::min<std::uint64_t>(file.loop->size() - at, file.length - m_copied));
        m_copied += size;
        add(file.loop->substr(at, size));
    }
}

std::size_t AudioDelivery::allowed() const
{
    std::uint64_t body = std::numeric_limits<std::size_t>::max() / 2;
    if (m_delivery.bytesPerSecond > 0)
        body = static_cast<std::uint64_t>(m_delivery.bytesPerSecond * elapsed());
    if (m_delivery.bodyBytes)
        body = std::min<std::uint64_t>(body, *m_delivery.bodyBytes);
    return m_headLeft + static_cast<std::size_t>(body - std::min<std::uint64_t>(body, m_bodySent));
}

void AudioDelivery::write()
{
    m_wire.ignoreRoom();
    refill();
    while (const std::size_t size = std::min(m_waiting.size(), allowed())) {
        const std::ptrdiff_t count = m_wire.write(std::string_view(m_waiting).substr(0, size));
        if (count < 0)
            return finish();
        if (count == 0)
            return m_wire.onRoom([this] { write(); });
        const auto sent = static_cast<std::size_t>(count);
        const std::size_t head = std::min(m_headLeft, sent);
        m_headLeft -= head;
        m_bodySent += sent - head;
        m_waiting.erase(0, sent);
        m_lastProgress = g_get_monotonic_time();
        refill();
    }
    const bool cut = m_delivery.bodyBytes && m_bodySent >= *m_delivery.bodyBytes;
    const bool sentAll = m_audio.file && m_copied == m_audio.file->length && m_waiting.empty();
    if (cut || (sentAll && !m_silent))
        atEnd();
}

void AudioDelivery::atEnd()
{
    if (m_delivery.end != Delivery::End::Hold)
        return finish();
    m_encoder.reset();
    m_timer.onTime(RawDelivery::MaxHoldSeconds * 1000, [this] { finish(); });
}

void AudioDelivery::disturb(const Disturbance &disturbance)
{
    m_disturbance = disturbance;
    const bool endsIt = disturbance.kind == Disturbance::Kind::Close
        || disturbance.kind == Disturbance::Kind::Reset;
    // What ends the stream destroys this object, which the caller may still be using: by the timer.
    if (disturbance.seconds == 0 && !endsIt)
        return act();
    m_disturbanceTimer.onTime(static_cast<unsigned>(disturbance.seconds) * 1000, [this] { act(); });
}

void AudioDelivery::act()
{
    switch (m_disturbance.kind) {
    case Disturbance::Kind::Close:
        return finish();
    case Disturbance::Kind::Reset:
        return reset();
    case Disturbance::Kind::Stall:
        m_silent = true;
        m_waiting.resize(m_headLeft);
        return;
    case Disturbance::Kind::Garbage:
        m_garbageLeft = m_disturbance.bytes > 0 ? m_disturbance.bytes
                                                : std::numeric_limits<std::size_t>::max();
        return;
    }
}

void AudioDelivery::reset()
{
    m_wire.resetAtEnd();
    finish();
}

void AudioDelivery::finish()
{
    const std::function<void()> done = std::move(m_done);
    m_done = nullptr;
    if (done)
        done(); // destroys this object
}

} // namespace directory
