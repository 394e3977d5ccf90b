// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/radiobrowser/RadioBrowserRows.h"

#include "api/core/Language.h"
#include "api/values/VeskRowsRoles.h"
#include "modules/radiobrowser/RadioBrowserClient.h"

#include <QUuid>

namespace {

QString stationParameter()
{
    return QStringLiteral("station");
}

QVariant valuesOf(const VeskRoles &row, const QStringList &roles)
{
    QVariantList values;
    values.reserve(roles.size());
    for (const QString &role : roles)
        values.append(row.value(role));
    return values;
}

} // namespace

RadioBrowserStationRows::RadioBrowserStationRows(const VeskMetaData &media, const CMPath &menu)
    : m_media(media)
    , m_menu(menu)
{
}

VeskRoles RadioBrowserStationRows::row(
    const CMPath &screen, const RadioBrowserStation &station) const
{
    if (!station.isPlayable())
        return {};
    // The same in every list, by which a client knows the station that plays.
    const CMPath path(
        screen.prefix(), QStringLiteral("station"), {{stationParameter(), station.uuid()}});
    VeskRoles matching;
    matching.setPath(path);
    VeskList<VeskRoles> matchingRoles;
    matchingRoles.append(matching);
    VeskMetaData metaData = m_media;
    metaData.setGenre(station.tags().value(0));
    metaData.setMatchingMediaRoles(matchingRoles);
    metaData.setLive(true);
    CMPath menuPath = m_menu;
    VeskRoles menu;
    if (!menuPath.isEmpty()) {
        menuPath.addParam(stationParameter(), station.uuid());
        menu.setType(VeskRolesType::Container());
        menu.setContainerType(VeskRolesContainerType::ContextMenu);
        menu.setPath(menuPath);
        metaData.setContentPlayContextPath(menuPath);
    }
    VeskResource resource;
    resource.setUri(station.streamUrl());
    resource.setMimeType(station.mimeType());
    if (station.bitRate() > 0)
        resource.setBitRate(station.bitRate());
    VeskList<VeskResource> resources;
    resources.append(resource);
    VeskMediaData mediaData;
    mediaData.setMetaData(metaData);
    mediaData.setResources(resources);

    VeskRoles row;
    row.setTitle(Language::ntr(station.name()));
    row.setDescription(Language::ntr(station.description()));
    if (!station.icon().isEmpty())
        row.setIcon(station.icon());
    row.setType(VeskRolesType::Audio());
    row.setAudioType(VeskRolesAudioType::AudioBroadcast());
    row.setPath(path);
    row.setMediaData(mediaData);
    if (!menu.isEmpty())
        row.setContext(menu);
    return row;
}

QString RadioBrowserStationRows::stationOf(const CMPath &path)
{
    return path.base() == QLatin1String("station") ? stationOfMenu(path) : QString();
}

QString RadioBrowserStationRows::stationOfMenu(const CMPath &path)
{
    const QUuid uuid(path.param(stationParameter()));
    return uuid.isNull() ? QString() : uuid.toString(QUuid::WithoutBraces);
}

bool isRadioBrowserRange(const CMGetRowsRequest &request)
{
    if (request.first() >= 0 && request.last() >= request.first())
        return true;
    request.reply().setError(CMError(
        radioBrowserTr(QT_TRANSLATE_NOOP("RadioBrowser", "The range of rows is not valid."))));
    return false;
}

void answerRadioBrowserRows(
    const CMGetRowsRequest &request, VeskRoles screen, const QList<VeskRoles> &rows, int count)
{
    const QStringList roles = request.roles() == CMAllRoles() ? VeskRoles::all() : request.roles();
    QVariantList values;
    for (const VeskRoles &row : rows)
        values.append(valuesOf(row, roles));
    VeskRowsRoles answer;
    answer.setRowsCount(count);
    answer.setRows(values);
    screen.setPath(request.path());
    answer.setRoles(screen);
    request.reply().setValue(answer);
}
