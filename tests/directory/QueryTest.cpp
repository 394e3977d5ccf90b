// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Query.h"

#include <gtest/gtest.h>

using directory::Query;

namespace {

TEST(Query, DecodesPercentEscapesAndPlus)
{
    const Query query = Query::parse("a=caf%C3%A9+noir&b=1%2B1&empty=&bare");
    EXPECT_EQ(query.value("a"), "café noir");
    EXPECT_EQ(query.value("b"), "1+1");
    EXPECT_TRUE(query.has("empty"));
    EXPECT_EQ(query.value("empty"), "");
    EXPECT_TRUE(query.has("bare"));
    EXPECT_FALSE(query.has("other"));
}

TEST(Query, KeepsInvalidEscapes)
{
    EXPECT_EQ(Query::parse("a=%zz%4").value("a"), "%zz%4");
    EXPECT_EQ(Query::parse("a=100%").value("a"), "100%");
}

TEST(Query, FindsTheFirstItemWithoutRegardToCase)
{
    const Query query = Query::parse("partnerid=x&PARTNERID=y");
    EXPECT_EQ(query.value("partnerId"), "x");
}

TEST(Query, IgnoresItemsBeyondTheBound)
{
    std::string text;
    for (std::size_t i = 0; i < Query::MaxItems + 10; ++i)
        text += "k" + std::to_string(i) + "=1&";
    EXPECT_EQ(Query::parse(text).items().size(), Query::MaxItems);
}

TEST(Query, EncodingAndParsingAreInverse)
{
    Query query;
    query.add("title", "Tom & \"Jerry\" = 100% + ä/?#");
    query.add("formats", "mp3,aac");
    query.add("filter", "s:~Å");
    const std::string text = query.encoded();
    EXPECT_NE(text.find("formats=mp3,aac"), std::string::npos);
    const Query back = Query::parse(text);
    ASSERT_EQ(back.items().size(), query.items().size());
    for (std::size_t i = 0; i < query.items().size(); ++i)
        EXPECT_EQ(back.items()[i].value, query.items()[i].value);
}

TEST(Query, MergeAddsOnlyMissingItems)
{
    Query query {{"a", "1"}};
    query.merge({{"A", "2"}, {"b", "3"}});
    EXPECT_EQ(query.encoded(), "a=1&b=3");
}

TEST(ParseNumber, AcceptsDigitsOnly)
{
    EXPECT_EQ(directory::parseNumber("0042"), 42);
    EXPECT_EQ(directory::parseNumber("999999999"), 999999999);
    EXPECT_EQ(directory::parseNumber("1000000000"), -1);
    EXPECT_EQ(directory::parseNumber(""), -1);
    EXPECT_EQ(directory::parseNumber("-1"), -1);
    EXPECT_EQ(directory::parseNumber("1 "), -1);
}

TEST(Split, OmitsEmptyParts)
{
    EXPECT_EQ(directory::split(",mp3,,aac,", ','), (std::vector<std::string> {"mp3", "aac"}));
    EXPECT_TRUE(directory::split("", ',').empty());
}

} // namespace
