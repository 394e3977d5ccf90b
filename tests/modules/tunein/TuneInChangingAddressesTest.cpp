// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/supervision/PluginDescriptor.h"
#include "tests/modules/tunein/SentPage.h"

#include <gtest/gtest.h>

#include <random>

namespace {

const QStringList changingPages {
    QStringLiteral("preset"), QStringLiteral("report"), QStringLiteral("account")};

class TuneInChangingAddressesTest : public testing::Test {
protected:
    bool isChanging(const CMPath &path) const
    {
        return changesSomething(
            m_descriptor.changing, CMPath::fromEncoded(QStringLiteral("TuneIn:")), path);
    }

    const PluginDescriptor m_descriptor
        = *PluginDescriptor::read(PluginDescriptor::fileOf(QStringLiteral(VESK_PLUGIN)));
};

} // namespace

TEST_F(TuneInChangingAddressesTest, AreDeclaredBesideThePlugin)
{
    EXPECT_EQ(m_descriptor.id, QStringLiteral("tunein"));
    EXPECT_EQ(m_descriptor.changing.size(), 2);
}

TEST_F(TuneInChangingAddressesTest, IncludeEveryWayToWriteThem)
{
    for (const char *text : {
             "TuneIn:browse/uri/Preset.ashx?c=add&id=s1",
             "TuneIn:browse/uri/preset.ashx?c=add&id=s1",
             "TuneIn:browse/uri/PRESET.ASHX",
             "TuneIn:browse/uri/%50reset%2eashx",
             "TuneIn:browse/uri/Preset.ashx/",
             "TuneIn:browse/uri/Preset.ashx/more",
             "TuneIn:browse/uri//Preset.ashx",
             "TuneIn:browse/uri/./Preset.ashx",
             "TuneIn:browse/uri/x/../Preset.ashx",
             "TuneIn:browse/uri/Browse.ashx/../Preset.ashx",
             "TuneIn:browse/uri/Browse.ashx%2F..%2FPreset.ashx",
             "TuneIn:browse/uri/Browse.ashx%5C..%5CPreset.ashx",
             "TuneIn:browse/uri/Browse.ashx%252F..%252FPreset.ashx",
             "TuneIn:browse/uri/%2550reset.ashx",
             "TuneIn:browse/uri/Preset.ashx%3Fc=add",
             "TuneIn:browse/uri/Preset.ashx%00",
             "TuneIn:browse/uri/Preset.ashx.",
             "TuneIn:browse/uri/Preset.ashx%20",
             "TuneIn:browse/uri/Preset.ashx;x=y",
             "TuneIn:browse/uri/%EF%BC%B0reset.ashx",
             "TuneIn:browse/uri/Prebrowseset.ashx",
             "TuneIn:browse/uri/Pre/uriset.ashx",
             "TuneIn:browse/uri/Pre/ubrowseriset.ashx",
             "TuneIn:browse/ubrowseri/Preset.ashx",
             "TuneIn:browse/browse/uri/Preset.ashx",
             "TuneIn:browse/browseuri/uri/Preset.ashx",
             "TuneIn:browse/uri/uri/Preset.ashx",
             "TuneIn:browse/uri/uriPreset.ashx",
             "TuneIn:browse/uri//opml.radiotime.com/Preset.ashx",
             "TuneIn:browse/uri/http://opml.radiotime.com/Preset.ashx",
             "TuneIn:browse/uri/@opml.radiotime.com/Preset.ashx",
             "TuneIn:browse/uri/Report.ashx?c=time&id=s1&duration=9999",
             "TuneIn:browse/uri/Account.ashx?c=drop",
             "TuneIn:browse?veskTuneInMethod=wizard&guideId=s1",
             "TuneIn:browse?guideId=s1&veskTuneInMethod=wizard&veskDisplayName=x",
             "TuneIn:browse/anything?guideId=s1&veskTuneInMethod=wizard",
             "TuneIn:browse?v%65skTuneInMethod=wi%7Aard&guideId=s1",
         })
        EXPECT_TRUE(isChanging(CMPath::fromEncoded(QString::fromLatin1(text)))) << text;
}

TEST_F(TuneInChangingAddressesTest, IncludeNoneThatOnlyRead)
{
    for (const char *text : {
             "TuneIn:",
             "TuneIn:browse",
             "TuneIn:browse/uri/Browse.ashx?c=music",
             "TuneIn:browse/uri/Browse.ashx?c=presets",
             "TuneIn:browse/uri/Search.ashx?query=preset.ashx",
             "TuneIn:browse/uri/Search.ashx?query=a/../Report.ashx",
             "TuneIn:browse/uri/Describe.ashx?c=genres",
             "TuneIn:browse/uri/Tune.ashx?id=s1",
             "TuneIn:browse?veskTuneInMethod=search&query=wizard",
             "TuneIn:browse?c=ebrowse&guideId=s1&veskTuneInMethod=tune",
             "TuneIn:browser_context?guideId=s1",
             "TuneIn:browser_context/presets?veskMatchingPath=TuneIn:browse?veskGuideId%3Ds1",
             "TuneIn:player_context?guideId=s1",
             "TuneIn:account",
             "TuneIn:testing",
             "TuneIn:searches",
         })
        EXPECT_FALSE(isChanging(CMPath::fromEncoded(QString::fromLatin1(text)))) << text;
}

/// Checked against the URL that is really sent: every path whose URL may name a changing page must
/// be declared as changing.
TEST_F(TuneInChangingAddressesTest, IncludeEveryCombinationThatChangesSomething)
{
    const QStringList pieces {QStringLiteral("browse"), QStringLiteral("/uri"), QStringLiteral("/"),
        QStringLiteral("Preset"), QStringLiteral("Pre"), QStringLiteral("set"),
        QStringLiteral(".ashx"), QStringLiteral("report"), QStringLiteral("Account"),
        QStringLiteral(".."), QStringLiteral("."), QStringLiteral("%50"), QStringLiteral("%2F"),
        QStringLiteral("\\"), QStringLiteral(";"), QStringLiteral("?"), QStringLiteral(" "),
        QStringLiteral("u"), QStringLiteral("ri"), QStringLiteral("bro"), QStringLiteral("wse"),
        QStringLiteral("Browse.ashx"), QString(QChar(0xFF30)), QString(QChar(0)),
        QStringLiteral("%"), QStringLiteral("25")};
    std::mt19937 random(20261122);
    int reached = 0;
    for (int i = 0; i < 50000; ++i) {
        QString base = QStringLiteral("browse/uri/");
        for (int count = static_cast<int>(random() % 9); count > 0; --count)
            base += pieces.at(static_cast<int>(random() % unsigned(pieces.size())));
        CMPath path(QStringLiteral("TuneIn"), base);
        if (random() % 4 == 0)
            path.addParam(QStringLiteral("veskTuneInMethod"), QStringLiteral("wizard"));
        if (!mayBeOneOf(path, changingPages))
            continue;
        ++reached;
        ASSERT_TRUE(isChanging(path)) << path.toEncoded().toStdString();
    }
    EXPECT_GT(reached, 2500) << "the pieces make such pages";
}
