// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/CtlCommandLine.h"
#include "ctl/Groups.h"
#include "ctl/Places.h"
#include "ctl/RowText.h"

namespace {

/// A row that leads to no list is shown by itself.
CtlResult<> showRow(HostSession &session, const Spot &spot, ListForm form)
{
    form.range = {spot.row, spot.row};
    CtlPlace list = CtlPlace::of(spot.screen);
    if (!spot.place.rows.isEmpty()) {
        list = spot.place;
        list.rows.removeLast();
    }
    return Screens(session).show(spot.screen, list, form);
}

CtlResult<> show(HostSession &session, const CtlPlace &place)
{
    const auto form = Screens(session).form();
    if (!form)
        return failure(form.error());
    auto spot = Places(session).resolve(place);
    if (!spot)
        return failure(spot.error());
    // A row that was shown as a list needs no second look: its path opens it wherever it is now.
    if (spot->isRow() && spot->type != VeskRolesType::container) {
        const auto row = Places(session).row(*spot, {VeskRoles::Type()});
        if (!row)
            return failure(row.error());
        if (row->type() != VeskRolesType::container || spot->path.isEmpty())
            return showRow(session, *spot, *form);
    }
    return Screens(session).show(spot->path, spot->place, *form);
}

/// Of one service its whole list, of several one list each.
CtlResult<> searchFor(HostSession &session, const QString &text)
{
    const auto form = Screens(session).form();
    if (!form)
        return failure(form.error());
    const auto services = Services(session).with(&Service::searches, noSearch());
    if (!services)
        return failure(services.error());
    if (services->size() > 1)
        return Groups(session, *form).search(*services, text);
    const auto screen = Places(session).found(services->first(), text);
    if (!screen)
        return failure(screen.error());
    return Screens(session).show(*screen, CtlPlace::found(text), *form);
}

CtlResult<> favorites(HostSession &session)
{
    const auto form = Screens(session).form();
    if (!form)
        return failure(form.error());
    const auto services = Services(session).with(&Service::favorites, noFavorites());
    if (!services)
        return failure(services.error());
    if (services->size() > 1)
        return Groups(session, *form).favorites(*services);
    return Screens(session).show(services->first().favorites, CtlPlace::favorites(), *form);
}

CtlResult<> list(HostSession &session)
{
    const QStringList &words = session.options().words;
    if (words.isEmpty())
        return show(session, CtlPlace());
    const auto place = Places(session).read(words);
    if (!place)
        return failure(place.error());
    if (place->rows.isEmpty() && place->start == CtlPlace::Search)
        return searchFor(session, place->text);
    if (place->rows.isEmpty() && place->start == CtlPlace::Favorites)
        return favorites(session);
    return show(session, *place);
}

CtlResult<> search(HostSession &session)
{
    const QString text = session.options().words.join(QLatin1Char(' ')).trimmed();
    if (text.isEmpty())
        return session.fail(CtlStatus::BadUsage, ctlText("search for what?"));
    return searchFor(session, text);
}

void printValues(HostSession &session, const QStringList &roles, const QVariantList &values)
{
    if (session.options().json) {
        QVariantHash named;
        for (int i = 0; i < roles.size(); ++i)
            named.insert(roles.at(i), values.value(i));
        session.printJson(named);
        return;
    }
    for (const QVariant &value : values)
        session.printText(plainText(value));
}

CtlResult<> getData(HostSession &session)
{
    const auto path = Places(session).value(session.options().place);
    if (!path)
        return failure(path.error());
    QStringList roles = session.options().roles;
    if (roles.isEmpty())
        roles.append(VeskRoles::Value());
    QVariantHash params = pathParams(*path);
    params.insert(QStringLiteral("roles"), roles);
    const RpcAnswer answer = session.answer(QStringLiteral("getData"), params);
    // A device without an account is no failure when the account is what was asked for.
    if (isNotLinked(answer))
        session.tell(ctlText("not linked"), {{QStringLiteral("linked"), false}});
    else if (answer.kind == RpcAnswer::Result)
        printValues(
            session, roles, answer.result.toHash().value(QStringLiteral("values")).toList());
    else
        return session.report(answer);
    return {};
}

CtlResult<> set(HostSession &session)
{
    const auto path = Places(session).value(session.options().place);
    if (!path)
        return failure(path.error());
    QVariantHash params = pathParams(*path);
    params.insert(QStringLiteral("role"), VeskRoles::Value());
    params.insert(QStringLiteral("value"), session.options().value);
    const auto result = session.call(QStringLiteral("setData"), params);
    if (!result)
        return failure(result.error());
    if (session.options().json)
        session.printJson(*result);
    return {};
}

} // namespace

void addListOptions(Command command, CtlOptions &into)
{
    command.addFlag("-l,--long", into.paths, "With the rows' paths");
    command.addOption("--first", into.first, "The first row to show, from 0")
        .valueName("ROW")
        .between(0, 1000000000);
    CommandOption last = command.addOption("--last", into.last, "The last row to show")
                             .valueName("ROW")
                             .between(0, 1000000000);
    command.addOption("--limit", into.limit, "How many rows to show")
        .valueName("ROWS")
        .between(1, 1000000000)
        .excludes(last);
}

void addScreenCommands(Command app, CtlCommandLine &line)
{
    CtlOptions &options = line.options;
    Command ls = addCommand(app, "ls", "Show a list", line, &list);
    ls.addOption("PLACE", options.words, "The list; without it, what there is");
    addListOptions(ls, options);

    Command find = addCommand(app, "search", "Search and show what is found", line, &search);
    find.addOption("WORD", options.words, "What to search for").required();
    addListOptions(find, options);

    addListOptions(addCommand(app, "favorites", "Show the favorites", line, &favorites), options);

    Command read = addCommand(app, "get", "Print a value", line, &getData);
    read.addOption("PLACE", options.place, "The value, row or list").required();
    read.addOption("ROLE", options.roles, "What of it (value)");

    Command write = addCommand(app, "set", "Change a value", line, &set);
    write.addOption("PLACE", options.place, "The value").required();
    write.addOption("VALUE", options.value, "What it shall be").required();
}
