// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/directory/StreamClient.h"

#include <arpa/inet.h>
#include <cerrno>
#include <chrono>
#include <netinet/in.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace directory::test {

namespace {

using Time = std::chrono::steady_clock;

constexpr int PatienceMilliseconds = 10000;

int millisecondsUntil(Time::time_point time)
{
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(time - Time::now());
    return std::max(0, static_cast<int>(left.count()));
}

} // namespace

StreamClient::StreamClient(int port, const std::string &target, const std::string &headers,
    int receiveBuffer, const std::string &method)
    : m_socket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    if (receiveBuffer > 0)
        setsockopt(m_socket, SOL_SOCKET, SO_RCVBUF, &receiveBuffer, sizeof receiveBuffer);
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const std::string request
        = method + ' ' + target + " HTTP/1.0\r\nHost: 127.0.0.1\r\n" + headers + "\r\n";
    if (connect(m_socket, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0
        || send(m_socket, request.data(), request.size(), MSG_NOSIGNAL)
            != static_cast<ssize_t>(request.size()))
        m_end = End::Reset;
}

StreamClient::~StreamClient()
{
    close(m_socket);
}

bool StreamClient::readOnce(int milliseconds)
{
    pollfd wait {m_socket, POLLIN, 0};
    if (m_end != End::Open || poll(&wait, 1, milliseconds) <= 0)
        return false;
    char buffer[16384];
    const ssize_t count = recv(m_socket, buffer, sizeof buffer, 0);
    if (count > 0)
        m_bytes.append(buffer, static_cast<std::size_t>(count));
    else
        m_end = count == 0 ? End::Closed : End::Reset;
    return count > 0;
}

void StreamClient::readFor(int milliseconds)
{
    const auto until = Time::now() + std::chrono::milliseconds(milliseconds);
    while (m_end == End::Open && Time::now() < until)
        readOnce(millisecondsUntil(until));
}

bool StreamClient::readBytes(std::size_t count)
{
    const auto until = Time::now() + std::chrono::milliseconds(PatienceMilliseconds);
    while (body().size() < count) {
        if (!readOnce(millisecondsUntil(until)))
            return false;
    }
    return true;
}

StreamClient::End StreamClient::readToEnd()
{
    readFor(PatienceMilliseconds);
    return m_end;
}

std::size_t StreamClient::bodyStart() const
{
    const std::size_t end = m_bytes.find("\r\n\r\n");
    return end == std::string::npos ? m_bytes.size() : end + 4;
}

int StreamClient::status() const
{
    return m_bytes.size() > 12 ? std::atoi(m_bytes.c_str() + 9) : 0;
}

std::string StreamClient::header(const std::string &name) const
{
    std::string head = "\r\n" + m_bytes.substr(m_bytes.find('\n') + 1, bodyStart());
    const std::size_t at = [&] {
        std::string lower = head;
        for (char &c : lower)
            c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c);
        return lower.find("\r\n" + name + ": ");
    }();
    if (at == std::string::npos)
        return {};
    const std::size_t start = at + name.size() + 4;
    return head.substr(start, head.find("\r\n", start) - start);
}

std::string StreamClient::body() const
{
    return m_bytes.substr(bodyStart());
}

} // namespace directory::test
