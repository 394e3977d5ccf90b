// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

/// \file
/// The protocol between the host and a vesk-decoder on their stream socket. Each frame is a
/// DecoderFrameHead and a payload, with numbers in the machine's byte order. The host sends Start
/// once, any number of Audio frames, then End; the decoder sends the other frames. The host closes
/// the socket to end the process. The functions are thread-safe; does not use Qt.

enum class DecoderFrame : std::uint8_t {
    // To the decoder.
    Start = 1, ///< DecoderFormat wanted; zeros: the stream's own
    Audio = 2, ///< encoded bytes
    End = 3, ///< no payload: no more Audio follows

    // To the host.
    Format = 11, ///< DecoderFormat of the samples that follow
    Samples = 12, ///< whole audio frames: interleaved 32-bit floating-point samples
    Title = 13, ///< UTF-8, from the stream's tags
    BitRate = 14, ///< std::uint32_t, in bit/s
    Failed = 15, ///< UTF-8: why the stream cannot be decoded
    Ended = 16, ///< no payload, after End: everything is decoded
};

struct DecoderFormat {
    std::uint32_t rate = 0; ///< audio frames per second
    std::uint32_t channels = 0;
};

/// Limits on streams and frames; what exceeds them is rejected.
struct DecoderLimits {
    static constexpr std::uint32_t MinRate = 8000;
    static constexpr std::uint32_t MaxRate = 192000;
    static constexpr std::uint32_t MaxChannels = 8; ///< in a stream; at most two in decoded audio
    /// Bytes.
    static constexpr std::size_t MaxPayload = 64 * 1024;
    /// Bytes.
    static constexpr std::size_t MaxText = 2048;
};

/// The descriptor of the socket in a decoder process.
constexpr int DecoderSocket = 3;

struct DecoderFrameHead {
    DecoderFrame kind = DecoderFrame::End;
    std::uint8_t reserved[3] = {};
    /// Of the payload, in bytes.
    std::uint32_t length = 0;
};
static_assert(sizeof(DecoderFrameHead) == 8);

/// Appends a frame to \a out. The payload is truncated to DecoderLimits::MaxPayload.
void appendFrame(std::vector<char> &out, DecoderFrame kind, const void *payload, std::size_t size);

/// Copies a payload into \a value; false if its size is not that of \a T.
template <class T>
bool readPayload(std::string_view payload, T &value)
{
    if (payload.size() != sizeof(T))
        return false;
    __builtin_memcpy(&value, payload.data(), sizeof(T));
    return true;
}

/// Reassembles frames from a byte stream. A frame that announces more than
/// DecoderLimits::MaxPayload bytes is an error, so memory use is bounded. Not thread-safe.
class FrameReader {
public:
    /// Takes one frame, whose payload is valid during the call. Returns false to stop.
    using Take = std::function<bool(DecoderFrame kind, std::string_view payload)>;

    /// Calls \a take for each complete frame. Returns false on a protocol error or when \a take
    /// does; then do not call it again.
    bool feed(const char *data, std::size_t size, const Take &take);

private:
    std::vector<char> m_pending;
};
