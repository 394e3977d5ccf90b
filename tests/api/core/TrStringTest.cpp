// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/core/TrString.h"

#include "api/core/Language.h"
#include "api/core/log.h"

#include <gtest/gtest.h>

#include <QDataStream>
#include <QVariantHash>

#include <sstream>

namespace {

TrString text(const QString &source, const QVector<TrArg> &arguments = {})
{
    return TrString(QStringLiteral("Test"), source, QString(), -1, arguments);
}

QString filled(const QString &source, const QVector<TrArg> &arguments)
{
    return text(source, arguments).toString();
}

QVector<TrArg> values(const QStringList &texts)
{
    QVector<TrArg> arguments;
    for (const QString &value : texts)
        arguments.append(TrArg(value));
    return arguments;
}

TrString streamed(const TrString &string)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << string;
    QDataStream in(bytes);
    TrString read;
    in >> read;
    EXPECT_TRUE(in.atEnd());
    return read;
}

const TrString full(QStringLiteral("Context"), QStringLiteral("%n of %1"), QStringLiteral("note"),
    3, {TrArg(QStringLiteral("ten"), -5, QLatin1Char('.'))});

} // namespace

TEST(TrString, IsEmptyWhenMadeFromNothing)
{
    const TrString empty;
    EXPECT_TRUE(empty.isEmpty());
    EXPECT_EQ(empty.toString(), QString());
    EXPECT_EQ(empty.count(), -1);
    EXPECT_TRUE(empty.arguments().isEmpty());
    EXPECT_EQ(empty, TrString());
}

TEST(TrString, KeepsWhatItWasMadeFrom)
{
    EXPECT_EQ(full.context(), QStringLiteral("Context"));
    EXPECT_EQ(full.sourceText(), QStringLiteral("%n of %1"));
    EXPECT_EQ(full.disambiguation(), QStringLiteral("note"));
    EXPECT_EQ(full.count(), 3);
    ASSERT_EQ(full.arguments().size(), 1);
    EXPECT_EQ(full.arguments().first(), TrArg(QStringLiteral("ten"), -5, QLatin1Char('.')));
    EXPECT_TRUE(full.isTranslatable());
    EXPECT_FALSE(full.isEmpty());
}

TEST(TrString, ShowsItsSourceWithoutATranslation)
{
    EXPECT_EQ(
        TrString("Test", "Invalid response.").toString(), QStringLiteral("Invalid response."));
    EXPECT_EQ(TrString("Test",
                  "Stra\xc3\x9f"
                  "e")
                  .toString(),
        QStringLiteral("Stra\u00dfe"));
}

TEST(TrString, FillsInTheCount)
{
    const TrString stations(
        QStringLiteral("Nowhere"), QStringLiteral("%n stations"), QString(), 12);
    EXPECT_EQ(stations.toString(), QStringLiteral("12 stations"));
    const TrString none(QStringLiteral("Nowhere"), QStringLiteral("%n stations"), QString(), 0);
    EXPECT_EQ(none.toString(), QStringLiteral("0 stations"));
    const TrString uncounted(
        QStringLiteral("Nowhere"), QStringLiteral("%n stations"), QString(), -7);
    EXPECT_EQ(uncounted.toString(), QStringLiteral("%n stations"));
    EXPECT_EQ(uncounted.count(), -1);
}

TEST(TrStringArguments, FillThePlacesInTheOrderOfTheirNumbers)
{
    EXPECT_EQ(
        filled(QStringLiteral("%2 and %1"), values({QStringLiteral("a"), QStringLiteral("b")})),
        QStringLiteral("b and a"));
    EXPECT_EQ(filled(QStringLiteral("%7, %3"), values({QStringLiteral("a"), QStringLiteral("b")})),
        QStringLiteral("b, a"));
    EXPECT_EQ(filled(QStringLiteral("%1%1"), values({QStringLiteral("a")})), QStringLiteral("aa"));
}

