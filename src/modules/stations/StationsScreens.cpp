// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/stations/StationsScreens.h"

#include "api/core/Language.h"
#include "api/values/MimeTypes.h"
#include "api/web/VeskUrl.h"
#include "modules/stations/StationsGatherer.h"

#include <algorithm>

namespace {

constexpr int MaxResults = 500;
constexpr int MaxWords = 10;
constexpr int LongestWord = 100;

QString key(const char *name)
{
    return QString::fromLatin1(name);
}

StationsScreen goneScreen()
{
    StationsScreen screen;
    screen.title = stationsTr(QT_TRANSLATE_NOOP("Stations", "Stations"));
    screen.error
        = CMError(stationsTr(QT_TRANSLATE_NOOP("Stations", "This is not in the list any more.")));
    return screen;
}

VeskRoles headerRow(const TrString &title)
{
    VeskRoles row;
    row.setTitle(title);
    row.setType(VeskRolesType::Header());
    return row;
}

TrString stationCount(int count)
{
    return count == 1 ? stationsTr(QT_TRANSLATE_NOOP("Stations", "1 station"))
                      : stationsCountTr(QT_TRANSLATE_N_NOOP("Stations", "%n stations"), count);
}

TrString listTitle()
{
    return stationsTr(QT_TRANSLATE_NOOP("Stations", "Stations"));
}

StationsEntry entryOf(const StationsItem &item)
{
    return {item.title, item.address, item.picture, item.description};
}

/// What is known of a station that a menu is for, or that is to be kept.
StationsEntry entryOf(const QString &address, const CMUINode::Params &params)
{
    StationsEntry entry {stationsText(params.value(key("title")), StationsLimits::Title), address,
        stationsAddress(params.value(key("picture"))),
        stationsText(params.value(key("description")), StationsLimits::Description)};
    if (entry.title.isEmpty())
        entry.title = stationsTitle(address);
    return entry;
}

bool matches(const StationsEntry &station, const QStringList &words)
{
    return std::all_of(words.begin(), words.end(), [&station](const QString &word) {
        return station.title.contains(word, Qt::CaseInsensitive)
            || station.description.contains(word, Qt::CaseInsensitive);
    });
}

void findIn(const std::vector<StationsEntry> &entries, const QStringList &words,
    std::vector<StationsEntry> &found)
{
    for (const StationsEntry &entry : entries) {
        if (entry.isFolder())
            findIn(entry.entries, words, found);
        else if (found.size() < MaxResults && matches(entry, words))
            found.push_back(entry);
    }
}

} // namespace

TrString stationsSkipped(const StationsFile &file)
{
    const auto most = std::max_element(file.skipped.begin(), file.skipped.end(),
        [](const auto &a, const auto &b) { return a.second < b.second; });
    if (most == file.skipped.end())
        return {};
    const int count = file.skippedCount();
    if (most->second != count) {
        return stationsCountTr(
            QT_TRANSLATE_N_NOOP("Stations", "Left out for several reasons: %n"), count);
    }
    switch (most->first) {
    case StationsSkip::NoStation:
        return stationsCountTr(
            QT_TRANSLATE_N_NOOP("Stations", "Left out, links that lead to no station: %n"), count);
    case StationsSkip::TooLong:
        return stationsCountTr(
            QT_TRANSLATE_N_NOOP("Stations", "Left out, with too long addresses: %n"), count);
    case StationsSkip::TooDeep:
        return stationsCountTr(
            QT_TRANSLATE_N_NOOP("Stations", "Left out, in too many folders: %n"), count);
    case StationsSkip::TooMany:
        return stationsCountTr(
            QT_TRANSLATE_N_NOOP("Stations", "Left out, beyond 5,000 entries: %n"), count);
    case StationsSkip::NoWebAddress:
        break;
    }
    return stationsCountTr(
        QT_TRANSLATE_N_NOOP("Stations", "Left out, without an http or https address: %n"), count);
}

StationsScreens::StationsScreens(
    StationsList *list, StationsFolder *folder, const CMPath &root, const QString &serviceId)
    : m_list(list)
    , m_folder(folder)
    , m_root(root)
    , m_serviceId(serviceId)
{
}

CMPath StationsScreens::path(const char *base, const Params &params) const
{
    CMPath path(m_root.prefix(), QString::fromLatin1(base));
    for (auto it = params.begin(); it != params.end(); ++it) {
        if (!it.value().isEmpty())
            path.addParam(it.key(), it.value());
    }
    return path;
}

