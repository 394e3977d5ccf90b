// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/store/VeskStore.h"
#include "modules/stations/StationsData.h"

#include <QHash>
#include <QObject>
#include <QStringList>

#include <deque>
#include <functional>

/// An entry of the listener's list.
struct StationsItem {
    QString key; ///< by which the store and paths know it
    QString folder; ///< the key of the one that it is in; empty for the list itself
    qint64 order = 0; ///< ascending in its folder
    QString title;
    QString address; ///< empty for a folder
    QString picture;
    QString description;

    bool isFolder() const { return address.isEmpty(); }
};

/// The listener's own list, kept in the plug-in's store. On the thread on which it is created.
///
/// Each entry has a key of its own in the store, "s" or "f" (station, folder) with ten random
/// characters, so that a change writes only the entries that it concerns: one when a station is
/// added, renamed or moved to another folder, two when it moves up or down. The value has six
/// lines: order, folder, title, address, picture, description; empty ones at the end are left out.
/// A usual station takes 120 bytes: the store's MiB has space for all StationsLimits::Entries. The
/// place in the folder is a number of the entry and no list of the folder's, which would have to
/// be written with every station that is added.
///
/// Changes are carried out one after another, each when the one before is in the store or was
/// refused, and take effect once the store has confirmed them. One that is refused changes nothing.
class StationsList : public QObject {
    Q_OBJECT

public:
    /// \a config is what worker_create() was given.
    explicit StationsList(const QVariantHash &config, QObject *parent = nullptr);

    int size() const { return m_items.size(); }
    /// Null when there is none (any more).
    const StationsItem *find(const QString &key) const;
    /// The station with an \a address as stationsAddress() returns it; null when there is none.
    const StationsItem *findAddress(const QString &address) const;
    /// The entries of a folder in their order.
    const QStringList &keysIn(const QString &folder) const;
    /// All entries, a folder before what is in it.
    QStringList allKeys() const;
    /// The titles of \a folder and those around it, from the outside in.
    QStringList titlesOf(const QString &folder) const;
    /// How many stations there are in \a folder and those below.
    int stationsIn(const QString &folder) const;
    /// Whether a folder could be made in \a folder, or \a key moved there.
    bool canHoldFolder(const QString &folder) const;
    bool canMoveTo(const QString &key, const QString &folder) const;
    /// What there is in \a folder.
    std::vector<StationsEntry> entriesIn(const QString &folder) const;

    /// Called once the change is in effect, or with why it is not.
    using Done = std::function<void(const CMError &error)>;
    void add(const QString &folder, const StationsEntry &station, Done done);
    void addFolder(const QString &folder, const QString &title, Done done);
    void rename(const QString &key, const QString &title, Done done);
    /// One place up (-1) or down (1) in its folder; at the end nothing happens.
    void move(const QString &key, int by, Done done);
    void moveTo(const QString &key, const QString &folder, Done done);
    /// A folder that is not empty only \a withAll.
    void remove(const QString &key, bool withAll, Done done);
    /// Folders first.
    void sort(const QString &folder, Done done);
    /// Adds what is not in the list yet; \a known counts the others.
    using Merged = std::function<void(const CMError &error, int added, int known)>;
    void merge(const std::vector<StationsEntry> &entries, Merged merged);

Q_SIGNALS:
    void changed();

private:
    using Changes = VeskStore::Changes;
    /// Called when the change's turn has come.
    using Plan = std::function<CMError(Changes &changes)>;
    struct Task {
        Plan plan;
        Done done;
    };
    class Merge;

    void enqueue(Plan plan, Done done);
    void runNext();
    void load();
    void apply(const QString &key, const QByteArray &value);
    void place(const StationsItem &item);
    void take(const QString &key);
    bool reachesRoot(const StationsItem &item) const;
    int depthOf(const QString &folder) const { return titlesOf(folder).size(); }
    int heightOf(const QString &key) const;
    QString folderCalled(const QString &title, const QString &folder) const;
    CMError missingFolder(const QString &folder) const;
    qint64 lastOrder(const QString &folder) const;
    QString newKey(bool isFolder, const Changes &changes) const;
    void arrange(const QStringList &keys, Changes &changes) const;
    void collect(const QString &folder, QStringList &keys) const;

    VeskStore m_store;
    QHash<QString, StationsItem> m_items; ///< by key
    QHash<QString, QStringList> m_folders; ///< keys by folder, in their order
    QHash<QString, QString> m_addresses; ///< keys by address
    std::deque<Task> m_tasks; ///< the first is being carried out while m_isWriting
    bool m_isWriting = false;
};