TEST(TrStringArguments, AreNeverSearchedForPlaces)
{
    EXPECT_EQ(filled(QStringLiteral("%1 %2"), values({QStringLiteral("%2"), QStringLiteral("b")})),
        QStringLiteral("%2 b"));
    EXPECT_EQ(
        filled(QStringLiteral("%1%2"), values({QStringLiteral("a%3Ab%2"), QStringLiteral("%1")})),
        QStringLiteral("a%3Ab%2%1"));
    EXPECT_EQ(filled(QStringLiteral("%11"), values({QStringLiteral("%1")})), QStringLiteral("%1"));
    EXPECT_EQ(filled(QStringLiteral("%1"), values({QStringLiteral("%n")})), QStringLiteral("%n"));
    // The end of a value does not combine with the text after it into a placeholder.
    EXPECT_EQ(filled(QStringLiteral("%1%2"), values({QStringLiteral("%"), QStringLiteral("1")})),
        QStringLiteral("%1"));
    EXPECT_EQ(filled(QStringLiteral("%1 1"), values({QStringLiteral("%")})), QStringLiteral("% 1"));
}

TEST(TrStringArguments, LeavePlacesAloneForWhichThereIsNone)
{
    EXPECT_EQ(filled(QStringLiteral("%1 %2 %3"), values({QStringLiteral("a")})),
        QStringLiteral("a %2 %3"));
    EXPECT_EQ(filled(QStringLiteral("%1 %2"), {}), QStringLiteral("%1 %2"));
}

TEST(TrStringArguments, AreDroppedWhenThereIsNoPlace)
{
    EXPECT_EQ(
        filled(QStringLiteral("plain"), values({QStringLiteral("a")})), QStringLiteral("plain"));
    EXPECT_EQ(filled(QStringLiteral("%1"), values({QStringLiteral("a"), QStringLiteral("b")})),
        QStringLiteral("a"));
}

TEST(TrStringArguments, TakePlacesOfTwoDigits)
{
    QStringList texts;
    for (int i = 1; i <= 12; ++i)
        texts.append(QStringLiteral("<%1>").arg(i));
    EXPECT_EQ(filled(QStringLiteral("%1 %2 %3 %4 %5 %6 %7 %8 %9 %10 %11 %12"), values(texts)),
        QStringLiteral("<1> <2> <3> <4> <5> <6> <7> <8> <9> <10> <11> <12>"));
    EXPECT_EQ(
        filled(QStringLiteral("%99%998"), values({QStringLiteral("a")})), QStringLiteral("aa8"));
}

TEST(TrStringArguments, TakeOnlyWhatIsAPlace)
{
    EXPECT_EQ(filled(QStringLiteral("100 % %0 %% %x %L %1 %"), values({QStringLiteral("a")})),
        QStringLiteral("100 % %0 %% %x %L a %"));
    EXPECT_EQ(filled(QStringLiteral("%%1"), values({QStringLiteral("a")})), QStringLiteral("%a"));
    EXPECT_EQ(filled(QStringLiteral("%L1"), values({QStringLiteral("a")})), QStringLiteral("a"));
}

TEST(TrStringArguments, ArePaddedToTheirWidth)
{
    EXPECT_EQ(
        filled(QStringLiteral("[%1]"), {TrArg(QStringLiteral("ab"), 4)}), QStringLiteral("[  ab]"));
    EXPECT_EQ(filled(QStringLiteral("[%1]"), {TrArg(QStringLiteral("ab"), -4, QLatin1Char('.'))}),
        QStringLiteral("[ab..]"));
    EXPECT_EQ(filled(QStringLiteral("[%1]"), {TrArg(QStringLiteral("abcdef"), 4)}),
        QStringLiteral("[abcdef]"));
}

TEST(TrString, ComparesEveryPartOfIt)
{
    const QVector<TrArg> arguments = full.arguments();
    const auto with = [&](const char *context, const char *source, const char *note, int count,
                          const QVector<TrArg> &args) {
        return TrString(QString::fromLatin1(context), QString::fromLatin1(source),
            QString::fromLatin1(note), count, args);
    };
    EXPECT_EQ(with("Context", "%n of %1", "note", 3, arguments), full);
    EXPECT_NE(with("Other", "%n of %1", "note", 3, arguments), full);
    EXPECT_NE(with("Context", "other", "note", 3, arguments), full);
    EXPECT_NE(with("Context", "%n of %1", "other", 3, arguments), full);
    EXPECT_NE(with("Context", "%n of %1", "note", 4, arguments), full);
    EXPECT_NE(with("Context", "%n of %1", "note", 3, {}), full);
    EXPECT_NE(Language::ntr(QStringLiteral("a")), TrString(QString(), QStringLiteral("a")));
    EXPECT_NE(TrArg(QStringLiteral("a"), 1), TrArg(QStringLiteral("a"), 2));
    EXPECT_NE(TrArg(QStringLiteral("a"), 1), TrArg(QStringLiteral("a"), 1, QLatin1Char('.')));
}

