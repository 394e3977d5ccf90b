// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/Plugins.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "api/core/vesk.h"
#include "api/nodes/CMValuesWorker.h"
#include "api/values/VeskValuePaths.h"
#include "host/ServicesWorker.h"
#include "host/player/PlayLogic.h"
#include "host/player/PlayerText.h"
#include "host/rpc/AddressGate.h"
#include "host/rpc/ServiceFaults.h"
#include "host/store/PluginStores.h"
#include "plugin/runtime/HostFolders.h"
#include "plugin/runtime/PluginWatch.h"
#include "plugin/supervision/InProcessPlugin.h"
#include "plugin/supervision/SupervisedPlugin.h"

#include <QFileInfo>
#include <QThread>

#include <algorithm>

VESK_LOGGER("Host")

namespace {

TrString excuseWords(ExcuseDeclaration::Meaning meaning)
{
    switch (meaning) {
    case ExcuseDeclaration::Incompatible:
        return playerText(
            QT_TRANSLATE_NOOP("Player", "This device cannot play the station's streams."));
    case ExcuseDeclaration::NoStream:
        return playerText(QT_TRANSLATE_NOOP("Player", "The station has no stream at the moment."));
    case ExcuseDeclaration::OtherCountry:
        return playerText(
            QT_TRANSLATE_NOOP("Player", "The station cannot be heard in your country."));
    case ExcuseDeclaration::Forbidden:
        break;
    }
    return playerText(QT_TRANSLATE_NOOP("Player", "The station may not be played here."));
}

} // namespace

Plugins::Plugins(const HostOptions &options, CMValuesWorker *values, PlayLogic *player,
    PluginStores *stores, QObject *parent)
    : QObject(parent)
    , m_options(options)
    , m_values(values)
    , m_player(player)
    , m_stores(stores)
{
    // Directly, so that the workers have a value before the next request.
    connect(
        values, &CMValuesWorker::valueChanged, this,
        [this](const CMPath &path) { valueChanged(path); }, Qt::DirectConnection);
    veskConnect(player, &PlayLogic::changed, this, &Plugins::playerChanged);
    if (!options.inProcess)
        return;
    m_watch = std::make_unique<PluginWatch>(values,
        [this](
            const PluginThread *thread, const CMPath &setting, const VeskValue &value, bool keeps) {
            QMetaObject::invokeMethod(
                this, [=] { takeReading(thread, setting, value, keeps); }, Qt::QueuedConnection);
        });
}

Plugins::~Plugins()
{
    m_values->disconnect(this);
}

void Plugins::load()
{
    VESK_ASSERT_OWN_THREAD();
    for (const QString &note : m_options.pluginNotes)
        VESK_INFO(note);
    if (m_options.plugins.isEmpty())
        VESK_WARN("There are no plug-ins.");

    for (const PluginOptions &options : m_options.plugins) {
        m_plugins.push_back(makePlugin(options));
        Plugin *const plugin = m_plugins.back().get();
        veskConnect(plugin, &Plugin::loadFinished, this, &Plugins::pluginLoaded);
        veskConnect(plugin, &Plugin::unloaded, this, &Plugins::pluginUnloaded);
    }
    m_loading = static_cast<int>(m_plugins.size());
    for (std::size_t i = 0; i < m_plugins.size(); ++i) {
        const QString &problem = m_options.plugins.at(static_cast<int>(i)).problem;
        if (problem.isEmpty())
            m_plugins[i]->load();
        else
            m_plugins[i]->refuse(problem);
    }
    if (m_plugins.empty())
        QMetaObject::invokeMethod(this, &Plugins::loaded, Qt::QueuedConnection);
}

std::unique_ptr<Plugin> Plugins::makePlugin(const PluginOptions &options)
{
    const QVariantHash config {{VeskService_Id(), options.effectiveServiceId()}};
    std::unique_ptr<Plugin> plugin = m_options.inProcess ? makeInProcessPlugin(options, config)
                                                         : makeSupervisedPlugin(options, config);
    plugin->setDescriptor(options.descriptor);
    if (options.descriptor.needs.store)
        plugin->setStore(m_stores->open(options.descriptor.id));
    if (options.descriptor.needs.folder)
        plugin->setFolder(m_stores->makeFolder(options.descriptor.id));
    for (const SettingDeclaration &setting : options.descriptor.settings) {
        if (setting.restarts)
            plugin->readSettings().restartFor(setting.path, m_values->value(setting.path));
    }
    const auto isTold
        = [this, made = plugin.get()] { return made->serves(m_player->stateChangePath()); };
    connect(plugin.get(), &Plugin::restarting, m_player, [this, isTold] {
        if (isTold())
            m_player->forgetPosts();
    });
    connect(plugin.get(), &Plugin::restarted, m_player, [this, isTold] {
        if (isTold())
            m_player->postAgain();
    });
    return plugin;
}

std::unique_ptr<Plugin> Plugins::makeInProcessPlugin(
    const PluginOptions &options, const QVariantHash &config)
{
    auto plugin = std::make_unique<InProcessPlugin>(options.file, config, m_watch.get());
    m_inProcess.push_back(plugin.get());
    return plugin;
}