QString StationsScreens::entered(const QString &text)
{
    const QString address = text.trimmed();
    return stationsAddress(
        address.contains(QLatin1String("://")) ? address : QStringLiteral("http://") + address);
}

VeskRoles StationsScreens::containerRow(const TrString &title, const CMPath &path) const
{
    VeskRoles row;
    row.setTitle(title);
    row.setType(VeskRolesType::Container());
    row.setPath(path);
    return row;
}

VeskRoles StationsScreens::queryRow(const char *title, const char *name, const CMPath &path) const
{
    VeskRoles row;
    row.setTitle(stationsTr(title));
    row.setType(VeskRolesType::Query());
    row.setPath(path);
    row.setQuery(key(name));
    row.setQueryPath(path);
    return row;
}

VeskRoles StationsScreens::actionRow(
    const TrString &title, const char *action, const Params &params) const
{
    VeskRoles row;
    row.setTitle(title);
    row.setType(VeskRolesType::Activate());
    row.setPath(path(action, params));
    return row;
}

/// \a path is the one by which clients know the station while it plays.
VeskRoles StationsScreens::stationRow(
    const StationsEntry &station, const CMPath &path, const CMPath &menu, bool isReported) const
{
    VeskRoles matching;
    matching.setPath(path);
    VeskList<VeskRoles> matchingRoles;
    matchingRoles.append(matching);
    VeskMetaData metaData;
    metaData.setServiceID(m_serviceId);
    metaData.setLive(true);
    metaData.setMatchingMediaRoles(matchingRoles);
    if (!menu.isEmpty())
        metaData.setContentPlayContextPath(menu);
    if (isReported)
        metaData.setPlaybackStateChangePath(this->path("playing"));
    VeskResource resource;
    resource.setUri(station.address);
    resource.setMimeType(MimeTypes::Audio::unknown());
    VeskList<VeskResource> resources;
    resources.append(resource);
    VeskMediaData mediaData;
    mediaData.setMetaData(metaData);
    mediaData.setResources(resources);

    VeskRoles row;
    row.setTitle(Language::ntr(station.title));
    if (!station.description.isEmpty())
        row.setDescription(Language::ntr(station.description));
    if (!station.picture.isEmpty())
        row.setIcon(station.picture);
    row.setType(VeskRolesType::Audio());
    row.setAudioType(VeskRolesAudioType::AudioBroadcast());
    row.setPath(path);
    row.setMediaData(mediaData);
    if (!menu.isEmpty()) {
        VeskRoles context = containerRow(Language::ntr(station.title), menu);
        context.setContainerType(VeskRolesContainerType::ContextMenu);
        row.setContext(context);
    }
    return row;
}

/// An entry of the list; empty for one that there is not.
VeskRoles StationsScreens::itemRow(const QString &id) const
{
    const StationsItem *const item = m_list->find(id);
    if (!item)
        return {};
    const CMPath menu = path("menu", {{key("id"), id}});
    if (!item->isFolder()) {
        return stationRow(entryOf(*item), path("station", {{key("id"), id}}), menu, false);
    }
    VeskRoles row = containerRow(Language::ntr(item->title), path("folder", {{key("id"), id}}));
    row.setDescription(stationCount(m_list->stationsIn(id)));
    VeskRoles context = containerRow(Language::ntr(item->title), menu);
    context.setContainerType(VeskRolesContainerType::ContextMenu);
    row.setContext(context);
    return row;
}

/// A station of a file.
VeskRoles StationsScreens::entryRow(const StationsEntry &entry) const
{
    const CMPath menu = path("menu",
        {{key("address"), entry.address}, {key("title"), entry.title},
            {key("picture"), entry.picture}, {key("description"), entry.description}});
    return stationRow(entry, path("address", {{key("address"), entry.address}}), menu, false);
}

/// An address on trial.
VeskRoles StationsScreens::addressRow(const QString &address) const
{
    const Params params {{key("address"), address}};
    return stationRow(entryOf(address, {}), path("address", params), path("menu", params), true);
}

VeskRoles StationsScreens::fileRow(const QString &name) const
{
    const StationsFile &file = *m_folder->find(name);
    const QString title = file.title.isEmpty() ? name : file.title;
    VeskRoles row = containerRow(Language::ntr(title), path("file", {{key("name"), name}}));
    if (file.error.isEmpty()) {
        row.setDescription(stationCount(stationsCount(file.entries)));
    } else {
        row.setDescription(file.error);
        row.insert(VeskRoles::Disabled(), true);
    }
    return row;
}

