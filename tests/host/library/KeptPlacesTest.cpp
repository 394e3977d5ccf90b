// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/library/KeptPlaces.h"

#include "host/library/Database.h"
#include "tests/support/Text.h"
#include "tests/support/WorkerThread.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <optional>

namespace {

using Milliseconds = std::chrono::milliseconds;

CMPath episode(int number)
{
    return CMPath::fromEncoded(text("Test:episode?id=%1").arg(number));
}

/// The places in a folder, as one run of the host has them.
class HostRun {
public:
    explicit HostRun(const QString &folder)
        : m_database(folder, {})
        , m_places(&m_database)
    {
    }

    KeptPlaces &places() { return m_places; }
    int find(int number)
    {
        std::optional<Milliseconds> found;
        m_places.find(episode(number), [&found](Milliseconds place) { found = place; });
        EXPECT_TRUE(spinUntil([&found] { return found.has_value(); }));
        return found ? static_cast<int>(found->count()) : -1;
    }

private:
    Database m_database;
    KeptPlaces m_places;
};

TEST(KeptPlaces, AreThereAfterARestart)
{
    const QTemporaryDir folder;
    {
        HostRun run(folder.path());
        EXPECT_EQ(run.find(1), 0);
        run.places().keep(episode(1), Milliseconds(90000));
        run.places().keep(episode(2), Milliseconds(45000));
        run.places().keep(episode(1), Milliseconds(120000));
        EXPECT_EQ(run.find(1), 120000);
    }
    {
        HostRun run(folder.path());
        EXPECT_EQ(run.find(1), 120000);
        EXPECT_EQ(run.find(2), 45000);
        EXPECT_EQ(run.find(3), 0);
        run.places().forget(episode(1));
        EXPECT_EQ(run.find(1), 0);
    }
    HostRun run(folder.path());
    EXPECT_EQ(run.find(1), 0);
    EXPECT_EQ(run.find(2), 45000);
}

TEST(KeptPlaces, WhatIsKeptBeforeTheFileWasReadIsNotOverwrittenByIt)
{
    const QTemporaryDir folder;
    {
        HostRun run(folder.path());
        run.places().keep(episode(1), Milliseconds(50000));
        run.places().keep(episode(2), Milliseconds(60000));
        run.places().keep(episode(3), Milliseconds(70000));
    }
    HostRun run(folder.path());
    // Nothing was read yet: that takes the event loop.
    run.places().keep(episode(1), Milliseconds(55000));
    run.places().forget(episode(2));
    EXPECT_EQ(run.find(1), 55000);
    EXPECT_EQ(run.find(2), 0);
    EXPECT_EQ(run.find(3), 70000);
}

TEST(KeptPlaces, TheOldestOfMoreThanTwoHundredIsForgotten)
{
    const QTemporaryDir folder;
    {
        HostRun run(folder.path());
        for (int i = 0; i < KeptPlaces::MaxPlaces; ++i)
            run.places().keep(episode(i), Milliseconds(60000 + i));
        run.places().keep(episode(0), Milliseconds(99000));
        run.places().keep(episode(1000), Milliseconds(60000));
        EXPECT_EQ(run.find(0), 99000);
        EXPECT_EQ(run.find(1), 0);
        EXPECT_EQ(run.find(2), 60002);
    }
    HostRun run(folder.path());
    EXPECT_EQ(run.find(0), 99000);
    EXPECT_EQ(run.find(1), 0);
    EXPECT_EQ(run.find(2), 60002);
    EXPECT_EQ(run.find(1000), 60000);
}

TEST(KeptPlaces, LastForOneRunWithoutAFile)
{
    KeptPlaces places(nullptr);
    places.keep(episode(1), Milliseconds(60000));
    int found = -1;
    places.find(episode(1), [&found](Milliseconds place) { found = int(place.count()); });
    EXPECT_EQ(found, 60000);
}

} // namespace
