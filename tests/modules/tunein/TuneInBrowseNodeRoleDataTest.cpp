// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/modules/tunein/TuneInFixture.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const char RoleSignature[]
    = "virtual QVariant TuneInBrowseNode::getRoleData(const QString&, const Params&)";

class TuneInBrowseRolesTest : public TuneInFixture {
protected:
    TuneInBrowseRolesTest()
    {
        start();
        log().clear();
    }

    TrString title(const QString &params)
    {
        return TrString::fromVariant(role("TuneIn:browse"_s + params, "title"_s));
    }

    /// The role on a screen with an ordinary parameter.
    QVariant plain(const QString &name) { return role("TuneIn:browse?x=y"_s, name); }
};

} // namespace

TEST_F(TuneInBrowseRolesTest, PreferTheDisplayNameAsTitle)
{
    EXPECT_EQ(title("?veskDisplayName=Music"_s).toString(), "Music"_s);
    EXPECT_EQ(title("?veskDisplayName=Music&veskTuneInMethod=tune"_s).toString(), "Music"_s);
    EXPECT_EQ(title("/uri/Browse.ashx?c=x&veskDisplayName=Rock%20%26%20Pop"_s).toString(),
        "Rock & Pop"_s);
}

TEST_F(TuneInBrowseRolesTest, TitleAMethodsScreen)
{
    const QString context = trExtractContext(RoleSignature);
    EXPECT_EQ(title("?veskTuneInMethod=tune"_s), TrString(context, "Choose stream"_s));
    EXPECT_EQ(title("?veskTuneInMethod=search&query=x"_s),
        TrString(context, "Search Stations, Shows, Songs, or Artists"_s));
    EXPECT_EQ(title("?veskTuneInMethod=wizard"_s), TrString(context, "Report a problem"_s));
    EXPECT_THAT(log().lines("ERROR"_s), IsEmpty());
}

TEST_F(TuneInBrowseRolesTest, TitleAnUnknownMethodByItsName)
{
    EXPECT_EQ(title("?veskTuneInMethod=dance"_s).toString(), "TuneIn-dance"_s);
    ASSERT_EQ(log().lines("ERROR"_s).size(), 1);
    EXPECT_TRUE(
        log().lines("ERROR"_s).constFirst().startsWith("getRoleData: unknown method: 'dance"_s));
}

TEST_F(TuneInBrowseRolesTest, TitleOtherScreens)
{
    EXPECT_EQ(title(QString()).sourceText(), "TuneIn"_s);
    EXPECT_EQ(title("/uri/Browse.ashx?c=music"_s).sourceText(), "TuneIn"_s);
    EXPECT_EQ(title("?veskDisplayName=&veskTuneInMethod="_s).sourceText(), "TuneIn"_s);
}

TEST_F(TuneInBrowseRolesTest, OfferToCancelAStreamChoice)
{
    const VeskRoles cancel(
        VeskHash(role("TuneIn:browse?veskTuneInMethod=tune"_s, "cancel"_s).toHash()));
    EXPECT_EQ(cancel.title(), TrString("TuneIn"_s, "Done"_s, "Tune cancel title"_s));
    EXPECT_EQ(cancel.size(), 1);
    EXPECT_EQ(role("TuneIn:browse?veskTuneInMethod=search"_s, "cancel"_s), plain("cancel"_s));
    EXPECT_EQ(role("TuneIn:browse"_s, "cancel"_s), plain("cancel"_s));
}

TEST_F(TuneInBrowseRolesTest, OfferTheSearchAtTheRootOnly)
{
    const VeskRoles search(VeskHash(role("TuneIn:browse"_s, "search"_s).toHash()));
    EXPECT_EQ(search.path(), path("TuneIn:searches"_s));
    EXPECT_EQ(search.containerType(), 101);
    EXPECT_EQ(search.title().sourceText(), "Station, Show, Song, or Artist"_s);
    EXPECT_EQ(search.mediaData().metaData().serviceID(), "tunein"_s);
    EXPECT_TRUE(plain("search"_s).isNull());
    for (const char *screen :
        {"TuneIn:browse?veskDisplayName=a", "TuneIn:browse/uri/Browse.ashx?c=music"})
        EXPECT_TRUE(role(QLatin1String(screen), "search"_s).isNull()) << screen;
}

TEST_F(TuneInBrowseRolesTest, ShowActivityInAStreamChoice)
{
    EXPECT_EQ(role("TuneIn:browse?veskTuneInMethod=tune"_s, "activity"_s), QVariant(true));
    EXPECT_EQ(role("TuneIn:browse?veskTuneInMethod=search"_s, "activity"_s), plain("activity"_s));
    EXPECT_NE(plain("activity"_s), QVariant(true));
}

TEST_F(TuneInBrowseRolesTest, LeaveOtherRolesToTheContainer)
{
    EXPECT_EQ(role("TuneIn:browse?veskTuneInMethod=tune"_s, "type"_s).toInt(),
        VeskRolesType::Container());
    EXPECT_EQ(role("TuneIn:browse?veskTuneInMethod=tune"_s, "path"_s).toString(),
        "TuneIn:browse?veskTuneInMethod=tune"_s);
    EXPECT_EQ(
        VeskMediaData(role("TuneIn:browse?a=b"_s, "mediaData"_s).toHash()).metaData().serviceID(),
        "tunein"_s);
    EXPECT_TRUE(role("TuneIn:browse"_s, "nothingKnown"_s).isNull());
    expectRequests({});
}
