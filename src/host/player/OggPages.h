// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

/// \file
/// Pages of Ogg (RFC 3533) and the headers of the audio in them. Pure functions of untrusted bytes;
/// any thread.

struct OggPage {
    std::uint32_t serial = 0; ///< of the logical stream
    /// Samples up to the end of the last packet that ends on the page; negative if none does.
    std::int64_t granule = -1;
    bool isContinued = false; ///< begins in the middle of a packet
    bool isFirst = false; ///< of its logical stream
    std::size_t packets = 0; ///< that end on the page
    std::size_t headerSize = 0; ///< bytes
    std::size_t size = 0; ///< bytes, with the header
};

/// Reads the page at the beginning of \a bytes. Empty if it is none, is incomplete or damaged (by
/// its checksum).
std::optional<OggPage> readOggPage(std::string_view bytes);

/// A page's offset in the bytes that were searched.
struct FoundPage {
    std::size_t at = 0;
    OggPage page;
};

/// The first page in \a bytes from \a from on.
std::optional<FoundPage> findOggPage(std::string_view bytes, std::size_t from);

/// What the first packet of a logical stream says of its audio.
struct OggAudio {
    int rate = 0; ///< granules per second
    int preSkip = 0; ///< granules before the beginning of the audio
    std::size_t headers = 0; ///< packets before the audio, the first one included
    int lost = 0; ///< samples that a decoder which starts in the middle does not deliver
};

/// Of Vorbis or Opus; empty for anything else.
std::optional<OggAudio> readOggAudio(std::string_view packet);
