// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMNodesWorker.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "api/nodes/CMUINode.h"

#include <QPointer>

#include <vector>

VESK_LOGGER("Nodes")

CMNodesWorker::CMNodesWorker(const QVariantHash &config, const QString &name)
    : CMWorker(config, name)
    , m_nodes(this)
{
}

CMNodesWorker::~CMNodesWorker()
{
    stop();
}

bool CMNodesWorker::getDataRequest(const CMGetDataRequest &request)
{
    return askNode(request);
}

bool CMNodesWorker::getRowsRequest(const CMGetRowsRequest &request)
{
    return askNode(request);
}

bool CMNodesWorker::matchRowRequest(const CMMatchRowRequest &request)
{
    return askNode(request);
}

bool CMNodesWorker::setDataRequest(const CMSetDataRequest &request)
{
    return askNode(request);
}

bool CMNodesWorker::askNode(const CMRequest &request)
{
    VESK_ASSERT_OWN_THREAD();
    CMNode *node = m_nodes.find(request.path());
    return node && node->request(request);
}

bool CMNodesWorker::handleRequest(const CMRequest &request)
{
    const bool accepted = CMCallHandler(*this, request);
    // A path with a node is not "nothing at this address", which is what the base class answers.
    if (!accepted && m_nodes.find(request.path()))
        request.reply().setError(CMUnansweredError());
    return accepted;
}

void CMNodesWorker::handleConnectChange(const CMPath &path)
{
    m_nodes.subscribed(path);
}

void CMNodesWorker::handleDisconnectChange(const CMPath &path)
{
    m_nodes.unsubscribed(path);
}

void CMNodesWorker::handleLanguageChanged()
{
    const QList<CMNode *> all = m_nodes.all();
    // Guarded: one node's update may delete another.
    const std::vector<QPointer<CMNode>> nodes(all.begin(), all.end());
    for (const QPointer<CMNode> &node : nodes) {
        if (auto *shown = qobject_cast<CMUINode *>(node.data()))
            shown->languageChanged();
    }
}

void CMNodesWorker::trace()
{
    CMWorker::trace();
    for (const CMNode *node : m_nodes.all())
        VESK_DEBUG("  " << node->metaObject()->className() << " at '" << node->path() << "'");
}
