// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/http/HttpRules.h"

#include <gmock/gmock.h>

namespace {

TEST(HttpRulesTest, AcceptsTheLoopbackNamesWithAndWithoutThePort)
{
    for (const char *host : {"127.0.0.1", "127.0.0.1:8765", "localhost", "localhost:8765",
             "LocalHost:8765", "[::1]", "[::1]:8765"})
        EXPECT_TRUE(isLoopbackHost(host, 8765)) << host;
}

TEST(HttpRulesTest, RefusesEveryOtherHost)
{
    for (const char *host :
        {"", "example.org", "example.org:8765", "127.0.0.1:80", "127.0.0.2",
            "localhost.example.org", "127.0.0.1.example.org:8765", "::1", "[::1]:1", "0.0.0.0:8765",
            "127.0.0.1:8765, 127.0.0.1:8765", "localhost:", "127.0.0.1:08765", "user@localhost"})
        EXPECT_FALSE(isLoopbackHost(host, 8765)) << host;
}

TEST(HttpRulesTest, AcceptsOnlyTheOriginOfTheHostItself)
{
    EXPECT_TRUE(isSameOrigin("http://localhost:8765", "localhost:8765", false));
    EXPECT_TRUE(isSameOrigin("HTTP://LOCALHOST:8765", "localhost:8765", false));
    for (const char *origin : {"", "null", "https://localhost:8765", "http://localhost",
             "http://localhost:8765/", "http://127.0.0.1:8765", "http://evil.example"})
        EXPECT_FALSE(isSameOrigin(origin, "localhost:8765", false)) << origin;
}

TEST(HttpRulesTest, IgnoresParametersOfTheContentType)
{
    EXPECT_TRUE(isJsonContentType("application/json"));
    EXPECT_TRUE(isJsonContentType("Application/JSON; charset=utf-8"));
    for (const char *type : {"", "text/plain", "application/jsonp", "text/json", "json",
             "text/plain; application/json", "application/json, text/plain"})
        EXPECT_FALSE(isJsonContentType(type)) << type;
}

TEST(HttpRulesTest, OverTlsTheOriginIsOfTheSameScheme)
{
    EXPECT_TRUE(isSameOrigin("https://radio.local:8765", "radio.local:8765", true));
    EXPECT_FALSE(isSameOrigin("http://radio.local:8765", "radio.local:8765", true));
}

TEST(HttpRulesTest, AMachineIsNamedByTheAddressThatTheClientConnectedToOrByItsName)
{
    const auto isNamed = [](const char *host, const char *address) {
        return isMachineHost(host, 8765, address, "radio");
    };
    for (const char *host :
        {"10.0.0.5", "10.0.0.5:8765", "radio", "RADIO:8765", "radio.local", "Radio.Local:8765"})
        EXPECT_TRUE(isNamed(host, "10.0.0.5")) << host;
    EXPECT_TRUE(isNamed("[fd00::5]:8765", "fd00::5"));
    for (const char *host :
        {"", "10.0.0.6", "10.0.0.5:80", "localhost", "127.0.0.1", "radio.example",
            "radio.local.example", "radio.local:80", "10.0.0.5.example", "fd00::5"})
        EXPECT_FALSE(isNamed(host, "10.0.0.5")) << host;
    EXPECT_FALSE(isMachineHost("", 8765, "10.0.0.5", ""));
    EXPECT_FALSE(isMachineHost(".local", 8765, "10.0.0.5", ""));
}

TEST(HttpRulesTest, AllowsNamesWithAnyPortOrWithOne)
{
    const QVector<QByteArray> hosts {"radio.example", "other.example:8443"};
    for (const char *host :
        {"radio.example", "radio.example:443", "RADIO.example:1", "other.example:8443"})
        EXPECT_TRUE(isAllowedHost(host, hosts)) << host;
    for (const char *host : {"", "example", "a.radio.example", "radio.example.evil",
             "other.example", "other.example:443", "radio.example:443:1"})
        EXPECT_FALSE(isAllowedHost(host, hosts)) << host;
}

TEST(HttpRulesTest, AddressesOfOneIpv6NetworkAreOneClient)
{
    EXPECT_EQ(networkOf("10.0.0.1"), "10.0.0.1");
    EXPECT_NE(networkOf("10.0.0.1"), networkOf("10.0.0.2"));
    EXPECT_EQ(networkOf("fd00::1"), networkOf("fd00:0:0:0:ffff::2"));
    EXPECT_NE(networkOf("fd00::1"), networkOf("fd00:0:0:1::1"));
    EXPECT_EQ(networkOf(""), "");
}

TEST(HttpRulesTest, RangesOfAddressesContainThoseThatBeginAlike)
{
    const auto contains = [](const char *range, const char *address) {
        const auto parsed = AddressRange::parse(QString::fromLatin1(range));
        return parsed && parsed->contains(address);
    };
    EXPECT_TRUE(contains("10.1.2.3", "10.1.2.3"));
    EXPECT_FALSE(contains("10.1.2.3", "10.1.2.2"));
    EXPECT_TRUE(contains("10.1.0.0/16", "10.1.255.1"));
    EXPECT_FALSE(contains("10.1.0.0/16", "10.2.0.1"));
    EXPECT_TRUE(contains("10.0.0.0/9", "10.127.0.1"));
    EXPECT_FALSE(contains("10.0.0.0/9", "10.128.0.1"));
    EXPECT_TRUE(contains("0.0.0.0/0", "1.2.3.4"));
    EXPECT_FALSE(contains("0.0.0.0/0", "fd00::1"));
    EXPECT_TRUE(contains("fd00::/8", "fd12::1"));
    EXPECT_FALSE(contains("fd00::/8", "fe80::1"));
    EXPECT_TRUE(contains("::ffff:10.0.0.1", "10.0.0.1"));
    EXPECT_FALSE(contains("10.0.0.0/8", "10.0.0.1.example"));
    for (const char *text : {"", "radio", "10.0.0.0/33", "10.0.0.0/-1", "10.0.0.0/", "fd00::/129",
             "10.0.0.0/8/8", "10.0.0/8", "/8"})
        EXPECT_FALSE(AddressRange::parse(QString::fromLatin1(text))) << text;
}

TEST(HttpRulesTest, TheClientOfAProxyIsTheLastAddressThatIsNoProxy)
{
    const QVector<AddressRange> proxies {*AddressRange::parse(QStringLiteral("127.0.0.1")),
        *AddressRange::parse(QStringLiteral("10.0.0.0/8"))};
    const auto clientFor
        = [&](const char *header) { return forwardedClient("127.0.0.1", header, proxies); };
    EXPECT_EQ(clientFor("192.168.1.9"), "192.168.1.9");
    EXPECT_EQ(clientFor("6.6.6.6, 192.168.1.9"), "192.168.1.9") << "the first is the client's word";
    EXPECT_EQ(clientFor("6.6.6.6, 192.168.1.9, 10.0.0.3"), "192.168.1.9");
    EXPECT_EQ(clientFor("fd00::9"), "fd00::9");
    for (const char *header : {"", "unknown", "10.0.0.1", "192.168.1.9, unknown", ",", "a\"b"})
        EXPECT_EQ(clientFor(header), "127.0.0.1") << header;
}

TEST(HttpRulesTest, FindsTheTokenInTheCookieOrAsABearer)
{
    EXPECT_EQ(tokenIn("vesk-token=abc", ""), "abc");
    EXPECT_EQ(tokenIn("a=b; vesk-token=abc; c=d", ""), "abc");
    EXPECT_EQ(tokenIn("", "Bearer abc"), "abc");
    EXPECT_EQ(tokenIn("", "bearer  abc "), "abc");
    EXPECT_EQ(tokenIn("vesk-token=cookie", "Bearer abc"), "abc");
    for (const char *cookie :
        {"", "vesk-token", "x-vesk-token=abc", "VESK-TOKEN=abc", "a=vesk-token=b"})
        EXPECT_TRUE(tokenIn(cookie, "Basic abc").isEmpty()) << cookie;
}

TEST(HttpRulesTest, OnlyThePairingPageIsOpen)
{
    for (const char *path : {"/pair", "/pair/", "/pair/main.js"})
        EXPECT_TRUE(isOpenPath(path)) << path;
    for (const char *path : {"", "/", "/pairs", "/Pair", "//pair", "/x/pair", "/pair.html", "pair"})
        EXPECT_FALSE(isOpenPath(path)) << path;
}

TEST(HttpRulesTest, TakesTheBasePathOffWhatLiesBelowIt)
{
    EXPECT_EQ(withoutBasePath("/radio/ws", "/radio"), "/ws");
    EXPECT_EQ(withoutBasePath("/radio/", "/radio"), "/");
    EXPECT_EQ(withoutBasePath("/ws", "/radio"), "/ws") << "the proxy has taken it off";
    EXPECT_EQ(withoutBasePath("/radios/ws", "/radio"), "/radios/ws");
    EXPECT_EQ(withoutBasePath("/ws", ""), "/ws");
}

TEST(HttpRulesTest, AStrictHeadHasWholeLineEndsAndNoFoldedLines)
{
    EXPECT_TRUE(isStrictHead("GET / HTTP/1.1\r\nHost: a\r\n\r\n"));
    EXPECT_TRUE(isStrictHead("GET / HTTP/1.1\r")) << "the rest is still to come";
    for (const QByteArray &head :
        {QByteArray("GET / HTTP/1.1\nHost: a\n\n"), QByteArray("GET / HTTP/1.1\r\nHost: a\n\r\n"),
            QByteArray("GET / HTTP/1.1\r\nHost: a\rb\r\n\r\n"),
            QByteArray("GET / HTTP/1.1\r\nX: a\r\n b\r\n\r\n"),
            QByteArray("GET / HTTP/1.1\r\nX: a\r\n\tb\r\n\r\n"),
            QByteArray("GET / HTTP/1.1\r\nX: a\0b\r\n\r\n", 26)})
        EXPECT_FALSE(isStrictHead(head)) << head.toStdString();
}

} // namespace
