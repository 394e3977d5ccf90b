#pragma once

#include "api/values/CMPath.h"

#include <QString>
#include <QVector>

/// A screen, row or value as users name it, short enough to type: a path in its text form (it has a
/// ":"), "search:TEXT" for what is found, or row numbers from a start on: "3/0/12" counts from the
/// screen that `ls` shows, "favorites/0" from the favorites. "/" is the start itself. A value.
struct CtlPlace {
    enum Start { Root, Favorites, Search, Path };

    Start start = Root;
    /// Path.
    CMPath path;
    /// Search: what for.
    QString text;
    /// Root, Favorites: the rows to open, one in the other.
    QVector<int> rows;

    /// Reads \a place; false when it is none of these.
    static bool parse(const QString &place, CtlPlace &result);
};
