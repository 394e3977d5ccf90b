// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/http/MessageHandler.h"

#include <QByteArray>
#include <QElapsedTimer>

struct _GIOStream;
struct _SoupWebsocketConnection;
class RefusalLog;

/// A client at the other end of a WebSocket: each text message goes to the handler. Main thread.
/// Deletes itself when the connection is closed, by whichever side. Drops a client that does not
/// read what it is sent, that sends what is no text, or that never finishes a message.
class WebSocketSession : public MessagePeer {
    Q_OBJECT

public:
    /// Longest message that is taken.
    static constexpr int MaxMessage = 64 * 1024;
    /// Bytes on their way to a client that reads slowly or not at all.
    static constexpr quint64 MaxBacklog = 4 * 1024 * 1024;
    /// Bytes other than those of whole messages: unfinished messages, pings, the frames of
    /// fragments. A client has this many to spend, and gets back so many a second.
    static constexpr quint64 MaxExtra = 1024 * 1024;
    static constexpr quint64 ExtraPerSecond = 100;

    /// Takes over \a stream, on which the handshake is complete. What passes is counted by
    /// \a metered, a metered stream that lies below it. \a refusals, which must outlive the
    /// session, logs why it ends a connection.
    WebSocketSession(_GIOStream *stream, _GIOStream *metered, MessageHandler *handler,
        RefusalLog &refusals, QObject *parent);
    ~WebSocketSession() override;

    void send(const QByteArray &message) override;
    /// Whether a reply is still to come, or changes are.
    bool isWaiting() const { return m_unanswered > 0 || isSubscribed(); }
    /// Sends a close code (RFC 6455, section 7.4); the client answers, or is dropped.
    void close(unsigned short code);

Q_SIGNALS:
    /// The client has sent a message.
    void received();

private:
    struct Handlers;

    void receive(const QByteArray &message);
    /// Gives back what a whole frame of \a payload bytes took, and what the time has earned.
    void allow(quint64 payload);
    /// Ends the connection without a close code.
    void drop(const char *reason);
    void ended();

    MessageHandler *const m_handler;
    RefusalLog &m_refusals;
    _GIOStream *const m_metered;
    _SoupWebsocketConnection *m_connection = nullptr;
    int m_unanswered = 0; ///< messages without a reply
    QElapsedTimer m_sinceAllowed;
    /// Framed bytes that were handed to the connection, and the bytes of the handshake.
    quint64 m_queued = 0;
    bool m_ended = false;
};
