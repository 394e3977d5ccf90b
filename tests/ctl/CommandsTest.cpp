#include "ctl/Commands.h"

#include "api/web/VeskJson.h"
#include "tests/support/ScriptedServer.h"

#include <gmock/gmock.h>

#include <mutex>
#include <sstream>

namespace {

using Results = QHash<QString, QByteArray>;

/// A host of which only the answers are there: "method path" and, for rows, "first" name them.
class FakeHost {
public:
    explicit FakeHost(const Results &results)
        : m_results(results)
        , m_server([this](const ScriptedServer::Request &request) { return answer(request); })
    {
    }

    QString url() const { return QStringLiteral("http://127.0.0.1:%1/").arg(m_server.port()); }

    /// What was asked, in the form of the answers' names.
    QStringList asked() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_asked;
    }
    QVariantHash lastParams() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_lastParams;
    }

private:
    ScriptedServer::Response answer(const ScriptedServer::Request &request)
    {
        VeskError error;
        const QVariantHash call = VeskJson::parse(request.body, error).toHash();
        const QVariantHash params = call.value(QStringLiteral("params")).toHash();
        QString name = call.value(QStringLiteral("method")).toString() + QLatin1Char(' ')
            + params.value(QStringLiteral("path")).toString();
        if (params.value(QStringLiteral("first")).toInt() > 0)
            name += QLatin1Char(' ') + params.value(QStringLiteral("first")).toString();
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_asked.append(name);
        m_lastParams = params;
        const QByteArray good = "{\"jsonrpc\":\"2.0\",\"id\":1,";
        if (request.method != "POST" || request.target != "/jsonrpc"
            || request.header("Content-Type") != "application/json")
            return {400, "bad request", {}, ScriptedServer::End::Complete, 0};
        return {200,
            good
                + m_results.value(name, "\"error\":{\"code\":-32001,\"message\":\"nothing there\"}")
                + "}",
            {}, ScriptedServer::End::Complete, 0};
    }

    const Results m_results;
    mutable std::mutex m_mutex;
    /// Guarded by m_mutex.
    QStringList m_asked;
    QVariantHash m_lastParams;
    ScriptedServer m_server;
};

struct Outcome {
    int status;
    std::string out;
    std::string errors;
};

Outcome run(const QString &url, const QStringList &arguments)
{
    const CtlCommandLine line = parseCtlCommandLine(arguments, url);
    EXPECT_TRUE(line.run) << line.text.toStdString();
    std::ostringstream out;
    std::ostringstream errors;
    Commands commands(line.options, false, out, errors);
    const auto status = static_cast<int>(commands.run());
    return {status, out.str(), errors.str()};
}

QStringList words(const char *text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '));
}

const QByteArray OneService
    = R"("result":{"rowsCount":1,"rows":[["Good:"]],"roles":{"title":"Services"}})";

/// The rows of ls: type, title, description, path, query, queryPath, value.
const QByteArray GoodScreen = R"("result":{"rowsCount":2,"roles":{"title":"Good"},"rows":[
    [1,"Music",null,"Good:music",null,null,null],
    [3,"Jazz","Now","Good:jazz?id=1&x=2",null,null,null]]})";

TEST(CommandsTest, LsShowsAScreen)
{
    FakeHost host({{QStringLiteral("getRows Good:x"), GoodScreen}});
    const Outcome outcome = run(host.url(), words("ls Good:x"));
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.out,
        "Good\n   0 > Music  Good:music\n   1 \u266a Jazz  Now  'Good:jazz?id=1&x=2'\n");
}

TEST(CommandsTest, LsWithoutAPathOpensTheOnlyService)
{
    FakeHost host({{QStringLiteral("getRows host:services"), OneService},
        {QStringLiteral("getRows Good:"), GoodScreen}});
    EXPECT_THAT(run(host.url(), words("ls")).out, testing::StartsWith("Good\n"));
}

TEST(CommandsTest, LsWithoutAPathListsTheServicesWhenThereAreMore)
{
    FakeHost host({{QStringLiteral("getRows host:services"),
        R"("result":{"rowsCount":2,"rows":[["A:"],["B:"]],"roles":{"title":"Services"}})"}});
    const Outcome outcome = run(host.url(), words("ls"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, testing::StartsWith("Services\n"));
}

QByteArray page(int first, int count, int rowsCount)
{
    QByteArrayList rows;
    for (int i = first; i < first + count; ++i)
        rows.append("[1,\"r" + QByteArray::number(i) + "\",null,null,null,null,null]");
    return "\"result\":{\"rowsCount\":" + QByteArray::number(rowsCount) + ",\"rows\":["
        + rows.join(',') + "],\"roles\":{\"title\":\"Long\"}}";
}

TEST(CommandsTest, LsFetchesLongScreensInParts)
{
    FakeHost host({{QStringLiteral("getRows a:b"), page(0, 100, 250)},
        {QStringLiteral("getRows a:b 100"), page(100, 100, 250)},
        {QStringLiteral("getRows a:b 200"), page(200, 50, 250)}});
    const Outcome outcome = run(host.url(), words("ls a:b"));
    EXPECT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), 251);
    EXPECT_THAT(outcome.out, testing::HasSubstr(" 249 > r249"));
    EXPECT_EQ(host.asked().size(), 3);
}

