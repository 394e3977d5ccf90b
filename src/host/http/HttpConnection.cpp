// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/http/HttpConnection.h"

#include "api/core/log.h"
#include "host/http/WebSocketSession.h"

#include <QDateTime>
#include <QLocale>

#include <boost/asio/write.hpp>
#include <boost/beast/http/status.hpp>

#include <algorithm>
#include <array>
#include <cerrno>
#include <functional>
#include <sys/socket.h>

VESK_LOGGER("Host.Http")

namespace http = boost::beast::http;

namespace {

constexpr int ReadSize = 8 * 1024;
/// How long what a client still sends is thrown away.
constexpr std::chrono::seconds LingerTime {2};
constexpr quint64 LingerBytes = 4 * 1024 * 1024;
/// The first byte of a TLS record with a handshake (RFC 8446, section 5.1); no method begins so.
constexpr char TlsHandshake = 0x16;
/// An interim response (RFC 9110, section 15.2), which a client must expect at any time.
constexpr char Interim[] = "HTTP/1.1 102 Processing\r\n\r\n";
constexpr char Continue[] = "HTTP/1.1 100 Continue\r\n\r\n";
constexpr char Page[] = "The content browser's page is not installed.\n";

ClientRequest::Ends endsOf(const ClientStream::Socket &socket)
{
    boost::system::error_code gone;
    const auto peer = socket.remote_endpoint(gone);
    const auto local = socket.local_endpoint(gone);
    return {QByteArray::fromStdString(peer.address().to_string()),
        QByteArray::fromStdString(local.address().to_string()), local.port()};
}

const char *reasonOf(unsigned code)
{
    return http::obsolete_reason(http::int_to_status(code)).data();
}

QByteArray httpDate()
{
    return QLocale::c()
               .toString(
                   QDateTime::currentDateTimeUtc(), QStringLiteral("ddd, dd MMM yyyy hh:mm:ss"))
               .toLatin1()
        + " GMT";
}

} // namespace

HttpConnection::HttpConnection(ServerThread &server, ClientId id, ClientStream::Socket socket)
    : m_server(server)
    , m_id(id)
    , m_stream(std::move(socket))
    , m_limit(server.context())
    , m_ends(endsOf(m_stream.socket()))
    , m_peer(m_ends.peer)
    , m_active(std::chrono::steady_clock::now())
    , m_isStranger(!isLoopbackAddress(m_ends.peer) && !server.isProxy(m_ends.peer))
{
}

HttpConnection::~HttpConnection()
{
    m_session.reset();
    if (m_isAnswering)
        m_server.events.left(m_id);
    m_server.forget(m_id);
}

template <class Member>
auto HttpConnection::kept(Member member)
{
    return [this, keep = shared_from_this(), member](auto &&...arguments) {
        std::invoke(member, *this, std::forward<decltype(arguments)>(arguments)...);
    };
}

void HttpConnection::limit(std::chrono::milliseconds time)
{
    if (time.count() <= 0) {
        m_limit.cancel();
        return;
    }
    m_limit.expires_after(time);
    m_limit.async_wait([weak = weak_from_this()](const Error &error) {
        const auto self = weak.lock();
        // It may have been set anew while this call was on its way.
        if (self && !error && self->m_limit.expiry() <= std::chrono::steady_clock::now())
            self->shutDown();
    });
}

void HttpConnection::shutDown()
{
    if (m_isShutDown && !m_isLingering)
        return;
    VESK_DEBUG("connection shut down");
    m_isShutDown = true;
    m_isLingering = false;
    m_limit.cancel();
    m_server.release(m_id);
    m_stream.shutDown();
    // What waits for the socket is told, also by a client that never reads.
    Error ignored;
    m_stream.socket().cancel(ignored);
}

void HttpConnection::setAnswering(bool answering)
{
    m_isAnswering = answering;
    if (answering)
        m_server.hold(m_id, shared_from_this());
    else
        m_server.release(m_id);
}

bool HttpConnection::isIdle() const
{
    return !m_isAnswering && !(m_session && m_session->isWaiting());
}

void HttpConnection::start()
{
    limit(std::chrono::milliseconds(m_server.limits.readTimeout));
    waitForFirst();
}

void HttpConnection::waitForFirst()
{
    m_stream.socket().async_wait(ClientStream::Socket::wait_read, kept(&HttpConnection::begin));
}

void HttpConnection::begin(const Error &error)
{
    if (error || m_isShutDown)
        return shutDown();
    char first = 0;
    const ssize_t size
        = ::recv(m_stream.socket().native_handle(), &first, 1, MSG_PEEK | MSG_DONTWAIT);
    // A wait may end though nothing has come, as when a descriptor is used again.
    if (size < 0 && (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR))
        return waitForFirst();
    if (size != 1)
        return shutDown();
    if (first != TlsHandshake)
        return readHead();
    if (!m_server.tls() || !m_stream.startTls(m_server.tls()))
        return shutDown();
    m_stream.asyncHandshake(kept([](HttpConnection &self, const Error &failed, std::size_t) {
        if (failed) {
            self.m_server.refuse("TLS handshake failed");
            return self.shutDown();
        }
        self.readHead();
    }));
}

