// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/http/HttpConnections.h"

#include "api/core/log.h"
#include "api/core/vesk.h"
#include "host/http/MeteredStream.h"
#include "host/http/WebSocketSession.h"

#include <QHash>

#include <algorithm>
#include <gio/gio.h>
#include <gio/gnetworking.h>
#include <glib-unix.h>
#include <poll.h>

VESK_LOGGER("Host.Http")

namespace {

constexpr char Key[] = "vesk-connection";
/// Connections that wait to be accepted. With GLib's default of ten, a client that opens many makes
/// the others wait for the second after which TCP sends a lost SYN again.
constexpr int Backlog = 256;

QByteArray textOf(GSocketAddress *address)
{
    if (!G_IS_INET_SOCKET_ADDRESS(address))
        return {};
    char *text = g_inet_address_to_string(
        g_inet_socket_address_get_address(G_INET_SOCKET_ADDRESS(address)));
    const QByteArray bytes(text);
    g_free(text);
    return bytes;
}

} // namespace

/// Called by GLib when the last reference to a connection's stream is gone.
struct HttpConnection::Gone {
    static void call(gpointer data, GObject *)
    {
        auto *self = static_cast<HttpConnection *>(data);
        self->m_stream = nullptr;
        self->m_connection = nullptr;
        delete self;
    }
};

/// Called by GLib when the client has closed its side, or the connection has broken.
struct HttpConnection::End {
    static gboolean call(gint, GIOCondition conditions, gpointer data)
    {
        auto *self = static_cast<HttpConnection *>(data);
        if (conditions & (G_IO_ERR | G_IO_HUP)) {
            self->stopWatching();
            Q_EMIT self->hungUp();
            return G_SOURCE_REMOVE;
        }
        // If the client has closed the whole connection, its kernel answers with a reset, which
        // comes back here as G_IO_ERR.
        if (self->m_knowsInterim) {
            g_socket_send(g_socket_connection_get_socket(self->m_connection), Interim,
                sizeof Interim - 1, nullptr, nullptr);
        }
        self->watch(0);
        return G_SOURCE_REMOVE;
    }

    /// An interim response (RFC 9110, section 15.2), which a client must expect at any time.
    static constexpr char Interim[] = "HTTP/1.1 102 Processing\r\n\r\n";
};

HttpConnection::HttpConnection(GIOStream *stream, GSocketConnection *connection,
    GSocketAddress *local, GSocketAddress *remote, QObject *parent)
    : QObject(parent)
    , m_stream(stream)
    , m_connection(connection)
    , m_local(local)
    , m_remote(remote)
    , m_peer(textOf(remote))
{
    g_object_weak_ref(G_OBJECT(m_stream), &Gone::call, this);
    g_object_set_data(G_OBJECT(m_remote), Key, this);
    m_sinceActive.start();
    m_limit.setSingleShot(true);
    veskConnect(&m_limit, &QTimer::timeout, this, &HttpConnection::shutDown);
}

HttpConnection::~HttpConnection()
{
    stopWatching();
    g_object_set_data(G_OBJECT(m_remote), Key, nullptr);
    g_object_unref(m_local);
    g_object_unref(m_remote);
    if (m_stream)
        g_object_weak_unref(G_OBJECT(m_stream), &Gone::call, this);
}

HttpConnection *HttpConnection::ofRemoteAddress(GSocketAddress *address)
{
    return address ? static_cast<HttpConnection *>(g_object_get_data(G_OBJECT(address), Key))
                   : nullptr;
}

void HttpConnection::limit(int milliseconds)
{
    if (milliseconds > 0)
        m_limit.start(milliseconds);
    else
        m_limit.stop();
}

void HttpConnection::shutDown()
{
    VESK_DEBUG("connection shut down");
    m_isShutDown = true;
    g_socket_shutdown(g_socket_connection_get_socket(m_connection), TRUE, TRUE, nullptr);
}

void HttpConnection::setAnswering(bool answering)
{
    m_isAnswering = answering;
    if (!answering)
        stopWatching();
    touch();
}

void HttpConnection::watchForEnd(bool knowsInterim)
{
    m_knowsInterim = knowsInterim;
    watch(POLLRDHUP);
}

/// For errors, and for \a conditions of poll(2); GLib passes on those that it has no name for.
void HttpConnection::watch(int conditions)
{
    stopWatching();
    m_end = g_unix_fd_source_new(g_socket_get_fd(g_socket_connection_get_socket(m_connection)),
        static_cast<GIOCondition>(conditions | G_IO_ERR | G_IO_HUP));
    g_source_set_callback(m_end, G_SOURCE_FUNC(&End::call), this, nullptr);
    g_source_attach(m_end, g_main_context_get_thread_default());
}

void HttpConnection::stopWatching()
{
    if (!m_end)
        return;
    g_source_destroy(m_end);
    g_source_unref(m_end);
    m_end = nullptr;
}

