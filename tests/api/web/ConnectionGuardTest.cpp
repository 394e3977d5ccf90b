// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/ConnectionGuard.h"

#include "api/web/AddressPolicy.h"
#include "api/web/HttpSettings.h"
#include "tests/api/web/HttpFixture.h"

#include <fcntl.h>
#include <unistd.h>

namespace {

class ConnectionGuardTest : public testing::Test {
protected:
    ConnectionGuardTest()
    {
        setUpHttpHandle(m_easy);
        m_guard.guard(m_easy);
    }
    ~ConnectionGuardTest() override
    {
        curl_easy_cleanup(m_easy);
        AddressPolicy::setCurrent(AddressReach::Machine);
    }

    CURLcode get(const QByteArray &url)
    {
        m_guard.guard(m_easy);
        curl_easy_setopt(m_easy, CURLOPT_URL, url.constData());
        curl_easy_setopt(m_easy, CURLOPT_FOLLOWLOCATION, 1L);
        curl_easy_setopt(m_easy, CURLOPT_FRESH_CONNECT, 1L);
        curl_easy_setopt(m_easy, CURLOPT_TIMEOUT, 10L);
        curl_easy_setopt(
            m_easy, CURLOPT_WRITEFUNCTION,
            +[](char *, std::size_t, std::size_t size, void *) { return size; });
        return curl_easy_perform(m_easy);
    }

    CURL *const m_easy = curl_easy_init();
    ConnectionGuard m_guard;
};

} // namespace

TEST_F(ConnectionGuardTest, RefusesBeforeAByteIsSent)
{
    const ScriptedServer server(always(answerWith("inside")));
    for (const AddressReach reach : {AddressReach::Internet, AddressReach::LocalNetwork}) {
        AddressPolicy::setCurrent(reach);
        EXPECT_EQ(get(urlOf(server, "/").toEncoded()), CURLE_COULDNT_CONNECT);
        EXPECT_TRUE(m_guard.hasRefused());
    }
    EXPECT_EQ(server.connections(), 0);

    AddressPolicy::setCurrent(AddressReach::Machine);
    EXPECT_EQ(get(urlOf(server, "/").toEncoded()), CURLE_OK);
    EXPECT_FALSE(m_guard.hasRefused());
}

TEST_F(ConnectionGuardTest, ChecksTheAddressHoweverItIsWritten)
{
    const ScriptedServer server(always(answerWith("inside")));
    const QByteArray port = QByteArray::number(server.port());
    AddressPolicy::setCurrent(AddressReach::Internet);
    for (const char *host : {"localhost", "LOCALHOST", "127.1", "2130706433", "0x7f000001",
             "0177.0.0.1", "[::ffff:127.0.0.1]", "[::1]", "0.0.0.0", "rebound.example"}) {
        // Resolves the name without a name server.
        curl_slist *resolve
            = curl_slist_append(nullptr, ("rebound.example:" + port + ":127.0.0.1").constData());
        curl_easy_setopt(m_easy, CURLOPT_RESOLVE, resolve);
        EXPECT_EQ(get(QByteArray("http://") + host + ":" + port + "/"), CURLE_COULDNT_CONNECT)
            << host;
        EXPECT_TRUE(m_guard.hasRefused()) << host;
        curl_easy_setopt(m_easy, CURLOPT_RESOLVE, nullptr);
        curl_slist_free_all(resolve);
    }
    EXPECT_EQ(server.connections(), 0);
}

TEST_F(ConnectionGuardTest, RefusesMetadataWhateverTheReach)
{
    AddressPolicy::setCurrent(AddressReach::Machine);
    for (const char *url : {"http://169.254.169.254/latest/meta-data/", "http://[fe80::1%25lo]/",
             "http://[fd00:ec2::254]/", "http://[::ffff:169.254.169.254]/", "http://0.0.0.0:1/"}) {
        EXPECT_EQ(get(url), CURLE_COULDNT_CONNECT) << url;
        EXPECT_TRUE(m_guard.hasRefused()) << url;
    }
}

TEST_F(ConnectionGuardTest, ChecksEachRedirect)
{
    AddressPolicy::setCurrent(AddressReach::Machine);
    const ScriptedServer server(always(redirectTo("http://169.254.169.254/latest/meta-data/")));
    EXPECT_EQ(get(urlOf(server, "/").toEncoded()), CURLE_COULDNT_CONNECT);
    EXPECT_EQ(server.requests().size(), 1);
    EXPECT_TRUE(m_guard.hasRefused());
}

TEST_F(ConnectionGuardTest, UsesNoProxy)
{
    const ScriptedServer proxy(always(answerWith("by proxy")));
    qputenv("http_proxy", urlOf(proxy, "").toEncoded());
    AddressPolicy::setCurrent(AddressReach::Internet);
    const ScriptedServer server(always(answerWith("inside")));
    EXPECT_EQ(get(urlOf(server, "/").toEncoded()), CURLE_COULDNT_CONNECT);
    qunsetenv("http_proxy");
    EXPECT_EQ(proxy.connections(), 0);
}

TEST_F(ConnectionGuardTest, SocketsAreCloseOnExec)
{
    const ScriptedServer server(always(answerWith("here")));
    AddressPolicy::setCurrent(AddressReach::Machine);
    ASSERT_EQ(get(urlOf(server, "/").toEncoded()), CURLE_OK);
    curl_socket_t socket = CURL_SOCKET_BAD;
    curl_easy_getinfo(m_easy, CURLINFO_ACTIVESOCKET, &socket);
    ASSERT_NE(socket, CURL_SOCKET_BAD);
    EXPECT_TRUE(::fcntl(socket, F_GETFD) & FD_CLOEXEC);
}
