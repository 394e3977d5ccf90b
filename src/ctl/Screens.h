// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/VeskRoles.h"
#include "api/values/VeskRowsRoles.h"
#include "ctl/CtlPlace.h"
#include "ctl/HostSession.h"

#include <functional>
#include <optional>

/// Rows of a screen, both ends included; -1 as last: to the end.
struct RowRange {
    int first = 0;
    int last = -1;
};

/// How a list is shown.
struct ListForm {
    RowRange range;
    /// With the rows' paths.
    bool paths = false;
    /// The rows are the streams of what plays.
    bool streamsOfPlayer = false;
};

/// A row's \a values under the names of the \a roles that were requested.
VeskRoles namedRoles(const QStringList &roles, const QVariantList &values);
/// Whether a row has none of the requested roles; it is not shown.
bool isEmptyRow(const QVariantList &values);
/// A list as JSON, without its rows.
QVariantHash listJson(const CtlPlace &place, const CMPath &path, const VeskRoles &screen);

/// Screens of the host, fetched and printed. One thread; the session must outlive it.
class Screens {
public:
    explicit Screens(HostSession &session)
        : m_session(session)
    {
    }

    /// How the options say that a list is to be shown; a failure when they make no sense.
    CtlResult<ListForm> form();
    /// Prints rows of the screen at \a path, which users name \a place, as lines or JSON.
    CtlResult<> show(const CMPath &path, const CtlPlace &place, const ListForm &form);
    /// The row at \a index; a failure when there is none.
    CtlResult<VeskRoles> row(const CMPath &path, int index, const QStringList &roles);
    /// The row at \a index, if there is one.
    CtlResult<std::optional<VeskRoles>> rowIfAny(
        const CMPath &path, int index, const QStringList &roles);
    /// The first rows, as many as the host returns by default.
    CtlResult<QList<VeskRoles>> rows(const CMPath &path, const QStringList &roles);
    /// All rows.
    CtlResult<QList<VeskRoles>> allRows(const CMPath &path, const QStringList &roles);
    /// The index at which the row with the path \a row is now, if it is still there.
    CtlResult<std::optional<int>> find(const CMPath &screen, const CMPath &row);

private:
    /// Gets rows of which the first is the screen's row \a first; returns whether to go on.
    using TakeRows = std::function<bool(int first, const VeskRowsRoles &screen)>;

    CtlResult<> fetch(
        const CMPath &path, const QStringList &roles, RowRange range, const TakeRows &take);
    CtlResult<QList<VeskRoles>> callRows(const QVariantHash &params, const QStringList &roles);
    CtlResult<> print(const CMPath &path, const CtlPlace &place, const ListForm &form);
    CtlResult<> printAsJson(const CMPath &path, const CtlPlace &place, const ListForm &form);
    /// The player's state, to mark its row; empty when the host returns an error.
    QVariantHash player();

    HostSession &m_session;
};
