// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/TerminalText.h"

#include <QTextBoundaryFinder>
#include <QVector>

#include <glib.h>

#include <sys/ioctl.h>
#include <unistd.h>

namespace {

constexpr int DefaultWidth = 80;
constexpr int MaxWidth = 10000;

/// Marks and overrides of the writing direction, line and paragraph separators.
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

/// A grapheme cluster, which users see as one character.
struct Grapheme {
    int start;
    int width;
};

int charactersWidth(const QVector<uint> &characters)
{
    int width = 0;
    for (const uint character : characters) {
        if (!g_unichar_iszerowidth(character))
            width += g_unichar_iswide(character) ? 2 : 1;
    }
    return width;
}

QVector<Grapheme> graphemesOf(const QString &text)
{
    QVector<Grapheme> graphemes;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    int start = 0;
    for (int end = finder.toNextBoundary(); end > 0; end = finder.toNextBoundary()) {
        graphemes.append({start, charactersWidth(text.mid(start, end - start).toUcs4())});
        start = end;
    }
    return graphemes;
}

bool isHarmlessInAShell(QChar character)
{
    static const QString harmless = QStringLiteral("/:.,%+-_@=#");
    return character.isLetterOrNumber() || harmless.contains(character);
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
    // Outside of strings JSON has none of these; inside, an escape means the same.
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

QString shellWord(const QString &text)
{
    bool isHarmless = !text.isEmpty() && !text.startsWith(QLatin1Char('#'));
    for (const QChar character : text)
        isHarmless = isHarmless && isHarmlessInAShell(character);
    if (isHarmless)
        return text;
    return QLatin1Char('\'') + QString(text).replace(QLatin1Char('\''), QLatin1String("'\\''"))
        + QLatin1Char('\'');
}

int textWidth(const QString &text)
{
    return charactersWidth(text.toUcs4());
}

QString elided(const QString &text, int width)
{
    if (textWidth(text) <= width)
        return text;
    if (width < 1)
        return {};
    const QVector<Grapheme> graphemes = graphemesOf(text);
    // One column is for the ellipsis.
    int left = width / 2;
    int right = width - 1 - left;
    int headEnd = 0;
    for (int i = 0; i < graphemes.size() && graphemes.at(i).width <= left; ++i) {
        left -= graphemes.at(i).width;
        headEnd = i + 1 < graphemes.size() ? graphemes.at(i + 1).start : text.size();
    }
    // A wide character that did not fit leaves its column to the tail.
    right += left;
    int tailStart = text.size();
    for (int i = graphemes.size() - 1; i >= 0 && graphemes.at(i).width <= right; --i) {
        right -= graphemes.at(i).width;
        tailStart = graphemes.at(i).start;
    }
    return text.left(headEnd) + QChar(0x2026) + text.mid(tailStart);
}

QString padded(const QString &text, int width)
{
    return text + QString(qMax(0, width - textWidth(text)), QLatin1Char(' '));
}

int terminalWidth(int output)
{
    if (!::isatty(output))
        return 0;
    const int wanted = qEnvironmentVariableIntValue("COLUMNS");
    winsize size {};
    const bool isKnown = ::ioctl(output, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    const int width = wanted > 0 ? wanted : isKnown ? size.ws_col : DefaultWidth;
    return qMin(width, MaxWidth);
}

std::string TerminalStyle::styled(const char *code, const QString &text) const
{
    std::string plain = text.toStdString();
    if (!m_colours || plain.empty())
        return plain;
    return std::string("\033[") + code + "m" + plain + "\033[0m";
}
