// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "ctl/Screens.h"

/// What a place names: a screen, or a row of one.
struct Spot {
    /// As it is told to users.
    CtlPlace place;
    /// The screen that it stands in, and where; -1 for a screen by itself.
    CMPath screen;
    int row = -1;
    /// The row's own path, or the screen's; empty for a row that has none.
    CMPath path;
    /// The row's VeskRolesType, when it is known from where it was shown; else 0.
    int type = 0;

    bool isRow() const { return row >= 0; }
};

/// Finds what users name. One thread; the session must outlive it.
class Places {
public:
    explicit Places(HostSession &session)
        : m_session(session)
        , m_screens(session)
    {
    }

    /// Reads the words of a command line; a failure, told in words, when they are no place.
    CtlStatus read(const QStringList &words, CtlPlace &place);
    CtlStatus resolve(const CtlPlace &place, Spot &spot);
    /// Both, one after the other.
    CtlStatus resolve(const QStringList &words, Spot &spot);
    /// The path of a value, row or screen.
    CtlStatus value(const QString &word, CMPath &path);
    /// The row of \a spot with all of \a roles and its path. When another one stands there now, \a
    /// spot is moved to where it went; a failure when it is gone.
    CtlStatus row(Spot &spot, const QStringList &roles, VeskRoles &row);
    /// The service that is meant: the one that the options name, or the only one.
    CtlStatus service(CMPath &path);
    /// Says that the entry of \a screen is gone, and shows the list anew.
    CtlStatus tellGone(const CMPath &screen, const RpcAnswer &answer);

private:
    static void moveTo(const ShownRow &row, Spot &spot);
    CtlStatus start(CtlPlace &place, Spot &spot);
    CtlStatus open(int index, Spot &spot);
    CtlStatus shown(CtlPlace &place, Spot &spot);
    CtlStatus withId(const CtlPlace &place, Spot &spot);
    /// The service that is meant, or the list of all.
    CtlStatus root(CMPath &path);
    CtlStatus favorites(CMPath &path);
    CtlStatus found(const QString &text, CMPath &path);
    CtlStatus query(const CMPath &searches, const QString &text, CMPath &path);

    HostSession &m_session;
    Screens m_screens;
};
