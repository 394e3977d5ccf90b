// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

/// \file
/// Frames of MPEG audio (ISO 11172-3, 13818-3) and of AAC in ADTS (ISO 13818-7), and the index that
/// encoders put into the first frame of an MP3 file. Pure functions of untrusted bytes; any thread.

/// What a frame's header says.
struct AudioFrame {
    int rate = 0; ///< samples per second
    int samples = 0; ///< per channel
    std::size_t size = 0; ///< bytes, with the header
    int bitRate = 0; ///< bit/s; 0 in ADTS, whose headers have none
    bool isMono = false;
    bool isVersion1 = false; ///< MPEG-1, not 2 or 2.5
};

/// Reads the header at the beginning of \a bytes; empty if it is none. Free format is not
/// supported.
std::optional<AudioFrame> readMpegFrame(std::string_view bytes);
std::optional<AudioFrame> readAdtsFrame(std::string_view bytes);

using ReadFrame = std::optional<AudioFrame> (*)(std::string_view bytes);

/// A frame's offset in the bytes that were searched.
struct FoundFrame {
    std::size_t at = 0;
    AudioFrame frame;
};

/// The first frame in \a bytes that is followed by two more of the same rate, which shows that it
/// is one.
std::optional<FoundFrame> findFrame(std::string_view bytes, ReadFrame read);

/// The frames that follow each other from the beginning of \a bytes on.
std::vector<AudioFrame> framesIn(std::string_view bytes, ReadFrame read);

/// The index in the first frame of an MP3 file: "Xing" or "Info", or "VBRI".
struct Mp3Index {
    std::uint32_t frames = 0; ///< 0: unknown
    std::uint32_t bytes = 0; ///< from the index's frame on; 0: unknown
    bool isConstant = false; ///< "Info": the bit rate is constant
    /// Offsets from the index's frame on, ascending, of equally long parts of the file; empty
    /// without a table.
    std::vector<std::uint64_t> parts;
};

/// The index in \a frame, which begins with \a header; empty if there is none.
std::optional<Mp3Index> readMp3Index(std::string_view frame, const AudioFrame &header);

/// The length of the ID3v2 tag at the beginning of \a bytes, with its header, of which at least ten
/// bytes are needed; 0 without one.
std::size_t id3Size(std::string_view bytes);
