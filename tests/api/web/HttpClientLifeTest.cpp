// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/api/web/HttpFixture.h"
#include "tests/support/LogCapture.h"
#include "tests/support/WorkerThread.h"

#include <QDir>

#include <mutex>

namespace {

ScriptedServer::Handler stalling()
{
    ScriptedServer::Response response = answerWith("never");
    response.end = ScriptedServer::End::StallBeforeHead;
    return always(response);
}

class HttpClientLifeTest : public testing::Test {
protected:
    /// A completion function that records its exchange's result.
    HttpClient::Function noting()
    {
        return [this](const HttpClientResult &result) { ends.append(result.status()); };
    }

    QList<HttpClientStatus> ends;
    std::unique_ptr<HttpClient> client
        = std::make_unique<HttpClient>(nullptr, HttpClient::Default, true);
    const QList<HttpClientStatus> oneCancelled {HttpClientStatus::Cancelled};
};

} // namespace

TEST_F(HttpClientLifeTest, DestroyingAnUnusedClientDoesNothing)
{
    client.reset();
    EXPECT_TRUE(ends.isEmpty());
}

TEST_F(HttpClientLifeTest, DestructionCancelsEachExchangeOnce)
{
    const ScriptedServer server(stalling());
    for (int i = 0; i < 20; ++i)
        client->get(urlOf(server, "/"), HttpClientOptions(), noting());
    client->post(urlOf(server, "/"), "x", HttpClientOptions(), noting());
    ASSERT_TRUE(spinUntil([&server] { return server.requests().size() == 21; }));
    EXPECT_TRUE(ends.isEmpty());
    client.reset();
    EXPECT_EQ(ends.size(), 21);
    EXPECT_EQ(ends.count(HttpClientStatus::Cancelled), 21);
}

TEST_F(HttpClientLifeTest, DestructionCancelsWhatHasNotEvenConnected)
{
    const ScriptedServer server(stalling());
    client->get(urlOf(server, "/"), HttpClientOptions(), noting());
    client.reset();
    EXPECT_EQ(ends, oneCancelled);
}

TEST_F(HttpClientLifeTest, DestructionCancelsResultsThatAreNotDelivered)
{
    client->get(VeskUrl(), HttpClientOptions(), noting());
    EXPECT_TRUE(ends.isEmpty());
    client.reset();
    EXPECT_EQ(ends, oneCancelled);
}

TEST_F(HttpClientLifeTest, DestructionDoesNotWaitForANameServer)
{
    client->get(VeskUrl(QStringLiteral("http://nobody.invalid/")), HttpClientOptions(), noting());
    client.reset();
    EXPECT_EQ(ends, oneCancelled);
}

TEST_F(HttpClientLifeTest, ARequestMadeDuringDestructionIsCancelledToo)
{
    const ScriptedServer server(stalling());
    client->get(urlOf(server, "/"), HttpClientOptions(),
        [this, &server, raw = client.get()](const HttpClientResult &result) {
            ends.append(result.status());
            raw->get(urlOf(server, "/"), HttpClientOptions(), noting());
            EXPECT_EQ(ends.size(), 1) << "completed while it was being started";
        });
    client.reset();
    EXPECT_EQ(ends, oneCancelled + oneCancelled);
}

TEST_F(HttpClientLifeTest, ACompletionMayDestroyTheClient)
{
    const ScriptedServer server(always(answerWith("x")));
    const ScriptedServer silent(stalling());
    client->get(urlOf(silent, "/"), HttpClientOptions(), noting());
    client->get(urlOf(server, "/"), HttpClientOptions(), [this](const HttpClientResult &result) {
        ends.append(result.status());
        client.reset();
    });
    ASSERT_TRUE(spinUntil([this] { return !client; }));
    EXPECT_EQ(
        ends, (QList<HttpClientStatus> {HttpClientStatus::Success, HttpClientStatus::Cancelled}));
}

TEST_F(HttpClientLifeTest, ACompletionByTimeoutMayDestroyTheClient)
{
    const ScriptedServer silent(stalling());
    client->get(urlOf(silent, "/"), withTimeout(50), [this](const HttpClientResult &result) {
        ends.append(result.status());
        client.reset();
    });
    ASSERT_TRUE(spinUntil([this] { return !client; }));
    EXPECT_EQ(ends, QList<HttpClientStatus> {HttpClientStatus::TimedOut});
}

