// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/host/player/PlayLogicFixture.h"

#include <QCoreApplication>
#include <QSet>
#include <QTranslator>

namespace {

TEST_F(PlayLogicTest, RunsTheStepBeforePlayingAndPlaysWhatItLeadsTo)
{
    EXPECT_FALSE(play(0).isEmpty());
    ASSERT_TRUE(waitForPlayer(1));
    EXPECT_EQ(player.calls, QStringList {text("play http://stream/after live")});
    EXPECT_EQ(state(), Transitioning);
    EXPECT_EQ(posts(), QString());
}

TEST_F(PlayLogicTest, PlaysARowWithoutAStepBeforePlayingAsItIs)
{
    play(1);
    ASSERT_TRUE(waitForPlayer(1));
    EXPECT_EQ(player.calls, QStringList {text("play http://stream/file")});
}

TEST_F(PlayLogicTest, ARowThatWasKeptIsPlayedThroughItsStepAgain)
{
    QList<VeskRoles> heard;
    QObject::connect(&logic, &PlayLogic::heard, [&](const VeskRoles &each) { heard += each; });
    EXPECT_TRUE(logic.row().isEmpty());
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    EXPECT_TRUE(heard.isEmpty());
    Q_EMIT player.audibleChanged(true);
    Q_EMIT player.audibleChanged(false);
    Q_EMIT player.audibleChanged(true);
    ASSERT_EQ(heard.size(), 1);
    EXPECT_EQ(heard.first().mediaData().activeResource().uri(), text("http://stream/before"));

    const VeskRoles kept = logic.row();
    logic.stop();
    QString error = text("not called");
    logic.playRow(
        kept, [&](const CMError &each, const VeskHash &) { error = each.message().toString(); });
    EXPECT_EQ(error, QString());
    ASSERT_TRUE(waitForPlayer(2));
    EXPECT_EQ(player.calls.last(), text("play http://stream/after live"));
}

TEST_F(PlayLogicTest, ABroadcastThatIsPlayedAsItIsIsAStation)
{
    CMListRowsNode *list
        = CMListRowsNode::create(worker.nodes(), worker.addPrefix(text("broadcasts")));
    VeskRoles broadcast = row("Broadcast", "http://stream/broadcast", false);
    broadcast.setAudioType(VeskRolesAudioType::AudioBroadcast());
    list->rowsAppend(broadcast);
    play(0, "broadcasts");
    ASSERT_TRUE(waitForPlayer(1));
    EXPECT_EQ(player.calls, QStringList {text("play http://stream/broadcast live")});
}

TEST_F(PlayLogicTest, ShowsWhatPlays)
{
    const QString id = play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    Q_EMIT player.titleChanged(text("Ann - One"));
    EXPECT_EQ(state(), Playing);
    EXPECT_EQ(logic.state().value(text("playId")).toHash().value(text("id")).toString(), id);
    EXPECT_EQ(shown("title"), text("Station"));
    EXPECT_EQ(shown("description"), text("Words"));
    EXPECT_EQ(shown("icon"), text("http://icon/"));
    EXPECT_EQ(shown("uri"), text("http://stream/after"));
    EXPECT_EQ(shown("bitrate"), text("128000"));
    EXPECT_EQ(shown("streamTitle"), text("Ann - One"));
    EXPECT_EQ(shown("path"), text("Test:after"));
    EXPECT_EQ(shown("contextPath"), text("Test:menu?guideId=s1"));
    EXPECT_EQ(shown("error"), QString());
    EXPECT_EQ(logic.currentData().state(), Playing);
    Q_EMIT player.bitRateChanged(192000);
    EXPECT_EQ(shown("bitrate"), text("192000"));
}

TEST_F(PlayLogicTest, PostsWhatIsHeardWithTheRolesThatTheStepLedTo)
{
    const QString id = play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    EXPECT_EQ(posts(), text("2"));
    const VeskPlayLogicData post = states->posts.first();
    EXPECT_EQ(post.playId()[text("id")].toString(), id);
    EXPECT_EQ(post.trackRoles().path().toEncoded(), text("Test:after"));
    EXPECT_EQ(post.trackRoles().mediaData().activeResource().uri(), text("http://stream/after"));
}

TEST_F(PlayLogicTest, AReconnectIsABreakBetweenTwoTimesOfPlaying)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    Q_EMIT player.audibleChanged(false);
    EXPECT_EQ(state(), Transitioning);
    Q_EMIT player.audibleChanged(true);
    EXPECT_EQ(posts(), text("2 1 2"));
}

