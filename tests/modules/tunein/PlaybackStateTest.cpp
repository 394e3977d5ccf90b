// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/modules/tunein/PlaybackFixture.h"

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace {

class PlaybackStateTest : public PlaybackFixture {
protected:
    PlaybackStateTest() { start(); }
};

const char SkippedZero[] = "Skipped reporting duration, zero listening duration.";
const char SkippedNoGuideId[] = "Skipped reporting duration, station without a guideID.";

} // namespace

TEST_F(PlaybackStateTest, LeavesThePauseOutOfTheDuration)
{
    play(Playing);
    FakeClock::advance(90000);
    play(Paused);
    FakeClock::advance(10000);
    play(Playing);
    FakeClock::advance(30000);
    play(Stopped);
    EXPECT_EQ(durationReports(), QList<QByteArray>({durationReport("s1", 120, true)}));
    EXPECT_FALSE(timerIsActive());
}

TEST_F(PlaybackStateTest, AddsUpTheTimeBetweenSeveralPauses)
{
    for (const int seconds : {10, 20, 40}) {
        play(Playing);
        FakeClock::advance(seconds * 1000);
        play(Paused);
        FakeClock::advance(5000);
    }
    play(Stopped);
    EXPECT_EQ(durationReports(), QList<QByteArray>({durationReport("s1", 70, true)}));
}

TEST_F(PlaybackStateTest, ReportsOnceFiveMinutesIntoAPauseAndNothingAtTheStop)
{
    play(Playing);
    FakeClock::advance(60000);
    play(Paused);
    FakeClock::advance(300000);
    log().clear();
    fireTimer();
    EXPECT_THAT(log().lines("INFO"_s), Contains("Sending duration report after 5 minutes ..."_s));
    EXPECT_EQ(durationReports(), QList<QByteArray>({durationReport("s1", 60, false)}));

    log().clear();
    play(Stopped);
    EXPECT_THAT(log().lines("INFO"_s),
        ElementsAre("TuneIn playback stopped."_s, QLatin1String(SkippedZero)));
    EXPECT_EQ(durationReports().size(), 1);
}

TEST_F(PlaybackStateTest, ReportsOnlyTheTimeSinceTheResumeAfterAReportedPause)
{
    play(Playing);
    FakeClock::advance(60000);
    play(Paused);
    fireTimer();
    play(Playing);
    FakeClock::advance(7000);
    play(Stopped);
    EXPECT_EQ(durationReports(),
        QList<QByteArray>({durationReport("s1", 60, false), durationReport("s1", 7, true)}));
}

TEST_F(PlaybackStateTest, RunsItsTimerOnlyDuringAPause)
{
    EXPECT_FALSE(timerIsActive());
    play(Playing);
    EXPECT_FALSE(timerIsActive());
    play(Paused);
    onWorker([this] {
        EXPECT_TRUE(timer()->isActive());
        EXPECT_EQ(timer()->interval(), 300000);
        EXPECT_FALSE(timer()->isSingleShot());
    });
    play(Playing);
    EXPECT_FALSE(timerIsActive());
    play(Paused);
    EXPECT_TRUE(timerIsActive());
    play(Stopped);
    EXPECT_FALSE(timerIsActive());
}

TEST_F(PlaybackStateTest, StopsItsTimerWhenItExpires)
{
    play(Playing);
    play(Paused);
    log().clear();
    fireTimer();
    EXPECT_FALSE(timerIsActive());
    EXPECT_EQ(log().lines().constFirst(),
        "TRACE Enter void CMTuneInWorker::on_listeningDurationTimer_timeout(): "_s);
}

TEST_F(PlaybackStateTest, ReportsOnceWhenItsTimerExpires)
{
    play(Playing);
    FakeClock::advance(60000);
    play(Paused);
    onWorker([this] { timer()->setInterval(0); });
    EXPECT_TRUE(spinUntil([this] { return !timerIsActive(); }));
    EXPECT_EQ(durationReports(), QList<QByteArray>({durationReport("s1", 60, false)}));
}

