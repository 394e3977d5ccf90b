// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/tunein/VeskTuneInIcons.h"
#include "api/web/VeskJson.h"
#include "tests/modules/tunein/RowsFixture.h"

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const QByteArray Link = R"({"element":"outline","type":"link","text":"Music","key":"music",)"
                        R"("URL":"http://opml.radiotime.com/Browse.ashx?c=music"})";

using TuneInRowsTextTest = TuneInRowsTest;
using TuneInRowsLinkTest = TuneInRowsTest;

} // namespace

TEST_F(TuneInRowsTest, ReportAnEmptyBody)
{
    answerAll(QByteArray());
    start();
    const RowsAnswer answer = rows(screenPath());
    EXPECT_EQ(answer.error.message(), TrString("TuneIn", "Invalid response."));
    EXPECT_EQ(answer.error.name(), CMError::DefaultName());
    EXPECT_EQ(answer.error.title().toString(), CMError::DefaultTitle());
    EXPECT_TRUE(answer.value.isNull());
    EXPECT_THAT(log().lines("ERROR"_s), ElementsAre("Received empty data!"_s));
}

TEST_F(TuneInRowsTest, ReportJsonThatDoesNotParse)
{
    const QByteArray broken = R"({"head":)";
    answerAll(broken);
    start();
    const RowsAnswer answer = rows(screenPath());
    EXPECT_EQ(answer.error.message(), TrString("TuneIn", "Invalid data returned."));
    EXPECT_EQ(answer.error.name(), CMError::DefaultName());
    EXPECT_TRUE(answer.value.isNull());
    VeskError parseError;
    VeskJson::parse(broken, parseError);
    EXPECT_THAT(log().lines("ERROR"_s),
        ElementsAre("Failed to parse data, error: "_s + printed(parseError) + R"({"head":)"_s));
}

TEST_F(TuneInRowsTest, AreEmptyWithoutErrorForAFaultOfTuneIn)
{
    answerAll(
        QByteArray(
            R"({"head":{"status":"400","fault":"Invalid ID","fault_code":"request.idInvalid"},"body":[)")
        + text("never shown") + "]}");
    start();
    log().clear();
    const RowsAnswer answer = rows(screenPath());
    EXPECT_TRUE(answer.error.isEmpty());
    EXPECT_EQ(answer.count, 0);
    EXPECT_THAT(answer.rows, IsEmpty());
    EXPECT_FALSE(answer.value.isNull());
    EXPECT_THAT(log().lines("ERROR"_s), ElementsAre("Browsing failed, fault: \"Invalid ID"_s));
    EXPECT_THAT(log().lines("TRACE"_s),
        Contains("Enter static VeskTuneInFaultCode::Enum TuneInRequest::parseTuneInFaultCode("
                 "const QString&): faultCode: 'request.idInvalid'"_s));
}

TEST_F(TuneInRowsTest, AreEmptyWithoutErrorForAFaultOnTheRootScreen)
{
    answerAll(QByteArray(R"({"head":{"status":"403","fault":"No partner"},"body":[)")
        + text("never shown") + "]}");
    start();
    for (const char *root : {"TuneIn:browse", "TuneIn:"}) {
        log().clear();
        const RowsAnswer answer = rows(QLatin1String(root));
        EXPECT_TRUE(answer.error.isEmpty()) << root;
        EXPECT_FALSE(answer.value.isNull()) << root;
        EXPECT_EQ(answer.count, 0) << root;
        EXPECT_THAT(answer.rows, IsEmpty()) << root;
        EXPECT_EQ(answer.roles.path(), path("TuneIn:browse"_s)) << root;
        EXPECT_THAT(log().lines("ERROR"_s), ElementsAre("Browsing failed, fault: \"No partner"_s));
        EXPECT_THAT(log().lines("INFO"_s), IsEmpty()) << root;
    }
}

TEST_F(TuneInRowsTest, AreEmptyForAStatusThatIsNotExactly200)
{
    for (const char *head : {R"({"status":"200 "})", R"({})", "null", "[]", R"({"status":null})"}) {
        answerAll(QByteArray(R"({"head":)") + head + R"(,"body":[)" + text("x") + "]}");
        if (!CMRoot()->prefixes().contains("TuneIn"_s))
            start();
        const RowsAnswer answer = rows(screenPath());
        EXPECT_TRUE(answer.error.isEmpty()) << head;
        EXPECT_EQ(answer.count, 0) << head;
    }
}

