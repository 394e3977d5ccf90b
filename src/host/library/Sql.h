// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <memory>

struct sqlite3;
struct sqlite3_stmt;

/// One SQL statement, for the work of a Database. A failure lasts: nothing is done any more, and
/// run() and result() fail with an empty text, for which the database has the words.
///
///     SqlStatement insert(sql, "INSERT INTO names (name) VALUES (?)");
///     return insert.bind(name).run();
class SqlStatement {
public:
    SqlStatement(sqlite3 *database, const char *sql);
    ~SqlStatement();
    Q_DISABLE_COPY(SqlStatement)

    /// The next parameter. A null text or null bytes are NULL.
    SqlStatement &bind(qint64 number);
    SqlStatement &bind(int number) { return bind(qint64(number)); }
    SqlStatement &bind(const QString &text);
    SqlStatement &bind(const QByteArray &bytes);

    /// Goes to the next row; false when there is none, or after a failure.
    bool next();
    /// Goes through all rows. The statement can be bound and run again afterwards.
    Result<void, QString> run();
    /// Whether everything has succeeded so far.
    Result<void, QString> result() const;

    /// Of the present row, from 0.
    qint64 number(int column) const;
    QString text(int column) const;
    QByteArray bytes(int column) const;
    bool isNull(int column) const;

private:
    struct Finalize {
        void operator()(sqlite3_stmt *statement) const;
    };

    void note(int code);

    std::unique_ptr<sqlite3_stmt, Finalize> m_statement;
    int m_bound = 0;
    bool m_hasFailed = false;
};
