// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMActivateNode.h"
#include "api/nodes/CMContainerNode.h"
#include "api/store/VeskStore.h"
#include "modules/radiobrowser/RadioBrowserClient.h"
#include "modules/radiobrowser/RadioBrowserRows.h"

#include <QList>

/// \file
/// The stations that the listener wants to find again. All live on the worker's thread.

/// The favorites, in the plug-in's store: under each station's id what the directory said of it
/// when it was added, so that they are there without the directory.
class RadioBrowserFavorites : public QObject {
    Q_OBJECT

public:
    /// One more is refused.
    static constexpr int Most = 1000;

    /// \a config is what worker_create() was given.
    explicit RadioBrowserFavorites(const QVariantHash &config, QObject *parent = nullptr);

    /// Whether there is a store.
    bool areAvailable() const { return m_store.isAvailable(); }
    bool contains(const QString &uuid) const { return m_store.contains(uuid); }
    /// In the order in which they were added.
    QList<RadioBrowserStation> stations() const;

    /// Each calls \a done through the event loop when it is on the disk, or with an error.
    void add(const RadioBrowserStation &station, VeskStore::Done done);
    void remove(const QString &uuid, VeskStore::Done done);

Q_SIGNALS:
    void changed(const QString &uuid);

private:
    void write(const QString &uuid, const QByteArray &value, VeskStore::Done done);

    VeskStore m_store;
};

/// The screen with the favorites.
class RadioBrowserFavoritesNode : public CMContainerNode {
    Q_OBJECT

public:
    RadioBrowserFavoritesNode(
        RadioBrowserFavorites *favorites, const CMPath &path, const RadioBrowserStationRows &rows);

    bool getRowsRequest(const CMGetRowsRequest &request) override;

private:
    const RadioBrowserFavorites *const m_favorites;
    const RadioBrowserStationRows m_rows;
};

/// The entry of a station's menu that makes it a favorite, or one no longer. The path's parameter
/// names the station. What becomes a favorite is asked of the directory.
class RadioBrowserFavoriteNode : public CMActivateNode {
    Q_OBJECT

public:
    RadioBrowserFavoriteNode(
        RadioBrowserClient *client, RadioBrowserFavorites *favorites, const CMPath &path);

    QVariant getRoleData(const QString &role, const Params &params) override;

private:
    void toggle(const CMSetDataRequest &request);
    void add(const QString &uuid, const CMSetDataRequest &request);

    RadioBrowserClient *const m_client;
    RadioBrowserFavorites *const m_favorites;
};
