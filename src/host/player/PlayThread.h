// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"

#include <QThread>

#include <chrono>
#include <condition_variable>
#include <memory>

class StreamPlay;

/// The thread of one play. Before it starts the play, it waits for the previous play to close the
/// sound output, because both may use the same device or file. That wait is limited, so a hanging
/// driver or decoder cannot block later plays. Created, started and destroyed on the main thread,
/// which waits for it only in StreamPlayer::waitForEnd().
class PlayThread : public QThread {
    Q_OBJECT

public:
    /// The longest wait for the previous play to end.
    static constexpr std::chrono::milliseconds PatienceWithPrevious {3000};

    /// Lets the next play wait for the end of this one. Any thread.
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

    /// \a previous may be null.
    PlayThread(std::unique_ptr<StreamPlay> play, std::shared_ptr<Ending> previous);
    ~PlayThread() override;

    /// Lives on this thread and is destroyed on it after quit(): only queued calls from other
    /// threads.
    StreamPlay *play() const { return m_play.get(); }
    const std::shared_ptr<Ending> &ending() const { return m_ending; }

protected:
    void run() override;

private:
    std::unique_ptr<StreamPlay> m_play;
    const std::shared_ptr<Ending> m_previous;
    const std::shared_ptr<Ending> m_ending;
};
