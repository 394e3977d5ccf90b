// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/directory/Fetch.h"
#include "tests/support/HeldFile.h"
#include "tests/support/SmallDisk.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <gio/gio.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <sstream>
#include <thread>
#include <vector>

using namespace directory::test;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

/// A process of tunein-directory, which the destructor ends.
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
    std::string id() const { return g_subprocess_get_identifier(m_process); }
    void signal(int number) const { g_subprocess_send_signal(m_process, number); }
    /// Waits for the exit status, -1 when a signal ended it. Collects the rest of its output.
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

std::string post(const std::string &url)
{
    FetchOptions options;
    options.method = "POST";
    return fetch(url, options).body;
}

std::string contentOf(const std::string &file)
{
    std::ostringstream out;
    out << std::ifstream(file, std::ios::binary).rdbuf();
    return out.str();
}

/// A folder for accounts, and the program over a file in it.
class ProgramWithAccounts : public testing::Test {
protected:
    ProgramWithAccounts()
    {
        std::string folder = testing::TempDir() + "program-XXXXXX";
        m_folder = ::mkdtemp(folder.data());
        m_file = m_folder + "/accounts.json";
    }
    ~ProgramWithAccounts() override
    {
        m_program.reset();
        std::filesystem::remove_all(m_folder);
    }

    void start()
    {
        m_program = std::make_unique<Program>(std::vector<const char *> {
            "--listen", "127.0.0.1:0", "--data", DIRECTORY_DATA, "--accounts", m_file.c_str()});
        const std::string line = m_program->line();
        m_url = line.substr(std::min(line.size(), sizeof "tunein-directory: ready at " - 1));
    }
    int end(int number)
    {
        m_program->signal(number);
        return m_program->wait();
    }
    std::string ask(const std::string &target) { return post(m_url + target); }

    std::string m_folder;
    std::string m_file;
    std::string m_url;
    std::unique_ptr<Program> m_program;
};

TEST(Program, PrintsItsAddressAndEndsCleanlyOnSignals)
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

