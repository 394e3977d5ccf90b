// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/Services.h"

#include "ctl/Screens.h"

#include <algorithm>

namespace {

const CMPath &servicesPath()
{
    static const CMPath path(QStringLiteral("host"), QStringLiteral("services"));
    return path;
}

const QStringList &serviceRoles()
{
    static const QStringList roles {VeskRoles::Path(), VeskRoles::Id(), VeskRoles::Search(),
        VeskRoles::Favorites(), VeskRoles::Account(), VeskRoles::Import(), VeskRoles::Export()};
    return roles;
}

CMPath pathIn(const QVariantHash &role)
{
    return CMPath::fromVariant(role.value(QStringLiteral("path")));
}

Service serviceOf(const VeskRoles &row)
{
    const auto role = [&](const QString &name) { return row[name].toHash(); };
    const QVariantHash favorites = role(VeskRoles::Favorites());
    const QVariantHash account = role(VeskRoles::Account());
    Service service;
    service.id = row[VeskRoles::Id()].toString();
    service.root = row.path();
    service.searches = pathIn(role(VeskRoles::Search()));
    service.favorites = pathIn(favorites);
    const QVariantList entries = favorites.value(QStringLiteral("toggle")).toList();
    for (const QVariant &entry : entries)
        service.favoriteEntries.append(CMPath::fromVariant(entry));
    service.favoriteIds = favorites.value(QStringLiteral("ids")).toStringList();
    service.account = pathIn(account);
    service.accountType = account.value(QStringLiteral("type")).toInt();
    service.accountKey = account.value(QStringLiteral("key")).toString();
    service.imports = pathIn(role(VeskRoles::Import()));
    service.exports = pathIn(role(VeskRoles::Export()));
    return service;
}

QString namesOf(const QList<Service> &services)
{
    QStringList names;
    for (const Service &service : services)
        names.append(service.id.isEmpty() ? service.root.toEncoded() : service.id);
    return names.join(QLatin1String(", "));
}

} // namespace

bool Service::changesFavorites(const CMPath &entry) const
{
    return std::any_of(
        favoriteEntries.begin(), favoriteEntries.end(), [&](const CMPath &candidate) {
            return candidate.prefix() == entry.prefix() && candidate.base() == entry.base();
        });
}

QStringList Service::idsOf(const CMPath &menu) const
{
    QStringList ids;
    for (const QString &name : favoriteIds) {
        const QString value = menu.param(name);
        if (!value.isEmpty())
            ids.append(value);
    }
    return ids;
}

CtlResult<QList<Service>> Services::loaded()
{
    const auto rows = Screens(m_session).rows(servicesPath(), serviceRoles());
    if (!rows)
        return failure(rows.error());
    QList<Service> services;
    // A plug-in that could not be loaded is listed without a path.
    for (const VeskRoles &row : *rows) {
        if (!row.path().isEmpty())
            services.append(serviceOf(row));
    }
    return services;
}

CtlResult<QList<Service>> Services::chosen()
{
    const QString &name = m_session.options().service;
    auto services = loaded();
    if (!services || name.isEmpty())
        return services;
    const CMPath path = CMPath::fromEncoded(name);
    const auto found
        = std::find_if(services->begin(), services->end(), [&](const Service &service) {
              return path.isEmpty() ? service.id == name : service.root.prefix() == path.prefix();
          });
    if (found == services->end()) {
        return m_session.fail(CtlStatus::BadUsage,
            ctlText("there is no service \"%1\"; there are: %2").arg(name, namesOf(*services)));
    }
    return QList<Service> {*found};
}

CtlResult<QList<Service>> Services::with(CMPath Service::*screen, const QString &none)
{
    auto services = chosen();
    if (!services)
        return services;
    const auto lacks = std::remove_if(services->begin(), services->end(),
        [&](const Service &service) { return (service.*screen).isEmpty(); });
    services->erase(lacks, services->end());
    if (services->isEmpty())
        return m_session.fail(CtlStatus::Failed, none);
    return services;
}

CtlResult<Service> Services::only(CMPath Service::*screen, const QString &none)
{
    const auto services = with(screen, none);
    if (!services)
        return failure(services.error());
    if (services->size() == 1)
        return services->first();
    return m_session.fail(CtlStatus::BadUsage,
        ctlText("there are several services for this: name one with --in (%1)")
            .arg(namesOf(*services)));
}

CtlResult<Service> Services::of(const CMPath &path, CMPath Service::*screen, const QString &none)
{
    const auto services = loaded();
    if (!services)
        return failure(services.error());
    for (const Service &service : *services) {
        if (service.root.prefix() == path.prefix() && !(service.*screen).isEmpty())
            return service;
    }
    return m_session.fail(CtlStatus::Failed, none);
}

CtlResult<CMPath> Services::root()
{
    const CMPath named = CMPath::fromEncoded(m_session.options().service);
    if (!named.isEmpty())
        return named;
    const auto services = chosen();
    if (!services)
        return failure(services.error());
    return services->size() == 1 ? services->first().root : servicesPath();
}

CtlResult<> Services::check(const QString &id, const QString &complaint)
{
    const RpcAnswer answer = m_session.answer(QStringLiteral("getRows"),
        {{QStringLiteral("path"), servicesPath().toEncoded()},
            {QStringLiteral("roles"), QStringList {VeskRoles::Id()}}});
    if (answer.kind != RpcAnswer::Result)
        return m_session.report(answer);
    const QVariantList rows = VeskRowsRoles(answer.result.toHash()).rows();
    for (const QVariant &row : rows) {
        if (row.toList().value(0).toString() == id)
            return {};
    }
    return m_session.fail(CtlStatus::BadUsage, complaint);
}