TEST_F(TuneInRowsTest, LogWhatIsParsed)
{
    const QByteArray body = screen(text("x"));
    show(text("x"));
    EXPECT_THAT(log().lines("DEBUG"_s),
        ElementsAre("parsing data: size: "_s + QString::number(body.size())
                + ", navigation: , URL: http://opml.radiotime.com/Browse.ashx?c=x&"_s
                + QLatin1String(CommonItems),
            "Data successfully parsed."_s, "item 0: 'x' (text)"_s));
    EXPECT_THAT(log().lines("TRACE"_s).filter("maxLevel: "_s),
        ElementsAre("Enter QVariantList TuneInBrowseNode::fillRows(const CMGetRowsRequest&, "
                    "VeskList<VeskTuneInBodyElement>, VeskUrl, QString, int): navigation: '', "
                    "maxLevel: 1, url: 'http://opml.radiotime.com/Browse.ashx?c=x&"_s
            + QLatin1String(CommonItems) + "'"_s));
}

TEST_F(TuneInRowsTest, AnswerTheRolesInTheOrderOfTheRequest)
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

TEST_F(TuneInRowsTest, AreNullsForAnUnknownElement)
{
    const RowsAnswer answer = show(R"({"element":"outline","type":"object","text":"a"},)"
                                   R"({"element":"station","type":"link","text":"b"},{},)"
                                   R"({"element":"audio","type":"audio","text":"d"},)"
                                   R"({"element":"text","type":"text","text":"e"},)"
            + text("c"),
        {"title"_s, "path"_s, "type"_s});
    ASSERT_EQ(answer.count, 6);
    for (int i = 0; i < 5; ++i) {
        ASSERT_EQ(answer.rows.at(i).size(), 3);
        EXPECT_TRUE(answer.rows.at(i).at(0).isNull() && answer.rows.at(i).at(1).isNull()
            && answer.rows.at(i).at(2).isNull());
    }
    EXPECT_EQ(answer.texts().at(5), "c"_s);
    EXPECT_THAT(log().lines("WARN"_s),
        ElementsAre("Browsing: unknown element: 'outline', type: 'object'"_s,
            "Browsing: unknown element: 'station', type: 'link'"_s,
            "Browsing: unknown element: '', type: ''"_s,
            "Browsing: unknown element: 'audio', type: 'audio'"_s,
            "Browsing: unknown element: 'text', type: 'text'"_s));
}

TEST_F(TuneInRowsTest, WarnOfAShowWithoutSidWhateverItsElement)
{
    const QString warning
        = "Browsing category with show item in it, but without 'sid' attribute set."_s;
    for (const char *kind : {R"("element":"outline")", R"("element":"outline","type":"text")",
             R"("element":"outline","type":"object")", R"("element":"station","type":"link")"}) {
        const QByteArray element
            = QByteArray("{") + kind + R"(,"text":"A","item":"show","URL":"http://h/x?id=p1)";
        titles(element + R"("})");
        EXPECT_THAT(log().lines("WARN"_s), Contains(warning).Times(1)) << kind;
        titles(element + R"(&sid=s1"})");
        EXPECT_THAT(log().lines("WARN"_s), Contains(warning).Times(0)) << kind;
    }
}

TEST_F(TuneInRowsTextTest, CarryOnlyTheirText)
{
    const RowsAnswer answer = show(text("No results for x"),
        {"title"_s, "id"_s, "preferred"_s, "type"_s, "path"_s, "context"_s, "mediaData"_s, "icon"_s,
            "description"_s, "audioType"_s});
    ASSERT_EQ(answer.rows.size(), 1);
    const QVariantList row = answer.rows.constFirst();
    EXPECT_EQ(TrString::fromVariant(row.at(0)).toString(), "No results for x"_s);
    EXPECT_EQ(row.at(1).userType(), int(QMetaType::QString));
    EXPECT_EQ(row.at(1).toString(), QString());
    EXPECT_EQ(row.at(2), QVariant(false));
    for (int i = 3; i < row.size(); ++i)
        EXPECT_TRUE(row.at(i).isNull()) << i;
}

