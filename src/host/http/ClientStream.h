// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QtGlobal>

#include <boost/asio/basic_stream_socket.hpp>
#include <boost/asio/buffer.hpp>
#include <boost/asio/compose.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/beast/core/role.hpp>

#include <array>
#include <memory>
#include <sys/uio.h>

struct ssl_ctx_st;
struct ssl_st;

// Members and functions by which Asio and Beast know a stream have the names that those give them.
// NOLINTBEGIN(readability-identifier-naming)

/// The two ways between the server and one client: a TCP connection, plain or with TLS. A stream in
/// the sense of Asio (AsyncReadStream, AsyncWriteStream) which counts what passes. Server's thread.
///
/// OpenSSL reads and writes the socket itself: Asio's own TLS stream keeps some 70 KB of buffers
/// for each connection, OpenSSL gives its buffers back while nothing passes.
class ClientStream {
public:
    using Socket = boost::asio::basic_stream_socket<boost::asio::ip::tcp,
        boost::asio::io_context::executor_type>;
    using executor_type = Socket::executor_type;
    using Error = boost::system::error_code;

    explicit ClientStream(Socket socket);
    ~ClientStream();
    ClientStream(const ClientStream &) = delete;
    ClientStream &operator=(const ClientStream &) = delete;

    executor_type get_executor() { return m_socket.get_executor(); }
    Socket &socket() { return m_socket; }

    /// The client speaks TLS from here on. False when there is no memory for it.
    bool startTls(ssl_ctx_st *context);
    bool isTls() const { return m_tls != nullptr; }

    /// Bytes that may still be read; after them reading fails. Without a call, anything may be.
    void setReadAllowance(quint64 bytes) { m_readAllowance = bytes; }
    quint64 readAllowance() const { return m_readAllowance; }

    /// No more is sent, which the client is told.
    void finishSending();
    /// Ends the connection both ways; what is under way fails.
    void shutDown();

    /// \a handler(Error, std::size_t), the size is 0.
    template <class Handler>
    auto asyncHandshake(Handler &&handler);
    template <class Buffers, class Handler>
    auto async_read_some(const Buffers &buffers, Handler &&handler);
    template <class Buffers, class Handler>
    auto async_write_some(const Buffers &buffers, Handler &&handler);

private:
    /// What an attempt came to: it is done, or has to wait for the socket.
    struct Attempt {
        enum Wait { Done, Read, Write } wait = Done;
        Error error;
        std::size_t bytes = 0;
    };
    /// Some buffers; more are left for the next call.
    struct Pieces {
        static constexpr int Max = 16;
        std::array<iovec, Max> pieces;
        int count = 0;
    };
    template <class Try>
    struct Operation;

    Attempt tryHandshake();
    Attempt tryRead(void *into, std::size_t size);
    Attempt tryWrite(const Pieces &from);
    Attempt ofTls(int result);
    static Attempt ofSocket(ssize_t result, Attempt::Wait wait);
    template <class Try, class Handler>
    auto run(Try attempt, Handler &&handler);

    struct FreeTls {
        void operator()(ssl_st *tls) const;
    };

    Socket m_socket;
    std::unique_ptr<ssl_st, FreeTls> m_tls;
    quint64 m_readAllowance = ~quint64(0);
};

/// Tries, waits for the socket where it must, and tries again.
template <class Try>
struct ClientStream::Operation {
    template <class Self>
    void operator()(Self &self, Error error = {})
    {
        if (isOver)
            return self.complete(result.error, result.bytes);
        result = error ? Attempt {Attempt::Done, error, 0} : attempt();
        const bool isFirst = !std::exchange(hasWaited, true);
        switch (result.wait) {
        case Attempt::Read:
            return stream.m_socket.async_wait(Socket::wait_read, std::move(self));
        case Attempt::Write:
            return stream.m_socket.async_wait(Socket::wait_write, std::move(self));
        case Attempt::Done:
            break;
        }
        if (!isFirst)
            return self.complete(result.error, result.bytes);
        // A handler is never called by the function that it was given to.
        isOver = true;
        boost::asio::post(stream.get_executor(), std::move(self));
    }

    ClientStream &stream;
    Try attempt;
    Attempt result = {};
    bool hasWaited = false;
    bool isOver = false;
};

template <class Try, class Handler>
auto ClientStream::run(Try attempt, Handler &&handler)
{
    return boost::asio::async_compose<Handler, void(Error, std::size_t)>(
        Operation<Try> {*this, std::move(attempt)}, handler, m_socket);
}

template <class Handler>
auto ClientStream::asyncHandshake(Handler &&handler)
{
    return run([this] { return tryHandshake(); }, std::forward<Handler>(handler));
}

template <class Buffers, class Handler>
auto ClientStream::async_read_some(const Buffers &buffers, Handler &&handler)
{
    boost::asio::mutable_buffer into;
    for (auto it = boost::asio::buffer_sequence_begin(buffers);
         it != boost::asio::buffer_sequence_end(buffers) && into.size() == 0; ++it)
        into = *it;
    return run(
        [this, into] { return tryRead(into.data(), into.size()); }, std::forward<Handler>(handler));
}

template <class Buffers, class Handler>
auto ClientStream::async_write_some(const Buffers &buffers, Handler &&handler)
{
    Pieces from;
    for (auto it = boost::asio::buffer_sequence_begin(buffers);
         it != boost::asio::buffer_sequence_end(buffers) && from.count < Pieces::Max; ++it) {
        const boost::asio::const_buffer buffer = *it;
        if (buffer.size() > 0)
            from.pieces[static_cast<std::size_t>(from.count++)]
                = {const_cast<void *>(buffer.data()), buffer.size()};
    }
    return run([this, from] { return tryWrite(from); }, std::forward<Handler>(handler));
}

/// What Beast calls at the end of a WebSocket; the connection lingers by itself.
template <class Handler>
void async_teardown(boost::beast::role_type, ClientStream &stream, Handler &&handler)
{
    stream.finishSending();
    boost::asio::post(stream.get_executor(),
        [handler = std::forward<Handler>(handler)]() mutable { handler(ClientStream::Error()); });
}
void teardown(boost::beast::role_type, ClientStream &stream, ClientStream::Error &error);
/// What Beast calls when a client has been silent for too long.
void beast_close_socket(ClientStream &stream);
// NOLINTEND(readability-identifier-naming)
