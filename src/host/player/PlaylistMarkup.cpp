// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/PlaylistMarkup.h"

#include <QHash>
#include <QString>

#include <cstring>

namespace {

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f';
}

/// The UTF-8 text for an entity name ("amp", "#38", "#x26"); empty for an unknown one.
QByteArray entityValue(const QByteArray &name)
{
    static const QHash<QByteArray, QByteArray> named {
        {"lt", "<"}, {"gt", ">"}, {"quot", "\""}, {"apos", "'"}, {"amp", "&"}};
    if (!name.startsWith('#'))
        return named.value(name);
    const bool hexadecimal = name.mid(1, 1).toLower() == "x";
    bool ok = false;
    const char32_t code = name.mid(hexadecimal ? 2 : 1).toUInt(&ok, hexadecimal ? 16 : 10);
    return ok && code > 0 && code <= QChar::LastValidCodePoint
        ? QString::fromUcs4(&code, 1).toUtf8()
        : QByteArray();
}

/// Replaces entities; an ampersand that begins none is kept.
QByteArray withoutEntities(const QByteArray &text)
{
    constexpr int LongestEntity = 10;
    QByteArray plain;
    int position = 0;
    while (position < text.size()) {
        const int next = text.indexOf('&', position);
        plain.append(text.mid(position, next < 0 ? -1 : next - position));
        if (next < 0)
            break;
        const int length = text.mid(next, LongestEntity).indexOf(';');
        const QByteArray value = length > 0 ? entityValue(text.mid(next + 1, length - 1)) : "";
        plain.append(value.isEmpty() ? "&" : value);
        position = next + (value.isEmpty() ? 1 : length + 1);
    }
    return plain;
}

} // namespace

bool PlaylistMarkup::toNextTag()
{
    while (skipBehind("<")) {
        if (isAt("!--", m_position)) {
            skipBehind("-->");
        } else if (isAt("![CDATA[", m_position)) {
            skipBehind("]]>");
        } else {
            readName();
            while (m_position < m_text.size() && current() != '>')
                readAttribute();
            return skipBehind(">");
        }
    }
    return false;
}

QByteArray PlaylistMarkup::content() const
{
    static const QByteArray cdata = QByteArrayLiteral("<![CDATA[");
    QByteArray text;
    int position = m_position;
    int tag = m_text.indexOf('<', position);
    while (tag >= 0) {
        text += withoutEntities(m_text.mid(position, tag - position));
        if (!isAt(cdata.constData(), tag))
            return text.trimmed();
        const int begin = tag + cdata.size();
        const int end = m_text.indexOf("]]>", begin);
        if (end < 0)
            break;
        text += m_text.mid(begin, end - begin);
        position = end + 3;
        tag = m_text.indexOf('<', position);
    }
    return {};
}

bool PlaylistMarkup::isAt(const char *mark, int position) const
{
    // QByteArray data is null-terminated, so the comparison stops at the end of the text.
    return std::strncmp(m_text.constData() + position, mark, std::strlen(mark)) == 0;
}

/// Moves past the next \a mark; without one, to the end, and returns false.
bool PlaylistMarkup::skipBehind(const char *mark)
{
    const int found = m_text.indexOf(mark, m_position);
    m_position = found < 0 ? m_text.size() : found + static_cast<int>(std::strlen(mark));
    return found >= 0;
}

void PlaylistMarkup::skipBlanks()
{
    while (isBlank(current()))
        ++m_position;
}

void PlaylistMarkup::readName()
{
    skipBlanks();
    m_closing = current() == '/';
    if (m_closing)
        ++m_position;
    const QByteArray name = readWord('/', '>').toLower();
    m_name = name.mid(name.indexOf(':') + 1);
    m_href.clear();
}

void PlaylistMarkup::readAttribute()
{
    skipBlanks();
    const QByteArray name = readWord('=', '>').toLower();
    skipBlanks();
    if (current() != '=')
        return;
    ++m_position;
    const QByteArray value = readValue();
    if (name == "href" && m_href.isEmpty())
        m_href = withoutEntities(value).trimmed();
}

/// Reads up to white space or one of the end characters.
QByteArray PlaylistMarkup::readWord(char end, char otherEnd)
{
    const int begin = m_position;
    while (m_position < m_text.size() && !isBlank(current()) && current() != end
        && current() != otherEnd)
        ++m_position;
    return m_text.mid(begin, m_position - begin);
}

/// Reads an attribute value, quoted or not.
QByteArray PlaylistMarkup::readValue()
{
    skipBlanks();
    const char quote = current();
    if (quote != '"' && quote != '\'')
        return readWord('>', '>');
    const int begin = ++m_position;
    const int end = m_text.indexOf(quote, begin);
    m_position = end < 0 ? m_text.size() : end + 1;
    return end < 0 ? QByteArray() : m_text.mid(begin, end - begin);
}
