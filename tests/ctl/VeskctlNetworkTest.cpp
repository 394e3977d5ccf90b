// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/VeskJson.h"
#include "tests/host/HostProcess.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <log4cplus/initializer.h>

#include <cstdlib>
#include <cstring>
#include <optional>
#include <unistd.h>
#include <vector>

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

const QString Address = QStringLiteral("192.168.77.1:8765");
const QString Url = QStringLiteral("https://192.168.77.1:8765/");
constexpr int PatienceMs = 60000;

/// Set in the environment of a process in enterNetwork()'s network.
constexpr char Mark[] = "VESK_TEST_NETWORK";

/// Runs this program anew in a network of its own, from which nothing gets out, with an address
/// that is not a loopback one. Returns there whether that succeeded.
bool enterNetwork(char **arguments)
{
    if (::getenv(Mark))
        return std::system("ip link set lo up && ip address add 192.168.77.1/24 dev lo") == 0;
    if (std::system("unshare --user --map-root-user --net true") != 0)
        return false;
    ::setenv(Mark, "1", 1);
    // Libraries have begun threads, so that unshare(2) itself would fail.
    std::vector<char *> command;
    for (const char *word : {"unshare", "--user", "--map-root-user", "--net", "--"})
        command.push_back(::strdup(word));
    for (char **argument = arguments; *argument; ++argument)
        command.push_back(*argument);
    command.push_back(nullptr);
    ::execvp(command.front(), command.data());
    return false;
}

bool isInNetwork = false;

struct Outcome {
    int status = -1;
    std::string out;
    std::string errors;
};

Outcome outcomeOf(QProcess &process)
{
    EXPECT_TRUE(process.waitForFinished(PatienceMs));
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
        process.readAllStandardOutput().toStdString(),
        process.readAllStandardError().toStdString()};
}

QByteArray nextLine(QProcess &process)
{
    while (!process.canReadLine() && process.waitForReadyRead(PatienceMs)) { }
    return process.readLine();
}

QVariantHash json(const QByteArray &text)
{
    VeskError error;
    return VeskJson::parse(text, error).toHash();
}

/// The program itself, with a host as users start it for the house's network: on the host's own
/// machine, and on a device that reaches it by its address in the network.
class VeskctlNetworkTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (!isInNetwork)
            GTEST_SKIP() << "no network of the test's own can be made here";
        startHost();
    }

    /// With a new state folder.
    void startHost()
    {
        m_host.reset();
        m_host.emplace(QStringLiteral(HOST_PROGRAM),
            QStringList {QStringLiteral("--listen"), Address, QStringLiteral("--plugin"),
                QStringLiteral(TEST_PLUGINS "/libvesk_cb_good.so")});
        ASSERT_TRUE(m_host->isReady()) << m_host->errors().toStdString();
    }

    void start(QProcess &process, const QString &url, const QStringList &arguments)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("VESK_HOST"), url);
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_folder.path());
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_folder.path());
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(VESKCTL_PROGRAM), arguments);
    }

    Outcome run(const QString &url, const char *arguments)
    {
        QProcess process;
        start(process, url, QString::fromUtf8(arguments).split(QLatin1Char(' ')));
        return outcomeOf(process);
    }
    /// On the host's machine.
    Outcome here(const char *arguments) { return run(m_host->url(), arguments); }
    /// On the device.
    Outcome there(const char *arguments) { return run(Url, arguments); }

    /// Pairs the device, named Laptop, as a listener.
    void pair()
    {
        QProcess pairing;
        start(pairing, m_host->url(), {QStringLiteral("pair"), QStringLiteral("--json")});
        const QVariantHash shown = json(nextLine(pairing));
        EXPECT_EQ(shown.value(QStringLiteral("urls")).toStringList(), QStringList {Url});
        const QString code = shown.value(QStringLiteral("code")).toString();
        const QString line = QStringLiteral("join %1 Laptop --fingerprint %2");
        const QString fingerprint = shown.value(QStringLiteral("fingerprint")).toString();
        const QString wrong
            = QStringLiteral("%1").arg((code.toInt() + 1) % 1000000, 6, 10, QLatin1Char('0'));
        EXPECT_THAT(there(line.arg(wrong, fingerprint).toUtf8().constData()).errors,
            HasSubstr("that is not the code; attempts left: 4"));
        const Outcome joined = there(line.arg(code, fingerprint).toUtf8().constData());
        ASSERT_EQ(joined.status, 0) << joined.errors;
        EXPECT_EQ(joined.out,
            "paired with " + Url.toStdString() + " as a listener, under the name \"Laptop\"\n");
        const Outcome paired = outcomeOf(pairing);
        EXPECT_EQ(paired.status, 0) << paired.errors;
        EXPECT_THAT(
            paired.out, AllOf(HasSubstr(R"("state":"paired")"), HasSubstr(R"("name":"Laptop")")));
    }

    const QTemporaryDir m_folder;
    std::optional<HostProcess> m_host;
};

