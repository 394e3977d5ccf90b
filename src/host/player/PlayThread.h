// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"

#include <QThread>

#include <chrono>
#include <condition_variable>
#include <memory>

class StreamPlay;

/// The thread of one play. It waits until the play before has closed the sound output, which may be
/// the same device or file, but not for ever: a play whose driver or decoder hangs keeps no later
/// one from being heard. Made, started and destroyed on the main thread, which never waits for it
/// but in StreamPlayer's destructor.
class PlayThread : public QThread {
    Q_OBJECT

public:
    /// How long a play waits for the one before to have ended.
    static constexpr std::chrono::milliseconds PatienceWithPrevious {3000};

    /// The end of a play, for the next one to wait for. Any thread.
    class Ending {
    public:
        void set();
        /// Returns whether it has ended.
        bool wait(std::chrono::milliseconds time);

    private:
        VeskMutex m_mutex;
        std::condition_variable m_changed;
        bool m_ended VESK_GUARDED_BY(m_mutex) = false;
    };

    /// \a previous may be null.
    PlayThread(std::unique_ptr<StreamPlay> play, std::shared_ptr<Ending> previous);
    ~PlayThread() override;

    /// Lives on this thread, until quit() takes effect.
    StreamPlay *play() const { return m_play.get(); }
    const std::shared_ptr<Ending> &ending() const { return m_ending; }

protected:
    void run() override;

private:
    std::unique_ptr<StreamPlay> m_play;
    const std::shared_ptr<Ending> m_previous;
    const std::shared_ptr<Ending> m_ending;
};
