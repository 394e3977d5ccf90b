// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/runtime/LogFile.h"

#include "tests/support/SmallDisk.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <sstream>
#include <sys/stat.h>
#include <thread>
#include <vector>

using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;

namespace fs = std::filesystem;

namespace {

std::string contentOf(const std::string &file)
{
    std::ostringstream out;
    out << std::ifstream(file, std::ios::binary).rdbuf();
    return out.str();
}

class LogFileTest : public testing::Test {
protected:
    LogFileTest()
    {
        std::string folder = testing::TempDir() + "log-XXXXXX";
        m_folder = ::mkdtemp(folder.data());
        m_file = m_folder + "/log";
    }
    ~LogFileTest() override { fs::remove_all(m_folder); }

    std::string m_folder;
    std::string m_file;
};

TEST_F(LogFileTest, AppendsAndHasMode0640)
{
    std::ofstream(m_file + ".other") << "";
    const mode_t before = ::umask(0);
    {
        LogFile log(m_file, 0);
        ASSERT_TRUE(log.open());
        log.write("one\n");
    }
    ::umask(before);
    LogFile log(m_file, 0);
    ASSERT_TRUE(log.open());
    log.write("two\n");
    EXPECT_EQ(contentOf(m_file), "one\ntwo\n");
    struct stat status { };
    ASSERT_EQ(::stat(m_file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640u);
}

TEST_F(LogFileTest, RotatesAtItsLimitAndKeepsOneOldFile)
{
    LogFile log(m_file, 100);
    ASSERT_TRUE(log.open());
    for (int i = 0; i < 100; ++i) {
        log.write("record " + std::to_string(1000 + i) + '\n');
        ASSERT_LE(fs::file_size(m_file), 100u);
    }
    EXPECT_THAT(contentOf(m_file), EndsWith("record 1099\n"));
    EXPECT_LE(fs::file_size(m_file + ".1"), 100u);
    EXPECT_THAT(contentOf(m_file + ".1") + contentOf(m_file),
        MatchesRegex("record 10.*record 1098\nrecord 1099\n"));
    EXPECT_EQ(std::distance(fs::directory_iterator(m_folder), {}), 2);
}

TEST_F(LogFileTest, ARecordBeyondTheLimitGetsAFileOfItsOwn)
{
    LogFile log(m_file, 10);
    ASSERT_TRUE(log.open());
    log.write("short\n");
    log.write("much longer than ten\n");
    log.write("short again\n");
    EXPECT_EQ(contentOf(m_file + ".1"), "much longer than ten\n");
    EXPECT_EQ(contentOf(m_file), "short again\n");
}

TEST_F(LogFileTest, IsTruncatedWhereItCannotBeRenamed)
{
    fs::create_directories(m_file + ".1/in the way");
    LogFile log(m_file, 20);
    ASSERT_TRUE(log.open());
    log.write("eleven byte\n");
    log.write("twelve bytes\n");
    EXPECT_EQ(contentOf(m_file), "twelve bytes\n");
}

TEST_F(LogFileTest, ReopensAfterItWasRenamed)
{
    LogFile log(m_file, 0);
    ASSERT_TRUE(log.open());
    log.write("one\n");
    fs::rename(m_file, m_file + ".old");
    log.write("two\n");
    ASSERT_TRUE(log.open());
    log.write("three\n");
    EXPECT_EQ(contentOf(m_file + ".old"), "one\ntwo\n");
    EXPECT_EQ(contentOf(m_file), "three\n");
}

TEST_F(LogFileTest, OpensRegularFilesOnly)
{
    ASSERT_EQ(::mkfifo(m_file.c_str(), 0600), 0);
    LogFile log(m_file, 0);
    EXPECT_THAT(
        log.open().error().text, HasSubstr("no regular file")); // and does not wait for a reader
    log.write("goes nowhere\n");
    fs::remove(m_file);
    fs::create_directory(m_file);
    EXPECT_THAT(log.open().error().text, HasSubstr("no regular file"));
    EXPECT_FALSE(LogFile(m_folder + "/none/log", 0).open());
}

TEST_F(LogFileTest, AFifoInItsPlaceDropsAndCountsRecords)
{
    LogFile log(m_file, 0);
    ASSERT_TRUE(log.open());
    fs::remove(m_file);
    ASSERT_EQ(::mkfifo(m_file.c_str(), 0600), 0);
    EXPECT_FALSE(log.open());
    log.write("lost\n");
    log.write("lost too\n");
    fs::remove(m_file);
    ASSERT_TRUE(log.open());
    log.write("there\n");
    EXPECT_EQ(contentOf(m_file), "2 records are missing here: this is no regular file\nthere\n");
}

TEST_F(LogFileTest, AFullDiskDropsAndCountsRecords)
{
    const SmallDisk disk;
    if (!disk.isMounted())
        GTEST_SKIP() << "no file system can be mounted";
    const std::string file = disk.folder() + "/log";
    LogFile log(file, 0);
    ASSERT_TRUE(log.open());
    log.write(std::string(4090, 'x') + '\n');
    disk.fill();
    for (int i = 0; i < 1000; ++i)
        log.write("there is room for a part of this only\n");
    disk.makeRoom();
    log.write("there\n");
    EXPECT_THAT(contentOf(file).substr(4091),
        MatchesRegex("there\n1000 records are missing here: [^\n]*No space left[^\n]*\nthere\n"));
}

TEST_F(LogFileTest, RecordsOfSeveralThreadsAreNotInterleaved)
{
    LogFile log(m_file, 10000);
    ASSERT_TRUE(log.open());
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&log, i] {
            for (int n = 0; n < 500; ++n)
                log.write(std::string(20, static_cast<char>('a' + i)) + '\n');
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    std::istringstream lines(contentOf(m_file));
    for (std::string line; std::getline(lines, line);)
        EXPECT_EQ(line, std::string(20, line.at(0)));
}

} // namespace
