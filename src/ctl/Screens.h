#pragma once

#include "api/values/VeskRoles.h"
#include "ctl/HostSession.h"

/// Screens of the host, fetched and printed. One thread; the session must outlive it.
class Screens {
public:
    explicit Screens(HostSession &session)
        : m_session(session)
    {
    }

    /// Prints the rows that the options ask for, as text or JSON.
    CtlStatus show(const CMPath &path);
    /// The row at \a index; a failure when there is none.
    CtlStatus row(const CMPath &path, int index, const QStringList &roles, VeskRoles &row);
    /// The first rows, as many as the host answers unasked.
    CtlStatus rows(const CMPath &path, const QStringList &roles, QList<VeskRoles> &rows);

private:
    using TakeRows = std::function<void(int first, const QVariantHash &answer)>;

    /// Calls \a take with the answers for all rows that the options ask for, range by range.
    CtlStatus fetch(const QVariantHash &params, const TakeRows &take);
    CtlStatus print(const CMPath &path);
    CtlStatus printAsJson(const CMPath &path);

    HostSession &m_session;
};
