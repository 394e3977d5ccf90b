// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/AudioFrames.h"

#include <gmock/gmock.h>
#include <string>

namespace {

std::string bytes(std::initializer_list<int> values)
{
    std::string text;
    for (const int value : values)
        text += static_cast<char>(value);
    return text;
}

struct HeaderRow {
    const char *name;
    ReadFrame read;
    std::string header;
    int rate; ///< 0: no frame
    int samples;
    std::size_t size;
    int bitRate;
};

class AudioFramesHeader : public testing::TestWithParam<HeaderRow> { };

TEST_P(AudioFramesHeader, SaysWhatTheFrameIs)
{
    const HeaderRow &row = GetParam();
    const std::optional<AudioFrame> frame = row.read(row.header);
    ASSERT_EQ(frame.has_value(), row.rate > 0);
    if (!frame)
        return;
    EXPECT_EQ(frame->rate, row.rate);
    EXPECT_EQ(frame->samples, row.samples);
    EXPECT_EQ(frame->size, row.size);
    EXPECT_EQ(frame->bitRate, row.bitRate);
}

INSTANTIATE_TEST_SUITE_P(Mpeg, AudioFramesHeader,
    testing::Values(HeaderRow {"Layer3At128", &readMpegFrame, bytes({0xFF, 0xFB, 0x90, 0x00}),
                        44100, 1152, 417, 128000},
        HeaderRow {
            "Padded", &readMpegFrame, bytes({0xFF, 0xFB, 0x92, 0x00}), 44100, 1152, 418, 128000},
        HeaderRow {
            "At320", &readMpegFrame, bytes({0xFF, 0xFB, 0xE4, 0x00}), 48000, 1152, 960, 320000},
        HeaderRow {
            "Mpeg2", &readMpegFrame, bytes({0xFF, 0xF3, 0x80, 0x00}), 22050, 576, 208, 64000},
        HeaderRow {
            "Mpeg25", &readMpegFrame, bytes({0xFF, 0xE3, 0x44, 0x00}), 12000, 576, 192, 32000},
        HeaderRow {
            "Layer2", &readMpegFrame, bytes({0xFF, 0xFD, 0xA4, 0x00}), 48000, 1152, 576, 192000},
        HeaderRow {
            "Layer1", &readMpegFrame, bytes({0xFF, 0xFF, 0xC4, 0x00}), 48000, 384, 384, 384000},
        HeaderRow {"FreeFormat", &readMpegFrame, bytes({0xFF, 0xFB, 0x00, 0x00}), 0, 0, 0, 0},
        HeaderRow {"BadBitRate", &readMpegFrame, bytes({0xFF, 0xFB, 0xF0, 0x00}), 0, 0, 0, 0},
        HeaderRow {"BadRate", &readMpegFrame, bytes({0xFF, 0xFB, 0x9C, 0x00}), 0, 0, 0, 0},
        HeaderRow {"BadVersion", &readMpegFrame, bytes({0xFF, 0xEB, 0x90, 0x00}), 0, 0, 0, 0},
        HeaderRow {"BadLayer", &readMpegFrame, bytes({0xFF, 0xF9, 0x90, 0x00}), 0, 0, 0, 0},
        HeaderRow {"TooShort", &readMpegFrame, bytes({0xFF, 0xFB, 0x90}), 0, 0, 0, 0},
        HeaderRow {"Nothing", &readMpegFrame, std::string(), 0, 0, 0, 0}),
    [](const auto &row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(Adts, AudioFramesHeader,
    testing::Values(HeaderRow {"Lc", &readAdtsFrame,
                        bytes({0xFF, 0xF1, 0x50, 0x80, 0x2E, 0x7F, 0xFC}), 44100, 1024, 371, 0},
        HeaderRow {"TwoBlocks", &readAdtsFrame, bytes({0xFF, 0xF9, 0x4C, 0x81, 0x00, 0x1F, 0xFD}),
            48000, 2048, 2048, 0},
        HeaderRow {"SizeOfNothing", &readAdtsFrame,
            bytes({0xFF, 0xF1, 0x50, 0x80, 0x00, 0xC0, 0xFC}), 0, 0, 0, 0},
        HeaderRow {"BadRate", &readAdtsFrame, bytes({0xFF, 0xF1, 0x7C, 0x80, 0x2E, 0x7F, 0xFC}), 0,
            0, 0, 0},
        HeaderRow {
            "IsMp3", &readAdtsFrame, bytes({0xFF, 0xFB, 0x90, 0x00, 0x00, 0x00, 0x00}), 0, 0, 0, 0},
        HeaderRow {
            "TooShort", &readAdtsFrame, bytes({0xFF, 0xF1, 0x50, 0x80, 0x2E, 0x7F}), 0, 0, 0, 0}),
    [](const auto &row) { return row.param.name; });

/// A frame of 417 bytes.
std::string mpegFrame()
{
    return bytes({0xFF, 0xFB, 0x90, 0x00}) + std::string(413, '\x55');
}

TEST(AudioFrames, AFrameCountsOnceTwoMoreFollow)
{
    const std::string frame = mpegFrame();
    const std::string lure = bytes({0xFF, 0xFB, 0x90, 0x00}) + "noise";
    const auto found = findFrame(lure + frame + frame + frame, &readMpegFrame);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->at, lure.size());
    EXPECT_FALSE(findFrame(frame + frame, &readMpegFrame));
    EXPECT_FALSE(findFrame(std::string(100000, '\xFF'), &readMpegFrame));
    EXPECT_FALSE(findFrame({}, &readMpegFrame));
}

TEST(AudioFrames, CountsWholeFramesOnly)
{
    const std::string frame = mpegFrame();
    EXPECT_EQ(framesIn(frame + frame + frame.substr(0, 100), &readMpegFrame).size(), 2);
    EXPECT_TRUE(framesIn("x" + frame, &readMpegFrame).empty());
}

/// A frame with an index \a at.
std::string withIndex(std::size_t at, const std::string &index)
{
    std::string frame = mpegFrame();
    return frame.replace(at, index.size(), index);
}

TEST(Mp3Index, XingHasFramesBytesAndParts)
{
    std::string index = "Xing" + bytes({0, 0, 0, 7, 0, 0, 0x10, 0, 0, 1, 0, 0});
    for (int i = 0; i < 100; ++i)
        index += static_cast<char>(i * 2);
    const std::string frame = withIndex(36, index);
    const auto read = readMp3Index(frame, *readMpegFrame(frame));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->frames, 0x1000U);
    EXPECT_EQ(read->bytes, 0x10000U);
    EXPECT_FALSE(read->isConstant);
    ASSERT_EQ(read->parts.size(), 100U);
    EXPECT_EQ(read->parts[0], 0U);
    // 2 x 256 bytes, and half of a part.
    EXPECT_EQ(read->parts[1], 640U);
}

TEST(Mp3Index, PartsNeverGoBackwards)
{
    std::string index = "Xing" + bytes({0, 0, 0, 7, 0, 0, 0x10, 0, 0, 1, 0, 0});
    for (int i = 0; i < 100; ++i)
        index += static_cast<char>(i % 2 ? 200 : 10);
    const std::string frame = withIndex(36, index);
    const auto read = readMp3Index(frame, *readMpegFrame(frame));
    ASSERT_TRUE(read);
    EXPECT_TRUE(std::is_sorted(read->parts.begin(), read->parts.end()));
}

TEST(Mp3Index, InfoSaysThatTheRateIsConstant)
{
    const std::string frame = withIndex(36, "Info" + bytes({0, 0, 0, 1, 0, 0, 0x10, 0}));
    const auto read = readMp3Index(frame, *readMpegFrame(frame));
    ASSERT_TRUE(read);
    EXPECT_TRUE(read->isConstant);
    EXPECT_EQ(read->frames, 0x1000U);
    EXPECT_EQ(read->bytes, 0U);
    EXPECT_TRUE(read->parts.empty());
}

TEST(Mp3Index, VbriHasSumsOfItsParts)
{
    const std::string index = "VBRI"
        + bytes({0, 1, 0, 0, 0, 75, 0, 0, 0x30, 0, 0, 0, 0x10, 0, 0, 3, 0, 10, 0, 2, 0, 1, 0, 10, 0,
            20, 0, 30});
    const std::string frame = withIndex(36, index);
    const auto read = readMp3Index(frame, *readMpegFrame(frame));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->bytes, 0x3000U);
    EXPECT_EQ(read->frames, 0x1000U);
    EXPECT_EQ(read->parts, (std::vector<std::uint64_t> {0, 100, 300}));
}

