// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMPath.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

/// A screen, row or value as users name it, short enough to type. A value.
///
/// | text | |
/// |---|---|
/// | `3/0/12` | row 12 of row 0 of row 3 of what this terminal was shown last |
/// | `/`, `/3/0/12` | the first screen, and the same from there on |
/// | `favorites`, `favorites/0` | the favorites, and a row of them |
/// | `search:TEXT`, `search:TEXT/0` | what is found, and a row of it |
/// | `PREFIX:...`, `PREFIX:...#0` | a path as rows have it, and a row of that screen |
/// | `s20105` | the row that was shown lately and whose path has this as a parameter |
struct CtlPlace {
    enum Start { Shown, Root, Favorites, Search, Path, Id };

    Start start = Root;
    /// Path.
    CMPath path;
    /// Search: what for; Id: the id.
    QString text;
    /// The rows to open, one in the other.
    QVector<int> rows;

    /// Nothing when \a place is none of these.
    static std::optional<CtlPlace> parse(const QString &place);
    /// Reads the words of a command line: a place, whose texts need no quotes, or a place and the
    /// number of a row.
    static std::optional<CtlPlace> parse(const QStringList &words);

    static CtlPlace of(const CMPath &path);
    static CtlPlace found(const QString &text);
    static CtlPlace favorites();
    /// The place of one of its rows.
    CtlPlace row(int index) const;
    /// The text form, which parse() reads.
    QString toText() const;
};
