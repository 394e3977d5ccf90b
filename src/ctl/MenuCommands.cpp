#include "ctl/MenuCommands.h"

#include "ctl/PlayerCommands.h"

CtlStatus MenuCommands::menu()
{
    const CtlOptions &options = m_session.options();
    CMPath menu;
    QString title;
    const CtlStatus status = options.row < 0 ? m_menus.ofPlayer(menu) : m_menus.ofRow(menu, title);
    if (status != CtlStatus::Success)
        return status;
    return options.choice < 0 ? m_screens.show(menu) : choose(menu, options.choice);
}

CtlStatus MenuCommands::choose(const CMPath &menu, int entry)
{
    // What an entry does can depend on what its title said last, so the title comes first.
    VeskRoles row;
    const CtlStatus status = m_screens.row(
        menu, entry, {VeskRoles::Title(), VeskRoles::Type(), VeskRoles::Path()}, row);
    if (status != CtlStatus::Success)
        return status;
    switch (row.type()) {
    case VeskRolesType::activate:
        return m_session.act(QStringLiteral("setData"), activation(row.path()),
            QStringLiteral("done: %1").arg(row[VeskRoles::Title()].toString()));
    case VeskRolesType::container:
        return m_screens.show(row.path());
    case VeskRolesType::audio:
        return PlayerCommands(m_session).play(menu, entry);
    default:
        return m_session.fail(
            CtlStatus::Failed, QStringLiteral("row %1 is nothing to choose").arg(entry));
    }
}

CtlStatus MenuCommands::streams()
{
    CMPath screen;
    const CtlStatus status = findStreams(screen);
    if (status != CtlStatus::Success)
        return status;
    const int row = m_session.options().row;
    return row < 0 ? m_screens.show(screen) : PlayerCommands(m_session).play(screen, row);
}

/// The first screen behind the player's menu that begins with something to play.
CtlStatus MenuCommands::findStreams(CMPath &screen)
{
    CMPath menu;
    QList<VeskRoles> entries;
    CtlStatus status = m_menus.ofPlayer(menu);
    if (status == CtlStatus::Success)
        status = m_screens.rows(menu, {VeskRoles::Type(), VeskRoles::Path()}, entries);
    for (const VeskRoles &entry : entries) {
        screen = entry.path();
        if (entry.type() != VeskRolesType::container || screen.isEmpty())
            continue;
        QList<VeskRoles> rows;
        status = m_screens.rows(screen, {VeskRoles::Type()}, rows);
        if (status != CtlStatus::Success)
            return status;
        if (!rows.isEmpty() && rows.first().type() == VeskRolesType::audio)
            return status;
    }
    if (status != CtlStatus::Success)
        return status;
    return m_session.fail(CtlStatus::Failed, QStringLiteral("there are no streams to choose from"));
}