TEST_F(PlaybackStateTest, WarnsWhenItsTimerExpiresOutsideAPause)
{
    play(Playing);
    FakeClock::advance(5000);
    log().clear();
    fireTimer();
    EXPECT_THAT(log().lines(),
        ElementsAre("TRACE Enter void CMTuneInWorker::on_listeningDurationTimer_timeout(): "_s,
            "WARN Not sending duration report, not in paused state (timer should be already "
            "stopped)."_s));
    EXPECT_THAT(durationReports(), IsEmpty());
    play(Stopped);
    EXPECT_EQ(durationReports(), QList<QByteArray>({durationReport("s1", 5, true)}));
}

TEST_F(PlaybackStateTest, SkipsTheReportOfAPauseWithoutTimeOrGuideId)
{
    play(Playing);
    play(Paused);
    log().clear();
    fireTimer();
    EXPECT_THAT(log().lines("INFO"_s), ElementsAre(QLatin1String(SkippedZero)));
    play(Stopped);

    play(Playing, 2, QString(), "http://stream.example/live"_s, QString());
    FakeClock::advance(5000);
    play(Paused);
    log().clear();
    fireTimer();
    EXPECT_THAT(log().lines("INFO"_s), ElementsAre(QLatin1String(SkippedNoGuideId)));
    EXPECT_THAT(durationReports(), IsEmpty());
}

TEST_F(PlaybackStateTest, ResetsTheTimeAtAPauseEvenWhenTheReportIsSkipped)
{
    const QString stream = "http://stream.example/live"_s;
    play(Playing, 1, QString(), stream, QString());
    FakeClock::advance(5000);
    play(Paused, 1, QString(), stream, QString());
    fireTimer();
    play(Playing, 1, QString(), stream, QString());
    log().clear();
    play(Stopped, 1, QString(), stream, QString());
    EXPECT_THAT(log().lines("INFO"_s),
        ElementsAre("TuneIn playback stopped."_s, QLatin1String(SkippedZero)));
}

TEST_F(PlaybackStateTest, LogsEachTransitionOnce)
{
    for (const VeskPlayLogicState::Enum state :
        {Playing, Playing, Paused, Paused, Playing, Stopped, Stopped}) {
        play(state);
        FakeClock::advance(1000);
    }
    EXPECT_THAT(log().lines("INFO"_s).filter("TuneIn playback"_s),
        ElementsAre("TuneIn playback started."_s, "TuneIn playback paused."_s,
            "TuneIn playback started."_s, "TuneIn playback stopped."_s));
    EXPECT_THAT(log().lines("TRACE"_s), Contains("Performing duration report"_s).Times(1));
}

TEST_F(PlaybackStateTest, LogsEachRequest)
{
    play(Playing, 7);
    play(Stopped, 7, "broken"_s);
    EXPECT_TRUE(log().contains(
        "TRACE previous state: stopped, new state: playing, playId: {id: 7}, error:"_s));
    EXPECT_TRUE(log().contains(
        "TRACE previous state: playing, new state: stopped, playId: {id: 7}, error:broken"_s));
}

TEST_F(PlaybackStateTest, LogsAStopAndItsReport)
{
    play(Playing, 7);
    FakeClock::advance(5000);
    const QString listenId = QString::number(FakeClock::epochSeconds() - 5);
    log().clear();
    play(Stopped, 7);
    const QString url = "http://opml.radiotime.com/Report.ashx?c=time&id=s1&duration=5&listenId="_s
        + listenId + "&trigger=stop&render=json&partnerId=partner&serial=ABC"_s;
    EXPECT_THAT(log().lines(),
        ElementsAre("TRACE previous state: playing, new state: stopped, playId: {id: 7}, error:"_s,
            "INFO TuneIn playback stopped."_s, "TRACE Performing duration report"_s,
            "TRACE Enter void CMTuneInWorker::sendDurationReport(const QString&, int, bool): "
            "guideId: s1, duration: 5, stopped: 1"_s,
            "INFO sendDurationReport: reporting duration: id: s1, time: 5 seconds"_s,
            "TRACE Enter TuneInRequest::request:"_s,
            "TRACE Enter CMError TuneInHttpClient::request(const VeskUrl&, QByteArray*, "
            "TuneInHttpClient::Type): "_s
                + url,
            "TRACE Enter TuneInHttpClient::on_request(VeskUrl, int, int)::"
            "<lambda(const Result&)>: "_s
                + url + " Success 200"_s,
            "DEBUG parsing data: size: 35"_s, "DEBUG Data successfully parsed."_s,
            "DEBUG sendDurationReport: reporting duration: OK"_s));
}

