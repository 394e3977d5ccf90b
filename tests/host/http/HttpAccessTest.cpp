// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/http/HttpResource.h"
#include "host/http/HttpServer.h"
#include "tests/host/http/ScriptedHandler.h"
#include "tests/support/LogCapture.h"
#include "tests/support/RawWebSocket.h"
#include "tests/support/TestAuthority.h"

#include <QElapsedTimer>
#include <QFile>

#include <gmock/gmock.h>

#include <arpa/inet.h>
#include <openssl/ssl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

const QByteArray Echo = "hello";
/// A name that is allowed, but not of the loopback interface: its requests come as from another
/// machine.
const QByteArray FromAfar = "Host: radio.example\r\n";
const QByteArray Bearer = "Authorization: Bearer good\r\n";
const QByteArray Json = "Content-Type: application/json\r\n";

/// Answers with what it has been asked; by POST at "/pair" only.
class Room : public HttpResource {
public:
    explicit Room(QByteArray path, QByteArray methods = "GET, HEAD")
        : m_path(std::move(path))
        , m_methods(std::move(methods))
    {
    }

    bool owns(const QByteArray &path) const override { return path == m_path; }
    QByteArray methods() const override { return m_methods; }
    void get(const HttpRequest &request, Respond respond) override
    {
        ++asked;
        const QByteArray role = QByteArray::number(static_cast<int>(request.caller.role));
        respond({200, "text/plain",
            request.method + " " + request.path + " " + request.peer.toLatin1() + " "
                + (request.isSecure ? "secure " : "plain ") + role + " "
                + request.caller.deviceId.toLatin1() + " " + request.body,
            {}});
    }

    int asked = 0;

private:
    const QByteArray m_path;
    const QByteArray m_methods;
};

class HttpAccessTest : public testing::Test {
protected:
    HttpAccessTest()
    {
        m_access.names.hosts = {"radio.example"};
        m_access.findToken = [this](const QByteArray &token) { return find(token == "good"); };
        m_access.findDevice = [this](const QString &id) { return find(id == Tablet); };
    }

    void listen(const HttpServerLimits &limits = {})
    {
        m_server = std::make_unique<HttpServer>(&m_handler, limits);
        m_server->setAccess(m_access);
        for (Room *room : {&m_page, &m_pairing, &m_letter})
            m_server->addResource(room);
        ASSERT_TRUE(m_server->listen({QStringLiteral("127.0.0.1"), 0}));
    }

    quint16 port() const { return m_server->port(); }

    QByteArray ask(const QByteArray &method, const QByteArray &target, const QByteArray &headers,
        const QByteArray &body = {})
    {
        const QByteArray length
            = body.isNull() ? "" : "Content-Length: " + QByteArray::number(body.size()) + "\r\n";
        return inBackground([&] {
            return RawClient::exchange(
                port(), method + " " + target + " HTTP/1.1\r\n" + headers + length + "\r\n" + body);
        });
    }

    std::unique_ptr<RawWebSocket> openSocket(const QByteArray &headers)
    {
        return inBackground([&] {
            auto socket = std::make_unique<RawWebSocket>(port(), headers);
            EXPECT_EQ(statusOf(socket->handshake()), 101);
            return socket;
        });
    }

    static const QString Tablet;

    HttpAccess m_access;
    ScriptedHandler m_handler;
    Room m_page {"/pair"};
    Room m_pairing {"/pair", "POST"};
    Room m_letter {"/letter"};
    std::atomic<AccessRole> m_role {AccessRole::Listener};
    std::atomic<bool> m_isPaired {true};
    std::unique_ptr<HttpServer> m_server;

private:
    std::optional<Caller> find(bool isGood) const
    {
        if (!isGood || !m_isPaired)
            return std::nullopt;
        return Caller {m_role, Tablet};
    }
};

const QString HttpAccessTest::Tablet = QStringLiteral("tablet");

