// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/TrString.h"
#include "host/player/AudioOutputSpec.h"
#include "host/player/StreamConsumer.h"
#include "media/AudioFormat.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <memory>

/// Plays the decoded audio of one play in real time. Buffers it; on an underrun it pauses and
/// continues once enough is buffered again, so that no audio is skipped and isAudible() matches
/// what is heard.
///
/// Lives on a thread with an event loop, which it may block: opening, starting and closing a sound
/// device take as long as the driver does. write(), flush(), refuse() and the const functions may
/// be called from any thread.
class AudioOutput : public QObject {
    Q_OBJECT

public:
    using Milliseconds = std::chrono::milliseconds;
    /// The most audio to buffer; write() waits while there is more.
    static constexpr Milliseconds Ahead {10000};
    /// Audio to buffer before starting, and before continuing after an underrun.
    static constexpr Milliseconds Start {300};
    static constexpr Milliseconds Restart {1000};

    explicit AudioOutput(const AudioOutputSpec &spec, QObject *parent = nullptr);
    /// Calls close().
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
    /// Drops the audio that was not heard yet, except for the next half second, which is already on
    /// its way to the device.
    void flush();
    /// While true, every write() fails at once, including those that are waiting.
    void refuse(bool refuse);
    /// Ends every write() for good and closes the device; an output file is complete afterwards.
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
    class Pipeline;
    using Clock = std::chrono::steady_clock;

    void watch();
    void watchLater();
    void setAudible(bool audible);

    const AudioOutputSpec m_spec;
    const std::unique_ptr<Pipeline> m_pipeline;
    QTimer m_watch;
    bool m_paused = false;
    bool m_finished = false;
    std::atomic<bool> m_running {false}; ///< the pipeline is playing
    /// write() queued a watch() that has not run yet.
    std::atomic<bool> m_lookPosted {false};
    std::atomic<bool> m_audible {false};
    std::atomic<bool> m_wasAudible {false};
    std::atomic<Clock::rep> m_silentSince; ///< steady clock; 0 while audible or paused
};
