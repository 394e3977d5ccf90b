// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// Turns samples into a codec's bytes. The only place that knows GStreamer: one pipeline for each
/// object, on a thread of its own. An object lives on the thread that made it, and calls back there
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
    int bitrate = 128; ///< kbit/s; the nearest that the codec can do is taken
    unsigned rate = 44100;
    unsigned channels = 2;
};

/// How a station's stream of that codec sounds best.
AudioFormat formatFor(const std::string &codec, int bitrate);
bool canEncode(const std::string &codec);

class AudioPipeline;

class Encoder {
public:
    /// `ready` is called when there is something to take, or when it has failed. It may destroy the
    /// encoder. Throws std::runtime_error when an encoder is not installed.
    Encoder(AudioFormat format, std::function<void()> ready);
    ~Encoder();
    Encoder(const Encoder &) = delete;
    Encoder &operator=(const Encoder &) = delete;

    const AudioFormat &format() const { return m_format; }
    /// Whole frames, interleaved. Never waits: what is fed is soon encoded and can then be taken.
    void feed(const std::vector<std::int16_t> &samples);
    /// What has been encoded since the last call, in the encoder's pieces.
    std::vector<std::string> take();
    bool failed() const;

private:
    struct Shared;

    const AudioFormat m_format;
    std::shared_ptr<Shared> m_shared; ///< with the pipeline's thread
    std::unique_ptr<AudioPipeline> m_pipeline; ///< behind m_shared: its thread ends first
    std::uint64_t m_fed = 0; ///< frames
};

/// All of it at once, for short pieces: this waits until it is encoded. Throws std::runtime_error.
std::vector<std::string> encoded(
    const AudioFormat &format, const std::vector<std::int16_t> &samples);
/// Packs ADTS frames of 1024 samples into an MPEG transport stream (ISO 13818-1). `first` counts
/// such frames from the epoch on and gives the time of the first one, so streams that are made
/// apart continue one another. Throws std::runtime_error.
std::string transportStream(
    const std::vector<std::string> &frames, std::uint64_t first, const AudioFormat &format);

} // namespace directory
