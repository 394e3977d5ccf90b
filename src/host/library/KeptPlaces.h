// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/player/EpisodePlaces.h"

#include <QList>
#include <QObject>

class Database;

/// Where the 200 episodes heard last were left, in the table "places" of the library, which is read
/// once. What cannot be kept lasts until the host ends. Main thread.
class KeptPlaces : public QObject, public EpisodePlaces {
    Q_OBJECT

public:
    static constexpr int MaxPlaces = 200;

    /// Null: nothing is stored beyond this run. Must outlive this object.
    explicit KeptPlaces(Database *database, QObject *parent = nullptr);

    void find(const CMPath &path, std::function<void(Milliseconds)> found) override;
    void keep(const CMPath &path, Milliseconds place) override;
    void forget(const CMPath &path) override;

private:
    struct Place {
        QString path;
        Milliseconds place {0};
    };
    struct Search {
        QString path;
        std::function<void(Milliseconds)> found;
    };

    void read();
    void takeRead(const QList<Place> &places);
    Milliseconds placeOf(const QString &path) const;
    void remove(const QString &path);

    Database *const m_database;
    bool m_isRead = false;
    QList<Place> m_places; ///< most recent first
    QList<QString> m_changed; ///< before the table was read
    QList<Search> m_waiting; ///< for the table
};