StationsScreen StationsScreens::root() const
{
    StationsScreen screen;
    screen.title = listTitle();
    VeskRoles search
        = containerRow(stationsTr(QT_TRANSLATE_NOOP("Stations", "Search")), path("searches"));
    search.setContainerType(VeskRolesContainerType::SearchList);
    screen.before.append(search);
    screen.before.append(queryRow(
        QT_TRANSLATE_NOOP("Stations", "Add a station by its address"), "address", path("add")));
    const QStringList &keys = m_list->keysIn(QString());
    screen.items = keys.size();
    screen.item = [this, &keys](int index) { return itemRow(keys.at(index)); };
    m_folder->refresh();
    for (const QString &name : m_folder->names())
        screen.after.append(fileRow(name));
    if (m_folder->omitted() > 0) {
        screen.after.append(headerRow(
            stationsCountTr(QT_TRANSLATE_N_NOOP("Stations", "More files, which are not shown: %n"),
                m_folder->omitted())));
    }
    screen.after.append(
        containerRow(stationsTr(QT_TRANSLATE_NOOP("Stations", "Change this list")), path("menu")));
    return screen;
}

StationsScreen StationsScreens::folder(const Params &params) const
{
    const QString id = params.value(key("id"));
    const StationsItem *const item = m_list->find(id);
    if (!item || !item->isFolder())
        return goneScreen();
    StationsScreen screen;
    screen.title = Language::ntr(item->title);
    const QStringList &keys = m_list->keysIn(id);
    screen.items = keys.size();
    screen.item = [this, &keys](int index) { return itemRow(keys.at(index)); };
    screen.after.append(
        containerRow(stationsTr(QT_TRANSLATE_NOOP("Stations", "Change this folder")),
            path("menu", {{key("id"), id}})));
    return screen;
}

StationsScreen StationsScreens::file(const Params &params) const
{
    const QString name = params.value(key("name"));
    m_folder->refresh();
    const StationsFile *const file = m_folder->find(name);
    if (!file)
        return goneScreen();
    StationsScreen screen;
    screen.title = Language::ntr(file->title.isEmpty() ? name : file->title);
    if (!file->error.isEmpty()) {
        screen.error = CMError(file->error);
        return screen;
    }
    const QStringList titles = splitStationsFolders(params.value(key("folder")));
    const std::vector<StationsEntry> *entries = &file->entries;
    for (const QString &title : titles) {
        const auto found
            = std::find_if(entries->begin(), entries->end(), [&title](const StationsEntry &entry) {
                  return entry.isFolder() && entry.title == title;
              });
        if (found == entries->end())
            return goneScreen();
        entries = &found->entries;
        screen.title = Language::ntr(title);
    }
    screen.items = static_cast<int>(entries->size());
    screen.item = [this, entries, titles, name](int index) {
        const StationsEntry &entry = (*entries)[static_cast<std::size_t>(index)];
        if (!entry.isFolder())
            return entryRow(entry);
        const QString inside = joinStationsFolders(titles + QStringList(entry.title));
        VeskRoles row = containerRow(Language::ntr(entry.title),
            path("file", {{key("name"), name}, {key("folder"), inside}}));
        row.setDescription(stationCount(stationsCount(entry.entries)));
        return row;
    };
    if (titles.isEmpty() && file->skippedCount() > 0)
        screen.after.append(headerRow(stationsSkipped(*file)));
    return screen;
}

StationsScreen StationsScreens::results(const Params &params) const
{
    const QString text = stationsText(params.value(key("text")), LongestWord);
    StationsScreen screen;
    screen.title = stationsTr(QT_TRANSLATE_NOOP("Stations", "Stations with \"%1\""), {TrArg(text)});
    const QStringList words = text.split(QLatin1Char(' '), Qt::SkipEmptyParts).mid(0, MaxWords);
    if (words.isEmpty())
        return screen;
    QStringList keys;
    const QStringList all = m_list->allKeys();
    for (const QString &id : all) {
        const StationsItem &item = *m_list->find(id);
        if (!item.isFolder() && keys.size() < MaxResults && matches(entryOf(item), words))
            keys.append(id);
    }
    m_folder->refresh();
    std::vector<StationsEntry> entries;
    for (const QString &name : m_folder->names())
        findIn(m_folder->find(name)->entries, words, entries);
    screen.items = keys.size() + static_cast<int>(entries.size());
    screen.item = [this, keys, entries](int index) {
        return index < keys.size()
            ? itemRow(keys.at(index))
            : entryRow(entries[static_cast<std::size_t>(index - keys.size())]);
    };
    return screen;
}