TEST_F(HttpAccessTest, WithoutATokenThereIsNothingButThePairingPage)
{
    listen();
    const QByteArray visit = ask("GET", "/", FromAfar);
    EXPECT_EQ(statusOf(visit), 303);
    EXPECT_EQ(headerOf(visit, "Location"), "pair");
    for (const char *method : {"GET", "HEAD", "POST", "PUT", "DELETE", "OPTIONS", "TRACE", "X"}) {
        listen(); // a stranger may not ask this much
        for (const char *target : {"/letter", "/nothing", "/jsonrpc", "/ws", "/artwork/1", "/pairs",
                 "/%2e/letter", "//letter", "/assets/main.js"}) {
            EXPECT_EQ(statusOf(ask(method, target, FromAfar + Json, Echo)), 401)
                << method << " " << target;
        }
    }
    EXPECT_EQ(statusOf(ask("GET", "/ws",
                  FromAfar
                      + "Upgrade: websocket\r\nConnection: Upgrade\r\nSec-WebSocket-Version: 13\r\n"
                        "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n")),
        401);
    EXPECT_EQ(m_letter.asked, 0);
    EXPECT_EQ(bodyOf(ask("GET", "/pair", FromAfar)), "GET /pair 127.0.0.1 plain 0  ");
    EXPECT_EQ(
        bodyOf(ask("POST", "/pair", FromAfar + Json, Echo)), "POST /pair 127.0.0.1 plain 0  hello");
    EXPECT_EQ(statusOf(ask("DELETE", "/pair", FromAfar)), 405);
    EXPECT_EQ(statusOf(ask("POST", "/pair", FromAfar, Echo)), 415);
    for (const char *target : {"/pair/nothing", "/pair/../letter", "/pair/%2e%2e/letter"})
        EXPECT_EQ(statusOf(ask("GET", target, FromAfar)), 404) << target;
}

TEST_F(HttpAccessTest, ATokenOpensWhatThereIs)
{
    listen();
    for (const QByteArray &token : {Bearer, QByteArray("Cookie: a=b; vesk-token=good\r\n")}) {
        EXPECT_EQ(bodyOf(ask("GET", "/letter", FromAfar + token)),
            "GET /letter 127.0.0.1 plain 1 tablet ");
        EXPECT_EQ(bodyOf(ask("POST", "/jsonrpc", FromAfar + token + Json, Echo)), Echo);
        EXPECT_EQ(statusOf(ask("GET", "/nothing", FromAfar + token)), 404);
    }
}

TEST_F(HttpAccessTest, AWrongTokenIsToldSlowlyAndLogged)
{
    const LogCapture log("Host.Http");
    listen();
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(statusOf(ask("GET", "/letter", FromAfar + "Authorization: Bearer bad\r\n")), 401);
    EXPECT_GE(clock.elapsed(), 1000);
    EXPECT_EQ(statusOf(ask("GET", "/", FromAfar + "Cookie: vesk-token=bad\r\n")), 303);
    EXPECT_GE(clock.elapsed(), 3000);
    EXPECT_EQ(bodyOf(ask("GET", "/letter", FromAfar + Bearer)).isEmpty(), false);
    EXPECT_TRUE(log.contains(QStringLiteral("WARN wrong token from 127.0.0.1")));
    for (const QString &line : log.lines())
        EXPECT_FALSE(line.contains(QLatin1String("bad"))) << line.toStdString();
}

TEST_F(HttpAccessTest, WhatLooksForwardedIsNotFromThisMachine)
{
    listen();
    const QByteArray own = "Host: localhost\r\n";
    EXPECT_EQ(statusOf(ask("GET", "/letter", own)), 200);
    for (const char *header : {"X-Forwarded-For: 127.0.0.1", "X-Forwarded-Proto: https",
             "X-Forwarded-Host: localhost", "X-Real-IP: 127.0.0.1", "Forwarded: for=127.0.0.1",
             "Via: 1.1 proxy", "x-forwarded-for:"})
        EXPECT_EQ(statusOf(ask("GET", "/letter", own + header + "\r\n")), 401) << header;
}

