// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/host/HostProcess.h"

#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <csignal>

namespace {

struct Outcome {
    int status = -1;
    std::string out;
    std::string errors;
};

/// The program itself, with a host started as users start it.
class VeskctlTest : public testing::Test {
protected:
    void start(QProcess &process, const QString &program, const QStringList &arguments,
        const QString &url = QString())
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("VESK_HOST"), url.isEmpty() ? m_host.url() : url);
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_memory.path());
        process.setProcessEnvironment(environment);
        process.start(program, arguments);
    }

    Outcome run(const QStringList &arguments, const QString &url = QString())
    {
        QProcess process;
        start(process, QStringLiteral(VESKCTL_PROGRAM), arguments, url);
        EXPECT_TRUE(process.waitForFinished(60000));
        return {process.exitCode(), process.readAllStandardOutput().toStdString(),
            process.readAllStandardError().toStdString()};
    }

    const QTemporaryDir m_memory;
    HostProcess m_host {QStringLiteral(HOST_PROGRAM),
        {QStringLiteral("--plugin"), QStringLiteral(TEST_PLUGINS "/libvesk_cb_good.so")}};
};

QStringList words(const char *text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '));
}

TEST_F(VeskctlTest, BrowsesTheOnlyService)
{
    ASSERT_TRUE(m_host.isReady()) << m_host.errors().toStdString();
    const Outcome outcome = run(words("ls"));
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_THAT(outcome.out, testing::StartsWith("/0\theading\tMade by the plug-in\t"));
}

TEST_F(VeskctlTest, Searches)
{
    const Outcome outcome = run(words("search two words -l"));
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_THAT(outcome.out, testing::StartsWith("search:two words/0\t"));
    EXPECT_THAT(outcome.out, testing::HasSubstr("q=two%20words"));
}

TEST_F(VeskctlTest, ReadsAndChangesSettings)
{
    EXPECT_EQ(run(words("get settings:ui/language")).out, "en-US\n");
    EXPECT_EQ(run(words("set settings:tunein/partnerId abc")).status, 0);
    EXPECT_EQ(run(words("get settings:tunein/partnerId")).out, "abc\n");
    EXPECT_EQ(run(words("set settings:tunein/enabledFixItWizard false")).status, 0);
    EXPECT_EQ(run(words("get settings:tunein/enabledFixItWizard")).out, "false\n");
    EXPECT_EQ(run(words("set settings:tunein/enabledFixItWizard perhaps")).status, 1);
    EXPECT_EQ(run(words("set system:memberId mine")).status, 1);
    const Outcome refused = run(words("set settings:ui/language klingon"));
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.errors,
        "veskctl: Error: The setting \"Language\" cannot be \"klingon\": it is a language tag, "
        "such as \"de-DE\" or \"en\".\n");
    EXPECT_EQ(run(words("get settings:ui/language")).out, "en-US\n");
}

TEST_F(VeskctlTest, TurnsTheVolume)
{
    EXPECT_EQ(run(words("volume 40")).out, "40\n");
    EXPECT_EQ(run(words("volume +5")).out, "45\n");
    EXPECT_EQ(run(words("volume -100")).out, "0\n");
    EXPECT_EQ(run(words("mute")).out, "0, muted\n");
    EXPECT_EQ(run(words("status")).out, "stopped  volume 0  muted\n");
    EXPECT_EQ(run(words("unmute")).out, "0\n");
}

TEST_F(VeskctlTest, SetsAlarmsAndTheSleepTimer)
{
    const Outcome added = run(words("alarm add 7:30 --days mon-fri --volume 40 --fade 60"));
    EXPECT_EQ(added.status, 0) << added.errors;
    EXPECT_THAT(added.out, testing::MatchesRegex("07:30 Mon-Fri: next [A-Z][a-z]+ 07:30\n"));
    EXPECT_THAT(run(words("alarm")).out, testing::HasSubstr("\t07:30\t1,2,3,4,5\ton\t40\t60\t"));
    EXPECT_EQ(run(words("alarm off 7:30")).out, "07:30 Mon-Fri: off\n");
    EXPECT_THAT(run(words("alarm change 1 --days once --time 8:00")).out, "08:00 once: off\n");
    EXPECT_EQ(run(words("alarm remove 1")).out, "08:00 once: removed\n");
    EXPECT_EQ(run(words("alarm snooze")).status, 1);
    EXPECT_EQ(run(words("alarm dismiss")).status, 0);
    EXPECT_THAT(run(words("sleep 30")).out, testing::StartsWith("the sound stops at "));
    EXPECT_THAT(run(words("status")).out, testing::HasSubstr("  stops at "));
    EXPECT_EQ(run(words("sleep off")).out, "no sleep timer\n");
}

