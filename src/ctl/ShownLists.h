// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMPath.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QVector>

/// A row as it was shown: its screen, index and path.
struct ShownRow {
    CMPath screen;
    int row = -1;
    CMPath path;
    /// Its VeskRolesType; 0 when it is not known.
    int type = 0;
};

/// Rows of one screen, from row \a first on, that were shown.
struct ShownPart {
    CMPath screen;
    int first = 0;
    /// Their paths, and their VeskRolesTypes.
    QStringList rows;
    QVector<int> types;
};

/// The lists that users were shown lately, in one small file per terminal, so that a row's number,
/// path or id can be typed afterwards: paths of screens and rows, nothing else. Lists are kept for
/// half a day, at most MaxLists per terminal, with MaxRows rows each. Errors of reading and writing
/// are ignored. One thread.
class ShownLists {
public:
    static constexpr int MaxLists = 8;
    static constexpr int MaxRows = 10000;

    /// An empty \a folder keeps nothing. \a terminal is empty for output that is for no terminal.
    /// Lists of other hosts are not seen.
    ShownLists(const QString &folder, const QString &terminal, const QString &host);

    /// Remembers a list as the one that this terminal was shown last, from row \a first on. The
    /// entries of a menu can have the id of what they are about, so they are not found by it.
    void add(const CMPath &screen, int first, const QStringList &rows,
        const QVector<int> &types = {}, bool isMenu = false);
    /// The same with rows of several screens, which are numbered from 0 on through all of them.
    void add(const QList<ShownPart> &parts);
    /// Row \a row of the list that this terminal was shown last: without a screen when there was no
    /// list, without a path when the row had none or was not shown.
    ShownRow last(int row) const;
    /// The row with that path that was shown last, on whichever terminal; -1 as row for none.
    ShownRow find(const CMPath &path) const;
    /// The same, by the value of a parameter of its path.
    ShownRow findId(const QString &id) const;

private:
    struct List {
        QString host;
        /// The number of the first row.
        int first = 0;
        QList<ShownPart> parts;
        qint64 time = 0;
        bool isMenu = false;
    };

    void add(const List &list);
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

/// The folder for a user's lists; empty when there is none.
QString shownListsFolder();
/// Tells the terminal of this process from others; empty for none.
QString terminalName();