TEST(Mp3Index, ATableThatIsTooLongIsLeftOut)
{
    const std::string index
        = "VBRI" + bytes({0, 1, 0, 0, 0, 75, 0, 0, 0x30, 0, 0, 0, 0x10, 0, 255, 255, 0, 10, 0, 4});
    const std::string frame = withIndex(36, index);
    const auto read = readMp3Index(frame, *readMpegFrame(frame));
    ASSERT_TRUE(read);
    EXPECT_TRUE(read->parts.empty());
}

TEST(Mp3Index, IsNotInAnOrdinaryFrame)
{
    const std::string frame = mpegFrame();
    EXPECT_FALSE(readMp3Index(frame, *readMpegFrame(frame)));
    EXPECT_FALSE(readMp3Index(frame.substr(0, 8), *readMpegFrame(frame)));
}

TEST(Id3, ATagHasALength)
{
    EXPECT_EQ(id3Size("ID3" + bytes({4, 0, 0, 0, 0, 2, 1})), 10U + 257U);
    EXPECT_EQ(id3Size("ID3" + bytes({4, 0, 0x10, 0, 0, 0, 1})), 20U + 1U);
    EXPECT_EQ(id3Size("ID3" + bytes({4, 0, 0, 0x80, 0, 0, 1})), 0U);
    EXPECT_EQ(id3Size("ID3" + bytes({4, 0, 0, 0, 0, 2})), 0U);
    EXPECT_EQ(id3Size("OggS" + bytes({4, 0, 0, 0, 0, 2, 1})), 0U);
}

} // namespace
