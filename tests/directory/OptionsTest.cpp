// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace directory;

namespace {

Result<Options, std::string> parsed(std::vector<const char *> arguments)
{
    arguments.insert(arguments.begin(), "tunein-directory");
    return parseOptions(static_cast<int>(arguments.size()), arguments.data());
}

TEST(Options, ReadsAllOptions)
{
    const Options options = *parsed({"--listen", "127.0.0.1:0", "--tls-listen", "[::1]:0", "--cert",
        "c.pem", "--key", "k.pem", "--data", "d.yaml", "--accounts", "a.json", "--request-log",
        "r.log", "--fault", "stall", "--fault", "http-status@Browse.ashx:403*3", "--title-seconds",
        "7", "--list-hosts"});
    EXPECT_EQ(options.listen, "127.0.0.1:0");
    EXPECT_EQ(options.tlsListen, "[::1]:0");
    EXPECT_EQ(options.certificate, "c.pem");
    EXPECT_EQ(options.key, "k.pem");
    EXPECT_EQ(options.data, "d.yaml");
    EXPECT_EQ(options.accounts, "a.json");
    EXPECT_EQ(options.requestLog, "r.log");
    EXPECT_EQ(options.titleSeconds, 7);
    EXPECT_TRUE(options.listsHosts);
    ASSERT_EQ(options.faults.size(), 2u);
    EXPECT_EQ(options.faults[1].number, 403);
}

TEST(Options, ErrorsAreOneLine)
{
    const std::vector<std::vector<const char *>> mistakes {{"--nonsense"}, {"positional"},
        {"--listen"}, {"--tls-listen", "127.0.0.1:0"}, {"--cert", "c.pem"}, {"--fault", "nonsense"},
        {"--fault"}, {"--accounts"}, {"--title-seconds", "0"}};
    for (const auto &arguments : mistakes) {
        const auto options = parsed(arguments);
        ASSERT_FALSE(options) << arguments[0];
        EXPECT_THAT(options.error(), testing::Not(testing::HasSubstr("\n")));
        EXPECT_NE(options.error(), "");
    }
}

TEST(Options, HelpListsTheOptions)
{
    for (const char *option : {"--accounts FILE", "--fault NAME"})
        EXPECT_THAT(parsed({"--help"})->help, testing::HasSubstr(option));
}

} // namespace
