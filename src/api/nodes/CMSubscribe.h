// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"
#include "api/values/CMPath.h"

#include <QMetaType>
#include <QString>

/// A change that subscribers are told of. A value.
struct CMChange {
    /// The path that was subscribed to.
    CMPath path;
    /// One of CMSubscribe's kinds.
    QString kind;
    /// The rows it concerns, -1 when it concerns none in particular.
    int first = -1;
    int last = -1;
    /// Over how many nodes that pass on the changes of others it came.
    int hops = 0;
    /// Where it was told to begin: "path", or above it when everything from there on was told.
    /// Known in the process that tells.
    CMPath start {};
};

/// Through which a worker's nodes tell the subscribers of their paths what changed. Any thread; the
/// subscribers are called on theirs.
class VESK_API CMSubscribe {
public:
    static const QString &RowsChangeReset();
    static const QString &RowsChangeInserted();
    static const QString &RowsChangeRemoved();
    static const QString &RowsChangeChanged();
    static const QString &ValueChanged();

    /// Tells those who subscribed to exactly \a path.
    void changed(const CMPath &path, const QString &kind, int first, int last);
    /// Tells those who subscribed to \a path or to anything below it: the same or a longer base, at
    /// least its parameters.
    void changedStartingWith(const CMPath &path, const QString &kind, int first, int last);
};

Q_DECLARE_METATYPE(CMChange)