TEST_F(HttpAccessTest, AProxyThatDoesNotSayForWhomItAsksIsNoProgramOfThisMachine)
{
    m_access.names.basePath = "/radio";
    listen();
    const QByteArray own = "Host: 127.0.0.1:" + QByteArray::number(port()) + "\r\n";
    EXPECT_EQ(statusOf(ask("GET", "/letter", own)), 200);
    // What nginx sends unless it is told otherwise.
    const QByteArray old = "GET /letter HTTP/1.0\r\n" + own + "Connection: close\r\n\r\n";
    EXPECT_EQ(statusOf(inBackground([&] { return RawClient::exchange(port(), old); })), 401);
    for (const char *target : {"/radio/letter", "/radio/", "/%72adio/letter"})
        EXPECT_NE(statusOf(ask("GET", target, own)), 200) << target;
    EXPECT_EQ(statusOf(ask("GET", "/radio/letter", own + Bearer)), 200);
}

TEST_F(HttpAccessTest, BelievesAProxyThatIsTrusted)
{
    const QByteArray headers = "Host: radio.example\r\nX-Forwarded-For: 6.6.6.6, 10.1.2.3\r\n"
                               "X-Forwarded-Proto: https\r\n"
        + Bearer;
    listen();
    EXPECT_EQ(bodyOf(ask("GET", "/letter", headers)), "GET /letter 127.0.0.1 plain 1 tablet ");
    m_access.names.proxies = {*AddressRange::parse(QStringLiteral("127.0.0.1"))};
    listen();
    EXPECT_EQ(bodyOf(ask("GET", "/letter", headers)), "GET /letter 10.1.2.3 secure 1 tablet ");
    // The page came over TLS.
    EXPECT_EQ(statusOf(ask("GET", "/letter", headers + "Origin: https://radio.example\r\n")), 200);
    EXPECT_EQ(statusOf(ask("GET", "/letter", headers + "Origin: http://radio.example\r\n")), 403);
}

TEST_F(HttpAccessTest, AllowsOriginsByName)
{
    m_access.names.origins = {"https://radio.example"};
    listen();
    const QByteArray headers = FromAfar + Bearer + "Origin: ";
    EXPECT_EQ(statusOf(ask("GET", "/letter", headers + "https://radio.example\r\n")), 200);
    EXPECT_EQ(statusOf(ask("GET", "/letter", headers + "https://radio.example:1\r\n")), 403);
    EXPECT_EQ(statusOf(ask("GET", "/letter", headers + "https://evil.example\r\n")), 403);
    EXPECT_EQ(statusOf(ask("GET", "/letter", headers + "null\r\n")), 403);
    EXPECT_EQ(statusOf(ask("GET", "/pair", FromAfar + "Origin: https://evil.example\r\n")), 403);
}

TEST_F(HttpAccessTest, ServesBelowTheBasePathToo)
{
    m_access.names.basePath = "/radio";
    listen();
    EXPECT_EQ(bodyOf(ask("GET", "/radio/letter", FromAfar + Bearer)),
        "GET /letter 127.0.0.1 plain 1 tablet ");
    EXPECT_EQ(statusOf(ask("GET", "/letter", FromAfar + Bearer)), 200);
    EXPECT_EQ(statusOf(ask("GET", "/radio/letter", FromAfar)), 401);
    EXPECT_EQ(statusOf(ask("GET", "/radio/pair", FromAfar)), 200);
    EXPECT_EQ(statusOf(ask("GET", "/radio/radio/pair", FromAfar)), 401);
}

TEST_F(HttpAccessTest, ClosesTheWebSocketsOfADeviceAtOnceAndTakesNothingMoreFromIt)
{
    listen();
    const auto socket = openSocket("Via: 1.1 proxy\r\n" + Bearer);
    EXPECT_EQ(inBackground([&] { return socket->ask(Echo); }), Echo);
    const auto other = openSocket("");
    m_isPaired = false;
    socket->send(RawWebSocket::Text, "keep"); // on its way while the device is removed
    m_server->closeDevice(Tablet);
    const auto frame = inBackground([&] { return socket->receive(); });
    EXPECT_EQ(frame.opcode, RawWebSocket::Close);
    EXPECT_EQ(frame.closeCode(), 1008);
    socket->send(RawWebSocket::Text, "keep");
    EXPECT_EQ(inBackground([&] { return other->ask(Echo); }), Echo);
    EXPECT_TRUE(m_handler.kept.isEmpty());
}

