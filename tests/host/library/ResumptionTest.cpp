// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/library/Resumption.h"

#include "host/library/Database.h"
#include "host/library/KeptRow.h"
#include "host/library/Sql.h"
#include "tests/host/player/PlayLogicFixture.h"

#include <QTemporaryDir>

#include <memory>
#include <optional>

namespace {

using When = Resumption::When;

class ResumptionTest : public PlayLogicTest {
protected:
    ResumptionTest() { openAgain(); }
    ~ResumptionTest() override { m_resumption.reset(); }

    /// Another host with the same folder, after the last one was killed, and what its listener had
    /// was stopped by that.
    void openAgain()
    {
        closeDatabase();
        m_resumption.reset();
        m_database.reset();
        m_logic.reset();
        m_player = std::make_unique<FakePlayer>();
        m_logic = std::make_unique<PlayLogic>(m_player.get());
        m_database = std::make_unique<Database>(m_folder.path(), Result<void, files::Problem>());
        m_resumption = std::make_unique<Resumption>(m_database.get(), m_logic.get());
    }
    void closeDatabase()
    {
        QCoreApplication::processEvents();
        if (m_database) {
            EXPECT_TRUE(
                m_database->close(std::chrono::steady_clock::now() + std::chrono::seconds(20)));
        }
    }

    VeskRoles station(const char *path)
    {
        VeskRoles roles = row("Station", "http://stream/before", true);
        roles.setPath(CMPath::fromEncoded(text(path)));
        return roles;
    }
    void playFor(const char *path)
    {
        const int before = m_player->calls.size();
        m_logic->playRow(station(path), [](const CMError &, const VeskHash &) {});
        ASSERT_TRUE(waitForCalls(before + 1));
        Q_EMIT m_player->audibleChanged(true);
        QCoreApplication::processEvents();
    }
    bool waitForCalls(int count)
    {
        return spinUntil([&] { return m_player->calls.size() >= count; }, 20000);
    }
    /// The path of the row that is noted.
    std::string noted()
    {
        QCoreApplication::processEvents();
        std::optional<QString> path;
        m_database->run(
            [](sqlite3 *sql) -> Result<QVariant, QString> {
                SqlStatement row(sql, "SELECT row FROM playing");
                if (!row.next())
                    return QVariant(QString());
                return QVariant(KeptRow::fromText(row.bytes(0))->path().toEncoded());
            },
            [&path](const Result<QVariant, QString> &result) { path = result->toString(); });
        EXPECT_TRUE(spinUntil([&] { return path.has_value(); }, 20000));
        return path.value_or(QString()).toStdString();
    }
    /// Whether the player is told to play something; if not, whatever would lead to that has
    /// happened.
    bool goesOn(When when)
    {
        m_resumption->mayStart(when);
        noted();
        QCoreApplication::processEvents();
        return m_logic->requests() > 0;
    }

