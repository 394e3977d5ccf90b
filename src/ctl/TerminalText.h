// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QString>

#include <string>

/// \file
/// Untrusted texts for terminals. Pure functions, any thread.

/// \a text without control characters: line breaks and tabs become blanks; other C0, DEL, C1 and
/// those that change the writing direction become U+FFFD.
QString printableText(const QString &text);
/// The same JSON with such characters escaped.
QByteArray printableJson(const QByteArray &json);
/// \a text as one word of a command line, quoted where a shell would interpret it.
QString shellWord(const QString &text);

/// The columns of \a text on a terminal: two for wide characters, none for combining ones.
int textWidth(const QString &text);
/// \a text in at most \a width columns: the middle of a longer one is left out, without splitting a
/// grapheme cluster.
QString elided(const QString &text, int width);
/// \a text padded with blanks to at least \a width columns.
QString padded(const QString &text, int width);

/// The width of the terminal \a output in columns: from COLUMNS, else from the terminal, else 80;
/// 0 when it is no terminal.
int terminalWidth(int output);

/// Colours for a terminal, or none.
class TerminalStyle {
public:
    explicit TerminalStyle(bool colours)
        : m_colours(colours)
    {
    }

    std::string bold(const QString &text) const { return styled("1", text); }
    std::string dim(const QString &text) const { return styled("2", text); }

private:
    std::string styled(const char *code, const QString &text) const;

    const bool m_colours;
};
