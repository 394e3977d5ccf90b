// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// \file
/// What happens to plug-ins that have read a setting when it changes.
#include "tests/host/HostProcess.h"

#include "ctl/RpcClient.h"

#include <QElapsedTimer>

#include <gmock/gmock.h>

#include <glib.h>

#include <chrono>
#include <future>
#include <thread>

namespace {

using testing::HasSubstr;
using testing::Not;

const char PartnerId[] = "settings:tunein/partnerId";

/// Milliseconds. Changes settle for 300: those that the host may have got further apart, because
/// the machine stood still, say nothing about changes that come close together.
constexpr qint64 ShorterThanSettling = 200;
constexpr int MaxRounds = 20;

class SettingsRestart : public testing::Test {
protected:
    SettingsRestart()
        : m_host(QStringLiteral(HOST_PROGRAM),
            {QStringLiteral("--plugin"), QStringLiteral(TEST_PLUGINS "/libvesk_cb_reading.so")})
        , m_client(m_host.url())
    {
    }

    RpcAnswer set(const char *path, const QVariant &value) { return set(m_client, path, value); }
    static RpcAnswer set(RpcClient &client, const char *path, const QVariant &value)
    {
        return client.call(QStringLiteral("setData"),
            {{QStringLiteral("path"), QLatin1String(path)},
                {QStringLiteral("role"), QStringLiteral("value")},
                {QStringLiteral("value"), value}});
    }

    std::string get(const char *path) { return get(m_client, path); }
    /// The plug-in's answer, or the error.
    static std::string get(RpcClient &client, const char *path)
    {
        const RpcAnswer answer = client.call(QStringLiteral("getData"),
            {{QStringLiteral("path"), QLatin1String(path)},
                {QStringLiteral("roles"), QStringList {QStringLiteral("value")}}});
        if (answer.kind != RpcAnswer::Result)
            return (QStringLiteral("error: ") + answer.message).toStdString();
        const QVariantHash result = answer.result.toHash();
        return result.value(QStringLiteral("values")).toList().value(0).toString().toStdString();
    }

    /// Repeats the request until the answer is \a wanted or the time is up; returns the last
    /// answer.
    std::string getUntil(const char *path, const char *wanted, int milliseconds)
    {
        QElapsedTimer clock;
        clock.start();
        std::string answer;
        while ((answer = get(path)) != wanted && clock.elapsed() < milliseconds)
            wait(50);
        return answer;
    }

    /// A request on another connection, from another thread.
    std::future<std::string> getMeanwhile(const char *path)
    {
        return meanwhile([path](RpcClient &client) { return get(client, path); });
    }
    std::future<std::string> setMeanwhile(const char *path)
    {
        return meanwhile([path](RpcClient &client) {
            const RpcAnswer answer = set(client, path, 1);
            return answer.kind == RpcAnswer::Result
                ? answer.result.toHash().value(QStringLiteral("value")).toString().toStdString()
                : answer.message.toStdString();
        });
    }
    template <class Call>
    std::future<std::string> meanwhile(Call call)
    {
        return std::async(std::launch::async, [url = m_host.url(), call] {
            GMainContext *context = g_main_context_new();
            g_main_context_push_thread_default(context);
            std::string answer;
            {
                RpcClient client(url);
                answer = call(client);
            }
            g_main_context_pop_thread_default(context);
            g_main_context_unref(context);
            return answer;
        });
    }

    static void wait(int milliseconds)
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
    }

    HostProcess m_host;
    RpcClient m_client;
};

TEST_F(SettingsRestart, RequestsAfterAChangeAreAnsweredWithIt)
{
    EXPECT_EQ(get("Reading:kept"), "");
    const std::string before = get("Reading:instance");
    ASSERT_EQ(set(PartnerId, QStringLiteral("abc")).kind, RpcAnswer::Result);
    EXPECT_EQ(get("Reading:kept"), "abc");
    EXPECT_NE(get("Reading:instance"), before);
    ASSERT_EQ(set(PartnerId, QStringLiteral("def")).kind, RpcAnswer::Result);
    EXPECT_EQ(get("Reading:kept"), "def");
    m_host.terminate();
    EXPECT_EQ(m_host.waitForEnd(), 0);
    const std::string log = m_host.errors().toStdString();
    EXPECT_THAT(log, Not(HasSubstr("ERROR"))) << "a restart for a setting is no error";
    EXPECT_THAT(log, HasSubstr("a setting that it has read has changed"));
}

