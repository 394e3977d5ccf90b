// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "runtime/RepeatedErrors.h"

#include <gtest/gtest.h>

using std::chrono::minutes;

namespace {

TEST(RepeatedErrorsTest, AreToldAgainAfterTenMinutes)
{
    RepeatedErrors errors;
    const RepeatedErrors::Clock::time_point start {};
    EXPECT_TRUE(errors.isNews("a", start));
    EXPECT_TRUE(errors.isNews("b", start + minutes(1)));
    EXPECT_FALSE(errors.isNews("a", start + minutes(2)));
    EXPECT_FALSE(errors.isNews("a", start + minutes(9)));
    EXPECT_TRUE(errors.isNews("a", start + minutes(10)));
    EXPECT_FALSE(errors.isNews("b", start + minutes(10)));
    EXPECT_FALSE(errors.isNews("a", start + minutes(19)));
}

TEST(RepeatedErrorsTest, AreBounded)
{
    RepeatedErrors errors;
    const RepeatedErrors::Clock::time_point start {};
    EXPECT_TRUE(errors.isNews("first", start));
    for (std::size_t i = 0; i < RepeatedErrors::MaxErrors; ++i)
        EXPECT_TRUE(errors.isNews(std::to_string(i), start));
    EXPECT_FALSE(errors.isNews("0", start));
    EXPECT_TRUE(errors.isNews("first", start));
}

} // namespace
