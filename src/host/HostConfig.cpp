// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/HostConfig.h"

#include "api/core/log.h"
#include "api/nodes/CMValuesWorker.h"
#include "host/rpc/JsonRpcDispatcher.h"
#include "host/settings/SettingsFile.h"
#include "plugin/runtime/Logging.h"

#include <algorithm>

VESK_LOGGER("Host")

namespace {

const HostOption *optionOf(const QString &key)
{
    const QVector<HostOption> &known = hostOptions();
    const auto found = std::find_if(known.begin(), known.end(),
        [&key](const HostOption &each) { return key == QLatin1String(each.key); });
    return found == known.end() ? nullptr : &*found;
}

bool isList(const HostOption &option)
{
    return option.kind == HostOption::Repeated || option.kind == HostOption::OneOrMore;
}

void addOrigin(QVariantHash &entry, const HostGiven &given)
{
    const QString origin = QStringLiteral("origin");
    if (given.file.isEmpty()) {
        entry.insert(origin, QStringLiteral("command line"));
        return;
    }
    entry.insert(origin, QStringLiteral("file"));
    entry.insert(QStringLiteral("file"), given.file);
    if (given.line > 0)
        entry.insert(QStringLiteral("line"), given.line);
}

} // namespace

HostConfig::HostConfig(const HostOptions &options, CMValuesWorker *values)
    : m_options(options)
    , m_values(values)
    , m_given(options.given)
{
    // A pinned value stays as it is, so all of them are there before the first is pinned.
    for (const auto &entry : options.pinned)
        values->setValue(entry.first, entry.second);
    for (const auto &entry : options.pinned)
        values->pin(entry.first);
}

void HostConfig::reconfigure(const HostOptions &options)
{
    VESK_INFO("The configuration was read again.");
    QStringList keys = m_given.keys();
    for (const QString &key : options.given.keys()) {
        if (!m_given.contains(key))
            keys.append(key);
    }
    for (const QString &key : std::as_const(keys)) {
        const HostGiven given = options.given.value(key);
        if (m_given.value(key).values != given.values)
            change(key, options);
        else
            m_given[key] = given; // perhaps in another line
    }
}

void HostConfig::change(const QString &key, const HostOptions &options)
{
    const HostOption *option = optionOf(key);
    const bool isDone = option ? option->isLive : changeValue(CMPath::fromEncoded(key), options);
    if (!isDone) {
        VESK_WARN(key << ": the change needs a restart.");
        return;
    }
    if (option)
        changeLogging(options.logLevel, options.logSize);
    if (options.given.contains(key))
        m_given[key] = options.given.value(key);
    else
        m_given.remove(key);
    VESK_INFO(key << ": changed");
}

/// Returns false for what only a start can set: states of the machine, and settings of plug-ins
/// that are not loaded.
bool HostConfig::changeValue(const CMPath &path, const HostOptions &options)
{
    const HostValueDefinition *definition = m_options.values.find(path);
    if (!definition || definition->access != CMValuesWorker::Writable)
        return false;
    const auto isAtPath = [&path](const auto &entry) { return entry.first == path; };
    const auto wanted = std::find_if(options.pinned.rbegin(), options.pinned.rend(), isAtPath);
    const bool wasPinned = m_given.contains(path.toEncoded());
    if (!wasPinned)
        m_unpinned.insert(path, m_values->value(path));
    m_values->unpin(path);
    if (wanted == options.pinned.rend()) {
        m_values->setValue(path, m_unpinned.value(path, definition->initial));
        return true;
    }
    m_values->setValue(path, wanted->second);
    m_values->pin(path);
    return true;
}

void HostConfig::addTo(JsonRpcDispatcher *dispatcher) const
{
    dispatcher->addMethod(
        QStringLiteral("host.config"),
        [this](const JsonRpcCallPtr &call) {
            call->finish(QVariantHash {{QStringLiteral("file"), m_options.configFile},
                {QStringLiteral("config"), list()}});
        },
        AccessRole::Owner);
}

QVariantList HostConfig::list() const
{
    QVariantList list;
    for (const HostOption &option : hostOptions()) {
        if (option.kind != HostOption::Assignment)
            list.append(describe(option));
    }
    for (const HostValueDefinition &definition : m_options.values.definitions()) {
        if (definition.access == CMValuesWorker::Writable
            || m_given.contains(definition.path.toEncoded()))
            list.append(describe(definition));
    }
    return list;
}

QVariant HostConfig::fallback(const HostOption &option) const
{
    const QString key = QLatin1String(option.key);
    if (key == QLatin1String("stateFolder"))
        return SettingsFile::defaultFolder();
    if (key == QLatin1String("plugins")) {
        QVariantList files;
        for (const PluginOptions &plugin : m_options.plugins)
            files.append(plugin.file);
        return files;
    }
    const QVariant value = option.fallback ? QVariant(QLatin1String(option.fallback)) : QVariant();
    if (isList(option))
        return option.fallback ? QVariantList {value} : QVariantList();
    return option.kind == HostOption::Flag ? QVariant(false) : value;
}

QVariantHash HostConfig::describe(const HostOption &option) const
{
    const QString key = QLatin1String(option.key);
    QVariantHash entry {{QStringLiteral("key"), key}};
    const auto given = m_given.constFind(key);
    if (given == m_given.constEnd()) {
        entry.insert(QStringLiteral("value"), fallback(option));
        entry.insert(QStringLiteral("origin"), QStringLiteral("default"));
        return entry;
    }
    entry.insert(
        QStringLiteral("value"), isList(option) ? QVariant(given->values) : given->values.value(0));
    addOrigin(entry, *given);
    return entry;
}

QVariantHash HostConfig::describe(const HostValueDefinition &definition) const
{
    const QString key = definition.path.toEncoded();
    const VeskValue present = m_values->value(definition.path);
    const QVariant value = plainValue(present);
    const bool isHidden = isSecretValue(definition.path) && !value.toString().isEmpty();
    QVariantHash entry {{QStringLiteral("key"), key},
        {QStringLiteral("value"), isHidden ? QVariant(QStringLiteral("***")) : value}};
    const auto given = m_given.constFind(key);
    if (given != m_given.constEnd())
        addOrigin(entry, *given);
    else
        entry.insert(QStringLiteral("origin"),
            value == plainValue(definition.initial) ? QStringLiteral("default")
                                                    : QStringLiteral("setting"));
    return entry;
}