    QTemporaryDir m_folder;
    std::unique_ptr<FakePlayer> m_player;
    std::unique_ptr<PlayLogic> m_logic;
    std::unique_ptr<Database> m_database;
    std::unique_ptr<Resumption> m_resumption;
};

TEST_F(ResumptionTest, WhatSoundsIsNotedAndForgottenAtAPauseOrStop)
{
    EXPECT_EQ(noted(), "");
    m_logic->playRow(station("Test:1"), [](const CMError &, const VeskHash &) {});
    ASSERT_TRUE(waitForCalls(1));
    EXPECT_EQ(noted(), "") << "not before it was heard";
    Q_EMIT m_player->audibleChanged(true);
    EXPECT_EQ(noted(), "Test:1");
    Q_EMIT m_player->audibleChanged(false);
    EXPECT_EQ(noted(), "Test:1");
    Q_EMIT m_player->audibleChanged(true);
    m_logic->pause();
    EXPECT_EQ(noted(), "");
    m_logic->resume();
    Q_EMIT m_player->audibleChanged(true);
    EXPECT_EQ(noted(), "Test:1");
    playFor("Test:2");
    EXPECT_EQ(noted(), "Test:2");
    m_logic->stop();
    EXPECT_EQ(noted(), "");
    playFor("Test:1");
    Q_EMIT m_player->ended();
    EXPECT_EQ(noted(), "");
}

TEST_F(ResumptionTest, WhatEndsWithAnErrorStaysNoted)
{
    playFor("Test:1");
    Q_EMIT m_player->outputFailed(Language::ntr(text("There is no sound device.")));
    EXPECT_EQ(noted(), "Test:1");
    m_logic->playRow(station("Test:2"), [](const CMError &, const VeskHash &) {});
    ASSERT_TRUE(waitForCalls(2));
    Q_EMIT m_player->gaveUp(Language::ntr(text("Dead.")));
    EXPECT_EQ(noted(), "") << "it was left for something else";
}

TEST_F(ResumptionTest, AfterAKillItGoesOnThroughTheStepBeforePlaying)
{
    playFor("Test:1");
    openAgain();
    m_resumption->mayStart(When::Always);
    ASSERT_TRUE(waitForCalls(1));
    EXPECT_EQ(m_player->calls.first(), text("play http://stream/after live"));
    EXPECT_EQ(noted(), "Test:1");
    Q_EMIT m_player->audibleChanged(true);
    m_logic->stop();
    EXPECT_EQ(noted(), "");
}

TEST_F(ResumptionTest, TheSettingSaysWhenItGoesOn)
{
    EXPECT_EQ(Resumption::whenOf(text("always")), When::Always);
    EXPECT_EQ(Resumption::whenOf(text("crash")), When::AfterCrash);
    EXPECT_EQ(Resumption::whenOf(text("never")), When::Never);
    struct Case {
        When when;
        bool wasKilled;
        bool goesOn;
    };
    for (const Case &each :
        std::initializer_list<Case> {{When::Always, true, true}, {When::Always, false, true},
            {When::AfterCrash, true, true}, {When::AfterCrash, false, false},
            {When::Never, true, false}, {When::Never, false, false}}) {
        SCOPED_TRACE(int(each.when) * 2 + int(each.wasKilled));
        playFor("Test:1");
        if (!each.wasKilled) {
            m_resumption->leave();
            m_logic->stop();
        }
        openAgain();
        EXPECT_EQ(goesOn(each.when), each.goesOn);
        m_logic->stop();
        openAgain();
    }
}

TEST_F(ResumptionTest, WithoutANoteNothingIsPlayed)
{
    EXPECT_FALSE(goesOn(When::Always));
    playFor("Test:1");
    m_logic->stop();
    openAgain();
    EXPECT_FALSE(goesOn(When::Always));
}

TEST_F(ResumptionTest, WhatBringsNoSoundIsTriedAgain)
{
    playFor("Test:1");
    openAgain();
    prePlay->error = CMError(Language::ntr(text("There is no network.")));
    m_resumption->mayStart(When::Always);
    ASSERT_TRUE(spinUntil([&] { return m_logic->requests() >= 2; }, 20000)) << "after a second";
    EXPECT_EQ(noted(), "Test:1");
    ASSERT_TRUE(spinUntil([&] { return m_logic->state().value(text("state")) == Stopped; }, 20000));
    QCoreApplication::processEvents();
    prePlay->error = {};
    const int before = m_logic->requests();
    m_resumption->networkIsBack();
    ASSERT_TRUE(waitForCalls(1));
    EXPECT_EQ(m_logic->requests(), before + 1) << "at once";
    Q_EMIT m_player->audibleChanged(true);
    EXPECT_EQ(noted(), "Test:1");
}

TEST_F(ResumptionTest, WhatAListenerDoesInTheMeantimeHolds)
{
    struct Case {
        const char *what;
        std::function<void()> act;
        const char *noted;
    };
    const std::vector<Case> cases {
        {"a stop", [&] { m_logic->stop(); }, ""},
        {"another play", [&] { playFor("Test:2"); }, "Test:2"},
    };
    for (const Case &each : cases) {
        SCOPED_TRACE(each.what);
        prePlay->error = {};
        openAgain();
        playFor("Test:1");
        openAgain();
        prePlay->error = CMError(Language::ntr(text("There is no network.")));
        m_resumption->mayStart(When::Always);
        ASSERT_TRUE(spinUntil([&] { return m_logic->requests() > 0; }, 20000));
        ASSERT_TRUE(
            spinUntil([&] { return m_logic->state().value(text("state")) == Stopped; }, 20000));
        prePlay->error = {};
        each.act();
        const int requests = m_logic->requests();
        EXPECT_EQ(noted(), each.noted);
        m_resumption->networkIsBack();
        spinUntil([&] { return m_logic->requests() != requests; }, 1500);
        EXPECT_EQ(m_logic->requests(), requests);
    }
}

} // namespace
