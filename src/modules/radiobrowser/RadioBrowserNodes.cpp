// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/radiobrowser/RadioBrowserNodes.h"

#include "api/core/Language.h"
#include "modules/radiobrowser/RadioBrowserData.h"

#include <algorithm>

namespace {

using QueryItems = VeskUrl::QueryItems;

QString latin1(const char *text)
{
    return QString::fromLatin1(text);
}

QString titleParameter()
{
    return QStringLiteral("title");
}

QString orderParameter()
{
    return QStringLiteral("order");
}

/// The orders in which stations are listed, and the titles of lists that have nothing else to say.
struct Order {
    const char *field;
    const char *title;
};
constexpr Order Orders[] = {
    {"clickcount", QT_TRANSLATE_NOOP("RadioBrowser", "Most played")},
    {"votes", QT_TRANSLATE_NOOP("RadioBrowser", "Most voted")},
    {"changetimestamp", QT_TRANSLATE_NOOP("RadioBrowser", "Recently changed")},
};

const Order &orderOf(const QString &field)
{
    const auto *const found = std::find_if(std::begin(Orders), std::end(Orders),
        [&field](const Order &order) { return field == QLatin1String(order.field); });
    return found == std::end(Orders) ? Orders[0] : *found;
}

/// What everything that is asked of the directory has in common.
QueryItems listQuery(const char *order, bool reverse, int limit)
{
    const auto flag = [](bool on) { return on ? QStringLiteral("true") : QStringLiteral("false"); };
    return {{QStringLiteral("order"), latin1(order)}, {QStringLiteral("reverse"), flag(reverse)},
        {QStringLiteral("hidebroken"), flag(true)},
        {QStringLiteral("limit"), QString::number(limit)}};
}

QueryItems stationsQuery(const CMPath &path)
{
    QueryItems query;
    const QString name = path.param(QStringLiteral("name"));
    if (!name.isEmpty())
        query.append({QStringLiteral("name"), name});
    for (const RadioBrowserCategoryKind &kind : RadioBrowserCategoriesNode::kinds()) {
        const QString parameter = latin1(kind.parameter);
        const QString value = path.param(parameter);
        if (value.isEmpty())
            continue;
        query.append({parameter, value});
        // Without it "pop" finds "synthpop". Codes of countries and codecs are exact as they are.
        if (parameter == QLatin1String("language") || parameter == QLatin1String("tag"))
            query.append({parameter + QStringLiteral("Exact"), QStringLiteral("true")});
    }
    return query;
}

TrString stationCount(int count)
{
    return count == 1
        ? radioBrowserTr(QT_TRANSLATE_NOOP("RadioBrowser", "1 station"))
        : TrString(QStringLiteral("RadioBrowser"),
            latin1(QT_TRANSLATE_N_NOOP("RadioBrowser", "%n stations")), QString(), count);
}

/// The directory has languages and tags in small letters.
QString withCapital(QString name)
{
    if (!name.isEmpty())
        name[0] = name.at(0).toUpper();
    return name;
}

} // namespace

RadioBrowserRootNode::RadioBrowserRootNode(const CMPath &path, CMListRowsNode *searches)
    : CMListRowsNode(path)
    , m_searches(searches)
{
}

QVariant RadioBrowserRootNode::getRoleData(const QString &role, const Params &params)
{
    if (role == VeskRoles::Search())
        return m_searches->getDataRoles(CMAllRoles(), {});
    return CMListRowsNode::getRoleData(role, params);
}

/// Countries stand in the order of the alphabet, as one's own is looked for. Of the others there
/// are thousands, most of them typing errors: those with the most stations.
const std::vector<RadioBrowserCategoryKind> &RadioBrowserCategoriesNode::kinds()
{
    static const std::vector<RadioBrowserCategoryKind> kinds {
        {"countries", QT_TRANSLATE_NOOP("RadioBrowser", "By country"), "/json/countries", "name",
            false, 500, "countrycode"},
        {"languages", QT_TRANSLATE_NOOP("RadioBrowser", "By language"), "/json/languages",
            "stationcount", true, 200, "language"},
        {"tags", QT_TRANSLATE_NOOP("RadioBrowser", "By tag"), "/json/tags", "stationcount", true,
            200, "tag"},
        {"codecs", QT_TRANSLATE_NOOP("RadioBrowser", "By codec"), "/json/codecs", "stationcount",
            true, 50, "codec"},
    };
    return kinds;
}

RadioBrowserCategoriesNode::RadioBrowserCategoriesNode(
    RadioBrowserClient *client, const CMPath &path, int kind, const CMPath &stations)
    : CMContainerNode(path)
    , m_client(client)
    , m_kind(kinds().at(static_cast<std::size_t>(kind)))
    , m_stations(stations)
{
    setServesBelow(false);
    setTitle(radioBrowserTr(m_kind.title));
}

