// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/tunein/VeskTuneInPaths.h"
#include "api/values/VeskValuePaths.h"
#include "api/web/CMErrorHelper.h"
#include "modules/tunein/TuneInApi.h"
#include "tests/modules/tunein/TuneInFixture.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const QByteArray Ok = R"({"head":{"status":"200"},"body":[]})";
const QString StreamEnter = "TRACE Enter void CMTuneInWorker::sendAutomaticStreamReport("
                            "const QString&, const QString&, const QString&): "_s;
const QString DurationEnter
    = "TRACE Enter void CMTuneInWorker::sendDurationReport(const QString&, int, bool): "_s;

/// Reports outside a play: the listen id is 0.
class PlaybackReportsTest : public TuneInFixture {
protected:
    PlaybackReportsTest() { answer("/Report.ashx", Ok); }

    void stream(const QString &guideId, const QString &url, const QString &error = QString())
    {
        if (!m_started)
            start();
        m_started = true;
        log().clear();
        onWorker([&] { worker()->sendAutomaticStreamReport(guideId, url, error); });
    }

    void duration(const QString &guideId, int seconds, bool stopped)
    {
        if (!m_started)
            start();
        m_started = true;
        log().clear();
        onWorker([&] { worker()->sendDurationReport(guideId, seconds, stopped); });
    }

private:
    bool m_started = false;
};

} // namespace

TEST_F(PlaybackReportsTest, SendAStreamThatPlayed)
{
    stream("s1"_s, "http://h/a?b=c d"_s);
    expectRequests({"GET /Report.ashx?c=stream&id=s1&streamUrl=http%3A%2F%2Fh%2Fa%3Fb%3Dc%20d"
                    "&listenId=0&render=json&partnerId=partner&serial=ABC"});
    const QStringList lines = log().lines();
    EXPECT_EQ(
        lines.value(0), StreamEnter + "guideId: s1, streamUrl: 'http://h/a?b=c d', error: OK"_s);
    EXPECT_THAT(log().lines("INFO"_s),
        ElementsAre(
            "CMTuneInWorker::handleStateChange: playback OK: id:'s1', uri: 'http://h/a?b=c d'"_s,
            "Reporting status: status: OK guideId: 's1', URL:' "
            "http://opml.radiotime.com/Report.ashx?c=stream&id=s1"
            "&streamUrl=http%3A%2F%2Fh%2Fa%3Fb%3Dc%20d&listenId=0&render=json"
            "&partnerId=partner&serial=ABC'"_s));
    EXPECT_EQ(lines.last(), "DEBUG sendAutomaticStreamReport: reporting status: OK"_s);
    EXPECT_THAT(log().lines("ERROR"_s), IsEmpty());
}

TEST_F(PlaybackReportsTest, SendAStreamThatFailed)
{
    stream("s1"_s, "http://h/a"_s, "no & sound"_s);
    expectRequests(
        {"GET /Report.ashx?c=stream&id=s1&streamUrl=http%3A%2F%2Fh%2Fa&listenId=0"
         "&error=404&message=no%20%26%20sound&render=json&partnerId=partner&serial=ABC"});
    EXPECT_EQ(log().lines().constFirst(),
        StreamEnter + "guideId: s1, streamUrl: 'http://h/a', error: no & sound"_s);
    EXPECT_THAT(log().lines("INFO"_s),
        ElementsAre("CMTuneInWorker::handleStateChange: playback ERROR: id:'s1', "
                    "uri: 'http://h/a', error: 'no & sound'"_s,
            "Reporting status: status: fail guideId: 's1', URL:' "
            "http://opml.radiotime.com/Report.ashx?c=stream&id=s1"
            "&streamUrl=http%3A%2F%2Fh%2Fa&listenId=0&error=404&message=no%20%26%20sound"
            "&render=json&partnerId=partner&serial=ABC'"_s));
}

TEST_F(PlaybackReportsTest, LeaveOutAnUnknownGuideIdOrUrl)
{
    stream(QString(), "http://h/a"_s);
    stream("s1"_s, QString());
    expectRequests({"GET /Report.ashx?c=stream&streamUrl=http%3A%2F%2Fh%2Fa&listenId=0"
                    "&render=json&partnerId=partner&serial=ABC",
        "GET /Report.ashx?c=stream&id=s1&listenId=0&render=json&partnerId=partner&serial=ABC"});
}

TEST_F(PlaybackReportsTest, SendTheDurationOfAStop)
{
    duration("s1"_s, 120, true);
    expectRequests({"POST /Report.ashx?c=time&id=s1&duration=120&listenId=0&trigger=stop"
                    "&render=json&partnerId=partner&serial=ABC"});
    EXPECT_EQ(
        log().lines().constFirst(), DurationEnter + "guideId: s1, duration: 120, stopped: 1"_s);
    EXPECT_THAT(log().lines("INFO"_s),
        ElementsAre("sendDurationReport: reporting duration: id: s1, time: 120 seconds"_s));
    EXPECT_EQ(log().lines().last(), "DEBUG sendDurationReport: reporting duration: OK"_s);
}

TEST_F(PlaybackReportsTest, SendTheDurationOfAPause)
{
    duration("s1"_s, 7, false);
    EXPECT_EQ(server().requests().constFirst().body, QByteArray());
    expectRequests({"POST /Report.ashx?c=time&id=s1&duration=7&listenId=0"
                    "&render=json&partnerId=partner&serial=ABC"});
    EXPECT_EQ(log().lines().constFirst(), DurationEnter + "guideId: s1, duration: 7, stopped: 0"_s);
}

