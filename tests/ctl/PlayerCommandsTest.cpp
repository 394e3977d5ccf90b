#include "tests/ctl/FakeHost.h"

#include <gmock/gmock.h>

namespace {

const QString StateCall = QStringLiteral("player.state");
const QString PlayCall = QStringLiteral("player.play");

const QByteArray Playing = R"("result":{"state":2,"title":"Jazz FM","streamTitle":"Blue - Night",
    "bitrate":128000,"error":"","contextPath":"a:menu"})";
const QByteArray Nothing = R"("result":{})";

TEST(PlayerCommandsTest, PlayPlaysTheRowAndTellsWhatItIs)
{
    FakeHost host({{PlayCall, R"("result":{"playId":{"id":"1"}})"}, {StateCall, Playing}});
    const Outcome outcome = run(host.url(), words("play a:b?c=d 12"));
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.out, "playing  Jazz FM  Blue - Night  128 kbit/s\n");
    const QVariantHash params = host.paramsOf(PlayCall);
    EXPECT_EQ(params.value(QStringLiteral("screen")), QStringLiteral("a:b?c=d"));
    EXPECT_EQ(params.value(QStringLiteral("row")), 12);
}

TEST(PlayerCommandsTest, PlayTakesPlaces)
{
    FakeHost host({{PlayCall, Nothing}, {StateCall, Playing}});
    host.setScreen(QStringLiteral("host:services"), {row(1, "Good", "Good:")});
    host.setScreen(QStringLiteral("Good:"), {row(1, "Music", "Good:music")});
    EXPECT_EQ(run(host.url(), words("play 0 3")).status, 0);
    EXPECT_EQ(
        host.paramsOf(PlayCall).value(QStringLiteral("screen")), QStringLiteral("Good:music"));
    EXPECT_EQ(run(host.url(), words("play 4 3")).status, 1);
    EXPECT_EQ(host.timesAsked(PlayCall), 1);
}

TEST(PlayerCommandsTest, PlayAsJsonIsTheHostsAnswer)
{
    FakeHost host({{PlayCall, R"("result":{"playId":{"id":"1"}})"}});
    EXPECT_EQ(run(host.url(), words("--json play a:b 0")).out, "{\"playId\":{\"id\":\"1\"}}\n");
    EXPECT_EQ(host.timesAsked(StateCall), 0);
}

TEST(PlayerCommandsTest, PlayFailsWithTheHost)
{
    FakeHost host(
        {{PlayCall, R"("error":{"code":-32000,"message":"No\u001b sound","data":{"title":"T"}})"}});
    const Outcome outcome = run(host.url(), words("play a:b 0"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.errors, "veskctl: T: No\ufffd sound\n");
}

TEST(PlayerCommandsTest, APlayThatFailedAtOnceIsAFailureButNewsForStatus)
{
    FakeHost host({{PlayCall, Nothing},
        {StateCall, R"("result":{"state":0,"title":"Jazz FM","error":"Nobody there."})"}});
    const Outcome play = run(host.url(), words("play a:b 0"));
    EXPECT_EQ(play.status, 1);
    EXPECT_EQ(play.out, "stopped  Jazz FM  error: Nobody there.\n");
    const Outcome status = run(host.url(), words("status"));
    EXPECT_EQ(status.status, 0);
    EXPECT_EQ(status.out, play.out);
}

TEST(PlayerCommandsTest, StatusFailsWithTheHost)
{
    FakeHost host;
    const Outcome outcome = run(host.url(), words("status"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "veskctl: nothing there\n");
}

TEST(PlayerCommandsTest, StatusHasAWordForEachState)
{
    FakeHost host;
    const QHash<int, std::string> wordOf {
        {0, "stopped"}, {1, "connecting"}, {2, "playing"}, {3, "paused"}};
    for (auto it = wordOf.begin(); it != wordOf.end(); ++it) {
        host.setResult(StateCall, "\"result\":{\"state\":" + QByteArray::number(it.key()) + "}");
        EXPECT_EQ(run(host.url(), words("status")).out, it.value() + "\n");
    }
}

TEST(PlayerCommandsTest, StatusNeverActsOnTheTerminal)
{
    FakeHost host({{StateCall,
        R"("result":{"state":2,"title":"a\u001b[2J","streamTitle":"b\n\u009bc","error":"\u202ed",
            "bitrate":"x"})"}});
    EXPECT_EQ(
        run(host.url(), words("status")).out, "playing  a\ufffd[2J  b \ufffdc  error: \ufffdd\n");
    const std::string json = run(host.url(), words("status --json")).out;
    EXPECT_THAT(json, testing::HasSubstr("\"title\":\"a\\u001b[2J\""));
    for (const char *bad : {"\x1b", "\xc2\x9b", "\xe2\x80\xae"})
        EXPECT_THAT(json, testing::Not(testing::HasSubstr(bad)));
}

TEST(PlayerCommandsTest, PauseResumeAndStopAreSilentWhenTheyWork)
{
    FakeHost host;
    for (const char *command : {"pause", "resume", "stop"}) {
        const QString call = QStringLiteral("player.") + QLatin1String(command);
        EXPECT_EQ(run(host.url(), words(command)).status, 1);
        host.setResult(call, Nothing);
        const Outcome outcome = run(host.url(), words(command));
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(run(host.url(), {QLatin1String(command), QStringLiteral("--json")}).out, "{}\n");
        EXPECT_EQ(host.timesAsked(call), 3);
    }
}

TEST(PlayerCommandsTest, NobodyToWatchIsStatusThree)
{
    QString url;
    {
        const FakeHost gone;
        url = gone.url();
    }
    const Outcome outcome = run(url, words("status --watch"));
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.errors, testing::StartsWith("veskctl: no host at " + url.toStdString()));
    // An HTTP server without a WebSocket.
    FakeHost other;
    EXPECT_EQ(run(other.url(), words("status --watch")).status, 3);
}

} // namespace
