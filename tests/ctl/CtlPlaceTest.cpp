// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/CtlPlace.h"

#include <gmock/gmock.h>

namespace {

CtlPlace parse(const char *text)
{
    CtlPlace place;
    EXPECT_TRUE(CtlPlace::parse(QString::fromUtf8(text).split(QLatin1Char(' ')), place)) << text;
    return place;
}

bool isPlace(const char *text)
{
    CtlPlace place;
    return CtlPlace::parse(QString::fromUtf8(text).split(QLatin1Char(' ')), place);
}

using Rows = QVector<int>;

TEST(CtlPlaceTest, RowNumbersCountFromWhatWasShownOrFromTheFirstScreen)
{
    EXPECT_EQ(parse("3/0/12").start, CtlPlace::Shown);
    EXPECT_EQ(parse("3/0/12").rows, (Rows {3, 0, 12}));
    EXPECT_EQ(parse("/3/0").start, CtlPlace::Root);
    EXPECT_EQ(parse("/3/0").rows, (Rows {3, 0}));
    EXPECT_EQ(parse("/").start, CtlPlace::Root);
    EXPECT_TRUE(parse("/").rows.isEmpty());
}

TEST(CtlPlaceTest, ARowMayBeAWordOfItsOwn)
{
    EXPECT_EQ(parse("3/0 12").rows, (Rows {3, 0, 12}));
    EXPECT_EQ(parse("favorites 2").rows, Rows {2});
    EXPECT_EQ(parse("a:b?c=d 7").rows, Rows {7});
    EXPECT_EQ(parse("search:jazz 0").text, QStringLiteral("jazz"));
    EXPECT_EQ(parse("search:jazz 0").rows, Rows {0});
}

TEST(CtlPlaceTest, WhatIsFoundNeedsNoQuotesAndHasRows)
{
    const CtlPlace place = parse("search:miles davis/2/1");
    EXPECT_EQ(place.start, CtlPlace::Search);
    EXPECT_EQ(place.text, QStringLiteral("miles davis"));
    EXPECT_EQ(place.rows, (Rows {2, 1}));
    EXPECT_EQ(parse("search:AC/DC").text, QStringLiteral("AC/DC"));
    EXPECT_EQ(parse("search:a:b").text, QStringLiteral("a:b"));
}

TEST(CtlPlaceTest, APathHasRowsBehindAHash)
{
    const CtlPlace place = parse("Good:list/1?a=b#3/4");
    EXPECT_EQ(place.path.toEncoded(), QStringLiteral("Good:list/1?a=b"));
    EXPECT_EQ(place.rows, (Rows {3, 4}));
    EXPECT_TRUE(parse("Good:list/1").rows.isEmpty());
}

TEST(CtlPlaceTest, AnIdIsLettersAndDigits)
{
    EXPECT_EQ(parse("s20105").start, CtlPlace::Id);
    EXPECT_EQ(parse("s20105").text, QStringLiteral("s20105"));
    EXPECT_FALSE(isPlace("jazz")) << "a name";
}

TEST(CtlPlaceTest, WhatItPrintsItReads)
{
    const CMPath path = CMPath::fromEncoded(QStringLiteral("Good:l?a=%2F%23"));
    for (const CtlPlace &place : {CtlPlace::favorites(), CtlPlace::found(QStringLiteral("24/7")),
             CtlPlace::found(QStringLiteral("100% %2F")), CtlPlace::of(path), CtlPlace()}) {
        for (const CtlPlace &named : {place, place.row(0), place.row(3).row(12)}) {
            CtlPlace read;
            ASSERT_TRUE(CtlPlace::parse(named.toText(), read)) << named.toText().toStdString();
            EXPECT_EQ(read.start, named.start) << named.toText().toStdString();
            EXPECT_EQ(read.text, named.text);
            EXPECT_EQ(read.path, named.path);
            EXPECT_EQ(read.rows, named.rows);
        }
    }
}

TEST(CtlPlaceTest, AnythingElseIsNone)
{
    for (const char *text : {"nopath", "a:%zz", "1/x", "1/-2", "+1", "99999999999",
             "search:", "search:/3", "favorites/x", "a:b#x", "a:b c:d", "", "two words"})
        EXPECT_FALSE(isPlace(text)) << text;
}

} // namespace
