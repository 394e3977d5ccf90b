// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/http/WebSocketSession.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "host/http/MeteredStream.h"
#include "host/http/RefusalLog.h"

#include <QPointer>

#include <libsoup/soup.h>

VESK_LOGGER("Host.Http")

namespace {

constexpr guint KeepAliveSeconds = 30;
constexpr quint64 MaskSize = 4;

/// The frame that holds \a payload bytes, without mask (RFC 6455, section 5.2).
quint64 framedSize(quint64 payload)
{
    if (payload < 126)
        return payload + 2;
    return payload + (payload < 65536 ? 4 : 10);
}

} // namespace

/// What libsoup calls; \a data is the session.
struct WebSocketSession::Handlers {
    static void message(
        SoupWebsocketConnection *, SoupWebsocketDataType type, GBytes *message, gpointer data)
    {
        auto *self = static_cast<WebSocketSession *>(data);
        if (type != SOUP_WEBSOCKET_DATA_TEXT)
            return self->close(SOUP_WEBSOCKET_CLOSE_UNSUPPORTED_DATA);
        gsize size = 0;
        const void *bytes = g_bytes_get_data(message, &size);
        self->receive(QByteArray(static_cast<const char *>(bytes), static_cast<int>(size)));
    }

    static void pong(SoupWebsocketConnection *, GBytes *message, gpointer data)
    {
        static_cast<WebSocketSession *>(data)->allow(g_bytes_get_size(message));
    }

    static void error(SoupWebsocketConnection *, GError *error, gpointer data)
    {
        static_cast<WebSocketSession *>(data)->m_refusals.log(
            "WebSocket: " + QByteArray(error->message));
    }

    static void closed(SoupWebsocketConnection *, gpointer data)
    {
        static_cast<WebSocketSession *>(data)->ended();
    }
};

WebSocketSession::WebSocketSession(GIOStream *stream, GIOStream *metered, MessageHandler *handler,
    RefusalLog &refusals, QObject *parent)
    : MessagePeer(parent)
    , m_handler(handler)
    , m_refusals(refusals)
    , m_metered(G_IO_STREAM(g_object_ref(metered)))
    , m_queued(meteredStreamBytesWritten(metered))
{
    meteredStreamSetReadAllowance(m_metered, MaxExtra);
    GUri *uri
        = g_uri_parse("ws://localhost/ws", static_cast<GUriFlags>(SOUP_HTTP_URI_FLAGS), nullptr);
    m_connection = soup_websocket_connection_new(
        stream, uri, SOUP_WEBSOCKET_CONNECTION_SERVER, nullptr, nullptr, nullptr);
    g_uri_unref(uri);
    // A message that is somewhat too long is read all the same: to close a socket with unread bytes
    // resets the connection, and the client would lose the close code.
    soup_websocket_connection_set_max_incoming_payload_size(m_connection, MaxExtra);
    soup_websocket_connection_set_keepalive_interval(m_connection, KeepAliveSeconds);
    g_signal_connect(m_connection, "message", G_CALLBACK(&Handlers::message), this);
    g_signal_connect(m_connection, "pong", G_CALLBACK(&Handlers::pong), this);
    g_signal_connect(m_connection, "error", G_CALLBACK(&Handlers::error), this);
    g_signal_connect(m_connection, "closed", G_CALLBACK(&Handlers::closed), this);
    m_sinceAllowed.start();
    VESK_DEBUG("WebSocket opened");
}

WebSocketSession::~WebSocketSession()
{
    g_signal_handlers_disconnect_by_data(m_connection, this);
    g_object_unref(m_connection);
    g_object_unref(m_metered);
}

void WebSocketSession::close(unsigned short code)
{
    VESK_ASSERT_OWN_THREAD();
    if (soup_websocket_connection_get_state(m_connection) == SOUP_WEBSOCKET_STATE_OPEN)
        soup_websocket_connection_close(m_connection, code, nullptr);
}

void WebSocketSession::receive(const QByteArray &message)
{
    Q_EMIT received();
    allow(static_cast<quint64>(message.size()));
    if (message.size() > MaxMessage)
        return close(SOUP_WEBSOCKET_CLOSE_TOO_BIG);
    const QPointer<WebSocketSession> guard(this);
    ++m_unanswered;
    m_handler->handle(message, this, this, [guard](const QByteArray &reply) {
        if (!guard)
            return;
        --guard->m_unanswered;
        if (!reply.isEmpty())
            guard->send(reply);
    });
}

void WebSocketSession::allow(quint64 payload)
{
    const auto elapsed = static_cast<quint64>(m_sinceAllowed.restart());
    const quint64 allowance = meteredStreamReadAllowance(m_metered) + framedSize(payload) + MaskSize
        + elapsed * ExtraPerSecond / 1000;
    meteredStreamSetReadAllowance(m_metered, qMin(allowance, MaxExtra));
}

void WebSocketSession::send(const QByteArray &message)
{
    VESK_ASSERT_OWN_THREAD();
    if (m_ended || soup_websocket_connection_get_state(m_connection) != SOUP_WEBSOCKET_STATE_OPEN)
        return;
    m_queued += framedSize(static_cast<quint64>(message.size()));
    const quint64 written = meteredStreamBytesWritten(m_metered);
    if (m_queued > written + MaxBacklog)
        return drop("the client does not read what it is sent");
    GBytes *bytes = g_bytes_new(message.constData(), static_cast<gsize>(message.size()));
    soup_websocket_connection_send_message(m_connection, SOUP_WEBSOCKET_DATA_TEXT, bytes);
    g_bytes_unref(bytes);
}

void WebSocketSession::drop(const char *reason)
{
    m_refusals.log("WebSocket dropped: " + QByteArray(reason));
    ended();
}

void WebSocketSession::ended()
{
    if (m_ended)
        return;
    m_ended = true;
    VESK_DEBUG("WebSocket closed");
    // Later, because libsoup may be calling this session.
    deleteLater();
}
