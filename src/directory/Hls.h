// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// HTTP live streaming (RFC 8216) without a memory: what is in which segment follows from the clock
/// alone, so every client sees the same window move. Times are milliseconds since the epoch.
#pragma once

#include "directory/Melody.h"

#include <cstdint>
#include <string>
#include <vector>

namespace directory {

struct HlsVariant {
    std::string address; ///< of its media playlist, relative to the master playlist
    int bitrate = 0; ///< kbit/s
};

class Hls {
public:
    static constexpr std::uint64_t segmentMilliseconds = 2048;
    static constexpr std::uint64_t window = 5; ///< segments in a playlist
    /// How many more than those in the playlist can still be fetched.
    static constexpr std::uint64_t grace = 5;

    /// The newest segment that is complete.
    static std::uint64_t newest(std::uint64_t now);
    static bool available(std::uint64_t segment, std::uint64_t now);

    /// The addresses are `prefix`, the segment's number and ".ts".
    static std::string mediaPlaylist(const std::string &prefix, std::uint64_t now);
    static std::string masterPlaylist(const std::vector<HlsVariant> &variants);

    /// AAC in an MPEG transport stream. Encodes for some 20 ms; throws std::runtime_error.
    static std::string segment(const Melody &melody, int bitrate, std::uint64_t number);
};

} // namespace directory
