// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/ctl/FakeHost.h"

#include "api/values/VeskMediaData.h"

#include <QSet>

#include <gmock/gmock.h>

namespace {

/// A service whose favorites change through one menu entry that all items share: it adds or removes
/// as the menu whose titles were requested last offered, for any item, and its titles are in a
/// language unknown to veskctl.
class FavoritesHost : public FakeHost {
public:
    FavoritesHost()
    {
        VeskRoles service = serviceRow("good", "Good");
        service.insert(QStringLiteral("favorites"),
            QVariantHash {{QStringLiteral("path"), QStringLiteral("Good:kept")},
                {QStringLiteral("toggle"),
                    QStringList {QStringLiteral("Good:entry"), QStringLiteral("Good:menu/entry")}},
                {QStringLiteral("ids"),
                    QStringList {QStringLiteral("id"), QStringLiteral("show")}}});
        setScreen(QStringLiteral("host:services"), {serviceRow("other", "Other"), service});
        setScreen(QStringLiteral("Good:all"),
            {item(3, "One", "1", true), item(1, "Show", "2", false), item(3, "Three", "3", true),
                row(1, "Folder", "Good:other"), item(3, "Address", "", false)});
        for (const char *id : {"1", "2", "3"})
            m_results.insert(activation(id), R"("result":{"value":null})");
    }

    static QString activation(const char *id)
    {
        return QStringLiteral("setData Good:menu/entry?id=") + QLatin1String(id);
    }

    QSet<QString> favorites;
    bool works = true;
    bool inFolder = false;

protected:
    void prepare(const QString &method, const QVariantHash &params) override
    {
        const CMPath path = CMPath::fromVariant(params.value(QStringLiteral("path")));
        const QString id = path.param(QStringLiteral("id"));
        if (method == QLatin1String("setData") && works && m_isOffered) {
            if (m_adds)
                favorites.insert(id);
            else
                favorites.remove(id);
        }
        if (path.base() == QLatin1String("menu")) {
            m_isOffered
                = params.value(QStringLiteral("roles")).toStringList().contains(VeskRoles::Title());
            m_adds = !favorites.contains(id);
            m_screens.insert(path.toEncoded(),
                {row(1, "Anderes", "Good:other"), row(6, "Vergessen", "Good:menu/forget?id=1"),
                    row(6, m_adds ? "Hinzu\x1b" : "Hinweg\x1b",
                        ("Good:menu/entry?id=" + id.toUtf8()).constData())});
        }
        fillFavorites();
    }

private:
    static VeskRoles item(int type, const char *title, const char *id, bool live)
    {
        VeskRoles item = row(type, title, "Good:x");
        VeskRoles context;
        context.setPath(CMPath::fromEncoded(QStringLiteral("Good:menu?id=") + QLatin1String(id)));
        item.setContext(context);
        VeskMetaData metaData;
        metaData.setLive(live);
        VeskMediaData mediaData;
        mediaData.setMetaData(metaData);
        item.setMediaData(mediaData);
        return item;
    }

    void fillFavorites()
    {
        const QString favoritesPath = QStringLiteral("Good:kept");
        const QString folderPath = QStringLiteral("Good:kept?id=f1");
        QList<VeskRoles> rows;
        for (const VeskRoles &row : m_screens.value(QStringLiteral("Good:all"))) {
            if (favorites.contains(row.context().path().param(QStringLiteral("id"))))
                rows.append(row);
        }
        m_screens.insert(inFolder ? folderPath : favoritesPath, rows);
        if (inFolder) {
            m_screens.insert(favoritesPath,
                {row(0, "Text", ""), row(1, "Folder", folderPath.toUtf8().constData())});
        }
    }

    bool m_adds = false;
    bool m_isOffered = false;
};

TEST(FavoriteCommandsTest, AddsAFavorite)
{
    FavoritesHost host;
    const Outcome first = run(host.url(), words("favorite add Good:all 0"));
    EXPECT_EQ(first.status, 0) << first.errors;
    EXPECT_EQ(first.out, "One: a favorite now\n");
    EXPECT_EQ(run(host.url(), words("favorite add Good:all 1")).out, "Show: a favorite now\n");
    EXPECT_EQ(host.favorites, (QSet<QString> {QStringLiteral("1"), QStringLiteral("2")}));
}

TEST(FavoriteCommandsTest, AddLeavesAFavoriteAsItIs)
{
    FavoritesHost host;
    host.favorites = {QStringLiteral("1"), QStringLiteral("3")};
    const Outcome outcome = run(host.url(), words("favorite add Good:all 2"));
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.out, "Three: a favorite already\n");
    EXPECT_EQ(host.timesAsked(FavoritesHost::activation("3")), 0);
}

