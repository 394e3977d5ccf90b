#include "api/nodes/CMContainerNode.h"
#include "api/tunein/VeskTuneInIcons.h"
#include "api/values/VeskValuePaths.h"
#include "api/web/VeskJson.h"
#include "tests/modules/tunein/TuneInFixture.h"

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const QByteArray Link = R"({"element":"outline","type":"link","text":"Music","key":"music",)"
                        R"("URL":"http://opml.radiotime.com/Browse.ashx?c=music"})";
const QByteArray Presets
    = R"({"element":"outline","type":"link","text":"Favorites","key":"presets",)"
      R"("URL":"http://opml.radiotime.com/Browse.ashx?c=presets"})";

QByteArray text(const QByteArray &name)
{
    return R"({"element":"outline","type":"text","text":")" + name + R"("})";
}

/// A separator around \a children; without a key when it is empty.
QByteArray section(const QByteArray &name, const QByteArray &key, const QByteArray &children)
{
    return R"({"element":"outline","text":")" + name + R"(",)"
        + (key.isEmpty() ? QByteArray() : R"("key":")" + key + R"(",)") + R"("children":[)"
        + children + "]}";
}

const QString Screen = "TuneIn:browse/uri/Browse.ashx?c=x"_s;

class TuneInRowsTest : public TuneInFixture {
protected:
    /// The rows of a screen whose answer holds these elements.
    RowsAnswer show(const QByteArray &elements, const QStringList &roles = {"title"_s},
        const QString &path = Screen)
    {
        answer("/Browse.ashx", screen(elements));
        if (!m_started)
            start();
        m_started = true;
        log().clear();
        server().clearRequests();
        return rows(path, roles);
    }

    QStringList titles(const QByteArray &elements, const QString &path = Screen)
    {
        const RowsAnswer answer = show(elements, {"title"_s}, path);
        EXPECT_TRUE(answer.error.isEmpty());
        return answer.texts();
    }

    void singleList() { set(VeskChildElementsInSingleListPath(), true); }

    /// Screen's own URL as a path: what its folders open again.
    static CMPath folder(const QString &navigation)
    {
        return path("TuneIn:browse/uri/Browse.ashx"_s,
            {{"c"_s, "x"_s}, {"render"_s, "json"_s}, {"formats"_s, "mp3,aac"_s},
                {"partnerId"_s, "partner"_s}, {"serial"_s, "ABC"_s}, {"locale"_s, "en"_s},
                {"veskNavigation"_s, navigation}});
    }

private:
    bool m_started = false;
};

using TuneInRowsTextTest = TuneInRowsTest;
using TuneInRowsLinkTest = TuneInRowsTest;
using TuneInRowsSeparatorTest = TuneInRowsTest;
using TuneInRowsNavigationTest = TuneInRowsTest;
using TuneInRowsFavoritesTest = TuneInRowsTest;

} // namespace

TEST_F(TuneInRowsTest, reportAnEmptyBody)
{
    answerAll(QByteArray());
    start();
    const RowsAnswer answer = rows(Screen);
    EXPECT_EQ(answer.error.message(), TrString("TuneIn", "Invalid response."));
    EXPECT_EQ(answer.error.name(), CMError::DefaultName());
    EXPECT_EQ(answer.error.title().toString(), CMError::DefaultTitle());
    EXPECT_TRUE(answer.value.isNull());
    EXPECT_THAT(log().lines("ERROR"_s), ElementsAre("Received empty data!"_s));
}

TEST_F(TuneInRowsTest, reportJsonThatDoesNotParse)
{
    const QByteArray broken = R"({"head":)";
    answerAll(broken);
    start();
    const RowsAnswer answer = rows(Screen);
    EXPECT_EQ(answer.error.message(), TrString("TuneIn", "Invalid data returned."));
    EXPECT_EQ(answer.error.name(), CMError::DefaultName());
    EXPECT_TRUE(answer.value.isNull());
    VeskError parseError;
    VeskJson::parse(broken, parseError);
    EXPECT_THAT(log().lines("ERROR"_s),
        ElementsAre("Failed to parse data, error: "_s + printed(parseError) + R"({"head":)"_s));
}

