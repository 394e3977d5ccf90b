// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/support/Text.h"
#include "tests/system/FavoritesFixture.h"

namespace {

using testing::HasSubstr;

class ScreenSystem : public FavoritesFixture {
protected:
    ScreenSystem()
        : FavoritesFixture({text("--audio"), text("null")})
    {
    }
    QVariantHash play(const QString &screen, int row, const QString &path)
    {
        return product.rpc(text("player.play"),
            {{text("screen"), screen}, {text("row"), row}, {text("path"), path}});
    }
    QString playing()
    {
        return product.rpc(text("player.state"), {})
            .value(text("result"))
            .toHash()
            .value(text("title"))
            .toString();
    }
    QStringList paths(const QString &screen)
    {
        QStringList paths;
        const QVariantList rows = product.rows(screen, {text("path")});
        for (const QVariant &row : rows)
            paths.append(row.toList().value(0).toString());
        return paths;
    }
};

TEST_F(ScreenSystem, ALongScreenIsFetchedOnceForManyRanges)
{
    const QString screen = text("TuneIn:browse/uri/Describe.ashx?c=genres");
    requests();
    const auto range = [&](int first) {
        return product
            .rpc(text("getRows"),
                {{text("path"), screen}, {text("roles"), QStringList {text("title")}},
                    {text("first"), first}, {text("last"), first + 9}})
            .value(text("result"))
            .toHash();
    };
    const int length = range(0).value(text("rowsCount")).toInt();
    ASSERT_GT(length, 30);
    int rows = 10;
    for (int first = 10; first < length; first += 10)
        rows += range(first).value(text("rows")).toList().size();
    EXPECT_EQ(rows, length);
    EXPECT_EQ(requests().size(), 1U);
    product.rpc(text("setData"),
        {{text("path"), text("settings:ui/language")}, {text("role"), text("value")},
            {text("value"), text("fr-FR")}});
    range(10);
    EXPECT_THAT(requests(), testing::ElementsAre(HasSubstr("locale=fr-FR")));
}

TEST_F(ScreenSystem, TheClickedRowPlaysAlthoughTheListHasChanged)
{
    const Item first = station();
    const Item second = found("trial%2016").value(0);
    ASSERT_TRUE(runFirstOf(first.browserMenu).contains(text("result")));
    ASSERT_TRUE(runFirstOf(second.browserMenu).contains(text("result")));
    const QStringList before = paths(text(FavoritesScreen));
    ASSERT_EQ(before.size(), 2);
    const QString left = product.rows(text(FavoritesScreen), {text("title")})
                             .value(1)
                             .toList()
                             .value(0)
                             .toString();
    // Another client removes the row that is listed first.
    const bool firstIsFirst = before.at(0).contains(text("s29001"));
    const Item gone = firstIsFirst ? first : second;
    ASSERT_TRUE(runFirstOf(gone.browserMenu).contains(text("result")));

    ASSERT_TRUE(play(text(FavoritesScreen), 1, before.at(1)).contains(text("result")));
    EXPECT_EQ(playing(), left);
    const QVariantHash error
        = play(text(FavoritesScreen), 0, before.at(0)).value(text("error")).toHash();
    EXPECT_EQ(error.value(text("code")).toInt(), -32004);
    EXPECT_EQ(
        error.value(text("message")).toString(), text("This entry is no longer in the list."));
    EXPECT_EQ(playing(), left);
}

} // namespace
