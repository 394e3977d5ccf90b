// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/stations/StationsList.h"

#include "api/core/Language.h"
#include "api/core/ThreadCheck.h"

#include <QCollator>
#include <QLocale>
#include <QRandomGenerator>
#include <QSet>

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

namespace {

QByteArray encoded(const StationsItem &item)
{
    QStringList lines {QString::number(item.order), item.folder, item.title, item.address,
        item.picture, item.description};
    while (lines.last().isEmpty())
        lines.removeLast();
    return lines.join(QLatin1Char('\n')).toUtf8();
}

/// Nothing for what is no entry, or none that this version knows.
std::optional<StationsItem> decoded(const QString &key, const QByteArray &value)
{
    const QStringList lines = QString::fromUtf8(value).split(QLatin1Char('\n'));
    StationsItem item;
    item.key = key;
    item.order = lines.value(0).toLongLong();
    item.folder = lines.value(1);
    item.title = stationsText(lines.value(2), StationsLimits::Title);
    item.address = stationsAddress(lines.value(3));
    item.picture = stationsAddress(lines.value(4));
    item.description = stationsText(lines.value(5), StationsLimits::Description);
    const bool isKnown
        = item.isFolder() ? key.startsWith(QLatin1Char('f')) : key.startsWith(QLatin1Char('s'));
    if (!isKnown || item.title.isEmpty())
        return std::nullopt;
    return item;
}

CMError error(const char *text)
{
    return CMError(stationsTr(text));
}

CMError goneError()
{
    return error(QT_TRANSLATE_NOOP("Stations", "This is not in the list any more."));
}

CMError fullError()
{
    return error(QT_TRANSLATE_NOOP("Stations", "The list is full: it has 5,000 entries."));
}

CMError sameTitleError()
{
    return error(QT_TRANSLATE_NOOP("Stations", "There is a folder of this name already."));
}

CMError depthError()
{
    return error(QT_TRANSLATE_NOOP("Stations", "There are too many folders in each other."));
}

/// As listeners look names up, in their own language: "Radio 2" before "Radio 10".
QCollator collator()
{
    QCollator collator {QLocale(Language::current())};
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    collator.setNumericMode(true);
    return collator;
}

} // namespace

StationsList::StationsList(const QVariantHash &config, QObject *parent)
    : QObject(parent)
    , m_store(config)
{
    load();
}

void StationsList::load()
{
    const QStringList keys = m_store.keys();
    for (const QString &key : keys) {
        if (const auto item = decoded(key, m_store.value(key)))
            m_items.insert(key, *item);
    }
    // The file may have been changed by hand, or be a part of what it was: what is in no folder is
    // in the list itself.
    for (StationsItem &item : m_items) {
        if (!reachesRoot(item))
            item.folder.clear();
    }
    for (const StationsItem &item : std::as_const(m_items)) {
        m_folders[item.folder].append(item.key);
        if (!item.isFolder())
            m_addresses.insert(item.address, item.key);
    }
    for (QStringList &folder : m_folders) {
        std::sort(folder.begin(), folder.end(), [this](const QString &a, const QString &b) {
            return std::make_pair(m_items[a].order, a) < std::make_pair(m_items[b].order, b);
        });
    }
}

bool StationsList::reachesRoot(const StationsItem &item) const
{
    QString folder = item.folder;
    for (int depth = 0; depth <= StationsLimits::Depth && !folder.isEmpty(); ++depth) {
        const auto found = m_items.constFind(folder);
        if (found == m_items.constEnd() || !found->isFolder())
            return false;
        folder = found->folder;
    }
    return folder.isEmpty();
}

const StationsItem *StationsList::find(const QString &key) const
{
    const auto found = m_items.constFind(key);
    return found == m_items.constEnd() ? nullptr : &*found;
}

const StationsItem *StationsList::findAddress(const QString &address) const
{
    return find(m_addresses.value(address));
}

const QStringList &StationsList::keysIn(const QString &folder) const
{
    static const QStringList none;
    const auto found = m_folders.constFind(folder);
    return found == m_folders.constEnd() ? none : *found;
}

void StationsList::collect(const QString &folder, QStringList &keys) const
{
    for (const QString &key : keysIn(folder)) {
        keys.append(key);
        if (m_items[key].isFolder())
            collect(key, keys);
    }
}

