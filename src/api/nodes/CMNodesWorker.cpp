// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMNodesWorker.h"

#include "api/core/log.h"
#include "api/core/vesk.h"
#include "api/nodes/CMUINode.h"

#include <QPointer>
#include <QThread>

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
    VESK_ASSERT(QThread::currentThread() == thread());
    CMNode *node = m_nodes.find(request.path());
    return node && node->request(request);
}

bool CMNodesWorker::take(const CMRequest &request)
{
    switch (request.kind()) {
    case CMRequest::GetData:
        return getDataRequest(CMGetDataRequest(request));
    case CMRequest::GetRows:
        return getRowsRequest(CMGetRowsRequest(request));
    case CMRequest::MatchRow:
        return matchRowRequest(CMMatchRowRequest(request));
    case CMRequest::SetData:
        return setDataRequest(CMSetDataRequest(request));
    case CMRequest::None:
        break;
    }
    return false;
}

bool CMNodesWorker::handleRequest(const CMRequest &request)
{
    const bool taken = take(request);
    if (!taken && m_nodes.find(request.path()))
        request.reply().setError(CMUnansweredError());
    return taken;
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
    const QList<CMNode *> nodes = m_nodes.all();
    std::vector<QPointer<CMNode>> present(nodes.begin(), nodes.end());
    for (const QPointer<CMNode> &node : present) {
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
