// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/ctl/FakeHost.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace {

const QString StateCall = QStringLiteral("player.state");
const QString PlayCall = QStringLiteral("player.play");

const QByteArray Playing = R"("result":{"state":2,"title":"Jazz FM","streamTitle":"Blue - Night",
    "bitrate":128000,"error":"","contextPath":"a:menu"})";
const QByteArray Nothing = R"("result":{})";

/// A list with a folder and stations.
class PlayHost : public FakeHost {
public:
    PlayHost()
    {
        setResult(PlayCall, R"("result":{"playId":{"id":"1"}})");
        setResult(StateCall, Playing);
        setScreen(QStringLiteral("host:services"), {row(1, "Good", "Good:")});
        setScreen(QStringLiteral("Good:"), {row(1, "Music", "Good:music")});
        setScreen(QStringLiteral("Good:music"),
            {row(2, "Heading", ""), row(1, "Folder", "Good:folder"), row(3, "One", "a:1?id=s1"),
                row(3, "Two", "a:2?id=s2")});
        setScreen(QStringLiteral("Good:folder"), {row(3, "Deep", "a:3")});
    }

    /// The parameters of the last play call: "screen row path".
    std::string played() const
    {
        const QVariantHash params = paramsOf(PlayCall);
        return (params.value(QStringLiteral("screen")).toString() + QLatin1Char(' ')
            + params.value(QStringLiteral("row")).toString() + QLatin1Char(' ')
            + params.value(QStringLiteral("path")).toString())
            .toStdString();
    }
};

TEST(PlayerCommandsTest, PlayPlaysTheRowAndPrintsTheState)
{
    PlayHost host;
    const Outcome outcome = run(host.url(), words("play Good:music 3"));
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.out, "playing  Jazz FM  Blue - Night  128 kbit/s\n");
    EXPECT_EQ(host.played(), "Good:music 3 a:2?id=s2");
}

TEST(PlayerCommandsTest, PlayTakesEveryKindOfPlace)
{
    PlayHost host;
    for (const char *place : {"0/3", "/0/3", "0 3", "/0 3", "Good:music#3", "Good:music 3"}) {
        const Outcome outcome
            = run(host.url(), QStringList {QStringLiteral("play")} + words(place));
        EXPECT_EQ(outcome.status, 0) << place << outcome.errors;
        EXPECT_EQ(host.played(), "Good:music 3 a:2?id=s2") << place;
    }
    EXPECT_EQ(run(host.url(), words("play 4 3")).status, 1);
    EXPECT_EQ(run(host.url(), words("play 0 9")).errors, "veskctl: there is no row 9\n");
    EXPECT_EQ(host.timesAsked(PlayCall), 6);
}

TEST(PlayerCommandsTest, PlayTakesNumbersPathsAndIdsOfShownRows)
{
    const QTemporaryDir memory;
    PlayHost host;
    const Surroundings terminal {{}, 80, memory.path(), QStringLiteral("1"), {}};
    run(host.url(), words("ls Good:music"), terminal);
    for (const char *place : {"3", "a:2?id=s2", "s2"}) {
        const Outcome outcome
            = run(host.url(), QStringList {QStringLiteral("play")} + words(place), terminal);
        EXPECT_EQ(outcome.status, 0) << place << outcome.errors;
        EXPECT_EQ(host.played(), "Good:music 3 a:2?id=s2") << place;
    }
    EXPECT_EQ(host.timesAsked(PlayCall), 3);
}

TEST(PlayerCommandsTest, PlayOfAListPlaysItsFirstPlayableRow)
{
    PlayHost host;
    EXPECT_EQ(run(host.url(), words("play Good:music")).status, 0);
    EXPECT_EQ(host.played(), "Good:music 2 a:1?id=s1");
    EXPECT_EQ(run(host.url(), words("play Good:music 1")).status, 0);
    EXPECT_EQ(host.played(), "Good:folder 0 a:3");
    host.setScreen(QStringLiteral("Good:folder"), {});
    EXPECT_EQ(
        run(host.url(), words("play Good:folder")).errors, "veskctl: there is nothing to play\n");
}

