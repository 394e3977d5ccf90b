// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/sound/LoudnessLeveler.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstring>
#include <vector>

namespace {

constexpr int Rate = 48000;
constexpr int Channels = 2;
/// Frames that the mixer hands over at once.
constexpr std::size_t Piece = Rate / 10;

/// A second of two tones that come and go.
std::vector<float> secondOfSound()
{
    std::vector<float> samples;
    for (int frame = 0; frame < Rate; ++frame) {
        const float time = static_cast<float>(frame) / Rate;
        const float swell = 0.3F + 0.2F * std::sin(20 * time);
        samples.push_back(swell * std::sin(2764 * time));
        samples.push_back(swell * std::sin(4146 * time));
    }
    return samples;
}

/// The floor: the same samples, moved.
void copySecondOfSound(benchmark::State &state)
{
    const std::vector<float> sound = secondOfSound();
    std::vector<float> copy(sound.size());
    for (auto _ : state) {
        std::memcpy(copy.data(), sound.data(), sound.size() * sizeof(float));
        benchmark::DoNotOptimize(copy.data());
        benchmark::ClobberMemory();
    }
}

/// With evenness off (0) and on (1), the copy included.
void levelSecondOfSound(benchmark::State &state)
{
    const std::vector<float> sound = secondOfSound();
    std::vector<float> copy(sound.size());
    LoudnessLeveler leveler(Rate, Channels);
    leveler.setEnabled(state.range(0) == 1);
    for (auto _ : state) {
        std::memcpy(copy.data(), sound.data(), sound.size() * sizeof(float));
        for (std::size_t frame = 0; frame < Rate; frame += Piece)
            leveler.process(copy.data() + frame * Channels, Piece);
        benchmark::DoNotOptimize(copy.data());
        benchmark::ClobberMemory();
    }
}

BENCHMARK(copySecondOfSound)->Unit(benchmark::kMicrosecond);
BENCHMARK(levelSecondOfSound)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

} // namespace
