// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/faults/StreamingServer.h"

#include "api/core/Mutex.h"

#include <algorithm>
#include <arpa/inet.h>
#include <atomic>
#include <cerrno>
#include <list>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <stdexcept>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr int MaxHeadBytes = 64 * 1024;

double secondsSince(Clock::time_point time)
{
    return std::chrono::duration<double>(Clock::now() - time).count();
}

int listenOnLoopback(quint16 &port)
{
    const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto *generic = reinterpret_cast<sockaddr *>(&address);
    if (listener < 0 || bind(listener, generic, size) != 0 || listen(listener, 256) != 0
        || getsockname(listener, generic, &size) != 0)
        throw std::runtime_error("StreamingServer: no port to listen on");
    port = ntohs(address.sin_port);
    return listener;
}

} // namespace

Line::~Line() = default;

struct StreamingServer::Private {
    class Connection;

    explicit Private(Pages all)
        : pages(std::move(all))
        , listener(listenOnLoopback(port))
        , stop(eventfd(0, EFD_CLOEXEC))
    {
        acceptor = std::thread([this] { acceptAll(); });
    }
    ~Private();

    struct Peer {
        std::thread thread;
        bool finished = false;
    };

    void acceptAll();
    void joinFinished();
    void serve(int socket);
    const Script *scriptFor(const QByteArray &path);

    // Fixed after construction.
    const Pages pages;
    quint16 port = 0;
    const int listener;
    const int stop; ///< readable once the server ends
    std::thread acceptor;
    std::atomic<bool> isAway {false};

    mutable VeskMutex mutex;
    std::vector<Arrival> arrivals VESK_GUARDED_BY(mutex);
    std::vector<Clock::time_point> faults VESK_GUARDED_BY(mutex);
    std::map<QByteArray, std::size_t> counts VESK_GUARDED_BY(mutex);
    std::list<Peer> peers VESK_GUARDED_BY(mutex);
};

