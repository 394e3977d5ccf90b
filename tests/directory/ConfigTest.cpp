// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/directory/TestDirectory.h"

#include <gmock/gmock.h>

using namespace directory;
using namespace directory::test;

namespace {

class ConfigPage : public DirectoryTest {
protected:
    std::string value(const std::string &target, const std::string &key)
    {
        return rowWith(body(target), "key", key).value("text", "");
    }
};

TEST_F(ConfigPage, ReturnsTheTimesOfTheServerAndOfTheListener)
{
    const std::string halifax = "/Config.ashx?c=time&latlon=44.6,-63.6";
    EXPECT_EQ(value(halifax, "utc_time"), "2026-03-16T07:30:00");
    EXPECT_EQ(value(halifax, "server_time"), "2026-03-16T08:30:00");
    EXPECT_EQ(value(halifax, "server_tz"), "CET");
    EXPECT_EQ(value(halifax, "server_offset"), "+01:00");
    EXPECT_EQ(value(halifax, "detected_offset").front(), '-');
    EXPECT_EQ(value("/config.ashx?c=TIME", "detected_time"), "2026-03-16T08:30:00");
}

TEST_F(ConfigPage, ReturnsPictureAddressesAndSampleQueries)
{
    EXPECT_EQ(value("/Config.ashx?c=api", "albumart.url"),
        "http://directory.test:8080/logo/{id}{size}.png");
    EXPECT_FALSE(
        body("/Search.ashx?query=" + value("/Config.ashx?c=contentQuery", "contentQuery")).empty());
    EXPECT_FALSE(
        body("/Search.ashx?query=" + value("/Config.ashx?c=streamSampleQuery", "streamSampleQuery"))
            .empty());
    EXPECT_EQ(faultCodeOf(json("/Config.ashx?c=nope")), "api.methodNotFound");
}

} // namespace
