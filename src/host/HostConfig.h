// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMPath.h"
#include "api/values/VeskValue.h"
#include "host/HostOptions.h"

#include <QHash>
#include <QMap>
#include <QVariant>

class CMValuesWorker;
class JsonRpcDispatcher;

/// What is configured and where that was said, for clients, and what a configuration that is read
/// again changes while the host runs. Main thread; \a values must outlive it.
class HostConfig {
public:
    /// Sets and pins the values that \a options pin.
    HostConfig(const HostOptions &options, CMValuesWorker *values);

    /// What pinned values would be; without one, a value would be as at first.
    void setUnpinned(const QHash<CMPath, VeskValue> &values) { m_unpinned = values; }
    /// Takes over of \a options what can change, and logs it, and what needs a restart.
    void reconfigure(const HostOptions &options);
    /// The method host.config.
    void addTo(JsonRpcDispatcher *dispatcher) const;
    /// Its list: what holds, and where it comes from. Secrets are "***".
    QVariantList list() const;

private:
    void change(const QString &key, const HostOptions &options);
    bool changeValue(const CMPath &path, const HostOptions &options);
    QVariantHash describe(const HostOption &option) const;
    QVariantHash describe(const HostValueDefinition &definition) const;
    /// What holds without anything said; null where that is nothing that could be said.
    QVariant fallback(const HostOption &option) const;

    const HostOptions m_options; ///< of the start
    CMValuesWorker *const m_values;
    QMap<QString, HostGiven> m_given; ///< what holds
    QHash<CMPath, VeskValue> m_unpinned;
};
