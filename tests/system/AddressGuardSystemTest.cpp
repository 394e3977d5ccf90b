// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/support/RawWebSocket.h"
#include "tests/support/Text.h"
#include "tests/system/FavoritesFixture.h"

#include "api/web/VeskJson.h"

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

/// Paths that a link can make a client open.
class AddressGuardSystem : public FavoritesFixture {
protected:
    static constexpr int NotOffered = -32005;

    static const QStringList &harmful()
    {
        static const QStringList paths {
            text("TuneIn:browse/uri/Preset.ashx?c=add&id=s29001"),
            text("TuneIn:browse/uri/preset.ASHX?c=add&id=s29001"),
            text("TuneIn:browse/uri/%50reset.ashx?c=add&id=s29001"),
            text("TuneIn:browse/uri/Pre/uriset.ashx?c=add&id=s29001"),
            text("TuneIn:browse/uri/Prebrowseset.ashx?c=add&id=s29001"),
            text("TuneIn:browse/uri/x/../Preset.ashx?c=add&id=s29001"),
            text("TuneIn:browse/uri//Preset.ashx?c=add&id=s29001"),
            text("TuneIn:browse/uri/%2550reset.ashx?c=add&id=s29001"),
            text("TuneIn:browse/ubrowseri/Preset.ashx?c=add&id=s29001"),
            text("TuneIn:browse/uri/Report.ashx?c=time&id=s29001&duration=86400"),
            text("TuneIn:browse/uri/Account.ashx?c=drop&username=a&password=b"),
            text("TuneIn:browse?guideId=s29001&veskTuneInMethod=wizard"),
        };
        return paths;
    }
    int codeOf(const char *method, const QVariantHash &params)
    {
        return product.rpc(text(method), params)
            .value(text("error"))
            .toHash()
            .value(text("code"))
            .toInt();
    }
    static int codeOver(RawWebSocket &socket, const QString &path)
    {
        const QVariantHash request {{text("jsonrpc"), text("2.0")}, {text("id"), 1},
            {text("method"), text("getRows")},
            {text("params"), QVariantHash {{text("path"), path}}}};
        VeskError error;
        const QVariantHash answer
            = VeskJson::parse(socket.ask(VeskJson::write(request)), error).toHash();
        return answer.value(text("error")).toHash().value(text("code")).toInt();
    }
};

TEST_F(AddressGuardSystem, OpeningAnAddressChangesAndReportsNothing)
{
    ASSERT_THAT(favorites(), testing::ElementsAre(NoFavorites));
    RawWebSocket page(product.hostPort());
    requests();
    for (const QString &path : harmful()) {
        SCOPED_TRACE(path.toStdString());
        EXPECT_EQ(codeOf("getRows", {{text("path"), path}}), NotOffered);
        EXPECT_EQ(codeOf("getData", {{text("path"), path}}), NotOffered);
        EXPECT_EQ(codeOf("player.play", {{text("screen"), path}, {text("row"), 0}}), NotOffered);
        EXPECT_EQ(codeOver(page, path), NotOffered);
        EXPECT_NE(product.ctl({text("ls"), path}).code, 0);
    }
    EXPECT_THAT(requests(), IsEmpty());
    EXPECT_THAT(favorites(), testing::ElementsAre(NoFavorites));
}

TEST_F(AddressGuardSystem, RowsOfAListOpen)
{
    const Item item = station();
    const QString wizard = menu(item.playerMenu).value(2).path;
    const QString question = menu(wizard).value(0).path;
    ASSERT_TRUE(question.contains(text("Report.ashx"))) << question.toStdString();
    EXPECT_EQ(menu(question).size(), 1);
    EXPECT_EQ(runFirstOf(item.browserMenu).value(text("error")), QVariant());
    EXPECT_THAT(favorites(), testing::ElementsAre(HasSubstr("Trial 01")));
}

/// A link to a screen with an offer, then a link to the offer: neither is a click of the user.
TEST_F(AddressGuardSystem, AnOfferReachedByALinkDoesNotOpen)
{
    const Item item = station();
    const QString wizard = text("TuneIn:browse?guideId=s29001&veskTuneInMethod=wizard");
    {
        RawWebSocket first(product.hostPort());
        ASSERT_EQ(codeOver(first, item.playerMenu), 0);
    }
    RawWebSocket second(product.hostPort());
    requests();
    EXPECT_EQ(codeOver(second, wizard), NotOffered);
    EXPECT_EQ(codeOver(second, menu(item.playerMenu).value(2).path), NotOffered);
    for (const std::string &request : requests())
        EXPECT_THAT(request, testing::Not(HasSubstr("Report.ashx")));
}

} // namespace
