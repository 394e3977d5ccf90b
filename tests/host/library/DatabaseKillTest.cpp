// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/library/Database.h"
#include "host/library/Sql.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include <iostream>
#include <optional>
#include <random>

namespace {

constexpr int Patience = 30000;

/// How often the writer is killed; VESK_TEST_KILLS has another number.
int kills()
{
    const int wanted = qEnvironmentVariableIntValue("VESK_TEST_KILLS");
    return wanted > 0 ? wanted : 200;
}

/// What the database holds after a kill; fails when it cannot be opened.
QSet<QString> kept(const QString &folder, int round)
{
    std::optional<Result<QVariant, QString>> result;
    Database database(folder, {});
    database.run(
        [round](sqlite3 *sql) -> Result<QVariant, QString> {
            SqlStatement paths(sql, "SELECT path FROM recents WHERE path LIKE ?");
            paths.bind(QStringLiteral("%1:%").arg(round));
            QStringList list;
            while (paths.next())
                list.append(paths.text(0));
            if (const auto done = paths.result(); !done)
                return failure(done.error());
            return QVariant(list);
        },
        [&result](const Result<QVariant, QString> &given) { result = given; });
    EXPECT_TRUE(database.close(std::chrono::steady_clock::now() + std::chrono::seconds(30)));
    EXPECT_TRUE(result && *result);
    EXPECT_EQ(database.problem().toString(), QString());
    const QStringList list = result && *result ? (*result)->toStringList() : QStringList();
    return QSet<QString>(list.begin(), list.end());
}

TEST(DatabaseKillTest, NothingThatWasConfirmedIsLost)
{
    const QTemporaryDir folder;
    std::mt19937 random(std::random_device {}());
    std::uniform_int_distribution<int> lifetime(0, 100);
    int confirmed = 0;
    const int rounds = kills();
    for (int round = 0; round < rounds && !testing::Test::HasFailure(); ++round) {
        QProcess writer;
        writer.start(QStringLiteral(DATABASE_WRITER), {folder.path(), QString::number(round)});
        ASSERT_TRUE(writer.waitForReadyRead(Patience)) << round;
        QThread::usleep(static_cast<unsigned long>(lifetime(random)) * 1000);
        writer.kill();
        ASSERT_TRUE(writer.waitForFinished(Patience));
        ASSERT_EQ(writer.exitStatus(), QProcess::CrashExit) << writer.exitCode();
        // What follows the last end of a line is none.
        QList<QByteArray> lines = writer.readAllStandardOutput().split('\n');
        lines.removeLast();
        const QSet<QString> there = kept(folder.path(), round);
        for (const QByteArray &line : lines) {
            const QString path = QStringLiteral("%1:%2").arg(round).arg(QString::fromLatin1(line));
            EXPECT_TRUE(there.contains(path)) << path.toStdString() << " was confirmed";
        }
        confirmed += lines.size();
    }
    EXPECT_EQ(QDir(folder.path()).entryList({QStringLiteral("*damaged*")}), QStringList());
    EXPECT_GT(confirmed, rounds);
    std::cout << rounds << " kills, " << confirmed << " confirmed writes\n";
}

} // namespace
