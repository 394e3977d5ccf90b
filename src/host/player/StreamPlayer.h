// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/player/MediaPlayer.h"
#include "host/player/PlayClock.h"
#include "host/player/PlayThread.h"
#include "host/player/StreamReader.h"
#include "host/sound/AudioOutputSpec.h"
#include "host/sound/SoundOutput.h"

#include <chrono>
#include <list>
#include <memory>

class SpareDecoder;
class StreamPlay;

/// Plays streams from the network to the configured audio output. Each play has its own thread, so
/// the main thread never waits for a device, server or decoder.
///
/// A play that is replaced goes on until the new one has sound, if that is wanted and it was
/// audible; then they cross over (SoundMixer). Meanwhile two plays exist, and only the new one
/// signals anything. If the new one fails, its caller decides by stop() or another play().
/// Main thread.
class StreamPlayer : public MediaPlayer {
    Q_OBJECT

public:
    /// A play that is still running so long after stop() is reported in the log.
    static constexpr std::chrono::milliseconds EndTime {10000};

    explicit StreamPlayer(std::shared_ptr<SoundOutput> sound, QObject *parent = nullptr);
    /// With a sound output of its own.
    explicit StreamPlayer(const AudioOutputSpec &output, QObject *parent = nullptr);
    /// Stops and waits up to EndTime. A thread that is still running then is leaked; call
    /// waitForEnd() before to learn of that.
    ~StreamPlayer() override;

    /// Where plays are heard.
    const std::shared_ptr<SoundOutput> &sound() const { return m_sound; }
    /// Whether a play that is replaced goes on until the new one has sound.
    void setSeamless(bool seamless) { m_isSeamless = seamless; }
    /// Applies to later plays.
    void setTimes(const StreamReader::Times &times) { m_times = times; }
    /// How far behind live a paused station may get before it is disconnected; 0: it is at once.
    /// Applies to later pauses.
    void setPauseBuffer(std::chrono::milliseconds time) { m_pauseBuffer = time; }

    void play(const StreamSource &source) override;
    void pause() override;
    void resume() override;
    void stop() override;
    void leave() override;
    void networkIsBack() override;
    void seek(std::chrono::milliseconds position) override;
    void rejoinLive() override;
    PlayPlace place() const override;

    /// Stops, and waits until all play threads have ended; output files are complete then. Returns
    /// false if one still runs after \a time: it may still use global state, so the process must
    /// exit without tearing anything down.
    bool waitForEnd(std::chrono::milliseconds time);

private:
    template <class Act>
    void tell(Act act);
    void showProblem(const TrString &problem);
    void connectTo(StreamPlay *play);
    void noteAudible(bool audible);
    void stopCurrent();
    void end(std::unique_ptr<PlayThread> thread);

    std::shared_ptr<SoundOutput> m_sound;
    const std::shared_ptr<SpareDecoder> m_spare;
    bool m_isSeamless = true;
    StreamReader::Times m_times;
    int m_number = 0; ///< of the current play, to drop signals of earlier ones
    TrString m_problem; ///< of the current play
    std::chrono::milliseconds m_pauseBuffer {0};
    int m_seek = 0; ///< counts seeks
    std::shared_ptr<const PlayClock> m_clock; ///< of the current play
    int m_step = 0; ///< counts pauses and resumes of the current play
    std::unique_ptr<PlayThread> m_thread; ///< of the current play
    bool m_isAudible = false; ///< of the current play
    /// Of the play before it, which is heard until the current one is.
    std::unique_ptr<PlayThread> m_leaving;
    std::list<std::unique_ptr<PlayThread>> m_ending; ///< stopped plays whose threads may still run
};
