// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMListRowsNode.h"

#include "api/core/ThreadCheck.h"
#include "api/nodes/CMRootWorker.h"
#include "api/values/VeskRowsRoles.h"
#include "api/values/variants.h"

#include <algorithm>

namespace {

CMError invalidRangeError()
{
    return CMError(TrString("CMListRowsNode", "The range of rows is not valid."));
}

QVariantList valuesOf(const VeskRoles &row, const QStringList &roles)
{
    QVariantList values;
    values.reserve(roles.size());
    for (const QString &role : roles)
        values.append(row.value(role));
    return values;
}

/// The row for what the node at \a path \a answered, whatever that was.
QVariantList rowOf(const QVariantList &answered, const CMPath &path, const VeskRoles &given,
    const QStringList &roles)
{
    QVariantList values;
    values.reserve(roles.size());
    for (int i = 0; i < roles.size(); ++i) {
        QVariant value = given.contains(roles.at(i)) ? given.value(roles.at(i)) : answered.value(i);
        if (veskIsNull(value) && roles.at(i) == VeskRoles::Path())
            value = path.toEncoded();
        values.append(value);
    }
    return values;
}

/// Whether \a given has all of \a roles, but for the path, which is known anyway.
bool isGiven(const VeskRoles &given, const QStringList &roles)
{
    return !given.isEmpty() && std::all_of(roles.begin(), roles.end(), [&](const QString &role) {
        return role == VeskRoles::Path() || given.contains(role);
    });
}

bool isSame(const QVariant &a, const QVariant &b)
{
    const int text = qMetaTypeId<TrString>();
    if (a.userType() == text || b.userType() == text)
        return TrString::fromVariant(a).toString() == TrString::fromVariant(b).toString();
    return a == b;
}

} // namespace

/// The rows of one answer while they arrive. The caller of set() calls handOnWhenComplete() itself,
/// because a row that is answered at once must not complete a list that is still being asked for.
class CMListRowsNode::Collector {
public:
    Collector(int count, Collected collected)
        : m_collected(std::move(collected))
    {
        m_rows.reserve(count);
        for (int i = 0; i < count; ++i)
            m_rows.append(QVariant());
        m_missing = count;
    }

    void set(int index, const QVariantList &row)
    {
        m_rows[index] = QVariant(row);
        --m_missing;
    }

    void handOnWhenComplete()
    {
        if (m_missing == 0 && m_collected)
            std::exchange(m_collected, nullptr)(m_rows);
    }

private:
    Collected m_collected;
    QVariantList m_rows;
    int m_missing;
};

CMListRowsNode::CMListRowsNode(const CMPath &path)
    : CMContainerNode(path)
{
    setServesBelow(false);
}

CMListRowsNode::~CMListRowsNode() = default;

CMListRowsNode *CMListRowsNode::create(CMNodes *nodes, const CMPath &path)
{
    auto *node = new CMListRowsNode(path);
    node->setNodes(nodes);
    return node;
}

void CMListRowsNode::rowsAppend(const CMPath &path)
{
    append({path, {}});
}

void CMListRowsNode::rowsAppend(const VeskRoles &roles)
{
    append({CMPath(), roles});
}

void CMListRowsNode::rowsAppend(const CMPath &path, const VeskRoles &roles)
{
    append({path, roles});
}

void CMListRowsNode::append(Row row)
{
    VESK_ASSERT_OWN_THREAD();
    m_rows.push_back(std::move(row));
    const int index = static_cast<int>(m_rows.size()) - 1;
    for (const auto &subscribed : m_subscriptions) {
        follow(subscribed.first, index);
        if (CMSubscribe *subscribers = subscribe())
            subscribers->changed(subscribed.first, CMSubscribe::RowsChangeInserted(), index, index);
    }
}

CMPath CMListRowsNode::rowPath(const CMPath &row, const CMPath &opened) const
{
    CMPath path = row;
    if (m_copyPathParams) {
        for (const auto &param : opened.paramList()) {
            if (!path.hasParam(param.first))
                path.addParam(param.first, param.second);
        }
    }
    return path;
}

