// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMActivateNode.h"

#include "api/core/ThreadCheck.h"

CMActivateNode::CMActivateNode(const CMPath &path)
    : CMUINode(path)
{
    static const int registered = qRegisterMetaType<CMSetDataRequest>("CMSetDataRequest");
    Q_UNUSED(registered)
    setServesBelow(false);
}

CMActivateNode *CMActivateNode::create(CMNodes *nodes, const CMPath &path)
{
    auto *node = new CMActivateNode(path);
    node->setNodes(nodes);
    return node;
}

void CMActivateNode::doSetInvoke(
    const std::function<QMetaObject::Connection(CMActivateNode *)> &connect)
{
    VESK_ASSERT_OWN_THREAD();
    if (m_connection)
        disconnect(m_connection);
    m_connection = connect(this);
    VESK_ASSERT(m_connection);
}

bool CMActivateNode::setDataRequest(const CMSetDataRequest &request)
{
    if (request.role() != VeskRoles::Activate())
        return CMUINode::setDataRequest(request);
    // When nothing is bound, or the bound function drops the request, its reply ends with an error.
    Q_EMIT invoked(request);
    return true;
}

QVariant CMActivateNode::getRoleData(const QString &role, const Params &params)
{
    if (role == VeskRoles::Type())
        return VeskRolesType::Activate();
    return CMUINode::getRoleData(role, params);
}
