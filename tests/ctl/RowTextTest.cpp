// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/RowText.h"

#include "api/values/VeskMediaData.h"
#include "api/values/VeskValue.h"
#include "tests/ctl/FakeHost.h"

#include <gmock/gmock.h>

namespace {

/// Rows as printed on a terminal \a width columns wide; 0: as printed for programs.
std::string shown(const QList<VeskRoles> &rows, int width, bool paths = false,
    const QVariantHash &player = {}, const TerminalStyle &style = TerminalStyle(false))
{
    CtlPlace place;
    place.rows = {3};
    RowPrinter printer(place, player, paths, width, style);
    QList<RowText> texts;
    for (const VeskRoles &roles : rows)
        texts.append(printer.text(texts.size(), roles));
    return printer.lines(texts);
}

VeskRoles described(int type, const char *title, const char *description)
{
    VeskRoles roles = row(type, title, "a:b");
    roles.insert(VeskRoles::Description(), QString::fromUtf8(description));
    return roles;
}

TEST(RowTextTest, ShowsNumberMarkAndTitle)
{
    EXPECT_EQ(shown({row(1, "Music", "a:b")}, 80), "   0 > Music\n");
    EXPECT_EQ(shown({row(3, "Jazz", "a:b")}, 80), "   0 \u266a Jazz\n");
    EXPECT_EQ(shown({row(2, "Stations", "a:b")}, 80), "   0 # Stations\n");
    EXPECT_EQ(shown({row(6, "Add", "a:b")}, 80), "   0 ! Add\n");
    EXPECT_EQ(shown({row(99, "Odd", "a:b")}, 80), "   0   Odd\n");
}

TEST(RowTextTest, ShowsPathsWholeWhenAskedFor)
{
    const std::string path(200, 'x');
    const QList<VeskRoles> rows {row(1, "Music", ("a:" + path + "?b=c&d=e").c_str())};
    EXPECT_EQ(shown(rows, 40, true), "   0 > Music\n       'a:" + path + "?b=c&d=e'\n");
    EXPECT_EQ(shown({row(2, "Heading", "a:b")}, 40, true), "   0 # Heading\n");
}

TEST(RowTextTest, ShowsThePathThatAQuerySearches)
{
    VeskRoles query = row(5, "Search", "a:query");
    query.insert(VeskRoles::Query(), QStringLiteral("q"));
    query.insert(VeskRoles::QueryPath(), QStringLiteral("a:found?m=1"));
    EXPECT_EQ(shown({query}, 80, true), "   0 ? Search\n       'a:found?m=1&q=TEXT'\n");
}

TEST(RowTextTest, ShowsTheValueOfAValueRow)
{
    VeskRoles value = row(4, "Language", "settings:ui/language");
    value.insert(VeskRoles::Value(), VeskValue::fromString(QStringLiteral("de")));
    EXPECT_EQ(shown({value}, 80), "   0 = Language: de\n");
    EXPECT_EQ(shown({value}, 0), "/3/0\tvalue\tLanguage\tde\t\n");
}

TEST(RowTextTest, AlignsDescriptions)
{
    EXPECT_EQ(shown({described(3, "Jazz", "Now"), described(3, "日本", "Later")}, 80),
        "   0 \u266a Jazz  Now\n   1 \u266a 日本  Later\n");
}

TEST(RowTextTest, NoLineIsWiderThanTheTerminal)
{
    const std::string title(70, 't');
    const std::string description(70, 'd');
    const QList<VeskRoles> rows {described(3, title.c_str(), description.c_str()),
        described(
            3, "日本語放送局日本語放送局日本語放送局日本語放送局", "東京東京東京東京東京東京"),
        row(1, title.c_str(), "a:b")};
    for (const int width : {20, 40, 59, 60, 80, 132}) {
        const QStringList lines
            = QString::fromStdString(shown(rows, width)).split(QLatin1Char('\n'));
        for (const QString &line : lines)
            EXPECT_LE(textWidth(line), width) << line.toStdString();
        EXPECT_EQ(lines.size(), width < 60 ? 6 : 4);
    }
}

TEST(RowTextTest, ShowsDescriptionsOnTheirOwnLinesOnANarrowTerminal)
{
    EXPECT_EQ(shown({described(3, "Jazz", "Now"), row(1, "Folder", "a:b")}, 40),
        "   0 \u266a Jazz\n       Now\n   1 > Folder\n");
}

TEST(RowTextTest, PrintsWholeFieldsForPrograms)
{
    const std::string title(300, 't');
    EXPECT_EQ(shown({described(3, (title + "\tx").c_str(), "Now")}, 0),
        "/3/0\taudio\t" + title + " x\tNow\t\n");
    EXPECT_EQ(
        shown({row(1, "Music", "a:b?c=d&e=f")}, 0, true), "/3/0\tfolder\tMusic\t\t\ta:b?c=d&e=f\n");
}

TEST(RowTextTest, MarksWhatPlays)
{
    const QList<VeskRoles> rows {
        row(3, "One", "a:1"), row(3, "Two", "a:2"), row(1, "Not a station", "a:1")};
    QVariantHash player {
        {QStringLiteral("state"), 2}, {QStringLiteral("path"), QStringLiteral("a:1")}};
    EXPECT_EQ(
        shown(rows, 80, false, player), "   0 \u25b6 One\n   1 \u266a Two\n   2 > Not a station\n");
    EXPECT_EQ(shown({rows.first()}, 0, false, player), "/3/0\taudio\tOne\t\tplaying\n");
    player.insert(QStringLiteral("path"), QStringLiteral("a:stream?veskMatchingPath=a%3A2"));
    EXPECT_EQ(shown({rows.at(1)}, 80, false, player), "   0 \u25b6 Two\n");
    player.insert(QStringLiteral("state"), 3);
    EXPECT_EQ(shown({rows.at(1)}, 80, false, player), "   0 \u2016 Two\n");
    player.insert(QStringLiteral("state"), 0);
    EXPECT_EQ(shown({rows.at(1)}, 80, false, player), "   0 \u266a Two\n");
    EXPECT_EQ(shown({row(3, "No path", "")}, 80, false, {{QStringLiteral("state"), 2}}),
        "   0 \u266a No path\n");
}

TEST(RowTextTest, MarksTheStreamWithTheClosestBitRate)
{
    const auto marked = [](const QList<int> &rates, int playing) {
        const RowPrinter printer({},
            {{QStringLiteral("state"), 2}, {QStringLiteral("bitrate"), playing}}, false, 80,
            TerminalStyle(false));
        QList<RowText> rows;
        for (const int rate : rates) {
            RowText row;
            row.bitRate = rate;
            rows.append(row);
        }
        printer.markStream(rows);
        int found = -1;
        for (int i = 0; i < rows.size(); ++i) {
            if (rows.at(i).played != 0)
                found = found < 0 ? i : -2;
        }
        return found;
    };
    EXPECT_EQ(marked({128000, 64000, 320000}, 128000), 0);
    EXPECT_EQ(marked({128000, 64000, 320000}, 61500), 1);
    EXPECT_EQ(marked({64000, 128000, 128000}, 128000), 1) << "the best come first";
    EXPECT_EQ(marked({128000, 64000}, 96000), -1) << "none is close";
    EXPECT_EQ(marked({0, 0}, 0), -1);
}

TEST(RowTextTest, UsesColoursOnlyWhereTheyAreOn)
{
    EXPECT_THAT(shown({row(1, "Music", "a:b")}, 80, true, {}, TerminalStyle(true)),
        testing::HasSubstr("\033[2ma:b\033[0m"));
    EXPECT_THAT(
        shown({row(1, "Music", "a:b")}, 80, true), testing::Not(testing::HasSubstr("\033")));
}

TEST(RowTextTest, PlainTextIsTheValueWithoutItsType)
{
    EXPECT_EQ(plainText({}), QString());
    EXPECT_EQ(plainText(5), QStringLiteral("5"));
    EXPECT_EQ(plainText(true), QStringLiteral("true"));
    EXPECT_EQ(plainText(QStringLiteral("x")), QStringLiteral("x"));
    EXPECT_EQ(plainText(VeskValue::fromBool(true)), QStringLiteral("true"));
    EXPECT_EQ(plainText(VeskValue::fromString({})), QString());
    EXPECT_EQ(plainText(QVariantHash {{QStringLiteral("a"), 1}}), QStringLiteral("{\"a\":1}"));
    EXPECT_EQ(plainText(QVariantList {1, 2}), QStringLiteral("[1,2]"));
}

} // namespace
