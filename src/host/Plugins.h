// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/HostOptions.h"
#include "plugin/supervision/Plugin.h"

#include <QObject>

#include <memory>
#include <vector>

class AddressGate;
class CMValuesWorker;
class InProcessPlugin;
class PlayLogic;
class PluginStores;
class PluginThread;
class PluginWatch;
class ServiceFaults;
class ServicesWorker;
class SupervisedPlugin;
struct StartMessage;

/// All plug-ins of a host, in its process or each in one of its own, as the options say. Keeps the
/// processes informed of the values and of what plays, and the plug-ins of the settings that they
/// have read. Main thread, with an event loop; \a values, \a player and \a stores must outlive it.
class Plugins : public QObject {
    Q_OBJECT

public:
    Plugins(const HostOptions &options, CMValuesWorker *values, PlayLogic *player,
        PluginStores *stores, QObject *parent = nullptr);
    ~Plugins() override;

    /// Loads those of the options. Emits loaded() when each of them is loaded or has failed.
    void load();
    /// A row for each.
    void listIn(ServicesWorker *services);
    /// What each of them says of its addresses.
    void declareIn(AddressGate *gate) const;
    /// The prefix of the paths of the plug-in with this id; empty when there is none.
    QString prefixOf(const QString &id) const;
    /// What each of them says of its service.
    void declareIn(ServiceFaults *faults) const;
    /// What each of them says of the messages that its service keeps in the place of streams.
    void declareIn(PlayLogic *player) const;
    /// Ends all of them, then emits unloaded().
    void unload();

Q_SIGNALS:
    void loaded();
    void unloaded();

private:
    std::unique_ptr<Plugin> makePlugin(const PluginOptions &options);
    StartMessage startMessage(const QString &file, const QVariantHash &config) const;
    void pluginLoaded();
    void pluginUnloaded();
    void valueChanged(const CMPath &path);
    void settingChanged(const CMPath &path);
    void takeReading(
        const PluginThread *thread, const CMPath &setting, const VeskValue &value, bool keeps);
    std::unique_ptr<Plugin> makeSupervisedPlugin(
        const PluginOptions &options, const QVariantHash &config);
    std::unique_ptr<Plugin> makeInProcessPlugin(
        const PluginOptions &options, const QVariantHash &config);
    void playerChanged();

    const HostOptions m_options;
    CMValuesWorker *const m_values;
    PlayLogic *const m_player;
    PluginStores *const m_stores;
    int m_loading = 0;
    bool m_unloading = false;
    std::unique_ptr<PluginWatch> m_watch; ///< null unless plug-ins run in this process
    std::vector<std::unique_ptr<Plugin>> m_plugins;
    std::vector<SupervisedPlugin *> m_workers; ///< those of m_plugins that have a process
    std::vector<InProcessPlugin *> m_inProcess; ///< those that have none
};
