// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/Groups.h"

#include "ctl/Places.h"
#include "ctl/RowText.h"

#include <algorithm>
#include <limits>

namespace {

/// Rows per request.
constexpr int Page = 100;

QVariantHash rowsParams(const CMPath &path, const QStringList &roles)
{
    QVariantHash params = pathParams(path);
    params.insert(QStringLiteral("roles"), roles);
    return params;
}

RpcAnswer withoutSearch()
{
    RpcAnswer answer;
    answer.kind = RpcAnswer::Error;
    answer.message = noSearch();
    return answer;
}

} // namespace

void findResults(
    HostSession &session, const Service &service, const QString &text, const FoundScreen &found)
{
    const QStringList roles {VeskRoles::Type(), VeskRoles::Query(), VeskRoles::QueryPath()};
    session.send(QStringLiteral("getRows"), rowsParams(service.searches, roles),
        [roles, text, found](const RpcAnswer &answer) {
            if (answer.kind != RpcAnswer::Result)
                return found(failure(answer));
            const QVariantList rows = VeskRowsRoles(answer.result.toHash()).rows();
            for (const QVariant &values : rows) {
                const VeskRoles row = namedRoles(roles, values.toList());
                CMPath path = row.queryPath();
                if (row.type() == VeskRolesType::query && !path.isEmpty()) {
                    path.addParam(row.query(), text);
                    return found(path);
                }
            }
            found(failure(withoutSearch()));
        });
}

CtlResult<> Groups::search(const QList<Service> &services, const QString &text)
{
    begin(services);
    for (Group &group : m_groups) {
        findResults(m_session, group.service, text,
            [this, &group](const Result<CMPath, RpcAnswer> &screen) {
                if (!screen)
                    return fail(group, screen.error());
                group.screen = *screen;
                read(group);
            });
    }
    return wait();
}

CtlResult<> Groups::favorites(const QList<Service> &services)
{
    begin(services);
    for (Group &group : m_groups) {
        group.screen = group.service.favorites;
        read(group);
    }
    return wait();
}

void Groups::begin(const QList<Service> &services)
{
    m_player = m_session.answer(QStringLiteral("player.state")).result.toHash();
    for (const Service &service : services) {
        Group group;
        group.service = service;
        group.title = service.id;
        m_groups.push_back(group);
    }
    for (Group &group : m_groups)
        readTitle(group);
    m_session.setSlowNote([this] { return waitingFor(); });
}

CtlResult<> Groups::wait()
{
    m_session.client().waitForAnswers();
    if (m_someAnswered)
        return {};
    return failure(m_hasHost ? CtlStatus::Failed : CtlStatus::NoHost);
}

RowRange Groups::range() const
{
    const bool isLimited = m_form.range.last >= 0 || !m_session.isForTerminal();
    const int last = isLimited ? m_form.range.last : m_form.range.first + DefaultRows - 1;
    return {m_form.range.first, last < 0 ? std::numeric_limits<int>::max() : last};
}

QStringList Groups::roles() const
{
    return m_session.options().json ? VeskRoles::all() : rowTextRoles();
}

QString Groups::waitingFor() const
{
    QStringList names;
    for (const Group &group : m_groups) {
        if (!group.isDone())
            names.append(group.title);
    }
    return ctlText("Still waiting for: %1").arg(names.join(QLatin1String(", ")));
}

void Groups::read(Group &group)
{
    const int first = range().first + group.rows.size();
    QVariantHash params = rowsParams(group.screen, roles());
    params.insert(QStringLiteral("first"), first);
    params.insert(QStringLiteral("last"), qMin(range().last, first + Page - 1));
    m_session.send(QStringLiteral("getRows"), params,
        [this, &group](const RpcAnswer &answer) { take(group, answer); });
}

void Groups::take(Group &group, const RpcAnswer &answer)
{
    if (answer.kind != RpcAnswer::Result)
        return fail(group, answer);
    const VeskRowsRoles screen(answer.result.toHash());
    const QVariantList rows = screen.rows();
    group.roles = screen.roles();
    group.rowsCount = screen.rowsCount();
    group.rows += rows;
    const int next = range().first + group.rows.size();
    if (!rows.isEmpty() && next < group.rowsCount && next <= range().last)
        return read(group);
    m_someAnswered = true;
    group.isRead = true;
    finish(group);
}

