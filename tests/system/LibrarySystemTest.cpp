// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/support/RawWebSocket.h"
#include "tests/support/Text.h"
#include "tests/system/PlayFixture.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;

/// The whole product, with what the host remembers.
class LibrarySystem : public PlayFixture {
protected:
    QVariantHash call(const char *method, const QVariantHash &params = {}) const
    {
        return product.rpc(text(method), params);
    }
    QVariantHash result(const char *method, const QVariantHash &params = {}) const
    {
        const QVariantHash answer = call(method, params);
        EXPECT_TRUE(answer.contains(text("result")))
            << method << ": " << errorOf(answer).toStdString();
        return answer.value(text("result")).toHash();
    }
    static QString errorOf(const QVariantHash &answer)
    {
        return answer.value(text("error")).toHash().value(text("message")).toString();
    }
    QStringList titles(const char *screen) const
    {
        QStringList list;
        const QVariantList rows = product.rows(text(screen), {text("title")});
        for (const QVariant &row : rows)
            list.append(row.toList().value(0).toString());
        return list;
    }
    void playAndHear(const QString &search, int row = 0)
    {
        ASSERT_FALSE(play(search, row).contains(text("error")));
        ASSERT_TRUE(waitForState(2));
    }
    /// Recents are there soon after the first sound.
    bool waitForTitles(const char *screen, const QStringList &wanted) const
    {
        QElapsedTimer clock;
        clock.start();
        while (titles(screen) != wanted) {
            if (clock.elapsed() > 20000) {
                ADD_FAILURE() << titles(screen).join(text(", ")).toStdString();
                return false;
            }
            QThread::msleep(PollMs);
        }
        return true;
    }
    QString playing(const char *member) const { return state().value(text(member)).toString(); }
};

TEST_F(LibrarySystem, WhatWasHeardIsListedAndPlaysFromThere)
{
    EXPECT_EQ(titles("host:library"), QStringList({text("Favorites"), text("Recently played")}));
    EXPECT_EQ(titles("host:services").size(), 1) << "a page with one service opens it at once";
    playAndHear(text("jazz"));
    const QString first = playing("title");
    ASSERT_TRUE(waitForTitles("host:recents", {first}));
    playAndHear(text("news"));
    const QString second = playing("title");
    ASSERT_NE(first, second);
    ASSERT_TRUE(waitForTitles("host:recents", {second, first}));
    EXPECT_EQ(titles("host:recents?service=tunein"), QStringList({second, first}));
    EXPECT_EQ(titles("host:recents?service=other"), QStringList());

    const QVariantList listed = product.rows(text("host:recents"), {text("path")});
    result("player.play",
        {{text("screen"), text("host:recents")}, {text("row"), 1},
            {text("path"), listed.value(1).toList().value(0)}});
    ASSERT_TRUE(waitForState(2));
    EXPECT_EQ(playing("title"), first);
    ASSERT_TRUE(waitForTitles("host:recents", {first, second}));
    const QVariantList rows
        = product.rows(text("host:recents"), {text("path"), text("context"), text("type")});
    ASSERT_FALSE(rows.isEmpty());
    const QVariantList row = rows.first().toList();
    EXPECT_EQ(row.value(2).toInt(), 3);
    const QString menu = row.value(1).toHash().value(text("path")).toString();
    EXPECT_FALSE(product.rows(menu, {text("title")}).isEmpty()) << menu.toStdString();
    result("recents.clear", {{text("service"), text("tunein")}});
    EXPECT_EQ(titles("host:recents"), QStringList());
}