TEST_F(PlaybackReportsTest, LeaveOutAnEmptyPartnerId)
{
    set(VeskTuneInPartnerIdPath(), QString());
    stream("s1"_s, QString());
    duration("s1"_s, 1, false);
    expectRequests({"GET /Report.ashx?c=stream&id=s1&listenId=0&render=json&serial=ABC",
        "POST /Report.ashx?c=time&id=s1&duration=1&listenId=0&render=json&serial=ABC"});
}

/// The settings of a host always have a serial, so a report cannot show this.
TEST(PlaybackReportsOfNoDeviceTest, LeaveOutAnEmptySerial)
{
    const QString report = "http://opml.radiotime.com/Report.ashx?c=time"_s;
    VeskUrl url(report);
    TuneInApi::addDevice(url, TuneInSettings());
    EXPECT_EQ(url.toString(), report);
}

TEST_F(PlaybackReportsTest, LogAFaultInTheAnswerAsTheRequestsError)
{
    answer("/Report.ashx", QByteArray(R"({"head":{"status":"400","fault":"bad"},"body":[]})"));
    stream("s1"_s, QString());
    EXPECT_EQ(log().lines("ERROR"_s).last(),
        "sendAutomaticStreamReport: reporting status: failed: error: 'TuneIn request failed.'"_s);
    duration("s1"_s, 1, true);
    EXPECT_EQ(log().lines("ERROR"_s).last(),
        "sendDurationReport: reporting duration: failed: error: 'TuneIn request failed.'"_s);
    EXPECT_THAT(log().lines().filter("failed, status"_s), IsEmpty());
    EXPECT_THAT(log().lines().filter("reporting duration: OK"_s), IsEmpty());
}

TEST_F(PlaybackReportsTest, LogAServerThatCannotBeReached)
{
    closeServer();
    stream("s1"_s, QString());
    EXPECT_EQ(log().lines().last(),
        "ERROR sendAutomaticStreamReport: reporting status: failed: error: "
        "'Invalid data received.'"_s);
    duration("s1"_s, 1, true);
    EXPECT_EQ(log().lines().last(),
        "ERROR sendDurationReport: reporting duration: failed: error: 'Invalid data received.'"_s);
    openServer();
}

TEST_F(PlaybackReportsTest, LogANetworkThatIsDown)
{
    set(VeskNetworkStateConnected(), false);
    duration("s1"_s, 1, true);
    const QString message = CMErrorHelper::create(CURLE_COULDNT_CONNECT,
        VeskUrl("http://opml.radiotime.com/Report.ashx?c=time"
                "&id=s1&duration=1&listenId=0&trigger=stop&render=json"
                "&partnerId=partner&serial=ABC"_s),
        "TuneIn"_s)
                                .message()
                                .toString();
    EXPECT_EQ(log().lines().last(),
        "ERROR sendDurationReport: reporting duration: failed: error: '"_s + message + "'"_s);
    expectRequests({});
}

TEST_F(PlaybackReportsTest, KeepPlaceholdersInUrlsAndErrors)
{
    stream("%2"_s, "http://h/%3%41%2F"_s, "%1 %9"_s);
    EXPECT_EQ(log().lines().constFirst(),
        StreamEnter + "guideId: %2, streamUrl: 'http://h/%3%41%2F', error: %1 %9"_s);
    EXPECT_EQ(log().lines("INFO"_s).constFirst(),
        "CMTuneInWorker::handleStateChange: playback ERROR: id:'%2', uri: 'http://h/%3%41%2F', "
        "error: '%1 %9'"_s);
    expectRequests({"GET /Report.ashx?c=stream&id=%252&streamUrl=http%3A%2F%2Fh%2F%253%2541%252F"
                    "&listenId=0&error=404&message=%251%20%259&render=json&partnerId=partner"
                    "&serial=ABC"});
}

TEST_F(PlaybackReportsTest, SendSecretsOfTheUrlButKeepThemOutOfTheLog)
{
    for (const QString &error : {QString(), "no sound"_s}) {
        server().clearRequests();
        stream("s1"_s, "http://me:SECRET@h/a?token=SECRET&b=1"_s, error);
        EXPECT_THAT(server().requestLines().value(0).toStdString(),
            testing::HasSubstr(
                "streamUrl=http%3A%2F%2Fme%3ASECRET%40h%2Fa%3Ftoken%3DSECRET%26b%3D1&"));
        EXPECT_EQ(log().lines().filter("http://***@h/a?token=***&b=1"_s).size(), 2);
        EXPECT_THAT(log().lines().filter("SECRET"_s), IsEmpty());
    }
}

TEST_F(PlaybackReportsTest, KeepErrorsOfSeveralLinesAndScripts)
{
    stream("s1"_s, QString(), "Zeit\u00fcberschreitung\n\u8d85\u65f6"_s);
    expectRequests({"GET /Report.ashx?c=stream&id=s1&listenId=0&error=404"
                    "&message=Zeit%C3%BCberschreitung%0A%E8%B6%85%E6%97%B6&render=json"
                    "&partnerId=partner&serial=ABC"});
}
