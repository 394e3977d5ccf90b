// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/VeskPlayLogicData.h"
#include "tests/modules/radiobrowser/RadioBrowserFixture.h"

using testing::ElementsAre;

namespace {

class RadioBrowserScreensTest : public RadioBrowserFixture {
protected:
    RadioBrowserScreensTest()
        : m_server(radioBrowserAnswer({}))
    {
        start(addressOf(m_server));
    }

    void answer(const QVariantList &entries) { m_server.setHandler(radioBrowserAnswer(entries)); }
    void answerBody(const QByteArray &body)
    {
        m_server.setHandler([body](const ScriptedServer::Request &) {
            ScriptedServer::Response response;
            response.body = body;
            return response;
        });
    }
    /// Answers as the directory does with \a total stations.
    void answerStations(int total)
    {
        m_server.setHandler([total](const ScriptedServer::Request &request) {
            int offset = 0;
            int limit = 0;
            for (const QString &item : queryOf(request)) {
                if (item.startsWith(text("offset=")))
                    offset = item.mid(7).toInt();
                if (item.startsWith(text("limit=")))
                    limit = item.mid(6).toInt();
            }
            QVariantList stations;
            for (int i = offset; i < std::min(total, offset + limit); ++i)
                stations.append(radioBrowserStation(i));
            return radioBrowserAnswer(stations)(request);
        });
    }

    ScriptedServer::Request lastRequest() const { return m_server.requests().constLast(); }

    ScriptedServer m_server;
};

QVariantHash category(const char *name, int count, const char *code = "")
{
    return {{text("name"), text(name)}, {text("stationcount"), count},
        {text("iso_3166_1"), text(code)}};
}

} // namespace

TEST_F(RadioBrowserScreensTest, BeginsWithTheWaysToFindStations)
{
    const RadioBrowserRows root = rows(text("RadioBrowser:"));
    EXPECT_EQ(root.titles(),
        QStringList({text("Search"), text("By country"), text("By language"), text("By tag"),
            text("By codec"), text("Most voted"), text("Most played"), text("Recently changed")}));
    EXPECT_EQ(root.screen.title().toString(), text("Radio Browser"));
    for (const VeskRoles &row : root.rows)
        EXPECT_EQ(row.type(), VeskRolesType::Container()) << row;
    EXPECT_TRUE(m_server.requests().isEmpty());
}

TEST_F(RadioBrowserScreensTest, FindsStationsByName)
{
    answer({radioBrowserStation(1)});
    const VeskRoles searches(role(text("RadioBrowser:"), VeskRoles::Search()).toHash());
    const RadioBrowserRows list = rows(searches.path().toEncoded());
    ASSERT_EQ(list.rows.size(), 1);
    EXPECT_EQ(list.rows.at(0).type(), VeskRolesType::Query());
    CMPath found = list.rows.at(0).queryPath();
    found.addParam(list.rows.at(0).query(), text("Jazz & more"));
    const RadioBrowserRows stations = rows(found.toEncoded());
    EXPECT_EQ(stations.titles(), QStringList(text("Station 1")));
    EXPECT_EQ(stations.screen.title().toString(), text("Stations called \"Jazz & more\""));
    EXPECT_EQ(lastRequest().path(), "/json/stations/search");
    EXPECT_THAT(queryOf(lastRequest()), testing::Contains(text("name=Jazz & more")));
}

TEST_F(RadioBrowserScreensTest, ListsCategoriesWithTheirNumberOfStations)
{
    struct Case {
        const char *base;
        const char *request;
        const char *order;
        QVariantHash entry;
        const char *title;
        const char *description;
        const char *leadsTo;
    };
    for (const Case &each :
        {Case {"countries", "/json/countries", "name false", category("Germany", 5000, "DE"),
             "Germany", "5000 stations", "countrycode=DE&title=Germany"},
            Case {"languages", "/json/languages", "stationcount true", category("swiss german", 1),
                "Swiss german", "1 station", "language=swiss%20german&title=Swiss%20german"},
            Case {"tags", "/json/tags", "stationcount true", category("80s", 12), "80s",
                "12 stations", "tag=80s&title=80s"},
            Case {"codecs", "/json/codecs", "stationcount true", category("AAC+", 2), "AAC+",
                "2 stations", "codec=AAC%2B&title=AAC%2B"}}) {
        SCOPED_TRACE(each.base);
        answer({each.entry});
        const RadioBrowserRows list = rows(text("RadioBrowser:") + text(each.base));
        ASSERT_EQ(list.rows.size(), 1);
        EXPECT_EQ(list.rows.at(0).title().toString(), text(each.title));
        EXPECT_EQ(list.rows.at(0).description().toString(), text(each.description));
        EXPECT_EQ(list.rows.at(0).type(), VeskRolesType::Container());
        EXPECT_EQ(list.rows.at(0).path().toEncoded(),
            text("RadioBrowser:stations?") + text(each.leadsTo));
        EXPECT_EQ(lastRequest().path(), each.request);
        const QStringList order = text(each.order).split(QLatin1Char(' '));
        EXPECT_THAT(queryOf(lastRequest()),
            testing::IsSupersetOf({text("order=") + order.at(0), text("reverse=") + order.at(1),
                text("hidebroken=true")}));
    }
    EXPECT_THAT(queryOf(m_server.requests().at(2)), testing::Contains(text("limit=200")));
}

