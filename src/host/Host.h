// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/HostOptions.h"

#include <QObject>

#include <chrono>
#include <memory>

class AddressGate;
class Announcement;
class Artwork;
class CMRootWorker;
class ChosenStreams;
class CMValuesWorker;
class HttpServer;
class DeviceAccess;
class HostAlarms;
class HostConfig;
class HostLibrary;
class JsonRpcDispatcher;
class NetworkMonitor;
class Outputs;
class PlayLogic;
class PlayerMethods;
class PlayerVolume;
class Plugins;
class PluginStores;
class RemoteControls;
class RpcMethods;
class ServiceManager;
class ServiceFaults;
class ServicesWorker;
class SettingsStore;
class StreamPlayer;
class UiLanguage;
class VolumeMethods;
class WebFiles;

/// The whole host: the root worker, the value tree with what is kept of it, the network state, the
/// player, the plug-ins and the server for clients. One per process, on the main thread, with its
/// event loop.
class Host : public QObject {
    Q_OBJECT

public:
    /// How long plug-ins may take to end, in milliseconds.
    static constexpr int UnloadTimeout = 15000;
    /// How long plug-ins may take to report what played last.
    static constexpr int ReportTimeout = 3000;

    /// How long the sound output and the last stream may take to close.
    static constexpr std::chrono::milliseconds PlayEndTime {3000};

    explicit Host(const HostOptions &options, QObject *parent = nullptr);
    ~Host() override;

    /// Brings everything up; emits ready() or failed(). A plug-in that cannot be loaded
    /// does not keep the host from getting ready.
    void start();
    /// Takes over of \a options, which were read again, what can change while the host runs; the
    /// log tells what did and what cannot.
    void reconfigure(const HostOptions &options);
    /// The same as DeviceAccess::renewIdentity().
    void renewIdentity();
    /// Brings everything down, then emits stopped(). May be called at any time after start().
    void stop();

Q_SIGNALS:
    void ready(const QString &url);
    void failed(const QString &reason);
    /// \a complete is false when a plug-in, a play or the disk did not end in time: its thread
    /// still runs, so the process must end without destroying anything.
    void stopped(bool complete);

private:
    /// Returns false after it has emitted failed().
    bool setUpValues();
    void setUpNetwork();
    void setUpAddressPolicy();
    QString stateFolder() const;
    void setUpPlayer();
    void setUpSound();
    void setUpOutputs();
    void setUpPlugins();
    void listSettings();
    void setUpPage();
    void listen();
    /// Returns false after it has emitted failed().
    bool setUpServer();
    /// In the network, if the host can be reached from there.
    void announce();
    /// To the service manager.
    void showStatus();
    void unloadPlugins();
    void finishStop();

    const HostOptions m_options;
    bool m_stopping = false;
    bool m_unloading = false;
    bool m_stopped = false;

    // In the order in which they need each other.
    std::unique_ptr<ServiceManager> m_manager;
    std::unique_ptr<CMRootWorker> m_root;
    std::unique_ptr<CMValuesWorker> m_values;
    std::unique_ptr<HostConfig> m_config;
    std::unique_ptr<SettingsStore> m_settings;
    std::unique_ptr<PluginStores> m_stores;
    std::unique_ptr<DeviceAccess> m_access;
    std::unique_ptr<NetworkMonitor> m_network;
    std::unique_ptr<UiLanguage> m_language;
    std::unique_ptr<ServicesWorker> m_services;
    std::unique_ptr<StreamPlayer> m_streamPlayer;
    std::unique_ptr<PlayerVolume> m_volume;
    std::unique_ptr<HostAlarms> m_alarms;
    std::unique_ptr<ChosenStreams> m_chosenStreams;
    std::unique_ptr<PlayLogic> m_playLogic;
    std::unique_ptr<HostLibrary> m_library;
    std::unique_ptr<Outputs> m_outputs;
    std::unique_ptr<Plugins> m_plugins;
    std::unique_ptr<AddressGate> m_gate;
    std::unique_ptr<ServiceFaults> m_faults;
    std::unique_ptr<JsonRpcDispatcher> m_rpc;
    std::unique_ptr<RpcMethods> m_methods;
    std::unique_ptr<PlayerMethods> m_playerMethods;
    std::unique_ptr<VolumeMethods> m_volumeMethods;
    std::unique_ptr<WebFiles> m_page;
    std::unique_ptr<Artwork> m_artwork;
    std::unique_ptr<HttpServer> m_http;
    std::unique_ptr<Announcement> m_announcement;
    std::unique_ptr<RemoteControls> m_remoteControls;
};