TEST_F(PlayLogicTest, PausesAndResumesAndStops)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    EXPECT_TRUE(logic.pause().isEmpty());
    EXPECT_EQ(state(), Paused);
    Q_EMIT player.audibleChanged(false);
    EXPECT_EQ(state(), Paused);
    EXPECT_TRUE(logic.pause().isEmpty());
    EXPECT_TRUE(logic.resume().isEmpty());
    EXPECT_EQ(state(), Transitioning);
    Q_EMIT player.audibleChanged(true);
    EXPECT_TRUE(logic.stop().isEmpty());
    EXPECT_EQ(state(), Stopped);
    EXPECT_EQ(posts(), text("2 3 2 0"));
    EXPECT_EQ(player.calls.mid(1), (QStringList {text("pause"), text("resume")}));
}

/// Queued signals of the player may arrive after pause() and stop().
TEST_F(PlayLogicTest, LateSignalsOfAPausedPlayerAreIgnored)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    EXPECT_TRUE(logic.pause().isEmpty());
    Q_EMIT player.audibleChanged(true);
    EXPECT_EQ(state(), Paused);
    Q_EMIT player.audibleChanged(false);
    EXPECT_EQ(state(), Paused);
    EXPECT_EQ(posts(), text("2 3"));
    EXPECT_TRUE(logic.resume().isEmpty());
    Q_EMIT player.audibleChanged(true);
    EXPECT_EQ(posts(), text("2 3 2"));
    EXPECT_TRUE(logic.stop().isEmpty());
    Q_EMIT player.audibleChanged(true);
    EXPECT_EQ(state(), Stopped);
    EXPECT_EQ(posts(), text("2 3 2 0"));
}

TEST_F(PlayLogicTest, APauseAlwaysFollowsPlaying)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    Q_EMIT player.audibleChanged(false);
    EXPECT_TRUE(logic.pause().isEmpty());
    EXPECT_EQ(posts(), text("2 1 2 3"));
    // Paused again before any sound: there is no new state to post.
    EXPECT_TRUE(logic.resume().isEmpty());
    EXPECT_TRUE(logic.pause().isEmpty());
    EXPECT_EQ(posts(), text("2 1 2 3"));
    EXPECT_EQ(state(), Paused);
}

TEST_F(PlayLogicTest, WhatWasNeverHeardCannotBePaused)
{
    EXPECT_EQ(logic.pause().message().toString(), text("Nothing is playing."));
    EXPECT_EQ(logic.resume().message().toString(), text("Nothing is paused."));
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    EXPECT_EQ(logic.pause().message().toString(), text("Nothing is playing."));
    EXPECT_TRUE(logic.stop().isEmpty());
    EXPECT_TRUE(logic.stop().isEmpty());
    EXPECT_EQ(posts(), QString());
}

TEST_F(PlayLogicTest, BetweenTwoPlaysThereIsAStop)
{
    const QString first = play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    const QString second = play(1);
    ASSERT_TRUE(waitForPlayer(2));
    Q_EMIT player.audibleChanged(true);
    EXPECT_NE(first, second);
    EXPECT_EQ(posts(), text("2 0 2"));
    EXPECT_EQ(states->posts.at(1).playId()[text("id")].toString(), first);
    EXPECT_EQ(states->posts.at(2).playId()[text("id")].toString(), second);
}

