// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/alarm/Alarms.h"

#include "tests/host/alarm/AlarmFixture.h"

namespace {

using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;

class AlarmsTest : public AlarmTest {
protected:
    void stopPlayer()
    {
        logic.stop();
        QCoreApplication::processEvents();
    }
};

TEST_F(AlarmsTest, RingsWithItsRowAndIsStopped)
{
    EXPECT_FALSE(clock.isWaiting());
    EXPECT_EQ(set(alarm("07:30")), text("1"));
    pass(minutes(450) - seconds(1));
    EXPECT_EQ(played(), QString());
    pass(seconds(1));
    EXPECT_EQ(played(), Station);
    EXPECT_EQ(alarms->ringing(), text("1"));
    sound();
    pass(minutes(10));
    EXPECT_EQ(played(), QString());
    EXPECT_EQ(state(), Playing);
    alarms->stop();
    settle();
    EXPECT_EQ(alarms->ringing(), QString());
    EXPECT_EQ(state(), Stopped);
    pass(hours(24) - minutes(10));
    EXPECT_EQ(played(), Station);
}

TEST_F(AlarmsTest, WithoutAlarmsTheClockIsNotWaitedFor)
{
    const QString id = set(alarm("07:30"));
    EXPECT_TRUE(clock.isWaiting());
    alarms->remove(id, [](const auto &result) { EXPECT_TRUE(result); });
    settle();
    EXPECT_FALSE(clock.isWaiting());
    Alarm off = alarm("07:30");
    off.enabled = false;
    set(off);
    EXPECT_FALSE(clock.isWaiting());
}

TEST_F(AlarmsTest, RingsAtItsVolumeThoughThePlayerIsMutedAndBringsBothBack)
{
    isMuted = true;
    volume = 40;
    Alarm loud = alarm("07:30");
    loud.volume = 80;
    set(loud);
    pass(minutes(450));
    EXPECT_EQ(volume, 80);
    EXPECT_FALSE(isMuted);
    sound();
    alarms->stop();
    EXPECT_EQ(volume, 40);
    EXPECT_TRUE(isMuted);
}

TEST_F(AlarmsTest, WithoutAVolumeOfItsOwnItIsThePlayersButNotTooLow)
{
    set(alarm("07:30"));
    pass(minutes(450));
    EXPECT_EQ(volume, 50);
    alarms->stop();
    volume = 3;
    pass(hours(24));
    EXPECT_EQ(volume, AlarmRing::LeastVolume);
    alarms->stop();
    EXPECT_EQ(volume, 3);
}

TEST_F(AlarmsTest, AVolumeThatTheListenerChoseMeanwhileStays)
{
    Alarm loud = alarm("07:30");
    loud.volume = 80;
    set(loud);
    pass(minutes(450));
    volume = 60;
    alarms->stop();
    EXPECT_EQ(volume, 60);
}

TEST_F(AlarmsTest, FadesInFromTheFirstSound)
{
    set(alarm("07:30"));
    pass(minutes(450) + seconds(10));
    EXPECT_EQ(fades, QStringList {text("0-1 30")});
    sound();
    EXPECT_EQ(fades.last(), text("0-1 30"));
    EXPECT_EQ(fades.size(), 2);
    // Not again after a break that mends.
    sound(false);
    fades.clear();
    alarms->stop();
    EXPECT_EQ(fades, QStringList());
    // What is played next is as loud as ever.
    logic.playRow(station(), [](const auto &, const auto &) {});
    EXPECT_EQ(fades, QStringList {text("1-1 0")});
}

TEST_F(AlarmsTest, AStationWithoutSoundIsReplacedByTheHostsOwnSound)
{
    set(alarm("07:30"));
    pass(minutes(450) + seconds(19));
    EXPECT_EQ(played(), Station);
    pass(seconds(1));
    EXPECT_EQ(played(), OwnSound);
    EXPECT_EQ(alarms->ringing(), text("1"));
    EXPECT_EQ(factor, 1);
    EXPECT_EQ(shown("title"), text("Alarm"));
    sound();
    pass(minutes(59));
    EXPECT_EQ(played(), QString());
    EXPECT_EQ(state(), Playing);
}

TEST_F(AlarmsTest, AStationThatIsHeardInTimeIsNot)
{
    set(alarm("07:30"));
    pass(minutes(450) + seconds(19));
    sound();
    pass(minutes(30));
    EXPECT_EQ(played(), Station);
}

TEST_F(AlarmsTest, AStationThatFailsIsTriedAgainUntilThen)
{
    set(alarm("07:30"));
    pass(minutes(450));
    for (int i = 0; i < 9; ++i) {
        EXPECT_EQ(played(), Station) << i;
        Q_EMIT player.gaveUp(Language::ntr(text("No network.")));
        pass(seconds(2));
    }
    EXPECT_EQ(played(), Station);
    Q_EMIT player.gaveUp(Language::ntr(text("No network.")));
    pass(seconds(2));
    EXPECT_EQ(played(), OwnSound);
}

TEST_F(AlarmsTest, AStationThatBreaksWhileItRingsIsReplaced)
{
    set(alarm("07:30"));
    pass(minutes(450));
    sound();
    pass(minutes(5));
    sound(false);
    pass(seconds(19));
    EXPECT_EQ(played(), Station);
    sound();
    pass(minutes(5));
    EXPECT_EQ(played(), QString());
    sound(false);
    pass(seconds(20));
    EXPECT_EQ(played(), OwnSound);
}

TEST_F(AlarmsTest, AnEpisodeThatEndsBeginsAgain)
{
    set(alarm("07:30"));
    pass(minutes(450));
    sound();
    pass(minutes(3));
    Q_EMIT player.ended();
    EXPECT_EQ(played(), Station + QLatin1Char(',') + Station);
    EXPECT_EQ(alarms->ringing(), text("1"));
    // One that is over at once does not keep the house awake any better.
    for (int i = 0; i < 10; ++i) {
        Q_EMIT player.ended();
        pass(seconds(2));
    }
    EXPECT_TRUE(played().endsWith(OwnSound));
}

TEST_F(AlarmsTest, WithoutASoundDeviceItIsTriedAgain)
{
    set(alarm("07:30"));
    pass(minutes(450));
    sound();
    Q_EMIT player.outputFailed(Language::ntr(text("There is no sound device.")));
    EXPECT_EQ(played(), Station + QLatin1Char(',') + OwnSound);
    for (int i = 0; i < 3; ++i) {
        Q_EMIT player.outputFailed(Language::ntr(text("There is no sound device.")));
        pass(seconds(9));
        EXPECT_EQ(played(), QString());
        pass(seconds(1));
        EXPECT_EQ(played(), OwnSound);
    }
    EXPECT_EQ(alarms->ringing(), text("1"));
}

TEST_F(AlarmsTest, WithoutARowTheHostsOwnSoundRings)
{
    Alarm bare = alarm("07:30");
    bare.row = {};
    set(bare);
    pass(minutes(450));
    EXPECT_EQ(played(), OwnSound);
}

TEST_F(AlarmsTest, TheListenerEndsItByStoppingThePlayer)
{
    isMuted = true;
    set(alarm("07:30"));
    pass(minutes(450));
    sound();
    stopPlayer();
    EXPECT_EQ(alarms->ringing(), QString());
    EXPECT_TRUE(isMuted);
    pass(hours(1));
    EXPECT_EQ(played(), Station);
}

TEST_F(AlarmsTest, AlsoBeforeTheFirstSoundAndBetweenTwoTries)
{
    set(alarm("07:30"));
    pass(minutes(450) + seconds(5));
    stopPlayer();
    EXPECT_EQ(alarms->ringing(), QString());
    pass(hours(24) - seconds(5));
    EXPECT_EQ(alarms->ringing(), text("1"));
    Q_EMIT player.gaveUp(Language::ntr(text("No network.")));
    pass(seconds(1));
    stopPlayer();
    EXPECT_EQ(alarms->ringing(), QString());
    played();
    pass(minutes(5));
    EXPECT_EQ(played(), QString());
}

TEST_F(AlarmsTest, OrByAPause)
{
    set(alarm("07:30"));
    pass(minutes(450));
    sound();
    logic.pause();
    QCoreApplication::processEvents();
    EXPECT_EQ(alarms->ringing(), QString());
    EXPECT_EQ(state(), Paused);
    pass(minutes(5));
    EXPECT_EQ(state(), Paused);
    // No longer faded.
    factor = 0.5;
    logic.resume();
    EXPECT_EQ(factor, 1);
}

TEST_F(AlarmsTest, OrByPlayingSomethingElseWhichIsNotMuted)
{
    isMuted = true;
    Alarm loud = alarm("07:30");
    loud.volume = 90;
    set(loud);
    pass(minutes(450));
    sound();
    logic.playRow(station("http://stream/other"), [](const auto &, const auto &) {});
    QCoreApplication::processEvents();
    EXPECT_EQ(alarms->ringing(), QString());
    EXPECT_EQ(volume, 50);
    EXPECT_FALSE(isMuted);
    EXPECT_EQ(factor, 1);
    pass(minutes(5));
    EXPECT_EQ(played(), Station + text(",play http://stream/other live"));
}

TEST_F(AlarmsTest, ItReplacesWhatPlays)
{
    logic.playRow(station("http://stream/other"), [](const auto &, const auto &) {});
    sound();
    set(alarm("07:30"));
    pass(minutes(450));
    EXPECT_EQ(played(), text("play http://stream/other live,") + Station);
    alarms->stop();
    EXPECT_EQ(state(), Stopped);
}

TEST_F(AlarmsTest, AfterAnHourTheHostsOwnSoundEnds)
{
    Alarm bare = alarm("07:30");
    bare.row = {};
    bare.volume = 90;
    set(bare);
    pass(minutes(450));
    sound();
    pass(minutes(60));
    EXPECT_EQ(alarms->ringing(), QString());
    EXPECT_EQ(state(), Stopped);
    EXPECT_EQ(volume, 50);
}

TEST_F(AlarmsTest, AfterAnHourAStationPlaysOnAtTheAlarmsVolumeUntilItIsStopped)
{
    isMuted = true;
    Alarm loud = alarm("07:30");
    loud.volume = 90;
    set(loud);
    pass(minutes(450));
    sound();
    pass(minutes(60));
    EXPECT_EQ(alarms->ringing(), QString());
    EXPECT_EQ(state(), Playing);
    EXPECT_EQ(volume, 90);
    sound(false);
    pass(minutes(1));
    EXPECT_EQ(played(), Station);
    stopPlayer();
    EXPECT_EQ(volume, 50);
    EXPECT_TRUE(isMuted);
}

TEST_F(AlarmsTest, OfSeveralTheLatestRings)
{
    set(alarm("07:30"));
    Alarm other = alarm("07:40");
    other.row = station("http://stream/other");
    other.volume = 70;
    set(other);
    pass(minutes(450));
    sound();
    pass(minutes(10));
    EXPECT_EQ(alarms->ringing(), text("2"));
    EXPECT_EQ(played(), Station + text(",play http://stream/other live"));
    alarms->stop();
    EXPECT_EQ(volume, 50);
    pass(minutes(5));
    EXPECT_EQ(alarms->ringing(), QString());
}

TEST_F(AlarmsTest, SnoozesAndRingsAgain)
{
    isMuted = true;
    set(alarm("07:30", {}));
    EXPECT_FALSE(alarms->snooze(minutes(9)));
    pass(minutes(450));
    sound();
    EXPECT_EQ(alarms->snooze(minutes(9)), Monday + 459 * 60);
    EXPECT_EQ(state(), Stopped);
    EXPECT_TRUE(isMuted);
    EXPECT_EQ(alarms->next(alarms->book().alarms().first()), Monday + 459 * 60);
    played();
    pass(minutes(9) - seconds(1));
    EXPECT_EQ(played(), QString());
    pass(seconds(1));
    EXPECT_EQ(played(), Station);
    EXPECT_EQ(alarms->ringing(), text("1"));
    // As often as one likes.
    EXPECT_TRUE(alarms->snooze(minutes(5)));
    pass(minutes(5));
    EXPECT_EQ(alarms->ringing(), text("1"));
    alarms->stop();
    pass(hours(72));
    EXPECT_EQ(alarms->ringing(), QString());
}

TEST_F(AlarmsTest, StopEndsASnooze)
{
    set(alarm("07:30", {}));
    pass(minutes(450));
    alarms->snooze(minutes(9));
    alarms->stop();
    settle();
    EXPECT_FALSE(alarms->next(alarms->book().alarms().first()));
    pass(minutes(20));
    EXPECT_EQ(alarms->ringing(), QString());
    killHost();
    startHost();
    pass(minutes(20));
    EXPECT_EQ(alarms->ringing(), QString());
}

TEST_F(AlarmsTest, ASnoozeLastsAsLongWhateverTheClockIsSetTo)
{
    set(alarm("07:30"));
    pass(minutes(450));
    alarms->snooze(minutes(9));
    clock.set(Monday + 600 * 60);
    pass(minutes(8));
    EXPECT_EQ(alarms->ringing(), QString());
    clock.set(Monday + 300 * 60);
    EXPECT_EQ(alarms->next(alarms->book().alarms().first()), Monday + 301 * 60);
    pass(minutes(1));
    EXPECT_EQ(alarms->ringing(), text("1"));
    EXPECT_EQ(missed(), QString());
}

TEST_F(AlarmsTest, ASnoozeGoesOnAfterARestart)
{
    set(alarm("07:30", {}));
    pass(minutes(450));
    alarms->snooze(minutes(9));
    killHost();
    pass(minutes(4));
    startHost();
    pass(minutes(5) - seconds(1));
    EXPECT_EQ(alarms->ringing(), QString());
    pass(seconds(1));
    EXPECT_EQ(alarms->ringing(), text("1"));
    // In the middle of that, once more.
    killHost();
    pass(minutes(1));
    startHost();
    pass(seconds(1));
    EXPECT_EQ(alarms->ringing(), text("1"));
}

TEST_F(AlarmsTest, ASnoozeOverWhichTheHostWasOffIsMissed)
{
    set(alarm("07:30"));
    pass(minutes(450));
    alarms->snooze(minutes(9));
    killHost();
    pass(minutes(60));
    startHost();
    pass(minutes(1));
    EXPECT_EQ(alarms->ringing(), QString());
    EXPECT_EQ(missed(), text("1@459"));
    killHost();
    startHost();
    EXPECT_EQ(missed(), text("1@459"));
}

TEST_F(AlarmsTest, AfterAPowerCutItRingsLateOrIsToldAsMissedUntilDismissed)
{
    set(alarm("07:30"));
    killHost();
    pass(minutes(455));
    startHost();
    EXPECT_EQ(alarms->ringing(), text("1"));
    alarms->stop();
    killHost();
    pass(hours(48));
    startHost();
    EXPECT_EQ(alarms->ringing(), text("1"));
    EXPECT_EQ(missed(), text("1@1890"));
    alarms->stop();
    killHost();
    startHost();
    EXPECT_EQ(alarms->ringing(), QString());
    EXPECT_EQ(missed(), text("1@1890"));
    alarms->dismissMissed([](const auto &result) { EXPECT_TRUE(result); });
    settle();
    EXPECT_EQ(missed(), QString());
    killHost();
    startHost();
    EXPECT_EQ(missed(), QString());
}

TEST_F(AlarmsTest, OneForOnceIsMissedOnce)
{
    set(alarm("07:30", {}));
    killHost();
    pass(hours(12));
    startHost();
    EXPECT_EQ(missed(), text("1@450"));
    EXPECT_FALSE(alarms->book().alarms().first().enabled);
    killHost();
    pass(hours(24));
    startHost();
    EXPECT_EQ(missed(), text("1@450"));
}

TEST_F(AlarmsTest, AHostThatIsKilledWhileItRingsRingsOnAndBringsTheVolumeBack)
{
    isMuted = true;
    Alarm loud = alarm("07:30", {});
    loud.volume = 90;
    set(loud);
    pass(minutes(450));
    sound();
    killHost();
    EXPECT_EQ(volume, 90);
    pass(seconds(5));
    startHost();
    EXPECT_EQ(alarms->ringing(), text("1"));
    EXPECT_EQ(volume, 90);
    EXPECT_FALSE(isMuted);
    EXPECT_EQ(played(), Station);
    alarms->stop();
    EXPECT_EQ(volume, 50);
    EXPECT_TRUE(isMuted);
    killHost();
    startHost();
    EXPECT_EQ(alarms->ringing(), QString());
    EXPECT_FALSE(alarms->book().alarms().first().enabled);
}

TEST_F(AlarmsTest, AHostThatIsKilledWhileItRingsAndComesBackLateBringsTheVolumeBack)
{
    Alarm loud = alarm("07:30");
    loud.volume = 90;
    set(loud);
    pass(minutes(450));
    sound();
    killHost();
    pass(hours(3));
    startHost();
    EXPECT_EQ(alarms->ringing(), QString());
    EXPECT_EQ(volume, 50);
    EXPECT_EQ(missed(), QString()); // it had rung
}

TEST_F(AlarmsTest, AMachineThatSleptRingsWhenItWakes)
{
    set(alarm("07:30"));
    clock.sleep(minutes(460));
    EXPECT_EQ(alarms->ringing(), text("1"));
    alarms->stop();
    clock.sleep(hours(25));
    EXPECT_EQ(alarms->ringing(), QString());
    EXPECT_EQ(missed(), text("1@1890"));
}

TEST_F(AlarmsTest, TheClockMayBeSetWhileItRings)
{
    set(alarm("07:30"));
    pass(minutes(450));
    sound();
    pass(minutes(1));
    clock.set(Monday + 445 * 60);
    EXPECT_EQ(alarms->ringing(), text("1"));
    pass(minutes(10));
    EXPECT_EQ(played(), Station);
    EXPECT_EQ(alarms->ringing(), text("1"));
    // Its hour is one that passes.
    pass(minutes(48));
    EXPECT_EQ(alarms->ringing(), text("1"));
    pass(minutes(1));
    EXPECT_EQ(alarms->ringing(), QString());
}

TEST_F(AlarmsTest, AnotherZoneHoldsAtOnce)
{
    set(alarm("07:30"));
    announced = 0;
    clock.setOffset(2 * 3600);
    EXPECT_GE(announced, 1);
    pass(minutes(330));
    EXPECT_EQ(alarms->ringing(), text("1"));
}

TEST_F(AlarmsTest, ChangesAreKept)
{
    Alarm one = alarm("07:30", {1, 3});
    one.volume = 33;
    one.fade = 7;
    const QString id = set(one);
    one.id = id;
    one.time = *WeeklyTime::parse(text("08:15"));
    one.enabled = false;
    one.volume.reset();
    EXPECT_EQ(set(one), id);
    EXPECT_EQ(set(alarm("09:00")), text("2"));
    alarms->remove(text("2"), [](const auto &result) { EXPECT_TRUE(result); });
    killHost();
    startHost();
    ASSERT_EQ(alarms->book().alarms().size(), 1);
    const Alarm &kept = alarms->book().alarms().first();
    EXPECT_EQ(kept.time, one.time);
    EXPECT_FALSE(kept.enabled);
    EXPECT_FALSE(kept.volume);
    EXPECT_EQ(kept.fade, 7);
    EXPECT_EQ(kept.row.title().toString(), text("Station"));
    EXPECT_EQ(kept.row.path(), one.row.path());
    // An id is never given twice.
    EXPECT_EQ(set(alarm("09:00")), text("3"));
}

TEST_F(AlarmsTest, SettingAnAlarmForATimeThatIsJustOverMeansTheNextDay)
{
    pass(minutes(450));
    set(alarm("07:30"));
    EXPECT_EQ(alarms->ringing(), QString());
    EXPECT_EQ(alarms->next(alarms->book().alarms().first()), Monday + (24 * 60 + 450) * 60);
}

TEST_F(AlarmsTest, SwitchingOffOrRemovingTheOneThatRingsStopsIt)
{
    Alarm one = alarm("07:30");
    one.id = set(one);
    pass(minutes(450));
    sound();
    one.time = *WeeklyTime::parse(text("08:00"));
    set(one);
    EXPECT_EQ(alarms->ringing(), text("1"));
    one.enabled = false;
    set(one);
    EXPECT_EQ(alarms->ringing(), QString());
    EXPECT_EQ(state(), Stopped);
    one.enabled = true;
    set(one);
    pass(minutes(30));
    EXPECT_EQ(alarms->ringing(), text("1"));
    alarms->remove(text("1"), [](const auto &) {});
    settle();
    EXPECT_EQ(alarms->ringing(), QString());
    EXPECT_EQ(state(), Stopped);
}

TEST_F(AlarmsTest, ThereAreNoMoreThanItsLimit)
{
    for (int i = 0; i < AlarmBook::MaxAlarms - 1; ++i)
        set(alarm("07:30"));
    // Two at a time, before the first of them is saved.
    QStringList answers;
    for (int i = 0; i < 2; ++i) {
        alarms->set(alarm("07:30"), [&](const Result<Alarm, QString> &result) {
            answers.append(result ? result->id : result.error());
        });
    }
    settle();
    answers.sort();
    EXPECT_EQ(answers.join(QLatin1Char('|')),
        text("64|There are as many alarms as there can be. Remove one first."));
    EXPECT_EQ(alarms->book().alarms().size(), AlarmBook::MaxAlarms);
}

TEST_F(AlarmsTest, WhatCannotBeSavedDoesNotCount)
{
    Alarm one = alarm("07:30");
    one.id = set(one);
    ASSERT_TRUE(database.close(std::chrono::steady_clock::now() + seconds(10)));
    QStringList answers;
    const auto note = [&](const auto &result) {
        answers.append(result ? QStringLiteral("done") : QStringLiteral("refused"));
    };
    one.time = *WeeklyTime::parse(text("08:00"));
    alarms->set(one, note);
    alarms->set(alarm("09:00"), note);
    alarms->remove(text("1"), note);
    alarms->dismissMissed(note);
    EXPECT_TRUE(spinUntil([&] { return answers.size() == 4; }));
    EXPECT_EQ(answers.count(text("refused")), 4);
    ASSERT_EQ(alarms->book().alarms().size(), 1);
    EXPECT_EQ(alarms->book().alarms().first().time.text(), text("07:30"));
    // It rings all the same.
    clock.pass(minutes(450));
    EXPECT_EQ(alarms->ringing(), text("1"));
}

TEST_F(AlarmsTest, ClientsAreTold)
{
    announced = 0;
    set(alarm("07:30"));
    EXPECT_EQ(announced, 1);
    pass(minutes(450));
    EXPECT_EQ(announced, 2);
    alarms->snooze(minutes(9));
    settle();
    EXPECT_EQ(announced, 3);
    pass(minutes(9));
    EXPECT_EQ(announced, 4);
    stopPlayer();
    settle();
    EXPECT_EQ(announced, 5);
}

using SleepTimerTest = AlarmTest;

TEST_F(SleepTimerTest, FadesOutAndStops)
{
    logic.playRow(station(), [](const auto &, const auto &) {});
    sound();
    QString answer;
    sleep->start(minutes(30), seconds(60),
        [&](const auto &result) { answer = result ? text("done") : result.error(); });
    settle();
    EXPECT_EQ(answer, text("done"));
    EXPECT_EQ(sleep->ends(), Monday + 1800);
    EXPECT_EQ(sleep->left(), seconds(1800));
    pass(minutes(29) - seconds(1));
    EXPECT_EQ(fades, QStringList());
    EXPECT_EQ(sleep->left(), seconds(61));
    pass(seconds(1));
    EXPECT_EQ(fades, QStringList {text("1-0 60")});
    EXPECT_EQ(sleep->left(), seconds(60));
    pass(seconds(59));
    EXPECT_EQ(state(), Playing);
    pass(seconds(1));
    EXPECT_EQ(state(), Stopped);
    EXPECT_FALSE(sleep->ends());
    EXPECT_EQ(sleep->left(), seconds(0));
    // Not louder at the last moment, but as loud as before in the morning.
    EXPECT_EQ(fades.size(), 1);
    logic.playRow(station(), [](const auto &, const auto &) {});
    EXPECT_EQ(fades.last(), text("1-1 0"));
}

TEST_F(SleepTimerTest, GoesOnOverAnotherStationAPauseAndTheEndOfAnEpisode)
{
    sleep->start(minutes(30), seconds(0), [](const auto &) {});
    for (const char *uri : {"http://stream/a", "http://stream/b"}) {
        logic.playRow(station(uri), [](const auto &, const auto &) {});
        sound();
        pass(minutes(5));
    }
    logic.pause();
    pass(minutes(5));
    logic.resume();
    sound();
    Q_EMIT player.ended();
    pass(minutes(5));
    logic.playRow(station(), [](const auto &, const auto &) {});
    sound();
    pass(minutes(10) - seconds(1));
    EXPECT_EQ(state(), Playing);
    pass(seconds(1));
    EXPECT_EQ(state(), Stopped);
}

TEST_F(SleepTimerTest, EndsWhenTheListenerStopsThePlayer)
{
    logic.playRow(station(), [](const auto &, const auto &) {});
    sound();
    sleep->start(minutes(30), seconds(30), [](const auto &) {});
    settle();
    logic.stop();
    EXPECT_FALSE(sleep->ends());
    logic.playRow(station(), [](const auto &, const auto &) {});
    sound();
    pass(minutes(31));
    EXPECT_EQ(state(), Playing);
    killHost();
    startHost();
    EXPECT_FALSE(sleep->ends());
}

TEST_F(SleepTimerTest, ANewOneReplacesItAlsoWhileItFades)
{
    logic.playRow(station(), [](const auto &, const auto &) {});
    sound();
    sleep->start(minutes(30), seconds(60), [](const auto &) {});
    pass(minutes(29) + seconds(30));
    EXPECT_EQ(factor, 0);
    sleep->start(minutes(10), seconds(60), [](const auto &) {});
    EXPECT_EQ(factor, 1);
    pass(minutes(10) - seconds(1));
    EXPECT_EQ(state(), Playing);
    pass(seconds(1));
    EXPECT_EQ(state(), Stopped);
}

TEST_F(SleepTimerTest, StopBringsTheSoundBack)
{
    logic.playRow(station(), [](const auto &, const auto &) {});
    sound();
    sleep->start(minutes(30), seconds(60), [](const auto &) {});
    pass(minutes(29) + seconds(30));
    sleep->stop([](const auto &result) { EXPECT_TRUE(result); });
    EXPECT_EQ(factor, 1);
    pass(minutes(5));
    EXPECT_EQ(state(), Playing);
}

TEST_F(SleepTimerTest, TheFadeIsNoLongerThanTheTime)
{
    sleep->start(minutes(1), seconds(600), [](const auto &) {});
    EXPECT_EQ(sleep->left(), seconds(60));
    pass(seconds(1));
    EXPECT_EQ(fades, QStringList {text("1-0 60")});
}

TEST_F(SleepTimerTest, ItsTimeIsOneThatPasses)
{
    sleep->start(minutes(30), seconds(0), [](const auto &) {});
    pass(minutes(10));
    clock.set(Monday + 20 * 3600);
    EXPECT_EQ(sleep->left(), minutes(20));
    EXPECT_EQ(sleep->ends(), Monday + 20 * 3600 + 1200);
}

TEST_F(SleepTimerTest, GoesOnAfterARestart)
{
    sleep->start(minutes(30), seconds(60), [](const auto &) {});
    killHost();
    pass(minutes(10));
    startHost();
    EXPECT_EQ(sleep->left(), minutes(20));
    pass(minutes(19));
    EXPECT_EQ(fades, QStringList {text("1-0 60")});
    killHost();
    pass(minutes(10));
    startHost();
    EXPECT_FALSE(sleep->ends());
}

TEST_F(SleepTimerTest, AnAlarmEndsIt)
{
    sleep->start(minutes(460), seconds(0), [](const auto &) {});
    set(alarm("07:30"));
    pass(minutes(450));
    sound();
    EXPECT_FALSE(sleep->ends());
    pass(minutes(20));
    EXPECT_EQ(state(), Playing);
}

TEST_F(SleepTimerTest, WhatCannotBeSavedDoesNotRun)
{
    ASSERT_TRUE(database.close(std::chrono::steady_clock::now() + seconds(10)));
    bool isRefused = false;
    sleep->start(minutes(30), seconds(0), [&](const auto &result) { isRefused = !result; });
    EXPECT_TRUE(spinUntil([&] { return isRefused; }));
    EXPECT_FALSE(sleep->ends());
}

} // namespace
