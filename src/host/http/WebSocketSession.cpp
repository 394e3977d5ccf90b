// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/http/WebSocketSession.h"

#include "api/core/log.h"
#include "host/http/HttpConnection.h"

#include <boost/asio/buffer.hpp>

#include <algorithm>

VESK_LOGGER("Host.Http")

namespace websocket = boost::beast::websocket;

namespace {

constexpr std::size_t MaskSize = 4;
/// Of a message. Memory for the first piece is kept while a client is idle.
constexpr std::size_t FirstPiece = 128;
constexpr std::size_t NextPiece = 16 * 1024;

/// The frame that holds \a payload bytes, without mask (RFC 6455, section 5.2).
std::size_t framedSize(std::size_t payload)
{
    if (payload < 126)
        return payload + 2;
    return payload + (payload < 65536 ? 4 : 10);
}

} // namespace

WebSocketSession::WebSocketSession(
    ServerThread &server, HttpConnection &connection, ClientStream &stream, ClientId id)
    : m_server(server)
    , m_connection(connection)
    , m_stream(stream)
    , m_id(id)
    , m_socket(stream)
    , m_state(std::make_shared<ServerEvents::SocketState>())
    , m_allowed(std::chrono::steady_clock::now())
{
    // A message that is somewhat too long is read all the same: to close a socket with unread bytes
    // resets the connection, and the client would lose the close code.
    m_socket.read_message_max(MaxExtra);
    m_socket.text(true);
    m_socket.auto_fragment(false);
    m_socket.set_option(websocket::stream_base::timeout {CloseTime, Silence, true});
    m_socket.control_callback(
        [this](websocket::frame_type type, boost::beast::string_view payload) {
            if (type == websocket::frame_type::pong)
                allow(payload.size());
        });
}

WebSocketSession::~WebSocketSession()
{
    end();
}

template <class Function>
auto WebSocketSession::kept(Function function)
{
    return [this, keep = m_connection.shared_from_this(), function](auto &&...arguments) {
        function(*this, std::forward<decltype(arguments)>(arguments)...);
    };
}

void WebSocketSession::start(const QByteArray &request)
{
    m_stream.setReadAllowance(MaxExtra);
    const auto bytes = std::make_shared<QByteArray>(request);
    m_socket.async_accept(
        boost::asio::buffer(bytes->constData(), static_cast<std::size_t>(bytes->size())),
        kept([bytes](WebSocketSession &self, const Error &error) {
            if (error)
                return self.m_connection.shutDown();
            VESK_DEBUG("WebSocket opened");
            self.m_isAccepted = true;
            self.m_isOpen = true;
            self.m_server.events.opened(
                self.m_id, self.m_connection.caller(), self.m_state, self.m_connection.peer());
            if (self.m_closeOnceOpen)
                self.close(*self.m_closeOnceOpen);
            self.write();
            self.read();
        }));
}

void WebSocketSession::read()
{
    m_socket.async_read_some(m_incoming, m_incoming.size() == 0 ? FirstPiece : NextPiece,
        kept([](WebSocketSession &self, const Error &error, std::size_t) {
            if (!error && !self.m_socket.is_message_done())
                return self.read();
            self.receive(error);
        }));
}

void WebSocketSession::receive(const Error &error)
{
    if (error) {
        if (error == boost::asio::error::message_size)
            return drop("the client sends too much beside its messages");
        if (error.category() == websocket::make_error_code(websocket::error::closed).category()
            && error != websocket::error::closed)
            m_server.refuse("WebSocket: " + QByteArray::fromStdString(error.message()));
        end();
        return m_connection.linger();
    }
    m_connection.touch();
    const auto size = m_incoming.size();
    allow(size);
    if (m_isClosing) {
        m_incoming.consume(size);
        return read();
    }
    if (!m_socket.got_text())
        return close(websocket::close_code::unknown_data);
    if (size > MaxMessage)
        return close(websocket::close_code::too_big);
    const QByteArray message(
        static_cast<const char *>(m_incoming.data().data()), static_cast<int>(size));
    // An idle client needs no memory for its next message.
    m_incoming.consume(size);
    m_incoming.shrink_to_fit();
    const int untaken = ++m_state->untaken;
    m_server.events.received(m_id, message);
    if (untaken < ServerThread::MaxUntaken)
        read();
}

void WebSocketSession::readOn()
{
    if (m_isOpen)
        read();
}

void WebSocketSession::allow(std::size_t payload)
{
    const auto now = std::chrono::steady_clock::now();
    const auto earned = std::chrono::duration_cast<std::chrono::milliseconds>(now - m_allowed);
    m_allowed = now;
    const quint64 allowance = m_stream.readAllowance() + framedSize(payload) + MaskSize
        + static_cast<quint64>(earned.count()) * ExtraPerSecond / 1000;
    m_stream.setReadAllowance(std::min(allowance, MaxExtra));
}

void WebSocketSession::send(const QByteArray &message)
{
    if (m_isClosing)
        return;
    m_outgoing.push_back(message);
    m_backlog += message.size();
    if (m_backlog > MaxBacklog + m_outgoing.front().size())
        return drop("the client does not read what it is sent");
    if (m_isOpen && m_outgoing.size() == 1)
        write();
}

void WebSocketSession::write()
{
    if (m_outgoing.empty() || m_isClosing)
        return;
    const QByteArray &message = m_outgoing.front();
    m_socket.async_write(
        boost::asio::buffer(message.constData(), static_cast<std::size_t>(message.size())),
        kept([](WebSocketSession &self, const Error &error, std::size_t) {
            if (self.m_outgoing.empty())
                return;
            self.m_backlog -= self.m_outgoing.front().size();
            self.m_outgoing.pop_front();
            if (error)
                self.m_connection.shutDown();
            else
                self.write();
        }));
}

void WebSocketSession::close(websocket::close_code code)
{
    if (m_isClosing)
        return;
    if (!m_isAccepted) {
        // The client may have its response to the handshake already.
        m_closeOnceOpen = code;
        return m_connection.limit(CloseTime);
    }
    if (!m_isOpen)
        return m_connection.shutDown();
    m_isClosing = true;
    end();
    m_connection.limit(CloseTime);
    // Waits for a write that is under way, and for the client's close frame.
    m_socket.async_close(
        code, kept([](WebSocketSession &self, const Error &) { self.m_connection.linger(); }));
}

void WebSocketSession::drop(const QByteArray &reason)
{
    m_server.refuse("WebSocket dropped: " + reason);
    m_isClosing = true;
    end();
    m_connection.shutDown();
}

void WebSocketSession::end()
{
    if (!m_isOpen)
        return;
    m_isOpen = false;
    VESK_DEBUG("WebSocket closed");
    m_server.events.ended(m_id);
}