void HttpConnection::setSession(WebSocketSession *session)
{
    m_isAnswering = false;
    m_isWebSocket = true;
    m_session = session;
    touch();
}

bool HttpConnection::isIdle() const
{
    return !m_isAnswering && !(m_session && m_session->isWaiting());
}

/// Called by GLib for each connection.
struct HttpConnections::Incoming {
    static gboolean call(GSocketService *, GSocketConnection *connection, GObject *, gpointer data)
    {
        auto *self = static_cast<HttpConnections *>(data);
        GSocketAddress *local = g_socket_connection_get_local_address(connection, nullptr);
        GSocketAddress *remote = g_socket_connection_get_remote_address(connection, nullptr);
        if (!local || !remote) { // gone already
            g_clear_object(&local);
            g_clear_object(&remote);
            return TRUE;
        }
        g_socket_set_option(
            g_socket_connection_get_socket(connection), IPPROTO_TCP, TCP_NODELAY, TRUE, nullptr);
        GIOStream *stream = meteredStreamNew(G_IO_STREAM(connection));
        self->m_accepted(new HttpConnection(stream, connection, local, remote, self));
        g_object_unref(stream);
        return TRUE;
    }
};

HttpConnections::HttpConnections(QObject *parent)
    : QObject(parent)
    , m_service(g_socket_service_new())
{
    g_socket_listener_set_backlog(G_SOCKET_LISTENER(m_service), Backlog);
    g_signal_connect(m_service, "incoming", G_CALLBACK(&Incoming::call), this);
}

HttpConnections::~HttpConnections()
{
    close();
    // libsoup may keep a reference to a stream; the connection ends all the same.
    const auto open = findChildren<HttpConnection *>(QString(), Qt::FindDirectChildrenOnly);
    for (HttpConnection *connection : open)
        connection->shutDown();
    g_signal_handlers_disconnect_by_data(m_service, this);
    g_object_unref(m_service);
}

Result<void, QString> HttpConnections::listen(
    const QString &address, quint16 port, std::function<void(HttpConnection *)> accepted)
{
    m_accepted = std::move(accepted);
    GSocketAddress *wanted
        = g_inet_socket_address_new_from_string(address.toUtf8().constData(), port);
    if (!wanted)
        return failure(QStringLiteral("%1 is no address").arg(address));
    GSocketAddress *effective = nullptr;
    GError *error = nullptr;
    const bool listens = g_socket_listener_add_address(G_SOCKET_LISTENER(m_service), wanted,
        G_SOCKET_TYPE_STREAM, G_SOCKET_PROTOCOL_TCP, nullptr, &effective, &error);
    g_object_unref(wanted);
    if (!listens) {
        const QString reason = QString::fromUtf8(error->message);
        g_error_free(error);
        return failure(reason);
    }
    m_port = g_inet_socket_address_get_port(G_INET_SOCKET_ADDRESS(effective));
    g_object_unref(effective);
    return {};
}

void HttpConnections::close()
{
    g_socket_service_stop(m_service);
    g_socket_listener_close(G_SOCKET_LISTENER(m_service));
}

int HttpConnections::count() const
{
    return findChildren<HttpConnection *>(QString(), Qt::FindDirectChildrenOnly).size();
}

int HttpConnections::active() const
{
    const auto all = findChildren<HttpConnection *>(QString(), Qt::FindDirectChildrenOnly);
    return static_cast<int>(std::count_if(all.begin(), all.end(),
        [](const HttpConnection *connection) { return !connection->isShutDown(); }));
}

bool HttpConnections::makeSpace(const HttpConnection *latest)
{
    HttpConnection *const connection = leastNeeded(latest);
    if (connection)
        connection->shutDown();
    return connection != nullptr;
}

HttpConnection *HttpConnections::leastNeeded(const HttpConnection *latest) const
{
    const auto all = findChildren<HttpConnection *>(QString(), Qt::FindDirectChildrenOnly);
    QHash<QByteArray, int> ofPeer;
    for (const HttpConnection *connection : all)
        ofPeer[connection->peer()] += connection->isShutDown() ? 0 : 1;
    const auto isNeededLess = [&ofPeer](const HttpConnection *a, const HttpConnection *b) {
        if (const int more = ofPeer.value(a->peer()) - ofPeer.value(b->peer()))
            return more > 0;
        return a->isIdle() != b->isIdle() ? a->isIdle() : a->quietMs() > b->quietMs();
    };
    HttpConnection *least = nullptr;
    for (HttpConnection *connection : all) {
        const bool mayGo = connection != latest && !connection->isShutDown()
            && (connection->isIdle() || connection->isWebSocket());
        if (mayGo && (!least || isNeededLess(connection, least)))
            least = connection;
    }
    return least;
}