TEST_F(RadioBrowserScreensTest, LeavesOutCategoriesThatLeadNowhere)
{
    answer({category("", 3, "DE"), category("Nowhere", 3), category("Empty", 0, "EE"), 7,
        category("Italy", 3, "IT")});
    EXPECT_EQ(rows(text("RadioBrowser:countries")).titles(), QStringList(text("Italy")));
}

TEST_F(RadioBrowserScreensTest, BoundsTheNumberOfCategories)
{
    QVariantList tags;
    for (int i = 0; i < 900; ++i)
        tags.append(category(QByteArray::number(i).constData(), 5));
    answer(tags);
    const RadioBrowserRows list = rows(text("RadioBrowser:tags"), 190, 500);
    EXPECT_EQ(list.count, 200);
    EXPECT_EQ(list.rows.size(), 10);
    EXPECT_EQ(list.titles().constFirst(), text("190"));
    EXPECT_TRUE(rows(text("RadioBrowser:tags"), 200, 210).rows.isEmpty());
}

TEST_F(RadioBrowserScreensTest, AsksForTheStationsOfACategoryOrInAnOrder)
{
    struct Case {
        const char *parameters;
        QStringList items;
        const char *title;
    };
    for (const Case &each : {Case {"countrycode=DE&title=Germany",
                                 {text("countrycode=DE"), text("order=clickcount")}, "Germany"},
             Case {"language=german&title=German",
                 {text("language=german"), text("languageExact=true")}, "German"},
             Case {"tag=pop&title=Pop", {text("tag=pop"), text("tagExact=true")}, "Pop"},
             Case {"codec=AAC%2B&title=AAC%2B", {text("codec=AAC+")}, "AAC+"},
             Case {"order=votes", {text("order=votes")}, "Most voted"},
             Case {"order=clickcount", {text("order=clickcount")}, "Most played"},
             Case {"order=changetimestamp", {text("order=changetimestamp")}, "Recently changed"},
             Case {"order=evil", {text("order=clickcount")}, "Most played"}}) {
        SCOPED_TRACE(each.parameters);
        const RadioBrowserRows list = rows(text("RadioBrowser:stations?") + text(each.parameters));
        EXPECT_EQ(list.screen.title().toString(), text(each.title));
        const QStringList query = queryOf(lastRequest());
        EXPECT_THAT(query, testing::IsSupersetOf(each.items));
        EXPECT_THAT(query, testing::IsSupersetOf({text("reverse=true"), text("hidebroken=true")}));
    }
}

TEST_F(RadioBrowserScreensTest, PassesNoOtherParametersOn)
{
    rows(text("RadioBrowser:stations?author=x&limit=99999&offset=7&url=y"));
    EXPECT_THAT(queryOf(lastRequest()),
        ElementsAre(text("order=clickcount"), text("reverse=true"), text("hidebroken=true"),
            text("limit=101"), text("offset=0")));
}

TEST_F(RadioBrowserScreensTest, OffersAStationToThePlayer)
{
    answer({radioBrowserStation(1)});
    const VeskRoles row = rows(text("RadioBrowser:stations")).rows.value(0);
    EXPECT_EQ(row.title().toString(), text("Station 1"));
    EXPECT_EQ(row.description().toString(), text("MP3, 128 kbit/s, Germany, jazz, blues"));
    EXPECT_EQ(row.icon(), text("https://icons.example/1.png"));
    EXPECT_EQ(row.type(), VeskRolesType::Audio());
    EXPECT_EQ(row.audioType(), VeskRolesAudioType::AudioBroadcast());
    EXPECT_EQ(row.path().toEncoded(),
        text("RadioBrowser:station?station=00000000-0000-4000-8000-000000000001"));
    const VeskResource resource = row.mediaData().activeResource();
    EXPECT_EQ(resource.uri(), text("http://stream.example/1"));
    EXPECT_EQ(resource.mimeType(), text("audio/mpeg"));
    EXPECT_EQ(resource.bitRate(), 128000);
    const VeskMetaData metaData = row.mediaData().metaData();
    EXPECT_TRUE(metaData.live());
    EXPECT_EQ(metaData.genre(), text("jazz"));
    EXPECT_EQ(metaData.matchingMediaRoles().first().path(), row.path());
    EXPECT_EQ(metaData.playbackStateChangePath().prefix(), text("RadioBrowser"));
    EXPECT_TRUE(metaData.prePlayPath().isEmpty());
}

