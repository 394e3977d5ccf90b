// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/supervision/Plugin.h"

#include "api/core/log.h"
#include "api/core/vesk.h"

#include <utility>

VESK_LOGGER("Host")

Plugin::Plugin(const QString &file, QObject *parent)
    : QObject(parent)
    , m_file(file)
{
    veskConnect(&m_readSettings, &ReadSettings::outdated, this, &Plugin::holdRequests);
    veskConnect(&m_readSettings, &ReadSettings::upToDate, this, &Plugin::releaseRequests);
    veskConnect(&m_readSettings, &ReadSettings::settled, this, &Plugin::renew);
}

Plugin::~Plugin() = default;

void Plugin::refuse(const QString &reason)
{
    QMetaObject::invokeMethod(
        this, [this, reason] { finishLoading(CMPath(), reason); }, Qt::QueuedConnection);
}

void Plugin::reject(const QString &reason)
{
    VESK_ERROR("plug-in " << m_file << " is not used: " << reason);
    m_root = CMPath();
    m_error = reason;
    unload();
}

void Plugin::whenStartable(std::function<void()> start)
{
    if (m_store)
        m_store->whenSettled(this, std::move(start));
    else
        start();
}

QVariantHash Plugin::completed(QVariantHash config) const
{
    if (m_store)
        config.insert(QStringLiteral("store"), m_store->config());
    if (!m_folder.isEmpty())
        config.insert(QStringLiteral("folder"), m_folder);
    return config;
}

void Plugin::finishLoading(const CMPath &root, const QString &error)
{
    m_root = root;
    m_error = error;
    if (error.isEmpty())
        VESK_INFO("plug-in " << m_file << " serves " << root);
    else
        VESK_ERROR("plug-in " << m_file << " cannot be loaded: " << error);
    Q_EMIT loadFinished();
}
