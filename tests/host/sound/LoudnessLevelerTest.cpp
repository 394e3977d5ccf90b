// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/sound/LoudnessLeveler.h"

#include <gmock/gmock.h>

#include <ebur128.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr double Pi = 3.14159265358979323846;

/// Interleaved samples.
struct Sound {
    int rate = 48000;
    int channels = 2;
    std::vector<float> samples;

    std::size_t frames() const { return samples.size() / static_cast<std::size_t>(channels); }
    double seconds() const { return static_cast<double>(frames()) / rate; }
    std::size_t at(double second) const
    {
        return static_cast<std::size_t>(second * rate) * static_cast<std::size_t>(channels);
    }
    Sound part(double from, double to) const
    {
        Sound cut {rate, channels, {}};
        cut.samples.assign(samples.begin() + static_cast<std::ptrdiff_t>(at(from)),
            samples.begin() + static_cast<std::ptrdiff_t>(std::min(at(to), samples.size())));
        return cut;
    }
    float peak() const
    {
        float most = 0;
        for (const float sample : samples)
            most = std::max(most, std::fabs(sample));
        return most;
    }
};

/// Gated loudness in LUFS; one channel is heard from both loudspeakers.
double loudnessOf(const Sound &sound)
{
    ebur128_state *state = ebur128_init(static_cast<unsigned>(sound.channels),
        static_cast<unsigned long>(sound.rate), EBUR128_MODE_I);
    if (sound.channels == 1)
        ebur128_set_channel(state, 0, EBUR128_DUAL_MONO);
    ebur128_add_frames_float(state, sound.samples.data(), sound.frames());
    double loudness = 0;
    ebur128_loudness_global(state, &loudness);
    ebur128_destroy(&state);
    return loudness;
}

Sound scaled(Sound sound, double decibels)
{
    const auto factor = static_cast<float>(std::pow(10, decibels / 20));
    for (float &sample : sound.samples)
        sample *= factor;
    return sound;
}

Sound atLoudness(const Sound &sound, double lufs)
{
    return scaled(sound, lufs - loudnessOf(sound));
}

/// \a valueOf: the left channel's and the right one's value at a time; one channel is the left one.
template <typename ValueOf>
Sound make(int rate, int channels, double seconds, ValueOf valueOf)
{
    Sound sound {rate, channels, {}};
    const auto frames = static_cast<int>(seconds * rate);
    for (int frame = 0; frame < frames; ++frame) {
        const auto [left, right] = valueOf(static_cast<double>(frame) / rate);
        sound.samples.push_back(static_cast<float>(left));
        if (channels == 2)
            sound.samples.push_back(static_cast<float>(right));
    }
    return sound;
}

std::pair<double, double> both(double value)
{
    return {value, value};
}

Sound noise(int rate, int channels, double seconds)
{
    std::mt19937 random(1);
    std::normal_distribution<double> value(0, 0.1);
    return make(rate, channels, seconds,
        [&](double) { return std::make_pair(value(random), value(random)); });
}

/// Chords with their own dynamics, a drum, and a pause of two seconds in every nine.
Sound music(int rate, int channels, double seconds)
{
    std::mt19937 random(2);
    std::uniform_real_distribution<double> hiss(-1, 1);
    return make(rate, channels, seconds, [&](double time) {
        const double bar = std::fmod(time, 9);
        if (bar > 7)
            return both(0);
        const double root = 110 * std::pow(2, std::floor(bar) * 2 / 12);
        double chord = 0;
        for (const double interval : {1.0, 1.25, 1.5, 2.0, 3.0})
            chord += std::sin(2 * Pi * root * interval * time) / 8;
        const double swell = 0.4 + 0.6 * std::fabs(std::sin(2 * Pi * time / 5));
        const double beat = std::fmod(time, 0.5);
        const double drum = std::exp(-beat * 30) * std::sin(2 * Pi * 60 * beat) * 0.5
            + std::exp(-beat * 120) * hiss(random) * 0.3;
        return std::make_pair(chord * swell + drum, chord * swell * 0.7 + drum);
    });
}

