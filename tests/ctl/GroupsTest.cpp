// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/Groups.h"
#include "ctl/RpcClient.h"
#include "tests/ctl/FakeHost.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;
using testing::Not;

VeskRoles queryRow(const char *path)
{
    VeskRoles query = row(5, "Search", "");
    query.insert(VeskRoles::Query(), QStringLiteral("q"));
    query.insert(VeskRoles::QueryPath(), QString::fromUtf8(path));
    return query;
}

/// Two services that search, A and B, each with two hits for "jazz" and favorites, and one that
/// does neither.
class GroupsTest : public testing::Test {
protected:
    GroupsTest()
    {
        QList<VeskRoles> services {serviceRow("none", "None")};
        for (const char *name : {"A", "B"}) {
            const QByteArray title(name);
            const QByteArray root = title + ":";
            services.append(withRole(withRole(serviceRow(title.toLower().constData(), name),
                                         "search", (root + "searches").constData()),
                "favorites", (root + "kept").constData()));
            m_host.setResult(QString::fromUtf8("getData " + root),
                "\"result\":{\"values\":[\"" + title + "\"]}");
            m_host.setScreen(QString::fromUtf8(root + "searches"),
                {row(1, "Folder", ""), queryRow((root + "found").constData())});
            m_host.setScreen(QString::fromUtf8(root + "found?q=jazz"),
                {row(3, (title + " one").constData(), (root + "s?id=" + title + "1").constData()),
                    row(3, (title + " two").constData(),
                        (root + "s?id=" + title + "2").constData())});
            m_host.setScreen(QString::fromUtf8(root + "kept"),
                {row(
                    3, (title + " kept").constData(), (root + "s?id=" + title + "3").constData())});
        }
        m_host.setScreen(QStringLiteral("host:services"), services);
        m_host.setResult(QStringLiteral("player.state"), R"("result":{"state":0})");
    }

    Outcome onTerminal(const char *line, int width = 80)
    {
        return run(m_host.url(), words(line),
            {{}, width, m_memory.path() + QStringLiteral("/ctl"), QStringLiteral("1"), {}});
    }

    Outcome forPrograms(const char *line) { return run(m_host.url(), words(line)); }

    const QTemporaryDir m_memory;
    FakeHost m_host;
    const QString m_foundInA = QStringLiteral("getRows A:found?q=jazz");
    const QByteArray m_failure
        = R"("error":{"code":-32000,"message":"Out of\u001b order","data":{"name":"e:1"}})";
};

TEST_F(GroupsTest, SearchAsksAllServicesAndNumbersTheirRowsOn)
{
    const Outcome outcome = onTerminal("search jazz");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.out,
        "A\n   0 \u266a A one\n   1 \u266a A two\nB\n   2 \u266a B one\n   3 \u266a B two\n");
    EXPECT_EQ(onTerminal("ls search:jazz").out, outcome.out);
}

TEST_F(GroupsTest, ASlowServiceHoldsNoOtherUp)
{
    m_host.setDelay(QStringLiteral("getRows A:searches"), 100);
    m_host.setDelay(m_foundInA, 100);
    EXPECT_EQ(onTerminal("search jazz").out,
        "B\n   0 \u266a B one\n   1 \u266a B two\nA\n   2 \u266a A one\n   3 \u266a A two\n");
    EXPECT_EQ(forPrograms("search jazz").out,
        "B:found?q=jazz#0\taudio\tB one\t\t\nB:found?q=jazz#1\taudio\tB two\t\t\n"
        "A:found?q=jazz#0\taudio\tA one\t\t\nA:found?q=jazz#1\taudio\tA two\t\t\n");
}

TEST_F(GroupsTest, AServiceThatDoesNotTellItsTitleHoldsNoOtherUp)
{
    m_host.setDelay(QStringLiteral("getData A:"), 100);
    m_host.setResult(QStringLiteral("getData A:"), m_failure);
    EXPECT_EQ(onTerminal("search jazz").out,
        "B\n   0 \u266a B one\n   1 \u266a B two\na\n   2 \u266a A one\n   3 \u266a A two\n");
}

