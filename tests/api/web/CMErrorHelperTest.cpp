// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/CMErrorHelper.h"

#include <gtest/gtest.h>

#include <sstream>

TEST(CMErrorHelperTest, NamesTheCurlCodeAndTheService)
{
    const CMError error = CMErrorHelper::create(CURLE_COULDNT_CONNECT,
        VeskUrl(QStringLiteral("http://opml.radiotime.com/Tune.ashx?id=s1")),
        QStringLiteral("TuneIn"));
    EXPECT_EQ(error.name(), CMError::DefaultName() + QStringLiteral(":curl-7"));
    EXPECT_EQ(error.value(QStringLiteral("curlCode")).toInt(), 7);
    EXPECT_EQ(error.message().toString(), QStringLiteral("Could not connect to TuneIn."));
    EXPECT_TRUE(error.message().isTranslatable());
    EXPECT_EQ(error.title().toString(), CMError::DefaultTitle());
}

TEST(CMErrorHelperTest, NamesTheHostWhereThereIsNoService)
{
    const VeskUrl url(QStringLiteral("http://h.example/x"));
    EXPECT_EQ(CMErrorHelper::create(CURLE_OPERATION_TIMEDOUT, url, QString()).message().toString(),
        QStringLiteral("h.example did not answer in time."));
}

TEST(CMErrorHelperTest, KeepsTheUrlsSecretsOutOfTheError)
{
    const VeskUrl url(QStringLiteral("https://u:hidden@h/Account.ashx?password=hidden"));
    for (int code = 1; code < CURL_LAST; ++code) {
        std::ostringstream out;
        out << CMErrorHelper::create(static_cast<CURLcode>(code), url, QString());
        EXPECT_EQ(out.str().find("hidden"), std::string::npos) << out.str();
        EXPECT_NE(out.str().find("h"), std::string::npos);
    }
}
