// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/BackOff.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

using Milliseconds = BackOff::Milliseconds;

BackOff backOffWith(double random)
{
    return BackOff([random] { return random; });
}

std::vector<int> waits(BackOff &backOff, int count)
{
    std::vector<int> result;
    for (int i = 0; i < count; ++i)
        result.push_back(static_cast<int>(backOff.next().count()));
    return result;
}

constexpr double AlmostOne = 0.999999;

} // namespace

TEST(BackOffTest, DoublesFromHalfASecondToFifteenSeconds)
{
    BackOff least = backOffWith(0);
    EXPECT_EQ(
        waits(least, 8), (std::vector<int> {500, 1000, 2000, 4000, 8000, 10000, 10000, 10000}));
    BackOff most = backOffWith(AlmostOne);
    EXPECT_EQ(
        waits(most, 8), (std::vector<int> {749, 1499, 2999, 5999, 11999, 14999, 14999, 14999}));
}

TEST(BackOffTest, TheRandomPartStaysWithinTheLongestTime)
{
    BackOff least = backOffWith(0);
    BackOff most = backOffWith(AlmostOne);
    for (int i = 0; i < 100; ++i) {
        const Milliseconds shorter = least.next();
        const Milliseconds longer = most.next();
        EXPECT_GE(shorter, BackOff::Shortest);
        EXPECT_GE(longer, shorter);
        EXPECT_LE(longer, BackOff::Longest);
    }
}

TEST(BackOffTest, WaitsOfTwoPlayersDiffer)
{
    BackOff one = backOffWith(0.1);
    BackOff other = backOffWith(0.9);
    for (int i = 0; i < 10; ++i)
        EXPECT_LT(one.next(), other.next()) << i;
}

TEST(BackOffTest, HasRandomNumbersOfItsOwn)
{
    std::vector<Milliseconds> first;
    for (int i = 0; i < 40; ++i)
        first.push_back(BackOff().next());
    const auto range = std::minmax_element(first.begin(), first.end());
    EXPECT_LT(*range.first, *range.second);
    EXPECT_GE(*range.first, BackOff::Shortest);
    EXPECT_LT(*range.second, 2 * BackOff::Shortest);
}

TEST(BackOffTest, StartsAnewAfterASuccess)
{
    BackOff backOff = backOffWith(0);
    waits(backOff, 20);
    backOff.reset();
    EXPECT_EQ(waits(backOff, 3), (std::vector<int> {500, 1000, 2000}));
    BackOff fresh = backOffWith(0);
    fresh.reset();
    EXPECT_EQ(waits(fresh, 2), (std::vector<int> {500, 1000}));
}

TEST(BackOffTest, WaitsAsLongAsTheServerAsks)
{
    BackOff backOff = backOffWith(0);
    EXPECT_EQ(backOff.next(Milliseconds(30000)), Milliseconds(30000));
    EXPECT_EQ(backOff.next(BackOff::LongestAsked), BackOff::LongestAsked);
}

TEST(BackOffTest, AShorterRequestedWaitShortensNothing)
{
    BackOff backOff = backOffWith(0);
    waits(backOff, 3);
    EXPECT_EQ(backOff.next(Milliseconds(1)), Milliseconds(4000));
    EXPECT_EQ(backOff.next(Milliseconds(-5000)), Milliseconds(8000));
}

TEST(BackOffTest, BoundsTheWaitTheServerAsksFor)
{
    for (const double random : {0.0, AlmostOne}) {
        BackOff backOff = backOffWith(random);
        EXPECT_EQ(backOff.next(BackOff::LongestAsked + Milliseconds(1)), BackOff::LongestAsked);
        EXPECT_EQ(backOff.next(Milliseconds::max()), BackOff::LongestAsked);
        EXPECT_LE(backOff.next(Milliseconds::min()), BackOff::Longest);
    }
}

TEST(BackOffTest, AWaitTheServerAskedForDoublesTheNextOne)
{
    BackOff backOff = backOffWith(0);
    backOff.next(Milliseconds(30000));
    EXPECT_EQ(backOff.next(), Milliseconds(1000));
}
