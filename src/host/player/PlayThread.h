// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"

#include <QThread>

#include <chrono>
#include <condition_variable>
#include <memory>

class StreamPlay;

/// The thread of one play. Plays do not wait for each other: the sound output belongs to none of
/// them. Created, started and destroyed on the main thread, which waits for it only in
/// StreamPlayer::waitForEnd().
class PlayThread : public QThread {
    Q_OBJECT

public:
    /// Tells whether the play has ended. Any thread.
    class Ending {
    public:
        void set();
        /// Waits up to \a time. Returns whether the play has ended.
        bool wait(std::chrono::milliseconds time);

    private:
        VeskMutex m_mutex;
        std::condition_variable m_changed;
        bool m_ended VESK_GUARDED_BY(m_mutex) = false;
    };

    explicit PlayThread(std::unique_ptr<StreamPlay> play);
    ~PlayThread() override;

    /// Lives on this thread and is destroyed on it after quit(): only queued calls from other
    /// threads.
    StreamPlay *play() const { return m_play.get(); }
    const std::shared_ptr<Ending> &ending() const { return m_ending; }

protected:
    void run() override;

private:
    std::unique_ptr<StreamPlay> m_play;
    const std::shared_ptr<Ending> m_ending;
};
