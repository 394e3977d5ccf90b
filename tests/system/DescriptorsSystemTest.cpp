// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/support/RawWebSocket.h"
#include "tests/support/Text.h"
#include "tests/system/PlayFixture.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QMap>
#include <QSet>
#include <QThread>

#include <gmock/gmock.h>

#include <csignal>
#include <unistd.h>

namespace {

/// Descriptors and their targets: "/dev/null", "pipe:[123]", "socket:[124]", a file's name.
using Descriptors = QMap<int, QString>;

Descriptors descriptorsOf(qint64 process)
{
    const QDir folder(QStringLiteral("/proc/%1/fd").arg(process));
    Descriptors descriptors;
    for (const QString &name : folder.entryList(QDir::AllEntries | QDir::System)) {
        // The targets of these links need not exist as files.
        const QByteArray link = QFile::encodeName(folder.filePath(name));
        char target[512];
        const ssize_t size = ::readlink(link.constData(), target, sizeof target);
        if (size > 0)
            descriptors.insert(
                name.toInt(), QString::fromLocal8Bit(target, static_cast<int>(size)));
    }
    return descriptors;
}

QList<qint64> childrenOf(qint64 process)
{
    QList<qint64> children;
    // Each thread of a process has a list of its own children.
    const QDir tasks(QStringLiteral("/proc/%1/task").arg(process));
    for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        for (const QByteArray &child :
            contents(tasks.filePath(task + text("/children"))).split(' ')) {
            if (!child.isEmpty())
                children.append(child.toLongLong());
        }
    }
    return children;
}

QByteArray nameOf(qint64 process)
{
    return contents(QStringLiteral("/proc/%1/comm").arg(process)).trimmed();
}

class DescriptorsSystem : public PlayFixture {
protected:
    DescriptorsSystem()
        : PlayFixture({text("--restart-wait"), text("0.25"), text("--log-file"), text("%1/log")})
    {
    }

    qint64 host() const { return product.host().processId(); }
    qint64 worker() const
    {
        for (const qint64 child : childrenOf(host())) {
            if (nameOf(child) == "vesk-plugin")
                return child;
        }
        return 0;
    }
    /// The sockets ("socket:[1]") that are connected to the directory, of all processes.
    QSet<QString> directoryConnections() const
    {
        const QString port = product.directoryAddress().section(QLatin1Char(':'), -1);
        const QByteArray wanted
            = ':' + QByteArray::number(port.toInt(), 16).rightJustified(4, '0').toUpper();
        QSet<QString> sockets;
        for (const QByteArray &line : contents(text("/proc/net/tcp")).split('\n')) {
            const QList<QByteArray> fields = line.simplified().split(' ');
            const bool isEstablished = fields.value(3) == "01";
            if (isEstablished && fields.value(2).endsWith(wanted))
                sockets.insert(QStringLiteral("socket:[%1]").arg(fields.value(9).toLongLong()));
        }
        return sockets;
    }
    /// The player's sockets: the host has no others.
    QSet<QString> streamConnections() const
    {
        const QStringList hosts = descriptorsOf(host()).values();
        return directoryConnections().intersect(QSet<QString>(hosts.begin(), hosts.end()));
    }
    /// Expects that \a child has no descriptors of the host but its end of the link and its output.
    void expectNothingOfTheHosts(qint64 child) const
    {
        SCOPED_TRACE(nameOf(child).constData());
        const Descriptors own = descriptorsOf(child);
        const QStringList hosts = descriptorsOf(host()).values();
        ASSERT_GE(own.size(), 4);
        EXPECT_EQ(own.value(0), text("/dev/null"));
        for (const int output : {1, 2}) {
            EXPECT_TRUE(own.value(output).startsWith(text("pipe:"))
                || own.value(output) == text("/dev/null"))
                << own.value(output).toStdString();
        }
        EXPECT_TRUE(own.value(3).startsWith(text("socket:"))) << own.value(3).toStdString();
        for (auto it = own.constFind(3); it != own.constEnd(); ++it) {
            const std::string what
                = QStringLiteral("%1: %2").arg(it.key()).arg(it.value()).toStdString();
            const bool isFile = it.value().startsWith(QLatin1Char('/'));
            EXPECT_FALSE(isFile && !it.value().startsWith(text("/dev/"))) << what;
            const bool isNamedAlike = it.value().startsWith(text("anon_inode:")) || isFile;
            EXPECT_TRUE(isNamedAlike || !hosts.contains(it.value())) << what;
        }
    }
};

