// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/supervision/RemoteWorker.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "api/core/vesk.h"
#include "api/nodes/CMRootWorker.h"

#include <algorithm>
#include <utility>

VESK_LOGGER("Host")

namespace {

Result<void, QString> pathTaken()
{
    return failure(QStringLiteral("another plug-in serves the same paths"));
}

} // namespace

RemoteWorker::RemoteWorker(QObject *parent)
    : CMAbstractWorker(parent)
{
}

RemoteWorker::~RemoteWorker()
{
    close();
    leave();
}

void RemoteWorker::leave()
{
    {
        const VeskMutexLock lock(m_heldMutex);
        m_routes.clear();
    }
    if (CMRootWorker *root = CMRoot())
        root->removeWorker(this);
}

CMError RemoteWorker::interruptedError() const
{
    QString service;
    {
        const VeskMutexLock lock(m_heldMutex);
        for (const CMPath &route : m_routes) {
            if (route.base().isEmpty())
                service = route.prefix();
        }
    }
    CMError error(TrString(QStringLiteral("Host"),
        QString::fromLatin1(
            QT_TRANSLATE_NOOP("Host", "The %1 service was interrupted. Please try again.")),
        QString(), -1, {TrArg(service)}));
    error.insert(CMError::Name(), QStringLiteral("host:interrupted"));
    return error;
}

bool RemoteWorker::expectLink()
{
    VESK_ASSERT_OWN_THREAD();
    const std::unique_lock<std::shared_mutex> lock(m_mutex);
    return std::exchange(m_state, Starting) != Starting;
}

void RemoteWorker::setLink(std::unique_ptr<NodeLink> link)
{
    VESK_ASSERT_OWN_THREAD();
    const std::unique_lock<std::shared_mutex> lock(m_mutex);
    VESK_ASSERT(!m_link && m_state == Starting);
    m_heldPrefix = QString();
    m_link = std::move(link);
    const VeskMutexLock heldLock(m_heldMutex);
    m_isReplaced = false;
}

void RemoteWorker::sendStart(const std::function<StartMessage()> &message)
{
    VESK_ASSERT_OWN_THREAD();
    const std::unique_lock<std::shared_mutex> lock(m_mutex);
    m_link->send(message());
    m_started = true;
}

void RemoteWorker::open()
{
    VESK_ASSERT_OWN_THREAD();
    std::deque<CMRequest> held;
    {
        const std::unique_lock<std::shared_mutex> lock(m_mutex);
        const VeskMutexLock heldLock(m_heldMutex);
        m_state = Up;
        for (const CMPath &path : m_subscribed)
            m_link->subscribe(path, true);
        held.swap(m_held);
    }
    for (const CMRequest &waiting : held)
        request(waiting);
}

void RemoteWorker::hold(const QString &prefix)
{
    VESK_ASSERT_OWN_THREAD();
    const std::unique_lock<std::shared_mutex> lock(m_mutex);
    m_heldPrefix = prefix;
}

void RemoteWorker::release()
{
    VESK_ASSERT_OWN_THREAD();
    std::deque<CMRequest> held;
    {
        const std::unique_lock<std::shared_mutex> lock(m_mutex);
        m_heldPrefix = QString();
        if (m_state != Up)
            return;
        const VeskMutexLock heldLock(m_heldMutex);
        held.swap(m_held);
    }
    for (const CMRequest &waiting : held)
        request(waiting);
}

std::vector<CMRequest> RemoteWorker::beginReplacing(
    const std::function<bool(const CMRequest &)> &movable)
{
    VESK_ASSERT_OWN_THREAD();
    const std::unique_lock<std::shared_mutex> lock(m_mutex);
    m_state = Starting;
    m_heldPrefix = QString();
    if (!m_link)
        return {};
    std::vector<CMRequest> moved = m_link->reclaim(movable);
    const VeskMutexLock heldLock(m_heldMutex);
    m_held.insert(m_held.begin(), moved.begin(), moved.end());
    m_isReplaced = true;
    return m_link->pending();
}

