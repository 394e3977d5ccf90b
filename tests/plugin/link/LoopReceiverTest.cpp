// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/link/LoopReceiver.h"

#include "plugin/link/Channel.h"
#include "tests/plugin/link/Ends.h"
#include "tests/support/WorkerThread.h"

#include <gmock/gmock.h>

#include <QObject>

#include <chrono>
#include <ctime>
#include <future>
#include <pthread.h>
#include <thread>
#include <unistd.h>

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds Patience {20000};

/// Which thread took what.
class Takers {
public:
    void note()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_threads.push_back(std::this_thread::get_id());
    }
    std::vector<std::thread::id> all() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_threads;
    }
    std::thread::id last() const { return all().back(); }
    long countOf(std::thread::id thread) const
    {
        const std::vector<std::thread::id> threads = all();
        return std::count(threads.begin(), threads.end(), thread);
    }

private:
    mutable std::mutex m_mutex;
    std::vector<std::thread::id> m_threads;
};

class LoopReceiverTest : public testing::Test {
protected:
    LoopReceiverTest()
    {
        m_channel->start({[this](const QByteArray &payload) {
                              m_takers.note();
                              return m_received.take(payload);
                          },
            [this](const QString &reason) {
                m_ender = std::this_thread::get_id();
                m_received.end(reason);
            }});
        m_loop.call([this] {
            m_loopThread = std::this_thread::get_id();
            m_receiver = LoopReceiver::create(m_channel.get());
        });
    }

    ~LoopReceiverTest() override
    {
        m_loop.call([this] { m_receiver.reset(); });
        m_channel.reset();
        closePeer();
    }

    void closePeer()
    {
        if (m_peer >= 0)
            ::close(std::exchange(m_peer, -1));
    }

    void sendBytes(const QByteArray &bytes) const { ASSERT_TRUE(sendAll(m_peer, bytes)); }
    void sendFrame(const QByteArray &payload) const { sendBytes(framed(payload)); }

    /// Who takes a frame that is sent now.
    std::thread::id takerOfNext()
    {
        const std::size_t before = m_received.payloads().size();
        sendFrame("probe");
        EXPECT_TRUE(m_received.waitFor(before + 1));
        return m_takers.last();
    }

    /// The loop needs a moment in order to wait; so does the other thread until it runs.
    bool isSoonTakenBy(const std::function<bool(std::thread::id)> &isExpected)
    {
        const auto deadline = steady_clock::now() + Patience;
        while (!isExpected(takerOfNext())) {
            if (steady_clock::now() > deadline)
                return false;
        }
        return true;
    }
    bool isSoonTakenByLoop()
    {
        return isSoonTakenBy([this](std::thread::id taker) { return taker == m_loopThread; });
    }

    const std::pair<int, int> m_sockets = connectedSockets();
    int m_peer = m_sockets.second;
    Received m_received;
    Takers m_takers;
    std::thread::id m_loopThread;
    std::thread::id m_ender;
    std::unique_ptr<Channel> m_channel = std::make_unique<Channel>(m_sockets.first);
    WorkerThread m_loop {[] { return new QObject; }};
    std::unique_ptr<LoopReceiver> m_receiver;
};

TEST_F(LoopReceiverTest, TheLoopTakesWhatComesWhileItWaits)
{
    ASSERT_TRUE(m_receiver);
    EXPECT_TRUE(isSoonTakenByLoop());
}

TEST_F(LoopReceiverTest, TheChannelsThreadTakesWhatComesWhileTheLoopIsBusy)
{
    ASSERT_TRUE(isSoonTakenByLoop());
    for (int round = 0; round < 20; ++round) {
        std::promise<void> begun;
        std::promise<void> end;
        const std::future<void> busy = std::async(std::launch::async, [&] {
            m_loop.call([&] {
                begun.set_value();
                end.get_future().wait();
            });
        });
        begun.get_future().wait();
        EXPECT_NE(takerOfNext(), m_loopThread);
        EXPECT_NE(takerOfNext(), m_loopThread);
        end.set_value();
        busy.wait();
        EXPECT_TRUE(isSoonTakenByLoop()) << round;
    }
}

