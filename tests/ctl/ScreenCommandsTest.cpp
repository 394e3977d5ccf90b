#include "api/web/VeskJson.h"
#include "tests/ctl/FakeHost.h"

#include <gmock/gmock.h>

namespace {

using Results = FakeHost::Results;

const QByteArray OneService
    = R"("result":{"rowsCount":1,"rows":[["Good:"]],"roles":{"title":"Services"}})";

/// The rows of ls: type, title, description, path, query, queryPath, value.
const QByteArray GoodScreen = R"("result":{"rowsCount":2,"roles":{"title":"Good"},"rows":[
    [1,"Music",null,"Good:music",null,null,null],
    [3,"Jazz","Now","Good:jazz?id=1&x=2",null,null,null]]})";

TEST(ScreenCommandsTest, LsShowsAScreen)
{
    FakeHost host({{QStringLiteral("getRows Good:x"), GoodScreen}});
    const Outcome outcome = run(host.url(), words("ls Good:x"));
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.out,
        "Good\n   0 > Music  Good:music\n   1 \u266a Jazz  Now  'Good:jazz?id=1&x=2'\n");
}

TEST(ScreenCommandsTest, LsWithoutAPathOpensTheOnlyService)
{
    FakeHost host({{QStringLiteral("getRows host:services"), OneService},
        {QStringLiteral("getRows Good:"), GoodScreen}});
    EXPECT_THAT(run(host.url(), words("ls")).out, testing::StartsWith("Good\n"));
}

TEST(ScreenCommandsTest, LsWithoutAPathListsTheServicesWhenThereAreMore)
{
    FakeHost host({{QStringLiteral("getRows host:services"),
        R"("result":{"rowsCount":2,"rows":[["A:"],["B:"]],"roles":{"title":"Services"}})"}});
    const Outcome outcome = run(host.url(), words("ls"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, testing::StartsWith("Services\n"));
}

TEST(ScreenCommandsTest, APlugInThatCouldNotBeLoadedIsNoService)
{
    FakeHost host({{QStringLiteral("getRows host:services"),
                       R"("result":{"rowsCount":2,"rows":[[null],["Good:"]],"roles":{}})"},
        {QStringLiteral("getRows Good:"), GoodScreen}});
    EXPECT_THAT(run(host.url(), words("ls")).out, testing::StartsWith("Good\n"));
    const Outcome found = run(host.url(), words("search x"));
    EXPECT_EQ(found.status, 1) << "this service offers none";
    EXPECT_EQ(host.timesAsked(QStringLiteral("getData Good:")), 1);
    host.setResult(QStringLiteral("getRows host:services"),
        R"("result":{"rowsCount":1,"rows":[[null]],"roles":{"title":"Services"}})");
    EXPECT_THAT(run(host.url(), words("ls")).out, testing::StartsWith("Services\n"));
    EXPECT_EQ(run(host.url(), words("search x")).status, 2);
}

QByteArray page(int first, int count, int rowsCount)
{
    QByteArrayList rows;
    for (int i = first; i < first + count; ++i)
        rows.append("[1,\"r" + QByteArray::number(i) + "\",null,null,null,null,null]");
    return "\"result\":{\"rowsCount\":" + QByteArray::number(rowsCount) + ",\"rows\":["
        + rows.join(',') + "],\"roles\":{\"title\":\"Long\"}}";
}

TEST(ScreenCommandsTest, LsFetchesLongScreensInParts)
{
    FakeHost host({{QStringLiteral("getRows a:b"), page(0, 100, 250)},
        {QStringLiteral("getRows a:b 100"), page(100, 100, 250)},
        {QStringLiteral("getRows a:b 200"), page(200, 50, 250)}});
    const Outcome outcome = run(host.url(), words("ls a:b"));
    EXPECT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), 251);
    EXPECT_THAT(outcome.out, testing::HasSubstr(" 249 > r249"));
    EXPECT_EQ(host.asked().size(), 3);
}

