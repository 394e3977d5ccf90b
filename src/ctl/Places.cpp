// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/Places.h"

#include "api/values/VeskRowsRoles.h"

#include <algorithm>

namespace {

const CMPath &servicesPath()
{
    static const CMPath path(QStringLiteral("host"), QStringLiteral("services"));
    return path;
}

/// The name that links to the favorites carry in every language.
bool leadsToFavorites(const CMPath &path)
{
    return path.param(QStringLiteral("c")) == QLatin1String("presets");
}

} // namespace

CtlStatus Places::read(const QStringList &words, CtlPlace &place)
{
    if (CtlPlace::parse(words, place))
        return CtlStatus::Success;
    return m_session.fail(CtlStatus::BadUsage,
        ctlText("\"%1\" is no place: that is a path, row numbers (3/0), favorites, or "
                "search:TEXT")
            .arg(words.join(QLatin1Char(' '))));
}

CtlStatus Places::value(const QString &word, CMPath &path)
{
    Spot spot;
    CtlStatus status = resolve(QStringList {word}, spot);
    path = spot.path;
    if (status == CtlStatus::Success && path.isEmpty()) {
        status = m_session.fail(
            CtlStatus::Failed, ctlText("row %1 leads nowhere").arg(QString::number(spot.row)));
    }
    return status;
}

CtlStatus Places::resolve(const QStringList &words, Spot &spot)
{
    CtlPlace place;
    const CtlStatus status = read(words, place);
    return status == CtlStatus::Success ? resolve(place, spot) : status;
}

CtlStatus Places::resolve(const CtlPlace &place, Spot &spot)
{
    CtlPlace rest = place;
    spot.place = place;
    CtlStatus status = start(rest, spot);
    for (const int index : qAsConst(rest.rows)) {
        if (status == CtlStatus::Success)
            status = open(index, spot);
    }
    return status;
}

/// From \a spot to a row of what it leads to.
CtlStatus Places::open(int index, Spot &spot)
{
    if (spot.path.isEmpty()) {
        return m_session.fail(
            CtlStatus::Failed, ctlText("row %1 leads nowhere").arg(QString::number(spot.row)));
    }
    VeskRoles row;
    const CtlStatus status = m_screens.row(spot.path, index, {VeskRoles::Path()}, row);
    spot.screen = spot.path;
    spot.row = index;
    spot.path = row.path();
    spot.type = 0;
    return status;
}

/// Takes from \a place what it used of it.
CtlStatus Places::start(CtlPlace &place, Spot &spot)
{
    switch (place.start) {
    case CtlPlace::Shown:
        return shown(place, spot);
    case CtlPlace::Root:
        return root(spot.path);
    case CtlPlace::Favorites:
        return favorites(spot.path);
    case CtlPlace::Search:
        return found(place.text, spot.path);
    case CtlPlace::Id:
        return withId(place, spot);
    case CtlPlace::Path:
        break;
    }
    const ShownRow row = place.rows.isEmpty() ? m_session.shown().find(place.path) : ShownRow();
    moveTo(row, spot);
    spot.path = place.path;
    return CtlStatus::Success;
}

void Places::moveTo(const ShownRow &row, Spot &spot)
{
    spot.screen = row.screen;
    spot.row = row.row;
    spot.path = row.path;
    spot.type = row.type;
}

/// The row that was seen under its number, whatever stands there now.
CtlStatus Places::shown(CtlPlace &place, Spot &spot)
{
    ShownRow row;
    // Programs count from the first screen on, as those do who name a service.
    if (!m_session.options().json && m_session.options().service.isEmpty())
        row = m_session.shown().last(place.rows.first());
    spot.place.start = CtlPlace::Root;
    if (row.screen.isEmpty())
        return root(spot.path);
    spot.place = CtlPlace::of(row.screen);
    spot.place.rows = place.rows;
    if (row.path.isEmpty()) {
        spot.path = row.screen;
        return CtlStatus::Success;
    }
    moveTo(row, spot);
    place.rows.removeFirst();
    return CtlStatus::Success;
}

CtlStatus Places::withId(const CtlPlace &place, Spot &spot)
{
    const ShownRow row = m_session.shown().findId(place.text);
    if (row.row < 0) {
        return m_session.fail(CtlStatus::Failed,
            ctlText("no row with \"%1\" was shown lately; show the list that has it")
                .arg(place.text));
    }
    spot.place = CtlPlace::of(row.screen).row(row.row);
    moveTo(row, spot);
    return CtlStatus::Success;
}

CtlStatus Places::row(Spot &spot, const QStringList &roles, VeskRoles &row)
{
    const QStringList all = QStringList {VeskRoles::Path()} + roles;
    const auto fetch = [&](int index) { return m_screens.row(spot.screen, index, all, row); };
    if (spot.path.isEmpty())
        return fetch(spot.row);
    // A list may have become shorter as well.
    int index = -1;
    QList<VeskRoles> rows;
    CtlStatus status = m_screens.range(spot.screen, spot.row, all, rows);
    if (status != CtlStatus::Success)
        return status;
    row = rows.value(0);
    if (!rows.isEmpty() && row.path() == spot.path)
        return status;
    status = m_screens.find(spot.screen, spot.path, index);
    if (status != CtlStatus::Success)
        return status;
    if (index < 0) {
        RpcAnswer gone;
        gone.kind = RpcAnswer::Error;
        gone.code = RpcAnswer::EntryGone;
        gone.message = ctlText("This entry is no longer in the list.");
        return tellGone(spot.screen, gone);
    }
    spot.row = index;
    return fetch(index);
}

CtlStatus Places::tellGone(const CMPath &screen, const RpcAnswer &answer)
{
    const CtlStatus status = m_session.report(answer);
    if (m_session.options().json)
        return status;
    m_session.note(ctlText("This is the list now:"));
    m_screens.show(screen, CtlPlace::of(screen), {});
    return status;
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
        ctlText("there is not one service but several or none: name one with --in"));
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
    return m_session.fail(CtlStatus::Failed, ctlText("this service has no favorites"));
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
    return m_session.fail(CtlStatus::Failed, ctlText("this service offers no search"));
}
