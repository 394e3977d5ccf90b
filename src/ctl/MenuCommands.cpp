// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/CtlCommandLine.h"
#include "ctl/Player.h"

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

/// Folders among the favorites that are read at most.
constexpr int MaxFolders = 20;

QString noEntry()
{
    return ctlText("the menu has no entry for favorites");
}

/// Makes rows favorites, or removes them, through the entry that their menus have for it. One entry
/// does both, so the favorites are read before and after.
class Favorites {
public:
    explicit Favorites(HostSession &session)
        : m_session(session)
        , m_screens(session)
    {
    }

    CtlResult<> change(bool add);

private:
    CtlResult<> toggle(const Service &service, const CMPath &menu);
    CtlResult<bool> isFavorite(const Service &service, const QStringList &ids);
    CtlResult<> tell(const Menu &item, bool isFavorite, bool changed);

    HostSession &m_session;
    Screens m_screens;
};

CtlResult<> Favorites::change(bool add)
{
    const auto item = Places(m_session).menu(m_session.options().words);
    if (!item)
        return failure(item.error());
    const auto service = Services(m_session).of(item->path, &Service::favorites, noFavorites());
    if (!service)
        return failure(service.error());
    const QStringList ids = service->idsOf(item->path);
    if (ids.isEmpty())
        return m_session.fail(CtlStatus::Failed, noEntry());
    const auto before = isFavorite(*service, ids);
    if (!before)
        return failure(before.error());
    if (*before == add)
        return tell(*item, add, false);
    if (const auto toggled = toggle(*service, item->path); !toggled)
        return failure(toggled.error());
    const auto after = isFavorite(*service, ids);
    if (!after)
        return failure(after.error());
    if (*after != add) {
        return m_session.fail(
            CtlStatus::Failed, ctlText("that did not work: the favorites are as they were"));
    }
    return tell(*item, add, true);
}

CtlResult<> Favorites::toggle(const Service &service, const CMPath &menu)
{
    // Right before, and with the titles: an entry does what its title said that was requested last.
    const auto rows
        = m_screens.rows(menu, {VeskRoles::Title(), VeskRoles::Type(), VeskRoles::Path()});
    if (!rows)
        return failure(rows.error());
    for (const VeskRoles &row : *rows) {
        const CMPath path = row.path();
        if (row.type() != VeskRolesType::activate || !service.changesFavorites(path))
            continue;
        if (const auto result = activate(m_session, path); !result)
            return failure(result.error());
        return {};
    }
    return m_session.fail(CtlStatus::Failed, noEntry());
}

/// Whether one of \a ids is among the favorites or in one of their folders, which hold no others.
CtlResult<bool> Favorites::isFavorite(const Service &service, const QStringList &ids)
{
    QList<CMPath> screens {service.favorites};
    for (int i = 0; i < screens.size(); ++i) {
        const auto rows = m_screens.allRows(
            screens.at(i), QStringList {VeskRoles::Type(), VeskRoles::Path()} + menuRoles());
        if (!rows)
            return failure(rows.error());
        for (const VeskRoles &row : *rows) {
            const CMPath menu = menuOf(row);
            const QStringList found = service.idsOf(menu);
            for (const QString &id : found) {
                if (ids.contains(id))
                    return true;
            }
            const bool isFolder = menu.isEmpty() && row.type() == VeskRolesType::container;
            if (i == 0 && isFolder && !row.path().isEmpty() && screens.size() <= MaxFolders)
                screens.append(row.path());
        }
    }
    return false;
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
    addChange("add", "Make a row a favorite", true);
    addChange("remove", "Make a row no favorite any more", false);
}
