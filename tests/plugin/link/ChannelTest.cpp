// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/link/Channel.h"

#include "tests/plugin/link/Ends.h"

#include <gmock/gmock.h>

#include <chrono>
#include <cstring>
#include <future>
#include <poll.h>
#include <thread>
#include <unistd.h>

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// The head of a frame of \a size bytes.
QByteArray headOf(quint32 size)
{
    return QByteArray(reinterpret_cast<const char *>(&size), sizeof size);
}

Channel::Handler handlerOf(Received &received)
{
    return {[&received](const QByteArray &payload) { return received.handle(payload); },
        [&received](const QString &reason) { received.end(reason); }};
}

class ChannelTest : public testing::Test {
protected:
    ~ChannelTest() override { closePeer(); }

    void start() { m_channel->start(handlerOf(m_received)); }

    void closePeer()
    {
        if (m_peer >= 0)
            ::close(std::exchange(m_peer, -1));
    }

    /// The peer sends exactly these bytes.
    void write(const QByteArray &bytes) const { ASSERT_TRUE(sendAll(m_peer, bytes)); }

    /// The next \a size bytes that the peer receives; fewer when the connection ends.
    QByteArray read(int size) const
    {
        QByteArray bytes(size, Qt::Uninitialized);
        const ssize_t count
            = ::recv(m_peer, bytes.data(), static_cast<std::size_t>(size), MSG_WAITALL);
        return bytes.left(static_cast<int>(std::max<ssize_t>(count, 0)));
    }

    const std::pair<int, int> m_sockets = connectedSockets();
    Received m_received;
    std::unique_ptr<Channel> m_channel = std::make_unique<Channel>(m_sockets.first);
    int m_peer = m_sockets.second;
};

