// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/tunein/TuneInBrowseNode.h"

#include "api/tunein/VeskTuneInPaths.h"
#include "api/values/VeskValuePaths.h"
#include "tests/modules/tunein/TuneInFixture.h"

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

/// Thirty lines of text, "line 0" to "line 29".
QByteArray thirtyLines()
{
    QByteArray elements;
    for (int i = 0; i < 30; ++i)
        elements += (i ? "," : "")
            + QByteArray(R"({"element":"outline","type":"text","text":"line )")
            + QByteArray::number(i) + R"("})";
    return screen(elements);
}

class TuneInBrowseNodeUrlTest : public TuneInFixture {
protected:
    /// The request that a screen sends; empty if it sends none or several.
    QByteArray fetched(const QString &path)
    {
        server().clearRequests();
        const RowsAnswer answer = rows(path);
        EXPECT_TRUE(answer.error.isEmpty()) << answer.errorText().toStdString();
        const QList<QByteArray> lines = server().requestLines();
        return lines.size() == 1 ? lines.constFirst() : QByteArray();
    }

    void expectFailure(const QString &path, const char *message, const QString &logged)
    {
        server().clearRequests();
        log().clear();
        const RowsAnswer answer = rows(path);
        EXPECT_EQ(answer.error.name(), CMError::DefaultName());
        EXPECT_EQ(answer.error.message().sourceText(), QLatin1String(message));
        EXPECT_EQ(answer.error.title().toString(), CMError::DefaultTitle());
        EXPECT_TRUE(answer.value.isNull());
        EXPECT_THAT(log().lines("ERROR"_s), ElementsAre(logged));
        EXPECT_THAT(server().requestLines(), IsEmpty());
    }

    CMPath toPath(
        const QString &url, const QString &navigation = QString(), const QString &name = QString())
    {
        const TuneInBrowseNode *node = browseNode();
        CMPath result;
        onWorker([&] { result = node->tuneInUrlToCBPath(VeskUrl(url), navigation, name); });
        return result;
    }
};

class TuneInBrowseScreenTest : public TuneInBrowseNodeUrlTest {
protected:
    TuneInBrowseScreenTest()
    {
        answerAll(thirtyLines());
        start();
        log().clear();
    }
};

} // namespace

TEST_F(TuneInBrowseScreenTest, RequestsTheRootMenuForTheBarePath)
{
    EXPECT_EQ(fetched("TuneIn:browse"_s), "GET /Browse.ashx?" + CommonItems);
    EXPECT_THAT(log().lines("DEBUG"_s), Contains("Browsing to root ..."_s));
}

TEST_F(TuneInBrowseScreenTest, RequestsTheScreenOfAUri)
{
    EXPECT_EQ(fetched("TuneIn:browse/uri/Search.ashx?query=aa1"_s),
        "GET /Search.ashx?query=aa1&" + CommonItems);
    EXPECT_EQ(fetched("TuneIn:browse/uri/Browse.ashx"_s), "GET /Browse.ashx?" + CommonItems);
    EXPECT_EQ(fetched("TuneIn:browse/uri/Describe.ashx?c=genres"_s),
        "GET /Describe.ashx?c=genres&" + CommonItems);
    EXPECT_THAT(log().lines("DEBUG"_s), Not(Contains("Browsing to root ..."_s)));
}

TEST_F(TuneInBrowseScreenTest, SendsParametersInAscendingOrderOfTheirKeys)
{
    EXPECT_EQ(fetched("TuneIn:browse/uri/Browse.ashx?offset=26&id=c1&filter=s%3Apopular"_s),
        "GET /Browse.ashx?filter=s%3Apopular&id=c1&offset=26&" + CommonItems);
}

TEST_F(TuneInBrowseScreenTest, SendsNoPrivateParameters)
{
    EXPECT_EQ(
        fetched("TuneIn:browse/uri/Search.ashx?query=aa1&veskDisplayName=Found&veskX=1&vesk=2"_s),
        "GET /Search.ashx?query=aa1&" + CommonItems);
    EXPECT_EQ(fetched("TuneIn:browse/uri/Browse.ashx?veskNavigation=~0"_s),
        "GET /Browse.ashx?" + CommonItems);
    EXPECT_EQ(fetched("TuneIn:browse/uri/Browse.ashx?Vesk=sent&myvesk=sent"_s),
        "GET /Browse.ashx?Vesk=sent&myvesk=sent&" + CommonItems);
}

