// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/VeskRoles.h"
#include "ctl/CtlPlace.h"
#include "ctl/TerminalText.h"

#include <QList>
#include <QStringList>
#include <QVariant>

class HostSession;

/// \file
/// Rows and values as text, without control characters. One thread.

/// The printed parts of a row.
struct RowText {
    int index = 0;
    int type = 0;
    QString title;
    QString description;
    /// The path that opens or plays it; empty for none.
    QString path;
    /// The player's VeskPlayLogicState for it; 0 when it does not play.
    int played = 0;
    /// In bit/s; 0 when it is not known.
    int bitRate = 0;
};

/// The roles that a row's text is made from.
const QStringList &rowTextRoles();

/// Formats the rows of one list. For a terminal: number, mark of the kind, title and description in
/// columns that fit its width, descriptions on lines of their own where it is narrow, and so are
/// paths. For programs: place, kind, title, description, the player's state, and the path, whole
/// and separated by tabs.
class RowPrinter {
public:
    /// \a place is the list's, \a player the player's state, \a width the terminal's; 0 for
    /// programs.
    RowPrinter(const CtlPlace &place, const QVariantHash &player, bool paths, int width,
        const TerminalStyle &style);

    RowText text(int index, const VeskRoles &row) const;
    /// Where no row of a list of streams has the path of what plays, marks the one with the closest
    /// bit rate, unless all differ by a tenth or more.
    void markStream(QList<RowText> &rows) const;
    /// The first rows decide the widths of the columns for all.
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

/// Rows that are in no screen, for the terminal of \a session.
std::string numberedLines(const HostSession &session, const QList<RowText> &rows);

/// The row's roles by their names, its index, its place and the player's state.
QVariantHash rowJson(
    const CtlPlace &place, int index, const VeskRoles &row, const QVariantHash &player);

/// The player's state for a row with that path and type; 0 when it does not play.
int playedState(const CMPath &path, int type, const QVariantHash &player);
/// A word for what the player does, in the user's language.
QString playerWord(int state);

/// A value without its type; a hash or list as JSON; nothing for null.
QString plainText(const QVariant &value);
