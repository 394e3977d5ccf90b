// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "base/files/KeptFile.h"

#include "tests/support/SmallDisk.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <set>
#include <sstream>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

using files::KeptFile;
using testing::HasSubstr;

namespace fs = std::filesystem;

namespace {

constexpr std::size_t Room = 100000;

/// The number of the next call of fsync() that fails, counted from 1; 0 for none.
int callsToFailure = 0;

} // namespace

/// Replaces the C library's, so that a failing disk can be simulated.
extern "C" int fsync(int descriptor)
{
    if (callsToFailure > 0 && --callsToFailure == 0) {
        errno = EIO;
        return -1;
    }
    return static_cast<int>(::syscall(SYS_fsync, descriptor));
}

namespace {

class KeptFileTest : public testing::Test {
protected:
    KeptFileTest()
    {
        std::string folder = testing::TempDir() + "kept-XXXXXX";
        m_folder = ::mkdtemp(folder.data());
        m_file = m_folder + "/state";
    }
    ~KeptFileTest() override { fs::remove_all(m_folder); }

    static void put(const std::string &file, const std::string &bytes)
    {
        std::ofstream(file, std::ios::binary) << bytes;
    }
    static std::string contentOf(const std::string &file)
    {
        std::ostringstream out;
        out << std::ifstream(file, std::ios::binary).rdbuf();
        return out.str();
    }
    std::set<std::string> names() const
    {
        std::set<std::string> all;
        for (const auto &entry : fs::directory_iterator(m_folder))
            all.insert(entry.path().filename().string());
        return all;
    }
    static unsigned modeOf(const std::string &file)
    {
        struct stat status { };
        EXPECT_EQ(::stat(file.c_str(), &status), 0) << file;
        return status.st_mode & 07777;
    }
    void expectRefused(const char *words) const
    {
        const auto content = KeptFile(m_file, Room).read();
        ASSERT_FALSE(content);
        EXPECT_THAT(content.error().text, HasSubstr(words));
    }

