// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/VeskRoles.h"
#include "ctl/CtlPlace.h"
#include "ctl/HostSession.h"

/// Which rows of a screen are wanted, inclusive; -1 as last: to the end.
struct RowRange {
    int first = 0;
    int last = -1;
};

/// How a list is shown.
struct ListForm {
    RowRange range;
    /// With the rows' paths.
    bool paths = false;
    /// They are the streams of what plays, if anything does.
    bool streamsOfPlayer = false;
};

/// Screens of the host, fetched and printed. One thread; the session must outlive it.
class Screens {
public:
    explicit Screens(HostSession &session)
        : m_session(session)
    {
    }

    /// Prints rows of the screen at \a path, which users name \a place, as lines or JSON.
    CtlStatus show(const CMPath &path, const CtlPlace &place, const ListForm &form);
    /// The row at \a index; a failure when there is none.
    CtlStatus row(const CMPath &path, int index, const QStringList &roles, VeskRoles &row);
    /// The same in a list, which is empty when there is none.
    CtlStatus range(
        const CMPath &path, int index, const QStringList &roles, QList<VeskRoles> &rows);
    /// The first rows, as many as the host answers unasked.
    CtlStatus rows(const CMPath &path, const QStringList &roles, QList<VeskRoles> &rows);
    /// Where the row with the path \a row stands in the screen now; -1 as \a index for nowhere.
    CtlStatus find(const CMPath &screen, const CMPath &row, int &index);

private:
    /// Takes a range of rows, of which the first is the screen's row \a first; false for no more.
    using TakeRows = std::function<bool(int first, const QVariantHash &answer)>;

    CtlStatus fetch(
        const CMPath &path, const QStringList &roles, RowRange range, const TakeRows &take);
    CtlStatus take(const QVariantHash &params, const QStringList &roles, QList<VeskRoles> &rows);
    CtlStatus print(const CMPath &path, const CtlPlace &place, const ListForm &form);
    CtlStatus printAsJson(const CMPath &path, const CtlPlace &place, const ListForm &form);
    /// What the player is at, to mark its row; empty when the host does not say.
    QVariantHash player();

    HostSession &m_session;
};

/// A row's \a values under the names of the \a roles that were asked for.
VeskRoles namedRoles(const QStringList &roles, const QVariantList &values);
