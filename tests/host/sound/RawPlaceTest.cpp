// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/sound/RawPlace.h"

#include "base/files/Descriptor.h"

#include "tests/support/Text.h"

#include <QFile>
#include <QTemporaryDir>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using Health = RawPlace::Health;
using files::Descriptor;

/// A tenth of a second, as the pipeline hands it over.
constexpr std::size_t Piece = 4800;

/// Writes frames that are numbered, so that a reader sees what is missing and what is torn.
class Numbered {
public:
    explicit Numbered(RawPlace &place)
        : m_place(place)
    {
    }

    Health write(std::size_t count = Piece)
    {
        std::vector<std::uint32_t> frames(count);
        for (std::uint32_t &frame : frames)
            frame = m_next++;
        return m_place.write(
            reinterpret_cast<const char *>(frames.data()), count * RawPlace::FrameSize);
    }
    /// Writes until the health is \a wanted, ten seconds at most.
    bool writeUntil(Health wanted)
    {
        const auto end = Clock::now() + std::chrono::seconds(10);
        Health health = Health::Opening;
        while ((health = write(1)) != wanted && Clock::now() < end)
            ::usleep(1000);
        return health == wanted;
    }
    std::uint32_t next() const { return m_next; }

private:
    RawPlace &m_place;
    std::uint32_t m_next = 0;
};

/// All that is there to be read, of whole frames; waits for the first.
std::vector<std::uint32_t> readAll(const Descriptor &source)
{
    std::string bytes;
    pollfd readable {source.number(), POLLIN, 0};
    char buffer[1 << 16];
    while (::poll(&readable, 1, bytes.empty() ? 5000 : 50) > 0) {
        const ssize_t count = ::read(source.number(), buffer, sizeof buffer);
        if (count <= 0)
            break;
        bytes.append(buffer, static_cast<std::size_t>(count));
    }
    EXPECT_EQ(bytes.size() % RawPlace::FrameSize, 0u);
    std::vector<std::uint32_t> frames(bytes.size() / RawPlace::FrameSize);
    std::memcpy(frames.data(), bytes.data(), frames.size() * RawPlace::FrameSize);
    return frames;
}

/// No frame is torn: torn ones are no numbers that were written, in their order.
bool isWhole(const std::vector<std::uint32_t> &frames, std::uint32_t end)
{
    for (std::size_t i = 0; i < frames.size(); ++i) {
        if (frames[i] >= end || (i > 0 && frames[i] <= frames[i - 1]))
            return false;
    }
    return !frames.empty();
}

Descriptor reader(const QString &fifo)
{
    return Descriptor(::open(fifo.toUtf8().constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
}

class RawFifoTest : public testing::Test {
protected:
    RawFifoTest() { std::signal(SIGPIPE, SIG_IGN); }

    QTemporaryDir m_folder;
    const QString m_file = m_folder.filePath(text("fifo"));
    RawFifo m_fifo {m_file.toStdString()};
    Numbered m_frames {m_fifo};
};

/// A listening socket of this machine.
class Listener {
public:
    explicit Listener(int backlog = 5)
        : m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        bindTo(0);
        ::listen(m_socket.number(), backlog);
    }

    int port() const
    {
        sockaddr_in address {};
        socklen_t size = sizeof address;
        ::getsockname(m_socket.number(), reinterpret_cast<sockaddr *>(&address), &size);
        return ntohs(address.sin_port);
    }
    Descriptor accept() const
    {
        pollfd readable {m_socket.number(), POLLIN, 0};
        if (::poll(&readable, 1, 10000) <= 0)
            return {};
        return Descriptor(::accept4(m_socket.number(), nullptr, nullptr, SOCK_CLOEXEC));
    }
    Descriptor connect() const
    {
        Descriptor client(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
        const sockaddr_in address = addressOf(port());
        ::connect(client.number(), reinterpret_cast<const sockaddr *>(&address), sizeof address);
        return client;
    }

private:
    static sockaddr_in addressOf(int port)
    {
        sockaddr_in address {};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<std::uint16_t>(port));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        return address;
    }
    void bindTo(int port)
    {
        const sockaddr_in address = addressOf(port);
        EXPECT_EQ(
            ::bind(m_socket.number(), reinterpret_cast<const sockaddr *>(&address), sizeof address),
            0);
    }

    Descriptor m_socket;
};

template <class Act>
double secondsOf(Act act)
{
    const auto begin = Clock::now();
    act();
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

} // namespace

TEST_F(RawFifoTest, IsMadeAndWaitsForNobody)
{
    for (int i = 0; i < RawFifo::Unread - 1; ++i)
        EXPECT_EQ(m_frames.write(), Health::Opening);
    EXPECT_EQ(m_frames.write(), Health::Absent);
    struct stat status { };
    ASSERT_EQ(::stat(m_file.toUtf8().constData(), &status), 0);
    EXPECT_TRUE(S_ISFIFO(status.st_mode));
    EXPECT_EQ(status.st_mode & 0022, 0u) << "others cannot write sound";
}

TEST_F(RawFifoTest, AReaderMayGoAndComeBack)
{
    for (int i = 0; i < RawFifo::Unread; ++i)
        m_frames.write();
    for (int round = 0; round < 3; ++round) {
        Descriptor source = reader(m_file);
        EXPECT_EQ(m_frames.write(), Health::Absent);
        std::vector<std::uint32_t> heard = readAll(source);
        ASSERT_EQ(heard.size(), Piece) << "nothing older than the last piece";
        EXPECT_EQ(heard.back(), m_frames.next() - 1);
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(m_frames.write(), Health::Fine);
            heard = readAll(source);
            ASSERT_EQ(heard.size(), Piece);
            EXPECT_EQ(heard.back(), m_frames.next() - 1);
        }
        source = {};
        EXPECT_EQ(m_frames.write(), Health::Absent);
        EXPECT_EQ(m_frames.write(), Health::Absent);
    }
}

