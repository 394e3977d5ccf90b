// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/RowSearch.h"

#include "api/core/ThreadCheck.h"
#include "api/nodes/CMRootWorker.h"
#include "api/values/variants.h"
#include "host/player/PlayerText.h"

#include <cstdlib>
#include <memory>

namespace {

CMError goneError()
{
    CMError error(playerText(QT_TRANSLATE_NOOP("Player", "This entry is no longer in the list.")));
    error.insert(CMError::Name(), RowSearch::goneName());
    return error;
}

CMError noRowError()
{
    return CMError(playerText(QT_TRANSLATE_NOOP("Player", "There is no such row.")));
}

/// Converts a row that was requested with VeskRoles::all().
VeskRoles rolesOf(const QVariant &row)
{
    VeskRoles roles;
    const QVariantList values = veskListIn(row);
    for (int i = 0; i < values.size() && i < VeskRoles::all().size(); ++i) {
        if (!veskIsNull(values.at(i)))
            roles.insert(VeskRoles::all().at(i), values.at(i));
    }
    return roles;
}

/// The index of the row with \a path nearest to \a wanted; -1 if there is none.
int nearest(const QVariantList &rows, const CMPath &path, int wanted)
{
    const int role = VeskRoles::all().indexOf(VeskRoles::Path());
    int found = -1;
    for (int i = 0; i < rows.size(); ++i) {
        const bool nearer = found < 0 || std::abs(i - wanted) < std::abs(found - wanted);
        if (nearer && CMPath::fromVariant(veskListIn(rows.at(i)).value(role)) == path)
            found = i;
    }
    return found;
}

} // namespace

RowSearch::RowSearch(FaultWords words, QObject *parent)
    : QObject(parent)
    , m_words(std::move(words))
{
}

RowSearch::~RowSearch() = default;

const QString &RowSearch::goneName()
{
    static const QString name = QStringLiteral("player:rowGone");
    return name;
}

void RowSearch::start(const RowAddress &address, Found found)
{
    VESK_ASSERT_OWN_THREAD();
    m_address = address;
    m_found = std::move(found);
    if (address.path.isEmpty())
        return ask(address.row, address.row);
    const qint64 last = qint64(address.row) + Neighbours;
    ask(qMax(0, address.row - Neighbours), static_cast<int>(qMin<qint64>(last, INT_MAX)));
}

void RowSearch::ask(int first, int last)
{
    const auto reply = std::make_shared<CMReplyData<QVariant>>();
    reply->whenFinished(this, [this, reply, first, last] {
        take(errorOf(*reply), VeskRowsRoles(reply->value().toHash()), first, last);
    });
    CMRoot()->request(CMGetRowsRequest(
        m_address.screen, VeskRoles::all(), first, last, CMReply<QVariant>(reply)));
}

/// The response's error, worded by m_words when only the service's fault is known. An empty screen
/// is no error unless the service failed.
CMError RowSearch::errorOf(const CMReplyData<QVariant> &answer) const
{
    const CMError error = answer.error();
    const VeskServiceFault fault = CMUnexplainedFault(answer);
    const bool isUntold = error.isEmpty() ? !fault.isEmpty() : fault.isBareRefusal();
    return isUntold && m_words ? CMError(m_words(m_address.screen, fault)) : error;
}

void RowSearch::take(const CMError &error, const VeskRowsRoles &rows, int first, int last)
{
    if (error.name() == CMError::TooLongName() && last - first >= RangeRows) {
        // The response would exceed the size limit: continue in smaller requests.
        m_rangeRows = RangeRows;
        return ask(first, first + RangeRows - 1);
    }
    if (!error.isEmpty())
        return finish(error);
    const QVariantList list = rows.rows();
    if (m_address.path.isEmpty())
        return list.isEmpty() ? finish(noRowError()) : finish({}, rolesOf(list.first()));
    const int found = nearest(list, m_address.path, m_address.row - first);
    if (found >= 0)
        return finish({}, rolesOf(list.at(found)));
    if (!m_whole && first == 0 && list.size() >= rows.rowsCount())
        return finish(goneError());
    askForMore(rows, last);
}

void RowSearch::askForMore(const VeskRowsRoles &rows, int last)
{
    const int first = m_whole ? last + 1 : 0;
    m_whole = true;
    if (first >= qMin(rows.rowsCount(), MaxRows))
        return finish(goneError());
    ask(first, qMin(first + m_rangeRows, MaxRows) - 1);
}

void RowSearch::finish(const CMError &error, const VeskRoles &row)
{
    // The callback may destroy the search.
    const Found found = std::move(m_found);
    found(error, row);
}
