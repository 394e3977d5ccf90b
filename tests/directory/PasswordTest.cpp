// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Password.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace directory;
using testing::HasSubstr;
using testing::Not;

namespace {

TEST(Password, MatchesItsHashOnly)
{
    const std::string hash = passwordHash("sesame");
    EXPECT_TRUE(isPasswordHash(hash));
    EXPECT_THAT(hash, Not(HasSubstr("sesame")));
    EXPECT_TRUE(passwordMatches("sesame", hash));
    for (const char *wrong : {"", "Sesame", "sesam", "sesame "})
        EXPECT_FALSE(passwordMatches(wrong, hash)) << wrong;
}

TEST(Password, HashesOfTheSamePasswordDiffer)
{
    EXPECT_NE(passwordHash("sesame"), passwordHash("sesame"));
}

TEST(Password, IsNotCutAtAZeroByte)
{
    using namespace std::string_literals;
    EXPECT_EQ(passwordHash("sesame\0x"s), "");
    EXPECT_FALSE(passwordMatches("sesame\0x"s, passwordHash("sesame")));
}

TEST(Password, ThatIsTooLongMatchesNothing)
{
    const std::string tooLong(5000, 'a');
    EXPECT_EQ(passwordHash(tooLong), "");
    EXPECT_FALSE(passwordMatches(tooLong, passwordHash(tooLong)));
    EXPECT_FALSE(passwordMatches(tooLong, passwordHash("sesame")));
}

TEST(Password, InvalidHashesMatchNothing)
{
    for (const char *text : {"", "sesame", "*0", "$y$", "$1$salt$hash", "$y$j7T$salt"}) {
        EXPECT_FALSE(passwordMatches("sesame", text)) << text;
        EXPECT_FALSE(passwordMatches("", text)) << text;
    }
    for (const char *text : {"", "sesame", "*0", "$1$salt$hash"})
        EXPECT_FALSE(isPasswordHash(text)) << text;
}

} // namespace
