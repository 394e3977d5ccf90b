// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/library/Database.h"

#include "host/library/Schema.h"
#include "host/library/Sql.h"
#include "tests/support/LogCapture.h"
#include "tests/support/SmallDisk.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QThread>

#include <gmock/gmock.h>

#include <future>
#include <memory>
#include <optional>
#include <sqlite3.h>
#include <sys/stat.h>

namespace {

/// In KiB: room for the tables, the log and its index.
constexpr int DiskSize = 512;

using testing::HasSubstr;

std::chrono::steady_clock::time_point in(std::chrono::milliseconds time)
{
    return std::chrono::steady_clock::now() + time;
}

/// What came of one piece of work.
class Outcome {
public:
    Database::Done done() const
    {
        return [result = m_result](const Result<QVariant, QString> &given) {
            EXPECT_EQ(QThread::currentThread(), QCoreApplication::instance()->thread());
            EXPECT_FALSE(result->has_value());
            *result = given;
        };
    }
    bool wait() const
    {
        QElapsedTimer time;
        time.start();
        while (!*m_result && time.elapsed() < 20000)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
        return isThere();
    }
    bool isThere() const { return m_result->has_value(); }
    std::string text() const
    {
        if (!isThere())
            return "no answer";
        return (**m_result ? (**m_result)->toString() : (*m_result)->error()).toStdString();
    }
    bool hasFailed() const { return isThere() && !**m_result; }

private:
    std::shared_ptr<std::optional<Result<QVariant, QString>>> m_result
        = std::make_shared<std::optional<Result<QVariant, QString>>>();
};

Database::Work insert(const QString &path)
{
    return [path](sqlite3 *sql) -> Result<QVariant, QString> {
        SqlStatement statement(
            sql, "INSERT INTO recents (path, service, heard, row) VALUES (?, 'a', 1, '{}')");
        if (const auto done = statement.bind(path).run(); !done)
            return failure(done.error());
        return QVariant(path);
    };
}

/// The paths that are kept, separated by blanks.
Result<QVariant, QString> paths(sqlite3 *sql)
{
    SqlStatement statement(sql, "SELECT path FROM recents ORDER BY path");
    QStringList list;
    while (statement.next())
        list.append(statement.text(0));
    if (const auto done = statement.result(); !done)
        return failure(done.error());
    return QVariant(list.join(QLatin1Char(' ')));
}

class DatabaseTest : public testing::Test {
protected:
    DatabaseTest()
        : m_folder(m_temporary.path())
        , m_file(m_folder + QStringLiteral("/library.sqlite"))
    {
    }

