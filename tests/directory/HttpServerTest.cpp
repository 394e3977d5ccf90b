// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/HttpServer.h"

#include "tests/directory/Fetch.h"
#include "tests/directory/RunningServer.h"

#include <arpa/inet.h>
#include <cstdio>
#include <fstream>
#include <gio/gio.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sstream>
#include <sys/socket.h>
#include <unistd.h>

using namespace directory;
using namespace directory::test;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

/// A TCP connection whose reads time out after ten seconds.
class RawConnection {
public:
    explicit RawConnection(int port)
        : m_socket(socket(AF_INET, SOCK_STREAM, 0))
    {
        const timeval limit {10, 0};
        setsockopt(m_socket, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
        sockaddr_in address {};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<std::uint16_t>(port));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        EXPECT_EQ(connect(m_socket, reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
    }
    ~RawConnection() { close(m_socket); }
    RawConnection(const RawConnection &) = delete;
    RawConnection &operator=(const RawConnection &) = delete;

    void send(const std::string &bytes) const
    {
        // The server may have closed the connection; its response can still be read.
        const ssize_t sent = ::send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        static_cast<void>(sent);
    }
    /// Everything that is received until the server closes the connection.
    std::string all() const
    {
        std::string text;
        char buffer[4096];
        ssize_t count = 0;
        while ((count = recv(m_socket, buffer, sizeof buffer, 0)) > 0)
            text.append(buffer, static_cast<std::size_t>(count));
        return text;
    }
    /// One response with a Content-Length; less when the server closes the connection.
    std::string answer() const
    {
        std::string text;
        char byte = 0;
        while (text.find("\r\n\r\n") == std::string::npos && recv(m_socket, &byte, 1, 0) == 1)
            text += byte;
        const std::string name = "Content-Length: ";
        const std::size_t at = text.find(name);
        if (at == std::string::npos)
            return text;
        const std::size_t start = at + name.size();
        const int length = parseNumber(text.substr(start, text.find('\r', start) - start));
        for (int i = 0; i < length && recv(m_socket, &byte, 1, 0) == 1; ++i)
            text += byte;
        return text;
    }

private:
    int m_socket;
};

std::string contents(const std::string &file)
{
    std::stringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
}

TEST(HttpServer, AnswersOverHttpAndTls)
{
    const RunningServer server;
    const Fetched plain = fetch(server.url("/Browse.ashx?c=music&render=json"));
    EXPECT_EQ(plain.status, 200);
    EXPECT_THAT(plain.headers, HasSubstr("Content-Type: application/json; charset=utf-8"));
    FetchOptions trusting;
    trusting.caFile = TEST_CERTIFICATE;
    const Fetched secure = fetch(server.secureUrl("/Browse.ashx?c=music&render=json"), trusting);
    EXPECT_EQ(secure.code, CURLE_OK);
    EXPECT_EQ(secure.body, plain.body);
    EXPECT_EQ(fetch(server.secureUrl("/")).code, CURLE_PEER_FAILED_VERIFICATION);
}

TEST(HttpServer, CompressesTextForClientsThatAcceptGzip)
{
    const RunningServer server;
    const std::string url = server.url("/Browse.ashx?c=music&render=json");
    const Fetched plain = fetch(url);
    EXPECT_THAT(plain.headers, testing::Not(HasSubstr("Content-Encoding")));
    EXPECT_THAT(plain.headers, HasSubstr("Vary: Accept-Encoding"));
    FetchOptions options;
    options.encoding = "gzip";
    const Fetched small = fetch(url, options);
    EXPECT_THAT(small.headers, HasSubstr("Content-Encoding: gzip"));
    EXPECT_EQ(small.body, plain.body);
    EXPECT_THAT(fetch(server.url("/logo/s20105q.png"), options).headers,
        testing::Not(HasSubstr("Content-Encoding")));
    EXPECT_THAT(fetch(server.url("/Report.ashx?c=status"), options).headers,
        testing::Not(HasSubstr("Content-Encoding"))); // too short to compress
}

TEST(HttpServer, UsesTheHostOfTheRequestInStreamAddresses)
{
    const RunningServer server;
    FetchOptions options;
    options.header = "Host: opml.radiotime.com";
    EXPECT_THAT(fetch(server.url("/Search.ashx?query=aa2"), options).body,
        HasSubstr("\"http://opml.radiotime.com/stream/sample/tone.mp3\""));
}

TEST(HttpServer, ServesLogosAndPlaceholders)
{
    const RunningServer server;
    EXPECT_THAT(fetch(server.url("/logo/s20105q.png")).body, StartsWith("\x89PNG"));
    EXPECT_THAT(
        fetch(server.url("/service/Audio/nostream.enUS.mp3")).headers, HasSubstr("audio/mpeg"));
    EXPECT_EQ(fetch(server.url("/nonsense")).status, 404);
    EXPECT_EQ(fetch(server.url("/Nonsense.ashx?c=x")).status, 404);
}

TEST(HttpServer, ReadsParametersFromAFormBody)
{
    const RunningServer server;
    FetchOptions options;
    options.method = "POST";
    options.body = "username=me&password=sesame&email=me%40example.org&postalCode=1";
    EXPECT_EQ(fetch(server.url("/Account.ashx?c=create"), options).body,
        R"({"head":{"status":"200"},"body":[]})");
    options.body = "c=auth&username=me&password=sesame";
    EXPECT_THAT(
        fetch(server.url("/Account.ashx"), options).body, HasSubstr("\"user_name\":\"me\""));
}

TEST(HttpServer, RefusesBodiesAndTargetsThatAreTooLong)
{
    const RunningServer server;
    FetchOptions options;
    options.method = "POST";
    options.body = "text=" + std::string(HttpServer::MaxRequestBody - 5, 'a');
    EXPECT_EQ(fetch(server.url("/Report.ashx?c=feedback"), options).status, 200);
    options.body += 'a';
    EXPECT_EQ(fetch(server.url("/Report.ashx?c=feedback"), options).status, 413);
    options.body.resize(3000000, 'a');
    EXPECT_EQ(fetch(server.url("/Report.ashx?c=feedback"), options).status, 413);
    const std::string target = "/Browse.ashx?x=";
    EXPECT_EQ(
        fetch(server.url(target + std::string(HttpServer::MaxTarget - target.size(), 'a'))).status,
        200);
    EXPECT_EQ(
        fetch(server.url(target + std::string(HttpServer::MaxTarget - target.size() + 1, 'a')))
            .status,
        414);
    EXPECT_EQ(fetch(server.url(target + std::string(100000, 'a'))).status, 431);
}

TEST(HttpServer, AnswersMalformedRequestsWith400)
{
    const RunningServer server;
    for (const char *text : {"garbage\r\n\r\n", "GET\r\n\r\n", "GET x HTTP/1.0\r\n\r\n",
             "\xFF\xFE\r\n\r\n", "GET /%zz HTTP/1.1\r\nHost: a\r\nConnection: close\r\n\r\n"}) {
        const RawConnection connection(server.port());
        connection.send(text);
        EXPECT_THAT(connection.all(), HasSubstr(" 400 Bad Request\r\n")) << text;
    }
    EXPECT_EQ(fetch(server.url("/")).status, 200);
}

TEST(HttpServer, AnswersHeadWithoutABodyAndRefusesOtherMethods)
{
    const RunningServer server;
    FetchOptions options;
    options.method = "HEAD";
    const Fetched head = fetch(server.url("/Browse.ashx"), options);
    EXPECT_EQ(head.status, 200);
    EXPECT_EQ(head.body, "");
    options.method = "PUT";
    EXPECT_EQ(fetch(server.url("/Browse.ashx"), options).status, 405);
}

TEST(HttpServer, KeepsConnectionsAlive)
{
    const RunningServer server;
    const RawConnection connection(server.port());
    connection.send("GET /Report.ashx?c=status HTTP/1.1\r\nHost: a\r\n\r\n");
    EXPECT_THAT(connection.answer(), HasSubstr("200 OK"));
    connection.send("GET /nonsense HTTP/1.1\r\nHost: a\r\nConnection: close\r\n\r\n");
    EXPECT_THAT(connection.all(), HasSubstr("404"));
}

TEST(HttpServer, LimitsTheNumberOfConnections)
{
    const RunningServer server;
    std::vector<std::unique_ptr<RawConnection>> connections;
    // Each has got a response, so the server has counted it.
    while (connections.size() < Listener::MaxConnections) {
        connections.push_back(std::make_unique<RawConnection>(server.port()));
        connections.back()->send("GET /Report.ashx?c=status HTTP/1.1\r\nHost: a\r\n\r\n");
        ASSERT_THAT(connections.back()->answer(), HasSubstr("200 OK"));
    }
    const RawConnection oneTooMany(server.port());
    EXPECT_EQ(oneTooMany.all(), "");
    // Closing a connection makes room.
    connections.back()->send("GET / HTTP/1.1\r\nHost: a\r\nConnection: close\r\n\r\n");
    EXPECT_THAT(connections.back()->all(), HasSubstr("200 OK"));
    const RawConnection next(server.port());
    next.send("GET / HTTP/1.0\r\nHost: a\r\n\r\n");
    EXPECT_THAT(next.all(), HasSubstr("200 OK"));
}

TEST(HttpServer, ReleasesConnectionsThatTheClientCloses)
{
    const RunningServer server;
    for (int i = 0; i < 2 * Listener::MaxConnections; ++i) {
        const RawConnection connection(server.port());
        connection.send("GET /Report.ashx?c=status HTTP/1.1\r\nHost: a\r\n\r\n");
        ASSERT_THAT(connection.answer(), HasSubstr("200 OK")) << i;
    }
}

/// What a client receives that sends one request and reads until the connection is closed.
std::string allOfAnIdleConnection(int port, bool secure)
{
    GSocketClient *client = g_socket_client_new();
    g_socket_client_set_timeout(client, 20);
    GSocketConnection *connection = g_socket_client_connect_to_host(
        client, "127.0.0.1", static_cast<guint16>(port), nullptr, nullptr);
    g_object_unref(client);
    GIOStream *stream = G_IO_STREAM(connection);
    if (secure) {
        stream = g_tls_client_connection_new(G_IO_STREAM(connection), nullptr, nullptr);
        g_tls_connection_set_require_close_notify(G_TLS_CONNECTION(stream), FALSE);
        const auto trust = +[](GTlsConnection *, GTlsCertificate *, GTlsCertificateFlags,
                                gpointer) -> gboolean { return TRUE; };
        g_signal_connect(stream, "accept-certificate", G_CALLBACK(trust), nullptr);
        g_object_unref(connection);
    }
    const std::string request = "GET /Report.ashx?c=status HTTP/1.1\r\nHost: a\r\n\r\n";
    EXPECT_TRUE(g_output_stream_write_all(g_io_stream_get_output_stream(stream), request.data(),
        request.size(), nullptr, nullptr, nullptr));
    std::string all;
    char buffer[4096];
    gssize count = 0;
    while ((count = g_input_stream_read(
                g_io_stream_get_input_stream(stream), buffer, sizeof buffer, nullptr, nullptr))
        > 0)
        all.append(buffer, static_cast<std::size_t>(count));
    EXPECT_EQ(count, 0) << "the connection stayed open, or failed";
    g_object_unref(stream);
    return all;
}

TEST(HttpServer, ClosesAnIdleConnectionWithoutAResponse)
{
    const RunningServer server({}, 1);
    for (const bool secure : {false, true}) {
        const std::string all
            = allOfAnIdleConnection(secure ? server.securePort() : server.port(), secure);
        EXPECT_THAT(all, StartsWith("HTTP/1.1 200 OK"));
        EXPECT_EQ(all.find("HTTP/", 1), std::string::npos) << all;
    }
}

TEST(HttpServer, LogsEachRequestAsReceivedBeforeAnsweringIt)
{
    const std::string file = testing::TempDir() + "directory-server-test.log";
    std::remove(file.c_str());
    {
        const RunningServer server(file);
        server.fail("stall@nothing");
        fetch(server.url("/Browse.ashx?c=music&x=%7e%c3%a4&y=a+b"));
        FetchOptions post;
        post.method = "POST";
        fetch(server.url("/Account.ashx?c=auth&username=me&password=very%20secret&serial=S"), post);
        EXPECT_EQ(contents(file),
            "GET /Browse.ashx?c=music&x=%7e%c3%a4&y=a+b\n"
            "POST /Account.ashx?c=auth&username=me&password=***&serial=S\n");
        FetchOptions trusting;
        trusting.caFile = TEST_CERTIFICATE;
        fetch(server.secureUrl("/over/tls"), trusting);
    }
    EXPECT_THAT(contents(file), testing::EndsWith("GET /over/tls\n"));
    std::remove(file.c_str());
}

TEST(HttpServer, LogsPipelinedRequestsAsReceived)
{
    const std::string file = testing::TempDir() + "directory-pipeline-test.log";
    std::remove(file.c_str());
    const RunningServer server(file);
    const RawConnection connection(server.port());
    connection.send("POST /Report.ashx?%7e HTTP/1.1\r\nHost: a\r\nContent-Length: 20\r\n\r\n"
                    "GET /no HTTP/1.1\r\n\r\n"
                    "GET /1%7e HTTP/1.1\r\nHost: a\r\n\r\n"
                    "GET /2%7e HTTP/1.1\r\nHost: a\r\nConnection: close\r\n\r\n");
    connection.all();
    EXPECT_EQ(contents(file), "POST /Report.ashx?%7e\nGET /1%7e\nGET /2%7e\n");
    std::remove(file.c_str());
}

TEST(HttpServer, ServesNoRequestBehindAChunkedBody)
{
    const std::string file = testing::TempDir() + "directory-chunked-test.log";
    std::remove(file.c_str());
    const RunningServer server(file);
    const RawConnection connection(server.port());
    connection.send("POST /Report.ashx?c=nonsense HTTP/1.1\r\nHost: a\r\n"
                    "Transfer-Encoding: chunked\r\n\r\n4\r\nx=yz\r\n0\r\n\r\n"
                    "GET /2 HTTP/1.1\r\nHost: a\r\n\r\n");
    const std::string all = connection.all();
    EXPECT_THAT(all, HasSubstr("Connection: close\r\n"));
    EXPECT_EQ(all.find("HTTP/1.1 ", 1), std::string::npos) << all;
    EXPECT_EQ(contents(file), "POST /Report.ashx?c=nonsense\n");
    std::remove(file.c_str());
}

TEST(HttpServer, FailsToListenAtInvalidOrUsedAddresses)
{
    const RunningServer server;
    const Catalog empty;
    GMainContext *context = g_main_context_new();
    g_main_context_push_thread_default(context);
    {
        Directory directory(empty, [] { return 0; });
        Faults faults;
        HttpServer other(directory, faults, nullptr);
        for (const std::string &address :
            {std::string("127.0.0.1"), std::string("127.0.0.1:x"), std::string("nowhere:80"),
                std::string("127.0.0.1:70000"), "127.0.0.1:" + std::to_string(server.port())})
            EXPECT_THROW(other.listen(address), std::runtime_error) << address;
        EXPECT_THROW(
            other.listenTls("127.0.0.1:0", "/nonexistent", "/nonexistent"), std::runtime_error);
    }
    g_main_context_pop_thread_default(context);
    g_main_context_unref(context);
}

} // namespace