TEST_F(TuneInRowsTest, areNoneAndNoErrorForAFaultOfTuneIn)
{
    answerAll(
        QByteArray(
            R"({"head":{"status":"400","fault":"Invalid ID","fault_code":"request.idInvalid"},"body":[)")
        + text("never shown") + "]}");
    start();
    log().clear();
    const RowsAnswer answer = rows(Screen);
    EXPECT_TRUE(answer.error.isEmpty());
    EXPECT_EQ(answer.count, 0);
    EXPECT_THAT(answer.rows, IsEmpty());
    EXPECT_FALSE(answer.value.isNull());
    EXPECT_THAT(log().lines("ERROR"_s), ElementsAre("Browsing failed, fault: \"Invalid ID"_s));
    EXPECT_THAT(log().lines("TRACE"_s),
        Contains("Enter static VeskTuneInFaultCode::Enum TuneInRequest::parseTuneInFaultCode("
                 "const QString&): faultCode: 'request.idInvalid'"_s));
}

TEST_F(TuneInRowsTest, areNoneForAStatusThatIsNotExactly200)
{
    for (const char *head : {R"({"status":"200 "})", R"({})", "null", "[]", R"({"status":null})"}) {
        answerAll(QByteArray(R"({"head":)") + head + R"(,"body":[)" + text("x") + "]}");
        if (!CMRoot()->prefixes().contains("TuneIn"_s))
            start();
        const RowsAnswer answer = rows(Screen);
        EXPECT_TRUE(answer.error.isEmpty()) << head;
        EXPECT_EQ(answer.count, 0) << head;
    }
}

TEST_F(TuneInRowsTest, logWhatIsParsed)
{
    const QByteArray body = screen(text("x"));
    show(text("x"));
    EXPECT_THAT(log().lines("DEBUG"_s),
        ElementsAre("parsing data: size: "_s + QString::number(body.size())
                + ", navigation: , URL: http://opml.radiotime.com/Browse.ashx?c=x&"_s
                + QLatin1String(CommonItems),
            "Data successfully parsed."_s, "item 0: 'x' (text)"_s));
    EXPECT_THAT(
        log().lines("TRACE"_s).filter("navigation: '', maxLevel: 1, url: 'http://opml."_s).size(),
        1);
}

TEST_F(TuneInRowsTest, answerTheRolesInTheOrderOfTheRequest)
{
    const RowsAnswer answer
        = show(Link, {"path"_s, "icon"_s, "title"_s, "nothingKnown"_s, "title"_s});
    ASSERT_EQ(answer.rows.size(), 1);
    const QVariantList row = answer.rows.constFirst();
    ASSERT_EQ(row.size(), 5);
    EXPECT_EQ(row.at(0).toString(),
        path("TuneIn:browse/uri/Browse.ashx?c=music&veskDisplayName=Music"_s).toEncoded());
    EXPECT_EQ(row.at(1).toString(), VeskTuneInMusicIcon());
    EXPECT_EQ(TrString::fromVariant(row.at(2)).toString(), "Music"_s);
    EXPECT_TRUE(row.at(3).isNull());
    EXPECT_EQ(row.at(4), row.at(2));
}

