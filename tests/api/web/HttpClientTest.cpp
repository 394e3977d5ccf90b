// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/api/web/HttpFixture.h"
#include "tests/support/WorkerThread.h"

#include <QSet>

#include <gmock/gmock.h>

#include <sstream>

using testing::ElementsAre;
using testing::StartsWith;

namespace {

class HttpClientTest : public testing::Test {
protected:
    HttpClient client {nullptr, HttpClient::Default, true};
};

ScriptedServer::Response echo(const ScriptedServer::Request &request)
{
    return answerWith(request.method + ' ' + request.target + ' ' + request.body);
}

} // namespace

TEST_F(HttpClientTest, HandsOutTheBodyTheCodeAndTheUrl)
{
    const ScriptedServer server(&echo);
    const VeskUrl url = urlOf(server, "/Browse.ashx?c=music&q=a%20b");
    const HttpClientResult result = fetch(client, url);
    EXPECT_EQ(result.status(), HttpClientStatus::Success);
    EXPECT_EQ(static_cast<int>(result.status()), 0);
    EXPECT_EQ(result.code(), 200);
    EXPECT_EQ(result.data(), "GET /Browse.ashx?c=music&q=a%20b ");
    EXPECT_EQ(result.url(), url);
}

TEST_F(HttpClientTest, AnyHttpCodeIsASuccess)
{
    for (const int code : {201, 400, 403, 404, 500, 503, 304}) {
        ScriptedServer::Response response = answerWith(code == 304 ? "" : "fault");
        response.code = code;
        const ScriptedServer server(always(response));
        const HttpClientResult result = fetch(client, urlOf(server, "/"));
        EXPECT_EQ(result.status(), HttpClientStatus::Success) << code;
        EXPECT_EQ(result.code(), code);
        EXPECT_EQ(result.data(), response.body);
    }
}

TEST_F(HttpClientTest, ReadsABodyThatEndsWithTheConnection)
{
    const ScriptedServer server(always(rawAnswer("HTTP/1.0 200 OK\r\n\r\nold but good")));
    EXPECT_EQ(fetch(client, urlOf(server, "/")).data(), "old but good");
}

TEST_F(HttpClientTest, ReadsAChunkedBody)
{
    const ScriptedServer server(always(
        answerWith("3\r\nabc\r\n2;x=y\r\nde\r\n0\r\n\r\n", {{"Transfer-Encoding", "chunked"}})));
    EXPECT_EQ(fetch(client, urlOf(server, "/")).data(), "abcde");
    EXPECT_EQ(fetch(client, urlOf(server, "/")).data(), "abcde");
    EXPECT_EQ(server.connections(), 1);
}

TEST_F(HttpClientTest, SendsAUserAgentAndAcceptsCompressedResponses)
{
    const ScriptedServer server(&echo);
    fetch(client, urlOf(server, "/"));
    ASSERT_EQ(server.requests().size(), 1);
    const ScriptedServer::Request request = server.requests().first();
    EXPECT_THAT(request.header("User-Agent").toStdString(), StartsWith("Vesk/"));
    EXPECT_TRUE(request.header("Accept-Encoding").contains("gzip"));
    EXPECT_EQ(request.header("Host"), "127.0.0.1:" + QByteArray::number(server.port()));
    EXPECT_TRUE(request.header("Cookie").isNull());
}

TEST_F(HttpClientTest, DecodesCompressedAnswers)
{
    const QByteArray body(100000, 'x');
    const ScriptedServer server([&body](const ScriptedServer::Request &request) {
        if (request.target == "/gzip")
            return answerWith(gzip(body), {{"Content-Encoding", "gzip"}});
        return answerWith(deflate(body), {{"Content-Encoding", "deflate"}});
    });
    EXPECT_EQ(fetch(client, urlOf(server, "/gzip")).data(), body);
    EXPECT_EQ(fetch(client, urlOf(server, "/deflate")).data(), body);
}

TEST_F(HttpClientTest, SendsAnEmptyPostWithItsLength)
{
    const ScriptedServer server(&echo);
    EXPECT_EQ(send(client, urlOf(server, "/Account.ashx?c=join"), {}).data(),
        "POST /Account.ashx?c=join ");
    const ScriptedServer::Request request = server.requests().first();
    EXPECT_EQ(request.header("Content-Length"), "0");
    EXPECT_TRUE(request.header("Content-Type").isNull());
    EXPECT_TRUE(request.header("Expect").isNull());
}

TEST_F(HttpClientTest, SendsABodyAsAForm)
{
    const ScriptedServer server(&echo);
    EXPECT_EQ(send(client, urlOf(server, "/"), "a=1&b=2").data(), "POST / a=1&b=2");
    EXPECT_EQ(
        server.requests().first().header("Content-Type"), "application/x-www-form-urlencoded");
}

