// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "ctl/Places.h"

/// How much a player's line tells: what plays, or beside it volume, position, timers and output.
enum class Details { Few, All };

/// Plays, and prints what the player does. One thread; the session must outlive it.
class Player {
public:
    explicit Player(HostSession &session)
        : m_session(session)
    {
    }

    /// Plays the row at \a spot and prints the state; with --wait until it is heard or cannot be.
    CtlResult<> play(const Spot &spot);
    /// The same for a method with the result of player.play.
    CtlResult<> play(const QString &method, const QVariantHash &params);
    /// Calls one of the player's methods without parameters.
    CtlResult<> act(const QString &method);
    /// Prints the state with all details.
    CtlResult<> status();
    /// Prints the state with every change, until it is interrupted or its output is closed.
    CtlResult<> watch();

private:
    /// Of a play that \a answer is about.
    CtlResult<> tellPlay(const RpcAnswer &answer);
    CtlResult<> waitUntilHeard(const QVariantHash &playId);
    /// Leaves out a line that is the same as the last one.
    void print(const QVariantHash &state, Details details);

    HostSession &m_session;
    std::string m_printed;
};

/// \a state, as HostStatus::all() has it, as text: a word for it, what plays, what is on the air,
/// the bit rate, that it is muted, what is being done about a fault, what went wrong. One line, or
/// for a terminal of \a width columns, where that is not 0, as many as needed. Without control
/// characters.
std::string playerLine(
    const QVariantHash &state, Details details, int width, const TerminalStyle &style);
