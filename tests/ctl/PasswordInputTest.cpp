// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/PasswordInput.h"

#include <gmock/gmock.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sstream>
#include <sys/wait.h>
#include <termios.h>
#include <thread>
#include <unistd.h>

namespace {

/// Both ends of a terminal.
class Terminal {
public:
    Terminal()
        : m_user(::posix_openpt(O_RDWR | O_NOCTTY))
    {
        EXPECT_EQ(::grantpt(m_user), 0);
        EXPECT_EQ(::unlockpt(m_user), 0);
        m_program = ::open(::ptsname(m_user), O_RDWR | O_NOCTTY);
        EXPECT_GE(m_program, 0);
    }
    ~Terminal()
    {
        ::close(m_program);
        ::close(m_user);
    }

    int program() const { return m_program; }

    void type(const char *text) const
    {
        const auto size = static_cast<ssize_t>(std::strlen(text));
        EXPECT_EQ(::write(m_user, text, static_cast<size_t>(size)), size);
    }
    bool echoes() const
    {
        termios state {};
        EXPECT_EQ(::tcgetattr(m_program, &state), 0);
        return (state.c_lflag & ECHO) != 0;
    }
    bool waitUntilSilent() const
    {
        for (int tries = 0; tries < 10000 && echoes(); ++tries)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        return !echoes();
    }
    /// What the terminal shows so far.
    std::string shown() const
    {
        EXPECT_EQ(::fcntl(m_user, F_SETFL, O_NONBLOCK), 0);
        char text[1000];
        const ssize_t size = ::read(m_user, text, sizeof text);
        return size > 0 ? std::string(text, static_cast<size_t>(size)) : std::string();
    }

private:
    const int m_user;
    int m_program = -1;
};

struct Answer {
    QString problem;
    QString password;
    std::string prompts;
};

Answer typeAtPrompt(const Terminal &terminal, const char *text)
{
    Answer answer;
    std::ostringstream prompts;
    std::thread reader([&] {
        answer.problem = readPassword(
            terminal.program(), prompts, QStringLiteral("Password: "), answer.password);
    });
    EXPECT_TRUE(terminal.waitUntilSilent());
    terminal.type(text);
    reader.join();
    answer.prompts = prompts.str();
    return answer;
}

TEST(PasswordInputTest, ATerminalDoesNotShowWhatIsTyped)
{
    const Terminal terminal;
    const Answer answer = typeAtPrompt(terminal, "top secret\n");
    EXPECT_EQ(answer.problem, QString());
    EXPECT_EQ(answer.password, QStringLiteral("top secret"));
    EXPECT_EQ(answer.prompts, "Password: \n");
    EXPECT_TRUE(terminal.echoes());
    EXPECT_EQ(terminal.shown(), "");
}

TEST(PasswordInputTest, TheEndOfInputIsNoPassword)
{
    const Terminal terminal;
    EXPECT_EQ(typeAtPrompt(terminal, "\x04").problem, QStringLiteral("a password is needed"));
    EXPECT_TRUE(terminal.echoes());
}

/// Runs a prompt in a process of its own, for signals end it.
pid_t startPrompt(const Terminal &terminal)
{
    const pid_t child = ::fork();
    if (child == 0) {
        // A group whose parent may be gone is never stopped.
        ::setpgid(0, 0);
        std::ostringstream prompts;
        QString password;
        readPassword(terminal.program(), prompts, QStringLiteral("? "), password);
        ::_exit(password == QLatin1String("secret") ? 42 : 1);
    }
    return child;
}

TEST(PasswordInputTest, ASignalThatEndsTheProgramFindsTheTerminalAsItWas)
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        const Terminal terminal;
        const pid_t child = startPrompt(terminal);
        EXPECT_TRUE(terminal.waitUntilSilent());
        terminal.type("half a secr");
        EXPECT_EQ(::kill(child, signal), 0);
        int status = 0;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << status;
        EXPECT_TRUE(terminal.echoes());
    }
}

TEST(PasswordInputTest, AStoppedProgramAsksAgain)
{
    const Terminal terminal;
    const pid_t child = startPrompt(terminal);
    EXPECT_TRUE(terminal.waitUntilSilent());
    EXPECT_EQ(::kill(child, SIGTSTP), 0);
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, WUNTRACED), child);
    EXPECT_TRUE(WIFSTOPPED(status)) << status;
    EXPECT_TRUE(terminal.echoes());
    EXPECT_EQ(::kill(child, SIGCONT), 0);
    EXPECT_TRUE(terminal.waitUntilSilent());
    terminal.type("secret\n");
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 42) << status;
    EXPECT_TRUE(terminal.echoes());
}

} // namespace