TEST_F(SettingsRestart, ABurstOfChangesIsOneRestart)
{
    const auto restarts
        = [this] { return m_host.newErrors().count("a setting that it has read has changed"); };
    bool isBurst = false;
    for (int round = 0; round < MaxRounds && !isBurst; ++round) {
        const std::string before = get("Reading:instance");
        const int restartsBefore = restarts();
        isBurst = true;
        QElapsedTimer clock;
        clock.start();
        qint64 previous = 0;
        for (int i = 0; i < 10; ++i) {
            const qint64 sent = clock.elapsed();
            ASSERT_EQ(set(PartnerId, QStringLiteral("id%1 %2").arg(i).arg(round)).kind,
                RpcAnswer::Result);
            isBurst = isBurst && clock.elapsed() - previous < ShorterThanSettling;
            previous = sent;
            wait(20);
        }
        const std::string after = get("Reading:instance");
        EXPECT_NE(after, before);
        EXPECT_EQ(get("Reading:kept"), "id9 " + std::to_string(round));
        wait(700); // more than the time in which changes settle
        EXPECT_EQ(get("Reading:instance"), after);
        if (isBurst) {
            EXPECT_EQ(restarts(), restartsBefore + 1);
        }
    }
    EXPECT_TRUE(isBurst) << "the machine stood still in each of them";
    m_host.terminate();
    EXPECT_EQ(m_host.waitForEnd(), 0);
}

TEST_F(SettingsRestart, AChangeThatIsUndoneRestartsNothing)
{
    bool isAtOnce = false;
    for (int round = 0; round < MaxRounds && !isAtOnce; ++round) {
        const std::string before = get("Reading:instance");
        QElapsedTimer clock;
        clock.start();
        ASSERT_EQ(set(PartnerId, QStringLiteral("abc")).kind, RpcAnswer::Result);
        ASSERT_EQ(set(PartnerId, QString()).kind, RpcAnswer::Result);
        isAtOnce = clock.elapsed() < ShorterThanSettling;
        if (!isAtOnce)
            continue;
        EXPECT_EQ(get("Reading:instance"), before);
        wait(700);
        EXPECT_EQ(get("Reading:instance"), before);
    }
    EXPECT_TRUE(isAtOnce) << "the machine stood still in each of them";
}

TEST_F(SettingsRestart, SettingsThatAreReadWithEachRequestOrSubscribedToRestartNothing)
{
    const std::string before = get("Reading:instance");
    EXPECT_EQ(get("Reading:fresh"), "");
    ASSERT_EQ(set("settings:tunein/browseIndexUrl", QStringLiteral("http://a.example/")).kind,
        RpcAnswer::Result);
    EXPECT_EQ(get("Reading:fresh"), "http://a.example/");
    EXPECT_EQ(get("Reading:followed"), "true");
    ASSERT_EQ(set("settings:tunein/enabledFixItWizard", false).kind, RpcAnswer::Result);
    wait(700);
    EXPECT_EQ(get("Reading:followed"), "false");
    ASSERT_EQ(set("settings:browser/childElementsInSingleList", false).kind, RpcAnswer::Result);
    wait(700);
    EXPECT_EQ(get("Reading:instance"), before);
}

TEST_F(SettingsRestart, AListThatForwardsChangesDoesNotCountAsSubscribed)
{
    ASSERT_EQ(m_client
                  .call(QStringLiteral("subscribe"),
                      {{QStringLiteral("path"), QStringLiteral("Reading:")}})
                  .kind,
        RpcAnswer::Result);
    EXPECT_EQ(get("Reading:kept"), "");
    ASSERT_EQ(set(PartnerId, QStringLiteral("abc")).kind, RpcAnswer::Result);
    EXPECT_EQ(get("Reading:kept"), "abc");
}

TEST_F(SettingsRestart, SubscribersAreNotifiedToReadAgain)
{
    bool isTold = false;
    m_client.setNotified([&](const QString &method, const QVariantHash &params) {
        isTold |= method == QLatin1String("changed")
            && params.value(QStringLiteral("path")) == QLatin1String("Reading:instance")
            && params.value(QStringLiteral("kind")) == QLatin1String("rowsReset");
    });
    ASSERT_EQ(m_client
                  .call(QStringLiteral("subscribe"),
                      {{QStringLiteral("path"), QStringLiteral("Reading:instance")}})
                  .kind,
        RpcAnswer::Result);
    ASSERT_EQ(set(PartnerId, QStringLiteral("abc")).kind, RpcAnswer::Result);
    EXPECT_TRUE(m_client.waitUntil([&] { return isTold; }));
}

TEST_F(SettingsRestart, RequestsUnderWayAreAnswered)
{
    auto read = getMeanwhile("Reading:kept?ms=1500");
    wait(200);
    auto waiting = getMeanwhile("Reading:instance");
    wait(100);
    ASSERT_EQ(set(PartnerId, QStringLiteral("abc")).kind, RpcAnswer::Result);
    const std::string later = get("Reading:kept");
    EXPECT_EQ(later, "abc");
    EXPECT_THAT(read.get(), testing::AnyOf("", "abc"));
    EXPECT_THAT(waiting.get(), Not(HasSubstr("error")));
}

