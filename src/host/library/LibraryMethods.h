// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/VeskRoles.h"
#include "base/Result.h"
#include "host/rpc/JsonRpcDispatcher.h"

#include <QObject>

#include <functional>

class AddressGate;
class Library;
class PlayLogic;

/// The methods about what the listener keeps: favorites.add, .remove and .state; presets.list,
/// .save, .play and .clear; recents.clear; library.export and .import. docs/rpc.md describes them
/// for clients. What changes something is answered once it is on the disk. Main thread; what it is
/// made with outlives it.
class LibraryMethods : public QObject {
    Q_OBJECT

public:
    LibraryMethods(JsonRpcDispatcher *dispatcher, Library *library, PlayLogic *player,
        QObject *parent = nullptr);
    ~LibraryMethods() override;

    /// Which screens clients may take rows from; without one, all.
    void setGate(AddressGate *gate) { m_gate = gate; }
    /// Called with each icon that is sent to clients.
    void setIconSeen(std::function<void(const QString &icon)> seen)
    {
        m_iconSeen = std::move(seen);
    }

Q_SIGNALS:
    /// presets.changed, for every client with a WebSocket.
    void notification(const QString &method, const QVariant &params);

private:
    using TakeRow = std::function<void(const VeskRoles &row)>;

    void addFavorite(const JsonRpcCallPtr &call);
    void removeFavorite(const JsonRpcCallPtr &call);
    void tellFavorite(const JsonRpcCallPtr &call);
    void listPresets(const JsonRpcCallPtr &call);
    void savePreset(const JsonRpcCallPtr &call);
    void playPreset(const JsonRpcCallPtr &call);
    void clearPreset(const JsonRpcCallPtr &call);
    void clearRecents(const JsonRpcCallPtr &call);
    void exportLibrary(const JsonRpcCallPtr &call);
    void importLibrary(const JsonRpcCallPtr &call);

    /// The row that the parameters name, or that plays; the call fails when there is none.
    void withRow(const JsonRpcCallPtr &call, const TakeRow &take);
    /// Its path; empty when the call has failed.
    CMPath pathOf(const JsonRpcCallPtr &call) const;
    VeskRoles playing() const;

    Library *const m_library;
    PlayLogic *const m_player;
    AddressGate *m_gate = nullptr;
    std::function<void(const QString &)> m_iconSeen;
};
