// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

/// \file
/// What the host and a vesk-decoder say to each other over their stream socket: frames of a kind, a
/// length and so many bytes. Both run on one machine, so numbers are in its byte order. The host
/// sends Start, then Audio as often as it likes, then End; the decoder answers with the rest. The
/// host closes the socket to end the process. Without Qt; no state but FrameReader's.

enum class DecoderFrame : std::uint8_t {
    // To the decoder.
    Start = 1, ///< DecoderFormat that is wanted; zeros: as the stream has it
    Audio = 2, ///< encoded bytes
    End = 3, ///< There is no more to come.

    // To the host.
    Format = 11, ///< DecoderFormat of the samples that follow
    Samples = 12, ///< 32-bit floating-point samples, channels interleaved, whole frames
    Title = 13, ///< UTF-8, as the stream has it
    BitRate = 14, ///< std::uint32_t, in bit/s
    Failed = 15, ///< UTF-8: why the stream cannot be decoded
    Ended = 16, ///< after End: everything is decoded
};

struct DecoderFormat {
    std::uint32_t rate = 0; ///< frames per second
    std::uint32_t channels = 0;
};

/// The bounds of decoded audio; what lies beyond is no radio.
struct DecoderLimits {
    static constexpr std::uint32_t MinRate = 8000;
    static constexpr std::uint32_t MaxRate = 192000;
    static constexpr std::uint32_t MaxChannels = 8; ///< of a stream; two come out
    static constexpr std::size_t MaxPayload = 64 * 1024;
    static constexpr std::size_t MaxText = 2048;
};

/// The descriptor of its socket in a decoder process.
constexpr int DecoderSocket = 3;

struct DecoderFrameHead {
    DecoderFrame kind = DecoderFrame::End;
    std::uint8_t reserved[3] = {};
    std::uint32_t length = 0;
};
static_assert(sizeof(DecoderFrameHead) == 8);

/// Appends a frame to \a out. The payload is cut at DecoderLimits::MaxPayload.
void appendFrame(std::vector<char> &out, DecoderFrame kind, const void *payload, std::size_t size);

/// Reads a payload that is exactly a \a T; false when its size is another.
template <class T>
bool readPayload(std::string_view payload, T &value)
{
    if (payload.size() != sizeof(T))
        return false;
    __builtin_memcpy(&value, payload.data(), sizeof(T));
    return true;
}

/// Puts frames together from the pieces in which a socket delivers them. Bounded: a frame that says
/// to be longer than DecoderLimits::MaxPayload is an error.
class FrameReader {
public:
    /// Takes one frame; false ends the reading.
    using Take = std::function<bool(DecoderFrame kind, std::string_view payload)>;

    /// Returns false for what is no frame, and when \a take does.
    bool feed(const char *data, std::size_t size, const Take &take);

private:
    std::vector<char> m_pending;
};