StationsScreen StationsScreens::add(const Params &params) const
{
    StationsScreen screen;
    screen.title = stationsTr(QT_TRANSLATE_NOOP("Stations", "Add a station"));
    const QString address = entered(params.value(key("address")));
    if (address.isEmpty()) {
        screen.before.append(headerRow(stationsTr(
            QT_TRANSLATE_NOOP("Stations", "This is no address that begins with http or https."))));
        return screen;
    }
    if (const StationsItem *const known = m_list->findAddress(address)) {
        screen.before.append(
            headerRow(stationsTr(QT_TRANSLATE_NOOP("Stations", "This address is in the list:"))));
        screen.before.append(itemRow(known->key));
        screen.before.append(queryRow(QT_TRANSLATE_NOOP("Stations", "Give it another name"),
            "title", path("rename", {{key("id"), known->key}})));
        return screen;
    }
    screen.before.append(addressRow(address));
    const bool isTried = m_trial.address == address;
    TrString keep = stationsTr(QT_TRANSLATE_NOOP("Stations", "Keep it without listening"));
    if (isTried && m_trial.isHeard) {
        screen.before.append(
            headerRow(stationsTr(QT_TRANSLATE_NOOP("Stations", "This address plays. Keep it?"))));
        keep = stationsTr(QT_TRANSLATE_NOOP("Stations", "Keep it"));
    } else if (isTried && !m_trial.error.isEmpty()) {
        VeskRoles header
            = headerRow(stationsTr(QT_TRANSLATE_NOOP("Stations", "This address does not play.")));
        header.setDescription(Language::ntr(m_trial.error));
        screen.before.append(header);
        keep = stationsTr(QT_TRANSLATE_NOOP("Stations", "Keep it all the same"));
    }
    screen.before.append(actionRow(
        keep, "do/add", {{key("address"), address}, {key("folder"), params.value(key("folder"))}}));
    return screen;
}

/// What changes a folder, or the list itself.
void StationsScreens::appendListRows(const QString &folder, QList<VeskRoles> &rows) const
{
    rows.append(queryRow(QT_TRANSLATE_NOOP("Stations", "Add a station by its address"), "address",
        path("add", {{key("folder"), folder}})));
    if (m_list->canHoldFolder(folder)) {
        rows.append(queryRow(QT_TRANSLATE_NOOP("Stations", "Make a folder"), "title",
            path("newfolder", {{key("folder"), folder}})));
    }
    if (m_list->keysIn(folder).size() > 1) {
        rows.append(actionRow(stationsTr(QT_TRANSLATE_NOOP("Stations", "Sort by name")), "do/sort",
            {{key("folder"), folder}}));
    }
}

/// What changes the place and the name of an entry.
void StationsScreens::appendItemRows(const StationsItem &item, QList<VeskRoles> &rows) const
{
    const Params id {{key("id"), item.key}};
    rows.append(queryRow(QT_TRANSLATE_NOOP("Stations", "Rename"), "title", path("rename", id)));
    const QStringList &around = m_list->keysIn(item.folder);
    if (around.first() != item.key)
        rows.append(actionRow(stationsTr(QT_TRANSLATE_NOOP("Stations", "Move up")), "do/up", id));
    if (around.last() != item.key)
        rows.append(
            actionRow(stationsTr(QT_TRANSLATE_NOOP("Stations", "Move down")), "do/down", id));
    if (isMovable(item.key)) {
        rows.append(containerRow(
            stationsTr(QT_TRANSLATE_NOOP("Stations", "Move to a folder")), path("move", id)));
    }
    const bool isEmpty = m_list->keysIn(item.key).isEmpty();
    const TrString removal = stationsTr(QT_TRANSLATE_NOOP("Stations", "Remove"));
    rows.append(
        isEmpty ? actionRow(removal, "do/remove", id) : containerRow(removal, path("remove", id)));
}

bool StationsScreens::isMovable(const QString &id) const
{
    const QStringList all = m_list->allKeys();
    return m_list->canMoveTo(id, QString())
        || std::any_of(all.begin(), all.end(),
            [this, &id](const QString &folder) { return m_list->canMoveTo(id, folder); });
}

