// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/HostConfigFile.h"

#include "host/HostCommandLine.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <gmock/gmock.h>
#include <sys/stat.h>

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

using CommandLineResult = Result<HostOptions, CommandLineEnd>;

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

class HostYamlTest : public testing::Test {
protected:
    QString fileWith(const QByteArray &content)
    {
        QFile file(m_folder.filePath(text("vesk.conf")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return file.fileName();
    }
    CommandLineResult parse(const QByteArray &content)
    {
        return parseHostCommandLine({text("--config"), fileWith(content)});
    }
    /// What is wrong with \a content; without the file's name, which it begins with.
    std::string problemOf(const QByteArray &content)
    {
        const QString file = fileWith(content);
        const CommandLineResult line = parseHostCommandLine({text("--config"), file});
        if (line)
            return "nothing";
        EXPECT_EQ(line.error().status, 2);
        EXPECT_FALSE(line.error().text.contains(QLatin1Char('\n')));
        const std::string start = file.toStdString() + ": ";
        const std::string problem = line.error().text.toStdString();
        EXPECT_THAT(problem, StartsWith(start));
        return problem.substr(start.size());
    }

    QTemporaryDir m_folder;
};

TEST_F(HostYamlTest, ReadsAListOfKeys)
{
    const CommandLineResult line = parse("# A comment\n"
                                         "listen: 0.0.0.0:8765  # everywhere\n"
                                         "allowHosts:\n"
                                         "  - radio.example\n"
                                         "  - 'b:8443'\n"
                                         "\n"
                                         "plainHttp: true\n"
                                         "restartWait: 0.5\n"
                                         "connections: 100\n"
                                         "audio: null\n"
                                         "stateFolder: Übrig/\"2\"\n"
                                         "values:\n"
                                         "  settings:player/volume: 40\n"
                                         "  settings:ui/language: de\n"
                                         "  network:connected: true\n");
    ASSERT_TRUE(line) << line.error().text.toStdString();
    EXPECT_EQ(line->listen.first().address, text("0.0.0.0"));
    EXPECT_EQ(line->names.hosts, (QVector<QByteArray> {"radio.example", "b:8443"}));
    EXPECT_TRUE(line->plainHttp);
    EXPECT_EQ(line->restartWait, std::chrono::milliseconds(500));
    EXPECT_EQ(line->connections, 100);
    EXPECT_EQ(line->audio.kind, AudioOutputSpec::Null);
    EXPECT_EQ(line->stateFolder, m_folder.filePath(text("Übrig/\"2\"")));
    ASSERT_EQ(line->pinned.size(), 3);
    EXPECT_EQ(line->pinned.at(0).second.int_(), 40);
    EXPECT_EQ(line->given.value(text("settings:ui/language")).line, 14);
    EXPECT_EQ(line->given.value(text("allowHosts")).line, 3);
    EXPECT_EQ(line->given.value(text("allowHosts")).values.size(), 2);
    EXPECT_EQ(line->given.value(text("connections")).file, m_folder.filePath(text("vesk.conf")));
}

TEST_F(HostYamlTest, TakesAFileWithoutAnyKey)
{
    for (const char *content : {"", "\n", "# nothing\n#listen: x\n", "---\n...\n", "{}",
             "\xEF\xBB\xBF# with a byte order mark\n"})
        EXPECT_TRUE(parse(content)) << content;
}

TEST_F(HostYamlTest, TakesJsonThatYamlLibrariesRefuse)
{
    const CommandLineResult line
        = parse("{\"logLevel\":\"warn\",\n\t\"stateFolder\": \"\\ud83d\\ude00\\/a\"}");
    ASSERT_TRUE(line) << line.error().text.toStdString();
    EXPECT_EQ(line->stateFolder, m_folder.filePath(text("\U0001F600/a")));
    EXPECT_EQ(line->logLevel, text("warn"));
}

TEST_F(HostYamlTest, ATextThatLooksLikeANumberStaysAsItIs)
{
    EXPECT_EQ(parse("stateFolder: 007")->stateFolder, m_folder.filePath(text("007")));
    EXPECT_EQ(parse("stateFolder: '7'")->stateFolder, m_folder.filePath(text("7")));
    EXPECT_EQ(parse("values: {settings:player/output: 'null'}")->pinned.size(), 1);
}

TEST_F(HostYamlTest, SaysInWhichLineWhatIsWrong)
{
    struct Case {
        const char *content;
        const char *problem;
    };
    const Case cases[] = {
        {"\nlisten: 8765\n", "line 2: listen: \"8765\" is no ADDRESS:PORT"},
        {"#\nlogLevel: no\n", "line 2: logLevel: \"no\" is not trace"},
        {"plainHttp: yes", "line 1: plainHttp: true or false is needed"},
        {"listen:\n  - 127.0.0.1:1\n  - here\n", "line 3: listen: \"here\" is no ADDRESS:PORT"},
        {"listen: {a: b}", "line 1: listen: a value or a list is needed"},
        {"audio: [auto]", "line 1: audio: one value is needed"},
        {"caFile:\nlogLevel: info\n", "line 1: caFile: a file's name is needed"},
        {"plugins: a.so", "line 1: plugins: a list is needed"},
        {"values: 5", "line 1: values: an object of paths and values is needed"},
        {"values:\n  settings:player/volume: 40\n  settings:player/volume: 50\n",
            "line 3: settings:player/volume: it is there already"},
        {"values:\n  settings:player/volume: 200\n", "line 2: values: settings:player/volume: "},
        {"values:\n  settings:nothing: 200\n", "line 2: values: there is no value"},
        {"logLevel: info\nlogLevel: warn\n", "line 2: logLevel: it is there already"},
        {"logLevle: info", "line 1: there is no \"logLevle\""},
        {"<<: {logLevel: info}", "line 1: there is no \"<<\""},
        {"listen:\n\t- 127.0.0.1:1\n", "line 2: "},
        {"values:\n\tsettings:player/volume: 1\n", "only blanks can indent a line"},
        {"logLevel: info\n plainHttp: true\n", "line 2: "},
        {"{", "line 1: "},
        {"{\"logLevel\": \"info\"", "line 1: "},
        {"logLevel: \"info", "line 1: "},
        {"- listen", "line 1: an object is needed"},
        {"listen", "line 1: an object is needed"},
        {"[]", "line 1: an object is needed"},
        {"[a]: b", "line 1: a key must be a text"},
        {"? [a]\n: b\n", "line 1: a key must be a text"},
        {"logLevel: !!str info", "line 1: tags are not allowed here"},
        {"logLevel: info\n---\nlogLevel: warn\n", "the file has a second document"},
        {"a: &a [x]\nb: *a\n", "line 2: aliases are not allowed here"},
        {"logLevel: info\nlistner: \xFF\n", "line 2: it is no text in UTF-8"},
        {"\xFF\xFEl\0o\0", "line 1: it is no text in UTF-8"},
    };
    for (const Case &each : cases)
        EXPECT_THAT(problemOf(each.content), HasSubstr(each.problem)) << each.content;
    EXPECT_THAT(problemOf(QByteArray("logLevel: a\0b", 13)), HasSubstr("no text in UTF-8"));
}

TEST_F(HostYamlTest, AMessageIsShortAndWithoutControlCharacters)
{
    const std::string longOne = problemOf("logLevel: " + QByteArray(100000, 'x'));
    EXPECT_LT(longOne.size(), 400u);
    EXPECT_THAT(problemOf("logLevel: \"a\\e[2Jb\""), Not(HasSubstr("\x1b")));
}

TEST_F(HostYamlTest, NamesNoSecret)
{
    const std::string problem = problemOf(
        "values:\n  settings:tunein/partnerId: \"S3cret\\nline\"\n  settings:player/mute: x\n");
    EXPECT_THAT(problem, AllOf(StartsWith("line "), Not(HasSubstr("S3cret"))));
}

TEST_F(HostYamlTest, RefusesWhatIsNoSmallRegularFile)
{
    const auto problemOfFile = [](const QString &file) {
        const auto read = readHostConfigFile(file);
        EXPECT_FALSE(read);
        return read ? std::string() : read.error().toStdString();
    };
    const QString fifo = m_folder.filePath(text("fifo"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    EXPECT_THAT(problemOfFile(fifo), HasSubstr("no regular file"));
    EXPECT_THAT(problemOfFile(m_folder.path()), HasSubstr("no regular file"));
    EXPECT_THAT(problemOfFile(text("/dev/zero")), HasSubstr("no regular file"));
    EXPECT_THAT(problemOfFile(text("/nonexistent/a")), HasSubstr("No such file"));
    QFile large(m_folder.filePath(text("large")));
    ASSERT_TRUE(large.open(QIODevice::WriteOnly));
    ASSERT_TRUE(large.resize(1024LL * 1024 * 1024)); // a hole
    EXPECT_THAT(problemOfFile(large.fileName()), HasSubstr("the file is too large"));
}

TEST_F(HostYamlTest, EndsSoonWhateverTheFileHolds)
{
    constexpr int Size = 200000;
    const QByteArray bombs[] = {QByteArray(Size, '['), QByteArray(Size, '{'),
        QByteArray("- ").repeated(Size / 2), QByteArray("? ").repeated(Size / 2),
        QByteArray("a: ").repeated(Size / 3), QByteArray(Size, '"'), QByteArray(Size, ' '),
        QByteArray(Size, '\t'), QByteArray("!").repeated(Size),
        QByteArray("&a ").repeated(Size / 3), QByteArray("a:\n").repeated(Size / 3),
        "x: [" + QByteArray("a,").repeated(Size / 2) + ']',
        "{a: " + QByteArray("{a: ").repeated(1000), QByteArray("\n").repeated(Size),
        QByteArray("%YAML 1.2\n").repeated(Size / 10), QByteArray("|").repeated(Size)};
    for (const QByteArray &bomb : bombs) {
        QElapsedTimer timer;
        timer.start();
        const auto read = readHostConfigFile(fileWith(bomb));
        EXPECT_LT(timer.elapsed(), 10000) << bomb.left(20).constData();
        EXPECT_TRUE(read || read.error().size() < 1000);
    }
}

TEST_F(HostYamlTest, FindsTheUsersFile)
{
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(text("vesk")));
    QFile file(m_folder.filePath(text("vesk/vesk.conf")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("connections: 99\n");
    file.close();
    const QByteArray before = qgetenv("XDG_CONFIG_HOME");
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_folder.path()));
    EXPECT_EQ(defaultHostConfigFile(), file.fileName());
    const CommandLineResult line = parseHostCommandLine({});
    ASSERT_TRUE(line);
    EXPECT_EQ(line->connections, 99);
    EXPECT_EQ(line->configFile, file.fileName());
    EXPECT_EQ(parseHostCommandLine({text("--connections"), text("70")})->connections, 70);
    EXPECT_TRUE(parseHostCommandLine({text("--config"), QString()}).error().status == 2);
    ASSERT_TRUE(file.remove());
    EXPECT_NE(defaultHostConfigFile(), file.fileName());
    qputenv("XDG_CONFIG_HOME", before);
}

/// "# " and \a text, in lines of at most 100 characters.
QString commented(const QString &text)
{
    constexpr int Width = 98;
    QString lines;
    QString line;
    for (const QString &word : text.split(QLatin1Char(' '))) {
        if (line.size() + 1 + word.size() > Width) {
            lines += QLatin1Char('#') + line + QLatin1Char('\n');
            line.clear();
        }
        line += QLatin1Char(' ') + word;
    }
    return lines + QLatin1Char('#') + line + QLatin1Char('\n');
}

QString entryOf(const HostOption &option)
{
    const QString value = QLatin1String(option.fallback ? option.fallback : option.valueName);
    const QString form = option.kind == HostOption::Repeated ? QStringLiteral("\n%1#%2:\n#  - %3\n")
                                                             : QStringLiteral("\n%1#%2: %3\n");
    return form.arg(commented(QLatin1String(option.description)), QLatin1String(option.key), value);
}

QString entryOf(const HostValueDefinition &value)
{
    const QString title = value.title.toString();
    const QString description = value.description.toString();
    const QString initial = plainValue(value.initial).toString();
    return QStringLiteral("\n%1#  %2: %3\n")
        .arg(commented(description.isEmpty() ? title : title + QStringLiteral(": ") + description),
            value.path.toEncoded(), initial.isEmpty() ? QStringLiteral("''") : initial);
}

/// What data/vesk.conf is: every key, commented, with its default.
QString installedFile()
{
    QString all = text("# SPDX-FileCopyrightText: 2026 The Vesk authors\n"
                       "# SPDX-License-Identifier: Apache-2.0\n\n");
    all += commented(text(
        "The configuration of vesk-host, in YAML; vesk.conf(5) describes it. Each key is shown "
        "with "
        "its default, or with a word in its place where there is none. The command line wins. "
        "After "
        "a change send the host SIGHUP (systemctl reload vesk); the log says what needs a restart. "
        "\"veskctl config\" shows what holds, and where it comes from."));
    const HostOption *values = nullptr;
    for (const HostOption &option : hostOptions()) {
        if (option.kind == HostOption::Assignment)
            values = &option;
        else
            all += entryOf(option);
    }
    all += QStringLiteral("\n%1#%2:\n")
               .arg(commented(QLatin1String(values->description)
                        + text(", whatever clients and kept settings say. Settings of plug-ins can "
                               "be here, too.")),
                   QLatin1String(values->key));
    const HostValues known;
    for (const HostValueDefinition &value : known.definitions()) {
        if (value.access == CMValuesWorker::Writable)
            all += entryOf(value);
    }
    return all;
}

TEST_F(HostYamlTest, TheFileThatIsInstalledHasEveryKey)
{
    QFile installed(text(VESK_CONF));
    ASSERT_TRUE(installed.open(QIODevice::ReadOnly));
    const QByteArray wanted = installedFile().toUtf8();
    QFile made(text("vesk.conf")); // in the build folder, to copy it from
    ASSERT_TRUE(made.open(QIODevice::WriteOnly));
    made.write(wanted);
    made.close();
    EXPECT_EQ(installed.readAll().toStdString(), wanted.toStdString());
    EXPECT_TRUE(parse(wanted));
}

TEST_F(HostYamlTest, TheInstalledDefaultsAreThoseThatHold)
{
    const CommandLineResult plain = parse("");
    ASSERT_TRUE(plain);
    QByteArray content;
    bool isInValues = false;
    for (const QString &line : installedFile().split(QLatin1Char('\n'))) {
        isInValues |= line == text("#values:");
        const QString key = line.mid(1).section(QLatin1Char(':'), 0, 0);
        const auto option = std::find_if(hostOptions().begin(), hostOptions().end(),
            [&key](const HostOption &each) { return key == QLatin1String(each.key); });
        const bool hasDefault = option != hostOptions().end() && option->fallback;
        const bool isValue = line == text("#values:") || line.startsWith(text("#  settings:"));
        if (hasDefault || (isInValues && isValue))
            content += line.mid(1).toUtf8() + '\n';
    }
    EXPECT_THAT(content.toStdString(), HasSubstr("logLevel: info\n"));
    EXPECT_THAT(content.toStdString(), HasSubstr("  settings:player/volume: 100\n"));
    const CommandLineResult line = parse(content);
    ASSERT_TRUE(line) << line.error().text.toStdString() << content.constData();
    EXPECT_EQ(line->listenAddresses().size(), plain->listenAddresses().size());
    EXPECT_EQ(line->listenAddresses().first().port, plain->listenAddresses().first().port);
    EXPECT_EQ(line->connections, plain->connections);
    EXPECT_EQ(line->audio.text(), plain->audio.text());
    EXPECT_EQ(line->plainHttp, plain->plainHttp);
    EXPECT_EQ(line->inProcess, plain->inProcess);
    EXPECT_EQ(line->restartWait, plain->restartWait);
    EXPECT_EQ(line->watchdog, plain->watchdog);
    EXPECT_EQ(line->logLevel, plain->logLevel);
    EXPECT_EQ(line->logSize, plain->logSize);
    EXPECT_FALSE(line->pinned.isEmpty());
    for (const auto &entry : line->pinned) {
        EXPECT_EQ(plainValue(entry.second), plainValue(line->values.find(entry.first)->initial))
            << entry.first.toEncoded().toStdString();
    }
}

} // namespace
