// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/AudioFrames.h"

#include <algorithm>
#include <array>

namespace {

/// kbit/s by layer (3, 2, 1) and index, for MPEG-1 and for the lower sample rates.
constexpr int BitRates1[3][15]
    = {{0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320},
        {0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384},
        {0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448}};
constexpr int BitRates2[3][15] = {{0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160},
    {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160},
    {0, 32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256}};
constexpr std::array<int, 3> MpegRates {44100, 48000, 32000};
constexpr std::array<int, 13> AacRates {
    96000, 88200, 64000, 48000, 44100, 32000, 24000, 22050, 16000, 12000, 11025, 8000, 7350};

constexpr std::size_t AdtsHeader = 7;
constexpr std::size_t VbriOffset = 36;
constexpr std::size_t XingParts = 100;
/// More entries than any encoder writes.
constexpr unsigned MaxVbriParts = 10000;

unsigned byteAt(std::string_view bytes, std::size_t at)
{
    return static_cast<unsigned char>(bytes[at]);
}

/// A big-endian number of \a size bytes; 0 beyond the end.
std::uint32_t number(std::string_view bytes, std::size_t at, std::size_t size)
{
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < size; ++i)
        value = value << 8 | (at + i < bytes.size() ? byteAt(bytes, at + i) : 0);
    return value;
}

std::optional<Mp3Index> readXing(std::string_view bytes, bool isConstant)
{
    enum Flag : std::uint32_t { HasFrames = 1, HasBytes = 2, HasParts = 4 };
    Mp3Index index;
    index.isConstant = isConstant;
    const std::uint32_t flags = number(bytes, 4, 4);
    std::size_t at = 8;
    if (flags & HasFrames) {
        index.frames = number(bytes, at, 4);
        at += 4;
    }
    if (flags & HasBytes) {
        index.bytes = number(bytes, at, 4);
        at += 4;
    }
    if (!(flags & HasParts) || index.bytes == 0 || at + XingParts > bytes.size())
        return index;
    std::uint64_t last = 0;
    for (std::size_t i = 0; i < XingParts; ++i) {
        // In 256ths of the file, rounded down: half of one more is the best guess.
        const unsigned part = byteAt(bytes, at + i);
        const std::uint64_t offset
            = part == 0 ? 0 : (std::uint64_t(index.bytes) * (2 * part + 1)) / 512;
        last = std::max(last, offset);
        index.parts.push_back(last);
    }
    return index;
}

std::optional<Mp3Index> readVbri(std::string_view bytes)
{
    Mp3Index index;
    index.bytes = number(bytes, 10, 4);
    index.frames = number(bytes, 14, 4);
    const std::uint32_t count = number(bytes, 18, 2);
    const std::uint32_t scale = number(bytes, 20, 2);
    const std::uint32_t size = number(bytes, 22, 2);
    if (count == 0 || count > MaxVbriParts || size < 1 || size > 4
        || 26 + std::size_t(count) * size > bytes.size())
        return index;
    std::uint64_t offset = 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        index.parts.push_back(offset);
        offset += std::uint64_t(number(bytes, 26 + std::size_t(i) * size, size)) * scale;
    }
    return index;
}

} // namespace

std::optional<AudioFrame> readMpegFrame(std::string_view bytes)
{
    if (bytes.size() < 4 || byteAt(bytes, 0) != 0xFF || (byteAt(bytes, 1) & 0xE0) != 0xE0)
        return {};
    const unsigned version = byteAt(bytes, 1) >> 3 & 3; // 0: 2.5, 1: reserved, 2: 2, 3: 1
    const unsigned layerBits = byteAt(bytes, 1) >> 1 & 3; // 0: reserved, 1: III, 2: II, 3: I
    const unsigned rateIndex = byteAt(bytes, 2) >> 2 & 3;
    const unsigned bitIndex = byteAt(bytes, 2) >> 4;
    const std::size_t padding = byteAt(bytes, 2) >> 1 & 1;
    if (version == 1 || layerBits == 0 || rateIndex == 3 || bitIndex == 0 || bitIndex == 15)
        return {};
    AudioFrame frame;
    frame.isVersion1 = version == 3;
    frame.rate = MpegRates[rateIndex] / (version == 3 ? 1 : version == 2 ? 2 : 4);
    frame.bitRate = (frame.isVersion1 ? BitRates1 : BitRates2)[layerBits - 1][bitIndex] * 1000;
    frame.isMono = byteAt(bytes, 3) >> 6 == 3;
    const bool isLayer1 = layerBits == 3;
    frame.samples = isLayer1 ? 384 : layerBits == 1 && !frame.isVersion1 ? 576 : 1152;
    const auto slots = static_cast<std::size_t>(
        frame.samples / (isLayer1 ? 32 : 8) * frame.bitRate / frame.rate);
    frame.size = (slots + padding) * (isLayer1 ? 4 : 1);
    return frame;
}

