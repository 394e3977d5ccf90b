// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMReply.h"

#include "api/core/vesk.h"
#include "api/nodes/CMContextCall.h"
#include "api/values/VeskRowsRoles.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace {

/// Longer than any device runs, and short enough to be added to a clock without an overflow.
constexpr std::chrono::hours Longest {24 * 365 * 100};

} // namespace

CMError CMUnansweredError()
{
    CMError error(TrString("CMReply", "The request was not answered."));
    error.insert(CMError::Name(), CMError::UnansweredName());
    return error;
}

CMError CMCancelledError()
{
    return CMError(TrString("CMReply", "The request was cancelled."));
}

CMReplyAbstractData::~CMReplyAbstractData()
{
    for (const std::shared_ptr<CMContextCall> &watcher : m_watchers)
        watcher->close();
}

bool CMReplyAbstractData::isFinished() const
{
    const VeskMutexLock lock(m_mutex);
    return m_finished;
}

bool CMReplyAbstractData::waitForFinished(unsigned long milliseconds) const
{
    VeskMutexLock lock(m_mutex);
    if (m_finished)
        return true;
    if (!m_condition)
        m_condition = std::make_shared<std::condition_variable>();
    const std::shared_ptr<std::condition_variable> condition = m_condition;
    const auto deadline = std::chrono::steady_clock::now()
        + std::min<std::chrono::milliseconds>(
            std::chrono::milliseconds(std::min<unsigned long>(milliseconds, LONG_MAX)), Longest);
    bool hasTimeLeft = true;
    while (!m_finished && hasTimeLeft)
        hasTimeLeft = lock.waitUntil(*condition, deadline);
    return m_finished;
}

CMError CMReplyAbstractData::error() const
{
    const VeskMutexLock lock(m_mutex);
    return m_error;
}

void CMReplyAbstractData::setError(const CMError &error)
{
    finish([this, &error]() VESK_REQUIRES(m_mutex) { m_error = error; });
}

void CMReplyAbstractData::setFinished()
{
    finish([] {});
}

void CMReplyAbstractData::setServiceFault(FindServiceFault find)
{
    const VeskMutexLock lock(m_mutex);
    if (!m_finished)
        m_findServiceFault.swap(find);
}

VeskServiceFault CMReplyAbstractData::serviceFault() const
{
    FindServiceFault find;
    {
        const VeskMutexLock lock(m_mutex);
        find = m_findServiceFault;
    }
    return find ? find() : VeskServiceFault();
}

void CMReplyAbstractData::whenFinished(QObject *context, std::function<void()> function)
{
    if (context->thread() == QThread::currentThread() && isFinished()) {
        function();
        return;
    }
    const auto watcher = CMContextCall::create(context, CMContextCall::Once, std::move(function));
    {
        const VeskMutexLock lock(m_mutex);
        if (!m_finished) {
            m_watchers.push_back(watcher);
            return;
        }
    }
    watcher->trigger();
}

void CMReplyAbstractData::whenFinished(std::function<void()> function)
{
    {
        const VeskMutexLock lock(m_mutex);
        if (!m_finished) {
            m_followers.push_back(std::move(function));
            return;
        }
    }
    function();
}

void CMReplyAbstractData::finish(const std::function<void()> &store)
{
    std::vector<std::shared_ptr<CMContextCall>> watchers;
    std::vector<std::function<void()>> followers;
    std::shared_ptr<std::condition_variable> condition;
    {
        const VeskMutexLock lock(m_mutex);
        if (m_finished)
            return;
        store();
        m_finished = true;
        watchers.swap(m_watchers);
        followers.swap(m_followers);
        condition = m_condition;
    }
    // A thread that waited may destroy this from here on, so only local copies are used. Notifying
    // under the mutex would wake that thread only to have it wait for the mutex.
    if (condition)
        condition->notify_all();
    for (const std::shared_ptr<CMContextCall> &watcher : watchers)
        watcher->trigger();
    for (const std::function<void()> &follower : followers)
        follower();
}

VeskServiceFault CMUnexplainedFault(const CMReplyData<QVariant> &answer)
{
    if (!answer.isFinished())
        return {};
    const bool isUnexplained = !answer.error().isEmpty()
        || VeskRowsRoles(VeskHash(answer.value().toHash())).isWithoutRows();
    return isUnexplained ? answer.serviceFault() : VeskServiceFault();
}

CMReplyPromise::CMReplyPromise(std::shared_ptr<CMReplyAbstractData> data)
    : m_data(std::move(data))
{
}

CMReplyPromise::~CMReplyPromise()
{
    if (!m_data->isFinished())
        m_data->setError(CMUnansweredError());
}
