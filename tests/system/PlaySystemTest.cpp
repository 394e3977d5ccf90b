// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/support/Text.h"
#include "tests/system/PlayFixture.h"

#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#include <gmock/gmock.h>

namespace {

class PlaySystem : public PlayFixture { };

TEST_F(PlaySystem, AListedStationPlaysItsOwnMelody)
{
    const Outcome found = product.ctl({text("search"), text("trial 01")});
    ASSERT_TRUE(found.out.contains(text("Trial 01 Every Codec"))) << found.out.toStdString();
    QElapsedTimer clock;
    clock.start();
    play(text("trial%2001"));
    ASSERT_TRUE(waitForState(2));
    ASSERT_TRUE(waitForSound(5));
    EXPECT_EQ(state().value(text("title")).toString(),
        text("Trial 01 Every Codec (Dunedin, New Zealand)"));
    EXPECT_FALSE(state().value(text("streamTitle")).toString().isEmpty());
    EXPECT_EQ(state().value(text("bitrate")).toInt(), 128000);
    command("player.stop");
    const double most = static_cast<double>(clock.elapsed()) / 1000;
    const ear::Sound sound = heard();
    EXPECT_GE(sound.seconds(), 3.5);
    EXPECT_LE(sound.seconds(), most + 1.5);
    EXPECT_TRUE(ear::isPartOf(sound.notes(), melody(text("s29001")), 6));
    EXPECT_FALSE(ear::isPartOf(sound.notes(), melody(text("s29002")), 6));
    EXPECT_FALSE(ear::isPartOf(sound.notes(), melody(text("s29001"), 1), 6));
}

/// Stations behind playlists and redirects of all kinds, and the melody that must be heard.
TEST_F(PlaySystem, StationsBehindPlaylistsPlay)
{
    for (const char *number : {"02", "07", "09", "10", "12", "14", "15"}) {
        play(text("trial%20") + text(number));
        EXPECT_TRUE(waitForState(2)) << number;
        command("player.stop");
    }
}

TEST_F(PlaySystem, AStationPlaysAfterItsAnnouncement)
{
    play(text("trial%2008"));
    ASSERT_TRUE(waitForState(2));
    ASSERT_TRUE(waitForSound(9));
    command("player.stop");
    ear::Sound sound = heard();
    sound.samples.erase(sound.samples.begin(), sound.samples.begin() + 5 * sound.Rate);
    EXPECT_TRUE(ear::isPartOf(sound.notes(), melody(text("s29008")), 6));
    EXPECT_EQ(state().value(text("state")).toInt(), 0);
}

TEST_F(PlaySystem, ReportsTheStreamAndItsDuration)
{
    QElapsedTimer clock;
    clock.start();
    play(text("trial%2001"));
    ASSERT_TRUE(waitForState(2));
    ASSERT_TRUE(waitForSound(3));
    command("player.pause");
    ASSERT_TRUE(waitForState(3));
    command("player.resume");
    ASSERT_TRUE(waitForState(2));
    ASSERT_TRUE(waitForSound(6));
    command("player.stop");
    ASSERT_TRUE(product.waitForRequests(text("Report.ashx"), 2));
    const double most = static_cast<double>(clock.elapsed()) / 1000;

    const QStringList reports = requests("Report.ashx");
    const QString device = text("&render=json&partnerId=test&serial=[0-9a-f]{32}$");
    EXPECT_THAT(reports.value(0).toStdString(),
        testing::MatchesRegex(
            (text("^GET /Report\\.ashx\\?c=stream&id=s29001&streamUrl=http%3A%2F%2Fopml\\.radiotime"
                  "\\.com%2Fstream%2Fs29001%2F1\\.mp3&listenId=[0-9]{10}")
                + device)
                .toStdString()));
    EXPECT_THAT(reports.value(1).toStdString(),
        testing::MatchesRegex((text("^POST /Report\\.ashx\\?c=time&id=s29001&duration=[0-9]+"
                                    "&listenId=[0-9]{10}&trigger=stop")
            + device)
                                  .toStdString()));
    const int duration
        = reports.value(1).section(text("&duration="), 1).section(QLatin1Char('&'), 0, 0).toInt();
    const ear::Sound sound = heard();
    EXPECT_GE(duration, 4);
    EXPECT_NEAR(duration, sound.seconds(), 1.5);
    // The pause disconnects, the resume reconnects: the file holds both parts.
    EXPECT_EQ(requests("/stream/").size(), 2);
    EXPECT_GE(sound.seconds(), 4.5);
    EXPECT_LE(sound.seconds(), most + 1.5);
}

TEST_F(PlaySystem, AStationThatCannotBePlayedIsReportedOnceAsAnError)
{
    play(text("trial%2013"));
    ASSERT_TRUE(product.waitForRequests(text("Report.ashx"), 1, 45000));
    ASSERT_TRUE(waitForState(0));
    EXPECT_EQ(state().value(text("error")).toString(),
        text("There is a web page in place of the stream."));
    const QStringList reports = requests("Report.ashx");
    EXPECT_EQ(reports.size(), 1);
    EXPECT_THAT(reports.value(0).toStdString(),
        testing::HasSubstr("&error=404&message=There%20is%20a%20web%20page%20in%20place%20of%20the"
                           "%20stream.&render=json"));
}

TEST_F(PlaySystem, EachPlayHasItsOwnListenId)
{
    for (int i = 0; i < 2; ++i) {
        play(text("trial%2001"));
        ASSERT_TRUE(waitForState(2));
        QThread::msleep(1200);
    }
    command("player.stop");
    ASSERT_TRUE(product.waitForRequests(text("Report.ashx"), 4));
    const QStringList reports = requests("Report.ashx");
    QStringList kinds;
    for (const QString &report : reports)
        kinds.append(report.section(QLatin1Char('='), 1, 1).section(QLatin1Char('&'), 0, 0));
    EXPECT_EQ(kinds, (QStringList {text("stream"), text("time"), text("stream"), text("time")}));
    const QString listenId = text("listenId=");
    EXPECT_NE(
        reports.at(0).section(listenId, 1).left(10), reports.at(2).section(listenId, 1).left(10));
}

TEST_F(PlaySystem, SpokenNoticesAreErrors)
{
    QFile answer(folder.filePath(text("excuse.json")));
    ASSERT_TRUE(answer.open(QIODevice::WriteOnly));
    answer.write("{\"head\":{\"status\":\"200\"},\"body\":[{\"element\":\"audio\",\"url\":"
                 "\"http://opml.radiotime.com/service/Audio/notcompatible.enUS.mp3\"}]}");
    answer.close();
    product.setFault("body@Tune.ashx:" + answer.fileName().toUtf8());
    play(text("trial%2001"));
    ASSERT_TRUE(waitForState(0));
    EXPECT_EQ(state().value(text("error")).toString(),
        text("This device cannot play the station's streams."));
}

// Faults of the stream's server, each survived without any action by the user.

TEST_F(PlaySystem, AClosedStreamContinuesWithoutSilence)
{
    play(text("trial%2001"));
    ASSERT_TRUE(waitForState(2));
    QThread::sleep(2);
    product.setFault("stream-close@/stream/:0*1");
    const Watched watched = watch(6000);
    EXPECT_LE(watched.longestBreakMs, 1000);
    EXPECT_EQ(watched.lastState, 2);
    EXPECT_EQ(requests("/stream/").size(), 2);
    command("player.stop");
    EXPECT_TRUE(ear::isPartOf(heard().notes(), melody(text("s29001")), 4));
}

TEST_F(PlaySystem, AResetStreamContinuesWithoutSilence)
{
    play(text("trial%2001"));
    ASSERT_TRUE(waitForState(2));
    QThread::sleep(2);
    product.setFault("stream-reset@/stream/:0*1");
    const Watched watched = watch(6000);
    EXPECT_LE(watched.longestBreakMs, 1000);
    EXPECT_EQ(watched.lastState, 2);
    EXPECT_EQ(requests("/stream/").size(), 2);
}

TEST_F(PlaySystem, AStalledStreamIsNoticedWithinTenSecondsAndRecovers)
{
    play(text("trial%2001"));
    ASSERT_TRUE(waitForState(2));
    QThread::sleep(2);
    product.setFault("stream-stall@/stream/:0*1");
    QElapsedTimer clock;
    clock.start();
    ASSERT_TRUE(product.waitForRequests(text("/stream/"), 2, 10000));
    EXPECT_LE(clock.elapsed(), 10000);
    ASSERT_TRUE(waitForState(2));
    EXPECT_TRUE(isHeard());
    EXPECT_EQ(watch(3000).lastState, 2);
}

TEST_F(PlaySystem, AStreamRefusedThreeTimesRecovers)
{
    play(text("trial%2001"));
    ASSERT_TRUE(waitForState(2));
    product.setFault("http-status@/stream/:503*3");
    product.setFault("stream-close@/stream/:0*1");
    ASSERT_TRUE(product.waitForRequests(text("/stream/"), 5, 30000));
    ASSERT_TRUE(waitForState(2));
    EXPECT_TRUE(isHeard());
    EXPECT_EQ(watch(2000).lastState, 2);
}

TEST_F(PlaySystem, AServerOutageOfTwentySecondsIsSurvived)
{
    play(text("trial%2001"));
    ASSERT_TRUE(waitForState(2));
    QThread::sleep(1);
    product.setFault("down:20");
    ASSERT_TRUE(waitForState(1, 15000));
    ASSERT_TRUE(waitForState(2, 60000));
    EXPECT_TRUE(isHeard());
    const Watched watched = watch(2000);
    EXPECT_EQ(watched.lastState, 2);
    EXPECT_EQ(watched.error, QString());
}

} // namespace
