// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMUINode.h"

#include "api/core/ThreadCheck.h"
#include "api/nodes/CMRoleTable.h"
#include "api/values/variants.h"

#include <algorithm>

void CMUINode::setDisabled(bool disabled)
{
    VESK_ASSERT_OWN_THREAD();
    if (m_disabled == disabled)
        return;
    m_disabled = disabled;
    if (CMSubscribe *subscribers = subscribe())
        subscribers->changedStartingWith(path(), CMSubscribe::ValueChanged(), -1, -1);
}

QVariant CMUINode::getRoleData(const QString &role, const Params &params)
{
    enum { Title, Description, Icon, MediaData, Disabled, Path };
    static const CMRoleTable roles {VeskRoles::Title(), VeskRoles::Description(), VeskRoles::Icon(),
        VeskRoles::MediaData(), VeskRoles::Disabled(), VeskRoles::Path()};
    switch (roles.find(role)) {
    case Title:
        return m_title.isEmpty() ? QVariant() : QVariant(m_title);
    case Description:
        return m_description.isEmpty() ? QVariant() : QVariant(m_description);
    case Icon:
        return m_icon.isEmpty() ? QVariant() : QVariant(m_icon);
    case MediaData:
        return m_mediaData.isEmpty() ? QVariant() : QVariant(m_mediaData);
    case Disabled:
        return m_disabled ? QVariant(true) : QVariant();
    case Path:
        return opened(params).toEncoded();
    default:
        return QVariant();
    }
}

CMPath CMUINode::opened(const Params &params) const
{
    CMPath opened = path();
    for (auto it = params.begin(); it != params.end(); ++it)
        opened.addParam(it.key(), it.value());
    return opened;
}

const QStringList &CMUINode::named(const QStringList &roles)
{
    return roles == CMAllRoles() ? VeskRoles::all() : roles;
}

VeskRoles CMUINode::getDataRoles(const QStringList &roles, const Params &params)
{
    const QStringList &names = named(roles);
    QVariantHash values;
    values.reserve(std::min<int>(names.size() + 1, 8)); // few nodes answer more
    for (const QString &role : names) {
        if (role == VeskRoles::Path())
            continue;
        const QVariant value = getRoleData(role, params);
        if (!veskIsNull(value))
            values.insert(role, value);
    }
    values.insert(VeskRoles::Path(), opened(params).toEncoded());
    return VeskHash(std::move(values));
}

bool CMUINode::getDataRequest(const CMGetDataRequest &request)
{
    const QStringList &names = named(request.roles());
    const Params params = request.path().params();
    QVariantList values;
    values.reserve(names.size());
    for (const QString &role : names) {
        const bool isPath = role == VeskRoles::Path();
        values.append(isPath ? QVariant(request.path().toEncoded()) : getRoleData(role, params));
    }
    request.reply().setValue(values);
    return true;
}

void CMUINode::languageChanged()
{
    VESK_ASSERT_OWN_THREAD();
    if (CMSubscribe *subscribers = subscribe())
        subscribers->changedStartingWith(path(), CMSubscribe::ValueChanged(), -1, -1);
}
