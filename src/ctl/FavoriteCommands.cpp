// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/Commands.h"
#include "ctl/Menus.h"

#include "api/values/VeskMediaData.h"

#include <memory>
#include <string>
#include <vector>

namespace {

/// Makes rows favorites, or no favorites any more, through the entry that their menus have for it.
///
/// One entry does both, and only its title, in the user's language, says which: what the favorites
/// themselves have as title is the one that removes.
class Favorites {
public:
    explicit Favorites(HostSession &session)
        : m_session(session)
        , m_screens(session)
        , m_places(session)
    {
    }

    CtlStatus change(const QStringList &words, bool add);

private:
    struct Entry {
        QString title;
        CMPath path;
    };

    CtlStatus toggle(bool add, const Menu &item, const Entry &entry, QString removing);
    CtlStatus findEntry(const CMPath &menu, Entry &entry);
    /// The title of the entry that removes; empty while there is no favorite.
    CtlStatus findRemoving(QString &title);
    CtlStatus findFavorite(const CMPath &screen, CMPath &menu, QList<CMPath> &folders);
    CtlStatus tell(const Menu &item, bool isFavorite, bool changed);

    HostSession &m_session;
    Screens m_screens;
    Places m_places;
};

/// A show, or a station. A favorite that is nothing but an address is not known to the directory,
/// and its menu therefore always offers to add it.
bool isTelling(const VeskRoles &row)
{
    return row.type() == VeskRolesType::container
        || (row.type() == VeskRolesType::audio && row.mediaData().metaData().live());
}

CtlStatus Favorites::change(const QStringList &words, bool add)
{
    Menu item;
    QString removing;
    Entry entry;
    CtlStatus status = Menus(m_session).find(words, item);
    if (status == CtlStatus::Success)
        status = findRemoving(removing);
    // Last of all: the entry does what its title said last, for whichever row that was.
    if (status == CtlStatus::Success)
        status = findEntry(item.path, entry);
    if (status != CtlStatus::Success)
        return status;
    const bool isFavorite = !removing.isEmpty() && entry.title == removing;
    if (isFavorite == add)
        return tell(item, isFavorite, false);
    return toggle(add, item, entry, removing);
}

CtlStatus Favorites::toggle(bool add, const Menu &item, const Entry &entry, QString removing)
{
    CtlStatus status = m_session.call(QStringLiteral("setData"), activation(entry.path),
        [](const QVariantHash &) { return CtlStatus::Success; });
    if (status == CtlStatus::Success && removing.isEmpty())
        status = findRemoving(removing);
    Entry now;
    if (status == CtlStatus::Success)
        status = findEntry(item.path, now);
    if (status != CtlStatus::Success)
        return status;
    if ((now.title == removing) != add) {
        return m_session.fail(CtlStatus::Failed,
            ctlText("that did not work: the menu offers \"%1\" now").arg(now.title));
    }
    return tell(item, add, true);
}

CtlStatus Favorites::findEntry(const CMPath &menu, Entry &entry)
{
    QList<VeskRoles> rows;
    const CtlStatus status
        = m_screens.rows(menu, {VeskRoles::Title(), VeskRoles::Type(), VeskRoles::Path()}, rows);
    if (status != CtlStatus::Success)
        return status;
    for (const VeskRoles &row : rows) {
        if (row.type() == VeskRolesType::activate) {
            entry = {row[VeskRoles::Title()].toString(), row.path()};
            return status;
        }
    }
    return m_session.fail(CtlStatus::Failed, ctlText("the menu has no entry for favorites"));
}

CtlStatus Favorites::findRemoving(QString &title)
{
    Spot favorites;
    CtlStatus status = m_places.resolve(CtlPlace::favorites(), favorites);
    CMPath menu;
    QList<CMPath> folders {favorites.path};
    QList<CMPath> deeper;
    for (int i = 0; i < folders.size() && menu.isEmpty() && status == CtlStatus::Success; ++i) {
        status = findFavorite(folders.at(i), menu, deeper);
        // Folders hold no folders.
        if (i == 0)
            folders += deeper;
    }
    if (status != CtlStatus::Success || menu.isEmpty())
        return status;
    Entry entry;
    status = findEntry(menu, entry);
    title = entry.title;
    return status;
}

/// The menu of the first favorite of \a screen, and the folders in it.
CtlStatus Favorites::findFavorite(const CMPath &screen, CMPath &menu, QList<CMPath> &folders)
{
    QList<VeskRoles> rows;
    const CtlStatus status = m_screens.rows(
        screen, QStringList {VeskRoles::Type(), VeskRoles::Path()} + menuRoles(), rows);
    for (const VeskRoles &row : rows) {
        const CMPath itsMenu = menuOf(row);
        if (menu.isEmpty() && !itsMenu.isEmpty() && isTelling(row))
            menu = itsMenu;
        if (itsMenu.isEmpty() && row.type() == VeskRolesType::container && !row.path().isEmpty())
            folders.append(row.path());
    }
    return status;
}

CtlStatus Favorites::tell(const Menu &item, bool isFavorite, bool changed)
{
    const QString now = changed ? ctlText("%1: a favorite now") : ctlText("%1: a favorite already");
    const QString never
        = changed ? ctlText("%1: no favorite any more") : ctlText("%1: no favorite");
    return m_session.tell((isFavorite ? now : never).arg(item.title),
        {{QStringLiteral("title"), item.title}, {QStringLiteral("favorite"), isFavorite},
            {QStringLiteral("changed"), changed}});
}

} // namespace

void addFavoriteCommands(Command app, Commands &commands)
{
    Command favorite = app.add("favorite", "Change the favorites");
    favorite.requireCommand();
    const auto addChange = [&](const char *name, const char *description, bool add) {
        const auto words = std::make_shared<std::vector<std::string>>();
        addPlace(commands.add(favorite, name, description,
                     [words, add](HostSession &session) {
                         return Favorites(session).change(toTexts(*words), add);
                     }),
            *words, "The row; without it, what plays");
    };
    addChange("add", "Make it a favorite", true);
    addChange("remove", "Make it no favorite any more", false);
}
