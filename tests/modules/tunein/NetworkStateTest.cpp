// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/modules/tunein/TuneInFixture.h"

#include "api/values/VeskValuePaths.h"

#include <QThread>

#include <atomic>
#include <chrono>
#include <thread>

using testing::ElementsAre;

namespace {

const QString Enter = "TRACE Enter void "
                      "CMTuneInWorker::on_networkStateConnectedItem_changed(const VeskValue&): "_s;

/// While set, sleeping advances the tests' clock and takes no time.
std::atomic<bool> hurry {false};
std::atomic<int> sleeps {0};

class NetworkStateTest : public TuneInFixture {
protected:
    void deliver(const VeskValue &value)
    {
        onWorker([&] {
            ASSERT_TRUE(QMetaObject::invokeMethod(worker(), "on_networkStateConnectedItem_changed",
                Qt::DirectConnection, Q_ARG(VeskValue, value)));
        });
    }
};

} // namespace

/// Replaces Qt's function in this program, so that hours of polling pass at once.
void QThread::msleep(unsigned long milliseconds)
{
    if (hurry) {
        FakeClock::advance(static_cast<qint64>(milliseconds));
        ++sleeps;
    } else {
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
    }
}

TEST_F(NetworkStateTest, FollowsTheHostsValue)
{
    start();
    EXPECT_TRUE(worker()->networkStateConnected());
    setNetwork(false);
    EXPECT_FALSE(worker()->networkStateConnected());
    setNetwork(true);
    EXPECT_TRUE(worker()->networkStateConnected());
    EXPECT_THAT(log().lines().filter("on_networkStateConnectedItem_changed"_s),
        ElementsAre(Enter + "1"_s, Enter + "0"_s, Enter + "1"_s));
    EXPECT_THAT(log().lines("DEBUG"_s).filter("Network is"_s),
        ElementsAre("Network is up."_s, "Network is down."_s, "Network is up."_s));
}

TEST_F(NetworkStateTest, IsDownWhenTheFirstValueIsFalse)
{
    set(VeskNetworkStateConnected(), false);
    start();
    EXPECT_FALSE(worker()->networkStateConnected());
    EXPECT_TRUE(log().contains("DEBUG Network is down."_s));
}

TEST_F(NetworkStateTest, IsLoggedWithEachChange)
{
    start();
    log().clear();
    deliver(VeskValue::fromBool(false));
    deliver(VeskValue::fromBool(true));
    EXPECT_THAT(log().lines(),
        ElementsAre(
            Enter + "0"_s, "DEBUG Network is down."_s, Enter + "1"_s, "DEBUG Network is up."_s));
    EXPECT_TRUE(worker()->networkStateConnected());
}

TEST_F(NetworkStateTest, ReadsAValueOfAnotherTypeAsDown)
{
    start();
    deliver(VeskValue::fromString("true"_s));
    EXPECT_FALSE(worker()->networkStateConnected());
    deliver(VeskValue());
    EXPECT_FALSE(worker()->networkStateConnected());
}

TEST_F(NetworkStateTest, IsDownWithoutWaitingOnTheWorkersThreadBeforeTheFirstValue)
{
    bool connected = true;
    WorkerThread thread([&connected]() -> QObject * {
        auto *worker = new CMTuneInWorker(defaultConfig());
        connected = worker->networkStateConnected();
        return worker;
    });
    EXPECT_FALSE(connected);
    // The value arrives with the event loop; then the network is up on this thread, too.
    auto *created = static_cast<CMTuneInWorker *>(thread.object());
    EXPECT_TRUE(created->networkStateConnected());
    thread.call([&] { connected = created->networkStateConnected(); });
    EXPECT_TRUE(connected);
}

TEST_F(NetworkStateTest, BlocksOtherThreadsUntilTheFirstValue)
{
    std::atomic<bool> connected {false};
    std::atomic<bool> asking {false};
    std::thread asker;
    WorkerThread thread([&]() -> QObject * {
        auto *worker = new CMTuneInWorker(defaultConfig());
        // The value, true, cannot arrive before this function returns to the event loop.
        asker = std::thread([&, worker] {
            asking = true;
            connected = worker->networkStateConnected();
        });
        while (!asking)
            std::this_thread::yield();
        return worker;
    });
    asker.join();
    EXPECT_TRUE(connected);
}

TEST_F(NetworkStateTest, BlocksOtherThreadsWithoutTimeLimit)
{
    constexpr int HourOfPolls = 3600 * 100;
    bool connected = false;
    std::atomic<bool> answered {false};
    std::thread asker;
    sleeps = 0;
    hurry = true;
    WorkerThread thread([&]() -> QObject * {
        auto *worker = new CMTuneInWorker(defaultConfig());
        asker = std::thread([&, worker] {
            connected = worker->networkStateConnected();
            answered = true;
        });
        // The value, true, cannot arrive before this function returns to the event loop.
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (sleeps < HourOfPolls && !answered && std::chrono::steady_clock::now() < deadline)
            std::this_thread::yield();
        EXPECT_FALSE(answered);
        EXPECT_GE(sleeps, HourOfPolls);
        return worker;
    });
    asker.join();
    hurry = false;
    EXPECT_TRUE(connected);
}
