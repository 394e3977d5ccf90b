// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/modules/radiobrowser/RadioBrowserFixture.h"
#include "tests/support/LogCapture.h"

#include <QThread>

using testing::Contains;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

namespace {

/// The list of servers on the test's own thread.
class RadioBrowserServersTest : public testing::Test {
protected:
    RadioBrowserServersTest()
        : m_servers(
            [this] {
                ++m_lookUps;
                m_lookUpThread = QThread::currentThread();
                return m_found;
            },
            [this] { return m_clock.now(); })
    {
    }

    QStringList find()
    {
        QStringList servers;
        m_servers.find([&servers](const QStringList &found) { servers = found; });
        EXPECT_TRUE(spinUntil([&servers] { return !servers.isEmpty(); }));
        return servers;
    }

    QStringList m_found {text("https://a"), text("https://b"), text("https://c")};
    std::atomic<int> m_lookUps {0};
    std::atomic<QThread *> m_lookUpThread {nullptr};
    RadioBrowserClock m_clock;
    RadioBrowserServers m_servers;
};

} // namespace

TEST_F(RadioBrowserServersTest, LooksUpOnAThreadOfItsOwnAndOnlyOnceAnHour)
{
    EXPECT_THAT(
        find(), UnorderedElementsAre(text("https://a"), text("https://b"), text("https://c")));
    EXPECT_NE(m_lookUpThread, QThread::currentThread());
    m_clock.advance(std::chrono::minutes(59));
    find();
    EXPECT_EQ(m_lookUps, 1);
    m_clock.advance(std::chrono::minutes(1));
    find();
    EXPECT_EQ(m_lookUps, 2);
}

TEST_F(RadioBrowserServersTest, SharesOneLookUpAmongConcurrentRequests)
{
    int answers = 0;
    for (int i = 0; i < 3; ++i)
        m_servers.find([&answers](const QStringList &) { ++answers; });
    EXPECT_TRUE(spinUntil([&answers] { return answers == 3; }));
    EXPECT_EQ(m_lookUps, 1);
}

TEST_F(RadioBrowserServersTest, ShufflesTheServers)
{
    for (int i = 0; i < 16; ++i)
        m_found.append(QStringLiteral("https://%1").arg(i));
    // That it is left as it was has a chance of one in 19!.
    EXPECT_NE(find(), m_found);
    EXPECT_THAT(find(), testing::UnorderedElementsAreArray(m_found));
}

TEST_F(RadioBrowserServersTest, LeavesAFailedServerAloneForFiveMinutes)
{
    m_servers.noteFailed(text("https://b"));
    EXPECT_THAT(find(), UnorderedElementsAre(text("https://a"), text("https://c")));
    m_clock.advance(std::chrono::seconds(299));
    EXPECT_THAT(find(), UnorderedElementsAre(text("https://a"), text("https://c")));
    m_clock.advance(std::chrono::seconds(1));
    EXPECT_THAT(find(), Contains(text("https://b")));
}

TEST_F(RadioBrowserServersTest, AsksAllAgainWhenAllHaveFailed)
{
    find();
    for (const QString &server : std::as_const(m_found))
        m_servers.noteFailed(server);
    EXPECT_EQ(find().size(), 3);
}

TEST_F(RadioBrowserServersTest, FallsBackToTheNameOfAllServersForAMinute)
{
    m_found.clear();
    EXPECT_THAT(find(), ElementsAre(text("https://all.api.radio-browser.info")));
    find();
    EXPECT_EQ(m_lookUps, 1);
    m_clock.advance(std::chrono::minutes(1));
    find();
    EXPECT_EQ(m_lookUps, 2);
}

TEST_F(RadioBrowserServersTest, TakesOneServerInPlaceOfALookUp)
{
    for (const char *server : {"https://radio.example/", "http://127.0.0.1:8075", "http://[::1]:80",
             "http://localhost:1/api//"}) {
        m_servers.setOnly(text(server));
        EXPECT_EQ(find().size(), 1);
        EXPECT_TRUE(text(server).startsWith(find().constFirst())) << server;
        EXPECT_FALSE(find().constFirst().endsWith(QLatin1Char('/'))) << server;
    }
    EXPECT_EQ(m_lookUps, 0);
}

TEST_F(RadioBrowserServersTest, RefusesPlainHttpToOtherMachines)
{
    LogCapture log("CB_RadioBrowser");
    for (const char *server : {"http://radio.example", "http://127.0.0.1.example.com",
             "http://192.168.1.1", "ftp://localhost", "radio.example", "https://"})
        m_servers.setOnly(text(server));
    EXPECT_EQ(log.lines(text("ERROR")).size(), 6);
    EXPECT_EQ(find().size(), 3);
    EXPECT_EQ(m_lookUps, 1);
}
