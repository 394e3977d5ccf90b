// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/api/web/HttpFixture.h"
#include "tests/support/WorkerThread.h"

#include <condition_variable>
#include <mutex>

namespace {

class HttpClientCacheTest : public testing::Test {
protected:
    HttpClientCacheTest() { client.setCacheSize(1000000); }

    HttpClientResult get(const char *rest, const HttpClientOptions &options = {})
    {
        return fetch(client, urlOf(server, rest), options);
    }
    HttpClientResult post(const char *rest) { return send(client, urlOf(server, rest), {}); }
    int requests() const { return server.requests().size(); }

    /// Numbers the responses: "1", "2", ...
    void answerWithHeaders(const ScriptedServer::Headers &headers)
    {
        server.setHandler([this, headers](const ScriptedServer::Request &) {
            return answerWith(QByteArray::number(requests()), headers);
        });
    }

    ScriptedServer server {always(answerWith(""))};
    HttpClient client {nullptr, HttpClient::Default, true};
};

} // namespace

TEST_F(HttpClientCacheTest, AnswersFromTheCacheWhatIsFresh)
{
    answerWithHeaders({{"Cache-Control", "max-age=60"}, {"Age", "10"}});
    EXPECT_EQ(get("/").data(), "1");
    const HttpClientResult cached = get("/");
    EXPECT_EQ(cached.data(), "1");
    EXPECT_EQ(cached.status(), HttpClientStatus::Success);
    EXPECT_EQ(cached.code(), 200);
    EXPECT_EQ(cached.url(), urlOf(server, "/"));
    EXPECT_EQ(requests(), 1);
}

TEST_F(HttpClientCacheTest, AsksAgainForWhatIsNotFresh)
{
    const ScriptedServer::Headers stale[] = {
        {{"Cache-Control", "private"}, {"ETag", "\"1\""}},
        {{"Cache-Control", "max-age=60"}, {"cache-control", "no-store"}},
        {{"Cache-Control", "max-age=60"}, {"Age", "60"}},
        {{"Cache-Control", "max-age=60"}, {"Vary", "Cookie"}, {"Vary", "*"}},
    };
    for (const ScriptedServer::Headers &headers : stale) {
        server.clearRequests();
        answerWithHeaders(headers);
        EXPECT_EQ(get("/").data(), "1") << headers.last().second.toStdString();
        EXPECT_EQ(get("/").data(), "2") << headers.last().second.toStdString();
    }
}

TEST_F(HttpClientCacheTest, IsNotUsedByAnExchangeThatSwitchesItOff)
{
    answerWithHeaders({{"Cache-Control", "max-age=60"}});
    HttpClientOptions direct;
    direct.setUseCache(false);
    EXPECT_EQ(get("/", direct).data(), "1");
    EXPECT_EQ(get("/").data(), "2") << "the first answer was kept";
    EXPECT_EQ(get("/", direct).data(), "3") << "the second answer was used";
    EXPECT_EQ(get("/").data(), "2") << "what was kept before is gone";
}

TEST_F(HttpClientCacheTest, IgnoresTheFragmentButNotTheQuery)
{
    answerWithHeaders({{"Cache-Control", "max-age=60"}});
    EXPECT_EQ(get("/?a=1").data(), "1");
    EXPECT_EQ(get("/?a=1#top").data(), "1");
    EXPECT_EQ(get("/?a=2").data(), "2");
}

TEST_F(HttpClientCacheTest, APostInvalidatesItsUrl)
{
    answerWithHeaders({{"Cache-Control", "max-age=60"}});
    EXPECT_EQ(get("/a").data(), "1");
    EXPECT_EQ(get("/b").data(), "2");
    EXPECT_EQ(post("/a").data(), "3");
    EXPECT_EQ(get("/b").data(), "2");
    EXPECT_EQ(get("/a").data(), "4");
    EXPECT_EQ(post("/a").data(), "5");
    EXPECT_EQ(post("/a").data(), "6");
}

