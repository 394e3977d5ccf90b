// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/Menus.h"

#include "api/values/VeskMediaData.h"

namespace {

CMPath playingMenuOf(const VeskRoles &row)
{
    return row.mediaData().metaData().contentPlayContextPath();
}

} // namespace

const QStringList &menuRoles()
{
    static const QStringList roles {VeskRoles::Context(), VeskRoles::MediaData()};
    return roles;
}

CMPath menuOf(const VeskRoles &row)
{
    const CMPath menu = row.context().path();
    // Some rows have a menu only where they play; it is as good.
    return menu.isEmpty() ? playingMenuOf(row) : menu;
}

QVariantHash activation(const CMPath &entry)
{
    QVariantHash params = pathParams(entry);
    params.insert(QStringLiteral("role"), VeskRoles::Activate());
    params.insert(QStringLiteral("value"), QVariant());
    return params;
}

CtlStatus Menus::find(const QStringList &words, Menu &menu)
{
    return words.isEmpty() ? ofPlayer(menu) : ofRow(words, &menuOf, menu);
}

CtlStatus Menus::findPlaying(const QStringList &words, Menu &menu)
{
    return words.isEmpty() ? ofPlayer(menu) : ofRow(words, &playingMenuOf, menu);
}

CtlStatus Menus::ofRow(const QStringList &words, MenuOf menuOf, Menu &menu)
{
    Places places(m_session);
    Spot spot;
    VeskRoles row;
    CtlStatus status = places.resolve(words, spot);
    if (status == CtlStatus::Success && !spot.isRow()) {
        return m_session.fail(CtlStatus::Failed,
            ctlText("\"%1\" is a list, or a row that was not shown lately")
                .arg(spot.place.toText()));
    }
    if (status == CtlStatus::Success)
        status = places.row(spot, QStringList {VeskRoles::Title()} + menuRoles(), row);
    menu = {menuOf(row), row[VeskRoles::Title()].toString()};
    if (status == CtlStatus::Success && menu.path.isEmpty()) {
        return m_session.fail(
            CtlStatus::Failed, ctlText("row %1 has no menu").arg(QString::number(spot.row)));
    }
    return status;
}

CtlStatus Menus::ofPlayer(Menu &menu)
{
    return m_session.call(QStringLiteral("player.state"), {}, [&](const QVariantHash &state) {
        menu = {CMPath::fromVariant(state.value(QStringLiteral("contextPath"))),
            state.value(QStringLiteral("title")).toString()};
        if (menu.path.isEmpty()) {
            return m_session.fail(
                CtlStatus::Failed, ctlText("nothing plays, or what plays has no menu"));
        }
        return CtlStatus::Success;
    });
}