/// Syllables with a pitch, words apart, a breath of a second in every five, over a faint room.
Sound speech(int rate, int channels, double seconds)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<double> hiss(-1, 1);
    return make(rate, channels, seconds, [&](double time) {
        const double room = hiss(random) * 0.0003;
        const double sentence = std::fmod(time, 5);
        const double word = std::fmod(sentence, 0.7);
        if (sentence > 4 || word > 0.5)
            return both(room);
        const double syllable = std::pow(std::sin(Pi * std::fmod(word, 0.25) / 0.25), 2);
        double voice = 0;
        const double pitch = 120 + 20 * std::sin(2 * Pi * time / 3);
        for (int harmonic = 1; harmonic < 12; ++harmonic)
            voice += std::sin(2 * Pi * pitch * harmonic * time) / harmonic;
        return both(syllable * voice * 0.2 + room);
    });
}

/// In the pieces in which the mixer works, a tenth of a second, or others.
Sound leveled(LoudnessLeveler &leveler, Sound sound, std::size_t piece = 0)
{
    if (piece == 0)
        piece = static_cast<std::size_t>(sound.rate / 10);
    const auto channels = static_cast<std::size_t>(sound.channels);
    for (std::size_t frame = 0; frame < sound.frames(); frame += piece) {
        leveler.process(
            sound.samples.data() + frame * channels, std::min(piece, sound.frames() - frame));
    }
    return sound;
}

Sound leveled(const Sound &sound, std::size_t piece = 0)
{
    LoudnessLeveler leveler(sound.rate, sound.channels);
    leveler.setEnabled(true);
    return leveled(leveler, sound, piece);
}

/// The gain of the loudest frame around a time, in dB.
double gainAt(const Sound &before, const Sound &after, double second)
{
    std::size_t loudest = before.at(second);
    for (std::size_t i = before.at(second); i < before.at(second + 0.1); ++i) {
        if (std::fabs(before.samples[i]) > std::fabs(before.samples[loudest]))
            loudest = i;
    }
    return 20 * std::log10(after.samples[loudest] / before.samples[loudest]);
}

struct Station {
    const char *name;
    Sound (*make)(int rate, int channels, double seconds);
};

constexpr Station Stations[] = {{"Noise", noise}, {"Music", music}, {"Speech", speech}};

struct Case {
    Station station;
    int rate;
    int channels;
};

void PrintTo(const Case &tested, std::ostream *out)
{
    *out << tested.station.name << " at " << tested.rate << " Hz, channels: " << tested.channels;
}

class LoudnessLevelerFormatTest : public testing::TestWithParam<Case> { };

TEST_P(LoudnessLevelerFormatTest, StationsTwelveDecibelsApartAreAsLoudAfterTenSeconds)
{
    const Case &c = GetParam();
    const Sound station = c.station.make(c.rate, c.channels, 20);
    const Sound loud = leveled(atLoudness(station, -11));
    const Sound quiet = leveled(atLoudness(station, -23));
    const double loudness = loudnessOf(loud.part(10, 20));
    EXPECT_NEAR(loudness, loudnessOf(quiet.part(10, 20)), 0.3);
    EXPECT_NEAR(loudness, LoudnessLeveler::Target, 0.7);
    EXPECT_LE(loud.peak(), 1);
    EXPECT_LE(quiet.peak(), 1);
}

std::vector<Case> formats()
{
    std::vector<Case> cases;
    for (const Station &station : Stations) {
        for (const auto &[rate, channels] :
            {std::make_pair(8000, 1), {8000, 2}, {22050, 2}, {44100, 1}, {48000, 2}})
            cases.push_back({station, rate, channels});
    }
    cases.push_back({Stations[1], 192000, 2});
    return cases;
}

