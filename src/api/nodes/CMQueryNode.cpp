// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMQueryNode.h"

CMQueryNode::CMQueryNode(const CMPath &path)
    : CMUINode(path)
{
    setServesBelow(false);
}

CMQueryNode *CMQueryNode::create(CMNodes *nodes, const CMPath &path)
{
    auto *node = new CMQueryNode(path);
    node->setNodes(nodes);
    return node;
}

QVariant CMQueryNode::getRoleData(const QString &role, const Params &params)
{
    if (role == VeskRoles::Type())
        return VeskRolesType::Query();
    if (role == VeskRoles::Query())
        return m_query.isEmpty() ? QVariant() : QVariant(m_query);
    if (role == VeskRoles::QueryPath())
        return m_queryPath.isEmpty() ? QVariant() : QVariant(m_queryPath.toEncoded());
    return CMUINode::getRoleData(role, params);
}
