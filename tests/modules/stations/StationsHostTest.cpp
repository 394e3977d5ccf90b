// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// \file
/// The plug-in in a host, as clients see it, in either arrangement.
#include "tests/host/HostProcess.h"

#include "api/values/CMPath.h"
#include "ctl/RpcClient.h"
#include "tests/host/player/Recording.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/Text.h"

#include <QDir>
#include <QFile>
#include <QSet>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <iostream>
#include <random>
#include <thread>

namespace {

class StationsHosts : public testing::Test {
protected:
    std::unique_ptr<HostProcess> start(const QStringList &more = {}) const
    {
        auto host = std::make_unique<HostProcess>(text(HOST_PROGRAM),
            QStringList {text("--plugin"), text(STATIONS_PLUGIN), text("--state-dir"), m_state}
                + more);
        EXPECT_TRUE(host->isReady()) << host->errors().toStdString();
        return host;
    }

    static RpcAnswer act(RpcClient &client, const char *action, const CMPath::Params &params)
    {
        return client.call(text("setData"),
            {{text("path"), CMPath(text("Stations"), text(action), params).toEncoded()},
                {text("role"), text("activate")}, {text("value"), QVariant()}});
    }
    static RpcAnswer add(RpcClient &client, const QString &address)
    {
        return act(client, "do/add", {{text("address"), address}});
    }
    static QVariantHash rows(RpcClient &client, const QString &path)
    {
        const RpcAnswer answer = client.call(text("getRows"),
            {{text("path"), path}, {text("last"), 9999},
                {text("roles"), QStringList {text("title"), text("path"), text("description")}}});
        EXPECT_EQ(answer.kind, RpcAnswer::Result) << answer.message.toStdString();
        return answer.result.toHash();
    }
    static QStringList titles(RpcClient &client, const QString &path)
    {
        QStringList titles;
        const QVariantList all = rows(client, path).value(text("rows")).toList();
        for (const QVariant &row : all)
            titles.append(row.toList().value(0).toString());
        return titles;
    }
    /// The list as a file.
    static QString exported(RpcClient &client)
    {
        const RpcAnswer answer = client.call(text("getData"),
            {{text("path"), text("Stations:export?format=m3u")},
                {text("roles"), QStringList {text("value")}}});
        EXPECT_EQ(answer.kind, RpcAnswer::Result) << answer.message.toStdString();
        const QVariantList values = answer.result.toHash().value(text("values")).toList();
        return values.value(0).toHash().value(text("data")).toString();
    }

    QTemporaryDir m_folder;
    QString m_state = m_folder.filePath(text("state"));
};

} // namespace

TEST_F(StationsHosts, KeepTheListFromOneHostToTheNext)
{
    auto host = start();
    {
        RpcClient client(host->url());
        EXPECT_EQ(titles(client, text("host:services")), QStringList(text("Stations")));
        EXPECT_EQ(add(client, text("http://a")).kind, RpcAnswer::Result);
        EXPECT_EQ(act(client, "do/folder", {{text("title"), text("F")}}).kind, RpcAnswer::Result);
        const RpcAnswer again = add(client, text("http://a"));
        EXPECT_EQ(again.kind, RpcAnswer::Error);
        EXPECT_EQ(again.message, text("This address is in the list already."));
    }
    host->terminate();
    EXPECT_EQ(host->waitForEnd(), 0);
    host = start();
    RpcClient client(host->url());
    EXPECT_EQ(titles(client, text("Stations:")).mid(2, 2), QStringList({text("a"), text("F")}));
}

TEST_F(StationsHosts, ImportAndExportFiles)
{
    const auto host = start();
    RpcClient client(host->url());
    const QByteArray file = "<opml><body><outline text='F'><outline text='A' "
                            "URL='http://a'/></outline><outline URL='x'/></body></opml>";
    const RpcAnswer answer = client.call(text("setData"),
        {{text("path"), text("Stations:import")}, {text("role"), text("value")},
            {text("value"),
                QVariantHash {{text("name"), text("x.opml")}, {text("id"), text("1")},
                    {text("part"), 0}, {text("parts"), 1},
                    {text("data"), QString::fromLatin1(file.toBase64())}}}});
    ASSERT_EQ(answer.kind, RpcAnswer::Result) << answer.message.toStdString();
    const QVariantHash result = answer.result.toHash().value(text("value")).toHash();
    EXPECT_EQ(result.value(text("added")).toInt(), 1);
    EXPECT_EQ(result.value(text("skipped")).toInt(), 1);
    EXPECT_EQ(result.value(text("message")).toString(),
        text("Left out, without an http or https address: 1"));
    EXPECT_EQ(
        exported(client), text("#EXTM3U\n#PLAYLIST:Stations\n#EXTGRP:F\n#EXTINF:-1,A\nhttp://a\n"));
}

