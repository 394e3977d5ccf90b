// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/StreamDecoder.h"

#include "api/core/log.h"
#include "api/core/vesk.h"
#include "decoder/DecoderFrames.h"
#include "host/player/DecoderProcess.h"
#include "host/player/StreamText.h"

#include <array>
#include <cerrno>
#include <poll.h>
#include <sys/socket.h>

VESK_LOGGER("Player")

namespace {

/// bit/s. Larger values are ignored as invalid.
constexpr std::uint32_t MaxBitRate = 100 * 1000 * 1000;
/// How long the socket is left unread while there is plenty of audio ahead. Its buffer holds
/// somewhat more samples than that.
constexpr std::chrono::milliseconds Rest {250};

} // namespace

using Taken = StreamConsumer::Taken;
using Milliseconds = std::chrono::milliseconds;

StreamDecoder::StreamDecoder(const AudioFormat &wanted, StreamDecoderCallbacks callbacks,
    std::unique_ptr<DecoderProcess> process)
    : m_callbacks(std::move(callbacks))
    , m_process(process ? std::move(process) : std::make_unique<DecoderProcess>())
{
    if (!m_process->isRunning()) {
        fail(m_process->problem());
        end();
        return;
    }
    DecoderFormat format;
    if (wanted.isKnown()) {
        format.rate = static_cast<std::uint32_t>(wanted.rate);
        format.channels = static_cast<std::uint32_t>(wanted.channels);
    }
    queue(DecoderFrame::Start, &format, sizeof format);
    m_receiver = std::thread([this] { receive(); });
}

StreamDecoder::~StreamDecoder()
{
    abort();
    if (m_receiver.joinable())
        m_receiver.join();
}

void StreamDecoder::abort()
{
    m_aborted = true;
    m_process->kill();
    end();
}

void StreamDecoder::queue(DecoderFrame kind, const void *payload, std::size_t size)
{
    m_unsent.clear();
    m_sent = 0;
    appendFrame(m_unsent, kind, payload, size);
}

/// Sends the queued frame, waiting once for up to \a wait. Returns whether all of it was sent; if
/// not, the process has enough data or is gone. The receiver thread notices the latter.
bool StreamDecoder::flush(Milliseconds wait)
{
    while (m_sent < m_unsent.size()) {
        const ssize_t count = ::send(m_process->socket(), m_unsent.data() + m_sent,
            m_unsent.size() - m_sent, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count > 0) {
            m_sent += static_cast<std::size_t>(count);
            continue;
        }
        if (errno == EINTR)
            continue;
        pollfd ready {m_process->socket(), POLLOUT, 0};
        if (errno != EAGAIN || wait.count() == 0
            || ::poll(&ready, 1, static_cast<int>(wait.count())) <= 0)
            return false;
        wait = Milliseconds(0);
    }
    return true;
}

Taken StreamDecoder::push(const char *data, std::size_t size, Milliseconds wait)
{
    if (m_failed || m_aborted)
        return Taken::Refused;
    VESK_ASSERT(size <= DecoderLimits::MaxPayload);
    if (!flush(wait))
        return m_failed || m_aborted ? Taken::Refused : Taken::None;
    queue(DecoderFrame::Audio, data, size);
    flush(Milliseconds(0));
    return Taken::All;
}

bool StreamDecoder::finish(Milliseconds wait)
{
    if (!m_failed && !m_aborted) {
        if (!flush(wait))
            return m_failed || m_aborted;
        if (!m_finishing) {
            m_finishing = true;
            queue(DecoderFrame::End, nullptr, 0);
            flush(Milliseconds(0));
        }
    }
    const auto deadline = std::chrono::steady_clock::now() + wait;
    VeskMutexLock lock(m_mutex);
    while (!m_ended && lock.waitUntil(m_changed, deadline)) { }
    return m_ended;
}