TEST_F(HttpClientLifeTest, ACompletionOfARefusedRequestMayDestroyTheClient)
{
    client->get(VeskUrl(), HttpClientOptions(), noting());
    client->get(
        VeskUrl(), HttpClientOptions(), [this](const HttpClientResult &) { client.reset(); });
    client->get(VeskUrl(), HttpClientOptions(), noting());
    ASSERT_TRUE(spinUntil([this] { return !client; }));
    EXPECT_EQ(ends,
        (QList<HttpClientStatus> {HttpClientStatus::InvalidRequest, HttpClientStatus::Cancelled}));
}

TEST_F(HttpClientLifeTest, ACompletionMayAskAgain)
{
    const ScriptedServer server(always(answerWith("x")));
    int left = 50;
    std::function<void(const HttpClientResult &)> next = [&](const HttpClientResult &result) {
        EXPECT_EQ(result.status(), HttpClientStatus::Success);
        if (--left > 0)
            client->get(urlOf(server, "/"), HttpClientOptions(), next);
    };
    client->get(urlOf(server, "/"), HttpClientOptions(), next);
    EXPECT_TRUE(spinUntil([&left] { return left == 0; }));
    EXPECT_EQ(server.connections(), 1);
}

TEST_F(HttpClientLifeTest, ACompletionMayWaitForAnotherExchange)
{
    const ScriptedServer server(always(answerWith("x")));
    QByteArray inner;
    client->get(urlOf(server, "/"), HttpClientOptions(), [&](const HttpClientResult &result) {
        inner = fetch(*client, urlOf(server, "/inner")).data();
        ends.append(result.status());
    });
    ASSERT_TRUE(spinUntil([this] { return !ends.isEmpty(); }));
    EXPECT_EQ(inner, "x");
}

TEST_F(HttpClientLifeTest, CompletionsThatAlwaysAskAgainDoNotStarveTheEventLoop)
{
    int asked = 0;
    bool stop = false;
    std::function<void(const HttpClientResult &)> next = [&](const HttpClientResult &) {
        ++asked;
        if (!stop)
            client->get(VeskUrl(), HttpClientOptions(), next);
    };
    client->get(VeskUrl(), HttpClientOptions(), next);
    EXPECT_TRUE(spinUntil([&asked] { return asked > 1000; }));
    stop = true;
    client.reset();
}

TEST_F(HttpClientLifeTest, ARequestWithoutAFunctionIsStillSent)
{
    const ScriptedServer server(always(answerWith("x")));
    client->get(urlOf(server, "/"), HttpClientOptions(), {});
    EXPECT_TRUE(spinUntil([&server] { return server.requests().size() == 1; }));
    EXPECT_EQ(fetch(*client, urlOf(server, "/")).data(), "x");
}

TEST_F(HttpClientLifeTest, AClientOpensNothingUntilItsFirstExchange)
{
    const auto openFiles = [] {
        return QDir(QStringLiteral("/proc/self/fd"))
            .entryList(QDir::NoDotAndDotDot | QDir::System)
            .size();
    };
    const ScriptedServer server(always(answerWith("x")));
    const int before = openFiles();
    HttpClient another(nullptr, HttpClient::Default, true);
    another.setCacheSize(1000000);
    EXPECT_EQ(openFiles(), before);
    fetch(another, urlOf(server, "/"));
    EXPECT_GT(openFiles(), before);
}

TEST_F(HttpClientLifeTest, MovesToAnotherThreadWithItsExchanges)
{
    const ScriptedServer server(always(answerWith("x")));
    EXPECT_EQ(fetch(*client, urlOf(server, "/")).data(), "x");
    std::mutex mutex;
    QThread *endedOn = nullptr;
    client->get(urlOf(server, "/"), HttpClientOptions(), [&](const HttpClientResult &result) {
        const std::lock_guard<std::mutex> lock(mutex);
        EXPECT_EQ(result.status(), HttpClientStatus::Success);
        endedOn = QThread::currentThread();
    });
    WorkerThread thread([] { return nullptr; });
    client->moveToThread(&thread);
    EXPECT_TRUE(spinUntil([&] {
        const std::lock_guard<std::mutex> lock(mutex);
        return endedOn != nullptr;
    }));
    EXPECT_EQ(endedOn, &thread);
    thread.call([this] { client.reset(); });
}