TEST(CommandsTest, LsShowsTheRangeThatIsAskedFor)
{
    FakeHost host({{QStringLiteral("getRows a:b 10"), page(10, 3, 250)}});
    EXPECT_EQ(run(host.url(), words("ls a:b --first 10 --limit 3")).out,
        "Long\n  10 > r10\n  11 > r11\n  12 > r12\n");
    EXPECT_EQ(host.lastParams().value(QStringLiteral("last")), 12);
}

TEST(CommandsTest, LsEndsWhereAHostPromisesRowsThatItDoesNotHave)
{
    FakeHost host({{QStringLiteral("getRows a:b"), page(0, 100, 1000000)},
        {QStringLiteral("getRows a:b 100"), page(100, 0, 1000000)}});
    EXPECT_EQ(run(host.url(), words("ls a:b")).status, 0);
    EXPECT_EQ(host.asked().size(), 2);
}

TEST(CommandsTest, LsAsJsonIsOneAnswerWithAllRows)
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

TEST(CommandsTest, SearchGoesWhereTheServiceSaysThatItSearches)
{
    FakeHost host(Searchable);
    const Outcome outcome = run(host.url(), {QStringLiteral("search"), QStringLiteral("miles d&")});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_THAT(outcome.out, testing::StartsWith("Good\n   0 > Music"));
}

TEST(CommandsTest, SearchWantsToKnowWhereWhenThereAreMoreServices)
{
    FakeHost host({{QStringLiteral("getRows host:services"),
        R"("result":{"rowsCount":2,"rows":[["A:"],["B:"]],"roles":{}})"}});
    const Outcome outcome = run(host.url(), words("search x"));
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.errors, testing::HasSubstr("--in"));
}

TEST(CommandsTest, SearchTellsWhenAServiceHasNone)
{
    FakeHost noRole({{QStringLiteral("getData a:"), R"("result":{"values":[null]})"}});
    EXPECT_EQ(run(noRole.url(), words("search x --in a:")).status, 1);
    FakeHost noQuery({{QStringLiteral("getData a:"), R"("result":{"values":[{"path":"a:s"}]})"},
        {QStringLiteral("getRows a:s"),
            R"("result":{"rowsCount":1,"roles":{},"rows":[[1,null,null]]})"}});
    EXPECT_EQ(run(noQuery.url(), words("search x --in a:")).status, 1);
}

TEST(CommandsTest, GetPrintsPlainValues)
{
    FakeHost host({{QStringLiteral("getData a:b"),
        R"("result":{"values":[{"type":4,"string_":"text"},true,null]})"}});
    EXPECT_EQ(run(host.url(), words("get a:b x y z")).out, "text\ntrue\n\n");
    EXPECT_EQ(host.lastParams().value(QStringLiteral("roles")).toStringList(), words("x y z"));
    EXPECT_EQ(run(host.url(), words("get a:b --json")).out,
        "{\"values\":[{\"string_\":\"text\",\"type\":4},true,null]}\n");
}

TEST(CommandsTest, SetSendsTheValue)
{
    FakeHost host({{QStringLiteral("setData a:b"), R"("result":{"value":null})"}});
    const Outcome outcome = run(host.url(), words("set a:b true"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(host.lastParams().value(QStringLiteral("role")), QStringLiteral("value"));
    EXPECT_EQ(host.lastParams().value(QStringLiteral("value")), QStringLiteral("true"));
}

TEST(CommandsTest, AnErrorOfThePlugInIsStatusOne)
{
    FakeHost host({{QStringLiteral("getRows a:b"),
        R"("error":{"code":-32000,"message":"No\u001b luck","data":{"name":"e:3","title":"Sorry"}})"}});
    const Outcome outcome = run(host.url(), words("ls a:b"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.errors, "veskctl: Sorry: No\ufffd luck\n");
    EXPECT_EQ(run(host.url(), words("get c:d")).errors, "veskctl: nothing there\n");
}

TEST(CommandsTest, ADeviceWithoutAccountIsNoFailure)
{
    FakeHost host({{QStringLiteral("getData a:account"),
        R"("error":{"code":-32000,"message":"No account","data":{"name":"err:7","title":"T"}})"}});
    const Outcome outcome = run(host.url(), words("get a:account"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "not linked\n");
    EXPECT_EQ(run(host.url(), words("get a:account --json")).status, 1);
}

TEST(CommandsTest, ControlCharactersNeverReachTheTerminal)
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

TEST(CommandsTest, NobodyThereIsStatusThree)
{
    QString url;
    {
        const FakeHost gone({});
        url = gone.url();
    }
    const Outcome outcome = run(url, words("ls"));
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.errors, testing::HasSubstr(url.toStdString()));
}

TEST(CommandsTest, SomebodyElseThereIsStatusThree)
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
