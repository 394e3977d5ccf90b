// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/Result.h"
#include "host/alarm/AlarmBook.h"

#include <QHash>
#include <QString>

#include <optional>

struct sqlite3;

/// The tables of alarms and of what the night needs, for the work of a Database; see there for the
/// thread and for what a failure means.
namespace AlarmTable {

/// What the tables hold.
struct Content {
    QVector<Alarm> alarms;
    QVector<MissedAlarm> missed;
    QHash<QString, qint64> notes;
    qint64 lastId = 0; ///< the highest that was ever given
};

/// Names of notes.
QString volumeBefore();
QString muteBefore();
QString sleepEnds();
QString sleepFade();

/// An alarm whose row cannot be read any more comes without it; entries that mean nothing are left
/// out. The log says so.
Result<Content, QString> read(sqlite3 *database);
/// Adds it, or replaces the one with its id. Fails in words if its row cannot be kept.
Result<void, QString> save(sqlite3 *database, const Alarm &alarm);
Result<void, QString> remove(sqlite3 *database, const QString &id);
/// Replaces all of them.
Result<void, QString> saveMissed(sqlite3 *database, const QVector<MissedAlarm> &missed);
/// Nothing removes the note.
Result<void, QString> note(sqlite3 *database, const QString &name, std::optional<qint64> value);

} // namespace AlarmTable