TEST_F(HttpClientTest, SendsALargeBodyWithoutAskingFirst)
{
    const ScriptedServer server(&echo);
    const QByteArray body(3000000, 'b');
    EXPECT_EQ(send(client, urlOf(server, "/"), body).data(), "POST / " + body);
    EXPECT_TRUE(server.requests().first().header("Expect").isNull());
}

TEST_F(HttpClientTest, APostLeavesNothingForTheNextRequest)
{
    const ScriptedServer server(&echo);
    send(client, urlOf(server, "/"), "a=1");
    EXPECT_EQ(fetch(client, urlOf(server, "/")).data(), "GET / ");
    send(client, urlOf(server, "/"), {});
    EXPECT_EQ(send(client, urlOf(server, "/"), "x").data(), "POST / x");
    EXPECT_TRUE(server.requests().at(1).header("Content-Type").isNull());
    EXPECT_TRUE(server.requests().at(1).header("Content-Length").isNull());
    EXPECT_FALSE(server.requests().at(3).header("Content-Type").isNull());
}

TEST_F(HttpClientTest, KeepsItsConnection)
{
    const ScriptedServer server(&echo);
    for (int i = 0; i < 100; ++i)
        ASSERT_EQ(fetch(client, urlOf(server, "/")).status(), HttpClientStatus::Success);
    EXPECT_EQ(server.requests().size(), 100);
    EXPECT_EQ(server.connections(), 1);
}

TEST_F(HttpClientTest, ReconnectsWhenTheServerClosedTheConnection)
{
    ScriptedServer::Response response = answerWith("x");
    response.end = ScriptedServer::End::Close;
    const ScriptedServer server(always(response));
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(fetch(client, urlOf(server, "/")).data(), "x");
    EXPECT_EQ(server.connections(), 5);
}

TEST_F(HttpClientTest, GivesEachOfManyExchangesItsOwnResponse)
{
    const ScriptedServer server(&echo);
    constexpr int Count = 60;
    QList<QByteArray> answers;
    for (int i = 0; i < Count; ++i) {
        const QByteArray target = "/" + QByteArray::number(i);
        client.get(urlOf(server, target.constData()), HttpClientOptions(),
            [&answers, target](const HttpClientResult &result) {
                EXPECT_EQ(result.data(), "GET " + target + " ");
                answers.append(result.data());
            });
    }
    EXPECT_TRUE(answers.isEmpty());
    EXPECT_TRUE(spinUntil([&answers] { return answers.size() >= Count; }));
    EXPECT_EQ(QSet<QByteArray>(answers.begin(), answers.end()).size(), Count);
    EXPECT_EQ(answers.size(), Count);
}

TEST_F(HttpClientTest, TakesABodyOfExactlyTheLimit)
{
    const ScriptedServer server(always(answerWith(QByteArray(1000, 'x'))));
    EXPECT_EQ(fetch(client, urlOf(server, "/"), withLimit(1000)).data().size(), 1000);
    const HttpClientResult tooLarge = fetch(client, urlOf(server, "/"), withLimit(999));
    EXPECT_EQ(tooLarge.status(), HttpClientStatus::TooLarge);
    EXPECT_EQ(tooLarge.code(), 200);
    EXPECT_TRUE(tooLarge.data().isEmpty());
    EXPECT_EQ(fetch(client, urlOf(server, "/")).data().size(), 1000);
}

TEST_F(HttpClientTest, RefusesAnAnnouncedLengthBeforeTheBodyIsThere)
{
    ScriptedServer::Response response = answerWith(QByteArray(2000, 'x'));
    response.end = ScriptedServer::End::Stall;
    response.sendBytes = 1;
    const ScriptedServer server(always(response));
    EXPECT_EQ(
        fetch(client, urlOf(server, "/"), withLimit(1000)).status(), HttpClientStatus::TooLarge);
}

TEST_F(HttpClientTest, CountsABodyOfUnknownLengthWhileItArrives)
{
    QByteArray endless;
    for (int i = 0; i < 1000; ++i)
        endless += "3E8\r\n" + QByteArray(1000, 'x') + "\r\n";
    ScriptedServer::Response response = answerWith(endless, {{"Transfer-Encoding", "chunked"}});
    response.end = ScriptedServer::End::Stall;
    response.sendBytes = endless.size();
    const ScriptedServer server(always(response));
    EXPECT_EQ(
        fetch(client, urlOf(server, "/"), withLimit(500000)).status(), HttpClientStatus::TooLarge);
}

TEST_F(HttpClientTest, CountsDecodedBytes)
{
    const QByteArray bomb = deflate(QByteArray(50000000, 0));
    ASSERT_LT(bomb.size(), 100000);
    const ScriptedServer server(always(answerWith(bomb, {{"Content-Encoding", "deflate"}})));
    EXPECT_EQ(
        fetch(client, urlOf(server, "/"), withLimit(1000000)).status(), HttpClientStatus::TooLarge);

    // The limit applies to the decoded body: a larger encoding is accepted.
    QByteArray noise;
    for (quint32 i = 1; noise.size() < 1000; i = i * 1664525 + 1013904223)
        noise.append(static_cast<char>(i >> 24));
    const QByteArray grown = deflate(noise);
    ASSERT_GT(grown.size(), noise.size());
    const ScriptedServer other(always(answerWith(grown, {{"Content-Encoding", "deflate"}})));
    EXPECT_EQ(fetch(client, urlOf(other, "/"), withLimit(1000)).data(), noise);
}

