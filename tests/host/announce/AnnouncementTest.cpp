// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/announce/Announcement.h"

#include "tests/host/announce/FakeAvahi.h"
#include "tests/host/announce/PrivateBus.h"
#include "tests/support/LogCapture.h"
#include "tests/support/WorkerThread.h"

#include <QElapsedTimer>

#include <gmock/gmock.h>

#include <csignal>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

constexpr char NoDaemon[] = "DEBUG not announced: the Avahi daemon is not running";

/// Far below what the bus or the daemon would make a blocking caller wait for, which is 25 s.
constexpr qint64 AtOnce = 2000;

AnnouncedHost kitchen()
{
    return {QStringLiteral("Vesk (kitchen)"), 8765, true, QStringLiteral("/")};
}

class AnnouncementTest : public testing::Test {
protected:
    AnnouncementTest()
    {
        if (!m_bus->isRunning())
            throw std::runtime_error("dbus-daemon does not run");
    }

    void announce(const AnnouncedHost &host = kitchen())
    {
        m_announcement = std::make_unique<Announcement>(host);
        QObject::connect(m_announcement.get(), &Announcement::nameChanged, m_announcement.get(),
            [this](const QString &name) { m_names.append(name); });
    }

    bool isAnnouncedAs(const char *name)
    {
        return spinUntil([&] { return m_announcement->name() == QString::fromUtf8(name); });
    }

    bool isLogged(const char *line)
    {
        return spinUntil([&] { return m_log.contains(QString::fromLatin1(line)); });
    }

    LogCapture m_log {"Announcement"};
    std::unique_ptr<PrivateBus> m_bus = std::make_unique<PrivateBus>();
    std::unique_ptr<Announcement> m_announcement;
    QStringList m_names;
};

TEST_F(AnnouncementTest, IsOfBothTypesUnderOneName)
{
    const FakeAvahi daemon;
    announce();
    ASSERT_TRUE(isAnnouncedAs("Vesk (kitchen)"));
    EXPECT_EQ(daemon.publishedNames(), QByteArrayList {"Vesk (kitchen)"});
    QByteArrayList types;
    for (const FakeAvahi::Service &service : daemon.published()) {
        types.append(service.type);
        EXPECT_EQ(service.port, 8765);
    }
    EXPECT_THAT(types, ElementsAre("_vesk._tcp", "_http._tcp"));
    EXPECT_EQ(m_log.lines(),
        QStringList {QStringLiteral("INFO announced in the network as \"Vesk (kitchen)\"")});
}

TEST_F(AnnouncementTest, SaysWhereThePageIsAndWhetherByTls)
{
    struct Case {
        bool isTls;
        const char *path;
        QByteArrayList own;
        QByteArrayList page;
    };
    const QByteArray version = "version=" VESK_VERSION;
    const Case cases[] {
        {true, "/", {"path=/", version, "tls=1"}, {"path=/"}},
        {false, "/", {"path=/", version}, {"path=/"}},
        {true, "/radio/", {"path=/radio/", version, "tls=1"}, {"path=/radio/"}},
    };
    const FakeAvahi daemon;
    for (const Case &c : cases) {
        AnnouncedHost host = kitchen();
        host.isTls = c.isTls;
        host.path = QString::fromLatin1(c.path);
        m_announcement.reset();
        ASSERT_TRUE(spinUntil([&] { return daemon.published().isEmpty(); }));
        announce(host);
        ASSERT_TRUE(isAnnouncedAs("Vesk (kitchen)"));
        EXPECT_EQ(daemon.published().at(0).txt, c.own);
        EXPECT_EQ(daemon.published().at(1).txt, c.page);
    }
}

TEST_F(AnnouncementTest, CutsALongNameBetweenCharacters)
{
    const FakeAvahi daemon;
    AnnouncedHost host = kitchen();
    // 62 bytes, and then two that belong together.
    host.name = QString(62, QLatin1Char('k')) + QStringLiteral("ü");
    announce(host);
    ASSERT_TRUE(isAnnouncedAs(QByteArray(62, 'k').constData()));
}

TEST_F(AnnouncementTest, EndsWithItsObject)
{
    const FakeAvahi daemon;
    announce();
    ASSERT_TRUE(isAnnouncedAs("Vesk (kitchen)"));
    m_announcement.reset();
    EXPECT_TRUE(spinUntil([&] { return daemon.published().isEmpty(); }));
}

TEST_F(AnnouncementTest, WithoutADaemonThereIsOneLine)
{
    announce();
    ASSERT_TRUE(isLogged(NoDaemon));
    EXPECT_EQ(m_log.lines(), QStringList {QString::fromLatin1(NoDaemon)});
    EXPECT_EQ(m_announcement->name(), QString());
}

