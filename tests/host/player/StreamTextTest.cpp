// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/StreamText.h"

#include "tests/support/Text.h"

#include <gtest/gtest.h>

TEST(StreamTextTest, ReadsUtf8)
{
    EXPECT_EQ(streamText("Motörhead – Ace"), text("Motörhead – Ace"));
    EXPECT_EQ(streamText("\xF0\x9F\x8E\xB5 Радио 東京"), text("\xF0\x9F\x8E\xB5 Радио 東京"));
}

TEST(StreamTextTest, ReadsWhatIsNoUtf8AsLatin1)
{
    EXPECT_EQ(streamText("Mot\xF6rhead"), text("Motörhead"));
    EXPECT_EQ(streamText("\xFF\xC3"), text("ÿÃ"));
    EXPECT_EQ(streamText("caf\xC3\xA9 and caf\xE9"), text("cafÃ© and café"));
}

TEST(StreamTextTest, MakesControlCharactersBlanks)
{
    const QString shown = streamText(QByteArray("a\0b\nc\td\x1B[31me\x7F"
                                                "f\r\ng",
        19));
    EXPECT_EQ(shown.simplified(), text("a b c d [31me f g"));
    for (const QChar c : shown)
        EXPECT_NE(c.category(), QChar::Other_Control) << c.unicode();
    const QString latin = streamText("a\x85z");
    EXPECT_EQ(latin, text("a z"));
    EXPECT_EQ(streamText("a\xC2\x9Bz"), text("a z"));
}

TEST(StreamTextTest, HasAtMost512Characters)
{
    EXPECT_EQ(streamText(QByteArray(512, 'x')), QString(512, QLatin1Char('x')));
    EXPECT_EQ(streamText(QByteArray(100000, 'x')), QString(512, QLatin1Char('x')));
    EXPECT_EQ(streamText(QByteArray("ä").repeated(5000)), QString(512, QChar(0xE4)));
}

TEST(StreamTextTest, CutsNoCharacterInTwo)
{
    const QString shown = streamText("x" + QByteArray("\xF0\x9F\x8E\xB5").repeated(600));
    EXPECT_LE(shown.size(), 512);
    EXPECT_GE(shown.size(), 511);
    EXPECT_FALSE(shown.at(shown.size() - 1).isHighSurrogate());
    EXPECT_EQ(QString::fromUtf8(shown.toUtf8()), shown);
}

TEST(StreamTextTest, IsNeverNull)
{
    EXPECT_FALSE(streamText(QByteArray()).isNull());
    EXPECT_FALSE(streamText("").isNull());
    EXPECT_TRUE(streamText("").isEmpty());
    EXPECT_FALSE(streamText("\n").isNull());
}