TEST_F(PlayLogicTest, AnErrorComesWithTheStopAndWithNothingBefore)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.gaveUp(TrString("Player", "No."));
    EXPECT_EQ(posts(), text("0:No."));
    EXPECT_EQ(state(), Stopped);
    EXPECT_EQ(shown("error"), text("No."));
    EXPECT_EQ(shown("title"), text("Station"));
    // The next play clears the error.
    play(1);
    EXPECT_EQ(shown("error"), QString());
    EXPECT_EQ(posts(), text("0:No."));
}

TEST_F(PlayLogicTest, WhatIsPostedIsInTheWordsOfTheSource)
{
    class Shouting : public QTranslator {
    public:
        QString translate(const char *, const char *source, const char *, int) const override
        {
            return QString::fromUtf8(source).toUpper();
        }
        bool isEmpty() const override { return false; }
    } shouting;
    QCoreApplication::installTranslator(&shouting);
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.gaveUp(
        TrString(text("Player"), text("Refused (code %1)."), QString(), -1, {TrArg(text("404"))}));
    EXPECT_EQ(posts(), text("0:Refused (code 404)."));
    EXPECT_EQ(shown("error"), text("REFUSED (CODE 404)."));
    QCoreApplication::removeTranslator(&shouting);
}

TEST_F(PlayLogicTest, TheOutputsFailureIsNoFaultOfWhatWasHeard)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    Q_EMIT player.outputFailed(TrString("Player", "No device."));
    EXPECT_EQ(posts(), text("2 0"));
    EXPECT_EQ(state(), Stopped);
    EXPECT_EQ(shown("error"), text("No device."));
    // The failure does not affect the next play.
    play(0);
    ASSERT_TRUE(waitForPlayer(2));
    Q_EMIT player.audibleChanged(true);
    EXPECT_EQ(posts(), text("2 0 2"));
    EXPECT_EQ(shown("error"), QString());
}

TEST_F(PlayLogicTest, TheOutputsFailureBeforeASoundIsNotPosted)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.outputFailed(TrString("Player", "No device."));
    EXPECT_EQ(posts(), QString());
    EXPECT_EQ(state(), Stopped);
    EXPECT_EQ(shown("error"), text("No device."));
}

TEST_F(PlayLogicTest, WhatIsDoneAboutAFaultIsShownUntilThereIsSound)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.problemChanged(TrString("Player", "Trying again in 8 s."));
    EXPECT_EQ(shown("problem"), text("Trying again in 8 s."));
    EXPECT_EQ(shown("error"), QString());
    Q_EMIT player.audibleChanged(true);
    EXPECT_EQ(shown("problem"), QString());
    Q_EMIT player.audibleChanged(false);
    Q_EMIT player.problemChanged(TrString("Player", "Trying again in 1 s."));
    EXPECT_EQ(shown("problem"), text("Trying again in 1 s."));
    logic.pause();
    EXPECT_EQ(shown("problem"), QString());
    logic.resume();
    Q_EMIT player.problemChanged(TrString("Player", "Trying again in 2 s."));
    EXPECT_EQ(shown("problem"), text("Trying again in 2 s."));
    logic.stop();
    EXPECT_EQ(shown("problem"), QString());
    EXPECT_EQ(posts(), text("2 1 2 3 0"));
}

TEST_F(PlayLogicTest, TheEndOfAFileIsAStop)
{
    play(1);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    Q_EMIT player.ended();
    EXPECT_EQ(posts(), text("2 0"));
    EXPECT_EQ(shown("title"), QString());
}

TEST_F(PlayLogicTest, AStepThatFailsIsAnError)
{
    prePlay->error = CMError(TrString("Test", "No available streams."));
    play(0);
    ASSERT_TRUE(spinUntil([this] { return state() == Stopped; }));
    EXPECT_EQ(shown("error"), text("No available streams."));
    EXPECT_TRUE(player.calls.isEmpty());
    // No stream was found, so the post names none: the row's own address is that of the lookup.
    EXPECT_EQ(posts(), text("0:No available streams."));
    const VeskRoles told = states->posts.first().trackRoles();
    EXPECT_EQ(told.mediaData().resources().size(), 0);
    EXPECT_EQ(told.title().toString(), text("Station"));
}

