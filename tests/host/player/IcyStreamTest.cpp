// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/IcyStream.h"
#include "tests/support/Text.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace {

/// A metadata block as a server sends it: its length, the text, zeros up to a full sixteen.
QByteArray block(const QByteArray &metadata)
{
    const int sixteenths = (metadata.size() + 15) / 16;
    return QByteArray(1, static_cast<char>(sixteenths))
        + metadata.leftJustified(sixteenths * 16, '\0');
}

QByteArray titled(const QByteArray &title)
{
    return block("StreamTitle='" + title + "';");
}

/// A stream's audio, separated from its titles.
struct Heard {
    QByteArray audio;
    QStringList titles;
    bool wentOn = true;
};

Heard hear(int interval, const QByteArray &bytes, int chunk)
{
    Heard heard;
    IcyStream stream(interval);
    for (int at = 0; at < bytes.size() && heard.wentOn; at += chunk) {
        const QByteArray piece = bytes.mid(at, chunk);
        heard.wentOn = stream.feed(
            piece.constData(), static_cast<std::size_t>(piece.size()),
            [&heard](const char *data, std::size_t size) {
                heard.audio.append(data, static_cast<int>(size));
                return true;
            },
            [&heard](const QString &title) { heard.titles.append(title); });
    }
    return heard;
}

Heard hear(int interval, const QByteArray &bytes)
{
    return hear(interval, bytes, bytes.size());
}

/// The titles reported for these metadata blocks.
QStringList titlesOf(const QList<QByteArray> &blocks)
{
    QByteArray bytes;
    for (const QByteArray &each : blocks)
        bytes += "AB" + each;
    const Heard heard = hear(2, bytes);
    EXPECT_EQ(heard.audio, QByteArray("AB").repeated(blocks.size()));
    return heard.titles;
}

} // namespace

TEST(IcyStreamTest, PartsAudioFromTitles)
{
    const Heard heard
        = hear(4, "ABCD" + titled("one") + "EFGH" + block("") + "IJKL" + titled("two") + "MN");
    EXPECT_EQ(heard.audio, QByteArray("ABCDEFGHIJKLMN"));
    EXPECT_EQ(heard.titles, (QStringList {text("one"), text("two")}));
}

TEST(IcyStreamTest, AnyChunkingGivesTheSame)
{
    const QByteArray bytes = "ABCDE" + titled("Caf\xE9; it's 'one'") + "FGHIJ" + block("") + "KLMNO"
        + titled(QByteArray(600, 'x')) + QByteArray("\0\xFF\0\x01'", 5) + block("StreamUrl='u';")
        + "PQRST" + block("") + "UVW";
    const Heard whole = hear(5, bytes);
    ASSERT_EQ(whole.titles.size(), 2);
    EXPECT_EQ(whole.audio, QByteArray("ABCDEFGHIJKLMNO\0\xFF\0\x01'PQRSTUVW", 28));
    for (int chunk = 1; chunk <= bytes.size(); ++chunk) {
        const Heard heard = hear(5, bytes, chunk);
        EXPECT_EQ(heard.audio, whole.audio) << chunk;
        EXPECT_EQ(heard.titles, whole.titles) << chunk;
    }
}

TEST(IcyStreamTest, EveryPlaceToCutInTwoGivesTheSame)
{
    const QByteArray bytes = "ABC" + titled("one") + "DEF" + block("") + "G";
    for (int cut = 0; cut <= bytes.size(); ++cut) {
        IcyStream stream(3);
        QByteArray audio;
        QStringList titles;
        for (const QByteArray &piece : {bytes.left(cut), bytes.mid(cut)})
            EXPECT_TRUE(stream.feed(
                piece.constData(), static_cast<std::size_t>(piece.size()),
                [&audio](const char *data, std::size_t size) {
                    audio.append(data, static_cast<int>(size));
                    return true;
                },
                [&titles](const QString &title) { titles.append(title); }));
        EXPECT_EQ(audio, QByteArray("ABCDEFG")) << cut;
        EXPECT_EQ(titles, QStringList {text("one")}) << cut;
    }
}

TEST(IcyStreamTest, WithoutAnIntervalEverythingIsAudio)
{
    const QByteArray bytes = "ABCD" + titled("one") + "EFGH";
    for (const int interval : {0, -1, -2147483647 - 1}) {
        const Heard heard = hear(interval, bytes);
        EXPECT_EQ(heard.audio, bytes);
        EXPECT_TRUE(heard.titles.isEmpty());
    }
}

TEST(IcyStreamTest, AnIntervalMayBeOneOrHuge)
{
    const Heard dense = hear(1, "A" + titled("one") + "B" + block("") + "C" + block("") + "D");
    EXPECT_EQ(dense.audio, QByteArray("ABCD"));
    EXPECT_EQ(dense.titles, QStringList {text("one")});
    const QByteArray bytes(100000, 'A');
    EXPECT_EQ(hear(2147483647, bytes, 999).audio, bytes);
}

TEST(IcyStreamTest, TakesTheLongestMetadata)
{
    const QByteArray longest
        = block(("StreamTitle='" + QByteArray(3000, 'x') + "';StreamUrl='").leftJustified(4078, 'u')
            + "';");
    // The length byte counts units of 16 bytes.
    ASSERT_EQ(longest.size(), 1 + 255 * 16);
    const Heard heard = hear(3, "ABC" + longest + "DEF", 7);
    EXPECT_EQ(heard.audio, QByteArray("ABCDEF"));
    EXPECT_EQ(heard.titles, QStringList {QString(512, QLatin1Char('x'))});
}

