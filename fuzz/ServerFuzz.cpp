// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "fuzz/fuzzing.h"
#include "host/http/HttpServer.h"
#include "host/rpc/JsonRpcDispatcher.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QElapsedTimer>

#include <log4cplus/initializer.h>
#include <log4cplus/logger.h>

#include <arpa/inet.h>
#include <memory>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

// Bytes on a connection to the host, as HTTP or, after a handshake, as WebSocket: only a client
// that is allowed to can call a method, and a client that has sent all it has is answered or
// dropped, without a time limit that would have to end it. JSON-RPC messages are covered by
// RpcFuzz.cpp.

namespace {

/// The first byte of an input, which tells what the rest is.
enum Kind : char {
    Http = 'H', ///< what the client sends
    RawFrames = 'R', ///< what the client sends after a WebSocket handshake
    Frames = 'W' ///< WebSocket frames, separated: each the first byte, then the payload
};

constexpr char Separator = 0x1e;
/// For one input. The server's own limits are longer, so that none of them can be what ends it.
constexpr int MostMilliseconds = 20000;
constexpr char Handshake[]
    = "GET /ws HTTP/1.1\r\nHost: localhost\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
      "Sec-WebSocket-Version: 13\r\nSec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n\r\n";

/// A client frame (RFC 6455, section 5.2) with a masking key of zeros.
QByteArray framed(const QByteArray &piece)
{
    const QByteArray payload = piece.mid(1);
    QByteArray frame = piece.left(1);
    if (payload.size() < 126) {
        frame.append(static_cast<char>(0x80 | payload.size()));
    } else {
        frame.append(static_cast<char>(0x80 | 126));
        frame.append(static_cast<char>(payload.size() >> 8));
        frame.append(static_cast<char>(payload.size()));
    }
    return frame + QByteArray(4, '\0') + payload;
}

QByteArray wireForm(const QByteArray &input)
{
    const QByteArray rest = input.mid(1);
    if (input.at(0) == Http)
        return rest;
    if (input.at(0) == RawFrames)
        return Handshake + rest;
    QByteArray bytes = Handshake;
    for (const QByteArray &piece : rest.split(Separator)) {
        if (!piece.isEmpty())
            bytes += framed(piece.left(0xffff));
    }
    return bytes;
}

class Client {
public:
    Client(quint16 port, const QByteArray &bytes)
        : m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = htons(port);
        FUZZ_REQUIRE(
            ::connect(m_socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0);
        FUZZ_REQUIRE(::send(m_socket, bytes.constData(), static_cast<std::size_t>(bytes.size()),
                         MSG_NOSIGNAL)
            == bytes.size());
        ::shutdown(m_socket, SHUT_WR);
    }
    ~Client() { ::close(m_socket); }
    Q_DISABLE_COPY(Client)

    /// Adds what has come, or comes within a millisecond, to \a answer. False at the end of the
    /// connection.
    bool receive(QByteArray &answer) const
    {
        pollfd readable {m_socket, POLLIN, 0};
        if (::poll(&readable, 1, 1) == 0)
            return true;
        char bytes[4096];
        const ssize_t size = ::recv(m_socket, bytes, sizeof bytes, MSG_DONTWAIT);
        if (size > 0)
            answer.append(bytes, static_cast<int>(size));
        return size > 0;
    }

private:
    const int m_socket;
};

class Host {
public:
    Host()
        : m_application(m_argc, m_argv)
    {
        log4cplus::Logger::getRoot().setLogLevel(log4cplus::OFF_LOG_LEVEL);
        m_rpc.addMethod(QStringLiteral("echo"), [this](const JsonRpcCallPtr &call) {
            ++m_called;
            call->finish(QVariant(call->params()));
        });
    }

    /// The server's response to a client that sends \a bytes and then shuts down its side.
    QByteArray exchange(const QByteArray &bytes)
    {
        m_called = 0;
        if (!m_server)
            listen();
        QByteArray answer;
        const Client client(m_server->port(), bytes);
        QElapsedTimer clock;
        clock.start();
        while (client.receive(answer)) {
            QCoreApplication::processEvents();
            FUZZ_REQUIRE(clock.elapsed() < MostMilliseconds);
        }
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return answer;
    }

    int called() const { return m_called; }

private:
    void listen()
    {
        m_server = std::make_unique<HttpServer>(&m_rpc);
        FUZZ_REQUIRE(m_server->listen({QStringLiteral("127.0.0.1"), 0}));
    }

    int m_argc = 1;
    char m_name[5] = "fuzz";
    char *m_argv[2] = {m_name, nullptr};
    log4cplus::Initializer m_logging;
    QCoreApplication m_application;
    JsonRpcDispatcher m_rpc;
    std::unique_ptr<HttpServer> m_server;
    int m_called = 0;
};

bool namesThisMachine(const QByteArray &request)
{
    return request.contains("localhost") || request.contains("127.0.0.1")
        || request.contains("[::1]");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    static auto &host = *new Host;
    const QByteArray input(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const QByteArray answer = host.exchange(wireForm(input));
    FUZZ_REQUIRE(answer.isEmpty() || answer.startsWith("HTTP/1."));
    if (input.at(0) != Http)
        return 0;
    const QByteArray request = input.toLower();
    FUZZ_REQUIRE(
        host.called() == 0 || (request.contains("application/json") && namesThisMachine(request)));
    FUZZ_REQUIRE(!answer.contains(" 200 ") || namesThisMachine(request));
    return 0;
}
