// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/CtlPlace.h"

#include <gmock/gmock.h>

namespace {

using Rows = QVector<int>;

std::optional<CtlPlace> parse(const char *words)
{
    return CtlPlace::parse(QString::fromUtf8(words).split(QLatin1Char(' ')));
}

TEST(CtlPlaceTest, ReadsEveryKindOfPlace)
{
    const struct {
        const char *words;
        CtlPlace::Start start;
        /// The path, the search text or the id.
        const char *named;
        Rows rows;
    } places[] {
        {"3/0/12", CtlPlace::Shown, "", {3, 0, 12}},
        {"3/0 12", CtlPlace::Shown, "", {3, 0, 12}},
        {"/", CtlPlace::Root, "", {}},
        {"/3/0", CtlPlace::Root, "", {3, 0}},
        {"favorites", CtlPlace::Favorites, "", {}},
        {"favorites 2", CtlPlace::Favorites, "", {2}},
        {"search:miles davis/2/1", CtlPlace::Search, "miles davis", {2, 1}},
        {"search:jazz 0", CtlPlace::Search, "jazz", {0}},
        {"search:AC/DC", CtlPlace::Search, "AC/DC", {}},
        {"search:a:b", CtlPlace::Search, "a:b", {}},
        {"Good:list/1", CtlPlace::Path, "Good:list/1", {}},
        {"Good:list/1?a=b#3/4", CtlPlace::Path, "Good:list/1?a=b", {3, 4}},
        {"a:b?c=d 7", CtlPlace::Path, "a:b?c=d", {7}},
        {"s20105", CtlPlace::Id, "s20105", {}},
    };
    for (const auto &expected : places) {
        const auto place = parse(expected.words);
        ASSERT_TRUE(place) << expected.words;
        EXPECT_EQ(place->start, expected.start) << expected.words;
        const QString named
            = place->start == CtlPlace::Path ? place->path.toEncoded() : place->text;
        EXPECT_EQ(named, QString::fromUtf8(expected.named)) << expected.words;
        EXPECT_EQ(place->rows, expected.rows) << expected.words;
    }
}

TEST(CtlPlaceTest, RefusesOtherTexts)
{
    for (const char *text : {"nopath", "jazz", "a:%zz", "1/x", "1/-2", "+1", "99999999999",
             "search:", "search:/3", "favorites/x", "a:b#x", "a:b c:d", "", "two words"})
        EXPECT_FALSE(parse(text)) << text;
}

TEST(CtlPlaceTest, ReadsItsOwnTextForm)
{
    const CMPath path = CMPath::fromEncoded(QStringLiteral("Good:l?a=%2F%23"));
    for (const CtlPlace &place : {CtlPlace::favorites(), CtlPlace::found(QStringLiteral("24/7")),
             CtlPlace::found(QStringLiteral("100% %2F")), CtlPlace::of(path), CtlPlace()}) {
        for (const CtlPlace &named : {place, place.row(0), place.row(3).row(12)}) {
            const auto read = CtlPlace::parse(named.toText());
            ASSERT_TRUE(read) << named.toText().toStdString();
            EXPECT_EQ(read->start, named.start) << named.toText().toStdString();
            EXPECT_EQ(read->text, named.text);
            EXPECT_EQ(read->path, named.path);
            EXPECT_EQ(read->rows, named.rows);
        }
    }
}

} // namespace
