// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/OggPages.h"

#include <array>

namespace {

constexpr std::size_t PageHeader = 27; ///< without the segment table
constexpr int OpusRate = 48000;
constexpr int MostRate = 192000;

unsigned byteAt(std::string_view bytes, std::size_t at)
{
    return static_cast<unsigned char>(bytes[at]);
}

std::uint64_t littleEndian(std::string_view bytes, std::size_t at, std::size_t size)
{
    std::uint64_t value = 0;
    for (std::size_t i = size; i-- > 0;)
        value = value << 8 | byteAt(bytes, at + i);
    return value;
}

constexpr std::array<std::uint32_t, 256> makeCrcTable()
{
    std::array<std::uint32_t, 256> table {};
    for (std::uint32_t i = 0; i < table.size(); ++i) {
        std::uint32_t value = i << 24;
        for (int bit = 0; bit < 8; ++bit)
            value = value << 1 ^ (value >> 31 ? 0x04C11DB7U : 0U);
        table[i] = value;
    }
    return table;
}

/// RFC 3533, 6: over the whole page, with zeros in the place of the checksum.
std::uint32_t checksum(std::string_view page)
{
    constexpr std::size_t Field = 22;
    static constexpr std::array<std::uint32_t, 256> Table = makeCrcTable();
    std::uint32_t crc = 0;
    for (std::size_t i = 0; i < page.size(); ++i) {
        const unsigned byte = i >= Field && i < Field + 4 ? 0 : byteAt(page, i);
        crc = crc << 8 ^ Table[(crc >> 24 ^ byte) & 0xFF];
    }
    return crc;
}

bool isRate(std::uint64_t rate)
{
    return rate > 0 && rate <= MostRate;
}

} // namespace

std::optional<OggPage> readOggPage(std::string_view bytes)
{
    enum Flag : unsigned { Continued = 1, First = 2 };
    if (bytes.size() < PageHeader || bytes.substr(0, 4) != "OggS" || byteAt(bytes, 4) != 0)
        return {};
    OggPage page;
    const std::size_t segments = byteAt(bytes, 26);
    page.headerSize = PageHeader + segments;
    if (bytes.size() < page.headerSize)
        return {};
    page.size = page.headerSize;
    for (std::size_t i = 0; i < segments; ++i) {
        const unsigned length = byteAt(bytes, PageHeader + i);
        page.size += length;
        page.packets += length < 255 ? 1 : 0;
    }
    if (bytes.size() < page.size
        || checksum(bytes.substr(0, page.size)) != littleEndian(bytes, 22, 4))
        return {};
    page.isContinued = byteAt(bytes, 5) & Continued;
    page.isFirst = byteAt(bytes, 5) & First;
    page.granule = static_cast<std::int64_t>(littleEndian(bytes, 6, 8));
    page.serial = static_cast<std::uint32_t>(littleEndian(bytes, 14, 4));
    return page;
}

std::optional<FoundPage> findOggPage(std::string_view bytes, std::size_t from)
{
    for (std::size_t at = bytes.find("OggS", from); at < bytes.size();
         at = bytes.find("OggS", at + 1)) {
        if (const std::optional<OggPage> page = readOggPage(bytes.substr(at)))
            return FoundPage {at, *page};
    }
    return {};
}

std::optional<OggAudio> readOggAudio(std::string_view packet)
{
    if (packet.size() >= 30 && packet.substr(0, 7) == "\x01vorbis") {
        const std::uint64_t rate = littleEndian(packet, 12, 4);
        const unsigned longBlock = byteAt(packet, 28) >> 4;
        if (!isRate(rate) || longBlock < 6 || longBlock > 13)
            return {};
        // Half of each of the first two blocks, which overlap.
        return OggAudio {static_cast<int>(rate), 0, 3, 1 << (longBlock - 1)};
    }
    if (packet.size() >= 19 && packet.substr(0, 8) == "OpusHead")
        return OggAudio {OpusRate, static_cast<int>(littleEndian(packet, 10, 2)), 2, 0};
    return {};
}
