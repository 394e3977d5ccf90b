// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/api/web/HttpFixture.h"
#include "tests/support/WorkerThread.h"

#include <QElapsedTimer>

namespace {

class HttpClientFaultTest : public testing::Test {
protected:
    /// The result of a request that gets \a response. Expects that the client still works after it.
    HttpClientResult resultOf(
        const ScriptedServer::Response &response, const HttpClientOptions &options = {})
    {
        const ScriptedServer server([&response](const ScriptedServer::Request &request) {
            return request.target == "/good" ? answerWith("good") : response;
        });
        const HttpClientResult result = fetch(client, urlOf(server, "/"), options);
        EXPECT_EQ(fetch(client, urlOf(server, "/good")).data(), "good");
        EXPECT_EQ(result.data().isEmpty(), result.status() != HttpClientStatus::Success);
        return result;
    }
    HttpClientStatus statusOf(
        const ScriptedServer::Response &response, const HttpClientOptions &options = {})
    {
        return resultOf(response, options).status();
    }

    static ScriptedServer::Response ending(ScriptedServer::End end, int sendBytes = 0)
    {
        ScriptedServer::Response response = answerWith(QByteArray(100000, 'x'));
        response.end = end;
        response.sendBytes = sendBytes;
        return response;
    }

    HttpClient client {nullptr, HttpClient::Default, true};
};

using End = ScriptedServer::End;

} // namespace

TEST_F(HttpClientFaultTest, AnUnknownHostNameIsResolveFailed)
{
    // A label longer than 63 octets (RFC 1035, section 2.3.4) fails without a name server.
    const VeskUrl url(QStringLiteral("http://%1.example/").arg(QString(64, QLatin1Char('x'))));
    const HttpClientResult result = fetch(client, url);
    EXPECT_EQ(result.status(), HttpClientStatus::ResolveFailed);
    EXPECT_EQ(result.code(), 0);
    EXPECT_EQ(result.url(), url);
}

TEST_F(HttpClientFaultTest, AClosedPortIsConnectFailed)
{
    VeskUrl url;
    {
        const ScriptedServer server(always(answerWith("x")));
        url = urlOf(server, "/");
    }
    EXPECT_EQ(fetch(client, url).status(), HttpClientStatus::ConnectFailed);
    EXPECT_EQ(send(client, url, "x").status(), HttpClientStatus::ConnectFailed);
}

TEST_F(HttpClientFaultTest, AServerThatSendsNothingIsTimedOut)
{
    EXPECT_EQ(statusOf(ending(End::StallBeforeHead), withTimeout(100)), HttpClientStatus::TimedOut);
}

TEST_F(HttpClientFaultTest, AServerThatStallsIsTimedOut)
{
    // Where the server stands still before the head for as long, there is no telling: again.
    HttpClientResult result;
    for (int timeout = 1000; timeout <= 16000 && result.code() != 200; timeout *= 2)
        result = resultOf(ending(End::Stall, 50000), withTimeout(timeout));
    EXPECT_EQ(result.status(), HttpClientStatus::TimedOut);
    EXPECT_EQ(result.code(), 200);
}

TEST_F(HttpClientFaultTest, TimeOutsEndInTheOrderOfTheirLengths)
{
    const ScriptedServer server(always(ending(End::StallBeforeHead)));
    QList<int> ended;
    // Begun as far apart as their lengths are, they would end in another order: again, elsewhere,
    // because an address that timed out is not requested anew.
    qint64 apart = 50;
    for (int round = 0; round < 20 && apart >= 50; ++round) {
        ended.clear();
        const QByteArray target = "/" + QByteArray::number(round);
        QElapsedTimer clock;
        clock.start();
        for (const int timeout : {300, 100, 200}) {
            client.get(urlOf(server, target.constData()), withTimeout(timeout),
                [&ended, timeout](const HttpClientResult &result) {
                    EXPECT_EQ(result.status(), HttpClientStatus::TimedOut);
                    ended.append(timeout);
                });
        }
        apart = clock.elapsed();
        EXPECT_TRUE(spinUntil([&ended] { return ended.size() == 3; }));
    }
    EXPECT_EQ(ended, (QList<int> {100, 200, 300}));
}

