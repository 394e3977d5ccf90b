// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/VeskJson.h"
#include "ctl/RpcClient.h"
#include "tests/ctl/FakeHost.h"
#include "tests/support/ScriptedServer.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace {

using Results = FakeHost::Results;

const QByteArray OneService
    = R"("result":{"rowsCount":1,"rows":[["Good:"]],"roles":{"title":"Services"}})";

/// A result of getRows; values are type, title, description, path, query, queryPath, value and
/// container type.
const QByteArray GoodScreen = R"("result":{"rowsCount":2,"roles":{"title":"Good"},"rows":[
    [1,"Music",null,"Good:music",null,null,null,null],
    [3,"Jazz","Now","Good:jazz?id=1&x=2",null,null,null,null]]})";

/// Runs a command on a terminal of 80 columns.
Outcome runOnTerminal(
    const QString &url, const QStringList &arguments, const QString &memory = QString())
{
    return run(url, arguments, {{}, 80, memory, QStringLiteral("1"), {}});
}

TEST(ScreenCommandsTest, LsShowsAScreen)
{
    FakeHost host({{QStringLiteral("getRows Good:x"), GoodScreen}});
    const Outcome shown = runOnTerminal(host.url(), words("ls Good:x"));
    EXPECT_EQ(shown.status, 0) << shown.errors;
    EXPECT_EQ(shown.out, "Good\n   0 > Music\n   1 \u266a Jazz  Now\n");
    EXPECT_EQ(run(host.url(), words("ls Good:x")).out,
        "Good:x#0\tfolder\tMusic\t\t\nGood:x#1\taudio\tJazz\tNow\t\n");
}

TEST(ScreenCommandsTest, LsShowsPathsWhenAskedFor)
{
    FakeHost host({{QStringLiteral("getRows Good:x"), GoodScreen}});
    EXPECT_EQ(runOnTerminal(host.url(), words("ls -l Good:x")).out,
        "Good\n   0 > Music\n       Good:music\n   1 \u266a Jazz  Now\n"
        "       'Good:jazz?id=1&x=2'\n");
    EXPECT_EQ(run(host.url(), words("ls Good:x -l")).out,
        "Good:x#0\tfolder\tMusic\t\t\tGood:music\n"
        "Good:x#1\taudio\tJazz\tNow\t\tGood:jazz?id=1&x=2\n");
}

TEST(ScreenCommandsTest, LsLeavesOutRowsWithoutRoles)
{
    FakeHost host({{QStringLiteral("getRows Good:x"), R"("result":{"rowsCount":3,"roles":{},"rows":[
        [null,null,null,null,null,null,null,null],[3,"Jazz",null,"a:1",null,null,null,null],
        [null,null,null,null,null,null,null,null]]})"}});
    EXPECT_EQ(runOnTerminal(host.url(), words("ls Good:x")).out, "   1 \u266a Jazz\n");
    EXPECT_EQ(run(host.url(), words("ls Good:x")).out, "Good:x#1\taudio\tJazz\t\t\n");
}

TEST(ScreenCommandsTest, LsSaysThatAListIsEmpty)
{
    FakeHost host;
    host.setScreen(QStringLiteral("a:b"), {});
    EXPECT_EQ(runOnTerminal(host.url(), words("ls a:b")).out, "There is nothing here.\n");
    EXPECT_EQ(run(host.url(), words("ls a:b")).out, "");
}

TEST(ScreenCommandsTest, LsFailsWhenAListComesWithAProblem)
{
    FakeHost host({{QStringLiteral("getRows a:b"),
        R"("result":{"rowsCount":0,"rows":[],"roles":{"title":"T"},"problem":"It is down."})"}});
    for (const char *command : {"ls a:b", "play a:b", "ls a:b#0"}) {
        const Outcome outcome = runOnTerminal(host.url(), words(command));
        EXPECT_EQ(outcome.status, 1) << command;
        EXPECT_EQ(outcome.out, "") << command;
        EXPECT_EQ(outcome.errors, "veskctl: It is down.\n") << command;
    }
    const Outcome json = run(host.url(), words("--json ls a:b"));
    EXPECT_EQ(json.status, 1);
    EXPECT_EQ(json.errors, "");
    EXPECT_EQ(json.out,
        R"({"error":{"message":"It is down.","problem":"It is down."}})"
        "\n");
}

