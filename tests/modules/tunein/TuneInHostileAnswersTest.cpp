// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/HttpClient.h"
#include "tests/modules/tunein/TuneInFixture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <future>

using testing::Each;
using testing::IsEmpty;

namespace {

const QString Screen = "TuneIn:browse/uri/Browse.ashx?c=x"_s;

/// A category page as the web API sends it.
const QByteArray Realistic = R"json({ "head": { "title": "Folk", "status": "200" },
  "body": [
   { "element":"outline","text":"Stations","key":"stations","children":[
     { "element":"outline","type":"audio","text":"Example Folk (Dublin, Ireland)",
       "URL":"http://opml.radiotime.com/Tune.ashx?id=s11111","bitrate":"128","reliability":"97",
       "guide_id":"s11111","subtext":"Some Singer - Some Song","formats":"mp3",
       "item":"station","image":"http://cdn-profiles.tunein.com/s11111/images/logoq.png?t=159831",
       "now_playing_id":"s11111","preset_id":"s11111" },
     { "element":"outline","type":"link","text":"More Stations",
       "URL":"http://opml.radiotime.com/Browse.ashx?offset=26&id=c1&filter=s","key":"nextStations" } ] },
   { "element":"outline","type":"link","text":"Folk Hour",
     "URL":"http://opml.radiotime.com/Tune.ashx?c=pbrowse&id=p33333","guide_id":"p33333",
     "subtext":"Two hosts and a fiddle…","item":"show","image":"http://cdn-profiles.tunein.com/p33333.jpg" },
   { "element":"outline","type":"audio","text":"Episode 12","URL":"http://opml.radiotime.com/Tune.ashx?id=t7&sid=p3",
     "guide_id":"t7","item":"topic","topic_duration":"4283" },
   { "element":"outline","type":"text","text":"No more","guide_id":"g79","is_default":"true" } ] })json";

class TuneInHostileAnswersTest : public TuneInFixture {
protected:
    TuneInHostileAnswersTest()
    {
        set(path("settings:browser/childElementsInSingleList"_s), true);
        start();
    }

    RowsAnswer show(const QByteArray &body, const QStringList &roles = VeskRoles::all())
    {
        answerAll(body);
        return rows(Screen, roles);
    }

    void expectError(const RowsAnswer &answer, const char *message)
    {
        EXPECT_EQ(answer.errorText(), QLatin1String(message));
        EXPECT_TRUE(answer.value.isNull());
        EXPECT_THAT(answer.rows, IsEmpty());
    }

    /// Expects no error, and rows with a value for every role.
    void expectWholeRows(const RowsAnswer &answer)
    {
        EXPECT_TRUE(answer.error.isEmpty());
        EXPECT_EQ(answer.rows.size(), std::min(answer.count, 100));
        for (const QVariantList &row : answer.rows)
            EXPECT_EQ(row.size(), VeskRoles::all().size());
    }

    void expectAlive()
    {
        EXPECT_EQ(show(Realistic, {"title"_s}).texts(),
            QStringList({"Stations"_s, "Example Folk (Dublin, Ireland)"_s, "More Stations"_s,
                "Folk Hour"_s, "Episode 12"_s, "No more"_s}));
    }

    void expectConnectError(ScriptedServer::End end, int sendBytes = 0)
    {
        ScriptedServer::Response response;
        response.body = Realistic;
        response.end = end;
        response.sendBytes = sendBytes;
        answerAll(response);
        expectError(rows(Screen), "Failed to connect to TuneIn");
    }
};

QByteArray json(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QJsonObject object(const QByteArray &text)
{
    return QJsonDocument::fromJson(text).object();
}

const QList<QJsonValue> &oddValues()
{
    static const QList<QJsonValue> values {QJsonValue(7), QJsonValue(-1.5), QJsonValue(1e300),
        QJsonValue(true), QJsonValue(false), QJsonValue(QJsonValue::Null), QJsonArray(),
        QJsonArray {QJsonValue(1), "x"_s, QJsonObject()}, QJsonObject(),
        QJsonObject {{"element"_s, "outline"_s}}, QJsonValue(QString()), QJsonValue("x"_s)};
    return values;
}

/// Calls \a use with every object that differs from \a original in one key, at any depth, whose
/// value has another type or is missing.
void forEachOddity(const QJsonObject &original, const std::function<void(const QJsonObject &)> &use)
{
    const QStringList keys = original.keys();
    for (const QString &key : keys) {
        QJsonObject changed = original;
        for (const QJsonValue &odd : oddValues()) {
            changed.insert(key, odd);
            use(changed);
        }
        changed.remove(key);
        use(changed);
        const QJsonValue value = original.value(key);
        const auto nest = [&](const QJsonValue &inner) {
            changed.insert(key, inner);
            use(changed);
        };
        if (value.isObject())
            forEachOddity(value.toObject(), nest);
        const QJsonArray list = value.toArray();
        for (int i = 0; i < list.size(); ++i) {
            forEachOddity(list.at(i).toObject(), [&](const QJsonObject &element) {
                QJsonArray copy = list;
                copy.replace(i, element);
                nest(copy);
            });
        }
    }
}

} // namespace

