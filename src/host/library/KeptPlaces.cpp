// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/library/KeptPlaces.h"

#include "api/core/ThreadCheck.h"
#include "host/library/Database.h"
#include "host/library/Sql.h"

#include <QPointer>

#include <algorithm>
#include <utility>

KeptPlaces::KeptPlaces(Database *database, QObject *parent)
    : QObject(parent)
    , m_database(database)
    , m_isRead(!database)
{
    if (m_database)
        read();
}

void KeptPlaces::read()
{
    const auto work = [](sqlite3 *sql) -> Result<QVariant, QString> {
        QVariantList list;
        SqlStatement select(sql, "SELECT path, place FROM places ORDER BY kept DESC LIMIT ?");
        select.bind(MaxPlaces);
        while (select.next())
            list << select.text(0) << select.number(1);
        if (const auto result = select.result(); !result)
            return failure(result.error());
        return QVariant(list);
    };
    m_database->run(work, [self = QPointer<KeptPlaces>(this)](const auto &result) {
        if (!self)
            return;
        QList<Place> places;
        if (result) {
            const QVariantList list = result->toList();
            for (int i = 0; i + 1 < list.size(); i += 2)
                places.append({list.at(i).toString(), Milliseconds(list.at(i + 1).toLongLong())});
        }
        self->takeRead(places);
    });
}

void KeptPlaces::takeRead(const QList<Place> &places)
{
    for (const Place &place : places) {
        if (!m_changed.contains(place.path) && place.place.count() > 0)
            m_places.append(place);
    }
    m_places = m_places.mid(0, MaxPlaces);
    m_changed.clear();
    m_isRead = true;
    const QList<Search> waiting = std::exchange(m_waiting, {});
    for (const Search &search : waiting)
        search.found(placeOf(search.path));
}

void KeptPlaces::find(const CMPath &path, std::function<void(Milliseconds)> found)
{
    VESK_ASSERT_OWN_THREAD();
    if (m_isRead)
        found(placeOf(path.toEncoded()));
    else
        m_waiting.append({path.toEncoded(), std::move(found)});
}

EpisodePlaces::Milliseconds KeptPlaces::placeOf(const QString &path) const
{
    const auto found = std::find_if(m_places.begin(), m_places.end(),
        [&path](const Place &place) { return place.path == path; });
    return found == m_places.end() ? Milliseconds(0) : found->place;
}

void KeptPlaces::remove(const QString &path)
{
    if (!m_isRead)
        m_changed.append(path);
    m_places.erase(std::remove_if(m_places.begin(), m_places.end(),
                       [&path](const Place &place) { return place.path == path; }),
        m_places.end());
}

void KeptPlaces::keep(const CMPath &path, Milliseconds place)
{
    VESK_ASSERT_OWN_THREAD();
    const QString key = path.toEncoded();
    remove(key);
    m_places.prepend({key, place});
    m_places = m_places.mid(0, MaxPlaces);
    if (!m_database)
        return;
    m_database->run([key, place](sqlite3 *sql) -> Result<QVariant, QString> {
        const auto kept = SqlStatement(sql,
            "INSERT OR REPLACE INTO places (path, place, kept) "
            "VALUES (?, ?, (SELECT COALESCE(MAX(kept), 0) + 1 FROM places))")
                              .bind(key)
                              .bind(static_cast<qint64>(place.count()))
                              .run();
        if (!kept)
            return failure(kept.error());
        const auto bounded = SqlStatement(sql,
            "DELETE FROM places WHERE path NOT IN "
            "(SELECT path FROM places ORDER BY kept DESC LIMIT ?)")
                                 .bind(MaxPlaces)
                                 .run();
        if (!bounded)
            return failure(bounded.error());
        return QVariant();
    });
}

void KeptPlaces::forget(const CMPath &path)
{
    VESK_ASSERT_OWN_THREAD();
    const QString key = path.toEncoded();
    if (m_isRead && placeOf(key).count() == 0)
        return;
    remove(key);
    if (!m_database)
        return;
    m_database->run([key](sqlite3 *sql) -> Result<QVariant, QString> {
        const auto forgotten
            = SqlStatement(sql, "DELETE FROM places WHERE path = ?").bind(key).run();
        if (!forgotten)
            return failure(forgotten.error());
        return QVariant();
    });
}