TEST(FavoriteCommandsTest, RemovesAFavorite)
{
    FavoritesHost host;
    host.favorites = {QStringLiteral("1"), QStringLiteral("2")};
    EXPECT_EQ(run(host.url(), words("favorite remove Good:all 2")).out, "Three: no favorite\n");
    EXPECT_EQ(host.timesAsked(FavoritesHost::activation("3")), 0);
    EXPECT_EQ(
        run(host.url(), words("favorite remove favorites 1")).out, "Show: no favorite any more\n");
    EXPECT_EQ(
        run(host.url(), words("favorite remove Good:all 0")).out, "One: no favorite any more\n");
    EXPECT_TRUE(host.favorites.isEmpty());
    EXPECT_EQ(run(host.url(), words("favorite remove Good:all 0")).out, "One: no favorite\n");
}

TEST(FavoriteCommandsTest, LooksIntoTheFoldersOfFavorites)
{
    FavoritesHost host;
    host.inFolder = true;
    host.favorites = {QStringLiteral("1")};
    EXPECT_EQ(run(host.url(), words("favorite add Good:all 0")).out, "One: a favorite already\n");
    EXPECT_EQ(run(host.url(), words("favorite add Good:all 2")).out, "Three: a favorite now\n");
}

TEST(FavoriteCommandsTest, FailsForAnItemThatNothingIdentifies)
{
    FavoritesHost host;
    const Outcome outcome = run(host.url(), words("favorite add Good:all 4"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "veskctl: the menu has no entry for favorites\n");
}

TEST(FavoriteCommandsTest, FailsForAServiceWithoutFavorites)
{
    FavoritesHost host;
    host.setScreen(QStringLiteral("host:services"), {serviceRow("good", "Good")});
    const Outcome outcome = run(host.url(), words("favorite add Good:all 0"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "veskctl: this service has no favorites\n");
}

TEST(FavoriteCommandsTest, PrintsJson)
{
    FavoritesHost host;
    EXPECT_EQ(run(host.url(), words("--json favorite add Good:all 0")).out,
        "{\"changed\":true,\"favorite\":true,\"title\":\"One\"}\n");
    EXPECT_EQ(run(host.url(), words("--json favorite add Good:all 0")).out,
        "{\"changed\":false,\"favorite\":true,\"title\":\"One\"}\n");
}

TEST(FavoriteCommandsTest, FailsWhenNothingHasChanged)
{
    FavoritesHost host;
    host.favorites = {QStringLiteral("1")};
    host.works = false;
    const Outcome add = run(host.url(), words("favorite add Good:all 2"));
    EXPECT_EQ(add.status, 1);
    EXPECT_EQ(add.errors, "veskctl: that did not work: the favorites are as they were\n");
    EXPECT_EQ(run(host.url(), words("favorite remove Good:all 0")).status, 1);
    host.favorites.clear();
    EXPECT_EQ(run(host.url(), words("favorite add Good:all 2")).status, 1);
}

TEST(FavoriteCommandsTest, FailsWithTheHost)
{
    FavoritesHost host;
    host.works = false;
    const QByteArray failure = R"("error":{"code":-32000,"message":"No\u001b."})";
    host.setResult(FavoritesHost::activation("1"), failure);
    const Outcome outcome = run(host.url(), words("favorite add Good:all 0"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.errors, "veskctl: No\ufffd.\n");
    // Failing to read the favorites does not count as having none.
    host.setResult(QStringLiteral("getRows Good:kept"), failure);
    EXPECT_EQ(run(host.url(), words("favorite add Good:all 2")).status, 1);
    EXPECT_EQ(host.timesAsked(FavoritesHost::activation("3")), 0);
}

TEST(FavoriteCommandsTest, ChangesWhatPlaysWithoutARow)
{
    FavoritesHost host;
    host.setResult(QStringLiteral("player.state"),
        R"("result":{"state":2,"title":"One","contextPath":"Good:menu?id=1"})");
    EXPECT_EQ(run(host.url(), words("favorite add")).out, "One: a favorite now\n");
    EXPECT_EQ(host.favorites, QSet<QString> {QStringLiteral("1")});
    EXPECT_EQ(run(host.url(), words("favorite remove")).out, "One: no favorite any more\n");
    host.setResult(QStringLiteral("player.state"), R"("result":{"state":0,"contextPath":""})");
    EXPECT_EQ(run(host.url(), words("favorite add")).errors,
        "veskctl: nothing plays, or what plays has no menu\n");
}

TEST(FavoriteCommandsTest, FailsForARowWithoutTheEntry)
{
    FavoritesHost host;
    EXPECT_EQ(
        run(host.url(), words("favorite add Good:all 3")).errors, "veskctl: row 3 has no menu\n");
    host.setResult(QStringLiteral("getRows Good:menu?id=1"),
        R"("result":{"rowsCount":1,"rows":[["Other",1,"a:b"]],"roles":{}})");
    const Outcome outcome = run(host.url(), words("favorite add Good:all 0"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "veskctl: the menu has no entry for favorites\n");
}

} // namespace
