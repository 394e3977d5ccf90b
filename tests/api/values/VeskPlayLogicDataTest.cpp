// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/VeskPlayLogicData.h"

#include <gtest/gtest.h>

using State = VeskPlayLogicState;

TEST(VeskPlayLogicState, HasFixedCodesAndNames)
{
    EXPECT_EQ(int(State::stopped), 0);
    EXPECT_EQ(int(State::transitioning), 1);
    EXPECT_EQ(int(State::playing), 2);
    EXPECT_EQ(int(State::paused), 3);
    EXPECT_EQ(State::toString(State::stopped), QStringLiteral("stopped"));
    EXPECT_EQ(State::toString(State::transitioning), QStringLiteral("transitioning"));
    EXPECT_EQ(State::toString(State::playing), QStringLiteral("playing"));
    EXPECT_EQ(State::toString(State::paused), QStringLiteral("paused"));
    EXPECT_EQ(State::toString(State::Enum(4)), QStringLiteral("4"));
    EXPECT_EQ(State::toString(State::Enum(-1)), QStringLiteral("-1"));
}

TEST(VeskPlayLogicData, KeepsItsEntriesUnderTheirAccessorsNames)
{
    const VeskHash playId(QVariantHash {{QStringLiteral("n"), 1}});
    VeskRoles track;
    track.setId(QStringLiteral("s1"));
    VeskPlayLogicData data;
    data.setState(State::playing);
    data.setPlayId(playId);
    data.setError(QStringLiteral("gone"));
    data.setTrackRoles(track);
    EXPECT_EQ(data.toHash(),
        QVariantHash({{QStringLiteral("state"), 2}, {QStringLiteral("playId"), playId},
            {QStringLiteral("error"), QStringLiteral("gone")},
            {QStringLiteral("trackRoles"), track}}));
    EXPECT_EQ(data.state(), State::playing);
    EXPECT_EQ(data.playId(), playId);
    EXPECT_EQ(data.error(), QStringLiteral("gone"));
    EXPECT_EQ(data.trackRoles(), track);
}

TEST(VeskPlayLogicData, IsStoppedWhenEmpty)
{
    const VeskPlayLogicData data;
    EXPECT_EQ(data.state(), State::stopped);
    EXPECT_TRUE(data.playId().isEmpty());
    EXPECT_EQ(data.error(), QString());
    EXPECT_TRUE(data.trackRoles().isEmpty());
}

TEST(VeskPlayLogicData, PassesOnStatesThatItDoesNotKnow)
{
    const VeskPlayLogicData data(QVariantHash {{QStringLiteral("state"), qlonglong(7)}});
    EXPECT_EQ(int(data.state()), 7);
}
