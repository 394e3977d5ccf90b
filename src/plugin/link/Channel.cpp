// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/link/Channel.h"

#include "api/core/vesk.h"

#include <QDeadlineTimer>
#include <QThread>

#include <cerrno>
#include <cstring>
#include <deque>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/uio.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr int HeadBytes = sizeof(quint32);
/// What is read at a time, and the place that is kept for it.
constexpr int ReadBytes = Channel::LongPayload;

bool isTransient(int error)
{
    return error == EINTR;
}

bool wouldBlock(int error)
{
    return error == EAGAIN || error == EWOULDBLOCK;
}

} // namespace

struct Channel::Sender::Data {
    explicit Data(int socketFd)
        : socket(socketFd)
        , wake(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    {
    }
    ~Data()
    {
        ::close(socket);
        ::close(wake);
    }

    /// Sends as much of the queue as the socket takes.
    void flush() VESK_REQUIRES(mutex)
    {
        while (!queue.empty() && open) {
            const QByteArray &payload = queue.front();
            const int sent = sendRest(payload, sentOfFirst);
            if (sent < 0) {
                if (!wouldBlock(errno))
                    end();
                return;
            }
            sentOfFirst += sent;
            if (sentOfFirst < HeadBytes + payload.size())
                continue;
            queuedBytes -= payload.size();
            queue.pop_front();
            sentOfFirst = 0;
        }
    }

    /// Sends a frame from its byte \a from on; returns how many bytes went, or -1.
    int sendRest(const QByteArray &payload, int from) const
    {
        auto head = static_cast<quint32>(payload.size());
        const int ofHead = qMin(from, HeadBytes);
        const int ofPayload = from - ofHead;
        iovec parts[] = {{reinterpret_cast<char *>(&head) + ofHead,
                             static_cast<std::size_t>(HeadBytes - ofHead)},
            {const_cast<char *>(payload.constData()) + ofPayload,
                static_cast<std::size_t>(payload.size() - ofPayload)}};
        msghdr message {};
        message.msg_iov = parts;
        message.msg_iovlen = 2;
        ssize_t sent = 0;
        do {
            sent = ::sendmsg(socket, &message, MSG_NOSIGNAL | MSG_DONTWAIT);
        } while (sent < 0 && isTransient(errno));
        return static_cast<int>(sent);
    }

    void end() VESK_REQUIRES(mutex)
    {
        open = false;
        queue.clear();
        ::shutdown(socket, SHUT_RDWR);
        wakeThread();
    }

    /// Has the channel's thread look at its state again.
    void wakeThread() const
    {
        const quint64 one = 1;
        [[maybe_unused]] const ssize_t written = ::write(wake, &one, sizeof one);
    }

    const int socket;
    const int wake; ///< an eventfd, see wakeThread()
    VeskMutex mutex;
    bool open VESK_GUARDED_BY(mutex) = true;
    std::deque<QByteArray> queue VESK_GUARDED_BY(mutex);
    int sentOfFirst VESK_GUARDED_BY(mutex) = 0; ///< bytes, head included
    qint64 queuedBytes VESK_GUARDED_BY(mutex) = 0;
    QString reason VESK_GUARDED_BY(mutex); ///< for which this side ended the connection
};

Channel::Sender::Sender(int socket)
    : d(std::make_unique<Data>(socket))
{
}

Channel::Sender::~Sender() = default;

bool Channel::Sender::send(const QByteArray &payload)
{
    if (payload.size() > MaxPayload)
        return false;
    const VeskMutexLock lock(d->mutex);
    if (!d->open)
        return false;
    const bool isFirst = d->queue.empty();
    d->queue.push_back(payload);
    d->queuedBytes += payload.size();
    if (!isFirst) {
        if (d->queuedBytes > MaxQueued) {
            d->reason = QStringLiteral("%1 bytes that it does not read").arg(d->queuedBytes);
            d->end();
        }
        return d->open;
    }
    d->flush();
    if (!d->queue.empty())
        d->wakeThread(); // which sends the rest when the socket takes it
    return d->open;
}

void Channel::Sender::close()
{
    const VeskMutexLock lock(d->mutex);
    d->end();
}

Channel::Channel(int socket)
    : m_sender(std::make_shared<Sender>(socket))
{
    m_received.reserve(ReadBytes);
}

Channel::~Channel()
{
    VESK_ASSERT(!m_notifier || m_notifier->thread() == QThread::currentThread());
    m_sender->close();
    if (m_thread.joinable()) {
        VESK_ASSERT(m_thread.get_id() != std::this_thread::get_id());
        m_thread.join();
    }
}

void Channel::start(Handler handler, Reader reader)
{
    VESK_ASSERT(!m_thread.joinable());
    m_handler = std::move(handler);
    if (reader == Reader::CallersLoop) {
        m_notifier = std::make_unique<QSocketNotifier>(m_sender->d->socket, QSocketNotifier::Read);
        m_isLoopsTurn = true;
        QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(),
            [this] { receiveOnLoop(); });
    }
    m_thread = std::thread([this] { run(); });
}

QByteArray Channel::receiveOne(int milliseconds)
{
    const QDeadlineTimer deadline(milliseconds);
    QByteArray payload;
    m_handler.received = [&payload](const QByteArray &received) -> Result<void, QString> {
        payload = QByteArray(received.constData(), received.size());
        return failure(QStringLiteral("one is enough"));
    };
    const VeskMutexLock lock(m_receiving);
    pollfd descriptor {m_sender->d->socket, POLLIN, 0};
    while (payload.isEmpty() && !deadline.hasExpired()) {
        const auto left = static_cast<int>(deadline.remainingTime());
        if (::poll(&descriptor, 1, left) < 0 && !isTransient(errno))
            break;
        if (descriptor.revents != 0 && fill() == Progress::Ended)
            break;
        if (!handleFrames())
            break;
    }
    return payload;
}