TEST(ScreenCommandsTest, PrintsTheProblemInPlaceOfTheError)
{
    FakeHost host({{QStringLiteral("getRows a:b"),
        R"("error":{"code":-32000,"message":"Invalid.","data":{"name":"n","title":"Error","problem":"It is down."}})"}});
    const Outcome outcome = run(host.url(), words("ls a:b"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "veskctl: It is down.\n");
    EXPECT_THAT(run(host.url(), words("--json ls a:b")).out,
        testing::AllOf(testing::HasSubstr(R"("message":"Invalid.")"),
            testing::HasSubstr(R"("problem":"It is down.")")));
}

TEST(ScreenCommandsTest, LsWithoutAPathOpensTheOnlyService)
{
    FakeHost host({{QStringLiteral("getRows host:services"), OneService},
        {QStringLiteral("getRows Good:"), GoodScreen}});
    EXPECT_THAT(runOnTerminal(host.url(), words("ls")).out, testing::StartsWith("Good\n"));
    EXPECT_THAT(run(host.url(), words("ls")).out, testing::StartsWith("/0\tfolder\tMusic"));
}

TEST(ScreenCommandsTest, LsWithoutAPathListsTheServicesWhenThereAreMore)
{
    FakeHost host({{QStringLiteral("getRows host:services"),
        R"("result":{"rowsCount":2,"rows":[["A:"],["B:"]],"roles":{"title":"Services"}})"}});
    const Outcome outcome = runOnTerminal(host.url(), words("ls"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, testing::StartsWith("Services\n"));
}

TEST(ScreenCommandsTest, LsIgnoresPlugInsThatWereNotLoaded)
{
    FakeHost host({{QStringLiteral("getRows host:services"),
                       R"("result":{"rowsCount":2,"rows":[[null],["Good:"]],"roles":{}})"},
        {QStringLiteral("getRows Good:"), GoodScreen}});
    EXPECT_THAT(runOnTerminal(host.url(), words("ls")).out, testing::StartsWith("Good\n"));
    EXPECT_EQ(
        run(host.url(), words("search x")).errors, "veskctl: this service offers no search\n");
    host.setResult(QStringLiteral("getRows host:services"),
        R"("result":{"rowsCount":1,"rows":[[null]],"roles":{"title":"Services"}})");
    EXPECT_THAT(runOnTerminal(host.url(), words("ls")).out, testing::StartsWith("Services\n"));
    EXPECT_EQ(run(host.url(), words("search x")).status, 1);
}

QByteArray page(int first, int count, int rowsCount)
{
    QByteArrayList rows;
    for (int i = first; i < first + count; ++i)
        rows.append("[1,\"r" + QByteArray::number(i) + "\",null,null,null,null,null,null]");
    return "\"result\":{\"rowsCount\":" + QByteArray::number(rowsCount) + ",\"rows\":["
        + rows.join(',') + "],\"roles\":{\"title\":\"Long\"}}";
}

TEST(ScreenCommandsTest, LsFetchesLongScreensInParts)
{
    FakeHost host({{QStringLiteral("getRows a:b"), page(0, 100, 250)},
        {QStringLiteral("getRows a:b 100"), page(100, 100, 250)},
        {QStringLiteral("getRows a:b 200"), page(200, 50, 250)}});
    const Outcome outcome = runOnTerminal(host.url(), words("ls a:b"));
    EXPECT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), 251);
    EXPECT_THAT(outcome.out, testing::HasSubstr(" 249 > r249"));
    EXPECT_EQ(host.asked(),
        (QStringList {QStringLiteral("player.state"), QStringLiteral("getRows a:b"),
            QStringLiteral("getRows a:b 100"), QStringLiteral("getRows a:b 200")}));
    EXPECT_EQ(host.connections(), 1) << "the host keeps the list for its connection";
}

