// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/library/Library.h"

#include "api/core/ThreadCheck.h"
#include "api/core/TrString.h"
#include "api/core/log.h"
#include "api/core/vesk.h"
#include "host/library/Database.h"
#include "host/library/KeptRow.h"
#include "host/library/Sql.h"
#include "host/player/StreamChoice.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QPointer>

#include <utility>

VESK_LOGGER("Host.Library")

namespace {

using Outcome = Result<QVariant, QString>;

QString words(const char *text, const QVector<TrArg> &args = {})
{
    return TrString(QStringLiteral("Host"), QString::fromLatin1(text), QString(), -1, args)
        .toString();
}

QString notKept()
{
    return words(QT_TRANSLATE_NOOP("Host", "This cannot be kept."));
}

/// The outcome of work that only succeeds or fails.
Outcome outcomeOf(const Result<void, QString> &result)
{
    if (!result)
        return failure(result.error());
    return QVariant();
}

/// The rows of a statement that has them in its column \a column. One that cannot be read is left
/// out.
Outcome rowsOf(SqlStatement &statement, int column = 0)
{
    QVariantList rows;
    while (statement.next()) {
        const auto row = KeptRow::fromText(statement.bytes(column));
        if (row)
            rows.append(QVariant(row->toHash()));
        else
            VESK_WARN("A row that was kept cannot be read: " << row.error());
    }
    if (const auto result = statement.result(); !result)
        return failure(result.error());
    return QVariant(rows);
}

Library::Rows rowsIn(const QVariant &value)
{
    Library::Rows rows;
    const QVariantList list = value.toList();
    for (const QVariant &row : list)
        rows.append(VeskRoles(row.toHash()));
    return rows;
}

/// Answers with what \a convert makes of the work's value.
template <class T, class Convert>
Database::Done answering(const Library::Answer<T> &answer, Convert convert)
{
    return [answer, convert](const Outcome &outcome) {
        if (outcome)
            answer(convert(*outcome));
        else
            answer(failure(outcome.error()));
    };
}

Result<qint64, QString> count(sqlite3 *sql, const char *query)
{
    SqlStatement statement(sql, query);
    if (!statement.next())
        return failure(QString());
    return statement.number(0);
}

/// Removes what is beyond what is kept of each service, and of services.
Result<void, QString> trimRecents(sqlite3 *sql, const QString &service)
{
    const auto trimmed = SqlStatement(sql,
        "DELETE FROM recents WHERE service = ?1 AND heard < (SELECT min(heard) FROM"
        " (SELECT heard FROM recents WHERE service = ?1 ORDER BY heard DESC LIMIT ?2))")
                             .bind(service)
                             .bind(Library::MaxRecents)
                             .run();
    if (!trimmed)
        return trimmed;
    return SqlStatement(sql,
        "DELETE FROM recents WHERE service NOT IN (SELECT service FROM recents GROUP BY service"
        " ORDER BY max(heard) DESC LIMIT ?)")
        .bind(Library::MaxServices)
        .run();
}

/// Whether the favorite was not there before.
Result<bool, QString> insertFavorite(sqlite3 *sql, const CMPath &path, const QByteArray &text)
{
    SqlStatement update(sql, "UPDATE favorites SET row = ?2 WHERE path = ?1 RETURNING id");
    update.bind(path.toEncoded()).bind(text);
    const bool wasThere = update.next();
    if (const auto run = update.run(); !run)
        return failure(run.error());
    if (wasThere)
        return false;
    const auto favorites = count(sql, "SELECT count(*) FROM favorites");
    if (!favorites)
        return failure(favorites.error());
    if (*favorites >= Library::MaxFavorites) {
        return failure(words(QT_TRANSLATE_NOOP("Host", "There are %1 favorites already."),
            {TrArg(QString::number(Library::MaxFavorites))}));
    }
    const auto inserted = SqlStatement(sql,
        "INSERT INTO favorites (path, place, row)"
        " VALUES (?, (SELECT coalesce(max(place), 0) + 1 FROM favorites), ?)")
                              .bind(path.toEncoded())
                              .bind(text)
                              .run();
    if (!inserted)
        return failure(inserted.error());
    return true;
}

Result<void, QString> replacePreset(
    sqlite3 *sql, int number, const CMPath &path, const QByteArray &text)
{
    return SqlStatement(sql, "INSERT OR REPLACE INTO presets (number, path, row) VALUES (?, ?, ?)")
        .bind(number)
        .bind(path.toEncoded())
        .bind(text)
        .run();
}

/// A row on its way into the database.
struct Entry {
    int number = 0; ///< of a preset
    CMPath path {};
    QByteArray text {};
};

QString invalid(const char *list, int index)
{
    return words(QT_TRANSLATE_NOOP("Host", "Not imported: entry %1 of \"%2\" is not valid."),
        {TrArg(QString::number(index + 1)), TrArg(QLatin1String(list))});
}

QString notOurs()
{
    return words(QT_TRANSLATE_NOOP("Host", "Not imported: this is no library of this program."));
}

/// The rows of one of the lists of an exported library.
Result<QVector<Entry>, QString> entriesOf(const QJsonObject &library, const char *list, int most)
{
    const QJsonValue value = library.value(QLatin1String(list));
    if (value.isUndefined())
        return QVector<Entry>();
    if (!value.isArray() || value.toArray().size() > most)
        return failure(notOurs());
    const bool isNumbered = qstrcmp(list, "presets") == 0;
    const QJsonArray elements = value.toArray();
    QVector<Entry> entries;
    for (int i = 0; i < elements.size(); ++i) {
        QJsonObject json = elements.at(i).toObject();
        Entry entry;
        if (isNumbered) {
            entry.number = json.value(QLatin1String("number")).toInt();
            if (entry.number < 1 || entry.number > Library::Presets)
                return failure(invalid(list, i));
            json = json.value(QLatin1String("row")).toObject();
        }
        const auto row = KeptRow::fromJson(json);
        if (!row) {
            VESK_WARN("a library is not imported, " << list << ", entry " << i + 1 << ": "
                                                    << row.error());
            return failure(invalid(list, i));
        }
        const auto text = KeptRow::toText(*row);
        if (!text)
            return failure(invalid(list, i));
        entry.path = row->path();
        entry.text = *text;
        entries.append(entry);
    }
    return entries;
}

/// A statement's rows as they are in an export.
Result<QJsonArray, QString> exported(SqlStatement &statement, bool isNumbered)
{
    QJsonArray list;
    while (statement.next()) {
        const QJsonObject row = QJsonDocument::fromJson(statement.bytes(1)).object();
        if (isNumbered) {
            list.append(QJsonObject {{QStringLiteral("number"), int(statement.number(0))},
                {QStringLiteral("row"), row}});
        } else {
            list.append(row);
        }
    }
    if (const auto result = statement.result(); !result)
        return failure(result.error());
    return list;
}

} // namespace