std::optional<AudioFrame> readAdtsFrame(std::string_view bytes)
{
    if (bytes.size() < AdtsHeader || byteAt(bytes, 0) != 0xFF || (byteAt(bytes, 1) & 0xF6) != 0xF0)
        return {};
    const unsigned rateIndex = byteAt(bytes, 2) >> 2 & 15;
    if (rateIndex >= AacRates.size())
        return {};
    AudioFrame frame;
    frame.rate = AacRates[rateIndex];
    frame.samples = static_cast<int>(1024 * ((byteAt(bytes, 6) & 3) + 1));
    frame.size = (byteAt(bytes, 3) & 3) << 11 | byteAt(bytes, 4) << 3 | byteAt(bytes, 5) >> 5;
    frame.isMono = ((byteAt(bytes, 2) & 1) << 2 | byteAt(bytes, 3) >> 6) == 1;
    if (frame.size < AdtsHeader)
        return {};
    return frame;
}

std::optional<FoundFrame> findFrame(std::string_view bytes, ReadFrame read)
{
    for (std::size_t at = bytes.find('\xFF'); at < bytes.size(); at = bytes.find('\xFF', at + 1)) {
        const std::optional<AudioFrame> first = read(bytes.substr(at));
        std::size_t next = at;
        std::optional<AudioFrame> frame = first;
        int more = 0;
        while (frame && more < 2 && frame->size <= bytes.size() - next) {
            next += frame->size;
            frame = read(bytes.substr(next));
            if (!frame || frame->rate != first->rate)
                break;
            ++more;
        }
        if (more == 2)
            return FoundFrame {at, *first};
    }
    return {};
}

std::vector<AudioFrame> framesIn(std::string_view bytes, ReadFrame read)
{
    std::vector<AudioFrame> frames;
    while (const std::optional<AudioFrame> frame = read(bytes)) {
        if (frame->size > bytes.size())
            break;
        frames.push_back(*frame);
        bytes.remove_prefix(frame->size);
    }
    return frames;
}

std::optional<Mp3Index> readMp3Index(std::string_view frame, const AudioFrame &header)
{
    const std::size_t side
        = header.isVersion1 ? (header.isMono ? 17 : 32) : (header.isMono ? 9 : 17);
    const std::size_t at = 4 + side;
    if (frame.size() >= at + 8) {
        const std::string_view name = frame.substr(at, 4);
        if (name == "Xing" || name == "Info")
            return readXing(frame.substr(at), name == "Info");
    }
    if (frame.size() >= VbriOffset + 26 && frame.substr(VbriOffset, 4) == "VBRI")
        return readVbri(frame.substr(VbriOffset));
    return {};
}

std::size_t id3Size(std::string_view bytes)
{
    constexpr std::size_t Header = 10;
    if (bytes.size() < Header || bytes.substr(0, 3) != "ID3")
        return 0;
    std::size_t size = 0;
    for (std::size_t i = 6; i < Header; ++i) {
        // "Synchsafe": seven bits per byte.
        if (byteAt(bytes, i) & 0x80)
            return 0;
        size = size << 7 | byteAt(bytes, i);
    }
    const bool hasFooter = byteAt(bytes, 5) & 0x10;
    return size + Header * (hasFooter ? 2 : 1);
}