TEST_F(GroupsTest, ANoteNamesTheServicesThatAreSlow)
{
    m_host.setDelay(m_foundInA, RpcClient::SlowMs + 200);
    EXPECT_EQ(onTerminal("search jazz").errors, "veskctl: Still waiting for: A\n");
}

TEST_F(GroupsTest, AFailedServiceIsToldInItsGroup)
{
    m_host.setResult(m_foundInA, m_failure);
    const Outcome shown = onTerminal("search jazz");
    EXPECT_EQ(shown.status, 0);
    EXPECT_THAT(shown.out, HasSubstr("A\n     - Out of\ufffd order\n"));
    EXPECT_THAT(shown.out, HasSubstr("B\n   0 \u266a B one\n"));
    const Outcome piped = forPrograms("search jazz");
    EXPECT_EQ(piped.status, 0);
    EXPECT_EQ(piped.errors, "veskctl: A: Out of\ufffd order\n");
    EXPECT_THAT(piped.out, Not(HasSubstr("A")));
    const Outcome json = forPrograms("search jazz --json");
    EXPECT_THAT(json.out,
        HasSubstr(
            R"({"error":{"code":-32000,"message":"Out of\u001b order","name":"e:1"},"service":"a"})"));
    EXPECT_THAT(json.out, HasSubstr(R"("service":"b")"));
}

TEST_F(GroupsTest, FailsWhenEveryServiceFails)
{
    m_host.setResult(m_foundInA, m_failure);
    m_host.setResult(QStringLiteral("getRows B:searches"), m_failure);
    EXPECT_EQ(onTerminal("search jazz").status, 1);
    EXPECT_EQ(forPrograms("search jazz --json").status, 1);
}

TEST_F(GroupsTest, ALostHostEndsTheCommand)
{
    m_host.setClosing(m_foundInA, 1);
    m_host.setDelay(QStringLiteral("getRows B:found?q=jazz"), 30000);
    const Outcome outcome = forPrograms("search jazz");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.errors, HasSubstr("veskctl: A: no host at"));
    EXPECT_THAT(outcome.errors, HasSubstr("veskctl: B: no host at"));
}

TEST_F(GroupsTest, JsonIsOneObjectPerService)
{
    const Outcome outcome = forPrograms("search jazz --json --limit 1");
    EXPECT_EQ(outcome.out,
        R"({"path":"A:found?q=jazz","place":"A:found?q=jazz","rows":[{"path":"A:s?id=A1","place":"A:found?q=jazz#0","row":0,"title":"A one","type":3}],"rowsCount":2,"service":"a","title":null})"
        "\n"
        R"({"path":"B:found?q=jazz","place":"B:found?q=jazz","rows":[{"path":"B:s?id=B1","place":"B:found?q=jazz#0","row":0,"title":"B one","type":3}],"rowsCount":2,"service":"b","title":null})"
        "\n");
}

TEST_F(GroupsTest, OneServiceCanBeNamed)
{
    for (const char *line : {"search jazz --in b", "search jazz --in B:", "b search jazz"}) {
        EXPECT_EQ(forPrograms(line).out,
            "search:jazz/0\taudio\tB one\t\t\nsearch:jazz/1\taudio\tB two\t\t\n")
            << line;
    }
    EXPECT_EQ(m_host.timesAsked(m_foundInA), 0);
    const Outcome unknown = forPrograms("c search jazz");
    EXPECT_EQ(unknown.status, 2);
    EXPECT_THAT(unknown.errors, HasSubstr("veskctl: \"c\" is no command; there are: ls, "));
}

