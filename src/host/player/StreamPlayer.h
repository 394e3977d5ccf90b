// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/player/AudioOutputSpec.h"
#include "host/player/MediaPlayer.h"
#include "host/player/PlayThread.h"
#include "host/player/StreamReader.h"

#include <chrono>
#include <list>
#include <memory>

/// Plays streams from the network to the configured audio output. Each play has its own thread, so
/// the main thread never waits for a device, server or decoder. Main thread.
class StreamPlayer : public MediaPlayer {
    Q_OBJECT

public:
    /// A play that is still running so long after stop() is reported in the log.
    static constexpr std::chrono::milliseconds EndTime {10000};

    explicit StreamPlayer(const AudioOutputSpec &output, QObject *parent = nullptr);
    /// Stops and waits up to EndTime. A thread that is still running then is leaked; call
    /// waitForEnd() before to learn of that.
    ~StreamPlayer() override;

    /// Applies to later plays.
    void setTimes(const StreamReader::Times &times) { m_times = times; }

    void play(const StreamSource &source) override;
    void pause() override;
    void resume() override;
    void stop() override;
    void networkIsBack() override;

    /// Stops, and waits until all play threads have ended; output files are complete then. Returns
    /// false if one still runs after \a time: it may still use global state, so the process must
    /// exit without tearing anything down.
    bool waitForEnd(std::chrono::milliseconds time);

private:
    template <class Act>
    void tell(Act act);
    void showProblem(const TrString &problem);

    const AudioOutputSpec m_spec;
    StreamReader::Times m_times;
    int m_number = 0; ///< of the current play, to drop signals of earlier ones
    TrString m_problem; ///< of the current play
    int m_step = 0; ///< counts pauses and resumes of the current play
    std::unique_ptr<PlayThread> m_thread; ///< of the current play
    std::list<std::unique_ptr<PlayThread>> m_ending; ///< stopped plays whose threads may still run
    std::shared_ptr<PlayThread::Ending> m_lastEnding; ///< of the current play, else of the last one
};
