// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/Host.h"

#include "api/core/Language.h"
#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "api/core/vesk.h"
#include "api/nodes/CMRootWorker.h"
#include "api/nodes/CMValuesWorker.h"
#include "api/values/VeskValuePaths.h"
#include "api/web/AddressPolicy.h"
#include "api/web/HttpClient.h"
#include "host/DeviceAccess.h"
#include "host/HostAlarms.h"
#include "host/HostConfig.h"
#include "host/HostLibrary.h"
#include "host/NetworkMonitor.h"
#include "host/Plugins.h"
#include "host/RemoteControls.h"
#include "host/ServiceManager.h"
#include "host/ServicesWorker.h"
#include "host/announce/Announcement.h"
#include "host/player/ChosenStreams.h"
#include "host/player/PlayLogic.h"
#include "host/player/StreamPlayer.h"
#include "host/rpc/AddressGate.h"
#include "host/rpc/OutputMethods.h"
#include "host/rpc/PlayerMethods.h"
#include "host/rpc/RpcMethods.h"
#include "host/rpc/ServiceFaults.h"
#include "host/rpc/VolumeMethods.h"
#include "host/settings/SettingsStore.h"
#include "host/sound/Outputs.h"
#include "host/sound/OutputsScreen.h"
#include "host/sound/PlayerVolume.h"
#include "host/store/PluginStores.h"
#include "host/web/Artwork.h"
#include "host/web/WebFiles.h"
#include "plugin/runtime/HostFolders.h"
#include "plugin/runtime/Logging.h"
#include "plugin/runtime/UiLanguage.h"
#include "plugin/supervision/PluginStoreAccess.h"

#include <QSysInfo>
#include <QTimer>

#include <algorithm>

VESK_LOGGER("Host")

Host::Host(const HostOptions &options, QObject *parent)
    : QObject(parent)
    , m_options(options)
    , m_manager(std::make_unique<ServiceManager>())
    , m_root(std::make_unique<CMRootWorker>())
    , m_values(std::make_unique<CMValuesWorker>())
{
}

Host::~Host()
{
    m_announcement.reset();
    m_remoteControls.reset();
    // The server first, so that no request is left when the workers go.
    m_http.reset();
    m_artwork.reset();
    m_volumeMethods.reset();
    m_playerMethods.reset();
    m_methods.reset();
    if (m_access)
        m_access->leave();
    if (m_library)
        m_library->leave();
    if (m_alarms)
        m_alarms->leave();
    m_rpc.reset();
    m_gate.reset();
    if (m_playLogic)
        m_playLogic->setFaultWords({});
    m_faults.reset();
    m_plugins.reset();
    PlayLogicInterface::setPlayerInstance(nullptr);
    m_alarms.reset();
    m_library.reset();
    m_outputs.reset();
    m_playLogic.reset();
    m_chosenStreams.reset();
    m_volume.reset();
    m_streamPlayer.reset();
    m_services.reset();
    m_language.reset();
    m_network.reset();
    m_access.reset();
    if (m_stores)
        m_root->removeWorker(m_stores.get());
    m_stores.reset();
    m_settings.reset();
    m_config.reset();
    m_root->removeWorker(m_values.get());
}

void Host::start()
{
    VESK_ASSERT_OWN_THREAD();
    if (!setUpValues())
        return;
    setUpNetwork();
    setUpAddressPolicy();
    for (const PluginOptions &plugin : m_options.plugins) {
        const QString folder = plugin.descriptor.catalogueFolder(plugin.file);
        if (plugin.problem.isEmpty() && !folder.isEmpty())
            Language::addCatalogues(folder, plugin.descriptor.id);
    }
    m_language = std::make_unique<UiLanguage>(HostFolders::translations());
    m_services = std::make_unique<ServicesWorker>();
    listSettings();
    HttpClient::setConnectTo(m_options.connectTo);
    setUpPlayer();
    setUpPlugins();
}

bool Host::setUpValues()
{
    m_options.values.defineIn(m_values.get());
    m_config = std::make_unique<HostConfig>(m_options, m_values.get());
    for (const QString &prefix : hostValuePrefixes())
        m_root->addWorker(prefix, m_values.get());

    const QString folder = stateFolder();
    if (folder.isEmpty())
        VESK_WARN("There is no folder for settings: changes last until the host ends.");
    m_settings = std::make_unique<SettingsStore>(folder, m_options.values, m_values.get());
    if (const auto loaded = m_settings->load(); !loaded) {
        Q_EMIT failed(loaded.error());
        return false;
    }
    m_config->setUnpinned(m_settings->overruled());
    m_stores = std::make_unique<PluginStores>(folder, m_settings->held());
    m_root->addWorker(PluginStoreAccess::prefix(), m_stores.get());
    m_access = std::make_unique<DeviceAccess>(m_options, folder, m_settings->held());
    return true;
}