std::unique_ptr<Plugin> Plugins::makeSupervisedPlugin(
    const PluginOptions &options, const QVariantHash &config)
{
    const QString file = QFileInfo(options.file).absoluteFilePath();
    PluginProcessOptions worker;
    worker.program = HostFolders::pluginProgram();
    worker.id = options.descriptor.id;
    worker.start = [this, file, config, descriptor = options.descriptor] {
        StartMessage message = startMessage(file, config);
        message.catalogueFolder = descriptor.catalogueFolder(file);
        message.catalogueName = descriptor.id;
        return message;
    };
    worker.longestWait = m_options.restartWait;
    auto plugin = std::make_unique<SupervisedPlugin>(options.file, worker);
    m_workers.push_back(plugin.get());
    return plugin;
}

StartMessage Plugins::startMessage(const QString &file, const QVariantHash &config) const
{
    StartMessage message;
    message.file = file;
    message.config = config;
    message.logLevel = m_options.logLevel;
    message.connectTo = m_options.connectTo;
    message.caFile = m_options.caFile;
    message.translations = HostFolders::translations();
    message.valuePrefixes = hostValuePrefixes();
    for (const HostValueDefinition &definition : m_options.values.definitions()) {
        message.values.append({definition.path, m_values->value(definition.path).toHash(),
            definition.access == CMValuesWorker::Writable, definition.title});
    }
    message.player = m_player->currentData().toHash();
    return message;
}

void Plugins::pluginLoaded()
{
    if (--m_loading == 0)
        Q_EMIT loaded();
}

void Plugins::listIn(ServicesWorker *services)
{
    VESK_ASSERT_OWN_THREAD();
    QList<CMPath> roots;
    for (const auto &plugin : m_plugins) {
        if (!plugin->root().isEmpty() && roots.contains(plugin->root()))
            plugin->reject(QStringLiteral("another plug-in serves the same paths"));
        if (plugin->root().isEmpty()) {
            services->addFailed(plugin->file(), plugin->error());
            continue;
        }
        roots.append(plugin->root());
        services->addService(plugin->root(), plugin->descriptor());
    }
}

void Plugins::declareIn(AddressGate *gate) const
{
    VESK_ASSERT_OWN_THREAD();
    for (const auto &plugin : m_plugins) {
        if (!plugin->root().isEmpty())
            gate->declare(plugin->root(), plugin->descriptor().changing);
    }
}

QString Plugins::prefixOf(const QString &id) const
{
    VESK_ASSERT_OWN_THREAD();
    for (const auto &plugin : m_plugins) {
        if (plugin->descriptor().id == id)
            return plugin->root().prefix();
    }
    return {};
}

void Plugins::declareIn(ServiceFaults *faults) const
{
    VESK_ASSERT_OWN_THREAD();
    for (const auto &plugin : m_plugins) {
        if (plugin->root().isEmpty())
            continue;
        const HostValueDefinition *const setting
            = m_options.values.find(plugin->descriptor().deviceSetting);
        faults->declare(plugin->root(), setting ? setting->title : TrString());
    }
}

void Plugins::declareIn(PlayLogic *player) const
{
    SpokenExcuses excuses;
    for (const auto &plugin : m_plugins) {
        for (const ExcuseDeclaration &excuse : plugin->descriptor().excuses)
            excuses.add(excuse.file, excuseWords(excuse.meaning));
    }
    player->setExcuses(excuses);
}

void Plugins::unload()
{
    VESK_ASSERT_OWN_THREAD();
    m_unloading = true;
    for (const auto &plugin : m_plugins)
        plugin->unload();
    if (m_plugins.empty())
        QMetaObject::invokeMethod(this, &Plugins::unloaded, Qt::QueuedConnection);
}

void Plugins::pluginUnloaded()
{
    const auto runs = [](const std::unique_ptr<Plugin> &plugin) { return plugin->isRunning(); };
    if (m_unloading && std::none_of(m_plugins.begin(), m_plugins.end(), runs))
        Q_EMIT unloaded();
}

/// On the thread that changed it.
void Plugins::valueChanged(const CMPath &path)
{
    const HostValueDefinition *const definition = m_options.values.find(path);
    if (!definition)
        return;
    const ValueMessage message {path, m_values->value(path).toHash(),
        definition->access == CMValuesWorker::Writable, definition->title};
    for (SupervisedPlugin *const worker : m_workers)
        worker->tell(message);
    if (!PluginWatch::isSetting(path))
        return;
    if (QThread::currentThread() == thread())
        settingChanged(path);
    else
        QMetaObject::invokeMethod(
            this, [this, path] { settingChanged(path); }, Qt::QueuedConnection);
}

/// At once where possible, so that the next request waits for the restart.
void Plugins::settingChanged(const CMPath &path)
{
    for (const auto &plugin : m_plugins)
        plugin->readSettings().noteChanged(path, m_values->value(path));
    if (m_watch)
        m_watch->settingChanged(path);
}

void Plugins::takeReading(
    const PluginThread *thread, const CMPath &setting, const VeskValue &value, bool keeps)
{
    for (InProcessPlugin *const plugin : m_inProcess) {
        if (!plugin->isOn(thread))
            continue;
        if (keeps)
            plugin->readSettings().noteKept(setting, value);
        else
            plugin->readSettings().noteFollowed(setting);
    }
}

void Plugins::playerChanged()
{
    const PlayerMessage message {m_player->currentData().toHash()};
    for (SupervisedPlugin *const worker : m_workers)
        worker->tell(message);
}