TEST_F(VeskctlNetworkTest, NothingIsOpenBeforePairing)
{
    const Outcome unknown = there("status");
    EXPECT_EQ(unknown.status, 1);
    EXPECT_THAT(unknown.errors, HasSubstr("is of no authority that this system knows"));
    const Outcome plain = run(QStringLiteral("http://192.168.77.1:8765/"), "status");
    EXPECT_EQ(plain.status, 1);
    EXPECT_EQ(plain.errors,
        "veskctl: the host wants an encrypted connection: veskctl --host " + Url.toStdString()
            + "\n");
    const Outcome nobodyAsked = there("join 123456");
    EXPECT_EQ(nobodyAsked.status, 1);
    EXPECT_THAT(nobodyAsked.errors, HasSubstr("say with --fingerprint"));
    EXPECT_EQ(here("status").out, "stopped  volume 100\n");
}

TEST_F(VeskctlNetworkTest, AListenerPlaysAndChangesNoSettings)
{
    ASSERT_NO_FATAL_FAILURE(pair());
    EXPECT_EQ(there("status").out, "stopped  volume 100\n");
    EXPECT_THAT(there("ls Good:songs").out, HasSubstr("\tA song\t"));
    EXPECT_EQ(there("play Good:songs 0").status, 0);
    EXPECT_THAT(here("status").out, HasSubstr("A song"));
    const Outcome refused = there("set settings:ui/language de-DE");
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(here("get settings:ui/language").out, "en-US\n");
    for (const char *line : {"devices", "pair"}) {
        const Outcome outcome = there(line);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.errors, "veskctl: Only an owner of this host may do that.\n") << line;
    }
}

TEST_F(VeskctlNetworkTest, RolesAndNamesOfDevicesChange)
{
    ASSERT_NO_FATAL_FAILURE(pair());
    EXPECT_THAT(here("devices").out, HasSubstr("\tLaptop\tlistener\t"));
    EXPECT_EQ(here("devices role Laptop owner").out, "Laptop: an owner now\n");
    EXPECT_THAT(there("devices").out,
        AllOf(HasSubstr("\tLaptop\towner\t"), HasSubstr("\t192.168.77.1\tconnected\tcurrent\n")));
    EXPECT_EQ(there("devices rename Laptop My laptop").status, 0);
    EXPECT_THAT(here("devices").out, HasSubstr("\tMy laptop\towner\t"));
}

TEST_F(VeskctlNetworkTest, ARevokedDeviceIsOutWhateverItWasDoing)
{
    ASSERT_NO_FATAL_FAILURE(pair());
    QProcess watch;
    start(watch, Url, {QStringLiteral("status"), QStringLiteral("--watch")});
    EXPECT_EQ(nextLine(watch), "stopped  volume 100\n");
    EXPECT_EQ(here("devices revoke Laptop").out, "Laptop: not paired any more\n");
    const Outcome watched = outcomeOf(watch);
    EXPECT_EQ(watched.status, 1);
    EXPECT_THAT(watched.errors, HasSubstr("is not paired with " + Url.toStdString() + " any more"));
    const Outcome revoked = there("status");
    EXPECT_EQ(revoked.status, 1);
    EXPECT_THAT(revoked.errors, HasSubstr("any more"));
}

TEST_F(VeskctlNetworkTest, ADeviceRevokesItself)
{
    ASSERT_NO_FATAL_FAILURE(pair());
    const Outcome left = there("devices revoke Laptop");
    EXPECT_EQ(left.status, 0) << left.errors;
    EXPECT_EQ(left.out, "Laptop: not paired any more\n");
    EXPECT_EQ(here("devices --json").out, "{\"devices\":[]}\n");
    EXPECT_THAT(there("status").errors, HasSubstr("is of no authority"));
}

TEST_F(VeskctlNetworkTest, AnotherHostAtThatAddressIsNoticed)
{
    ASSERT_NO_FATAL_FAILURE(pair());
    startHost();
    const Outcome other = there("status");
    EXPECT_EQ(other.status, 1);
    EXPECT_THAT(other.errors,
        AllOf(StartsWith("veskctl: the certificate of "), HasSubstr("has changed"),
            HasSubstr("Nothing was sent.")));
}

} // namespace

/// Like that of other tests, in another network.
int main(int argc, char **argv)
{
    // GoogleTest takes its own ones away.
    std::vector<char *> arguments(argv, argv + argc + 1);
    testing::InitGoogleMock(&argc, argv);
    // Where no network can be made the tests are skipped, and can be listed.
    isInNetwork = testing::GTEST_FLAG(list_tests) || enterNetwork(arguments.data());
    const log4cplus::Initializer logging;
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