TEST_F(HttpClientCacheTest, DoesNotStoreAResponseThatWasRequestedBeforeAPost)
{
    std::mutex mutex;
    std::condition_variable changed;
    bool posted = false;
    bool asked = false;
    server.setHandler([&](const ScriptedServer::Request &request) {
        std::unique_lock<std::mutex> lock(mutex);
        if (request.method == "POST")
            return answerWith("");
        const QByteArray state = posted ? "after" : "before";
        asked = true;
        changed.wait(lock, [&posted] { return posted; });
        return answerWith(state, {{"Cache-Control", "max-age=60"}});
    });
    QByteArray early;
    client.get(urlOf(server, "/"), HttpClientOptions(),
        [&early](const HttpClientResult &result) { early = result.data(); });
    // Not only recorded: the handler has seen that nothing was posted.
    ASSERT_TRUE(spinUntil([&] {
        const std::lock_guard<std::mutex> lock(mutex);
        return asked;
    }));
    post("/");
    {
        const std::lock_guard<std::mutex> lock(mutex);
        posted = true;
    }
    changed.notify_all();
    ASSERT_TRUE(spinUntil([&early] { return !early.isEmpty(); }));
    EXPECT_EQ(early, "before");
    EXPECT_EQ(get("/").data(), "after");
}

TEST_F(HttpClientCacheTest, StoresOnlyResponsesWithCode200)
{
    for (const int code : {203, 404, 500}) {
        server.clearRequests();
        ScriptedServer::Response response = answerWith("x", {{"Cache-Control", "max-age=60"}});
        response.code = code;
        server.setHandler(always(response));
        EXPECT_EQ(get("/").code(), code);
        EXPECT_EQ(get("/").code(), code);
        EXPECT_EQ(requests(), 2);
    }
}

TEST_F(HttpClientCacheTest, DoesNotStoreARedirectedResponse)
{
    server.setHandler([](const ScriptedServer::Request &request) {
        if (request.target == "/end")
            return answerWith("x", {{"Cache-Control", "max-age=60"}});
        return redirectTo("/end");
    });
    get("/start");
    get("/start");
    EXPECT_EQ(requests(), 4);
    get("/end");
    EXPECT_EQ(requests(), 5);
}

TEST_F(HttpClientCacheTest, DoesNotStoreATruncatedResponse)
{
    ScriptedServer::Response cut = answerWith("0123456789", {{"Cache-Control", "max-age=60"}});
    cut.end = ScriptedServer::End::Truncate;
    cut.sendBytes = 5;
    server.setHandler(always(cut));
    EXPECT_EQ(get("/").status(), HttpClientStatus::Broken);
    server.setHandler(always(answerWith("whole")));
    EXPECT_EQ(get("/").data(), "whole");
}

TEST_F(HttpClientCacheTest, TheSizeLimitAppliesToCachedResponses)
{
    server.setHandler(always(answerWith("0123456789", {{"Cache-Control", "max-age=60"}})));
    EXPECT_EQ(get("/").data(), "0123456789");
    EXPECT_EQ(get("/", withLimit(9)).status(), HttpClientStatus::TooLarge);
    EXPECT_TRUE(get("/", withLimit(9)).data().isEmpty());
    EXPECT_EQ(get("/", withLimit(10)).data(), "0123456789");
    EXPECT_EQ(requests(), 1);
}

TEST_F(HttpClientCacheTest, AClientStoresNothingUntilItHasACacheSize)
{
    answerWithHeaders({{"Cache-Control", "max-age=3600"}});
    HttpClient other(nullptr, HttpClient::Default, true);
    EXPECT_EQ(fetch(other, urlOf(server, "/")).data(), "1");
    EXPECT_EQ(fetch(other, urlOf(server, "/")).data(), "2");
    other.setCacheSize(1000000);
    EXPECT_EQ(fetch(other, urlOf(server, "/")).data(), "3");
    EXPECT_EQ(fetch(other, urlOf(server, "/")).data(), "3");
    other.setCacheSize(0);
    EXPECT_EQ(fetch(other, urlOf(server, "/")).data(), "4");
}