TEST_F(PlaybackStateTest, LogsWhyAStopIsNotReported)
{
    play(Playing, 7);
    log().clear();
    play(Stopped, 7);
    EXPECT_THAT(log().lines(),
        ElementsAre("TRACE previous state: playing, new state: stopped, playId: {id: 7}, error:"_s,
            "INFO TuneIn playback stopped."_s, "TRACE Performing duration report"_s,
            "INFO "_s + QLatin1String(SkippedZero)));
}

TEST_F(PlaybackStateTest, OnlyRecordsAnUnknownState)
{
    play(Playing);
    FakeClock::advance(4000);
    log().clear();
    play(static_cast<VeskPlayLogicState::Enum>(7));
    FakeClock::advance(2000);
    play(Playing);
    EXPECT_THAT(log().lines(),
        ElementsAre("TRACE previous state: playing, new state: 7, playId: {id: 1}, error:"_s,
            "TRACE previous state: 7, new state: playing, playId: {id: 1}, error:"_s));
    play(Stopped);
    EXPECT_EQ(durationReports(), QList<QByteArray>({durationReport("s1", 6, true)}));
}

TEST_F(PlaybackStateTest, IgnoresARepeatedState)
{
    play(Playing);
    FakeClock::advance(10000);
    play(Playing);
    FakeClock::advance(10000);
    play(Paused);
    FakeClock::advance(10000);
    play(Paused);
    play(Stopped);
    play(Stopped);
    EXPECT_EQ(durationReports(), QList<QByteArray>({durationReport("s1", 20, true)}));
    EXPECT_EQ(streamReports().size(), 1);
}

TEST_F(PlaybackStateTest, KeepsTimingAcrossAReconnect)
{
    play(Playing);
    FakeClock::advance(10000);
    play(Transitioning);
    FakeClock::advance(5000);
    play(Playing);
    FakeClock::advance(10000);
    play(Stopped);
    EXPECT_EQ(durationReports(), QList<QByteArray>({durationReport("s1", 25, true)}));
    EXPECT_THAT(log().lines("INFO"_s), Contains("TuneIn playback started."_s).Times(1));
}

TEST_F(PlaybackStateTest, AddsNoTimeForASecondPause)
{
    play(Playing);
    FakeClock::advance(10000);
    play(Paused);
    FakeClock::advance(20000);
    play(Transitioning);
    FakeClock::advance(20000);
    play(Paused);
    FakeClock::advance(20000);
    play(Stopped);
    EXPECT_EQ(durationReports(), QList<QByteArray>({durationReport("s1", 10, true)}));
    EXPECT_THAT(log().lines("INFO"_s), Contains("TuneIn playback paused."_s).Times(1));
}

TEST_F(PlaybackStateTest, StartsEachPlayAtZero)
{
    play(Playing);
    FakeClock::advance(10000);
    play(Stopped);
    FakeClock::advance(1000000);
    play(Playing);
    FakeClock::advance(3000);
    play(Stopped);
    EXPECT_EQ(durationReports(),
        QList<QByteArray>({durationReport("s1", 10, true), durationReport("s1", 3, true)}));
}