INSTANTIATE_TEST_SUITE_P(Formats, LoudnessLevelerFormatTest, testing::ValuesIn(formats()),
    [](const testing::TestParamInfo<Case> &tested) {
        return std::string(tested.param.station.name) + std::to_string(tested.param.rate) + "Hz"
            + std::to_string(tested.param.channels);
    });

TEST(LoudnessLevelerTest, AStationInMonoIsAsLoudAsOneInStereo)
{
    const Sound mono = leveled(atLoudness(speech(48000, 1, 20), -24)).part(10, 20);
    Sound fromBoth {48000, 2, {}};
    for (const float sample : mono.samples)
        fromBoth.samples.insert(fromBoth.samples.end(), {sample, sample});
    EXPECT_NEAR(loudnessOf(fromBoth),
        loudnessOf(leveled(atLoudness(music(48000, 2, 20), -10)).part(10, 20)), 1.5);
}

TEST(LoudnessLevelerTest, WhatIsAsLoudAsItShouldBeStaysAsItIs)
{
    const Sound before = atLoudness(noise(48000, 2, 20), LoudnessLeveler::Target);
    const Sound after = leveled(before);
    for (int second = 0; second < 20; ++second)
        EXPECT_NEAR(gainAt(before, after, second), 0, 0.2) << second;
}

TEST(LoudnessLevelerTest, TheGainHasItsLimits)
{
    struct Level {
        double loudness;
        double gain;
    };
    for (const Level &level :
        {Level {-2, -LoudnessLeveler::MaxCut}, Level {-38, LoudnessLeveler::MaxBoost}}) {
        const Sound before = atLoudness(noise(48000, 2, 15), level.loudness);
        EXPECT_NEAR(gainAt(before, leveled(before), 14), level.gain, 0.1);
    }
}

/// A station that begins with nothing is turned up neither then nor later.
TEST(LoudnessLevelerTest, SilenceAndNoiseFloorsAreNotTurnedUp)
{
    for (const double floor : {-48.0, -60.0, -75.0, -200.0}) {
        const Sound before = atLoudness(noise(48000, 2, 60), LoudnessLeveler::Target);
        const Sound quiet = scaled(before, floor - LoudnessLeveler::Target);
        const Sound after = leveled(quiet);
        for (const double second : {1.0, 10.0, 59.0})
            EXPECT_NEAR(gainAt(quiet, after, second), 0, 0.01) << floor;
    }
    const Sound after
        = leveled(scaled(noise(48000, 2, 5), -std::numeric_limits<double>::infinity()));
    EXPECT_EQ(after.peak(), 0);
}

TEST(LoudnessLevelerTest, ALongPauseLeavesTheGainAsItWas)
{
    LoudnessLeveler leveler(48000, 2);
    leveler.setEnabled(true);
    leveled(leveler, atLoudness(music(48000, 2, 20), -22));
    const Sound station = atLoudness(noise(48000, 2, 60), -22);
    const Sound floor = scaled(station, -40);
    const double before = gainAt(floor, leveled(leveler, floor.part(0, 1)), 0);
    EXPECT_NEAR(gainAt(floor, leveled(leveler, floor), 59), before, 0.05);
    EXPECT_NEAR(gainAt(station, leveled(leveler, station.part(0, 5)), 4), before, 2);
}

/// Otherwise each switch of station would begin with seconds that are too loud.
TEST(LoudnessLevelerTest, ALoudStationIsTurnedDownFromTheStart)
{
    for (const Station &station : Stations) {
        for (const std::size_t piece : {1323U, 4410U}) {
            const Sound before = atLoudness(station.make(44100, 2, 6), -8);
            const Sound after = leveled(before, piece);
            // Of ten that it is too loud.
            EXPECT_LT(loudnessOf(after.part(0.2, 1.2)), LoudnessLeveler::Target + 5)
                << station.name << piece;
            EXPECT_LT(gainAt(before, after, 0.25), -4) << station.name << piece;
        }
    }
}

