// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "ctl/HostSession.h"

#include <QVariantHash>

/// What a listener wants to know of a host: the player's state, and where there are any the sleep
/// timer and the alarms. One thread; the session must outlive it.
class HostStatus {
public:
    explicit HostStatus(HostSession &session)
        : m_session(session)
    {
    }

    /// Asks the host; returns its answer about the player. A host that has no timers is asked about
    /// the player only.
    RpcAnswer read();
    /// Takes over what a notification says; false when it is about something else.
    bool take(const QString &method, const QVariantHash &params);
    /// Whether the alarms have changed since they were read.
    bool isOutdated() const { return m_isOutdated; }
    void readAlarms();

    /// The members of player.state, and of those that there is something to tell about: `sleep`
    /// (the result of sleep.state), `alarm` (the next one), `ringing` (the id of an alarm) and
    /// `missed` (as in the result of alarms.list).
    QVariantHash all() const;

private:
    void ask(const QString &method, QVariantHash &into);

    HostSession &m_session;
    QVariantHash m_player;
    QVariantHash m_sleep;
    QVariantHash m_alarms;
    bool m_isOutdated = false;
};