TEST_F(PlaybackStateTest, RoundsSecondsTowardZero)
{
    play(Playing);
    FakeClock::advance(1999);
    play(Stopped);
    EXPECT_EQ(durationReports(), QList<QByteArray>({durationReport("s1", 1, true)}));
    play(Playing);
    FakeClock::advance(999);
    log().clear();
    play(Stopped);
    EXPECT_THAT(log().lines("INFO"_s), Contains(QLatin1String(SkippedZero)));
}

TEST_F(PlaybackStateTest, CountsFromClockZeroForAPauseWithoutPlaying)
{
    play(Playing);
    play(Stopped);
    FakeClock::advance(1000);
    play(Paused);
    const qint64 seconds = FakeClock::monotonic() / 1000;
    FakeClock::advance(1000);
    play(Stopped);
    EXPECT_EQ(durationReports(), QList<QByteArray>({durationReport("s1", seconds, true)}));
}

TEST_F(PlaybackStateTest, CanPauseAgainAfterAStop)
{
    play(Playing);
    FakeClock::advance(4000);
    play(Paused);
    play(Stopped);
    play(Paused);
    EXPECT_TRUE(timerIsActive());
    const qint64 seconds = FakeClock::monotonic() / 1000;
    FakeClock::advance(1000);
    play(Stopped);
    EXPECT_EQ(durationReports(),
        QList<QByteArray>({durationReport("s1", 4, true), durationReport("s1", seconds, true)}));
    EXPECT_THAT(log().lines("INFO"_s), Contains("TuneIn playback paused."_s).Times(2));
}

TEST_F(PlaybackStateTest, CountsFromClockZeroForAStopWithoutPlaying)
{
    play(Playing);
    play(Stopped);
    FakeClock::advance(1000);
    play(Transitioning);
    play(Stopped);
    EXPECT_EQ(durationReports(),
        QList<QByteArray>({durationReport("s1", FakeClock::monotonic() / 1000, true)}));
}

TEST_F(PlaybackStateTest, ReportsASuccessOncePerPlay)
{
    play(Transitioning, 1);
    EXPECT_THAT(streamReports(), IsEmpty());
    play(Playing, 1);
    play(Playing, 1);
    play(Paused, 1);
    play(Playing, 1);
    EXPECT_EQ(streamReports(), QList<QByteArray>({streamReport("s1")}));
    play(Stopped, 1);
    play(Playing, 2);
    EXPECT_EQ(streamReports().size(), 2);
}

TEST_F(PlaybackStateTest, ReportsAnErrorOncePerPlayInAnyState)
{
    play(Stopped, 1, "broken"_s);
    play(Stopped, 1, "broken"_s);
    play(Stopped, 1, "broken again"_s);
    EXPECT_EQ(streamReports(), QList<QByteArray>({streamReport("s1", "broken")}));
    play(Transitioning, 2, "broken"_s);
    EXPECT_EQ(streamReports().size(), 2);
}

TEST_F(PlaybackStateTest, ReportsAnErrorAfterASuccessAndASuccessAfterAnError)
{
    play(Playing, 1);
    play(Stopped, 1, "lost"_s);
    play(Stopped, 1, "lost"_s);
    play(Playing, 1);
    play(Playing, 1);
    play(Stopped, 1, "lost"_s);
    EXPECT_EQ(streamReports(),
        QList<QByteArray>({streamReport("s1"), streamReport("s1", "lost"), streamReport("s1"),
            streamReport("s1", "lost")}));
}

TEST_F(PlaybackStateTest, ReportsNothingForATrackWithoutUrl)
{
    play(Playing, 1, QString(), QString());
    play(Playing, 1, "broken"_s, QString());
    post(Playing, 1, QString(), VeskRoles());
    EXPECT_THAT(server().requestLines(), IsEmpty());
}

TEST_F(PlaybackStateTest, KeepsThePlayAcrossATrackWithoutUrl)
{
    play(Playing, 1);
    play(Playing, 2, QString(), QString());
    play(Playing, 1);
    EXPECT_EQ(streamReports().size(), 1);
}

