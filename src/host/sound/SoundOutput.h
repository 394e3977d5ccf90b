// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "api/core/TrString.h"
#include "base/Result.h"
#include "host/sound/AudioOutputSpec.h"
#include "host/sound/SoundSink.h"
#include "host/sound/SoundVoice.h"

#include <QObject>
#include <QThread>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>

class DeviceKeeper;
class SoundMixer;

/// The sound output of the host: owns the device, on a thread of its own, and plays the voices that
/// are attached to it, one for each play. The device is opened for the first voice and released
/// Linger after the last one has left; a file is one play's, and complete when its voice has left.
/// A voice that begins takes over from the one before, see SoundMixer.
///
/// Any thread, unless said otherwise; nothing waits for the device but what says so. Signals are
/// emitted on the sound thread.
class SoundOutput : public QObject {
    Q_OBJECT

public:
    /// For how long the device is kept after the last play.
    static constexpr std::chrono::milliseconds Linger {3000};
    /// The longest wait for a file to be completed.
    static constexpr std::chrono::milliseconds LeaveTime {3000};

    using MakeSink = std::function<Result<SoundSink, TrString>(const AudioOutputSpec &spec)>;
    using Chosen = std::function<void(const Result<void, TrString> &)>;

    /// \a makeSink is called on the thread that opens the device.
    explicit SoundOutput(const AudioOutputSpec &spec, MakeSink makeSink = makeSoundSink);
    /// Releases the device, for as long as that takes. All voices have left.
    ~SoundOutput() override;

    /// A voice of its own for a play, which tells \a tell what becomes of it: on any thread, with a
    /// lock held, so that it may only hand on.
    std::shared_ptr<SoundVoice> attach(SoundVoice::Tell tell);
    /// The voice begins as soon as the device runs, unless it is held before.
    void start(const std::shared_ptr<SoundVoice> &voice);
    /// Nothing is told to the voice afterwards. Waits until its file is complete, if it has one,
    /// for LeaveTime at most.
    void leave(const std::shared_ptr<SoundVoice> &voice);
    /// For all else about voices.
    SoundMixer &mixer() { return *m_mixer; }

    /// What is in use, or will be for the next play.
    AudioOutputSpec spec() const;
    /// Plays go on with another output. It is opened while the present one still sounds, which
    /// stays when that fails. Calls \a done once, on the sound thread: after the sound goes there,
    /// or, when no device is open, at once.
    void setOutput(const AudioOutputSpec &spec, Chosen done);

    /// The volume, from 0 to 100, and what fades beside it, see PlayerVolume.
    void setVolume(int volume, bool muted);
    void fade(double from, double to, std::chrono::milliseconds time);
    /// Whether voices are brought to the same loudness.
    void setEven(bool even);

    /// Releases the device; false if that is not done after \a time.
    bool close(std::chrono::milliseconds time);

Q_SIGNALS:
    /// Something else has changed the volume of the device.
    void volumeFollowed(int volume, bool muted);
    /// spec() is another one.
    void outputChanged();
    /// The device has failed, and with it the plays.
    void failed(const TrString &problem);
    /// What is wrong where the sound goes to, while it goes on; empty: nothing any more.
    void healthChanged(const TrString &problem);

private:
    template <class Act>
    void post(Act act);
    template <class Act>
    bool postAndWait(Act act, std::chrono::milliseconds time);

    const std::shared_ptr<SoundMixer> m_mixer;
    DeviceKeeper *const m_keeper; ///< on m_thread, which deletes it
    std::once_flag m_started;
    std::atomic<bool> m_isStarted {false};
    QThread m_thread;
    mutable VeskMutex m_mutex;
    AudioOutputSpec m_spec VESK_GUARDED_BY(m_mutex);
    int m_volume VESK_GUARDED_BY(m_mutex) = 100;
    bool m_muted VESK_GUARDED_BY(m_mutex) = false;
};