TEST_F(LibrarySystem, FavoritesAndPresetsAreKeptOverAKill)
{
    EXPECT_EQ(errorOf(call("favorites.add")), text("Nothing is playing."));
    EXPECT_EQ(errorOf(call("presets.save", {{text("number"), 1}})), text("Nothing is playing."));
    EXPECT_EQ(errorOf(call("presets.play", {{text("number"), 3}})), text("Preset 3 is empty."));
    EXPECT_THAT(errorOf(call("presets.save", {{text("number"), 13}})).toStdString(),
        HasSubstr("from 1 to 12"));
    playAndHear(text("jazz"));
    const QString title = playing("title");
    const QString path = playing("path");
    EXPECT_GT(result("favorites.add").value(text("id")).toInt(), 0);
    EXPECT_TRUE(result("favorites.state", {{text("path"), path}}).value(text("favorite")).toBool());
    result("presets.save", {{text("number"), 3}});
    const QVariantHash row {
        {text("screen"), text("TuneIn:browse/uri/Search.ashx?query=news")}, {text("row"), 0}};
    QVariantHash saved = row;
    saved.insert(text("number"), 12);
    result("presets.save", saved);
    result("favorites.add", row);
    ASSERT_EQ(titles("host:favorites").size(), 2);
    const QStringList favorites = titles("host:favorites");
    EXPECT_EQ(favorites.first(), title);
    result("player.stop");
    // That nothing plays any more is on the disk before what is asked for later.
    result("recents.clear", {{text("service"), text("other")}});

    product.killHost();
    product.waitForHostsEnd();
    ASSERT_TRUE(product.startHost());
    EXPECT_EQ(titles("host:favorites"), favorites);
    const QVariantList presets = result("presets.list").value(text("presets")).toList();
    ASSERT_EQ(presets.size(), 2);
    EXPECT_EQ(presets.first().toHash().value(text("number")).toInt(), 3);
    EXPECT_EQ(presets.first().toHash().value(text("title")).toString(), title);
    EXPECT_EQ(presets.last().toHash().value(text("title")).toString(), favorites.last());
    EXPECT_EQ(state().value(text("state")).toInt(), 0) << "it was stopped";
    EXPECT_FALSE(
        result("presets.play", {{text("number"), 3}}).value(text("playId")).toHash().isEmpty());
    ASSERT_TRUE(waitForState(2));
    EXPECT_EQ(playing("title"), title);
    EXPECT_TRUE(isHeard());
    result("favorites.remove", {{text("path"), path}});
    EXPECT_EQ(titles("host:favorites"), favorites.mid(1));
    result("presets.clear", {{text("number"), 3}});
    EXPECT_EQ(result("presets.list").value(text("presets")).toList().size(), 1);
}

TEST_F(LibrarySystem, WhatIsExportedCanBeImportedElsewhere)
{
    playAndHear(text("jazz"));
    result("favorites.add");
    result("presets.save", {{text("number"), 1}});
    const QVariantHash library = result("library.export").value(text("library")).toHash();
    EXPECT_EQ(library.value(text("version")).toInt(), 1);
    const QString uri = playing("uri");
    const QVariantHash row = library.value(text("favorites")).toList().value(0).toHash();
    const QVariantList resources
        = row.value(text("mediaData")).toHash().value(text("resources")).toList();
    EXPECT_NE(resources.value(0).toHash().value(text("uri")).toString(), uri)
        << "the address of the stream itself is not kept";

    result("favorites.remove");
    result("presets.clear", {{text("number"), 1}});
    EXPECT_EQ(titles("host:favorites"), QStringList());
    const QVariantHash imported = result("library.import", {{text("library"), library}});
    EXPECT_EQ(imported.value(text("favorites")).toInt(), 1);
    EXPECT_EQ(imported.value(text("presets")).toInt(), 1);
    EXPECT_EQ(titles("host:favorites"), QStringList {playing("title")});
    for (const QVariant &bad : {QVariant(), QVariant(7), QVariant(text("x")),
             QVariant(QVariantList {1}), QVariant(QVariantHash {{text("version"), 9}})})
        EXPECT_TRUE(call("library.import", {{text("library"), bad}}).contains(text("error")));
    EXPECT_EQ(titles("host:favorites").size(), 1);
}

TEST_F(LibrarySystem, AfterAKillThereIsSoundAgainByItself)
{
    playAndHear(text("jazz"));
    const QString title = playing("title");
    ASSERT_TRUE(waitForTitles("host:recents", {title}));
    product.killHost();
    product.waitForHostsEnd();
    QFile::remove(wav);
    ASSERT_TRUE(product.startHost());
    ASSERT_TRUE(waitForState(2));
    EXPECT_EQ(playing("title"), title);
    EXPECT_TRUE(isHeard());
    result("player.pause");
    // That it was paused is on the disk before what is asked for later.
    result("recents.clear", {{text("service"), text("other")}});
    product.killHost();
    product.waitForHostsEnd();
    ASSERT_TRUE(product.startHost());
    QThread::msleep(500);
    EXPECT_EQ(state().value(text("state")).toInt(), 0) << "what was paused stays silent";
}

TEST_F(LibrarySystem, AnOrderlyEndIsNoCrash)
{
    result("setData",
        {{text("path"), text("settings:player/resume")}, {text("role"), text("value")},
            {text("value"), text("crash")}});
    EXPECT_THAT(errorOf(call("setData",
                            {{text("path"), text("settings:player/resume")},
                                {text("role"), text("value")}, {text("value"), text("often")}}))
                    .toStdString(),
        HasSubstr("always, crash, never"));
    playAndHear(text("jazz"));
    ASSERT_TRUE(waitForTitles("host:recents", {playing("title")}));
    EXPECT_EQ(product.stopHost(), 0);
    ASSERT_TRUE(product.startHost());
    QThread::msleep(500);
    EXPECT_EQ(state().value(text("state")).toInt(), 0);
    playAndHear(text("jazz"));
    // That it plays is on the disk before what is asked for later.
    result("recents.clear", {{text("service"), text("other")}});
    product.killHost();
    product.waitForHostsEnd();
    ASSERT_TRUE(product.startHost());
    EXPECT_TRUE(waitForState(2));
}

} // namespace
