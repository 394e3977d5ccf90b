// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMReply.h"
#include "api/values/VeskRoles.h"
#include "api/values/VeskRowsRoles.h"

#include <QList>
#include <QObject>

#include <functional>

/// Finds the streams of a station the way a user would: in the station's menu, opens each entry
/// that offers a choice (role "activity") until one lists audio rows for the same item. Relies on
/// roles only, not on a particular service. Main thread.
class StreamChoice : public QObject {
    Q_OBJECT

public:
    /// Rows to fetch of each screen.
    static constexpr int MaxStreams = 16;

    /// Called with the rows of the streams, in the service's order; empty if none were found.
    using Found = std::function<void(const QList<VeskRoles> &streams)>;

    using QObject::QObject;

    /// Calls \a found later, unless find() is called again or cancel() before.
    void find(const VeskRoles &row, Found found);
    void cancel() { ++m_search; }

    /// Whether \a row may have several streams and names the menu in which they are listed.
    static bool mayHave(const VeskRoles &row);
    /// The path of the item that \a row represents: for a stream's row its station, otherwise its
    /// own path.
    static CMPath itemOf(const VeskRoles &row);
    /// Whether \a row is one of a station's streams rather than the station itself.
    static bool isStream(const VeskRoles &row);
    /// The index of the stream with \a path. Failing that, of the only one whose path differs from
    /// it just in parameters that all \a streams share, such as the language; -1 if there is not
    /// exactly one.
    static int indexOf(const QList<VeskRoles> &streams, const CMPath &path);

private:
    using Answered = std::function<void(const QList<VeskRoles> &rows)>;

    void ask(const CMPath &screen, const QStringList &roles, Answered answered);
    void openChoices(const QList<CMPath> &choices, const CMPath &item, const Found &found);

    int m_search = 0; ///< of the latest find(), to drop the responses for earlier ones
};
