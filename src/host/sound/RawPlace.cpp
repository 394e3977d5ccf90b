// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/sound/RawPlace.h"

#include "api/core/vesk.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <gio/gio.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// A place that dropped something is slow until it has taken a second of sound in one piece.
constexpr std::size_t Recovered = 48000 * RawPlace::FrameSize;

} // namespace

RawPlace::Health RawPlace::write(const char *frames, std::size_t size)
{
    Health why = Health::Opening;
    const int place = descriptor(why);
    if (place < 0) {
        m_owed.clear();
        m_isSlow = false;
        m_dropped = 0;
        return why;
    }
    bool isLost = false;
    m_owed.erase(0, writeSome(place, m_owed.data(), m_owed.size(), isLost));
    std::size_t taken = 0;
    if (m_owed.empty() && !isLost) {
        taken = writeSome(place, frames, size, isLost);
        // A frame that was begun is completed the next time.
        const std::size_t whole = (taken + FrameSize - 1) / FrameSize * FrameSize;
        m_owed.assign(frames + taken, whole - taken);
    }
    m_dropped = taken ? 0 : m_dropped + size;
    if (isLost || m_dropped > Patience) {
        m_owed.clear();
        m_isSlow = false;
        m_dropped = 0;
        lost();
        return Health::Absent;
    }
    m_taken = taken == size ? m_taken + taken : 0;
    m_isSlow = taken < size || (m_isSlow && m_taken < Recovered);
    if (const Health health = heard(); health != Health::Fine) {
        m_isSlow = false;
        return health;
    }
    return m_isSlow ? Health::Slow : Health::Fine;
}

std::size_t RawPlace::writeSome(int descriptor, const char *data, std::size_t size, bool &isLost)
{
    std::size_t taken = 0;
    while (taken < size) {
        const ssize_t count = put(descriptor, data + taken, size - taken);
        if (count > 0) {
            taken += static_cast<std::size_t>(count);
        } else if (count == 0 || errno != EINTR) {
            isLost = count < 0 && errno != EAGAIN;
            break;
        }
    }
    return taken;
}

int RawFifo::descriptor(Health &why)
{
    if (!m_fifo.isOpen() && !open()) {
        why = Health::Unusable;
        return -1;
    }
    if (m_own.isOpen())
        lookForReader();
    return m_fifo.number();
}

/// Both ends, so that it does not take a reader. Otherwise sets the reason.
bool RawFifo::open()
{
    constexpr mode_t Mode = 0666; // as far as the umask allows
    struct stat status { };
    const bool isThere = ::stat(m_file.c_str(), &status) == 0
        || (errno == ENOENT && ::mkfifo(m_file.c_str(), Mode) == 0
            && ::stat(m_file.c_str(), &status) == 0);
    // What is something else by now is not even opened.
    if (!isThere || !S_ISFIFO(status.st_mode)) {
        setReason(isThere ? "not a FIFO" : std::strerror(errno));
        return false;
    }
    constexpr int Flags = O_NONBLOCK | O_CLOEXEC | O_NOCTTY;
    files::Descriptor own(::open(m_file.c_str(), O_RDONLY | Flags));
    files::Descriptor fifo(::open(m_file.c_str(), O_WRONLY | Flags));
    if (!own.isOpen() || !fifo.isOpen()) {
        setReason(std::strerror(errno));
        return false;
    }
    m_own = std::move(own);
    m_fifo = std::move(fifo);
    m_waiting = 0;
    return true;
}

void RawFifo::lookForReader()
{
    int waiting = 0;
    if (::ioctl(m_own.number(), FIONREAD, &waiting) == 0 && waiting < m_waiting) {
        m_own = {};
        m_unread = 0;
        return;
    }
    char old[1 << 16];
    while (::read(m_own.number(), old, sizeof old) > 0) { }
    forgetBegun();
    m_waiting = 0;
    m_unread = std::min(m_unread + 1, Unread);
}

ssize_t RawFifo::put(int descriptor, const char *data, std::size_t size)
{
    const ssize_t count = ::write(descriptor, data, size);
    if (m_own.isOpen() && count > 0)
        m_waiting += count;
    return count;
}

void RawFifo::lost()
{
    m_fifo = {};
    m_own = {};
    m_unread = Unread;
}

RawPlace::Health RawFifo::heard() const
{
    if (!m_own.isOpen())
        return Health::Fine;
    return m_unread < Unread ? Health::Opening : Health::Absent;
}

RawServer::RawServer(std::string host, int port)
    : m_host(std::move(host))
    , m_port(port)
    , m_cancel(g_cancellable_new())
    , m_thread([this] { run(); })
{
}

RawServer::~RawServer()
{
    {
        const VeskMutexLock lock(m_mutex);
        m_ending = true;
    }
    m_changed.notify_all();
    g_cancellable_cancel(m_cancel);
    m_thread.join();
    g_object_unref(m_cancel);
}

void RawServer::run()
{
    veskSetThreadName(QStringLiteral("SoundServer"));
    std::chrono::seconds wait {1};
    VeskMutexLock lock(m_mutex);
    while (!m_ending) {
        lock.unlock();
        GSocketConnection *connection = connectOnce();
        lock.lock();
        if (connection) {
            m_connection = connection;
            wait = std::chrono::seconds(1);
            while (!m_ending && m_connection)
                lock.wait(m_changed);
            m_connection = nullptr;
            g_object_unref(connection);
        }
        m_why = Health::Absent;
        // Also after a connection, because a server that closes each at once is no better than
        // none.
        const auto deadline = std::chrono::steady_clock::now() + wait;
        while (!m_ending && lock.waitUntil(m_changed, deadline)) { }
        wait = std::min(2 * wait, std::chrono::seconds(MaxWait));
    }
}

/// Null without a connection; returns at once when it is cancelled, also out of a name look-up.
GSocketConnection *RawServer::connectOnce() const
{
    GSocketClient *client = g_socket_client_new();
    g_socket_client_set_enable_proxy(client, FALSE);
    g_socket_client_set_timeout(client, ConnectTime);
    GSocketConnectable *address
        = g_network_address_new(m_host.c_str(), static_cast<guint16>(m_port));
    GSocketConnection *connection = g_socket_client_connect(client, address, m_cancel, nullptr);
    if (connection) {
        GSocket *socket = g_socket_connection_get_socket(connection);
        // What waits in the system's buffer is heard late, and is all for nothing if nobody reads.
        g_socket_set_option(socket, SOL_SOCKET, SO_SNDBUF, BufferSize, nullptr);
    }
    g_object_unref(address);
    g_object_unref(client);
    return connection;
}

int RawServer::descriptor(Health &why)
{
    const VeskMutexLock lock(m_mutex);
    why = m_why;
    return m_connection ? g_socket_get_fd(g_socket_connection_get_socket(m_connection)) : -1;
}

ssize_t RawServer::put(int descriptor, const char *data, std::size_t size)
{
    return ::send(descriptor, data, size, MSG_DONTWAIT | MSG_NOSIGNAL);
}

void RawServer::lost()
{
    {
        const VeskMutexLock lock(m_mutex);
        // The thread closes it.
        m_connection = nullptr;
        m_why = Health::Absent;
    }
    m_changed.notify_all();
}