void Channel::run()
{
    veskSetThreadName(QStringLiteral("PluginLink"));
    receiveUntilEnd();
    m_sender->close();
    QString reason;
    {
        const VeskMutexLock lock(m_receiving);
        m_hasEnded = true; // the event loop may still find bytes in the socket
        reason = m_problem;
    }
    if (reason.isEmpty()) {
        const VeskMutexLock lock(m_sender->d->mutex);
        reason = m_sender->d->reason;
    }
    m_handler.ended(reason);
}

/// The channel's thread: receives when it is its turn, and sends what is queued.
void Channel::receiveUntilEnd()
{
    Sender::Data &sender = *m_sender->d;
    // More frames may have come along with the one that receiveOne() returned.
    bool isReadable = !m_notifier;
    while (true) {
        if (isReadable) {
            if (!receive())
                return;
            if (m_notifier && !m_isLong)
                handOverToLoop();
        }
        bool hasToSend = false;
        {
            const VeskMutexLock lock(sender.mutex);
            if (!sender.open)
                return;
            hasToSend = !sender.queue.empty();
        }
        const int wanted = (m_isLoopsTurn ? 0 : POLLIN) | (hasToSend ? POLLOUT : 0);
        pollfd descriptors[] = {{wanted == 0 ? -1 : sender.socket, static_cast<short>(wanted), 0},
            {sender.wake, POLLIN, 0}};
        if (::poll(descriptors, 2, -1) < 0) {
            if (isTransient(errno)) {
                isReadable = false;
                continue;
            }
            const VeskMutexLock lock(m_receiving);
            m_problem = QString::fromLocal8Bit(std::strerror(errno));
            return;
        }
        if (descriptors[1].revents != 0) {
            quint64 count = 0;
            [[maybe_unused]] const ssize_t read = ::read(sender.wake, &count, sizeof count);
        }
        if (descriptors[0].revents & POLLOUT) {
            const VeskMutexLock lock(sender.mutex);
            sender.flush();
        }
        isReadable = (wanted & POLLIN) && (descriptors[0].revents & (POLLIN | POLLHUP | POLLERR));
    }
}

/// The event loop: the socket has something.
void Channel::receiveOnLoop()
{
    if (!receive() || m_isLong)
        handOverToThread();
}

void Channel::handOverToLoop()
{
    m_isLoopsTurn = true;
    QMetaObject::invokeMethod(
        m_notifier.get(), [notifier = m_notifier.get()] { notifier->setEnabled(true); },
        Qt::QueuedConnection);
}

void Channel::handOverToThread()
{
    m_notifier->setEnabled(false);
    m_isLoopsTurn = false;
    m_sender->d->wakeThread();
}

/// Receives what the socket has now and handles the frames that are complete. Returns false at the
/// end of the connection, which a problem with a frame brings about.
bool Channel::receive()
{
    const VeskMutexLock lock(m_receiving);
    if (m_hasEnded || !m_problem.isEmpty())
        return false;
    const Progress progress = fill();
    if (const auto handled = handleFrames(); !handled)
        m_problem = handled.error();
    m_isLong = announcedSize() > static_cast<quint32>(LongPayload);
    if (progress != Progress::Ended && m_problem.isEmpty())
        return true;
    m_sender->close();
    return false;
}

/// The length of the frame that has begun; 0 when none has.
quint32 Channel::announcedSize() const
{
    quint32 size = 0;
    if (m_received.size() >= HeadBytes)
        std::memcpy(&size, m_received.constData(), HeadBytes);
    return size;
}

/// Reads from the socket, once. The buffer grows at once to all of a long frame whose head is
/// there.
Channel::Progress Channel::fill()
{
    const int had = m_received.size();
    const int missing = HeadBytes + static_cast<int>(announcedSize()) - had;
    const int wanted = qMax(ReadBytes, missing);
    m_received.resize(had + wanted);
    const ssize_t count = ::recv(m_sender->d->socket, m_received.data() + had,
        static_cast<std::size_t>(wanted), MSG_DONTWAIT);
    m_received.resize(had + static_cast<int>(qMax<ssize_t>(count, 0)));
    if (count > 0)
        return Progress::Data;
    return count < 0 && (isTransient(errno) || wouldBlock(errno)) ? Progress::Later
                                                                  : Progress::Ended;
}

/// Hands the complete frames to the handler, as far as the first failure.
Result<void, QString> Channel::handleFrames()
{
    int next = 0;
    Result<void, QString> result;
    while (result && m_received.size() - next >= HeadBytes) {
        quint32 size = 0;
        std::memcpy(&size, m_received.constData() + next, HeadBytes);
        if (size > static_cast<quint32>(MaxPayload))
            return failure(QStringLiteral("a message of %1 bytes").arg(size));
        if (m_received.size() - next - HeadBytes < static_cast<int>(size))
            break;
        const QByteArray payload = QByteArray::fromRawData(
            m_received.constData() + next + HeadBytes, static_cast<int>(size));
        next += HeadBytes + static_cast<int>(size);
        result = m_handler.received(payload);
    }
    // The memory of a long frame is not kept for the short ones that follow.
    if (next == m_received.size() && next > ReadBytes) {
        m_received = QByteArray();
        m_received.reserve(ReadBytes);
    } else if (next > 0) {
        m_received.remove(0, next);
    }
    return result;
}
