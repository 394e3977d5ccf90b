// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/host/announce/PrivateBus.h"
#include "tests/support/Text.h"
#include "tests/support/WorkerThread.h"
#include "tests/system/Product.h"

#include <QElapsedTimer>

#include <gmock/gmock.h>

#include <csignal>

namespace {

/// The host as a desktop's remote control sees it.
class MprisSystem : public testing::Test {
protected:
    static QByteArray playerctl(const QStringList &arguments)
    {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(text("playerctl"), arguments);
        process.waitForFinished();
        return process.readAll().trimmed();
    }
    /// The host answers requests before it has its name on the bus, which it does not wait for.
    static bool isOnTheBus()
    {
        return spinUntil([] { return playerctl({text("-l")}) == "vesk"; }, 30000);
    }
    static bool isVolume(const char *volume)
    {
        return spinUntil([&] { return playerctl({text("volume")}) == volume; }, 30000);
    }
    static bool isStatus(const char *status)
    {
        return spinUntil([&] { return playerctl({text("status")}) == status; }, 30000);
    }
    static QVariantHash stateOf(const Product &product)
    {
        return product.rpc(text("player.state"), {})[text("result")].toHash();
    }
    static void play(const Product &product, const char *query)
    {
        product.rpc(text("player.play"),
            {{text("screen"), text("TuneIn:browse/uri/Search.ashx?query=") + text(query)},
                {text("row"), 0}});
    }

    PrivateBus m_bus {"DBUS_SESSION_BUS_ADDRESS"};
};

TEST_F(MprisSystem, PlayerctlControlsTheHost)
{
    ASSERT_TRUE(m_bus.isRunning());
    Product product({text("--audio"), text("null")});
    ASSERT_TRUE(product.isUp());
    ASSERT_TRUE(isOnTheBus());
    EXPECT_EQ(playerctl({text("status")}), "Stopped");
    play(product, "trial%2001");
    ASSERT_TRUE(isStatus("Playing"));
    const QString title = stateOf(product)[text("title")].toString();
    ASSERT_FALSE(title.isEmpty());
    EXPECT_TRUE(playerctl({text("metadata")}).contains(title.toUtf8()));
    const QByteArray track = playerctl({text("metadata"), text("mpris:trackid")});
    // While it connects it cannot be paused.
    ASSERT_TRUE(spinUntil([&] { return stateOf(product)[text("state")].toInt() == 2; }, 30000));
    playerctl({text("pause")});
    EXPECT_TRUE(isStatus("Paused"));
    playerctl({text("play-pause")});
    EXPECT_TRUE(isStatus("Playing"));
    playerctl({text("stop")});
    EXPECT_TRUE(isStatus("Stopped"));
    playerctl({text("play-pause")});
    EXPECT_TRUE(isStatus("Playing"));
    EXPECT_NE(playerctl({text("metadata"), text("mpris:trackid")}), track);
    EXPECT_EQ(product.stopHost(), 0);
    EXPECT_EQ(playerctl({text("-l")}), "No players found");
}

TEST_F(MprisSystem, PlayerctlSetsTheVolumeAndGoesThroughThePresets)
{
    ASSERT_TRUE(m_bus.isRunning());
    Product product({text("--audio"), text("null")});
    ASSERT_TRUE(product.isUp());
    ASSERT_TRUE(isOnTheBus());
    const auto volume
        = [&] { return product.rpc(text("player.volume"), {})[text("result")].toHash(); };
    playerctl({text("volume"), text("0.4")});
    ASSERT_TRUE(spinUntil([&] { return volume()[text("volume")].toInt() == 40; }, 30000));
    product.rpc(text("player.volume"), {{text("change"), 20}});
    EXPECT_TRUE(isVolume("0.600000"));
    product.rpc(text("player.mute"), {{text("mute"), true}});
    EXPECT_TRUE(isVolume("0.000000"));
    playerctl({text("volume"), text("0.5")});
    EXPECT_TRUE(isVolume("0.500000"));
    EXPECT_FALSE(volume()[text("mute")].toBool());

    QStringList titles;
    for (const char *query : {"trial%2001", "trial%2002"}) {
        const QString screen = text("TuneIn:browse/uri/Search.ashx?query=") + text(query);
        const QVariantHash saved = product.rpc(text("presets.save"),
            {{text("number"), titles.size() + 1}, {text("screen"), screen}, {text("row"), 0}});
        ASSERT_TRUE(saved.contains(text("result")));
        titles.append(
            product.rows(screen, {text("title")}, 0).value(0).toList().value(0).toString());
    }
    ASSERT_NE(titles.at(0), titles.at(1));
    const auto isPlayed = [&](const QString &title) {
        return spinUntil(
            [&] { return playerctl({text("metadata")}).contains(title.toUtf8()); }, 30000);
    };
    playerctl({text("next")});
    EXPECT_TRUE(isPlayed(titles.at(0)));
    playerctl({text("next")});
    EXPECT_TRUE(isPlayed(titles.at(1)));
    playerctl({text("previous")});
    EXPECT_TRUE(isPlayed(titles.at(0)));
}

/// A session bus that hangs holds up neither the start, nor a play, nor the end.
TEST_F(MprisSystem, ABusThatHangsIsNotWaitedFor)
{
    m_bus.signal(SIGSTOP);
    Product product({text("--audio"), text("null"), text("--watchdog"), text("5")});
    ASSERT_TRUE(product.isUp());
    play(product, "trial%2001");
    m_bus.signal(SIGCONT);
    ASSERT_TRUE(isStatus("Playing"));
    m_bus.signal(SIGSTOP);
    QElapsedTimer clock;
    clock.start();
    product.rpc(text("player.stop"), {});
    EXPECT_EQ(product.stopHost(), 0);
    EXPECT_LT(clock.elapsed(), 10000);
    m_bus.signal(SIGCONT);
}

} // namespace
