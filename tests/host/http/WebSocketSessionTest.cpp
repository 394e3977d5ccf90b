// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/http/WebSocketSession.h"

#include "host/http/HttpServer.h"
#include "tests/host/http/ScriptedHandler.h"
#include "tests/support/LogCapture.h"
#include "tests/support/RawWebSocket.h"

#include <QElapsedTimer>

#include <gmock/gmock.h>

namespace {

const QByteArray Echo = "hello";

/// The close codes below are those of RFC 6455, section 7.4.1.
class WebSocketSessionTest : public testing::Test {
protected:
    WebSocketSessionTest() { EXPECT_TRUE(m_server.listen({QStringLiteral("127.0.0.1"), 0})); }

    quint16 port() const { return m_server.port(); }
    bool becomesEmpty()
    {
        return spinUntil([this] { return m_server.connections() == 0; });
    }

    ScriptedHandler m_handler;
    HttpServer m_server {&m_handler};
};

TEST_F(WebSocketSessionTest, SendsTheReplyToAMessage)
{
    const QByteArray answer = inBackground([this] {
        RawWebSocket socket(port());
        return statusOf(socket.handshake()) == 101 ? socket.ask(Echo) : socket.handshake();
    });
    EXPECT_EQ(answer, Echo);
    EXPECT_TRUE(becomesEmpty());
}

TEST_F(WebSocketSessionTest, CountsAsAConnectionWhileItIsOpen)
{
    const auto socket = inBackground([this] { return std::make_unique<RawWebSocket>(port()); });
    EXPECT_EQ(m_server.connections(), 1);
}

TEST_F(WebSocketSessionTest, SendsMessagesThatTheClientDidNotAskFor)
{
    const auto frames = inBackground([this] {
        RawWebSocket socket(port());
        socket.send(RawWebSocket::Text, "tell");
        const QByteArray first = socket.receive().payload;
        return QList<QByteArray> {first, socket.receive().payload};
    });
    EXPECT_EQ(frames, (QList<QByteArray> {"told", "tell"}));
}

TEST_F(WebSocketSessionTest, RefusesAForeignOrigin)
{
    const auto status = [this](const QByteArray &origin) {
        return inBackground([&] {
            return statusOf(RawWebSocket(port(), "Origin: " + origin + "\r\n").handshake());
        });
    };
    EXPECT_EQ(status("http://evil.example"), 403);
    EXPECT_EQ(status("null"), 403); // a sandboxed frame or a local file
    EXPECT_EQ(status("http://127.0.0.1:" + QByteArray::number(port())), 101);
}

TEST_F(WebSocketSessionTest, RefusesAPlainGet)
{
    const QByteArray response = inBackground(
        [this] { return RawClient::exchange(port(), RawClient::request("GET", "/ws", port())); });
    EXPECT_EQ(statusOf(response), 400);
    EXPECT_EQ(headerOf(response, "Content-Type"), "text/plain; charset=utf-8");
    EXPECT_EQ(bodyOf(response), "this is for WebSockets\n");
}

TEST_F(WebSocketSessionTest, SendsNothingForAnEmptyReply)
{
    const QByteArray reply = inBackground([this] {
        RawWebSocket socket(port());
        socket.send(RawWebSocket::Text, "nothing");
        return socket.ask(Echo);
    });
    EXPECT_EQ(reply, Echo);
}

TEST_F(WebSocketSessionTest, ClosesOnABinaryMessage)
{
    const auto frame = inBackground([this] {
        RawWebSocket socket(port());
        socket.send(RawWebSocket::Binary, Echo);
        return socket.receive();
    });
    EXPECT_EQ(frame.opcode, RawWebSocket::Close);
    EXPECT_EQ(frame.closeCode(), 1003);
    EXPECT_TRUE(becomesEmpty());
}

TEST_F(WebSocketSessionTest, ClosesOnAMessageThatIsTooLong)
{
    const auto frames = inBackground([this] {
        RawWebSocket socket(port());
        const QByteArray longest = Echo + QByteArray(65536 - Echo.size(), ' ');
        const bool isAnswered = socket.ask(longest) == longest;
        socket.send(RawWebSocket::Text, longest + ' ');
        return std::make_pair(isAnswered, socket.receive());
    });
    EXPECT_TRUE(frames.first);
    EXPECT_EQ(frames.second.opcode, RawWebSocket::Close);
    EXPECT_EQ(frames.second.closeCode(), 1009);
    EXPECT_TRUE(becomesEmpty());
}

TEST_F(WebSocketSessionTest, DropsAClientThatNeverFinishesAMessage)
{
    const bool dropped = inBackground([this] {
        RawWebSocket socket(port());
        socket.send(RawWebSocket::Text, "[", false);
        // 10 MB; a message may have 64 KiB.
        for (int i = 0; i < 10000; ++i) {
            if (!socket.send(RawWebSocket::Continuation, QByteArray(1024, ' '), false))
                return true;
        }
        return false;
    });
    EXPECT_TRUE(dropped);
    EXPECT_TRUE(becomesEmpty());
}

TEST_F(WebSocketSessionTest, LogsDroppedClientsOnceASecond)
{
    constexpr int Clients = 20;
    const LogCapture log("Host.Http");
    QElapsedTimer clock;
    clock.start();
    inBackground([this] {
        for (int i = 0; i < Clients; ++i) {
            RawWebSocket socket(port());
            socket.send(RawWebSocket::Text, "[", false);
            while (socket.send(RawWebSocket::Continuation, QByteArray(32768, ' '), false)) { }
        }
        return 0;
    });
    EXPECT_TRUE(becomesEmpty());
    EXPECT_TRUE(spinUntil([&] { return !log.lines(QStringLiteral("WARN")).isEmpty(); }));
    // Qt's timers may be 5 % early.
    const auto seconds = static_cast<int>(clock.elapsed() / 950);
    // One line at once, then at most one in each second that the clients took.
    EXPECT_LE(log.lines(QStringLiteral("WARN")).size(), 1 + seconds);
}

TEST_F(WebSocketSessionTest, DropsAClientThatOnlySendsPings)
{
    const bool dropped = inBackground([this] {
        RawWebSocket socket(port());
        // 25 MB; a client may send 1 MiB outside of whole messages.
        for (int i = 0; i < 200000; ++i) {
            if (!socket.send(RawWebSocket::Ping, QByteArray(125, 'p')))
                return true;
        }
        return false;
    });
    EXPECT_TRUE(dropped);
    EXPECT_TRUE(becomesEmpty());
}

TEST_F(WebSocketSessionTest, DropsAClientThatDoesNotRead)
{
    const auto socket = inBackground([this] {
        auto client = std::make_unique<RawWebSocket>(port());
        // 40 MiB of replies exceed the socket buffers and the backlog of 4 MiB.
        for (int i = 0; i < 40; ++i)
            client->send(RawWebSocket::Text, "much");
        return client;
    });
    EXPECT_TRUE(becomesEmpty());
}

TEST_F(WebSocketSessionTest, SendsMoreThanTheBacklogToAClientThatReads)
{
    const int total = inBackground([this] {
        RawWebSocket socket(port());
        int bytes = 0;
        for (int i = 0; i < 20; ++i)
            bytes += socket.ask("much").size();
        return bytes;
    });
    EXPECT_EQ(total, 20 * 1024 * 1024);
}

TEST_F(WebSocketSessionTest, DropsTheReplyToAClientThatHasLeft)
{
    inBackground([this] {
        RawWebSocket socket(port());
        socket.send(RawWebSocket::Text, "keep");
        return socket.ask(Echo);
    });
    ASSERT_EQ(m_handler.kept.size(), 1);
    // The server's thread counts a client out before this thread is told.
    ASSERT_TRUE(spinUntil([this] { return m_handler.kept.first().client.isNull(); }));
    m_handler.kept.first().reply("late");
}

// A client may have its response to the handshake before the server knows that it was sent.
TEST_F(WebSocketSessionTest, ClosesAsGoingAwayWhenTheServerCloses)
{
    for (int round = 0; round < 30; ++round) {
        HttpServer server(&m_handler);
        ASSERT_TRUE(server.listen({QStringLiteral("127.0.0.1"), 0}));
        const quint16 port = server.port();
        const auto socket = inBackground([port] { return std::make_unique<RawWebSocket>(port); });
        server.close();
        const auto frame = inBackground([&] { return socket->receive(); });
        ASSERT_EQ(frame.opcode, RawWebSocket::Close) << "in round " << round;
        EXPECT_EQ(frame.closeCode(), 1001);
    }
}

} // namespace
