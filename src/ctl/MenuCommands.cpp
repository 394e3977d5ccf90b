// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/CtlCommandLine.h"
#include "ctl/Player.h"

#include "api/values/VeskMediaData.h"

#include <optional>

namespace {

/// Runs the menu entry \a entry, where it is one that is run.
CtlResult<QVariantHash> activate(HostSession &session, const CMPath &entry)
{
    QVariantHash params = pathParams(entry);
    params.insert(QStringLiteral("role"), VeskRoles::Activate());
    params.insert(QStringLiteral("value"), QVariant());
    return session.call(QStringLiteral("setData"), params);
}

/// Does what the chosen entry of \a menu is for.
CtlResult<> choose(HostSession &session, const CMPath &menu)
{
    const int choice = session.options().choice;
    // An entry can do what its title last said, so the title is requested first.
    const auto row = Screens(session).row(
        menu, choice, {VeskRoles::Title(), VeskRoles::Type(), VeskRoles::Path()});
    if (!row)
        return failure(row.error());
    switch (row->type()) {
    case VeskRolesType::activate: {
        const auto result = activate(session, row->path());
        if (!result)
            return failure(result.error());
        session.tell(ctlText("done: %1").arg((*row)[VeskRoles::Title()].toString()), *result);
        return {};
    }
    case VeskRolesType::container:
        return Screens(session).show(
            row->path(), CtlPlace::of(row->path()), {{}, session.options().paths, false});
    case VeskRolesType::audio:
        return Player(session).play({CtlPlace::of(menu), menu, choice, row->path(), row->type()});
    default:
        return session.fail(
            CtlStatus::Failed, ctlText("row %1 is nothing to choose").arg(QString::number(choice)));
    }
}

CtlResult<> showOrChoose(HostSession &session, const CMPath &screen, bool streamsOfPlayer)
{
    if (session.options().choice >= 0)
        return choose(session, screen);
    return Screens(session).show(
        screen, CtlPlace::of(screen), {{}, session.options().paths, streamsOfPlayer});
}

CtlResult<> menu(HostSession &session)
{
    const auto menu = Places(session).menu(session.options().words);
    if (!menu)
        return failure(menu.error());
    return showOrChoose(session, menu->path, false);
}

/// The first screen behind a menu that begins with something to play.
CtlResult<CMPath> findStreams(HostSession &session, const CMPath &menu)
{
    Screens screens(session);
    const auto entries = screens.rows(menu, {VeskRoles::Type(), VeskRoles::Path()});
    if (!entries)
        return failure(entries.error());
    for (const VeskRoles &entry : *entries) {
        if (entry.type() != VeskRolesType::container || entry.path().isEmpty())
            continue;
        const auto rows = screens.rows(entry.path(), {VeskRoles::Type()});
        if (!rows)
            return failure(rows.error());
        if (!rows->isEmpty() && rows->first().type() == VeskRolesType::audio)
            return entry.path();
    }
    return session.fail(CtlStatus::Failed, ctlText("there are no streams to choose from"));
}

CtlResult<> streams(HostSession &session)
{
    const QStringList &words = session.options().words;
    const auto menu = Places(session).playingMenu(words);
    if (!menu)
        return failure(menu.error());
    const auto screen = findStreams(session, menu->path);
    if (!screen)
        return failure(screen.error());
    return showOrChoose(session, *screen, words.isEmpty());
}

/// Makes rows favorites, or removes them, through the entry that their menus have for it.
///
/// One entry does both, and only its title, in the user's language, says which. Rows of the
/// favorites themselves have the title that removes, so that one is looked up there.
class Favorites {
public:
    explicit Favorites(HostSession &session)
        : m_session(session)
        , m_screens(session)
        , m_places(session)
    {
    }

    CtlResult<> change(bool add);

private:
    struct Entry {
        QString title;
        CMPath path;
    };
    struct Screen {
        CMPath menu; ///< of its first favorite; empty for none
        QList<CMPath> folders;
    };

    CtlResult<> toggle(bool add, const Menu &item, const Entry &entry, QString removing);
    CtlResult<Entry> findEntry(const CMPath &menu);
    /// The title of the entry that removes; empty while there is no favorite.
    CtlResult<QString> findRemoving();
    CtlResult<Screen> readScreen(const CMPath &screen);
    CtlResult<> tell(const Menu &item, bool isFavorite, bool changed);

