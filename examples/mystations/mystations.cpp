// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include <api/core/Language.h>
#include <api/nodes/CMListRowsNode.h>
#include <api/nodes/CMNodesWorker.h>
#include <api/nodes/CMQueryNode.h>
#include <api/nodes/CMRootWorker.h>
#include <api/nodes/CMValueItem.h>
#include <api/store/VeskStore.h>

#include <algorithm>

namespace {

struct Station {
    const char *id;
    const char *name;
    const char *address;
};

const Station Stations[] = {
    {"harbour", "Harbour Radio", "http://radio.example/stream/s29001/1.mp3"},
    {"attic", "Attic Jazz", "http://radio.example/stream/s29009/1.mp3"},
    {"night", "Night Jazz", "http://radio.example/stream/s29016/1.mp3"},
};

/// A text for the user, which can be translated.
TrString text(const char *source)
{
    return TrString("mystations", source);
}

CMPath sortedSetting()
{
    return CMPath(QStringLiteral("settings"), QStringLiteral("mystations/sorted"));
}

bool isSorted()
{
    return VeskValue(CMRoot()->getValue(sortedSetting()).toHash()).bool_();
}

/// The list of stations.
/// With the path's parameter "name" those with that text in their names.
/// With the parameter "show" the favorites.
class StationsNode : public CMContainerNode {
public:
    StationsNode(const CMPath &path, const VeskStore *store)
        : CMContainerNode(path)
        , m_store(store)
    {
    }

    QVariant getRoleData(const QString &role, const Params &params) override
    {
        if (role == VeskRoles::Title() && params.contains(QStringLiteral("show")))
            return text("Favorites");
        return CMContainerNode::getRoleData(role, params);
    }

    bool getRowsRequest(const CMGetRowsRequest &request) override
    {
        QVector<VeskRoles> rows;
        for (const Station &station : Stations) {
            if (isShown(station, request.path()))
                rows.append(rowOf(station));
        }
        if (isSorted())
            std::sort(rows.begin(), rows.end(), isBefore);
        answerRows(request, rows);
        return true;
    }

    /// Tells everyone who shows stations to read them again.
    void changed()
    {
        subscribe()->changedStartingWith(path(), CMSubscribe::RowsChangeReset(), -1, -1);
    }

private:
    bool isShown(const Station &station, const CMPath &opened) const
    {
        if (opened.hasParam(QStringLiteral("show")))
            return m_store->contains(QString::fromLatin1(station.id));
        return QString::fromLatin1(station.name)
            .contains(opened.param(QStringLiteral("name")), Qt::CaseInsensitive);
    }

    static bool isBefore(const VeskRoles &a, const VeskRoles &b)
    {
        return a.title().toString().localeAwareCompare(b.title().toString()) < 0;
    }

    VeskRoles rowOf(const Station &station) const
    {
        const CMPath::Params id {{QStringLiteral("station"), QString::fromLatin1(station.id)}};
        const CMPath menu(path().prefix(), QStringLiteral("menu"), id);
        VeskRoles context;
        context.setPath(menu);

        VeskResource stream;
        stream.setUri(QString::fromLatin1(station.address));
        stream.setMimeType(QStringLiteral("audio/mpeg"));
        VeskList<VeskResource> streams;
        streams.append(stream);
        VeskMetaData metaData;
        metaData.setLive(true);
        metaData.setContentPlayContextPath(menu);
        VeskMediaData media;
        media.setMetaData(metaData);
        media.setResources(streams);

        VeskRoles row;
        row.setTitle(Language::ntr(QString::fromLatin1(station.name)));
        row.setType(VeskRolesType::Audio());
        row.setAudioType(VeskRolesAudioType::AudioBroadcast());
        row.setPath(CMPath(path().prefix(), QStringLiteral("station"), id));
        row.setMediaData(media);
        row.setContext(context);
        return row;
    }

    const VeskStore *const m_store;
};

/// The entry of a station's menu that adds it to the favorites, or removes it.
class FavoriteNode : public CMUINode {
public:
    FavoriteNode(const CMPath &path, StationsNode *stations, VeskStore *store)
        : CMUINode(path)
        , m_stations(stations)
        , m_store(store)
    {
    }

    QVariant getRoleData(const QString &role, const Params &params) override
    {
        if (role == VeskRoles::Type())
            return VeskRolesType::Activate();
        if (role != VeskRoles::Title())
            return CMUINode::getRoleData(role, params);
        return m_store->contains(params.value(QStringLiteral("station")))
            ? text("Remove from favorites")
            : text("Add to favorites");
    }

    bool setDataRequest(const CMSetDataRequest &request) override
    {
        if (request.role() != VeskRoles::Activate())
            return false;
        const QString id = request.path().param(QStringLiteral("station"));
        const bool isKnown = std::any_of(std::begin(Stations), std::end(Stations),
            [&id](const Station &station) { return id == QLatin1String(station.id); });
        if (!isKnown) {
            request.reply().setError(CMError(text("There is no such station.")));
            return true;
        }
        // A null value removes the key.
        const QByteArray value = m_store->contains(id) ? QByteArray() : QByteArray("1");
        m_store->write({{id, value}}, [this, request](const CMError &error) {
            if (!error.isEmpty())
                return request.reply().setError(error);
            m_stations->changed();
            subscribe()->changedStartingWith(path(), CMSubscribe::ValueChanged(), -1, -1);
            request.reply().setValue(QVariant());
        });
        return true;
    }

private:
    StationsNode *const m_stations;
    VeskStore *const m_store;
};

class MyStationsWorker : public CMNodesWorker {
public:
    explicit MyStationsWorker(const QVariantHash &config)
        : CMNodesWorker(config, QStringLiteral("MyStations"))
        , m_store(config)
    {
        auto *const stations = new StationsNode(addPrefix(QStringLiteral("stations")), &m_store);
        stations->setTitle(text("All stations"));
        stations->setNodes(nodes());

        CMListRowsNode *const root = CMListRowsNode::create(nodes(), addPrefix(QString()));
        root->setTitle(text("My stations"));
        root->rowsAppend(stations->path());

        CMQueryNode *const search
            = CMQueryNode::create(nodes(), addPrefix(QStringLiteral("search")));
        search->setTitle(text("Search my stations"));
        search->setQuery(QStringLiteral("name"));
        search->setQueryPath(stations->path());
        CMListRowsNode *const searches
            = CMListRowsNode::create(nodes(), addPrefix(QStringLiteral("searches")));
        searches->setTitle(text("Search"));
        searches->setContainerType(VeskRolesContainerType::SearchList);
        searches->rowsAppend(search->path());
        root->rowsAppend(searches->path());

        auto *const sorted = new CMValueItem(sortedSetting(), this);
        connect(sorted, &CMValueItem::changed, stations, &StationsNode::changed);

        CMPath favorites = stations->path();
        favorites.addParam(QStringLiteral("show"), QStringLiteral("favorites"));
        root->rowsAppend(favorites);

        auto *const favorite
            = new FavoriteNode(addPrefix(QStringLiteral("favorite")), stations, &m_store);
        favorite->setNodes(nodes());
        CMListRowsNode *const menu
            = CMListRowsNode::create(nodes(), addPrefix(QStringLiteral("menu")));
        menu->setContainerType(VeskRolesContainerType::ContextMenu);
        menu->setCopyPathParams(true);
        menu->rowsAppend(favorite->path());
    }

private:
    VeskStore m_store;
};

} // namespace

extern "C" Q_DECL_EXPORT void *worker_create(const char *, void *config)
{
    return new MyStationsWorker(*static_cast<const QVariantHash *>(config));
}
