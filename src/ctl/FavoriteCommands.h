#pragma once

#include "ctl/Menus.h"

/// Makes rows favorites, or no favorites any more, through the entry that their menus have for it.
/// One thread; the session must outlive it.
///
/// One entry does both, and only its title, in the user's language, says which: what the favorites
/// themselves have as title is the one that removes.
class FavoriteCommands {
public:
    explicit FavoriteCommands(HostSession &session)
        : m_session(session)
        , m_screens(session)
        , m_places(session)
        , m_menus(session)
    {
    }

    CtlStatus add() { return change(true); }
    CtlStatus remove() { return change(false); }

private:
    struct Item {
        QString title;
        CMPath menu;
    };
    struct Entry {
        QString title;
        CMPath path;
    };

    CtlStatus change(bool add);
    CtlStatus toggle(bool add, const Item &item, const Entry &entry, QString removing);
    CtlStatus findEntry(const CMPath &menu, Entry &entry);
    /// The title of the entry that removes; empty while there is no favorite.
    CtlStatus findRemoving(QString &title);
    CtlStatus findFavorite(const CMPath &screen, CMPath &menu, QList<CMPath> &folders);
    CtlStatus tell(const Item &item, bool isFavorite, bool changed);

    HostSession &m_session;
    Screens m_screens;
    Places m_places;
    Menus m_menus;
};
