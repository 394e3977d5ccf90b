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
        {"ls --host LOCALHOST:1", "", "http://localhost:1/"},
        // Beyond this machine, what is said is encrypted unless the opposite is said.
        {"ls --host Radio.local:8765", "", "https://radio.local:8765/"},
        {"ls --host 192.168.1.5:8765", "", "https://192.168.1.5:8765/"},
        {"ls --host [fd00::5]:8765", "", "https://[fd00::5]:8765/"},
        {"ls --host 127.0.0.1.example.org", "", "https://127.0.0.1.example.org/"},
        {"ls --host http://radio.local/", "", "http://radio.local/"},
        {"ls --host https://Radio.Local/Base", "", "https://radio.local/Base/"},
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
        {"volmue 40", "\"volmue\" is no command; did you mean \"volume\"?"},
        {"alarm ad 7:30", "\"ad\" is no command; did you mean \"add\"?"},
        {"preset svae 3", "\"svae\" is no command; did you mean \"save\"?"},
        {"star ad", "\"ad\" is no command; did you mean \"add\"?"},
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
        "pair 123456", "pair --role owner", "join", "join 123456 --fingerprint", "devices d1",
        "devices rename", "devices rename d1", "devices role d1", "devices revoke",
        "devices revoke d1 d2", "dance --in a:b ls", "dance fox ls", "dance", "volume 1 2",
        "volume -x", "volume --loud", "mute now", "seek", "seek 1 2", "outputs 1",
        "outputs --choose", "preset 1 2", "preset save", "preset clear", "presets 1", "recents 1",
        "star", "star toggle", "stars 1", "library", "library import", "library export a b",
        "sleep 1 2", "sleep -5", "sleep 5 --fade x", "alarm add", "alarm remove",
        "alarm remove 1 2", "alarm on", "alarm stop 1", "alarm snooze x", "alarm 7:30",
        "alarm add 7:30 --preset x"));

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

TEST(CtlCommandLineTest, KnowsWhetherAHostWasNamed)
{
    EXPECT_FALSE(parse("ls").options.hostIsGiven);
    EXPECT_TRUE(parse("ls", "a:1").options.hostIsGiven);
    EXPECT_TRUE(parse("--host a:1 ls").options.hostIsGiven);
}

TEST(CtlCommandLineTest, DevicesAreListedUnlessSomethingElseIsChosen)
{
    EXPECT_TRUE(parse("devices").run);
    const CtlCommandLine rename = parse("devices rename d1 Big tablet");
    EXPECT_TRUE(rename.run);
    EXPECT_EQ(rename.options.device, QStringLiteral("d1"));
    EXPECT_EQ(rename.options.words.join(QLatin1Char(' ')), QStringLiteral("Big tablet"));
}

TEST(CtlCommandLineTest, LessOfSomethingIsNoOption)
{
    EXPECT_EQ(parse("volume -5").options.level, QStringLiteral("-5"));
    EXPECT_EQ(parse("--json volume -5%").options.level, QStringLiteral("-5%"));
    EXPECT_EQ(parse("volume -5 --json").options.level, QStringLiteral("-5"));
    EXPECT_EQ(parse("seek -1:30").options.position, QStringLiteral("-1:30"));
    EXPECT_EQ(parse("seek -- -30").options.position, QStringLiteral("-30"));
    EXPECT_EQ(complaint("sleep -5").substr(0, 19), "\"-5\" is no option; ");
}

TEST(CtlCommandLineTest, APresetIsANumberOrACommand)
{
    EXPECT_EQ(parse("preset 3").options.value, QStringLiteral("3"));
    EXPECT_TRUE(parse("preset 3 --wait").options.wait);
    EXPECT_TRUE(parse("preset").run);
    const CtlCommandLine save = parse("preset save 3 Good:music 1");
    EXPECT_EQ(save.options.preset, QStringLiteral("3"));
    EXPECT_EQ(save.options.words.join(QLatin1Char(' ')), QStringLiteral("Good:music 1"));
    EXPECT_EQ(parse("preset clear 12").options.preset, QStringLiteral("12"));
}

TEST(CtlCommandLineTest, ReadsAnAlarm)
{
    const CtlCommandLine line
        = parse("alarm add 7:30 --days mon-fri --preset 3 --volume 40 --fade 60");
    ASSERT_TRUE(line.run) << line.text.toStdString();
    EXPECT_EQ(line.options.time, QStringLiteral("7:30"));
    EXPECT_EQ(line.options.days, QStringLiteral("mon-fri"));
    EXPECT_EQ(line.options.number, 3);
    EXPECT_EQ(line.options.volume, 40);
    EXPECT_EQ(line.options.fade, 60);
    EXPECT_EQ(parse("alarm add 7:30 / 0/3").options.words.join(QLatin1Char(' ')),
        QStringLiteral("/ 0/3"));
    EXPECT_TRUE(parse("alarm").run);
    EXPECT_TRUE(parse("alarm list").run);
}

TEST(CtlCommandLineTest, BadUsageIsReportedAsJsonWhenAskedFor)
{
    EXPECT_TRUE(parse("--json dance").options.json);
    EXPECT_TRUE(parse("ls --limit x --json").options.json);
}

TEST(CtlCommandLineTest, PrintsHelpOfEveryCommand)
{
    for (const char *line : {"--help", "play --help", "account create --help", "volume --help",
             "seek --help", "outputs --help", "preset save --help", "star add --help",
             "recents --help", "sleep --help", "alarm add --help", "library import --help"}) {
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
