// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/core/Mutex.h"
#include "plugin/link/Channel.h"
#include "tests/plugin/link/Ends.h"
#include "tests/support/WorkerThread.h"

#include <gmock/gmock.h>

#include <QObject>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <dirent.h>
#include <fstream>
#include <thread>
#include <unistd.h>

namespace {

using std::chrono::milliseconds;

const QByteArray LongPayload(3'000'000, 'x');

/// The voluntary context switches so far of the threads named \a name: how often they went to
/// sleep.
long sleepsOf(const std::string &name)
{
    long sleeps = 0;
    DIR *const tasks = ::opendir("/proc/self/task");
    while (const dirent *const task = ::readdir(tasks)) {
        const std::string folder = std::string("/proc/self/task/") + task->d_name;
        std::string found;
        std::getline(std::ifstream(folder + "/comm"), found);
        if (found != name)
            continue;
        std::ifstream status(folder + "/status");
        for (std::string line; std::getline(status, line);) {
            if (line.rfind("voluntary_ctxt_switches:", 0) == 0)
                sleeps += std::stol(line.substr(line.find(':') + 1));
        }
    }
    ::closedir(tasks);
    return sleeps;
}

/// A channel that receives on the event loop of a thread.
class ChannelOnLoopTest : public testing::Test {
protected:
    ChannelOnLoopTest()
    {
        m_loop.call([this] {
            m_loopThread = std::this_thread::get_id();
            m_channel->start({[this](const QByteArray &payload) {
                                  noteThread();
                                  return m_received.handle(payload);
                              },
                                 [this](const QString &reason) {
                                     m_endedOn = std::this_thread::get_id();
                                     m_received.end(reason);
                                 }},
                Channel::Reader::CallersLoop);
        });
    }

    ~ChannelOnLoopTest() override
    {
        m_loop.call([this] { m_channel.reset(); });
        closePeer();
    }

    void closePeer()
    {
        if (m_peer >= 0)
            ::close(std::exchange(m_peer, -1));
    }

    void sendBytes(const QByteArray &bytes) const { ASSERT_TRUE(sendAll(m_peer, bytes)); }
    void sendFrame(const QByteArray &payload) const { sendBytes(framed(payload)); }

    /// Sends one frame and waits until it is handled.
    void exchange(const QByteArray &payload = "x")
    {
        const std::size_t before = m_received.payloads().size();
        sendFrame(payload);
        ASSERT_TRUE(m_received.waitFor(before + 1));
    }

    void noteThread()
    {
        const VeskMutexLock lock(m_mutex);
        m_threads.push_back(std::this_thread::get_id());
    }
    /// For each frame, whether the event loop's thread handled it.
    std::vector<bool> onLoop() const
    {
        const VeskMutexLock lock(m_mutex);
        std::vector<bool> result;
        for (const std::thread::id thread : m_threads)
            result.push_back(thread == m_loopThread);
        return result;
    }