    HostSession &m_session;
    Screens m_screens;
    Places m_places;
};

/// A show, or a station. The menu of a favorite that is a bare address, which the directory does
/// not know, always offers to add it.
bool hasTellingMenu(const VeskRoles &row)
{
    return row.type() == VeskRolesType::container
        || (row.type() == VeskRolesType::audio && row.mediaData().metaData().live());
}

CtlResult<> Favorites::change(bool add)
{
    const auto item = m_places.menu(m_session.options().words);
    if (!item)
        return failure(item.error());
    const auto removing = findRemoving();
    if (!removing)
        return failure(removing.error());
    // Last of all: an entry does what the title that was requested last said, for whichever row.
    const auto entry = findEntry(item->path);
    if (!entry)
        return failure(entry.error());
    const bool isFavorite = !removing->isEmpty() && entry->title == *removing;
    if (isFavorite == add)
        return tell(*item, isFavorite, false);
    return toggle(add, *item, *entry, *removing);
}

CtlResult<> Favorites::toggle(bool add, const Menu &item, const Entry &entry, QString removing)
{
    if (const auto result = activate(m_session, entry.path); !result)
        return failure(result.error());
    if (removing.isEmpty()) {
        const auto found = findRemoving();
        if (!found)
            return failure(found.error());
        removing = *found;
    }
    const auto now = findEntry(item.path);
    if (!now)
        return failure(now.error());
    if ((now->title == removing) != add) {
        return m_session.fail(CtlStatus::Failed,
            ctlText("that did not work: the menu offers \"%1\" now").arg(now->title));
    }
    return tell(item, add, true);
}

CtlResult<Favorites::Entry> Favorites::findEntry(const CMPath &menu)
{
    const auto rows
        = m_screens.rows(menu, {VeskRoles::Title(), VeskRoles::Type(), VeskRoles::Path()});
    if (!rows)
        return failure(rows.error());
    for (const VeskRoles &row : *rows) {
        if (row.type() == VeskRolesType::activate)
            return Entry {row[VeskRoles::Title()].toString(), row.path()};
    }
    return m_session.fail(CtlStatus::Failed, ctlText("the menu has no entry for favorites"));
}

CtlResult<QString> Favorites::findRemoving()
{
    const auto favorites = m_places.resolve(CtlPlace::favorites());
    if (!favorites)
        return failure(favorites.error());
    QList<CMPath> folders {favorites->path};
    for (int i = 0; i < folders.size(); ++i) {
        const auto screen = readScreen(folders.at(i));
        if (!screen)
            return failure(screen.error());
        if (!screen->menu.isEmpty()) {
            const auto entry = findEntry(screen->menu);
            if (!entry)
                return failure(entry.error());
            return entry->title;
        }
        // Folders hold no folders.
        if (i == 0)
            folders += screen->folders;
    }
    return QString();
}

CtlResult<Favorites::Screen> Favorites::readScreen(const CMPath &screen)
{
    const auto rows
        = m_screens.rows(screen, QStringList {VeskRoles::Type(), VeskRoles::Path()} + menuRoles());
    if (!rows)
        return failure(rows.error());
    Screen read;
    for (const VeskRoles &row : *rows) {
        const CMPath menu = menuOf(row);
        if (read.menu.isEmpty() && !menu.isEmpty() && hasTellingMenu(row))
            read.menu = menu;
        if (menu.isEmpty() && row.type() == VeskRolesType::container && !row.path().isEmpty())
            read.folders.append(row.path());
    }
    return read;
}

CtlResult<> Favorites::tell(const Menu &item, bool isFavorite, bool changed)
{
    const QString now = changed ? ctlText("%1: a favorite now") : ctlText("%1: a favorite already");
    const QString never
        = changed ? ctlText("%1: no favorite any more") : ctlText("%1: no favorite");
    m_session.tell((isFavorite ? now : never).arg(item.title),
        {{QStringLiteral("title"), item.title}, {QStringLiteral("favorite"), isFavorite},
            {QStringLiteral("changed"), changed}});
    return {};
}

} // namespace

void addMenuCommands(Command app, CtlCommandLine &line)
{
    CtlOptions &options = line.options;
    const auto addMenu = [&](const char *name, const char *description, const char *choice,
                             CtlResult<> (*run)(HostSession &)) {
        Command command = addCommand(app, name, description, line, run);
        command.addOption("PLACE", options.words, "The row; without it, what plays");
        command.addOption("--choose", options.choice, choice).valueName("N").between(0, 1000000000);
        command.addFlag("-l,--long", options.paths, "With the rows' paths");
        command.addFlag("--wait", options.wait, "End when it is heard, where the choice plays");
    };
    addMenu("menu", "Show the menu of a row, or of what plays",
        "Run, open or play an entry of the menu", &menu);
    addMenu("streams", "Show the streams of a row, or of what plays", "Play one of them", &streams);

    Command favorite = app.add("favorite", "Change the favorites");
    favorite.requireCommand();
    const auto addChange = [&](const char *name, const char *description, bool add) {
        addCommand(favorite, name, description, line, [add](HostSession &session) {
            return Favorites(session).change(add);
        }).addOption("PLACE", options.words, "The row; without it, what plays");
    };
    addChange("add", "Make it a favorite", true);
    addChange("remove", "Make it no favorite any more", false);
}
