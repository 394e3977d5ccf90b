#pragma once

#include "ctl/Places.h"

/// The context menus of rows and of what plays. One thread; the session must outlive it.
class Menus {
public:
    explicit Menus(HostSession &session)
        : m_session(session)
        , m_screens(session)
        , m_places(session)
    {
    }

    /// The menu of the row that the options name, and the row's title. It and ofPlayer() fail when
    /// there is no menu.
    CtlStatus ofRow(CMPath &menu, QString &title);
    CtlStatus ofPlayer(CMPath &menu);

private:
    HostSession &m_session;
    Screens m_screens;
    Places m_places;
};

/// The roles that tell a row's menu, and the menu; empty when it has none.
const QStringList &menuRoles();
CMPath menuOf(const VeskRoles &row);
/// The parameters of the call that runs a menu's entry, where it is one that is run.
QVariantHash activation(const CMPath &entry);
