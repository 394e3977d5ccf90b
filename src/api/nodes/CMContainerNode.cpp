// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMContainerNode.h"

#include "api/core/ThreadCheck.h"
#include "api/nodes/CMRoleTable.h"
#include "api/values/VeskRowsRoles.h"

#include <algorithm>

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

void CMContainerNode::answerRows(const CMGetRowsRequest &request, const QVector<VeskRoles> &rows)
{
    VESK_ASSERT_OWN_THREAD();
    const int first = request.first();
    if (first < 0 || request.last() < first) {
        request.reply().setError(
            CMError(TrString("CMListRowsNode", "The range of rows is not valid.")));
        return;
    }
    const QStringList &roles = named(request.roles());
    const int last = std::min<int>(request.last(), rows.size() - 1);
    QVariantList values;
    for (int i = first; i <= last; ++i) {
        QVariantList row;
        row.reserve(roles.size());
        for (const QString &role : roles)
            row.append(rows.at(i).value(role));
        values.append(QVariant(row));
    }
    VeskRoles screen = getDataRoles(request.roles(), request.path().params());
    screen.setPath(request.path());
    VeskRowsRoles answer;
    answer.setRowsCount(rows.size());
    answer.setRows(values);
    answer.setRoles(screen);
    request.reply().setValue(answer);
}