/// Files that the listener puts into the plug-in's folder, which a process of its own may read.
TEST_F(StationsHosts, ShowTheFilesInTheirFolder)
{
    const auto host = start();
    RpcClient client(host->url());
    const QDir folder(m_state + text("/plugins/stations"));
    ASSERT_TRUE(folder.exists());
    QFile file(folder.filePath(text("mine.m3u")));
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    file.write("http://a\n");
    file.close();
    EXPECT_EQ(titles(client, text("Stations:")).value(2), text("mine.m3u"));
    EXPECT_EQ(titles(client, text("Stations:file?name=mine.m3u")), QStringList(text("a")));
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    file.write("http://other\n");
    file.close();
    EXPECT_EQ(titles(client, text("Stations:file?name=mine.m3u")), QStringList(text("other")));
    EXPECT_EQ(titles(client, text("Stations:results?text=other")), QStringList(text("other")));
    ASSERT_TRUE(file.remove());
    EXPECT_EQ(rows(client, text("Stations:")).value(text("rowsCount")).toInt(), 3);
}

/// Listening to an address before it is kept.
TEST_F(StationsHosts, AskWhetherToKeepAnAddressOnceItPlays)
{
    const QByteArray tone = recordedTone("lamemp3enc", 440, 10);
    ASSERT_FALSE(tone.isEmpty());
    const ScriptedServer server([&tone](const ScriptedServer::Request &) {
        ScriptedServer::Response response;
        response.headers = {{"Content-Type", "audio/mpeg"}};
        response.body = tone;
        return response;
    });
    const auto host = start({text("--audio"), text("null"), text("--set"),
        text("settings:network/localAddresses=true")});
    RpcClient client(host->url());
    const QString address = QStringLiteral("http://127.0.0.1:%1/tone").arg(server.port());
    const QString screen
        = CMPath(text("Stations"), text("add"), {{text("address"), address}}).toEncoded();
    EXPECT_EQ(titles(client, screen),
        QStringList({text("127.0.0.1/tone"), text("Keep it without listening")}));
    bool isChanged = false;
    client.setNotified([&](const QString &method, const QVariantHash &params) {
        isChanged
            = isChanged || (method == text("changed") && params.value(text("path")) == screen);
    });
    ASSERT_EQ(client.call(text("subscribe"), {{text("path"), screen}}).kind, RpcAnswer::Result);
    const RpcAnswer play
        = client.call(text("player.play"), {{text("screen"), screen}, {text("row"), 0}});
    ASSERT_EQ(play.kind, RpcAnswer::Result) << play.message.toStdString();
    ASSERT_TRUE(client.waitUntil([&isChanged] { return isChanged; }));
    EXPECT_EQ(titles(client, screen),
        QStringList(
            {text("127.0.0.1/tone"), text("This address plays. Keep it?"), text("Keep it")}));
    EXPECT_EQ(add(client, address).kind, RpcAnswer::Result);
    EXPECT_EQ(titles(client, text("Stations:")).value(2), text("127.0.0.1/tone"));
}

/// The host killed at random moments while a thousand stations are added.
TEST_F(StationsHosts, KilledLoseNoStationThatWasConfirmed)
{
    constexpr int Stations = 1000;
    const unsigned seed = std::random_device {}();
    SCOPED_TRACE(seed);
    std::mt19937 random {seed};
    QSet<QString> confirmed;
    int deaths = 0;
    int next = 0;
    while (confirmed.size() < Stations) {
        const auto host = start();
        ASSERT_TRUE(host->isReady());
        {
            RpcClient client(host->url());
            const QStringList lines = exported(client).split(QLatin1Char('\n'));
            const QSet<QString> kept(lines.begin(), lines.end());
            ASSERT_TRUE(kept.contains(confirmed)) << (QSet<QString>(confirmed) - kept).size();
            const int wait = 100 + static_cast<int>(random() % 2000);
            std::thread killer([&host, wait] {
                std::this_thread::sleep_for(std::chrono::milliseconds(wait));
                host->signal(SIGKILL);
            });
            for (;;) {
                const QString address = QStringLiteral("http://stations.example/%1").arg(next++);
                if (add(client, address).kind != RpcAnswer::Result)
                    break;
                confirmed.insert(address);
            }
            killer.join();
        }
        host->waitForEnd();
        ++deaths;
        ASSERT_FALSE(QFile::exists(m_state + text("/plugins/stations.store.damaged")));
    }
    EXPECT_GT(deaths, 0);
    const auto host = start();
    RpcClient client(host->url());
    const QStringList lines = exported(client).split(QLatin1Char('\n'));
    EXPECT_TRUE(QSet<QString>(lines.begin(), lines.end()).contains(confirmed));
    std::cout << deaths << " deaths, " << confirmed.size() << " stations\n";
}