TEST_F(HttpClientLifeTest, ShutDownEndsEveryClientOnItsOwnThread)
{
    const ScriptedServer server(stalling());
    struct Ends {
        std::mutex mutex;
        QList<QThread *> threads;
        QList<HttpClientStatus> statuses;
        int size()
        {
            const std::lock_guard<std::mutex> lock(mutex);
            return threads.size();
        }
    } threadEnds;
    WorkerThread thread([] { return new HttpClient(nullptr, HttpClient::Default, true); });
    auto *const other = static_cast<HttpClient *>(thread.object());
    thread.call([&] {
        for (int i = 0; i < 5; ++i)
            other->get(
                urlOf(server, "/"), HttpClientOptions(), [&](const HttpClientResult &result) {
                    const std::lock_guard<std::mutex> lock(threadEnds.mutex);
                    threadEnds.threads.append(QThread::currentThread());
                    threadEnds.statuses.append(result.status());
                });
    });
    client->get(urlOf(server, "/"), HttpClientOptions(), noting());
    ASSERT_TRUE(spinUntil([&server] { return server.requests().size() == 6; }));

    HttpClient::shutDownAll();
    EXPECT_TRUE(ends.isEmpty());
    ASSERT_TRUE(spinUntil([&] { return threadEnds.size() == 5 && !ends.isEmpty(); }));
    EXPECT_EQ(ends, oneCancelled);
    EXPECT_EQ(threadEnds.threads.count(&thread), 5);
    EXPECT_EQ(threadEnds.statuses.count(HttpClientStatus::Cancelled), 5);

    EXPECT_EQ(fetch(*client, urlOf(server, "/")).status(), HttpClientStatus::Cancelled);
    EXPECT_EQ(server.requests().size(), 6);
    const ScriptedServer good(always(answerWith("x")));
    HttpClient later(nullptr, HttpClient::Default, true);
    EXPECT_EQ(fetch(later, urlOf(good, "/")).data(), "x");
}

TEST_F(HttpClientLifeTest, ShutDownWhileClientsAreDestroyedLosesNoCompletion)
{
    const ScriptedServer server(always(answerWith("x")));
    for (int round = 0; round < 30; ++round) {
        int calls = 0;
        {
            WorkerThread thread([] { return new HttpClient(nullptr, HttpClient::Default, true); });
            auto *const other = static_cast<HttpClient *>(thread.object());
            thread.call([&] {
                for (int i = 0; i < 3; ++i)
                    other->get(urlOf(server, "/"), HttpClientOptions(),
                        [&calls](const HttpClientResult &) { ++calls; });
            });
            HttpClient::shutDownAll();
        }
        EXPECT_EQ(calls, 3);
    }
}

TEST_F(HttpClientLifeTest, LogsOneLinePerExchangeWithoutSecretsOrBodies)
{
    const ScriptedServer server(always(answerWith("top secret body")));
    const LogCapture log("Vesk.Http");
    fetch(*client, urlOf(server, "/Account.ashx?c=auth&username=me&password=hidden"));
    send(*client, urlOf(server, "/x"), "password=hidden");
    client.reset();
    const QStringList lines = log.lines();
    ASSERT_EQ(lines.size(), 2);
    const QString base = urlOf(server, "").toString();
    EXPECT_TRUE(lines.at(0).startsWith(QStringLiteral("DEBUG GET ") + base
        + QStringLiteral("/Account.ashx?c=auth&username=me&password=***: Success, code 200, "
                         "15 bytes in ")))
        << lines.at(0).toStdString();
    EXPECT_TRUE(lines.at(1).startsWith(QStringLiteral("DEBUG POST ") + base));
    for (const QString &line : lines) {
        EXPECT_FALSE(line.contains(QStringLiteral("hidden")));
        EXPECT_FALSE(line.contains(QStringLiteral("secret")));
    }
}