QStringList StationsList::allKeys() const
{
    QStringList keys;
    collect(QString(), keys);
    return keys;
}

QStringList StationsList::titlesOf(const QString &folder) const
{
    QStringList titles;
    for (const StationsItem *item = find(folder); item; item = find(item->folder))
        titles.prepend(item->title);
    return titles;
}

int StationsList::stationsIn(const QString &folder) const
{
    QStringList keys;
    collect(folder, keys);
    return static_cast<int>(std::count_if(
        keys.begin(), keys.end(), [this](const QString &key) { return !m_items[key].isFolder(); }));
}

/// How many folders are in each other from \a key inwards, itself included; 0 for a station.
int StationsList::heightOf(const QString &key) const
{
    if (!m_items[key].isFolder())
        return 0;
    int height = 0;
    for (const QString &inside : keysIn(key))
        height = std::max(height, heightOf(inside));
    return height + 1;
}

bool StationsList::canHoldFolder(const QString &folder) const
{
    return depthOf(folder) < StationsLimits::Depth;
}

bool StationsList::canMoveTo(const QString &key, const QString &folder) const
{
    const StationsItem *const item = find(key);
    if (!item || item->folder == folder || !missingFolder(folder).isEmpty())
        return false;
    for (const StationsItem *around = find(folder); around; around = find(around->folder)) {
        if (around->key == key)
            return false;
    }
    return depthOf(folder) + heightOf(key) <= StationsLimits::Depth
        && !(item->isFolder() && !folderCalled(item->title, folder).isEmpty());
}

std::vector<StationsEntry> StationsList::entriesIn(const QString &folder) const
{
    std::vector<StationsEntry> entries;
    for (const QString &key : keysIn(folder)) {
        const StationsItem &item = *find(key);
        entries.push_back({item.title, item.address, item.picture, item.description,
            item.isFolder() ? entriesIn(key) : std::vector<StationsEntry>()});
    }
    return entries;
}

QString StationsList::folderCalled(const QString &title, const QString &folder) const
{
    const QStringList &keys = keysIn(folder);
    const auto found = std::find_if(keys.begin(), keys.end(),
        [&](const QString &key) { return m_items[key].isFolder() && m_items[key].title == title; });
    return found == keys.end() ? QString() : *found;
}

/// Empty for the list itself and a folder that there is.
CMError StationsList::missingFolder(const QString &folder) const
{
    const StationsItem *const item = find(folder);
    return folder.isEmpty() || (item && item->isFolder()) ? CMError() : goneError();
}

qint64 StationsList::lastOrder(const QString &folder) const
{
    const QStringList &keys = keysIn(folder);
    return keys.isEmpty() ? 0 : m_items[keys.last()].order;
}

QString StationsList::newKey(bool isFolder, const Changes &changes) const
{
    constexpr int Characters = 10;
    constexpr char Alphabet[] = "0123456789abcdefghijklmnopqrstuvwxyz";
    QString key;
    do {
        key = isFolder ? QStringLiteral("f") : QStringLiteral("s");
        for (int i = 0; i < Characters; ++i)
            key += QLatin1Char(Alphabet[QRandomGenerator::global()->bounded(
                static_cast<int>(sizeof Alphabet) - 1)]);
    } while (m_store.contains(key) || changes.contains(key));
    return key;
}

void StationsList::enqueue(Plan plan, Done done)
{
    VESK_ASSERT_OWN_THREAD();
    m_tasks.push_back({std::move(plan), std::move(done)});
    runNext();
}

void StationsList::runNext()
{
    while (!m_isWriting && !m_tasks.empty()) {
        const Task task = std::move(m_tasks.front());
        m_tasks.pop_front();
        Changes changes;
        const CMError refusal = task.plan(changes);
        if (!refusal.isEmpty() || changes.isEmpty()) {
            task.done(refusal);
            continue;
        }
        m_isWriting = true;
        m_store.write(changes, [this, changes, done = task.done](const CMError &error) {
            m_isWriting = false;
            if (error.isEmpty()) {
                for (auto it = changes.constBegin(); it != changes.constEnd(); ++it)
                    apply(it.key(), it.value());
                Q_EMIT changed();
            }
            done(error);
            runNext();
        });
    }
}

