#pragma once

#include "ctl/Places.h"

class VeskTuneInAccount;

/// The link between this device and a service's account. One thread; the session must outlive it.
class AccountCommands {
public:
    explicit AccountCommands(HostSession &session)
        : m_session(session)
        , m_places(session)
    {
    }

    CtlStatus run();

private:
    CtlStatus query(const CMPath &path);
    CtlStatus write(const CMPath &path, VeskTuneInAccount account);
    CtlStatus askPassword(VeskTuneInAccount &account);
    void tell(const VeskTuneInAccount &sent, const VeskTuneInAccount &result);

    HostSession &m_session;
    Places m_places;
};
