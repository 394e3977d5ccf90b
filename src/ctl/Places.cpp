// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/Places.h"

#include "api/values/VeskMediaData.h"
#include "ctl/Groups.h"
#include "ctl/RowText.h"

namespace {

CMPath playingMenuOf(const VeskRoles &row)
{
    return row.mediaData().metaData().contentPlayContextPath();
}

Spot shownSpot(const CtlPlace &place, const ShownRow &row)
{
    return {place, row.screen, row.row, row.path, row.type};
}

CtlResult<Spot> screenSpot(const CtlPlace &place, const CtlResult<CMPath> &screen)
{
    if (!screen)
        return failure(screen.error());
    return Spot {place, {}, -1, *screen, 0};
}

} // namespace

QString noSearch()
{
    return ctlText("this service offers no search");
}

QString noFavorites()
{
    return ctlText("this service has no favorites");
}

const QStringList &menuRoles()
{
    static const QStringList roles {VeskRoles::Context(), VeskRoles::MediaData()};
    return roles;
}

CMPath menuOf(const VeskRoles &row)
{
    const CMPath menu = row.context().path();
    // Some rows have only the menu that they show while they play, which serves as well.
    return menu.isEmpty() ? playingMenuOf(row) : menu;
}

QVariantHash Spot::params() const
{
    QVariantHash params {
        {QStringLiteral("screen"), screen.toEncoded()}, {QStringLiteral("row"), row}};
    if (!path.isEmpty())
        params.insert(QStringLiteral("path"), path.toEncoded());
    return params;
}

CtlResult<CtlPlace> Places::read(const QStringList &words)
{
    if (const auto place = CtlPlace::parse(words))
        return *place;
    return m_session.fail(CtlStatus::BadUsage,
        ctlText("\"%1\" is no place: that is a path, row numbers (3/0), favorites, or "
                "search:TEXT")
            .arg(words.join(QLatin1Char(' '))));
}

CtlResult<CMPath> Places::value(const QString &word)
{
    const auto spot = resolve(QStringList {word});
    if (!spot)
        return failure(spot.error());
    if (spot->path.isEmpty()) {
        return m_session.fail(
            CtlStatus::Failed, ctlText("row %1 leads nowhere").arg(QString::number(spot->row)));
    }
    return spot->path;
}

CtlResult<Spot> Places::resolve(const QStringList &words)
{
    const auto place = read(words);
    if (!place)
        return failure(place.error());
    return resolve(*place);
}

CtlResult<Spot> Places::resolve(const CtlPlace &place)
{
    QVector<int> rest = place.rows;
    CtlResult<Spot> spot = start(place, rest);
    for (const int index : std::as_const(rest)) {
        if (spot)
            spot = open(*spot, index);
    }
    return spot;
}

/// A row of the screen that \a spot leads to.
CtlResult<Spot> Places::open(const Spot &spot, int index)
{
    if (spot.path.isEmpty()) {
        return m_session.fail(
            CtlStatus::Failed, ctlText("row %1 leads nowhere").arg(QString::number(spot.row)));
    }
    const auto row = m_screens.row(spot.path, index, {VeskRoles::Path()});
    if (!row)
        return failure(row.error());
    return Spot {spot.place, spot.path, index, row->path(), 0};
}

CtlResult<Spot> Places::start(const CtlPlace &place, QVector<int> &rest)
{
    switch (place.start) {
    case CtlPlace::Shown:
        return shown(place, rest);
    case CtlPlace::Root:
        return screenSpot(place, m_services.root());
    case CtlPlace::Favorites:
        return screenSpot(place, favorites());
    case CtlPlace::Search:
        return screenSpot(place, found(place.text));
    case CtlPlace::Id:
        return withId(place.text);
    case CtlPlace::Path:
        break;
    }
    Spot spot = shownSpot(place, rest.isEmpty() ? m_session.shown().find(place.path) : ShownRow());
    spot.path = place.path;
    return spot;
}

/// The row that was shown under its number, even if the list has changed since.
CtlResult<Spot> Places::shown(CtlPlace place, QVector<int> &rest)
{
    ShownRow row;
    // For programs, and where a service is named, numbers count from the first screen.
    if (!m_session.options().json && m_session.options().service.isEmpty())
        row = m_session.shown().last(rest.first());
    if (row.screen.isEmpty()) {
        place.start = CtlPlace::Root;
        return screenSpot(place, m_services.root());
    }
    CtlPlace behind = CtlPlace::of(row.screen);
    behind.rows = place.rows;
    if (row.path.isEmpty())
        return screenSpot(behind, row.screen);
    rest.removeFirst();
    return shownSpot(behind, row);
}

CtlResult<Spot> Places::withId(const QString &id)
{
    const ShownRow row = m_session.shown().findId(id);
    if (row.row < 0) {
        return m_session.fail(CtlStatus::Failed,
            ctlText("no row with \"%1\" was shown lately; show the list that has it").arg(id));
    }
    return shownSpot(CtlPlace::of(row.screen).row(row.row), row);
}

