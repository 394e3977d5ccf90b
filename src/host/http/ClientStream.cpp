// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/http/ClientStream.h"

#include <boost/asio/error.hpp>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <openssl/err.h>
#include <openssl/ssl.h>
#include <sys/socket.h>

namespace {

/// The most that one TLS record holds (RFC 8446, section 5.1).
constexpr std::size_t MaxRecord = 16 * 1024;

} // namespace

ClientStream::ClientStream(Socket socket)
    : m_socket(std::move(socket))
{
    Error ignored;
    m_socket.set_option(boost::asio::ip::tcp::no_delay(true), ignored);
    m_socket.native_non_blocking(true, ignored);
}

ClientStream::~ClientStream() = default;

void ClientStream::FreeTls::operator()(ssl_st *tls) const
{
    SSL_free(tls);
}

bool ClientStream::startTls(ssl_ctx_st *context)
{
    m_tls.reset(SSL_new(context));
    if (!m_tls || SSL_set_fd(m_tls.get(), m_socket.native_handle()) != 1) {
        m_tls.reset();
        return false;
    }
    SSL_set_accept_state(m_tls.get());
    return true;
}

ClientStream::Attempt ClientStream::ofSocket(ssize_t result, Attempt::Wait wait)
{
    if (result >= 0)
        return {Attempt::Done, {}, static_cast<std::size_t>(result)};
    if (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR)
        return {wait, {}, 0};
    return {Attempt::Done, Error(errno, boost::system::system_category()), 0};
}

ClientStream::Attempt ClientStream::ofTls(int result)
{
    if (result > 0)
        return {Attempt::Done, {}, static_cast<std::size_t>(result)};
    switch (SSL_get_error(m_tls.get(), result)) {
    case SSL_ERROR_WANT_READ:
        return {Attempt::Read, {}, 0};
    case SSL_ERROR_WANT_WRITE:
        return {Attempt::Write, {}, 0};
    case SSL_ERROR_ZERO_RETURN:
        return {Attempt::Done, boost::asio::error::eof, 0};
    default:
        return {Attempt::Done, boost::asio::error::connection_reset, 0};
    }
}

ClientStream::Attempt ClientStream::tryHandshake()
{
    ERR_clear_error();
    Attempt attempt = ofTls(SSL_do_handshake(m_tls.get()));
    attempt.bytes = 0;
    return attempt;
}

ClientStream::Attempt ClientStream::tryRead(void *into, std::size_t size)
{
    if (size == 0)
        return {};
    if (m_readAllowance == 0)
        return {Attempt::Done, boost::asio::error::message_size, 0};
    const auto allowed
        = static_cast<std::size_t>(std::min<quint64>(std::min(size, MaxRecord), m_readAllowance));
    Attempt attempt;
    if (m_tls) {
        ERR_clear_error();
        attempt = ofTls(SSL_read(m_tls.get(), into, static_cast<int>(allowed)));
    } else {
        attempt = ofSocket(::recv(m_socket.native_handle(), into, allowed, 0), Attempt::Read);
        if (attempt.wait == Attempt::Done && !attempt.error && attempt.bytes == 0)
            attempt.error = boost::asio::error::eof;
    }
    m_readAllowance -= attempt.bytes;
    return attempt;
}

ClientStream::Attempt ClientStream::tryWrite(const Pieces &from)
{
    if (from.count == 0)
        return {};
    if (!m_tls) {
        msghdr message {};
        message.msg_iov = const_cast<iovec *>(from.pieces.data());
        message.msg_iovlen = static_cast<std::size_t>(from.count);
        return ofSocket(
            ::sendmsg(m_socket.native_handle(), &message, MSG_NOSIGNAL), Attempt::Write);
    }
    // One record for the head and the beginning of what follows. After "wait" the same bytes are
    // gathered again, as OpenSSL needs them.
    std::array<char, MaxRecord> record;
    std::size_t size = 0;
    for (int i = 0; i < from.count && size < record.size(); ++i) {
        const iovec &piece = from.pieces[static_cast<std::size_t>(i)];
        const std::size_t part = std::min(piece.iov_len, record.size() - size);
        std::memcpy(record.data() + size, piece.iov_base, part);
        size += part;
    }
    ERR_clear_error();
    return ofTls(SSL_write(m_tls.get(), record.data(), static_cast<int>(size)));
}

void ClientStream::finishSending()
{
    if (m_tls && SSL_is_init_finished(m_tls.get())) {
        ERR_clear_error();
        SSL_shutdown(m_tls.get());
    }
    Error ignored;
    m_socket.shutdown(Socket::shutdown_send, ignored);
}

void ClientStream::shutDown()
{
    Error ignored;
    m_socket.shutdown(Socket::shutdown_both, ignored);
}

void teardown(boost::beast::role_type, ClientStream &stream, ClientStream::Error &error)
{
    stream.finishSending();
    error = {};
}

void beast_close_socket(ClientStream &stream)
{
    stream.shutDown();
}