TEST_F(HttpAccessTest, TellsOwnersWhatIsForOwners)
{
    listen();
    const auto listener = openSocket("Via: 1.1 proxy\r\n" + Bearer);
    const auto owner = openSocket("");
    m_server->sendToAll("for owners", AccessRole::Owner);
    m_server->sendToAll("for all");
    const auto next = [&](RawWebSocket &socket) {
        return inBackground([&] { return socket.receive().payload; });
    };
    EXPECT_EQ(next(*listener), "for all");
    EXPECT_EQ(next(*owner), "for owners");
}

TEST_F(HttpAccessTest, SaysWhichDevicesAreConnected)
{
    listen();
    EXPECT_FALSE(m_server->isConnected(Tablet));
    auto socket = openSocket("Via: 1.1 proxy\r\n" + Bearer);
    EXPECT_TRUE(spinUntil([this] { return m_server->isConnected(Tablet); }));
    socket.reset();
    EXPECT_TRUE(spinUntil([this] { return !m_server->isConnected(Tablet); }));
}

TEST_F(HttpAccessTest, BoundsTheRequestsOfOneAddress)
{
    listen();
    // In each second that this takes, five more may come.
    bool isRefused = false;
    for (int i = 0; i < 1000 && !isRefused; ++i)
        isRefused = statusOf(ask("GET", "/pair", FromAfar)) == 429;
    EXPECT_TRUE(isRefused);
    EXPECT_EQ(statusOf(ask("GET", "/letter", FromAfar + Bearer)), 200) << "a device has its own";
    EXPECT_EQ(statusOf(ask("GET", "/letter", "Host: localhost\r\n")), 200);
}

