// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Melody.h"
#include "tests/directory/TestDirectory.h"

#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <set>

using namespace directory;
using namespace directory::test;

namespace {

constexpr unsigned Rate = 44100;

TEST(Melody, StationsHaveDifferentMelodies)
{
    std::set<std::array<double, Melody::NoteCount>> known;
    for (const Station &station : shippedCatalog().stations)
        EXPECT_TRUE(known.insert(Melody(station.id, 0).notes()).second) << station.name;
}

TEST(Melody, HasFourDifferentNotesInTheMiddleRange)
{
    for (std::size_t stream = 0; stream < 9; ++stream) {
        const auto notes = Melody("s20105", stream).notes();
        EXPECT_EQ(std::set<double>(notes.begin(), notes.end()).size(), notes.size());
        for (const double note : notes) {
            EXPECT_GT(note, 250);
            EXPECT_LT(note, 4000);
        }
    }
}

TEST(Melody, StreamsOfAStationAreTransposedByMoreThanASemitone)
{
    for (std::size_t stream = 1; stream < 9; ++stream) {
        const double ratio
            = Melody("s20105", stream).notes()[0] / Melody("s20105", stream - 1).notes()[0];
        EXPECT_GT(ratio, 1.07);
    }
}

TEST(Melody, SamplesDependOnlyOnTheirPosition)
{
    const Melody melody("s20105", 0);
    const std::vector<std::int16_t> whole = melody.samples(0, 5 * Rate, Rate, 1);
    const std::vector<std::int16_t> part = melody.samples(Rate, Rate, Rate, 1);
    EXPECT_TRUE(std::equal(part.begin(), part.end(), whole.begin() + Rate));
    const std::vector<std::int16_t> later = melody.samples(
        2 * Rate * std::uint64_t {1000000000}, Rate, Rate, 1); // four notes take two seconds
    EXPECT_TRUE(std::equal(later.begin(), later.end(), whole.begin()));
}

TEST(Melody, IsModeratelyLoudAndFadesBetweenNotes)
{
    const std::vector<std::int16_t> samples = Melody("s20105", 0).samples(0, 2 * Rate, Rate, 2);
    ASSERT_EQ(samples.size(), 4 * Rate);
    int highest = 0;
    for (std::size_t i = 0; i < samples.size(); i += 2) {
        highest = std::max(highest, std::abs(samples[i]));
        EXPECT_EQ(samples[i], samples[i + 1]);
    }
    EXPECT_NEAR(highest, 32767 * Melody::Loudness, 20);
    for (std::size_t note = 0; note < Melody::NoteCount; ++note)
        EXPECT_NEAR(samples[note * Rate], 0, 10); // two channels, half a second
}

} // namespace
