// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/tunein/VeskTuneInIcons.h"
#include "tests/modules/tunein/RowsFixture.h"

#include <QCoreApplication>
#include <QTranslator>

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const QByteArray Link = R"({"element":"outline","type":"link","text":"Music","key":"music",)"
                        R"("URL":"http://opml.radiotime.com/Browse.ashx?c=music"})";

/// A separator around \a children; without a key when it is empty.
QByteArray section(const QByteArray &name, const QByteArray &key, const QByteArray &children)
{
    return R"({"element":"outline","text":")" + name + R"(",)"
        + (key.isEmpty() ? QByteArray() : R"("key":")" + key + R"(",)") + R"("children":[)"
        + children + "]}";
}

/// While it exists, every text is translated into itself, prefixed with its context.
class ContextTranslator : public QTranslator {
public:
    ContextTranslator() { QCoreApplication::installTranslator(this); }
    ~ContextTranslator() override { QCoreApplication::removeTranslator(this); }

    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *sourceText, const char *, int) const override
    {
        return QLatin1String(context) + "|"_s + QLatin1String(sourceText);
    }
};

using TuneInRowsSeparatorTest = TuneInRowsTest;
using TuneInRowsNavigationTest = TuneInRowsTest;
using TuneInRowsFavoritesTest = TuneInRowsTest;

} // namespace

TEST_F(TuneInRowsSeparatorTest, AreFoldersWithoutASingleList)
{
    const RowsAnswer answer
        = show(section("Stations", "stations", text("a")) + "," + section("Shows", "", text("b")),
            {"title"_s, "type"_s, "path"_s, "mediaData"_s, "context"_s, "icon"_s});
    ASSERT_EQ(answer.count, 2);
    EXPECT_EQ(answer.texts(), QStringList({"Stations"_s, "Shows"_s}));
    const QVariantList row = answer.rows.at(0);
    EXPECT_EQ(row.at(1).toInt(), VeskRolesType::Container());
    EXPECT_EQ(CMPath::fromEncoded(row.at(2).toString()), folder("stations"_s));
    EXPECT_EQ(VeskMediaData(row.at(3).toHash()).metaData().serviceID(), "tunein"_s);
    EXPECT_TRUE(row.at(4).isNull());
    EXPECT_TRUE(row.at(5).isNull());
    EXPECT_EQ(CMPath::fromEncoded(answer.rows.at(1).at(2).toString()), folder("~1"_s));
    EXPECT_THAT(log().lines("DEBUG"_s), Contains("item 0: 'Stations' SEPARATOR (START)"_s));
    EXPECT_THAT(log().lines("TRACE"_s),
        Contains("Added child element as folder 'Stations', navigation: 'stations'"_s));
    EXPECT_THAT(log().lines().filter("SEPARATOR (END)"_s), IsEmpty());
}

TEST_F(TuneInRowsSeparatorTest, OpenTheirChildrenAsFolders)
{
    const QByteArray elements = section("Stations", "stations", text("a") + "," + text("b")) + ","
        + section("Shows", "", text("c"));
    EXPECT_EQ(titles(elements, folder("stations"_s).toEncoded()), QStringList({"a"_s, "b"_s}));
    EXPECT_EQ(titles(elements, folder("~1"_s).toEncoded()), QStringList("c"_s));
}

TEST_F(TuneInRowsSeparatorTest, AreHeadersFollowedByTheirChildrenInASingleList)
{
    singleList();
    const RowsAnswer answer = show(section("Stations", "stations", text("a") + "," + text("b"))
            + "," + section("Shows", "", text("c")) + "," + text("d"),
        {"title"_s, "type"_s, "mediaData"_s, "path"_s});
    EXPECT_EQ(answer.texts(), QStringList({"Stations"_s, "a"_s, "b"_s, "Shows"_s, "c"_s, "d"_s}));
    EXPECT_EQ(answer.count, 6);
    EXPECT_EQ(answer.rows.at(0).at(1).toInt(), VeskRolesType::Header());
    EXPECT_EQ(VeskMediaData(answer.rows.at(0).at(2).toHash()).metaData().serviceID(), "tunein"_s);
    EXPECT_TRUE(answer.rows.at(0).at(3).isNull());
    EXPECT_THAT(log().lines("TRACE"_s),
        Contains("Adding 2 child element(s) following separator 'Stations'"_s));
    EXPECT_THAT(log().lines("DEBUG"_s), Contains("item 0: 'Stations' SEPARATOR (END)"_s));
    EXPECT_THAT(log().lines("TRACE"_s).filter("navigation: '', maxLevel: 0, url: '"_s).size(), 2);
}

TEST_F(TuneInRowsSeparatorTest, AreExpandedOnTwoLevelsAndFoldersBelowInASingleList)
{
    singleList();
    const RowsAnswer answer = show(
        section("One", "one",
            section("Two", "two", section("Three", "three", text("deep")) + "," + text("x"))),
        {"title"_s, "type"_s, "path"_s});
    EXPECT_EQ(answer.texts(), QStringList({"One"_s, "Two"_s, "Three"_s, "x"_s}));
    EXPECT_EQ(answer.texts(1), QStringList({"2"_s, "2"_s, "1"_s, QString()}));
    EXPECT_EQ(CMPath::fromEncoded(answer.rows.at(2).at(2).toString()), folder("three"_s));
}

