// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/link/Channel.h"

#include "api/core/vesk.h"

#include <QDeadlineTimer>

#include <cerrno>
#include <cstring>
#include <deque>
#include <mutex>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/timerfd.h>
#include <sys/uio.h>
#include <unistd.h>

namespace {

constexpr int HeadBytes = sizeof(quint32);
/// Frames are small, but for the rows of long screens.
constexpr int UsualBytes = 64 * 1024;

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

    /// Sends what waits, as far as the other side takes it. Expects the mutex to be held.
    void flush()
    {
        while (!waiting.empty() && open) {
            const QByteArray &payload = waiting.front();
            const int sent = sendRest(payload, sentOfFirst);
            if (sent < 0) {
                if (!wouldBlock(errno))
                    end();
                return;
            }
            sentOfFirst += sent;
            if (sentOfFirst < HeadBytes + payload.size())
                continue;
            waitingBytes -= payload.size();
            waiting.pop_front();
            sentOfFirst = 0;
        }
    }

    /// Sends what a frame has from its byte \a from on; returns how much of it went, or -1.
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

    void end()
    {
        open = false;
        waiting.clear();
        ::shutdown(socket, SHUT_RDWR);
        wakeThread();
    }

    void wakeThread() const
    {
        const quint64 one = 1;
        [[maybe_unused]] const ssize_t written = ::write(wake, &one, sizeof one);
    }

    const int socket;
    const int wake; ///< has the channel's thread look again what there is to do
    std::mutex mutex;
    /// Guarded by mutex.
    bool open = true;
    std::deque<QByteArray> waiting;
    int sentOfFirst = 0; ///< of its frame
    qint64 waitingBytes = 0;
    QString reason; ///< for which this side ended the connection
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
    const std::lock_guard<std::mutex> lock(d->mutex);
    if (!d->open)
        return false;
    const bool isFirst = d->waiting.empty();
    d->waiting.push_back(payload);
    d->waitingBytes += payload.size();
    if (!isFirst) {
        if (d->waitingBytes > MaxWaiting) {
            d->reason = QStringLiteral("%1 bytes that it does not take").arg(d->waitingBytes);
            d->end();
        }
        return d->open;
    }
    d->flush();
    if (!d->waiting.empty())
        d->wakeThread();
    return d->open;
}

void Channel::Sender::close()
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    d->end();
}

Channel::Channel(int socket)
    : m_sender(std::make_shared<Sender>(socket))
    , m_timer(::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK))
{
    m_received.reserve(UsualBytes);
}

Channel::~Channel()
{
    m_sender->close();
    if (m_thread.joinable()) {
        VESK_ASSERT(m_thread.get_id() != std::this_thread::get_id());
        m_thread.join();
    }
    ::close(m_timer);
}

void Channel::start(Handler handler)
{
    VESK_ASSERT(!m_thread.joinable());
    m_handler = std::move(handler);
    m_thread = std::thread([this] { run(); });
}

QByteArray Channel::receiveOne(int milliseconds)
{
    const QDeadlineTimer deadline(milliseconds);
    QByteArray payload;
    const auto take = [&payload](const QByteArray &received) {
        payload = QByteArray(received.constData(), received.size()); // it is this channel's place
        return QStringLiteral("one is enough");
    };
    m_handler.take = take;
    pollfd descriptor {m_sender->d->socket, POLLIN, 0};
    while (payload.isEmpty() && !deadline.hasExpired()) {
        const auto left = static_cast<int>(deadline.remainingTime());
        if (::poll(&descriptor, 1, left) < 0 && !isTransient(errno))
            break;
        if (descriptor.revents != 0 && fill() == Progress::Ended)
            break;
        if (!takeFrames().isEmpty())
            break;
    }
    return payload;
}

int Channel::socket() const
{
    return m_sender->d->socket;
}

void Channel::whenCanLend(std::function<void()> function)
{
    const std::lock_guard<std::mutex> lock(m_receiving);
    m_whenCanLend = std::move(function);
}

void Channel::lend()
{
    {
        const std::lock_guard<std::mutex> lock(m_lendMutex);
        ++m_lendCount;
        m_isRecalled = false;
        if (std::exchange(m_isLent, true))
            return;
    }
    m_sender->d->wakeThread();
}

void Channel::recall()
{
    {
        const std::lock_guard<std::mutex> lock(m_lendMutex);
        m_isLent = false;
    }
    m_sender->d->wakeThread();
}

void Channel::recallSoon()
{
    const std::lock_guard<std::mutex> lock(m_lendMutex);
    m_isRecalled = m_isLent;
    if (m_isRecalled && !m_isTimed)
        startTimer();
}

/// Expects m_lendMutex to be held.
void Channel::startTimer()
{
    itimerspec when {};
    when.it_value.tv_nsec = std::chrono::nanoseconds(BusyTime).count();
    ::timerfd_settime(m_timer, 0, &when, nullptr);
    m_isTimed = true;
    m_timedCount = m_lendCount;
}

void Channel::onTimer()
{
    quint64 count = 0;
    if (::read(m_timer, &count, sizeof count) < 0)
        return;
    const std::lock_guard<std::mutex> lock(m_lendMutex);
    m_isTimed = false;
    if (!m_isRecalled)
        return;
    if (m_timedCount == m_lendCount)
        m_isLent = false;
    else
        startTimer(); // for a later one
}

