// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/Watchdog.h"

#include "api/core/log.h"
#include "api/core/vesk.h"
#include "host/ThreadStack.h"

#include <QAbstractEventDispatcher>

#include <log4cplus/logger.h>

#include <csignal>
#include <cstdlib>
#include <ctime>
#include <glib.h>
#include <sys/timerfd.h>
#include <unistd.h>

VESK_LOGGER("Host.Watchdog")

namespace {

using Time = std::chrono::steady_clock::duration;

constexpr Time Waiting = Time::zero();
constexpr Time AtOnce = std::chrono::nanoseconds(1);
/// For writing the stack. The main thread may hang with the log's lock held; the process ends all
/// the same.
constexpr std::chrono::seconds TimeToLog {10};

Watchdog *runningWatchdog = nullptr;

Time now()
{
    return std::chrono::steady_clock::now().time_since_epoch();
}

timespec toTimespec(Time time)
{
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
    timespec result {};
    result.tv_sec = seconds.count();
    result.tv_nsec = std::chrono::nanoseconds(time - seconds).count();
    return result;
}

double inSeconds(Time time)
{
    return static_cast<double>(std::chrono::duration_cast<std::chrono::milliseconds>(time).count())
        / 1000;
}

/// A timer that ends the process, unless it is deleted first.
class LastResort {
public:
    LastResort()
    {
        sigevent event {};
        event.sigev_notify = SIGEV_SIGNAL;
        event.sigev_signo = SIGABRT;
        itimerspec end {};
        end.it_value = toTimespec(TimeToLog);
        m_runs = ::timer_create(CLOCK_MONOTONIC, &event, &m_timer) == 0
            && ::timer_settime(m_timer, 0, &end, nullptr) == 0;
    }
    Q_DISABLE_COPY(LastResort)
    ~LastResort()
    {
        if (m_runs)
            ::timer_delete(m_timer);
    }

private:
    timer_t m_timer {};
    bool m_runs = false;
};

} // namespace

Watchdog::Watchdog(std::chrono::milliseconds limit)
    : m_limit(limit)
    , m_mainThread(::pthread_self())
    , m_poll(g_main_context_get_poll_func(nullptr))
    , m_timer(::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC))
{
    VESK_ASSERT(limit > std::chrono::milliseconds::zero());
    VESK_ASSERT(!runningWatchdog && m_timer >= 0);
    const QAbstractEventDispatcher *dispatcher = QAbstractEventDispatcher::instance();
    VESK_ASSERT(dispatcher && dispatcher->inherits("QEventDispatcherGlib"));
    prepareThreadStacks();
    runningWatchdog = this;
    // Qt's own signals are of no use for this: with GLib's loop it says that it is about to block
    // before it handles events, and that it is awake when it has handled them.
    g_main_context_set_poll_func(nullptr, &Watchdog::poll);
    turnBegins();
    m_thread = std::thread([this] { watch(); });
}

Watchdog::~Watchdog()
{
    g_main_context_set_poll_func(nullptr, m_poll);
    runningWatchdog = nullptr;
    m_ending = true;
    lookIn(AtOnce);
    m_thread.join();
    ::close(m_timer);
}

int Watchdog::poll(_GPollFD *descriptors, unsigned count, int timeout)
{
    Watchdog &self = *runningWatchdog;
    if (timeout != 0)
        self.m_turn = Waiting;
    const int ready = self.m_poll(descriptors, count, timeout);
    self.turnBegins();
    return ready;
}

void Watchdog::turnBegins()
{
    m_turn = now();
    if (!m_armed) {
        m_armed = true;
        lookIn(m_limit / 2);
    }
}

/// On the watching thread, or on the main thread while the watching one has no timer set.
void Watchdog::lookIn(Time wait)
{
    m_due = now() + wait;
    itimerspec when {};
    when.it_value = toTimespec(wait);
    ::timerfd_settime(m_timer, 0, &when, nullptr);
}

void Watchdog::watch()
{
    // No signal is handled on this thread.
    sigset_t all;
    sigfillset(&all);
    sigdelset(&all, SIGABRT);
    ::pthread_sigmask(SIG_SETMASK, &all, nullptr);
    veskSetThreadName(QStringLiteral("Watchdog"));
    while (!m_ending) {
        quint64 expirations = 0;
        if (::read(m_timer, &expirations, sizeof expirations) > 0 && !m_ending)
            look();
    }
}

void Watchdog::look()
{
    const Time turn = m_turn;
    if (turn == Waiting) {
        m_armed = false;
        // The loop may have begun a turn without seeing that.
        if (m_turn.load() != Waiting && !m_armed.exchange(true))
            lookIn(m_limit / 2);
        return;
    }
    const Time present = now();
    const Time late = present - m_due.load();
    m_unseen = turn == m_seenTurn ? m_unseen + late : late;
    m_seenTurn = turn;
    const Time age = present - turn - m_unseen;
    if (age >= m_limit)
        bite(turn, age);
    // A long turn is looked at often: if the process was stopped and continued between two looks,
    // the time in between looks like work.
    lookIn(age < m_limit / 2 ? m_limit / 2 - age + AtOnce : m_limit / 20);
}

void Watchdog::bite(Time turn, Time age)
{
    const LastResort lastResort;
    const QStringList stack = stackOfThread(m_mainThread);
    if (m_turn.load() != turn) {
        VESK_WARN("The main loop stood still for " << inSeconds(age) << " s.");
        return;
    }
    VESK_FATAL("The main loop has not turned for "
        << inSeconds(age) << " s; its thread "
        << (stack.isEmpty() ? "waits in the kernel." : "is in:"));
    for (const QString &line : stack)
        VESK_FATAL("    " << line);
    log4cplus::Logger::shutdown();
    std::abort();
}
