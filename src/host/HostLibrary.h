// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/Result.h"
#include "base/files/Problem.h"
#include "host/library/Database.h"
#include "host/library/KeptPlaces.h"
#include "host/library/Library.h"
#include "host/library/LibraryMethods.h"
#include "host/library/LibraryScreens.h"
#include "host/library/Resumption.h"

#include <QObject>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>

class AddressGate;
class CMNodes;
class CMValuesWorker;
class HttpServer;
class JsonRpcDispatcher;
class NetworkMonitor;
class PlayLogic;

/// What the host remembers, wired to the rest of it: the database, what the listener keeps with its
/// screens and methods, and what goes on after a start. Main thread; what it is given outlives it,
/// or leave() comes before.
class HostLibrary : public QObject {
    Q_OBJECT

public:
    /// As Database. Begins to read what played last.
    HostLibrary(const QString &stateFolder, const Result<void, files::Problem> &held,
        PlayLogic *player, QObject *parent = nullptr);
    ~HostLibrary() override;

    Database *database() { return &m_database; }
    Library *library() { return &m_library; }

    /// The screens, among those of the host's own worker.
    void listIn(CMNodes *nodes);
    /// The methods.
    void addTo(JsonRpcDispatcher *dispatcher, AddressGate *gate,
        std::function<void(const QString &icon)> iconSeen,
        std::function<QString(const QString &id)> prefixOfService);
    /// Who is notified of changes.
    void addTo(HttpServer *server);
    /// The services are there: goes on with what played, if the settings say so.
    void goOn(const CMValuesWorker &values, NetworkMonitor *network);

    /// The host is about to stop what plays.
    void endCleanly() { m_resumption.leave(); }
    /// Before the dispatcher and the worker of the screens go.
    void leave();
    /// The same as Database::close().
    bool close(std::chrono::steady_clock::time_point deadline);

private:
    PlayLogic *const m_player;
    Database m_database;
    Library m_library;
    KeptPlaces m_places;
    Resumption m_resumption;
    std::unique_ptr<LibraryScreens> m_screens;
    std::unique_ptr<LibraryMethods> m_methods;
};
