// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMError.h"
#include "api/values/VeskRoles.h"
#include "base/Result.h"

#include <QJsonObject>
#include <QList>
#include <QObject>
#include <QVariant>
#include <QVector>

#include <functional>

class Database;

/// What the listener has heard and wants to hear again, across all services: the last items that
/// sounded, favorites in their order, and numbered presets. All of it is in the database, and
/// nothing else; every answer comes from there, through the main thread's event loop, once the disk
/// has it. An error is in words for whoever asked. Main thread; \a database must outlive it.
class Library : public QObject {
    Q_OBJECT

public:
    /// Items that are kept of each service, and shown of all of them together.
    static constexpr int MaxRecents = 200;
    static constexpr int MaxServices = 50;
    static constexpr int MaxFavorites = 1000;
    static constexpr int Presets = 12; ///< numbered from 1

    template <class T>
    using Answer = std::function<void(const Result<T, QString> &)>;
    using Done = std::function<void(const Result<void, QString> &)>;
    using Rows = QVector<VeskRoles>;

    struct Preset {
        int number = 0;
        VeskRoles row;
    };
    struct Imported {
        int favorites = 0; ///< those that were not there before
        int presets = 0;
    };

    explicit Library(Database *database, QObject *parent = nullptr);
    ~Library() override;

    /// The prefix of the paths of the service with an id; empty when it is not known. Without it,
    /// and for a service that is not there, the id is taken for the prefix, in any case of letters.
    void setPrefixOfService(std::function<QString(const QString &id)> prefix)
    {
        m_prefixOfService = std::move(prefix);
    }

    /// \a row sounds: it is the latest. An item is there once, whichever of its rows was played.
    void noteHeard(const VeskRoles &row);
    /// Those of the service with this id; an empty one: of all. The latest first.
    void recents(const QString &service, const Answer<Rows> &answer);
    void clearRecents(const QString &service, const Done &done);

    void favorites(const Answer<Rows> &answer);
    /// Puts \a row at the end, and answers with its id. A row that is there already, by its path,
    /// keeps its place.
    void addFavorite(const VeskRoles &row, const Answer<qint64> &answer);
    /// Succeeds without one, too.
    void removeFavorite(const CMPath &path, const Done &done);
    void isFavorite(const CMPath &path, const Answer<bool> &answer);

    /// Those that are taken, in their order.
    void presets(const Answer<QVector<Preset>> &answer);
    void preset(int number, const Answer<VeskRoles> &answer);
    /// Replaces what the preset was before.
    void savePreset(int number, const VeskRoles &row, const Done &done);
    void clearPreset(int number, const Done &done);

    /// {"version": 1, "favorites": [row, ...], "presets": [{"number": 1, "row": row}, ...]}, with
    /// rows as KeptRow has them.
    void exportAll(const Answer<QJsonObject> &answer);
    /// Adds the favorites and sets the presets of what exportAll() gave, here or elsewhere; all of
    /// it or nothing.
    void importAll(const QJsonObject &library, const Answer<Imported> &answer);

Q_SIGNALS:
    void recentsChanged();
    void favoritesChanged();
    void presetsChanged();

private:
    QString prefixOf(const QString &service) const;

    Database *const m_database;
    std::function<QString(const QString &)> m_prefixOfService;
};
