// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/store/StateVersion.h"

#include "base/files/Descriptor.h"
#include "host/library/Schema.h"
#include "tests/support/LogCapture.h"
#include "tests/support/SmallDisk.h"
#include "tests/support/Text.h"

#include <QDir>
#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <functional>
#include <string>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

/// Before how many further calls that change what is on the disk this process dies; 0: never.
int callsBeforeDeath = 0;

void mayDie()
{
    if (callsBeforeDeath > 0 && --callsBeforeDeath == 0)
        ::_exit(9);
}

} // namespace

extern "C" int fsync(int descriptor)
{
    mayDie();
    return static_cast<int>(::syscall(SYS_fsync, descriptor));
}

extern "C" int rename(const char *from, const char *to) noexcept
{
    mayDie();
    return static_cast<int>(::syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0));
}

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

const Result<void, files::Problem> Held;

Result<void, files::Problem> fails(const QString & /*folder*/)
{
    return failure(files::Problem {ENOSPC, "the disk is full"});
}

/// "old" in capital letters, in a file of another name.
Result<void, files::Problem> makeCapitals(const QString &folder)
{
    const std::string path = QFile::encodeName(folder).toStdString();
    const auto old = files::KeptFile(path + "/old", 1024).read();
    if (!old || !*old)
        return failure(files::Problem {0, "there is nothing"});
    const QByteArray bytes = QByteArray::fromStdString(**old);
    return files::KeptFile(path + "/new", 1024).write(bytes.toUpper().toStdString());
}

const StateVersion::Steps Known {{}, makeCapitals};

QStringList names(const std::vector<const char *> &utf8)
{
    QStringList names;
    for (const char *name : utf8)
        names.append(text(name));
    return names;
}

QStringList entriesOf(const QString &folder)
{
    return QDir(folder).entryList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

class StateVersionTest : public testing::Test {
protected:
    QString file(const char *name) const { return m_folder.filePath(text(name)); }
    void write(const char *name, const QByteArray &bytes) const
    {
        QFile out(file(name));
        EXPECT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(bytes);
    }
    std::string content(const char *name) const
    {
        QFile in(file(name));
        return in.open(QIODevice::ReadOnly) ? in.readAll().toStdString() : "(none)";
    }
    QStringList entries() const { return entriesOf(m_folder.path()); }
    /// Empty without an error.
    std::string check(const StateVersion::Steps &steps = StateVersion::released()) const
    {
        const auto checked = StateVersion(m_folder.path(), steps).check();
        return checked ? "" : checked.error().toStdString();
    }
    std::string bringUpToDate(const StateVersion::Steps &steps = StateVersion::released(),
        const Result<void, files::Problem> &held = Held) const
    {
        const auto done = StateVersion(m_folder.path(), steps).bringUpToDate(held);
        return done ? "" : done.error().toStdString();
    }

    QTemporaryDir m_folder;
};

TEST_F(StateVersionTest, IsOneInANewFolder)
{
    write("lock", "");
    EXPECT_EQ(check(), "");
    EXPECT_EQ(bringUpToDate(), "");
    EXPECT_EQ(content("version"), "1\n");
    EXPECT_EQ(content("version.last-good"), "1\n");
    EXPECT_EQ(check(), "");
    EXPECT_EQ(entries(), names({"lock", "version", "version.last-good"}));
}

TEST_F(StateVersionTest, OfAFolderFromBeforeIsWrittenBesideWhatItHolds)
{
    write("settings.json", "{}");
    EXPECT_EQ(bringUpToDate(), "");
    EXPECT_EQ(content("version"), "1\n");
    EXPECT_EQ(content("settings.json"), "{}");
}

TEST_F(StateVersionTest, IsNotWrittenAgain)
{
    EXPECT_EQ(bringUpToDate(), "");
    struct stat before { };
    ASSERT_EQ(::stat(QFile::encodeName(file("version")).constData(), &before), 0);
    EXPECT_EQ(bringUpToDate(), "");
    struct stat after { };
    ASSERT_EQ(::stat(QFile::encodeName(file("version")).constData(), &after), 0);
    EXPECT_EQ(before.st_ino, after.st_ino);
}

TEST_F(StateVersionTest, ThatIsLaterIsRefusedAndNothingTouched)
{
    for (const char *later : {"2\n", "2", "00017\n", "2147483648\n",
             "999999999999999999999999999999999999999999999999999\n"}) {
        write("version", later);
        write("settings.json", "what a later version made of it");
        write("version.new", "left over");
        for (const std::string &refusal : {check(), bringUpToDate()}) {
            EXPECT_THAT(refusal,
                AllOf(HasSubstr("the state folder " + m_folder.path().toStdString()),
                    HasSubstr("and this program knows up to 1: install"), Not(HasSubstr("\n"))))
                << later;
        }
        EXPECT_EQ(entries(), names({"settings.json", "version", "version.new"}));
        EXPECT_EQ(content("version"), later);
        EXPECT_EQ(content("settings.json"), "what a later version made of it");
    }
}

/// What is no number, by how it is made.
struct NoNumber {
    const char *name;
    std::function<void(const std::string &file)> make;
    const char *words;
};

void writeTo(const std::string &file, const QByteArray &bytes)
{
    QFile out(QString::fromStdString(file));
    EXPECT_TRUE(out.open(QIODevice::WriteOnly));
    out.write(bytes);
}

const std::vector<NoNumber> &noNumbers()
{
    static const std::vector<NoNumber> all {
        {"empty", [](const std::string &file) { writeTo(file, ""); }, "the file is empty"},
        {"words", [](const std::string &file) { writeTo(file, "one\n"); }, "holds no number"},
        {"negative", [](const std::string &file) { writeTo(file, "-1\n"); }, "holds no number"},
        {"line break", [](const std::string &file) { writeTo(file, "\n"); }, "holds no number"},
        {"two lines", [](const std::string &file) { writeTo(file, "1\n1\n"); }, "holds no number"},
        {"blank", [](const std::string &file) { writeTo(file, " 1\n"); }, "holds no number"},
        {"null byte", [](const std::string &file) { writeTo(file, QByteArray("1\0", 2)); },
            "holds no number"},
        {"long", [](const std::string &file) { writeTo(file, QByteArray(65, '1')); },
            "the file is too large"},
        {"FIFO", [](const std::string &file) { ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0); },
            "this is no regular file"},
        {"folder", [](const std::string &file) { ASSERT_EQ(::mkdir(file.c_str(), 0700), 0); },
            "this is no regular file"},
        {"circular link",
            [](const std::string &file) { ASSERT_EQ(::symlink("version", file.c_str()), 0); },
            "it cannot be looked at"},
    };
    return all;
}

