// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/PasswordInput.h"

#include "ctl/HostSession.h"

#include <QByteArray>

#include <array>
#include <cerrno>
#include <csignal>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace {

constexpr int MaxBytes = 1024;

constexpr std::array<int, 7> watchedSignals {
    SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGTSTP, SIGTTIN, SIGTTOU};

/// The signal that came last, 0 for none.
volatile std::sig_atomic_t caught = 0;

void remember(int signal)
{
    caught = signal;
}

/// Has signals remembered instead of obeyed, and lets them come only while wait() waits: none is
/// missed between a look and a read. Those that are ignored stay ignored.
class SignalCatcher {
public:
    SignalCatcher()
    {
        caught = 0;
        sigset_t held;
        ::sigemptyset(&held);
        for (const int signal : watchedSignals)
            ::sigaddset(&held, signal);
        ::sigprocmask(SIG_BLOCK, &held, &m_formerMask);
        struct sigaction action = {};
        action.sa_handler = &remember;
        for (size_t i = 0; i < watchedSignals.size(); ++i) {
            ::sigaction(watchedSignals[i], nullptr, &m_former[i]);
            if (m_former[i].sa_handler != SIG_IGN)
                ::sigaction(watchedSignals[i], &action, nullptr);
        }
    }
    ~SignalCatcher()
    {
        for (size_t i = 0; i < watchedSignals.size(); ++i)
            ::sigaction(watchedSignals[i], &m_former[i], nullptr);
        ::sigprocmask(SIG_SETMASK, &m_formerMask, nullptr);
    }

    SignalCatcher(const SignalCatcher &) = delete;
    SignalCatcher &operator=(const SignalCatcher &) = delete;

    /// Until there is something to read; false when a signal came.
    bool wait(int input) const
    {
        pollfd waited {input, POLLIN, 0};
        while (caught == 0) {
            if (::ppoll(&waited, 1, nullptr, &m_formerMask) > 0)
                return true;
        }
        return false;
    }

private:
    std::array<struct sigaction, watchedSignals.size()> m_former;
    sigset_t m_formerMask;
};

/// A terminal that does not show what is typed.
class SilentTerminal {
public:
    explicit SilentTerminal(int terminal)
        : m_terminal(terminal)
    {
        ::tcgetattr(m_terminal, &m_former);
        termios silent = m_former;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO | ECHONL);
        ::tcsetattr(m_terminal, TCSAFLUSH, &silent);
    }
    ~SilentTerminal() { ::tcsetattr(m_terminal, TCSAFLUSH, &m_former); }

    SilentTerminal(const SilentTerminal &) = delete;
    SilentTerminal &operator=(const SilentTerminal &) = delete;

private:
    const int m_terminal;
    termios m_former = {};
};

/// Not a byte more than the line. What is too long is read to its end all the same. False when
/// there is no line, or a signal came, which \a catcher may wait for.
bool readLine(int input, const SignalCatcher *catcher, QByteArray &line)
{
    bool some = false;
    char byte = 0;
    while (!catcher || catcher->wait(input)) {
        const ssize_t count = ::read(input, &byte, 1);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return some;
        some = true;
        if (byte == '\n')
            return true;
        if (line.size() <= MaxBytes)
            line.append(byte);
    }
    return false;
}

bool ask(int input, std::ostream &prompts, const QString &prompt, QByteArray &line)
{
    while (true) {
        bool some = false;
        {
            const SignalCatcher catcher;
            const SilentTerminal silent(input);
            prompts << prompt.toStdString() << std::flush;
            some = readLine(input, &catcher, line);
        }
        prompts << std::endl;
        if (caught == 0)
            return some;
        // Ends the process, or stops it until it is asked to go on.
        ::raise(caught);
        line.fill('\0');
        line.clear();
    }
}

} // namespace

QString readPassword(int input, std::ostream &prompts, const QString &prompt, QString &password)
{
    QByteArray line;
    const bool some
        = ::isatty(input) ? ask(input, prompts, prompt, line) : readLine(input, nullptr, line);
    if (line.endsWith('\r'))
        line.chop(1);
    if (!some || line.isEmpty())
        return ctlText("a password is needed");
    if (line.size() > MaxBytes)
        return ctlText("the password is too long");
    password = QString::fromUtf8(line);
    line.fill('\0');
    return {};
}
