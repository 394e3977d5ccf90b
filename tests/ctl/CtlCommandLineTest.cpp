// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/CtlCommandLine.h"

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

TEST(CtlCommandLineTest, ReadsTheOptionsOfEveryCommand)
{
    const CtlCommandLine plain = parse("ls");
    ASSERT_TRUE(plain.run) << plain.text.toStdString();
    EXPECT_EQ(plain.options.host, QStringLiteral("http://127.0.0.1:8765/"));
    EXPECT_FALSE(plain.options.json);
    EXPECT_TRUE(plain.options.service.isEmpty());
    const CtlCommandLine search = parse("search jazz --in TuneIn: --json");
    EXPECT_EQ(search.options.service, QStringLiteral("TuneIn:"));
    EXPECT_TRUE(search.options.json);
    EXPECT_TRUE(parse("favorite --json add a:b 0").options.json);
}

TEST(CtlCommandLineTest, TheHostComesFromTheCommandLineThenTheEnvironment)
{
    const struct {
        const char *line;
        const char *environment;
        const char *host;
    } cases[] {
        {"ls", "http://a:1", "http://a:1/"},
        {"ls", "127.0.0.1:1", "http://127.0.0.1:1/"},
        {"--host http://b:2/ ls", "http://a:1", "http://b:2/"},
        {"ls --host=http://b:2", "", "http://b:2/"},
        {"ls --host 127.0.0.1:8765", "", "http://127.0.0.1:8765/"},
        {"ls --host localhost", "", "http://localhost/"},
        {"ls --host [::1]:1", "", "http://[::1]:1/"},
        {"ls --host https://a", "", "https://a/"},
    };
    for (const auto &[line, environment, host] : cases)
        EXPECT_EQ(parse(line, environment).options.host, QLatin1String(host)) << line;
}

TEST(CtlCommandLineTest, NamesAnUnknownWordAndTheNearestOne)
{
    const struct {
        const char *line;
        const char *complaint;
    } cases[] {
        {"serach jazz", "\"serach\" is no command; did you mean \"search\"?"},
        {"sl", "\"sl\" is no command; did you mean \"ls\"?"},
        {"PLAY 3", "\"PLAY\" is no command; did you mean \"play\"?"},
        {"fav", "\"fav\" is no command; did you mean \"favorites\"?"},
        {"--host h:1 plya 3", "\"plya\" is no command; did you mean \"play\"?"},
        {"favorite ad 3", "\"ad\" is no command; did you mean \"add\"?"},
        {"account stats", "\"stats\" is no command; did you mean \"status\"?"},
        {"ls --limt 3", "\"--limt\" is no option; did you mean \"--limit\"?"},
        {"search a --jsno", "\"--jsno\" is no option; did you mean \"--json\"?"},
    };
    for (const auto &[line, expected] : cases)
        EXPECT_EQ(complaint(line), expected);
}

TEST(CtlCommandLineTest, ListsWhatThereIsWhenNothingIsNear)
{
    for (const std::string &word : {std::string("dance"), std::string("x"), std::string(500, 'x')})
        EXPECT_THAT(complaint(word.c_str()), HasSubstr("\" is no command; there are: ls, search,"));
    EXPECT_THAT(complaint("ls --colour"), HasSubstr("\"--colour\" is no option; there are:"));
}

class BadCtlCommandLineTest : public testing::TestWithParam<const char *> { };

TEST_P(BadCtlCommandLineTest, EndsWithStatusTwoAndAReason)
{
    EXPECT_FALSE(complaint(GetParam()).empty());
}

INSTANTIATE_TEST_SUITE_P(Lines, BadCtlCommandLineTest,
    testing::Values("", "dance", "ls --first -1", "ls --first x", "ls --limit 0",
        "ls --limit 1 --last 1", "search", "get", "set", "set a:b", "set a:b c d", "--host ls",
        "--host ftp://a/ ls", "--host http:/// ls", "ls --unknown", "play", "play a:b -1",
        "pause a:b", "status a", "menu --choose x", "menu --choose -1", "favorite",
        "favorite toggle a:b 1", "account", "account forget", "account join",
        "account join joe secret", "account join joe --password secret",
        "account drop joe --password secret", "account create joe --email e --password secret",
        "account create joe", "account create joe --email e --city c",
        "account create joe --email e --postal-code p --city c --country-id 1", "account remind",
        "account reset", "account status joe", "--in= ls", "import", "export a b", "dance import",
        "dance --in a:b ls", "dance fox ls", "dance"));

TEST(CtlCommandLineTest, AFirstWordThatIsNoCommandMayBeAService)
{
    const CtlCommandLine line = parse("--json tunes import a.m3u b.pls");
    EXPECT_TRUE(line.run);
    EXPECT_EQ(line.options.service, QStringLiteral("tunes"));
    EXPECT_EQ(line.options.files.join(QLatin1Char(',')), QStringLiteral("a.m3u,b.pls"));
    EXPECT_TRUE(line.options.json);
    EXPECT_TRUE(parse("ls").options.service.isEmpty());
    EXPECT_THAT(complaint("serach jazz"), HasSubstr("\"serach\" is no command; did you mean"));
    EXPECT_THAT(complaint("a b ls"), HasSubstr("\"a\" is no command"));
}

TEST(CtlCommandLineTest, BadUsageIsReportedAsJsonWhenAskedFor)
{
    EXPECT_TRUE(parse("--json dance").options.json);
    EXPECT_TRUE(parse("ls --limit x --json").options.json);
}

TEST(CtlCommandLineTest, PrintsHelpOfEveryCommand)
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

TEST(CtlCommandLineTest, PrintsItsVersion)
{
    const CtlCommandLine version = parse("--version");
    EXPECT_FALSE(version.run);
    EXPECT_EQ(version.status, 0);
    EXPECT_THAT(version.text.toStdString(), testing::MatchesRegex("veskctl [0-9]+\\.[0-9]+.*"));
}

} // namespace
