#pragma once

#include "host/player/AudioOutputSpec.h"
#include "media/AudioFormat.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>

/// Plays the decoded audio of one play in real time: buffers it, pauses by itself when it runs dry
/// and goes on when there is enough again, so that nothing is skipped and isAudible() tells the
/// truth. Made and used on the main thread; write() and the questions come from any thread.
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

    /// Takes over \a audio, a GstBuffer of frames in \a format, which must be the same for the
    /// whole play. Waits while there is enough. False once the output is closed or broken.
    bool write(const AudioFormat &format, void *audio);
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

    bool isAudible() const { return m_audible; }
    bool wasAudible() const { return m_wasAudible; }
    /// For how long nothing could be heard though it should be.
    Milliseconds silence() const;

Q_SIGNALS:
    void audibleChanged(bool audible);
    void drained();
    /// The sound output does not work.
    void failed(const QString &reason);

private:
    class Pipeline;
    using Clock = std::chrono::steady_clock;

    void watch();
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
