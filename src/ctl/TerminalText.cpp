#include "ctl/TerminalText.h"

namespace {

/// Marks and overrides of the writing direction, and line and paragraph separators.
bool isLayoutControl(QChar character)
{
    const ushort code = character.unicode();
    return code == 0x061c || code == 0x200e || code == 0x200f || (code >= 0x2028 && code <= 0x202e)
        || (code >= 0x2066 && code <= 0x2069);
}

bool isControl(QChar character)
{
    const ushort code = character.unicode();
    return code < 0x20 || (code >= 0x7f && code < 0xa0) || isLayoutControl(character);
}

} // namespace

QString printableText(const QString &text)
{
    QString result;
    result.reserve(text.size());
    for (const QChar character : text) {
        if (character == QLatin1Char('\n') || character == QLatin1Char('\t')
            || character == QLatin1Char('\r'))
            result += QLatin1Char(' ');
        else if (isControl(character))
            result += QChar(QChar::ReplacementCharacter);
        else
            result += character;
    }
    return result;
}

QByteArray printableJson(const QByteArray &json)
{
    // JSON itself has none of these outside of strings, where an escape means the same.
    const QString text = QString::fromUtf8(json);
    QString result;
    result.reserve(text.size());
    for (const QChar character : text) {
        if (isControl(character))
            result += QStringLiteral("\\u%1").arg(character.unicode(), 4, 16, QLatin1Char('0'));
        else
            result += character;
    }
    return result.toUtf8();
}

std::string TerminalStyle::styled(const char *code, const QString &text) const
{
    std::string plain = text.toStdString();
    if (!m_colours || plain.empty())
        return plain;
    return std::string("\033[") + code + "m" + plain + "\033[0m";
}