TEST(ScreenCommandsTest, LsShowsARange)
{
    FakeHost host({{QStringLiteral("getRows a:b 10"), page(10, 3, 250)}});
    EXPECT_EQ(runOnTerminal(host.url(), words("ls a:b --first 10 --limit 3")).out,
        "Long\n  10 > r10\n  11 > r11\n  12 > r12\n");
    EXPECT_EQ(host.lastParams().value(QStringLiteral("last")), 12);
}

TEST(ScreenCommandsTest, LsEndsWhenAHostSendsFewerRowsThanItsCount)
{
    FakeHost host({{QStringLiteral("getRows a:b"), page(0, 100, 1000000)},
        {QStringLiteral("getRows a:b 100"), page(100, 0, 1000000)}});
    EXPECT_EQ(run(host.url(), words("ls a:b")).status, 0);
    EXPECT_EQ(host.asked().size(), 3);
}

QVariantHash parsed(const std::string &json)
{
    VeskError error;
    const QVariant value = VeskJson::parse(QByteArray::fromStdString(json), error);
    EXPECT_TRUE(error.isEmpty()) << json;
    return value.toHash();
}

TEST(ScreenCommandsTest, LsAsJsonPrintsAllRowsWithNamedRoles)
{
    FakeHost host;
    QList<VeskRoles> rows {row(2, "Heading", "")};
    for (int i = 1; i < 101; ++i)
        rows.append(row(3, "Station", "a:x?id=" + QByteArray::number(i)));
    host.setScreen(QStringLiteral("a:b"), rows);
    host.setResult(QStringLiteral("player.state"), R"("result":{"state":3,"path":"a:x?id=100"})");
    const QVariantHash list = parsed(run(host.url(), words("--json ls a:b")).out);
    EXPECT_EQ(list.value(QStringLiteral("rowsCount")), 101);
    EXPECT_EQ(list.value(QStringLiteral("path")), QStringLiteral("a:b"));
    const QVariantList named = list.value(QStringLiteral("rows")).toList();
    ASSERT_EQ(named.size(), 101);
    const QVariantHash last = named.last().toHash();
    EXPECT_EQ(last.value(QStringLiteral("row")), 100);
    EXPECT_EQ(last.value(QStringLiteral("place")), QStringLiteral("a:b#100"));
    EXPECT_EQ(last.value(QStringLiteral("title")), QStringLiteral("Station"));
    EXPECT_EQ(last.value(QStringLiteral("type")), 3);
    EXPECT_EQ(last.value(QStringLiteral("player")), QStringLiteral("paused"));
    EXPECT_FALSE(last.contains(QStringLiteral("icon"))) << "the row has none";
    EXPECT_FALSE(named.first().toHash().contains(QStringLiteral("player")));
}

TEST(ScreenCommandsTest, PrintsErrorsAsJson)
{
    FakeHost host({{QStringLiteral("getRows a:b"),
        R"("error":{"code":-32000,"message":"No","data":{"name":"e:3","title":"Sorry"}})"}});
    const Outcome refused = run(host.url(), words("--json ls a:b"));
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.errors, "");
    EXPECT_EQ(refused.out,
        "{\"error\":{\"code\":-32000,\"message\":\"No\",\"name\":\"e:3\",\"title\":\"Sorry\"}}\n");
    const Outcome own = run(host.url(), words("--json ls nonsense"));
    EXPECT_EQ(own.status, 2);
    EXPECT_THAT(parsed(own.out)
                    .value(QStringLiteral("error"))
                    .toHash()
                    .value(QStringLiteral("message"))
                    .toString()
                    .toStdString(),
        testing::HasSubstr("\"nonsense\" is no place"));
    const Outcome nobody = run(QStringLiteral("http://127.0.0.1:1/"), words("--json ls"));
    EXPECT_EQ(nobody.status, 3);
    EXPECT_EQ(nobody.errors, "");
    EXPECT_TRUE(parsed(nobody.out).contains(QStringLiteral("error")));
}

