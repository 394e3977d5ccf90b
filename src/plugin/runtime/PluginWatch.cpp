// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/runtime/PluginWatch.h"

#include "api/nodes/CMRootWorker.h"
#include "api/nodes/CMValuesWorker.h"
#include "plugin/runtime/PluginThread.h"

#include <algorithm>
#include <iterator>

PluginWatch::PluginWatch(CMValuesWorker *values, Reading reading)
    : m_values(values)
    , m_reading(std::move(reading))
{
    m_connection = QObject::connect(values, &CMValuesWorker::valueRead,
        [this](const CMPath &path, const VeskValue &value) { valueRead(path, value); });
    HttpClient::setExchangeListener(
        [this](const HttpClientResult &exchange) { exchangeEnded(exchange); });
    CMWorker::addHandlingListener(this);
}

PluginWatch::~PluginWatch()
{
    CMWorker::removeHandlingListener(this);
    HttpClient::setExchangeListener(nullptr);
    QObject::disconnect(m_connection);
}

bool PluginWatch::isSetting(const CMPath &path)
{
    return path.prefix() == QLatin1String("settings");
}

void PluginWatch::begin(const std::shared_ptr<CMReplyAbstractData> &reply)
{
    if (const PluginThread *plugin = PluginThread::homeOf(QThread::currentThread())) {
        const VeskMutexLock lock(m_mutex);
        m_handled[plugin].push_back({reply});
    }
}

void PluginWatch::end()
{
    std::shared_ptr<CMReplyAbstractData> done; // may complete the reply, so not under the lock
    const PluginThread *plugin = PluginThread::homeOf(QThread::currentThread());
    const VeskMutexLock lock(m_mutex);
    const auto handled = m_handled.find(plugin);
    if (handled == m_handled.end())
        return;
    done = std::move(handled->second.back().reply);
    handled->second.pop_back();
    if (handled->second.empty())
        m_handled.erase(handled);
}

void PluginWatch::exchangeEnded(const HttpClientResult &exchange)
{
    const bool hasFailed = ::hasFailed(exchange);
    const PluginThread *plugin = PluginThread::homeOf(QThread::currentThread());
    if (!plugin || (!hasFailed && exchange.status() != HttpClientStatus::Success))
        return;
    const VeskMutexLock lock(m_mutex);
    const auto handled = m_handled.find(plugin);
    if (handled == m_handled.end())
        return;
    for (Handled &each : handled->second) {
        if (!each.reply || (each.hasFailed && !hasFailed))
            continue;
        each.hasFailed = hasFailed;
        each.reply->setServiceFault(
            [exchange, form = m_answerForms[plugin]] { return serviceFaultOf(exchange, form); });
    }
}

void PluginWatch::setAnswerForm(const PluginThread *plugin, const ServiceAnswerForm &form)
{
    const VeskMutexLock lock(m_mutex);
    m_answerForms[plugin] = form;
}

void PluginWatch::valueRead(const CMPath &path, const VeskValue &value)
{
    PluginThread *const plugin
        = isSetting(path) ? PluginThread::homeOf(QThread::currentThread()) : nullptr;
    if (!plugin)
        return;
    {
        const VeskMutexLock lock(m_mutex);
        if (m_handled.count(plugin) != 0)
            return;
    }
    if (follows(plugin, path))
        return;
    {
        const VeskMutexLock lock(m_mutex);
        VeskValue &kept = m_kept[{path, plugin}];
        if (kept == value)
            return;
        kept = value;
    }
    m_reading(plugin, path, value, true);
}

void PluginWatch::settingChanged(const CMPath &setting)
{
    std::vector<PluginThread *> followers;
    {
        const VeskMutexLock lock(m_mutex);
        for (auto it = m_kept.lower_bound({setting, nullptr});
             it != m_kept.end() && it->first.first == setting; ++it)
            followers.push_back(it->first.second);
    }
    for (PluginThread *plugin : followers) {
        if (!follows(plugin, setting))
            continue;
        {
            const VeskMutexLock lock(m_mutex);
            m_kept.erase({setting, plugin});
        }
        m_reading(plugin, setting, m_values->value(setting), false);
    }
}

void PluginWatch::forget(PluginThread *plugin)
{
    const VeskMutexLock lock(m_mutex);
    m_answerForms.erase(plugin);
    for (auto it = m_kept.begin(); it != m_kept.end();)
        it = it->first.second == plugin ? m_kept.erase(it) : std::next(it);
}

bool PluginWatch::follows(const PluginThread *plugin, const CMPath &path)
{
    const CMRootWorker *root = CMRoot();
    return root && root->isSubscribed(path, plugin);
}
