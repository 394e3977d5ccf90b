// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// \file
/// A directory that answers slowly or not at all, and clients that do not wait for it.
#include "tests/support/RawWebSocket.h"
#include "tests/support/Text.h"
#include "tests/system/PlayFixture.h"

#include <QElapsedTimer>
#include <QFile>

#include <gmock/gmock.h>

namespace {

/// Far less than the directory takes, and far more than a busy machine needs.
constexpr int NotWaiting = 6000;

class StalledDirectorySystem : public PlayFixture {
protected:
    /// The host's child processes.
    QByteArray children() const
    {
        const QString pid = QString::number(product.host().processId());
        QFile file(QStringLiteral("/proc/%1/task/%1/children").arg(pid));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
};

/// Each row of a search needs the name of its genre; without the wait between attempts, each row
/// would take half a minute.
TEST_F(StalledDirectorySystem, AListOfGenresThatStallsIsWaitedForOnce)
{
    const QByteArray worker = children();
    product.setFault("stall@Describe.ashx");
    QElapsedTimer clock;
    clock.start();
    const Outcome first = product.ctl({text("play"), text("search:jazz"), text("3")});
    EXPECT_EQ(first.code, 0) << first.err.toStdString();
    ASSERT_TRUE(waitForState(2));
    EXPECT_LE(clock.elapsed(), 30000 + NotWaiting);

    clock.restart();
    const Outcome second = product.ctl({text("play"), text("search:jazz"), text("2")});
    EXPECT_EQ(second.code, 0) << second.err.toStdString();
    ASSERT_TRUE(waitForState(2));
    EXPECT_LE(clock.elapsed(), NotWaiting);
    command("player.stop");
    EXPECT_TRUE(children().startsWith(worker.trimmed())) << "the plug-in's process was replaced";
}

/// As the page does it: opening another screen cancels the request for the first.
TEST_F(StalledDirectorySystem, AnAbandonedScreenDelaysNoOther)
{
    product.setFault("slow-headers@Browse.ashx:12");
    RawWebSocket socket(product.hostPort());
    ASSERT_TRUE(socket.send(RawWebSocket::Text,
        R"({"jsonrpc":"2.0","id":1,"method":"getRows","params":{"path":"TuneIn:browse/uri/Browse.ashx?c=music"}})"));
    ASSERT_TRUE(product.waitForRequests(text("c=music"), 1));
    QElapsedTimer clock;
    clock.start();
    ASSERT_TRUE(socket.send(
        RawWebSocket::Text, R"({"jsonrpc":"2.0","method":"cancel","params":{"id":1}})"));
    EXPECT_THAT(socket.receive().payload.toStdString(), testing::HasSubstr("-32006"));
    const QByteArray other = socket.ask(
        R"({"jsonrpc":"2.0","id":2,"method":"getRows","params":{"path":"TuneIn:browse/uri/Search.ashx?query=jazz"}})");
    EXPECT_THAT(other.left(200).toStdString(), testing::HasSubstr("\"id\":2"));
    EXPECT_THAT(other.toStdString(), testing::HasSubstr("rowsCount"));
    EXPECT_LE(clock.elapsed(), NotWaiting);
}

/// The same for a client that has disconnected.
TEST_F(StalledDirectorySystem, ADisconnectedClientDelaysNoOther)
{
    product.setFault("slow-headers@Browse.ashx:12");
    {
        RawWebSocket socket(product.hostPort());
        ASSERT_TRUE(socket.send(RawWebSocket::Text,
            R"({"jsonrpc":"2.0","id":1,"method":"getRows","params":{"path":"TuneIn:browse/uri/Browse.ashx?c=music"}})"));
        ASSERT_TRUE(product.waitForRequests(text("c=music"), 1));
    }
    QElapsedTimer clock;
    clock.start();
    EXPECT_FALSE(
        product.rows(text("TuneIn:browse/uri/Search.ashx?query=jazz"), {text("title")}).isEmpty());
    EXPECT_LE(clock.elapsed(), NotWaiting);
}

} // namespace