TEST_F(VeskctlTest, TellsThatNothingIsKeptYet)
{
    EXPECT_EQ(run(words("presets")).status, 0);
    EXPECT_EQ(run(words("recents")).out, "");
    EXPECT_EQ(run(words("stars")).out, "");
    for (const char *line : {"preset 3", "preset save 3", "star add", "seek +30"})
        EXPECT_EQ(run(words(line)).status, 1) << line;
    EXPECT_EQ(
        run(words("library export")).out, "{\"favorites\":[],\"presets\":[],\"version\":1}\n");
}

QByteArray nextLine(QProcess &process)
{
    while (!process.canReadLine() && process.waitForReadyRead(20000)) { }
    return process.readLine();
}

TEST_F(VeskctlTest, WatchEndsWithoutErrorOnASignal)
{
    for (const int signal : {SIGINT, SIGTERM}) {
        QProcess watch;
        start(watch, QStringLiteral(VESKCTL_PROGRAM), words("status --watch --json"));
        EXPECT_TRUE(nextLine(watch).contains("\"state\":0"));
        run(words("play Good:songs 0"));
        EXPECT_TRUE(nextLine(watch).contains("\"title\":\"A song\""));
        EXPECT_EQ(run(words("stop")).status, 0);
        ::kill(static_cast<pid_t>(watch.processId()), signal);
        EXPECT_TRUE(watch.waitForFinished(20000));
        EXPECT_EQ(watch.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(watch.exitCode(), 0);
        EXPECT_EQ(watch.readAllStandardError(), QByteArray());
    }
}

TEST_F(VeskctlTest, WatchGoesOnAfterARestartOfTheHost)
{
    QProcess watch;
    start(watch, QStringLiteral(VESKCTL_PROGRAM), words("status --watch --json"));
    EXPECT_TRUE(nextLine(watch).contains("\"state\":0"));
    m_host.terminate();
    EXPECT_EQ(m_host.waitForEnd(), 0);
    const QString listen = m_host.url().mid(7).chopped(1);
    const HostProcess again(QStringLiteral(HOST_PROGRAM),
        {QStringLiteral("--listen"), listen, QStringLiteral("--plugin"),
            QStringLiteral(TEST_PLUGINS "/libvesk_cb_good.so")});
    ASSERT_TRUE(again.isReady());
    EXPECT_TRUE(nextLine(watch).contains("\"state\":0"));
    EXPECT_EQ(
        watch.readAllStandardError(), "veskctl: the host is gone; waiting until it is back\n");
    watch.terminate();
    EXPECT_TRUE(watch.waitForFinished(20000));
    EXPECT_EQ(watch.exitCode(), 0);
}

TEST_F(VeskctlTest, WatchEndsWhenItsOutputIsClosed)
{
    QProcess shell;
    start(shell, QStringLiteral("/bin/sh"),
        {QStringLiteral("-c"),
            QStringLiteral("{ '" VESKCTL_PROGRAM "' status --watch; echo \"status $?\" >&2; }"
                           " | head -n 1")});
    EXPECT_TRUE(shell.waitForFinished(60000));
    EXPECT_EQ(shell.readAllStandardOutput(), "stopped  volume 100\n");
    EXPECT_EQ(shell.readAllStandardError(), "status 0\n");
}

TEST_F(VeskctlTest, PrintsThePlayersErrors)
{
    EXPECT_EQ(run(words("status")).out, "stopped  volume 100\n");
    EXPECT_EQ(run(words("stop")).status, 0);
    const Outcome play = run(words("play / 0"));
    EXPECT_EQ(play.status, 1);
    EXPECT_THAT(play.errors, testing::HasSubstr("nothing to play"));
    EXPECT_EQ(run(words("pause")).status, 1);
    EXPECT_EQ(run(words("menu")).status, 1);
    EXPECT_EQ(run(words("favorites")).status, 1);
}

TEST_F(VeskctlTest, EndsWithAStatusForEachFailure)
{
    const Outcome missing = run(words("ls Good:nothing"));
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.out, "");
    EXPECT_THAT(missing.errors, testing::StartsWith("veskctl: "));
    EXPECT_EQ(run(words("ls nonsense")).status, 2);
    EXPECT_EQ(run(words("ls"), QStringLiteral("http://127.0.0.1:1/")).status, 3);
    EXPECT_EQ(run(words("--help")).status, 0);
}

} // namespace