TEST(ScreenCommandsTest, LsShowsTheRangeThatIsAskedFor)
{
    FakeHost host({{QStringLiteral("getRows a:b 10"), page(10, 3, 250)}});
    EXPECT_EQ(run(host.url(), words("ls a:b --first 10 --limit 3")).out,
        "Long\n  10 > r10\n  11 > r11\n  12 > r12\n");
    EXPECT_EQ(host.lastParams().value(QStringLiteral("last")), 12);
}

TEST(ScreenCommandsTest, LsEndsWhereAHostPromisesRowsThatItDoesNotHave)
{
    FakeHost host({{QStringLiteral("getRows a:b"), page(0, 100, 1000000)},
        {QStringLiteral("getRows a:b 100"), page(100, 0, 1000000)}});
    EXPECT_EQ(run(host.url(), words("ls a:b")).status, 0);
    EXPECT_EQ(host.asked().size(), 2);
}

TEST(ScreenCommandsTest, LsAsJsonIsOneAnswerWithAllRows)
{
    FakeHost host({{QStringLiteral("getRows a:b"), page(0, 100, 101)},
        {QStringLiteral("getRows a:b 100"), page(100, 1, 101)}});
    const Outcome outcome = run(host.url(), words("--json ls a:b"));
    VeskError error;
    const QVariantHash whole
        = VeskJson::parse(QByteArray::fromStdString(outcome.out), error).toHash();
    EXPECT_EQ(whole.value(QStringLiteral("rows")).toList().size(), 101);
    EXPECT_EQ(whole.value(QStringLiteral("rowsCount")), 101);
}

const Results Searchable {
    {QStringLiteral("getRows host:services"), OneService},
    {QStringLiteral("getData Good:"), R"("result":{"values":[{"path":"Good:searches"}]})"},
    {QStringLiteral("getRows Good:searches"),
        R"("result":{"rowsCount":2,"roles":{},"rows":[[1,null,null],[5,"q","Good:found?m=1"]]})"},
    {QStringLiteral("getRows Good:found?m=1&q=miles%20d%26"), GoodScreen},
};

TEST(ScreenCommandsTest, SearchGoesWhereTheServiceSaysThatItSearches)
{
    FakeHost host(Searchable);
    const Outcome outcome = run(host.url(), {QStringLiteral("search"), QStringLiteral("miles d&")});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_THAT(outcome.out, testing::StartsWith("Good\n   0 > Music"));
}

TEST(ScreenCommandsTest, WhatIsFoundIsAPlaceToo)
{
    FakeHost host(Searchable);
    EXPECT_EQ(run(host.url(), {QStringLiteral("ls"), QStringLiteral("search:miles d&")}).out,
        run(host.url(), {QStringLiteral("search"), QStringLiteral("miles d&")}).out);
}

TEST(ScreenCommandsTest, SearchWantsToKnowWhereWhenThereAreMoreServices)
{
    FakeHost host({{QStringLiteral("getRows host:services"),
        R"("result":{"rowsCount":2,"rows":[["A:"],["B:"]],"roles":{}})"}});
    const Outcome outcome = run(host.url(), words("search x"));
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.errors, testing::HasSubstr("--in"));
}

TEST(ScreenCommandsTest, SearchTellsWhenAServiceHasNone)
{
    FakeHost noRole({{QStringLiteral("getData a:"), R"("result":{"values":[null]})"}});
    EXPECT_EQ(run(noRole.url(), words("search x --in a:")).status, 1);
    FakeHost noQuery({{QStringLiteral("getData a:"), R"("result":{"values":[{"path":"a:s"}]})"},
        {QStringLiteral("getRows a:s"),
            R"("result":{"rowsCount":1,"roles":{},"rows":[[1,null,null]]})"}});
    EXPECT_EQ(run(noQuery.url(), words("search x --in a:")).status, 1);
}

TEST(ScreenCommandsTest, GetPrintsPlainValues)
{
    FakeHost host({{QStringLiteral("getData a:b"),
        R"("result":{"values":[{"type":4,"string_":"text"},true,null]})"}});
    EXPECT_EQ(run(host.url(), words("get a:b x y z")).out, "text\ntrue\n\n");
    EXPECT_EQ(host.lastParams().value(QStringLiteral("roles")).toStringList(), words("x y z"));
    EXPECT_EQ(run(host.url(), words("get a:b --json")).out,
        "{\"values\":[{\"string_\":\"text\",\"type\":4},true,null]}\n");
}