template <class Then>
void HttpConnection::readMore(Then then)
{
    const int before = m_buffer.size();
    m_buffer.resize(before + ReadSize);
    m_stream.async_read_some(
        boost::asio::buffer(m_buffer.data() + before, static_cast<std::size_t>(ReadSize)),
        kept([before, then](HttpConnection &self, const Error &error, std::size_t size) {
            self.m_buffer.resize(before + static_cast<int>(size));
            if (error || self.m_isShutDown)
                return self.shutDown();
            self.touch();
            std::invoke(then, self);
        }));
}

void HttpConnection::readHead()
{
    // Empty lines before a request are ignored (RFC 9112, section 2.2).
    while (m_buffer.startsWith("\r\n"))
        m_buffer.remove(0, 2);
    const int end = m_buffer.indexOf("\r\n\r\n");
    if (end >= 0 && end + 4 <= ClientRequest::MaxHead) {
        m_head = m_buffer.left(end + 4);
        m_buffer.remove(0, end + 4);
        return headRead();
    }
    if (m_buffer.size() >= ClientRequest::MaxHead)
        return refuseWith({431, "the head is too large"});
    if (!isStrictHead(m_buffer))
        return refuseWith({400, "this is no HTTP"});
    readMore([isNext = m_buffer.isEmpty() && m_keepsAlive](HttpConnection &self) {
        if (isNext) // the next request has the time of any
            self.limit(std::chrono::milliseconds(self.m_server.limits.readTimeout));
        self.readHead();
    });
}

void HttpConnection::headRead()
{
    m_keepsAlive = false;
    m_request = std::make_unique<ClientRequest>(m_server, m_ends, m_stream.isTls());
    const auto refusal = m_request->takeHead(m_head);
    m_peer = m_request->client();
    m_caller = m_request->caller();
    m_isStranger = m_request->isStranger();
    if (refusal)
        return refusal->isWrongToken ? refuseLater(*refusal) : refuseWith(*refusal);
    if (m_request->wantsContinue()) {
        return boost::asio::async_write(m_stream,
            boost::asio::buffer(Continue, sizeof Continue - 1),
            kept([](HttpConnection &self, const Error &failed, std::size_t) {
                if (failed)
                    return self.shutDown();
                self.readBody();
            }));
    }
    readBody();
}

/// Who guesses tokens waits, longer each time.
void HttpConnection::refuseLater(const ClientRequest::Refusal &refusal)
{
    m_server.refuse("wrong token from " + m_peer);
    const auto wait = m_server.pace.wrongToken(networkOf(m_peer), std::chrono::steady_clock::now());
    limit({});
    const auto timer = std::make_shared<ServerThread::Timer>(m_server.context(), wait);
    timer->async_wait(kept([timer, refusal](HttpConnection &self, const Error &error) {
        if (!error && !self.m_isShutDown)
            self.refuseWith(refusal);
    }));
}

void HttpConnection::readBody()
{
    if (const auto refusal = m_request->takeBody(m_buffer))
        return refuseWith(*refusal);
    if (m_request->isWhole())
        return bodyRead();
    readMore(&HttpConnection::readBody);
}

void HttpConnection::bodyRead()
{
    if (m_request->path() == "/ws")
        return upgrade();
    limit({});
    tell();
}

void HttpConnection::tell()
{
    setAnswering(true);
    touch();
    if (m_request->path() == "/jsonrpc") {
        m_server.events.posted(m_id, m_request->body(), m_caller, m_peer);
        return discard();
    }
    // A body or a second request may follow; only what needs neither is kept open for more.
    m_keepsAlive = m_stream.isTls() && m_request->mayBeFollowed() && m_buffer.isEmpty();
    HttpResource *const known = m_request->resource();
    if (!known)
        return respond({200, "text/plain; charset=utf-8", Page, {}});
    m_server.events.requested(m_id, known, m_request->forResource());
}

/// Reads what nobody wants: what follows a POST, and what follows the last response.
void HttpConnection::discard()
{
    if (m_isDiscarding || m_hasClientFinished)
        return;
    m_isDiscarding = true;
    m_buffer.resize(ReadSize);
    m_stream.async_read_some(
        boost::asio::buffer(m_buffer.data(), static_cast<std::size_t>(ReadSize)),
        kept([](HttpConnection &self, const Error &error, std::size_t) {
            self.m_isDiscarding = false;
            if (!error && !(self.m_isShutDown && !self.m_isLingering))
                return self.discard();
            self.m_hasClientFinished = true;
            if (self.m_isAnswering && error == boost::asio::error::eof)
                self.probe();
            else if (self.m_isAnswering)
                self.leave();
            else if (self.m_isLingering || error != boost::asio::error::eof)
                self.shutDown();
        }));
}

