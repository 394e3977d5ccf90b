// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QString>

#include <string>

/// \file
/// Texts from elsewhere on their way to a terminal. Pure functions, any thread.

/// \a text without anything that would do more than show: line breaks and tabs become blanks, other
/// control characters (C0, DEL, C1) and those that turn the writing direction become U+FFFD.
QString printableText(const QString &text);
/// JSON with such characters escaped; says the same.
QByteArray printableJson(const QByteArray &json);
/// \a text as one word of a command line, in quotes where a shell would read more into it.
QString shellWord(const QString &text);

/// How many columns a terminal takes for \a text: two for wide characters, none for those that
/// combine with the one before.
int textWidth(const QString &text);
/// \a text in at most \a width columns: of a longer one the middle is left out, and never half of
/// what is seen as one character.
QString elided(const QString &text, int width);
/// \a text with blanks behind it, \a width columns wide; as it is when it is wider.
QString padded(const QString &text, int width);

/// The width of the terminal \a output, in columns: what COLUMNS says, else the terminal itself,
/// else 80; 0 when it is no terminal.
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