void StreamDecoder::receive()
{
    veskSetThreadName(QStringLiteral("StreamDecoder"));
    std::array<char, DecoderLimits::MaxPayload> buffer;
    FrameReader reader;
    const auto take
        = [this](DecoderFrame kind, std::string_view payload) { return takeFrame(kind, payload); };
    bool hadSome = false;
    for (;;) {
        const ssize_t count = ::recv(m_process->socket(), buffer.data(), buffer.size(), 0);
        if (count > 0) {
            hadSome = true;
            if (!reader.feed(buffer.data(), static_cast<std::size_t>(count), take))
                break;
        } else if (count < 0 && errno == EAGAIN) {
            waitForMore(hadSome);
            hadSome = false;
        } else if (count == 0 || errno != EINTR) {
            break;
        }
    }
    if (!hasEnded() && !m_aborted)
        fail(QStringLiteral("the decoder's process ended"));
    end();
}

/// Waits for more frames. With plenty of audio ahead, waits a fixed time so that samples are
/// received in larger batches. abort() ends both waits: the first through end(), the second by
/// shutting the socket down.
void StreamDecoder::waitForMore(bool hadSome)
{
    if (hadSome && m_callbacks.ahead() >= StreamConsumer::Plenty) {
        const auto deadline = std::chrono::steady_clock::now() + Rest;
        VeskMutexLock lock(m_mutex);
        while (!m_ended && lock.waitUntil(m_changed, deadline)) { }
    } else {
        pollfd ready {m_process->socket(), POLLIN, 0};
        ::poll(&ready, 1, -1);
    }
}

bool StreamDecoder::takeFrame(DecoderFrame kind, std::string_view payload)
{
    std::uint32_t bitRate = 0;
    const auto text
        = [&] { return streamText(QByteArray(payload.data(), static_cast<int>(payload.size()))); };
    switch (kind) {
    case DecoderFrame::Format:
        return takeFormat(payload);
    case DecoderFrame::Samples:
        return takeSamples(payload);
    case DecoderFrame::Title:
        m_callbacks.takeTitle(text());
        return true;
    case DecoderFrame::BitRate:
        if (readPayload(payload, bitRate) && bitRate > 0 && bitRate <= MaxBitRate)
            m_callbacks.takeBitRate(static_cast<int>(bitRate));
        return true;
    case DecoderFrame::Failed:
        fail(text());
        return false;
    case DecoderFrame::Ended:
        end();
        return true;
    default:
        return false;
    }
}

/// The process may have been taken over by the stream, so its frames are validated.
bool StreamDecoder::takeFormat(std::string_view payload)
{
    DecoderFormat format;
    if (!readPayload(payload, format) || format.rate < DecoderLimits::MinRate
        || format.rate > DecoderLimits::MaxRate || format.channels < 1 || format.channels > 2)
        return false;
    m_format = {static_cast<int>(format.rate), static_cast<int>(format.channels)};
    m_rate = m_format.rate;
    return true;
}

bool StreamDecoder::takeSamples(std::string_view payload)
{
    if (!m_format.isKnown())
        return false;
    const std::size_t frame = sizeof(float) * static_cast<std::size_t>(m_format.channels);
    if (payload.empty() || payload.size() % frame != 0)
        return false;
    Taken taken = Taken::None;
    while (taken == Taken::None && !m_aborted)
        taken = m_callbacks.takeAudio(m_format, payload.data(), payload.size());
    if (taken != Taken::All) {
        // The output was closed: the play is over.
        m_aborted = true;
        return false;
    }
    m_frames += static_cast<long long>(payload.size() / frame);
    return true;
}

void StreamDecoder::fail(const QString &reason)
{
    VESK_INFO("the stream cannot be decoded: " << reason);
    m_failed = true;
}

void StreamDecoder::end()
{
    {
        const VeskMutexLock lock(m_mutex);
        m_ended = true;
    }
    m_changed.notify_all();
}

bool StreamDecoder::hasEnded()
{
    const VeskMutexLock lock(m_mutex);
    return m_ended;
}

Milliseconds StreamDecoder::decoded() const
{
    const int rate = m_rate;
    return Milliseconds(rate > 0 ? m_frames * 1000 / rate : 0);
}
