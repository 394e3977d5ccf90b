// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/sound/GainRamp.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

std::vector<float> applied(GainRamp &ramp, std::size_t frames, int channels = 1)
{
    std::vector<float> samples(frames * static_cast<std::size_t>(channels), 1.F);
    ramp.apply(samples.data(), frames, channels);
    return samples;
}

TEST(GainRampTest, GoesFromOneGainToTheOtherAndStaysThere)
{
    GainRamp ramp(0);
    ramp.moveTo(1, 100);
    EXPECT_FALSE(ramp.isSteady());
    const std::vector<float> samples = applied(ramp, 200);
    EXPECT_FLOAT_EQ(samples[0], 0);
    EXPECT_NEAR(samples[50], 0.5, 0.001);
    for (std::size_t i = 1; i < samples.size(); ++i) {
        EXPECT_GE(samples[i], samples[i - 1]);
        EXPECT_LE(samples[i] - samples[i - 1], M_PI / 2 / 100 + 1e-6) << i;
    }
    EXPECT_FLOAT_EQ(samples[100], 1);
    EXPECT_TRUE(ramp.isSteady());
}

TEST(GainRampTest, GoesOnInTheNextPiece)
{
    GainRamp whole(0);
    whole.moveTo(0.5, 64);
    GainRamp inPieces = whole;
    const std::vector<float> expected = applied(whole, 96);
    std::vector<float> samples;
    for (const std::size_t frames : {1U, 30U, 33U, 32U}) {
        const std::vector<float> piece = applied(inPieces, frames);
        samples.insert(samples.end(), piece.begin(), piece.end());
    }
    EXPECT_EQ(samples, expected);
}

TEST(GainRampTest, TurnsRoundWithoutAStep)
{
    GainRamp ramp(0);
    ramp.moveTo(1, 100);
    const std::vector<float> up = applied(ramp, 40);
    ramp.moveTo(0, 100);
    const std::vector<float> down = applied(ramp, 101);
    EXPECT_NEAR(down.front(), up.back(), 0.02);
    EXPECT_FLOAT_EQ(down.back(), 0);
}

TEST(GainRampTest, TwoThatCrossOverAddUpToOne)
{
    GainRamp up(0);
    GainRamp down(1);
    up.moveTo(1, 48);
    down.moveTo(0, 48);
    const std::vector<float> rising = applied(up, 60);
    const std::vector<float> falling = applied(down, 60);
    for (std::size_t i = 0; i < rising.size(); ++i)
        EXPECT_NEAR(rising[i] + falling[i], 1, 1e-6);
}

TEST(GainRampTest, TreatsTheChannelsOfAFrameAlike)
{
    GainRamp ramp(1);
    ramp.moveTo(0, 10);
    const std::vector<float> samples = applied(ramp, 12, 2);
    for (std::size_t i = 0; i < samples.size(); i += 2)
        EXPECT_FLOAT_EQ(samples[i], samples[i + 1]);
    EXPECT_FLOAT_EQ(samples.back(), 0);
}

} // namespace
