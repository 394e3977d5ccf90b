// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// HTTP live streaming (RFC 8216), stateless: the content of a segment follows from its number, and
/// the window from the clock, so all clients see the same stream. Times are milliseconds since the
/// epoch.
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
    static constexpr std::uint64_t SegmentMilliseconds = 2048;
    static constexpr std::uint64_t Window = 5; ///< segments in a playlist
    /// Segments before the window that can still be fetched (RFC 8216, 6.2.2).
    static constexpr std::uint64_t Grace = 5;

    /// The newest segment that is complete.
    static std::uint64_t newest(std::uint64_t now);
    static bool available(std::uint64_t segment, std::uint64_t now);

    /// The addresses are `prefix`, the segment's number and ".ts".
    static std::string mediaPlaylist(const std::string &prefix, std::uint64_t now);
    static std::string masterPlaylist(const std::vector<HlsVariant> &variants);

    /// AAC in an MPEG transport stream. Blocks for some 20 ms. Throws std::runtime_error.
    static std::string segment(const Melody &melody, int bitrate, std::uint64_t number);
};

} // namespace directory
