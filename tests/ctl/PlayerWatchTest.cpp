// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/PlayerWatch.h"

#include "tests/ctl/FakeHost.h"

#include <gmock/gmock.h>

#include <csignal>
#include <optional>
#include <sstream>
#include <unistd.h>

namespace {

const QString StateCall = QStringLiteral("player.state");

QByteArray change(const char *title)
{
    return QByteArray(R"({"jsonrpc":"2.0","method":"player.changed","params":{"title":")") + title
        + "\"}}";
}

struct Watched {
    /// The status with which the watch failed, if it did.
    std::optional<CtlStatus> failure;
    QString titles;
    std::string errors;
};

/// Watches until \a count states have arrived; calls \a each for each of them.
Watched watch(
    const QString &url, int count, const std::function<void()> &each = {}, int output = -1)
{
    std::ostringstream out;
    std::ostringstream errors;
    CtlTerminal terminal {out, errors};
    terminal.output = output;
    CtlOptions options;
    options.host = url;
    HostSession session(options, terminal);
    QStringList titles;
    PlayerWatch playerWatch(session, [&](const QVariantHash &state) {
        titles.append(state.value(QStringLiteral("title")).toString());
        if (each)
            each();
        return titles.size() < count;
    });
    const CtlResult<> result = playerWatch.run();
    return {result ? std::nullopt : std::optional(result.error()), titles.join(QLatin1Char(' ')),
        errors.str()};
}

TEST(PlayerWatchTest, ShowsTheStateAndEachChange)
{
    FakeHost host({{StateCall, R"("result":{"title":"a"})"}});
    host.setNotifications(StateCall, {change("b"), change("c")});
    const Watched watched = watch(host.url(), 3);
    EXPECT_FALSE(watched.failure);
    EXPECT_EQ(watched.titles, QStringLiteral("a b c"));
    EXPECT_EQ(watched.errors, "");
    EXPECT_EQ(host.asked(), QStringList {StateCall});
}

TEST(PlayerWatchTest, IgnoresOtherMessages)
{
    FakeHost host({{StateCall, R"("result":{"title":"a"})"}});
    host.setNotifications(StateCall,
        {R"({"jsonrpc":"2.0","id":77,"result":{}})",
            R"({"jsonrpc":"2.0","method":"changed","params":{}})",
            R"({"jsonrpc":"2.0","method":["player.changed"],"params":7})", change("b")});
    EXPECT_EQ(watch(host.url(), 2).titles, QStringLiteral("a b"));
}

TEST(PlayerWatchTest, FailsWithTheHostsError)
{
    FakeHost host({{StateCall, R"("error":{"code":-32601,"message":"No."})"}});
    const Watched watched = watch(host.url(), 1);
    EXPECT_EQ(watched.failure, CtlStatus::Failed);
    EXPECT_EQ(watched.errors, "veskctl: No.\n");
}

TEST(PlayerWatchTest, FailsWithoutAHostAtTheStart)
{
    FakeHost host;
    host.setClosing(StateCall, 1000);
    EXPECT_EQ(watch(host.url(), 1).failure, CtlStatus::NoHost);
    EXPECT_EQ(watch(QStringLiteral("http://127.0.0.1:1/"), 1).failure, CtlStatus::NoHost);
}

TEST(PlayerWatchTest, ReconnectsWhenTheHostSendsNoJsonRpc)
{
    for (const char *nonsense : {"{", "[]", "null", "{}", "\"\""}) {
        FakeHost host({{StateCall, R"("result":{"title":"a"})"}});
        host.setNotifications(StateCall, {nonsense});
        const Watched watched = watch(host.url(), 2);
        EXPECT_EQ(watched.titles, QStringLiteral("a a")) << nonsense;
        EXPECT_EQ(watched.errors, "veskctl: the host is gone; waiting until it is back\n");
    }
}

TEST(PlayerWatchTest, ReconnectsWhenTheHostIsBack)
{
    FakeHost host({{StateCall, R"("result":{"title":"a"})"}});
    host.setNotifications(StateCall, {"no host any more"});
    int seen = 0;
    const Watched watched = watch(host.url(), 3, [&] {
        if (++seen > 1)
            return;
        // The first attempt to reconnect is cut off, the second succeeds.
        host.setClosing(StateCall, 1);
        host.setNotifications(StateCall, {change("b")});
    });
    EXPECT_FALSE(watched.failure);
    EXPECT_EQ(watched.titles, QStringLiteral("a a b"));
    EXPECT_EQ(watched.errors, "veskctl: the host is gone; waiting until it is back\n");
}

TEST(PlayerWatchTest, EndsOnASignal)
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        FakeHost host({{StateCall, R"("result":{"title":"a"})"}});
        const Watched watched = watch(host.url(), 1000, [signal] { ::raise(signal); });
        EXPECT_FALSE(watched.failure);
        EXPECT_EQ(watched.titles, QStringLiteral("a"));
    }
}

TEST(PlayerWatchTest, EndsWhenItsOutputIsClosed)
{
    int pipe[2] = {-1, -1};
    ASSERT_EQ(::pipe(pipe), 0);
    FakeHost host({{StateCall, R"("result":{"title":"a"})"}});
    const Watched watched = watch(
        host.url(), 1000, [&pipe] { ::close(pipe[0]); }, pipe[1]);
    EXPECT_FALSE(watched.failure);
    EXPECT_EQ(watched.titles, QStringLiteral("a"));
    ::close(pipe[1]);
}

} // namespace