/// Music's own dynamics are not to be levelled: some dB per second at the start, then less.
TEST(LoudnessLevelerTest, TheGainMovesSlowly)
{
    const Sound loud = atLoudness(noise(48000, 2, 30), -10);
    const Sound quiet = atLoudness(noise(48000, 2, 90), -20);
    LoudnessLeveler leveler(48000, 2);
    leveler.setEnabled(true);
    struct Piece {
        const Sound &sound;
        double first; ///< dB per second in the first second
        double later;
    };
    for (const Piece &piece :
        {Piece {loud, LoudnessLeveler::StartSpeed, LoudnessLeveler::StartSpeed},
            Piece {quiet, LoudnessLeveler::SpeedUp, LoudnessLeveler::SpeedUp},
            Piece {loud, LoudnessLeveler::SpeedDown, LoudnessLeveler::SpeedDown}}) {
        const Sound after = leveled(leveler, piece.sound);
        double gain = gainAt(piece.sound, after, 0);
        for (double second = 1; second < piece.sound.seconds() - 1; ++second) {
            const double next = gainAt(piece.sound, after, second);
            EXPECT_LE(std::fabs(next - gain), piece.later * 1.15) << second;
            gain = next;
        }
        // It gets there nevertheless.
        EXPECT_NEAR(loudnessOf(after.part(piece.sound.seconds() - 5, piece.sound.seconds())),
            LoudnessLeveler::Target, 1);
    }
}

/// After something quiet, which was turned up, in pieces of any size.
TEST(LoudnessLevelerTest, NothingClipsAtASuddenLoudPart)
{
    const Sound quiet = atLoudness(music(44100, 2, 12), -27);
    const double tone = 2 * Pi * 440;
    const Sound parts[] = {
        make(44100, 2, 2, [&](double time) { return both(std::sin(tone * time)); }),
        // At its peak with the first frame, and of one channel only.
        make(44100, 2, 2, [&](double time) { return std::make_pair(std::cos(tone * time), 0.0); }),
        scaled(noise(44100, 2, 2), 20),
    };
    for (const Sound &part : parts) {
        for (const std::size_t piece : {1U, 64U, 441U, 4410U, 44100U}) {
            LoudnessLeveler leveler(44100, 2);
            leveler.setEnabled(true);
            leveled(leveler, quiet, piece);
            const Sound after = leveled(leveler, part, piece);
            EXPECT_LE(after.peak(), 1) << piece;
            EXPECT_GT(after.part(0, 0.5).peak(), 0.9) << piece;
        }
    }
}

/// The sound that follows a peak is not torn: between two frames it changes no more than the sound
/// itself does.
TEST(LoudnessLevelerTest, ThePeakLimiterDoesNotClick)
{
    const double tone = 2 * Pi * 200;
    const Sound quiet
        = make(48000, 1, 12, [&](double time) { return both(0.04 * std::sin(tone * time)); });
    const Sound loud = make(48000, 1, 1, [&](double time) { return both(std::sin(tone * time)); });
    const double steepest = tone / 48000;
    for (const std::size_t ahead : {0U, 100U, 2400U}) {
        LoudnessLeveler leveler(48000, 1);
        leveler.setEnabled(true);
        leveled(leveler, quiet);
        Sound part = quiet.part(0, static_cast<double>(ahead) / 48000);
        part.samples.insert(part.samples.end(), loud.samples.begin(), loud.samples.end());
        const Sound after = leveled(leveler, part);
        // What was turned up is steeper by as much, for as long as it is not too loud.
        const double most = steepest * std::pow(10, LoudnessLeveler::MaxBoost / 20);
        for (std::size_t i = 1; i < after.samples.size(); ++i) {
            ASSERT_LE(std::fabs(after.samples[i] - after.samples[i - 1]), most * 1.001)
                << ahead << " " << i;
        }
    }
}

