// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/TrString.h"
#include "host/player/StreamConsumer.h"
#include "host/sound/SoundVoice.h"
#include "media/AudioFormat.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <memory>

class SoundOutput;

/// Plays the decoded audio of one play in real time, as a voice of the sound output. Buffers it; on
/// an underrun it pauses and continues once enough is buffered again, so that no audio is skipped
/// and isAudible() matches what is heard.
///
/// Lives on a thread with an event loop. write(), flush(), refuse() and the const functions may be
/// called from any thread.
class AudioOutput : public QObject {
    Q_OBJECT

public:
    using Milliseconds = std::chrono::milliseconds;
    /// The most audio to buffer; write() waits while there is more.
    static constexpr Milliseconds Ahead {10000};
    /// Audio to buffer before starting, and before continuing after an underrun.
    static constexpr Milliseconds Start {300};
    static constexpr Milliseconds Restart {1000};

    explicit AudioOutput(std::shared_ptr<SoundOutput> sound, QObject *parent = nullptr);
    /// Ends as close() does, without a signal.
    ~AudioOutput() override;

    /// Copies \a size bytes of whole frames: interleaved 32-bit floating-point samples in \a
    /// format, which must stay the same for the whole play. Waits for space, for
    /// StreamConsumer::MaxWait at most. Refused in another format, while refuse() is in effect, and
    /// once the output is closed or broken.
    StreamConsumer::Taken write(const AudioFormat &format, const char *samples, std::size_t size);
    /// No more audio follows; drained() is emitted when everything was heard.
    void finish();
    /// The format of the first write(); unknown before.
    AudioFormat format() const;

    void pause();
    void resume();
    /// Drops the audio that was not heard yet, except for what is already on its way to the device;
    /// that ends along a ramp. What is written next begins anew, also after finish().
    void flush();
    /// While true, every write() fails at once, including those that are waiting.
    void refuse(bool refuse);
    /// Ends every write() for good, and the sound. May block: an output file is complete
    /// afterwards.
    void close();

    /// Duration of the audio that was written and not heard yet.
    Milliseconds ahead() const;
    /// Whether audio is playing now, and whether it ever did.
    bool isAudible() const { return m_audible; }
    bool wasAudible() const { return m_wasAudible; }
    /// For how long there has been no sound although there should be; zero while paused.
    Milliseconds silence() const;

Q_SIGNALS:
    void audibleChanged(bool audible);
    /// After finish(): everything was heard.
    void drained();
    /// The sound output does not work; \a problem is a text for the user.
    void failed(const TrString &problem);

private:
    using Clock = std::chrono::steady_clock;

    void take(SoundVoice::Event event, const TrString &problem);
    void watch();
    void watchForSilence();
    void watchLater();
    void setAudible(bool audible);

    const std::shared_ptr<SoundOutput> m_sound;
    std::shared_ptr<SoundVoice> m_voice;
    QTimer m_watch;
    bool m_paused = false;
    std::atomic<bool> m_finished {false};
    bool m_broken = false;
    bool m_closed = false;
    bool m_drained = false;
    std::atomic<bool> m_fresh {true}; ///< nothing was heard since the start or flush()
    std::atomic<bool> m_running {false}; ///< the voice was started, and did not run dry since
    /// write() queued a watch() that has not run yet.
    std::atomic<bool> m_lookPosted {false};
    std::atomic<bool> m_audible {false};
    std::atomic<bool> m_wasAudible {false};
    std::atomic<Clock::rep> m_silentSince; ///< steady clock; 0 while audible or paused
};