TEST_F(HttpClientFaultTest, ATimeOutOfZeroOrLessSetsNone)
{
    EXPECT_EQ(statusOf(answerWith("x"), withTimeout(0)), HttpClientStatus::Success);
    EXPECT_EQ(statusOf(answerWith("x"), withTimeout(-5)), HttpClientStatus::Success);
}

TEST_F(HttpClientFaultTest, IncompleteResponsesAreBroken)
{
    const QByteArray chunked = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";
    const struct {
        const char *name;
        ScriptedServer::Response response;
    } cases[] = {
        {"reset before the head", ending(End::ResetBeforeHead)},
        {"reset after the head", ending(End::Reset, 0)},
        {"reset within the body", ending(End::Reset, 5000)},
        {"closed after the head", ending(End::Truncate, 0)},
        {"closed one byte early", ending(End::Truncate, 99999)},
        {"closed without a byte", rawAnswer("")},
        {"no chunk", rawAnswer(chunked)},
        {"half a chunk", rawAnswer(chunked + "5\r\nab")},
        {"no last chunk", rawAnswer(chunked + "2\r\nab\r\n")},
    };
    for (const auto &broken : cases)
        EXPECT_EQ(statusOf(broken.response), HttpClientStatus::Broken) << broken.name;
}

TEST_F(HttpClientFaultTest, ResponsesThatAreNoHttpAreBroken)
{
    for (const QByteArray &garbage : {QByteArray("junk that goes on"), QByteArray(1000000, 'j'),
             QByteArray("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nxyz\r\n")})
        EXPECT_EQ(statusOf(rawAnswer(garbage)), HttpClientStatus::Broken)
            << garbage.left(60).toStdString();
    for (const char *garbage :
        {"junk", "SSH-2.0-OpenSSH_9.2\r\n", "ICY 200 OK\r\n\r\nx", "HTTP/1.1 abc\r\n\r\n",
            "HTTP/9.9 200 OK\r\n\r\n", "HTTP/1.1 200 OK\r\nContent-Length: -5\r\n\r\nx",
            "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n No Header\r\n\x01\x02\r\n\r\nx"})
        EXPECT_NE(statusOf(rawAnswer(garbage)), HttpClientStatus::Success) << garbage;
}

TEST_F(HttpClientFaultTest, BodiesThatCannotBeDecodedAreBroken)
{
    for (const char *encoding : {"gzip", "deflate", "unheard-of"}) {
        EXPECT_EQ(statusOf(answerWith(QByteArray(1000, 'x'), {{"Content-Encoding", encoding}})),
            HttpClientStatus::Broken)
            << encoding;
    }
}

TEST_F(HttpClientFaultTest, HeadsBeyondTheLimitAreBroken)
{
    QByteArray head = "HTTP/1.1 200 OK\r\n";
    while (head.size() < 1000000)
        head += "X-More: " + QByteArray(1000, 'x') + "\r\n";
    EXPECT_EQ(statusOf(rawAnswer(head + "\r\n")), HttpClientStatus::Broken);

    QByteArray interim;
    while (interim.size() < 1000000)
        interim += "HTTP/1.1 103 Early Hints\r\nX: " + QByteArray(1000, 'x') + "\r\n\r\n";
    EXPECT_EQ(statusOf(rawAnswer(interim)), HttpClientStatus::Broken);

    QByteArray trailers = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n0\r\n";
    while (trailers.size() < 1000000)
        trailers += "X: " + QByteArray(1000, 'x') + "\r\n";
    EXPECT_EQ(statusOf(rawAnswer(trailers + "\r\n")), HttpClientStatus::Broken);

    EXPECT_EQ(statusOf(rawAnswer("HTTP/1.1 200 OK\r\nX: " + QByteArray(1000000, 'x') + "\r\n\r\n")),
        HttpClientStatus::Broken);
}

TEST_F(HttpClientFaultTest, AServerThatIsGoneAtTheSecondRequestIsConnectFailed)
{
    auto server = std::make_unique<ScriptedServer>(always(answerWith("x")));
    const VeskUrl url = urlOf(*server, "/");
    EXPECT_EQ(fetch(client, url).status(), HttpClientStatus::Success);
    server.reset();
    EXPECT_EQ(fetch(client, url).status(), HttpClientStatus::ConnectFailed);
}
