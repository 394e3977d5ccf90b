// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/OggPages.h"

#include "host/player/FlacFrames.h"

#include <gmock/gmock.h>
#include <string>

namespace {

std::string littleEndian(std::uint64_t value, int size)
{
    std::string text;
    for (int i = 0; i < size; ++i, value >>= 8)
        text += static_cast<char>(value & 0xFF);
    return text;
}

/// The checksum of RFC 3533, bit by bit.
std::uint32_t crcOf(const std::string &page)
{
    std::uint32_t crc = 0;
    for (const char c : page) {
        crc ^= static_cast<std::uint32_t>(static_cast<unsigned char>(c)) << 24;
        for (int bit = 0; bit < 8; ++bit)
            crc = crc & 0x80000000U ? crc << 1 ^ 0x04C11DB7U : crc << 1;
    }
    return crc;
}

std::string oggPage(std::int64_t granule, int flags, const std::string &lacing,
    const std::string &body, std::uint32_t serial = 7)
{
    std::string page = std::string("OggS") + '\0' + static_cast<char>(flags)
        + littleEndian(static_cast<std::uint64_t>(granule), 8) + littleEndian(serial, 4)
        + littleEndian(3, 4) + std::string(4, '\0') + static_cast<char>(lacing.size()) + lacing
        + body;
    return page.replace(22, 4, littleEndian(crcOf(page), 4));
}

TEST(OggPages, APageSaysWhereItEnds)
{
    const std::string lacing("\xFF\x05\x03\xFF", 4);
    const std::string page = oggPage(48000, 3, lacing, std::string(255 + 5 + 3 + 255, 'x'));
    const auto read = readOggPage(page + "more");
    ASSERT_TRUE(read);
    EXPECT_EQ(read->granule, 48000);
    EXPECT_EQ(read->serial, 7U);
    EXPECT_TRUE(read->isContinued);
    EXPECT_TRUE(read->isFirst);
    EXPECT_EQ(read->packets, 2U);
    EXPECT_EQ(read->headerSize, 27U + 4U);
    EXPECT_EQ(read->size, page.size());
}

TEST(OggPages, AnyDamageIsNoticed)
{
    const std::string page = oggPage(48000, 0, "\x03", "abc");
    ASSERT_TRUE(readOggPage(page));
    for (std::size_t i = 0; i < page.size(); ++i) {
        std::string damaged = page;
        damaged[i] = static_cast<char>(damaged[i] ^ 1);
        EXPECT_FALSE(readOggPage(damaged)) << i;
        EXPECT_FALSE(readOggPage(page.substr(0, i))) << i;
    }
}

TEST(OggPages, TheNextPageIsFoundBehindNoise)
{
    const std::string page = oggPage(-1, 0, "\x03", "abc");
    const std::string all = "OggSnoiseOggS" + page + page;
    const auto first = findOggPage(all, 0);
    ASSERT_TRUE(first);
    EXPECT_EQ(first->at, 13U);
    EXPECT_EQ(first->page.granule, -1);
    const auto second = findOggPage(all, first->at + 1);
    ASSERT_TRUE(second);
    EXPECT_EQ(second->at, 13U + page.size());
    EXPECT_FALSE(findOggPage(all, second->at + 1));
}

TEST(OggPages, TheFirstPacketSaysWhatTheAudioIs)
{
    const std::string vorbis = "\x01vorbis" + littleEndian(0, 4) + '\x02' + littleEndian(44100, 4)
        + std::string(12, '\0') + '\xB8' + '\x01';
    const auto isVorbis = readOggAudio(vorbis);
    ASSERT_TRUE(isVorbis);
    EXPECT_EQ(isVorbis->rate, 44100);
    EXPECT_EQ(isVorbis->headers, 3U);
    EXPECT_EQ(isVorbis->lost, 1024);
    const std::string opus
        = "OpusHead\x01\x02" + littleEndian(312, 2) + littleEndian(44100, 4) + std::string(3, '\0');
    const auto isOpus = readOggAudio(opus);
    ASSERT_TRUE(isOpus);
    EXPECT_EQ(isOpus->rate, 48000);
    EXPECT_EQ(isOpus->preSkip, 312);
    EXPECT_EQ(isOpus->headers, 2U);
    for (const std::string &packet : {vorbis, opus}) {
        for (std::size_t size = 0; size < packet.size(); ++size)
            EXPECT_FALSE(readOggAudio(packet.substr(0, size))) << size;
    }
    EXPECT_FALSE(readOggAudio("\x01video!" + std::string(60, '\0')));
    // A rate of zero.
    EXPECT_FALSE(readOggAudio("\x01vorbis" + std::string(50, '\0')));
}

/// STREAMINFO of \a rate, with frames of 4096 samples.
std::string streamInfo(unsigned rate, unsigned samples)
{
    std::string info("\x10\x00\x10\x00\0\0\0\0\0\0", 10);
    info += static_cast<char>(rate >> 12);
    info += static_cast<char>(rate >> 4);
    info += static_cast<char>(rate << 4 | 2);
    info += static_cast<char>(0xF0);
    info += static_cast<char>(samples >> 24);
    info += static_cast<char>(samples >> 16);
    info += static_cast<char>(samples >> 8);
    info += static_cast<char>(samples);
    return info + std::string(16, '\0');
}

std::string block(int type, const std::string &body)
{
    return std::string() + static_cast<char>(type) + static_cast<char>(body.size() >> 16)
        + static_cast<char>(body.size() >> 8) + static_cast<char>(body.size()) + body;
}

std::string bigEndian(std::uint64_t value)
{
    const std::string little = littleEndian(value, 8);
    return {little.rbegin(), little.rend()};
}

TEST(FlacFrames, TheHeaderHasALengthAndASeekTable)
{
    const std::string first = bigEndian(0) + bigEndian(0) + std::string("\x10\x00", 2);
    const std::string points = first + bigEndian(40960) + bigEndian(9000)
        + std::string("\x10\x00", 2) + bigEndian(~0ULL) + bigEndian(0) + std::string(2, '\0');
    const std::string file = "fLaC" + block(0, streamInfo(44100, 441000)) + block(3, points)
        + block(0x81, std::string(100, '\0')) + "frames";
    const auto header = readFlacHeader(file);
    ASSERT_TRUE(header);
    EXPECT_EQ(header->rate, 44100);
    EXPECT_EQ(header->samples, 441000U);
    EXPECT_EQ(header->blockSize, 4096);
    EXPECT_EQ(header->size, file.size() - 6);
    ASSERT_EQ(header->points.size(), 2U);
    EXPECT_EQ(header->points[1].sample, 40960U);
    EXPECT_EQ(header->points[1].offset, 9000U);
    EXPECT_EQ(header->beginning, std::string("fLaC") + '\x80' + file.substr(5, 37));
    // A picture of a megabyte is not needed to know where it ends.
    const std::string cut = "fLaC" + block(0, streamInfo(44100, 441000))
        + block(6, std::string(1 << 20, 'p')).substr(0, 100);
    EXPECT_EQ(readFlacHeader(cut)->size, 42U + 4U + (1U << 20));
    EXPECT_FALSE(readFlacHeader(file.substr(0, 41)));
    EXPECT_FALSE(readFlacHeader("fLaC" + block(0, streamInfo(0, 100))));
}

unsigned crc8(const std::string &bytes)
{
    unsigned crc = 0;
    for (const char c : bytes) {
        crc ^= static_cast<unsigned char>(c);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 0x80 ? crc << 1 ^ 7 : crc << 1) & 0xFF;
    }
    return crc;
}

