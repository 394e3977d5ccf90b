// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/radiobrowser/RadioBrowserFavorites.h"

#include "api/nodes/CMSubscribe.h"
#include "api/web/VeskJson.h"

#include <algorithm>
#include <utility>

namespace {

/// Beside the directory's own fields: by it favorites are ordered.
QString numberKey()
{
    return QStringLiteral("number");
}

CMError error(const char *text)
{
    return CMError(radioBrowserTr(text));
}

/// Answers \a request when the store has.
VeskStore::Done answerTo(const CMSetDataRequest &request)
{
    return [reply = request.reply()](const CMError &error) {
        if (error.isEmpty())
            reply.setValue(QVariant());
        else
            reply.setError(error);
    };
}

} // namespace

RadioBrowserFavorites::RadioBrowserFavorites(const QVariantHash &config, QObject *parent)
    : QObject(parent)
    , m_store(config)
{
}

QList<RadioBrowserStation> RadioBrowserFavorites::stations() const
{
    QList<RadioBrowserStation> stations;
    const QStringList keys = m_store.keys();
    for (const QString &uuid : keys) {
        VeskError unreadable;
        const QVariant value = VeskJson::parse(m_store.value(uuid), unreadable);
        const RadioBrowserStation station(value.toHash());
        if (unreadable.isEmpty() && station.isPlayable())
            stations.append(station);
    }
    std::sort(stations.begin(), stations.end(),
        [](const RadioBrowserStation &a, const RadioBrowserStation &b) {
            return std::make_pair(a.value(numberKey()).toInt(), a.uuid())
                < std::make_pair(b.value(numberKey()).toInt(), b.uuid());
        });
    return stations;
}

void RadioBrowserFavorites::add(const RadioBrowserStation &station, VeskStore::Done done)
{
    const QList<RadioBrowserStation> present = stations();
    if (present.size() >= Most)
        return done(error(QT_TRANSLATE_NOOP("RadioBrowser", "There are too many favorites.")));
    QVariantHash kept = station.kept();
    const int last = present.isEmpty() ? 0 : present.constLast().value(numberKey()).toInt();
    kept.insert(numberKey(), last + 1);
    write(station.uuid(), VeskJson::write(kept), std::move(done));
}

void RadioBrowserFavorites::remove(const QString &uuid, VeskStore::Done done)
{
    write(uuid, QByteArray(), std::move(done));
}

void RadioBrowserFavorites::write(
    const QString &uuid, const QByteArray &value, VeskStore::Done done)
{
    m_store.write({{uuid, value}}, [this, uuid, done = std::move(done)](const CMError &error) {
        if (error.isEmpty())
            Q_EMIT changed(uuid);
        done(error);
    });
}

RadioBrowserFavoritesNode::RadioBrowserFavoritesNode(
    RadioBrowserFavorites *favorites, const CMPath &path, const RadioBrowserStationRows &rows)
    : CMContainerNode(path)
    , m_favorites(favorites)
    , m_rows(rows)
{
    setServesBelow(false);
    setPlayable(true);
    setTitle(radioBrowserTr(QT_TRANSLATE_NOOP("RadioBrowser", "Favorites")));
    connect(favorites, &RadioBrowserFavorites::changed, this, [this] {
        CMSubscribe().changedStartingWith(this->path(), CMSubscribe::RowsChangeReset(), -1, -1);
    });
}

bool RadioBrowserFavoritesNode::getRowsRequest(const CMGetRowsRequest &request)
{
    if (!isRadioBrowserRange(request))
        return true;
    const QList<RadioBrowserStation> stations = m_favorites->stations();
    const int last = std::min<int>(request.last(), stations.size() - 1);
    QList<VeskRoles> rows;
    for (int i = request.first(); i <= last; ++i)
        rows.append(m_rows.row(path(), stations.at(i)));
    answerRadioBrowserRows(
        request, getDataRoles(request.roles(), request.path().params()), rows, stations.size());
    return true;
}

RadioBrowserFavoriteNode::RadioBrowserFavoriteNode(
    RadioBrowserClient *client, RadioBrowserFavorites *favorites, const CMPath &path)
    : CMActivateNode(path)
    , m_client(client)
    , m_favorites(favorites)
{
    setInvoke(this, &RadioBrowserFavoriteNode::toggle, Qt::DirectConnection);
}

QVariant RadioBrowserFavoriteNode::getRoleData(const QString &role, const Params &params)
{
    if (role != VeskRoles::Title())
        return CMActivateNode::getRoleData(role, params);
    const QString uuid = RadioBrowserStationRows::stationOfMenu(opened(params));
    return radioBrowserTr(m_favorites->contains(uuid)
            ? QT_TRANSLATE_NOOP("RadioBrowser", "Remove from favorites")
            : QT_TRANSLATE_NOOP("RadioBrowser", "Add to favorites"));
}

void RadioBrowserFavoriteNode::toggle(const CMSetDataRequest &request)
{
    const QString uuid = RadioBrowserStationRows::stationOfMenu(request.path());
    if (m_favorites->contains(uuid))
        m_favorites->remove(uuid, answerTo(request));
    else
        add(uuid, request);
}

void RadioBrowserFavoriteNode::add(const QString &uuid, const CMSetDataRequest &request)
{
    m_client->list(QStringLiteral("/json/stations/byuuid"), {{QStringLiteral("uuids"), uuid}},
        [this, uuid, request](const CMError &failed, const QVariantList &entries) {
            if (!failed.isEmpty())
                return request.reply().setError(failed);
            const RadioBrowserStation station(entries.value(0).toHash());
            if (uuid.isEmpty() || station.uuid() != uuid || !station.isPlayable()) {
                return request.reply().setError(error(QT_TRANSLATE_NOOP(
                    "RadioBrowser", "Radio Browser does not know this station.")));
            }
            m_favorites->add(station, answerTo(request));
        });
}
