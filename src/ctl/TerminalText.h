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
