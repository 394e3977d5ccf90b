// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/private/HttpClientEngine.h"
#include "tests/api/web/HttpFixture.h"
#include "tests/support/WorkerThread.h"

#include <condition_variable>
#include <mutex>

namespace {

class HttpClientCacheTest : public testing::Test {
protected:
    HttpClientCacheTest() { engine.setCacheSize(1000000); }
    ~HttpClientCacheTest() override { engine.close(); }

    HttpClientResult get(const char *rest, const HttpClientOptions &options = {})
    {
        return waitForExchange([&](HttpClient::Function done) {
            engine.get(urlOf(server, rest), options, std::move(done));
        });
    }
    HttpClientResult post(const char *rest)
    {
        return waitForExchange([&](HttpClient::Function done) {
            engine.post(urlOf(server, rest), {}, HttpClientOptions(), std::move(done));
        });
    }
    int requests() const { return server.requests().size(); }

    /// The server's answers say which they are: "1", "2", ...
    void answerWithHeaders(const ScriptedServer::Headers &headers)
    {
        server.setHandler([this, headers](const ScriptedServer::Request &) {
            return answerWith(QByteArray::number(requests()), headers);
        });
    }

    qint64 now = 1000000;
    ScriptedServer server {always(answerWith(""))};
    HttpClientEngine engine {nullptr, HttpClient::Default, true, [this] { return now; }};
};

} // namespace

TEST_F(HttpClientCacheTest, asksAgainOnlyWhenTheAnswerHasAged)
{
    answerWithHeaders({{"Cache-Control", "max-age=60"}});
    EXPECT_EQ(get("/").data(), "1");
    const HttpClientResult kept = get("/");
    EXPECT_EQ(kept.data(), "1");
    EXPECT_EQ(kept.status(), HttpClientStatus::Success);
    EXPECT_EQ(kept.code(), 200);
    EXPECT_EQ(kept.url(), urlOf(server, "/"));
    now += 59999;
    EXPECT_EQ(get("/").data(), "1");
    now += 1;
    EXPECT_EQ(get("/").data(), "2");
    EXPECT_EQ(requests(), 2);
}

TEST_F(HttpClientCacheTest, isLeftAsideByAnExchangeThatMayNotUseIt)
{
    answerWithHeaders({{"Cache-Control", "max-age=60"}, {"ETag", "\"e\""}});
    HttpClientOptions direct;
    direct.setUseCache(false);
    EXPECT_TRUE(HttpClientOptions().useCache());
    EXPECT_EQ(get("/", direct).data(), "1");
    EXPECT_EQ(get("/").data(), "2") << "the first answer was kept";
    EXPECT_EQ(get("/", direct).data(), "3") << "the second answer was used";
    EXPECT_TRUE(server.requests().last().header("If-None-Match").isEmpty());
    EXPECT_EQ(get("/").data(), "2") << "what was kept before is gone";
}

TEST_F(HttpClientCacheTest, takesTheFragmentForNoPartOfTheUrlButTheQuery)
{
    answerWithHeaders({{"Cache-Control", "max-age=60"}});
    EXPECT_EQ(get("/?a=1").data(), "1");
    EXPECT_EQ(get("/?a=1#top").data(), "1");
    EXPECT_EQ(get("/?a=2").data(), "2");
}

TEST_F(HttpClientCacheTest, joinsACacheControlThatComesInPieces)
{
    answerWithHeaders({{"Cache-Control", "max-age=60"}, {"cache-control", "no-store"}});
    EXPECT_EQ(get("/").data(), "1");
    EXPECT_EQ(get("/").data(), "2");
}

TEST_F(HttpClientCacheTest, keepsNothingThatDoesNotSayForHowLong)
{
    answerWithHeaders({{"ETag", "\"1\""}, {"Cache-Control", "private"}});
    get("/");
    get("/");
    EXPECT_EQ(requests(), 2);
    EXPECT_TRUE(server.requests().last().header("If-None-Match").isNull());
}

TEST_F(HttpClientCacheTest, countsTheAgeThatTheAnswerHasAlready)
{
    answerWithHeaders({{"Cache-Control", "max-age=60"}, {"Age", "59"}});
    EXPECT_EQ(get("/").data(), "1");
    now += 999;
    EXPECT_EQ(get("/").data(), "1");
    now += 1;
    EXPECT_EQ(get("/").data(), "2");
}