TEST_F(PlayLogicTest, AStepThatTheServiceRefusesSaysSo)
{
    logic.setFaultWords([](const CMPath &path, const VeskServiceFault &fault) {
        return TrString(
            text("Test"), QStringLiteral("%1 refuses (%2)").arg(path.prefix()).arg(fault.code));
    });
    prePlay->error = CMError(TrString("Test", "Invalid data."));
    prePlay->fault = {VeskServiceFault::HttpStatus, 403};
    play(0);
    ASSERT_TRUE(spinUntil([this] { return state() == Stopped; }));
    EXPECT_EQ(shown("error"), text("Test refuses (403)"));
    prePlay->fault = {VeskServiceFault::HttpStatus, 500};
    play(0);
    ASSERT_TRUE(spinUntil([this] { return shown("error") == text("Invalid data."); }));
}

TEST_F(PlayLogicTest, ARowThatIsListedAsUnavailableSaysWhyInItsOwnWords)
{
    play(4);
    EXPECT_EQ(state(), Stopped);
    EXPECT_EQ(shown("error"), text("Words"));
    EXPECT_EQ(posts(), text("0:Words"));
    EXPECT_EQ(states->posts.first().trackRoles().mediaData().resources().size(), 0);
    EXPECT_TRUE(prePlay->held.isEmpty());
    EXPECT_TRUE(player.calls.isEmpty());
}

TEST_F(PlayLogicTest, RowsThatCannotBePlayedAreRefused)
{
    EXPECT_EQ(play(2), text("There is nothing to play in this row."));
    EXPECT_EQ(play(3), text("There is nothing to play in this row."));
    EXPECT_EQ(play(5), text("There is no such row."));
    QString answer;
    logic.play({CMPath::fromEncoded(text("Nobody:x")), 0},
        [&answer](const CMError &error, const VeskHash &) { answer = error.name(); });
    ASSERT_TRUE(spinUntil([&] { return !answer.isEmpty(); }));
    EXPECT_EQ(answer, CMError::NoNodeName());
    EXPECT_EQ(state(), Stopped);
}

TEST_F(PlayLogicTest, ARefusedRowLeavesAloneWhatPlays)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    play(2);
    EXPECT_EQ(state(), Playing);
    EXPECT_EQ(shown("title"), text("Station"));
}

TEST_F(PlayLogicTest, OfTwoPlaysAtOnceTheLaterWins)
{
    QStringList answers;
    const auto note = [&answers](const CMError &error, const VeskHash &) {
        answers.append(error.isEmpty() ? text("plays") : error.message().toString());
    };
    logic.play({worker.addPrefix(text("list")), 0}, note);
    logic.play({worker.addPrefix(text("list")), 1}, note);
    ASSERT_TRUE(spinUntil([&] { return answers.size() == 2; }));
    EXPECT_THAT(answers,
        testing::UnorderedElementsAre(
            text("Something else was played in the meantime."), text("plays")));
    ASSERT_TRUE(waitForPlayer(1));
    EXPECT_EQ(shown("title"), text("File"));
}

TEST_F(PlayLogicTest, AStopDuringTheStepBeforePlayingCounts)
{
    prePlay->hold = true;
    play(0);
    ASSERT_TRUE(spinUntil([this] { return !prePlay->held.isEmpty(); }));
    logic.stop();
    prePlay->answer();
    EXPECT_FALSE(spinUntil([this] { return !player.calls.isEmpty(); }, 100));
    EXPECT_EQ(state(), Stopped);
    EXPECT_EQ(posts(), QString());
}

// A plug-in process was replaced: the new one does not know the earlier posts.

TEST_F(PlayLogicTest, ARestartedPluginGetsPlaying)
{
    const QString id = play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    beginAnew();
    EXPECT_EQ(posts(), text("2 2"));
    const VeskPlayLogicData again = states->posts.last();
    EXPECT_EQ(again.playId()[text("id")].toString(), id);
    EXPECT_EQ(again.trackRoles().path().toEncoded(), text("Test:after"));
    logic.pause();
    logic.resume();
    Q_EMIT player.audibleChanged(true);
    logic.stop();
    EXPECT_EQ(posts(), text("2 2 3 2 0"));
}

