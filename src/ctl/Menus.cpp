#include "ctl/Menus.h"

#include "api/values/VeskMediaData.h"

const QStringList &menuRoles()
{
    static const QStringList roles {VeskRoles::Context(), VeskRoles::MediaData()};
    return roles;
}

CMPath menuOf(const VeskRoles &row)
{
    const CMPath menu = row.context().path();
    // Some rows have a menu only where they play; it is as good.
    return menu.isEmpty() ? row.mediaData().metaData().contentPlayContextPath() : menu;
}

QVariantHash activation(const CMPath &entry)
{
    QVariantHash params = pathParams(entry);
    params.insert(QStringLiteral("role"), VeskRoles::Activate());
    params.insert(QStringLiteral("value"), QVariant());
    return params;
}

CtlStatus Menus::ofRow(CMPath &menu, QString &title)
{
    const CtlOptions &options = m_session.options();
    CMPath screen;
    VeskRoles row;
    CtlStatus status = m_places.resolve(options.place, screen);
    if (status == CtlStatus::Success) {
        status = m_screens.row(
            screen, options.row, QStringList {VeskRoles::Title()} + menuRoles(), row);
    }
    menu = menuOf(row);
    title = row[VeskRoles::Title()].toString();
    if (status == CtlStatus::Success && menu.isEmpty()) {
        return m_session.fail(
            CtlStatus::Failed, QStringLiteral("row %1 has no menu").arg(options.row));
    }
    return status;
}

CtlStatus Menus::ofPlayer(CMPath &menu)
{
    return m_session.call(QStringLiteral("player.state"), {}, [&](const QVariantHash &state) {
        menu = CMPath::fromVariant(state.value(QStringLiteral("contextPath")));
        if (menu.isEmpty()) {
            return m_session.fail(
                CtlStatus::Failed, QStringLiteral("nothing plays, or what plays has no menu"));
        }
        return CtlStatus::Success;
    });
}