CtlResult<VeskRoles> Places::row(Spot &spot, const QStringList &roles)
{
    const QStringList all = QStringList {VeskRoles::Path()} + roles;
    if (spot.path.isEmpty())
        return m_screens.row(spot.screen, spot.row, all);
    // The list may also be shorter by now.
    const auto now = m_screens.rowIfAny(spot.screen, spot.row, all);
    if (!now)
        return failure(now.error());
    if (*now && (*now)->path() == spot.path)
        return **now;
    const auto index = m_screens.find(spot.screen, spot.path);
    if (!index)
        return failure(index.error());
    if (!*index) {
        RpcAnswer gone;
        gone.kind = RpcAnswer::Error;
        gone.code = RpcAnswer::EntryGone;
        gone.message = ctlText("This entry is no longer in the list.");
        return reportGone(spot.screen, gone);
    }
    spot.row = **index;
    return m_screens.row(spot.screen, spot.row, all);
}

Failure<CtlStatus> Places::reportGone(const CMPath &screen, const RpcAnswer &answer)
{
    const auto failed = m_session.report(answer);
    if (!m_session.options().json) {
        m_session.note(ctlText("This is the list now:"));
        static_cast<void>(m_screens.show(screen, CtlPlace::of(screen), {}));
    }
    return failed;
}

CtlResult<CMPath> Places::favorites()
{
    const auto service = m_services.only(&Service::favorites, noFavorites());
    if (!service)
        return failure(service.error());
    return service->favorites;
}

CtlResult<CMPath> Places::found(const QString &text)
{
    const auto service = m_services.only(&Service::searches, noSearch());
    if (!service)
        return failure(service.error());
    return found(*service, text);
}

CtlResult<CMPath> Places::found(const Service &service, const QString &text)
{
    CtlResult<CMPath> path = failure(CtlStatus::Failed);
    findResults(m_session, service, text, [&](const Result<CMPath, RpcAnswer> &screen) {
        if (screen)
            path = *screen;
        else
            path = m_session.report(screen.error());
    });
    m_session.client().waitForAnswers();
    return path;
}

CtlResult<Menu> Places::menu(const QStringList &words)
{
    return words.isEmpty() ? menuOfPlayer() : menuOfRow(words, &menuOf);
}

CtlResult<Menu> Places::playingMenu(const QStringList &words)
{
    return words.isEmpty() ? menuOfPlayer() : menuOfRow(words, &playingMenuOf);
}

CtlResult<Spot> Places::rowSpot(const QStringList &words)
{
    auto spot = resolve(words);
    if (!spot || spot->isRow())
        return spot;
    return m_session.fail(CtlStatus::Failed,
        ctlText("\"%1\" is a list, or a row that was not shown lately").arg(spot->place.toText()));
}

CtlResult<ItemToKeep> Places::itemToKeep(const QStringList &words)
{
    if (words.isEmpty()) {
        const auto state = m_session.call(QStringLiteral("player.state"));
        if (!state)
            return failure(state.error());
        const QString title = state->value(QStringLiteral("title")).toString();
        const CMPath path = CMPath::fromVariant(state->value(QStringLiteral("path")));
        if (title.isEmpty() && path.isEmpty())
            return m_session.fail(CtlStatus::Failed, ctlText("nothing plays"));
        return ItemToKeep {{}, title, path};
    }
    auto spot = rowSpot(words);
    if (!spot)
        return failure(spot.error());
    const auto found = row(*spot, {VeskRoles::Title()});
    if (!found)
        return failure(found.error());
    spot->path = found->path();
    return ItemToKeep {spot->params(), plainText((*found)[VeskRoles::Title()]), found->path()};
}

CtlResult<Menu> Places::menuOfRow(const QStringList &words, MenuOf menuOf)
{
    auto spot = rowSpot(words);
    if (!spot)
        return failure(spot.error());
    const auto found = row(*spot, QStringList {VeskRoles::Title()} + menuRoles());
    if (!found)
        return failure(found.error());
    const CMPath path = menuOf(*found);
    if (path.isEmpty()) {
        return m_session.fail(
            CtlStatus::Failed, ctlText("row %1 has no menu").arg(QString::number(spot->row)));
    }
    return Menu {path, (*found)[VeskRoles::Title()].toString()};
}

CtlResult<Menu> Places::menuOfPlayer()
{
    const auto state = m_session.call(QStringLiteral("player.state"));
    if (!state)
        return failure(state.error());
    const CMPath path = CMPath::fromVariant(state->value(QStringLiteral("contextPath")));
    if (path.isEmpty()) {
        return m_session.fail(
            CtlStatus::Failed, ctlText("nothing plays, or what plays has no menu"));
    }
    return Menu {path, state->value(QStringLiteral("title")).toString()};
}
