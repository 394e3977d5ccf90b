// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/Screens.h"

#include "ctl/RowText.h"

#include <algorithm>
#include <limits>

namespace {

/// Rows per request.
constexpr int Range = 100;

QVariantHash rowsParams(const CMPath &path, const QStringList &roles)
{
    QVariantHash params = pathParams(path);
    params.insert(QStringLiteral("roles"), roles);
    return params;
}

} // namespace

VeskRoles namedRoles(const QStringList &roles, const QVariantList &values)
{
    VeskRoles row;
    for (int role = 0; role < roles.size() && role < values.size(); ++role) {
        if (!values.at(role).isNull())
            row.insert(roles.at(role), values.at(role));
    }
    return row;
}

bool isEmptyRow(const QVariantList &values)
{
    return std::all_of(
        values.begin(), values.end(), [](const QVariant &value) { return value.isNull(); });
}

QVariantHash listJson(const CtlPlace &place, const CMPath &path, const VeskRoles &screen)
{
    return {{QStringLiteral("title"), screen[VeskRoles::Title()]},
        {QStringLiteral("path"), path.toEncoded()}, {QStringLiteral("place"), place.toText()}};
}

CtlResult<ListForm> Screens::form()
{
    const CtlOptions &options = m_session.options();
    ListForm form {{options.first, options.last}, options.paths, false};
    if (options.limit > 0)
        form.range.last = form.range.first + options.limit - 1;
    if (form.range.last >= 0 && form.range.last < form.range.first)
        return m_session.fail(CtlStatus::BadUsage, ctlText("--last is before --first"));
    return form;
}

CtlResult<> Screens::show(const CMPath &path, const CtlPlace &place, const ListForm &form)
{
    return m_session.options().json ? printAsJson(path, place, form) : print(path, place, form);
}

CtlResult<VeskRoles> Screens::row(const CMPath &path, int index, const QStringList &roles)
{
    const auto row = rowIfAny(path, index, roles);
    if (!row)
        return failure(row.error());
    if (!*row) {
        return m_session.fail(
            CtlStatus::Failed, ctlText("there is no row %1").arg(QString::number(index)));
    }
    return **row;
}

CtlResult<std::optional<VeskRoles>> Screens::rowIfAny(
    const CMPath &path, int index, const QStringList &roles)
{
    QVariantHash params = rowsParams(path, roles);
    params.insert(QStringLiteral("first"), index);
    params.insert(QStringLiteral("last"), index);
    const auto rows = callRows(params, roles);
    if (!rows)
        return failure(rows.error());
    return rows->isEmpty() ? std::nullopt : std::optional(rows->first());
}

CtlResult<QList<VeskRoles>> Screens::rows(const CMPath &path, const QStringList &roles)
{
    return callRows(rowsParams(path, roles), roles);
}

CtlResult<QList<VeskRoles>> Screens::callRows(const QVariantHash &params, const QStringList &roles)
{
    const auto result = m_session.call(QStringLiteral("getRows"), params);
    if (!result)
        return failure(result.error());
    QList<VeskRoles> rows;
    const QVariantList list = VeskRowsRoles(*result).rows();
    for (const QVariant &values : list)
        rows.append(namedRoles(roles, values.toList()));
    return rows;
}

CtlResult<QList<VeskRoles>> Screens::allRows(const CMPath &path, const QStringList &roles)
{
    QList<VeskRoles> all;
    const auto take = [&](int, const VeskRowsRoles &part) {
        const QVariantList rows = part.rows();
        for (const QVariant &values : rows)
            all.append(namedRoles(roles, values.toList()));
        return true;
    };
    if (const auto fetched = fetch(path, roles, {}, take); !fetched)
        return failure(fetched.error());
    return all;
}