TEST_F(TuneInRowsTest, areNullsForAnUnknownElement)
{
    const RowsAnswer answer = show(R"({"element":"outline","type":"object","text":"a"},)"
                                   R"({"element":"station","type":"link","text":"b"},{},)"
            + text("c"),
        {"title"_s, "path"_s, "type"_s});
    ASSERT_EQ(answer.count, 4);
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(answer.rows.at(i).size(), 3);
        EXPECT_TRUE(answer.rows.at(i).at(0).isNull() && answer.rows.at(i).at(1).isNull()
            && answer.rows.at(i).at(2).isNull());
    }
    EXPECT_EQ(answer.texts().at(3), "c"_s);
    EXPECT_THAT(log().lines("WARN"_s),
        ElementsAre("Browsing: unknown element: 'outline', type: 'object'"_s,
            "Browsing: unknown element: 'station', type: 'link'"_s,
            "Browsing: unknown element: '', type: ''"_s));
}

TEST_F(TuneInRowsTextTest, carryTheirTextAndNothingElse)
{
    const RowsAnswer answer = show(text("No results for x"),
        {"title"_s, "id"_s, "preferred"_s, "type"_s, "path"_s, "context"_s, "mediaData"_s, "icon"_s,
            "description"_s, "audioType"_s});
    ASSERT_EQ(answer.rows.size(), 1);
    const QVariantList row = answer.rows.constFirst();
    EXPECT_EQ(TrString::fromVariant(row.at(0)).toString(), "No results for x"_s);
    EXPECT_EQ(row.at(1).type(), QVariant::String);
    EXPECT_EQ(row.at(1).toString(), QString());
    EXPECT_EQ(row.at(2), QVariant(false));
    for (int i = 3; i < row.size(); ++i)
        EXPECT_TRUE(row.at(i).isNull()) << i;
}

TEST_F(TuneInRowsTextTest, areIdentifiedByGuideIdThenKey)
{
    const RowsAnswer answer
        = show(R"({"element":"outline","type":"text","guide_id":"g79","key":"k"},)"
               R"({"element":"outline","type":"text","key":"k"},)"
               R"({"element":"outline","type":"text","guide_id":"","key":""})",
            {"id"_s});
    EXPECT_EQ(answer.texts(), QStringList({"id=g79"_s, "c=k"_s, QString()}));
}

TEST_F(TuneInRowsTextTest, arePreferredWhenTheyAreTheDefault)
{
    const RowsAnswer answer = show(R"({"element":"outline","type":"text","is_default":"true"},)"
                                   R"({"element":"outline","type":"text","is_default":"True"},)"
                                   R"({"element":"outline","type":"text","is_default":"1"},)"
                                   R"({"element":"outline","type":"text"})",
        {"preferred"_s});
    EXPECT_EQ(answer.rows.at(0).at(0), QVariant(true));
    for (int i = 1; i < 4; ++i)
        EXPECT_EQ(answer.rows.at(i).at(0), QVariant(false));
}

TEST_F(TuneInRowsLinkTest, leadToTheirScreen)
{
    const RowsAnswer answer
        = show(R"({"element":"outline","type":"link","text":"Rock & Pop","guide_id":"c1",)"
               R"("image":"http://i/x.png","subtext":"sub",)"
               R"("URL":"http://opml.radiotime.com/Browse.ashx?id=c1"})",
            {"title"_s, "type"_s, "path"_s, "context"_s, "mediaData"_s, "icon"_s, "description"_s,
                "audioType"_s, "id"_s, "preferred"_s});
    const QVariantList row = answer.rows.constFirst();
    EXPECT_EQ(TrString::fromVariant(row.at(0)).toString(), "Rock & Pop"_s);
    EXPECT_EQ(row.at(1).toInt(), VeskRolesType::Container());
    EXPECT_EQ(CMPath::fromEncoded(row.at(2).toString()),
        path("TuneIn:browse/uri/Browse.ashx"_s,
            {{"id"_s, "c1"_s}, {"veskDisplayName"_s, "Rock & Pop"_s}}));
    EXPECT_TRUE(row.at(3).isNull());
    const VeskMediaData media(row.at(4).toHash());
    EXPECT_EQ(media.metaData().serviceID(), "tunein"_s);
    EXPECT_EQ(media.metaData().size(), 1);
    for (int i = 5; i < row.size(); ++i)
        EXPECT_TRUE(row.at(i).isNull()) << i;
    EXPECT_THAT(log().lines("DEBUG"_s), Contains("item 0: 'Rock & Pop' (link)"_s));
}

