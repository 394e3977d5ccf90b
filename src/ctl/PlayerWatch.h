// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "ctl/HostSession.h"

#include <QVariantHash>

#include <functional>

/// Follows a host's player, also when the host goes away and comes back. Main thread; takes SIGINT,
/// SIGTERM and SIGHUP while it runs.
class PlayerWatch {
public:
    /// Gets the state at first and with each change; false ends the watch.
    using Show = std::function<bool(const QVariantHash &state)>;

    /// \a session must outlive it. The watch ends when nobody reads its output any more.
    PlayerWatch(HostSession &session, Show show);
    ~PlayerWatch();

    PlayerWatch(const PlayerWatch &) = delete;
    PlayerWatch &operator=(const PlayerWatch &) = delete;

    /// Returns with the end of the watch: a success unless there was no host from the beginning,
    /// or it does not tell what its player does.
    CtlStatus run();

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
