// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/http/HttpServer.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "api/core/vesk.h"
#include "host/http/HttpConnections.h"
#include "host/http/HttpResource.h"
#include "host/http/HttpRules.h"
#include "host/http/MessageHandler.h"
#include "host/http/RefusalLog.h"
#include "host/http/WebSocketSession.h"

#include <QPointer>

#include <libsoup/soup.h>

VESK_LOGGER("Host.Http")

namespace {

/// Connections beyond the limit that are still sent the reason, or are being closed; more are
/// dropped at once.
constexpr int RefusedConnections = 16;

constexpr char Page[] = "The content browser's page is not installed.\n";

/// What the server knows of one request. Owned by libsoup's message.
struct RequestState {
    QPointer<HttpConnection> connection;
    QByteArray body;
    bool isTooLarge = false;
    bool isFinished = false;
};

RequestState *stateOf(SoupServerMessage *message)
{
    return static_cast<RequestState *>(g_object_get_data(G_OBJECT(message), "vesk"));
}

/// Keeps a message for a response that comes later.
class MessageRef {
public:
    explicit MessageRef(SoupServerMessage *message)
        : m_message(SOUP_SERVER_MESSAGE(g_object_ref(message)))
    {
    }
    MessageRef(const MessageRef &other)
        : MessageRef(other.m_message)
    {
    }
    MessageRef &operator=(const MessageRef &) = delete;
    ~MessageRef() { g_object_unref(m_message); }

    SoupServerMessage *get() const { return m_message; }

private:
    SoupServerMessage *const m_message;
};

/// All headers of that name, joined by commas. Where one is expected, two match nothing.
QByteArray header(SoupServerMessage *message, const char *name)
{
    return soup_message_headers_get_list(soup_server_message_get_request_headers(message), name);
}

/// What a path offers, by its method.
struct Route {
    const char *path;
    const char *allow;
};

constexpr Route Routes[] = {{"/", "GET, HEAD"}, {"/jsonrpc", "POST"}, {"/ws", "GET"}};

bool allows(const char *methods, const QByteArray &method)
{
    return QByteArray(methods).replace(", ", ",").split(',').contains(method);
}

} // namespace

class HttpServerPrivate {
public:
    HttpServer *q = nullptr;
    MessageHandler *handler = nullptr;
    HttpServerLimits limits;
    SoupServer *server = nullptr;
    HttpConnections connections;
    QVector<HttpResource *> resources;
    bool isClosed = false;
    QString address;
    RefusalLog refusals {[](const QByteArray &line) { VESK_WARN(line); }};

    /// What libsoup calls; \a data is this.
    static void requestStarted(SoupServer *, SoupServerMessage *message, gpointer data);
    static void early(
        SoupServer *, SoupServerMessage *message, const char *path, GHashTable *, gpointer data);
    static void gotChunk(SoupServerMessage *message, GBytes *chunk, gpointer data);
    static void gotBody(
        SoupServer *, SoupServerMessage *message, const char *path, GHashTable *, gpointer data);
    static void upgraded(SoupServerMessage *message, gpointer data);

    void accept(HttpConnection *connection);
    static void limit(SoupServerMessage *message, int milliseconds);
    static void setAnswering(SoupServerMessage *message, bool answering);
    /// Whether the request's head was refused.
    bool refuse(SoupServerMessage *message, const char *path);
    HttpResource *resourceAt(const char *path) const;
    /// The methods that \a path takes; null when there is nothing at it.
    const char *methodsAt(const char *path) const;
    void handleMessage(SoupServerMessage *message);
    static QObject *watchClient(SoupServerMessage *message);
    void read(HttpResource *resource, SoupServerMessage *message, const char *path);
    void upgrade(SoupServerMessage *message);
    /// Whether \a message can still be answered.
    bool isOpen(SoupServerMessage *message) const;
    void respond(SoupServerMessage *message, const HttpResponse &response);
    void refuseWith(SoupServerMessage *message, unsigned code, const QByteArray &reason);
};

