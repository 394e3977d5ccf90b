// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/stations/StationsWorker.h"

#include "api/nodes/CMListRowsNode.h"
#include "api/nodes/CMQueryNode.h"
#include "api/values/VeskPlayLogicData.h"
#include "api/values/VeskValuePaths.h"
#include "modules/stations/StationsFormats.h"

extern "C" void *worker_create(const char *, void *config)
{
    return new StationsWorker(*static_cast<const QVariantHash *>(config));
}

StationsWorker::StationsWorker(const QVariantHash &config)
    : CMNodesWorker(config, QStringLiteral("Stations"))
    , m_list(config)
    , m_folder(config.value(QStringLiteral("folder")).toString())
    , m_rows(addPrefix(QString()), config.value(VeskService_Id()).toString())
    , m_screens(&m_list, &m_folder, m_rows)
    , m_import(&m_list)
{
    createTree();
    connect(&m_list, &StationsList::changed, this, [this] { announce(addPrefix(QString())); });
}

/// No request may reach the nodes while what they use goes.
StationsWorker::~StationsWorker()
{
    stop();
}

void StationsWorker::createTree()
{
    auto *const root = new StationsRootNode(
        addPrefix(QString()), [this](const auto &) { return m_screens.root(); }, createSearches());
    root->setTitle(stationsTr(QT_TRANSLATE_NOOP("Stations", "Stations")));
    root->setNodes(nodes());
    createScreen("folder", &StationsScreens::folder);
    createScreen("file", &StationsScreens::file);
    createScreen("results", &StationsScreens::results);
    createScreen("add", &StationsScreens::add);
    createScreen("menu", &StationsScreens::menu)
        ->setContainerType(VeskRolesContainerType::ContextMenu);
    createScreen("rename", &StationsScreens::rename);
    createScreen("newfolder", &StationsScreens::newFolder);
    createScreen("move", &StationsScreens::move);
    createScreen("remove", &StationsScreens::remove);
    for (const char *base : {"station", "address"}) {
        createNode(base)->setGet([this](const CMPath &path) { return m_screens.station(path); });
    }
    createNode("do")->setSet(
        VeskRoles::Activate(), [this](const CMSetDataRequest &request) { act(request); });
    createNode("playing")->setSet(VeskRoles::Activate(),
        [this](const CMSetDataRequest &request) { handleStateChange(request); });
    createNode("import")->setSet(
        VeskRoles::Value(), [this](const CMSetDataRequest &request) { m_import.take(request); });
    createNode("export")->setGet([this](const CMPath &path) { return exported(path); });
}

StationsScreenNode *StationsWorker::createScreen(const char *base, Build build)
{
    auto *const node = new StationsScreenNode(
        m_rows.path(base), [this, build](const StationsScreens::Params &params) {
            return (m_screens.*build)(params);
        });
    node->setNodes(nodes());
    return node;
}

StationsNode *StationsWorker::createNode(const char *base)
{
    auto *const node = new StationsNode(m_rows.path(base));
    node->setNodes(nodes());
    return node;
}

CMContainerNode *StationsWorker::createSearches()
{
    CMQueryNode *const search = CMQueryNode::create(nodes(), m_rows.path("search"));
    search->setTitle(stationsTr(QT_TRANSLATE_NOOP("Stations", "Search your stations")));
    search->setQuery(QStringLiteral("text"));
    search->setQueryPath(m_rows.path("results"));
    CMListRowsNode *const searches = CMListRowsNode::create(nodes(), m_rows.path("searches"));
    searches->setTitle(stationsTr(QT_TRANSLATE_NOOP("Stations", "Search")));
    searches->setContainerType(VeskRolesContainerType::SearchList);
    searches->rowsAppend(search->path());
    return searches;
}

void StationsWorker::announce(const CMPath &path)
{
    nodes()->subscribe()->changedStartingWith(path, CMSubscribe::RowsChangeReset(), -1, -1);
}

void StationsWorker::act(const CMSetDataRequest &request)
{
    const CMPath &path = request.path();
    const QString action = path.base().section(QLatin1Char('/'), 1);
    const auto param = [&path](const char *name) { return path.param(QString::fromLatin1(name)); };
    const QString id = param("id");
    const QString folder = param("folder");
    const QString title = stationsText(param("title"), StationsLimits::Title);
    const StationsList::Done done = [reply = request.reply()](const CMError &error) {
        error.isEmpty() ? reply.setValue(QVariant()) : reply.setError(error);
    };
    const auto needsTitle = [&title, &done] {
        if (title.isEmpty()) {
            done(CMError(stationsTr(QT_TRANSLATE_NOOP("Stations", "The name is missing."))));
        }
        return !title.isEmpty();
    };
    if (action == QLatin1String("add")) {
        const QString address = stationsAddress(param("address"));
        if (address.isEmpty()) {
            return done(CMError(stationsTr(QT_TRANSLATE_NOOP(
                "Stations", "This is no address that begins with http or https."))));
        }
        m_list.add(folder,
            {title.isEmpty() ? stationsTitle(address) : title, address,
                stationsAddress(param("picture")),
                stationsText(param("description"), StationsLimits::Description)},
            done);
    } else if (action == QLatin1String("folder")) {
        if (needsTitle())
            m_list.addFolder(folder, title, done);
    } else if (action == QLatin1String("rename")) {
        if (needsTitle())
            m_list.rename(id, title, done);
    } else if (action == QLatin1String("up") || action == QLatin1String("down")) {
        m_list.move(id, action == QLatin1String("up") ? -1 : 1, done);
    } else if (action == QLatin1String("move")) {
        m_list.moveTo(id, folder, done);
    } else if (action == QLatin1String("remove")) {
        m_list.remove(id, !param("all").isEmpty(), done);
    } else if (action == QLatin1String("sort")) {
        m_list.sort(folder, done);
    } else {
        request.reply().setError(CMNoNodeError());
    }
}

void StationsWorker::handleStateChange(const CMSetDataRequest &request)
{
    const VeskPlayLogicData data(request.value().toHash());
    request.reply().setValue(QVariant());
    const QString address
        = stationsAddress(data.trackRoles().path().param(QStringLiteral("address")));
    if (address.isEmpty())
        return;
    StationsTrial &trial = m_screens.trial();
    if (trial.address != address)
        trial = {address, false, {}};
    if (data.state() == VeskPlayLogicState::playing)
        trial = {address, true, {}};
    else if (data.state() == VeskPlayLogicState::stopped && !data.error().isEmpty())
        trial.error = stationsText(data.error(), StationsLimits::Description);
    announce(m_rows.path("add"));
}

VeskRoles StationsWorker::exported(const CMPath &path) const
{
    const StationsFormat format = stationsFormat(path.param(QStringLiteral("format")));
    const QString title = stationsTr(QT_TRANSLATE_NOOP("Stations", "Stations")).toString();
    const QByteArray data
        = writeStations(format, title, m_list.entriesIn(path.param(QStringLiteral("folder"))));
    VeskRoles roles;
    roles.insert(VeskRoles::Value(),
        QVariantHash {
            {QStringLiteral("name"), QStringLiteral("stations.") + stationsFormatName(format)},
            {QStringLiteral("data"), QString::fromUtf8(data)}});
    return roles;
}
