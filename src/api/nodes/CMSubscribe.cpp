// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMSubscribe.h"

#include "api/nodes/CMRootWorker.h"

const QString &CMSubscribe::RowsChangeReset()
{
    static const QString kind = QStringLiteral("rowsReset");
    return kind;
}

const QString &CMSubscribe::RowsChangeInserted()
{
    static const QString kind = QStringLiteral("rowsInserted");
    return kind;
}

const QString &CMSubscribe::RowsChangeRemoved()
{
    static const QString kind = QStringLiteral("rowsRemoved");
    return kind;
}

const QString &CMSubscribe::RowsChangeChanged()
{
    static const QString kind = QStringLiteral("rowsChanged");
    return kind;
}

const QString &CMSubscribe::ValueChanged()
{
    static const QString kind = QStringLiteral("valueChanged");
    return kind;
}

void CMSubscribe::changed(const CMPath &path, const QString &kind, int first, int last)
{
    if (CMRootWorker *root = CMRoot())
        root->notifyChanged({path, kind, first, last});
}

void CMSubscribe::changedStartingWith(const CMPath &path, const QString &kind, int first, int last)
{
    if (CMRootWorker *root = CMRoot())
        root->notifyChangedStartingWith({path, kind, first, last});
}