void HttpServerPrivate::accept(HttpConnection *connection)
{
    if (connections.count() > limits.connections + RefusedConnections)
        return refusals.log("connection shut down: too many connections");
    if (connections.active() > limits.connections)
        connections.makeSpace(connection);
    connection->limit(limits.readTimeout);
    GError *error = nullptr;
    if (!soup_server_accept_iostream(server, connection->stream(), connection->localAddress(),
            connection->remoteAddress(), &error)) {
        refusals.log("connection not accepted: " + QByteArray(error->message));
        g_error_free(error);
    }
}

void HttpServerPrivate::requestStarted(SoupServer *, SoupServerMessage *message, gpointer data)
{
    auto *state = new RequestState;
    state->connection
        = HttpConnection::ofRemoteAddress(soup_server_message_get_remote_address(message));
    g_object_set_data_full(G_OBJECT(message), "vesk", state,
        [](gpointer owned) { delete static_cast<RequestState *>(owned); });
    soup_message_body_set_accumulate(soup_server_message_get_request_body(message), FALSE);
    g_signal_connect(message, "got-chunk", G_CALLBACK(&gotChunk), data);
    const auto finished
        = +[](SoupServerMessage *ended, gpointer) { stateOf(ended)->isFinished = true; };
    g_signal_connect(message, "finished", G_CALLBACK(finished), nullptr);
}

void HttpServerPrivate::limit(SoupServerMessage *message, int milliseconds)
{
    if (HttpConnection *connection = stateOf(message)->connection)
        connection->limit(milliseconds);
}

void HttpServerPrivate::setAnswering(SoupServerMessage *message, bool answering)
{
    if (HttpConnection *connection = stateOf(message)->connection)
        connection->setAnswering(answering);
}

void HttpServerPrivate::early(
    SoupServer *, SoupServerMessage *message, const char *path, GHashTable *, gpointer data)
{
    auto *self = static_cast<HttpServerPrivate *>(data);
    if (self->refuse(message, path))
        stateOf(message)->isTooLarge = true; // the rest of its body is dropped
}

bool HttpServerPrivate::refuse(SoupServerMessage *message, const char *path)
{
    const auto refusedWith = [&](unsigned code, const QByteArray &reason) {
        refuseWith(message, code, reason);
        return true;
    };
    SoupMessageHeaders *headers = soup_server_message_get_request_headers(message);
    const QByteArray method = soup_server_message_get_method(message);
    const QByteArray host = header(message, "Host");
    const QByteArray origin = header(message, "Origin");

    if (connections.active() > limits.connections)
        return refusedWith(SOUP_STATUS_SERVICE_UNAVAILABLE, "too many connections");
    if (!isLoopbackHost(host, connections.port()))
        return refusedWith(SOUP_STATUS_FORBIDDEN, "wrong host");
    if (!origin.isNull() && !isSameOrigin(origin, host))
        return refusedWith(SOUP_STATUS_FORBIDDEN, "wrong origin");
    const char *methods = methodsAt(path);
    if (!methods)
        return refusedWith(SOUP_STATUS_NOT_FOUND, "there is nothing here");
    if (!allows(methods, method)) {
        soup_message_headers_replace(
            soup_server_message_get_response_headers(message), "Allow", methods);
        return refusedWith(SOUP_STATUS_METHOD_NOT_ALLOWED, "wrong method");
    }
    if (method == "POST" && !isJsonContentType(header(message, "Content-Type")))
        return refusedWith(SOUP_STATUS_UNSUPPORTED_MEDIA_TYPE, "application/json is needed");
    if (soup_message_headers_get_encoding(headers) == SOUP_ENCODING_CONTENT_LENGTH
        && soup_message_headers_get_content_length(headers) > limits.bodySize)
        return refusedWith(SOUP_STATUS_REQUEST_ENTITY_TOO_LARGE, "the body is too large");
    return false;
}

void HttpServerPrivate::gotChunk(SoupServerMessage *message, GBytes *chunk, gpointer data)
{
    auto *self = static_cast<HttpServerPrivate *>(data);
    RequestState *state = stateOf(message);
    if (state->isTooLarge)
        return;
    gsize size = 0;
    const void *bytes = g_bytes_get_data(chunk, &size);
    if (size > static_cast<gsize>(self->limits.bodySize - state->body.size())) {
        state->isTooLarge = true;
        state->body.clear();
        return;
    }
    state->body.append(static_cast<const char *>(bytes), static_cast<int>(size));
}

