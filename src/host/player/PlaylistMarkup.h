// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>

/// Goes from tag to tag through a playlist in asx or xspf, which is often no well-formed XML:
/// comments and entities are known, declarations are not, so nothing is fetched or expanded. Its
/// work grows with the text's length. One thread.
class PlaylistMarkup {
public:
    explicit PlaylistMarkup(const QByteArray &text)
        : m_text(text)
    {
    }

    /// False at the end and where the rest cannot be read.
    bool toNextTag();
    /// The tag's name in lower case, without its prefix.
    const QByteArray &name() const { return m_name; }
    bool isClosing() const { return m_closing; }
    /// The tag's href; empty when it has none.
    const QByteArray &href() const { return m_href; }
    /// The text between this tag and the next, if there is a next.
    QByteArray content() const;

private:
    char current() const { return m_position < m_text.size() ? m_text.at(m_position) : '\0'; }
    bool isAt(const char *mark, int position) const;
    bool skipBehind(const char *mark);
    void skipBlanks();
    void readName();
    void readAttribute();
    QByteArray readWord(char end, char otherEnd);
    QByteArray readValue();

    const QByteArray m_text;
    int m_position = 0;
    QByteArray m_name;
    bool m_closing = false;
    QByteArray m_href;
};
