#pragma once

#include "ctl/Places.h"

/// What shows screens and values, and changes values. One thread; the session must outlive it.
class ScreenCommands {
public:
    explicit ScreenCommands(HostSession &session)
        : m_session(session)
        , m_screens(session)
        , m_places(session)
    {
    }

    /// ls, search, favorites.
    CtlStatus show();
    CtlStatus get();
    CtlStatus set();

private:
    CtlStatus atPlace(const std::function<CtlStatus(const CMPath &path)> &action);
    void printValues(const QVariantHash &result);

    HostSession &m_session;
    Screens m_screens;
    Places m_places;
};