TEST_F(TuneInRowsSeparatorTest, JoinNavigationWithASemicolonThatDoesNotResolve)
{
    const QByteArray elements = section("One", "one",
        section("Two", "two", text("deep")) + "," + section("Three", "", text("deep")));
    const RowsAnswer answer = show(elements, {"title"_s, "path"_s}, folder("one"_s).toEncoded());
    EXPECT_EQ(answer.texts(), QStringList({"Two"_s, "Three"_s}));
    EXPECT_EQ(CMPath::fromEncoded(answer.rows.at(0).at(1).toString()), folder("one;two"_s));
    EXPECT_EQ(CMPath::fromEncoded(answer.rows.at(1).at(1).toString()), folder("one;~1"_s));

    EXPECT_THAT(titles(elements, folder("one;two"_s).toEncoded()), IsEmpty());
    EXPECT_THAT(
        log().lines("ERROR"_s), ElementsAre("Invalid navigation: key 'one;two' not found"_s));
}

TEST_F(TuneInRowsSeparatorTest, AreLookedUpAgainWithTheSameNavigationInASingleList)
{
    singleList();
    const QByteArray elements = section("One", "one",
        section("Two", "two", section("Three", "one", text("again"))) + ","
            + section("Four", "four", text("lost")));
    EXPECT_EQ(
        titles(elements, folder("one"_s).toEncoded()), QStringList({"Two"_s, "again"_s, "Four"_s}));
    EXPECT_THAT(log().lines("ERROR"_s), ElementsAre("Invalid navigation: key 'one' not found"_s));
}

TEST_F(TuneInRowsSeparatorTest, WithoutChildrenAreLoneHeadersInASingleList)
{
    singleList();
    EXPECT_EQ(titles(R"({"element":"outline","text":"Empty","key":"e"},)" + text("x")),
        QStringList({"Empty"_s, "x"_s}));
}

TEST_F(TuneInRowsNavigationTest, TakesAnIndexOrAKey)
{
    const QByteArray elements = text("0") + "," + text("1") + ","
        + section("C", "music", section("D", "", text("d")) + "," + text("e"));
    EXPECT_EQ(titles(elements, folder("~2"_s).toEncoded()), QStringList({"D"_s, "e"_s}));
    EXPECT_THAT(log().lines("DEBUG"_s), Contains("Looking for key '~2'"_s));
    EXPECT_THAT(log().lines("DEBUG"_s), Contains("key '~2' found at 2"_s));
    EXPECT_EQ(titles(elements, folder("music_~0"_s).toEncoded()), QStringList("d"_s));
    EXPECT_EQ(titles(elements, folder("~2_~0"_s).toEncoded()), QStringList("d"_s));
    EXPECT_EQ(titles(elements, folder("~02"_s).toEncoded()), QStringList({"D"_s, "e"_s}));
}

TEST_F(TuneInRowsNavigationTest, TakesTheFirstMatch)
{
    EXPECT_EQ(titles(section("A", "k", text("first")) + "," + section("B", "k", text("second")),
                  folder("k"_s).toEncoded()),
        QStringList("first"_s));
}

TEST_F(TuneInRowsNavigationTest, ThatDoesNotResolveIsAnEmptyScreen)
{
    const QByteArray elements
        = section("A", "a", text("x")) + "," + section("B", "b", text("y")) + "," + text("z");
    for (const char *key : {"~9", "~3", "music", "A", "~", "~-1", "~1x", "x~1",
             "~99999999999999999999", "~4294967296", "~18446744073709551616"}) {
        EXPECT_THAT(titles(elements, folder(QLatin1String(key)).toEncoded()), IsEmpty()) << key;
        EXPECT_THAT(log().lines("ERROR"_s),
            ElementsAre("Invalid navigation: key '"_s + QLatin1String(key) + "' not found"_s));
    }
}

TEST_F(TuneInRowsNavigationTest, KeepsItsEmptyParts)
{
    const QByteArray elements = section("A", "a", text("x"));
    for (const char *navigation : {"_a", "_", "a_"}) {
        EXPECT_THAT(titles(elements, folder(QLatin1String(navigation)).toEncoded()), IsEmpty())
            << navigation;
        EXPECT_THAT(log().lines("DEBUG"_s), Contains("Looking for key ''"_s));
    }
    // An empty part matches an element without a key.
    EXPECT_EQ(titles(section("A", "", section("B", "b", text("x"))), folder("_b"_s).toEncoded()),
        QStringList("x"_s));
}

TEST_F(TuneInRowsNavigationTest, IntoAnElementWithoutChildrenIsAnEmptyScreen)
{
    EXPECT_THAT(titles(text("x"), folder("~0"_s).toEncoded()), IsEmpty());
    EXPECT_THAT(log().lines("ERROR"_s), IsEmpty());
}