Library::Library(Database *database, QObject *parent)
    : QObject(parent)
    , m_database(database)
{
}

Library::~Library() = default;

void Library::noteHeard(const VeskRoles &row)
{
    VESK_ASSERT_OWN_THREAD();
    const CMPath item = StreamChoice::itemOf(row);
    const auto text = KeptRow::toText(row);
    if (!text || item.isEmpty()) {
        VESK_INFO("not kept among what was heard: " << row.title());
        return;
    }
    m_database->run(
        [item, text = *text](sqlite3 *sql) {
            const auto inserted = SqlStatement(sql,
                "INSERT OR REPLACE INTO recents (path, service, heard, row)"
                " VALUES (?, ?, (SELECT coalesce(max(heard), 0) + 1 FROM recents), ?)")
                                      .bind(item.toEncoded())
                                      .bind(item.prefix())
                                      .bind(text)
                                      .run();
            return outcomeOf(inserted ? trimRecents(sql, item.prefix()) : inserted);
        },
        [library = QPointer<Library>(this)](const Outcome &outcome) {
            if (outcome && library)
                Q_EMIT library->recentsChanged();
        });
}

/// Never null, which SQL would not compare.
QString Library::prefixOf(const QString &service) const
{
    const QString prefix = m_prefixOfService ? m_prefixOfService(service) : QString();
    if (!prefix.isEmpty())
        return prefix;
    return service.isEmpty() ? QStringLiteral("") : service;
}