/// A host whose search for "jazz fm" finds \a rows.
class FoundHost : public PlayHost {
public:
    explicit FoundHost(const QList<VeskRoles> &rows)
    {
        setScreen(QStringLiteral("host:services"),
            {withRole(serviceRow("good", "Good"), "search", "Good:s")});
        VeskRoles query = row(5, "Search", "Good:q");
        query.insert(VeskRoles::Query(), QStringLiteral("q"));
        query.insert(VeskRoles::QueryPath(), QStringLiteral("Good:f"));
        setScreen(QStringLiteral("Good:s"), {query});
        setScreen(QStringLiteral("Good:f?q=jazz%20fm"), rows);
    }
};

TEST(PlayerCommandsTest, PlayOfANamePlaysTheBestHitOfASearch)
{
    FoundHost host(
        {row(1, "Jazz FM", "a:0"), row(3, "FM of Jazz", "a:1"), row(3, "Jazz FM 2 (Ulm)", "a:2"),
            row(3, "J\u00e1zz fm (London, England)", "a:3"), row(3, "Jazz FM", "a:4")});
    const Outcome outcome = run(host.url(), words("play jazz fm"));
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(host.played(), "Good:f?q=jazz%20fm 3 a:3");
    EXPECT_EQ(outcome.out,
        "the best hit for \"jazz fm\": J\u00e1zz fm (London, England)\n"
        "playing  Jazz FM  Blue - Night  128 kbit/s\n");
}