void RemoteWorker::endReplacing()
{
    VESK_ASSERT_OWN_THREAD();
    std::unique_ptr<NodeLink> former; // destroyed without the lock: that waits for its thread
    {
        const std::unique_lock<std::shared_mutex> lock(m_mutex);
        m_started = false;
        former = std::move(m_link);
    }
}

void RemoteWorker::close()
{
    VESK_ASSERT_OWN_THREAD();
    std::deque<CMRequest> held;
    std::unique_ptr<NodeLink> former; // destroyed without the lock: that waits for its thread
    {
        const std::unique_lock<std::shared_mutex> lock(m_mutex);
        const VeskMutexLock heldLock(m_heldMutex);
        m_state = Down;
        m_started = false;
        former = std::move(m_link);
        held.swap(m_held);
    }
    const CMError error = interruptedError();
    for (const CMRequest &waiting : held)
        waiting.reply().setError(error);
}

void RemoteWorker::notifyReset()
{
    std::set<CMPath> subscribed;
    {
        const VeskMutexLock lock(m_heldMutex);
        subscribed = m_subscribed;
    }
    for (const CMPath &path : subscribed)
        CMRoot()->notifyChanged({path, CMSubscribe::RowsChangeReset(), -1, -1});
}

Result<void, QString> RemoteWorker::handleRoute(const RouteMessage &message)
{
    const CMPath &route = message.path;
    if (route.isEmpty())
        return failure(QStringLiteral("a route to nowhere"));
    CMRootWorker *root = CMRoot();
    const bool isPrefix = route.base().isEmpty();
    {
        const VeskMutexLock lock(m_heldMutex);
        const bool isKnown = m_routes.count(route) != 0;
        if (message.added == isKnown || m_isReplaced)
            return {}; // of an earlier process, or left to the next one
        if (message.added && m_routes.size() >= MaxRoutes)
            return failure(QStringLiteral("more than %1 routes").arg(MaxRoutes));
        if (!message.added) {
            m_routes.erase(route);
        } else {
            // A plug-in answers for itself, not for the host or another one.
            const bool isOwn = m_routes.count(CMPath(route.prefix(), QString())) != 0;
            if (!isOwn && root->prefixes().contains(route.prefix())) {
                if (isPrefix)
                    return pathTaken();
                if (!std::exchange(m_hasRefused, true))
                    VESK_ERROR("The path '" << route << "' belongs to another worker");
                return {};
            }
            m_routes.insert(route);
        }
    }
    if (message.added && isPrefix) {
        if (!root->addWorker(route.prefix(), this))
            return pathTaken();
    } else if (message.added) {
        root->addForeignPath(route, this);
    } else if (isPrefix) {
        root->removePrefix(route.prefix(), this);
    } else {
        root->removeForeignPath(route, this);
    }
    return {};
}

bool RemoteWorker::serves(const CMPath &path) const
{
    const VeskMutexLock lock(m_heldMutex);
    return std::any_of(m_routes.begin(), m_routes.end(),
        [&path](const CMPath &route) { return path.startsWith(route); });
}

void RemoteWorker::request(CMRequest request)
{
    {
        const std::shared_lock<std::shared_mutex> lock(m_mutex);
        const bool isHeld = !m_heldPrefix.isNull() && request.path().prefix() == m_heldPrefix;
        if (m_state == Up && !isHeld)
            return m_link->request(request);
        const VeskMutexLock heldLock(m_heldMutex);
        if (m_state != Down && m_held.size() < MaxHeld) {
            m_held.push_back(std::move(request));
            return;
        }
    }
    request.reply().setError(interruptedError());
}

void RemoteWorker::connectChange(const CMPath &path)
{
    const std::shared_lock<std::shared_mutex> lock(m_mutex);
    {
        const VeskMutexLock heldLock(m_heldMutex);
        m_subscribed.insert(path);
    }
    if (m_state == Up)
        m_link->subscribe(path, true);
}

void RemoteWorker::disconnectChange(const CMPath &path)
{
    const std::shared_lock<std::shared_mutex> lock(m_mutex);
    {
        const VeskMutexLock heldLock(m_heldMutex);
        m_subscribed.erase(path);
    }
    if (m_state == Up)
        m_link->subscribe(path, false);
}