std::string frameHeader(const std::string &number, bool isVariable = false)
{
    const std::string begin
        = std::string("\xFF") + static_cast<char>(isVariable ? 0xF9 : 0xF8) + "\xC9\x18" + number;
    return begin + static_cast<char>(crc8(begin));
}

TEST(FlacFrames, AFrameSaysItsSample)
{
    const std::pair<std::string, std::uint64_t> numbers[] = {{std::string(1, '\0'), 0},
        {"\x7F", 127}, {"\xC2\x80", 128}, {"\xDF\xBF", 2047}, {"\xE0\xA0\x80", 2048},
        {"\xF0\x90\x80\x80", 65536}, {"\xFE\x81\x80\x80\x80\x80\x80", 1ULL << 30}};
    for (const auto &[coded, number] : numbers) {
        EXPECT_EQ(readFlacFrame(frameHeader(coded) + "data", 4096), number * 4096) << number;
        EXPECT_EQ(readFlacFrame(frameHeader(coded, true) + "data", 0), number) << number;
    }
    EXPECT_FALSE(readFlacFrame(frameHeader("\x05") + "data", 0));
    for (const char *wrong : {"\x80", "\xC2\x41", "\xFF"})
        EXPECT_FALSE(readFlacFrame(frameHeader(wrong) + "data", 4096));
    std::string damaged = frameHeader("\x05") + "data";
    damaged[2] = '\xC8';
    EXPECT_FALSE(readFlacFrame(damaged, 4096));
    EXPECT_FALSE(readFlacFrame(frameHeader("\x05").substr(0, 5), 4096));
}

TEST(FlacFrames, WhatOnlyLooksLikeAFrameIsLeftOut)
{
    const std::string data(3000, 'd');
    const std::string bytes = data + frameHeader("\x05") + data + frameHeader("\x06") + data
        + frameHeader("\x70") + data + frameHeader("\x71") + data;
    const auto frames = flacFramesIn(bytes, 4096);
    ASSERT_EQ(frames.size(), 4U);
    EXPECT_EQ(frames[0].at, data.size());
    EXPECT_EQ(frames[1].sample, 6U * 4096);
    const std::string lured
        = frameHeader("\x70") + data + frameHeader("\x05") + data + frameHeader("\x06") + data;
    ASSERT_EQ(flacFramesIn(lured, 4096).size(), 2U);
    EXPECT_EQ(flacFramesIn(lured, 4096)[0].sample, 5U * 4096);
}

} // namespace
