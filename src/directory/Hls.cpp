// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Hls.h"

#include "directory/Encoder.h"

#include <stdexcept>

namespace directory {

namespace {

constexpr unsigned Rate = 48000;
constexpr std::uint64_t SamplesPerFrame = 1024;
constexpr std::uint64_t FramesPerSegment = 96;
static_assert(FramesPerSegment * SamplesPerFrame * 1000 == Hls::SegmentMilliseconds * Rate,
    "a segment is a whole number of frames");
/// Frames encoded before and after a segment and dropped: AAC frames overlap, and the encoder has a
/// delay.
constexpr std::uint64_t Margin = 4;
/// The most that the transport stream adds to the bit rate, in bit/s.
constexpr int PacketBandwidth = 80000;

} // namespace

std::uint64_t Hls::newest(std::uint64_t now)
{
    return now / SegmentMilliseconds - 1;
}

bool Hls::available(std::uint64_t segment, std::uint64_t now)
{
    return segment <= newest(now) && segment + Window + Grace > newest(now);
}

std::string Hls::mediaPlaylist(const std::string &prefix, std::uint64_t now)
{
    const std::uint64_t first = newest(now) - Window + 1;
    std::string text = "#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:3\n#EXT-X-MEDIA-SEQUENCE:"
        + std::to_string(first) + '\n';
    for (std::uint64_t segment = first; segment < first + Window; ++segment)
        text += "#EXTINF:2.048,\n" + prefix + std::to_string(segment) + ".ts\n";
    return text;
}

std::string Hls::masterPlaylist(const std::vector<HlsVariant> &variants)
{
    std::string text = "#EXTM3U\n#EXT-X-VERSION:3\n";
    for (const HlsVariant &variant : variants)
        text += "#EXT-X-STREAM-INF:BANDWIDTH="
            + std::to_string(variant.bitrate * 1500 + PacketBandwidth) + ",CODECS=\"mp4a.40.2\"\n"
            + variant.address + '\n';
    return text;
}

std::string Hls::segment(const Melody &melody, int bitrate, std::uint64_t number)
{
    AudioFormat format = formatFor("aac", bitrate);
    format.rate = Rate;
    format.channels = 2;
    const std::uint64_t first = number * FramesPerSegment - Margin;
    const std::uint64_t count = FramesPerSegment + 2 * Margin;
    const std::vector<std::string> frames = encoded(format,
        melody.samples(first * SamplesPerFrame, count * SamplesPerFrame, Rate, format.channels));
    if (frames.size() < Margin + FramesPerSegment)
        throw std::runtime_error("the encoder gave too little");
    const auto begin = frames.begin() + Margin;
    return transportStream({begin, begin + FramesPerSegment}, number * FramesPerSegment, format);
}

} // namespace directory
