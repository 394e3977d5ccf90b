// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/support/RawClient.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

RawClient::RawClient(quint16 port, const char *source)
    : m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    const timeval patience {10, 0};
    ::setsockopt(m_socket, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    ::setsockopt(m_socket, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
    sockaddr_in address {};
    address.sin_family = AF_INET;
    if (source) {
        address.sin_addr.s_addr = ::inet_addr(source);
        if (::bind(m_socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
            throw std::runtime_error("RawClient: not from this address");
    }
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(m_socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
        throw std::runtime_error("RawClient: no connection");
}

RawClient::~RawClient()
{
    ::close(m_socket);
}

bool RawClient::send(const QByteArray &bytes)
{
    int sent = 0;
    while (sent < bytes.size()) {
        const ssize_t count = ::send(m_socket, bytes.constData() + sent,
            static_cast<size_t>(bytes.size() - sent), MSG_NOSIGNAL);
        if (count <= 0)
            return false;
        sent += static_cast<int>(count);
    }
    return true;
}

void RawClient::finishSending()
{
    ::shutdown(m_socket, SHUT_WR);
}

bool RawClient::receive()
{
    char bytes[65536];
    const ssize_t count = ::recv(m_socket, bytes, sizeof bytes, 0);
    if (count <= 0)
        return false;
    m_buffer.append(bytes, static_cast<int>(count));
    return true;
}

QByteArray RawClient::readResponse()
{
    int headSize = -1;
    while ((headSize = m_buffer.indexOf("\r\n\r\n")) < 0) {
        if (!receive())
            return read(m_buffer.size());
    }
    headSize += 4;
    const int bodySize = headerOf(m_buffer.left(headSize), "Content-Length").toInt();
    return read(headSize + bodySize);
}

QByteArray RawClient::read(int count)
{
    while (m_buffer.size() < count && receive()) { }
    const QByteArray bytes = m_buffer.left(count);
    m_buffer.remove(0, count);
    return bytes;
}

QByteArray RawClient::readAll()
{
    while (receive()) { }
    return read(m_buffer.size());
}

QByteArray RawClient::exchange(quint16 port, const QByteArray &request)
{
    RawClient client(port);
    client.send(request);
    return client.readResponse();
}

QByteArray RawClient::request(const QByteArray &method, const QByteArray &target, quint16 port,
    const QByteArray &headers, const QByteArray &body)
{
    QByteArray request = method + " " + target + " HTTP/1.1\r\n";
    request += "Host: 127.0.0.1:" + QByteArray::number(port) + "\r\n" + headers;
    if (!body.isEmpty())
        request += "Content-Length: " + QByteArray::number(body.size()) + "\r\n";
    return request + "\r\n" + body;
}

QByteArray RawClient::rpc(quint16 port, const QByteArray &body)
{
    return request("POST", "/jsonrpc", port, "Content-Type: application/json\r\n", body);
}

int statusOf(const QByteArray &response)
{
    return response.startsWith("HTTP/1.") ? response.mid(9, 3).toInt() : 0;
}

QByteArray headerOf(const QByteArray &response, const QByteArray &name)
{
    const QList<QByteArray> lines = response.left(response.indexOf("\r\n\r\n")).split('\n');
    for (const QByteArray &line : lines) {
        const int colon = line.indexOf(':');
        if (colon > 0 && line.left(colon).toLower() == name.toLower())
            return line.mid(colon + 1).trimmed();
    }
    return {};
}

QByteArray bodyOf(const QByteArray &response)
{
    return response.mid(response.indexOf("\r\n\r\n") + 4);
}