TEST(ScreenCommandsTest, BadUsageCallsNoHost)
{
    FakeHost host;
    for (const char *line : {"ls a:b c:d", "ls nopath", "ls a:%zz", "ls --first 5 --last 4",
             "get nopath", "ls 1/x", "ls 1/-2", "ls +1", "ls 99999999999",
             "ls search:", "menu nopath", "favorite add nopath", "streams x"}) {
        const Outcome outcome = run(host.url(), words(line));
        EXPECT_EQ(outcome.status, 2) << line;
        EXPECT_NE(outcome.errors, "") << line;
    }
    EXPECT_TRUE(host.asked().isEmpty());
}

const Results Searchable {
    {QStringLiteral("getRows host:services"),
        R"("result":{"rowsCount":2,"roles":{},"rows":[["Good:","good",{"path":"Good:searches"}],
            ["Other:","other",null]]})"},
    {QStringLiteral("getRows Good:searches"),
        R"("result":{"rowsCount":2,"roles":{},"rows":[[1,null,null],[5,"q","Good:found?m=1"]]})"},
    {QStringLiteral("getRows Good:found?m=1&q=miles%20d%26"), GoodScreen},
};

TEST(ScreenCommandsTest, SearchUsesTheServicesQueryPath)
{
    FakeHost host(Searchable);
    const Outcome outcome
        = runOnTerminal(host.url(), {QStringLiteral("search"), QStringLiteral("miles d&")});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_THAT(outcome.out, testing::StartsWith("Good\n   0 > Music"));
    EXPECT_THAT(run(host.url(), words("search miles d&")).out,
        testing::StartsWith("search:miles d&/0\tfolder\tMusic"))
        << "words need no quotes";
}

TEST(ScreenCommandsTest, LsShowsTheHitsOfASearch)
{
    FakeHost host(Searchable);
    EXPECT_EQ(run(host.url(), {QStringLiteral("ls"), QStringLiteral("search:miles d&")}).out,
        run(host.url(), {QStringLiteral("search"), QStringLiteral("miles d&")}).out);
}

TEST(ScreenCommandsTest, SearchFailsWhenTheServiceHasNone)
{
    FakeHost host;
    host.setScreen(QStringLiteral("host:services"),
        {serviceRow("a", "A"), withRole(serviceRow("b", "B"), "search", "B:searches")});
    host.setScreen(QStringLiteral("B:searches"), {row(1, "No query", "B:x")});
    for (const char *line : {"search x --in a", "search x --in A:", "search x --in b"}) {
        const Outcome outcome = run(host.url(), words(line));
        EXPECT_EQ(outcome.status, 1) << line;
        EXPECT_EQ(outcome.errors, "veskctl: this service offers no search\n") << line;
    }
    const Outcome unknown = run(host.url(), words("search x --in c"));
    EXPECT_EQ(unknown.status, 2);
    EXPECT_EQ(unknown.errors, "veskctl: there is no service \"c\"; there are: a, b\n");
}