TEST_F(RawFifoTest, AReaderThatLooksInFromTimeToTimeIsMet)
{
    // Opens, finds no writer or nothing to read, and closes, unless there is sound.
    std::atomic<bool> isMet {false};
    std::thread looking([&] {
        for (int i = 0; i < 100 && !isMet; ++i) {
            const Descriptor source = reader(m_file);
            char byte[RawPlace::FrameSize];
            isMet = ::read(source.number(), byte, sizeof byte) == sizeof byte;
            ::usleep(20000);
        }
    });
    for (int i = 0; i < 100 && !isMet; ++i) {
        m_frames.write();
        ::usleep(20000);
    }
    looking.join();
    EXPECT_TRUE(isMet);
}

TEST_F(RawFifoTest, AReaderThatDoesNotReadHoldsNothingUpAndGetsWholeFramesLater)
{
    m_frames.write();
    const Descriptor source = reader(m_file);
    readAll(source);
    EXPECT_EQ(m_frames.write(), Health::Fine);
    readAll(source);
    const double time = secondsOf([&] {
        for (int i = 0; i < 50; ++i)
            m_frames.write(Piece + 1);
    });
    EXPECT_LT(time, 1);
    EXPECT_EQ(m_frames.write(), Health::Slow);
    std::vector<std::uint32_t> heard = readAll(source);
    EXPECT_TRUE(isWhole(heard, m_frames.next()));
    const std::uint32_t later = m_frames.next();
    EXPECT_EQ(m_frames.write(), Health::Slow) << "not told anew with each piece that is lost";
    heard = readAll(source);
    ASSERT_EQ(heard.size(), Piece);
    EXPECT_EQ(heard.front(), later);
    for (int i = 0; i < 10; ++i) {
        m_frames.write();
        readAll(source);
    }
    EXPECT_EQ(m_frames.write(), Health::Fine);
}

TEST_F(RawFifoTest, WhatIsNoFifoIsNotTouched)
{
    QFile file(m_file);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("precious");
    file.close();
    EXPECT_EQ(m_frames.write(), Health::Unusable);
    EXPECT_EQ(m_fifo.reason(), "not a FIFO");
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "precious");
    // It may become one.
    ASSERT_TRUE(file.remove());
    EXPECT_EQ(m_frames.write(), Health::Opening);
}

TEST_F(RawFifoTest, AFolderThatIsMissingIsTold)
{
    RawFifo fifo((m_file + text("/none/fifo")).toStdString());
    EXPECT_EQ(Numbered(fifo).write(), Health::Unusable);
    EXPECT_FALSE(fifo.reason().empty());
}