StationsScreen StationsScreens::menu(const Params &params) const
{
    if (params.contains(key("address")))
        return entryMenu(params);
    const QString id = params.value(key("id"));
    const StationsItem *const item = m_list->find(id);
    if (!id.isEmpty() && !item)
        return goneScreen();
    StationsScreen screen;
    screen.title = item ? Language::ntr(item->title) : listTitle();
    if (!item || item->isFolder())
        appendListRows(id, screen.before);
    if (item)
        appendItemRows(*item, screen.before);
    return screen;
}

/// Of a station that a file has.
StationsScreen StationsScreens::entryMenu(const Params &params) const
{
    const QString address = stationsAddress(params.value(key("address")));
    if (address.isEmpty())
        return goneScreen();
    const StationsEntry entry = entryOf(address, params);
    StationsScreen screen;
    screen.title = Language::ntr(entry.title);
    if (const StationsItem *const known = m_list->findAddress(address)) {
        screen.before.append(
            headerRow(stationsTr(QT_TRANSLATE_NOOP("Stations", "This address is in the list:"))));
        screen.before.append(itemRow(known->key));
        return screen;
    }
    screen.before.append(
        actionRow(stationsTr(QT_TRANSLATE_NOOP("Stations", "Keep it in the list")), "do/add",
            {{key("address"), address}, {key("title"), entry.title},
                {key("picture"), entry.picture}, {key("description"), entry.description}}));
    return screen;
}

StationsScreen StationsScreens::rename(const Params &params) const
{
    const QString id = params.value(key("id"));
    const StationsItem *const item = m_list->find(id);
    if (!item)
        return goneScreen();
    StationsScreen screen;
    screen.title = stationsTr(QT_TRANSLATE_NOOP("Stations", "Rename"));
    const QString title = stationsText(params.value(key("title")), StationsLimits::Title);
    if (title.isEmpty())
        return screen;
    screen.before.append(
        actionRow(stationsTr(QT_TRANSLATE_NOOP("Stations", "Rename \"%1\" to \"%2\""),
                      {TrArg(item->title), TrArg(title)}),
            "do/rename", {{key("id"), id}, {key("title"), title}}));
    return screen;
}

StationsScreen StationsScreens::newFolder(const Params &params) const
{
    StationsScreen screen;
    screen.title = stationsTr(QT_TRANSLATE_NOOP("Stations", "Make a folder"));
    const QString title = stationsText(params.value(key("title")), StationsLimits::Title);
    if (title.isEmpty())
        return screen;
    screen.before.append(actionRow(
        stationsTr(QT_TRANSLATE_NOOP("Stations", "Make the folder \"%1\""), {TrArg(title)}),
        "do/folder", {{key("folder"), params.value(key("folder"))}, {key("title"), title}}));
    return screen;
}

StationsScreen StationsScreens::move(const Params &params) const
{
    const QString id = params.value(key("id"));
    const StationsItem *const item = m_list->find(id);
    if (!item)
        return goneScreen();
    StationsScreen screen;
    screen.title
        = stationsTr(QT_TRANSLATE_NOOP("Stations", "Move \"%1\" to"), {TrArg(item->title)});
    const auto append = [&](const QString &folder, const TrString &title) {
        if (m_list->canMoveTo(id, folder)) {
            screen.before.append(
                actionRow(title, "do/move", {{key("id"), id}, {key("folder"), folder}}));
        }
    };
    append(QString(), stationsTr(QT_TRANSLATE_NOOP("Stations", "No folder")));
    const QStringList all = m_list->allKeys();
    for (const QString &folder : all) {
        if (m_list->find(folder)->isFolder())
            append(folder, Language::ntr(m_list->titlesOf(folder).join(QLatin1String(" / "))));
    }
    return screen;
}

StationsScreen StationsScreens::remove(const Params &params) const
{
    const QString id = params.value(key("id"));
    const StationsItem *const item = m_list->find(id);
    if (!item)
        return goneScreen();
    StationsScreen screen;
    screen.title = stationsTr(QT_TRANSLATE_NOOP("Stations", "Remove \"%1\""), {TrArg(item->title)});
    screen.before.append(
        actionRow(stationsCountTr(QT_TRANSLATE_N_NOOP("Stations",
                                      "Remove the folder with everything in it (stations: %n)"),
                      m_list->stationsIn(id)),
            "do/remove", {{key("id"), id}, {key("all"), QStringLiteral("1")}}));
    return screen;
}

VeskRoles StationsScreens::station(const CMPath &path) const
{
    if (path.hasParam(key("id")))
        return itemRow(path.param(key("id")));
    const QString address = stationsAddress(path.param(key("address")));
    return address.isEmpty() ? VeskRoles() : addressRow(address);
}
