// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/RemoteControls.h"

#include "api/nodes/CMValuesWorker.h"
#include "host/sound/PlayerVolume.h"
#include "host/sound/SoundOutput.h"
#include "tests/host/player/PlayLogicFixture.h"

namespace {

class RemoteControlsTest : public PlayLogicTest {
protected:
    void playAndHear(int row)
    {
        const int calls = player.calls.size();
        play(row);
        ASSERT_TRUE(waitForPlayer(calls + 1));
        Q_EMIT player.audibleChanged(true);
    }

    RemoteControls controls {&logic};
};

TEST_F(RemoteControlsTest, BeforeTheFirstPlayNothingCanBeDone)
{
    const MprisState state = controls.state();
    EXPECT_EQ(state.status, MprisState::Stopped);
    EXPECT_EQ(state.track.number, 0U);
    EXPECT_FALSE(state.canPlay);
    EXPECT_FALSE(state.canPause);
    controls.play();
    controls.pause();
    controls.stop();
    EXPECT_EQ(player.calls, QStringList());
}

TEST_F(RemoteControlsTest, FollowThePlay)
{
    int changed = 0;
    QObject::connect(&controls, &MprisPlayer::changed, [&] { ++changed; });
    play(0);
    EXPECT_EQ(controls.state().status, MprisState::Playing);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    EXPECT_EQ(controls.state().status, MprisState::Playing);
    EXPECT_TRUE(controls.state().canPause);
    controls.pause();
    EXPECT_EQ(controls.state().status, MprisState::Paused);
    EXPECT_TRUE(controls.state().canPlay);
    controls.play();
    EXPECT_EQ(controls.state().status, MprisState::Playing);
    controls.stop();
    EXPECT_EQ(controls.state().status, MprisState::Stopped);
    EXPECT_EQ(controls.state().track.number, 0U);
    EXPECT_FALSE(controls.state().canPause);
    EXPECT_GE(changed, 5);
}

TEST_F(RemoteControlsTest, PlayAfterAStopPlaysTheLastRowAgain)
{
    playAndHear(0);
    controls.stop();
    ASSERT_TRUE(controls.state().canPlay);
    controls.play();
    ASSERT_TRUE(waitForPlayer(2));
    EXPECT_EQ(player.calls.at(0), player.calls.at(1));
}

/// There is nothing to pause yet, and the listener wants quiet.
TEST_F(RemoteControlsTest, APauseWhileConnectingStops)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    ASSERT_EQ(state(), Transitioning);
    controls.pause();
    EXPECT_EQ(state(), Stopped);
}

TEST_F(RemoteControlsTest, EachPlayIsATrackOfItsOwn)
{
    playAndHear(0);
    const quint64 first = controls.state().track.number;
    EXPECT_GT(first, 0U);
    Q_EMIT player.titleChanged(text("Ann - One"));
    controls.pause();
    controls.play();
    EXPECT_EQ(controls.state().track.number, first);
    playAndHear(1);
    const quint64 second = controls.state().track.number;
    EXPECT_NE(second, first);
    playAndHear(0);
    EXPECT_NE(controls.state().track.number, first);
    EXPECT_NE(controls.state().track.number, second);
}

TEST_F(RemoteControlsTest, ATitleOfTheStreamIsSplitAsStationsDo)
{
    struct Case {
        const char *streamTitle;
        const char *title;
        const char *artist;
        const char *album;
    };
    const Case cases[] {
        {"", "Station", "", ""},
        {"Ann - One", "One", "Ann", "Station"},
        {"Ann - One - Live", "One - Live", "Ann", "Station"},
        {"Ann-Marie", "Ann-Marie", "", "Station"},
        {"The news", "The news", "", "Station"},
        {" - One", " - One", "", "Station"},
        {"Ann - ", "", "Ann", "Station"},
    };
    playAndHear(0);
    for (const Case &c : cases) {
        Q_EMIT player.titleChanged(text(c.streamTitle));
        const MprisTrack track = controls.state().track;
        EXPECT_EQ(track.title, text(c.title)) << c.streamTitle;
        EXPECT_EQ(track.artist, text(c.artist)) << c.streamTitle;
        EXPECT_EQ(track.album, text(c.album)) << c.streamTitle;
        EXPECT_EQ(track.artUrl, text("http://icon/"));
    }
}