TEST_F(StateVersionTest, ThatCannotBeReadIsRefusedAndNothingTouched)
{
    for (const NoNumber &damage : noNumbers()) {
        const QTemporaryDir folder;
        const std::string path = folder.path().toStdString();
        damage.make(path + "/version");
        StateVersion version(folder.path());
        for (const auto &refused : {version.check(), version.bringUpToDate(Held)}) {
            ASSERT_FALSE(refused) << damage.name;
            EXPECT_THAT(refused.error().toStdString(),
                AllOf(HasSubstr("there is no telling which version the state folder " + path),
                    HasSubstr(damage.words), HasSubstr("write the right one into the file"),
                    Not(HasSubstr("\n"))))
                << damage.name;
        }
        EXPECT_EQ(entriesOf(folder.path()), names({"version"})) << damage.name;
    }
}

TEST_F(StateVersionTest, ThatIsDamagedIsReplacedWithItsCopy)
{
    for (const NoNumber &damage : noNumbers()) {
        const QTemporaryDir folder;
        const std::string path = folder.path().toStdString();
        StateVersion version(folder.path());
        ASSERT_TRUE(version.bringUpToDate(Held));
        ASSERT_EQ(::unlink((path + "/version").c_str()), 0);
        damage.make(path + "/version");
        EXPECT_TRUE(version.check()) << damage.name;
        EXPECT_TRUE(version.bringUpToDate(Held)) << damage.name;
        QFile healed(folder.filePath(text("version")));
        ASSERT_TRUE(healed.open(QIODevice::ReadOnly)) << damage.name;
        EXPECT_EQ(healed.readAll(), "1\n") << damage.name;
    }
}

TEST_F(StateVersionTest, OfTheCopyCountsWhenTheFileIsGone)
{
    write("version.last-good", "2\n");
    EXPECT_THAT(check(), HasSubstr("has version 2"));
    write("version", "1\n");
    EXPECT_EQ(check(), "");
}

TEST_F(StateVersionTest, GoesUpWithEachStep)
{
    write("old", "radio");
    write("version", "0\n");
    EXPECT_EQ(bringUpToDate(Known), "");
    EXPECT_EQ(content("version"), "2\n");
    EXPECT_EQ(content("new"), "RADIO");
    write("new", "changed since");
    EXPECT_EQ(bringUpToDate(Known), "");
    EXPECT_EQ(content("new"), "changed since") << "a step is done once";
}

