// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/support/ScriptedServer.h"

#include "api/core/Mutex.h"

#include <arpa/inet.h>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <list>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <openssl/ssl.h>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace {

/// More than any test sends; a runaway client is cut off here.
constexpr int MaxHeadBytes = 256 * 1024;
constexpr int MaxBodyBytes = 64 * 1024 * 1024;

using SslContext = std::unique_ptr<SSL_CTX, decltype(&SSL_CTX_free)>;

[[noreturn]] void fail(const char *what)
{
    throw std::runtime_error(std::string("ScriptedServer: ") + what);
}

/// One accepted connection, plain or TLS. Lives on its own thread; shutDown() may be called from
/// another while the object exists.
class Connection {
public:
    explicit Connection(int socket)
        : m_socket(socket)
    {
        const int on = 1;
        setsockopt(m_socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    }
    ~Connection()
    {
        SSL_free(m_ssl);
        close(m_socket);
    }
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    bool startTls(SSL_CTX *context)
    {
        m_ssl = SSL_new(context);
        return m_ssl && SSL_set_fd(m_ssl, m_socket) == 1 && SSL_accept(m_ssl) == 1;
    }

    /// Appends what comes next; false at the end.
    bool receive(QByteArray &buffer)
    {
        char bytes[16 * 1024];
        const auto count = m_ssl ? SSL_read(m_ssl, bytes, sizeof bytes)
                                 : static_cast<int>(recv(m_socket, bytes, sizeof bytes, 0));
        if (count <= 0)
            return false;
        buffer.append(bytes, count);
        return true;
    }

    bool send(const QByteArray &bytes)
    {
        int sent = 0;
        while (sent < bytes.size()) {
            const char *at = bytes.constData() + sent;
            const int left = bytes.size() - sent;
            const auto count = m_ssl ? SSL_write(m_ssl, at, left)
                                     : static_cast<int>(::send(m_socket, at, left, MSG_NOSIGNAL));
            if (count <= 0)
                return false;
            sent += count;
        }
        return true;
    }

    /// Reads and drops until the other side, or shutDown(), ends it.
    void stall()
    {
        QByteArray dropped;
        while (receive(dropped))
            dropped.clear();
    }

    void closeInOrder()
    {
        if (m_ssl)
            SSL_shutdown(m_ssl);
        ::shutdown(m_socket, SHUT_WR);
    }

    /// The destructor's close() then sends RST in place of FIN.
    void resetOnClose()
    {
        const linger hard {1, 0};
        setsockopt(m_socket, SOL_SOCKET, SO_LINGER, &hard, sizeof hard);
    }

    void shutDown() { ::shutdown(m_socket, SHUT_RDWR); }

private:
    const int m_socket;
    SSL *m_ssl = nullptr;
};

QByteArray headerOf(const ScriptedServer::Headers &headers, const QByteArray &name)
{
    for (const auto &header : headers) {
        if (header.first.compare(name, Qt::CaseInsensitive) == 0)
            return header.second;
    }
    return {};
}

/// Fills \a request from a head without its closing empty line.
bool parseHead(const QByteArray &head, ScriptedServer::Request &request, QByteArray &version)
{
    const QList<QByteArray> lines = head.split('\n');
    const QList<QByteArray> words = lines.first().trimmed().split(' ');
    if (words.size() != 3)
        return false;
    request.method = words.at(0);
    request.target = words.at(1);
    version = words.at(2);
    for (int i = 1; i < lines.size(); ++i) {
        const QByteArray line = lines.at(i).trimmed();
        const int colon = line.indexOf(':');
        if (colon < 1)
            return false;
        request.headers.append({line.left(colon), line.mid(colon + 1).trimmed()});
    }
    return true;
}

/// Takes the next request out of \a buffer, reading more as needed; false at the end.
bool readRequest(
    Connection &connection, QByteArray &buffer, ScriptedServer::Request &request, bool &keepAlive)
{
    int end = -1;
    while ((end = buffer.indexOf("\r\n\r\n")) < 0) {
        if (buffer.size() > MaxHeadBytes || !connection.receive(buffer))
            return false;
        // A client that speaks TLS to a plain server shall not wait for an answer.
        if (buffer.at(0) < 'A' || buffer.at(0) > 'Z')
            return false;
    }
    QByteArray version;
    if (!parseHead(buffer.left(end), request, version))
        return false;
    buffer.remove(0, end + 4);

    if (request.header("Expect").compare("100-continue", Qt::CaseInsensitive) == 0
        && !connection.send("HTTP/1.1 100 Continue\r\n\r\n"))
        return false;
    const int length = request.header("Content-Length").toInt();
    if (length < 0 || length > MaxBodyBytes)
        return false;
    while (buffer.size() < length) {
        if (!connection.receive(buffer))
            return false;
    }
    request.body = buffer.left(length);
    buffer.remove(0, length);
    keepAlive = version == "HTTP/1.1"
        && request.header("Connection").compare("close", Qt::CaseInsensitive) != 0;
    return true;
}

QByteArray headText(const ScriptedServer::Response &response)
{
    QByteArray head = "HTTP/1.1 " + QByteArray::number(response.code) + " Scripted\r\n";
    for (const auto &header : response.headers)
        head += header.first + ": " + header.second + "\r\n";
    const bool hasLength = response.code != 204 && response.code != 304
        && headerOf(response.headers, "Transfer-Encoding").isNull()
        && headerOf(response.headers, "Content-Length").isNull();
    if (hasLength)
        head += "Content-Length: " + QByteArray::number(response.body.size()) + "\r\n";
    return head + "\r\n";
}

/// Sends the answer; returns whether the connection can be used on.
bool answer(Connection &connection, const ScriptedServer::Request &request,
    const ScriptedServer::Response &response)
{
    using End = ScriptedServer::End;
    if (response.end == End::StallBeforeHead) {
        connection.stall();
        return false;
    }
    if (response.end == End::ResetBeforeHead) {
        connection.resetOnClose();
        return false;
    }
    const bool hasBody = request.method != "HEAD" && response.code != 204 && response.code != 304;
    const bool raw = response.end == End::Raw || response.end == End::RawStall;
    const bool whole = response.end == End::Complete || response.end == End::Close || raw;
    QByteArray bytes = raw ? QByteArray() : headText(response);
    if (hasBody || raw)
        bytes += whole ? response.body : response.body.left(response.sendBytes);
    const bool sent = connection.send(bytes);
    if (response.end == End::Stall || response.end == End::RawStall)
        connection.stall();
    else if (response.end == End::Reset)
        connection.resetOnClose();
    else if (response.end != End::Complete)
        connection.closeInOrder();
    return sent && response.end == End::Complete;
}

SslContext makeTlsContext(const QByteArray &certificateFile, const QByteArray &keyFile)
{
    SslContext context(SSL_CTX_new(TLS_server_method()), &SSL_CTX_free);
    if (!context
        || SSL_CTX_use_certificate_chain_file(context.get(), certificateFile.constData()) != 1
        || SSL_CTX_use_PrivateKey_file(context.get(), keyFile.constData(), SSL_FILETYPE_PEM) != 1)
        fail("certificate or key cannot be used");
    return context;
}

/// Listens on a free loopback port and returns the socket.
int listenOnLoopback(quint16 &port)
{
    const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto *generic = reinterpret_cast<sockaddr *>(&address);
    // Ports whose connections of a minute ago still linger are free for this.
    const int on = 1;
    if (listener < 0 || setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) != 0
        || bind(listener, generic, size) != 0 || listen(listener, 128) != 0
        || getsockname(listener, generic, &size) != 0)
        fail("no port to listen on");
    port = ntohs(address.sin_port);
    return listener;
}

} // namespace

