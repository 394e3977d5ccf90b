// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/library/Sql.h"

#include <sqlite3.h>

void SqlStatement::Finalize::operator()(sqlite3_stmt *statement) const
{
    sqlite3_finalize(statement);
}

SqlStatement::SqlStatement(sqlite3 *database, const char *sql)
{
    sqlite3_stmt *statement = nullptr;
    note(sqlite3_prepare_v2(database, sql, -1, &statement, nullptr));
    m_statement.reset(statement);
    m_hasFailed |= !statement;
}

SqlStatement::~SqlStatement() = default;

void SqlStatement::note(int code)
{
    m_hasFailed |= code != SQLITE_OK;
}

SqlStatement &SqlStatement::bind(qint64 number)
{
    if (!m_hasFailed)
        note(sqlite3_bind_int64(m_statement.get(), ++m_bound, number));
    return *this;
}

SqlStatement &SqlStatement::bind(const QString &text)
{
    if (m_hasFailed)
        return *this;
    const QByteArray utf8 = text.toUtf8();
    if (text.isNull())
        note(sqlite3_bind_null(m_statement.get(), ++m_bound));
    else
        note(sqlite3_bind_text(
            m_statement.get(), ++m_bound, utf8.constData(), utf8.size(), SQLITE_TRANSIENT));
    return *this;
}

SqlStatement &SqlStatement::bind(const QByteArray &bytes)
{
    if (m_hasFailed)
        return *this;
    if (bytes.isNull())
        note(sqlite3_bind_null(m_statement.get(), ++m_bound));
    else
        note(sqlite3_bind_blob(
            m_statement.get(), ++m_bound, bytes.constData(), bytes.size(), SQLITE_TRANSIENT));
    return *this;
}

bool SqlStatement::next()
{
    if (m_hasFailed)
        return false;
    const int code = sqlite3_step(m_statement.get());
    m_hasFailed = code != SQLITE_ROW && code != SQLITE_DONE;
    return code == SQLITE_ROW;
}

Result<void, QString> SqlStatement::run()
{
    while (next()) { }
    if (!m_hasFailed) {
        note(sqlite3_reset(m_statement.get()));
        m_bound = 0;
    }
    return result();
}

Result<void, QString> SqlStatement::result() const
{
    if (m_hasFailed)
        return failure(QString());
    return {};
}

qint64 SqlStatement::number(int column) const
{
    return sqlite3_column_int64(m_statement.get(), column);
}

QString SqlStatement::text(int column) const
{
    const auto *text
        = reinterpret_cast<const char *>(sqlite3_column_text(m_statement.get(), column));
    return QString::fromUtf8(text, sqlite3_column_bytes(m_statement.get(), column));
}

QByteArray SqlStatement::bytes(int column) const
{
    const auto *bytes = static_cast<const char *>(sqlite3_column_blob(m_statement.get(), column));
    return QByteArray(bytes, sqlite3_column_bytes(m_statement.get(), column));
}

bool SqlStatement::isNull(int column) const
{
    return sqlite3_column_type(m_statement.get(), column) == SQLITE_NULL;
}
