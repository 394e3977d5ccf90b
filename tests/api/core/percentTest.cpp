// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/core/percent.h"

#include <gtest/gtest.h>

#include <QUrl>

#include <random>
#include <string>

namespace {

QString decode(const QString &text)
{
    const auto decoded = veskPercentDecode(text);
    EXPECT_TRUE(decoded) << text.toStdString();
    return decoded.value_or(QString());
}

/// Random Unicode texts in which the characters that matter to paths and URLs are frequent.
QString randomText(std::mt19937 &random)
{
    static const QString favoured = QStringLiteral(":/?&=+%#. ~-_\"\\aZ0");
    QString text;
    const auto length = random() % 40;
    for (unsigned i = 0; i < length; ++i) {
        char32_t c = random() % 0x110000;
        switch (random() % 4) {
        case 0:
            text += favoured.at(int(random() % uint(favoured.size())));
            continue;
        case 1:
            c %= 0x80;
            break;
        case 2:
            c %= 0x3000;
            break;
        default:
            break;
        }
        if (!QChar::isSurrogate(c))
            text += QString::fromUcs4(&c, 1);
    }
    return text;
}

} // namespace

TEST(PercentEncode, LeavesUnreservedCharactersAlone)
{
    const QString unreserved
        = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~");
    const QString encoded = veskPercentEncode(unreserved);
    EXPECT_EQ(encoded, unreserved);
    EXPECT_EQ(encoded.constData(), unreserved.constData()) << "a text that stays shall be shared";
}

TEST(PercentEncode, WritesEveryOtherAsciiCharacterAsUppercaseEscape)
{
    for (ushort c = 0; c < 0x80; ++c) {
        const QString text(1, QChar(c));
        const bool unreserved = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z')
            || (c >= '0' && c <= '9') || c == '-' || c == '.' || c == '_' || c == '~';
        const QString expected = unreserved ? text
                                            : QLatin1Char('%')
                + QString::number(c, 16).rightJustified(2, QLatin1Char('0')).toUpper();
        EXPECT_EQ(veskPercentEncode(text), expected) << c;
    }
}

TEST(PercentEncode, KeepsTheCharactersThatItIsToldTo)
{
    const QString text = QStringLiteral("a/b?c\u00e9");
    EXPECT_EQ(veskPercentEncode(text, "/"), QStringLiteral("a/b%3Fc%C3%A9"));
    EXPECT_EQ(veskPercentEncode(text, "/?"), QStringLiteral("a/b?c%C3%A9"));
    EXPECT_EQ(veskPercentEncode(text), QStringLiteral("a%2Fb%3Fc%C3%A9"));
}

TEST(PercentEncode, EncodesNulEvenWhenCharactersAreKept)
{
    EXPECT_EQ(veskPercentEncode(QString(1, QChar(0)), "/"), QStringLiteral("%00"));
}

TEST(PercentEncode, EncodesAllLengthsOfUtf8)
{
    EXPECT_EQ(veskPercentEncode(QStringLiteral("\u007f")), QStringLiteral("%7F"));
    EXPECT_EQ(veskPercentEncode(QStringLiteral("\u0080")), QStringLiteral("%C2%80"));
    EXPECT_EQ(veskPercentEncode(QStringLiteral("\u07ff")), QStringLiteral("%DF%BF"));
    EXPECT_EQ(veskPercentEncode(QStringLiteral("\u0800")), QStringLiteral("%E0%A0%80"));
    EXPECT_EQ(veskPercentEncode(QStringLiteral("\uffff")), QStringLiteral("%EF%BF%BF"));
    EXPECT_EQ(veskPercentEncode(QStringLiteral("\U00010000")), QStringLiteral("%F0%90%80%80"));
    EXPECT_EQ(veskPercentEncode(QStringLiteral("\U0010ffff")), QStringLiteral("%F4%8F%BF%BF"));
}

