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
const QString SleepCall = QStringLiteral("sleep.state");
const QString AlarmsCall = QStringLiteral("alarms.list");

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
    EXPECT_EQ(host.asked(), (QStringList {StateCall, SleepCall, AlarmsCall}));
}

TEST(PlayerWatchTest, AVolumeThatIsTurnedIsNoFlood)
{
    FakeHost host({{StateCall, R"("result":{"title":"a","volume":0})"}});
    QList<QByteArray> changes;
    for (int volume = 1; volume <= 100; ++volume) {
        changes.append(
            R"({"jsonrpc":"2.0","method":"player.changed","params":{"title":"a","volume":)"
            + QByteArray::number(volume) + "}}");
    }
    host.setNotifications(StateCall, changes);
    QList<int> volumes;
    std::ostringstream out;
    const CtlTerminal terminal {out, out};
    CtlOptions options;
    options.host = host.url();
    HostSession session(options, terminal);
    PlayerWatch playerWatch(session, [&](const QVariantHash &state) {
        volumes.append(state.value(QStringLiteral("volume")).toInt());
        return volumes.last() < 100;
    });
    EXPECT_TRUE(playerWatch.run());
    EXPECT_EQ(volumes.first(), 0);
    EXPECT_LT(volumes.size(), 10);
}

TEST(PlayerWatchTest, ShowsTheSleepTimerAndTheAlarms)
{
    FakeHost host({{StateCall, R"("result":{"title":"a"})"},
        {SleepCall, R"("result":{"ends":null,"left":0})"},
        {AlarmsCall, R"("result":{"alarms":[],"missed":[],"ringing":null})"}});
    host.setNotifications(StateCall,
        {R"({"jsonrpc":"2.0","method":"sleep.changed","params":{"ends":"23:30","left":9}})"});
    QList<QVariantHash> states;
    std::ostringstream out;
    const CtlTerminal terminal {out, out};
    CtlOptions options;
    options.host = host.url();
    HostSession session(options, terminal);
    PlayerWatch playerWatch(session, [&](const QVariantHash &state) {
        states.append(state);
        if (states.size() == 2) {
            host.setResult(AlarmsCall, R"("result":{"alarms":[],"missed":[],"ringing":7})");
            host.notify(R"({"jsonrpc":"2.0","method":"alarms.changed","params":{}})");
        }
        return states.size() < 3;
    });
    EXPECT_TRUE(playerWatch.run());
    ASSERT_EQ(states.size(), 3);
    EXPECT_FALSE(states.at(0).contains(QStringLiteral("sleep")));
    const auto ends = [&](int index) {
        return states.at(index)
            .value(QStringLiteral("sleep"))
            .toHash()
            .value(QStringLiteral("ends"));
    };
    EXPECT_EQ(ends(1), QStringLiteral("23:30"));
    EXPECT_FALSE(states.at(1).contains(QStringLiteral("ringing")));
    EXPECT_EQ(ends(2), QStringLiteral("23:30"));
    EXPECT_EQ(states.at(2).value(QStringLiteral("ringing")), 7);
    EXPECT_EQ(host.timesAsked(AlarmsCall), 2);
    EXPECT_EQ(host.timesAsked(StateCall), 1);
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
    FakeHost host({{StateCall, R"("error":{"code":-32603,"message":"No."})"}});
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
