// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/CMError.h"

#include <gtest/gtest.h>

#include <sstream>

TEST(CMError, IsEmptyForSuccess)
{
    const CMError error;
    EXPECT_TRUE(error.isEmpty());
    EXPECT_EQ(error.name(), QString());
    EXPECT_TRUE(error.message().isEmpty());
    EXPECT_TRUE(error.title().isEmpty());
}

TEST(CMError, HasFixedKeysAndDefaults)
{
    EXPECT_EQ(CMError::Name(), QStringLiteral("name"));
    EXPECT_EQ(CMError::Message(), QStringLiteral("message"));
    EXPECT_EQ(CMError::Title(), QStringLiteral("title"));
    EXPECT_EQ(CMError::DefaultName(), QStringLiteral("VeskError"));
    EXPECT_EQ(CMError::DefaultTitle(), QStringLiteral("Error"));
    EXPECT_NE(CMError::NoNodeName(), CMError::UnansweredName());
    EXPECT_NE(CMError::NoNodeName(), CMError::DefaultName());
}

TEST(CMError, KeepsItsPartsTranslatable)
{
    const TrString message("Test", "No node.");
    const TrString title("Test", "Sorry");
    const CMError error(CMError::NoNodeName(), message, title);
    EXPECT_EQ(error.name(), CMError::NoNodeName());
    EXPECT_EQ(error.message(), message);
    EXPECT_EQ(error.title(), title);
    EXPECT_EQ(error[CMError::Name()].toString(), CMError::NoNodeName());
}

TEST(CMError, HasTheDefaultNameAndTitleWhenMadeFromAMessage)
{
    const CMError error(TrString("Test", "Invalid response."));
    EXPECT_EQ(error.name(), CMError::DefaultName());
    EXPECT_EQ(error.message().toString(), QStringLiteral("Invalid response."));
    EXPECT_EQ(error.title().toString(), CMError::DefaultTitle());
    EXPECT_TRUE(error.title().isTranslatable());
}

TEST(CMError, ReadsPlainTextsToo)
{
    const CMError error(QVariantHash {{CMError::Name(), QStringLiteral("a")},
        {CMError::Message(), QStringLiteral("b")}, {CMError::Title(), QStringLiteral("c")}});
    EXPECT_EQ(error.name(), QStringLiteral("a"));
    EXPECT_EQ(error.message().toString(), QStringLiteral("b"));
    EXPECT_EQ(error.title().toString(), QStringLiteral("c"));
}

TEST(CMError, ComparesByContent)
{
    EXPECT_EQ(CMError(TrString("Test", "a")), CMError(TrString("Test", "a")));
    EXPECT_NE(CMError(TrString("Test", "a")), CMError(TrString("Test", "b")));
    EXPECT_NE(CMError(TrString("Test", "a")), CMError());
}

TEST(CMError, SurvivesAVariant)
{
    const CMError error(TrString("Test", "a"));
    const QVariant itself = QVariant::fromValue(error);
    EXPECT_EQ(itself.value<CMError>(), error);
    EXPECT_EQ(itself.toHash(), error.toHash());
    const QVariant hash = error;
    EXPECT_EQ(CMError(hash.toHash()), error);
    EXPECT_EQ(hash.value<CMError>(), error);
}

TEST(CMError, PrintsItsPartsReadably)
{
    std::ostringstream out;
    out << CMError(TrString("Test", "Invalid response."));
    EXPECT_EQ(out.str(), "{message: Invalid response., name: VeskError, title: Error}");
}
