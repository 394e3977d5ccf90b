// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// Encodes and multiplexes audio. The only place that knows GStreamer: each object has a pipeline
/// with threads of its own. An object lives on the thread that made it, and calls back there
/// through that thread's default main context.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace directory {

struct AudioFormat {
    std::string codec; ///< mp3, aac (ADTS), ogg (Vorbis), opus (in Ogg), flac (native)
    int bitrate = 128; ///< kbit/s; the nearest one that the codec supports is used
    unsigned rate = 44100;
    unsigned channels = 2;
};

/// With the sample rate and channels that suit the codec and bit rate.
AudioFormat formatFor(const std::string &codec, int bitrate);
bool canEncode(const std::string &codec);

class AudioPipeline;

class Encoder {
public:
    /// `ready` is called when there is something to take, or when encoding has failed. It may
    /// destroy the encoder. Throws std::runtime_error when the codec's element is not installed.
    Encoder(AudioFormat format, std::function<void()> ready);
    ~Encoder();
    Encoder(const Encoder &) = delete;
    Encoder &operator=(const Encoder &) = delete;

    const AudioFormat &format() const { return m_format; }
    /// Whole frames, interleaved. Never blocks: another thread encodes.
    void feed(const std::vector<std::int16_t> &samples);
    /// What has been encoded since the last call, a buffer of the encoder's each.
    std::vector<std::string> take();
    bool failed() const;

private:
    struct Shared;

    const AudioFormat m_format;
    std::shared_ptr<Shared> m_shared; ///< with the pipeline's thread
    std::unique_ptr<AudioPipeline> m_pipeline; ///< behind m_shared: its thread ends first
    std::uint64_t m_fed = 0; ///< frames
};

/// For short pieces: blocks until all of it is encoded. Throws std::runtime_error.
std::vector<std::string> encoded(
    const AudioFormat &format, const std::vector<std::int16_t> &samples);
/// Packs ADTS frames of 1024 samples into an MPEG transport stream (ISO 13818-1). `first` counts
/// such frames from the epoch on and gives the time of the first one, so streams that are made
/// apart continue one another. Throws std::runtime_error.
std::string transportStream(
    const std::vector<std::string> &frames, std::uint64_t first, const AudioFormat &format);

} // namespace directory
