// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/HostLibrary.h"

#include "api/core/vesk.h"
#include "api/nodes/CMValuesWorker.h"
#include "host/NetworkMonitor.h"
#include "host/http/HttpServer.h"
#include "host/player/PlayLogic.h"
#include "host/rpc/JsonRpc.h"
#include "host/settings/HostValues.h"

HostLibrary::HostLibrary(const QString &stateFolder, const Result<void, files::Problem> &held,
    PlayLogic *player, QObject *parent)
    : QObject(parent)
    , m_player(player)
    , m_database(stateFolder, held)
    , m_library(&m_database)
    , m_places(&m_database)
    , m_resumption(&m_database, player)
{
    player->setEpisodePlaces(&m_places);
    veskConnect(player, &PlayLogic::heard, &m_library, &Library::noteHeard);
}

HostLibrary::~HostLibrary()
{
    m_player->setEpisodePlaces(nullptr);
}

void HostLibrary::listIn(CMNodes *nodes)
{
    m_screens = std::make_unique<LibraryScreens>(&m_library, &m_database, nodes);
}

void HostLibrary::addTo(JsonRpcDispatcher *dispatcher, AddressGate *gate,
    std::function<void(const QString &)> iconSeen,
    std::function<QString(const QString &)> prefixOfService)
{
    m_methods = std::make_unique<LibraryMethods>(dispatcher, &m_library, m_player);
    m_methods->setGate(gate);
    m_methods->setIconSeen(std::move(iconSeen));
    m_library.setPrefixOfService(std::move(prefixOfService));
}

void HostLibrary::addTo(HttpServer *server)
{
    connect(m_methods.get(), &LibraryMethods::notification, server,
        [server](const QString &method, const QVariant &params) {
            server->sendToAll(jsonRpcNotification(method, params));
        });
}

void HostLibrary::goOn(const CMValuesWorker &values, NetworkMonitor *network)
{
    connect(network, &NetworkMonitor::connectedChanged, &m_resumption, [this](bool connected) {
        if (connected)
            m_resumption.networkIsBack();
    });
    const VeskValue when = values.value(hostResumePath());
    m_resumption.mayStart(Resumption::whenOf(plainValue(when).toString()));
}

void HostLibrary::leave()
{
    m_methods.reset();
    m_screens.reset();
}

bool HostLibrary::close(std::chrono::steady_clock::time_point deadline)
{
    return m_database.close(deadline);
}