TEST_F(TuneInRowsNavigationTest, WorksInMethodScreens)
{
    const QByteArray elements = section("Stations", "stations", text("a") + "," + text("b")) + ","
        + section("Shows", "", text("c"));
    answer("/Search.ashx", screen(elements));
    answer("/Tune.ashx", screen(elements));
    start();
    const CMPath search
        = path("TuneIn:browse"_s, {{"veskTuneInMethod"_s, "search"_s}, {"query"_s, "x"_s}});
    const auto opened = [](CMPath screenPath, const QString &navigation) {
        screenPath.addParam("veskNavigation"_s, navigation);
        return rows(screenPath.toEncoded()).texts();
    };
    EXPECT_EQ(opened(search, "stations"_s), QStringList({"a"_s, "b"_s}));
    EXPECT_EQ(opened(search, "~1"_s), QStringList("c"_s));
    EXPECT_THAT(opened(search, "~2"_s), IsEmpty());
    EXPECT_EQ(
        opened(path("TuneIn:browse"_s, {{"veskTuneInMethod"_s, "tune"_s}, {"guideId"_s, "p1"_s}}),
            "stations"_s),
        QStringList({"a"_s, "b"_s}));
    const QByteArray found = "GET /Search.ashx?query=x&" + CommonItems;
    expectRequests({found, found, found, "GET /Tune.ashx?id=p1&" + CommonItems});
}

TEST_F(TuneInRowsFavoritesTest, ComeFirstOnARootScreenWithoutThem)
{
    const RowsAnswer answer
        = show(Link, {"title"_s, "path"_s, "type"_s, "icon"_s}, "TuneIn:browse"_s);
    EXPECT_EQ(answer.texts(), QStringList({"My Favorites"_s, "Music"_s}));
    EXPECT_EQ(answer.count, 2);
    const QVariantList row = answer.rows.at(0);
    EXPECT_EQ(CMPath::fromEncoded(row.at(1).toString()),
        path("TuneIn:browse/uri/Browse.ashx"_s,
            {{"c"_s, "presets"_s}, {"veskDisplayName"_s, "My Favorites"_s}}));
    EXPECT_EQ(row.at(2).toInt(), VeskRolesType::Container());
    EXPECT_EQ(row.at(3).toString(), VeskTuneInMyPresetsIcon());
    EXPECT_THAT(log().lines("INFO"_s),
        ElementsAre(
            "Browsing root and there is no folder 'My Presets' in it, so adding it at the first position ..."_s));
}

TEST_F(TuneInRowsFavoritesTest, AreTitledInTheUsersLanguage)
{
    const ContextTranslator translator;
    const RowsAnswer answer = show(Link, {"title"_s, "path"_s}, "TuneIn:browse"_s);
    EXPECT_EQ(answer.texts(), QStringList({"TuneIn|My Favorites"_s, "Music"_s}));
    EXPECT_EQ(CMPath::fromEncoded(answer.texts(1).value(0)).param("veskDisplayName"_s),
        "TuneIn|My Favorites"_s);
}

TEST_F(TuneInRowsFavoritesTest, AreNotAddedTwice)
{
    EXPECT_EQ(
        titles(Link + "," + presets(), "TuneIn:browse"_s), QStringList({"Music"_s, "Favorites"_s}));
    EXPECT_THAT(log().lines("INFO"_s), IsEmpty());
}

TEST_F(TuneInRowsFavoritesTest, AreNotAddedToAnEmptyRoot)
{
    EXPECT_THAT(titles({}, "TuneIn:browse"_s), IsEmpty());
}

TEST_F(TuneInRowsFavoritesTest, AreNotAddedElsewhere)
{
    EXPECT_EQ(titles(Link, "TuneIn:browse/uri/Browse.ashx"_s), QStringList("Music"_s));
    EXPECT_EQ(titles(Link, screenPath()), QStringList("Music"_s));
}

TEST_F(TuneInRowsFavoritesTest, CountInTheIndicesOfTheRootScreen)
{
    const RowsAnswer answer
        = show(section("A", "", text("x")), {"title"_s, "path"_s}, "TuneIn:browse"_s);
    ASSERT_EQ(answer.texts(), QStringList({"My Favorites"_s, "A"_s}));
    EXPECT_EQ(
        CMPath::fromEncoded(answer.rows.at(1).at(1).toString()).param("veskNavigation"_s), "~1"_s);
}

TEST_F(TuneInRowsFavoritesTest, AreAddedToTheSectionsOfARootInASingleListToo)
{
    singleList();
    EXPECT_EQ(
        titles(presets() + "," + section("A", "a", text("x")) + "," + section("B", "b", presets()),
            "TuneIn:browse"_s),
        QStringList({"Favorites"_s, "A"_s, "My Favorites"_s, "x"_s, "B"_s, "Favorites"_s}));
    EXPECT_EQ(titles(section("Empty", "e", {}), "TuneIn:browse"_s),
        QStringList({"My Favorites"_s, "Empty"_s}));
}