TEST_F(TuneInBrowseScreenTest, SendsCommonItemsOfThePathAsGivenAndOnce)
{
    EXPECT_EQ(
        fetched(
            "TuneIn:browse/uri/Browse.ashx?render=xml&serial=S&partnerId=&locale=de&formats=ogg"_s),
        "GET /Browse.ashx?formats=ogg&locale=de&partnerId=&render=xml&serial=S");
    EXPECT_EQ(fetched("TuneIn:browse/uri/Browse.ashx?render=json"_s),
        "GET /Browse.ashx?render=json&formats=mp3%2Caac&partnerId=partner&serial=ABC&locale=en");
}

TEST_F(TuneInBrowseScreenTest, EncodesParameters)
{
    EXPECT_EQ(fetched(path(
                  "TuneIn:browse/uri/Search.ashx"_s, {{"query"_s, "rock & roll+50% caf\u00e9"_s}})
                          .toEncoded()),
        "GET /Search.ashx?query=rock%20%26%20roll%2B50%25%20caf%C3%A9&" + CommonItems);
}

TEST_F(TuneInBrowseScreenTest, DropsEveryBrowseAndUriOfTheBase)
{
    EXPECT_EQ(fetched("TuneIn:browse/uri/uri/browse/x.ashx"_s), "GET //x.ashx?" + CommonItems);
    EXPECT_EQ(fetched("TuneIn:browse/uri/a/uri/b.ashx"_s), "GET /a/b.ashx?" + CommonItems);
}

TEST_F(TuneInBrowseScreenTest, ReadsTheLanguageWithEachRequest)
{
    set(VeskUILanguagePath(), "de-DE"_s);
    EXPECT_EQ(fetched("TuneIn:browse"_s),
        "GET /Browse.ashx?render=json&formats=mp3%2Caac&partnerId=partner&serial=ABC&locale=de-DE");
}

TEST_F(TuneInBrowseNodeUrlTest, SendsNoFormatsWhenNoneAreSet)
{
    answerAll(thirtyLines());
    set(VeskTuneInSupportedStreamsPath(), QString());
    start();
    EXPECT_EQ(fetched("TuneIn:browse"_s),
        "GET /Browse.ashx?render=json&partnerId=partner&serial=ABC&locale=en");
}

TEST_F(TuneInBrowseNodeUrlTest, SendsAnEmptyPartnerId)
{
    answerAll(thirtyLines());
    set(VeskTuneInPartnerIdPath(), QString());
    start();
    EXPECT_EQ(fetched("TuneIn:browse"_s),
        "GET /Browse.ashx?render=json&formats=mp3%2Caac&partnerId=&serial=ABC&locale=en");
}

TEST_F(TuneInBrowseNodeUrlTest, IgnoresTheStateOfTheNetwork)
{
    answerAll(thirtyLines());
    set(VeskNetworkStateConnected(), false);
    start();
    EXPECT_EQ(fetched("TuneIn:browse"_s), "GET /Browse.ashx?" + CommonItems);
}

TEST_F(TuneInBrowseScreenTest, TunesToAGuideId)
{
    const QByteArray start = "GET /Tune.ashx?id=";
    EXPECT_EQ(fetched("TuneIn:browse?veskTuneInMethod=tune&guideId=s12345"_s),
        start + "s12345&" + CommonItems);
    EXPECT_EQ(fetched("TuneIn:browse?veskTuneInMethod=tune&guideId=e123&stationId=456"_s),
        start + "s456&" + CommonItems);
    EXPECT_EQ(fetched("TuneIn:browse?veskTuneInMethod=tune&guideId=e123&stationId=s456"_s),
        start + "s456&" + CommonItems);
    EXPECT_EQ(fetched("TuneIn:browse?veskTuneInMethod=tune&guideId=e123&stationId="_s),
        start + "e123&" + CommonItems);
    EXPECT_EQ(fetched("TuneIn:browse?veskTuneInMethod=tune&guideId=e123"_s),
        start + "e123&" + CommonItems);
    EXPECT_EQ(fetched("TuneIn:browse?veskTuneInMethod=tune&guideId=s1&stationId=456"_s),
        start + "s1&" + CommonItems);
    EXPECT_EQ(fetched("TuneIn:browse?veskTuneInMethod=tune&guideId=E1&stationId=456"_s),
        start + "E1&" + CommonItems);
    EXPECT_EQ(
        fetched(path("TuneIn:browse"_s,
            {{"veskTuneInMethod"_s, "tune"_s}, {"guideId"_s, "e1"_s}, {"stationId"_s, "\u0663x"_s}})
                    .toEncoded()),
        start + "s%D9%A3x&" + CommonItems);
}