void HttpServerPrivate::gotBody(
    SoupServer *, SoupServerMessage *message, const char *path, GHashTable *, gpointer data)
{
    auto *self = static_cast<HttpServerPrivate *>(data);
    if (stateOf(message)->isTooLarge) {
        self->refuseWith(message, SOUP_STATUS_REQUEST_ENTITY_TOO_LARGE, "the body is too large");
    } else if (qstrcmp(path, "/jsonrpc") == 0) {
        self->handleMessage(message);
    } else if (qstrcmp(path, "/ws") == 0) {
        self->upgrade(message);
    } else if (HttpResource *resource = self->resourceAt(path)) {
        self->read(resource, message, path);
    } else {
        self->respond(message, {SOUP_STATUS_OK, "text/plain; charset=utf-8", Page, {}});
    }
}

HttpResource *HttpServerPrivate::resourceAt(const char *path) const
{
    for (HttpResource *resource : resources) {
        if (resource->owns(path))
            return resource;
    }
    return nullptr;
}

const char *HttpServerPrivate::methodsAt(const char *path) const
{
    for (const Route &route : Routes) {
        if (qstrcmp(route.path, path) == 0)
            return route.allow;
    }
    return resourceAt(path) ? "GET, HEAD" : nullptr;
}

bool HttpServerPrivate::isOpen(SoupServerMessage *message) const
{
    // A message whose connection went may not be resumed; close() ends all without a signal.
    return !isClosed && !stateOf(message)->isFinished;
}

void HttpServerPrivate::handleMessage(SoupServerMessage *message)
{
    limit(message, 0);
    setAnswering(message, true);
    // Paused until the response is there, which may be at once.
    soup_server_message_pause(message);
    QObject *client = watchClient(message);
    const QPointer<HttpServer> guard(q);
    handler->handle(stateOf(message)->body, nullptr, client,
        [this, guard, keep = MessageRef(message)](const QByteArray &reply) {
            if (!guard || !isOpen(keep.get()))
                return;
            if (reply.isEmpty())
                respond(keep.get(), {SOUP_STATUS_NO_CONTENT, {}, {}, {}});
            else
                respond(keep.get(), {SOUP_STATUS_OK, "application/json", reply, {}});
            soup_server_message_unpause(keep.get());
        });
}

/// An object that lasts as long as the client waits for its response.
QObject *HttpServerPrivate::watchClient(SoupServerMessage *message)
{
    HttpConnection *connection = stateOf(message)->connection;
    if (!connection)
        return nullptr;
    auto *client = new QObject(connection);
    veskConnect(connection, &HttpConnection::hungUp, client, &QObject::deleteLater);
    connection->watchForEnd(soup_server_message_get_http_version(message) != SOUP_HTTP_1_0);
    return client;
}

void HttpServerPrivate::read(HttpResource *resource, SoupServerMessage *message, const char *path)
{
    limit(message, 0);
    setAnswering(message, true);
    soup_server_message_pause(message);
    const QPointer<HttpServer> guard(q);
    const HttpRequest request {path, header(message, "Host"), header(message, "Accept-Encoding"),
        header(message, "If-None-Match")};
    resource->get(request, [this, guard, keep = MessageRef(message)](const HttpResponse &response) {
        if (!guard || !isOpen(keep.get()))
            return;
        respond(keep.get(), response);
        soup_server_message_unpause(keep.get());
    });
}

void HttpServerPrivate::upgrade(SoupServerMessage *message)
{
    if (soup_websocket_server_process_handshake(message, nullptr, nullptr, nullptr, nullptr)) {
        g_signal_connect(message, "wrote-informational", G_CALLBACK(&upgraded), this);
        return;
    }
    // libsoup has written a page about it.
    soup_message_body_truncate(soup_server_message_get_response_body(message));
    refuseWith(message, SOUP_STATUS_BAD_REQUEST, "this is for WebSockets");
}

void HttpServerPrivate::upgraded(SoupServerMessage *message, gpointer data)
{
    auto *self = static_cast<HttpServerPrivate *>(data);
    const MessageRef keep(message);
    GIOStream *stream = soup_server_message_steal_connection(message);
    HttpConnection *connection = stateOf(message)->connection;
    if (connection) {
        connection->limit(0);
        auto *session = new WebSocketSession(
            stream, connection->stream(), self->handler, self->refusals, self->q);
        connection->setSession(session);
        veskConnect(session, &WebSocketSession::received, connection, &HttpConnection::touch);
    }
    g_object_unref(stream);
}

