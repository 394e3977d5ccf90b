#include "host/player/StreamChoice.h"

#include "api/nodes/CMRootWorker.h"

#include <memory>

namespace {

QList<VeskRoles> rowsOf(const QVariant &answer, const QStringList &roles)
{
    QList<VeskRoles> rows;
    const QVariantList list = VeskRowsRoles(answer.toHash()).rows();
    for (const QVariant &values : list) {
        VeskRoles row;
        const QVariantList each = values.toList();
        for (int i = 0; i < roles.size() && i < each.size(); ++i) {
            if (!each.at(i).isNull())
                row.insert(roles.at(i), each.at(i));
        }
        rows.append(row);
    }
    return rows;
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

void StreamChoice::find(const VeskRoles &row, Found found)
{
    ++m_search;
    const CMPath item = itemOf(row);
    // No titles: to find those, a menu may have to ask its service.
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

/// Hands on the rows of the first of \a choices that has streams of \a item.
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

/// Calls \a answered with no rows when there are none to be had.
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
