// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/faults/Fault.h"

using namespace script;

namespace {

constexpr double Rate = 40000; ///< bytes a second, for content without a rate of its own

Site always(const Script &script)
{
    return {{{"/", {script}}}};
}

/// One kind of audio, then after some seconds another on the same connection.
Site turningInto(const Media &first, const Media &second)
{
    return always({head(), live(first, 8), live(second)});
}

Media piece(const Media &media, double seconds)
{
    return {media.bytes.left(static_cast<int>(seconds * media.bytesPerSecond())), seconds};
}

} // namespace

std::vector<Fault> audioFaults()
{
    return {
        {"zeros for ever", told("."), 40,
            [] {
                return always({head(), flood(QByteArray(4000, '\0'), Rate)});
            }},
        {"zeros as fast as they are taken", told("."), 40,
            [] {
                return always({head(), flood(QByteArray(64000, '\0'), 20e6)});
            }},
        {"random bytes for ever", told("."), 40,
            [] {
                return always({head(), flood(media::garbage(100000), Rate)});
            }},
        {"AAC with scrambled frames", soundsOrTold(), 40,
            [] {
                return always({head("audio/aac"), live(media::scrambledAac())});
            }},
        {"AAC with frames of zeros", soundsOrTold(), 40,
            [] {
                return always({head("audio/aac"), live(media::zeroedAac())});
            }},
        {"AAC of a profile that nobody decodes", soundsOrTold(), 40,
            [] {
                return always({head("audio/aac"), live(media::oddProfileAac())});
            }},
        {"AAC changes its rate in mid-stream", sounds(), 25,
            [] { return turningInto(media::aac(), media::aacHalfRate()); }, true},
        {"MP3 changes rate and channels in mid-stream", sounds(), 25,
            [] { return turningInto(media::mp3(), media::mp3Mono()); }, true},
        {"MP3 is followed by AAC in one connection", sounds(), 25,
            [] { return turningInto(media::mp3(), media::aac()); }},
        {"AAC is followed by MP3 in one connection", sounds(), 25,
            [] { return turningInto(media::aac(), media::mp3()); }},
        {"MP3 is followed by Ogg in one connection", sounds(), 25,
            [] { return turningInto(media::mp3(), media::vorbis()); }},
        {"Ogg follows Ogg in one connection", sounds(), 25,
            [] {
                return always({head("audio/ogg"), live(media::vorbis())});
            }},
        {"MP3 with two seconds of random bytes in its middle", sounds(), 25,
            [] {
                return always({head(), live(media::mp3(), 8), send(media::garbage(32000)),
                    live(media::mp3())});
            }},
        {"MP3 with ten seconds of random bytes in its middle", sounds().silentFor(11), 40,
            [] {
                return always({head(), live(media::mp3(), 8),
                    live({media::garbage(160000), 10}, 10, 0), live(media::mp3())});
            }},
        {"FLAC is cut off in a frame", sounds(), 25,
            [] {
                return Site {{{"/",
                    {{head("audio/flac"), live(piece(media::flac(), 20), 8), close()},
                        {head("audio/flac"), live(media::flac())}}}}};
            }},
        {"Ogg is cut off in a page", sounds(), 25,
            [] {
                return Site {{{"/",
                    {{head("audio/ogg"), live(media::vorbis(), 6), close()},
                        {head("audio/ogg"), live(media::vorbis())}}}}};
            }},
        {"MP3 with a byte in a thousand wrong", sounds().silentFor(2), 20,
            [] {
                return always({head(), live(media::mutated(media::mp3(), 1000))});
            }},
        {"AAC with a byte in 300 wrong", soundsOrTold(), 40,
            [] {
                return always({head("audio/aac"), live(media::mutated(media::aac(), 300))});
            }},
        {"Ogg with a byte in 300 wrong", soundsOrTold(), 40,
            [] {
                return always(
                    {head("audio/ogg"), live(media::mutated(media::vorbis(), 300, 8000))});
            }},
        {"FLAC with a byte in 300 wrong", soundsOrTold(), 40,
            [] {
                return always({head("audio/flac"), live(media::mutated(media::flac(), 300, 8000))});
            }},
        {"FLAC with its head wrong", soundsOrTold(), 40,
            [] {
                return always({head("audio/flac"), live(media::mutated(media::flac(), 5))});
            }},
        {"WAV with 8,000 channels", told("."), 40,
            [] {
                return always({head("audio/wav"), send(media::wavHead(8000)),
                    flood(QByteArray(64000, '\x11'), 1e6)});
            }},
        {"Matroska with a head of a gigabyte", told("."), 40,
            [] {
                return always({head("audio/webm"), send(media::hugeMatroskaHead()),
                    flood(QByteArray(64000, '\x11'), 50e6, 1 << 30)});
            }},
        {"FLAC with a picture of 16 MB", soundsOrTold(), 40,
            [] {
                return always({head("audio/flac"), send(media::hugeFlacHead()),
                    flood(QByteArray(64000, '\x11'), 1e6)});
            }},
        {"an ID3 tag of 200 MB", soundsOrTold(), 40,
            [] {
                return always(
                    {head(), send(media::id3Head(200 << 20)), flood(media::mp3().bytes, 10e6)});
            }},
        {"MIDI", told("."), 40, [] { return always({answer(200, media::midi(), "audio/midi")}); }},
        {"a module file", told("."), 40,
            [] { return always({answer(200, media::module(), "audio/mod")}); }},
    };
}
