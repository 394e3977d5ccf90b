// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/FlacFrames.h"

#include <algorithm>

namespace {

constexpr std::size_t BlockHeader = 4;
constexpr std::size_t StreamInfo = 34;
constexpr std::size_t PointSize = 18;
constexpr std::size_t MaxPoints = 20000;
constexpr int MostRate = 192000;
/// Of a point that holds a place for a later one.
constexpr std::uint64_t Placeholder = ~std::uint64_t(0);
/// More samples than any file has; keeps sums from overflowing.
constexpr std::uint64_t MostSamples = std::uint64_t(1) << 44;
constexpr std::uint64_t MostBytes = std::uint64_t(1) << 52;

unsigned byteAt(std::string_view bytes, std::size_t at)
{
    return static_cast<unsigned char>(bytes[at]);
}

std::uint64_t number(std::string_view bytes, std::size_t at, std::size_t size)
{
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < size; ++i)
        value = value << 8 | byteAt(bytes, at + i);
    return value;
}

std::vector<FlacSeekPoint> pointsIn(std::string_view block)
{
    std::vector<FlacSeekPoint> points;
    for (std::size_t at = 0; at + PointSize <= block.size() && points.size() < MaxPoints;
         at += PointSize) {
        const FlacSeekPoint point {number(block, at, 8), number(block, at + 8, 8)};
        const bool isUsable = point.sample != Placeholder && point.sample < MostSamples
            && point.offset < MostBytes
            && (points.empty()
                || (point.sample > points.back().sample && point.offset > points.back().offset));
        if (isUsable)
            points.push_back(point);
    }
    return points;
}

/// RFC 9639, 9.1.8: polynomial x^8 + x^2 + x + 1.
unsigned checksum(std::string_view bytes)
{
    unsigned crc = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        crc ^= byteAt(bytes, i);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc << 1 ^ (crc & 0x80 ? 0x07 : 0)) & 0xFF;
    }
    return crc;
}

/// The number that is coded like a character of UTF-8, in up to seven bytes; \a size is set to
/// theirs.
std::optional<std::uint64_t> codedNumber(std::string_view bytes, std::size_t &size)
{
    if (bytes.empty())
        return {};
    const unsigned first = byteAt(bytes, 0);
    size = 1;
    while (size <= 8 && first & 0x80U >> (size - 1))
        ++size;
    size -= size > 1 ? 1 : 0;
    const bool isOne = !(first & 0x80);
    if (isOne)
        return first;
    // "size" is the number of leading ones: one is a continuation, eight are none.
    if (size < 2 || size > 7 || bytes.size() < size)
        return {};
    std::uint64_t value = size == 7 ? 0 : first & (0x7FU >> size);
    for (std::size_t i = 1; i < size; ++i) {
        if ((byteAt(bytes, i) & 0xC0) != 0x80)
            return {};
        value = value << 6 | (byteAt(bytes, i) & 0x3F);
    }
    return value;
}

} // namespace

std::optional<FlacHeader> readFlacHeader(std::string_view bytes)
{
    enum Type : unsigned { Info = 0, SeekTable = 3 };
    constexpr std::size_t First = 4 + BlockHeader;
    if (bytes.size() < First + StreamInfo || bytes.substr(0, 4) != "fLaC"
        || (byteAt(bytes, 4) & 0x7F) != Info || number(bytes, 5, 3) != StreamInfo)
        return {};
    const std::string_view info = bytes.substr(First, StreamInfo);
    FlacHeader header;
    header.rate = static_cast<int>(number(info, 10, 3) >> 4);
    if (header.rate == 0 || header.rate > MostRate)
        return {};
    const std::uint64_t least = number(info, 0, 2);
    header.blockSize = static_cast<int>(least == number(info, 2, 2) ? least : 0);
    header.samples = (number(info, 13, 1) & 0x0F) << 32 | number(info, 14, 4);
    // Only the first block, marked as the last one.
    header.beginning = std::string(bytes.substr(0, First + StreamInfo));
    header.beginning[4] = static_cast<char>(0x80);

    std::size_t at = 4;
    bool isLast = false;
    while (!isLast && at + BlockHeader <= bytes.size()) {
        const unsigned type = byteAt(bytes, at);
        const std::size_t size = number(bytes, at + 1, 3);
        isLast = type & 0x80;
        if ((type & 0x7F) == SeekTable && at + BlockHeader < bytes.size())
            header.points = pointsIn(bytes.substr(at + BlockHeader, size));
        at += BlockHeader + size;
    }
    header.size = at;
    return header;
}

std::optional<std::uint64_t> readFlacFrame(std::string_view bytes, int blockSize)
{
    constexpr std::size_t Fixed = 4;
    if (bytes.size() < Fixed + 2 || byteAt(bytes, 0) != 0xFF || (byteAt(bytes, 1) & 0xFE) != 0xF8)
        return {};
    const bool isVariable = byteAt(bytes, 1) & 1;
    const unsigned sizeCode = byteAt(bytes, 2) >> 4;
    const unsigned rateCode = byteAt(bytes, 2) & 15;
    const unsigned channels = byteAt(bytes, 3) >> 4;
    const unsigned depth = byteAt(bytes, 3) >> 1 & 7;
    if (sizeCode == 0 || rateCode == 15 || channels > 10 || depth == 3 || byteAt(bytes, 3) & 1)
        return {};
    std::size_t coded = 0;
    const std::optional<std::uint64_t> first = codedNumber(bytes.substr(Fixed), coded);
    if (!first)
        return {};
    const std::size_t extra = (sizeCode == 6          ? 1
                                      : sizeCode == 7 ? 2
                                                      : 0)
        + (rateCode == 12                          ? 1
                : rateCode == 13 || rateCode == 14 ? 2
                                                   : 0);
    const std::size_t end = Fixed + coded + extra;
    if (bytes.size() <= end || checksum(bytes.substr(0, end)) != byteAt(bytes, end))
        return {};
    if (!isVariable && blockSize == 0)
        return {};
    return isVariable ? *first : *first * static_cast<std::uint64_t>(blockSize);
}

std::vector<FoundFlacFrame> flacFramesIn(std::string_view bytes, int blockSize)
{
    std::vector<FoundFlacFrame> found;
    for (std::size_t at = bytes.find('\xFF'); at < bytes.size(); at = bytes.find('\xFF', at + 1)) {
        if (const auto sample = readFlacFrame(bytes.substr(at), blockSize))
            found.push_back({at, *sample});
    }
    // What looks like a header within a frame's data has some number: those that have neighbours in
    // order on neither side are dropped.
    const auto inOrder = [&found](std::size_t a, std::size_t b) {
        constexpr std::uint64_t MostPerFrame = 65535;
        return found[a].sample < found[b].sample
            && found[b].sample - found[a].sample <= MostPerFrame * (b - a);
    };
    std::vector<FoundFlacFrame> kept;
    for (std::size_t i = 0; i < found.size(); ++i) {
        const bool isAlone = found.size() == 1;
        if (isAlone || (i > 0 && inOrder(i - 1, i)) || (i + 1 < found.size() && inOrder(i, i + 1)))
            kept.push_back(found[i]);
    }
    return kept;
}
