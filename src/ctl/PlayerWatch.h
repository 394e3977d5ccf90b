// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "ctl/HostStatus.h"
#include "ctl/Interruption.h"

#include <QVariantHash>

#include <functional>

/// Follows a host's player, sleep timer and alarms, also through a restart of the host. Main
/// thread; handles SIGINT, SIGTERM and SIGHUP while it runs.
class PlayerWatch {
public:
    /// Called with HostStatus::all() at first and with each change, of the
    /// volume at most twice a second; false ends the watch.
    using Show = std::function<bool(const QVariantHash &state)>;

    /// \a session must outlive it.
    PlayerWatch(HostSession &session, Show show);
    ~PlayerWatch();

    PlayerWatch(const PlayerWatch &) = delete;
    PlayerWatch &operator=(const PlayerWatch &) = delete;

    /// Returns when a signal arrives, the reader of the output is gone, or Show wants no more.
    /// Fails when there is no host at first, or it answers with an error.
    CtlResult<> run();

private:
    void follow();
    void takeChange();
    static int tellVolume(void *watch);
    void tell();
    void end();
    void waitToRetry();

    HostSession &m_session;
    const Show m_show;
    HostStatus m_status;
    /// What was told last, without the volume.
    QVariantHash m_told;
    /// 0 for none.
    unsigned m_volumeTimer = 0;
    bool m_ended = false;
    const Interruption m_interruption;
};