void StationsList::apply(const QString &key, const QByteArray &value)
{
    take(key);
    if (const auto item = decoded(key, value); item && !value.isNull())
        place(*item);
}

void StationsList::place(const StationsItem &item)
{
    m_items.insert(item.key, item);
    if (!item.isFolder())
        m_addresses.insert(item.address, item.key);
    QStringList &folder = m_folders[item.folder];
    const auto at = std::upper_bound(folder.begin(), folder.end(), item.order,
        [this](qint64 order, const QString &key) { return order < m_items[key].order; });
    folder.insert(at, item.key);
}

void StationsList::take(const QString &key)
{
    const auto found = m_items.find(key);
    if (found == m_items.end())
        return;
    if (m_addresses.value(found->address) == key)
        m_addresses.remove(found->address);
    m_folders[found->folder].removeOne(key);
    m_items.erase(found);
}

void StationsList::add(const QString &folder, const StationsEntry &station, Done done)
{
    const auto plan = [this, folder, station](Changes &changes) {
        if (const CMError error = missingFolder(folder); !error.isEmpty())
            return error;
        if (findAddress(station.address))
            return error(QT_TRANSLATE_NOOP("Stations", "This address is in the list already."));
        if (size() >= StationsLimits::Entries)
            return fullError();
        StationsItem item {newKey(false, changes), folder, lastOrder(folder) + 1, station.title,
            station.address, station.picture, station.description};
        changes.insert(item.key, encoded(item));
        return CMError();
    };
    enqueue(plan, std::move(done));
}

void StationsList::addFolder(const QString &folder, const QString &title, Done done)
{
    const auto plan = [this, folder, title](Changes &changes) {
        if (const CMError error = missingFolder(folder); !error.isEmpty())
            return error;
        if (!folderCalled(title, folder).isEmpty())
            return sameTitleError();
        if (!canHoldFolder(folder))
            return depthError();
        if (size() >= StationsLimits::Entries)
            return fullError();
        StationsItem item {newKey(true, changes), folder, lastOrder(folder) + 1, title, {}, {}, {}};
        changes.insert(item.key, encoded(item));
        return CMError();
    };
    enqueue(plan, std::move(done));
}

void StationsList::rename(const QString &key, const QString &title, Done done)
{
    const auto plan = [this, key, title](Changes &changes) {
        const StationsItem *const found = find(key);
        if (!found)
            return goneError();
        if (found->title == title)
            return CMError();
        if (found->isFolder() && !folderCalled(title, found->folder).isEmpty())
            return sameTitleError();
        StationsItem item = *found;
        item.title = title;
        changes.insert(key, encoded(item));
        return CMError();
    };
    enqueue(plan, std::move(done));
}

/// Gives the entries the order of \a keys, all of one folder. Only those are written whose number
/// changes; there may be equal ones in a store that was changed by hand.
void StationsList::arrange(const QStringList &keys, Changes &changes) const
{
    std::vector<qint64> orders;
    for (const QString &key : keys)
        orders.push_back(m_items[key].order);
    std::sort(orders.begin(), orders.end());
    for (std::size_t i = 1; i < orders.size(); ++i)
        orders[i] = std::max(orders[i], orders[i - 1] + 1);
    auto order = orders.begin();
    for (const QString &key : keys) {
        StationsItem item = m_items[key];
        if (item.order != *order) {
            item.order = *order;
            changes.insert(key, encoded(item));
        }
        ++order;
    }
}

void StationsList::move(const QString &key, int by, Done done)
{
    const auto plan = [this, key, by](Changes &changes) {
        const StationsItem *const item = find(key);
        if (!item)
            return goneError();
        QStringList keys = keysIn(item->folder);
        const int from = keys.indexOf(key);
        const int to = from + by;
        if (to >= 0 && to < keys.size()) {
            keys.move(from, to);
            arrange(keys, changes);
        }
        return CMError();
    };
    enqueue(plan, std::move(done));
}

