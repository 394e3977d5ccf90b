// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "ctl/Places.h"

/// The context menu of something, and what that is called.
struct Menu {
    CMPath path;
    QString title;
};

/// The menus of rows and of what plays. One thread; the session must outlive it.
class Menus {
public:
    explicit Menus(HostSession &session)
        : m_session(session)
    {
    }

    /// The menu of the row that \a words name, or of what plays when there are none. A failure when
    /// there is no menu.
    CtlStatus find(const QStringList &words, Menu &menu);
    /// The same for the menu that it has while it plays, which leads to its streams.
    CtlStatus findPlaying(const QStringList &words, Menu &menu);

private:
    using MenuOf = CMPath (*)(const VeskRoles &row);

    CtlStatus ofRow(const QStringList &words, MenuOf menuOf, Menu &menu);
    CtlStatus ofPlayer(Menu &menu);

    HostSession &m_session;
};

/// The roles that tell a row's menu, and the menu; empty when it has none.
const QStringList &menuRoles();
CMPath menuOf(const VeskRoles &row);
/// The parameters of the call that runs a menu's entry, where it is one that is run.
QVariantHash activation(const CMPath &entry);
