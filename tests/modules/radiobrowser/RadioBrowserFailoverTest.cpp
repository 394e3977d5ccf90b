// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/modules/radiobrowser/RadioBrowserFixture.h"
#include "tests/support/LogCapture.h"

namespace {

constexpr char Unreachable[] = "No server of Radio Browser answers. Please try again later.";

class RadioBrowserFailoverTest : public RadioBrowserFixture {
protected:
    static ScriptedServer::Handler ending(ScriptedServer::End end)
    {
        ScriptedServer::Response response;
        response.end = end;
        return [response](const ScriptedServer::Request &) { return response; };
    }

    /// Servers are asked in random order: starts the plug-in anew until it asks \a first first.
    void startWithFirst(const ScriptedServer &first, const ScriptedServer &other)
    {
        for (int i = 0; i < 64 && first.requests().isEmpty(); ++i) {
            startWithServers({addressOf(first), addressOf(other)});
            EXPECT_EQ(rows(text("RadioBrowser:stations")).titles(), stations);
        }
        ASSERT_EQ(first.requests().size(), 1);
    }

    const QStringList stations {text("Station 1")};
};

} // namespace

TEST_F(RadioBrowserFailoverTest, LeavesAServerThatFailsForTheNextAndThenAlone)
{
    const std::pair<const char *, ScriptedServer::Handler> failures[] = {
        {"an error of the server", radioBrowserCode(500)},
        {"a server in maintenance", radioBrowserCode(503)},
        {"a reset connection", ending(ScriptedServer::End::ResetBeforeHead)},
        {"no HTTP",
            [](const ScriptedServer::Request &) {
                ScriptedServer::Response response;
                response.body = "SSH-2.0-OpenSSH_9.2\r\n";
                response.end = ScriptedServer::End::Raw;
                return response;
            }},
    };
    for (const auto &failure : failures) {
        SCOPED_TRACE(failure.first);
        ScriptedServer bad(failure.second);
        ScriptedServer good(radioBrowserAnswer({radioBrowserStation(1)}));
        startWithFirst(bad, good);
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(rows(text("RadioBrowser:stations")).titles(), stations);
        EXPECT_EQ(bad.requests().size(), 1);
        stop();
    }
}

TEST_F(RadioBrowserFailoverTest, LeavesAServerThatRefusesConnections)
{
    auto gone = std::make_unique<ScriptedServer>(radioBrowserCode(200));
    const QString goneAddress = addressOf(*gone);
    gone.reset();
    ScriptedServer good(radioBrowserAnswer({radioBrowserStation(1)}));
    LogCapture log("CB_RadioBrowser");
    for (int i = 0; i < 64 && log.lines(text("WARN")).isEmpty(); ++i) {
        startWithServers({goneAddress, addressOf(good)});
        EXPECT_EQ(rows(text("RadioBrowser:stations")).titles(), stations);
    }
    EXPECT_EQ(
        log.lines(text("WARN")), QStringList(goneAddress + text(" failed: ConnectFailed, HTTP 0")));
}

TEST_F(RadioBrowserFailoverTest, LeavesAServerThatDoesNotAnswerInTime)
{
    ScriptedServer silent(ending(ScriptedServer::End::StallBeforeHead));
    ScriptedServer good(radioBrowserAnswer({radioBrowserStation(1)}));
    startWithFirst(silent, good);
    EXPECT_EQ(rows(text("RadioBrowser:stations")).titles(), stations);
    EXPECT_EQ(silent.requests().size(), 1);
}

TEST_F(RadioBrowserFailoverTest, AsksTheFailedServerAgainAfterFiveMinutes)
{
    ScriptedServer server(radioBrowserCode(500));
    ScriptedServer other(radioBrowserAnswer({radioBrowserStation(1)}));
    startWithFirst(server, other);
    server.setHandler(radioBrowserAnswer({radioBrowserStation(2)}));
    EXPECT_EQ(rows(text("RadioBrowser:stations")).titles(), stations);
    clock().advance(std::chrono::minutes(5));
    EXPECT_EQ(rows(text("RadioBrowser:stations")).titles(), QStringList(text("Station 2")));
}

TEST_F(RadioBrowserFailoverTest, SaysThatNoServerAnswersAfterThreeAttempts)
{
    std::vector<std::unique_ptr<ScriptedServer>> servers;
    QStringList addresses;
    for (int i = 0; i < 5; ++i) {
        servers.push_back(std::make_unique<ScriptedServer>(radioBrowserCode(502)));
        addresses.append(addressOf(*servers.back()));
    }
    startWithServers(addresses);
    EXPECT_EQ(rows(text("RadioBrowser:stations")).error, text(Unreachable));
    int requests = 0;
    for (const auto &server : servers)
        requests += server->requests().size();
    EXPECT_EQ(requests, 3);
}

TEST_F(RadioBrowserFailoverTest, AsksTheOnlyServerAgainAtOnce)
{
    ScriptedServer server(radioBrowserCode(500));
    start(addressOf(server));
    EXPECT_EQ(rows(text("RadioBrowser:stations")).error, text(Unreachable));
    server.setHandler(radioBrowserAnswer({radioBrowserStation(1)}));
    EXPECT_EQ(rows(text("RadioBrowser:stations")).titles(), stations);
}

TEST_F(RadioBrowserFailoverTest, TriesNoOtherServerAfterAClientError)
{
    ScriptedServer server(radioBrowserCode(404));
    ScriptedServer other(radioBrowserCode(404));
    startWithServers({addressOf(server), addressOf(other)});
    EXPECT_EQ(
        rows(text("RadioBrowser:stations")).error, text("Radio Browser refused the request."));
    EXPECT_EQ(server.requests().size() + other.requests().size(), 1);
}

TEST_F(RadioBrowserFailoverTest, SendsItsNameAndVersionAsUserAgent)
{
    ScriptedServer server(radioBrowserAnswer({}));
    start(addressOf(server));
    rows(text("RadioBrowser:stations"));
    EXPECT_THAT(server.requests().constFirst().header("User-Agent").toStdString(),
        testing::MatchesRegex("Vesk/[0-9]+\\.[0-9.]+"));
}

TEST_F(RadioBrowserFailoverTest, UsesTheServerOfTheHostsSetting)
{
    ScriptedServer server(radioBrowserAnswer({radioBrowserStation(1)}));
    define(RadioBrowserWorker::serverSettingPath(), addressOf(server));
    startWithConfig({}, [] { return QStringList(); });
    EXPECT_EQ(rows(text("RadioBrowser:stations")).titles(), stations);
}

TEST_F(RadioBrowserFailoverTest, EndsPendingRequestsWhenItIsUnloaded)
{
    ScriptedServer silent(ending(ScriptedServer::End::StallBeforeHead));
    start(addressOf(silent));
    const auto data = std::make_shared<CMReplyData<QVariant>>();
    CMRoot()->request(CMGetRowsRequest(CMPath::fromEncoded(text("RadioBrowser:stations")),
        VeskRoles::all(), 0, 9, CMReply<QVariant>(data)));
    ASSERT_TRUE(silent.waitForRequests(1));
    stop();
    ASSERT_TRUE(data->isFinished());
    EXPECT_FALSE(data->error().isEmpty());
}