TEST_F(LoopReceiverTest, NothingIsLostOrOutOfOrderWhenTheyTakeTurns)
{
    constexpr int Count = 20'000;
    std::atomic<bool> done {false};
    const std::future<void> interruptions = std::async(std::launch::async, [&] {
        while (!done) {
            m_loop.call([] { std::this_thread::sleep_for(Channel::BusyTime * 2); });
            std::this_thread::sleep_for(milliseconds(5));
        }
    });
    for (int i = 0; i < Count; ++i) {
        sendFrame(QByteArray::number(i));
        if (i % 100 == 0)
            std::this_thread::sleep_for(milliseconds(1));
    }
    ASSERT_TRUE(m_received.waitFor(Count));
    done = true;
    interruptions.wait();
    const std::vector<QByteArray> payloads = m_received.payloads();
    ASSERT_EQ(payloads.size(), std::size_t(Count));
    for (int i = 0; i < Count; ++i)
        ASSERT_EQ(payloads[static_cast<std::size_t>(i)], QByteArray::number(i));
    EXPECT_GT(m_takers.countOf(m_loopThread), 0);
    EXPECT_LT(m_takers.countOf(m_loopThread), Count);
}

TEST_F(LoopReceiverTest, WhatIsLongIsTakenByTheChannelsThread)
{
    const QByteArray longPayload(3'000'000, 'x');
    for (int round = 0; round < 5; ++round) {
        ASSERT_TRUE(isSoonTakenByLoop()) << round;
        const std::size_t before = m_received.payloads().size();
        sendFrame(longPayload);
        ASSERT_TRUE(m_received.waitFor(before + 1));
        EXPECT_EQ(m_received.payloads().back(), longPayload);
        EXPECT_NE(m_takers.last(), m_loopThread);
    }
}

TEST_F(LoopReceiverTest, AFrameInPiecesIsPutTogetherWhoeverTakesThem)
{
    ASSERT_TRUE(isSoonTakenByLoop());
    const std::size_t before = m_received.payloads().size();
    const QByteArray payload(200, 'p');
    const QByteArray frame = framed(payload);
    for (int i = 0; i < frame.size(); ++i) {
        if (i % 50 == 10) // the loop is away for some of them
            m_loop.call([] { std::this_thread::sleep_for(Channel::BusyTime * 3); });
        sendBytes(frame.mid(i, 1));
    }
    ASSERT_TRUE(m_received.waitFor(before + 1));
    EXPECT_EQ(m_received.payloads().back(), payload);
}

TEST_F(LoopReceiverTest, TheEndIsToldOnTheChannelsThread)
{
    ASSERT_TRUE(isSoonTakenByLoop());
    closePeer();
    ASSERT_TRUE(m_received.waitForEnd());
    EXPECT_EQ(m_received.reasons(), std::vector<QString> {QString()});
    EXPECT_NE(m_ender, m_loopThread);
}

TEST_F(LoopReceiverTest, ALoopWhoseConnectionHasEndedRests)
{
    ASSERT_TRUE(isSoonTakenByLoop());
    closePeer();
    ASSERT_TRUE(m_received.waitForEnd());
    const auto processorTime = [this] {
        timespec time {};
        m_loop.call([&time] { ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time); });
        return double(time.tv_sec) + double(time.tv_nsec) * 1e-9;
    };
    const double before = processorTime();
    std::this_thread::sleep_for(milliseconds(300));
    EXPECT_LT(processorTime() - before, 0.05);
}

TEST_F(LoopReceiverTest, AComplaintOnTheLoopEndsTheConnection)
{
    ASSERT_TRUE(isSoonTakenByLoop());
    m_received.complain(QStringLiteral("nonsense"));
    sendFrame("x");
    ASSERT_TRUE(m_received.waitForEnd());
    EXPECT_EQ(m_received.reasons(), std::vector<QString> {QStringLiteral("nonsense")});
    EXPECT_NE(m_ender, m_loopThread);
    EXPECT_FALSE(m_channel->sender()->send("late"));
}

