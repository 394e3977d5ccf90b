// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/SleepWatch.h"

#include <gtest/gtest.h>

namespace {

using Milliseconds = std::chrono::milliseconds;

} // namespace

TEST(SleepWatchTest, ReportsASleepOnce)
{
    Milliseconds now {0};
    SleepWatch watch(Milliseconds(5000), [&now] { return now; });
    EXPECT_FALSE(watch.hasSlept());
    now += Milliseconds(5000);
    EXPECT_FALSE(watch.hasSlept());
    now += Milliseconds(5001);
    EXPECT_TRUE(watch.hasSlept());
    EXPECT_FALSE(watch.hasSlept());
}

TEST(SleepWatchTest, TheFirstCheckReportsNothing)
{
    Milliseconds now {3600000};
    SleepWatch watch(Milliseconds(5000), [&now] { return now; });
    EXPECT_FALSE(watch.hasSlept());
}

TEST(SleepWatchTest, TheMachinesOwnClockRuns)
{
    SleepWatch awake(Milliseconds(3600000));
    SleepWatch drowsy(Milliseconds(-1));
    EXPECT_FALSE(drowsy.hasSlept());
    EXPECT_TRUE(drowsy.hasSlept());
    EXPECT_FALSE(awake.hasSlept());
    EXPECT_FALSE(awake.hasSlept());
}