void HttpServerPrivate::respond(SoupServerMessage *message, const HttpResponse &response)
{
    SoupMessageHeaders *headers = soup_server_message_get_response_headers(message);
    soup_message_headers_replace(headers, "Content-Security-Policy", "default-src 'self'");
    soup_message_headers_replace(headers, "X-Content-Type-Options", "nosniff");
    soup_message_headers_replace(headers, "Referrer-Policy", "no-referrer");
    soup_message_headers_replace(headers, "Cache-Control", "no-store");
    // One request for each connection: those that a browser would keep open, six for each page, do
    // not take up the limited number, and what is left of a refused body is not read as a request.
    // A client that makes many requests has a WebSocket.
    soup_message_headers_replace(headers, "Connection", "close");
    for (const auto &entry : response.headers)
        soup_message_headers_replace(headers, entry.first.constData(), entry.second.constData());
    soup_server_message_set_status(message, response.code, nullptr);
    if (!response.type.isNull()) {
        soup_server_message_set_response(message, response.type.constData(), SOUP_MEMORY_COPY,
            response.body.constData(), static_cast<gsize>(response.body.size()));
    }
    limit(message, limits.writeTimeout);
    setAnswering(message, false);
}

void HttpServerPrivate::refuseWith(
    SoupServerMessage *message, unsigned code, const QByteArray &reason)
{
    refusals.log("request refused with " + QByteArray::number(code) + ": " + reason);
    respond(message, {code, "text/plain; charset=utf-8", reason + "\n", {}});
}

HttpServer::HttpServer(MessageHandler *handler, const HttpServerLimits &limits, QObject *parent)
    : QObject(parent)
    , d(std::make_unique<HttpServerPrivate>())
{
    d->q = this;
    d->handler = handler;
    d->limits = limits;
    d->server = soup_server_new(nullptr, nullptr);
    g_signal_connect(
        d->server, "request-started", G_CALLBACK(&HttpServerPrivate::requestStarted), d.get());
    soup_server_add_early_handler(d->server, nullptr, &HttpServerPrivate::early, d.get(), nullptr);
    soup_server_add_handler(d->server, nullptr, &HttpServerPrivate::gotBody, d.get(), nullptr);
}

HttpServer::~HttpServer()
{
    qDeleteAll(findChildren<WebSocketSession *>(QString(), Qt::FindDirectChildrenOnly));
    soup_server_disconnect(d->server);
    g_object_unref(d->server);
}

void HttpServer::addResource(HttpResource *resource)
{
    VESK_ASSERT_OWN_THREAD();
    d->resources.append(resource);
}

Result<void, QString> HttpServer::listen(const ListenAddress &address)
{
    VESK_ASSERT_OWN_THREAD();
    d->address = address.address == QLatin1String("localhost") ? QStringLiteral("127.0.0.1")
                                                               : address.address;
    return d->connections.listen(
        d->address, address.port, [this](HttpConnection *connection) { d->accept(connection); });
}

quint16 HttpServer::port() const
{
    return d->connections.port();
}

QString HttpServer::url() const
{
    const bool isIpv6 = d->address.contains(QLatin1Char(':'));
    return QStringLiteral("http://%1:%2/")
        .arg(isIpv6 ? QStringLiteral("[%1]").arg(d->address) : d->address, QString::number(port()));
}

int HttpServer::connections() const
{
    return d->connections.count();
}

void HttpServer::sendToAll(const QByteArray &message)
{
    VESK_ASSERT_OWN_THREAD();
    const auto sessions = findChildren<WebSocketSession *>(QString(), Qt::FindDirectChildrenOnly);
    for (WebSocketSession *session : sessions)
        session->send(message);
}

void HttpServer::close()
{
    VESK_ASSERT_OWN_THREAD();
    const auto sessions = findChildren<WebSocketSession *>(QString(), Qt::FindDirectChildrenOnly);
    for (WebSocketSession *session : sessions)
        session->close(SOUP_WEBSOCKET_CLOSE_GOING_AWAY);
    d->isClosed = true;
    d->connections.close();
    soup_server_disconnect(d->server);
}
