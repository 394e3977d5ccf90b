// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "base/Result.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

Result<int, std::string> parsed(const std::string &text)
{
    if (text.empty())
        return failure("empty");
    return static_cast<int>(text.size());
}

Result<void, std::string> checked(bool good)
{
    if (!good)
        return failure(std::string("bad"));
    return {};
}

} // namespace

TEST(ResultTest, HoldsAValue)
{
    const auto result = parsed("abc");
    ASSERT_TRUE(result);
    EXPECT_EQ(*result, 3);
    EXPECT_THROW(static_cast<void>(result.error()), std::bad_variant_access);
}

TEST(ResultTest, HoldsAnError)
{
    const auto result = parsed("");
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error(), "empty");
    EXPECT_THROW(static_cast<void>(*result), std::bad_variant_access);
}

TEST(ResultTest, TellsValueFromErrorOfTheSameType)
{
    const Result<std::string, std::string> value = std::string("a");
    const Result<std::string, std::string> error = failure(std::string("a"));
    EXPECT_TRUE(value);
    EXPECT_FALSE(error);
    EXPECT_EQ(value->size(), 1U);
}

TEST(ResultTest, MovesWhatCannotBeCopied)
{
    Result<std::unique_ptr<int>, std::unique_ptr<int>> value = std::make_unique<int>(1);
    EXPECT_EQ(*(*std::move(value)), 1);
    Result<int, std::unique_ptr<int>> error = failure(std::make_unique<int>(2));
    EXPECT_EQ(*std::move(error).error(), 2);
}

TEST(ResultTest, WithoutAValueIsSuccessByDefault)
{
    EXPECT_TRUE(checked(true));
    const auto result = checked(false);
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error(), "bad");
}