TEST(ScreenCommandsTest, GetPrintsPlainValues)
{
    FakeHost host({{QStringLiteral("getData a:b"),
        R"("result":{"values":[{"type":4,"string_":"text"},true,null]})"}});
    EXPECT_EQ(run(host.url(), words("get a:b x y z")).out, "text\ntrue\n\n");
    EXPECT_EQ(host.lastParams().value(QStringLiteral("roles")).toStringList(), words("x y z"));
    EXPECT_EQ(run(host.url(), words("get a:b x y z --json")).out,
        "{\"x\":{\"string_\":\"text\",\"type\":4},\"y\":true,\"z\":null}\n");
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

/// Sets up a service with nested folders, and favorites under a title in its own language.
void furnish(FakeHost &host)
{
    host.setScreen(QStringLiteral("host:services"),
        {withRole(serviceRow("good", "Good"), "favorites", "Good:kept?x=1")});
    host.setScreen(QStringLiteral("Good:"),
        {row(2, "Heading", ""), row(1, "Lieblinge", "Good:kept?x=1"),
            row(1, "Music", "Good:music")});
    host.setScreen(
        QStringLiteral("Good:music"), {row(3, "Hits", "a:1"), row(1, "Jazz", "Good:jazz")});
    host.setScreen(QStringLiteral("Good:jazz"), {row(3, "Blue", "a:2")});
    host.setScreen(QStringLiteral("Good:kept?x=1"), {row(1, "Folder", "Good:folder")});
    host.setScreen(QStringLiteral("Good:folder"), {row(3, "Mine", "a:3")});
}

TEST(ScreenCommandsTest, NumbersCountFromTheFirstScreenForPrograms)
{
    FakeHost host;
    furnish(host);
    EXPECT_EQ(run(host.url(), words("ls 2/1")).out, "/2/1/0\taudio\tBlue\t\t\n");
    EXPECT_EQ(run(host.url(), words("ls /2/1/")).out, "/2/1/0\taudio\tBlue\t\t\n");
    EXPECT_EQ(run(host.url(), words("ls 2 1")).out, "/2/1/0\taudio\tBlue\t\t\n");
    EXPECT_EQ(run(host.url(), words("ls /")).out, run(host.url(), words("ls")).out);
    EXPECT_EQ(run(host.url(), words("--in Good:music ls 1")).out, "/1/0\taudio\tBlue\t\t\n");
    host.setResult(QStringLiteral("getData a:2"), R"("result":{"values":["it"]})");
    EXPECT_EQ(run(host.url(), words("get 2/1/0 title")).out, "it\n");
}

TEST(ScreenCommandsTest, NumbersCountFromTheLastListOnATerminal)
{
    const QTemporaryDir memory;
    FakeHost host;
    furnish(host);
    const auto ls = [&](const char *line) {
        return runOnTerminal(host.url(), words(line), memory.path()).out;
    };
    EXPECT_EQ(ls("ls 2"), "   0 \u266a Hits\n   1 > Jazz\n");
    EXPECT_EQ(ls("ls 1"), "   0 \u266a Blue\n");
    EXPECT_EQ(ls("ls 0"), "   0 \u266a Blue\n") << "a row by itself";
    EXPECT_EQ(ls("ls /2/0"), "   0 \u266a Hits\n");
    EXPECT_EQ(ls("ls /"), "   0 # Heading\n   1 > Lieblinge\n   2 > Music\n");
    EXPECT_EQ(ls("ls 2/1"), "   0 \u266a Blue\n");
    EXPECT_EQ(ls("--in Good:music ls 1"), "   0 \u266a Blue\n");
}

TEST(ScreenCommandsTest, ANumberMeansTheRowThatWasShownEvenIfItHasMoved)
{
    const QTemporaryDir memory;
    FakeHost host;
    furnish(host);
    const auto ls
        = [&](const char *line) { return runOnTerminal(host.url(), words(line), memory.path()); };
    ls("ls Good:music");
    host.setScreen(QStringLiteral("Good:music"),
        {row(1, "New", "Good:new"), row(3, "Hits", "a:1"), row(1, "Jazz", "Good:jazz")});
    EXPECT_EQ(ls("ls 0").out, "   1 \u266a Hits\n");
    ls("ls Good:music");
    host.setScreen(QStringLiteral("Good:music"), {row(1, "New", "Good:new")});
    EXPECT_EQ(ls("ls 2").out, "   0 \u266a Blue\n") << "it was shown as a list";
    host.setScreen(QStringLiteral("Good:music"), {row(3, "Hits", "a:1")});
    ls("ls Good:music");
    host.setScreen(QStringLiteral("Good:music"), {row(1, "New", "Good:new")});
    const Outcome gone = ls("ls 0");
    EXPECT_EQ(gone.status, 1);
    EXPECT_EQ(gone.errors,
        "veskctl: This entry is no longer in the list.\nveskctl: This is the list now:\n");
    EXPECT_EQ(gone.out, "   0 > New\n");
}

TEST(ScreenCommandsTest, PathsAndIdsOfShownRowsArePlaces)
{
    const QTemporaryDir memory;
    FakeHost host;
    furnish(host);
    host.setScreen(QStringLiteral("Good:jazz"), {row(3, "Blue", "a:x?id=s2")});
    run(host.url(), words("ls Good:jazz"), {{}, 0, memory.path(), {}, {}});
    const auto ls = [&](const char *line) {
        return run(host.url(), words(line), {{}, 0, memory.path(), {}, {}});
    };
    EXPECT_EQ(ls("ls a:x?id=s2").out, "Good:jazz#0\taudio\tBlue\t\t\n");
    EXPECT_EQ(ls("ls s2").out, "Good:jazz#0\taudio\tBlue\t\t\n");
    const Outcome unknown = ls("ls s3");
    EXPECT_EQ(unknown.status, 1);
    EXPECT_THAT(unknown.errors, testing::HasSubstr("no row with \"s3\" was shown lately"));
}

TEST(ScreenCommandsTest, LsFailsForAPlaceThatDoesNotExist)
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
    EXPECT_EQ(run(host.url(), words("set 0 x")).status, 1);
    EXPECT_EQ(host.timesAsked(QStringLiteral("setData")), 0);
}