TEST(IcyStreamTest, TellsATitleOnce)
{
    EXPECT_EQ(titlesOf({titled("one"), titled("one"), block(""), titled("one"), titled("two"),
                  titled("one")}),
        (QStringList {text("one"), text("two"), text("one")}));
    EXPECT_EQ(titlesOf({block("StreamTitle='one';StreamUrl='a';"),
                  block("StreamTitle='one';StreamUrl='b';")}),
        QStringList {text("one")});
}

TEST(IcyStreamTest, AnEmptyTitleEndsTheOneBefore)
{
    const QStringList titles = titlesOf({titled("one"), titled(""), titled("")});
    EXPECT_EQ(titles, (QStringList {text("one"), text("")}));
}

TEST(IcyStreamTest, MetadataWithoutATitleChangesNone)
{
    EXPECT_EQ(titlesOf({titled("one"), block("StreamUrl='http://h/x';"), block("nonsense"),
                  block(QByteArray(16, '\0')), titled("one")}),
        QStringList {text("one")});
    EXPECT_TRUE(titlesOf({block("StreamUrl='http://h/x';")}).isEmpty());
}

TEST(IcyStreamTest, StopsWhenTheAudioIsNotTaken)
{
    const QByteArray bytes = "ABCD" + titled("one") + "EFGH" + titled("two") + "IJKL";
    IcyStream stream(4);
    int taken = 0;
    QStringList titles;
    const bool wentOn = stream.feed(
        bytes.constData(), static_cast<std::size_t>(bytes.size()),
        [&taken](const char *, std::size_t) { return ++taken < 2; },
        [&titles](const QString &title) { titles.append(title); });
    EXPECT_FALSE(wentOn);
    EXPECT_EQ(taken, 2);
    EXPECT_EQ(titles, QStringList {text("one")});
    IcyStream plain(0);
    EXPECT_FALSE(plain.feed(
        "A", 1, [](const char *, std::size_t) { return false; }, [](const QString &) {}));
}

TEST(IcyStreamTest, HandsOnNoEmptyAudio)
{
    const QByteArray bytes = "AB" + titled("one") + "CD" + block("") + "EF";
    for (const int interval : {0, 2}) {
        IcyStream stream(interval);
        const auto feed = [&stream](const char *data, std::size_t size) {
            return stream.feed(
                data, size,
                [](const char *, std::size_t taken) {
                    EXPECT_GT(taken, 0U);
                    return true;
                },
                [](const QString &) {});
        };
        EXPECT_TRUE(feed(bytes.constData(), 0));
        for (const char c : bytes)
            EXPECT_TRUE(feed(&c, 1));
    }
}

class IcyTitleTest : public testing::TestWithParam<std::pair<const char *, const char *>> { };

TEST_P(IcyTitleTest, IsFoundInTheMetadata)
{
    EXPECT_EQ(icyTitle(GetParam().first), text(GetParam().second));
    EXPECT_FALSE(icyTitle(GetParam().first).isNull());
}

INSTANTIATE_TEST_SUITE_P(Blocks, IcyTitleTest,
    testing::Values(std::make_pair("StreamTitle='A - B';", "A - B"),
        std::make_pair("StreamTitle='A - B';StreamUrl='http://h/';", "A - B"),
        std::make_pair("StreamUrl='http://h/';StreamTitle='A - B';", "A - B"),
        std::make_pair("StreamTitle='Don't Stop';", "Don't Stop"),
        std::make_pair("StreamTitle='Rock 'n' Roll';StreamUrl='';", "Rock 'n' Roll"),
        std::make_pair("StreamTitle='Guns N' Roses - Don't Cry';", "Guns N' Roses - Don't Cry"),
        std::make_pair("StreamTitle=''74-'75';StreamUrl='x';", "'74-'75"),
        std::make_pair("StreamTitle='Rockin'';StreamUrl='x';", "Rockin'"),
        std::make_pair("StreamTitle='a; b;c;';", "a; b;c;"),
        std::make_pair("StreamTitle='Livin'; Lovin'; Maid';StreamUrl='x';", "Livin'; Lovin'; Maid"),
        std::make_pair("StreamTitle='Livin'; Lovin'; Maid';", "Livin'; Lovin'; Maid"),
        std::make_pair("StreamTitle='a=b';", "a=b"), std::make_pair("StreamTitle='';", ""),
        std::make_pair("StreamTitle='';StreamUrl='';", ""),
        std::make_pair("StreamTitle='no end", "no end"),
        std::make_pair("StreamTitle='no semicolon'", "no semicolon"),
        std::make_pair("StreamTitle='caf\xC3\xA9';", "café"),
        std::make_pair("StreamTitle='caf\xE9';", "café"),
        std::make_pair("StreamTitle='a\nb';", "a b")));

TEST(IcyTitleTest, IsNullWhereThereIsNone)
{
    for (const char *metadata :
        {"", "StreamUrl='http://h/';", "Title='x';", "StreamTitle", "nonsense", "'';'';"})
        EXPECT_TRUE(icyTitle(metadata).isNull()) << metadata;
    EXPECT_TRUE(icyTitle(QByteArray(4080, '\0')).isNull());
}

TEST(IcyTitleTest, LeavesThePaddingOut)
{
    EXPECT_EQ(icyTitle(QByteArray("StreamTitle='A';\0\0\0\0", 20)), text("A"));
    EXPECT_EQ(icyTitle(QByteArray("StreamTitle='A\0\0\0\0\0", 19)), text("A"));
}

TEST(IcyTitleTest, HasNoControlCharactersAndABound)
{
    const QString title = icyTitle("StreamTitle='a\x1B[2Jb\rc" + QByteArray(4000, 'x') + "';");
    EXPECT_EQ(title.size(), 512);
    for (const QChar c : title)
        EXPECT_NE(c.category(), QChar::Other_Control);
}
