// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/PasswordInput.h"

#include <gmock/gmock.h>

#include <csignal>
#include <cstring>
#include <functional>
#include <iostream>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>
#include <utmp.h>

namespace {

constexpr int PatienceMs = 60000;

/// A process that prompts for a password on a terminal of its own, and prints the result there.
class Prompt {
public:
    Prompt()
    {
        EXPECT_EQ(::openpty(&m_terminal, &m_programs, nullptr, nullptr, nullptr), 0);
        m_process = ::fork();
        if (m_process == 0) {
            ::close(m_terminal);
            ::login_tty(m_programs);
            const auto password = readPassword(STDIN_FILENO, QStringLiteral("Password: "));
            std::cout << (password ? "read " : "no ")
                      << (password ? *password : password.error()).toStdString() << std::flush;
            ::_exit(0);
        }
        EXPECT_GT(m_process, 0);
    }
    ~Prompt()
    {
        ::kill(m_process, SIGKILL);
        ::waitpid(m_process, nullptr, 0);
        ::close(m_terminal);
        ::close(m_programs);
    }

    Prompt(const Prompt &) = delete;
    Prompt &operator=(const Prompt &) = delete;

    pid_t process() const { return m_process; }
    void type(const char *text) const
    {
        const auto size = static_cast<ssize_t>(std::strlen(text));
        EXPECT_EQ(::write(m_terminal, text, static_cast<size_t>(size)), size);
    }
    /// The process's wait status after \a interrupt, which is repeated as a user would:
    /// readpassphrase(3) misses a signal that arrives between its prompt and its read.
    int statusAfter(const std::function<void()> &interrupt) const
    {
        constexpr int IntervalMs = 50;
        int status = 0;
        for (int waited = 0; waited < PatienceMs; waited += IntervalMs) {
            interrupt();
            ::usleep(IntervalMs * 1000);
            const pid_t ended = ::waitpid(m_process, &status, WNOHANG);
            EXPECT_GE(ended, 0);
            if (ended != 0)
                return status;
        }
        ADD_FAILURE() << "the process does not end";
        return status;
    }
    bool echoes() const
    {
        termios state {};
        EXPECT_EQ(::tcgetattr(m_programs, &state), 0);
        return (state.c_lflag & ECHO) != 0;
    }
    /// The terminal's output from now on, up to \a end.
    std::string shownUntil(const std::string &end) const
    {
        std::string text;
        while (text.find(end) == std::string::npos) {
            pollfd waited {m_terminal, POLLIN, 0};
            char byte = 0;
            if (::poll(&waited, 1, PatienceMs) <= 0 || ::read(m_terminal, &byte, 1) != 1) {
                ADD_FAILURE() << "no \"" << end << "\" in \"" << text << '"';
                break;
            }
            text += byte;
        }
        return text;
    }

private:
    int m_terminal = -1;
    int m_programs = -1; ///< the end that programs open
    pid_t m_process = -1;
};

TEST(PasswordInputTest, ATerminalDoesNotShowWhatIsTyped)
{
    const Prompt prompt;
    EXPECT_EQ(prompt.shownUntil(": "), "Password: ");
    EXPECT_FALSE(prompt.echoes());
    prompt.type("top secret \xc3\xa4\n");
    EXPECT_EQ(prompt.shownUntil("\xc3\xa4"), "\r\nread top secret \xc3\xa4");
    EXPECT_TRUE(prompt.echoes());
}

TEST(PasswordInputTest, TheEndOfInputIsNoPassword)
{
    const Prompt prompt;
    prompt.shownUntil(": ");
    prompt.type("\x04");
    EXPECT_EQ(prompt.shownUntil("needed"), "\r\nno a password is needed");
    EXPECT_TRUE(prompt.echoes());
}

TEST(PasswordInputTest, RefusesALongPasswordAsAWhole)
{
    const Prompt prompt;
    prompt.shownUntil(": ");
    prompt.type((std::string(1025, 'x') + '\n').c_str());
    EXPECT_EQ(prompt.shownUntil("long"), "\r\nno the password is too long");
}

TEST(PasswordInputTest, ASignalThatEndsTheProcessRestoresTheTerminal)
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        const Prompt prompt;
        prompt.shownUntil(": ");
        prompt.type("half a secr");
        const int status
            = prompt.statusAfter([&] { EXPECT_EQ(::kill(prompt.process(), signal), 0); });
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << status;
        EXPECT_TRUE(prompt.echoes());
    }
}

TEST(PasswordInputTest, TheInterruptKeyEndsTheProcess)
{
    const Prompt prompt;
    prompt.shownUntil(": ");
    prompt.type("half a secr");
    const int status = prompt.statusAfter([&] { prompt.type("\x03"); });
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGINT) << status;
    EXPECT_TRUE(prompt.echoes());
}

} // namespace
