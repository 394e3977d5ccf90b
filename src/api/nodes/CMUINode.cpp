#include "api/nodes/CMUINode.h"

void CMUINode::setDisabled(bool disabled)
{
    if (m_disabled == disabled)
        return;
    m_disabled = disabled;
    if (CMSubscribe *subscribers = subscribe())
        subscribers->changedStartingWith(path(), CMSubscribe::ValueChanged(), -1, -1);
}

QVariant CMUINode::getRoleData(const QString &role, const Params &params)
{
    if (role == VeskRoles::Title())
        return m_title.isEmpty() ? QVariant() : QVariant(m_title);
    if (role == VeskRoles::Description())
        return m_description.isEmpty() ? QVariant() : QVariant(m_description);
    if (role == VeskRoles::Icon())
        return m_icon.isEmpty() ? QVariant() : QVariant(m_icon);
    if (role == VeskRoles::MediaData())
        return m_mediaData.isEmpty() ? QVariant() : QVariant(m_mediaData);
    if (role == VeskRoles::Disabled())
        return m_disabled ? QVariant(true) : QVariant();
    if (role == VeskRoles::Path())
        return opened(params).toEncoded();
    return QVariant();
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
    values.reserve(names.size() + 1);
    for (const QString &role : names) {
        if (role == VeskRoles::Path())
            continue;
        const QVariant value = getRoleData(role, params);
        if (!value.isNull())
            values.insert(role, value);
    }
    values.insert(VeskRoles::Path(), opened(params).toEncoded());
    return VeskHash(std::move(values));
}

bool CMUINode::getDataRequest(const CMGetDataRequest &request)
{
    const QStringList &names = named(request.roles());
    QVariantList values;
    values.reserve(names.size());
    for (const QString &role : names) {
        values.append(role == VeskRoles::Path() ? QVariant(request.path().toEncoded())
                                                : getRoleData(role, request.path().params()));
    }
    request.reply().setValue(values);
    return true;
}

void CMUINode::languageChanged()
{
    if (CMSubscribe *subscribers = subscribe())
        subscribers->changedStartingWith(path(), CMSubscribe::ValueChanged(), -1, -1);
}
