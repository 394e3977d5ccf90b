// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMPath.h"
#include "api/values/VeskRoles.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <chrono>
#include <optional>

class Database;
class PlayLogic;

/// What plays, noted so that the next host goes on with it.
///
/// A row is noted at its first sound, and forgotten when it is paused, stopped or at its end; one
/// that ended with an error stays noted. What the last host has noted is played again once
/// mayStart() was called, and tried again while it brings no sound, as long as GiveUpTime, unless
/// somebody plays or stops something in the meantime.
///
/// Main thread; what it is made with outlives it.
class Resumption : public QObject {
    Q_OBJECT

public:
    /// A value of the setting.
    enum class When { Always, AfterCrash, Never };

    /// Waits between attempts: the first one, doubled each time up to the longest.
    static constexpr std::chrono::seconds FirstWait {1};
    static constexpr std::chrono::seconds LongestWait {30};
    static constexpr std::chrono::minutes GiveUpTime {15};

    Resumption(Database *database, PlayLogic *player, QObject *parent = nullptr);
    ~Resumption() override;

    static When whenOf(const QString &setting);

    /// The services are there: goes on with what was noted before, if \a when says so.
    void mayStart(When when);
    /// The network is there: what failed is tried at once.
    void networkIsBack();
    /// The host ends as it should: what plays stays noted, as having ended cleanly. Nothing is
    /// noted or forgotten from then on.
    void leave();

private:
    struct Noted {
        VeskRoles row;
        bool endedCleanly = false;
    };

    void take(const std::optional<Noted> &noted);
    void startIfReady();
    void attempt();
    void follow();
    void note(const VeskRoles &row);
    void forget();
    bool isOvertaken() const;
    void giveUp();

    Database *const m_database;
    PlayLogic *const m_player;
    bool m_hasLeft = false;
    bool m_isFollowing = false; ///< follow() is on its way
    CMPath m_noted; ///< of the row that this host has noted; empty when none is

    bool m_isRead = false; ///< what the last host has noted
    std::optional<When> m_when; ///< since mayStart()
    std::optional<Noted> m_before; ///< what is to be played, until that is settled
    bool m_isTrying = false; ///< the present play is this object's, and had no sound yet
    int m_requests = 0; ///< the player's, as this object knows them
    std::chrono::milliseconds m_wait {FirstWait};
    QTimer m_retry;
    QTimer m_giveUp;
};
