// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "host/sound/GainRamp.h"
#include "host/sound/SoundVoice.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

class SoundDevice;

/// Feeds the device with the voice that sounds, in pieces of a tenth of a second, just when the
/// device asks for them. A voice that begins takes over from the one before: they cross over within
/// a ramp. A voice that ends early falls silent along a ramp, which is mixed at once, so that
/// nothing has to be waited for. The ramps, like a change of the volume, are heard when what is on
/// its way was heard: a fifth of a second later at most, besides what the device holds itself.
///
/// Any thread; nothing blocks but write().
class SoundMixer {
public:
    using Milliseconds = std::chrono::milliseconds;
    using Voice = std::shared_ptr<SoundVoice>;

    static constexpr Milliseconds Ramp {30};
    static constexpr Milliseconds Piece {100};

    enum class Written { All, None, Refused };

    /// What the mixer wants from the thread of the device. Must only hand on: called with a lock
    /// held.
    struct Needs {
        /// Nothing sounds any more: the device may be halted when it has played what it has.
        std::function<void()> quiet;
        /// Audio is running out: runDry() is to be called.
        std::function<void()> scarce;
    };

    SoundMixer();
    ~SoundMixer();
    /// Before the first voice.
    void setNeeds(Needs needs) { m_needs = std::move(needs); }

    Voice add(SoundVoice::Tell tell);
    /// The voice falls silent; nothing is told to it any more.
    void remove(const Voice &voice);
    bool isEmpty() const;

    /// Copies whole frames. Waits until \a deadline while more than \a most is ahead(). Refused in
    /// another format than the first, by a voice that refuses, and after the end.
    Written write(SoundVoice &voice, const AudioFormat &format, const char *samples,
        std::size_t size, Milliseconds most, std::chrono::steady_clock::time_point deadline);
    void finish(SoundVoice &voice);
    void refuse(SoundVoice &voice, bool refuse);
    /// Drops what was not mixed, after a ramp if it sounds. More may be written, also after
    /// finish().
    void flush(const Voice &voice);
    AudioFormat format(const SoundVoice &voice) const;
    /// Duration of what was written and not heard.
    Milliseconds ahead(const SoundVoice &voice) const;
    /// Duration of what was mixed and not heard.
    Milliseconds onItsWay(const SoundVoice &voice) const;

    /// That it is to sound; begin() does it.
    void want(SoundVoice &voice);
    bool isWanted(const SoundVoice &voice) const;
    /// It sounds from here on, unless it is not wanted any more or a later voice has begun before.
    void begin(const Voice &voice);
    /// It falls silent, and is not wanted any more; what was not mixed stays.
    void hold(const Voice &voice);
    bool isQuiet() const;
    /// The voice that sounds, or that was the last to; null if it was removed.
    Voice lastBegun() const;

    /// Takes over from another device, in the middle of a voice. Null: there is none. The former
    /// one still plays what it was given.
    void setDevice(std::shared_ptr<SoundDevice> device);
    /// The device wants more. Waits until that is due, if the device takes whatever it gets.
    void feed(const SoundDevice *device);
    /// The device is running.
    void start();
    /// Ends a voice whose audio has run out. Returns when to look again; nothing when that is not
    /// needed.
    std::optional<Milliseconds> runDry();
    /// All voices have failed.
    void fail(const TrString &problem);

    /// A factor of the amplitude; reached within a ramp.
    void setGain(double gain);
    /// See PlayerVolume::fade().
    void fade(double from, double to, Milliseconds time);
    void setEven(bool even);

private:
    struct Fade {
        double from = 1;
        double to = 1;
        std::chrono::steady_clock::time_point begin {};
        Milliseconds time {0};
        float gain() const;
    };

    void letDeviceIn() const VESK_EXCLUDES(m_mutex);
    bool isOpen(const SoundVoice &voice) const VESK_REQUIRES(m_mutex);
    bool isPlaying() const VESK_REQUIRES(m_mutex);
    GstClockTime onItsWayLocked(const SoundVoice &voice) const VESK_REQUIRES(m_mutex);
    std::size_t framesOf(Milliseconds time) const VESK_REQUIRES(m_mutex);
    std::size_t fallOf(SoundVoice &voice) const VESK_REQUIRES(m_mutex);
    void crossOver(const Voice &from, const Voice &to) VESK_REQUIRES(m_mutex);
    void fallSilent(SoundVoice &voice) VESK_REQUIRES(m_mutex);
    void holdLocked(const Voice &voice) VESK_REQUIRES(m_mutex);
    void feedLocked() VESK_REQUIRES(m_mutex);
    void push(const std::vector<SoundVoice *> &voices, std::size_t frames) VESK_REQUIRES(m_mutex);
    GstBuffer *mix(const std::vector<SoundVoice *> &voices, std::size_t frames)
        VESK_REQUIRES(m_mutex);

    Needs m_needs;
    std::atomic<int> m_arriving {0}; ///< calls of feed() that wait for the lock

    mutable VeskMutex m_mutex;
    /// Notified when isOpen() may have changed.
    std::condition_variable m_changed;
    /// Notified when what feed() waits for may have changed.
    std::condition_variable m_due;
    /// For which device feed() waits.
    const SoundDevice *m_waiting VESK_GUARDED_BY(m_mutex) = nullptr;
    std::vector<Voice> m_voices VESK_GUARDED_BY(m_mutex);
    Voice m_current VESK_GUARDED_BY(m_mutex);
    std::shared_ptr<SoundDevice> m_device VESK_GUARDED_BY(m_mutex);
    AudioFormat m_format VESK_GUARDED_BY(m_mutex); ///< of the device
    int m_lastNumber VESK_GUARDED_BY(m_mutex) = 0;
    int m_lastBegun VESK_GUARDED_BY(m_mutex) = 0;
    bool m_scarce VESK_GUARDED_BY(m_mutex) = false; ///< Needs::scarce was called for this shortage
    GainRamp m_gain VESK_GUARDED_BY(m_mutex) {1};
    Fade m_fade VESK_GUARDED_BY(m_mutex);
    float m_faded VESK_GUARDED_BY(m_mutex) = 1; ///< the fade's factor at the end of the last piece
    bool m_even VESK_GUARDED_BY(m_mutex) = false;
};