/// A client over TLS; blocking, for threads other than the server's.
class TlsClient {
public:
    TlsClient(quint16 port, int highestVersion)
        : m_context(SSL_CTX_new(TLS_client_method()))
        , m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        SSL_CTX_set_security_level(m_context, 0); // old versions need it
        SSL_CTX_set_min_proto_version(m_context, TLS1_VERSION);
        SSL_CTX_set_max_proto_version(m_context, highestVersion);
        m_tls = SSL_new(m_context);
        const timeval limit {10, 0};
        ::setsockopt(m_socket, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
        sockaddr_in address {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = htons(port);
        SSL_set_fd(m_tls, m_socket);
        isOpen
            = ::connect(m_socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0
            && SSL_connect(m_tls) == 1;
    }
    ~TlsClient()
    {
        SSL_free(m_tls);
        SSL_CTX_free(m_context);
        ::close(m_socket);
    }
    Q_DISABLE_COPY(TlsClient)

    void send(const QByteArray &bytes) { SSL_write(m_tls, bytes.constData(), bytes.size()); }
    /// What comes until \a end is there, or the connection ends.
    QByteArray readUntil(const QByteArray &end)
    {
        QByteArray all;
        char bytes[4096];
        while (end.isEmpty() || !all.endsWith(end)) {
            const int size = SSL_read(m_tls, bytes, sizeof bytes);
            if (size <= 0)
                break;
            all.append(bytes, size);
        }
        return all;
    }

    /// The server's, as browsers show it.
    QString fingerprint() const
    {
        X509 *certificate = SSL_get_peer_certificate(m_tls);
        unsigned char digest[EVP_MAX_MD_SIZE];
        unsigned int size = 0;
        X509_digest(certificate, EVP_sha256(), digest, &size);
        X509_free(certificate);
        const auto bytes = QByteArray(reinterpret_cast<const char *>(digest), int(size));
        return QString::fromLatin1(bytes.toHex(':').toUpper());
    }

    bool isOpen = false;

private:
    SSL_CTX *const m_context;
    const int m_socket;
    SSL *m_tls;
};

class HttpTlsTest : public HttpAccessTest {
protected:
    HttpTlsTest()
    {
        const auto files = m_authority.issue("radio.example");
        const auto identity = TlsIdentity::read(
            QString::fromUtf8(files.certificateFile), QString::fromUtf8(files.keyFile));
        EXPECT_TRUE(identity) << identity.error().toStdString();
        m_access.identity = *identity;
        listen();
    }

    TestAuthority m_authority {"the tests' authority"};
};

TEST_F(HttpTlsTest, OnePortSpeaksBoth)
{
    const QByteArray response = inBackground([this] {
        TlsClient client(port(), TLS1_3_VERSION);
        client.send("GET /letter HTTP/1.1\r\n" + FromAfar + Bearer + "Connection: close\r\n\r\n");
        return client.readUntil({});
    });
    EXPECT_EQ(bodyOf(response), "GET /letter 127.0.0.1 secure 1 tablet ");
    EXPECT_EQ(statusOf(ask("GET", "/letter", "Host: localhost\r\n")), 200);
}

TEST_F(HttpTlsTest, KeepsAConnectionAfterAGet)
{
    const auto answers = inBackground([this] {
        TlsClient client(port(), TLS1_3_VERSION);
        QList<QByteArray> all;
        for (int i = 0; i < 3; ++i) {
            client.send("GET /letter HTTP/1.1\r\n" + FromAfar + Bearer + "\r\n");
            all.append(client.readUntil("tablet "));
        }
        client.send("POST /jsonrpc HTTP/1.1\r\n" + FromAfar + Bearer + Json
            + "Content-Length: 5\r\n\r\nhello");
        all.append(client.readUntil({}));
        return all;
    });
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(headerOf(answers[i], "Connection"), "keep-alive");
    EXPECT_EQ(headerOf(answers[3], "Connection"), "close");
    EXPECT_EQ(bodyOf(answers[3]), Echo);
}

TEST_F(HttpTlsTest, RefusesOldVersions)
{
    const auto opens = [this](int version) {
        return inBackground([&] { return TlsClient(port(), version).isOpen; });
    };
    EXPECT_FALSE(opens(TLS1_VERSION));
    EXPECT_FALSE(opens(TLS1_1_VERSION));
    EXPECT_TRUE(opens(TLS1_2_VERSION));
    EXPECT_TRUE(opens(TLS1_3_VERSION));
}

TEST_F(HttpTlsTest, LaterConnectionsGetALaterCertificate)
{
    const auto before
        = inBackground([this] { return std::make_unique<TlsClient>(port(), TLS1_3_VERSION); });
    EXPECT_EQ(before->fingerprint(), m_access.identity->fingerprint());
    const auto files = m_authority.issue("radio.example");
    const auto renewed = TlsIdentity::read(
        QString::fromUtf8(files.certificateFile), QString::fromUtf8(files.keyFile));
    ASSERT_TRUE(renewed);
    EXPECT_FALSE(m_server->setIdentity({renewed->certificates, "no key"}));
    ASSERT_TRUE(m_server->setIdentity(*renewed));
    const auto fingerprint
        = inBackground([this] { return TlsClient(port(), TLS1_3_VERSION).fingerprint(); });
    EXPECT_EQ(fingerprint, renewed->fingerprint());
    EXPECT_NE(fingerprint, before->fingerprint());
    const QByteArray response = inBackground([&before] {
        before->send("GET /letter HTTP/1.1\r\n" + FromAfar + Bearer + "Connection: close\r\n\r\n");
        return before->readUntil({});
    });
    EXPECT_EQ(statusOf(response), 200);
}

TEST_F(HttpTlsTest, SendsAndTakesLargeMessages)
{
    const QByteArray response = inBackground([this] {
        TlsClient client(port(), TLS1_3_VERSION);
        const QByteArray body = "much" + QByteArray(60000, ' ');
        client.send("POST /jsonrpc HTTP/1.1\r\n" + FromAfar + Bearer + Json
            + "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body);
        return client.readUntil({});
    });
    EXPECT_EQ(bodyOf(response).size(), 1024 * 1024);
}

TEST_F(HttpTlsTest, SurvivesBytesThatAreNoTls)
{
    for (const QByteArray &bytes :
        {QByteArray("\x16"), QByteArray("\x16\x03\x01\x02\x00\x01"), QByteArray(100000, '\x16')}) {
        inBackground([&] {
            RawClient client(port());
            client.send(bytes);
            client.finishSending();
            return client.readAll();
        });
    }
    EXPECT_TRUE(spinUntil([this] { return m_server->connections() == 0; }));
    EXPECT_EQ(statusOf(ask("GET", "/letter", "Host: localhost\r\n")), 200);
}

} // namespace