TEST_F(ChannelTest, FramesAreHandledInTheirOrder)
{
    start();
    const std::vector<QByteArray> frames {
        "one", "", QByteArray("t\0wo", 4), QByteArray(100'000, 'x')};
    for (const QByteArray &frame : frames)
        write(framed(frame));
    ASSERT_TRUE(m_received.waitFor(frames.size()));
    EXPECT_EQ(m_received.payloads(), frames);
    EXPECT_FALSE(m_received.hasEnded());
}

TEST_F(ChannelTest, SendsFramesInTheirOrder)
{
    for (const char *payload : {"before the start", "two"})
        EXPECT_TRUE(m_channel->sender()->send(payload));
    start();
    EXPECT_TRUE(m_channel->sender()->send(""));
    const QByteArray expected = framed("before the start") + framed("two") + framed("");
    EXPECT_EQ(read(expected.size()), expected);
}

TEST_F(ChannelTest, AssemblesFramesFromAnyPieces)
{
    start();
    const QByteArray bytes = framed("first") + framed("second") + framed("third");
    for (const char byte : bytes)
        write(QByteArray(1, byte));
    ASSERT_TRUE(m_received.waitFor(3));
    write(bytes); // all three frames at once
    ASSERT_TRUE(m_received.waitFor(6));
    EXPECT_EQ(m_received.payloads().at(4), "second");
}

TEST_F(ChannelTest, LongFramesArriveInBothDirections)
{
    QByteArray payload(20 * 1024 * 1024, Qt::Uninitialized);
    for (int i = 0; i < payload.size(); ++i)
        payload[i] = static_cast<char>(i * 7 + i / 1000);
    start();
    ASSERT_TRUE(m_channel->sender()->send(payload));
    ASSERT_TRUE(m_channel->sender()->send("after"));
    EXPECT_TRUE(read(framed(payload).size()) == framed(payload));
    EXPECT_EQ(read(9), framed("after"));

    write(framed(payload) + framed("after"));
    ASSERT_TRUE(m_received.waitFor(2));
    EXPECT_TRUE(m_received.payloads().at(0) == payload);
    EXPECT_EQ(m_received.payloads().at(1), "after");
}

TEST_F(ChannelTest, AcceptsTheLongestPayloadAndSendsNoLongerOne)
{
    start();
    const QByteArray longest(Channel::MaxPayload, 'x');
    EXPECT_FALSE(m_channel->sender()->send(longest + 'x'));
    write(framed(longest));
    ASSERT_TRUE(m_received.waitFor(1));
    EXPECT_TRUE(m_received.payloads().at(0) == longest);
    EXPECT_TRUE(m_channel->sender()->send(longest));
    EXPECT_TRUE(read(framed(longest).size()) == framed(longest));
    EXPECT_FALSE(m_received.hasEnded());
}

TEST_F(ChannelTest, FramesOfSeveralThreadsAreNotInterleaved)
{
    constexpr int Threads = 4;
    constexpr int Each = 5000;
    Received received;
    Channel peer(std::exchange(m_peer, -1));
    peer.start(handlerOf(received));
    start();
    std::vector<std::thread> threads;
    for (int thread = 0; thread < Threads; ++thread) {
        threads.emplace_back([this, thread] {
            for (int i = 0; i < Each; ++i) {
                const QByteArray text = QByteArray::number(thread) + ' ' + QByteArray::number(i);
                ASSERT_TRUE(m_channel->sender()->send(text + QByteArray(i % 200, '.')));
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    ASSERT_TRUE(received.waitFor(Threads * Each));
    std::vector<int> next(Threads, 0);
    for (const QByteArray &payload : received.payloads()) {
        const int space = payload.indexOf(' ');
        const int thread = payload.left(space).toInt();
        const int number = next.at(static_cast<std::size_t>(thread))++;
        ASSERT_EQ(
            payload.mid(space + 1), QByteArray::number(number) + QByteArray(number % 200, '.'));
    }
}

TEST_F(ChannelTest, SendingNeverBlocksAndEndsAStalledConnection)
{
    start();
    const QByteArray payload(Channel::MaxPayload / 2, 'x');
    auto sending = std::async(std::launch::async, [&] {
        int taken = 0;
        while (m_channel->sender()->send(payload))
            ++taken;
        return taken;
    });
    ASSERT_EQ(sending.wait_for(std::chrono::seconds(60)), std::future_status::ready);
    const auto most = static_cast<int>(Channel::MaxQueued / payload.size());
    const int taken = sending.get();
    EXPECT_GE(taken, most - 1);
    EXPECT_LE(taken, most + 1);
    ASSERT_TRUE(m_received.waitForEnd());
    EXPECT_THAT(m_received.reasons(), testing::ElementsAre(testing::Not(QString())));
    EXPECT_FALSE(m_channel->sender()->send("more"));
}

TEST_F(ChannelTest, WhatIsQueuedIsSentOnceItIsRead)
{
    start();
    const QByteArray payload(1024 * 1024, 'x');
    constexpr int Count = 30;
    for (int i = 0; i < Count; ++i)
        ASSERT_TRUE(m_channel->sender()->send(payload));
    for (int i = 0; i < Count; ++i)
        ASSERT_TRUE(read(framed(payload).size()) == framed(payload)) << i;
    EXPECT_TRUE(m_channel->sender()->send("more"));
    EXPECT_EQ(read(8), framed("more"));
}

TEST_F(ChannelTest, ALengthBeyondTheLimitEndsTheConnection)
{
    for (const quint32 size : {quint32(Channel::MaxPayload) + 1, 0x7fffffffU, 0x80000000U, ~0U}) {
        const auto [mine, peer] = connectedSockets();
        Received received;
        Channel channel(mine);
        channel.start(handlerOf(received));
        const QByteArray bytes = framed("good") + headOf(size) + "content";
        ASSERT_EQ(::send(peer, bytes.constData(), static_cast<std::size_t>(bytes.size()), 0),
            bytes.size());
        ASSERT_TRUE(received.waitForEnd());
        EXPECT_THAT(received.payloads(), testing::ElementsAre(QByteArray("good")));
        EXPECT_THAT(received.reasons(),
            testing::ElementsAre(QStringLiteral("a message of %1 bytes").arg(size)));
        char byte = 0;
        EXPECT_LE(::recv(peer, &byte, 1, 0), 0) << "the peer sees the end";
        ::close(peer);
    }
}

TEST_F(ChannelTest, AFailedHandlerEndsTheConnection)
{
    m_received.complain(QStringLiteral("no good"));
    start();
    write(framed("one") + framed("two"));
    ASSERT_TRUE(m_received.waitForEnd());
    EXPECT_THAT(m_received.payloads(), testing::ElementsAre(QByteArray("one")));
    EXPECT_THAT(m_received.reasons(), testing::ElementsAre(QStringLiteral("no good")));
    EXPECT_FALSE(m_channel->sender()->send("more"));
    EXPECT_EQ(read(1), QByteArray());
}

TEST_F(ChannelTest, EndedIsCalledOnceWhenThePeerCloses)
{
    start();
    write(framed("last") + headOf(10) + "cut");
    closePeer();
    ASSERT_TRUE(m_received.waitForEnd());
    EXPECT_THAT(m_received.payloads(), testing::ElementsAre(QByteArray("last")));
    m_channel->sender()->close();
    m_channel.reset();
    EXPECT_THAT(m_received.reasons(), testing::ElementsAre(QString()));
}

TEST_F(ChannelTest, SendsNothingAfterItsEnd)
{
    start();
    const std::shared_ptr<Channel::Sender> sender = m_channel->sender();
    sender->close();
    EXPECT_FALSE(sender->send("late"));
    ASSERT_TRUE(m_received.waitForEnd());
    EXPECT_EQ(read(1), QByteArray());
    m_channel.reset();
    EXPECT_FALSE(sender->send("later")) << "also without the channel";
    EXPECT_THAT(m_received.reasons(), testing::ElementsAre(QString()));
}

TEST_F(ChannelTest, CanBeDestroyedWithoutHavingStarted)
{
    m_channel.reset();
    EXPECT_EQ(read(1), QByteArray());
    EXPECT_FALSE(m_received.hasEnded());
}

TEST_F(ChannelTest, CanBeDestroyedWhileOthersSend)
{
    for (int round = 0; round < 100; ++round) {
        const auto [mine, other] = connectedSockets();
        Received received;
        Received receivedThere;
        auto channel = std::make_unique<Channel>(mine);
        Channel peer(other);
        channel->start(handlerOf(received));
        peer.start(handlerOf(receivedThere));
        const std::shared_ptr<Channel::Sender> sender = channel->sender();
        const auto send = [](Channel::Sender &to) {
            while (to.send(QByteArray(500, 'x'))) { }
        };
        std::thread here([&] { send(*sender); });
        std::thread there([&] { send(*peer.sender()); });
        ASSERT_TRUE(received.waitFor(3));
        channel.reset();
        here.join();
        there.join();
        EXPECT_EQ(received.reasons().size(), 1U);
    }
}

TEST_F(ChannelTest, ReceiveOneReceivesALongPayload)
{
    const QByteArray first(200'000, 'f');
    std::thread writing([&] { write(framed(first)); });
    const QByteArray received = m_channel->receiveOne(20000);
    writing.join();
    EXPECT_TRUE(received == first);
    start();
    write(framed("next"));
    ASSERT_TRUE(m_received.waitFor(1));
    EXPECT_THAT(m_received.payloads(), testing::ElementsAre(QByteArray("next")));
}

TEST_F(ChannelTest, ReceiveOneKeepsWhatCameBehindIt)
{
    write(framed("the first one") + framed("2nd") + framed("third") + headOf(6) + "fou");
    const QByteArray first = m_channel->receiveOne(20000);
    EXPECT_EQ(first, "the first one");
    start();
    ASSERT_TRUE(m_received.waitFor(2));
    write("rth");
    ASSERT_TRUE(m_received.waitFor(3));
    EXPECT_THAT(m_received.payloads(), testing::ElementsAre("2nd", "third", "fourth"));
    EXPECT_EQ(first, "the first one") << "it is a copy";
}

TEST_F(ChannelTest, ReceiveOneKeepsItsTimeout)
{
    write(framed("unfinished").left(6));
    const auto begin = steady_clock::now();
    EXPECT_EQ(m_channel->receiveOne(200), QByteArray());
    const auto took = steady_clock::now() - begin;
    EXPECT_GE(took, milliseconds(190));
    EXPECT_LT(took, milliseconds(10000));
    start();
    write(framed("unfinished").mid(6));
    ASSERT_TRUE(m_received.waitFor(1));
    EXPECT_THAT(m_received.payloads(), testing::ElementsAre(QByteArray("unfinished")));
}

TEST_F(ChannelTest, ReceiveOneReturnsWithShortTimeouts)
{
    for (int i = 0; i < 500; ++i)
        EXPECT_EQ(m_channel->receiveOne(i % 3), QByteArray());
}

TEST_F(ChannelTest, ReceiveOneReturnsWhenNothingCanCome)
{
    write(headOf(~0U));
    EXPECT_EQ(m_channel->receiveOne(20000), QByteArray());
    closePeer();
    EXPECT_EQ(m_channel->receiveOne(20000), QByteArray());

    const auto [mine, peer] = connectedSockets();
    ::close(peer);
    const auto begin = steady_clock::now();
    EXPECT_EQ(Channel(mine).receiveOne(20000), QByteArray());
    EXPECT_LT(steady_clock::now() - begin, milliseconds(10000));
}

} // namespace