TEST_F(TuneInRowsTextTest, AreIdentifiedByGuideIdThenKey)
{
    const RowsAnswer answer
        = show(R"({"element":"outline","type":"text","guide_id":"g79","key":"k"},)"
               R"({"element":"outline","type":"text","key":"k"},)"
               R"({"element":"outline","type":"text","guide_id":"","key":""})",
            {"id"_s});
    EXPECT_EQ(answer.texts(), QStringList({"id=g79"_s, "c=k"_s, QString()}));
}

TEST_F(TuneInRowsTextTest, ArePreferredWhenTheyAreTheDefault)
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

TEST_F(TuneInRowsLinkTest, OpenTheirScreen)
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

TEST_F(TuneInRowsLinkTest, HaveTheIconOfTheirCategory)
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

TEST_F(TuneInRowsLinkTest, OfShowsHaveTheirImageAndAContextMenu)
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

TEST_F(TuneInRowsLinkTest, OfTopicsWithoutSidWarnAndHaveAContextMenuWithoutIt)
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

TEST_F(TuneInRowsLinkTest, OfShowsWithoutGuideIdHaveNoContextMenu)
{
    const RowsAnswer answer = show(
        R"({"element":"outline","type":"link","item":"show","image":"i","URL":"http://x/?sid=s1"})",
        {"icon"_s, "context"_s});
    EXPECT_EQ(answer.rows.constFirst().at(0).toString(), "i"_s);
    EXPECT_TRUE(answer.rows.constFirst().at(1).isNull());
}

TEST_F(TuneInRowsLinkTest, OfShowsOnTheRootScreenHaveNoImageAndNoContextMenu)
{
    const RowsAnswer answer = show(presets()
            + R"(,{"element":"outline","type":"link","guide_id":"p1","item":"show",)"
              R"("image":"i","URL":"http://x/?sid=s1"})",
        {"icon"_s, "context"_s}, "TuneIn:browse"_s);
    ASSERT_EQ(answer.rows.size(), 2);
    EXPECT_TRUE(answer.rows.at(1).at(0).isNull());
    EXPECT_TRUE(answer.rows.at(1).at(1).isNull());
}

TEST_F(TuneInRowsLinkTest, PreferTheIconOfTheCategoryToTheImage)
{
    const RowsAnswer answer = show(
        R"({"element":"outline","type":"link","key":"talk","item":"show","image":"i","URL":"http://x/?sid=s1"})",
        {"icon"_s});
    EXPECT_EQ(answer.texts(), QStringList(VeskTuneInTalkIcon()));
}

TEST_F(TuneInRowsLinkTest, ToTheSettingsPageAreLeftOut)
{
    for (const char *page : {"/Settings.aspx?x=y", "/x/Settings.aspx", "/Settings.aspx/x"}) {
        const QByteArray settings
            = QByteArray(R"({"element":"outline","type":"link","key":"settings",)"
                         R"("text":"Settings","URL":"http://opml.radiotime.com)")
            + page + R"("})";
        EXPECT_EQ(titles(settings + "," + text("after")), QStringList("after"_s)) << page;
        EXPECT_THAT(
            log().lines("DEBUG"_s), Contains("Omitting the last root menu item: Settings"_s));
        EXPECT_EQ(titles(presets() + "," + settings, "TuneIn:browse"_s), QStringList("Favorites"_s))
            << page;
    }
}

TEST_F(TuneInRowsLinkTest, WithTheSettingsKeyAndAnotherUrlStay)
{
    EXPECT_EQ(titles(R"({"element":"outline","type":"link","key":"settings","text":"Settings",)"
                     R"("URL":"http://opml.radiotime.com/Browse.ashx?c=/Settings.aspx"},)"
                     R"({"element":"outline","type":"link","key":"other","text":"Other",)"
                     R"("URL":"http://opml.radiotime.com/Settings.aspx"})"),
        QStringList({"Settings"_s, "Other"_s}));
}

TEST_F(TuneInRowsLinkTest, MayHaveAnyKey)
{
    EXPECT_EQ(titles(R"({"element":"outline","type":"link","key":"a_b~c","text":"Odd"})"),
        QStringList("Odd"_s));
}
