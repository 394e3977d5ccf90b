// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/Screens.h"

#include "api/values/VeskRowsRoles.h"
#include "ctl/RowText.h"

#include <algorithm>
#include <limits>

namespace {

/// Rows that are asked for at once.
constexpr int Range = 100;

/// There is nothing to show in a row of which the service says nothing.
bool isEmpty(const QVariant &row)
{
    const QVariantList values = row.toList();
    return std::all_of(
        values.begin(), values.end(), [](const QVariant &value) { return value.isNull(); });
}

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

CtlStatus Screens::show(const CMPath &path, const CtlPlace &place, const ListForm &form)
{
    return m_session.options().json ? printAsJson(path, place, form) : print(path, place, form);
}

CtlStatus Screens::row(const CMPath &path, int index, const QStringList &roles, VeskRoles &row)
{
    QList<VeskRoles> found;
    const CtlStatus status = range(path, index, roles, found);
    if (status == CtlStatus::Success && found.isEmpty()) {
        return m_session.fail(
            CtlStatus::Failed, ctlText("there is no row %1").arg(QString::number(index)));
    }
    row = found.value(0);
    return status;
}

CtlStatus Screens::range(
    const CMPath &path, int index, const QStringList &roles, QList<VeskRoles> &rows)
{
    QVariantHash params = rowsParams(path, roles);
    params.insert(QStringLiteral("first"), index);
    params.insert(QStringLiteral("last"), index);
    return take(params, roles, rows);
}

CtlStatus Screens::rows(const CMPath &path, const QStringList &roles, QList<VeskRoles> &rows)
{
    return take(rowsParams(path, roles), roles, rows);
}

CtlStatus Screens::take(
    const QVariantHash &params, const QStringList &roles, QList<VeskRoles> &rows)
{
    return m_session.call(QStringLiteral("getRows"), params, [&](const QVariantHash &result) {
        const QVariantList list = VeskRowsRoles(result).rows();
        for (const QVariant &values : list)
            rows.append(namedRoles(roles, values.toList()));
        return CtlStatus::Success;
    });
}

CtlStatus Screens::find(const CMPath &screen, const CMPath &row, int &index)
{
    index = -1;
    const QString wanted = row.toEncoded();
    return fetch(screen, {VeskRoles::Path()}, {}, [&](int first, const QVariantHash &answer) {
        const QVariantList rows = VeskRowsRoles(answer).rows();
        for (int i = 0; i < rows.size() && index < 0; ++i) {
            if (rows.at(i).toList().value(0).toString() == wanted)
                index = first + i;
        }
        return index < 0;
    });
}

QVariantHash Screens::player()
{
    return m_session.answer(QStringLiteral("player.state"), {}).result.toHash();
}

CtlStatus Screens::print(const CMPath &path, const CtlPlace &place, const ListForm &form)
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
    const auto take = [&](int first, const QVariantHash &answer) {
        const VeskRowsRoles screen(answer);
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
            if (!isEmpty(values))
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
    const CtlStatus status = fetch(path, roles, form.range, take);
    if (status != CtlStatus::Success)
        return status;
    if (forTerminal && !some)
        out << m_session.style().dim(ctlText("There is nothing here.")) << '\n';
    m_session.shown().add(path, form.range.first, shown, types, isMenu);
    return status;
}

CtlStatus Screens::printAsJson(const CMPath &path, const CtlPlace &place, const ListForm &form)
{
    const QVariantHash state = player();
    QVariantHash list;
    QVariantList rows;
    const auto take = [&](int first, const QVariantHash &answer) {
        const VeskRowsRoles screen(answer);
        list.insert(QStringLiteral("title"), screen.roles()[VeskRoles::Title()]);
        list.insert(QStringLiteral("path"), path.toEncoded());
        list.insert(QStringLiteral("place"), place.toText());
        list.insert(QStringLiteral("rowsCount"), screen.rowsCount());
        int index = first;
        const QVariantList values = screen.rows();
        for (const QVariant &value : values) {
            if (!isEmpty(value)) {
                rows.append(rowJson(
                    place.row(index), index, namedRoles(VeskRoles::all(), value.toList()), state));
            }
            ++index;
        }
        return true;
    };
    const CtlStatus status = fetch(path, VeskRoles::all(), form.range, take);
    if (status == CtlStatus::Success) {
        list.insert(QStringLiteral("rows"), rows);
        m_session.printJson(list);
    }
    return status;
}

CtlStatus Screens::fetch(
    const CMPath &path, const QStringList &roles, RowRange range, const TakeRows &take)
{
    const int last = range.last < 0 ? std::numeric_limits<int>::max() : range.last;
    int first = range.first;
    bool more = true;
    while (more) {
        QVariantHash params = rowsParams(path, roles);
        params.insert(QStringLiteral("first"), first);
        params.insert(QStringLiteral("last"), qMin(last, first + Range - 1));
        const auto takeRange = [&](const QVariantHash &result) {
            const VeskRowsRoles rows(result);
            const bool wanted = take(first, result);
            first += rows.rows().size();
            more = wanted && !rows.rows().isEmpty() && first < rows.rowsCount() && first <= last;
            return CtlStatus::Success;
        };
        const CtlStatus status = m_session.call(QStringLiteral("getRows"), params, takeRange);
        if (status != CtlStatus::Success)
            return status;
    }
    return CtlStatus::Success;
}