TEST_F(HttpClientTest, SendsTheUrlAsItStands)
{
    const ScriptedServer server(&echo);
    EXPECT_EQ(fetch(client, urlOf(server, "/a/../b/./%41?x=%zz+[]&&y#f")).data(),
        "GET /a/../b/./%41?x=%zz+[]&&y ");
    fetch(client, urlOf(server, "?x=1"));
    EXPECT_EQ(server.requests().last().target, "/?x=1");
}

TEST_F(HttpClientTest, NoControlCharacterReachesTheRequestLine)
{
    const ScriptedServer server(&echo);
    const QString url = urlOf(server, "/").toString();
    fetch(client, VeskUrl(url + QStringLiteral("a b\r\nX-Injected: 1\r\n\r\n\t\x7f")));
    EXPECT_THAT(
        server.requestLines(), ElementsAre("GET /a%20b%0D%0AX-Injected:%201%0D%0A%0D%0A%09%7F"));
    EXPECT_TRUE(server.requests().first().header("X-Injected").isNull());
}

TEST_F(HttpClientTest, RefusesWhatIsNoHttpUrl)
{
    for (const char *bad : {"", "/Browse.ashx", "//127.0.0.1/", "ftp://127.0.0.1/",
             "http:", "file:///etc/passwd", "http://", "http:///x", "http://:80/",
             "https:127.0.0.1", "httpx://127.0.0.1/", "http://127.0.0.1:99999/",
             "http://127.0.0.1:x/", "http://a%0d%0ab/", "http://a%00b/", "http://[::1/"}) {
        const HttpClientResult result = fetch(client, VeskUrl(QString::fromLatin1(bad)));
        EXPECT_EQ(result.status(), HttpClientStatus::InvalidRequest) << bad;
        EXPECT_EQ(result.code(), 0);
    }
    const VeskUrl endless(QStringLiteral("http://127.0.0.1/") + QString(100000, QLatin1Char('x')));
    EXPECT_EQ(fetch(client, endless).status(), HttpClientStatus::InvalidRequest);
    EXPECT_EQ(send(client, VeskUrl(), {}).status(), HttpClientStatus::InvalidRequest);
}

TEST_F(HttpClientTest, ConnectsElsewhereForARedirectedName)
{
    const ScriptedServer server(&echo);
    HttpClient::setConnectTo({QString::fromLatin1(server.connectTo("opml.example.invalid"))});
    const VeskUrl url(QStringLiteral("http://opml.example.invalid/Browse.ashx"));
    EXPECT_EQ(fetch(client, url).data(), "GET /Browse.ashx ");
    EXPECT_EQ(server.requests().first().header("Host"), "opml.example.invalid");

    HttpClient::setConnectTo({});
    const VeskUrl unresolvable(
        QStringLiteral("http://%1.invalid/").arg(QString(64, QLatin1Char('x'))));
    EXPECT_EQ(fetch(client, unresolvable).status(), HttpClientStatus::ResolveFailed);
    EXPECT_EQ(server.requests().size(), 1);
}

TEST_F(HttpClientTest, ADifferentTargetOfANameGetsAConnectionOfItsOwn)
{
    const ScriptedServer first(always(answerWith("first")));
    const ScriptedServer second(always(answerWith("second")));
    const VeskUrl url(QStringLiteral("http://opml.example.invalid/"));
    HttpClient::setConnectTo({QString::fromLatin1(first.connectTo("opml.example.invalid"))});
    EXPECT_EQ(fetch(client, url).data(), "first");
    HttpClient::setConnectTo({QString::fromLatin1(second.connectTo("opml.example.invalid"))});
    EXPECT_EQ(fetch(client, url).data(), "second");
    HttpClient::setConnectTo({});
}

TEST_F(HttpClientTest, UsesHttp1OnRequest)
{
    const ScriptedServer server(&echo);
    HttpClient http1(nullptr, HttpClient::Http1, true);
    EXPECT_EQ(fetch(http1, urlOf(server, "/x")).data(), "GET /x ");
}

TEST_F(HttpClientTest, StatusesPrintTheirNames)
{
    std::ostringstream out;
    out << HttpClientStatus::Success << ' ' << HttpClientStatus::TooManyRedirects << ' '
        << HttpClientStatus::Cancelled << ' ' << static_cast<HttpClientStatus>(99);
    EXPECT_EQ(out.str(), "Success TooManyRedirects Cancelled 99");
}
