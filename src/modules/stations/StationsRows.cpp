// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/stations/StationsRows.h"

#include "api/core/Language.h"
#include "api/values/MimeTypes.h"

namespace {

QString key(const char *name)
{
    return QString::fromLatin1(name);
}

VeskMediaData mediaDataOf(const QString &address, const VeskMetaData &metaData)
{
    VeskResource resource;
    resource.setUri(address);
    resource.setMimeType(MimeTypes::Audio::unknown());
    VeskList<VeskResource> resources;
    resources.append(resource);
    VeskMediaData mediaData;
    mediaData.setMetaData(metaData);
    mediaData.setResources(resources);
    return mediaData;
}

} // namespace

StationsEntry stationsEntryOf(const StationsItem &item)
{
    return {item.title, item.address, item.picture, item.description};
}

StationsRows::StationsRows(const CMPath &root, const QString &serviceId)
    : m_prefix(root.prefix())
    , m_serviceId(serviceId)
{
}

CMPath StationsRows::path(const char *base, const Params &params) const
{
    CMPath path(m_prefix, QString::fromLatin1(base));
    for (auto it = params.begin(); it != params.end(); ++it) {
        if (!it.value().isEmpty())
            path.addParam(it.key(), it.value());
    }
    return path;
}

VeskRoles StationsRows::header(const TrString &title)
{
    VeskRoles row;
    row.setTitle(title);
    row.setType(VeskRolesType::Header());
    return row;
}

VeskRoles StationsRows::container(const TrString &title, const CMPath &path) const
{
    VeskRoles row;
    row.setTitle(title);
    row.setType(VeskRolesType::Container());
    row.setPath(path);
    return row;
}

VeskRoles StationsRows::query(const char *title, const char *name, const CMPath &path) const
{
    VeskRoles row;
    row.setTitle(stationsTr(title));
    row.setType(VeskRolesType::Query());
    row.setPath(path);
    row.setQuery(key(name));
    row.setQueryPath(path);
    return row;
}

VeskRoles StationsRows::action(
    const TrString &title, const char *action, const Params &params) const
{
    VeskRoles row;
    row.setTitle(title);
    row.setType(VeskRolesType::Activate());
    row.setPath(path(action, params));
    return row;
}

VeskRoles StationsRows::menu(const QString &title, const CMPath &path) const
{
    VeskRoles menu = container(Language::ntr(title), path);
    menu.setContainerType(VeskRolesContainerType::ContextMenu);
    return menu;
}

/// \a path is the one by which clients know the station while it plays.
VeskRoles StationsRows::audio(const StationsEntry &entry, const CMPath &path, const CMPath &menu,
    const CMPath &reportPath) const
{
    VeskRoles matching;
    matching.setPath(path);
    VeskList<VeskRoles> matchingRoles;
    matchingRoles.append(matching);
    VeskMetaData metaData;
    metaData.setServiceID(m_serviceId);
    metaData.setLive(true);
    metaData.setMatchingMediaRoles(matchingRoles);
    metaData.setContentPlayContextPath(menu);
    if (!reportPath.isEmpty())
        metaData.setPlaybackStateChangePath(reportPath);

    VeskRoles row;
    row.setTitle(Language::ntr(entry.title));
    if (!entry.description.isEmpty())
        row.setDescription(Language::ntr(entry.description));
    if (!entry.picture.isEmpty())
        row.setIcon(entry.picture);
    row.setType(VeskRolesType::Audio());
    row.setAudioType(VeskRolesAudioType::AudioBroadcast());
    row.setPath(path);
    row.setMediaData(mediaDataOf(entry.address, metaData));
    row.setContext(this->menu(entry.title, menu));
    return row;
}

VeskRoles StationsRows::station(const StationsItem &item) const
{
    const Params id {{key("id"), item.key}};
    return audio(stationsEntryOf(item), path("station", id), path("menu", id), CMPath());
}

VeskRoles StationsRows::folder(const StationsItem &item, int stations) const
{
    const Params id {{key("id"), item.key}};
    VeskRoles row = container(Language::ntr(item.title), path("folder", id));
    row.setDescription(count(stations));
    row.setContext(menu(item.title, path("menu", id)));
    return row;
}

VeskRoles StationsRows::entry(const StationsEntry &entry) const
{
    const CMPath menu = path("menu",
        {{key("address"), entry.address}, {key("title"), entry.title},
            {key("picture"), entry.picture}, {key("description"), entry.description}});
    return audio(entry, path("address", {{key("address"), entry.address}}), menu, CMPath());
}

VeskRoles StationsRows::address(const QString &address) const
{
    const Params params {{key("address"), address}};
    return audio({stationsTitle(address), address, {}, {}}, path("address", params),
        path("menu", params), path("playing"));
}

VeskRoles StationsRows::file(const QString &name, const StationsFile &file) const
{
    const QString title = file.title.isEmpty() ? name : file.title;
    VeskRoles row = container(Language::ntr(title), path("file", {{key("name"), name}}));
    if (file.error.isEmpty()) {
        row.setDescription(count(stationsCount(file.entries)));
    } else {
        row.setDescription(file.error);
        row.insert(VeskRoles::Disabled(), true);
    }
    return row;
}

TrString StationsRows::count(int stations)
{
    return stations == 1
        ? stationsTr(QT_TRANSLATE_NOOP("Stations", "1 station"))
        : stationsCountTr(QT_TRANSLATE_N_NOOP("Stations", "%n stations"), stations);
}
