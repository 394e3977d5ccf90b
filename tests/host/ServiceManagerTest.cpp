// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/ServiceManager.h"

#include "tests/support/Text.h"
#include "tests/support/WorkerThread.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

/// Stands in for systemd: the socket to which services send.
class ServiceManagerTest : public testing::Test {
protected:
    ServiceManagerTest()
    {
        sockaddr_un address {};
        address.sun_family = AF_UNIX;
        const QByteArray file = QFile::encodeName(m_folder.filePath(text("notify")));
        qstrncpy(address.sun_path, file.constData(), sizeof address.sun_path);
        EXPECT_EQ(::bind(m_socket, reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
        qputenv("NOTIFY_SOCKET", file);
    }
    ~ServiceManagerTest() override
    {
        for (const char *name : {"NOTIFY_SOCKET", "WATCHDOG_USEC", "WATCHDOG_PID"})
            qunsetenv(name);
        ::close(m_socket);
    }

    /// The next message that was sent; empty when there is none.
    QByteArray next()
    {
        char bytes[1000];
        const ssize_t size = ::recv(m_socket, bytes, sizeof bytes, MSG_DONTWAIT);
        return size < 0 ? QByteArray() : QByteArray(bytes, static_cast<int>(size));
    }

    QTemporaryDir m_folder;
    const int m_socket = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
};

TEST_F(ServiceManagerTest, IsToldWhatTheHostDoes)
{
    ServiceManager manager;
    EXPECT_EQ(next(), QByteArray()) << "not ready yet";
    manager.setStatus(text("nothing plays"));
    manager.ready();
    manager.setStatus(text("playing\nREADY=0 \u00e9"));
    manager.setStatus(text("playing\nREADY=0 \u00e9"));
    manager.stopping();
    EXPECT_EQ(next(), "STATUS=nothing plays");
    EXPECT_EQ(next(), "READY=1");
    EXPECT_EQ(next(), "STATUS=playing READY=0 \xC3\xA9") << "one line, told once";
    EXPECT_EQ(next(), "STOPPING=1");
    EXPECT_EQ(next(), QByteArray());
}

TEST_F(ServiceManagerTest, BoundsWhatTitlesSay)
{
    ServiceManager manager;
    manager.setStatus(QString(100000, QLatin1Char('x')));
    EXPECT_EQ(next().size(), 300 + int(qstrlen("STATUS=")));
}

TEST_F(ServiceManagerTest, FeedsTheWatchdogOfItsUnit)
{
    qputenv("WATCHDOG_USEC", "100000");
    qputenv("WATCHDOG_PID", QByteArray::number(::getpid()));
    const ServiceManager manager;
    for (int i = 0; i < 3; ++i) {
        QByteArray message;
        EXPECT_TRUE(spinUntil([&] { return !(message = next()).isEmpty(); }));
        EXPECT_EQ(message, "WATCHDOG=1");
    }
}

TEST_F(ServiceManagerTest, TheWatchdogOfAnotherProcessIsNotFed)
{
    qputenv("WATCHDOG_USEC", "20000");
    qputenv("WATCHDOG_PID", "1");
    const ServiceManager manager;
    EXPECT_FALSE(spinUntil([&] { return !next().isEmpty(); }, 300));
}

TEST_F(ServiceManagerTest, WithoutAServiceManagerNothingIsSent)
{
    qunsetenv("NOTIFY_SOCKET");
    ServiceManager manager;
    manager.ready();
    EXPECT_EQ(next(), QByteArray());
}

} // namespace