CtlResult<std::optional<int>> Screens::find(const CMPath &screen, const CMPath &row)
{
    std::optional<int> index;
    const QString wanted = row.toEncoded();
    const auto take = [&](int first, const VeskRowsRoles &part) {
        const QVariantList rows = part.rows();
        for (int i = 0; i < rows.size() && !index; ++i) {
            if (rows.at(i).toList().value(0).toString() == wanted)
                index = first + i;
        }
        return !index;
    };
    if (const auto fetched = fetch(screen, {VeskRoles::Path()}, {}, take); !fetched)
        return failure(fetched.error());
    return index;
}

QVariantHash Screens::player()
{
    return m_session.answer(QStringLiteral("player.state")).result.toHash();
}

CtlResult<> Screens::print(const CMPath &path, const CtlPlace &place, const ListForm &form)
{
    const bool forTerminal = m_session.isForTerminal();
    std::ostream &out = m_session.terminal().out;
    RowPrinter printer(place, player(), form.paths, m_session.terminal().width, m_session.style());
    QStringList roles = rowTextRoles();
    if (form.streamsOfPlayer)
        roles.append(VeskRoles::MediaData());
    QStringList shown;
    QVector<int> types;
    bool isMenu = false;
    bool begun = false;
    bool some = false;
    const auto take = [&](int first, const VeskRowsRoles &screen) {
        const QString title = printableText(screen.roles()[VeskRoles::Title()].toString());
        if (!begun && forTerminal && !title.isEmpty())
            out << m_session.style().bold(title) << '\n';
        begun = true;
        isMenu |= screen.roles().containerType() == int(VeskRolesContainerType::ContextMenu);
        QList<RowText> texts;
        int index = first;
        const QVariantList rows = screen.rows();
        for (const QVariant &values : rows) {
            const VeskRoles row = namedRoles(roles, values.toList());
            shown.append(row.path().toEncoded());
            types.append(row.type());
            if (!isEmptyRow(values.toList()))
                texts.append(printer.text(index, row));
            ++index;
        }
        if (form.streamsOfPlayer)
            printer.markStream(texts);
        some |= !texts.isEmpty();
        out << printer.lines(texts);
        out.flush();
        return true;
    };
    auto fetched = fetch(path, roles, form.range, take);
    if (!fetched)
        return fetched;
    if (forTerminal && !some)
        out << m_session.style().dim(ctlText("There is nothing here.")) << '\n';
    m_session.shown().add(path, form.range.first, shown, types, isMenu);
    return fetched;
}

CtlResult<> Screens::printAsJson(const CMPath &path, const CtlPlace &place, const ListForm &form)
{
    const QVariantHash state = player();
    QVariantHash list;
    QVariantList rows;
    const auto take = [&](int first, const VeskRowsRoles &screen) {
        list = listJson(place, path, screen.roles());
        list.insert(QStringLiteral("rowsCount"), screen.rowsCount());
        int index = first;
        const QVariantList values = screen.rows();
        for (const QVariant &value : values) {
            if (!isEmptyRow(value.toList())) {
                rows.append(rowJson(
                    place.row(index), index, namedRoles(VeskRoles::all(), value.toList()), state));
            }
            ++index;
        }
        return true;
    };
    auto fetched = fetch(path, VeskRoles::all(), form.range, take);
    if (fetched) {
        list.insert(QStringLiteral("rows"), rows);
        m_session.printJson(list);
    }
    return fetched;
}

CtlResult<> Screens::fetch(
    const CMPath &path, const QStringList &roles, RowRange range, const TakeRows &take)
{
    const int last = range.last < 0 ? std::numeric_limits<int>::max() : range.last;
    int first = range.first;
    bool more = true;
    while (more) {
        QVariantHash params = rowsParams(path, roles);
        params.insert(QStringLiteral("first"), first);
        params.insert(QStringLiteral("last"), qMin(last, first + Range - 1));
        const auto result = m_session.call(QStringLiteral("getRows"), params);
        if (!result)
            return failure(result.error());
        const VeskRowsRoles screen(*result);
        const int count = screen.rows().size();
        const bool wanted = take(first, screen);
        first += count;
        more = wanted && count > 0 && first < screen.rowsCount() && first <= last;
    }
    return {};
}
