// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/HostCommandLine.h"

#include "api/tunein/VeskTuneInPaths.h"
#include "api/values/VeskValuePaths.h"
#include "plugin/runtime/HostFolders.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace {

using CommandLineResult = Result<HostOptions, CommandLineEnd>;

QStringList words(const char *line)
{
    return QString::fromUtf8(line).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

TEST(HostCommandLineTest, HasDefaults)
{
    const CommandLineResult line = parseHostCommandLine({});
    ASSERT_TRUE(line);
    ASSERT_EQ(line->listenAddresses().size(), 1);
    EXPECT_EQ(line->listenAddresses().first().address, QStringLiteral("127.0.0.1"));
    EXPECT_EQ(line->listenAddresses().first().port, 8765);
    EXPECT_FALSE(line->isBeyondLoopback());
    EXPECT_FALSE(line->plainHttp);
    EXPECT_EQ(line->connections, 64);
    EXPECT_EQ(line->audio.kind, AudioOutputSpec::Auto);
    EXPECT_EQ(line->logLevel, QStringLiteral("info"));
    EXPECT_EQ(line->logSize, 10 * 1024 * 1024);
    QStringList files;
    for (const PluginOptions &plugin : line->plugins)
        files.append(plugin.file);
    EXPECT_EQ(files, HostFolders::pluginsIn(HostFolders::pluginFolders()).used);
    EXPECT_FALSE(line->inProcess);
    EXPECT_EQ(line->restartWait, std::chrono::seconds(30));
    EXPECT_EQ(line->watchdog, std::chrono::seconds(10));
}

TEST(HostCommandLineTest, ReadsEveryOption)
{
    const CommandLineResult line = parseHostCommandLine(
        words("--plugin " TUNEIN_PLUGIN " --plugin b.so --listen [::1]:0 "
              "--listen 0.0.0.0:8765 --plain-http --cert c.pem --key k.pem --connections 1100 "
              "--allow-host Radio.example --allow-host b:8443 --base-path /radio/ "
              "--allow-origin https://radio.example --trust-proxy 10.0.0.0/8 "
              "--set settings:tunein/partnerId=a=b --set network:connected=true "
              "--connect-to opml.radiotime.com:80:127.0.0.1:8080 --connect-to ::[::1]:443 "
              "--ca-file ca.pem --audio wav:out.wav --in-process --restart-wait 0.5 "
              "--watchdog 2.5 "
              "--state-dir s --log-level trace --log-file l --log-size 1.5"));
    ASSERT_TRUE(line) << line.error().text.toStdString();
    const HostOptions &options = *line;
    ASSERT_EQ(options.plugins.size(), 2);
    EXPECT_EQ(options.plugins.at(0).effectiveServiceId(), QStringLiteral("tunein"));
    EXPECT_EQ(options.plugins.at(1).effectiveServiceId(), QStringLiteral("b"));
    ASSERT_EQ(options.listen.size(), 2);
    EXPECT_EQ(options.listen.at(0).address, QStringLiteral("::1"));
    EXPECT_EQ(options.listen.at(0).port, 0);
    EXPECT_EQ(options.listen.at(1).address, QStringLiteral("0.0.0.0"));
    EXPECT_TRUE(options.isBeyondLoopback());
    EXPECT_TRUE(options.plainHttp);
    EXPECT_EQ(options.certificateFile, QStringLiteral("c.pem"));
    EXPECT_EQ(options.keyFile, QStringLiteral("k.pem"));
    EXPECT_EQ(options.names.hosts, (QVector<QByteArray> {"radio.example", "b:8443"}));
    EXPECT_EQ(options.names.origins, QVector<QByteArray> {"https://radio.example"});
    EXPECT_EQ(options.names.basePath, "/radio");
    ASSERT_EQ(options.names.proxies.size(), 1);
    EXPECT_TRUE(options.names.proxies.first().contains("10.9.9.9"));
    EXPECT_EQ(options.connections, 1100);
    ASSERT_EQ(options.pinned.size(), 2);
    EXPECT_EQ(options.pinned.at(0).first, VeskTuneInPartnerIdPath());
    EXPECT_EQ(options.pinned.at(0).second.string_(), QStringLiteral("a=b"));
    EXPECT_TRUE(options.pinned.at(1).second.bool_());
    EXPECT_EQ(options.connectTo.size(), 2);
    EXPECT_EQ(options.caFile, QStringLiteral("ca.pem"));
    EXPECT_EQ(options.audio.kind, AudioOutputSpec::Wav);
    EXPECT_EQ(options.audio.file, QStringLiteral("out.wav"));
    EXPECT_TRUE(options.inProcess);
    EXPECT_EQ(options.restartWait, std::chrono::milliseconds(500));
    EXPECT_EQ(options.watchdog, std::chrono::milliseconds(2500));
    EXPECT_EQ(options.stateFolder, QStringLiteral("s"));
    EXPECT_EQ(options.logLevel, QStringLiteral("trace"));
    EXPECT_EQ(options.logFile, QStringLiteral("l"));
    EXPECT_EQ(options.logSize, 3 * 512 * 1024);
}

TEST(HostCommandLineTest, TakesAnEmptyTextAsAValue)
{
    const CommandLineResult line
        = parseHostCommandLine({QStringLiteral("--plugin"), QStringLiteral(TUNEIN_PLUGIN),
            QStringLiteral("--set"), QStringLiteral("settings:tunein/supportedStreams=")});
    ASSERT_TRUE(line);
    EXPECT_EQ(line->pinned.first().second.type(), VeskValueType::string_);
}

class BadCommandLineTest : public testing::TestWithParam<const char *> { };

TEST_P(BadCommandLineTest, EndsWithStatusTwoAndAReason)
{
    const CommandLineResult line
        = parseHostCommandLine(words(GetParam()) + words("--plugin " TUNEIN_PLUGIN));
    ASSERT_FALSE(line);
    EXPECT_EQ(line.error().status, 2);
    EXPECT_FALSE(line.error().text.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Lines, BadCommandLineTest,
    testing::Values("extra", "--unknown", "--plugin", "--listen", "--listen 8765",
        "--listen 127.0.0.1", "--listen 127.0.0.1:", "--listen 127.0.0.1:x",
        "--listen 127.0.0.1:65536", "--listen 127.0.0.1:-1", "--listen ::1:80", "--listen :80",
        "--listen example.org:80", "--listen 10.0.0.0/8:80", "--cert c.pem", "--key k.pem",
        "--allow-host a/b", "--allow-host a:b", "--allow-host http://a", "--allow-origin radio",
        "--allow-origin https://a/", "--allow-origin *", "--base-path radio", "--base-path /a//b",
        "--base-path /../a?", "--trust-proxy nginx", "--trust-proxy 10.0.0.0/99", "--connections 7",
        "--connections many", "--set settings:tunein/partnerId", "--set nothing=1",
        "--set settings:nothing=1", "--set settings:tunein/enabledFixItWizard=maybe",
        "--set settings:ui/language=klingon",
        "--set settings:ui/language=", "--set settings:tunein/supportedStreams=mp3,mp5",
        "--set settings:tunein/browseIndexUrl=somewhere", "--set =x", "--set network:connected=",
        "--connect-to a", "--connect-to a:1:b", "--connect-to a:1:b:2:3", "--connect-to a:x:b:1",
        "--audio loud", "--audio wav:", "--audio wav:/dev/null", "--audio wav:/tmp",
        "--audio jack:x", "--audio pipe:", "--audio pipe:/dev/null", "--audio tcp:host",
        "--log-size -1", "--log-size much", "--log-size nan", "--log-size 1048577",
        "--log-level verbose", "--log-level INFO", "--restart-wait soon", "--restart-wait -1",
        "--restart-wait nan", "--restart-wait 3601", "--watchdog soon", "--watchdog -1",
        "--watchdog 3601", "--in-process=2", "--config /nonexistent/file", "--plugin a.so b.so"));

TEST(HostCommandLineTest, SaysWhatASettingTakes)
{
    const CommandLineResult line = parseHostCommandLine(
        {QStringLiteral("--set"), QStringLiteral("settings:ui/language=xx")});
    EXPECT_EQ(line.error().text,
        QStringLiteral(
            "--set: settings:ui/language: The setting \"Language\" cannot be \"xx\": it is "
            "a language tag, such as \"de-DE\" or \"en\"."));
}

TEST(HostCommandLineTest, ValuesAreThoseOfThePluginsThatAreLoaded)
{
    const QString set = QStringLiteral("settings:tunein/partnerId=x");
    EXPECT_TRUE(parseHostCommandLine(
        {QStringLiteral("--set"), set, QStringLiteral("--plugin"), QStringLiteral(TUNEIN_PLUGIN)}))
        << "in any order";
    const CommandLineResult without = parseHostCommandLine(
        {QStringLiteral("--plugin"), QStringLiteral("b.so"), QStringLiteral("--set"), set});
    ASSERT_FALSE(without);
    EXPECT_EQ(without.error().text,
        QStringLiteral("--set: there is no value \"settings:tunein/partnerId\""));
    const CommandLineResult wrong
        = parseHostCommandLine({QStringLiteral("--plugin"), QStringLiteral(TUNEIN_PLUGIN),
            QStringLiteral("--set"), QStringLiteral("settings:tunein/browseIndexUrl=a")});
    ASSERT_FALSE(wrong);
    EXPECT_EQ(wrong.error().text,
        QStringLiteral("--set: settings:tunein/browseIndexUrl: The setting \"Address of the TuneIn "
                       "start page\" cannot be \"a\": it is an address that begins with http:// or "
                       "https://, or empty."));
}

TEST(HostCommandLineTest, NotesWhyAPluginIsNotLoaded)
{
    const CommandLineResult line = parseHostCommandLine(
        words("--plugin /nonexistent/b.so --plugin " TUNEIN_PLUGIN " --plugin " TUNEIN_PLUGIN));
    ASSERT_TRUE(line);
    EXPECT_EQ(line->plugins.at(0).problem, QStringLiteral("b.json: No such file or directory"));
    EXPECT_EQ(line->plugins.at(1).problem, QString());
    EXPECT_EQ(line->plugins.at(1).descriptor.id, QStringLiteral("tunein"));
    EXPECT_EQ(line->plugins.at(2).problem,
        QStringLiteral("libvesk_cb_tunein.json: there is a plug-in with the id tunein already"));
}

TEST(HostCommandLineTest, RefusesEmptyArguments)
{
    for (const char *option : {"--listen", "--audio", "--plugin", "--config", "--state-dir",
             "--log-level", "--log-file", "--log-size", "--ca-file", "--set", "--connect-to"})
        EXPECT_EQ(parseHostCommandLine({QString::fromLatin1(option), QString()}).error().status, 2)
            << option;
}

TEST(HostCommandLineTest, HelpEndsWithStatusZero)
{
    const CommandLineResult line = parseHostCommandLine({QStringLiteral("--help")});
    ASSERT_FALSE(line);
    EXPECT_EQ(line.error().status, 0);
    EXPECT_TRUE(line.error().text.contains(QStringLiteral("--connect-to")));
}

class HostConfigFileTest : public testing::Test {
protected:
    CommandLineResult parseWith(const QByteArray &content, const char *more = "")
    {
        QFile file(m_folder.filePath(QStringLiteral("host.json")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        return parseHostCommandLine(
            QStringList {QStringLiteral("--config"), file.fileName()} + words(more));
    }

    QTemporaryDir m_folder;
};

const char WholeConfig[] = R"({
    "plugins": ["p/libvesk_cb_a.so", {"file": ")" TUNEIN_PLUGIN R"(", "serviceId": "bee"}],
    "listen": "localhost:1234",
    "values": {"settings:tunein/partnerId": "file", "network:connected": true},
    "connectTo": ["a:80:b:81"],
    "audio": "null", "inProcess": true, "restartWait": 0, "watchdog": 0, "stateFolder": "state", "logLevel": "warn", "logFile": "/log", "logSize": 0, "caFile": "ca"
})";

TEST_F(HostConfigFileTest, GivesTheSameOptions)
{
    const CommandLineResult line = parseWith(WholeConfig);
    ASSERT_TRUE(line) << line.error().text.toStdString();
    const HostOptions &options = *line;
    ASSERT_EQ(options.plugins.size(), 2);
    EXPECT_EQ(options.plugins.at(0).file, m_folder.filePath(QStringLiteral("p/libvesk_cb_a.so")));
    EXPECT_EQ(options.plugins.at(0).effectiveServiceId(), QStringLiteral("a"));
    EXPECT_EQ(options.plugins.at(1).file, QStringLiteral(TUNEIN_PLUGIN));
    EXPECT_EQ(options.plugins.at(1).effectiveServiceId(), QStringLiteral("bee"));
    ASSERT_EQ(options.listen.size(), 1);
    EXPECT_EQ(options.listen.first().port, 1234);
    EXPECT_EQ(options.pinned.size(), 2);
    EXPECT_EQ(options.connectTo, QStringList {QStringLiteral("a:80:b:81")});
    EXPECT_EQ(options.audio.kind, AudioOutputSpec::Null);
    EXPECT_EQ(options.stateFolder, m_folder.filePath(QStringLiteral("state")));
    EXPECT_TRUE(options.inProcess);
    EXPECT_EQ(options.restartWait, std::chrono::seconds(0));
    EXPECT_EQ(options.watchdog, std::chrono::seconds(0));
    EXPECT_EQ(options.logLevel, QStringLiteral("warn"));
    EXPECT_EQ(options.logFile, QStringLiteral("/log"));
    EXPECT_EQ(options.logSize, 0);
    EXPECT_EQ(options.caFile, m_folder.filePath(QStringLiteral("ca")));
}

TEST_F(HostConfigFileTest, ListensAtOneAddressOrAtSeveral)
{
    EXPECT_EQ(parseWith(R"({"listen": ["0.0.0.0:1", "[::]:1"]})")->listen.size(), 2);
    const auto more = parseWith(R"({"listen": "192.168.1.5:1234"})")->listenAddresses();
    ASSERT_EQ(more.size(), 2) << "the loopback interface, from where devices are paired, too";
    EXPECT_EQ(more.at(1).address, QStringLiteral("127.0.0.1"));
    EXPECT_EQ(more.at(1).port, 1234);
    EXPECT_EQ(parseWith(R"({"listen": "0.0.0.0:1"})")->listenAddresses().size(), 1);
}

TEST_F(HostConfigFileTest, TakesARecordingsNameAsRelativeToItself)
{
    EXPECT_EQ(parseWith(R"({"audio": "wav:a/x.wav"})")->audio.file,
        m_folder.filePath(QStringLiteral("a/x.wav")));
    EXPECT_EQ(parseWith(R"({"audio": "wav:/x.wav"})")->audio.file, QStringLiteral("/x.wav"));
    EXPECT_EQ(
        parseWith(R"({"audio": "pipe:x"})")->audio.file, m_folder.filePath(QStringLiteral("x")));
    EXPECT_EQ(parseWith(R"({"audio": "wav:x.wav"})", "--audio wav:y.wav")->audio.file,
        QStringLiteral("y.wav"));
}

TEST_F(HostConfigFileTest, TheCommandLineWins)
{
    const CommandLineResult line = parseWith(WholeConfig,
        "--plugin " TUNEIN_PLUGIN
        " --listen 127.0.0.1:5 --set settings:tunein/partnerId=line --audio auto");
    ASSERT_TRUE(line);
    ASSERT_EQ(line->plugins.size(), 1);
    EXPECT_EQ(line->plugins.first().file, QStringLiteral(TUNEIN_PLUGIN));
    ASSERT_EQ(line->listen.size(), 1);
    EXPECT_EQ(line->listen.first().port, 5);
    EXPECT_EQ(line->audio.kind, AudioOutputSpec::Auto);
    EXPECT_EQ(line->pinned.last().second.string_(), QStringLiteral("line"));
    EXPECT_EQ(line->pinned.size(), 3) << "the other value of the file still counts";
}

TEST_F(HostConfigFileTest, AnErrorNamesTheFileAndTheMember)
{
    struct Case {
        const char *content;
        const char *problem;
    };
    const Case cases[] = {
        {"{", "line 1: "},
        {"[]", "an object is needed"},
        {R"({"listne": "localhost:1"})", R"(there is no "listne")"},
        {R"({"listen": 5})", R"(listen: "5" is no ADDRESS:PORT)"},
        {R"({"plugins": "a.so"})", "plugins: a list is needed"},
        {R"({"plugins": [5]})", "plugins: a file's name is needed"},
        {R"({"plugins": [{}]})", "plugins: a file's name is needed"},
        {R"({"values": []})", "values: an object of paths and values is needed"},
        {R"({"values": {"settings:nothing": 1}})",
            R"(values: there is no value "settings:nothing")"},
        {R"({"values": {"network:connected": "perhaps"}})", "values: network:connected: "},
        {R"({"values": {"settings:ui/language": "klingon"}})", "values: settings:ui/language: "},
        {R"({"values": {"settings:tunein/supportedStreams": ["mp3"]}})",
            "values: settings:tunein/supportedStreams: "},
        {R"({"connectTo": ["a"]})", R"(connectTo: "a" is no HOST:PORT:ADDRESS:PORT)"},
        {R"({"logLevel": "loud"})", R"(logLevel: "loud" is not trace)"},
        {R"({"stateFolder": 1})", "stateFolder: a file's name is needed"},
        {R"({"inProcess": 1})", "inProcess: true or false is needed"},
        {R"({"restartWait": -1})", R"(restartWait: "-1" is no number of seconds up to 3600)"},
        {R"({"restartWait": "soon"})", R"(restartWait: "soon" is no number of seconds)"},
    };
    const std::string file = m_folder.filePath(QStringLiteral("host.json: ")).toStdString();
    for (const Case &each : cases) {
        const CommandLineResult line = parseWith(each.content, "--plugin " TUNEIN_PLUGIN);
        ASSERT_FALSE(line) << each.content;
        EXPECT_EQ(line.error().status, 2) << each.content;
        EXPECT_THAT(line.error().text.toStdString(),
            testing::AllOf(testing::StartsWith(file), testing::HasSubstr(each.problem)));
    }
}

} // namespace
