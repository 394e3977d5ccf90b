// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "base/files/FileLock.h"

#include <csignal>
#include <filesystem>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using files::FileLock;
using testing::HasSubstr;

namespace {

/// A process that takes the lock and holds it until it is killed.
class Holder {
public:
    explicit Holder(const std::string &file)
    {
        int ends[2] = {-1, -1};
        EXPECT_EQ(::pipe(ends), 0);
        m_process = ::fork();
        if (m_process == 0) {
            FileLock lock(file);
            const char taken = lock.take() ? 'y' : 'n';
            if (::write(ends[1], &taken, 1) != 1)
                ::_exit(1);
            for (;;)
                ::pause();
        }
        ::close(ends[1]);
        char taken = 'n';
        EXPECT_EQ(::read(ends[0], &taken, 1), 1);
        ::close(ends[0]);
        m_holds = taken == 'y';
    }
    ~Holder() { kill(); }

    pid_t process() const { return m_process; }
    bool holds() const { return m_holds; }
    void kill()
    {
        if (m_process <= 0)
            return;
        ::kill(m_process, SIGKILL);
        ::waitpid(m_process, nullptr, 0);
        m_process = 0;
    }

private:
    pid_t m_process = 0;
    bool m_holds = false;
};

class FileLockTest : public testing::Test {
protected:
    FileLockTest()
    {
        std::string folder = testing::TempDir() + "lock-XXXXXX";
        m_folder = ::mkdtemp(folder.data());
        m_file = m_folder + "/lock";
    }
    ~FileLockTest() override { std::filesystem::remove_all(m_folder); }

    std::string m_folder;
    std::string m_file;
};

TEST_F(FileLockTest, NamesTheProcessThatHoldsIt)
{
    Holder holder(m_file);
    ASSERT_TRUE(holder.holds());
    FileLock lock(m_file);
    const auto taken = lock.take();
    ASSERT_FALSE(taken);
    EXPECT_FALSE(lock.isHeld());
    EXPECT_EQ(taken.error().error, FileLock::HeldElsewhere);
    EXPECT_EQ(
        taken.error().text, "process " + std::to_string(holder.process()) + " holds " + m_file);
}

TEST_F(FileLockTest, IsReleasedWhenItsHolderIsKilled)
{
    Holder holder(m_file);
    FileLock lock(m_file);
    ASSERT_FALSE(lock.take());
    holder.kill();
    EXPECT_TRUE(lock.take());
    EXPECT_TRUE(lock.isHeld());
    EXPECT_TRUE(lock.take()) << "held already";
}

TEST_F(FileLockTest, IsReleasedWithTheObject)
{
    {
        FileLock lock(m_file);
        ASSERT_TRUE(lock.take());
        EXPECT_FALSE(Holder(m_file).holds());
    }
    EXPECT_TRUE(Holder(m_file).holds());
}

TEST_F(FileLockTest, IsReadableForItsOwnerAlone)
{
    FileLock lock(m_file);
    ASSERT_TRUE(lock.take());
    struct stat status { };
    ASSERT_EQ(::stat(m_file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600u);
}

TEST_F(FileLockTest, FailsWithoutARegularFile)
{
    FileLock nowhere(m_folder + "/none/lock");
    EXPECT_THAT(nowhere.take().error().text, HasSubstr(m_folder + "/none/lock: "));
    ASSERT_EQ(::mkfifo(m_file.c_str(), 0600), 0);
    FileLock fifo(m_file);
    EXPECT_THAT(fifo.take().error().text, HasSubstr("no regular file"));
}

} // namespace