TEST_F(AnnouncementTest, ADaemonMayComeLaterAndBeRestarted)
{
    announce();
    ASSERT_TRUE(isLogged(NoDaemon));
    for (int i = 0; i < 3; ++i) {
        auto daemon = std::make_unique<FakeAvahi>();
        ASSERT_TRUE(isAnnouncedAs("Vesk (kitchen)"));
        EXPECT_EQ(daemon->published().size(), 2);
        daemon.reset();
        ASSERT_TRUE(isAnnouncedAs(""));
    }
    EXPECT_THAT(m_log.lines(QStringLiteral("WARN")), IsEmpty());
}

TEST_F(AnnouncementTest, ADaemonMayEndWhileItIsAsked)
{
    announce();
    for (int i = 0; i < 3; ++i) {
        FakeAvahi daemon;
        daemon.hang();
        ASSERT_TRUE(spinUntil([&] { return daemon.isCalled(); }));
    }
    const FakeAvahi daemon;
    EXPECT_TRUE(isAnnouncedAs("Vesk (kitchen)"));
    EXPECT_THAT(m_log.lines(QStringLiteral("WARN")), IsEmpty());
}

TEST_F(AnnouncementTest, AnotherNameIsTakenForOneThatIsInUse)
{
    struct Case {
        QByteArrayList here;
        QByteArrayList elsewhere;
    };
    const Case cases[] {
        {{"Vesk (kitchen)", "Vesk (kitchen)+"}, {}},
        {{}, {"Vesk (kitchen)", "Vesk (kitchen)+"}},
        {{"Vesk (kitchen)+"}, {"Vesk (kitchen)"}},
    };
    for (const Case &c : cases) {
        FakeAvahi daemon;
        daemon.takenHere = c.here;
        daemon.takenElsewhere = c.elsewhere;
        m_names.clear();
        announce();
        ASSERT_TRUE(isAnnouncedAs("Vesk (kitchen)++"));
        EXPECT_EQ(daemon.publishedNames(), QByteArrayList {"Vesk (kitchen)++"});
        EXPECT_EQ(daemon.published().size(), 2);
        // Nobody was told of a name that it did not get.
        EXPECT_EQ(m_names.size(), 1);
        m_announcement.reset();
    }
}

TEST_F(AnnouncementTest, ANameMayBeLostLater)
{
    FakeAvahi daemon;
    announce();
    ASSERT_TRUE(isAnnouncedAs("Vesk (kitchen)"));
    daemon.sendGroupState(FakeAvahi::GroupCollision);
    EXPECT_TRUE(isAnnouncedAs("Vesk (kitchen)+"));
    EXPECT_EQ(daemon.publishedNames(), QByteArrayList {"Vesk (kitchen)+"});
}

TEST_F(AnnouncementTest, WhereEveryNameIsTakenItGivesUpUntilTheDaemonIsRestarted)
{
    announce();
    {
        FakeAvahi daemon;
        daemon.isTakingAll = true;
        ASSERT_TRUE(
            isLogged("WARN The Avahi daemon does not announce this host: every name is taken"));
        EXPECT_EQ(daemon.calls().count("GetAlternativeServiceName"), Announcement::MaxRenames);
        const int tried = daemon.calls().count("AddService");
        EXPECT_EQ(tried, Announcement::MaxRenames + 1);
        // Nothing that the daemon says makes it begin again.
        daemon.setServerState(FakeAvahi::Registering);
        daemon.setServerState(FakeAvahi::Running);
        daemon.sendGroupState(FakeAvahi::GroupCollision);
    }
    const FakeAvahi daemon;
    EXPECT_TRUE(isAnnouncedAs("Vesk (kitchen)"));
    EXPECT_EQ(m_log.lines(QStringLiteral("WARN")).size(), 1);
}

TEST_F(AnnouncementTest, ARefusalIsLoggedOnce)
{
    FakeAvahi daemon;
    daemon.refusal = "org.freedesktop.Avahi.NotPermittedError";
    announce();
    ASSERT_TRUE(isLogged("WARN The Avahi daemon does not announce this host: Not wanted"));
    ASSERT_TRUE(spinUntil([&] { return daemon.calls().count("Reset") == 2; }));
    EXPECT_EQ(daemon.calls(),
        (QByteArrayList {"GetState", "EntryGroupNew", "Reset", "AddService", "Reset"}));
    EXPECT_EQ(m_announcement->name(), QString());
}

TEST_F(AnnouncementTest, FailedEntriesAreLoggedOnce)
{
    FakeAvahi daemon;
    announce();
    ASSERT_TRUE(isAnnouncedAs("Vesk (kitchen)"));
    daemon.sendGroupState(FakeAvahi::GroupFailure);
    EXPECT_TRUE(isLogged("WARN The Avahi daemon does not announce this host: its entries failed"));
    EXPECT_EQ(m_announcement->name(), QString());
}