TEST_F(RadioBrowserScreensTest, KeepsThePlaceOfAStationThatCannotBePlayed)
{
    answer({radioBrowserStation(1, {{text("url_resolved"), text("rtsp://a.example/")}}), 7,
        radioBrowserStation(3, {{text("stationuuid"), text("3")}}), radioBrowserStation(4)});
    const RadioBrowserRows list = rows(text("RadioBrowser:stations"));
    ASSERT_EQ(list.rows.size(), 4);
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(list.rows.at(i).isEmpty()) << list.rows.at(i);
    EXPECT_EQ(list.rows.at(3).title().toString(), text("Station 4"));
}

TEST_F(RadioBrowserScreensTest, PagesThroughAListToItsEnd)
{
    answerStations(250);
    struct Case {
        int first;
        int last;
        int rows;
        int count;
    };
    for (const Case &each : {Case {0, 99, 100, 101}, Case {100, 199, 100, 201},
             Case {200, 299, 50, 250}, Case {249, 249, 1, 250}, Case {240, 249, 10, 250}}) {
        const RadioBrowserRows list = rows(text("RadioBrowser:stations"), each.first, each.last);
        EXPECT_EQ(list.rows.size(), each.rows) << each.first;
        EXPECT_EQ(list.count, each.count) << each.first;
        EXPECT_EQ(list.titles().value(0), QStringLiteral("Station %1").arg(each.first));
        EXPECT_THAT(queryOf(lastRequest()),
            testing::IsSupersetOf({QStringLiteral("offset=%1").arg(each.first),
                QStringLiteral("limit=%1").arg(each.last - each.first + 2)}));
    }
}

TEST_F(RadioBrowserScreensTest, EndsAfterTenThousandStations)
{
    answerStations(50000);
    const RadioBrowserRows end = rows(text("RadioBrowser:stations"), 9900, 10100);
    EXPECT_EQ(end.rows.size(), 100);
    EXPECT_EQ(end.count, 10000);
    m_server.clearRequests();
    EXPECT_TRUE(rows(text("RadioBrowser:stations"), 10000, 10099).rows.isEmpty());
    EXPECT_EQ(rows(text("RadioBrowser:stations"), INT_MAX - 5, INT_MAX).count, 10000);
    EXPECT_TRUE(m_server.requests().isEmpty());
}

TEST_F(RadioBrowserScreensTest, RefusesToFetchMoreThanFiveHundredStationsAtOnce)
{
    const RadioBrowserRows all = rows(text("RadioBrowser:stations"), 0, 9999);
    EXPECT_EQ(all.fullError.name(), CMError::TooLongName());
    EXPECT_TRUE(m_server.requests().isEmpty());
    EXPECT_EQ(rows(text("RadioBrowser:stations"), 100, 599).error, QString());
}

TEST_F(RadioBrowserScreensTest, TakesNoMoreStationsThanItAskedFor)
{
    QVariantList stations;
    for (int i = 0; i < 1500; ++i)
        stations.append(radioBrowserStation(i));
    answer(stations);
    const RadioBrowserRows list = rows(text("RadioBrowser:stations"), 0, 9);
    EXPECT_EQ(list.rows.size(), 10);
    EXPECT_EQ(list.count, 11);
}

TEST_F(RadioBrowserScreensTest, RefusesAnInvalidRange)
{
    for (const char *path : {"RadioBrowser:stations", "RadioBrowser:tags"}) {
        EXPECT_EQ(rows(text(path), 5, 4).error, text("The range of rows is not valid."));
        EXPECT_EQ(rows(text(path), -1, 4).error, text("The range of rows is not valid."));
    }
    EXPECT_TRUE(m_server.requests().isEmpty());
}

TEST_F(RadioBrowserScreensTest, ExplainsAnswersThatCannotBeUsed)
{
    struct Case {
        QByteArray body;
        const char *error;
    };
    for (const Case &each : {Case {"<html>", "The answer of Radio Browser cannot be read."},
             Case {R"({"ok": false})", "The answer of Radio Browser cannot be read."},
             Case {"", "The answer of Radio Browser cannot be read."},
             Case {'[' + QByteArray(5 * 1024 * 1024, ' ') + ']',
                 "The answer of Radio Browser is too long."}}) {
        answerBody(each.body);
        EXPECT_EQ(rows(text("RadioBrowser:stations")).error, text(each.error));
        EXPECT_EQ(rows(text("RadioBrowser:countries")).error, text(each.error));
    }
}

TEST_F(RadioBrowserScreensTest, AnswersOtherRequestsWhileOneWaits)
{
    m_server.setHandler([](const ScriptedServer::Request &request) {
        ScriptedServer::Response response;
        response.body = "[]";
        if (request.path() == "/json/tags")
            response.end = ScriptedServer::End::StallBeforeHead;
        return response;
    });
    const auto data = std::make_shared<CMReplyData<QVariant>>();
    CMRoot()->request(CMGetRowsRequest(CMPath::fromEncoded(text("RadioBrowser:tags")),
        VeskRoles::all(), 0, 9, CMReply<QVariant>(data)));
    ASSERT_TRUE(m_server.waitForRequests(1));
    EXPECT_EQ(rows(text("RadioBrowser:codecs")).error, QString());
    EXPECT_FALSE(data->isFinished());
}