TEST(Program, EndsCleanlyOnASignalDuringStart)
{
    const std::string path = testing::TempDir() + "directory-held-" + std::to_string(::getpid());
    const std::string text = contentOf(DIRECTORY_DATA);
    for (const int milliseconds : {0, 1, 5, 20, 60}) {
        for (const int number : {SIGTERM, SIGINT}) {
            HeldFile data(path);
            Program program({"--listen", "127.0.0.1:0", "--data", path.c_str()});
            ASSERT_TRUE(data.waitForReader());
            if (milliseconds == 0)
                program.signal(number);
            data.give(text);
            std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
            if (milliseconds > 0)
                program.signal(number);
            EXPECT_EQ(program.wait(), 0) << "signal " << number << " after " << milliseconds;
            EXPECT_EQ(program.error(), "");
        }
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
        {"--request-log", "/nonexistent/log"}, {"--accounts", "/nonexistent/accounts"},
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

TEST(Program, ReportsTheLineOfAMistakeInItsData)
{
    const std::string file = testing::TempDir() + "directory-mistake.yaml";
    std::ofstream(file) << "page: {stations: 25, shows: 6}\nhouse: Dublin\n";
    Program program({"--data", file.c_str()});
    EXPECT_EQ(program.wait(), 2);
    EXPECT_THAT(program.error(), HasSubstr(file + ":2: "));
    std::remove(file.c_str());
}

TEST_F(ProgramWithAccounts, RestoresThemAfterARestart)
{
    start();
    ask("Account.ashx?c=create&username=me&password=sesame&email=me@example.org&postalCode=1"
        "&serial=S");
    EXPECT_EQ(end(SIGTERM), 0);
    start();
    EXPECT_THAT(ask("Account.ashx?c=query&serial=S"), HasSubstr("\"me\""));
    ask("Preset.ashx?c=add&id=s29001&username=me&password=sesame");
    EXPECT_EQ(end(SIGKILL), -1); // confirmed changes survive even this
    start();
    EXPECT_THAT(ask("Browse.ashx?c=presets&serial=S"), HasSubstr("s29001"));
    EXPECT_THAT(ask("Account.ashx?c=auth&username=me&password=sesame"), HasSubstr("session_id"));
    EXPECT_THAT(contentOf(m_file), testing::Not(HasSubstr("sesame")));
    EXPECT_EQ(end(SIGTERM), 0);
    EXPECT_EQ(m_program->error(), "");
}

TEST_F(ProgramWithAccounts, KeepsServingWhenTheyCannotBeWritten)
{
    start();
    std::filesystem::remove_all(m_folder);
    for (const char *serial : {"S", "T"}) {
        const std::string whose = std::string("&serial=") + serial;
        EXPECT_THAT(ask("Preset.ashx?c=add&id=s29001" + whose), HasSubstr("\"500\""));
        EXPECT_THAT(ask("Browse.ashx?c=presets" + whose), testing::Not(HasSubstr("s29001")));
    }
    EXPECT_EQ(end(SIGTERM), 0);
    EXPECT_THAT(m_program->error(),
        StartsWith("tunein-directory: the accounts cannot be kept in " + m_file + ": "));
    EXPECT_EQ(m_program->error().find('\n'), m_program->error().size() - 1);
}

TEST_F(ProgramWithAccounts, EndsWith1WhenAnotherProcessUsesThem)
{
    start();
    const auto first = std::move(m_program);
    start();
    EXPECT_EQ(m_program->wait(), 1);
    EXPECT_EQ(m_program->out(), "");
    EXPECT_EQ(m_program->error(),
        "tunein-directory: the accounts in " + m_file + ": they are in use: process " + first->id()
            + " holds " + m_file + ".lock\n");
    first->signal(SIGKILL);
    first->wait();
    start();
    EXPECT_THAT(ask("Account.ashx?c=query&serial=S"), HasSubstr("head"));
}

/// Kills the directory at random moments while accounts change and the disk is full half of the
/// time: each change that was confirmed must survive.
TEST_F(ProgramWithAccounts, KeepsConfirmedChangesWhenKilled)
{
    const SmallDisk disk;
    if (disk.isMounted())
        m_file = disk.folder() + "/accounts.json";
    const char *wanted = std::getenv("VESK_DEATHS");
    const int deaths = wanted ? std::atoi(wanted) : 10;
    std::mt19937 random(std::random_device {}());
    const auto below = [&random](int end) { return static_cast<int>(random() % end); };
    std::map<std::string, bool> confirmed; // by id, whether it is a favorite
    int refused = 0;
    int changes = 0;
    for (int death = 0; death < deaths; ++death) {
        SCOPED_TRACE(death);
        start();
        ASSERT_THAT(m_url, StartsWith("http://"));
        const std::string presets = ask("Browse.ashx?c=presets&serial=S");
        for (const auto &[id, isThere] : confirmed)
            ASSERT_EQ(presets.find('"' + id + '"') != std::string::npos, isThere) << id;
        std::thread killer([&, milliseconds = 1 + below(40)] {
            for (int passed = 0; passed < milliseconds; passed += 5) {
                // The disk is full half of the time.
                std::optional<FileSizeLimit> limit;
                const bool isFull = passed / 5 % 2 == 0;
                if (isFull && disk.isMounted())
                    disk.fill();
                else if (isFull)
                    limit.emplace(10, std::stoi(m_program->id()));
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
                if (disk.isMounted())
                    disk.makeRoom();
            }
            m_program->signal(SIGKILL);
        });
        for (bool isUp = true; isUp;) {
            const std::string id = "s29" + std::to_string(1001 + below(17)).substr(1);
            const auto known = confirmed.find(id);
            const bool isWanted = known == confirmed.end() || !known->second;
            const std::string answer = ask(std::string("Preset.ashx?serial=S&c=")
                + (isWanted ? "add" : "remove") + "&id=" + id);
            isUp = !answer.empty();
            if (!isUp) {
                confirmed.erase(id); // unknown: it may have been written
            } else if (answer.find("\"200\"") != std::string::npos) {
                confirmed[id] = isWanted;
                ++changes;
            } else {
                ++refused;
            }
        }
        killer.join();
        m_program->wait();
    }
    std::cout << deaths << " deaths, " << changes << " changes, " << refused << " refused\n";
    EXPECT_GT(changes, 0);
    EXPECT_GT(refused, 0);
}

TEST_F(ProgramWithAccounts, EndsWith2WhenTheyCannotBeRead)
{
    const std::string text = "{\"version\": 99}\n";
    std::ofstream(m_file) << text;
    start();
    EXPECT_EQ(m_program->wait(), 2);
    EXPECT_EQ(m_program->out(), "");
    EXPECT_THAT(m_program->error(), StartsWith("tunein-directory: the accounts in " + m_file));
    EXPECT_EQ(m_program->error().find('\n'), m_program->error().size() - 1);
    EXPECT_EQ(contentOf(m_file), text);
}

} // namespace
