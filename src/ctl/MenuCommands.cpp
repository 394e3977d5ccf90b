// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/Commands.h"
#include "ctl/Menus.h"
#include "ctl/Player.h"

#include <memory>
#include <string>
#include <vector>

namespace {

struct MenuArguments {
    std::vector<std::string> words;
    int choice = -1;
    bool paths = false;
    bool wait = false;
};

/// Does what the entry is for.
CtlStatus choose(HostSession &session, const CMPath &menu, const MenuArguments &arguments)
{
    Screens screens(session);
    // What an entry does can depend on what its title said last, so the title comes first.
    VeskRoles row;
    const CtlStatus status = screens.row(
        menu, arguments.choice, {VeskRoles::Title(), VeskRoles::Type(), VeskRoles::Path()}, row);
    if (status != CtlStatus::Success)
        return status;
    const QString title = row[VeskRoles::Title()].toString();
    switch (row.type()) {
    case VeskRolesType::activate:
        return session.call(
            QStringLiteral("setData"), activation(row.path()), [&](const QVariantHash &result) {
                return session.tell(ctlText("done: %1").arg(title), result);
            });
    case VeskRolesType::container:
        return screens.show(row.path(), CtlPlace::of(row.path()), {{}, arguments.paths, false});
    case VeskRolesType::audio:
        return Player(session).play(
            {CtlPlace::of(menu), menu, arguments.choice, row.path(), row.type()}, arguments.wait);
    default:
        return session.fail(CtlStatus::Failed,
            ctlText("row %1 is nothing to choose").arg(QString::number(arguments.choice)));
    }
}

CtlStatus showOrChoose(HostSession &session, const CMPath &screen, bool streamsOfPlayer,
    const MenuArguments &arguments)
{
    if (arguments.choice >= 0)
        return choose(session, screen, arguments);
    return Screens(session).show(
        screen, CtlPlace::of(screen), {{}, arguments.paths, streamsOfPlayer});
}

CtlStatus menu(HostSession &session, const MenuArguments &arguments)
{
    Menu menu;
    const CtlStatus status = Menus(session).find(toTexts(arguments.words), menu);
    return status == CtlStatus::Success ? showOrChoose(session, menu.path, false, arguments)
                                        : status;
}

/// The first screen behind a menu that begins with something to play.
CtlStatus findStreams(HostSession &session, const CMPath &menu, CMPath &screen)
{
    Screens screens(session);
    QList<VeskRoles> entries;
    CtlStatus status = screens.rows(menu, {VeskRoles::Type(), VeskRoles::Path()}, entries);
    for (const VeskRoles &entry : qAsConst(entries)) {
        screen = entry.path();
        if (entry.type() != VeskRolesType::container || screen.isEmpty())
            continue;
        QList<VeskRoles> rows;
        status = screens.rows(screen, {VeskRoles::Type()}, rows);
        if (status != CtlStatus::Success)
            return status;
        if (!rows.isEmpty() && rows.first().type() == VeskRolesType::audio)
            return status;
    }
    if (status != CtlStatus::Success)
        return status;
    return session.fail(CtlStatus::Failed, ctlText("there are no streams to choose from"));
}

CtlStatus streams(HostSession &session, const MenuArguments &arguments)
{
    Menu menu;
    CMPath screen;
    CtlStatus status = Menus(session).findPlaying(toTexts(arguments.words), menu);
    if (status == CtlStatus::Success)
        status = findStreams(session, menu.path, screen);
    if (status != CtlStatus::Success)
        return status;
    return showOrChoose(session, screen, arguments.words.empty(), arguments);
}

void addArguments(Command command, const char *choice, MenuArguments &into)
{
    addPlace(command, into.words, "The row; without it, what plays");
    command.addOption("--choose", into.choice, choice).valueName("N").between(0, 1000000000);
    command.addFlag("-l,--long", into.paths, "With the rows' paths");
    command.addFlag("--wait", into.wait, "End when it is heard, where the choice plays");
}

} // namespace

void addMenuCommands(Command app, Commands &commands)
{
    const auto ofMenu = std::make_shared<MenuArguments>();
    addArguments(commands.add(app, "menu", "Show the menu of a row, or of what plays",
                     [ofMenu](HostSession &session) { return menu(session, *ofMenu); }),
        "Run, open or play an entry of the menu", *ofMenu);

    const auto ofStreams = std::make_shared<MenuArguments>();
    addArguments(commands.add(app, "streams", "Show the streams of a row, or of what plays",
                     [ofStreams](HostSession &session) { return streams(session, *ofStreams); }),
        "Play one of them", *ofStreams);
}