TEST_F(TuneInRowsLinkTest, haveTheIconOfTheirCategory)
{
    const QList<QPair<QByteArray, QString>> icons {{"presets", VeskTuneInMyPresetsIcon()},
        {"local", VeskTuneInLocalRadioIcon()}, {"music", VeskTuneInMusicIcon()},
        {"talk", VeskTuneInTalkIcon()}, {"sports", VeskTuneInSportsIcon()},
        {"location", VeskTuneInByLocationIcon()}, {"language", VeskTuneInByLanguageIcon()},
        {"podcast", VeskTuneInPodcastsIcon()}};
    QByteArray elements;
    QStringList expected;
    for (const auto &icon : icons) {
        elements += R"({"element":"outline","type":"link","key":")" + icon.first + R"("},)";
        expected.append(icon.second);
        EXPECT_FALSE(icon.second.isEmpty());
    }
    EXPECT_EQ(show(elements + R"({"element":"outline","type":"link","key":"Music","image":"x"})",
                  {"icon"_s})
                  .texts(),
        expected + QStringList(QString()));
}

TEST_F(TuneInRowsLinkTest, ofShowsHaveTheirImageAndAContextMenu)
{
    const RowsAnswer answer = show(
        R"({"element":"outline","type":"link","text":"Folk Hour","guide_id":"p1","item":"show",)"
        R"("image":"http://i/p1.png","URL":"http://opml.radiotime.com/Tune.ashx?c=pbrowse&id=p1&sid=s9"})",
        {"icon"_s, "context"_s});
    const QVariantList row = answer.rows.constFirst();
    EXPECT_EQ(row.at(0).toString(), "http://i/p1.png"_s);
    const VeskRoles context(VeskHash(row.at(1).toHash()));
    EXPECT_EQ(context.path(),
        path("TuneIn:browser_context"_s,
            {{"guideId"_s, "p1"_s}, {"sid"_s, "s9"_s},
                {"veskMatchingPath"_s, "TuneIn:browse?veskGuideId=p1"_s}}));
    EXPECT_EQ(context.containerType(), 100);
    EXPECT_EQ(context.mediaData().metaData().serviceID(), "tunein"_s);
    EXPECT_THAT(log().lines("WARN"_s), IsEmpty());
}

TEST_F(TuneInRowsLinkTest, ofTopicsWithoutSidWarnAndHaveAContextMenuWithoutIt)
{
    const RowsAnswer answer = show(
        R"({"element":"outline","type":"link","text":"Episode","guide_id":"t1","item":"topic",)"
        R"("URL":"http://opml.radiotime.com/Tune.ashx?id=t1"})",
        {"icon"_s, "context"_s});
    EXPECT_TRUE(answer.rows.constFirst().at(0).isNull());
    EXPECT_EQ(VeskRoles(VeskHash(answer.rows.constFirst().at(1).toHash())).path(),
        path("TuneIn:browser_context"_s,
            {{"guideId"_s, "t1"_s}, {"veskMatchingPath"_s, "TuneIn:browse?veskGuideId=t1"_s}}));
    EXPECT_THAT(log().lines("WARN"_s),
        ElementsAre("Browsing category with show item in it, but without 'sid' attribute set."_s));
}

TEST_F(TuneInRowsLinkTest, ofShowsWithoutGuideIdHaveNoContextMenu)
{
    const RowsAnswer answer = show(
        R"({"element":"outline","type":"link","item":"show","image":"i","URL":"http://x/?sid=s1"})",
        {"icon"_s, "context"_s});
    EXPECT_EQ(answer.rows.constFirst().at(0).toString(), "i"_s);
    EXPECT_TRUE(answer.rows.constFirst().at(1).isNull());
}

