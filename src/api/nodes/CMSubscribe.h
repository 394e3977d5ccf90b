// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"
#include "api/values/CMPath.h"

#include <QMetaType>
#include <QString>

/// A change, as subscribers are notified of it. A value.
struct CMChange {
    /// The path that was subscribed to.
    CMPath path;
    /// One of CMSubscribe's kinds.
    QString kind;
    /// The rows it concerns, -1 when it concerns none in particular.
    int first = -1;
    int last = -1;
    /// How many nodes forwarded it so far.
    int hops = 0;
    /// The path that the change was notified for: "path" itself, or one above it when everything
    /// below that one changed. Only known in the process that notifies.
    CMPath start {};
};

/// Notifies the subscribers of a worker's paths of changes. Any thread; the subscribers are called
/// on theirs.
class VESK_API CMSubscribe {
public:
    static const QString &RowsChangeReset();
    static const QString &RowsChangeInserted();
    static const QString &RowsChangeRemoved();
    static const QString &RowsChangeChanged();
    static const QString &ValueChanged();

    /// Notifies the subscribers of exactly \a path.
    void changed(const CMPath &path, const QString &kind, int first, int last);
    /// Notifies the subscribers of \a path and of everything below it: the same or a longer base,
    /// at least its parameters.
    void changedStartingWith(const CMPath &path, const QString &kind, int first, int last);
};

Q_DECLARE_METATYPE(CMChange)