TEST(ScreenCommandsTest, SetSendsTheValue)
{
    FakeHost host({{QStringLiteral("setData a:b"), R"("result":{"value":null})"}});
    const Outcome outcome = run(host.url(), words("set a:b true"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(host.lastParams().value(QStringLiteral("role")), QStringLiteral("value"));
    EXPECT_EQ(host.lastParams().value(QStringLiteral("value")), QStringLiteral("true"));
}

/// A service with folders in folders, and favorites under a name of its own.
void furnish(FakeHost &host)
{
    host.setScreen(QStringLiteral("host:services"), {row(1, "Good", "Good:")});
    host.setScreen(QStringLiteral("Good:"),
        {row(2, "Heading", ""), row(1, "Lieblinge", "Good:list?c=presets&x=1"),
            row(1, "Music", "Good:music")});
    host.setScreen(
        QStringLiteral("Good:music"), {row(3, "Hits", "a:1"), row(1, "Jazz", "Good:jazz")});
    host.setScreen(QStringLiteral("Good:jazz"), {row(3, "Blue", "a:2")});
    host.setScreen(QStringLiteral("Good:list?c=presets&x=1"), {row(1, "Folder", "Good:folder")});
    host.setScreen(QStringLiteral("Good:folder"), {row(3, "Mine", "a:3")});
}

TEST(ScreenCommandsTest, PlacesCountRowsFromTheFirstScreenOn)
{
    FakeHost host;
    furnish(host);
    EXPECT_EQ(run(host.url(), words("ls 2/1")).out, "   0 \u266a Blue  a:2\n");
    EXPECT_EQ(run(host.url(), words("ls /2/1/")).out, "   0 \u266a Blue  a:2\n");
    EXPECT_EQ(run(host.url(), words("ls /")).out, run(host.url(), words("ls")).out);
    EXPECT_EQ(run(host.url(), words("--in Good:music ls 1")).out, "   0 \u266a Blue  a:2\n");
    host.setResult(QStringLiteral("getData a:2"), R"("result":{"values":["it"]})");
    EXPECT_EQ(run(host.url(), words("get 2/1/0 title")).out, "it\n");
}

TEST(ScreenCommandsTest, APlaceThatIsNotThereIsAFailure)
{
    FakeHost host;
    furnish(host);
    const Outcome beyond = run(host.url(), words("ls 2/7"));
    EXPECT_EQ(beyond.status, 1);
    EXPECT_EQ(beyond.errors, "veskctl: there is no row 7\n");
    const Outcome heading = run(host.url(), words("ls 0/1"));
    EXPECT_EQ(heading.status, 1);
    EXPECT_EQ(heading.errors, "veskctl: row 0 leads nowhere\n");
    EXPECT_EQ(run(host.url(), words("set 0/1 x")).status, 1);
    EXPECT_EQ(host.timesAsked(QStringLiteral("setData")), 0);
}

TEST(ScreenCommandsTest, FavoritesAreFoundWhateverTheyAreCalled)
{
    FakeHost host;
    furnish(host);
    EXPECT_EQ(run(host.url(), words("favorites")).out, "   0 > Folder  Good:folder\n");
    EXPECT_EQ(run(host.url(), words("ls favorites/0")).out, "   0 \u266a Mine  a:3\n");
}

TEST(ScreenCommandsTest, AServiceWithoutFavoritesSaysSo)
{
    FakeHost host;
    host.setScreen(QStringLiteral("a:"), {row(1, "Music", "a:b?c=music")});
    const Outcome outcome = run(host.url(), words("favorites --in a:"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "veskctl: this service has no favorites\n");
}

TEST(ScreenCommandsTest, AnErrorOfThePlugInIsStatusOne)
{
    FakeHost host({{QStringLiteral("getRows a:b"),
        R"("error":{"code":-32000,"message":"No\u001b luck","data":{"name":"e:3","title":"Sorry"}})"}});
    const Outcome outcome = run(host.url(), words("ls a:b"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.errors, "veskctl: Sorry: No\ufffd luck\n");
    EXPECT_EQ(run(host.url(), words("get c:d")).errors, "veskctl: nothing there\n");
}

TEST(ScreenCommandsTest, ADeviceWithoutAccountIsNoFailure)
{
    FakeHost host({{QStringLiteral("getData a:account"),
        R"("error":{"code":-32000,"message":"No account","data":{"name":"err:7","title":"T"}})"}});
    const Outcome outcome = run(host.url(), words("get a:account"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "not linked\n");
    const Outcome json = run(host.url(), words("get a:account --json"));
    EXPECT_EQ(json.status, 0);
    EXPECT_EQ(json.out,
        "{\"code\":-32000,\"data\":{\"name\":\"err:7\",\"title\":\"T\"},\"message\":\"No "
        "account\"}\n");
    EXPECT_EQ(json.errors, "");
}

TEST(ScreenCommandsTest, WhatNeedsAnAccountFailsWithoutOne)
{
    const QByteArray unlinked
        = R"("error":{"code":-32000,"message":"No account","data":{"name":"err:7","title":"T"}})";
    FakeHost host(
        {{QStringLiteral("getRows a:b"), unlinked}, {QStringLiteral("setData a:b"), unlinked}});
    for (const char *command : {"ls a:b", "set a:b x", "--json ls a:b", "--json set a:b x"}) {
        const Outcome outcome = run(host.url(), words(command));
        EXPECT_EQ(outcome.status, 1) << command;
        EXPECT_EQ(outcome.out, "") << command;
        EXPECT_EQ(outcome.errors, "veskctl: T: No account\n") << command;
    }
}

TEST(ScreenCommandsTest, ControlCharactersNeverReachTheTerminal)
{
    FakeHost host({{QStringLiteral("getRows a:b"),
                       R"("result":{"rowsCount":1,"roles":{"title":"T\u001b]0;x\u0007"},
                          "rows":[[3,"a\u001b[2Jb\nc","\u009b1m\u202e","a:\u001bx",null,null,null]]})"},
        {QStringLiteral("getData a:b"), R"("result":{"values":["x\u001b[31m","y\u009b"]})"}});
    for (const char *command : {"ls a:b", "get a:b", "--json ls a:b", "--json get a:b"}) {
        const std::string out = run(host.url(), words(command)).out;
        EXPECT_FALSE(out.empty());
        for (const char *bad : {"\x1b", "\x07", "\xc2\x9b", "\xe2\x80\xae"})
            EXPECT_THAT(out, testing::Not(testing::HasSubstr(bad))) << command;
    }
}

TEST(ScreenCommandsTest, NobodyThereIsStatusThree)
{
    QString url;
    {
        const FakeHost gone;
        url = gone.url();
    }
    const Outcome outcome = run(url, words("ls"));
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.errors, testing::HasSubstr(url.toStdString()));
}

TEST(ScreenCommandsTest, SomebodyElseThereIsStatusThree)
{
    using End = ScriptedServer::End;
    const QList<ScriptedServer::Response> answers {
        {200, "<html>", {}, End::Complete, 0},
        {200, "{}", {}, End::Complete, 0},
        {200, "[]", {}, End::Complete, 0},
        {200, "", {}, End::Complete, 0},
        {404, R"({"jsonrpc":"2.0","id":1,"result":{}})", {}, End::Complete, 0},
        {302, "", {{"Location", "http://127.0.0.1:1/"}}, End::Complete, 0},
        {200, R"({"jsonrpc":"2.0","id":1,"result":{}})", {}, End::Truncate, 5},
        {200, {}, {}, End::ResetBeforeHead, 0},
        {200, "SSH-2.0-OpenSSH\r\n", {}, End::Raw, 0},
    };
    for (const ScriptedServer::Response &answer : answers) {
        ScriptedServer server([&](const ScriptedServer::Request &) { return answer; });
        const QString url = QStringLiteral("http://127.0.0.1:%1/").arg(server.port());
        EXPECT_EQ(run(url, words("ls")).status, 3) << answer.body.toStdString();
    }
}

} // namespace
