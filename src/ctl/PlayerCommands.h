#pragma once

#include "ctl/Places.h"

/// What the player does, and is told to do. One thread; the session must outlive it.
class PlayerCommands {
public:
    explicit PlayerCommands(HostSession &session)
        : m_session(session)
        , m_places(session)
    {
    }

    CtlStatus play();
    /// Plays \a row of \a screen and tells what that is.
    CtlStatus play(const CMPath &screen, int row);
    /// One of the player's methods that take nothing.
    CtlStatus act(const QString &method);
    CtlStatus status();

private:
    /// A play that failed is a failure to who wanted it, and news to who asks.
    CtlStatus printState(CtlStatus whenPlayFailed);
    CtlStatus watch();

    HostSession &m_session;
    Places m_places;
};