TEST_F(TuneInBrowseScreenTest, TunesWithThePathsOwnC)
{
    EXPECT_EQ(fetched("TuneIn:browse?veskTuneInMethod=tune&guideId=s1&c=pbrowse"_s),
        "GET /Tune.ashx?id=s1&c=pbrowse&" + CommonItems);
    EXPECT_EQ(fetched("TuneIn:browse?veskTuneInMethod=tune&guideId=s1&c="_s),
        "GET /Tune.ashx?id=s1&c=&" + CommonItems);
}

TEST_F(TuneInBrowseScreenTest, SendsOnlyAMethodsOwnArguments)
{
    EXPECT_EQ(fetched("TuneIn:browse?veskTuneInMethod=tune&guideId=s1&x=y&render=xml"_s),
        "GET /Tune.ashx?id=s1&" + CommonItems);
    EXPECT_EQ(fetched("TuneIn:browse?veskTuneInMethod=search&query=folk&c=x"_s),
        "GET /Search.ashx?query=folk&" + CommonItems);
}

TEST_F(TuneInBrowseScreenTest, Searches)
{
    EXPECT_EQ(fetched("TuneIn:browse?veskTuneInMethod=search&query=folk%20music"_s),
        "GET /Search.ashx?query=folk%20music&" + CommonItems);
    EXPECT_EQ(fetched("TuneIn:browse?veskTuneInMethod=search&query="_s),
        "GET /Search.ashx?query=&" + CommonItems);
}

TEST_F(TuneInBrowseScreenTest, OpensTheWizard)
{
    EXPECT_EQ(fetched("TuneIn:browse?veskTuneInMethod=wizard&guideId=s1"_s),
        "GET /Report.ashx?c=wizard&id=s1&" + CommonItems);
}

TEST_F(TuneInBrowseScreenTest, FailsForAMethodWithoutItsArgument)
{
    expectFailure("TuneIn:browse?veskTuneInMethod=tune"_s, "Missing guideId parameter",
        "Missing guideId parameter"_s);
    expectFailure("TuneIn:browse?veskTuneInMethod=wizard"_s, "Missing guideId parameter",
        "Missing guideId parameter"_s);
    expectFailure("TuneIn:browse?veskTuneInMethod=search"_s, "Missing query parameter",
        "Missing query parameter"_s);
}

TEST_F(TuneInBrowseScreenTest, FailsForAnUnknownMethod)
{
    expectFailure("TuneIn:browse?veskTuneInMethod=dance&guideId=s1"_s, "Unsupported method!",
        "Unsupported method: dance"_s);
    expectFailure("TuneIn:browse?veskTuneInMethod=Tune&guideId=s1"_s, "Unsupported method!",
        "Unsupported method: Tune"_s);
}

TEST_F(TuneInBrowseScreenTest, FailsForAPathWithoutMethodThatIsNotTheBareRoot)
{
    expectFailure("TuneIn:browse?x=y"_s, "Unspecified method!", "Unspecified browse method!"_s);
    expectFailure(
        "TuneIn:browse?veskNavigation=~0"_s, "Unspecified method!", "Unspecified browse method!"_s);
    expectFailure(
        "TuneIn:browse?veskTuneInMethod="_s, "Unspecified method!", "Unspecified browse method!"_s);
    expectFailure("TuneIn:browse/other"_s, "Unspecified method!", "Unspecified browse method!"_s);
    expectFailure("TuneIn:browse/uri"_s, "Unspecified method!", "Unspecified browse method!"_s);
}

TEST_F(TuneInBrowseScreenTest, AcceptsAMethodBelowTheRoot)
{
    EXPECT_EQ(fetched("TuneIn:browse/other?veskTuneInMethod=search&query=x"_s),
        "GET /Search.ashx?query=x&" + CommonItems);
}