void Library::recents(const QString &service, const Answer<Rows> &answer)
{
    VESK_ASSERT_OWN_THREAD();
    m_database->run(
        [service = prefixOf(service)](sqlite3 *sql) {
            SqlStatement rows(sql,
                "SELECT row FROM recents WHERE ?1 = '' OR service = ?1 COLLATE NOCASE"
                " ORDER BY heard DESC LIMIT ?2");
            rows.bind(service).bind(MaxRecents);
            return rowsOf(rows);
        },
        answering<Rows>(answer, &rowsIn));
}

void Library::clearRecents(const QString &service, const Done &done)
{
    VESK_ASSERT_OWN_THREAD();
    m_database->run(
        [service = prefixOf(service)](sqlite3 *sql) {
            return outcomeOf(SqlStatement(
                sql, "DELETE FROM recents WHERE ?1 = '' OR service = ?1 COLLATE NOCASE")
                                 .bind(service)
                                 .run());
        },
        [this, done](const Outcome &outcome) {
            if (!outcome)
                return done(failure(outcome.error()));
            Q_EMIT recentsChanged();
            done({});
        });
}

void Library::favorites(const Answer<Rows> &answer)
{
    VESK_ASSERT_OWN_THREAD();
    m_database->run(
        [](sqlite3 *sql) {
            SqlStatement rows(sql, "SELECT row FROM favorites ORDER BY place");
            return rowsOf(rows);
        },
        answering<Rows>(answer, &rowsIn));
}

void Library::addFavorite(const VeskRoles &row, const Answer<qint64> &answer)
{
    VESK_ASSERT_OWN_THREAD();
    const auto text = KeptRow::toText(row);
    m_database->run(
        [path = row.path(), text](sqlite3 *sql) -> Outcome {
            if (!text)
                return failure(notKept());
            const auto inserted = insertFavorite(sql, path, *text);
            if (!inserted)
                return failure(inserted.error());
            SqlStatement id(sql, "SELECT id FROM favorites WHERE path = ?");
            if (!id.bind(path.toEncoded()).next())
                return failure(QString());
            return QVariant(id.number(0));
        },
        [this, answer](const Outcome &outcome) {
            if (!outcome)
                return answer(failure(outcome.error()));
            Q_EMIT favoritesChanged();
            answer(outcome->toLongLong());
        });
}

void Library::removeFavorite(const CMPath &path, const Done &done)
{
    VESK_ASSERT_OWN_THREAD();
    m_database->run(
        [path](sqlite3 *sql) {
            return outcomeOf(SqlStatement(sql, "DELETE FROM favorites WHERE path = ?")
                                 .bind(path.toEncoded())
                                 .run());
        },
        [this, done](const Outcome &outcome) {
            if (!outcome)
                return done(failure(outcome.error()));
            Q_EMIT favoritesChanged();
            done({});
        });
}

void Library::isFavorite(const CMPath &path, const Answer<bool> &answer)
{
    VESK_ASSERT_OWN_THREAD();
    m_database->run(
        [path](sqlite3 *sql) -> Outcome {
            SqlStatement found(sql, "SELECT 1 FROM favorites WHERE path = ?");
            const bool isThere = found.bind(path.toEncoded()).next();
            if (const auto result = found.result(); !result)
                return failure(result.error());
            return QVariant(isThere);
        },
        answering<bool>(answer, [](const QVariant &value) { return value.toBool(); }));
}

void Library::presets(const Answer<QVector<Preset>> &answer)
{
    VESK_ASSERT_OWN_THREAD();
    m_database->run(
        [](sqlite3 *sql) -> Outcome {
            SqlStatement statement(sql, "SELECT number, row FROM presets ORDER BY number");
            QVariantList list;
            while (statement.next()) {
                if (const auto row = KeptRow::fromText(statement.bytes(1))) {
                    list.append(
                        QVariant(QVariantList {statement.number(0), QVariant(row->toHash())}));
                }
            }
            if (const auto result = statement.result(); !result)
                return failure(result.error());
            return QVariant(list);
        },
        answering<QVector<Preset>>(answer, [](const QVariant &value) {
            QVector<Preset> presets;
            const QVariantList list = value.toList();
            for (const QVariant &each : list) {
                const QVariantList pair = each.toList();
                presets.append({pair.at(0).toInt(), VeskRoles(pair.at(1).toHash())});
            }
            return presets;
        }));
}