TEST_F(PlaybackStateTest, ReportsAStreamWithoutGuideIdButNotItsDuration)
{
    play(Playing, 1, QString(), "http://stream.example/live"_s, QString());
    FakeClock::advance(5000);
    log().clear();
    play(Stopped, 1, QString(), "http://stream.example/live"_s, QString());
    EXPECT_THAT(log().lines("INFO"_s),
        ElementsAre("TuneIn playback stopped."_s, QLatin1String(SkippedNoGuideId)));
    ASSERT_EQ(streamReports().size(), 1);
    EXPECT_THAT(
        streamReports().constFirst().toStdString(), Not(testing::HasSubstr("?c=stream&id=")));
    EXPECT_THAT(durationReports(), IsEmpty());
}

TEST_F(PlaybackStateTest, TakesTheGuideIdOnlyFromTheMatchingPath)
{
    const CMPath item = path("TuneIn:browse?veskGuideId=s1"_s);
    VeskRoles matching;
    matching.setPath(item);
    VeskList<VeskRoles> matchingRoles;
    matchingRoles.append(matching);
    VeskMetaData meta;
    meta.setMatchingMediaRoles(matchingRoles);
    meta.setContentPlayContextPath(path("TuneIn:player_context"_s,
        {{"guideId"_s, "s1"_s}, {"veskMatchingPath"_s, item.toEncoded()}}));
    VeskResource resource;
    resource.setUri("http://stream.example/live"_s);
    VeskList<VeskResource> resources;
    resources.append(resource);
    VeskMediaData media;
    media.setMetaData(meta);
    media.setResources(resources);
    VeskRoles track;
    track.setMediaData(media);
    // The row of the item itself, as the browse node shows it.
    track.setPath(item);

    post(Playing, 1, QString(), track);
    ASSERT_EQ(streamReports().size(), 1);
    EXPECT_FALSE(streamReports().constFirst().contains("&id="));
    FakeClock::advance(5000);
    log().clear();
    post(Stopped, 1, QString(), track);
    EXPECT_THAT(log().lines("INFO"_s),
        ElementsAre("TuneIn playback stopped."_s, QLatin1String(SkippedNoGuideId)));
    EXPECT_THAT(durationReports(), IsEmpty());
}

TEST_F(PlaybackStateTest, LogsAZeroDurationBeforeAMissingGuideId)
{
    play(Playing, 1, QString(), "http://stream.example/live"_s, QString());
    log().clear();
    play(Stopped);
    EXPECT_THAT(log().lines("INFO"_s),
        ElementsAre("TuneIn playback stopped."_s, QLatin1String(SkippedZero)));
}

TEST_F(PlaybackStateTest, ReportsTheDurationOfTheOldItemWhenAStopNamesANewPlay)
{
    play(Playing, 1, QString(), "http://stream.example/one"_s, "s1"_s);
    FakeClock::advance(4000);
    play(Stopped, 2, QString(), "http://stream.example/two"_s, "s2"_s);
    EXPECT_EQ(durationReports(), QList<QByteArray>({durationReport("s1", 4, true)}));
}

TEST_F(PlaybackStateTest, KeepsTheGuideIdUntilANewPlay)
{
    play(Playing, 1);
    play(Stopped, 1);
    // A new play whose first request reports nothing clears the guide id.
    play(Transitioning, 2, QString(), "http://stream.example/two"_s, "s2"_s);
    FakeClock::advance(1000);
    log().clear();
    play(Stopped, 2, QString(), "http://stream.example/two"_s, "s2"_s);
    EXPECT_THAT(log().lines("INFO"_s), Contains(QLatin1String(SkippedNoGuideId)));
}

TEST_F(PlaybackStateTest, ClearsTheGuideIdWhenAReportedTrackHasNone)
{
    play(Playing);
    FakeClock::advance(5000);
    play(Playing, 1, "lost"_s, "http://stream.example/live"_s, QString());
    ASSERT_EQ(streamReports().size(), 2);
    EXPECT_FALSE(streamReports().constLast().contains("&id="));
    log().clear();
    play(Stopped);
    EXPECT_THAT(log().lines("INFO"_s),
        ElementsAre("TuneIn playback stopped."_s, QLatin1String(SkippedNoGuideId)));
    EXPECT_THAT(durationReports(), IsEmpty());
}