TEST_F(HttpClientLifeTest, AbandonsExchangesThatOnlyReadAndNoOthers)
{
    const ScriptedServer server(stalling());
    HttpClientOptions personal;
    personal.setUseCache(false);
    QList<HttpClientStatus> personalEnds;
    client->get(urlOf(server, "/read"), HttpClientOptions(), noting());
    client->get(urlOf(server, "/change"), personal,
        [&](const HttpClientResult &result) { personalEnds.append(result.status()); });
    client->post(urlOf(server, "/post"), "x", HttpClientOptions(),
        [&](const HttpClientResult &result) { personalEnds.append(result.status()); });
    ASSERT_TRUE(spinUntil([&server] { return server.requests().size() == 3; }));

    HttpClient::abandonReading(true);
    ASSERT_TRUE(spinUntil([this] { return ends.size() == 1; }));
    EXPECT_EQ(ends, oneCancelled);
    client->get(urlOf(server, "/later"), HttpClientOptions(), noting());
    ASSERT_TRUE(spinUntil([this] { return ends.size() == 2; }));
    EXPECT_EQ(ends.at(1), HttpClientStatus::Cancelled);
    EXPECT_TRUE(personalEnds.isEmpty());

    HttpClient::abandonReading(false);
    client->get(urlOf(server, "/wanted"), HttpClientOptions(), noting());
    EXPECT_TRUE(spinUntil([&server] { return server.requests().size() == 4; }));
    EXPECT_EQ(server.requestLines().last(), "GET /wanted");
    client.reset();
}

TEST_F(HttpClientLifeTest, AnAddressThatTimedOutFailsAtOnceTheNextTime)
{
    const ScriptedServer server(stalling());
    EXPECT_EQ(
        fetch(*client, urlOf(server, "/a"), withTimeout(300)).status(), HttpClientStatus::TimedOut);
    EXPECT_EQ(fetch(*client, urlOf(server, "/a"), withTimeout(30000)).status(),
        HttpClientStatus::TimedOut);
    // The server's threads may be behind its client.
    EXPECT_TRUE(server.waitForRequests(1));
    EXPECT_EQ(server.requests().size(), 1);
    // Requests for other addresses are sent, and those without the cache, which may have effects.
    EXPECT_EQ(
        fetch(*client, urlOf(server, "/b"), withTimeout(300)).status(), HttpClientStatus::TimedOut);
    HttpClientOptions personal = withTimeout(300);
    personal.setUseCache(false);
    fetch(*client, urlOf(server, "/a"), personal);
    fetch(*client, urlOf(server, "/a"), personal);
    EXPECT_TRUE(server.waitForRequests(4));
    EXPECT_EQ(server.requests().size(), 4);
}

TEST_F(HttpClientLifeTest, CallsTheActivityListenerAtTheBeginAndTheEnd)
{
    int signs = 0;
    HttpClient::setActivityListener([&signs] { ++signs; });
    const ScriptedServer server(always(answerWith("x")));
    fetch(*client, urlOf(server, "/"));
    EXPECT_EQ(signs, 2);
    HttpClient::setActivityListener(nullptr);
}

TEST_F(HttpClientLifeTest, CallsTheExchangeListenerBeforeTheCallersFunction)
{
    std::vector<std::pair<HttpClientStatus, int>> told;
    bool wasFirst = true;
    HttpClient::setExchangeListener([&told](const HttpClientResult &result) {
        told.emplace_back(result.status(), result.code());
    });
    const ScriptedServer server(always(answerWith("x")));
    bool done = false;
    client->get(urlOf(server, "/"), {}, [&](const HttpClientResult &) {
        wasFirst = told.size() == 1;
        done = true;
    });
    EXPECT_TRUE(told.empty());
    ASSERT_TRUE(spinUntil([&] { return done; }));
    EXPECT_TRUE(wasFirst);
    fetch(*client, VeskUrl(QStringLiteral("nonsense:")));
    HttpClient::setExchangeListener(nullptr);
    fetch(*client, urlOf(server, "/"));
    ASSERT_EQ(told.size(), 2U);
    EXPECT_EQ(told[0], std::make_pair(HttpClientStatus::Success, 200));
    EXPECT_EQ(told[1], std::make_pair(HttpClientStatus::InvalidRequest, 0));
}
