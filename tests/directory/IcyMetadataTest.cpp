// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/IcyMetadata.h"

#include <gtest/gtest.h>

using namespace directory;

namespace {

constexpr std::size_t Interval = IcyMetadata::Interval;

TEST(IcyMetadata, InsertsABlockAfterEachInterval)
{
    std::string title = "It's - Öl";
    IcyMetadata metadata([&title] { return title; });
    EXPECT_EQ(metadata.woven(std::string(Interval - 1, 'a')), std::string(Interval - 1, 'a'));
    const std::string block = metadata.woven("ab");
    EXPECT_EQ(
        block, "a\x02" + std::string("StreamTitle='It's - Öl';") + std::string(7, '\0') + 'b');
}

TEST(IcyMetadata, SendsATitleOnlyWhenItChanges)
{
    std::string title = "one";
    IcyMetadata metadata([&title] { return title; });
    const std::string first = metadata.woven(std::string(3 * Interval, 'a'));
    EXPECT_EQ(first.size(), 3 * Interval + 1 + 32 + 1 + 1);
    EXPECT_EQ(first.substr(first.size() - 1), std::string(1, '\0'));
    title = "two";
    EXPECT_EQ(
        metadata.woven(std::string(Interval, 'a')).substr(Interval), IcyMetadata::block("two"));
}

TEST(IcyMetadata, IsIndependentOfTheSizeOfTheInput)
{
    const auto title = [] { return std::string("title"); };
    IcyMetadata whole(title);
    IcyMetadata pieces(title);
    std::string woven;
    for (int i = 0; i < 100; ++i)
        woven += pieces.woven(std::string(777, 'a'));
    EXPECT_EQ(woven, whole.woven(std::string(77700, 'a')));
}

TEST(IcyMetadata, CutsTitlesToTheLongestBlock)
{
    const std::string block = IcyMetadata::block(std::string(10000, 'x'));
    EXPECT_EQ(block.size(), 1 + IcyMetadata::MaxBlock);
    EXPECT_EQ(block[0], '\xFF');
    EXPECT_EQ(block.substr(block.size() - 2), "';");
}

} // namespace
