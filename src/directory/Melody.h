// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// What a stream plays: four notes, repeated, so that listeners and tests can identify a stream by
/// ear. A value; the same for the same stream on every machine.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace directory {

class Melody {
public:
    static constexpr double NoteSeconds = 0.5;
    static constexpr std::size_t NoteCount = 4;
    static constexpr double Loudness = 0.25; ///< of full scale, about -12 dB

    /// Of a guide id's stream, counted from 0. Stations differ in their notes, the streams of one
    /// in their pitch.
    Melody(const std::string &guideId, std::size_t stream);

    /// In Hz.
    const std::array<double, NoteCount> &notes() const { return m_notes; }
    /// That many frames of interleaved samples from the given one on. The rate must be even.
    std::vector<std::int16_t> samples(
        std::uint64_t first, std::size_t frames, unsigned rate, unsigned channels) const;

private:
    std::array<double, NoteCount> m_notes {};
};

} // namespace directory