TEST_F(LoopReceiverTest, AHeadThatPromisesTooMuchEndsTheConnection)
{
    ASSERT_TRUE(isSoonTakenByLoop());
    sendBytes("\xff\xff\xff\xff");
    ASSERT_TRUE(m_received.waitForEnd());
    EXPECT_EQ(m_received.reasons(),
        std::vector<QString> {QStringLiteral("a message of 4294967295 bytes")});
}

TEST_F(LoopReceiverTest, OwnEndWhileTheLoopWaitsIsToldToo)
{
    ASSERT_TRUE(isSoonTakenByLoop());
    m_channel->sender()->close();
    EXPECT_TRUE(m_received.waitForEnd());
}

TEST_F(LoopReceiverTest, WithoutItTheChannelsThreadTakesEverythingAgain)
{
    ASSERT_TRUE(isSoonTakenByLoop());
    m_loop.call([this] { m_receiver.reset(); });
    for (int i = 0; i < 20; ++i)
        EXPECT_NE(takerOfNext(), m_loopThread);
    m_loop.call([this] { m_receiver = LoopReceiver::create(m_channel.get()); });
    EXPECT_TRUE(isSoonTakenByLoop());
}

TEST_F(LoopReceiverTest, WhatTheOtherSideIsSlowToTakeIsSentAllTheSame)
{
    ASSERT_TRUE(isSoonTakenByLoop());
    const QByteArray payload(4'000'000, 's');
    ASSERT_TRUE(m_channel->sender()->send(payload));
    QByteArray bytes(payload.size() + 4, Qt::Uninitialized);
    ASSERT_EQ(::recv(m_peer, bytes.data(), static_cast<std::size_t>(bytes.size()), MSG_WAITALL),
        bytes.size());
    EXPECT_TRUE(bytes.endsWith(payload));
    EXPECT_TRUE(isSoonTakenByLoop());
}

TEST_F(LoopReceiverTest, OneLoopServesSeveralChannels)
{
    const auto [socket, peer] = connectedSockets();
    Received others;
    std::atomic<bool> onLoop {false};
    {
        Channel other(socket);
        other.start({[&](const QByteArray &payload) {
                         onLoop = std::this_thread::get_id() == m_loopThread;
                         return others.take(payload);
                     },
            [&](const QString &reason) { others.end(reason); }});
        std::unique_ptr<LoopReceiver> receiver;
        m_loop.call([&] { receiver = LoopReceiver::create(&other); });
        const auto deadline = steady_clock::now() + Patience;
        for (std::size_t i = 1; !onLoop && steady_clock::now() < deadline; ++i) {
            ASSERT_TRUE(sendAll(peer, framed("")));
            ASSERT_TRUE(others.waitFor(i));
        }
        EXPECT_TRUE(onLoop);
        EXPECT_TRUE(isSoonTakenByLoop());
        m_loop.call([&] { receiver.reset(); });
    }
    EXPECT_TRUE(isSoonTakenByLoop());
    ::close(peer);
}

TEST(LoopReceiver, LeavesOtherEventLoopsAlone)
{
    ::setenv("QT_NO_GLIB", "1", 1);
    WorkerThread loop([] { return new QObject; });
    ::unsetenv("QT_NO_GLIB");
    const auto [socket, peer] = connectedSockets();
    Received received;
    {
        Channel channel(socket);
        channel.start({[&](const QByteArray &payload) { return received.take(payload); },
            [&](const QString &reason) { received.end(reason); }});
        loop.call([&] { EXPECT_FALSE(LoopReceiver::create(&channel)); });
        EXPECT_TRUE(sendAll(peer, framed("")));
        EXPECT_TRUE(received.waitFor(1));
    }
    ::close(peer);
}

} // namespace