TEST_F(TuneInRowsLinkTest, ofShowsOnTheRootScreenAreLikeOthers)
{
    const RowsAnswer answer = show(Presets
            + R"(,{"element":"outline","type":"link","guide_id":"p1","item":"show",)"
              R"("image":"i","URL":"http://x/?sid=s1"})",
        {"icon"_s, "context"_s}, "TuneIn:browse"_s);
    ASSERT_EQ(answer.rows.size(), 2);
    EXPECT_TRUE(answer.rows.at(1).at(0).isNull());
    EXPECT_TRUE(answer.rows.at(1).at(1).isNull());
}

TEST_F(TuneInRowsLinkTest, preferTheIconOfTheCategoryToTheImage)
{
    const RowsAnswer answer = show(
        R"({"element":"outline","type":"link","key":"talk","item":"show","image":"i","URL":"http://x/?sid=s1"})",
        {"icon"_s});
    EXPECT_EQ(answer.texts(), QStringList(VeskTuneInTalkIcon()));
}

TEST_F(TuneInRowsLinkTest, toTheSettingsPageAreLeftOut)
{
    const QByteArray settings
        = R"({"element":"outline","type":"link","key":"settings","text":"Settings",)"
          R"("URL":"http://opml.radiotime.com/Settings.aspx?x=y"})";
    EXPECT_EQ(titles(settings + "," + text("after")), QStringList("after"_s));
    EXPECT_THAT(log().lines("DEBUG"_s), Contains("Omitting the last root menu item: Settings"_s));
    EXPECT_EQ(titles(Presets + "," + settings, "TuneIn:browse"_s), QStringList("Favorites"_s));
}

