// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/http/WebSocketSession.h"

#include "host/http/HttpServer.h"
#include "tests/support/LogCapture.h"
#include "tests/support/RawWebSocket.h"

#include <QElapsedTimer>

#include <gmock/gmock.h>

namespace {

const QByteArray Echo = R"({"jsonrpc":"2.0","id":1,"method":"echo","params":{"a":1}})";
const QByteArray EchoAnswer = R"({"id":1,"jsonrpc":"2.0","result":{"a":1}})";

class WebSocketSessionTest : public testing::Test {
protected:
    WebSocketSessionTest()
    {
        m_rpc.addMethod(QStringLiteral("echo"),
            [](const JsonRpcCallPtr &call) { call->finish(QVariant(call->params())); });
        m_rpc.addMethod(
            QStringLiteral("keep"), [this](const JsonRpcCallPtr &call) { m_kept.append(call); });
        m_rpc.addMethod(QStringLiteral("tellMe"), [](const JsonRpcCallPtr &call) {
            call->peer()->notify(QStringLiteral("told"), QVariantHash());
            call->finish({});
        });
        m_rpc.addMethod(QStringLiteral("much"), [](const JsonRpcCallPtr &call) {
            call->finish(QString(1024 * 1024, QLatin1Char('x')));
        });
        QString error;
        EXPECT_TRUE(m_server.listen({QStringLiteral("127.0.0.1"), 0}, error));
    }

    quint16 port() const { return m_server.port(); }
    bool becomesEmpty()
    {
        return spinUntil([this] { return m_server.connections() == 0; });
    }