bool RadioBrowserCategoriesNode::getRowsRequest(const CMGetRowsRequest &request)
{
    if (!isRadioBrowserRange(request))
        return true;
    m_client->list(latin1(m_kind.list), listQuery(m_kind.order, m_kind.reverse, m_kind.most),
        [this, request](const CMError &error, const QVariantList &entries) {
            if (!error.isEmpty())
                return request.reply().setError(error);
            QList<VeskRoles> rows;
            for (const QVariant &entry : entries) {
                const VeskRoles category = row(entry);
                if (!category.isEmpty() && rows.size() < m_kind.most)
                    rows.append(category);
            }
            const int length = std::min<int>(request.last(), rows.size()) - request.first() + 1;
            answerRadioBrowserRows(request, getDataRoles(request.roles(), request.path().params()),
                length > 0 ? rows.mid(request.first(), length) : QList<VeskRoles>(), rows.size());
        });
    return true;
}

/// Empty for an entry that leads nowhere.
VeskRoles RadioBrowserCategoriesNode::row(const QVariant &entry) const
{
    const RadioBrowserCategory category(entry.toHash());
    const bool isCountry = QLatin1String(m_kind.parameter) == QLatin1String("countrycode");
    const QString value = isCountry ? category.countryCode() : category.name();
    const QString title = withCapital(category.name());
    if (value.isEmpty() || title.isEmpty() || category.stationCount() == 0)
        return {};
    CMPath path = m_stations;
    path.addParam(latin1(m_kind.parameter), value);
    path.addParam(titleParameter(), title);
    VeskRoles row;
    row.setTitle(Language::ntr(title));
    row.setDescription(stationCount(category.stationCount()));
    row.setType(VeskRolesType::Container());
    row.setPath(path);
    return row;
}

RadioBrowserStationsNode::RadioBrowserStationsNode(
    RadioBrowserClient *client, const CMPath &path, const RadioBrowserStationRows &rows)
    : CMContainerNode(path)
    , m_client(client)
    , m_rows(rows)
{
    setServesBelow(false);
    setPlayable(true);
}

QVariant RadioBrowserStationsNode::getRoleData(const QString &role, const Params &params)
{
    if (role != VeskRoles::Title())
        return CMContainerNode::getRoleData(role, params);
    const QString title = params.value(titleParameter());
    const QString name = params.value(QStringLiteral("name"));
    if (!title.isEmpty())
        return Language::ntr(title);
    if (!name.isEmpty()) {
        return TrString(QStringLiteral("RadioBrowser"),
            latin1(QT_TRANSLATE_NOOP("RadioBrowser", "Stations called \"%1\"")), QString(), -1,
            {TrArg(name)});
    }
    return radioBrowserTr(orderOf(params.value(orderParameter())).title);
}

bool RadioBrowserStationsNode::getRowsRequest(const CMGetRowsRequest &request)
{
    if (!isRadioBrowserRange(request))
        return true;
    const int first = request.first();
    if (request.last() - first >= MaxRange) {
        CMError error(radioBrowserTr(
            QT_TRANSLATE_NOOP("RadioBrowser", "These are too many stations at once.")));
        error.insert(CMError::Name(), CMError::TooLongName());
        request.reply().setError(error);
        return true;
    }
    const int wanted = std::min(request.last(), MaxRows - 1) - first + 1;
    if (wanted <= 0) {
        take(request, 0, {});
        return true;
    }
    // One more than wanted tells whether the list goes on.
    QueryItems query
        = listQuery(orderOf(request.path().param(orderParameter())).field, true, wanted + 1);
    query.append({QStringLiteral("offset"), QString::number(first)});
    query.append(stationsQuery(request.path()));
    m_client->list(QStringLiteral("/json/stations/search"), query,
        [this, request, wanted](const CMError &error, const QVariantList &entries) {
            if (error.isEmpty())
                take(request, wanted, entries);
            else
                request.reply().setError(error);
        });
    return true;
}

void RadioBrowserStationsNode::take(
    const CMGetRowsRequest &request, int wanted, const QVariantList &entries)
{
    QList<VeskRoles> rows;
    for (const QVariant &entry : entries.mid(0, wanted))
        rows.append(m_rows.row(path(), RadioBrowserStation(entry.toHash())));
    const bool goesOn = entries.size() > wanted;
    const int known = std::min(request.first(), MaxRows) + rows.size() + (goesOn ? 1 : 0);
    answerRadioBrowserRows(request, getDataRoles(request.roles(), request.path().params()), rows,
        std::min(known, MaxRows));
}