TEST(PercentEncode, WritesALoneSurrogateAsReplacementCharacter)
{
    const QChar high(0xD83D);
    const QChar low(0xDE00);
    EXPECT_EQ(veskPercentEncode(QString(high)), QStringLiteral("%EF%BF%BD"));
    EXPECT_EQ(veskPercentEncode(QString(low)), QStringLiteral("%EF%BF%BD"));
    EXPECT_EQ(veskPercentEncode(QString(low) + high), QStringLiteral("%EF%BF%BD%EF%BF%BD"));
    EXPECT_EQ(veskPercentEncode(QString(high) + QLatin1Char('a')), QStringLiteral("%EF%BF%BDa"));
    EXPECT_EQ(
        veskPercentEncode(QString(high) + high + low), QStringLiteral("%EF%BF%BD%F0%9F%98%80"));
}

TEST(PercentEncode, KeepsSurrogatePairsTogetherInLongTexts)
{
    // Long texts are encoded in pieces: with these offsets some surrogate pair straddles a piece's
    // end, whatever the size of the pieces.
    for (int before = 0; before < 3; ++before) {
        const QString text
            = QString(before, QLatin1Char(' ')) + QStringLiteral("\U0001F600").repeated(2000);
        const QString expected = QStringLiteral("%20").repeated(before)
            + QStringLiteral("%F0%9F%98%80").repeated(2000);
        EXPECT_TRUE(veskPercentEncode(text) == expected) << before;
    }
}

TEST(PercentEncode, AgreesWithQUrlOnAnyUnicodeText)
{
    std::mt19937 random(1);
    for (int i = 0; i < 20000; ++i) {
        const QString text = randomText(random);
        ASSERT_EQ(veskPercentEncode(text).toLatin1(), QUrl::toPercentEncoding(text));
        ASSERT_EQ(veskPercentEncode(text, "/").toLatin1(), QUrl::toPercentEncoding(text, "/"));
    }
}

TEST(PercentBuffer, JoinsEncodedPartsAndPlainCharacters)
{
    VeskPercentBuffer buffer;
    EXPECT_EQ(buffer.toString(), QString());
    buffer.append(QStringLiteral("a b"));
    buffer.append('?');
    buffer.append(QStringLiteral("/\u00e9"), "/");
    buffer.append(QString(3000, QLatin1Char('=')));
    EXPECT_EQ(
        buffer.toString(), QStringLiteral("a%20b?/%C3%A9") + QStringLiteral("%3D").repeated(3000));
}

TEST(PercentBuffer, TakesEncodedPartsAsTheyAre)
{
    VeskPercentBuffer buffer;
    buffer.appendEncoded(QString());
    buffer.appendEncoded(QStringLiteral("a%20b"));
    buffer.append(QStringLiteral("%"));
    buffer.appendEncoded(QStringLiteral("&c=").repeated(3000));
    buffer.append('?');
    EXPECT_EQ(buffer.toString(),
        QStringLiteral("a%20b%25") + QStringLiteral("&c=").repeated(3000) + QLatin1Char('?'));
}

TEST(PercentEncode, EncodesWhatIsBeyondAsciiAtAnyPlaceAmongAscii)
{
    const QString others[] {QStringLiteral("\u00e9"), QStringLiteral("\u20ac"),
        QStringLiteral("\U0001F600"), QString(QChar(0xD83D)), QString(QChar(0xDE00))};
    const QString encoded[] {QStringLiteral("%C3%A9"), QStringLiteral("%E2%82%AC"),
        QStringLiteral("%F0%9F%98%80"), QStringLiteral("%EF%BF%BD"), QStringLiteral("%EF%BF%BD")};
    for (int before = 0; before < 10; ++before) {
        for (int behind = 0; behind < 10; ++behind) {
            for (int i = 0; i < 5; ++i) {
                const QString text = QString(before, QLatin1Char('a')) + others[i]
                    + QString(behind, QLatin1Char(' '));
                ASSERT_EQ(veskPercentEncode(text),
                    QString(before, QLatin1Char('a')) + encoded[i]
                        + QStringLiteral("%20").repeated(behind));
            }
        }
    }
}

