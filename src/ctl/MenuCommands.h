#pragma once

#include "ctl/Menus.h"

/// Menus and what is chosen in them. One thread; the session must outlive it.
class MenuCommands {
public:
    explicit MenuCommands(HostSession &session)
        : m_session(session)
        , m_screens(session)
        , m_menus(session)
    {
    }

    CtlStatus menu();
    CtlStatus streams();

private:
    CtlStatus choose(const CMPath &menu, int entry);
    CtlStatus findStreams(CMPath &screen);

    HostSession &m_session;
    Screens m_screens;
    Menus m_menus;
};
