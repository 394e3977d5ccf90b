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

/// Plays streams from the network to the machine's sound output, or to what stands in for it: each
/// play on a thread of its own, so that the main thread waits for no device, server or decoder.
class StreamPlayer : public MediaPlayer {
    Q_OBJECT

public:
    /// A play that has not ended so long after it should have is told of in the log.
    static constexpr std::chrono::milliseconds EndTime {10000};

    explicit StreamPlayer(const AudioOutputSpec &output, QObject *parent = nullptr);
    /// Stops; waitForEnd() should have been called before, where that matters.
    ~StreamPlayer() override;

    /// For plays that start later.
    void setTimes(const StreamReader::Times &times) { m_times = times; }

    void play(const StreamSource &source) override;
    void pause() override;
    void resume() override;
    void stop() override;
    void networkIsBack() override;

    /// Stops, and waits until nothing runs any more: files are complete then. Returns false when
    /// something still does after \a time; the process must not take anything apart any more then.
    bool waitForEnd(std::chrono::milliseconds time);

private:
    template <class Act>
    void tell(Act act);
    void showProblem(const TrString &problem);

    const AudioOutputSpec m_spec;
    StreamReader::Times m_times;
    int m_number = 0; ///< counts the plays
    TrString m_problem; ///< of the present play
    int m_step = 0; ///< counts the pauses and resumes of this one
    std::unique_ptr<PlayThread> m_thread; ///< of the present play
    std::list<std::unique_ptr<PlayThread>> m_ending; ///< of those that are over, but may still run
    std::shared_ptr<PlayThread::Ending> m_lastEnding; ///< of the present play or the last one
};
