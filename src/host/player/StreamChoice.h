// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMReply.h"
#include "api/values/VeskRoles.h"
#include "api/values/VeskRowsRoles.h"

#include <QList>
#include <QObject>

#include <functional>

/// The streams of a station, found the way a listener finds them: by the entry of its menu that
/// opens a choice (role "activity"), whose rows are audio that stands for the same item. Knows a
/// service by nothing but roles. Main thread.
class StreamChoice : public QObject {
    Q_OBJECT

public:
    /// So many streams of a station are looked at.
    static constexpr int MaxStreams = 16;

    /// With the rows of the streams, in the service's order; empty when none were found.
    using Found = std::function<void(const QList<VeskRoles> &streams)>;

    using QObject::QObject;

    /// Calls \a found later, unless another find() or cancel() comes before.
    void find(const VeskRoles &row, Found found);
    void cancel() { ++m_search; }

    /// Whether \a row says that it has several streams, and where they are listed.
    static bool mayHave(const VeskRoles &row);
    /// What \a row stands for: a stream's row stands for its station.
    static CMPath itemOf(const VeskRoles &row);
    /// Whether \a row is one of a station's streams rather than the station.
    static bool isStream(const VeskRoles &row);
    /// Which of \a streams has \a path, or one that differs from it in nothing by which they differ
    /// from each other, such as the language; -1 when there is not exactly one.
    static int indexOf(const QList<VeskRoles> &streams, const CMPath &path);

private:
    using Answered = std::function<void(const QList<VeskRoles> &rows)>;

    void ask(const CMPath &screen, const QStringList &roles, Answered answered);
    void openChoices(const QList<CMPath> &choices, const CMPath &item, const Found &found);

    int m_search = 0; ///< counts the searches, to drop the answers of earlier ones
};