void Library::preset(int number, const Answer<VeskRoles> &answer)
{
    VESK_ASSERT_OWN_THREAD();
    m_database->run(
        [number](sqlite3 *sql) -> Outcome {
            SqlStatement statement(sql, "SELECT row FROM presets WHERE number = ?");
            auto rows = rowsOf(statement.bind(number));
            if (rows && rows->toList().isEmpty()) {
                return failure(words(QT_TRANSLATE_NOOP("Host", "Preset %1 is empty."),
                    {TrArg(QString::number(number))}));
            }
            return rows;
        },
        answering<VeskRoles>(answer, [](const QVariant &value) { return rowsIn(value).first(); }));
}

void Library::savePreset(int number, const VeskRoles &row, const Done &done)
{
    VESK_ASSERT_OWN_THREAD();
    const auto text = KeptRow::toText(row);
    m_database->run(
        [number, path = row.path(), text](sqlite3 *sql) -> Outcome {
            if (!text)
                return failure(notKept());
            return outcomeOf(replacePreset(sql, number, path, *text));
        },
        [this, done](const Outcome &outcome) {
            if (!outcome)
                return done(failure(outcome.error()));
            Q_EMIT presetsChanged();
            done({});
        });
}

void Library::clearPreset(int number, const Done &done)
{
    VESK_ASSERT_OWN_THREAD();
    m_database->run(
        [number](sqlite3 *sql) {
            return outcomeOf(
                SqlStatement(sql, "DELETE FROM presets WHERE number = ?").bind(number).run());
        },
        [this, done](const Outcome &outcome) {
            if (!outcome)
                return done(failure(outcome.error()));
            Q_EMIT presetsChanged();
            done({});
        });
}

void Library::exportAll(const Answer<QJsonObject> &answer)
{
    VESK_ASSERT_OWN_THREAD();
    m_database->run(
        [](sqlite3 *sql) -> Outcome {
            SqlStatement favorites(sql, "SELECT 0, row FROM favorites ORDER BY place");
            SqlStatement presets(sql, "SELECT number, row FROM presets ORDER BY number");
            const auto favoriteRows = exported(favorites, false);
            const auto presetRows = exported(presets, true);
            if (!favoriteRows || !presetRows)
                return failure(QString());
            return QVariant(QJsonObject {{QStringLiteral("version"), 1},
                {QStringLiteral("favorites"), *favoriteRows},
                {QStringLiteral("presets"), *presetRows}});
        },
        answering<QJsonObject>(answer, [](const QVariant &value) { return value.toJsonObject(); }));
}

void Library::importAll(const QJsonObject &library, const Answer<Imported> &answer)
{
    VESK_ASSERT_OWN_THREAD();
    const auto work = [library](sqlite3 *sql) -> Outcome {
        if (library.value(QLatin1String("version")).toInt() != 1)
            return failure(notOurs());
        const auto favorites = entriesOf(library, "favorites", MaxFavorites);
        if (!favorites)
            return failure(favorites.error());
        const auto presets = entriesOf(library, "presets", Presets);
        if (!presets)
            return failure(presets.error());
        int added = 0;
        for (const Entry &entry : *favorites) {
            const auto inserted = insertFavorite(sql, entry.path, entry.text);
            if (!inserted)
                return failure(inserted.error());
            added += *inserted ? 1 : 0;
        }
        for (const Entry &entry : *presets) {
            const auto saved = replacePreset(sql, entry.number, entry.path, entry.text);
            if (!saved)
                return failure(saved.error());
        }
        return QVariant(QVariantList {added, presets->size()});
    };
    m_database->run(work, [this, answer](const Outcome &outcome) {
        if (!outcome)
            return answer(failure(outcome.error()));
        const QVariantList counts = outcome->toList();
        Q_EMIT favoritesChanged();
        Q_EMIT presetsChanged();
        answer(Imported {counts.at(0).toInt(), counts.at(1).toInt()});
    });
}
