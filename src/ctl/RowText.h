// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/VeskRoles.h"
#include "ctl/CtlPlace.h"
#include "ctl/TerminalText.h"

#include <QList>
#include <QStringList>
#include <QVariant>

/// \file
/// Rows and values as text. Everything is made printable. One thread.

/// What is printed of a row.
struct RowText {
    int index = 0;
    int type = 0;
    QString title;
    QString description;
    /// What opens or plays it; empty for none.
    QString path;
    /// What the player does with it (a VeskPlayLogicState); 0 when it is not what plays.
    int played = 0;
    /// Of its audio, in bit/s; 0 when it is not known.
    int bitRate = 0;
};

/// The roles that a row's text is made from.
const QStringList &rowTextRoles();

/// Makes lines of the rows of one list: for a terminal in columns as wide as it allows, number,
/// mark of the kind, title, description, the latter on lines of their own in a narrow one; else,
/// for programs, the row's place, kind, title, description and what the player does with it, with
/// tabs between them and nothing left out. The paths come on lines of their own, and as one more
/// field, where they are wanted.
class RowPrinter {
public:
    /// \a place is the list's. \a player is what the player tells, \a width the terminal's; 0 for
    /// none.
    RowPrinter(const CtlPlace &place, const QVariantHash &player, bool paths, int width,
        const TerminalStyle &style);

    RowText text(int index, const VeskRoles &row) const;
    /// Marks, in a list of streams where none has the path of what plays, the one whose bit rate
    /// is closest to it, when there is one that is close.
    void markStream(QList<RowText> &rows) const;
    /// The columns are those of the first rows that it gets.
    std::string lines(const QList<RowText> &rows);

private:
    void layOut(const QList<RowText> &rows);
    std::string terminalLine(const RowText &row) const;
    std::string fields(const RowText &row) const;

    const CtlPlace m_place;
    const QVariantHash m_player;
    const bool m_paths;
    const int m_width;
    const TerminalStyle &m_style;
    /// Columns; -1 until there are rows.
    int m_titleWidth = -1;
    int m_descriptionWidth = 0;
};

/// The row's roles by their names, where it stands, and what the player does with it.
QVariantHash rowJson(
    const CtlPlace &place, int index, const VeskRoles &row, const QVariantHash &player);

/// A word for what the player does, in the user's language.
QString playerWord(int state);

/// A value without its type; a hash or list as JSON; nothing for null.
QString plainText(const QVariant &value);
