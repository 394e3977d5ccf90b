// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/KnownHosts.h"
#include "tests/ctl/FakeHost.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <ctime>

namespace {

using testing::HasSubstr;

const QString List = QStringLiteral("devices.list");
const QString Rename = QStringLiteral("devices.rename");
const QString SetRole = QStringLiteral("devices.setRole");
const QString Revoke = QStringLiteral("devices.revoke");
const QString Info = QStringLiteral("access.info");
const QByteArray Token = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJK-_0123";

constexpr char Devices[] = R"("result":{"devices":[
    {"id":"d1","name":"Kitchen tablet","role":"listener","paired":"2026-11-01T09:00:00Z",
     "seen":"2026-11-20T18:03:00Z","address":"192.168.1.7","connected":true,"current":false},
    {"id":"d2","name":"Old phone","role":"owner","paired":"2026-11-02T09:00:00Z",
     "seen":null,"address":null,"connected":false,"current":false},
    {"id":"d3","name":"Laptop","role":"owner","paired":"2026-11-03T09:00:00Z",
     "seen":"2026-11-21T08:00:00Z","address":"fd00::7","connected":true,"current":true},
    {"id":"d4","name":"old phone","role":"listener","paired":"2026-11-04T09:00:00Z",
     "seen":"2026-11-21T08:00:00Z","address":"192.168.1.9","connected":false,"current":false}]})";
constexpr char NotAllowed[] = R"("error":{"code":-32007,"message":"Only owners.",)"
                              R"("data":{"name":"notAllowed"}})";

class DeviceCommandsTest : public testing::Test {
protected:
    Outcome devices(const char *arguments = "", int width = 0)
    {
        Surroundings around;
        around.width = width;
        around.knownHosts = m_known;
        return run(
            m_host.url(), QStringList {QStringLiteral("devices")} + words(arguments), around);
    }

    FakeHost m_host {{{List, Devices}, {Rename, R"("result":{})"}, {SetRole, R"("result":{})"},
        {Revoke, R"("result":{})"}}};
    const QTemporaryDir m_folder;
    const QString m_known = m_folder.filePath(QStringLiteral("hosts.json"));
};

TEST_F(DeviceCommandsTest, ListsThemInFields)
{
    const Outcome outcome = devices();
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.out,
        "d1\tKitchen tablet\tlistener\t2026-11-01T09:00:00Z\t2026-11-20T18:03:00Z\t192.168.1.7"
        "\tconnected\t\n"
        "d2\tOld phone\towner\t2026-11-02T09:00:00Z\t\t\t\t\n"
        "d3\tLaptop\towner\t2026-11-03T09:00:00Z\t2026-11-21T08:00:00Z\tfd00::7\tconnected"
        "\tcurrent\n"
        "d4\told phone\tlistener\t2026-11-04T09:00:00Z\t2026-11-21T08:00:00Z\t192.168.1.9\t\t\n");
}

TEST_F(DeviceCommandsTest, ListsThemOnATerminal)
{
    ::setenv("TZ", "UTC", 1);
    ::tzset();
    EXPECT_EQ(devices("", 80).out,
        "Kitchen tablet  listener, connected\n"
        "  d1 192.168.1.7\n"
        "Old phone       owner, never seen\n"
        "  d2\n"
        "Laptop          owner, this device\n"
        "  d3 fd00::7\n"
        "old phone       listener, seen 2026-11-21 08:00\n"
        "  d4 192.168.1.9\n");
    const QStringList lines = QString::fromStdString(devices("", 20).out).split(QLatin1Char('\n'));
    for (const QString &line : lines)
        EXPECT_LE(line.size(), 20) << line.toStdString();
}

TEST_F(DeviceCommandsTest, PrintsThemAsJson)
{
    EXPECT_THAT(devices("--json").out,
        testing::StartsWith(R"({"devices":[{"address":"192.168.1.7","connected":true,)"));
}

TEST_F(DeviceCommandsTest, NoDevicesAreNoFailure)
{
    m_host.setResult(List, R"("result":{"devices":[]})");
    const Outcome outcome = devices();
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.errors, "veskctl: no device is paired\n");
}

TEST_F(DeviceCommandsTest, TextsOfDevicesCannotControlTheTerminal)
{
    m_host.setResult(
        List, R"("result":{"devices":[{"id":"d\u001b","name":"a\u001b[2J\nb","role":"\u0007"}]})");
    for (const int width : {0, 80}) {
        const Outcome outcome = devices("", width);
        EXPECT_EQ(outcome.out.find('\033'), std::string::npos);
        EXPECT_EQ(outcome.out.find('\007'), std::string::npos);
    }
}

TEST_F(DeviceCommandsTest, RenamesByIdOrName)
{
    const Outcome outcome = devices("rename d1 Big tablet");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.out, "Kitchen tablet: now called \"Big tablet\"\n");
    EXPECT_EQ(m_host.paramsOf(Rename),
        (QVariantHash {{QStringLiteral("id"), QStringLiteral("d1")},
            {QStringLiteral("name"), QStringLiteral("Big tablet")}}));
    EXPECT_EQ(devices("rename laptop Notebook").status, 0);
    EXPECT_EQ(m_host.paramsOf(Rename).value(QStringLiteral("id")), QStringLiteral("d3"));
}

