// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "ctl/Places.h"

/// Plays, and prints what the player does. One thread; the session must outlive it.
class Player {
public:
    explicit Player(HostSession &session)
        : m_session(session)
    {
    }

    /// Plays the row at \a spot and prints the state; with --wait until it is heard or cannot be.
    CtlResult<> play(const Spot &spot);
    /// Calls one of the player's methods without parameters.
    CtlResult<> act(const QString &method);
    /// Prints the state.
    CtlResult<> status();
    /// Prints the state with every change, until it is interrupted or its output is closed.
    CtlResult<> watch();

private:
    CtlResult<> waitUntilHeard(const QVariantHash &playId);
    /// Leaves out a line that is the same as the last one.
    void print(const QVariantHash &state);

    HostSession &m_session;
    std::string m_printed;
};

/// \a state, a result of player.state, as text: a word for it, what plays, what is on the air, the
/// bit rate, what is being done about a fault, what went wrong. One line, or for a terminal of \a
/// width columns, where that is not 0, as many as needed. Without control characters.
std::string playerLine(const QVariantHash &state, int width, const TerminalStyle &style);
