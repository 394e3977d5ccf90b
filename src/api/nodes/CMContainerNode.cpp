// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMContainerNode.h"

#include "api/nodes/CMRoleTable.h"

QVariant CMContainerNode::getRoleData(const QString &role, const Params &params)
{
    enum { Type, ContainerType, Playable };
    static const CMRoleTable roles {
        VeskRoles::Type(), VeskRoles::ContainerType(), VeskRoles::Playable()};
    switch (roles.find(role)) {
    case Type:
        return VeskRolesType::Container();
    case ContainerType:
        return m_containerType == VeskRolesContainerType::List
            ? QVariant()
            : QVariant(static_cast<int>(m_containerType));
    case Playable:
        return m_playable ? QVariant(true) : QVariant();
    default:
        return CMUINode::getRoleData(role, params);
    }
}

void CMContainerNode::languageChanged()
{
    if (CMSubscribe *subscribers = subscribe())
        subscribers->changedStartingWith(path(), CMSubscribe::RowsChangeReset(), -1, -1);
}
