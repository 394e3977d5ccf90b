// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/store/PluginStores.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "base/files/KeptFile.h"
#include "plugin/runtime/PluginThread.h"

#include <QFile>

#include <vector>

VESK_LOGGER("Host")

PluginStores::PluginStores(
    const QString &stateFolder, const Result<void, files::Problem> &held, QObject *parent)
    : CMAbstractWorker(parent)
    , m_folder(stateFolder.isEmpty() ? QString() : stateFolder + QStringLiteral("/plugins"))
    , m_held(held)
{
}

PluginStores::~PluginStores() = default;

PluginStoreAccess *PluginStores::open(const QString &id)
{
    VESK_ASSERT_OWN_THREAD();
    const VeskMutexLock lock(m_mutex);
    auto &store = m_stores[CMPath(PluginStoreAccess::prefix(), id)];
    if (store) {
        VESK_ERROR("Two plug-ins have the id " << id << ": the second one keeps nothing.");
        return nullptr;
    }
    store = std::make_unique<PluginStore>(id, m_folder, m_held);
    return store.get();
}

QString PluginStores::makeFolder(const QString &id) const
{
    VESK_ASSERT_OWN_THREAD();
    if (m_folder.isEmpty())
        return {};
    const QString folder = m_folder + QLatin1Char('/') + id;
    auto made = m_held;
    if (made)
        made = files::KeptFile::makeFolder(QFile::encodeName(folder).toStdString());
    if (made)
        return folder;
    VESK_ERROR("There is no folder " << folder << " for a plug-in: " << made.error().text);
    return {};
}

bool PluginStores::close(std::chrono::steady_clock::time_point deadline)
{
    VESK_ASSERT_OWN_THREAD();
    std::vector<PluginStore *> stores;
    {
        const VeskMutexLock lock(m_mutex);
        for (const auto &entry : m_stores)
            stores.push_back(entry.second.get());
    }
    bool areClosed = true;
    for (PluginStore *const store : stores)
        areClosed &= store->close(deadline);
    return areClosed;
}

void PluginStores::request(CMRequest request)
{
    PluginStore *store = nullptr;
    {
        const VeskMutexLock lock(m_mutex);
        const auto found = m_stores.find(request.path());
        if (found != m_stores.end())
            store = found->second.get();
    }
    const PluginThread *plugin = PluginThread::homeOf(QThread::currentThread());
    if (store && plugin && plugin->storePath() == store->path())
        store->request(request);
    else
        request.reply().setError(CMNoNodeError());
}