TEST(PlayerCommandsTest, PlayOfANamePrefersTheFirstOfEqualHits)
{
    FoundHost words1({row(3, "Something else", "a:1"), row(3, "FM of Jazz", "a:2")});
    EXPECT_EQ(run(words1.url(), words("play jazz fm")).status, 0);
    EXPECT_EQ(words1.played(), "Good:f?q=jazz%20fm 1 a:2");
    FoundHost none({row(3, "Something else", "a:1"), row(3, "Another", "a:2")});
    EXPECT_EQ(run(none.url(), words("play jazz fm")).status, 0);
    EXPECT_EQ(none.played(), "Good:f?q=jazz%20fm 0 a:1");
    FoundHost shows({row(1, "Other", "Good:other"), row(1, "Jazz FM", "Good:folder")});
    EXPECT_EQ(run(shows.url(), words("play jazz fm")).status, 0);
    EXPECT_EQ(shows.played(), "Good:folder 0 a:3");
    FoundHost nothing({row(0, "No stations", "")});
    const Outcome outcome = run(nothing.url(), words("play jazz fm"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "veskctl: there is nothing to play\n");
    EXPECT_EQ(nothing.timesAsked(PlayCall), 0);
}

TEST(PlayerCommandsTest, AnIdThatWasNotShownPlaysOnlyAHitThatHasItInItsTitle)
{
    FoundHost host({});
    const auto found = [&](const char *title) {
        host.setScreen(QStringLiteral("Good:f?q=s20105"), {row(3, title, "a:1")});
        return run(host.url(), words("play s20105")).status;
    };
    EXPECT_EQ(found("Something else"), 1);
    EXPECT_EQ(host.timesAsked(PlayCall), 0);
    EXPECT_EQ(found("S20105 FM"), 0);
    EXPECT_EQ(host.timesAsked(PlayCall), 1);
}

TEST(PlayerCommandsTest, PlayOfAnEntryThatIsGoneShowsTheListAsItIsNow)
{
    PlayHost host;
    host.setResult(PlayCall,
        R"("error":{"code":-32004,"message":"This entry is no longer in the list.","data":{"title":"T"}})");
    const Outcome outcome = run(host.url(), words("play Good:folder 0"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors,
        "veskctl: This entry is no longer in the list.\nveskctl: This is the list now:\n");
    EXPECT_EQ(outcome.out, "Good:folder#0\taudio\tDeep\t\t\n");
    const Outcome json = run(host.url(), words("--json play Good:folder 0"));
    EXPECT_EQ(json.status, 1);
    EXPECT_THAT(json.out, testing::StartsWith("{\"error\":{\"code\":-32004,"));
    EXPECT_EQ(json.errors, "");
}

QByteArray changed(const char *state)
{
    return QByteArray(R"({"jsonrpc":"2.0","method":"player.changed","params":)") + state + "}";
}

TEST(PlayerCommandsTest, PlayWithWaitEndsWhenItIsHeard)
{
    PlayHost host;
    host.setResult(StateCall, R"("result":{"state":1,"title":"Jazz FM","playId":{"id":"1"}})");
    host.setNotifications(StateCall,
        {changed(R"({"state":1,"title":"Jazz FM","playId":{"id":"1"},"problem":"Trying again."})"),
            changed(R"({"state":2,"title":"Jazz FM","playId":{"id":"1"}})"),
            changed(R"({"state":0,"playId":null})")});
    const Outcome outcome = run(host.url(), words("play Good:music 3 --wait"));
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(
        outcome.out, "connecting  Jazz FM\nconnecting  Jazz FM  Trying again.\nplaying  Jazz FM\n");
    EXPECT_EQ(run(host.url(), words("--json play Good:music 3 --wait")).out,
        "{\"playId\":{\"id\":\"1\"},\"state\":2,\"title\":\"Jazz FM\"}\n");
}

TEST(PlayerCommandsTest, PlayWithWaitEndsWhenItFails)
{
    PlayHost host;
    host.setResult(StateCall, R"("result":{"state":1,"playId":{"id":"1"}})");
    host.setNotifications(
        StateCall, {changed(R"({"state":0,"playId":{"id":"1"},"error":"Nobody there."})")});
    const Outcome failed = run(host.url(), words("play Good:music 3 --wait"));
    EXPECT_EQ(failed.status, 1);
    EXPECT_EQ(failed.out, "connecting\nstopped  error: Nobody there.\n");
    host.setNotifications(StateCall, {changed(R"({"state":2,"playId":{"id":"2"}})")});
    const Outcome replaced = run(host.url(), words("play Good:music 3 --wait"));
    EXPECT_EQ(replaced.status, 1);
    EXPECT_THAT(replaced.errors, testing::HasSubstr("before it was heard"));
    host.setNotifications(StateCall, {changed(R"({"state":0,"playId":null,"error":""})")});
    EXPECT_EQ(run(host.url(), words("play Good:music 3 --wait")).status, 1);
    host.setClosing(StateCall, 1);
    EXPECT_EQ(run(host.url(), words("play Good:music 3 --wait")).status, 3);
}

TEST(PlayerCommandsTest, PlayAsJsonPrintsThePlayersState)
{
    PlayHost host;
    EXPECT_EQ(run(host.url(), words("--json play Good:music 3")).out,
        "{\"bitrate\":128000,\"contextPath\":\"a:menu\",\"error\":\"\",\"state\":2,"
        "\"streamTitle\":\"Blue - Night\",\"title\":\"Jazz FM\"}\n");
}

TEST(PlayerCommandsTest, StatusPrintsWhatIsDoneAboutAFault)
{
    FakeHost host({{StateCall,
        R"("result":{"state":1,"title":"Jazz FM","problem":"The station does not answer. Trying again in 8 s.","error":""})"}});
    EXPECT_EQ(run(host.url(), words("status")).out,
        "connecting  Jazz FM  The station does not answer. Trying again in 8 s.\n");
    EXPECT_EQ(run(host.url(), words("status"), {{}, 40, {}, {}, {}}).out,
        "connecting  Jazz FM\n  The station does not answer. Trying again in 8 s.\n");
}

TEST(PlayerCommandsTest, StatusTakesAsManyLinesAsItNeeds)
{
    FakeHost host({{StateCall,
        R"-("result":{"state":2,"title":"Hafenlicht Jazz (Hamburg, Germany)",
            "streamTitle":"The Copper Heron Quartet - Kettle Song","bitrate":128000})-"}});
    EXPECT_EQ(run(host.url(), words("status"), {{}, 40, {}, {}, {}}).out,
        "playing  Hafenlicht Jazz\u2026mburg, Germany)\n  The Copper Heron Quartet - Kettle Song\n"
        "  128 kbit/s\n");
    EXPECT_EQ(run(host.url(), words("status"), {{}, 80, {}, {}, {}}).out,
        "playing  Hafenlicht Jazz (Hamburg, Germany)\n"
        "  The Copper Heron Quartet - Kettle Song  128 kbit/s\n");
}

TEST(PlayerCommandsTest, PlayFailsWithTheHost)
{
    PlayHost host;
    host.setResult(
        PlayCall, R"("error":{"code":-32000,"message":"No\u001b sound","data":{"title":"T"}})");
    const Outcome outcome = run(host.url(), words("play Good:music 3"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.errors, "veskctl: T: No\ufffd sound\n");
}

TEST(PlayerCommandsTest, PlayFailsWithThePlayersErrorAndStatusPrintsIt)
{
    PlayHost host;
    host.setResult(StateCall, R"("result":{"state":0,"title":"Jazz FM","error":"Nobody there."})");
    const Outcome play = run(host.url(), words("play Good:music 3"));
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

TEST(PlayerCommandsTest, StatusPrintsAWordForEachState)
{
    FakeHost host;
    const QHash<int, std::string> wordOf {
        {0, "stopped"}, {1, "connecting"}, {2, "playing"}, {3, "paused"}};
    for (auto it = wordOf.begin(); it != wordOf.end(); ++it) {
        host.setResult(StateCall, "\"result\":{\"state\":" + QByteArray::number(it.key()) + "}");
        EXPECT_EQ(run(host.url(), words("status")).out, it.value() + "\n");
    }
}

TEST(PlayerCommandsTest, StatusPrintsNoControlCharacters)
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

TEST(PlayerCommandsTest, StatusTellsWhatThereIsToTell)
{
    const struct {
        const char *state;
        const char *line;
    } cases[] {{R"("volume":40,"mute":false)", "volume 40"},
        {R"("volume":0,"mute":true)", "volume 0  muted"},
        {R"("position":723.5,"duration":4800)", "12:03 / 1:20:00"},
        {R"("position":5,"duration":null)", "0:05"}, {R"("position":null,"duration":4800)", ""},
        {R"("behind":150.2)", "2:30 behind live"}, {R"("behind":0)", ""},
        {R"("outputProblem":"The headset is gone.")", "The headset is gone."},
        {R"("outputProblem":"","position":null)", ""}};
    for (const auto &[state, line] : cases) {
        const FakeHost host({{StateCall, R"("result":{"state":2,)" + QByteArray(state) + '}'}});
        EXPECT_EQ(run(host.url(), words("status")).out,
            "playing" + (*line ? "  " + std::string(line) : "") + "\n");
    }
}

TEST(PlayerCommandsTest, StatusTellsTheSleepTimerAndAlarms)
{
    FakeHost host({{StateCall, R"("result":{"state":0})"},
        {QStringLiteral("sleep.state"),
            R"("result":{"ends":"2026-11-22T23:30:00+01:00","left":60})"},
        {QStringLiteral("alarms.list"), R"("result":{"alarms":[
            {"id":1,"next":null},{"id":2,"next":"2026-11-24T07:30:00+01:00"},
            {"id":3,"next":"2026-11-23T09:00:00+01:00"}],"missed":[],"ringing":null})"}});
    EXPECT_EQ(run(host.url(), words("status")).out, "stopped  stops at 23:30  alarm Mon 09:00\n");
    EXPECT_EQ(run(host.url(), words("status --json")).out,
        R"({"alarm":{"id":3,"next":"2026-11-23T09:00:00+01:00"},)"
        R"("sleep":{"ends":"2026-11-22T23:30:00+01:00","left":60},"state":0})"
        "\n");
    host.setResult(QStringLiteral("sleep.state"), R"("result":{"ends":null,"left":0})");
    host.setResult(QStringLiteral("alarms.list"), R"("result":{"alarms":[],
        "missed":[{"id":1,"at":"2026-11-23T07:30:00+01:00"}],"ringing":1})");
    EXPECT_EQ(run(host.url(), words("status")).out,
        "stopped  the alarm rings  missed alarm: Mon 07:30\n");
}

TEST(PlayerCommandsTest, PlayTellsOnlyThatItIsMuted)
{
    PlayHost host;
    host.setResult(StateCall,
        R"("result":{"state":2,"title":"Jazz FM","volume":40,"mute":true,"position":3})");
    EXPECT_EQ(run(host.url(), words("play Good:music 3")).out, "playing  Jazz FM  muted\n");
}

TEST(PlayerCommandsTest, PauseResumeAndStopPrintNothingOnSuccess)
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

TEST(PlayerCommandsTest, WatchWithoutAHostEndsWithStatusThree)
{
    QString url;
    {
        const FakeHost gone;
        url = gone.url();
    }
    const Outcome outcome = run(url, words("status --watch"));
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.errors, testing::StartsWith("veskctl: no host at " + url.toStdString()));
}

} // namespace
