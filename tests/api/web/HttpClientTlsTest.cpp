// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/api/web/HttpFixture.h"

#include <QFile>
#include <QTemporaryDir>

namespace {

class HttpClientTlsTest : public testing::Test {
protected:
    HttpClientTlsTest()
    {
        // Keeps the tests independent of the certificates that this machine trusts.
        qputenv("SSL_CERT_DIR", empty.path().toLocal8Bit());
    }
    ~HttpClientTlsTest() override
    {
        qunsetenv("SSL_CERT_DIR");
        HttpClient::setConnectTo({});
        HttpClient::setCaFile(QString());
    }

    ScriptedServer serverFor(TestAuthority &issuer, const char *host,
        TestAuthority::Validity validity = TestAuthority::Now)
    {
        const TestAuthority::Certificate files = issuer.issue(host, validity);
        return ScriptedServer(always(answerWith("secure")), files.certificateFile, files.keyFile);
    }

    /// The result of a new client's request to \a server for https://opml.example.invalid.
    static HttpClientResult ask(const ScriptedServer &server)
    {
        HttpClient::setConnectTo({QString::fromLatin1(server.connectTo("opml.example.invalid"))});
        HttpClient client(nullptr, HttpClient::Default, true);
        return fetch(client, VeskUrl(QStringLiteral("https://opml.example.invalid/x")));
    }

    QTemporaryDir empty;
    TestAuthority authority {"Test Authority"};
};

} // namespace

TEST_F(HttpClientTlsTest, TrustsTheAuthorityThatItWasGiven)
{
    const ScriptedServer server = serverFor(authority, "opml.example.invalid");
    ASSERT_TRUE(HttpClient::setCaFile(authority.file()));
    const HttpClientResult result = ask(server);
    EXPECT_EQ(result.status(), HttpClientStatus::Success);
    EXPECT_EQ(result.data(), "secure");
    EXPECT_EQ(server.requests().first().header("Host"), "opml.example.invalid");
}

