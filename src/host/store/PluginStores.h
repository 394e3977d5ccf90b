// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "api/nodes/CMAbstractWorker.h"
#include "host/store/PluginStore.h"

#include <map>
#include <memory>

/// The stores and folders of all plug-ins, in the folder "plugins" of the state folder, and the
/// worker of their prefix: there a plug-in in this process finds its own store, and everybody else
/// nothing. Main thread, but for the functions of CMAbstractWorker.
class PluginStores : public CMAbstractWorker {
    Q_OBJECT

public:
    /// Without a \a stateFolder what plug-ins keep lasts until the host ends. \a held: why the
    /// folder must not be written, if that is so.
    PluginStores(const QString &stateFolder, const Result<void, files::Problem> &held,
        QObject *parent = nullptr);
    ~PluginStores() override;

    /// The store of the plug-in with this \a id, which is one word; this owns it. Null, and logged,
    /// when another plug-in has that id.
    PluginStoreAccess *open(const QString &id) VESK_EXCLUDES(m_mutex);
    /// The folder of the plug-in with this \a id, which is made if there is none. Empty, and
    /// logged, when it cannot be made.
    QString makeFolder(const QString &id) const;
    /// Waits until all writes are answered; later ones are refused. Returns false when that takes
    /// beyond \a deadline.
    bool close(std::chrono::steady_clock::time_point deadline) VESK_EXCLUDES(m_mutex);

    void request(CMRequest request) override VESK_EXCLUDES(m_mutex);

private:
    const QString m_folder;
    const Result<void, files::Problem> m_held;
    VeskMutex m_mutex;
    std::map<CMPath, std::unique_ptr<PluginStore>> m_stores VESK_GUARDED_BY(m_mutex);
};
