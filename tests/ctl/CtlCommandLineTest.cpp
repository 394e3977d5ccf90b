#include "ctl/CtlCommandLine.h"

#include <gmock/gmock.h>

namespace {

CtlCommandLine parse(const char *line, const char *environmentHost = "")
{
    return parseCtlCommandLine(QString::fromUtf8(line).split(QLatin1Char(' '), Qt::SkipEmptyParts),
        QString::fromUtf8(environmentHost));
}

TEST(CtlCommandLineTest, ReadsLs)
{
    const CtlCommandLine line = parse("ls TuneIn:browse?c=music --first 10 --last 20");
    ASSERT_TRUE(line.run) << line.text.toStdString();
    EXPECT_EQ(line.options.command, CtlOptions::Ls);
    EXPECT_EQ(line.options.path.toEncoded(), QStringLiteral("TuneIn:browse?c=music"));
    EXPECT_EQ(line.options.first, 10);
    EXPECT_EQ(line.options.last, 20);
    EXPECT_EQ(line.options.host, QStringLiteral("http://127.0.0.1:8765/"));
    EXPECT_FALSE(line.options.json);
}

TEST(CtlCommandLineTest, APathMayBeLeftToTheHost)
{
    EXPECT_TRUE(parse("ls").options.path.isEmpty());
    EXPECT_TRUE(parse("search jazz").options.path.isEmpty());
    EXPECT_EQ(parse("ls").options.last, -1);
}

TEST(CtlCommandLineTest, ALimitCountsFromTheFirstRow)
{
    EXPECT_EQ(parse("ls --limit 5").options.last, 4);
    EXPECT_EQ(parse("ls --first 10 --limit 5").options.last, 14);
}

TEST(CtlCommandLineTest, ReadsSearchGetAndSet)
{
    const CtlCommandLine search = parse("search jazz --in TuneIn: --json");
    ASSERT_TRUE(search.run);
    EXPECT_EQ(search.options.command, CtlOptions::Search);
    EXPECT_EQ(search.options.text, QStringLiteral("jazz"));
    EXPECT_EQ(search.options.path.toEncoded(), QStringLiteral("TuneIn:"));
    EXPECT_TRUE(search.options.json);

    EXPECT_EQ(parse("get a:b").options.roles, QStringList {QStringLiteral("value")});
    EXPECT_EQ(parse("get a:b title icon").options.roles,
        (QStringList {QStringLiteral("title"), QStringLiteral("icon")}));

    const CtlCommandLine set = parse("set a:b xyz");
    EXPECT_EQ(set.options.command, CtlOptions::Set);
    EXPECT_EQ(set.options.text, QStringLiteral("xyz"));
}

TEST(CtlCommandLineTest, TheHostComesFromTheCommandLineThenTheEnvironment)
{
    EXPECT_EQ(parse("ls", "http://a:1").options.host, QStringLiteral("http://a:1/"));
    EXPECT_EQ(
        parse("--host http://b:2/ ls", "http://a:1").options.host, QStringLiteral("http://b:2/"));
    EXPECT_EQ(parse("ls --host http://b:2").options.host, QStringLiteral("http://b:2/"));
}

class BadCtlCommandLineTest : public testing::TestWithParam<const char *> { };

TEST_P(BadCtlCommandLineTest, EndsWithStatusTwoAndAReason)
{
    const CtlCommandLine line = parse(GetParam());
    EXPECT_FALSE(line.run);
    EXPECT_EQ(line.status, 2);
    EXPECT_FALSE(line.text.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Lines, BadCtlCommandLineTest,
    testing::Values("", "dance", "ls a:b c:d", "ls nopath", "ls a:%zz", "ls --first -1",
        "ls --first x", "ls --first 5 --last 4", "ls --limit 0", "ls --limit 1 --last 1", "search",
        "search a b", "search a --in nopath", "get", "get nopath", "set", "set a:b", "set a:b c d",
        "--host ls", "--host nonsense ls", "--host ftp://a/ ls", "--host http:/// ls",
        "ls --unknown"));

TEST(CtlCommandLineTest, HelpIsNoFailure)
{
    const CtlCommandLine line = parse("--help");
    EXPECT_FALSE(line.run);
    EXPECT_EQ(line.status, 0);
    EXPECT_TRUE(line.text.contains(QStringLiteral("search")));
}

} // namespace