TEST_F(TuneInRowsLinkTest, withTheSettingsKeyAndAnotherUrlStay)
{
    EXPECT_EQ(titles(R"({"element":"outline","type":"link","key":"settings","text":"Settings",)"
                     R"("URL":"http://opml.radiotime.com/Browse.ashx?c=settings"},)"
                     R"({"element":"outline","type":"link","key":"other","text":"Other",)"
                     R"("URL":"http://opml.radiotime.com/Settings.aspx"})"),
        QStringList({"Settings"_s, "Other"_s}));
}

TEST_F(TuneInRowsLinkTest, mayHaveAnyKey)
{
    EXPECT_EQ(titles(R"({"element":"outline","type":"link","key":"a_b~c","text":"Odd"})"),
        QStringList("Odd"_s));
}

TEST_F(TuneInRowsSeparatorTest, areFoldersWithoutASingleList)
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

TEST_F(TuneInRowsSeparatorTest, openTheirChildrenAsFolders)
{
    const QByteArray elements = section("Stations", "stations", text("a") + "," + text("b")) + ","
        + section("Shows", "", text("c"));
    EXPECT_EQ(titles(elements, folder("stations"_s).toEncoded()), QStringList({"a"_s, "b"_s}));
    EXPECT_EQ(titles(elements, folder("~1"_s).toEncoded()), QStringList("c"_s));
}

TEST_F(TuneInRowsSeparatorTest, areHeadersFollowedByTheirChildrenInASingleList)
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

TEST_F(TuneInRowsSeparatorTest, areExpandedOnTwoLevelsAndFoldersBelow)
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

TEST_F(TuneInRowsSeparatorTest, joinNavigationWithASemicolonThatLeadsNowhere)
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

TEST_F(TuneInRowsSeparatorTest, areLookedUpAgainWithTheSameNavigationInASingleList)
{
    singleList();
    const QByteArray elements = section("One", "one",
        section("Two", "two", section("Three", "one", text("again"))) + ","
            + section("Four", "four", text("lost")));
    EXPECT_EQ(
        titles(elements, folder("one"_s).toEncoded()), QStringList({"Two"_s, "again"_s, "Four"_s}));
    EXPECT_THAT(log().lines("ERROR"_s), ElementsAre("Invalid navigation: key 'one' not found"_s));
}

TEST_F(TuneInRowsSeparatorTest, withoutChildrenAreLoneHeadersInASingleList)
{
    singleList();
    EXPECT_EQ(titles(R"({"element":"outline","text":"Empty","key":"e"},)" + text("x")),
        QStringList({"Empty"_s, "x"_s}));
}

TEST_F(TuneInRowsNavigationTest, takesAnIndexOrAKey)
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

TEST_F(TuneInRowsNavigationTest, takesTheFirstMatch)
{
    EXPECT_EQ(titles(section("A", "k", text("first")) + "," + section("B", "k", text("second")),
                  folder("k"_s).toEncoded()),
        QStringList("first"_s));
}

TEST_F(TuneInRowsNavigationTest, thatLeadsNowhereIsAnEmptyScreen)
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

TEST_F(TuneInRowsNavigationTest, keepsItsEmptyParts)
{
    const QByteArray elements = section("A", "a", text("x"));
    for (const char *navigation : {"_a", "_", "a_"}) {
        EXPECT_THAT(titles(elements, folder(QLatin1String(navigation)).toEncoded()), IsEmpty())
            << navigation;
        EXPECT_THAT(log().lines("DEBUG"_s), Contains("Looking for key ''"_s));
    }
    // An element without a key is what an empty part finds.
    EXPECT_EQ(titles(section("A", "", section("B", "b", text("x"))), folder("_b"_s).toEncoded()),
        QStringList("x"_s));
}

TEST_F(TuneInRowsNavigationTest, intoAnElementWithoutChildrenIsAnEmptyScreen)
{
    EXPECT_THAT(titles(text("x"), folder("~0"_s).toEncoded()), IsEmpty());
    EXPECT_THAT(log().lines("ERROR"_s), IsEmpty());
}

TEST_F(TuneInRowsFavoritesTest, comeFirstOnARootScreenWithoutThem)
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

TEST_F(TuneInRowsFavoritesTest, areNotAddedWhereTheyAre)
{
    EXPECT_EQ(
        titles(Link + "," + Presets, "TuneIn:browse"_s), QStringList({"Music"_s, "Favorites"_s}));
    EXPECT_THAT(log().lines("INFO"_s), IsEmpty());
}

TEST_F(TuneInRowsFavoritesTest, areNotAddedToAnEmptyRoot)
{
    EXPECT_THAT(titles({}, "TuneIn:browse"_s), IsEmpty());
}

TEST_F(TuneInRowsFavoritesTest, areNotAddedElsewhere)
{
    EXPECT_EQ(titles(Link, "TuneIn:browse/uri/Browse.ashx"_s), QStringList("Music"_s));
    EXPECT_EQ(titles(Link, Screen), QStringList("Music"_s));
}

TEST_F(TuneInRowsFavoritesTest, countAmongTheIndicesOfTheRootScreen)
{
    const RowsAnswer answer
        = show(section("A", "", text("x")), {"title"_s, "path"_s}, "TuneIn:browse"_s);
    ASSERT_EQ(answer.texts(), QStringList({"My Favorites"_s, "A"_s}));
    EXPECT_EQ(
        CMPath::fromEncoded(answer.rows.at(1).at(1).toString()).param("veskNavigation"_s), "~1"_s);
}

TEST_F(TuneInRowsFavoritesTest, areAddedToTheSectionsOfARootInASingleListToo)
{
    singleList();
    EXPECT_EQ(
        titles(Presets + "," + section("A", "a", text("x")) + "," + section("B", "b", Presets),
            "TuneIn:browse"_s),
        QStringList({"Favorites"_s, "A"_s, "My Favorites"_s, "x"_s, "B"_s, "Favorites"_s}));
    EXPECT_EQ(titles(section("Empty", "e", {}), "TuneIn:browse"_s),
        QStringList({"My Favorites"_s, "Empty"_s}));
}