TEST(RawServerTest, GetsWhatIsWritten)
{
    const Listener listener;
    RawServer server("localhost", listener.port());
    Numbered frames(server);
    const Descriptor source = listener.accept();
    ASSERT_TRUE(frames.writeUntil(Health::Fine));
    const std::uint32_t first = frames.next();
    ASSERT_EQ(frames.write(), Health::Fine);
    const std::vector<std::uint32_t> heard = readAll(source);
    EXPECT_EQ(heard.back(), first + Piece - 1);
    EXPECT_TRUE(isWhole(heard, frames.next()));
}

TEST(RawServerTest, IsConnectedAgain)
{
    const Listener listener;
    RawServer server("127.0.0.1", listener.port());
    Numbered frames(server);
    for (int round = 0; round < 2; ++round) {
        const Descriptor source = listener.accept();
        ASSERT_TRUE(source.isOpen());
        ASSERT_TRUE(frames.writeUntil(Health::Fine));
        const auto end = Clock::now() + std::chrono::seconds(10);
        EXPECT_FALSE(readAll(source).empty());
        ::shutdown(source.number(), SHUT_RDWR);
        while (frames.write(1) != Health::Absent && Clock::now() < end)
            ::usleep(1000);
    }
}

TEST(RawServerTest, OneThatIsNotThereIsAbsent)
{
    int port = 0;
    {
        const Listener closed;
        port = closed.port();
    }
    RawServer server("127.0.0.1", port);
    EXPECT_TRUE(Numbered(server).writeUntil(Health::Absent));
}

TEST(RawServerTest, FramesStayWholeWhateverIsDropped)
{
    const Listener listener;
    RawServer server("127.0.0.1", listener.port());
    const Descriptor source = listener.accept();
    // A connection takes any number of bytes.
    std::vector<std::uint32_t> heard;
    Numbered frames(server);
    ASSERT_TRUE(frames.writeUntil(Health::Fine));
    std::string bytes;
    char odd[12345];
    for (int i = 0; i < 400; ++i) {
        frames.write();
        if (i < 60)
            continue; // until it is full
        const ssize_t count = ::recv(source.number(), odd, sizeof odd, MSG_DONTWAIT);
        if (count > 0)
            bytes.append(odd, static_cast<std::size_t>(count));
    }
    ::shutdown(source.number(), SHUT_WR);
    bytes.resize(bytes.size() / RawPlace::FrameSize * RawPlace::FrameSize);
    heard.resize(bytes.size() / RawPlace::FrameSize);
    std::memcpy(heard.data(), bytes.data(), bytes.size());
    EXPECT_LT(heard.size(), 400 * Piece);
    EXPECT_GT(heard.size(), 20 * Piece);
    EXPECT_TRUE(isWhole(heard, frames.next()));
}

TEST(RawServerTest, OneThatDoesNotReadHoldsNothingUpAndIsLeftInTheEnd)
{
    const Listener listener;
    RawServer server("127.0.0.1", listener.port());
    Numbered frames(server);
    const Descriptor source = listener.accept();
    ASSERT_TRUE(frames.writeUntil(Health::Fine));
    bool isSlow = false;
    std::size_t written = 0;
    const double time = secondsOf([&] {
        Health health = Health::Fine;
        for (; health != Health::Absent && written < 10000; ++written) {
            health = frames.write();
            isSlow = isSlow || health == Health::Slow;
        }
    });
    EXPECT_TRUE(isSlow);
    EXPECT_LT(time, 5);
    // What fits into the buffers of both ends, and ten seconds.
    EXPECT_GT(written, 100u);
    EXPECT_LT(written, 600u);
    EXPECT_TRUE(listener.accept().isOpen()) << "connected anew";
}

TEST(RawServerTest, EndsAtOnceWhileItConnects)
{
    const Listener full(0);
    std::vector<Descriptor> others;
    for (int i = 0; i < 4; ++i)
        others.push_back(full.connect());
    std::unique_ptr<RawServer> server = std::make_unique<RawServer>("127.0.0.1", full.port());
    EXPECT_EQ(Numbered(*server).write(), Health::Opening);
    ::usleep(100000);
    EXPECT_LT(secondsOf([&] { server.reset(); }), 1);
}