TEST_F(StateVersionTest, NeedsNoStepsInANewFolder)
{
    EXPECT_EQ(bringUpToDate({{}, fails}), "");
    EXPECT_EQ(content("version"), "2\n");
}

TEST_F(StateVersionTest, StaysWhereAStepFails)
{
    write("old", "radio");
    EXPECT_THAT(bringUpToDate({{}, makeCapitals, fails}),
        AllOf(HasSubstr("cannot be brought from version 2 to 3: the disk is full"),
            Not(HasSubstr("\n"))));
    EXPECT_EQ(content("version"), "2\n");
    EXPECT_EQ(content("old"), "radio");
    EXPECT_EQ(check(Known), "") << "the program of version 2 reads it";
}

TEST_F(StateVersionTest, StaysWithoutTheLock)
{
    write("old", "radio");
    const Result<void, files::Problem> notHeld = failure(files::Problem {EROFS, "read-only disk"});
    EXPECT_EQ(bringUpToDate(StateVersion::released(), notHeld), "")
        << "there is no step that would write";
    EXPECT_THAT(bringUpToDate(Known, notHeld), HasSubstr("from version 1 to 2: read-only disk"));
    EXPECT_EQ(entries(), names({"old"}));
}

TEST_F(StateVersionTest, OnAFullDiskIsWrittenWhenThereIsRoom)
{
    const SmallDisk disk;
    if (!disk.isMounted())
        GTEST_SKIP();
    const QString folder = QString::fromStdString(disk.folder());
    QFile old(folder + text("/old"));
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("radio");
    old.close();
    disk.fill();
    const LogCapture log("Host");
    EXPECT_TRUE(StateVersion(folder).bringUpToDate(Held)) << "nothing but the number changes";
    EXPECT_EQ(log.lines(text("WARN")).size(), 1);
    EXPECT_FALSE(StateVersion(folder, Known).bringUpToDate(Held)) << "a step would write";
    EXPECT_TRUE(StateVersion(folder).check());
    disk.makeRoom();
    EXPECT_TRUE(StateVersion(folder, Known).bringUpToDate(Held));
    EXPECT_FALSE(StateVersion(folder).check()) << "it is a later version's now";
}

/// After how many calls the process dies; the last one finds none that is left.
TEST_F(StateVersionTest, SurvivesAKillBeforeEachCallThatChangesTheDisk)
{
    bool hasEnded = false;
    int kills = 0;
    for (int calls = 1; !hasEnded; ++calls) {
        const QTemporaryDir folder;
        writeTo(folder.filePath(text("old")).toStdString(), "radio");
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            callsBeforeDeath = calls;
            ::_exit(StateVersion(folder.path(), Known).bringUpToDate(Held) ? 0 : 1);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFEXITED(status));
        hasEnded = WEXITSTATUS(status) == 0;
        ASSERT_TRUE(hasEnded || WEXITSTATUS(status) == 9);
        kills += hasEnded ? 0 : 1;

        QFile old(folder.filePath(text("old")));
        ASSERT_TRUE(old.open(QIODevice::ReadOnly));
        EXPECT_EQ(old.readAll(), "radio") << "the version before reads what it wrote";
        StateVersion again(folder.path(), Known);
        EXPECT_TRUE(again.bringUpToDate(Held)) << calls;
        QFile made(folder.filePath(text("new")));
        ASSERT_TRUE(made.open(QIODevice::ReadOnly)) << calls;
        EXPECT_EQ(made.readAll(), "RADIO") << calls;
        EXPECT_FALSE(StateVersion(folder.path()).check()) << "no longer for the version before";
    }
    EXPECT_GE(kills, 8) << "two steps, each with two files at least";
}

TEST_F(StateVersionTest, WorksWithoutAFolder)
{
    EXPECT_TRUE(StateVersion({}).check());
    EXPECT_TRUE(StateVersion({}).bringUpToDate(Held));
}

/// Other forms of files have numbers of their own, against mixing them; when one of these numbers
/// grows, so does the folder's, or an earlier program would do half of its work with the folder.
TEST_F(StateVersionTest, GrowsWithTheLibrarysTables)
{
    struct Version {
        std::size_t state;
        std::size_t library;
    };
    const std::vector<Version> versions {{1, 3}};
    EXPECT_EQ(versions.back().state, StateVersion::released().size());
    EXPECT_EQ(versions.back().library, librarySchema().size());
}

} // namespace
