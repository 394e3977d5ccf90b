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

/// Plays the decoded audio of one play in real time: buffers it, pauses by itself when it runs dry
/// and goes on when there is enough again, so that nothing is skipped and isAudible() tells the
/// truth. Lives on a thread with an event loop that may be held up: opening, starting and closing a
/// sound device take as long as its driver likes. write() and the questions come from any thread.
class AudioOutput : public QObject {
    Q_OBJECT

public:
    using Milliseconds = std::chrono::milliseconds;
    /// Audio that is kept ahead; write() waits when there is more.
    static constexpr Milliseconds Ahead {10000};
    /// Audio to begin with, and to go on with after running dry.
    static constexpr Milliseconds Start {300};
    static constexpr Milliseconds Restart {1000};

    explicit AudioOutput(const AudioOutputSpec &spec, QObject *parent = nullptr);
    /// Closes.
    ~AudioOutput() override;

    /// Takes a copy of whole frames in \a format, which must be the same for the whole play: 32-bit
    /// floating-point samples. Waits for space, for StreamConsumer::MaxWait at most. Refused once
    /// the output is closed or broken.
    StreamConsumer::Taken write(const AudioFormat &format, const char *samples, std::size_t size);
    /// There is no more to come: drained() follows when everything was heard.
    void finish();
    /// The format of the first write; unknown before.
    AudioFormat format() const;

    void pause();
    void resume();
    /// Throws away what was not heard yet, but for the next half second.
    void flush();
    /// While it refuses, every write() fails at once, the waiting ones too.
    void refuse(bool refuse);
    /// Lets every write() go, for good; a file is complete afterwards.
    void close();

    /// What was written and not heard yet.
    Milliseconds ahead() const;
    bool isAudible() const { return m_audible; }
    bool wasAudible() const { return m_wasAudible; }
    /// For how long nothing could be heard though it should be.
    Milliseconds silence() const;

Q_SIGNALS:
    void audibleChanged(bool audible);
    void drained();
    /// The sound output does not work; \a problem says so to a listener.
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
    std::atomic<bool> m_running {false}; ///< The pipeline plays.
    std::atomic<bool> m_lookPosted {false};
    std::atomic<bool> m_audible {false};
    std::atomic<bool> m_wasAudible {false};
    std::atomic<Clock::rep> m_silentSince; ///< 0 while it is heard or paused
};
