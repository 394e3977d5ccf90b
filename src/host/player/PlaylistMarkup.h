// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>

/// A tolerant tag scanner for asx and xspf playlists, which are often not well-formed XML. Handles
/// comments, CDATA and the predefined and numeric entities; ignores declarations, so there are no
/// external entities and no entity expansion attacks. A pass takes linear time. Not thread-safe.
class PlaylistMarkup {
public:
    explicit PlaylistMarkup(const QByteArray &text)
        : m_text(text)
    {
    }

    /// Moves to the next tag. False at the end, or when the rest cannot be parsed.
    bool toNextTag();
    /// The tag's name in lower case, without its namespace prefix.
    const QByteArray &name() const { return m_name; }
    bool isClosing() const { return m_closing; }
    /// The tag's href attribute, with entities replaced; empty without one.
    const QByteArray &href() const { return m_href; }
    /// The text between this tag and the next one, with entities and CDATA resolved; empty without
    /// a next tag.
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
