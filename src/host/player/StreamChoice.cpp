// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/StreamChoice.h"

#include "api/core/ThreadCheck.h"
#include "api/nodes/CMRootWorker.h"
#include "api/values/variants.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <memory>

namespace {

QList<VeskRoles> rowsOf(const QVariant &answer, const QStringList &roles)
{
    QList<VeskRoles> rows;
    const QVariantList list = VeskRowsRoles(answer.toHash()).rows();
    for (const QVariant &values : list) {
        VeskRoles row;
        const QVariantList each = veskListIn(values);
        for (int i = 0; i < roles.size() && i < each.size(); ++i) {
            if (!veskIsNull(each.at(i)))
                row.insert(roles.at(i), each.at(i));
        }
        rows.append(row);
    }
    return rows;
}

/// The path parameters by which \a streams can be told apart.
QSet<QString> tellingParams(const QList<VeskRoles> &streams)
{
    QHash<QString, QSet<QString>> values;
    QHash<QString, int> counts;
    for (const VeskRoles &stream : streams) {
        const CMPath path = stream.path();
        for (const auto &param : path.paramList()) {
            values[param.first].insert(param.second);
            ++counts[param.first];
        }
    }
    QSet<QString> telling;
    for (auto it = values.begin(); it != values.end(); ++it) {
        if (it->size() > 1 || counts.value(it.key()) < streams.size())
            telling.insert(it.key());
    }
    return telling;
}

} // namespace

bool StreamChoice::mayHave(const VeskRoles &row)
{
    const VeskMetaData meta = row.mediaData().metaData();
    return meta.alternativeStreams() && !meta.contentPlayContextPath().isEmpty();
}

CMPath StreamChoice::itemOf(const VeskRoles &row)
{
    const VeskList<VeskRoles> matching = row.mediaData().metaData().matchingMediaRoles();
    return matching.isEmpty() ? row.path() : VeskRoles(matching.first()).path();
}

bool StreamChoice::isStream(const VeskRoles &row)
{
    const CMPath item = itemOf(row);
    return !item.isEmpty() && !row.path().isEmpty() && item != row.path();
}

int StreamChoice::indexOf(const QList<VeskRoles> &streams, const CMPath &path)
{
    const QSet<QString> telling = tellingParams(streams);
    int found = -1;
    for (int i = 0; i < streams.size(); ++i) {
        const CMPath each = streams.at(i).path();
        if (each == path)
            return i;
        const bool isLike = each.equals(path, CMPath::IgnoreParams)
            && std::all_of(telling.begin(), telling.end(), [&](const QString &key) {
                   return each.hasParam(key) == path.hasParam(key)
                       && each.param(key) == path.param(key);
               });
        if (isLike && found >= 0)
            return -1;
        if (isLike)
            found = i;
    }
    return found;
}

void StreamChoice::find(const VeskRoles &row, Found found)
{
    VESK_ASSERT_OWN_THREAD();
    ++m_search;
    const CMPath item = itemOf(row);
    // Without titles, for which a menu may have to send a request to its service.
    ask(row.mediaData().metaData().contentPlayContextPath(),
        {VeskRoles::Type(), VeskRoles::Path(), VeskRoles::Activity()},
        [this, item, found = std::move(found)](const QList<VeskRoles> &entries) {
            QList<CMPath> choices;
            for (const VeskRoles &entry : entries) {
                if (entry.type() == VeskRolesType::container && !entry.path().isEmpty()
                    && entry.value(VeskRoles::Activity()).toBool())
                    choices.append(entry.path());
            }
            openChoices(choices, item, found);
        });
}

/// Fetches one screen of \a choices after the other until one has streams of \a item.
void StreamChoice::openChoices(const QList<CMPath> &choices, const CMPath &item, const Found &found)
{
    if (choices.isEmpty())
        return found({});
    ask(choices.first(), VeskRoles::all(),
        [this, rest = choices.mid(1), item, found](const QList<VeskRoles> &rows) {
            QList<VeskRoles> streams;
            for (const VeskRoles &row : rows) {
                if (row.type() == VeskRolesType::audio && isStream(row) && itemOf(row) == item
                    && !row.mediaData().activeResource().uri().isEmpty())
                    streams.append(row);
            }
            if (streams.isEmpty())
                return openChoices(rest, item, found);
            found(streams);
        });
}

/// Fetches rows. On an error \a answered gets none.
void StreamChoice::ask(const CMPath &screen, const QStringList &roles, Answered answered)
{
    const auto reply = std::make_shared<CMReplyData<QVariant>>();
    reply->whenFinished(
        this, [this, reply, roles, search = m_search, answered = std::move(answered)] {
            if (search == m_search)
                answered(rowsOf(reply->value(), roles));
        });
    CMRoot()->request(CMGetRowsRequest(screen, roles, 0, MaxStreams - 1, CMReply<QVariant>(reply)));
}
