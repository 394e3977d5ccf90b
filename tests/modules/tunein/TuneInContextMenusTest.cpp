// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/tunein/VeskTuneInPaths.h"
#include "tests/modules/tunein/TuneInFixture.h"

namespace {

class TuneInMenusTest : public TuneInFixture {
protected:
    TuneInMenusTest()
    {
        answer("/Describe.ashx", screen(R"({"element":"station","is_preset":"false"})"));
    }

    QStringList paths(const QString &menu) { return rows("TuneIn:"_s + menu, {"path"_s}).texts(); }
    QString serviceId(const QString &path)
    {
        return VeskMediaData(role(path, "mediaData"_s).toHash()).metaData().serviceID();
    }
};

} // namespace

TEST_F(TuneInMenusTest, HavePresetsAndStreamsWithoutTheWizard)
{
    start();
    const QString match = "?veskMatchingPath=TuneIn%3Abrowse%3FveskGuideId%3Ds1"_s;
    EXPECT_EQ(paths("player_context"_s + match),
        QStringList({"TuneIn:player_context/presets"_s + match,
            path("TuneIn:browse"_s,
                {{"veskTuneInMethod"_s, "tune"_s}, {"c"_s, "ebrowse"_s},
                    {"veskMatchingPath"_s, "TuneIn:browse?veskGuideId=s1"_s}})
                .toEncoded()}));
    EXPECT_EQ(paths("player_context_show_episode"_s + match),
        QStringList("TuneIn:player_context_show_episode/presets"_s + match));
    EXPECT_EQ(paths("browser_context"_s + match),
        QStringList("TuneIn:browser_context/presets"_s + match));
}

TEST_F(TuneInMenusTest, HaveTheWizardWhenItIsEnabled)
{
    set(VeskTuneInEnabledFixItWizardPath(), true);
    start();
    const QString match = "?veskMatchingPath=TuneIn%3Abrowse%3FveskGuideId%3Ds1"_s;
    const QString wizard = path("TuneIn:browse"_s,
        {{"veskTuneInMethod"_s, "wizard"_s},
            {"veskMatchingPath"_s, "TuneIn:browse?veskGuideId=s1"_s}})
                               .toEncoded();
    ASSERT_EQ(paths("player_context"_s + match).size(), 3);
    EXPECT_EQ(paths("player_context"_s + match).at(2), wizard);
    EXPECT_EQ(paths("player_context_show_episode"_s + match),
        QStringList({"TuneIn:player_context_show_episode/presets"_s + match, wizard}));
    EXPECT_EQ(paths("browser_context"_s + match).size(), 1);
}

TEST_F(TuneInMenusTest, KeepTheirRowsWhenTheSettingChangesLater)
{
    start();
    set(VeskTuneInEnabledFixItWizardPath(), true);
    const QString match = "?veskMatchingPath=TuneIn%3Abrowse%3FveskGuideId%3Ds1"_s;
    EXPECT_EQ(paths("player_context"_s + match).size(), 2);
    EXPECT_EQ(paths("player_context_show_episode"_s + match).size(), 1);
}

TEST_F(TuneInMenusTest, TitleTheirRowsForTheirItem)
{
    set(VeskTuneInEnabledFixItWizardPath(), true);
    start();
    const QString opened = path("TuneIn:player_context"_s,
        {{"guideId"_s, "s1"_s}, {"sid"_s, "s2"_s},
            {"veskMatchingPath"_s, "TuneIn:browse?veskGuideId=s1"_s},
            {"veskTitle"_s, "Example FM"_s}})
                               .toEncoded();
    const RowsAnswer menu = rows(opened, {"title"_s, "path"_s, "type"_s});
    EXPECT_EQ(menu.texts(),
        QStringList({"Add to TuneIn Favorites"_s, "Choose stream"_s, "Report a problem"_s}));
    const CMPath choice = CMPath::fromEncoded(menu.rows.at(1).at(1).toString());
    EXPECT_EQ(choice.params(),
        (QMap<QString, QString> {{"veskTuneInMethod"_s, "tune"_s}, {"c"_s, "ebrowse"_s},
            {"guideId"_s, "s1"_s}, {"sid"_s, "s2"_s},
            {"veskMatchingPath"_s, "TuneIn:browse?veskGuideId=s1"_s},
            {"veskTitle"_s, "Example FM"_s}}));
}

TEST_F(TuneInMenusTest, AreContextMenusOfTheService)
{
    start();
    for (const char *menu :
        {"TuneIn:player_context", "TuneIn:player_context_show_episode", "TuneIn:browser_context"}) {
        EXPECT_EQ(role(QLatin1String(menu), "containerType"_s).toInt(), 100) << menu;
        EXPECT_EQ(serviceId(QLatin1String(menu)), "tunein"_s) << menu;
        EXPECT_EQ(serviceId(QLatin1String(menu) + "/presets"_s), "tunein"_s) << menu;
    }
    EXPECT_TRUE(log().contains("DEBUG TuneInPlayerContextNode: path: TuneIn:player_context"_s));
    EXPECT_TRUE(log().contains(
        "DEBUG TuneInPlayerContextNode: path: TuneIn:player_context_show_episode"_s));
    EXPECT_TRUE(log().contains("DEBUG TuneInBrowserContextNode: path: TuneIn:browser_context"_s));
}
