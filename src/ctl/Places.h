// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "ctl/Screens.h"
#include "ctl/Services.h"

/// What a place names: a screen, or a row of one.
struct Spot {
    /// As users name it.
    CtlPlace place;
    /// The screen that the row is in, and its index; -1 for a screen by itself.
    CMPath screen;
    int row = -1;
    /// The row's own path, or the screen's; empty for a row that has none.
    CMPath path;
    /// The row's VeskRolesType as it was last shown; 0 when it was not.
    int type = 0;

    bool isRow() const { return row >= 0; }
    /// As the methods that play or keep a row take it.
    QVariantHash params() const;
};

/// The context menu of something, and the title of what it belongs to.
struct Menu {
    CMPath path;
    QString title;
};

/// Something to keep: a row, or what plays.
struct ItemToKeep {
    /// What the methods that keep something take: the row's screen, index and path; nothing for
    /// what plays.
    QVariantHash params;
    QString title;
    CMPath path;
};

/// Finds what users name. One thread; the session must outlive it.
class Places {
public:
    explicit Places(HostSession &session)
        : m_session(session)
        , m_screens(session)
        , m_services(session)
    {
    }

    /// Reads the words of a command line; a failure when they are no place.
    CtlResult<CtlPlace> read(const QStringList &words);
    CtlResult<Spot> resolve(const CtlPlace &place);
    /// Both, one after the other.
    CtlResult<Spot> resolve(const QStringList &words);
    /// The path of a value, row or screen.
    CtlResult<CMPath> value(const QString &word);
    /// The row of \a spot with all of \a roles and its path. When its list has changed, \a spot is
    /// moved to where the row is now; a failure when it is gone.
    CtlResult<VeskRoles> row(Spot &spot, const QStringList &roles);
    /// The menu of the row that \a words name, or without words of what plays. A failure when there
    /// is none.
    CtlResult<Menu> menu(const QStringList &words);
    /// The menu that it has while it plays, which leads to its streams.
    CtlResult<Menu> playingMenu(const QStringList &words);
    /// The row that \a words name, or without words what plays; a failure when nothing does.
    CtlResult<ItemToKeep> itemToKeep(const QStringList &words);
    /// What \a service finds for \a text.
    CtlResult<CMPath> found(const Service &service, const QString &text);
    /// Reports that the entry of \a screen is gone, and shows the list anew.
    Failure<CtlStatus> reportGone(const CMPath &screen, const RpcAnswer &answer);

private:
    using MenuOf = CMPath (*)(const VeskRoles &row);

    /// The first step of a place; takes the rows that it used from \a rest.
    CtlResult<Spot> start(const CtlPlace &place, QVector<int> &rest);
    CtlResult<Spot> open(const Spot &spot, int index);
    CtlResult<Spot> shown(CtlPlace place, QVector<int> &rest);
    CtlResult<Spot> withId(const QString &id);
    CtlResult<CMPath> favorites();
    CtlResult<CMPath> found(const QString &text);
    CtlResult<Menu> menuOfRow(const QStringList &words, MenuOf menuOf);
    CtlResult<Menu> menuOfPlayer();
    CtlResult<Spot> rowSpot(const QStringList &words);

    HostSession &m_session;
    Screens m_screens;
    Services m_services;
};

/// Why there are none, where a service was to have them.
QString noSearch();
QString noFavorites();

/// The roles that menuOf() reads.
const QStringList &menuRoles();
/// The context menu of \a row; empty when it has none.
CMPath menuOf(const VeskRoles &row);