    const std::pair<int, int> m_sockets = connectedSockets();
    int m_peer = m_sockets.second;
    Received m_received;
    std::thread::id m_loopThread;
    std::thread::id m_endedOn; ///< read after m_received.waitForEnd()
    mutable VeskMutex m_mutex;
    std::vector<std::thread::id> m_threads VESK_GUARDED_BY(m_mutex);
    std::unique_ptr<Channel> m_channel = std::make_unique<Channel>(m_sockets.first);
    WorkerThread m_loop {[] { return new QObject; }};
};

TEST_F(ChannelOnLoopTest, TheLoopReceives)
{
    for (int i = 0; i < 5; ++i)
        exchange();
    EXPECT_EQ(onLoop(), std::vector<bool>(5, true));
}

TEST_F(ChannelOnLoopTest, TheChannelsThreadSleepsWhileTheLoopReceives)
{
    exchange();
    // The thread may not even have its name yet, and all that it sleeps while it starts counts.
    ASSERT_TRUE(spinUntil([] { return sleepsOf("PluginLink") > 0; }));
    const long before = sleepsOf("PluginLink");
    for (int i = 0; i < 100; ++i)
        exchange();
    EXPECT_LE(sleepsOf("PluginLink") - before, 1);
}

TEST_F(ChannelOnLoopTest, LongPayloadsAreReceivedByTheChannelsThread)
{
    for (int round = 0; round < 5; ++round) {
        exchange(LongPayload);
        EXPECT_EQ(m_received.payloads().back(), LongPayload);
        exchange("short");
    }
    const std::vector<bool> threads = onLoop();
    for (std::size_t i = 0; i < threads.size(); i += 2)
        EXPECT_FALSE(threads[i]) << i;
    // The loop receives again; the thread may only have handled frames that came with the long one.
    exchange();
    exchange();
    EXPECT_TRUE(onLoop().back());
}

TEST_F(ChannelOnLoopTest, FramesKeepTheirOrderWhenBothReceive)
{
    constexpr int Count = 5000;
    for (int i = 0; i < Count; ++i)
        sendFrame(QByteArray::number(i) + QByteArray(i % 50 == 0 ? 100'000 : 0, ' '));
    ASSERT_TRUE(m_received.waitFor(Count));
    const std::vector<QByteArray> payloads = m_received.payloads();
    ASSERT_EQ(payloads.size(), std::size_t(Count));
    for (int i = 0; i < Count; ++i)
        ASSERT_EQ(payloads[static_cast<std::size_t>(i)].trimmed(), QByteArray::number(i));
    const std::vector<bool> threads = onLoop();
    EXPECT_TRUE(std::count(threads.begin(), threads.end(), true) > 0);
    EXPECT_TRUE(std::count(threads.begin(), threads.end(), false) > 0);
}

TEST_F(ChannelOnLoopTest, ABusyLoopReceivesAfterwards)
{
    m_loop.call([this] {
        for (int i = 0; i < 10; ++i)
            sendFrame(QByteArray::number(i));
        std::this_thread::sleep_for(milliseconds(20));
        EXPECT_TRUE(m_received.payloads().empty());
    });
    ASSERT_TRUE(m_received.waitFor(10));
    EXPECT_EQ(onLoop(), std::vector<bool>(10, true));
}

TEST_F(ChannelOnLoopTest, AssemblesFramesFromAnyPieces)
{
    const QByteArray payload(200, 'p');
    for (const char byte : framed(payload))
        sendBytes(QByteArray(1, byte));
    ASSERT_TRUE(m_received.waitFor(1));
    EXPECT_EQ(m_received.payloads().back(), payload);
}

TEST_F(ChannelOnLoopTest, EndedIsCalledOnTheChannelsThread)
{
    exchange();
    closePeer();
    ASSERT_TRUE(m_received.waitForEnd());
    EXPECT_EQ(m_received.reasons(), std::vector<QString> {QString()});
    EXPECT_NE(m_endedOn, m_loopThread);
}

TEST_F(ChannelOnLoopTest, TheLoopRestsAfterTheEnd)
{
    exchange();
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

TEST_F(ChannelOnLoopTest, AFailedHandlerEndsTheConnection)
{
    exchange();
    m_received.complain(QStringLiteral("nonsense"));
    sendFrame("x");
    ASSERT_TRUE(m_received.waitForEnd());
    EXPECT_EQ(m_received.reasons(), std::vector<QString> {QStringLiteral("nonsense")});
    EXPECT_NE(m_endedOn, m_loopThread);
    EXPECT_FALSE(m_channel->sender()->send("late"));
}

TEST_F(ChannelOnLoopTest, ALengthBeyondTheLimitEndsTheConnection)
{
    exchange();
    sendBytes("\xff\xff\xff\xff");
    ASSERT_TRUE(m_received.waitForEnd());
    EXPECT_EQ(m_received.reasons(),
        std::vector<QString> {QStringLiteral("a message of 4294967295 bytes")});
}

TEST_F(ChannelOnLoopTest, CloseEndsTheConnection)
{
    exchange();
    m_channel->sender()->close();
    EXPECT_TRUE(m_received.waitForEnd());
}

TEST_F(ChannelOnLoopTest, NothingIsHandledAfterTheEnd)
{
    m_loop.call([this] {
        for (int i = 0; i < 10; ++i)
            sendFrame("x"); // the loop finds it on its next turn
        m_channel->sender()->close();
        EXPECT_TRUE(m_received.waitForEnd());
    });
    m_loop.call([] {});
    EXPECT_TRUE(m_received.payloads().empty());
}

TEST_F(ChannelOnLoopTest, WhatIsQueuedIsSentOnceItIsRead)
{
    exchange();
    const QByteArray payload(4'000'000, 's');
    ASSERT_TRUE(m_channel->sender()->send(payload));
    QByteArray bytes(payload.size() + 4, Qt::Uninitialized);
    ASSERT_EQ(::recv(m_peer, bytes.data(), static_cast<std::size_t>(bytes.size()), MSG_WAITALL),
        bytes.size());
    EXPECT_TRUE(bytes.endsWith(payload));
    exchange();
    EXPECT_TRUE(onLoop().back());
}

TEST_F(ChannelOnLoopTest, OneLoopServesSeveralChannels)
{
    const auto [socket, peer] = connectedSockets();
    Received others;
    std::atomic<bool> isOnLoop {false};
    auto other = std::make_unique<Channel>(socket);
    m_loop.call([&] {
        other->start({[&](const QByteArray &payload) {
                          isOnLoop = std::this_thread::get_id() == m_loopThread;
                          return others.handle(payload);
                      },
                         [&](const QString &reason) { others.end(reason); }},
            Channel::Reader::CallersLoop);
    });
    ASSERT_TRUE(sendAll(peer, framed("")));
    ASSERT_TRUE(others.waitFor(1));
    EXPECT_TRUE(isOnLoop);
    exchange();
    m_loop.call([&] { other.reset(); });
    exchange();
    EXPECT_EQ(onLoop(), std::vector<bool>(2, true));
    ::close(peer);
}

TEST(ChannelOnLoop, ReceivesOnAnEventLoopOtherThanGLibs)
{
    ::setenv("QT_NO_GLIB", "1", 1);
    WorkerThread loop([] { return new QObject; });
    ::unsetenv("QT_NO_GLIB");
    const auto [socket, peer] = connectedSockets();
    Received received;
    auto channel = std::make_unique<Channel>(socket);
    loop.call([&] {
        channel->start({[&](const QByteArray &payload) { return received.handle(payload); },
                           [&](const QString &reason) { received.end(reason); }},
            Channel::Reader::CallersLoop);
    });
    EXPECT_TRUE(sendAll(peer, framed(LongPayload) + framed("")));
    EXPECT_TRUE(received.waitFor(2));
    loop.call([&] { channel.reset(); });
    ::close(peer);
}

} // namespace
