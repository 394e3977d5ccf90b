// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/CtlCommandLine.h"
#include "ctl/UnknownWords.h"

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;

CtlCommandLine parse(const char *line, const char *environmentHost = "")
{
    return parseCtlCommandLine(QString::fromUtf8(line).split(QLatin1Char(' '), Qt::SkipEmptyParts),
        QString::fromUtf8(environmentHost));
}

std::string complaint(const char *line)
{
    const CtlCommandLine read = parse(line);
    EXPECT_FALSE(read.run) << line;
    EXPECT_EQ(read.status, 2) << line;
    return read.text.toStdString();
}

TEST(CtlCommandLineTest, ReadsWhatHoldsForEveryCommand)
{
    const CtlCommandLine plain = parse("ls");
    ASSERT_TRUE(plain.run) << plain.text.toStdString();
    EXPECT_EQ(plain.options.host, QStringLiteral("http://127.0.0.1:8765/"));
    EXPECT_FALSE(plain.options.json);
    EXPECT_TRUE(plain.options.service.isEmpty());
    const CtlCommandLine search = parse("search jazz --in TuneIn: --json");
    EXPECT_EQ(search.options.service.toEncoded(), QStringLiteral("TuneIn:"));
    EXPECT_TRUE(search.options.json);
    EXPECT_TRUE(parse("favorite --json add a:b 0").options.json);
}

TEST(CtlCommandLineTest, TheHostComesFromTheCommandLineThenTheEnvironment)
{
    EXPECT_EQ(parse("ls", "http://a:1").options.host, QStringLiteral("http://a:1/"));
    EXPECT_EQ(
        parse("--host http://b:2/ ls", "http://a:1").options.host, QStringLiteral("http://b:2/"));
    EXPECT_EQ(parse("ls --host=http://b:2").options.host, QStringLiteral("http://b:2/"));
}

TEST(CtlCommandLineTest, AHostNeedsNoScheme)
{
    EXPECT_EQ(
        parse("ls --host 127.0.0.1:8765").options.host, QStringLiteral("http://127.0.0.1:8765/"));
    EXPECT_EQ(parse("ls --host localhost").options.host, QStringLiteral("http://localhost/"));
    EXPECT_EQ(parse("ls --host [::1]:1").options.host, QStringLiteral("http://[::1]:1/"));
    EXPECT_EQ(parse("ls", "127.0.0.1:1").options.host, QStringLiteral("http://127.0.0.1:1/"));
    EXPECT_EQ(parse("ls --host https://a").options.host, QStringLiteral("https://a/"));
}

TEST(CtlCommandLineTest, NamesAnUnknownWordAndTheNearestCommand)
{
    EXPECT_EQ(complaint("serach jazz"), "\"serach\" is no command; did you mean \"search\"?");
    EXPECT_EQ(complaint("--host h:1 plya 3"), "\"plya\" is no command; did you mean \"play\"?");
    EXPECT_EQ(complaint("favorite ad 3"), "\"ad\" is no command; did you mean \"add\"?");
    EXPECT_EQ(complaint("account stats"), "\"stats\" is no command; did you mean \"status\"?");
    EXPECT_EQ(complaint("ls --limt 3"), "\"--limt\" is no option; did you mean \"--limit\"?");
    EXPECT_EQ(complaint("search a --jsno"), "\"--jsno\" is no option; did you mean \"--json\"?");
    EXPECT_THAT(complaint("dance"), HasSubstr("\"dance\" is no command; there are: ls, search,"));
    EXPECT_THAT(complaint("ls --colour"), HasSubstr("\"--colour\" is no option; there are:"));
}

TEST(CtlCommandLineTest, TheNearestIsNear)
{
    const QStringList known {
        QStringLiteral("ls"), QStringLiteral("play"), QStringLiteral("favorites")};
    EXPECT_EQ(nearest(QStringLiteral("fav"), known), QStringLiteral("favorites"));
    EXPECT_EQ(nearest(QStringLiteral("PLAY"), known), QStringLiteral("play"));
    EXPECT_EQ(nearest(QStringLiteral("sl"), known), QStringLiteral("ls"));
    EXPECT_EQ(nearest(QStringLiteral("x"), known), QString());
    EXPECT_EQ(nearest(QStringLiteral("quite else"), known), QString());
    EXPECT_EQ(nearest(QString(100000, QLatin1Char('x')), known), QString());
}

class BadCtlCommandLineTest : public testing::TestWithParam<const char *> { };

TEST_P(BadCtlCommandLineTest, EndsWithStatusTwoAndAReason)
{
    EXPECT_FALSE(complaint(GetParam()).empty());
}

INSTANTIATE_TEST_SUITE_P(Lines, BadCtlCommandLineTest,
    testing::Values("", "dance", "ls --first -1", "ls --first x", "ls --limit 0",
        "ls --limit 1 --last 1", "search", "search a --in nopath", "get", "set", "set a:b",
        "set a:b c d", "--host ls", "--host ftp://a/ ls", "--host http:/// ls", "ls --unknown",
        "play", "play a:b -1", "pause a:b", "status a", "menu --choose x", "menu --choose -1",
        "favorite", "favorite toggle a:b 1", "account", "account forget", "account join",
        "account join joe secret", "account join joe --password secret",
        "account drop joe --password secret", "account create joe --email e --password secret",
        "account create joe", "account create joe --email e --city c",
        "account create joe --email e --postal-code p --city c --country-id 1", "account remind",
        "account reset", "account status joe", "--in nopath ls"));

TEST(CtlCommandLineTest, BadUsageIsToldAsWanted)
{
    EXPECT_TRUE(parse("--json dance").options.json);
    EXPECT_TRUE(parse("ls --limit x --json").options.json);
}

TEST(CtlCommandLineTest, HelpIsNoFailure)
{
    for (const char *line : {"--help", "play --help", "account create --help"}) {
        const CtlCommandLine help = parse(line);
        EXPECT_FALSE(help.run);
        EXPECT_EQ(help.status, 0);
        EXPECT_THAT(help.text.toStdString(), HasSubstr("VESK_HOST"));
        EXPECT_THAT(help.text.toStdString(), HasSubstr("veskctl search smooth jazz"));
    }
    EXPECT_THAT(parse("--help").text.toStdString(), HasSubstr("streams"));
}

TEST(CtlCommandLineTest, TellsItsVersion)
{
    const CtlCommandLine version = parse("--version");
    EXPECT_FALSE(version.run);
    EXPECT_EQ(version.status, 0);
    EXPECT_THAT(version.text.toStdString(), testing::MatchesRegex("veskctl [0-9]+\\.[0-9]+.*"));
}

} // namespace
