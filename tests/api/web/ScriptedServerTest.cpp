// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/api/web/HttpFixture.h"
#include "tests/support/WorkerThread.h"

#include <gmock/gmock.h>

using testing::ElementsAre;

TEST(ScriptedServerTest, RecordsWhatItWasAsked)
{
    ScriptedServer server(always(answerWith("x")));
    HttpClient client(nullptr, HttpClient::Default, true);
    fetch(client, urlOf(server, "/Tune.ashx?id=s1"));
    send(client, urlOf(server, "/Account.ashx"), "a=1");
    EXPECT_TRUE(server.waitForRequests(2));
    EXPECT_THAT(server.requestLines(), ElementsAre("GET /Tune.ashx?id=s1", "POST /Account.ashx"));
    const ScriptedServer::Request first = server.requests().first();
    EXPECT_EQ(first.path(), "/Tune.ashx");
    EXPECT_EQ(first.query(), "id=s1");
    EXPECT_FALSE(first.header("hOST").isNull());
    EXPECT_TRUE(first.header("X-None").isNull());
    const ScriptedServer::Request second = server.requests().last();
    EXPECT_EQ(second.body, "a=1");
    EXPECT_EQ(second.path(), "/Account.ashx");
    EXPECT_EQ(second.query(), "");
    server.clearRequests();
    EXPECT_TRUE(server.requests().isEmpty());
    EXPECT_FALSE(server.waitForRequests(1, 1));
}

TEST(ScriptedServerTest, NamesItsPlaceAsCurlTakesIt)
{
    const ScriptedServer server(always(answerWith("x")));
    EXPECT_EQ(server.connectTo("h"), "h:80:127.0.0.1:" + QByteArray::number(server.port()));
}

TEST(ScriptedServerTest, EndsWhatStallsWhenItIsDestroyed)
{
    ScriptedServer::Response response = answerWith("x");
    response.end = ScriptedServer::End::Stall;
    auto server = std::make_unique<ScriptedServer>(always(response));
    HttpClient client(nullptr, HttpClient::Default, true);
    QList<HttpClientStatus> ends;
    client.get(urlOf(*server, "/"), HttpClientOptions(),
        [&ends](const HttpClientResult &result) { ends.append(result.status()); });
    ASSERT_TRUE(spinUntil([&server] { return server->requests().size() == 1; }));
    EXPECT_TRUE(ends.isEmpty());
    server.reset();
    ASSERT_TRUE(spinUntil([&ends] { return !ends.isEmpty(); }));
    EXPECT_EQ(ends, QList<HttpClientStatus> {HttpClientStatus::Broken});
}

TEST(ScriptedServerTest, GoesOnServingWithManyConnections)
{
    ScriptedServer::Response response = answerWith("x");
    response.end = ScriptedServer::End::Close;
    const ScriptedServer server(always(response));
    HttpClient client(nullptr, HttpClient::Default, true);
    for (int i = 0; i < 300; ++i)
        ASSERT_EQ(fetch(client, urlOf(server, "/")).data(), "x");
    EXPECT_EQ(server.connections(), 300);
}
