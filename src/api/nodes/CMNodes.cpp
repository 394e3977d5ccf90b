// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMNodes.h"

#include "api/core/vesk.h"
#include "api/nodes/CMNode.h"
#include "api/nodes/CMNodesWorker.h"
#include "api/nodes/CMRootWorker.h"

CMNodes::CMNodes(CMNodesWorker *worker)
    : m_worker(worker)
{
}

CMNodes::~CMNodes()
{
    while (!m_order.isEmpty())
        delete m_order.last();
}

void CMNodes::add(CMNode *node)
{
    VESK_ASSERT_THREAD(m_thread);
    const CMPath &path = node->path();
    QHash<QString, CMNode *> &byBase = m_byBase[path.prefix()];
    VESK_ASSERT(!byBase.contains(path.base()));
    byBase.insert(path.base(), node);
    m_order.append(node);
    if (path.prefix() != m_worker->name())
        m_worker->addForeignPath(path);
    for (const CMPath &subscribedPath : m_subscribed) {
        if (find(subscribedPath) == node)
            node->rowsPathAdd(subscribedPath);
    }
}

void CMNodes::remove(CMNode *node)
{
    VESK_ASSERT_THREAD(m_thread);
    const CMPath &path = node->path();
    if (!m_order.removeOne(node))
        return;
    m_byBase[path.prefix()].remove(path.base());
    if (path.prefix() != m_worker->name())
        m_worker->removeForeignPath(path);
}

CMNode *CMNodes::find(const CMPath &path) const
{
    VESK_ASSERT_THREAD(m_thread);
    const auto byBase = m_byBase.constFind(path.prefix());
    if (byBase == m_byBase.constEnd())
        return nullptr;
    if (CMNode *node = byBase->value(path.base()))
        return node;
    QString base = path.base();
    for (int slash = base.lastIndexOf(QLatin1Char('/')); slash > 0;
         slash = base.lastIndexOf(QLatin1Char('/'))) {
        base.truncate(slash);
        if (CMNode *node = byBase->value(base))
            return node->servesBelow() ? node : nullptr;
    }
    return nullptr;
}

void CMNodes::request(const CMRequest &request) const
{
    if (request.kind() == CMRequest::None)
        return;
    if (find(request.path()))
        m_worker->request(request);
    else if (CMRootWorker *root = CMRoot())
        root->request(request);
    else
        request.reply().setError(CMNoNodeError());
}

void CMNodes::subscribed(const CMPath &path)
{
    VESK_ASSERT_THREAD(m_thread);
    m_subscribed.insert(path);
    if (CMNode *node = find(path))
        node->rowsPathAdd(path);
}

void CMNodes::unsubscribed(const CMPath &path)
{
    VESK_ASSERT_THREAD(m_thread);
    m_subscribed.erase(path);
    if (CMNode *node = find(path))
        node->rowsPathRemove(path);
}