TEST_F(TuneInBrowseScreenTest, PrefersAUriToAMethod)
{
    EXPECT_EQ(fetched("TuneIn:browse/uri/Browse.ashx?c=music&veskTuneInMethod=search&query=jazz"_s),
        "GET /Browse.ashx?c=music&query=jazz&" + CommonItems);
    // A missing argument or an unknown method is no fault here.
    EXPECT_EQ(fetched("TuneIn:browse/uri/Browse.ashx?c=music&veskTuneInMethod=tune"_s),
        "GET /Browse.ashx?c=music&" + CommonItems);
    EXPECT_EQ(fetched("TuneIn:browse/uri/Browse.ashx?c=music&veskTuneInMethod=dance"_s),
        "GET /Browse.ashx?c=music&" + CommonItems);
}

TEST_F(TuneInBrowseScreenTest, PassesOnTheClientsError)
{
    closeServer();
    const RowsAnswer answer = rows("TuneIn:browse"_s);
    EXPECT_EQ(answer.errorText(), "Failed to connect to TuneIn"_s);
    EXPECT_EQ(answer.error.name(), CMError::DefaultName());
    EXPECT_TRUE(answer.value.isNull());
    ASSERT_EQ(log().lines("ERROR"_s).size(), 1);
    const QString line = log().lines("ERROR"_s).constFirst();
    EXPECT_THAT(line.toStdString(),
        StartsWith("TuneInBrowseNode::getRowsRequest: Could not get remote data, error: .'"));
    EXPECT_TRUE(line.endsWith("'"_s));
    EXPECT_TRUE(line.contains("Failed to connect to TuneIn"_s));
    openServer();
}

TEST_F(TuneInBrowseScreenTest, ReturnsTheRequestedRange)
{
    const RowsAnswer middle = rows("TuneIn:browse/uri/x"_s, {"title"_s}, 5, 14);
    EXPECT_EQ(middle.count, 30);
    ASSERT_EQ(middle.rows.size(), 10);
    EXPECT_EQ(middle.texts().constFirst(), "line 5"_s);
    EXPECT_EQ(middle.texts().constLast(), "line 14"_s);
    EXPECT_THAT(
        log().lines("TRACE"_s), Contains("Truncating: requestedCount: 10' rows.length: 25"_s));
    EXPECT_THAT(
        log().lines("TRACE"_s), Contains("TuneInBrowseNode::getRowsRequest: returned  10 lines"_s));
}

TEST_F(TuneInBrowseScreenTest, ReturnsAllWhenTheRangeIsLarger)
{
    const RowsAnswer all = rows("TuneIn:browse/uri/x"_s, {"title"_s}, 0, 99);
    EXPECT_EQ(all.count, 30);
    EXPECT_EQ(all.rows.size(), 30);
    EXPECT_THAT(log().lines().filter("Truncating"_s), IsEmpty());
    EXPECT_EQ(rows("TuneIn:browse/uri/x"_s, {"title"_s}, 0, 29).rows.size(), 30);
    EXPECT_THAT(log().lines().filter("Truncating"_s), IsEmpty());
}

TEST_F(TuneInBrowseScreenTest, ReturnsTheLastRowsAndNothingBeyond)
{
    EXPECT_EQ(rows("TuneIn:browse/uri/x"_s, {"title"_s}, 29, 29).texts(), QStringList("line 29"_s));
    EXPECT_EQ(rows("TuneIn:browse/uri/x"_s, {"title"_s}, 25, 200).rows.size(), 5);
    const RowsAnswer beyond = rows("TuneIn:browse/uri/x"_s, {"title"_s}, 30, 40);
    EXPECT_EQ(beyond.count, 30);
    EXPECT_THAT(beyond.rows, IsEmpty());
    EXPECT_THAT(rows("TuneIn:browse/uri/x"_s, {"title"_s}, 2147483647, 2147483647).rows, IsEmpty());
}

TEST_F(TuneInBrowseScreenTest, SurvivesInvalidRanges)
{
    // Whatever the range, there are never more rows than the screen has.
    for (const auto &[first, last] : {std::pair(10, 5), std::pair(0, -1), std::pair(-5, 3),
             std::pair(0, 2147483647), std::pair(-2147483647 - 1, 2147483647), std::pair(-1, -1)}) {
        const RowsAnswer answer = rows("TuneIn:browse/uri/x"_s, {"title"_s}, first, last);
        EXPECT_TRUE(answer.error.isEmpty());
        EXPECT_EQ(answer.count, 30);
        EXPECT_LE(answer.rows.size(), 30);
    }
    EXPECT_THAT(rows("TuneIn:browse/uri/x"_s, {"title"_s}, 0, -1).rows, IsEmpty());
}

