// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "decoder/DecoderFrames.h"
#include "fuzz/fuzzing.h"

#include <algorithm>
#include <string>
#include <vector>

// The frames between the host and a decoder process: the same frames are read whatever pieces the
// bytes arrive in, and written again they give the same frames.

namespace {

struct Heard {
    std::vector<std::pair<DecoderFrame, std::string>> frames;
    bool isSound = true;
};

Heard hear(const char *data, std::size_t size, std::size_t piece)
{
    Heard heard;
    FrameReader reader;
    for (std::size_t at = 0; at < size && heard.isSound; at += piece) {
        heard.isSound = reader.feed(data + at, std::min(piece, size - at),
            [&heard](DecoderFrame kind, std::string_view payload) {
                FUZZ_REQUIRE(payload.size() <= DecoderLimits::MaxPayload);
                heard.frames.emplace_back(kind, std::string(payload));
                return true;
            });
    }
    return heard;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto *bytes = reinterpret_cast<const char *>(data);
    const Heard whole = hear(bytes, size, size + 1);
    for (const std::size_t piece : {std::size_t(1), std::size_t(7), size / 2 + 1}) {
        const Heard pieces = hear(bytes, size, piece);
        FUZZ_REQUIRE(pieces.frames == whole.frames && pieces.isSound == whole.isSound);
    }
    std::vector<char> sent;
    for (const auto &frame : whole.frames)
        appendFrame(sent, frame.first, frame.second.data(), frame.second.size());
    const Heard again = hear(sent.data(), sent.size(), sent.size() + 1);
    FUZZ_REQUIRE(again.frames == whole.frames && again.isSound);
    for (const auto &frame : whole.frames) {
        DecoderFormat format;
        FUZZ_REQUIRE(readPayload(frame.second, format) == (frame.second.size() == sizeof format));
    }
    return 0;
}