class StreamingServer::Private::Connection : public Line {
public:
    Connection(Private &server, int socket)
        : m_server(server)
        , m_socket(socket)
    {
        const int on = 1;
        setsockopt(m_socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    }
    ~Connection() override { ::close(m_socket); }

    bool send(const QByteArray &bytes) override
    {
        for (int sent = 0; sent < bytes.size();) {
            if (!ready(POLLOUT, -1))
                return false;
            const auto count = ::send(m_socket, bytes.constData() + sent,
                static_cast<std::size_t>(bytes.size() - sent), MSG_NOSIGNAL | MSG_DONTWAIT);
            if (count < 0 && errno != EAGAIN)
                return false;
            sent += static_cast<int>(std::max<ssize_t>(count, 0));
        }
        return true;
    }

    bool wait(double seconds) override
    {
        const auto until = Clock::now() + std::chrono::duration<double>(seconds);
        do {
            const std::chrono::duration<double, std::milli> left = until - Clock::now();
            if (!ready(0, std::clamp(static_cast<int>(left.count()) + 1, 0, 50)))
                return false;
        } while (Clock::now() < until);
        return true;
    }

    void close() override
    {
        shutdown(m_socket, SHUT_WR);
        // Until the peer has received what was sent.
        char bytes[4096];
        while (ready(POLLIN, 2000) && recv(m_socket, bytes, sizeof bytes, MSG_DONTWAIT) > 0) { }
    }

    void reset() override
    {
        const linger now {1, 0};
        setsockopt(m_socket, SOL_SOCKET, SO_LINGER, &now, sizeof now);
    }

    double age() const override
    {
        const VeskMutexLock lock(m_server.mutex);
        return m_server.arrivals.empty() ? 0 : secondsSince(m_server.arrivals.front().at);
    }

    void markFault() override
    {
        const VeskMutexLock lock(m_server.mutex);
        m_server.faults.push_back(Clock::now());
    }

    /// The path of the request; empty when none comes.
    QByteArray readPath()
    {
        QByteArray request;
        while (!request.contains("\r\n\r\n")) {
            char bytes[4096];
            if (request.size() > MaxHeadBytes || !ready(POLLIN, 10000))
                return {};
            const auto count = recv(m_socket, bytes, sizeof bytes, MSG_DONTWAIT);
            if (count <= 0)
                return {};
            request.append(bytes, static_cast<int>(count));
        }
        return request.split(' ').value(1).split('?').first();
    }

private:
    /// Waits for \a events, or without any for that many milliseconds.
    bool ready(short events, int milliseconds)
    {
        pollfd waits[]
            = {{m_socket, static_cast<short>(events | POLLRDHUP), 0}, {m_server.stop, POLLIN, 0}};
        // A server that is away drops its connections.
        const Clock::time_point begin = Clock::now();
        for (;;) {
            const int count = poll(waits, 2, milliseconds < 0 ? 100 : std::min(milliseconds, 100));
            if (count < 0 && errno != EINTR)
                return false;
            if (m_server.isAway) {
                reset();
                return false;
            }
            if (waits[1].revents || (waits[0].revents & (POLLERR | POLLHUP | POLLRDHUP)))
                return false;
            if (count > 0)
                return true;
            if (milliseconds >= 0 && secondsSince(begin) * 1000 >= milliseconds)
                return events == 0;
        }
    }

    Private &m_server;
    const int m_socket;
};

StreamingServer::Private::~Private()
{
    eventfd_write(stop, 1);
    acceptor.join();
    for (Peer &peer : peers)
        peer.thread.join();
    ::close(stop);
    ::close(listener);
}

void StreamingServer::Private::acceptAll()
{
    for (;;) {
        pollfd waits[] = {{listener, POLLIN, 0}, {stop, POLLIN, 0}};
        if (poll(waits, 2, -1) < 0 && errno != EINTR)
            return;
        if (waits[1].revents)
            return;
        const int socket = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (socket < 0)
            continue;
        joinFinished();
        const VeskMutexLock lock(mutex);
        Peer &peer = peers.emplace_back();
        peer.thread = std::thread([this, socket, &peer] {
            serve(socket);
            const VeskMutexLock end(mutex);
            peer.finished = true;
        });
    }
}

/// Only the acceptor adds and removes peers, so none can disappear while it waits for one.
void StreamingServer::Private::joinFinished()
{
    std::list<Peer> done;
    {
        const VeskMutexLock lock(mutex);
        for (auto it = peers.begin(); it != peers.end();) {
            const auto here = it++;
            if (here->finished)
                done.splice(done.end(), peers, here);
        }
    }
    for (Peer &peer : done)
        peer.thread.join();
}

const Script *StreamingServer::Private::scriptFor(const QByteArray &path)
{
    const VeskMutexLock lock(mutex);
    arrivals.push_back({path, Clock::now()});
    const auto page = pages.find(path);
    if (page == pages.end())
        return nullptr;
    const std::size_t number = counts[path]++;
    return &page->second[std::min(number, page->second.size() - 1)];
}

void StreamingServer::Private::serve(int socket)
{
    Connection connection(*this, socket);
    if (isAway) {
        scriptFor({});
        return connection.reset();
    }
    const QByteArray path = connection.readPath();
    if (path.isEmpty())
        return;
    static const Script missing {script::answer(404)};
    const Script *script = scriptFor(path);
    for (const Step &step : script ? *script : missing) {
        if (!step(connection))
            return;
    }
    connection.close();
}

StreamingServer::StreamingServer(Pages pages)
    : d(std::make_unique<Private>(std::move(pages)))
{
}

StreamingServer::~StreamingServer() = default;

quint16 StreamingServer::port() const
{
    return d->port;
}

std::vector<StreamingServer::Arrival> StreamingServer::arrivals() const
{
    const VeskMutexLock lock(d->mutex);
    return d->arrivals;
}

std::vector<Clock::time_point> StreamingServer::faults() const
{
    const VeskMutexLock lock(d->mutex);
    return d->faults;
}

void StreamingServer::goAway()
{
    d->isAway = true;
}

void StreamingServer::comeBack()
{
    d->isAway = false;
}