QString Host::stateFolder() const
{
    return m_options.stateFolderInUse();
}

void Host::setUpNetwork()
{
    m_network = std::make_unique<NetworkMonitor>();
    const auto follow = [this](bool connected) {
        m_values->setValue(VeskNetworkStateConnected(), VeskValue::fromBool(connected));
    };
    connect(m_network.get(), &NetworkMonitor::connectedChanged, this, follow);
    follow(m_network->isConnected());
    m_values->setValue(
        VeskNetworkStateEthernetMAC(), VeskValue::fromString(NetworkMonitor::ethernetMac()));
    if (!m_values->value(VeskNetworkStateConnected()).bool_())
        VESK_WARN("There is no network connection yet.");
}

/// Addresses that services name may lie as far inside as the services themselves, or anywhere if
/// the user allows it.
void Host::setUpAddressPolicy()
{
    const AddressReach reach = AddressPolicy::ofConnectTo(m_options.connectTo);
    const auto follow = [values = m_values.get(), reach](const CMPath &path) {
        if (path == hostLocalAddressesPath())
            AddressPolicy::setCurrent(values->value(path).bool_() ? AddressReach::Machine : reach);
    };
    // Directly, so that it holds before the request that set it is answered.
    connect(m_values.get(), &CMValuesWorker::valueChanged, this, follow, Qt::DirectConnection);
    follow(hostLocalAddressesPath());
}

void Host::setUpPlayer()
{
    m_streamPlayer = std::make_unique<StreamPlayer>(m_options.audio);
    setUpSound();
    m_chosenStreams = std::make_unique<ChosenStreams>(stateFolder());
    m_playLogic = std::make_unique<PlayLogic>(m_streamPlayer.get());
    m_playLogic->setChosenStreams(m_chosenStreams.get());
    PlayLogicInterface::setPlayerInstance(m_playLogic.get());
    const auto followPauseBuffer = [this](const CMPath &path) {
        if (path == playerPauseBufferPath())
            m_streamPlayer->setPauseBuffer(std::chrono::minutes(m_values->value(path).int_()));
    };
    connect(m_values.get(), &CMValuesWorker::valueChanged, m_streamPlayer.get(), followPauseBuffer);
    followPauseBuffer(playerPauseBufferPath());
    m_library = std::make_unique<HostLibrary>(stateFolder(), m_settings->held(), m_playLogic.get());
    m_library->listIn(m_services->nodes());
    m_alarms
        = std::make_unique<HostAlarms>(m_library->database(), m_playLogic.get(), m_volume.get());
    connect(m_playLogic.get(), &PlayLogic::changed, this, &Host::showStatus);
    connect(m_network.get(), &NetworkMonitor::connectedChanged, m_streamPlayer.get(),
        [player = m_streamPlayer.get()](bool connected) {
            if (connected)
                player->networkIsBack();
        });
    setUpOutputs();
}

void Host::setUpOutputs()
{
    m_outputs = std::make_unique<Outputs>(m_streamPlayer->sound(), m_values.get(),
        m_options.isAudioGiven ? std::optional(m_options.audio) : std::nullopt);
    new OutputsScreen(m_outputs.get(), m_services->nodes()); // which own it
    // What played when the device went goes on, if nothing was done about it meanwhile.
    connect(
        m_outputs.get(), &Outputs::deviceIsBack, m_playLogic.get(), [logic = m_playLogic.get()] {
            if (logic->endedByOutput())
                logic->playRow(logic->row(), [](const CMError &, const VeskHash &) {});
        });
}

void Host::setUpSound()
{
    m_volume = std::make_unique<PlayerVolume>(m_streamPlayer->sound(), m_values.get());
    const auto follow = [this](const CMPath &path) {
        if (path == playerSeamlessPath())
            m_streamPlayer->setSeamless(m_values->value(path).bool_());
        else if (path == playerEvennessPath())
            m_streamPlayer->sound()->setEven(m_values->value(path).bool_());
    };
    connect(m_values.get(), &CMValuesWorker::valueChanged, m_streamPlayer.get(), follow);
    follow(playerSeamlessPath());
    follow(playerEvennessPath());
}

