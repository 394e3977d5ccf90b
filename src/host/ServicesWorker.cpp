// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/ServicesWorker.h"

#include "api/core/Language.h"
#include "api/core/ThreadCheck.h"
#include "api/nodes/CMListRowsNode.h"
#include "api/nodes/CMRedirectRowsNode.h"
#include "api/values/VeskRoles.h"
#include "plugin/supervision/PluginDescriptor.h"

#include <QFileInfo>

namespace {

/// What the host itself answers of the service at \a root.
VeskRoles declaredRoles(const CMPath &root, const PluginDescriptor &descriptor)
{
    const ServiceScreens &screens = descriptor.screens;
    VeskRoles roles;
    if (!descriptor.id.isEmpty())
        roles.setId(descriptor.id);
    if (!screens.search.isEmpty())
        roles.setSearch(pathBelow(root, screens.search));
    for (const QString &role :
        {VeskRoles::Favorites(), VeskRoles::Account(), VeskRoles::Import(), VeskRoles::Export()})
        roles.insert(role, QVariant());
    if (!screens.favorites.isEmpty()) {
        QList<CMPath> toggles;
        for (const QString &toggle : screens.favoriteToggles)
            toggles.append(pathBelow(root, toggle));
        roles.setFavorites(pathBelow(root, screens.favorites), toggles, screens.favoriteIds);
    }
    if (!screens.account.isEmpty())
        roles.setAccount(pathBelow(root, screens.account), screens.accountType);
    if (!screens.importValue.isEmpty())
        roles.setImport(pathBelow(root, screens.importValue));
    if (!screens.exportValue.isEmpty())
        roles.setExport(pathBelow(root, screens.exportValue));
    return roles;
}

} // namespace

ServicesWorker::ServicesWorker()
    : CMNodesWorker({}, QStringLiteral("host"))
    , m_services(CMListRowsNode::create(nodes(), addPrefix(QStringLiteral("services"))))
    , m_settings(CMListRowsNode::create(nodes(), addPrefix(QStringLiteral("settings"))))
    , m_advanced(CMListRowsNode::create(nodes(), addPrefix(QStringLiteral("settings/advanced"))))
{
    m_services->setTitle(TrString("Host", QT_TRANSLATE_NOOP("Host", "Services")));
    m_settings->setTitle(TrString("Host", QT_TRANSLATE_NOOP("Host", "Settings")));
    m_advanced->setTitle(TrString("Host", QT_TRANSLATE_NOOP("Host", "Advanced settings")));
    CMRedirectRowsNode::create(nodes(), addPrefix(QString()), m_services->path());
}

void ServicesWorker::addService(const CMPath &root, const PluginDescriptor &descriptor)
{
    VESK_ASSERT_OWN_THREAD();
    m_services->rowsAppend(root, declaredRoles(root, descriptor));
}

void ServicesWorker::addSettings(const TrString &heading, const QList<CMPath> &paths)
{
    VESK_ASSERT_OWN_THREAD();
    VeskRoles row;
    row.setType(VeskRolesType::Header());
    row.setTitle(heading);
    m_settings->rowsAppend(row);
    for (const CMPath &path : paths)
        m_settings->rowsAppend(path);
}

void ServicesWorker::addAdvancedSettings(const QList<CMPath> &paths)
{
    VESK_ASSERT_OWN_THREAD();
    for (const CMPath &path : paths)
        m_advanced->rowsAppend(path);
    m_settings->rowsAppend(m_advanced->path());
}

void ServicesWorker::addFailed(const QString &file, const QString &reason)
{
    VESK_ASSERT_OWN_THREAD();
    VeskRoles row;
    row.setType(VeskRolesType::Header());
    row.setTitle(TrString(QStringLiteral("Host"),
        QString::fromLatin1(QT_TRANSLATE_NOOP("Host", "%1 could not be loaded")), QString(), -1,
        {TrArg(QFileInfo(file).fileName())}));
    row.setDescription(Language::ntr(reason));
    row.insert(VeskRoles::Disabled(), true);
    m_services->rowsAppend(row);
}
