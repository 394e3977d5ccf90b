// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// DatabaseWriter FOLDER ROUND: adds entries "ROUND:0", "ROUND:1" and so on to the database without
// an end, several at a time, and writes each one's number to standard output once it is confirmed.

#include "host/library/Database.h"
#include "host/library/Sql.h"

#include <QCoreApplication>

#include <string>
#include <unistd.h>

namespace {

constexpr int AtATime = 3;

class Writer {
public:
    Writer(const QString &folder, const QString &round)
        : m_database(folder, {})
        , m_round(round)
    {
        for (int i = 0; i < AtATime; ++i)
            add();
    }

private:
    void add()
    {
        const int number = m_next++;
        m_database.run(
            [path = QStringLiteral("%1:%2").arg(m_round).arg(number)](
                sqlite3 *sql) -> Result<QVariant, QString> {
                const auto inserted = SqlStatement(
                    sql, "INSERT INTO recents (path, service, heard, row) VALUES (?, 'a', 1, ?)")
                                          .bind(path)
                                          .bind(QByteArray(300, 'x'))
                                          .run();
                if (!inserted)
                    return failure(inserted.error());
                return QVariant();
            },
            [this, number](const Result<QVariant, QString> &done) {
                if (!done)
                    ::_exit(2);
                const std::string line = std::to_string(number) + '\n';
                if (::write(STDOUT_FILENO, line.data(), line.size()) != ssize_t(line.size()))
                    ::_exit(3);
                add();
            });
    }

    Database m_database;
    const QString m_round;
    int m_next = 0;
};

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3)
        return 1;
    const Writer writer(arguments.at(1), arguments.at(2));
    return QCoreApplication::exec();
}
