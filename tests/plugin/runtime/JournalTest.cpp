// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/runtime/Journal.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <log4cplus/logger.h>

#include <chrono>
#include <cstdlib>
#include <optional>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

using Clock = std::chrono::steady_clock;

/// Stands in for systemd's journal.
class FakeJournal {
public:
    explicit FakeJournal(const std::string &file)
        : m_socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0))
    {
        ::unlink(file.c_str());
        sockaddr_un address {};
        address.sun_family = AF_UNIX;
        file.copy(address.sun_path, sizeof address.sun_path - 1);
        EXPECT_EQ(
            ::bind(m_socket, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
    }
    ~FakeJournal() { ::close(m_socket); }

    /// The next record that has come; nothing when there is none.
    std::optional<std::string> take()
    {
        std::string record(256 * 1024, '\0');
        const ssize_t size = ::recv(m_socket, record.data(), record.size(), MSG_DONTWAIT);
        if (size < 0)
            return {};
        record.resize(static_cast<std::size_t>(size));
        return record;
    }

private:
    const int m_socket;
};

class JournalTest : public testing::Test {
protected:
    QTemporaryDir m_folder;
    const std::string m_file = m_folder.filePath(QStringLiteral("socket")).toStdString();
};

std::string noStation()
{
    return {};
}

std::string someStation()
{
    return "Radio Ö";
}

TEST_F(JournalTest, SendsFields)
{
    FakeJournal fake(m_file);
    Journal journal(m_file);
    journal.send({{"MESSAGE", "a=b"}, {"PRIORITY", "6"}});
    EXPECT_EQ(fake.take(), "SYSLOG_IDENTIFIER=runtime_test\nMESSAGE=a=b\nPRIORITY=6\n");
    journal.send({{"MESSAGE", "two\nlines"}});
    EXPECT_EQ(fake.take(),
        std::string("SYSLOG_IDENTIFIER=runtime_test\nMESSAGE\n\x09\0\0\0\0\0\0\0two\nlines\n", 57));
    journal.send({{"MESSAGE", std::string(1000000, 'x')}});
    EXPECT_THAT(fake.take()->size(),
        testing::AllOf(testing::Gt(Journal::MaxValue), testing::Lt(Journal::MaxValue + 100)));
}

TEST_F(JournalTest, SendsLogRecords)
{
    FakeJournal fake(m_file);
    const auto journal = std::make_shared<Journal>(m_file);
    log4cplus::Logger logger = log4cplus::Logger::getInstance("JournalTest");
    logger.setAdditivity(false);
    logger.addAppender(makeJournalAppender(journal, &someStation));
    logger.forcedLog(log4cplus::WARN_LOG_LEVEL, "text", "host/a", 12, "f()");
    EXPECT_THAT(*fake.take(),
        AllOf(HasSubstr("\nMESSAGE=text\n"), HasSubstr("\nPRIORITY=4\n"),
            HasSubstr("\nVESK_LOGGER=JournalTest\n"), HasSubstr("\nCODE_FILE=host/a\n"),
            HasSubstr("\nCODE_LINE=12\n"), HasSubstr("\nCODE_FUNC=f()\n"),
            HasSubstr("\nVESK_STATION=Radio Ö\n")));
    logger.removeAllAppenders();
    logger.addAppender(makeJournalAppender(journal, &noStation));
    logger.forcedLog(log4cplus::FATAL_LOG_LEVEL, "text", "host/a", 12, "f()");
    EXPECT_THAT(*fake.take(), AllOf(HasSubstr("\nPRIORITY=2\n"), Not(HasSubstr("STATION"))));
    logger.removeAllAppenders();
}

TEST_F(JournalTest, AJournalThatTakesNothingHoldsNobodyUp)
{
    FakeJournal fake(m_file);
    Journal journal(m_file);
    constexpr int Count = 2000; // far more than a socket takes
    const Clock::time_point begin = Clock::now();
    for (int i = 0; i < Count; ++i)
        journal.send({{"MESSAGE", "record " + std::to_string(i)}});
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(2));
    int taken = 0;
    while (fake.take())
        ++taken;
    EXPECT_GT(taken, 0);
    EXPECT_LT(taken, Count);
    journal.send({{"MESSAGE", "again"}});
    EXPECT_THAT(
        *fake.take(), HasSubstr(std::to_string(Count - taken) + " records are missing here"));
    EXPECT_THAT(*fake.take(), HasSubstr("MESSAGE=again\n"));
    EXPECT_FALSE(fake.take());
}

TEST_F(JournalTest, FindsAJournalThatComesBack)
{
    Journal journal(m_file);
    journal.send({{"MESSAGE", "to nobody"}});
    std::optional<FakeJournal> fake(std::in_place, m_file);
    journal.send({{"MESSAGE", "first"}});
    EXPECT_THAT(*fake->take(), HasSubstr("1 records are missing here"));
    EXPECT_THAT(*fake->take(), HasSubstr("MESSAGE=first\n"));
    fake.emplace(m_file);
    journal.send({{"MESSAGE", "second"}});
    EXPECT_THAT(*fake->take(), HasSubstr("MESSAGE=second\n"));
}

TEST_F(JournalTest, KnowsWhetherStandardErrorIsTheJournal)
{
    struct stat status { };
    ASSERT_EQ(::fstat(STDERR_FILENO, &status), 0);
    const std::string own = std::to_string(status.st_dev) + ':' + std::to_string(status.st_ino);
    ::unsetenv("JOURNAL_STREAM");
    EXPECT_FALSE(Journal::isStandardError());
    for (const std::string &other : {std::string(), own + '1', std::string("9:9")}) {
        ::setenv("JOURNAL_STREAM", other.c_str(), 1);
        EXPECT_FALSE(Journal::isStandardError()) << other;
    }
    ::setenv("JOURNAL_STREAM", own.c_str(), 1);
    EXPECT_TRUE(Journal::isStandardError());
    ::unsetenv("JOURNAL_STREAM");
}

std::string fieldsOf(const std::string &line)
{
    std::string text;
    for (const JournalField &field : journalFieldsOfLine(line, "tunein"))
        text += field.name + ('=' + field.value) + '\n';
    return text;
}

TEST_F(JournalTest, AReadableLineOfAPluginIsARecord)
{
    EXPECT_EQ(fieldsOf("2026-01-02 03:04:05.678 WARN  CB_TuneIn modules/tunein/A:17 [TuneIn] a b: "
                       "c [x] y"),
        "VESK_PLUGIN=tunein\nMESSAGE=a b: c [x] y\nPRIORITY=4\nVESK_LOGGER=CB_TuneIn\n"
        "CODE_FILE=modules/tunein/A\nCODE_LINE=17\nVESK_THREAD=TuneIn\n");
    for (const std::string &line : {std::string("Segmentation fault"), std::string(),
             std::string("2026-01-02 03:04:05.678 WARN"), std::string(100000, '-'),
             std::string("2026-01-02 03:04:05.678 WARN  a b:x [c] d")}) {
        EXPECT_EQ(fieldsOf(line), "VESK_PLUGIN=tunein\nMESSAGE=" + line + "\nPRIORITY=6\n");
    }
}

} // namespace
