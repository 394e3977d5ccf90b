// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/tunein/VeskTuneInPaths.h"

#include "api/tunein/VeskTuneInIcons.h"

#include <gtest/gtest.h>

#include <QSet>

TEST(VeskTuneInPaths, AreFixed)
{
    EXPECT_EQ(VeskTuneInPartnerIdPath().toEncoded(), QStringLiteral("settings:tunein/partnerId"));
    EXPECT_EQ(VeskTuneInBrowseIndexUrlPath().toEncoded(),
        QStringLiteral("settings:tunein/browseIndexUrl"));
    EXPECT_EQ(VeskTuneInSupportedStreamsPath().toEncoded(),
        QStringLiteral("settings:tunein/supportedStreams"));
    EXPECT_EQ(VeskTuneInEnabledFixItWizardPath().toEncoded(),
        QStringLiteral("settings:tunein/enabledFixItWizard"));
    EXPECT_EQ(VeskTuneInStateChangePath().toEncoded(), QStringLiteral("player:tunein/stateChange"));
}

TEST(VeskTuneInIcons, AreOneForEachCategory)
{
    const QStringList icons = {VeskTuneInMyPresetsIcon(), VeskTuneInLocalRadioIcon(),
        VeskTuneInMusicIcon(), VeskTuneInTalkIcon(), VeskTuneInSportsIcon(),
        VeskTuneInByLocationIcon(), VeskTuneInByLanguageIcon(), VeskTuneInPodcastsIcon()};
    const QStringList expected
        = {QStringLiteral("icon:tunein/presets"), QStringLiteral("icon:tunein/local"),
            QStringLiteral("icon:tunein/music"), QStringLiteral("icon:tunein/talk"),
            QStringLiteral("icon:tunein/sports"), QStringLiteral("icon:tunein/location"),
            QStringLiteral("icon:tunein/language"), QStringLiteral("icon:tunein/podcast")};
    EXPECT_EQ(icons, expected);
}
