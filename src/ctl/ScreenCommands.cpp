// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/Commands.h"
#include "ctl/Places.h"
#include "ctl/RowText.h"

#include <memory>
#include <string>
#include <vector>

namespace {

struct ListArguments {
    std::vector<std::string> words;
    RowRange range;
    int limit = -1;
    bool paths = false;
};

struct ValueArguments {
    std::string place;
    std::vector<std::string> roles;
    std::string value;
};

void addList(Command command, ListArguments &into)
{
    command.addFlag("-l,--long", into.paths, "With the rows' paths");
    command.addOption("--first", into.range.first, "The first row to show, from 0")
        .between(0, 1000000000);
    CommandOption last = command.addOption("--last", into.range.last, "The last row to show")
                             .between(0, 1000000000);
    command.addOption("--limit", into.limit, "How many rows to show")
        .between(1, 1000000000)
        .excludes(last);
}

CtlStatus readForm(HostSession &session, const ListArguments &arguments, ListForm &form)
{
    form = {arguments.range, arguments.paths, false};
    if (arguments.limit > 0)
        form.range.last = form.range.first + arguments.limit - 1;
    if (form.range.last >= 0 && form.range.last < form.range.first)
        return session.fail(CtlStatus::BadUsage, ctlText("--last is before --first"));
    return CtlStatus::Success;
}

/// A row that leads to no list is shown by itself.
CtlStatus showRow(HostSession &session, const Spot &spot, ListForm form)
{
    form.range = {spot.row, spot.row};
    CtlPlace list = CtlPlace::of(spot.screen);
    if (!spot.place.rows.isEmpty()) {
        list = spot.place;
        list.rows.removeLast();
    }
    return Screens(session).show(spot.screen, list, form);
}

CtlStatus showSpot(HostSession &session, Spot spot, const ListForm &form)
{
    // What was shown as a list is one, wherever its row went.
    if (spot.isRow() && spot.type != VeskRolesType::container) {
        VeskRoles row;
        const CtlStatus status = Places(session).row(spot, {VeskRoles::Type()}, row);
        if (status != CtlStatus::Success)
            return status;
        if (row.type() != VeskRolesType::container || spot.path.isEmpty())
            return showRow(session, spot, form);
    }
    return Screens(session).show(spot.path, spot.place, form);
}

CtlStatus show(HostSession &session, const CtlPlace &place, const ListArguments &arguments)
{
    ListForm form;
    CtlStatus status = readForm(session, arguments, form);
    Spot spot;
    if (status == CtlStatus::Success)
        status = Places(session).resolve(place, spot);
    return status == CtlStatus::Success ? showSpot(session, spot, form) : status;
}

CtlStatus list(HostSession &session, const ListArguments &arguments)
{
    CtlPlace place;
    const CtlStatus status = arguments.words.empty()
        ? CtlStatus::Success
        : Places(session).read(toTexts(arguments.words), place);
    return status == CtlStatus::Success ? show(session, place, arguments) : status;
}

CtlStatus search(HostSession &session, const ListArguments &arguments)
{
    const QString text = toTexts(arguments.words).join(QLatin1Char(' ')).trimmed();
    if (text.isEmpty())
        return session.fail(CtlStatus::BadUsage, ctlText("search for what?"));
    return show(session, CtlPlace::found(text), arguments);
}

CtlStatus printValues(HostSession &session, const QStringList &roles, const QVariantList &values)
{
    if (session.options().json) {
        QVariantHash named;
        for (int i = 0; i < roles.size(); ++i)
            named.insert(roles.at(i), values.value(i));
        session.printJson(named);
        return CtlStatus::Success;
    }
    for (const QVariant &value : values)
        session.printText(plainText(value));
    return CtlStatus::Success;
}

CtlStatus get(HostSession &session, const ValueArguments &arguments)
{
    CMPath path;
    const CtlStatus status = Places(session).value(QString::fromStdString(arguments.place), path);
    if (status != CtlStatus::Success)
        return status;
    QStringList roles = toTexts(arguments.roles);
    if (roles.isEmpty())
        roles.append(VeskRoles::Value());
    QVariantHash params = pathParams(path);
    params.insert(QStringLiteral("roles"), roles);
    const RpcAnswer answer = session.answer(QStringLiteral("getData"), params);
    if (answer.kind == RpcAnswer::Result) {
        return printValues(
            session, roles, answer.result.toHash().value(QStringLiteral("values")).toList());
    }
    // To have no account is an answer to one who asks for it.
    if (!isNotLinked(answer))
        return session.report(answer);
    return session.tell(ctlText("not linked"), {{QStringLiteral("linked"), false}});
}

CtlStatus set(HostSession &session, const ValueArguments &arguments)
{
    CMPath path;
    const CtlStatus status = Places(session).value(QString::fromStdString(arguments.place), path);
    if (status != CtlStatus::Success)
        return status;
    QVariantHash params = pathParams(path);
    params.insert(QStringLiteral("role"), VeskRoles::Value());
    params.insert(QStringLiteral("value"), QString::fromStdString(arguments.value));
    return session.call(QStringLiteral("setData"), params, [&](const QVariantHash &result) {
        if (session.options().json)
            session.printJson(result);
        return CtlStatus::Success;
    });
}

} // namespace

void addScreenCommands(Command app, Commands &commands)
{
    const auto lists = std::make_shared<ListArguments>();
    Command ls = commands.add(
        app, "ls", "Show a list", [lists](HostSession &session) { return list(session, *lists); });
    addPlace(ls, lists->words, "The list; without it, what there is");
    addList(ls, *lists);

    const auto searched = std::make_shared<ListArguments>();
    Command find = commands.add(app, "search", "Search and show what is found",
        [searched](HostSession &session) { return search(session, *searched); });
    find.addOption("WORD", searched->words, "What to search for").required();
    addList(find, *searched);

    const auto marked = std::make_shared<ListArguments>();
    addList(commands.add(app, "favorites", "Show the favorites",
                [marked](HostSession &session) {
                    return show(session, CtlPlace::favorites(), *marked);
                }),
        *marked);

    const auto read = std::make_shared<ValueArguments>();
    Command getValue = commands.add(
        app, "get", "Print a value", [read](HostSession &session) { return get(session, *read); });
    getValue.addOption("PLACE", read->place, "The value, row or list").required();
    getValue.addOption("ROLE", read->roles, "What of it (value)");

    const auto written = std::make_shared<ValueArguments>();
    Command setValue = commands.add(app, "set", "Change a value",
        [written](HostSession &session) { return set(session, *written); });
    setValue.addOption("PLACE", written->place, "The value").required();
    setValue.addOption("VALUE", written->value, "What it shall be").required();
}
