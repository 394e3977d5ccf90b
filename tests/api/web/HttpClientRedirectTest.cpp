// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/api/web/HttpFixture.h"

#include <gmock/gmock.h>

using testing::ElementsAre;

namespace {

class HttpClientRedirectTest : public testing::Test {
protected:
    /// Redirects "/N" to "/N-1"; "/0" gets the final response.
    static ScriptedServer::Response countDown(const ScriptedServer::Request &request)
    {
        const int left = request.target.mid(1).toInt();
        return left > 0 ? redirectTo("/" + QByteArray::number(left - 1)) : answerWith("arrived");
    }

    HttpClient client {nullptr, HttpClient::Default, true};
};

} // namespace

TEST_F(HttpClientRedirectTest, FollowsFiveAndNotSix)
{
    const ScriptedServer server(&countDown);
    const HttpClientResult five = fetch(client, urlOf(server, "/5"));
    EXPECT_EQ(five.status(), HttpClientStatus::Success);
    EXPECT_EQ(five.code(), 200);
    EXPECT_EQ(five.data(), "arrived");
    EXPECT_EQ(five.url(), urlOf(server, "/5"));

    const HttpClientResult six = fetch(client, urlOf(server, "/6"));
    EXPECT_EQ(six.status(), HttpClientStatus::TooManyRedirects);
    EXPECT_TRUE(six.data().isEmpty());
    EXPECT_EQ(fetch(client, urlOf(server, "/5")).data(), "arrived");
}

TEST_F(HttpClientRedirectTest, EndsACircle)
{
    const ScriptedServer server(always(redirectTo("/")));
    EXPECT_EQ(fetch(client, urlOf(server, "/")).status(), HttpClientStatus::TooManyRedirects);
    EXPECT_EQ(server.requests().size(), 6);
}

TEST_F(HttpClientRedirectTest, FollowsToAnotherServer)
{
    const ScriptedServer target(always(answerWith("there")));
    const ScriptedServer server(always(redirectTo(urlOf(target, "/x?y=1").toEncoded())));
    EXPECT_EQ(fetch(client, urlOf(server, "/")).data(), "there");
    EXPECT_THAT(target.requestLines(), ElementsAre("GET /x?y=1"));
}

TEST_F(HttpClientRedirectTest, DoesNotLeaveHttp)
{
    for (const char *location : {"file:///etc/passwd", "ftp://127.0.0.1/", "FILE:///etc/passwd",
             "gopher://127.0.0.1:1/_x", "javascript:1", "mailto:a@b", "  ftp://127.0.0.1/"}) {
        const ScriptedServer server(always(redirectTo(location)));
        const HttpClientResult result = fetch(client, urlOf(server, "/"));
        EXPECT_EQ(result.status(), HttpClientStatus::TooManyRedirects) << location;
        EXPECT_EQ(result.code(), 302);
        EXPECT_TRUE(result.data().isEmpty());
    }
}

TEST_F(HttpClientRedirectTest, ALocationWithoutASchemeIsRelative)
{
    for (const char *location :
        {"/arrived?x=ftp://h/", "arrived#ftp:x", "?ftp://x", "./a:b", "//%s/arrived"}) {
        ScriptedServer server([location](const ScriptedServer::Request &request) {
            if (request.target != "/start")
                return answerWith("arrived");
            return redirectTo(QByteArray(location).replace("%s", request.header("Host")));
        });
        EXPECT_EQ(fetch(client, urlOf(server, "/start")).data(), "arrived") << location;
    }
}

TEST_F(HttpClientRedirectTest, ARedirectToAMalformedUrlIsBroken)
{
    const ScriptedServer server(always(redirectTo("http://127.0.0.1:99999/")));
    EXPECT_EQ(fetch(client, urlOf(server, "/")).status(), HttpClientStatus::Broken);
}

TEST_F(HttpClientRedirectTest, TheTargetsFailureIsTheResult)
{
    VeskUrl gone;
    {
        const ScriptedServer server(always(answerWith("x")));
        gone = urlOf(server, "/");
    }
    const ScriptedServer server(always(redirectTo(gone.toEncoded())));
    EXPECT_EQ(fetch(client, urlOf(server, "/")).status(), HttpClientStatus::ConnectFailed);
}

TEST_F(HttpClientRedirectTest, ALocationOfAnAnswerThatIsNoRedirectMeansNothing)
{
    ScriptedServer::Response response = answerWith("made", {{"Location", "ftp://h/x"}});
    response.code = 201;
    const ScriptedServer server(always(response));
    EXPECT_EQ(fetch(client, urlOf(server, "/")).data(), "made");
}

TEST_F(HttpClientRedirectTest, TheSizeLimitAppliesToTheLastBodyOnly)
{
    const ScriptedServer server([](const ScriptedServer::Request &request) {
        if (request.target == "/end")
            return answerWith("0123456789");
        ScriptedServer::Response response = redirectTo("/end");
        response.body = QByteArray(100000, 'm');
        return response;
    });
    EXPECT_EQ(fetch(client, urlOf(server, "/"), withLimit(10)).data(), "0123456789");
    EXPECT_EQ(fetch(client, urlOf(server, "/"), withLimit(9)).status(), HttpClientStatus::TooLarge);
}

TEST_F(HttpClientRedirectTest, TheTimeOutCoversAllRedirects)
{
    const ScriptedServer server([](const ScriptedServer::Request &request) {
        if (request.target == "/start")
            return redirectTo("/stall");
        ScriptedServer::Response response;
        response.end = ScriptedServer::End::StallBeforeHead;
        return response;
    });
    EXPECT_EQ(fetch(client, urlOf(server, "/start"), withTimeout(100)).status(),
        HttpClientStatus::TimedOut);
}

TEST_F(HttpClientRedirectTest, APostGoesOnAsTheCodeSays)
{
    ScriptedServer server([](const ScriptedServer::Request &request) {
        if (request.target == "/303")
            return redirectTo("/end", 303);
        return request.target == "/307" ? redirectTo("/end", 307) : answerWith(request.body);
    });
    EXPECT_EQ(send(client, urlOf(server, "/303"), "a=1").data(), "");
    EXPECT_EQ(send(client, urlOf(server, "/307"), "a=1").data(), "a=1");
    EXPECT_THAT(
        server.requestLines(), ElementsAre("POST /303", "GET /end", "POST /307", "POST /end"));
    server.clearRequests();
    EXPECT_EQ(fetch(client, urlOf(server, "/end")).status(), HttpClientStatus::Success);
    EXPECT_THAT(server.requestLines(), ElementsAre("GET /end"));
}

TEST_F(HttpClientRedirectTest, ReturnsRedirectsWhenItDoesNotFollowThem)
{
    const ScriptedServer server(always(redirectTo("ftp://h/x")));
    HttpClient still(nullptr, HttpClient::Default, false);
    const HttpClientResult result = fetch(still, urlOf(server, "/"));
    EXPECT_EQ(result.status(), HttpClientStatus::Success);
    EXPECT_EQ(result.code(), 302);
    EXPECT_EQ(result.data(), "moved");
}
