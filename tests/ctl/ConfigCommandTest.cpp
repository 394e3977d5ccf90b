// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/ctl/FakeHost.h"

#include <gmock/gmock.h>

namespace {

constexpr char Config[] = R"("result":{"file":"/etc/vesk/vesk.conf","config":[
    {"key":"listen","value":["127.0.0.1:8765"],"origin":"default"},
    {"key":"connections","value":99,"origin":"file","file":"/etc/vesk/vesk.conf","line":3},
    {"key":"logLevel","value":"warn","origin":"command line"},
    {"key":"settings:ui/language","value":"d\u001be","origin":"setting"}]})";

class ConfigCommandTest : public testing::Test {
protected:
    Outcome config(const QStringList &arguments = {}, int width = 0)
    {
        Surroundings around;
        around.width = width;
        return run(m_host.url(), QStringList {QStringLiteral("config")} + arguments, around);
    }

    FakeHost m_host {{{QStringLiteral("host.config"), Config}}};
};

TEST_F(ConfigCommandTest, ShowsWhatHoldsAndWhereItWasSaid)
{
    const Outcome fields = config();
    EXPECT_EQ(fields.status, 0) << fields.errors;
    EXPECT_THAT(fields.out,
        testing::StartsWith("listen\t[\"127.0.0.1:8765\"]\tdefault\n"
                            "connections\t99\t/etc/vesk/vesk.conf:3\n"
                            "logLevel\twarn\tcommand line\n"));
    const Outcome shown = config({}, 80);
    EXPECT_THAT(shown.out, testing::HasSubstr("\nconnections: 99  (/etc/vesk/vesk.conf:3)\n"));
    EXPECT_THAT(shown.out, testing::Not(testing::HasSubstr("\x1b")));
}

TEST_F(ConfigCommandTest, ShowsOneKey)
{
    EXPECT_EQ(config({QStringLiteral("logLevel")}).out, "logLevel\twarn\tcommand line\n");
    EXPECT_EQ(config({QStringLiteral("--json"), QStringLiteral("connections")}).out,
        R"({"config":[{"file":"/etc/vesk/vesk.conf","key":"connections","line":3,"origin":"file",)"
        R"("value":99}],"file":"/etc/vesk/vesk.conf"})"
        "\n");
    const Outcome none = config({QStringLiteral("loglevel")});
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.errors, "veskctl: there is no \"loglevel\" in the configuration\n");
}

} // namespace
