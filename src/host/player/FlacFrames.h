// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// \file
/// Metadata blocks and frame headers of FLAC (RFC 9639). Pure functions of untrusted bytes; any
/// thread.

struct FlacSeekPoint {
    std::uint64_t sample = 0;
    std::uint64_t offset = 0; ///< from the first frame on
};

/// The metadata at the beginning of a file.
struct FlacHeader {
    int rate = 0; ///< samples per second
    int blockSize = 0; ///< samples per frame; 0 if it varies
    std::uint64_t samples = 0; ///< of the file; 0: unknown
    /// Bytes up to the first frame, as far as the blocks that were read say.
    std::uint64_t size = 0;
    std::vector<FlacSeekPoint> points; ///< ascending
    std::string beginning; ///< all that a decoder needs before a frame from the middle
};

/// Reads the beginning of a file, of which the first kilobytes suffice; empty if it is not FLAC.
std::optional<FlacHeader> readFlacHeader(std::string_view bytes);

/// The first sample of the frame at the beginning of \a bytes, whose header must be intact by its
/// checksum; empty if there is none. \a blockSize is that of the FlacHeader.
std::optional<std::uint64_t> readFlacFrame(std::string_view bytes, int blockSize);

/// A frame's offset in the bytes that were searched, and its first sample.
struct FoundFlacFrame {
    std::size_t at = 0;
    std::uint64_t sample = 0;
};

/// All frames in \a bytes; those whose sample is not in order with the rest are left out.
std::vector<FoundFlacFrame> flacFramesIn(std::string_view bytes, int blockSize);