TEST_F(PlaybackStateTest, TakesTheGuideIdFromAnErrorReportToo)
{
    play(Playing, 1, "stutters"_s);
    FakeClock::advance(5000);
    play(Paused, 1, "stutters"_s);
    fireTimer();
    play(Playing, 1, "stutters"_s);
    FakeClock::advance(3000);
    play(Stopped, 1, "stutters"_s);
    EXPECT_EQ(streamReports().size(), 1);
    EXPECT_EQ(durationReports(),
        QList<QByteArray>({durationReport("s1", 5, false), durationReport("s1", 3, true)}));
}

TEST_F(PlaybackStateTest, UsesTheTimeAPlayWasFirstSeenAsItsListenId)
{
    play(Transitioning, 1);
    const QByteArray firstSeen = QByteArray::number(FakeClock::epochSeconds());
    FakeClock::advance(5000);
    play(Playing, 1);
    FakeClock::advance(5000);
    play(Stopped, 1);
    ASSERT_EQ(streamReports().size(), 1);
    EXPECT_TRUE(streamReports().constFirst().contains("&listenId=" + firstSeen + "&"));
    EXPECT_EQ(durationReports(), QList<QByteArray>({durationReport("s1", 5, true, firstSeen)}));
}

TEST_F(PlaybackStateTest, GivesEachPlayAListenIdOfItsOwn)
{
    play(Playing, 1);
    FakeClock::advance(60000);
    play(Stopped, 1);
    FakeClock::advance(60000);
    const QByteArray listenId = QByteArray::number(FakeClock::epochSeconds());
    play(Playing, 2);
    FakeClock::advance(5000);
    play(Stopped, 2);
    ASSERT_EQ(streamReports().size(), 2);
    EXPECT_TRUE(streamReports().constLast().contains("&listenId=" + listenId + "&"));
    EXPECT_EQ(durationReports(),
        QList<QByteArray>(
            {durationReport("s1", 60, true), durationReport("s1", 5, true, listenId)}));
}

TEST_F(PlaybackStateTest, AnswersEveryRequestEvenWhenReportsFail)
{
    closeServer();
    for (const VeskPlayLogicState::Enum state :
        {Playing, Paused, Playing, Stopped, Transitioning}) {
        FakeClock::advance(2000);
        const Answer answer = play(state);
        EXPECT_TRUE(answer.error.isEmpty());
        EXPECT_TRUE(answer.value.isNull());
    }
    openServer();
}

TEST_F(PlaybackStateTest, SurvivesMalformedStateChanges)
{
    const QString target = VeskTuneInStateChangePath().toEncoded();
    for (const QVariant &value : {QVariant(), QVariant(7), QVariant("text"_s),
             QVariant(QVariantList {1, 2}), QVariant(QVariantHash {{"state"_s, "playing"_s}}),
             QVariant(QVariantHash {{"state"_s, -5}, {"playId"_s, 3}, {"trackRoles"_s, 1}}),
             QVariant(QVariantHash {{"state"_s, 99}, {"error"_s, QVariantList {1}}})}) {
        const Answer answer = setData(target, VeskRoles::Activate(), value);
        EXPECT_TRUE(answer.error.isEmpty());
        EXPECT_TRUE(answer.value.isNull());
    }
    play(Playing);
    EXPECT_EQ(streamReports().size(), 1);
}

TEST_F(PlaybackStateTest, SendsNothingWhileTheNetworkIsDown)
{
    setNetwork(false);
    play(Playing);
    FakeClock::advance(3000);
    play(Stopped);
    EXPECT_THAT(server().requestLines(), IsEmpty());
    EXPECT_THAT(log().lines("ERROR"_s), Contains("Network is down!"_s).Times(2));
}
