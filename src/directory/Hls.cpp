// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Hls.h"

#include "directory/Encoder.h"

#include <stdexcept>

namespace directory {

namespace {

constexpr unsigned rate = 48000;
constexpr std::uint64_t samplesPerFrame = 1024;
constexpr std::uint64_t framesPerSegment = 96;
static_assert(framesPerSegment * samplesPerFrame * 1000 == Hls::segmentMilliseconds * rate,
    "a segment is a whole number of frames");
/// Frames encoded before and after a segment and dropped: AAC frames overlap, and the encoder has a
/// delay.
constexpr std::uint64_t margin = 4;
/// The most that the transport stream adds to the bit rate, in bit/s.
constexpr int packetBandwidth = 80000;

} // namespace

std::uint64_t Hls::newest(std::uint64_t now)
{
    return now / segmentMilliseconds - 1;
}

bool Hls::available(std::uint64_t segment, std::uint64_t now)
{
    return segment <= newest(now) && segment + window + grace > newest(now);
}

std::string Hls::mediaPlaylist(const std::string &prefix, std::uint64_t now)
{
    const std::uint64_t first = newest(now) - window + 1;
    std::string text = "#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:3\n#EXT-X-MEDIA-SEQUENCE:"
        + std::to_string(first) + '\n';
    for (std::uint64_t segment = first; segment < first + window; ++segment)
        text += "#EXTINF:2.048,\n" + prefix + std::to_string(segment) + ".ts\n";
    return text;
}

std::string Hls::masterPlaylist(const std::vector<HlsVariant> &variants)
{
    std::string text = "#EXTM3U\n#EXT-X-VERSION:3\n";
    for (const HlsVariant &variant : variants)
        text += "#EXT-X-STREAM-INF:BANDWIDTH="
            + std::to_string(variant.bitrate * 1500 + packetBandwidth) + ",CODECS=\"mp4a.40.2\"\n"
            + variant.address + '\n';
    return text;
}

std::string Hls::segment(const Melody &melody, int bitrate, std::uint64_t number)
{
    AudioFormat format = formatFor("aac", bitrate);
    format.rate = rate;
    format.channels = 2;
    const std::uint64_t first = number * framesPerSegment - margin;
    const std::uint64_t count = framesPerSegment + 2 * margin;
    const std::vector<std::string> frames = encoded(format,
        melody.samples(first * samplesPerFrame, count * samplesPerFrame, rate, format.channels));
    if (frames.size() < margin + framesPerSegment)
        throw std::runtime_error("the encoder gave too little");
    const auto begin = frames.begin() + margin;
    return transportStream({begin, begin + framesPerSegment}, number * framesPerSegment, format);
}

} // namespace directory