TEST_F(GroupsTest, TheNumbersThatWereShownArePlayed)
{
    m_host.setResult(QStringLiteral("player.play"), R"("result":{"playId":{}})");
    onTerminal("search jazz");
    EXPECT_EQ(onTerminal("play 3").status, 0);
    const QVariantHash played = m_host.paramsOf(QStringLiteral("player.play"));
    EXPECT_EQ(played.value(QStringLiteral("screen")).toString(), QStringLiteral("B:found?q=jazz"));
    EXPECT_EQ(played.value(QStringLiteral("row")).toInt(), 1);
    EXPECT_EQ(played.value(QStringLiteral("path")).toString(), QStringLiteral("B:s?id=B2"));
    EXPECT_EQ(onTerminal("play A1").status, 0);
    EXPECT_EQ(m_host.paramsOf(QStringLiteral("player.play")).value(QStringLiteral("screen")),
        QStringLiteral("A:found?q=jazz"));
}

TEST_F(GroupsTest, OnATerminalEachListIsShort)
{
    QList<VeskRoles> many;
    for (int i = 0; i < 250; ++i)
        many.append(row(3, "Hit", "A:s"));
    m_host.setScreen(QStringLiteral("A:found?q=jazz"), many);
    const std::string shown = onTerminal("search jazz").out;
    EXPECT_THAT(shown, HasSubstr("   9 \u266a Hit\n     240 more with --in a\nB\n"));
    EXPECT_THAT(shown, Not(HasSubstr("  12 ")));
    EXPECT_THAT(onTerminal("search jazz --limit 120").out, HasSubstr("\u266a Hit\n     130 more"));
    EXPECT_THAT(forPrograms("search jazz").out, HasSubstr("A:found?q=jazz#249\t"));
}

TEST_F(GroupsTest, FavoritesOfAllServicesAreShown)
{
    EXPECT_EQ(onTerminal("favorites").out, "A\n   0 \u266a A kept\nB\n   1 \u266a B kept\n");
    EXPECT_EQ(onTerminal("ls favorites").out, onTerminal("favorites").out);
    EXPECT_EQ(forPrograms("favorites --in b").out, "favorites/0\taudio\tB kept\t\t\n");
    m_host.setScreen(QStringLiteral("A:kept"), {});
    EXPECT_THAT(onTerminal("favorites").out, HasSubstr("A\n     There is nothing here.\n"));
    // Which of the lists would that be?
    const Outcome row = forPrograms("ls favorites/0");
    EXPECT_EQ(row.status, 2);
    EXPECT_THAT(row.errors, HasSubstr("--in (a, b)"));
}

TEST_F(GroupsTest, PlayOfANameTakesTheBestHitOfAllServices)
{
    m_host.setResult(QStringLiteral("player.play"), R"("result":{"playId":{}})");
    m_host.setScreen(QStringLiteral("B:found?q=jazz"), {row(3, "Jazz", "B:1")});
    m_host.setDelay(m_foundInA, 30000);
    EXPECT_THAT(forPrograms("play jazz").out, HasSubstr("the best hit for \"jazz\": Jazz\n"));
    m_host.setDelay(m_foundInA, 0);
    m_host.setScreen(QStringLiteral("A:found?q=jazz"), {row(3, "A jazz", "A:1")});
    m_host.setScreen(QStringLiteral("B:found?q=jazz"), {row(3, "Jazz band", "B:2")});
    EXPECT_THAT(forPrograms("play jazz").out, HasSubstr("\"jazz\": Jazz band\n"));
    m_host.setResult(QStringLiteral("getRows B:searches"), m_failure);
    EXPECT_THAT(forPrograms("play jazz").out, HasSubstr("\"jazz\": A jazz\n"));
    m_host.setResult(QStringLiteral("getRows A:searches"), m_failure);
    const Outcome outcome = forPrograms("play jazz");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "veskctl: Out of\ufffd order\n");
}

TEST_F(GroupsTest, PlayOfANameDoesNotWaitForASlowService)
{
    m_host.setResult(QStringLiteral("player.play"), R"("result":{"playId":{}})");
    m_host.setDelay(m_foundInA, 30000);
    EXPECT_THAT(forPrograms("play jazz").out, HasSubstr("\"jazz\": B one\n"));
    EXPECT_EQ(m_host.timesAsked(QStringLiteral("cancel")), 1);
}

} // namespace
