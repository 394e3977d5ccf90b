// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <functional>

struct _GIOStream;
struct _GSocketAddress;
struct _GSocketConnection;
struct _GSocketService;
struct _GSource;
class WebSocketSession;

/// One accepted connection and its time limit. Lasts as long as its stream is referenced, and
/// deletes itself with it. Main thread.
class HttpConnection : public QObject {
    Q_OBJECT

public:
    /// \a stream is a metered stream over \a connection. Takes over the addresses.
    HttpConnection(_GIOStream *stream, _GSocketConnection *connection, _GSocketAddress *local,
        _GSocketAddress *remote, QObject *parent);
    ~HttpConnection() override;

    _GIOStream *stream() const { return m_stream; }
    _GSocketAddress *localAddress() const { return m_local; }
    _GSocketAddress *remoteAddress() const { return m_remote; }
    /// The connection that has this very object for its remote address.
    static HttpConnection *ofRemoteAddress(_GSocketAddress *address);

    /// (Re)starts the time limit; 0 lifts it. A connection that does not move on in time is shut
    /// down.
    void limit(int milliseconds);
    void shutDown();
    bool isShutDown() const { return m_isShutDown; }

    /// The client's address, without the port.
    const QByteArray &peer() const { return m_peer; }
    /// Whether a request of the client is being answered.
    void setAnswering(bool answering);
    /// Emits hungUp() when the client closes the connection while a request is being answered. A
    /// client that has only closed its sending side looks the same until something is sent to it;
    /// so it is sent an interim response, if \a knowsInterim (HTTP/1.1 and later).
    void watchForEnd(bool knowsInterim);
    /// The connection is a WebSocket from now on.
    void setSession(WebSocketSession *session);
    /// The client has sent something.
    void touch() { m_sinceActive.start(); }
    /// Whether the client waits for nothing: it has not finished a request, has its response, or is
    /// a WebSocket without an open request or subscription.
    bool isIdle() const;
    bool isWebSocket() const { return m_isWebSocket; }
    qint64 quietMs() const { return m_sinceActive.elapsed(); }

Q_SIGNALS:
    void hungUp();

private:
    struct Gone;
    struct End;

    void watch(int conditions);
    void stopWatching();

    _GIOStream *m_stream; ///< not referenced
    _GSocketConnection *m_connection; ///< not referenced
    _GSocketAddress *const m_local;
    _GSocketAddress *const m_remote;
    const QByteArray m_peer;
    QTimer m_limit;
    QElapsedTimer m_sinceActive;
    bool m_isShutDown = false;
    bool m_isAnswering = false;
    bool m_knowsInterim = false;
    _GSource *m_end = nullptr; ///< while the client is watched
    bool m_isWebSocket = false;
    QPointer<WebSocketSession> m_session;
};

/// Accepts connections on one address. Main thread, in the GLib main loop that Qt runs there.
class HttpConnections : public QObject {
    Q_OBJECT

public:
    explicit HttpConnections(QObject *parent = nullptr);
    ~HttpConnections() override;

    /// Calls \a accepted for each connection. Port 0 picks a free one.
    Result<void, QString> listen(
        const QString &address, quint16 port, std::function<void(HttpConnection *)> accepted);
    quint16 port() const { return m_port; }
    /// Accepts no more; what is open stays.
    void close();

    /// How many are open, those included that were shut down and are not gone yet.
    int count() const;
    /// How many are open to stay.
    int active() const;
    /// Shuts down one connection other than \a latest: of the client address with the most of them,
    /// the idle one that has been quiet for longest, or else the WebSocket that has. Returns false
    /// when there is none.
    bool makeSpace(const HttpConnection *latest);

private:
    struct Incoming;

    HttpConnection *leastNeeded(const HttpConnection *latest) const;

    _GSocketService *m_service;
    std::function<void(HttpConnection *)> m_accepted;
    quint16 m_port = 0;
};