TEST_F(PlayLogicTest, APauseDuringARestartIsPostedAfterPlaying)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    logic.forgetPosts();
    logic.pause();
    EXPECT_EQ(posts(), text("2 2 3"));
    logic.postAgain();
    logic.stop();
    EXPECT_EQ(posts(), text("2 2 3 0"));
}

TEST_F(PlayLogicTest, WhatWasPostedDuringARestartIsNotPostedAgain)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    logic.forgetPosts();
    logic.pause();
    logic.resume();
    Q_EMIT player.audibleChanged(true);
    logic.postAgain();
    EXPECT_EQ(posts(), text("2 2 3 2"));
}

TEST_F(PlayLogicTest, ABreakAfterAPostDuringARestartIsPosted)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    logic.forgetPosts();
    Q_EMIT player.audibleChanged(false);
    Q_EMIT player.audibleChanged(true);
    Q_EMIT player.audibleChanged(false);
    logic.postAgain();
    logic.stop();
    EXPECT_EQ(posts(), text("2 2 1 0"));
}

TEST_F(PlayLogicTest, AStopDuringARestartIsNotPosted)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    logic.forgetPosts();
    logic.stop();
    logic.postAgain();
    EXPECT_EQ(posts(), text("2"));
}

TEST_F(PlayLogicTest, APluginRestartedDuringABreakGetsPlayingAfterIt)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    Q_EMIT player.audibleChanged(false);
    beginAnew();
    EXPECT_EQ(posts(), text("2 1"));
    Q_EMIT player.audibleChanged(true);
    logic.stop();
    EXPECT_EQ(posts(), text("2 1 2 0"));
}

TEST_F(PlayLogicTest, APluginRestartedDuringABreakGetsPlayingBeforeAPause)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    Q_EMIT player.audibleChanged(false);
    beginAnew();
    EXPECT_TRUE(logic.pause().isEmpty());
    logic.stop();
    EXPECT_EQ(posts(), text("2 1 2 3 0"));
}

TEST_F(PlayLogicTest, APluginRestartedDuringABreakGetsNoStop)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    Q_EMIT player.audibleChanged(false);
    beginAnew();
    logic.stop();
    EXPECT_EQ(posts(), text("2 1"));
}

TEST_F(PlayLogicTest, APluginRestartedDuringAPauseGetsPlayingAfterIt)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    logic.pause();
    beginAnew();
    EXPECT_EQ(posts(), text("2 3"));
    logic.resume();
    EXPECT_EQ(posts(), text("2 3"));
    Q_EMIT player.audibleChanged(true);
    logic.stop();
    EXPECT_EQ(posts(), text("2 3 2 0"));
}

TEST_F(PlayLogicTest, APluginRestartedDuringAPauseGetsNoStop)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    logic.pause();
    beginAnew();
    logic.stop();
    EXPECT_EQ(posts(), text("2 3"));
}

TEST_F(PlayLogicTest, ARestartedPluginGetsAFailure)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    beginAnew();
    EXPECT_EQ(posts(), QString());
    Q_EMIT player.gaveUp(TrString("Player", "No."));
    EXPECT_EQ(posts(), text("0:No."));
}

TEST_F(PlayLogicTest, APluginRestartedWhileNothingPlaysGetsNothing)
{
    beginAnew();
    EXPECT_EQ(posts(), QString());
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    logic.stop();
    beginAnew();
    EXPECT_EQ(posts(), text("2 0"));
}

TEST_F(PlayLogicTest, EveryPlayHasAnIdOfItsOwn)
{
    QSet<QString> ids;
    for (int i = 0; i < 20; ++i)
        ids.insert(play(1));
    EXPECT_EQ(ids.size(), 20);
}

} // namespace