TEST_F(TuneInHostileAnswersTest, ThatAreEmptyAreInvalid)
{
    expectError(show({}), "Invalid response.");
    expectAlive();
}

TEST_F(TuneInHostileAnswersTest, ThatAreTooLongAreErrors)
{
    expectError(show(screen(QByteArray(10000000, ' '))), "Failed to connect to TuneIn");
    expectAlive();
}

TEST_F(TuneInHostileAnswersTest, ThatAreCutAtAnyByteAreInvalid)
{
    for (int size = 1; size < Realistic.size(); ++size) {
        SCOPED_TRACE(size);
        expectError(show(Realistic.left(size)), "Invalid data returned.");
    }
    expectAlive();
}

TEST_F(TuneInHostileAnswersTest, ThatEndBeforeTheirLengthAreErrors)
{
    for (int size = 0; size < Realistic.size(); size += 97) {
        SCOPED_TRACE(size);
        expectConnectError(ScriptedServer::End::Truncate, size);
        expectConnectError(ScriptedServer::End::Reset, size);
    }
    expectConnectError(ScriptedServer::End::ResetBeforeHead);
    expectAlive();
}

TEST_F(TuneInHostileAnswersTest, OfWrongTypesGiveCompleteRowsOrNone)
{
    int count = 0;
    forEachOddity(object(Realistic), [&](const QJsonObject &odd) {
        SCOPED_TRACE(json(odd).toStdString());
        expectWholeRows(show(json(odd)));
        ++count;
    });
    EXPECT_GT(count, 500);
    expectAlive();
}

TEST_F(TuneInHostileAnswersTest, OfWrongTypesAreConvertedWherePossible)
{
    const QByteArray element = R"({"element":"outline","type":"text","text":"x"})";
    EXPECT_EQ(show(R"({"head":{"status":200},"body":)" + element + "}", {"title"_s}).texts(),
        QStringList("x"_s));
    for (const char *body : {"\"x\"", "7", "true", "null", "[]"})
        EXPECT_EQ(show(QByteArray(R"({"head":{"status":"200"},"body":)") + body + "}").count, 0)
            << body;
    EXPECT_EQ(show(R"({"head":{"status":"200"}})").count, 0);
    EXPECT_EQ(show(screen(R"(1,"x",null,[],true,)" + element)).count, 6);
    for (const char *answer : {"[]", "null", "7", "\"x\"", "[{\"head\":{\"status\":\"200\"}}]"})
        EXPECT_EQ(show(answer).count, 0) << answer;
}

TEST_F(TuneInHostileAnswersTest, OfOddStreamsDoNotStopPrePlay)
{
    const QByteArray tune
        = R"({"head":{"status":"200"},"body":[{"element":"audio","url":"http://h/x.mp3","reliability":99,)"
          R"("bitrate":128,"media_type":"mp3","playlist_type":"m3u","is_direct":true}]})";
    const QString step = path("TuneIn:browse"_s,
        {{"veskPrePlayCmd"_s, "fetchAvailableStreams"_s},
            {"veskPlayPath"_s, "http://opml.radiotime.com/Tune.ashx?id=s1"_s}})
                             .toEncoded();
    forEachOddity(object(tune), [&](const QJsonObject &odd) {
        SCOPED_TRACE(json(odd).toStdString());
        answerAll(json(odd));
        const Answer answer = setData(step, VeskRoles::PrePlay(), QVariantHash());
        EXPECT_NE(answer.error.isEmpty(), answer.value.isNull());
    });
    for (int size = 0; size < tune.size(); ++size) {
        answerAll(tune.left(size));
        EXPECT_EQ(setData(step, VeskRoles::PrePlay(), QVariantHash()).errorText(),
            size == 0 ? "Invalid data received."_s : "Invalid data returned."_s);
    }
    expectAlive();
}