    std::string m_folder;
    std::string m_file;
};

TEST_F(KeptFileTest, ReadsWhatWasWritten)
{
    KeptFile file(m_file, Room);
    EXPECT_FALSE(*file.read());
    for (const std::string &bytes :
        {std::string("one"), std::string("t\0wo\xFF", 5), std::string(Room, 'x')}) {
        EXPECT_TRUE(file.write(bytes));
        EXPECT_TRUE(*KeptFile(m_file, Room).read() == bytes);
    }
    EXPECT_EQ(names(), (std::set<std::string> {"state"}));
}

TEST_F(KeptFileTest, IsReplacedAsAWhole)
{
    KeptFile file(m_file, Room);
    ASSERT_TRUE(file.write("first"));
    std::ifstream reader(m_file);
    ASSERT_TRUE(file.write("second"));
    std::string seen;
    reader >> seen;
    EXPECT_EQ(seen, "first") << "a reader that has the file open goes on with the old one";
    EXPECT_EQ(contentOf(m_file), "second");
}

TEST_F(KeptFileTest, IsReadableForItsOwnerAloneWhateverItsModeWas)
{
    const mode_t before = ::umask(0);
    put(m_file, "old");
    ::chmod(m_file.c_str(), 0666);
    KeptFile file(m_file, Room);
    ASSERT_TRUE(file.write("new"));
    ASSERT_TRUE(file.writeLastGood("new"));
    ASSERT_TRUE(KeptFile::makeFolder(m_folder + "/a/b"));
    ::umask(before);
    EXPECT_EQ(modeOf(m_file), 0600u);
    EXPECT_EQ(modeOf(m_file + ".last-good"), 0600u);
    EXPECT_EQ(modeOf(m_folder + "/a"), 0700u);
    EXPECT_EQ(modeOf(m_folder + "/a/b"), 0700u);
}

TEST_F(KeptFileTest, LeavesAnExistingFolderAsItIs)
{
    ::chmod(m_folder.c_str(), 0755);
    EXPECT_TRUE(KeptFile::makeFolder(m_folder));
    EXPECT_TRUE(KeptFile::makeFolder(m_folder + '/'));
    EXPECT_EQ(modeOf(m_folder), 0755u);
    put(m_file, "no folder");
    EXPECT_THAT(KeptFile::makeFolder(m_file).error().text, HasSubstr("is no folder"));
    EXPECT_THAT(KeptFile::makeFolder(m_file + "/below").error().text, HasSubstr("is no folder"));
}

TEST_F(KeptFileTest, KeepsACopyOfItsLastContent)
{
    KeptFile file(m_file, Room);
    EXPECT_FALSE(*file.readLastGood());
    ASSERT_TRUE(file.write("good"));
    ASSERT_TRUE(file.writeLastGood("good"));
    ASSERT_EQ(::truncate(m_file.c_str(), 0), 0);
    EXPECT_EQ(*file.readLastGood(), "good");
}

TEST_F(KeptFileTest, IsDamagedWhenItIsEmptyOrTooLarge)
{
    put(m_file, "");
    expectRefused("the file is empty");
    put(m_file, std::string(Room + 1, ' '));
    expectRefused("the file is too large");
    KeptFile file(m_file, Room);
    EXPECT_EQ(file.write(std::string(Room + 1, ' ')).error().error, EFBIG);
    EXPECT_EQ(contentOf(m_file).size(), Room + 1) << "the file is as it was";
}

TEST_F(KeptFileTest, RefusesWhatIsNoRegularFile)
{
    ASSERT_EQ(::mkfifo(m_file.c_str(), 0600), 0);
    expectRefused("no regular file"); // without waiting for a writer
    fs::remove(m_file);
    fs::create_directory(m_file);
    expectRefused("no regular file");
    fs::remove(m_file);
    fs::create_symlink(m_file, m_file);
    expectRefused("symbolic links");
    fs::remove(m_file);
    fs::create_symlink("/dev/zero", m_file);
    expectRefused("no regular file");
    fs::remove(m_file);
    fs::create_symlink(m_folder + "/nowhere", m_file);
    expectRefused("symbolic links");
}

TEST_F(KeptFileTest, ReplacesWhatIsNoRegularFile)
{
    const auto isKept = [this] {
        KeptFile file(m_file, Room);
        const auto aside = file.setAside();
        EXPECT_TRUE(fs::exists(fs::symlink_status(*aside))) << *aside;
        return file.write("new") && contentOf(m_file) == "new" && fs::remove(m_file);
    };
    ASSERT_EQ(::mkfifo(m_file.c_str(), 0600), 0);
    EXPECT_TRUE(isKept());
    fs::create_directory(m_file);
    EXPECT_TRUE(isKept());
    fs::create_symlink(m_file, m_file);
    EXPECT_TRUE(isKept());
    fs::create_symlink("/dev/zero", m_file);
    EXPECT_TRUE(isKept());
    EXPECT_TRUE(fs::is_character_file("/dev/zero"));
}

TEST_F(KeptFileTest, ReplacesTheFileBehindALink)
{
    fs::create_directory(m_folder + "/elsewhere");
    put(m_folder + "/elsewhere/real", "old");
    fs::create_symlink("elsewhere/real", m_file);
    KeptFile file(m_file, Room);
    EXPECT_EQ(*file.read(), "old");
    ASSERT_TRUE(file.write("new"));
    EXPECT_TRUE(fs::is_symlink(m_file));
    EXPECT_EQ(contentOf(m_folder + "/elsewhere/real"), "new");
}

TEST_F(KeptFileTest, KeepsALimitedNumberOfDamagedFiles)
{
    KeptFile file(m_file, Room);
    for (int i = 1; i <= 8; ++i) {
        put(m_file, "damaged " + std::to_string(i));
        const auto name = file.setAside();
        ASSERT_TRUE(name);
        EXPECT_EQ(contentOf(*name), "damaged " + std::to_string(i));
        EXPECT_FALSE(fs::exists(m_file));
    }
    EXPECT_EQ(names(),
        (std::set<std::string> {"state.damaged", "state.damaged.2", "state.damaged.3",
            "state.damaged.4", "state.damaged.5"}));
    EXPECT_EQ(contentOf(m_file + ".damaged"), "damaged 1");
    EXPECT_EQ(contentOf(m_file + ".damaged.4"), "damaged 4");
    EXPECT_EQ(contentOf(m_file + ".damaged.5"), "damaged 8");
}

TEST_F(KeptFileTest, RemovesAndIgnoresLeftovers)
{
    KeptFile file(m_file, Room);
    put(m_file + ".new", "half a wri");
    put(m_file + ".newer", "another file");
    EXPECT_FALSE(*file.read());
    file.removeLeftovers();
    EXPECT_EQ(names(), (std::set<std::string> {"state.newer"}));
    ASSERT_EQ(::mkfifo((m_file + ".new").c_str(), 0600), 0);
    EXPECT_TRUE(file.write("whole"));
    EXPECT_EQ(contentOf(m_file), "whole");
    fs::create_directory(m_file + ".new");
    EXPECT_THAT(file.write("other").error().text, HasSubstr("in the way"));
    EXPECT_EQ(contentOf(m_file), "whole");
}

TEST_F(KeptFileTest, IsUnchangedWhenAWriteExceedsTheFileSizeLimit)
{
    KeptFile file(m_file, Room);
    ASSERT_TRUE(file.write("good"));
    {
        const FileSizeLimit limit(1000);
        EXPECT_EQ(file.write(std::string(5000, 'x')).error().error, EFBIG);
        EXPECT_EQ(file.writeLastGood(std::string(5000, 'x')).error().error, EFBIG);
        EXPECT_TRUE(file.write("small enough"));
    }
    EXPECT_EQ(contentOf(m_file), "small enough");
    EXPECT_EQ(names(), (std::set<std::string> {"state"})) << "nothing is left of the attempt";
    EXPECT_TRUE(file.write(std::string(5000, 'x')));
}

TEST_F(KeptFileTest, IsUnchangedWhenTheFileCannotBeSynchronised)
{
    KeptFile file(m_file, Room);
    ASSERT_TRUE(file.write("good"));
    callsToFailure = 1;
    EXPECT_EQ(file.write("bad").error().error, EIO);
    EXPECT_EQ(contentOf(m_file), "good");
    EXPECT_EQ(names(), (std::set<std::string> {"state"}));
    EXPECT_TRUE(file.write("better"));
}

TEST_F(KeptFileTest, FailsWhenTheFolderCannotBeSynchronised)
{
    KeptFile file(m_file, Room);
    ASSERT_TRUE(file.write("good"));
    callsToFailure = 2; // the file, then its folder
    EXPECT_EQ(file.write("perhaps").error().error, EIO);
    EXPECT_EQ(callsToFailure, 0);
    EXPECT_TRUE(file.write("better"));
    EXPECT_EQ(contentOf(m_file), "better");
}

TEST_F(KeptFileTest, FailsWithoutItsFolder)
{
    KeptFile file(m_folder + "/gone/state", Room);
    EXPECT_EQ(file.write("bytes").error().error, ENOENT);
}

/// The same on a disk of its own.
class KeptFileOnASmallDisk : public testing::Test {
protected:
    void SetUp() override
    {
        if (!m_disk.isMounted())
            GTEST_SKIP() << "no file system can be mounted";
    }
    const std::string m_bytes = std::string(10000, 'g');
    SmallDisk m_disk;
    KeptFile m_file {m_disk.folder() + "/state", Room};
};

TEST_F(KeptFileOnASmallDisk, IsUnchangedWhenTheDiskIsFull)
{
    ASSERT_TRUE(m_file.write(m_bytes));
    m_disk.fill();
    for (const std::size_t size : {1u, 5000u, 20000u}) {
        EXPECT_EQ(m_file.write(std::string(size, 'n')).error().error, ENOSPC) << size;
        EXPECT_TRUE(*m_file.read() == m_bytes) << size;
    }
    EXPECT_FALSE(fs::exists(m_file.name() + ".new")) << "what is left takes up space";
    m_disk.makeRoom();
    EXPECT_TRUE(m_file.write("new"));
    EXPECT_EQ(*m_file.read(), "new");
}

TEST_F(KeptFileOnASmallDisk, IsUnchangedWhenTheDiskRunsFullHalfway)
{
    ASSERT_TRUE(m_file.write(m_bytes));
    m_disk.fill();
    // Space for a part of it: the first bytes are written.
    ASSERT_EQ(::truncate((m_disk.folder() + "/filler").c_str(), 80000), 0);
    EXPECT_EQ(m_file.write(std::string(90000, 'n')).error().error, ENOSPC);
    EXPECT_TRUE(*m_file.read() == m_bytes);
}

TEST_F(KeptFileOnASmallDisk, IsUnchangedWhenTheDiskIsReadOnly)
{
    ASSERT_TRUE(m_file.write(m_bytes));
    ASSERT_TRUE(m_disk.setReadOnly(true));
    EXPECT_EQ(m_file.write("new").error().error, EROFS);
    EXPECT_TRUE(*m_file.read() == m_bytes);
    EXPECT_EQ(m_file.setAside().error().error, EROFS);
    ASSERT_TRUE(m_disk.setReadOnly(false));
    EXPECT_TRUE(m_file.write("new"));
}

} // namespace