QByteArray ScriptedServer::Request::header(const QByteArray &name) const
{
    return headerOf(headers, name);
}

QByteArray ScriptedServer::Request::path() const
{
    const int mark = target.indexOf('?');
    return mark < 0 ? target : target.left(mark);
}

QByteArray ScriptedServer::Request::query() const
{
    const int mark = target.indexOf('?');
    return mark < 0 ? QByteArray() : target.mid(mark + 1);
}

struct ScriptedServer::Private {
    struct Peer {
        std::thread thread;
        Connection *connection = nullptr; ///< Null once the thread is done with it.
        bool finished = false;
    };

    explicit Private(SslContext context)
        : tls(std::move(context))
        , listener(listenOnLoopback(port))
        , stop(eventfd(0, EFD_CLOEXEC))
    {
        acceptor = std::thread([this] { acceptAll(); });
    }

    ~Private()
    {
        {
            const VeskMutexLock lock(mutex);
            stopping = true;
            for (Peer &peer : peers) {
                if (peer.connection)
                    peer.connection->shutDown();
            }
        }
        eventfd_write(stop, 1);
        acceptor.join();
        for (Peer &peer : peers)
            peer.thread.join();
        close(stop);
        close(listener);
    }

    void acceptAll()
    {
        for (;;) {
            pollfd waits[] = {{listener, POLLIN, 0}, {stop, POLLIN, 0}};
            if (poll(waits, 2, -1) < 0 && errno != EINTR)
                return;
            if (waits[1].revents)
                return;
            if (!(waits[0].revents & POLLIN))
                continue;
            const int socket = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
            if (socket < 0)
                continue;
            joinFinished();
            const VeskMutexLock lock(mutex);
            ++accepted;
            peers.emplace_back();
            Peer &peer = peers.back();
            peer.thread = std::thread([this, socket, &peer] { serve(socket, peer); });
        }
    }

