// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// \file
/// What plug-ins keep in their stores, in either arrangement.
#include "tests/host/HostProcess.h"

#include "ctl/RpcClient.h"
#include "tests/support/Text.h"
#include "tests/support/WorkerThread.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <csignal>
#include <iostream>
#include <random>
#include <thread>

namespace {

using testing::HasSubstr;

class HostStores : public testing::Test {
protected:
    std::unique_ptr<HostProcess> start(const QStringList &more = {}) const
    {
        return std::make_unique<HostProcess>(text(HOST_PROGRAM),
            QStringList {text("--plugin"), text(TEST_PLUGINS "/libvesk_cb_keeping.so"),
                text("--state-dir"), m_state}
                + more);
    }

    static RpcAnswer set(RpcClient &client, const QString &path, const QVariant &value)
    {
        return client.call(text("setData"),
            {{text("path"), path}, {text("role"), text("value")}, {text("value"), value}});
    }
    static RpcAnswer keep(RpcClient &client, const QString &key, const QVariant &value)
    {
        return set(client, text("Keeping:kept?key=") + key, value);
    }
    static RpcAnswer ask(RpcClient &client, const QString &key)
    {
        return client.call(text("getData"),
            {{text("path"), text("Keeping:kept?key=") + key},
                {text("roles"), QStringList {text("value")}}});
    }
    static QVariant kept(RpcClient &client, const QString &key)
    {
        const RpcAnswer answer = ask(client, key);
        EXPECT_EQ(answer.kind, RpcAnswer::Result) << answer.message.toStdString();
        return answer.result.toHash().value(text("values")).toList().value(0);
    }

    QTemporaryDir m_folder;
    QString m_state = m_folder.filePath(text("state"));
};

TEST_F(HostStores, KeepValuesFromOneHostToTheNext)
{
    auto host = start();
    ASSERT_TRUE(host->isReady()) << host->errors().toStdString();
    {
        RpcClient client(host->url());
        EXPECT_EQ(keep(client, text("a"), text("1")).kind, RpcAnswer::Result);
        EXPECT_TRUE(QFile::exists(m_state + text("/plugins/keeping.store")));
        EXPECT_EQ(kept(client, text("a")), QVariant(text("1")));
    }
    host->terminate();
    EXPECT_EQ(host->waitForEnd(), 0);
    host = start();
    RpcClient client(host->url());
    EXPECT_EQ(kept(client, text("a")), QVariant(text("1")));
}

TEST_F(HostStores, ClientsAndOtherPluginsReachNone)
{
    const auto host = start();
    ASSERT_TRUE(host->isReady()) << host->errors().toStdString();
    RpcClient client(host->url());
    const QVariantHash values {{text("stolen"), text("1")}};
    const RpcAnswer direct = set(client, text("store:keeping"), values);
    EXPECT_EQ(direct.kind, RpcAnswer::Error);
    EXPECT_EQ(client
                  .call(text("getData"),
                      {{text("path"), text("store:keeping")},
                          {text("roles"), QStringList {text("value")}}})
                  .kind,
        RpcAnswer::Error);
    for (const char *foreign : {"store:other", "store:keeping/x", "store:keeping?a=b", "store:"}) {
        const RpcAnswer answer
            = set(client, text("Keeping:kept?foreign=") + text(foreign), text("1"));
        EXPECT_EQ(answer.kind, RpcAnswer::Error) << foreign;
    }
    EXPECT_EQ(kept(client, text("stolen")), QVariant());
}

TEST_F(HostStores, TellWhenTheyCannotBeWritten)
{
    // No folder can be made where a file is.
    QFile inTheWay(m_state + text("/plugins"));
    ASSERT_TRUE(QDir().mkpath(m_state));
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    const auto host = start();
    ASSERT_TRUE(host->isReady()) << host->errors().toStdString();
    RpcClient client(host->url());
    const RpcAnswer refused = keep(client, text("a"), text("1"));
    EXPECT_EQ(refused.kind, RpcAnswer::Error);
    EXPECT_THAT(refused.message.toStdString(),
        HasSubstr("Not saved: the disk cannot be written. The log says more."));
    EXPECT_EQ(kept(client, text("a")), QVariant());
    ASSERT_TRUE(inTheWay.remove());
    EXPECT_EQ(keep(client, text("a"), text("2")).kind, RpcAnswer::Result);
    EXPECT_EQ(kept(client, text("a")), QVariant(text("2")));
}

/// The host killed at random moments during a thousand writes.
TEST_F(HostStores, KilledHostsLoseNothingConfirmed)
{
    constexpr int Writes = 1000;
    std::mt19937 random {std::random_device {}()};
    int written = 0;
    int deaths = 0;
    QHash<QString, QVariant> confirmed;
    while (written < Writes) {
        const auto host = start();
        ASSERT_TRUE(host->isReady()) << host->errors().toStdString();
        {
            RpcClient client(host->url());
            for (auto it = confirmed.constBegin(); it != confirmed.constEnd(); ++it)
                ASSERT_EQ(kept(client, it.key()), it.value()) << it.key().toStdString();
            const int most = 100 + static_cast<int>(random() % 2000);
            std::thread killer([&host, most] {
                std::this_thread::sleep_for(std::chrono::milliseconds(most));
                host->signal(SIGKILL);
            });
            for (;;) {
                const QString key = text("k") + QString::number(written % 100);
                const QVariant value = QString::number(written);
                const RpcAnswer answer = keep(client, key, value);
                if (answer.kind != RpcAnswer::Result) {
                    confirmed.remove(key); // either is right
                    break;
                }
                confirmed.insert(key, value);
                ++written;
            }
            killer.join();
        }
        host->waitForEnd();
        ++deaths;
        ASSERT_FALSE(QFile::exists(m_state + text("/plugins/keeping.store.damaged")));
    }
    std::cout << deaths << " deaths, " << written << " writes\n";
}

class HostStoresDeath : public HostStores { };

TEST_F(HostStoresDeath, OfAPluginLosesNothingItWasTold)
{
    const auto host = start({text("--restart-wait"), text("0.1")});
    ASSERT_TRUE(host->isReady()) << host->errors().toStdString();
    RpcClient client(host->url());
    for (int i = 0; i < 5; ++i) {
        const QString sent = QString::number(i);
        ASSERT_EQ(keep(client, text("a"), sent).kind, RpcAnswer::Result);
        const RpcAnswer answer = set(client, text("Keeping:kept?crash=1&key=b"), sent);
        EXPECT_EQ(answer.kind, RpcAnswer::Error) << "the process is gone";
        // Until the host has noticed, requests end with an error, too.
        EXPECT_TRUE(
            spinUntil([&] { return ask(client, text("a")).kind == RpcAnswer::Result; }, 20000));
        EXPECT_EQ(kept(client, text("a")), QVariant(sent));
    }
}

} // namespace
