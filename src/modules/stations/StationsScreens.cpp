// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/stations/StationsScreens.h"

#include "api/core/Language.h"
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

TrString listTitle()
{
    return stationsTr(QT_TRANSLATE_NOOP("Stations", "Stations"));
}

/// What is known of a station that a menu is for.
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
    StationsList *list, StationsFolder *folder, const StationsRows &rows)
    : m_list(list)
    , m_folder(folder)
    , m_rows(rows)
{
}

/// Empty for an entry that there is not.
VeskRoles StationsScreens::itemRow(const QString &id) const
{
    const StationsItem *const item = m_list->find(id);
    if (!item)
        return {};
    return item->isFolder() ? m_rows.folder(*item, m_list->stationsIn(id)) : m_rows.station(*item);
}

QString StationsScreens::entered(const QString &text)
{
    const QString address = text.trimmed();
    return stationsAddress(
        address.contains(QLatin1String("://")) ? address : QStringLiteral("http://") + address);
}

StationsScreen StationsScreens::root() const
{
    StationsScreen screen;
    screen.title = listTitle();
    VeskRoles search = m_rows.container(
        stationsTr(QT_TRANSLATE_NOOP("Stations", "Search")), m_rows.path("searches"));
    search.setContainerType(VeskRolesContainerType::SearchList);
    screen.before.append(search);
    screen.before.append(m_rows.query(QT_TRANSLATE_NOOP("Stations", "Add a station by its address"),
        "address", m_rows.path("add")));
    const QStringList &keys = m_list->keysIn(QString());
    screen.items = keys.size();
    screen.item = [this, &keys](int index) { return itemRow(keys.at(index)); };
    m_folder->refresh();
    for (const QString &name : m_folder->names())
        screen.after.append(m_rows.file(name, *m_folder->find(name)));
    if (m_folder->omitted() > 0) {
        screen.after.append(StationsRows::header(
            stationsCountTr(QT_TRANSLATE_N_NOOP("Stations", "More files, which are not shown: %n"),
                m_folder->omitted())));
    }
    screen.after.append(m_rows.container(
        stationsTr(QT_TRANSLATE_NOOP("Stations", "Change this list")), m_rows.path("menu")));
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
        m_rows.container(stationsTr(QT_TRANSLATE_NOOP("Stations", "Change this folder")),
            m_rows.path("menu", {{key("id"), id}})));
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
            return m_rows.entry(entry);
        const QString inside = joinStationsFolders(titles + QStringList(entry.title));
        VeskRoles row = m_rows.container(Language::ntr(entry.title),
            m_rows.path("file", {{key("name"), name}, {key("folder"), inside}}));
        row.setDescription(StationsRows::count(stationsCount(entry.entries)));
        return row;
    };
    if (titles.isEmpty() && file->skippedCount() > 0)
        screen.after.append(StationsRows::header(stationsSkipped(*file)));
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
        if (!item.isFolder() && keys.size() < MaxResults && matches(stationsEntryOf(item), words))
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
            : m_rows.entry(entries[static_cast<std::size_t>(index - keys.size())]);
    };
    return screen;
}

