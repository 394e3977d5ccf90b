// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Melody.h"

#include "directory/Context.h"

#include <algorithm>
#include <cmath>

namespace directory {

namespace {

constexpr double Pi = 3.14159265358979;
constexpr double LowestNote = 261.63; // C4
constexpr int Octaves = 3;
constexpr std::array<int, 5> Pentatonic {0, 2, 4, 7, 9};
/// Semitones between the streams of a station: no multiple of it up to eight lies in the scale.
constexpr double Transposition = 1.35;
constexpr double FadeSeconds = 0.01;
/// Coprime to the number of melodies, so that all differ, and neighbours differ much.
constexpr std::uint32_t Stride = 12347;

std::uint32_t numberOf(const std::string &guideId)
{
    const int number = guideId.empty() ? -1 : parseNumber(std::string_view(guideId).substr(1));
    return number >= 0 ? static_cast<std::uint32_t>(number) : stableNumber(guideId);
}

/// The n-th way to choose four of the scale's notes, in order and without repetition.
std::array<int, Melody::NoteCount> chosenNotes(std::uint32_t n)
{
    std::vector<int> left;
    for (int octave = 0; octave < Octaves; ++octave) {
        for (const int semitone : Pentatonic)
            left.push_back(12 * octave + semitone);
    }
    std::array<int, Melody::NoteCount> chosen {};
    for (int &note : chosen) {
        const auto at = static_cast<std::ptrdiff_t>(n % left.size());
        n /= static_cast<std::uint32_t>(left.size());
        note = left[static_cast<std::size_t>(at)];
        left.erase(left.begin() + at);
    }
    return chosen;
}

double fade(double second)
{
    const double edge = std::min({second, Melody::NoteSeconds - second, FadeSeconds});
    return 0.5 - 0.5 * std::cos(Pi * edge / FadeSeconds);
}

} // namespace

Melody::Melody(const std::string &guideId, std::size_t stream)
{
    constexpr std::uint32_t Melodies = 15 * 14 * 13 * 12;
    const std::array<int, NoteCount> chosen
        = chosenNotes(numberOf(guideId) % Melodies * Stride % Melodies);
    for (std::size_t i = 0; i < NoteCount; ++i) {
        const double semitones = chosen[i] + Transposition * static_cast<double>(stream);
        m_notes[i] = std::round(LowestNote * std::pow(2, semitones / 12) * 10) / 10;
    }
}

std::vector<std::int16_t> Melody::samples(
    std::uint64_t first, std::size_t frames, unsigned rate, unsigned channels) const
{
    const std::uint64_t perNote = rate / 2;
    std::vector<std::int16_t> out;
    out.reserve(frames * channels);
    for (std::uint64_t frame = first; frame < first + frames; ++frame) {
        const double second = static_cast<double>(frame % perNote) / rate;
        const double note = m_notes[frame / perNote % NoteCount];
        const double value = Loudness * fade(second) * std::sin(2 * Pi * note * second);
        out.insert(out.end(), channels, static_cast<std::int16_t>(std::lround(value * 32767)));
    }
    return out;
}

} // namespace directory