    /// Only the acceptor adds and removes peers, so none can disappear while it waits for one.
    void joinFinished()
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

    void serve(int socket, Peer &peer)
    {
        // OpenSSL writes without MSG_NOSIGNAL.
        sigset_t pipe;
        sigemptyset(&pipe);
        sigaddset(&pipe, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &pipe, nullptr);
        {
            Connection connection(socket);
            {
                const VeskMutexLock lock(mutex);
                peer.connection = &connection;
                if (stopping)
                    connection.shutDown();
            }
            if (!tls || connection.startTls(tls.get()))
                serveRequests(connection);
            const VeskMutexLock lock(mutex);
            peer.connection = nullptr;
        }
        const VeskMutexLock lock(mutex);
        peer.finished = true;
    }

    void serveRequests(Connection &connection)
    {
        QByteArray buffer;
        for (bool keepAlive = true; keepAlive;) {
            Request request;
            if (!readRequest(connection, buffer, request, keepAlive))
                return;
            Handler current;
            {
                const VeskMutexLock lock(mutex);
                recorded.append(request);
                current = handler;
            }
            arrived.notify_all();
            if (!answer(connection, request, current(request)))
                return;
        }
        connection.closeInOrder();
    }

    // Fixed after construction.
    const SslContext tls;
    quint16 port = 0;
    const int listener;
    const int stop;
    std::thread acceptor;

    std::condition_variable arrived;
    VeskMutex mutex;
    Handler handler VESK_GUARDED_BY(mutex);
    QList<Request> recorded VESK_GUARDED_BY(mutex);
    std::list<Peer> peers VESK_GUARDED_BY(mutex);
    int accepted VESK_GUARDED_BY(mutex) = 0;
    bool stopping VESK_GUARDED_BY(mutex) = false;
};

ScriptedServer::ScriptedServer(Handler handler)
    : d(std::make_unique<Private>(SslContext(nullptr, &SSL_CTX_free)))
{
    setHandler(std::move(handler));
}

ScriptedServer::ScriptedServer(
    Handler handler, const QByteArray &certificateFile, const QByteArray &keyFile)
    : d(std::make_unique<Private>(makeTlsContext(certificateFile, keyFile)))
{
    setHandler(std::move(handler));
}

ScriptedServer::~ScriptedServer() = default;

quint16 ScriptedServer::port() const
{
    return d->port;
}

QByteArray ScriptedServer::connectTo(const QByteArray &host) const
{
    return host + (d->tls ? ":443:127.0.0.1:" : ":80:127.0.0.1:") + QByteArray::number(d->port);
}

void ScriptedServer::setHandler(Handler handler)
{
    const VeskMutexLock lock(d->mutex);
    d->handler = std::move(handler);
}

QList<ScriptedServer::Request> ScriptedServer::requests() const
{
    const VeskMutexLock lock(d->mutex);
    return d->recorded;
}

QList<QByteArray> ScriptedServer::requestLines() const
{
    QList<QByteArray> lines;
    for (const Request &request : requests())
        lines.append(request.method + ' ' + request.target);
    return lines;
}

void ScriptedServer::clearRequests()
{
    const VeskMutexLock lock(d->mutex);
    d->recorded.clear();
}

bool ScriptedServer::waitForRequests(int count, int milliseconds) const
{
    const auto deadline
        = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    VeskMutexLock lock(d->mutex);
    while (d->recorded.size() < count) {
        if (!lock.waitUntil(d->arrived, deadline))
            return d->recorded.size() >= count;
    }
    return true;
}

int ScriptedServer::connections() const
{
    const VeskMutexLock lock(d->mutex);
    return d->accepted;
}