TEST_F(DeviceCommandsTest, ChangesRoles)
{
    EXPECT_EQ(devices("role d1 owner").out, "Kitchen tablet: an owner now\n");
    EXPECT_EQ(m_host.paramsOf(SetRole).value(QStringLiteral("role")), QStringLiteral("owner"));
    EXPECT_EQ(devices("role d2 listener").out, "Old phone: a listener now\n");
    const Outcome king = devices("role d1 king");
    EXPECT_EQ(king.status, 2);
    EXPECT_EQ(king.errors, "veskctl: \"king\" is no role; there are: listener, owner\n");
    EXPECT_EQ(m_host.timesAsked(SetRole), 2);
}

TEST_F(DeviceCommandsTest, Revokes)
{
    const Outcome outcome = devices("revoke d1 --json");
    EXPECT_EQ(outcome.out, "{\"id\":\"d1\",\"name\":\"Kitchen tablet\",\"paired\":false}\n");
    EXPECT_EQ(m_host.paramsOf(Revoke).value(QStringLiteral("id")), QStringLiteral("d1"));
}

TEST_F(DeviceCommandsTest, NamesMustBeClear)
{
    const auto revoke = [this](const QString &name) {
        return run(m_host.url(), {QStringLiteral("devices"), QStringLiteral("revoke"), name});
    };
    const Outcome twice = revoke(QStringLiteral("Old Phone"));
    EXPECT_EQ(twice.status, 2);
    EXPECT_THAT(twice.errors, HasSubstr("name one by its id (d2, d4)"));
    const Outcome none = revoke(QStringLiteral("d9"));
    EXPECT_EQ(none.status, 1);
    EXPECT_THAT(none.errors, HasSubstr("there is no device \"d9\""));
    EXPECT_EQ(m_host.timesAsked(Revoke), 0);
}

TEST_F(DeviceCommandsTest, TellsTheHostsErrors)
{
    m_host.setResult(Revoke, R"("error":{"code":-32000,"message":"Not saved."})");
    const Outcome outcome = devices("revoke d1");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "veskctl: Not saved.\n");
    m_host.setClosing(Revoke, 1);
    EXPECT_EQ(devices("revoke d1").status, 3);
}

/// A device that is paired with the host, and revokes itself.
class OwnDeviceTest : public DeviceCommandsTest {
protected:
    OwnDeviceTest()
    {
        m_host.setToken(Token);
        EXPECT_TRUE(KnownHosts(m_known).keep(m_host.url(), {Token, {}, {}}));
    }
    bool isKept() const { return !KnownHosts(m_known).find(m_host.url())->token.isEmpty(); }
};

TEST_F(OwnDeviceTest, WhoRevokesItselfForgetsTheHost)
{
    EXPECT_EQ(devices("revoke d1").status, 0);
    EXPECT_TRUE(isKept());
    EXPECT_EQ(devices("revoke d3").out, "Laptop: not paired any more\n");
    EXPECT_FALSE(isKept());
}

TEST_F(OwnDeviceTest, BeingThrownOutAtOnceIsTheAnswer)
{
    m_host.setRevoking(Revoke, false);
    const Outcome outcome = devices("revoke d3");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.out, "Laptop: not paired any more\n");
    EXPECT_FALSE(isKept());
}

TEST_F(OwnDeviceTest, ALostConnectionAloneIsNone)
{
    m_host.setClosing(Revoke, 1);
    EXPECT_EQ(devices("revoke d3").status, 3);
    EXPECT_TRUE(isKept());
}

TEST_F(OwnDeviceTest, AListenerMayLeaveAndNothingElse)
{
    m_host.setResult(List, NotAllowed);
    m_host.setResult(Info, R"("result":{"role":"listener","device":{"id":"d5","name":"Mine"}})");
    EXPECT_EQ(devices().status, 1);
    const Outcome other = devices("revoke d1");
    EXPECT_EQ(other.status, 1);
    EXPECT_EQ(other.errors, "veskctl: Only owners.\n");
    EXPECT_EQ(m_host.timesAsked(Revoke), 0);
    EXPECT_EQ(devices("revoke mine").out, "Mine: not paired any more\n");
    EXPECT_EQ(m_host.paramsOf(Revoke).value(QStringLiteral("id")), QStringLiteral("d5"));
    EXPECT_FALSE(isKept());
}

} // namespace
