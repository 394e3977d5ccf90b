// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMRedirectRowsNode.h"

#include "api/nodes/CMRootWorker.h"
#include "api/values/variants.h"

CMRedirectRowsNode::CMRedirectRowsNode(const CMPath &path, const CMPath &target)
    : CMContainerNode(path)
    , m_target(target)
{
    setServesBelow(false);
}

CMRedirectRowsNode::~CMRedirectRowsNode() = default;

CMRedirectRowsNode *CMRedirectRowsNode::create(
    CMNodes *nodes, const CMPath &path, const CMPath &target)
{
    auto *node = new CMRedirectRowsNode(path, target);
    node->setNodes(nodes);
    return node;
}

bool CMRedirectRowsNode::getRowsRequest(const CMGetRowsRequest &request)
{
    ask(request.redirectedTo(m_target));
    return true;
}

bool CMRedirectRowsNode::matchRowRequest(const CMMatchRowRequest &request)
{
    ask(request.redirectedTo(m_target));
    return true;
}

bool CMRedirectRowsNode::getDataRequest(const CMGetDataRequest &request)
{
    QVariantList values;
    QStringList missing;
    QList<int> places;
    bool anyOwn = false;
    const Params params = request.path().params();
    for (const QString &role : named(request.roles())) {
        const bool isPath = role == VeskRoles::Path();
        values.append(isPath ? QVariant(request.path().toEncoded()) : getRoleData(role, params));
        if (values.last().isNull()) {
            missing.append(role);
            places.append(values.size() - 1);
        } else if (!isPath) {
            anyOwn = true;
        }
    }
    const CMReply<QVariant> reply = request.reply();
    if (missing.isEmpty()) {
        reply.setValue(values);
        return true;
    }

    const auto answer = std::make_shared<CMReplyData<QVariant>>();
    ask(request.redirectedTo(m_target, missing, CMReply<QVariant>(answer)));
    answer->whenFinished(this, [reply, values, places, anyOwn, answer]() mutable {
        const CMError error = answer->error();
        if (!error.isEmpty() && !anyOwn) {
            reply.setError(error);
            return;
        }
        const QVariantList targets = error.isEmpty() ? veskListIn(answer->value()) : QVariantList();
        for (int i = 0; i < places.size(); ++i)
            values[places.at(i)] = targets.value(i);
        reply.setValue(values);
    });
    return true;
}

void CMRedirectRowsNode::rowsPathAdd(const CMPath &path)
{
    CMRootWorker *root = CMRoot();
    if (!root)
        return;
    m_subscriptions[path] = root->subscribe(
        m_target, this,
        [path](const CMChange &change) {
            if (change.hops < CMRequest::MaxHops)
                CMRoot()->notifyChanged(
                    {path, change.kind, change.first, change.last, change.hops + 1});
        },
        CMRootWorker::ForOthers);
}

void CMRedirectRowsNode::rowsPathRemove(const CMPath &path)
{
    m_subscriptions.erase(path);
}
