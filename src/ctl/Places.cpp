#include "ctl/Places.h"

#include "api/values/VeskRowsRoles.h"

#include <algorithm>

namespace {

const CMPath &servicesPath()
{
    static const CMPath path(QStringLiteral("host"), QStringLiteral("services"));
    return path;
}

/// TuneIn's own name for the screen, which its links carry in every language.
bool leadsToFavorites(const CMPath &path)
{
    return path.param(QStringLiteral("c")) == QLatin1String("presets");
}

} // namespace

CtlStatus Places::resolve(const CtlPlace &place, CMPath &path)
{
    CtlStatus status = start(place, path);
    for (const int index : place.rows) {
        if (status != CtlStatus::Success)
            return status;
        VeskRoles row;
        status = m_screens.row(path, index, {VeskRoles::Path()}, row);
        path = row.path();
        if (status == CtlStatus::Success && path.isEmpty()) {
            return m_session.fail(
                CtlStatus::Failed, QStringLiteral("row %1 leads nowhere").arg(index));
        }
    }
    return status;
}

CtlStatus Places::start(const CtlPlace &place, CMPath &path)
{
    switch (place.start) {
    case CtlPlace::Root:
        return root(path);
    case CtlPlace::Favorites:
        return favorites(path);
    case CtlPlace::Search:
        return found(place.text, path);
    case CtlPlace::Path:
        path = place.path;
        break;
    }
    return CtlStatus::Success;
}

CtlStatus Places::root(CMPath &path)
{
    path = m_session.options().service;
    if (!path.isEmpty())
        return CtlStatus::Success;
    QList<VeskRoles> services;
    const CtlStatus status = m_screens.rows(servicesPath(), {VeskRoles::Path()}, services);
    // A plug-in that could not be loaded is listed without a path.
    const auto failed = std::remove_if(services.begin(), services.end(),
        [](const VeskRoles &row) { return row.path().isEmpty(); });
    services.erase(failed, services.end());
    path = services.size() == 1 ? services.first().path() : servicesPath();
    return status;
}

CtlStatus Places::service(CMPath &path)
{
    const CtlStatus status = root(path);
    if (status != CtlStatus::Success || path != servicesPath())
        return status;
    return m_session.fail(CtlStatus::BadUsage,
        QStringLiteral("there is not one service but several or none: name one with --in"));
}

/// No role says which row of a service leads to the favorites, so the path has to.
CtlStatus Places::favorites(CMPath &path)
{
    CMPath root;
    QList<VeskRoles> rows;
    CtlStatus status = service(root);
    if (status == CtlStatus::Success)
        status = m_screens.rows(root, {VeskRoles::Path()}, rows);
    if (status != CtlStatus::Success)
        return status;
    for (const VeskRoles &row : rows) {
        path = row.path();
        if (leadsToFavorites(path))
            return CtlStatus::Success;
    }
    return m_session.fail(CtlStatus::Failed, QStringLiteral("this service has no favorites"));
}

CtlStatus Places::found(const QString &text, CMPath &path)
{
    CMPath searched;
    const CtlStatus status = service(searched);
    if (status != CtlStatus::Success)
        return status;
    QVariantHash params = pathParams(searched);
    params.insert(QStringLiteral("roles"), QStringList {VeskRoles::Search()});
    return m_session.call(QStringLiteral("getData"), params, [&](const QVariantHash &result) {
        const QVariantList values = result.value(QStringLiteral("values")).toList();
        return query(VeskRoles(values.value(0).toHash()).path(), text, path);
    });
}

CtlStatus Places::query(const CMPath &searches, const QString &text, CMPath &path)
{
    QList<VeskRoles> rows;
    if (!searches.isEmpty()) {
        const CtlStatus status = m_screens.rows(
            searches, {VeskRoles::Type(), VeskRoles::Query(), VeskRoles::QueryPath()}, rows);
        if (status != CtlStatus::Success)
            return status;
    }
    for (const VeskRoles &row : rows) {
        path = row.queryPath();
        if (row.type() == VeskRolesType::query && !path.isEmpty()) {
            path.addParam(row.query(), text);
            return CtlStatus::Success;
        }
    }
    return m_session.fail(CtlStatus::Failed, QStringLiteral("this service offers no search"));
}