TEST_F(DescriptorsSystem, ProcessesOfTheHostInheritNoDescriptors)
{
    RawWebSocket client(product.hostPort());
    ASSERT_TRUE(client.ask("{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"player.state\"}")
                    .contains("result"));
    play(text("trial%2001"));
    ASSERT_TRUE(waitForState(2));
    ASSERT_TRUE(isHeard());
    const qint64 former = worker();
    ASSERT_GT(former, 0);
    expectNothingOfTheHosts(former);

    ASSERT_EQ(::kill(static_cast<pid_t>(former), SIGKILL), 0);
    const QDeadlineTimer deadline(20000);
    while ((worker() == 0 || worker() == former) && !deadline.hasExpired())
        QThread::msleep(PollMs);
    ASSERT_FALSE(product.rows(text("TuneIn:"), {text("title")}).isEmpty());
    ASSERT_NE(worker(), former);
    ASSERT_TRUE(isHeard());
    const QList<qint64> children = childrenOf(host());
    EXPECT_TRUE(children.contains(worker()));
    for (const qint64 child : children)
        expectNothingOfTheHosts(child);
}

/// GStreamer runs a scanner program for plug-ins that are not in its registry.
TEST(DescriptorsSystemTest, TheCodecScannerInheritsNoDescriptors)
{
    const QTemporaryDir folder;
    const QString seen = folder.filePath(text("seen"));
    QFile scanner(folder.filePath(text("scanner")));
    ASSERT_TRUE(scanner.open(QIODevice::WriteOnly));
    scanner.write("#!/bin/sh\nls -l /proc/$$/fd > " + QFile::encodeName(seen) + "\nexit 1\n");
    scanner.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    scanner.close();
    qputenv("GST_PLUGIN_SCANNER", QFile::encodeName(scanner.fileName()));
    qputenv("GST_REGISTRY", QFile::encodeName(folder.filePath(text("registry"))));
    {
        const Product product({text("--log-file"), folder.filePath(text("log"))});
        EXPECT_TRUE(product.isUp());
    }
    qunsetenv("GST_PLUGIN_SCANNER");
    qunsetenv("GST_REGISTRY");

    const QByteArray lines = contents(seen);
    ASSERT_FALSE(lines.isEmpty());
    EXPECT_FALSE(lines.contains("socket:")) << lines.constData();
    EXPECT_FALSE(lines.contains("/log")) << lines.constData();
}

/// A connection that the replaced process had inherited would outlive the station.
TEST_F(DescriptorsSystem, AStationsConnectionIsClosedAfterTheProcessWasReplaced)
{
    const auto replaceWorker = [this] {
        const qint64 former = worker();
        ::kill(static_cast<pid_t>(former), SIGKILL);
        const QDeadlineTimer deadline(20000);
        while ((worker() == 0 || worker() == former) && !deadline.hasExpired())
            QThread::msleep(PollMs);
        EXPECT_FALSE(product.rows(text("TuneIn:"), {text("title")}).isEmpty());
    };
    for (const char *end : {"player.stop", "player.pause", "player.play"}) {
        SCOPED_TRACE(end);
        play(text("trial%2001"));
        ASSERT_TRUE(waitForState(2));
        replaceWorker();
        const QSet<QString> streams = streamConnections();
        ASSERT_EQ(streams.size(), 1);
        if (end == QByteArray("player.play"))
            play(text("liffey%20lights"));
        else
            command(end);
        const QDeadlineTimer deadline(5000);
        while (directoryConnections().intersects(streams) && !deadline.hasExpired())
            QThread::msleep(PollMs);
        EXPECT_FALSE(directoryConnections().intersects(streams));
        command("player.stop");
        ASSERT_TRUE(waitForState(0));
    }
}

} // namespace
