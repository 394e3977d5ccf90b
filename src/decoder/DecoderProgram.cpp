// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "decoder/DecoderProgram.h"

#include "api/core/Mutex.h"
#include "decoder/DecoderConfinement.h"
#include "decoder/DecoderFrames.h"
#include "decoder/DecoderSession.h"
#include "media/Decoders.h"
#include "media/GstHandles.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <poll.h>
#include <string>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

/// Interval of look() after End, in milliseconds.
constexpr int LookMs = 200;

enum ExitStatus { Success = 0, Failure = 1, BadUsage = 2 };

bool isSocket(int descriptor)
{
    int type = 0;
    socklen_t size = sizeof type;
    return ::getsockopt(descriptor, SOL_SOCKET, SO_TYPE, &type, &size) == 0 && type == SOCK_STREAM;
}

/// Sends frames to the host. Any thread; blocks until the host has taken the frame. Exits the
/// process when the host has closed the socket.
class Answers {
public:
    void send(DecoderFrame kind, const void *payload, std::size_t size)
    {
        const VeskMutexLock lock(m_mutex);
        m_frame.clear();
        appendFrame(m_frame, kind, payload, size);
        std::size_t sent = 0;
        while (sent < m_frame.size()) {
            const ssize_t count
                = ::send(DecoderSocket, m_frame.data() + sent, m_frame.size() - sent, MSG_NOSIGNAL);
            if (count < 0 && errno != EINTR)
                ::_exit(Success);
            if (count > 0)
                sent += static_cast<std::size_t>(count);
        }
    }
    void sendText(DecoderFrame kind, const std::string &text)
    {
        send(kind, text.data(), std::min(text.size(), DecoderLimits::MaxText));
    }
    void sendSamples(const DecoderFormat &format, const char *data, std::size_t size)
    {
        if (format.rate != m_format.rate || format.channels != m_format.channels) {
            m_format = format;
            send(DecoderFrame::Format, &format, sizeof format);
        }
        const std::size_t frame = format.channels * sizeof(float);
        const std::size_t most = DecoderLimits::MaxPayload / frame * frame;
        for (std::size_t at = 0; at < size; at += most)
            send(DecoderFrame::Samples, data + at, std::min(most, size - at));
    }

private:
    VeskMutex m_mutex;
    std::vector<char> m_frame VESK_GUARDED_BY(m_mutex);
    DecoderFormat m_format; ///< used by GStreamer's thread only
};

/// The main thread's loop: polls the socket and an eventfd that the pipeline's threads signal.
class Decoder {
public:
    Decoder()
        : m_wake(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    {
    }

    int run()
    {
        while (true) {
            if (m_session && !m_told && !look())
                m_told = true;
            // Reads only while there is space, so that a full pipeline slows down the host. Once
            // the host knows the outcome, frames are read and dropped.
            const bool hungry = !m_session || m_told || (m_session->hasSpace() && !m_ended);
            std::array<pollfd, 2> wait {
                pollfd {DecoderSocket, static_cast<short>(hungry ? POLLIN : 0), 0},
                pollfd {m_wake, POLLIN, 0}};
            const int timeout = m_ended && !m_told ? LookMs : -1;
            if (::poll(wait.data(), wait.size(), timeout) < 0 && errno != EINTR)
                return Failure;
            if (wait[1].revents & POLLIN)
                clearWake();
            if ((wait[0].revents & POLLIN) && !receive())
                return Success;
            if (!(wait[0].revents & POLLIN) && (wait[0].revents & (POLLHUP | POLLERR)))
                return Success;
        }
    }

private:
    void clearWake() const
    {
        std::uint64_t count = 0;
        [[maybe_unused]] const ssize_t size = ::read(m_wake, &count, sizeof count);
    }

    /// Reads frames. False when the host closed the socket or violated the protocol.
    bool receive()
    {
        std::array<char, 16 * 1024> buffer;
        const ssize_t count = ::recv(DecoderSocket, buffer.data(), buffer.size(), 0);
        if (count < 0)
            return errno == EINTR || errno == EAGAIN;
        return count > 0
            && m_reader.feed(buffer.data(), static_cast<std::size_t>(count),
                [this](
                    DecoderFrame kind, std::string_view payload) { return take(kind, payload); });
    }

    /// False for frames that are out of order, malformed or not for a decoder.
    bool take(DecoderFrame kind, std::string_view payload)
    {
        DecoderFormat wanted;
        switch (kind) {
        case DecoderFrame::Start:
            if (m_session || !readPayload(payload, wanted))
                return false;
            m_session = std::make_unique<DecoderSession>(wanted, callbacks());
            return true;
        case DecoderFrame::Audio:
            if (!m_session || m_ended)
                return false;
            if (!m_told)
                m_session->feed(payload.data(), payload.size());
            return true;
        case DecoderFrame::End:
            if (!m_session || m_ended)
                return false;
            m_ended = true;
            if (!m_told)
                m_session->finish();
            return true;
        default:
            return false;
        }
    }

    DecoderPipeline::Callbacks callbacks()
    {
        DecoderPipeline::Callbacks callbacks;
        callbacks.takeSamples
            = [this](const DecoderFormat &format, const char *data, std::size_t size) {
                  m_answers.sendSamples(format, data, size);
                  return true;
              };
        callbacks.takeTitle
            = [this](const std::string &title) { m_answers.sendText(DecoderFrame::Title, title); };
        callbacks.takeBitRate = [this](std::uint32_t bitRate) {
            m_answers.send(DecoderFrame::BitRate, &bitRate, sizeof bitRate);
        };
        callbacks.wake = [this] {
            const std::uint64_t one = 1;
            [[maybe_unused]] const ssize_t size = ::write(m_wake, &one, sizeof one);
        };
        return callbacks;
    }

    /// Lets the session check its state. At the end, tells the host how it ended and returns false.
    bool look()
    {
        switch (m_session->look()) {
        case DecoderPipeline::State::Decoding:
            return true;
        case DecoderPipeline::State::Ended:
            m_answers.send(DecoderFrame::Ended, nullptr, 0);
            return false;
        case DecoderPipeline::State::Failed:
            m_answers.sendText(DecoderFrame::Failed, m_session->reason());
            return false;
        }
        return false;
    }

    const int m_wake;
    Answers m_answers;
    FrameReader m_reader;
    std::unique_ptr<DecoderSession> m_session;
    bool m_ended = false; ///< the End frame was received
    bool m_told = false; ///< Ended or Failed was sent
};

} // namespace

int runDecoder()
{
    if (!isSocket(DecoderSocket)) {
        std::fputs("vesk-decoder: only vesk-host can start this program\n", stderr);
        return BadUsage;
    }
    std::signal(SIGPIPE, SIG_IGN);
    startGStreamer();
    keepAllowedDecodersOnly();
    // Before the first byte of the stream is read.
    confineDecoder();
    const int status = Decoder().run();
    // Skip destructors, because GStreamer's threads may still be running.
    ::_exit(status);
}
