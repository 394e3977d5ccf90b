// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "ctl/HostSession.h"

#include <QVariantHash>

#include <functional>

/// Follows a host's player, also through a restart of the host. Main thread; handles SIGINT,
/// SIGTERM and SIGHUP while it runs.
class PlayerWatch {
public:
    /// Called with the state at first and with each change; false ends the watch.
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
    struct Sources;

    void take(const QVariantHash &state);
    void end();
    void waitToRetry();

    HostSession &m_session;
    const Show m_show;
    const std::unique_ptr<Sources> m_sources;
    bool m_ended = false;
};