bool CMListRowsNode::getRowsRequest(const CMGetRowsRequest &request)
{
    const int first = request.first();
    if (first < 0 || request.last() < first) {
        request.reply().setError(invalidRangeError());
        return true;
    }
    const int count = static_cast<int>(m_rows.size());
    const int last = std::min(request.last(), count - 1);

    VeskRoles screen = getDataRoles(request.roles(), request.path().params());
    screen.setPath(request.path());
    const CMReply<QVariant> reply = request.reply();
    collect(request.path(), named(request.roles()), first, last,
        [reply, screen, count](const QVariantList &rows) {
            VeskRowsRoles answer;
            answer.setRowsCount(count);
            answer.setRows(rows);
            answer.setRoles(screen);
            reply.setValue(answer);
        });
    return true;
}

bool CMListRowsNode::matchRowRequest(const CMMatchRowRequest &request)
{
    const CMReply<QVariant> reply = request.reply();
    const QVariant &wanted = request.value();
    collect(request.path(), {request.role()}, 0, static_cast<int>(m_rows.size()) - 1,
        [reply, wanted](const QVariantList &rows) {
            const auto match = std::find_if(rows.begin(), rows.end(),
                [&](const QVariant &row) { return isSame(row.toList().value(0), wanted); });
            reply.setValue(match == rows.end() ? -1 : static_cast<int>(match - rows.begin()));
        });
    return true;
}

/// Gathers rows \a first to \a last, each a list of the values of \a roles; none when \a last is
/// less than \a first.
void CMListRowsNode::collect(
    const CMPath &opened, const QStringList &roles, int first, int last, Collected collected)
{
    const auto collector
        = std::make_shared<Collector>(std::max(0, last - first + 1), std::move(collected));
    for (int i = first; i <= last; ++i) {
        const int index = i - first;
        const Row &row = m_rows[static_cast<std::size_t>(i)];
        if (row.path.isEmpty()) {
            collector->set(index, valuesOf(row.given, roles));
            continue;
        }
        const CMPath path = rowPath(row.path, opened);
        if (isGiven(row.given, roles)) {
            collector->set(index, rowOf({}, path, row.given, roles));
            continue;
        }
        const auto answer = std::make_shared<CMReplyData<QVariant>>();
        ask(CMGetDataRequest(path, roles, CMReply<QVariant>(answer)));
        answer->whenFinished(this, [collector, answer, index, path, given = row.given, roles] {
            const QVariantList values
                = answer->error().isEmpty() ? veskListIn(answer->value()) : QVariantList();
            collector->set(index, rowOf(values, path, given, roles));
            collector->handOnWhenComplete();
        });
    }
    collector->handOnWhenComplete();
}

void CMListRowsNode::rowsPathAdd(const CMPath &path)
{
    if (!m_subscriptions.try_emplace(path).second)
        return;
    for (std::size_t i = 0; i < m_rows.size(); ++i)
        follow(path, static_cast<int>(i));
}

void CMListRowsNode::rowsPathRemove(const CMPath &path)
{
    m_subscriptions.erase(path);
}

void CMListRowsNode::follow(const CMPath &opened, int row)
{
    const CMPath &path = m_rows[static_cast<std::size_t>(row)].path;
    CMRootWorker *root = CMRoot();
    if (path.isEmpty() || !root)
        return;
    m_subscriptions[opened].push_back(root->subscribe(
        rowPath(path, opened), this,
        [this, opened, row](const CMChange &change) {
            // A reset that covers the list itself has reached its subscribers already.
            const bool isKnown
                = change.kind == CMSubscribe::RowsChangeReset() && opened.startsWith(change.start);
            if (!isKnown
                && (change.kind == CMSubscribe::ValueChanged()
                    || change.kind == CMSubscribe::RowsChangeReset()))
                subscribe()->changed(opened, CMSubscribe::RowsChangeChanged(), row, row);
        },
        CMRootWorker::ForOthers));
}