TEST(PercentDecode, UndoesEncodingOfAnyUnicodeText)
{
    std::mt19937 random(2);
    for (int i = 0; i < 20000; ++i) {
        const QString text = randomText(random);
        ASSERT_EQ(decode(veskPercentEncode(text)), text);
    }
}

TEST(PercentDecode, ReadsHexDigitsOfEitherCase)
{
    EXPECT_EQ(decode(QStringLiteral("%c3%A9%C3%a9")), QStringLiteral("\u00e9\u00e9"));
}

TEST(PercentDecode, LeavesAPlusAPlus)
{
    EXPECT_EQ(decode(QStringLiteral("a+b%2Bc")), QStringLiteral("a+b+c"));
}

TEST(PercentDecode, ReadsCharactersThatAreNotEncodedAsTheyAre)
{
    EXPECT_EQ(
        decode(QStringLiteral("\u00e9 %41 \U0001F600")), QStringLiteral("\u00e9 A \U0001F600"));
}

TEST(PercentDecode, DecodesOnceOnly)
{
    EXPECT_EQ(decode(QStringLiteral("%2541")), QStringLiteral("%41"));
}

TEST(PercentDecode, ReadsNul)
{
    EXPECT_EQ(decode(QStringLiteral("a%00b")), QString::fromLatin1("a\0b", 3));
}

class DamagedEscape : public testing::TestWithParam<std::string> { };

TEST_P(DamagedEscape, IsRefused)
{
    EXPECT_FALSE(veskPercentDecode(QString::fromStdString(GetParam())));
}

INSTANTIATE_TEST_SUITE_P(PercentDecode, DamagedEscape,
    testing::Values("%", "a%", "%4", "a%4", "%%", "%%41", "%G1", "%1G", "%-1", "%+1", "% 1", "%0x",
        "%4\xc3\xa9",
        // a lone continuation byte, too few of them, an escape or a character in between
        "%80", "%BF", "%C3", "%C3a", "%C3%", "%C3%A", "%C3%41", "%E2%82", "%E2%82x", "%F0%9F%98",
        // overlong forms, surrogates, beyond U+10FFFF, bytes that never occur in UTF-8
        "%C0%80", "%C1%BF", "%E0%80%80", "%E0%9F%BF", "%F0%80%80%80", "%F0%8F%BF%BF", "%ED%A0%80",
        "%ED%BF%BF", "%F4%90%80%80", "%F5%80%80%80", "%F8%88%80%80%80", "%FE", "%FF"));

TEST(PercentDecode, RefusesLoneSurrogates)
{
    for (const QString &text : {QString(QChar(0xD800)), QString(QChar(0xDC00)),
             QChar(0xD800) + QStringLiteral("%41"), QStringLiteral("%41") + QChar(0xDC00),
             QStringLiteral("%41") + QChar(0xD800) + QLatin1Char('a')})
        EXPECT_FALSE(veskPercentDecode(text));
}

TEST(PercentDecode, ReadsOrRefusesAnyNoise)
{
    std::mt19937 random(3);
    const QString alphabet = QStringLiteral("%%%%0123456789ABCDEFabcdefGx\u00e9 +");
    int refused = 0;
    for (int i = 0; i < 20000; ++i) {
        QString text;
        for (unsigned n = random() % 12; n > 0; --n)
            text += alphabet.at(int(random() % uint(alphabet.size())));
        if (const auto decoded = veskPercentDecode(text))
            ASSERT_EQ(decode(veskPercentEncode(*decoded)), *decoded);
        else
            ++refused;
    }
    EXPECT_GT(refused, 1000);
}