    QList<JsonRpcCallPtr> m_kept;
    JsonRpcDispatcher m_rpc;
    HttpServer m_server {&m_rpc};
};

TEST_F(WebSocketSessionTest, AnswersJsonRpc)
{
    const QByteArray answer = inBackground([this] {
        RawWebSocket socket(port());
        return statusOf(socket.handshake()) == 101 ? socket.ask(Echo) : socket.handshake();
    });
    EXPECT_EQ(answer, EchoAnswer);
    EXPECT_TRUE(becomesEmpty());
}

TEST_F(WebSocketSessionTest, CountsAsAConnectionWhileItIsOpen)
{
    const auto socket = inBackground([this] { return std::make_unique<RawWebSocket>(port()); });
    EXPECT_EQ(m_server.connections(), 1);
}

TEST_F(WebSocketSessionTest, BringsNotificationsOfItsOwn)
{
    const auto frames = inBackground([this] {
        RawWebSocket socket(port());
        socket.send(RawWebSocket::Text, R"({"jsonrpc":"2.0","id":1,"method":"tellMe"})");
        const QByteArray first = socket.receive().payload;
        return QList<QByteArray> {first, socket.receive().payload};
    });
    EXPECT_EQ(frames,
        (QList<QByteArray> {R"({"jsonrpc":"2.0","method":"told","params":{}})",
            R"({"id":1,"jsonrpc":"2.0","result":null})"}));
}

TEST_F(WebSocketSessionTest, RefusesAPageFromElsewhere)
{
    const auto status = [this](const QByteArray &origin) {
        return inBackground([&] {
            return statusOf(RawWebSocket(port(), "Origin: " + origin + "\r\n").handshake());
        });
    };
    EXPECT_EQ(status("http://evil.example"), 403);
    EXPECT_EQ(status("null"), 403);
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

TEST_F(WebSocketSessionTest, AnswersAParseErrorAndStaysOpen)
{
    const auto answers = inBackground([this] {
        RawWebSocket socket(port());
        const QByteArray first = socket.ask("{");
        return QList<QByteArray> {first, socket.ask(Echo)};
    });
    EXPECT_THAT(answers.first().toStdString(), testing::HasSubstr("-32700"));
    EXPECT_EQ(answers.last(), EchoAnswer);
}

TEST_F(WebSocketSessionTest, ClosesForWhatIsNoText)
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

TEST_F(WebSocketSessionTest, ClosesForAMessageThatIsTooLong)
{
    const auto frames = inBackground([this] {
        RawWebSocket socket(port());
        const QByteArray longest = Echo + QByteArray(65536 - Echo.size(), ' ');
        const QByteArray answer = socket.ask(longest);
        socket.send(RawWebSocket::Text, longest + ' ');
        return std::make_pair(answer, socket.receive());
    });
    EXPECT_EQ(frames.first, EchoAnswer);
    EXPECT_EQ(frames.second.opcode, RawWebSocket::Close);
    EXPECT_EQ(frames.second.closeCode(), 1009);
    EXPECT_TRUE(becomesEmpty());
}

TEST_F(WebSocketSessionTest, DropsAClientThatNeverFinishesAMessage)
{
    const bool dropped = inBackground([this] {
        RawWebSocket socket(port());
        socket.send(RawWebSocket::Text, "[", false);
        for (int i = 0; i < 10000; ++i) {
            if (!socket.send(RawWebSocket::Continuation, QByteArray(1024, ' '), false))
                return true;
        }
        return false;
    });
    EXPECT_TRUE(dropped);
    EXPECT_TRUE(becomesEmpty());
}

TEST_F(WebSocketSessionTest, TellsOfDroppedClientsOnceASecond)
{
    constexpr int Clients = 20;
    const LogCapture log("Host.Rpc");
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
    const auto seconds = static_cast<int>(clock.elapsed() / 1000);
    EXPECT_GE(log.lines(QStringLiteral("WARN")).size(), 1);
    EXPECT_LE(log.lines(QStringLiteral("WARN")).size(), qMin(1 + seconds, Clients - 1));
}

TEST_F(WebSocketSessionTest, DropsAClientThatOnlySendsPings)
{
    const bool dropped = inBackground([this] {
        RawWebSocket socket(port());
        for (int i = 0; i < 200000; ++i) {
            if (!socket.send(RawWebSocket::Ping, QByteArray(125, 'p')))
                return true;
        }
        return false;
    });
    EXPECT_TRUE(dropped);
    EXPECT_TRUE(becomesEmpty());
}

TEST_F(WebSocketSessionTest, DropsAClientThatDoesNotReadItsAnswers)
{
    const auto socket = inBackground([this] {
        auto client = std::make_unique<RawWebSocket>(port());
        for (int i = 0; i < 40; ++i)
            client->send(RawWebSocket::Text, R"({"jsonrpc":"2.0","id":1,"method":"much"})");
        return client;
    });
    EXPECT_TRUE(becomesEmpty());
}

TEST_F(WebSocketSessionTest, TakesMoreThanTheBacklogFromAClientThatReads)
{
    const int total = inBackground([this] {
        RawWebSocket socket(port());
        int bytes = 0;
        for (int i = 0; i < 20; ++i)
            bytes += socket.ask(R"({"jsonrpc":"2.0","id":1,"method":"much"})").size();
        return bytes;
    });
    EXPECT_GT(total, 20 * 1024 * 1024);
}

TEST_F(WebSocketSessionTest, RefusesMoreThanSixtyFourCallsAtOnce)
{
    const QByteArray answer = inBackground([this] {
        RawWebSocket socket(port());
        for (int i = 0; i < 64; ++i)
            socket.send(RawWebSocket::Text, R"({"jsonrpc":"2.0","id":1,"method":"keep"})");
        return socket.ask(R"({"jsonrpc":"2.0","id":65,"method":"keep"})");
    });
    EXPECT_THAT(answer.toStdString(), testing::HasSubstr("-32003"));
    EXPECT_EQ(m_kept.size(), 64);
}

TEST_F(WebSocketSessionTest, DropsTheAnswersForAClientThatHasGone)
{
    inBackground([this] {
        RawWebSocket socket(port());
        socket.send(RawWebSocket::Text, R"({"jsonrpc":"2.0","id":1,"method":"keep"})");
        return socket.ask(Echo);
    });
    ASSERT_TRUE(becomesEmpty());
    ASSERT_EQ(m_kept.size(), 1);
    EXPECT_EQ(m_kept.first()->peer(), nullptr);
    m_kept.first()->finish(1);
}

TEST_F(WebSocketSessionTest, SaysGoodByeWhenTheServerCloses)
{
    auto socket = inBackground([this] { return std::make_unique<RawWebSocket>(port()); });
    m_server.close();
    const auto frame = inBackground([&] { return socket->receive(); });
    EXPECT_EQ(frame.opcode, RawWebSocket::Close);
    EXPECT_EQ(frame.closeCode(), 1001);
}

} // namespace
