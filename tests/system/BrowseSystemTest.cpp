// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/support/Text.h"
#include "tests/system/Product.h"

#include "api/values/CMPath.h"

#include <QRegularExpression>
#include <QSet>

#include <gmock/gmock.h>

namespace {

/// One product for all of these tests: none of them changes it.
class BrowseSystem : public testing::Test {
protected:
    static void SetUpTestSuite() { s_product = new Product; }
    static void TearDownTestSuite()
    {
        delete s_product;
        s_product = nullptr;
    }
    void SetUp() override { ASSERT_TRUE(s_product->isUp()); }

    static Product *s_product;
};

Product *BrowseSystem::s_product = nullptr;

const QStringList titleAndPath {
    QStringLiteral("title"), QStringLiteral("path"), QStringLiteral("type")};

TEST_F(BrowseSystem, LsPrintsTheRootMenu)
{
    const Outcome outcome = s_product->ctl({text("ls")});
    EXPECT_EQ(outcome.code, 0) << outcome.err.toStdString();
    for (const char *title :
        {"Local Radio", "Music", "Talk", "Sports", "By Location", "By Language", "Podcasts"})
        EXPECT_TRUE(outcome.out.contains(text(title))) << title;
}

TEST_F(BrowseSystem, TheRootRequestSendsTheDevicesItemsInTheirOrder)
{
    const int before = s_product->requestLog().size();
    s_product->rows(text("TuneIn:"), titleAndPath);
    const QStringList log = s_product->requestLog();
    ASSERT_EQ(log.size(), before + 1);
    const QRegularExpression expected(text("^GET /Browse\\.ashx\\?render=json&formats=[^&]+"
                                           "&partnerId=test&serial=[0-9a-f]{32}&locale=en-US$"));
    EXPECT_TRUE(expected.match(log.last()).hasMatch()) << log.last().toStdString();
}

TEST_F(BrowseSystem, EveryScreenOfAMenuOpens)
{
    QStringList waiting {text("TuneIn:")};
    QSet<QString> seen;
    int audioRows = 0;
    while (!waiting.isEmpty() && seen.size() < 250) {
        const QString path = waiting.takeFirst();
        if (seen.contains(path))
            continue;
        seen.insert(path);
        const QVariantHash answer = s_product->rpc(
            text("getRows"), {{text("path"), path}, {text("roles"), titleAndPath}});
        ASSERT_TRUE(answer.contains(text("result"))) << path.toStdString();
        const QVariantHash result = answer.value(text("result")).toHash();
        const QVariantList rows = result.value(text("rows")).toList();
        for (const QVariant &row : rows) {
            const QVariantList values = row.toList();
            const int type = values.value(2).toInt();
            audioRows += type == 3;
            if (type == 1) {
                const QString next = values.value(1).toString();
                EXPECT_FALSE(CMPath::fromEncoded(next).isEmpty()) << next.toStdString();
                waiting.append(next);
            }
        }
    }
    EXPECT_EQ(seen.size(), 250);
    EXPECT_GT(audioRows, 300);
}

TEST_F(BrowseSystem, SearchFindsStationsShowsAndArtists)
{
    const Outcome outcome = s_product->ctl({text("--json"), text("search"), text("jazz")});
    ASSERT_EQ(outcome.code, 0) << outcome.err.toStdString();
    EXPECT_TRUE(
        outcome.out.contains(text("Tune.ashx?id")) || outcome.out.contains(text("veskGuideId=s")));
    EXPECT_TRUE(outcome.out.contains(text("pbrowse")));
    EXPECT_TRUE(outcome.out.contains(text("Artist: ")));
}

TEST_F(BrowseSystem, ASearchTextReachesTheDirectoryUnchanged)
{
    s_product->ctl({text("search"), text("rock & roll + 50% über")});
    const QString request = s_product->requestLog().last();
    EXPECT_TRUE(request.startsWith(text("GET /Search.ashx?query="
                                        "rock%20%26%20roll%20%2B%2050%25%20%C3%BCber&render=json")))
        << request.toStdString();
}

TEST_F(BrowseSystem, TheTestTreeOpens)
{
    const QVariantList rows = s_product->rows(text("TuneIn:testing"), titleAndPath);
    ASSERT_EQ(rows.size(), 7);
    EXPECT_EQ(rows.first().toList().first().toString(), text("Browse in various languages"));
    for (const QVariant &row : rows) {
        const QVariantList values = row.toList();
        EXPECT_FALSE(values.value(0).toString().isEmpty());
        if (values.value(2).toInt() == 1) {
            EXPECT_FALSE(s_product->rows(values.value(1).toString(), titleAndPath).isEmpty())
                << values.value(1).toString().toStdString();
        }
    }
}

TEST_F(BrowseSystem, DifferentStreamTypesPlayTheirStreamsDirectly)
{
    const QVariantList rows = s_product->rows(
        text("TuneIn:testing_/aa2"), {text("path"), text("mediaData"), text("type")});
    int audioRows = 0;
    for (const QVariant &row : rows) {
        const QVariantList values = row.toList();
        if (values.value(2).toInt() != 3)
            continue;
        ++audioRows;
        EXPECT_TRUE(values.value(0).toString().contains(text("veskDirectStream=")));
        const QVariantHash resource
            = values.value(1).toHash().value(text("resources")).toList().value(0).toHash();
        EXPECT_EQ(resource.value(text("mimeType")).toString(), text("audio/unknown"));
        EXPECT_TRUE(resource.value(text("uri")).toString().startsWith(text("http")));
    }
    EXPECT_GE(audioRows, 5);
}

TEST_F(BrowseSystem, ValuesAreReadAndWrittenFromTheTerminal)
{
    const QString path = text("settings:tunein/enabledFixItWizard");
    EXPECT_EQ(s_product->ctl({text("set"), path, text("false")}).code, 0);
    EXPECT_EQ(s_product->ctl({text("get"), path}).out.trimmed(), text("false"));
    EXPECT_EQ(s_product->ctl({text("set"), path, text("true")}).code, 0);
    EXPECT_EQ(s_product->ctl({text("get"), path}).out.trimmed(), text("true"));
}

TEST_F(BrowseSystem, ExitCodesTellWhatWentWrong)
{
    EXPECT_EQ(s_product->ctl({text("ls"), text("TuneIn:browse?no=method")}).code, 1);
    EXPECT_EQ(s_product->ctl({text("ls"), text("TuneIn:nowhere")}).code, 1);
    EXPECT_EQ(s_product->ctl({text("dance")}).code, 2);
    EXPECT_EQ(s_product->ctl({text("search")}).code, 2);
    EXPECT_EQ(
        runProgram(text("veskctl"), {text("--host"), text("http://127.0.0.1:1/"), text("ls")}).code,
        3);
}

TEST_F(BrowseSystem, ThePluginsErrorIsPrinted)
{
    const Outcome outcome = s_product->ctl({text("ls"), text("TuneIn:browse?no=method")});
    EXPECT_TRUE(outcome.err.contains(text("Unspecified method!"))) << outcome.err.toStdString();
}

TEST_F(BrowseSystem, APathWithoutANodeHasItsOwnExitCode)
{
    const auto codeOf = [](const char *path) {
        return s_product->rpc(text("getRows"), {{text("path"), text(path)}})
            .value(text("error"))
            .toHash()
            .value(text("code"))
            .toInt();
    };
    EXPECT_EQ(codeOf("TuneIn:nowhere"), -32001);
    EXPECT_EQ(codeOf("Elsewhere:browse"), -32001);
    EXPECT_EQ(codeOf("TuneIn:browse?no=method"), -32000);
    EXPECT_EQ(codeOf("TuneIn:browse?damaged=%zz"), -32602);
}

} // namespace