/// The client has closed its sending side, or all of it: then its kernel answers what it is sent
/// with a reset.
void HttpConnection::probe()
{
    if (m_request->isHttp11()) { // an older client must not be sent this
        m_isWriting = true;
        boost::asio::async_write(m_stream, boost::asio::buffer(Interim, sizeof Interim - 1),
            kept([](HttpConnection &self, const Error &, std::size_t) {
                self.m_isWriting = false;
                if (!self.m_responseHead.isEmpty())
                    self.send();
            }));
    }
    m_stream.socket().async_wait(
        ClientStream::Socket::wait_error, kept([](HttpConnection &self, const Error &cancelled) {
            if (!cancelled && self.m_isAnswering)
                self.leave();
        }));
}

void HttpConnection::leave()
{
    setAnswering(false);
    m_server.events.left(m_id);
    shutDown();
}

void HttpConnection::upgrade()
{
    if (!m_request->isUpgrade())
        return refuseWith({400, "this is for WebSockets"});
    limit({});
    m_session = std::make_unique<WebSocketSession>(m_server, *this, m_stream, m_id);
    const QByteArray bytes = m_head + m_buffer;
    m_request.reset();
    m_head.clear();
    m_buffer.clear();
    m_head.squeeze();
    m_buffer.squeeze();
    m_session->start(bytes);
}

void HttpConnection::refuseWith(const ClientRequest::Refusal &refusal)
{
    m_server.refuse(
        "request refused with " + QByteArray::number(refusal.code) + ": " + refusal.reason);
    m_keepsAlive = false;
    write({refusal.code, "text/plain; charset=utf-8", refusal.reason + "\n", refusal.headers});
}

void HttpConnection::respond(const HttpResponse &response)
{
    if (!m_isAnswering || m_isShutDown)
        return;
    setAnswering(false);
    write(response);
}

void HttpConnection::write(const HttpResponse &response)
{
    QVector<QPair<QByteArray, QByteArray>> headers {{"Date", httpDate()},
        {"Content-Security-Policy", "default-src 'self'"}, {"X-Content-Type-Options", "nosniff"},
        {"Referrer-Policy", "no-referrer"}, {"Cache-Control", "no-store"},
        // One request for each connection: those that a browser would keep open, six for each page,
        // do not take up the limited number, and what is left of a refused body is not read as a
        // request. Only over TLS, whose handshake takes time, more may come.
        {"Connection", m_keepsAlive ? "keep-alive" : "close"}};
    for (const auto &entry : response.headers) {
        const auto own = std::find_if(headers.begin(), headers.end(),
            [&](const auto &other) { return other.first == entry.first; });
        if (own != headers.end())
            own->second = entry.second;
        else
            headers.append(entry);
    }
    const bool hasBody = !response.type.isNull();
    if (hasBody)
        headers.append({"Content-Type", response.type});
    if (response.code != 204 && response.code != 304)
        headers.append({"Content-Length", QByteArray::number(response.body.size())});

    m_responseHead
        = "HTTP/1.1 " + QByteArray::number(response.code) + " " + reasonOf(response.code) + "\r\n";
    for (const auto &entry : std::as_const(headers))
        m_responseHead += entry.first + ": " + entry.second + "\r\n";
    m_responseHead += "\r\n";
    m_responseBody = hasBody && !(m_request && m_request->isHead()) ? response.body : QByteArray();
    limit(std::chrono::milliseconds(m_server.limits.writeTimeout));
    touch();
    if (!m_isWriting)
        send();
}

void HttpConnection::send()
{
    m_isWriting = true;
    const std::array<boost::asio::const_buffer, 2> parts {
        boost::asio::buffer(
            m_responseHead.constData(), static_cast<std::size_t>(m_responseHead.size())),
        boost::asio::buffer(
            m_responseBody.constData(), static_cast<std::size_t>(m_responseBody.size()))};
    boost::asio::async_write(
        m_stream, parts, kept([](HttpConnection &self, const Error &error, std::size_t) {
            self.m_isWriting = false;
            self.m_responseHead.clear();
            self.m_responseBody.clear();
            if (error || self.m_isShutDown)
                return self.shutDown();
            if (!self.m_keepsAlive || self.m_server.isClosed())
                return self.linger();
            self.touch();
            self.limit(std::chrono::milliseconds(self.m_server.limits.idleTimeout));
            self.readHead();
        }));
}

void HttpConnection::linger()
{
    if (m_isShutDown)
        return;
    m_isShutDown = true;
    m_isLingering = true;
    m_stream.finishSending();
    if (m_hasClientFinished)
        return shutDown();
    limit(LingerTime);
    m_stream.setReadAllowance(LingerBytes);
    discard();
}