TEST(TrString, IsLeftEmptyWhenMovedFrom)
{
    TrString from = full;
    const TrString to = std::move(from);
    EXPECT_EQ(to, full);
    EXPECT_TRUE(from.isEmpty()); // NOLINT: the moved-from state is part of the contract
    from = to;
    EXPECT_EQ(from, full);
}

TEST(TrString, SurvivesAVariant)
{
    const QVariant variant = full;
    EXPECT_EQ(TrString::fromVariant(variant), full);
    EXPECT_EQ(variant, QVariant(TrString(full)));
    EXPECT_EQ(variant, QVariant(streamed(full)));
    EXPECT_NE(variant, QVariant(TrString("Test", "other")));
    EXPECT_EQ(QVariant(text(QStringLiteral("plain"))).toString(), QStringLiteral("plain"));
}

TEST(TrString, MakesHashesThatHoldItComparable)
{
    const QVariantHash hash {{QStringLiteral("title"), full}};
    const QVariantHash same {{QStringLiteral("title"), streamed(full)}};
    const QVariantHash other {{QStringLiteral("title"), TrString("Test", "other")}};
    EXPECT_EQ(hash, same);
    EXPECT_NE(hash, other);
}

TEST(TrString, ReadsOtherVariantsAsUntranslatedText)
{
    EXPECT_EQ(TrString::fromVariant(QStringLiteral("Folk")), Language::ntr(QStringLiteral("Folk")));
    EXPECT_EQ(TrString::fromVariant(12).toString(), QStringLiteral("12"));
    EXPECT_TRUE(TrString::fromVariant(QVariant()).isEmpty());
    EXPECT_TRUE(TrString::fromVariant(QVariantHash {{QStringLiteral("a"), 1}}).isEmpty());
}

TEST(TrString, SurvivesADataStream)
{
    EXPECT_EQ(streamed(full), full);
    EXPECT_EQ(streamed(TrString()), TrString());
    const TrString name = Language::ntr(QStringLiteral("%1"));
    EXPECT_EQ(streamed(name), name);
    EXPECT_FALSE(streamed(name).isTranslatable());
}

TEST(TrString, SurvivesADataStreamInsideAVariant)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << QVariant(full);
    QDataStream in(bytes);
    QVariant read;
    in >> read;
    EXPECT_EQ(TrString::fromVariant(read), full);
}

TEST(TrString, IsEmptyWhenTheStreamEndsEarly)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << full;
    for (int size = 0; size < bytes.size(); ++size) {
        QDataStream in(bytes.left(size));
        TrString read = full;
        in >> read;
        ASSERT_TRUE(read.isEmpty()) << size;
        ASSERT_NE(in.status(), QDataStream::Ok) << size;
    }
}

TEST(TrString, PrintsItsText)
{
    std::ostringstream out;
    out << filled(QStringLiteral("%1 dB"), values({QStringLiteral("3")}))
        << text(QStringLiteral(" and ")) << Language::ntr(QStringLiteral("na\u00efve"));
    EXPECT_EQ(out.str(), "3 dB and na\xc3\xafve");
}

TEST(LanguageNtr, LeavesPlacesAndEverythingElseAsItIs)
{
    const TrString name = Language::ntr(QStringLiteral("100%1 %n"));
    EXPECT_EQ(name.toString(), QStringLiteral("100%1 %n"));
    EXPECT_FALSE(name.isTranslatable());
    EXPECT_TRUE(Language::ntr(QString()).isEmpty());
    EXPECT_EQ(Language::ntr(QString()), TrString());
}
