#include "tests/directory/Fetch.h"

#include <csignal>
#include <cstdio>
#include <fstream>
#include <gio/gio.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

using namespace directory::test;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

/// tunein-directory as a process; ended with the object, if not before.
class Program {
public:
    explicit Program(std::vector<const char *> arguments)
    {
        arguments.insert(arguments.begin(), DIRECTORY_PROGRAM);
        arguments.push_back(nullptr);
        m_process = g_subprocess_newv(arguments.data(),
            static_cast<GSubprocessFlags>(
                G_SUBPROCESS_FLAGS_STDOUT_PIPE | G_SUBPROCESS_FLAGS_STDERR_PIPE),
            nullptr);
    }
    ~Program()
    {
        if (m_process) {
            g_subprocess_force_exit(m_process);
            g_object_unref(m_process);
        }
    }
    Program(const Program &) = delete;
    Program &operator=(const Program &) = delete;

    /// One line of its standard output, read byte by byte so that the rest stays there.
    std::string line() const
    {
        std::string text;
        char byte = 0;
        GInputStream *out = g_subprocess_get_stdout_pipe(m_process);
        while (g_input_stream_read(out, &byte, 1, nullptr, nullptr) == 1 && byte != '\n')
            text += byte;
        return text;
    }
    void signal(int number) const { g_subprocess_send_signal(m_process, number); }
    /// Its exit status, -1 when it was killed. Fills in what it still had to say.
    int wait()
    {
        m_out = rest(g_subprocess_get_stdout_pipe(m_process));
        m_error = rest(g_subprocess_get_stderr_pipe(m_process));
        g_subprocess_wait(m_process, nullptr, nullptr);
        return g_subprocess_get_if_exited(m_process) ? g_subprocess_get_exit_status(m_process) : -1;
    }
    const std::string &out() const { return m_out; }
    const std::string &error() const { return m_error; }

private:
    static std::string rest(GInputStream *stream)
    {
        std::string text;
        char buffer[4096];
        gssize count = 0;
        while ((count = g_input_stream_read(stream, buffer, sizeof buffer, nullptr, nullptr)) > 0)
            text.append(buffer, static_cast<std::size_t>(count));
        return text;
    }

    GSubprocess *m_process = nullptr;
    std::string m_out;
    std::string m_error;
};

TEST(Program, SaysWhereItIsAndEndsCleanlyOnSignals)
{
    for (const int number : {SIGTERM, SIGINT}) {
        Program program({"--listen", "127.0.0.1:0", "--data", DIRECTORY_DATA});
        const std::string line = program.line();
        const std::string start = "tunein-directory: ready at ";
        ASSERT_THAT(line, StartsWith(start + "http://127.0.0.1:"));
        EXPECT_EQ(fetch(line.substr(start.size()) + "Browse.ashx").status, 200);
        program.signal(number);
        EXPECT_EQ(program.wait(), 0);
        EXPECT_EQ(program.out(), "");
        EXPECT_EQ(program.error(), "");
    }
}

TEST(Program, FindsItsDataBesideItself)
{
    Program program({"--listen", "127.0.0.1:0"});
    EXPECT_THAT(program.line(), StartsWith("tunein-directory: ready at "));
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait(), 0);
}

TEST(Program, StartsWithTheFaultsItIsGiven)
{
    Program program({"--listen", "127.0.0.1:0", "--fault", "http-status:503*1"});
    const std::string url = program.line().substr(sizeof "tunein-directory: ready at " - 1);
    EXPECT_EQ(fetch(url).status, 503);
    EXPECT_EQ(fetch(url).status, 200);
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait(), 0);
}

TEST(Program, EndsWhileAConnectionIsHeldOpen)
{
    Program program({"--listen", "127.0.0.1:0", "--fault", "stall"});
    const std::string url = program.line().substr(sizeof "tunein-directory: ready at " - 1);
    FetchOptions options;
    options.timeoutMilliseconds = 200;
    EXPECT_EQ(fetch(url, options).code, CURLE_OPERATION_TIMEDOUT);
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait(), 0);
}

TEST(Program, EndsWith2AndOneLineOnBadArguments)
{
    const std::vector<std::vector<const char *>> mistakes {{"--nonsense"}, {"--fault", "nonsense"},
        {"--listen", "nowhere"}, {"--tls-listen", "127.0.0.1:0"}, {"--data", "/nonexistent.yaml"},
        {"--request-log", "/nonexistent/log"},
        {"--listen", "127.0.0.1:0", "--tls-listen", "127.0.0.1:0", "--cert", "/nonexistent",
            "--key", "/nonexistent"}};
    for (const auto &arguments : mistakes) {
        Program program(arguments);
        EXPECT_EQ(program.wait(), 2) << arguments[0];
        EXPECT_EQ(program.out(), "") << arguments[0];
        EXPECT_THAT(program.error(), StartsWith("tunein-directory: "));
        EXPECT_EQ(program.error().find('\n'), program.error().size() - 1) << program.error();
    }
}

TEST(Program, NamesTheLineOfAMistakeInItsData)
{
    const std::string file = testing::TempDir() + "directory-mistake.yaml";
    std::ofstream(file) << "page: {stations: 25, shows: 6}\nhouse: Dublin\n";
    Program program({"--data", file.c_str()});
    EXPECT_EQ(program.wait(), 2);
    EXPECT_THAT(program.error(), HasSubstr(file + ":2: "));
    std::remove(file.c_str());
}

} // namespace