StationsScreen StationsScreens::add(const Params &params) const
{
    StationsScreen screen;
    screen.title = stationsTr(QT_TRANSLATE_NOOP("Stations", "Add a station"));
    const QString address = entered(params.value(key("address")));
    if (address.isEmpty()) {
        screen.before.append(StationsRows::header(stationsTr(
            QT_TRANSLATE_NOOP("Stations", "This is no address that begins with http or https."))));
        return screen;
    }
    if (const StationsItem *const known = m_list->findAddress(address)) {
        screen.before.append(StationsRows::header(
            stationsTr(QT_TRANSLATE_NOOP("Stations", "This address is in the list:"))));
        screen.before.append(itemRow(known->key));
        screen.before.append(m_rows.query(QT_TRANSLATE_NOOP("Stations", "Give it another name"),
            "title", m_rows.path("rename", {{key("id"), known->key}})));
        return screen;
    }
    screen.before.append(m_rows.address(address));
    const bool isTried = m_trial.address == address;
    TrString keep = stationsTr(QT_TRANSLATE_NOOP("Stations", "Keep it without listening"));
    if (isTried && m_trial.isHeard) {
        screen.before.append(StationsRows::header(
            stationsTr(QT_TRANSLATE_NOOP("Stations", "This address plays. Keep it?"))));
        keep = stationsTr(QT_TRANSLATE_NOOP("Stations", "Keep it"));
    } else if (isTried && !m_trial.error.isEmpty()) {
        VeskRoles header = StationsRows::header(
            stationsTr(QT_TRANSLATE_NOOP("Stations", "This address does not play.")));
        header.setDescription(Language::ntr(m_trial.error));
        screen.before.append(header);
        keep = stationsTr(QT_TRANSLATE_NOOP("Stations", "Keep it all the same"));
    }
    screen.before.append(m_rows.action(
        keep, "do/add", {{key("address"), address}, {key("folder"), params.value(key("folder"))}}));
    return screen;
}

/// What changes a folder, or the list itself.
void StationsScreens::appendListRows(const QString &folder, QList<VeskRoles> &rows) const
{
    rows.append(m_rows.query(QT_TRANSLATE_NOOP("Stations", "Add a station by its address"),
        "address", m_rows.path("add", {{key("folder"), folder}})));
    if (m_list->canHoldFolder(folder)) {
        rows.append(m_rows.query(QT_TRANSLATE_NOOP("Stations", "Make a folder"), "title",
            m_rows.path("newfolder", {{key("folder"), folder}})));
    }
    if (m_list->keysIn(folder).size() > 1) {
        rows.append(m_rows.action(stationsTr(QT_TRANSLATE_NOOP("Stations", "Sort by name")),
            "do/sort", {{key("folder"), folder}}));
    }
}

/// What changes the place and the name of an entry.
void StationsScreens::appendItemRows(const StationsItem &item, QList<VeskRoles> &rows) const
{
    const Params id {{key("id"), item.key}};
    rows.append(
        m_rows.query(QT_TRANSLATE_NOOP("Stations", "Rename"), "title", m_rows.path("rename", id)));
    const QStringList &around = m_list->keysIn(item.folder);
    if (around.first() != item.key)
        rows.append(
            m_rows.action(stationsTr(QT_TRANSLATE_NOOP("Stations", "Move up")), "do/up", id));
    if (around.last() != item.key)
        rows.append(
            m_rows.action(stationsTr(QT_TRANSLATE_NOOP("Stations", "Move down")), "do/down", id));
    if (isMovable(item.key)) {
        rows.append(m_rows.container(stationsTr(QT_TRANSLATE_NOOP("Stations", "Move to a folder")),
            m_rows.path("move", id)));
    }
    const bool isEmpty = m_list->keysIn(item.key).isEmpty();
    const TrString removal = stationsTr(QT_TRANSLATE_NOOP("Stations", "Remove"));
    rows.append(isEmpty ? m_rows.action(removal, "do/remove", id)
                        : m_rows.container(removal, m_rows.path("remove", id)));
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
        screen.before.append(StationsRows::header(
            stationsTr(QT_TRANSLATE_NOOP("Stations", "This address is in the list:"))));
        screen.before.append(itemRow(known->key));
        return screen;
    }
    screen.before.append(
        m_rows.action(stationsTr(QT_TRANSLATE_NOOP("Stations", "Keep it in the list")), "do/add",
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
        m_rows.action(stationsTr(QT_TRANSLATE_NOOP("Stations", "Rename \"%1\" to \"%2\""),
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
    screen.before.append(m_rows.action(
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
                m_rows.action(title, "do/move", {{key("id"), id}, {key("folder"), folder}}));
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
        m_rows.action(stationsCountTr(QT_TRANSLATE_N_NOOP("Stations",
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
    return address.isEmpty() ? VeskRoles() : m_rows.address(address);
}
