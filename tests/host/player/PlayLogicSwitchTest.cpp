// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/host/player/PlayLogicFixture.h"

namespace {

/// What happens to the sound of a play when another row is played.
class PlayLogicSwitchTest : public PlayLogicTest {
protected:
    PlayLogicSwitchTest()
        : switching(&leaving)
    {
    }

    /// Records what ends and what is left.
    class LeavingPlayer : public FakePlayer {
    public:
        void stop() override { calls.append(QStringLiteral("stop")); }
        void leave() override { calls.append(QStringLiteral("leave")); }
    };

    void playRow(int index)
    {
        switching.play({worker.addPrefix(text("list")), index, {}},
            [this](const CMError &, const VeskHash &) { ++started; });
    }
    bool waitForCall(const char *call)
    {
        return spinUntil([&] { return leaving.calls.contains(QString::fromLatin1(call)); });
    }
    VeskPlayLogicState::Enum shownState() const
    {
        return static_cast<VeskPlayLogicState::Enum>(
            switching.state().value(text("state")).toInt());
    }

    LeavingPlayer leaving;
    PlayLogic switching;
    int started = 0;
};

TEST_F(PlayLogicSwitchTest, TheOldPlayIsOverWhileItsSoundGoesOn)
{
    playRow(0);
    ASSERT_TRUE(waitForCall("play http://stream/after live"));
    Q_EMIT leaving.audibleChanged(true);
    ASSERT_TRUE(spinUntil([this] { return states->posts.size() == 1; }));
    leaving.calls.clear();
    playRow(1);
    ASSERT_TRUE(waitForCall("play http://stream/file"));
    EXPECT_EQ(leaving.calls, QStringList({text("leave"), text("play http://stream/file")}));
    EXPECT_EQ(shownState(), Transitioning);
    ASSERT_TRUE(spinUntil([this] { return states->posts.size() == 2; }));
    EXPECT_EQ(states->posts.last().state(), Stopped);
}

TEST_F(PlayLogicSwitchTest, APlayThatFailsEndsTheOldSoundToo)
{
    playRow(0);
    ASSERT_TRUE(waitForCall("play http://stream/after live"));
    Q_EMIT leaving.audibleChanged(true);
    leaving.calls.clear();
    playRow(1);
    ASSERT_TRUE(waitForCall("play http://stream/file"));
    Q_EMIT leaving.gaveUp(TrString("Player", "This cannot be played."));
    ASSERT_TRUE(waitForCall("stop"));
    EXPECT_EQ(shownState(), Stopped);
}

TEST_F(PlayLogicSwitchTest, ARowThatCannotBePlayedLeavesTheOldOneAsItIs)
{
    playRow(0);
    ASSERT_TRUE(waitForCall("play http://stream/after live"));
    Q_EMIT leaving.audibleChanged(true);
    leaving.calls.clear();
    playRow(2);
    ASSERT_TRUE(spinUntil([this] { return started == 2; }));
    EXPECT_EQ(leaving.calls, QStringList());
    EXPECT_EQ(shownState(), Playing);
}

} // namespace
