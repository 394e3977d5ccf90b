#pragma once

#include "ctl/Screens.h"

/// Finds the paths behind what users name. One thread; the session must outlive it.
class Places {
public:
    explicit Places(HostSession &session)
        : m_session(session)
        , m_screens(session)
    {
    }

    CtlStatus resolve(const CtlPlace &place, CMPath &path);
    /// The service that is meant: the one that the options name, or the only one.
    CtlStatus service(CMPath &path);

private:
    CtlStatus start(const CtlPlace &place, CMPath &path);
    /// The service that is meant, or the list of all.
    CtlStatus root(CMPath &path);
    CtlStatus favorites(CMPath &path);
    CtlStatus found(const QString &text, CMPath &path);
    CtlStatus query(const CMPath &searches, const QString &text, CMPath &path);

    HostSession &m_session;
    Screens m_screens;
};