void Host::setUpPlugins()
{
    m_plugins
        = std::make_unique<Plugins>(m_options, m_values.get(), m_playLogic.get(), m_stores.get());
    connect(m_plugins.get(), &Plugins::loaded, this, [this] {
        if (m_stopping)
            return;
        m_plugins->listIn(m_services.get());
        listen();
        m_library->goOn(*m_values, m_network.get());
    });
    veskConnect(m_plugins.get(), &Plugins::unloaded, this, &Host::finishStop);
    m_plugins->load();
}

void Host::listSettings()
{
    m_services->addSettings(TrString("Host", QT_TRANSLATE_NOOP("Host", "General")),
        m_options.values.in(HostValueGroup::General));
    m_services->addSettings(TrString("Host", QT_TRANSLATE_NOOP("Host", "Browsing")),
        m_options.values.in(HostValueGroup::Browsing));
    m_services->addAdvancedSettings(m_options.values.in(HostValueGroup::Advanced));
}

void Host::setUpPage()
{
    m_page = std::make_unique<WebFiles>(HostFolders::webPage());
    if (m_page->isEmpty())
        VESK_WARN("The content browser's page is not installed.");
    m_artwork = std::make_unique<Artwork>();
    const auto remember
        = [artwork = m_artwork.get()](const QString &icon) { artwork->remember(icon); };
    m_methods->setIconSeen(remember);
    m_playerMethods->setIconSeen(remember);
    m_http->addResource(m_page.get());
    m_http->addResource(m_artwork.get());
}

void Host::listen()
{
    if (m_stopping)
        return;
    m_rpc = std::make_unique<JsonRpcDispatcher>();
    m_config->addTo(m_rpc.get());
    m_methods = std::make_unique<RpcMethods>(m_rpc.get());
    connect(m_values.get(), &CMValuesWorker::valueChanged, m_methods.get(),
        [methods = m_methods.get()] { methods->forgetScreens(); });
    m_playerMethods = std::make_unique<PlayerMethods>(m_rpc.get(), m_playLogic.get());
    m_playerMethods->setVolume(m_volume.get());
    m_volumeMethods = std::make_unique<VolumeMethods>(m_rpc.get(), m_volume.get());
    addOutputMethods(m_rpc.get(), m_outputs.get());
    m_playerMethods->setOutputs(m_outputs.get());
    m_gate = std::make_unique<AddressGate>();
    m_plugins->declareIn(m_gate.get());
    m_methods->setGate(m_gate.get());
    m_plugins->declareIn(m_playLogic.get());
    m_faults = std::make_unique<ServiceFaults>();
    m_plugins->declareIn(m_faults.get());
    m_playLogic->setFaultWords(
        [faults = m_faults.get()](const CMPath &path, const VeskServiceFault &fault) {
            return faults->words(path, fault);
        });
    m_methods->setServiceFaults(m_faults.get());
    m_playerMethods->setGate(m_gate.get());
    m_library->addTo(
        m_rpc.get(), m_gate.get(), [this](const QString &icon) { m_artwork->remember(icon); },
        [this](const QString &id) { return m_plugins->prefixOf(id); });
    if (!setUpServer())
        return;
    m_library->addTo(m_http.get());
    m_alarms->addTo(m_rpc.get(), m_gate.get(), m_library->library(),
        [this](const QString &icon) { m_artwork->remember(icon); });
    m_alarms->addTo(m_http.get());
    connect(m_playerMethods.get(), &PlayerMethods::changed, m_http.get(),
        [http = m_http.get()](const QVariant &state) {
            http->sendToAll(jsonRpcNotification(QStringLiteral("player.changed"), state));
        });
    connect(m_outputs.get(), &Outputs::changed, m_http.get(), [http = m_http.get()] {
        http->sendToAll(jsonRpcNotification(QStringLiteral("outputs.changed"), QVariantHash()));
    });
    for (ListenAddress address : m_options.listenAddresses()) {
        if (address.port == 0) // the same one everywhere
            address.port = m_http->port();
        if (const auto listening = m_http->listen(address); !listening) {
            Q_EMIT failed(
                QStringLiteral("%1, port %2: %3")
                    .arg(address.address, QString::number(address.port), listening.error()));
            return;
        }
    }
    VESK_INFO("ready at " << m_http->url());
    const QStringList urls = m_access->urls();
    for (const QString &url : urls)
        VESK_INFO("for paired devices at " << url);
    announce();
    m_remoteControls = std::make_unique<RemoteControls>(m_playLogic.get());
    m_remoteControls->useVolume(m_volume.get());
    m_remoteControls->followPresets(m_library->library());
    m_remoteControls->offer();
    showStatus();
    m_manager->ready();
    Q_EMIT ready(m_http->url());
}