    void open(const Result<void, files::Problem> &held = {})
    {
        m_database.reset();
        m_database = std::make_unique<Database>(m_folder, held);
    }
    std::string run(const Database::Work &work)
    {
        const Outcome outcome;
        m_database->run(work, outcome.done());
        outcome.wait();
        return outcome.text();
    }
    std::string add(const char *path) { return run(insert(QString::fromLatin1(path))); }
    std::string kept() { return run(&paths); }
    std::string problem() const
    {
        QCoreApplication::processEvents();
        return m_database->problem().toString().toStdString();
    }
    QByteArray content(const QString &suffix = QString()) const
    {
        QFile file(m_file + suffix);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void write(const QByteArray &bytes, const QString &suffix = QString()) const
    {
        QFile file(m_file + suffix);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    QStringList damaged() const
    {
        return QDir(m_folder)
            .entryList({QStringLiteral("library.sqlite.damaged-*")}, QDir::Files)
            .filter(QRegularExpression(QStringLiteral("\\d$")));
    }

    QTemporaryDir m_temporary;
    QString m_folder;
    QString m_file;
    std::unique_ptr<Database> m_database;
};

TEST_F(DatabaseTest, KeepsWhatWasConfirmed)
{
    open();
    EXPECT_EQ(add("a"), "a");
    EXPECT_EQ(kept(), "a");
    EXPECT_EQ(problem(), "");
    open();
    EXPECT_EQ(kept(), "a");
}

TEST_F(DatabaseTest, TheFileIsForItsOwnerAlone)
{
    ::umask(0);
    open();
    EXPECT_EQ(add("a"), "a");
    for (const char *suffix : {"", "-wal"}) {
        struct stat status { };
        ASSERT_EQ(::stat((m_file.toStdString() + suffix).c_str(), &status), 0) << suffix;
        EXPECT_EQ(status.st_mode & 0777U, 0600U) << suffix;
    }
}

TEST_F(DatabaseTest, WithoutAFolderItLastsUntilTheEnd)
{
    m_folder.clear();
    open();
    EXPECT_EQ(add("a"), "a");
    EXPECT_EQ(kept(), "a");
    open();
    EXPECT_EQ(kept(), "");
}

TEST_F(DatabaseTest, WorkThatFailsChangesNothing)
{
    open();
    const auto halfDone = [](sqlite3 *sql) -> Result<QVariant, QString> {
        EXPECT_TRUE(insert(QStringLiteral("half"))(sql));
        return failure(QStringLiteral("It was not to be."));
    };
    EXPECT_EQ(run(halfDone), "It was not to be.");
    EXPECT_EQ(kept(), "");
}

TEST_F(DatabaseTest, SqlThatFailsIsToldInWords)
{
    const LogCapture log("Host.Library");
    open();
    EXPECT_EQ(add("a"), "a");
    EXPECT_EQ(add("a"), "Not saved: the disk cannot be written. The log says more.");
    EXPECT_THAT(log.lines().join(QLatin1Char('\n')).toStdString(), HasSubstr("UNIQUE"));
    EXPECT_EQ(kept(), "a");
}

TEST_F(DatabaseTest, ADamagedFileIsKeptAsideAndTold)
{
    struct Case {
        const char *what;
        std::function<QByteArray(QByteArray)> damage;
    };
    const std::vector<Case> cases {
        {"other content", [](const QByteArray &) { return QByteArray("no database"); }},
        {"half of it", [](const QByteArray &whole) { return whole.left(whole.size() / 2 - 100); }},
        {"a page of noise",
            [](QByteArray whole) { return whole.replace(4096, 4096, QByteArray(4096, '\xa5')); }},
    };
    for (const Case &each : cases) {
        SCOPED_TRACE(each.what);
        const LogCapture log("Host.Library");
        m_database.reset();
        for (const QString &file : damaged())
            QFile::remove(m_folder + QLatin1Char('/') + file);
        QFile::remove(m_file);
        open();
        EXPECT_EQ(add("a"), "a");
        m_database.reset();
        const QByteArray bytes = each.damage(content());
        write(bytes);

        open();
        EXPECT_EQ(kept(), "");
        EXPECT_EQ(add("b"), "b");
        ASSERT_EQ(damaged().size(), 1);
        QFile aside(m_folder + QLatin1Char('/') + damaged().first());
        ASSERT_TRUE(aside.open(QIODevice::ReadOnly));
        EXPECT_EQ(aside.readAll(), bytes);
        EXPECT_THAT(problem(), HasSubstr("was damaged. It is kept as library.sqlite.damaged-"));
        EXPECT_THAT(log.lines().join(QLatin1Char('\n')).toStdString(),
            HasSubstr("is damaged; it is kept as"));
        open();
        EXPECT_EQ(kept(), "b");
        EXPECT_EQ(problem(), "");
    }
}

TEST_F(DatabaseTest, TheLogOfADamagedFileGoesWithIt)
{
    write("no database");
    write("no log", QStringLiteral("-wal"));
    open();
    EXPECT_EQ(kept(), "");
    ASSERT_EQ(damaged().size(), 1);
    QFile aside(m_folder + QLatin1Char('/') + damaged().first() + QStringLiteral("-wal"));
    ASSERT_TRUE(aside.open(QIODevice::ReadOnly));
    EXPECT_EQ(aside.readAll(), "no log");
}

TEST_F(DatabaseTest, ALaterVersionIsLeftAlone)
{
    open();
    EXPECT_EQ(add("a"), "a");
    EXPECT_EQ(run([](sqlite3 *sql) -> Result<QVariant, QString> {
        EXPECT_TRUE(SqlStatement(sql, "PRAGMA user_version=1000").run());
        return QVariant(QStringLiteral("later"));
    }),
        "later");
    m_database.reset();
    const QByteArray bytes = content();
    open();
    EXPECT_THAT(add("b"), HasSubstr("belongs to a later version"));
    EXPECT_THAT(kept(), HasSubstr("belongs to a later version"));
    EXPECT_THAT(problem(), HasSubstr("belongs to a later version"));
    m_database.reset();
    EXPECT_EQ(content(), bytes);
    EXPECT_EQ(damaged(), QStringList());
}

TEST_F(DatabaseTest, AnEarlierVersionIsBroughtUpToDate)
{
    sqlite3 *empty = nullptr;
    ASSERT_EQ(sqlite3_open(m_file.toUtf8().constData(), &empty), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(empty, "CREATE TABLE other (x)", nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(empty);
    open();
    EXPECT_EQ(add("a"), "a");
    EXPECT_EQ(run([](sqlite3 *sql) -> Result<QVariant, QString> {
        SqlStatement version(sql, "PRAGMA user_version");
        version.next();
        return QVariant(version.number(0));
    }),
        std::to_string(librarySchema().size()));
}

TEST_F(DatabaseTest, WhatIsNoFileIsNotOpened)
{
    ASSERT_EQ(::mkfifo(m_file.toUtf8().constData(), 0600), 0);
    open();
    EXPECT_EQ(add("a"), "Not saved: the disk cannot be written. The log says more.");
    EXPECT_EQ(problem(), "Not saved: the disk cannot be written. The log says more.");
    ASSERT_TRUE(QFile::remove(m_file));
    EXPECT_EQ(add("a"), "a");
    EXPECT_EQ(problem(), "");
}

TEST_F(DatabaseTest, AFullDiskIsAnErrorOfTheRequestAndPasses)
{
    const SmallDisk disk(DiskSize);
    if (!disk.isMounted())
        GTEST_SKIP();
    m_folder = QString::fromStdString(disk.folder());
    open();
    EXPECT_EQ(add("a"), "a");
    disk.fill();
    EXPECT_EQ(add("b"), "Not saved: the disk is full.");
    EXPECT_EQ(kept(), "a");
    disk.makeRoom();
    EXPECT_EQ(add("b"), "b");
    open();
    EXPECT_EQ(kept(), "a b");
}

TEST_F(DatabaseTest, ADiskThatIsFullAtTheStartIsTriedAgain)
{
    const SmallDisk disk(DiskSize);
    if (!disk.isMounted())
        GTEST_SKIP();
    m_folder = QString::fromStdString(disk.folder());
    disk.fill();
    open();
    EXPECT_EQ(add("a"), "Not saved: the disk is full.");
    EXPECT_EQ(problem(), "Not saved: the disk is full.");
    disk.makeRoom();
    EXPECT_EQ(add("a"), "a");
    EXPECT_EQ(problem(), "");
}

TEST_F(DatabaseTest, AReadOnlyDiskIsReadAndNotWritten)
{
    const SmallDisk disk(DiskSize);
    if (!disk.isMounted())
        GTEST_SKIP();
    m_folder = QString::fromStdString(disk.folder());
    open();
    EXPECT_EQ(add("a"), "a");
    m_database.reset();
    ASSERT_TRUE(disk.setReadOnly(true));
    open();
    EXPECT_EQ(kept(), "a");
    EXPECT_EQ(add("b"), "Not saved: the disk cannot be written. The log says more.");
    ASSERT_TRUE(disk.setReadOnly(false));
    EXPECT_EQ(add("b"), "b");
    EXPECT_EQ(kept(), "a b");
}

TEST_F(DatabaseTest, AFolderOfAnotherProcessIsReadAndNotWritten)
{
    open();
    EXPECT_EQ(add("a"), "a");
    open(failure(files::Problem {EACCES, "not ours"}));
    EXPECT_EQ(kept(), "a");
    EXPECT_EQ(add("b"), "Not saved: the disk cannot be written. The log says more.");
    open();
    EXPECT_EQ(kept(), "a");
}

TEST_F(DatabaseTest, SlowWorkHoldsNobodyUp)
{
    open();
    std::promise<void> release;
    const Outcome slow;
    m_database->run(
        [&release](sqlite3 *) -> Result<QVariant, QString> {
            release.get_future().wait();
            return QVariant(QStringLiteral("slow"));
        },
        slow.done());
    const Outcome next;
    m_database->run(insert(QStringLiteral("a")), next.done());
    EXPECT_FALSE(m_database->close(in(std::chrono::milliseconds(50))));
    EXPECT_FALSE(slow.isThere());
    const Outcome late;
    m_database->run(insert(QStringLiteral("late")), late.done());
    EXPECT_FALSE(late.isThere()); // not before it returned
    release.set_value();
    EXPECT_TRUE(m_database->close(in(std::chrono::seconds(20))));
    EXPECT_EQ(slow.text(), "slow");
    EXPECT_EQ(next.text(), "a");
    EXPECT_TRUE(late.hasFailed());
    open();
    EXPECT_EQ(kept(), "a");
}

TEST_F(DatabaseTest, TooMuchAtOnceIsRefused)
{
    open();
    std::promise<void> begun;
    std::promise<void> release;
    m_database->run([&](sqlite3 *) -> Result<QVariant, QString> {
        begun.set_value();
        release.get_future().wait();
        return QVariant();
    });
    begun.get_future().wait();
    std::vector<Outcome> outcomes(2 * DiskQueue<int>::MaxWaiting);
    for (std::size_t i = 0; i < outcomes.size(); ++i)
        m_database->run(insert(QString::number(i)), outcomes[i].done());
    release.set_value();
    int taken = 0;
    for (const Outcome &outcome : outcomes) {
        ASSERT_TRUE(outcome.wait());
        if (!outcome.hasFailed())
            ++taken;
        else
            EXPECT_EQ(outcome.text(), "Not saved: too much is waiting for the disk.");
    }
    EXPECT_EQ(taken, int(DiskQueue<int>::MaxWaiting));
}

} // namespace