TEST_F(TuneInBrowseScreenTest, DescribesItself)
{
    const QString opened = "TuneIn:browse/uri/Browse.ashx?c=music&veskDisplayName=Music"_s;
    const RowsAnswer answer = rows(opened, {"title"_s, "path"_s});
    EXPECT_EQ(answer.roles.title().toString(), "Music"_s);
    EXPECT_EQ(answer.roles.path(), path(opened));
    EXPECT_EQ(rows("TuneIn:browse"_s, {"title"_s}).roles.title().sourceText(), "TuneIn"_s);
}

TEST_F(TuneInBrowseScreenTest, DescribesItselfOnlyInTheRequestedRoles)
{
    const QString opened = "TuneIn:browse/uri/Browse.ashx?c=music&veskDisplayName=Music"_s;
    const QVariantHash shown {{"path"_s, opened}};
    EXPECT_EQ(rows(opened, {"preferred"_s}).roles.toHash(), shown);
    const VeskRoles roles = rows(opened, {"type"_s}).roles;
    EXPECT_EQ(roles.type(), VeskRolesType::Container());
    EXPECT_EQ(roles.size(), 2);
}

TEST_F(TuneInBrowseScreenTest, LogsItsRequest)
{
    rows("TuneIn:browse/uri/x?a=b"_s, {"title"_s}, 2, 7);
    EXPECT_THAT(log().lines("TRACE"_s),
        Contains("TuneInBrowseNode::getRowsRequest: range: 2-7, path: \"TuneIn:browse\" "
                 "requestPath: \"TuneIn:browse/uri/x?a=b\""_s));
}

TEST_F(TuneInBrowseScreenTest, MakesPathsOfUrls)
{
    EXPECT_EQ(toPath("http://opml.radiotime.com/Browse.ashx?c=music"_s),
        path("TuneIn:browse/uri/Browse.ashx?c=music"_s));
    EXPECT_TRUE(log().contains(
        "TRACE tuneInUrlToCBPath: 'http://opml.radiotime.com/Browse.ashx?c=music' -> "
        "'TuneIn:browse/uri/Browse.ashx?c=music'"_s));
    EXPECT_EQ(toPath("http://opml.radiotime.com/Browse.ashx?c=music"_s, "~2"_s, "Rock & Pop"_s),
        path("TuneIn:browse/uri/Browse.ashx"_s,
            {{"c"_s, "music"_s}, {"veskNavigation"_s, "~2"_s},
                {"veskDisplayName"_s, "Rock & Pop"_s}}));
}

TEST_F(TuneInBrowseScreenTest, DropsSchemeAndHostOfAUrl)
{
    EXPECT_EQ(toPath("https://user:pw@other.example:8080/live?x=1#part"_s),
        path("TuneIn:browse/uri/live?x=1"_s));
    EXPECT_EQ(toPath(QString()).base(), "browse/uri"_s);
}

TEST_F(TuneInBrowseScreenTest, KeepsTheLastOfSeveralItemsOfOneKey)
{
    EXPECT_EQ(toPath("http://opml.radiotime.com/Browse.ashx?id=1&c=a&id=2&%69d=3&C=b"_s),
        path("TuneIn:browse/uri/Browse.ashx?c=a&id=3&C=b"_s));
}

TEST_F(TuneInBrowseScreenTest, RestoresTheUrlOfAPath)
{
    const CMPath opened
        = toPath("http://opml.radiotime.com/Browse.ashx?id=c57940&filter=s:popular&x=a+b"_s);
    EXPECT_EQ(fetched(opened.toEncoded()),
        "GET /Browse.ashx?filter=s%3Apopular&id=c57940&x=a%20b&" + CommonItems);
}

TEST(TuneInElementUrlTest, PrefersTheUpperCaseKey)
{
    VeskTuneInBodyElement element(VeskHash(QVariantHash {{"url"_s, "http://lower/"_s}}));
    EXPECT_EQ(TuneInBrowseNode::getElementUrl(element).toString(), "http://lower/"_s);
    element.insert("URL"_s, "http://upper/"_s);
    EXPECT_EQ(TuneInBrowseNode::getElementUrl(element).toString(), "http://upper/"_s);
    element.insert("URL"_s, QString());
    EXPECT_EQ(TuneInBrowseNode::getElementUrl(element).toString(), "http://lower/"_s);
    EXPECT_TRUE(TuneInBrowseNode::getElementUrl(VeskTuneInBodyElement()).isEmpty());
}