TEST_F(SettingsRestart, AChangeUnderWayIsFinishedFirst)
{
    get("Reading:kept");
    auto writing = setMeanwhile("Reading:kept?ms=6000");
    wait(1500);
    QElapsedTimer clock;
    clock.start();
    ASSERT_EQ(set(PartnerId, QStringLiteral("abc")).kind, RpcAnswer::Result);
    EXPECT_EQ(get("Reading:kept"), "abc");
    EXPECT_GE(clock.elapsed(), 900) << "the restart waits for the change under way";
    EXPECT_EQ(writing.get(), "") << "answered by the process that began it";
}

TEST_F(SettingsRestart, AChangeDuringARestartCounts)
{
    get("Reading:kept");
    for (int i = 0; i < 6; ++i) {
        ASSERT_EQ(set(PartnerId, QStringLiteral("id%1").arg(i)).kind, RpcAnswer::Result);
        wait(250 + 40 * i); // before, while and after the plug-in is replaced
        ASSERT_EQ(set(PartnerId, QStringLiteral("id%1x").arg(i)).kind, RpcAnswer::Result);
        EXPECT_EQ(get("Reading:kept"), "id" + std::to_string(i) + "x");
    }
}

TEST_F(SettingsRestart, APlugInThatFailsWithOneSettingIsLoadedWithAnother)
{
    get("Reading:kept");
    ASSERT_EQ(set(PartnerId, QStringLiteral("wrong")).kind, RpcAnswer::Result);
    EXPECT_THAT(get("Reading:kept"), HasSubstr("error: "));
    ASSERT_EQ(set(PartnerId, QStringLiteral("right")).kind, RpcAnswer::Result);
    EXPECT_EQ(getUntil("Reading:kept", "right", 20000), "right");
    ASSERT_EQ(set(PartnerId, QStringLiteral("other")).kind, RpcAnswer::Result);
    EXPECT_EQ(get("Reading:kept"), "other");
}

TEST_F(SettingsRestart, AnUndoneChangeDuringARestartReleasesWaitingRequests)
{
    get("Reading:kept");
    for (int milliseconds = 270; milliseconds < 400; milliseconds += 15) {
        ASSERT_EQ(set(PartnerId, QStringLiteral("a")).kind, RpcAnswer::Result);
        wait(milliseconds);
        ASSERT_EQ(set(PartnerId, QStringLiteral("b")).kind, RpcAnswer::Result);
        ASSERT_EQ(set(PartnerId, QStringLiteral("a")).kind, RpcAnswer::Result);
        EXPECT_EQ(get("Reading:kept"), "a") << milliseconds;
        ASSERT_EQ(set(PartnerId, QString()).kind, RpcAnswer::Result);
        EXPECT_EQ(get("Reading:kept"), "") << milliseconds;
    }
}

TEST_F(SettingsRestart, TheHostEndsCleanlyDuringARestart)
{
    for (int milliseconds : {0, 250, 310, 340}) {
        HostProcess host(QStringLiteral(HOST_PROGRAM),
            {QStringLiteral("--plugin"), QStringLiteral(TEST_PLUGINS "/libvesk_cb_reading.so")});
        RpcClient client(host.url());
        ASSERT_EQ(set(client, PartnerId, QStringLiteral("abc")).kind, RpcAnswer::Result);
        wait(milliseconds);
        host.terminate();
        EXPECT_EQ(host.waitForEnd(), 0) << milliseconds;
    }
}

/// Not with the plug-in in the host's process, because its crash would end the host.
class SettingsRestartDeath : public SettingsRestart { };

TEST_F(SettingsRestartDeath, APlugInThatCrashesOnASettingComesBackWithTheNextChange)
{
    get("Reading:kept");
    ASSERT_EQ(set(PartnerId, QStringLiteral("fatal")).kind, RpcAnswer::Result);
    EXPECT_EQ(get("Reading:kept"), "error: The Reading service was interrupted. Please try again.");
    ASSERT_EQ(set(PartnerId, QStringLiteral("fine")).kind, RpcAnswer::Result);
    EXPECT_EQ(getUntil("Reading:kept", "fine", 20000), "fine");
}

TEST_F(SettingsRestartDeath, AChangeEndsTheWaitForTheNextTry)
{
    get("Reading:kept");
    ASSERT_EQ(set(PartnerId, QStringLiteral("fatal")).kind, RpcAnswer::Result);
    QElapsedTimer clock;
    clock.start();
    std::string log;
    while (log.find("starting again in 16000 ms") == std::string::npos && clock.elapsed() < 60000) {
        wait(50);
        log = m_host.newErrors().toStdString();
    }
    ASSERT_THAT(log, HasSubstr("starting again in 16000 ms"));
    ASSERT_EQ(set(PartnerId, QStringLiteral("fine")).kind, RpcAnswer::Result);
    EXPECT_EQ(getUntil("Reading:kept", "fine", 11000), "fine");
}

} // namespace