TEST_F(RemoteControlsTest, NextAndPreviousGoThroughThePresets)
{
    EXPECT_FALSE(controls.state().canGoNext);
    EXPECT_FALSE(controls.state().canGoPrevious);
    controls.goNext();
    controls.goPrevious();
    EXPECT_EQ(player.calls, QStringList());

    int changed = 0;
    QObject::connect(&controls, &MprisPlayer::changed, [&] { ++changed; });
    QVector<VeskRoles> presets;
    for (const char *name : {"one", "two", "three"}) {
        presets.append(row(name, (std::string("http://stream/") + name).c_str(), false));
        presets.last().setPath(CMPath::fromEncoded(text("Test:") + text(name)));
    }
    controls.setPresets(presets);
    EXPECT_EQ(changed, 1);
    EXPECT_TRUE(controls.state().canGoNext);
    EXPECT_TRUE(controls.state().canGoPrevious);
    struct Step {
        bool isForward;
        const char *played;
    };
    // From nothing, round the end, and back; also while it is paused or stopped.
    for (const Step &step : {Step {true, "one"}, {true, "two"}, {true, "three"}, {true, "one"},
             {false, "three"}, {false, "two"}}) {
        const int calls = player.calls.size();
        if (step.isForward)
            controls.goNext();
        else
            controls.goPrevious();
        ASSERT_TRUE(waitForPlayer(calls + 1));
        EXPECT_EQ(player.calls.last(), text("play http://stream/") + text(step.played));
    }
    controls.stop();
    controls.goNext();
    ASSERT_TRUE(waitForPlayer(7));
    EXPECT_EQ(player.calls.last(), text("play http://stream/three"));
    // From something else, backwards: the last one.
    controls.setPresets({presets.at(0), presets.at(1)});
    controls.goPrevious();
    ASSERT_TRUE(waitForPlayer(8));
    EXPECT_EQ(player.calls.last(), text("play http://stream/two"));
}

TEST_F(RemoteControlsTest, AnEpisodeHasAPlace)
{
    int moved = 0;
    QObject::connect(&controls, &MprisPlayer::moved, [&] { ++moved; });
    playAndHear(1);
    EXPECT_FALSE(controls.state().canSeek);
    EXPECT_EQ(controls.state().track.length.count(), 0);
    EXPECT_EQ(controls.position().count(), 0);
    player.where.position = std::chrono::seconds(61);
    player.where.duration = std::chrono::seconds(3600);
    player.where.isSeekable = true;
    Q_EMIT player.placeChanged();
    EXPECT_TRUE(controls.state().canSeek);
    EXPECT_EQ(controls.state().track.length, std::chrono::seconds(3600));
    EXPECT_EQ(controls.position(), std::chrono::seconds(61));
    EXPECT_EQ(moved, 0);
    controls.seekTo(std::chrono::microseconds(90000500));
    EXPECT_EQ(player.calls.last(), text("seek 90000"));
    Q_EMIT player.sought({});
    EXPECT_EQ(moved, 1);
    controls.seekBy(std::chrono::seconds(-30));
    EXPECT_EQ(player.calls.last(), text("seek 31000"));
}

TEST_F(RemoteControlsTest, TheVolumeIsThatOfThePlayer)
{
    EXPECT_EQ(controls.state().volume, 1);
    controls.setVolume(0.5);

    CMValuesWorker values;
    values.define(playerVolumePath(), VeskValue::fromInt(60), CMValuesWorker::Writable, TrString());
    values.define(
        playerMutePath(), VeskValue::fromBool(false), CMValuesWorker::Writable, TrString());
    PlayerVolume volume(
        std::make_shared<SoundOutput>(AudioOutputSpec {AudioOutputSpec::Null, {}}), &values);
    RemoteControls loud(&logic);
    loud.useVolume(&volume);
    int changed = 0;
    QObject::connect(&loud, &MprisPlayer::changed, [&] { ++changed; });
    EXPECT_EQ(loud.state().volume, 0.6);
    loud.setVolume(0.295);
    EXPECT_EQ(volume.volume(), 30);
    EXPECT_EQ(changed, 1);
    volume.setMuted(true);
    EXPECT_EQ(loud.state().volume, 0);
    EXPECT_EQ(changed, 2);
    loud.setVolume(0);
    EXPECT_TRUE(volume.isMuted());
    loud.setVolume(1);
    EXPECT_FALSE(volume.isMuted());
    EXPECT_EQ(loud.state().volume, 1);
}

} // namespace