TEST_F(TuneInHostileAnswersTest, OfOddDescriptionsDoNotStopPresets)
{
    const QString entry
        = "TuneIn:browser_context/presets?veskMatchingPath=TuneIn%3Abrowse%3FveskGuideId%3Ds1"_s;
    forEachOddity(
        object(R"({"head":{"status":"200"},"body":[{"element":"station","is_preset":"true"}]})"),
        [&](const QJsonObject &odd) {
            SCOPED_TRACE(json(odd).toStdString());
            answerAll(json(odd));
            const QString title = TrString::fromVariant(role(entry, "title"_s)).sourceText();
            EXPECT_TRUE(
                title == "Add to TuneIn Favorites"_s || title == "Remove from TuneIn Favorites"_s);
        });
}

TEST_F(TuneInHostileAnswersTest, OfTenThousandElementsAreShownPageByPage)
{
    QByteArray elements;
    for (int i = 0; i < 10000; ++i)
        elements += (i ? "," : "")
            + (R"({"element":"outline","type":"text","text":"t)" + QByteArray::number(i)) + R"("})";
    const RowsAnswer first = show(screen(elements), {"title"_s});
    EXPECT_EQ(first.count, 10000);
    EXPECT_EQ(first.rows.size(), 100);
    EXPECT_EQ(rows(Screen, {"title"_s}, 9990, 9999).texts().last(), "t9999"_s);
}

TEST_F(TuneInHostileAnswersTest, ThatNestAThousandDeepAreInvalid)
{
    QByteArray nested = R"({"element":"outline","type":"text","text":"deep"})";
    for (int level = 0; level < 500; ++level)
        nested = R"({"element":"outline","children":[)" + nested + "]}";
    expectError(show(screen(nested)), "Invalid data returned.");
    for (const char *brackets : {"[", "{\"a\":", "[[[{\"b\":["})
        expectError(show(QByteArray(brackets).repeated(100000)), "Invalid data returned.");
    expectAlive();
}

TEST_F(TuneInHostileAnswersTest, ThatNestWithinTheLimitCanBeNavigated)
{
    const int depth = 200;
    QByteArray nested = R"({"element":"outline","type":"text","text":"deep"})";
    for (int level = 0; level < depth; ++level)
        nested = R"({"element":"outline","text":"l","children":[)" + nested + "]}";
    EXPECT_EQ(show(screen(nested), {"title"_s}).count, 3);
    const QString navigation = "~0_"_s.repeated(depth - 1) + "~0"_s;
    EXPECT_EQ(
        rows(path(Screen, {{"veskNavigation"_s, navigation}}).toEncoded(), {"title"_s}).texts(),
        QStringList("deep"_s));
    EXPECT_EQ(
        rows(path(Screen, {{"veskNavigation"_s, navigation + navigation}}).toEncoded(), {"title"_s})
            .count,
        0);
}

TEST_F(TuneInHostileAnswersTest, WithLongNavigationAreEmpty)
{
    const QString navigation = "_"_s.repeated(20000);
    const RowsAnswer answer = [&] {
        answerAll(Realistic);
        return rows(path(Screen, {{"veskNavigation"_s, navigation}}).toEncoded(), {"title"_s});
    }();
    EXPECT_TRUE(answer.error.isEmpty());
    EXPECT_EQ(answer.count, 0);
    expectAlive();
}

TEST_F(TuneInHostileAnswersTest, WithInvalidUtf8AreInvalidOrReadable)
{
    for (const char *bytes :
        {"\xff", "\xc0\x80", "\xed\xa0\x80", "\xf5\x80\x80\x80", "\xe2\x82", "a\x80z"}) {
        const RowsAnswer answer = show(
            screen(R"({"element":"outline","type":"text","text":")" + QByteArray(bytes) + R"("})"));
        if (answer.error.isEmpty())
            EXPECT_EQ(answer.count, 1);
        else
            expectError(answer, "Invalid data returned.");
    }
    expectAlive();
}

TEST_F(TuneInHostileAnswersTest, WithControlCharactersKeepThem)
{
    const RowsAnswer answer = show(
        screen(R"({"element":"outline","type":"link","text":"a\u0000b\u0007\n\u202e\ud83d\ude00",)"
               R"("URL":"http://opml.radiotime.com/Browse.ashx?c=\u0001\u0000&d=\r\nHost: evil"})"),
        {"title"_s, "path"_s});
    ASSERT_EQ(answer.rows.size(), 1);
    const QString title = QStringLiteral("a") + QChar(0) + "b\u0007\n\u202e\U0001f600"_s;
    EXPECT_EQ(answer.texts().constFirst(), title);
    const CMPath next = CMPath::fromEncoded(answer.rows.constFirst().at(1).toString());
    EXPECT_EQ(next.param("veskDisplayName"_s), title);

    // Characters in the URL cannot break the next request's line.
    server().clearRequests();
    EXPECT_EQ(rows(next.toEncoded(), {"title"_s}).roles.title().toString(), title);
    ASSERT_EQ(server().requests().size(), 1);
    EXPECT_EQ(server().requests().constFirst().header("Host"), QByteArray("opml.radiotime.com"));
    EXPECT_TRUE(server().requests().constFirst().query().contains("d=%0D%0AHost%3A%20evil"));
}

TEST_F(TuneInHostileAnswersTest, WithLoneSurrogatesDoNotStopTheWorker)
{
    const RowsAnswer answer = show(
        screen(R"({"element":"outline","type":"link","text":"\ud800","URL":"http://h/?a=\udfff"})"),
        {"title"_s, "path"_s});
    if (answer.error.isEmpty()) {
        EXPECT_EQ(answer.count, 1);
        rows(answer.rows.constFirst().at(1).toString());
    } else {
        expectError(answer, "Invalid data returned.");
    }
    expectAlive();
}

TEST_F(TuneInHostileAnswersTest, WithLongTextsAreShown)
{
    const QByteArray longText(300000, 'x');
    const RowsAnswer answer
        = show(screen(R"({"element":"outline","type":"audio","text":")" + longText
            + R"(","guide_id":")" + longText + R"(","URL":"http://h/)" + longText + R"("})"));
    expectWholeRows(answer);
    expectAlive();
}

TEST_F(TuneInHostileAnswersTest, ThatAreHtmlPagesAreInvalid)
{
    ScriptedServer::Response response;
    response.code = 403;
    response.body = "<!DOCTYPE html><html><body><h1>403</h1></body></html>";
    answerAll(response);
    expectError(rows(Screen), "Invalid data returned.");
    expectAlive();
}

TEST_F(TuneInHostileAnswersTest, ThatAreNotHttpAreErrors)
{
    for (const char *bytes : {"", "\r\n\r\n", "HTTP/1.1\r\n\r\n", "SSH-2.0-OpenSSH\r\n",
             "HTTP/1.1 200 OK\r\nContent-Length: -5\r\n\r\nx",
             "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\n",
             "HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\nContent-Length: 3\r\n\r\nabc"}) {
        ScriptedServer::Response response;
        response.end = ScriptedServer::End::Raw;
        response.body = bytes;
        answerAll(response);
        expectError(rows(Screen), "Failed to connect to TuneIn");
    }
    expectAlive();
}

TEST_F(TuneInHostileAnswersTest, ThatRedirectInACircleAreErrors)
{
    ScriptedServer::Response response;
    response.code = 302;
    response.headers.append(qMakePair(QByteArray("Location"), QByteArray("/Browse.ashx?c=x")));
    answerAll(response);
    server().clearRequests();
    expectError(rows(Screen), "Failed to connect to TuneIn");
    EXPECT_LE(server().requests().size(), 6);
    expectAlive();
}

TEST_F(TuneInHostileAnswersTest, ThatRedirectToAFileAreErrors)
{
    ScriptedServer::Response response;
    response.code = 302;
    response.headers.append(qMakePair(QByteArray("Location"), QByteArray("file:///etc/passwd")));
    answerAll(response);
    expectError(rows(Screen), "Failed to connect to TuneIn");
    expectAlive();
}

TEST_F(TuneInHostileAnswersTest, ThatStallEndWithTheServer)
{
    ScriptedServer::Response response;
    response.body = Realistic;
    response.end = ScriptedServer::End::Stall;
    response.sendBytes = 100;
    answerAll(response);
    auto asked = std::async(std::launch::async, [] { return rows(Screen); });
    ASSERT_TRUE(server().waitForRequests(1));
    closeServer();
    expectError(asked.get(), "Failed to connect to TuneIn");
    openServer();
    expectAlive();
}

TEST_F(TuneInHostileAnswersTest, ThatStallEndWithTheHost)
{
    ScriptedServer::Response response;
    response.end = ScriptedServer::End::StallBeforeHead;
    answerAll(response);
    auto asked = std::async(std::launch::async, [] { return rows(Screen); });
    ASSERT_TRUE(server().waitForRequests(1));
    HttpClient::shutDownAll();
    expectError(asked.get(), "Failed to connect to TuneIn");
    expectError(rows(Screen), "Failed to connect to TuneIn");
}