void Groups::fail(Group &group, const RpcAnswer &answer)
{
    m_hasHost &= answer.kind != RpcAnswer::NoHost;
    group.error = answer;
    group.isRead = true;
    finish(group);
}

/// By itself, so that a service that is busy delays its own list only.
void Groups::readTitle(Group &group)
{
    QVariantHash params = pathParams(group.service.root);
    params.insert(QStringLiteral("roles"), QStringList {VeskRoles::Title()});
    m_session.send(QStringLiteral("getData"), params, [this, &group](const RpcAnswer &answer) {
        const QVariantList values = answer.result.toHash().value(QStringLiteral("values")).toList();
        const QString title = values.value(0).toString();
        if (!title.isEmpty())
            group.title = title;
        group.isTitled = true;
        finish(group);
    });
}

void Groups::finish(Group &group)
{
    if (!group.isDone())
        return;
    if (group.error) {
        printError(group);
    } else {
        if (m_session.options().json)
            printJson(group);
        else
            print(group);
        remember(group);
    }
    m_session.terminal().out.flush();
}

void Groups::printError(const Group &group)
{
    if (m_session.options().json) {
        QVariantHash error = errorJson(*group.error);
        error.insert(QStringLiteral("service"), group.service.id);
        m_session.printJson(error);
    } else if (m_session.isForTerminal()) {
        m_session.terminal().out << m_session.style().bold(printableText(group.title)) << '\n';
        m_session.printText(QStringLiteral("     - ") + m_session.textOf(*group.error));
    } else {
        m_session.note(QStringLiteral("%1: %2").arg(group.title, m_session.textOf(*group.error)));
    }
}

void Groups::print(const Group &group)
{
    const bool forTerminal = m_session.isForTerminal();
    std::ostream &out = m_session.terminal().out;
    const TerminalStyle &style = m_session.style();
    RowPrinter printer(
        CtlPlace::of(group.screen), m_player, m_form.paths, m_session.terminal().width, style);
    const int first = forTerminal ? m_number : range().first;
    QList<RowText> texts;
    for (int i = 0; i < group.rows.size(); ++i) {
        const QVariantList values = group.rows.at(i).toList();
        if (!isEmptyRow(values))
            texts.append(printer.text(first + i, namedRoles(roles(), values)));
    }
    if (forTerminal)
        out << style.bold(printableText(group.title)) << '\n';
    out << printer.lines(texts);
    if (!forTerminal)
        return;
    const int more = group.rowsCount - range().first - group.rows.size();
    if (texts.isEmpty())
        out << "     " << style.dim(ctlText("There is nothing here.")) << '\n';
    else if (more > 0)
        out << "     "
            << style.dim(ctlText("%1 more with --in %2")
                             .arg(QString::number(more), printableText(group.service.id)))
            << '\n';
}

void Groups::printJson(const Group &group)
{
    QVariantHash list = listJson(CtlPlace::of(group.screen), group.screen, group.roles);
    list.insert(QStringLiteral("service"), group.service.id);
    list.insert(QStringLiteral("rowsCount"), group.rowsCount);
    QVariantList rows;
    for (int i = 0; i < group.rows.size(); ++i) {
        const QVariantList values = group.rows.at(i).toList();
        if (!isEmptyRow(values)) {
            rows.append(rowJson(CtlPlace::of(group.screen).row(range().first + i),
                range().first + i, namedRoles(roles(), values), m_player));
        }
    }
    list.insert(QStringLiteral("rows"), rows);
    m_session.printJson(list);
}

/// After each list, so that its numbers count even if the command is interrupted.
void Groups::remember(const Group &group)
{
    ShownPart part {group.screen, range().first, {}, {}};
    for (const QVariant &values : group.rows) {
        const VeskRoles row = namedRoles(roles(), values.toList());
        part.rows.append(row.path().toEncoded());
        part.types.append(row.type());
    }
    m_number += group.rows.size();
    m_shown.append(part);
    m_session.shown().add(m_shown);
}
