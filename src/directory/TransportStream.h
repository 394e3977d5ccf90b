// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// Packs AAC frames into an MPEG transport stream (ISO 13818-1), for the segments of HLS. Segments
/// are made apart from each other and still continue one another: times follow from the frames'
/// numbers, and each segment uses up whole rounds of the continuity counters.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace directory {

/// `frames` are ADTS frames of 1024 samples, a multiple of 16 of them; `number` counts such
/// segments from the epoch on.
std::string transportStream(
    const std::vector<std::string> &frames, std::uint64_t number, unsigned rate);

} // namespace directory
