// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/stations/StationsNodes.h"

#include "api/values/VeskRowsRoles.h"
#include "modules/stations/StationsData.h"

#include <algorithm>

VeskRoles StationsScreen::row(int index) const
{
    if (index < before.size())
        return before.at(index);
    index -= before.size();
    return index < items ? item(index) : after.value(index - items);
}

StationsScreenNode::StationsScreenNode(const CMPath &path, Build build)
    : CMContainerNode(path)
    , m_build(std::move(build))
{
    setServesBelow(false);
}

bool StationsScreenNode::getRowsRequest(const CMGetRowsRequest &request)
{
    if (request.first() < 0 || request.last() < request.first()) {
        request.reply().setError(
            CMError(stationsTr(QT_TRANSLATE_NOOP("Stations", "The range of rows is not valid."))));
        return true;
    }
    const StationsScreen screen = m_build(request.path().params());
    if (!screen.error.isEmpty()) {
        request.reply().setError(screen.error);
        return true;
    }
    const QStringList &roles = named(request.roles());
    QVariantList rows;
    for (int i = request.first(); i <= std::min<int>(request.last(), screen.count() - 1); ++i) {
        const VeskRoles row = screen.row(i);
        QVariantList values;
        values.reserve(roles.size());
        for (const QString &role : roles)
            values.append(row.value(role));
        rows.append(QVariant(values));
    }
    VeskRoles own = getDataRoles(request.roles(), request.path().params());
    own.setPath(request.path());
    VeskRowsRoles answer;
    answer.setRowsCount(screen.count());
    answer.setRows(rows);
    answer.setRoles(own);
    request.reply().setValue(answer);
    return true;
}

QVariant StationsScreenNode::getRoleData(const QString &role, const Params &params)
{
    const QVariant value = CMContainerNode::getRoleData(role, params);
    if (role != VeskRoles::Title() || !value.isNull())
        return value;
    const TrString title = m_build(params).title;
    return title.isEmpty() ? QVariant() : QVariant(title);
}

StationsRootNode::StationsRootNode(const CMPath &path, Build build, CMContainerNode *searches)
    : StationsScreenNode(path, std::move(build))
    , m_searches(searches)
{
}

QVariant StationsRootNode::getRoleData(const QString &role, const Params &params)
{
    if (role == VeskRoles::Search())
        return m_searches->getDataRoles(CMAllRoles(), {});
    return StationsScreenNode::getRoleData(role, params);
}

void StationsNode::setSet(const QString &role, Set set)
{
    m_role = role;
    m_set = std::move(set);
}

QVariant StationsNode::getRoleData(const QString &role, const Params &params)
{
    return m_get ? m_get(opened(params)).value(role) : QVariant();
}

bool StationsNode::setDataRequest(const CMSetDataRequest &request)
{
    if (!m_set || request.role() != m_role)
        return false;
    m_set(request);
    return true;
}
