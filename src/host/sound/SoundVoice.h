// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/TrString.h"
#include "host/sound/GainRamp.h"
#include "media/AudioFormat.h"
#include "media/GstHandles.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

class LoudnessLeveler;
struct _GstAudioConverter;

/// The audio of one play that was not mixed yet, and what is done to it on its own: its loudness,
/// its format, its ramps. Not thread-safe: SoundMixer guards it, and is the only one to touch it.
class SoundVoice {
public:
    enum class Event {
        Sounding, ///< after a start: it is on its way to the device
        RanDry, ///< there was not enough audio; it needs another start
        Failed, ///< the device does not work
    };
    /// Must only hand on: called on any thread, with a lock held. \a problem comes with Failed.
    using Tell = std::function<void(Event event, const TrString &problem)>;

    /// Later voices have larger numbers.
    SoundVoice(int itsNumber, Tell itsTell);
    ~SoundVoice();
    SoundVoice(const SoundVoice &) = delete;
    SoundVoice &operator=(const SoundVoice &) = delete;

    /// Appends whole frames.
    void append(const AudioFormat &format, const char *samples, std::size_t size);
    /// Drops what was not mixed.
    void clear();
    /// Duration of what was not mixed.
    GstClockTime waiting() const;
    /// How many frames of \a mixed can be had.
    std::size_t available(const AudioFormat &mixed) const;

    /// Begins at silence, and rises within \a frames.
    void rise(std::size_t frames);
    /// Falls to silence within \a frames.
    void fall(std::size_t frames);
    void setEven(bool even);

    /// Whether frames come out of it as they went in.
    bool isPlain(const AudioFormat &mixed) const;
    /// Takes frames of a plain voice, as a buffer; \a frames are available.
    GstBuffer *take(std::size_t frames);
    /// Adds its next frames to \a sum, in the format \a mixed; silence where there are none.
    void addTo(float *sum, std::size_t frames, const AudioFormat &mixed);

    const int number;
    const Tell tell;
    AudioFormat format; ///< of the first append(); unknown before
    bool wanted = false; ///< it is to sound
    bool finished = false; ///< nothing is appended any more
    bool refusing = false;
    bool broken = false;
    bool gone = false;
    GstClockTime end = 0; ///< when the last of it is heard, by the device's running time
    GstClockTime held = 0; ///< how much was on its way when it was held

private:
    struct ConverterFree {
        void operator()(_GstAudioConverter *converter) const;
    };

    void prepareConverter(const AudioFormat &mixed);
    std::size_t neededFor(std::size_t frames) const;

    GstPtr<_GstAdapter> m_waiting;
    GainRamp m_ramp;
    bool m_even = false;
    std::unique_ptr<LoudnessLeveler> m_leveler;
    std::unique_ptr<_GstAudioConverter, ConverterFree> m_converter; ///< null in the same format
    AudioFormat m_converted; ///< what m_converter makes
    std::vector<float> m_taken;
    std::vector<float> m_made;
};
