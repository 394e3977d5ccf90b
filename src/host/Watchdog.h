// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QtGlobal>

#include <atomic>
#include <chrono>
#include <pthread.h>
#include <thread>

struct _GPollFD;

/// Ends the process when the main thread's event loop stands still, with the main thread's stack in
/// the log: a host that answers no requests is of no use, and a service manager can start it again.
/// A turn of the loop may take as long as the limit; nested loops turn it too. Time in which the
/// process was stopped or the machine slept does not count.
///
/// Lives on the main thread, in the GLib main loop that Qt runs there; one at a time. A thread of
/// its own looks at most once in half the limit while the loop has something to do, and not at all
/// while it waits.
class Watchdog {
public:
    /// Watches from now on, whether the loop runs yet or not.
    explicit Watchdog(std::chrono::milliseconds limit);
    Watchdog(const Watchdog &) = delete;
    Watchdog &operator=(const Watchdog &) = delete;
    ~Watchdog();

private:
    using Clock = std::chrono::steady_clock; ///< which stands still while the machine sleeps
    using Time = Clock::duration; ///< since the clock's beginning

    /// GLib's GPollFunc.
    using Poll = int (*)(_GPollFD *descriptors, unsigned count, int timeout);

    static int poll(_GPollFD *descriptors, unsigned count, int timeout);
    void turnBegins();
    void lookIn(Time wait);
    void watch();
    void look();
    void bite(Time turn, Time age);

    const Time m_limit;
    const pthread_t m_mainThread;
    const Poll m_poll; ///< the context's own
    const int m_timer; ///< of the next look; a timerfd
    /// When the turn that the loop is in began; nothing while it waits.
    std::atomic<Time> m_turn;
    /// Whether the timer runs, or is about to.
    std::atomic<bool> m_armed {false};
    std::atomic<Time> m_due {Time::zero()};
    std::atomic<bool> m_ending {false};

    // The watching thread's own.
    Time m_seenTurn {Time::zero()};
    Time m_unseen {Time::zero()}; ///< of that turn, in which this thread did not run either

    std::thread m_thread;
};