TEST(LoudnessLevelerTest, BrokenSamplesDoNoHarm)
{
    const float broken[] = {std::numeric_limits<float>::quiet_NaN(),
        std::numeric_limits<float>::signaling_NaN(), std::numeric_limits<float>::infinity(),
        -std::numeric_limits<float>::infinity(), std::numeric_limits<float>::max(),
        std::numeric_limits<float>::lowest(), std::numeric_limits<float>::denorm_min(), 1e30F};
    const Sound whole = atLoudness(music(48000, 2, 20), -23);
    for (const float sample : broken) {
        Sound sound = whole;
        for (std::size_t i = 0; i < sound.at(5); i += 9001)
            sound.samples[i] = sample;
        const Sound after = leveled(sound);
        for (const float heard : after.samples)
            ASSERT_TRUE(std::isfinite(heard) && std::fabs(heard) <= 1) << sample;
        EXPECT_NEAR(loudnessOf(after.part(10, 20)), LoudnessLeveler::Target, 1.5) << sample;
    }
    Sound all = noise(48000, 2, 1);
    std::fill(all.samples.begin(), all.samples.end(), std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(leveled(all).peak(), 0);
}

TEST(LoudnessLevelerTest, WhileItIsOffNothingIsTouched)
{
    LoudnessLeveler leveler(48000, 2);
    const Sound loud = scaled(atLoudness(music(48000, 2, 3), -6), 12);
    EXPECT_TRUE(leveler.isIdle());
    EXPECT_EQ(leveled(leveler, loud).samples, loud.samples);
    // Also after it was on, once the gain is back, with peaks above 1.
    leveler.setEnabled(true);
    leveled(leveler, loud);
    leveler.setEnabled(false);
    leveled(leveler, loud);
    EXPECT_TRUE(leveler.isIdle());
    EXPECT_EQ(leveled(leveler, loud).samples, loud.samples);
}

TEST(LoudnessLevelerTest, SwitchingItDoesNotClick)
{
    const double tone = 2 * Pi * 200;
    const double amplitude = 0.1;
    const Sound station
        = make(48000, 1, 40, [&](double time) { return both(amplitude * std::sin(tone * time)); });
    LoudnessLeveler leveler(48000, 1);
    const double most
        = amplitude * tone / 48000 * std::pow(10, LoudnessLeveler::MaxBoost / 20) * 1.01;
    float last = 0;
    bool wasTurned = false;
    for (int tenth = 0; tenth < 400; ++tenth) {
        if (tenth == 50 || tenth == 200 || tenth == 203)
            leveler.setEnabled(true);
        if (tenth == 150 || tenth == 201 || tenth == 300)
            leveler.setEnabled(false);
        const Sound before = station.part(tenth / 10.0, (tenth + 1) / 10.0);
        const Sound after = leveled(leveler, before);
        for (const float sample : after.samples) {
            ASSERT_LE(std::fabs(sample - last), most) << tenth;
            last = sample;
        }
        wasTurned = wasTurned || after.peak() < amplitude * 0.9 || after.peak() > amplitude * 1.1;
        if (tenth >= 310) {
            ASSERT_EQ(after.samples, before.samples);
        }
    }
    EXPECT_TRUE(wasTurned);
}

/// Each play has its own; what it gets may be of any length, or nothing.
TEST(LoudnessLevelerTest, TheSizeOfThePiecesMakesNoDifference)
{
    const Sound station = atLoudness(music(48000, 2, 15), -23);
    const double expected = loudnessOf(leveled(station).part(10, 15));
    for (const std::size_t piece : {1U, 47U, 1152U, 4801U, 480000U})
        EXPECT_NEAR(loudnessOf(leveled(station, piece).part(10, 15)), expected, 0.2) << piece;
    LoudnessLeveler leveler(48000, 2);
    leveler.setEnabled(true);
    leveler.process(nullptr, 0);
}

} // namespace
