#include "ctl/FavoriteCommands.h"

#include "api/values/VeskMediaData.h"

namespace {

/// A show, or a station. A favorite that is nothing but an address is not known to the directory,
/// and its menu therefore always offers to add it.
bool isTelling(const VeskRoles &row)
{
    return row.type() == VeskRolesType::container
        || (row.type() == VeskRolesType::audio && row.mediaData().metaData().live());
}

} // namespace

CtlStatus FavoriteCommands::change(bool add)
{
    Item item;
    QString removing;
    Entry entry;
    CtlStatus status = m_menus.ofRow(item.menu, item.title);
    if (status == CtlStatus::Success)
        status = findRemoving(removing);
    // Last of all: the entry does what its title said last, for whichever row that was.
    if (status == CtlStatus::Success)
        status = findEntry(item.menu, entry);
    if (status != CtlStatus::Success)
        return status;
    const bool isFavorite = !removing.isEmpty() && entry.title == removing;
    if (isFavorite == add)
        return tell(item, isFavorite, false);
    return toggle(add, item, entry, removing);
}

CtlStatus FavoriteCommands::toggle(bool add, const Item &item, const Entry &entry, QString removing)
{
    CtlStatus status = m_session.call(QStringLiteral("setData"), activation(entry.path),
        [](const QVariantHash &) { return CtlStatus::Success; });
    if (status == CtlStatus::Success && removing.isEmpty())
        status = findRemoving(removing);
    Entry now;
    if (status == CtlStatus::Success)
        status = findEntry(item.menu, now);
    if (status != CtlStatus::Success)
        return status;
    if ((now.title == removing) != add) {
        return m_session.fail(CtlStatus::Failed,
            QStringLiteral("that did not work: the menu offers \"%1\" now").arg(now.title));
    }
    return tell(item, add, true);
}

CtlStatus FavoriteCommands::findEntry(const CMPath &menu, Entry &entry)
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
    return m_session.fail(CtlStatus::Failed, QStringLiteral("the menu has no entry for favorites"));
}

CtlStatus FavoriteCommands::findRemoving(QString &title)
{
    CMPath screen;
    CtlPlace favorites;
    favorites.start = CtlPlace::Favorites;
    CtlStatus status = m_places.resolve(favorites, screen);
    CMPath menu;
    QList<CMPath> folders {screen};
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
CtlStatus FavoriteCommands::findFavorite(const CMPath &screen, CMPath &menu, QList<CMPath> &folders)
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

CtlStatus FavoriteCommands::tell(const Item &item, bool isFavorite, bool changed)
{
    if (m_session.options().json) {
        m_session.printJson(QVariantHash {{QStringLiteral("title"), item.title},
            {QStringLiteral("favorite"), isFavorite}, {QStringLiteral("changed"), changed}});
        return CtlStatus::Success;
    }
    const char *what = isFavorite ? (changed ? "a favorite now" : "a favorite already")
                                  : (changed ? "no favorite any more" : "no favorite");
    m_session.printText(QStringLiteral("%1: %2").arg(item.title, QLatin1String(what)));
    return CtlStatus::Success;
}
