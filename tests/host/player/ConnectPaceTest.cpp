// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/ConnectPace.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

namespace {

using Clock = ConnectPace::Clock;
using Milliseconds = std::chrono::milliseconds;

/// The opening times of \a count connections, each opened as early as \a pace allows, relative to
/// the first request.
std::vector<Milliseconds> openings(ConnectPace &pace, int count)
{
    const Clock::time_point start {std::chrono::hours(1)};
    Clock::time_point now = start;
    std::vector<Milliseconds> times;
    for (int i = 0; i < count; ++i) {
        now += pace.next(now);
        times.push_back(std::chrono::duration_cast<Milliseconds>(now - start));
    }
    return times;
}

} // namespace

TEST(ConnectPaceTest, TheFirstConnectionsDoNotWait)
{
    ConnectPace pace;
    const auto times = openings(pace, ConnectPace::Burst + 1);
    EXPECT_EQ(times.at(ConnectPace::Burst - 1), Milliseconds(0));
    EXPECT_EQ(times.at(ConnectPace::Burst), ConnectPace::Interval);
}

TEST(ConnectPaceTest, NoHalfMinuteSeesMoreThanFortyFive)
{
    ConnectPace pace;
    const auto times = openings(pace, 10000);
    for (const Milliseconds begin : times) {
        const auto from = std::lower_bound(times.begin(), times.end(), begin);
        const auto to = std::lower_bound(times.begin(), times.end(), begin + Milliseconds(30000));
        ASSERT_LE(to - from, 45);
    }
}

TEST(ConnectPaceTest, ARestAllowsAnotherBurst)
{
    ConnectPace pace;
    const Clock::time_point start {std::chrono::hours(1)};
    for (int i = 0; i < ConnectPace::Burst; ++i)
        EXPECT_EQ(pace.next(start), Milliseconds(0));
    const Clock::time_point later = start + std::chrono::hours(10);
    for (int i = 0; i < ConnectPace::Burst; ++i)
        EXPECT_EQ(pace.next(later), Milliseconds(0)) << i;
    EXPECT_EQ(pace.next(later), ConnectPace::Interval);
}
