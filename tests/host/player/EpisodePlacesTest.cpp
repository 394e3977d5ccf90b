// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/EpisodePlaces.h"

#include "tests/host/player/PlayLogicFixture.h"

namespace {

using Milliseconds = std::chrono::milliseconds;

/// Remembers what is asked of it, as "keep 90" or "forget".
class FakePlaces : public EpisodePlaces {
public:
    void find(const CMPath &path, std::function<void(Milliseconds)> found) override
    {
        paths.append(path.toEncoded());
        if (hold)
            waiting = std::move(found);
        else
            found(place);
    }
    void keep(const CMPath &, Milliseconds where) override
    {
        calls.append(text("keep %1").arg(where.count() / 1000));
    }
    void forget(const CMPath &) override { calls.append(text("forget")); }

    Milliseconds place {0};
    bool hold = false;
    std::function<void(Milliseconds)> waiting;
    QStringList paths;
    QStringList calls;
};

constexpr int Station = 0;
constexpr int File = 1;

class EpisodePlacesTest : public PlayLogicTest {
protected:
    EpisodePlacesTest()
    {
        logic.setEpisodePlaces(&places);
        player.where.duration = Milliseconds(600000);
        player.where.isSeekable = true;
    }
    void playFile()
    {
        play(File);
        Q_EMIT player.audibleChanged(true);
        places.calls.clear();
    }
    void reach(int seconds) { player.where.position = Milliseconds(seconds * 1000); }

    FakePlaces places;
};

TEST_F(EpisodePlacesTest, AnEpisodeBeginsWhereItWasLeft)
{
    places.place = Milliseconds(95500);
    play(File);
    ASSERT_TRUE(waitForPlayer(1));
    EXPECT_EQ(player.start, Milliseconds(95500));
    EXPECT_EQ(places.paths, QStringList {text("Test:row")});
}

TEST_F(EpisodePlacesTest, AStationHasNone)
{
    places.place = Milliseconds(95500);
    play(Station);
    ASSERT_TRUE(waitForPlayer(1));
    EXPECT_EQ(player.start, Milliseconds(0));
    Q_EMIT player.audibleChanged(true);
    player.where = {};
    logic.pause();
    logic.stop();
    EXPECT_TRUE(places.paths.isEmpty());
    EXPECT_TRUE(places.calls.isEmpty());
}

TEST_F(EpisodePlacesTest, WhatIsPlayedMeanwhileIsNotReplaced)
{
    places.hold = true;
    play(File);
    EXPECT_EQ(player.calls.size(), 0);
    logic.stop();
    places.waiting(Milliseconds(90000));
    EXPECT_EQ(player.calls.size(), 0);
}

TEST_F(EpisodePlacesTest, ThePlaceIsKeptWheneverItMayBeTheLast)
{
    playFile();
    reach(100);
    logic.pause();
    EXPECT_EQ(places.calls, QStringList {text("keep 100")});
    logic.resume();
    Q_EMIT player.audibleChanged(true);
    reach(120);
    Q_EMIT player.audibleChanged(false);
    EXPECT_EQ(places.calls.last(), text("keep 120"));
    Q_EMIT player.audibleChanged(true);
    reach(300);
    Q_EMIT player.sought({});
    EXPECT_EQ(places.calls.last(), text("keep 300"));
    reach(320);
    play(Station);
    EXPECT_EQ(places.calls.last(), text("keep 320"));
    playFile();
    reach(340);
    logic.stop();
    EXPECT_EQ(places.calls.last(), text("keep 340"));
    playFile();
    reach(360);
    Q_EMIT player.outputFailed(Language::ntr(text("No sound.")));
    EXPECT_EQ(places.calls.last(), text("keep 360"));
}

TEST_F(EpisodePlacesTest, NearTheBeginningAndTheEndNoneIsKept)
{
    const QList<QPair<int, QString>> rows {{0, text("forget")}, {29, text("forget")},
        {30, text("keep 30")}, {539, text("keep 539")}, {540, text("forget")},
        {600, text("forget")}};
    for (const auto &row : rows) {
        playFile();
        reach(row.first);
        logic.pause();
        EXPECT_EQ(places.calls, QStringList {row.second}) << row.first;
    }
}

TEST_F(EpisodePlacesTest, WhatWasHeardToItsEndBeginsAnew)
{
    playFile();
    reach(600);
    Q_EMIT player.ended();
    EXPECT_EQ(places.calls, QStringList {text("forget")});
}

TEST_F(EpisodePlacesTest, WithoutADurationNoneIsKept)
{
    playFile();
    reach(100);
    player.where.duration.reset();
    logic.stop();
    EXPECT_TRUE(places.calls.isEmpty());
}

} // namespace
