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
    EXPECT_TRUE(isSameOrigin("http://localhost:8765", "localhost:8765"));
    EXPECT_TRUE(isSameOrigin("HTTP://LOCALHOST:8765", "localhost:8765"));
    for (const char *origin : {"", "null", "https://localhost:8765", "http://localhost",
             "http://localhost:8765/", "http://127.0.0.1:8765", "http://evil.example"})
        EXPECT_FALSE(isSameOrigin(origin, "localhost:8765")) << origin;
}

TEST(HttpRulesTest, IgnoresParametersOfTheContentType)
{
    EXPECT_TRUE(isJsonContentType("application/json"));
    EXPECT_TRUE(isJsonContentType("Application/JSON; charset=utf-8"));
    for (const char *type : {"", "text/plain", "application/jsonp", "text/json", "json",
             "text/plain; application/json", "application/json, text/plain"})
        EXPECT_FALSE(isJsonContentType(type)) << type;
}

} // namespace
