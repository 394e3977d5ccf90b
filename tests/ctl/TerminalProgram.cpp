// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/ctl/TerminalProgram.h"

#include <QByteArray>
#include <QDeadlineTimer>

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int PatienceMs = 60000;

/// The output until the last program closes the terminal.
std::string readAll(int terminal, pid_t program)
{
    std::string text;
    const QDeadlineTimer deadline(PatienceMs);
    while (true) {
        pollfd waited {terminal, POLLIN, 0};
        if (::poll(&waited, 1, static_cast<int>(deadline.remainingTime())) == 0) {
            ADD_FAILURE() << "the program does not end; so far: " << text;
            ::kill(-program, SIGKILL);
            return text;
        }
        char bytes[4096];
        const ssize_t count = ::read(terminal, bytes, sizeof bytes);
        if (count < 0 && errno == EINTR)
            continue;
        // Linux reports EIO once the last program has closed the terminal.
        if (count <= 0)
            return text;
        text.append(bytes, static_cast<size_t>(count));
    }
}

} // namespace

Shown showOnTerminal(const QString &command, int columns, const QString &environment)
{
    const QByteArray line = QStringLiteral("export %1\n%2").arg(environment, command).toUtf8();
    winsize size {24, static_cast<unsigned short>(columns), 0, 0};
    int terminal = -1;
    const pid_t program = ::forkpty(&terminal, nullptr, nullptr, &size);
    if (program == 0) {
        ::execl("/bin/sh", "sh", "-c", line.constData(), nullptr);
        ::_exit(127);
    }
    EXPECT_GT(program, 0);
    Shown shown;
    shown.text = readAll(terminal, program);
    int status = 0;
    ::waitpid(program, &status, 0);
    ::close(terminal);
    shown.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    // Undoes ONLCR: the terminal writes line feeds as CR LF.
    size_t at = 0;
    while ((at = shown.text.find("\r\n", at)) != std::string::npos)
        shown.text.erase(at, 1);
    return shown;
}
