// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/TerminalText.h"

#include <gmock/gmock.h>

namespace {

TEST(TerminalTextTest, ReplacesControlCharacters)
{
    EXPECT_EQ(printableText(QStringLiteral("a\x1b[31mb")), QStringLiteral("a\ufffd[31mb"));
    EXPECT_EQ(printableText(QStringLiteral("a\nb\tc\rd")), QStringLiteral("a b c d"));
    EXPECT_EQ(printableText(QString(QChar(0x9b)) + QChar(0x7f) + QChar(0)),
        QStringLiteral("\ufffd\ufffd\ufffd"));
    for (const ushort code : {0x202a, 0x202e, 0x2066, 0x2069, 0x200e, 0x200f, 0x061c, 0x2028})
        EXPECT_EQ(printableText(QString(QChar(code))), QStringLiteral("\ufffd")) << code;
    EXPECT_EQ(printableText(QStringLiteral("Grüße, 日本 🎵")), QStringLiteral("Grüße, 日本 🎵"));
}

TEST(TerminalTextTest, EscapesControlCharactersInJson)
{
    EXPECT_EQ(printableJson(QStringLiteral("{\"a\":\"\u009bx\u202e\"}").toUtf8()),
        "{\"a\":\"\\u009bx\\u202e\"}");
    EXPECT_EQ(printableJson("[1]"), "[1]");
}

TEST(TerminalTextTest, QuotesWordsForAShell)
{
    EXPECT_EQ(shellWord(QStringLiteral("a:b")), QStringLiteral("a:b"));
    EXPECT_EQ(shellWord(QStringLiteral("a:b#3/0")), QStringLiteral("a:b#3/0"));
    EXPECT_EQ(shellWord(QStringLiteral("a:b?c=d&e=f")), QStringLiteral("'a:b?c=d&e=f'"));
    EXPECT_EQ(shellWord(QStringLiteral("it's $HOME")), QStringLiteral("'it'\\''s $HOME'"));
    EXPECT_EQ(shellWord(QString()), QStringLiteral("''"));
}

TEST(TerminalTextTest, CountsColumnsAsATerminalDoes)
{
    EXPECT_EQ(textWidth(QStringLiteral("abc")), 3);
    EXPECT_EQ(textWidth(QStringLiteral("日本")), 4);
    EXPECT_EQ(textWidth(QStringLiteral("🎵")), 2);
    EXPECT_EQ(textWidth(QStringLiteral("e\u0301a\u0308")), 2);
    EXPECT_EQ(textWidth(QStringLiteral("ｶ")), 1) << "half a width";
    EXPECT_EQ(textWidth(QStringLiteral("a\u200b\u200db")), 2);
    EXPECT_EQ(textWidth(QString()), 0);
}

TEST(TerminalTextTest, ElidesTheMiddleOfLongText)
{
    EXPECT_EQ(elided(QStringLiteral("abcdefghij"), 10), QStringLiteral("abcdefghij"));
    EXPECT_EQ(elided(QStringLiteral("abcdefghij"), 7), QStringLiteral("abc…hij"));
    EXPECT_EQ(elided(QStringLiteral("abcdefghij"), 6), QStringLiteral("abc…ij"));
    EXPECT_EQ(elided(QStringLiteral("abcdefghij"), 1), QStringLiteral("…"));
    EXPECT_EQ(elided(QStringLiteral("abcdefghij"), 0), QString());
}

TEST(TerminalTextTest, NeverSplitsACharacter)
{
    const QString wide = QStringLiteral("日本語放送局東京");
    const QString marked = QStringLiteral("e\u0301").repeated(20);
    const QString clef = QStringLiteral("\U0001d11e").repeated(20);
    for (int width = 1; width < 20; ++width) {
        for (const QString &text : {wide, marked, clef}) {
            const QString shown = elided(text, width);
            EXPECT_LE(textWidth(shown), width);
            EXPECT_GE(textWidth(shown), qMin(width, textWidth(text)) - 1);
            EXPECT_FALSE(shown.contains(QChar(0xfffd)));
            EXPECT_EQ(shown.toUtf8(), QString::fromUtf8(shown.toUtf8()).toUtf8());
        }
    }
    EXPECT_EQ(elided(marked, 3), QStringLiteral("e\u0301…e\u0301"));
    EXPECT_EQ(elided(wide, 5), QStringLiteral("日…京"));
    EXPECT_EQ(elided(wide, 6), QStringLiteral("日…京")) << "three columns hold no second one";
}

TEST(TerminalTextTest, PadsByColumns)
{
    EXPECT_EQ(padded(QStringLiteral("日本"), 6), QStringLiteral("日本  "));
    EXPECT_EQ(padded(QStringLiteral("abc"), 2), QStringLiteral("abc"));
}

} // namespace
