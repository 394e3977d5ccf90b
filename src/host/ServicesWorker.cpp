#include "host/ServicesWorker.h"

#include "api/core/Language.h"
#include "api/nodes/CMListRowsNode.h"
#include "api/nodes/CMRedirectRowsNode.h"
#include "api/values/VeskRoles.h"

#include <QFileInfo>

ServicesWorker::ServicesWorker()
    : CMNodesWorker({}, QStringLiteral("host"))
    , m_services(CMListRowsNode::create(nodes(), addPrefix(QStringLiteral("services"))))
    , m_settings(CMListRowsNode::create(nodes(), addPrefix(QStringLiteral("settings"))))
{
    m_services->setTitle(TrString("Host", QT_TRANSLATE_NOOP("Host", "Services")));
    m_settings->setTitle(TrString("Host", QT_TRANSLATE_NOOP("Host", "Settings")));
    CMRedirectRowsNode::create(nodes(), addPrefix(QString()), m_services->path());
}

void ServicesWorker::addService(const CMPath &root)
{
    m_services->rowsAppend(root);
}

void ServicesWorker::addSetting(const CMPath &path)
{
    m_settings->rowsAppend(path);
}

void ServicesWorker::addFailed(const QString &file, const QString &reason)
{
    VeskRoles row;
    row.setType(VeskRolesType::Header());
    row.setTitle(TrString(QStringLiteral("Host"),
        QString::fromLatin1(QT_TRANSLATE_NOOP("Host", "%1 could not be loaded")), QString(), -1,
        {TrArg(QFileInfo(file).fileName())}));
    row.setDescription(Language::ntr(reason));
    row.insert(VeskRoles::Disabled(), true);
    m_services->rowsAppend(row);
}
