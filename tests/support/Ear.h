// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// Listens to encoded audio: decodes it with GStreamer and tells which notes are to be heard.
#pragma once

#include <string>
#include <vector>

namespace ear {

struct Sound {
    static constexpr int Rate = 12000;
    std::vector<float> samples; ///< mono
    std::string error; ///< what the decoder complained about, last

    double seconds() const { return static_cast<double>(samples.size()) / Rate; }
    double loudness() const; ///< root mean square of full scale
    /// The notes in their order, in Hz; a note must last for 0.3 seconds to count.
    std::vector<double> notes() const;
    /// How much of the energy in a piece is a tone of that frequency, from 0 to 1.
    double share(std::size_t first, std::size_t count, double frequency) const;
};

/// Waits for the decoder, ten seconds at most.
Sound decoded(const std::string &bytes);
/// Whether these are at least `least` notes and all of the melody's, in its order from any note on.
bool isPartOf(
    const std::vector<double> &heard, const std::vector<double> &melody, std::size_t least);

} // namespace ear
