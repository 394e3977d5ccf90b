// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/supervision/InProcessPlugin.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "api/core/vesk.h"
#include "api/nodes/CMRootWorker.h"
#include "plugin/runtime/PluginThread.h"
#include "plugin/runtime/PluginWatch.h"

VESK_LOGGER("Host")

InProcessPlugin::InProcessPlugin(
    const QString &file, const QVariantHash &config, PluginWatch *watch, QObject *parent)
    : Plugin(file, parent)
    , m_config(config)
    , m_watch(watch)
{
}

InProcessPlugin::~InProcessPlugin()
{
    if (!m_thread)
        return;
    m_thread->quit();
    m_thread->wait();
    if (m_watch)
        m_watch->forget(m_thread.get());
}

void InProcessPlugin::load()
{
    VESK_ASSERT_OWN_THREAD();
    m_phase = Phase::Loading;
    CMRoot()->protectPrefixes();
    startThread();
}

void InProcessPlugin::startThread()
{
    m_thread = std::make_unique<PluginThread>(file(), completed(m_config));
    connect(m_thread.get(), &PluginThread::loaded, this, &InProcessPlugin::onLoaded);
    veskConnect(m_thread.get(), &QThread::finished, this, &InProcessPlugin::onFinished);
    readSettings().begin();
    if (m_watch)
        m_watch->setAnswerForm(m_thread.get(), descriptor().answers);
    m_thread->start();
}

void InProcessPlugin::replaceThread()
{
    m_thread->wait();
    if (m_watch)
        m_watch->forget(m_thread.get());
    m_thread.release()->deleteLater(); // this may be called by its signal
    whenStartable([this] {
        if (m_phase == Phase::Renewing)
            startThread();
    });
}

void InProcessPlugin::onLoaded(const CMPath &root, const QString &error)
{
    if (m_phase == Phase::Loading) {
        m_phase = error.isEmpty() ? Phase::Running : Phase::Idle;
        return finishLoading(root, error);
    }
    if (m_phase != Phase::Renewing)
        return;
    m_phase = error.isEmpty() ? Phase::Running : Phase::Failed;
    if (error.isEmpty())
        VESK_INFO("plug-in " << file() << " serves " << root << " again");
    else
        VESK_ERROR("plug-in " << file() << " cannot be loaded again: " << error);
    if (readSettings().isOutdated())
        return; // requests wait for the next one
    CMRoot()->release(this->root().prefix());
    if (error.isEmpty())
        Q_EMIT restarted();
}

void InProcessPlugin::unload()
{
    VESK_ASSERT_OWN_THREAD();
    m_phase = Phase::Ending;
    if (!root().isEmpty())
        CMRoot()->release(root().prefix());
    if (!isRunning()) {
        Q_EMIT unloaded();
        return;
    }
    // A thread that is still loading comes to its event loop first, and leaves it at once.
    m_thread->quit();
}

void InProcessPlugin::onFinished()
{
    if (m_phase == Phase::Renewing)
        replaceThread();
    else if (m_phase != Phase::Failed)
        Q_EMIT unloaded();
}

bool InProcessPlugin::isRunning() const
{
    return m_thread && m_thread->isRunning();
}

bool InProcessPlugin::serves(const CMPath &path) const
{
    return !root().isEmpty() && CMRoot()->isServedBy(path, root().prefix());
}

void InProcessPlugin::holdRequests()
{
    if (m_phase == Phase::Running)
        CMRoot()->hold(root().prefix(), CMRootWorker::Prefix);
}

void InProcessPlugin::releaseRequests()
{
    // In other phases they wait for the worker.
    if (m_phase == Phase::Running)
        CMRoot()->release(root().prefix());
}

void InProcessPlugin::renew()
{
    const bool hasFailed = m_phase == Phase::Failed;
    if (m_phase != Phase::Running && !hasFailed)
        return readSettings().settleAgain();
    VESK_INFO("plug-in " << file() << " is loaded again: a setting that it has read has changed");
    m_phase = Phase::Renewing;
    Q_EMIT restarting();
    CMRoot()->hold(root().prefix(), CMRootWorker::PrefixAndForeignPaths);
    if (hasFailed)
        return replaceThread();
    m_thread->whenIdle(this, [this] {
        if (m_phase == Phase::Renewing)
            m_thread->quit();
    });
}
