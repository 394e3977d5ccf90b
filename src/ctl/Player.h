// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "ctl/Places.h"

/// Plays, and tells what the player does. One thread; the session must outlive it.
class Player {
public:
    explicit Player(HostSession &session)
        : m_session(session)
    {
    }

    /// Plays the row at \a spot, whichever row stands there now, and tells what that is; with \a
    /// wait once it is heard or cannot be.
    CtlStatus play(const Spot &spot, bool wait);
    /// One of the player's methods that take nothing.
    CtlStatus act(const QString &method);
    CtlStatus status();
    /// Goes on telling with every change, until it is interrupted or nobody reads on.
    CtlStatus watch();

private:
    CtlStatus waitUntilHeard(const QVariantHash &playId);
    /// Not every change shows.
    void print(const QVariantHash &state);

    HostSession &m_session;
    std::string m_printed;
};

/// \a state, as player.state tells it: a word for it, what plays, what is on the air, the bit rate,
/// what is being done about a fault, what went wrong. One line; for a terminal of \a width columns,
/// which is not 0, as many as it takes. Everything is made printable.
std::string playerLine(const QVariantHash &state, int width, const TerminalStyle &style);
