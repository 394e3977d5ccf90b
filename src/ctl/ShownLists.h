// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMPath.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QVector>

/// A row as it was shown: where it stood, and its own path.
struct ShownRow {
    CMPath screen;
    int row = -1;
    CMPath path;
    /// Its VeskRolesType; 0 when it is not known.
    int type = 0;
};

/// What users were shown lately, in one small file per terminal, so that a row's number, path or
/// id can be typed back: the screens' and rows' paths, nothing else. The lists of half a day, at
/// most MaxLists per terminal, of MaxRows rows each. What cannot be kept or read is forgotten
/// without a word. One thread.
class ShownLists {
public:
    static constexpr int MaxLists = 8;
    static constexpr int MaxRows = 10000;

    /// \a folder is where it is kept; empty for nowhere. \a terminal is empty when what is shown is
    /// not for one. Lists of other hosts are others.
    ShownLists(const QString &folder, const QString &terminal, const QString &host);

    /// What this terminal was shown last, from row \a first on: the rows' paths and types. The
    /// entries of a menu are about something else, whose id they may have.
    void add(const CMPath &screen, int first, const QStringList &rows,
        const QVector<int> &types = {}, bool isMenu = false);
    /// Row \a row of what this terminal was shown last: without a screen when it was shown nothing,
    /// without a path when the row had none or was not shown.
    ShownRow last(int row) const;
    /// The row with that path that was shown last, on whichever terminal; -1 as row for none.
    ShownRow find(const CMPath &path) const;
    /// The same, by the value of a parameter of its path.
    ShownRow findId(const QString &id) const;

private:
    struct List {
        QString host;
        CMPath screen;
        int first = 0;
        QStringList rows;
        QVector<int> types;
        qint64 time = 0;
        bool isMenu = false;
    };

    static ShownRow rowOf(const List &list, int index);
    QList<List> read(const QString &file) const;
    QList<List> ofAllTerminals() const;
    QList<List> ofThisHost(QList<List> lists) const;
    void write(const QList<List> &lists) const;
    void forgetOldOnes() const;

    const QString m_folder;
    const QString m_file;
    const bool m_hasTerminal;
    const QString m_host;
};

/// Where a user's lists are kept; empty when there is no place for them.
QString shownListsFolder();
/// What tells the terminal that this process belongs to from others; empty for none.
QString terminalName();
