// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/alarm/AlarmTable.h"

#include "api/core/log.h"
#include "host/library/KeptRow.h"
#include "host/library/Sql.h"

#include <algorithm>

VESK_LOGGER("Alarms")

namespace {

/// "135": Monday, Wednesday and Friday.
QString daysText(const QVector<int> &days)
{
    QString text;
    for (const int day : days)
        text.append(QString::number(day));
    return text.isNull() ? QStringLiteral("") : text;
}

std::optional<QVector<int>> daysOf(const QString &text)
{
    QVector<int> days;
    for (const QChar letter : text) {
        const int day = letter.digitValue();
        if (day < 1 || day > 7 || days.contains(day))
            return {};
        days.append(day);
    }
    return days;
}

VeskRoles rowOf(const QString &id, const QByteArray &text)
{
    if (text.isEmpty())
        return {};
    const auto row = KeptRow::fromText(text);
    if (row)
        return *row;
    VESK_WARN("what alarm " << id << " plays cannot be read: " << row.error());
    return {};
}

std::optional<Alarm> alarmOf(const SqlStatement &row)
{
    Alarm alarm;
    alarm.id = QString::number(row.number(0));
    const auto time = WeeklyTime::parse(row.text(1));
    const auto days = daysOf(row.text(2));
    if (!time || !days) {
        VESK_WARN("alarm " << alarm.id << " cannot be read");
        return {};
    }
    alarm.time = *time;
    alarm.time.days = *days;
    alarm.enabled = row.number(3) != 0;
    if (!row.isNull(4))
        alarm.volume = static_cast<int>(std::clamp<qint64>(row.number(4), 0, 100));
    alarm.fade = static_cast<int>(std::clamp<qint64>(row.number(5), 0, Alarm::MaxFade));
    alarm.row = rowOf(alarm.id, row.bytes(6));
    alarm.accounted = row.number(7);
    alarm.rung = row.number(8);
    alarm.skipped = row.number(9);
    alarm.snoozedUntil = row.number(10);
    return alarm;
}

} // namespace

namespace AlarmTable {

QString volumeBefore()
{
    return QStringLiteral("volumeBefore");
}

QString muteBefore()
{
    return QStringLiteral("muteBefore");
}

QString sleepEnds()
{
    return QStringLiteral("sleepEnds");
}

QString sleepFade()
{
    return QStringLiteral("sleepFade");
}

Result<Content, QString> read(sqlite3 *database)
{
    Content content;
    SqlStatement alarms(database,
        "SELECT id, time, days, enabled, volume, fade, row, accounted, rung, skipped, snoozed "
        "FROM alarms ORDER BY id");
    while (alarms.next()) {
        if (const auto alarm = alarmOf(alarms);
            alarm && content.alarms.size() < AlarmBook::MaxAlarms)
            content.alarms.append(*alarm);
    }
    SqlStatement missed(database, "SELECT alarm, at FROM missed_alarms ORDER BY at, alarm LIMIT ?");
    missed.bind(AlarmBook::MaxMissed);
    while (missed.next())
        content.missed.append({QString::number(missed.number(0)), missed.number(1)});
    SqlStatement notes(database, "SELECT name, value FROM night");
    while (notes.next())
        content.notes.insert(notes.text(0), notes.number(1));
    SqlStatement last(database, "SELECT seq FROM sqlite_sequence WHERE name = 'alarms'");
    if (last.next())
        content.lastId = last.number(0);
    for (const SqlStatement *statement : {&alarms, &missed, &notes, &last}) {
        if (const auto result = statement->result(); !result)
            return failure(result.error());
    }
    return content;
}

Result<void, QString> save(sqlite3 *database, const Alarm &alarm)
{
    QByteArray row;
    if (!alarm.row.isEmpty()) {
        const auto text = KeptRow::toText(alarm.row);
        if (!text)
            return failure(text.error());
        row = *text;
    }
    SqlStatement statement(database,
        "INSERT OR REPLACE INTO alarms (id, time, days, enabled, volume, fade, row, accounted, "
        "rung, skipped, snoozed) VALUES (?1, ?2, ?3, ?4, CASE WHEN ?5 < 0 THEN NULL ELSE ?5 END, "
        "?6, ?7, ?8, ?9, ?10, ?11)");
    return statement.bind(alarm.id.toLongLong())
        .bind(alarm.time.text())
        .bind(daysText(alarm.time.days))
        .bind(int(alarm.enabled))
        .bind(alarm.volume.value_or(-1))
        .bind(alarm.fade)
        .bind(row.isEmpty() ? QByteArray("") : row)
        .bind(alarm.accounted)
        .bind(alarm.rung)
        .bind(alarm.skipped)
        .bind(alarm.snoozedUntil)
        .run();
}

Result<void, QString> remove(sqlite3 *database, const QString &id)
{
    return SqlStatement(database, "DELETE FROM alarms WHERE id = ?").bind(id.toLongLong()).run();
}

Result<void, QString> saveMissed(sqlite3 *database, const QVector<MissedAlarm> &missed)
{
    if (const auto cleared = SqlStatement(database, "DELETE FROM missed_alarms").run(); !cleared)
        return cleared;
    for (const MissedAlarm &one : missed) {
        SqlStatement insert(
            database, "INSERT OR REPLACE INTO missed_alarms (alarm, at) VALUES (?, ?)");
        if (const auto result = insert.bind(one.id.toLongLong()).bind(one.at).run(); !result)
            return result;
    }
    return {};
}

Result<void, QString> note(sqlite3 *database, const QString &name, std::optional<qint64> value)
{
    if (!value)
        return SqlStatement(database, "DELETE FROM night WHERE name = ?").bind(name).run();
    return SqlStatement(database, "INSERT OR REPLACE INTO night (name, value) VALUES (?, ?)")
        .bind(name)
        .bind(*value)
        .run();
}

} // namespace AlarmTable