void Host::announce()
{
    const auto addresses = m_http->addresses();
    const auto served = std::find_if(addresses.begin(), addresses.end(),
        [](const ListenAddress &address) { return address.isBeyondLoopback(); });
    if (served == addresses.end())
        return;
    AnnouncedHost host;
    host.name = QStringLiteral("Vesk (%1)").arg(QSysInfo::machineHostName());
    host.port = served->port;
    host.isTls = m_access->isTls();
    host.path = QString::fromLatin1(m_options.names.basePath) + QLatin1Char('/');
    m_announcement = std::make_unique<Announcement>(host);
}

bool Host::setUpServer()
{
    HttpServerLimits limits;
    limits.connections = m_options.connections;
    m_http = std::make_unique<HttpServer>(m_rpc.get(), limits);
    const auto access = m_access->forServer();
    if (!access) {
        Q_EMIT failed(access.error());
        return false;
    }
    m_http->setAccess(*access);
    m_access->addTo(m_http.get(), m_rpc.get());
    setUpPage();
    return true;
}

void Host::showStatus()
{
    const VeskPlayLogicData data = m_playLogic->currentData();
    const QString title = data.trackRoles().title().toString();
    setLogStation(data.state() == VeskPlayLogicState::stopped ? QString() : title);
    switch (data.state()) {
    case VeskPlayLogicState::playing:
        return m_manager->setStatus(QStringLiteral("playing %1").arg(title));
    case VeskPlayLogicState::transitioning:
        return m_manager->setStatus(QStringLiteral("connecting to %1").arg(title));
    case VeskPlayLogicState::paused:
        return m_manager->setStatus(QStringLiteral("paused: %1").arg(title));
    default:
        return m_manager->setStatus(QStringLiteral("nothing plays"));
    }
}

void Host::reconfigure(const HostOptions &options)
{
    VESK_ASSERT_OWN_THREAD();
    if (m_config && !m_stopping)
        m_config->reconfigure(options);
}

void Host::renewIdentity()
{
    VESK_ASSERT_OWN_THREAD();
    if (m_access && !m_stopping)
        m_access->renewIdentity();
}

void Host::stop()
{
    VESK_ASSERT_OWN_THREAD();
    if (m_stopping)
        return;
    m_stopping = true;
    VESK_INFO("stopping");
    m_manager->stopping();
    m_announcement.reset();
    m_remoteControls.reset();
    if (m_http)
        m_http->close();
    if (m_library)
        m_library->endCleanly();
    if (m_alarms)
        m_alarms->endCleanly();
    // The plug-ins get to report what played before they are unloaded.
    if (m_playLogic) {
        m_playLogic->stop();
        if (m_playLogic->hasUnansweredPosts()) {
            veskConnect(m_playLogic.get(), &PlayLogic::postsAnswered, this, &Host::unloadPlugins);
            QTimer::singleShot(ReportTimeout, this, &Host::unloadPlugins);
            return;
        }
    }
    unloadPlugins();
}

void Host::unloadPlugins()
{
    if (m_unloading)
        return;
    m_unloading = true;
    // Ends the exchanges that plug-ins wait for, so that they can be unloaded.
    HttpClient::shutDownAll();
    QTimer::singleShot(UnloadTimeout, this, [this] {
        if (!m_stopped) {
            VESK_ERROR("A plug-in does not end; leaving it behind.");
            m_stopped = true;
            Q_EMIT stopped(false);
        }
    });
    if (m_plugins)
        m_plugins->unload();
    else
        QMetaObject::invokeMethod(this, &Host::finishStop, Qt::QueuedConnection);
}

void Host::finishStop()
{
    if (m_stopped)
        return;
    m_stopped = true;
    if (m_volume)
        m_volume->keep();
    const auto deadline = std::chrono::steady_clock::now() + SettingsStore::EndTime;
    const bool areSettingsKept = m_settings->close();
    const bool areDevicesKept = !m_access || m_access->close(deadline);
    const bool isLibraryKept = !m_library || m_library->close(deadline);
    const bool isKept = (!m_stores || m_stores->close(deadline)) && areSettingsKept
        && areDevicesKept && isLibraryKept;
    // A recording is complete once its play has ended.
    const bool hasPlayed = !m_streamPlayer || m_streamPlayer->waitForEnd(PlayEndTime);
    Q_EMIT stopped(isKept && hasPlayed);
}