TEST(ScreenCommandsTest, FavoritesAreFoundByTheirRole)
{
    FakeHost host;
    furnish(host);
    EXPECT_EQ(run(host.url(), words("favorites")).out, "favorites/0\tfolder\tFolder\t\t\n");
    EXPECT_EQ(run(host.url(), words("ls favorites/0")).out, "favorites/0/0\taudio\tMine\t\t\n");
}

TEST(ScreenCommandsTest, NotesThatAServiceIsSlow)
{
    FakeHost host;
    furnish(host);
    host.setDelay(QStringLiteral("getRows Good:"), RpcClient::SlowMs + 200);
    host.setDelay(QStringLiteral("player.state"), 100);
    const Outcome outcome = run(host.url(), words("ls"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "veskctl: The service is slow; waiting for its answer.\n");
    EXPECT_EQ(run(host.url(), words("ls Good:jazz")).errors, "");
}

TEST(ScreenCommandsTest, PrintsTheHostsMessageForWhatWasNotOffered)
{
    FakeHost host({{QStringLiteral("getRows a:b"),
        R"("error":{"code":-32005,"message":"This address changes something.","data":{"name":"notOffered","title":"T"}})"}});
    const Outcome outcome = run(host.url(), words("ls a:b"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "veskctl: This address changes something.\n");
}

TEST(ScreenCommandsTest, PrintsInTheHostsLanguage)
{
    FakeHost host;
    furnish(host);
    host.setResult(QStringLiteral("getData settings:ui/language"),
        R"("result":{"values":[{"type":4,"string_":"de-DE"}]})");
    host.setResult(QStringLiteral("player.state"), R"("result":{"state":2})");
    const Surroundings german {{}, 80, {}, {}, {QStringLiteral(CATALOGUES)}};
    EXPECT_EQ(run(host.url(), words("ls 2/7"), german).errors, "veskctl: es gibt keine Zeile 7\n");
    EXPECT_EQ(run(host.url(), words("status"), german).out, "l\u00e4uft\n");
}

TEST(ScreenCommandsTest, FavoritesFailsWhenTheServiceHasNone)
{
    FakeHost host;
    host.setScreen(QStringLiteral("host:services"), {serviceRow("a", "A")});
    const Outcome outcome = run(host.url(), words("favorites --in a"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "veskctl: this service has no favorites\n");
}

TEST(ScreenCommandsTest, APlugInsErrorEndsWithStatusOne)
{
    FakeHost host({{QStringLiteral("getRows a:b"),
        R"("error":{"code":-32000,"message":"No\u001b luck","data":{"name":"e:3","title":"Sorry"}})"}});
    const Outcome outcome = run(host.url(), words("ls a:b"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.errors, "veskctl: Sorry: No\ufffd luck\n");
    EXPECT_EQ(run(host.url(), words("get c:d")).errors, "veskctl: nothing there\n");
}

TEST(ScreenCommandsTest, GetOfAMissingAccountIsNoFailure)
{
    FakeHost host({{QStringLiteral("getData a:account"),
        R"("error":{"code":-32000,"message":"No account","data":{"name":"err:7","title":"T"}})"}});
    const Outcome outcome = run(host.url(), words("get a:account"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "not linked\n");
    const Outcome json = run(host.url(), words("get a:account --json"));
    EXPECT_EQ(json.status, 0);
    EXPECT_EQ(json.out, "{\"linked\":false}\n");
    EXPECT_EQ(json.errors, "");
}

TEST(ScreenCommandsTest, LsAndSetFailWithoutAnAccount)
{
    const QByteArray unlinked
        = R"("error":{"code":-32000,"message":"No account","data":{"name":"err:7","title":"T"}})";
    FakeHost host(
        {{QStringLiteral("getRows a:b"), unlinked}, {QStringLiteral("setData a:b"), unlinked}});
    for (const char *command : {"ls a:b", "set a:b x"}) {
        const Outcome outcome = run(host.url(), words(command));
        EXPECT_EQ(outcome.status, 1) << command;
        EXPECT_EQ(outcome.out, "") << command;
        EXPECT_EQ(outcome.errors, "veskctl: T: No account\n") << command;
    }
}

TEST(ScreenCommandsTest, PrintsNoControlCharacters)
{
    FakeHost host({{QStringLiteral("getRows a:b"),
                       R"("result":{"rowsCount":1,"roles":{"title":"T\u001b]0;x\u0007"},
                          "rows":[[3,"a\u001b[2Jb\nc","\u009b1m\u202e","a:\u001bx",null,null,null,null]]})"},
        {QStringLiteral("getData a:b"), R"("result":{"values":["x\u001b[31m","y\u009b"]})"}});
    for (const char *command : {"ls a:b", "get a:b", "--json ls a:b", "--json get a:b"}) {
        const std::string out = run(host.url(), words(command)).out;
        EXPECT_FALSE(out.empty());
        for (const char *bad : {"\x1b", "\x07", "\xc2\x9b", "\xe2\x80\xae"})
            EXPECT_THAT(out, testing::Not(testing::HasSubstr(bad))) << command;
    }
}

TEST(ScreenCommandsTest, EndsWithStatusThreeWithoutAHost)
{
    QString url;
    {
        const FakeHost gone;
        url = gone.url();
    }
    const Outcome outcome = run(url, words("ls"));
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.errors, testing::HasSubstr(url.toStdString()));
    EXPECT_THAT(outcome.errors, testing::HasSubstr("Start one with \"vesk-host\""));
    EXPECT_THAT(outcome.errors, testing::HasSubstr("VESK_HOST"));
}

TEST(ScreenCommandsTest, EndsWithStatusThreeWhenTheServerIsNoHost)
{
    using End = ScriptedServer::End;
    const QList<ScriptedServer::Response> answers {
        {200, "<html>", {}, End::Complete, 0},
        {200, "{}", {}, End::Complete, 0},
        {200, "[]", {}, End::Complete, 0},
        {200, "", {}, End::Complete, 0},
        {101, "", {}, End::Complete, 0},
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