TEST_F(HttpClientCacheTest, hasAnAgedAnswerConfirmed)
{
    server.setHandler([](const ScriptedServer::Request &request) {
        ScriptedServer::Response response = answerWith("body",
            {{"Cache-Control", "max-age=60"}, {"ETag", "\"x\""},
                {"Last-Modified", "Thu, 01 Jan 1998 10:00:00 GMT"}});
        if (request.header("If-None-Match") == "\"x\"")
            response.code = 304;
        return response;
    });
    EXPECT_EQ(get("/").data(), "body");
    now += 60000;
    const HttpClientResult confirmed = get("/");
    EXPECT_EQ(confirmed.status(), HttpClientStatus::Success);
    EXPECT_EQ(confirmed.code(), 200);
    EXPECT_EQ(confirmed.data(), "body");
    EXPECT_EQ(
        server.requests().last().header("If-Modified-Since"), "Thu, 01 Jan 1998 10:00:00 GMT");
    now += 59999;
    EXPECT_EQ(get("/").data(), "body");
    EXPECT_EQ(requests(), 2);

    // The condition is for that one request.
    get("/other");
    EXPECT_TRUE(server.requests().last().header("If-None-Match").isNull());
    EXPECT_TRUE(server.requests().last().header("If-Modified-Since").isNull());
}

TEST_F(HttpClientCacheTest, takesTheNewAnswerInPlaceOfAConfirmation)
{
    answerWithHeaders({{"Cache-Control", "no-cache"}, {"ETag", "\"x\""}});
    EXPECT_EQ(get("/").data(), "1");
    EXPECT_EQ(get("/").data(), "2");
    EXPECT_EQ(server.requests().last().header("If-None-Match"), "\"x\"");
}

TEST_F(HttpClientCacheTest, aFailedConfirmationIsAFailure)
{
    answerWithHeaders({{"Cache-Control", "max-age=60"}, {"ETag", "\"x\""}});
    get("/");
    now += 60000;
    ScriptedServer::Response lost;
    lost.end = ScriptedServer::End::ResetBeforeHead;
    server.setHandler(always(lost));
    const HttpClientResult result = get("/");
    EXPECT_EQ(result.status(), HttpClientStatus::ConnectionLost);
    EXPECT_TRUE(result.data().isEmpty());
}

TEST_F(HttpClientCacheTest, aPostDropsWhatWasKeptForItsUrl)
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

TEST_F(HttpClientCacheTest, keepsNoAnswerThatAPostHasOvertaken)
{
    std::mutex mutex;
    std::condition_variable changed;
    bool posted = false;
    server.setHandler([&](const ScriptedServer::Request &request) {
        std::unique_lock<std::mutex> lock(mutex);
        if (request.method == "POST")
            return answerWith("");
        const QByteArray state = posted ? "after" : "before";
        changed.wait(lock, [&posted] { return posted; });
        return answerWith(state, {{"Cache-Control", "max-age=60"}});
    });
    QByteArray early;
    engine.get(urlOf(server, "/"), HttpClientOptions(),
        [&early](const HttpClientResult &result) { early = result.data(); });
    ASSERT_TRUE(spinUntil([this] { return requests() == 1; }));
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

TEST_F(HttpClientCacheTest, keepsOnlyAnswersOfCode200)
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

TEST_F(HttpClientCacheTest, keepsNoAnswerThatCameByARedirect)
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

TEST_F(HttpClientCacheTest, keepsNoTruncatedAnswer)
{
    ScriptedServer::Response cut = answerWith("0123456789", {{"Cache-Control", "max-age=60"}});
    cut.end = ScriptedServer::End::Truncate;
    cut.sendBytes = 5;
    server.setHandler(always(cut));
    EXPECT_EQ(get("/").status(), HttpClientStatus::ConnectionLost);
    server.setHandler(always(answerWith("whole")));
    EXPECT_EQ(get("/").data(), "whole");
}

TEST_F(HttpClientCacheTest, theLimitIsForKeptAnswersToo)
{
    server.setHandler(
        always(answerWith("0123456789", {{"Cache-Control", "max-age=60"}, {"ETag", "\"x\""}})));
    EXPECT_EQ(get("/").data(), "0123456789");
    EXPECT_EQ(get("/", withLimit(9)).status(), HttpClientStatus::TooLarge);
    EXPECT_TRUE(get("/", withLimit(9)).data().isEmpty());
    EXPECT_EQ(get("/", withLimit(10)).data(), "0123456789");
    EXPECT_EQ(requests(), 1);

    now += 60000;
    ScriptedServer::Response same;
    same.code = 304;
    server.setHandler(always(same));
    const HttpClientResult confirmed = get("/", withLimit(9));
    EXPECT_EQ(confirmed.status(), HttpClientStatus::TooLarge);
    EXPECT_TRUE(confirmed.data().isEmpty());
}

TEST_F(HttpClientCacheTest, aClientKeepsNothingUntilItIsGivenASize)
{
    answerWithHeaders({{"Cache-Control", "max-age=3600"}});
    HttpClient client(nullptr, HttpClient::Default, true);
    EXPECT_EQ(fetch(client, urlOf(server, "/")).data(), "1");
    EXPECT_EQ(fetch(client, urlOf(server, "/")).data(), "2");
    client.setCacheSize(1000000);
    EXPECT_EQ(fetch(client, urlOf(server, "/")).data(), "3");
    EXPECT_EQ(fetch(client, urlOf(server, "/")).data(), "3");
    client.setCacheSize(0);
    EXPECT_EQ(fetch(client, urlOf(server, "/")).data(), "4");
}