TEST_F(AnnouncementTest, IsWithdrawnWhileTheMachineGetsAnotherName)
{
    for (const int state : {FakeAvahi::Registering, FakeAvahi::Collision}) {
        FakeAvahi daemon(state);
        announce();
        ASSERT_TRUE(spinUntil([&] { return daemon.isCalled(); }));
        daemon.setServerState(FakeAvahi::Running);
        ASSERT_TRUE(isAnnouncedAs("Vesk (kitchen)"));
        daemon.setServerState(state);
        ASSERT_TRUE(isAnnouncedAs(""));
        ASSERT_TRUE(spinUntil([&] { return daemon.published().isEmpty(); }));
        daemon.setServerState(FakeAvahi::Running);
        ASSERT_TRUE(isAnnouncedAs("Vesk (kitchen)"));
        EXPECT_EQ(daemon.published().size(), 2);
        EXPECT_EQ(daemon.calls().count("EntryGroupNew"), 1);
        m_announcement.reset();
    }
}

/// While it still waits for its group.
TEST_F(AnnouncementTest, TheMachineMayGetAnotherNameAtAnyTime)
{
    FakeAvahi daemon;
    daemon.hang();
    announce();
    ASSERT_TRUE(spinUntil([&] { return daemon.isCalled(); }));
    for (int i = 0; i < 3; ++i) {
        daemon.setServerState(FakeAvahi::Registering);
        daemon.setServerState(FakeAvahi::Running);
    }
    ASSERT_TRUE(spinUntil([&] { return daemon.calls().contains("EntryGroupNew"); }));
    daemon.goOn();
    ASSERT_TRUE(isAnnouncedAs("Vesk (kitchen)"));
    EXPECT_EQ(daemon.published().size(), 2);
    EXPECT_EQ(daemon.calls().count("EntryGroupNew"), 1);
}

TEST_F(AnnouncementTest, AnswersOfOtherTypesAreNoStates)
{
    FakeAvahi daemon;
    daemon.oddState = g_variant_new("(s)", "running");
    announce();
    ASSERT_TRUE(spinUntil([&] { return !m_log.lines(QStringLiteral("WARN")).isEmpty(); }));
    EXPECT_THAT(m_log.lines(QStringLiteral("WARN")).first().toStdString(),
        StartsWith("The Avahi daemon does not announce this host: "));
}

TEST_F(AnnouncementTest, SignalsOfOtherTypesCountAsNotRunning)
{
    FakeAvahi daemon;
    announce();
    ASSERT_TRUE(isAnnouncedAs("Vesk (kitchen)"));
    daemon.sendStateChanged(g_variant_new("(u)", 2U));
    EXPECT_TRUE(isAnnouncedAs(""));
}

TEST_F(AnnouncementTest, ADaemonThatHangsHoldsNobodyUp)
{
    FakeAvahi daemon;
    daemon.hang();
    QElapsedTimer time;
    time.start();
    announce();
    ASSERT_TRUE(spinUntil([&] { return daemon.isCalled(); }));
    m_announcement.reset();
    EXPECT_LT(time.elapsed(), AtOnce);

    announce();
    ASSERT_TRUE(spinUntil([&] { return daemon.calls().size() == 2; }));
    daemon.goOn();
    EXPECT_TRUE(isAnnouncedAs("Vesk (kitchen)"));
}

TEST_F(AnnouncementTest, ABusThatHangsHoldsNobodyUp)
{
    const FakeAvahi daemon;
    m_bus->signal(SIGSTOP);
    QElapsedTimer time;
    time.start();
    announce();
    m_announcement.reset();
    announce();
    EXPECT_LT(time.elapsed(), AtOnce);
    m_bus->signal(SIGCONT);
    ASSERT_TRUE(isAnnouncedAs("Vesk (kitchen)"));

    m_bus->signal(SIGSTOP);
    time.start();
    m_announcement.reset();
    EXPECT_LT(time.elapsed(), AtOnce);
    m_bus->signal(SIGCONT);
    EXPECT_TRUE(spinUntil([&] { return daemon.published().isEmpty(); }));
}

TEST_F(AnnouncementTest, WithoutABusThereIsOneLine)
{
    m_bus->end();
    announce();
    ASSERT_TRUE(spinUntil([&] { return !m_log.lines().isEmpty(); }));
    EXPECT_EQ(m_log.lines().size(), 1);
    EXPECT_THAT(m_log.lines().first().toStdString(),
        StartsWith("DEBUG not announced: there is no system bus: "));
}

/// The process goes on, which a shared connection to the bus would end.
TEST_F(AnnouncementTest, EndsWithTheBus)
{
    const FakeAvahi daemon;
    announce();
    ASSERT_TRUE(isAnnouncedAs("Vesk (kitchen)"));
    m_bus->end();
    EXPECT_TRUE(isLogged("DEBUG not announced: the system bus has ended"));
    EXPECT_TRUE(isAnnouncedAs(""));
}

} // namespace