TEST_F(HttpClientTlsTest, RefusesAnAuthorityThatItDoesNotKnow)
{
    const ScriptedServer server = serverFor(authority, "opml.example.invalid");
    const HttpClientResult result = ask(server);
    EXPECT_EQ(result.status(), HttpClientStatus::TlsFailed);
    EXPECT_EQ(result.code(), 0);

    const TestAuthority other("Other Authority");
    ASSERT_TRUE(HttpClient::setCaFile(other.file()));
    EXPECT_EQ(ask(server).status(), HttpClientStatus::TlsFailed);
    const TestAuthority namesake("Test Authority");
    ASSERT_TRUE(HttpClient::setCaFile(namesake.file()));
    EXPECT_EQ(ask(server).status(), HttpClientStatus::TlsFailed);
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(HttpClientTlsTest, RefusesACertificateForAnotherHost)
{
    const ScriptedServer server = serverFor(authority, "other.example.invalid");
    ASSERT_TRUE(HttpClient::setCaFile(authority.file()));
    EXPECT_EQ(ask(server).status(), HttpClientStatus::TlsFailed);
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(HttpClientTlsTest, RefusesAnExpiredCertificate)
{
    const ScriptedServer server = serverFor(authority, "opml.example.invalid", TestAuthority::Past);
    ASSERT_TRUE(HttpClient::setCaFile(authority.file()));
    EXPECT_EQ(ask(server).status(), HttpClientStatus::TlsFailed);
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(HttpClientTlsTest, RefusesACertificateThatIsNotYetValid)
{
    const ScriptedServer server
        = serverFor(authority, "opml.example.invalid", TestAuthority::Future);
    ASSERT_TRUE(HttpClient::setCaFile(authority.file()));
    EXPECT_EQ(ask(server).status(), HttpClientStatus::TlsFailed);
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(HttpClientTlsTest, SendsNothingOfAPostToAServerThatItDoesNotTrust)
{
    TestAuthority unknown("Unknown Authority");
    TestAuthority namesake("Test Authority");
    const char *const host = "opml.example.invalid";
    const struct {
        const char *name;
        ScriptedServer server;
    } servers[] = {
        {"unknown authority", serverFor(unknown, host)},
        {"authority of the same name", serverFor(namesake, host)},
        {"other host", serverFor(authority, "example.invalid")},
        {"host below it", serverFor(authority, "a.opml.example.invalid")},
        {"expired", serverFor(authority, host, TestAuthority::Past)},
        {"not good yet", serverFor(authority, host, TestAuthority::Future)},
    };
    ASSERT_TRUE(HttpClient::setCaFile(authority.file()));
    const VeskUrl url(
        QStringLiteral("https://opml.example.invalid/Account.ashx?username=me&password=sesame"));
    for (const auto &[name, server] : servers) {
        HttpClient::setConnectTo({QString::fromLatin1(server.connectTo(host))});
        HttpClient client(nullptr, HttpClient::Default, true);
        for (const char *body : {"", "password=sesame"}) {
            const HttpClientResult result = send(client, url, body);
            EXPECT_EQ(result.status(), HttpClientStatus::TlsFailed) << name;
            EXPECT_EQ(result.code(), 0) << name;
            EXPECT_TRUE(result.data().isEmpty()) << name;
        }
        EXPECT_GT(server.connections(), 0) << name;
        EXPECT_TRUE(server.requests().isEmpty()) << name;
    }

    // The same request reaches a trusted server.
    const ScriptedServer good = serverFor(authority, host);
    HttpClient::setConnectTo({QString::fromLatin1(good.connectTo(host))});
    HttpClient client(nullptr, HttpClient::Default, true);
    EXPECT_EQ(send(client, url, QByteArray()).data(), "secure");
    EXPECT_EQ(
        good.requestLines(), QList<QByteArray> {"POST /Account.ashx?username=me&password=sesame"});
}

TEST_F(HttpClientTlsTest, TrustsTheSystemsAuthoritiesAndTheGivenOne)
{
    TestAuthority system("System Authority");
    const ScriptedServer systemServer = serverFor(system, "opml.example.invalid");
    const ScriptedServer givenServer = serverFor(authority, "opml.example.invalid");
    qputenv("SSL_CERT_DIR", system.hashedFolder());
    EXPECT_EQ(ask(systemServer).data(), "secure");
    EXPECT_EQ(ask(givenServer).status(), HttpClientStatus::TlsFailed);
    ASSERT_TRUE(HttpClient::setCaFile(authority.file()));
    EXPECT_EQ(ask(systemServer).data(), "secure");
    EXPECT_EQ(ask(givenServer).data(), "secure");
    ASSERT_TRUE(HttpClient::setCaFile(QString()));
    EXPECT_EQ(ask(givenServer).status(), HttpClientStatus::TlsFailed);
    EXPECT_EQ(ask(systemServer).data(), "secure");
}

TEST_F(HttpClientTlsTest, TrustsTheAuthoritiesInOneFile)
{
    const ScriptedServer server = serverFor(authority, "opml.example.invalid");
    qunsetenv("SSL_CERT_DIR");
    qputenv("SSL_CERT_FILE", QFile::encodeName(authority.file()));
    EXPECT_EQ(ask(server).data(), "secure");
    qunsetenv("SSL_CERT_FILE");
    EXPECT_EQ(ask(server).status(), HttpClientStatus::TlsFailed);
}

TEST_F(HttpClientTlsTest, AClientInUseTakesANewAuthority)
{
    const ScriptedServer server = serverFor(authority, "opml.example.invalid");
    HttpClient::setConnectTo({QString::fromLatin1(server.connectTo("opml.example.invalid"))});
    HttpClient client(nullptr, HttpClient::Default, true);
    const VeskUrl url(QStringLiteral("https://opml.example.invalid/"));
    EXPECT_EQ(fetch(client, url).status(), HttpClientStatus::TlsFailed);
    ASSERT_TRUE(HttpClient::setCaFile(authority.file()));
    EXPECT_EQ(fetch(client, url).data(), "secure");
    EXPECT_EQ(fetch(client, url).data(), "secure");
    EXPECT_EQ(server.requests().size(), 2);
}

TEST_F(HttpClientTlsTest, RefusesAFileWithoutACertificate)
{
    ASSERT_TRUE(HttpClient::setCaFile(authority.file()));
    EXPECT_FALSE(HttpClient::setCaFile(QStringLiteral("/nonexistent")));
    const auto accepts = [this](const QByteArray &content) {
        QFile file(empty.filePath(QStringLiteral("ca.pem")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        return HttpClient::setCaFile(file.fileName());
    };
    EXPECT_FALSE(accepts(""));
    EXPECT_FALSE(accepts("certificate"));
    EXPECT_FALSE(accepts("-----BEGIN CERTIFICATE-----\nAAAA\n-----END CERTIFICATE-----\n"));
    EXPECT_FALSE(accepts("-----BEGIN CERTIFICATE-----\n????\n-----END CERTIFICATE-----\n"));
    EXPECT_FALSE(accepts("-----BEGIN CERTIFICATE-----\nMAAA"));
    QFile good(authority.file());
    ASSERT_TRUE(good.open(QIODevice::ReadOnly));
    const QByteArray pem = good.readAll();
    EXPECT_FALSE(accepts(QByteArray(pem).replace(40, 8, "")));

    // The rejected file leaves the former one in effect; text around a certificate is ignored.
    const ScriptedServer server = serverFor(authority, "opml.example.invalid");
    EXPECT_EQ(ask(server).data(), "secure");
    EXPECT_TRUE(accepts("Subject: x\n" + pem + "\nmore text\n"));
    EXPECT_EQ(ask(server).data(), "secure");
}

TEST_F(HttpClientTlsTest, KeepsItsConnection)
{
    const ScriptedServer server = serverFor(authority, "opml.example.invalid");
    ASSERT_TRUE(HttpClient::setCaFile(authority.file()));
    HttpClient::setConnectTo({QString::fromLatin1(server.connectTo("opml.example.invalid"))});
    HttpClient client(nullptr, HttpClient::Default, true);
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(fetch(client, VeskUrl(QStringLiteral("https://opml.example.invalid/"))).data(),
            "secure");
    EXPECT_EQ(server.connections(), 1);
}

TEST_F(HttpClientTlsTest, AServerWithoutTlsIsATlsFailure)
{
    const ScriptedServer server(always(answerWith("plain")));
    HttpClient client(nullptr, HttpClient::Default, true);
    VeskUrl url = urlOf(server, "/");
    url.setScheme(QStringLiteral("https"));
    EXPECT_EQ(fetch(client, url).status(), HttpClientStatus::TlsFailed);
}

TEST_F(HttpClientTlsTest, FollowsNoRedirectFromHttpsToHttp)
{
    const ScriptedServer plain(always(answerWith("plain")));
    ScriptedServer server = serverFor(authority, "opml.example.invalid");
    ASSERT_TRUE(HttpClient::setCaFile(authority.file()));
    for (const char *start : {"", "HTTP:", "Http:"}) {
        const QByteArray target = urlOf(plain, "/").toEncoded();
        server.setHandler(always(redirectTo(*start ? start + target.mid(5) : target)));
        const HttpClientResult result = ask(server);
        EXPECT_EQ(result.status(), HttpClientStatus::TooManyRedirects);
        EXPECT_TRUE(result.data().isEmpty());
    }
    EXPECT_EQ(plain.connections(), 0);
}

TEST_F(HttpClientTlsTest, FollowsNoRedirectBackToHttp)
{
    const ScriptedServer end(always(answerWith("plain")));
    ScriptedServer server = serverFor(authority, "opml.example.invalid");
    server.setHandler(always(redirectTo(urlOf(end, "/").toEncoded())));
    const ScriptedServer start(always(redirectTo("https://opml.example.invalid/")));
    ASSERT_TRUE(HttpClient::setCaFile(authority.file()));
    HttpClient::setConnectTo({QString::fromLatin1(server.connectTo("opml.example.invalid"))});
    HttpClient client(nullptr, HttpClient::Default, true);
    EXPECT_EQ(fetch(client, urlOf(start, "/")).status(), HttpClientStatus::TooManyRedirects);
    EXPECT_EQ(end.connections(), 0);

    // Redirects from http to https, and from https to https, are followed.
    server.setHandler([](const ScriptedServer::Request &request) {
        return request.target == "/" ? redirectTo("/secure") : answerWith("secure");
    });
    EXPECT_EQ(fetch(client, urlOf(start, "/")).data(), "secure");
}

TEST_F(HttpClientTlsTest, AnEmptyLocationHidesNoOther)
{
    const ScriptedServer plain(always(answerWith("plain")));
    ScriptedServer server = serverFor(authority, "opml.example.invalid");
    ASSERT_TRUE(HttpClient::setCaFile(authority.file()));
    for (const char *nothing : {"", " ", " \t "}) {
        ScriptedServer::Response both = answerWith("");
        both.code = 302;
        both.headers = {{"Location", nothing}, {"Location", urlOf(plain, "/").toEncoded()}};
        server.setHandler(always(both));
        EXPECT_EQ(ask(server).status(), HttpClientStatus::TooManyRedirects);
    }
    EXPECT_EQ(plain.connections(), 0);
}

TEST_F(HttpClientTlsTest, ASecondLocationDoesNotHideTheFirst)
{
    const ScriptedServer plain(always(answerWith("plain")));
    ScriptedServer server = serverFor(authority, "opml.example.invalid");
    ASSERT_TRUE(HttpClient::setCaFile(authority.file()));
    const QByteArray target = urlOf(plain, "/").toEncoded();
    for (const QByteArray &second : {QByteArray("https://opml.example.invalid/"), target}) {
        ScriptedServer::Response both = redirectTo(second == target ? "/again" : target);
        both.headers.append({"Location", second});
        server.setHandler(always(both));
        ask(server);
    }
    EXPECT_EQ(plain.connections(), 0);
}