bool Channel::receiveNow()
{
    return receiveSome() && canLend();
}

void Channel::run()
{
    veskSetThreadName(QStringLiteral("PluginLink"));
    receive();
    m_sender->close();
    QString reason;
    {
        const std::lock_guard<std::mutex> lock(m_receiving);
        reason = m_problem;
    }
    if (reason.isEmpty()) {
        const std::lock_guard<std::mutex> lock(m_sender->d->mutex);
        reason = m_sender->d->reason;
    }
    m_handler.ended(reason);
}

/// Receives, and sends what waits, until the connection ends.
void Channel::receive()
{
    Sender::Data &sender = *m_sender->d;
    bool mayHaveSome = true; // what came along with the first one
    while (true) {
        if (std::exchange(mayHaveSome, false) && !receiveSome())
            return;
        bool hasToSend = false;
        {
            const std::lock_guard<std::mutex> lock(sender.mutex);
            if (!sender.open)
                return;
            hasToSend = !sender.waiting.empty();
        }
        bool isLent = false;
        {
            const std::lock_guard<std::mutex> lock(m_lendMutex);
            isLent = m_isLent;
        }
        const int wanted = (isLent ? 0 : POLLIN) | (hasToSend ? POLLOUT : 0);
        pollfd descriptors[] = {{wanted == 0 ? -1 : sender.socket, static_cast<short>(wanted), 0},
            {sender.wake, POLLIN, 0}, {m_timer, POLLIN, 0}};
        if (::poll(descriptors, 3, -1) < 0) {
            if (isTransient(errno))
                continue;
            const std::lock_guard<std::mutex> lock(m_receiving);
            m_problem = QString::fromLocal8Bit(std::strerror(errno));
            return;
        }
        if (descriptors[1].revents != 0) {
            quint64 count = 0;
            [[maybe_unused]] const ssize_t taken = ::read(sender.wake, &count, sizeof count);
        }
        if (descriptors[2].revents != 0)
            onTimer();
        if (descriptors[0].revents & POLLOUT) {
            const std::lock_guard<std::mutex> lock(sender.mutex);
            sender.flush();
        }
        mayHaveSome = (descriptors[0].revents & (POLLIN | POLLHUP | POLLERR)) != 0;
    }
}

/// Takes what the socket has now. Returns false at the end of the connection, which it makes for
/// what is wrong.
bool Channel::receiveSome()
{
    const std::lock_guard<std::mutex> lock(m_receiving);
    if (!m_problem.isEmpty())
        return false;
    const Progress progress = fill();
    m_problem = takeFrames();
    quint32 size = 0;
    if (m_received.size() >= HeadBytes)
        std::memcpy(&size, m_received.constData(), HeadBytes);
    const bool goesOn = progress != Progress::Ended && m_problem.isEmpty();
    const bool isForThread = !goesOn || size > static_cast<quint32>(UsualBytes);
    if (m_isForThread.exchange(isForThread) && !isForThread && m_whenCanLend)
        m_whenCanLend();
    if (!goesOn)
        m_sender->close();
    return goesOn;
}

/// Takes what the socket has. A frame that is known to be long gets its whole place at once.
Channel::Progress Channel::fill()
{
    const int had = m_received.size();
    int wanted = UsualBytes;
    if (had >= HeadBytes) {
        quint32 size = 0;
        std::memcpy(&size, m_received.constData(), HeadBytes);
        wanted = qMax(wanted, HeadBytes + static_cast<int>(size) - had);
    }
    m_received.resize(had + wanted);
    const ssize_t count = ::recv(m_sender->d->socket, m_received.data() + had,
        static_cast<std::size_t>(wanted), MSG_DONTWAIT);
    m_received.resize(had + static_cast<int>(qMax<ssize_t>(count, 0)));
    if (count > 0)
        return Progress::Data;
    return count < 0 && (isTransient(errno) || wouldBlock(errno)) ? Progress::Later
                                                                  : Progress::Ended;
}

/// Hands on the frames that are whole; says what is wrong with one.
QString Channel::takeFrames()
{
    int next = 0;
    QString problem;
    while (problem.isEmpty() && m_received.size() - next >= HeadBytes) {
        quint32 size = 0;
        std::memcpy(&size, m_received.constData() + next, HeadBytes);
        if (size > static_cast<quint32>(MaxPayload)) {
            problem = QStringLiteral("a message of %1 bytes").arg(size);
            break;
        }
        if (m_received.size() - next - HeadBytes < static_cast<int>(size))
            break;
        const QByteArray payload = QByteArray::fromRawData(
            m_received.constData() + next + HeadBytes, static_cast<int>(size));
        next += HeadBytes + static_cast<int>(size);
        problem = m_handler.take(payload);
    }
    // The place of a long frame is not kept for the short ones.
    if (next == m_received.size() && next > UsualBytes) {
        m_received = QByteArray();
        m_received.reserve(UsualBytes);
    } else if (next > 0) {
        m_received.remove(0, next);
    }
    return problem;
}
