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
    EXPECT_EQ(line.options.place.path.toEncoded(), QStringLiteral("TuneIn:browse?c=music"));
    EXPECT_EQ(line.options.first, 10);
    EXPECT_EQ(line.options.last, 20);
    EXPECT_EQ(line.options.host, QStringLiteral("http://127.0.0.1:8765/"));
    EXPECT_FALSE(line.options.json);
}

TEST(CtlCommandLineTest, APathMayBeLeftToTheHost)
{
    EXPECT_EQ(parse("ls").options.place.start, CtlPlace::Root);
    EXPECT_TRUE(parse("search jazz").options.service.isEmpty());
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
    EXPECT_EQ(search.options.service.toEncoded(), QStringLiteral("TuneIn:"));
    EXPECT_TRUE(search.options.json);

    EXPECT_EQ(parse("get a:b").options.roles, QStringList {QStringLiteral("value")});
    EXPECT_EQ(parse("get a:b title icon").options.roles,
        (QStringList {QStringLiteral("title"), QStringLiteral("icon")}));

    const CtlCommandLine set = parse("set a:b xyz");
    EXPECT_EQ(set.options.command, CtlOptions::Set);
    EXPECT_EQ(set.options.text, QStringLiteral("xyz"));
}

TEST(CtlCommandLineTest, ReadsPlaces)
{
    EXPECT_EQ(parse("ls /").options.place.start, CtlPlace::Root);
    EXPECT_EQ(parse("ls 3/0/12").options.place.rows, (QVector<int> {3, 0, 12}));
    const CtlPlace favorites = parse("ls favorites/2").options.place;
    EXPECT_EQ(favorites.start, CtlPlace::Favorites);
    EXPECT_EQ(favorites.rows, QVector<int> {2});
    const CtlPlace found = parse("ls search:a:1/2").options.place;
    EXPECT_EQ(found.start, CtlPlace::Search);
    EXPECT_EQ(found.text, QStringLiteral("a:1/2"));
    EXPECT_EQ(parse("ls a:1/2").options.place.start, CtlPlace::Path);
}

TEST(CtlCommandLineTest, ReadsThePlayersCommands)
{
    const CtlCommandLine play = parse("play 3/0 12");
    ASSERT_TRUE(play.run) << play.text.toStdString();
    EXPECT_EQ(play.options.command, CtlOptions::Play);
    EXPECT_EQ(play.options.place.rows, (QVector<int> {3, 0}));
    EXPECT_EQ(play.options.row, 12);
    EXPECT_EQ(parse("pause").options.command, CtlOptions::Pause);
    EXPECT_EQ(parse("resume").options.command, CtlOptions::Resume);
    EXPECT_EQ(parse("stop").options.command, CtlOptions::Stop);
    EXPECT_EQ(parse("status").options.command, CtlOptions::Status);
    EXPECT_FALSE(parse("status").options.watch);
    EXPECT_TRUE(parse("status --watch").options.watch);
    EXPECT_EQ(parse("streams").options.row, -1);
    EXPECT_EQ(parse("streams 2").options.row, 2);
}

TEST(CtlCommandLineTest, ReadsMenusAndFavorites)
{
    EXPECT_EQ(parse("menu").options.command, CtlOptions::Menu);
    EXPECT_EQ(parse("menu").options.row, -1);
    EXPECT_EQ(parse("menu").options.choice, -1);
    EXPECT_EQ(parse("menu --choose 0").options.choice, 0);
    EXPECT_EQ(parse("menu a:b 4 --choose 1").options.row, 4);
    EXPECT_EQ(parse("favorites").options.place.start, CtlPlace::Favorites);
    EXPECT_EQ(parse("favorite add a:b 0").options.command, CtlOptions::FavoriteAdd);
    const CtlCommandLine remove = parse("favorite remove favorites 5 --json");
    EXPECT_EQ(remove.options.command, CtlOptions::FavoriteRemove);
    EXPECT_EQ(remove.options.place.start, CtlPlace::Favorites);
    EXPECT_EQ(remove.options.row, 5);
    EXPECT_TRUE(remove.options.json);
}

TEST(CtlCommandLineTest, ReadsAccountOperations)
{
    using Operation = VeskTuneInAccountOperation;
    const QHash<QString, Operation::Enum> operations {{QStringLiteral("status"), Operation::query},
        {QStringLiteral("claim"), Operation::claim}, {QStringLiteral("join joe"), Operation::join},
        {QStringLiteral("drop joe"), Operation::drop},
        {QStringLiteral("create joe --email e"), Operation::create},
        {QStringLiteral("remind e"), Operation::remind},
        {QStringLiteral("reset j@x"), Operation::reset}};
    for (auto it = operations.begin(); it != operations.end(); ++it) {
        const CtlCommandLine line = parse(("account " + it.key().toUtf8()).constData());
        ASSERT_TRUE(line.run) << it.key().toStdString();
        EXPECT_EQ(line.options.command, CtlOptions::Account);
        EXPECT_EQ(line.options.account.operation(), it.value()) << it.key().toStdString();
    }
    const VeskTuneInAccount create
        = parse("account create joe --email e --city c --country-id 7").options.account;
    EXPECT_EQ(create.userName(), QStringLiteral("joe"));
    EXPECT_EQ(create.email(), QStringLiteral("e"));
    EXPECT_EQ(create.city(), QStringLiteral("c"));
    EXPECT_EQ(create.countryId(), QStringLiteral("7"));
    EXPECT_EQ(parse("account create j --email e --postal-code p").options.account.postalCode(),
        QStringLiteral("p"));
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
        "ls --unknown", "ls 1/x", "ls 1/-2", "ls +1", "ls 99999999999", "ls favorites2",
        "ls search:", "play", "play a:b", "play a:b -1", "play a:b x", "play nopath 1", "pause a:b",
        "status a", "streams x", "menu a:b", "menu --choose x", "favorite", "favorite add",
        "favorite add a:b", "favorite toggle a:b 1", "account", "account forget", "account join",
        "account join joe secret", "account join joe --password secret",
        "account drop joe --password secret", "account create joe --email e --password secret",
        "account create joe", "account create joe --email e --city c",
        "account create joe --email e --postal-code p --city c --country-id 1", "account remind",
        "account reset", "account status joe", "--in nopath ls"));

TEST(CtlCommandLineTest, HelpIsNoFailure)
{
    const CtlCommandLine line = parse("--help");
    EXPECT_FALSE(line.run);
    EXPECT_EQ(line.status, 0);
    EXPECT_TRUE(line.text.contains(QStringLiteral("search")));
}

} // namespace
