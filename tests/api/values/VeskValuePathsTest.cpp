// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/VeskValuePaths.h"

#include <gtest/gtest.h>

TEST(VeskValuePaths, AreFixed)
{
    EXPECT_EQ(VeskChildElementsInSingleListPath().toEncoded(),
        QStringLiteral("settings:browser/childElementsInSingleList"));
    EXPECT_EQ(VeskUILanguagePath().toEncoded(), QStringLiteral("settings:ui/language"));
    EXPECT_EQ(VeskSystemMemberIdPath().toEncoded(), QStringLiteral("system:memberId"));
    EXPECT_EQ(VeskNetworkStateEthernetMAC().toEncoded(), QStringLiteral("network:ethernet/mac"));
    EXPECT_EQ(VeskNetworkStateConnected().toEncoded(), QStringLiteral("network:connected"));
    EXPECT_EQ(VeskService_Id(), QStringLiteral("serviceId"));
}