void StationsList::moveTo(const QString &key, const QString &folder, Done done)
{
    const auto plan = [this, key, folder](Changes &changes) {
        const StationsItem *const found = find(key);
        if (!found || !missingFolder(folder).isEmpty())
            return goneError();
        if (found->folder == folder)
            return CMError();
        if (!canMoveTo(key, folder)) {
            return error(
                QT_TRANSLATE_NOOP("Stations", "The folder cannot be moved to this place."));
        }
        StationsItem item = *found;
        item.folder = folder;
        item.order = lastOrder(folder) + 1;
        changes.insert(key, encoded(item));
        return CMError();
    };
    enqueue(plan, std::move(done));
}

void StationsList::remove(const QString &key, bool withAll, Done done)
{
    const auto plan = [this, key, withAll](Changes &changes) {
        if (!find(key))
            return goneError();
        QStringList keys {key};
        collect(key, keys);
        if (keys.size() > 1 && !withAll)
            return error(QT_TRANSLATE_NOOP("Stations", "The folder is not empty."));
        for (const QString &each : std::as_const(keys))
            changes.insert(each, QByteArray());
        return CMError();
    };
    enqueue(plan, std::move(done));
}

void StationsList::sort(const QString &folder, Done done)
{
    const auto plan = [this, folder](Changes &changes) {
        if (const CMError error = missingFolder(folder); !error.isEmpty())
            return error;
        QStringList keys = keysIn(folder);
        const QCollator order = collator();
        std::stable_sort(keys.begin(), keys.end(), [&](const QString &a, const QString &b) {
            const StationsItem &first = *find(a);
            const StationsItem &second = *find(b);
            if (first.isFolder() != second.isFolder())
                return first.isFolder();
            return order.compare(first.title, second.title) < 0;
        });
        arrange(keys, changes);
        return CMError();
    };
    enqueue(plan, std::move(done));
}

/// Gathers what is not in the list yet.
class StationsList::Merge {
public:
    Merge(const StationsList &list, Changes &changes)
        : m_list(list)
        , m_changes(changes)
    {
    }

    void merge(const std::vector<StationsEntry> &entries, const QString &folder)
    {
        qint64 order = m_list.lastOrder(folder);
        for (const StationsEntry &entry : entries) {
            if (entry.isFolder())
                mergeFolder(entry, folder, ++order);
            else if (isKnown(entry))
                ++m_known;
            else
                add(entry, folder, ++order);
        }
    }

    int added() const { return m_addresses.size(); }
    int known() const { return m_known; }

private:
    bool isKnown(const StationsEntry &station) const
    {
        return m_list.findAddress(station.address) || m_addresses.contains(station.address);
    }

    /// A folder whose stations are all in the list, elsewhere, is not made again.
    bool isNews(const StationsEntry &entry) const
    {
        if (!entry.isFolder())
            return !isKnown(entry);
        return entry.entries.empty()
            || std::any_of(entry.entries.begin(), entry.entries.end(),
                [this](const StationsEntry &inside) { return isNews(inside); });
    }

    void mergeFolder(const StationsEntry &entry, const QString &folder, qint64 order)
    {
        QString key = m_list.folderCalled(entry.title, folder);
        if (key.isEmpty() && !isNews(entry))
            m_known += stationsCount(entry.entries);
        else
            merge(entry.entries, key.isEmpty() ? add(entry, folder, order) : key);
    }

    QString add(const StationsEntry &entry, const QString &folder, qint64 order)
    {
        const StationsItem item {m_list.newKey(entry.isFolder(), m_changes), folder, order,
            entry.title, entry.address, entry.picture, entry.description};
        m_changes.insert(item.key, encoded(item));
        if (!entry.isFolder())
            m_addresses.insert(entry.address);
        return item.key;
    }

    const StationsList &m_list;
    Changes &m_changes;
    QSet<QString> m_addresses; ///< of what is added
    int m_known = 0;
};

void StationsList::merge(const std::vector<StationsEntry> &entries, Merged merged)
{
    // Filled in when the plan is made, handed on when it is carried out.
    const auto counts = std::make_shared<std::pair<int, int>>();
    const auto plan = [this, entries, counts](Changes &changes) {
        Merge merge(*this, changes);
        merge.merge(entries, QString());
        *counts = {merge.added(), merge.known()};
        return size() + changes.size() > StationsLimits::Entries ? fullError() : CMError();
    };
    enqueue(plan, [counts, merged = std::move(merged)](const CMError &error) {
        merged(error, counts->first, counts->second);
    });
}
