#include "api/nodes/CMContainerNode.h"

QVariant CMContainerNode::getRoleData(const QString &role, const Params &params)
{
    if (role == VeskRoles::Type())
        return VeskRolesType::Container();
    if (role == VeskRoles::ContainerType()) {
        return m_containerType == VeskRolesContainerType::List
            ? QVariant()
            : QVariant(static_cast<int>(m_containerType));
    }
    if (role == VeskRoles::Playable())
        return m_playable ? QVariant(true) : QVariant();
    return CMUINode::getRoleData(role, params);
}

void CMContainerNode::languageChanged()
{
    if (CMSubscribe *subscribers = subscribe())
        subscribers->changedStartingWith(path(), CMSubscribe::RowsChangeReset(), -1, -1);
}
