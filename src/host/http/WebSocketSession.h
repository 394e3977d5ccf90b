// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/http/ServerThread.h"

#include <QByteArray>

#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/websocket.hpp>

#include <deque>
#include <memory>
#include <optional>

/// The WebSocket of a connection: each text message is told as an event. Drops a client that does
/// not read what it is sent, that sends what is no text, or that never finishes a message. Server's
/// thread.
class WebSocketSession {
public:
    /// Longest message that is taken.
    static constexpr std::size_t MaxMessage = 64 * 1024;
    /// Bytes on their way to a client that reads slowly or not at all.
    static constexpr qint64 MaxBacklog = 4 * 1024 * 1024;
    /// Bytes other than those of whole messages: unfinished messages, pings, the frames of
    /// fragments. A client has this many to spend, and gets back so many a second.
    static constexpr quint64 MaxExtra = 1024 * 1024;
    static constexpr quint64 ExtraPerSecond = 100;
    /// How long a client may be silent, which a ping after half of it prevents.
    static constexpr std::chrono::seconds Silence {60};
    /// How long a client has to answer a close frame.
    static constexpr std::chrono::seconds CloseTime {5};

    /// \a connection owns the session and \a stream; both outlive it.
    WebSocketSession(
        ServerThread &server, HttpConnection &connection, ClientStream &stream, ClientId id);
    ~WebSocketSession();

    /// Completes the handshake with a client that has sent \a request: the head, and maybe more.
    void start(const QByteArray &request);
    void send(const QByteArray &message);
    void readOn();
    /// Sends a close code (RFC 6455, section 7.4); what the client still sends is ignored.
    void close(boost::beast::websocket::close_code code);
    /// Whether a message was told, or its reply is still to come, or changes are.
    bool isWaiting() const { return m_state->isWaiting || m_state->untaken > 0; }

private:
    using Socket = boost::beast::websocket::stream<ClientStream &, false>;
    using Error = boost::system::error_code;

    /// \a function(WebSocketSession &, arguments...), with the connection kept until it is called.
    template <class Function>
    auto kept(Function function);
    void read();
    void receive(const Error &error);
    void write();
    /// Gives back what a whole frame of \a payload bytes took, and what the time has earned.
    void allow(std::size_t payload);
    /// Ends the connection without a close code.
    void drop(const QByteArray &reason);
    void end();

    ServerThread &m_server;
    HttpConnection &m_connection;
    ClientStream &m_stream;
    const ClientId m_id;
    Socket m_socket;
    const std::shared_ptr<ServerEvents::SocketState> m_state;
    boost::beast::flat_buffer m_incoming;
    std::deque<QByteArray> m_outgoing; ///< the first one is being written
    qint64 m_backlog = 0;
    ServerThread::Timer::time_point m_allowed;
    std::optional<boost::beast::websocket::close_code> m_closeOnceOpen;
    bool m_isAccepted = false; ///< the handshake is over; stays so
    bool m_isOpen = false;
    bool m_isClosing = false;
};
