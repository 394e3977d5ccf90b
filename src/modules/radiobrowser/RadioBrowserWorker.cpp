// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/radiobrowser/RadioBrowserWorker.h"

#include "api/core/Language.h"
#include "api/nodes/CMActivateNode.h"
#include "api/nodes/CMQueryNode.h"
#include "api/nodes/CMRootWorker.h"
#include "api/values/VeskPlayLogicData.h"
#include "api/values/VeskValue.h"
#include "api/values/VeskValuePaths.h"
#include "modules/radiobrowser/RadioBrowserNodes.h"

extern "C" void *worker_create(const char *, void *config)
{
    return new RadioBrowserWorker(*static_cast<const QVariantHash *>(config));
}

RadioBrowserWorker::RadioBrowserWorker(
    const QVariantHash &config, RadioBrowserServers::LookUp lookUp, RadioBrowserServers::Now now)
    : CMNodesWorker(config, QStringLiteral("RadioBrowser"))
    , m_client(std::make_unique<RadioBrowserClient>(std::move(lookUp), std::move(now)))
    , m_favorites(config)
{
    useConfiguredServer();
    createTree();
}

/// Requests under way end with errors here, while the nodes that wait for them are still there.
RadioBrowserWorker::~RadioBrowserWorker()
{
    m_client.reset();
}

CMPath RadioBrowserWorker::serverSettingPath()
{
    return CMPath(QStringLiteral("settings"), QStringLiteral("radiobrowser/server"));
}

void RadioBrowserWorker::useConfiguredServer()
{
    QString server = config().value(QStringLiteral("server")).toString();
    if (server.isEmpty())
        server = VeskValue(CMRoot()->getValue(serverSettingPath()).toHash()).string_();
    if (!server.isEmpty())
        m_client->servers().setOnly(server);
}

void RadioBrowserWorker::createTree()
{
    VeskMetaData media;
    media.setServiceID(config().value(VeskService_Id()).toString());
    VeskMediaData serviceMedia;
    serviceMedia.setMetaData(media);

    const CMPath playing = addPrefix(QStringLiteral("playing"));
    CMActivateNode::create(nodes(), playing)
        ->setInvoke(this, &RadioBrowserWorker::handleStateChange, Qt::DirectConnection);
    media.setPlaybackStateChangePath(playing);

    const CMPath menu = m_favorites.areAvailable() ? addPrefix(QStringLiteral("menu")) : CMPath();
    const RadioBrowserStationRows rows(media, menu);
    const CMPath stations = addPrefix(QStringLiteral("stations"));
    auto *const stationsNode = new RadioBrowserStationsNode(m_client.get(), stations, rows);
    stationsNode->setMediaData(serviceMedia);
    stationsNode->setNodes(nodes());

    CMQueryNode *const search = CMQueryNode::create(nodes(), addPrefix(QStringLiteral("search")));
    search->setTitle(radioBrowserTr(QT_TRANSLATE_NOOP("RadioBrowser", "Search stations by name")));
    search->setQuery(QStringLiteral("name"));
    search->setQueryPath(stations);
    CMListRowsNode *const searches
        = CMListRowsNode::create(nodes(), addPrefix(QStringLiteral("searches")));
    searches->setTitle(radioBrowserTr(QT_TRANSLATE_NOOP("RadioBrowser", "Search")));
    searches->setContainerType(VeskRolesContainerType::SearchList);
    searches->setMediaData(serviceMedia);
    searches->rowsAppend(search->path());

    auto *const root = new RadioBrowserRootNode(addPrefix(QString()), searches);
    root->setTitle(Language::ntr(QStringLiteral("Radio Browser")));
    root->setMediaData(serviceMedia);
    root->setNodes(nodes());
    root->rowsAppend(searches->path());
    if (m_favorites.areAvailable()) {
        auto *const favorites = new RadioBrowserFavoritesNode(
            &m_favorites, addPrefix(QStringLiteral("favorites")), rows);
        favorites->setMediaData(serviceMedia);
        favorites->setNodes(nodes());
        root->rowsAppend(favorites->path());
        createMenu(menu, serviceMedia);
    }
    const int kinds = static_cast<int>(RadioBrowserCategoriesNode::kinds().size());
    for (int kind = 0; kind < kinds; ++kind) {
        const char *const base
            = RadioBrowserCategoriesNode::kinds().at(static_cast<std::size_t>(kind)).base;
        auto *const categories = new RadioBrowserCategoriesNode(
            m_client.get(), addPrefix(QString::fromLatin1(base)), kind, stations);
        categories->setMediaData(serviceMedia);
        categories->setNodes(nodes());
        root->rowsAppend(categories->path());
    }
    for (const char *const order : {"votes", "clickcount", "changetimestamp"}) {
        CMPath ordered = stations;
        ordered.addParam(QStringLiteral("order"), QString::fromLatin1(order));
        root->rowsAppend(ordered);
    }
}

/// The menu of a station, which the path's parameter names.
void RadioBrowserWorker::createMenu(const CMPath &path, const VeskMediaData &media)
{
    auto *const favorite = new RadioBrowserFavoriteNode(
        m_client.get(), &m_favorites, path + QStringLiteral("/favorite"));
    favorite->setMediaData(media);
    favorite->setNodes(nodes());
    CMListRowsNode *const menu = CMListRowsNode::create(nodes(), path);
    menu->setContainerType(VeskRolesContainerType::ContextMenu);
    menu->setCopyPathParams(true);
    menu->setMediaData(media);
    menu->rowsAppend(favorite->path());
    connect(&m_favorites, &RadioBrowserFavorites::changed, this, [path](const QString &) {
        CMSubscribe().changedStartingWith(path, CMSubscribe::RowsChangeReset(), -1, -1);
    });
}

/// A play begins once, however often it is paused, breaks off or is tried with another stream. It
/// counts when it is heard: what was only opened says nothing about the station.
void RadioBrowserWorker::handleStateChange(const CMSetDataRequest &request)
{
    const VeskPlayLogicData data(request.value().toHash());
    request.reply().setValue(QVariant());
    if (data.state() != VeskPlayLogicState::playing || data.playId() == m_countedPlay)
        return;
    m_countedPlay = data.playId();
    const QString station = RadioBrowserStationRows::stationOf(data.trackRoles().path());
    if (!station.isEmpty())
        m_client->countClick(station);
}
