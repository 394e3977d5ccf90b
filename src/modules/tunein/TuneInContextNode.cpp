// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/tunein/TuneInContextNode.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "api/core/vesk.h"
#include "api/tunein/VeskTuneInResponse.h"
#include "modules/tunein/TuneInApi.h"
#include "modules/tunein/TuneInRequest.h"
#include "modules/tunein/cb_tunein.h"

VESK_LOGGER("CB_TuneIn")

namespace {

const char TitleSignature[]
    = "virtual QVariant TuneInAddRemovePresetsNode::getRoleData(const QString&, const Params&)";

QString matchingPathKey()
{
    return QStringLiteral("veskMatchingPath");
}

TrString titleText(const char *text)
{
    return TrString(trExtractContext(TitleSignature), QString::fromLatin1(text));
}

/// TuneIn keeps shows as favorites, not single episodes ("t..."); "sid" is the episode's show.
QString favoriteId(const QString &guideId, const QString &sid)
{
    return guideId.startsWith(QLatin1Char('t')) && !sid.isEmpty() ? sid : guideId;
}

} // namespace

TuneInAddRemovePresetsNode *TuneInAddRemovePresetsNode::create(
    CMTuneInWorker *worker, const CMPath &path)
{
    VESK_ASSERT(worker);
    auto *node = new TuneInAddRemovePresetsNode(worker, path);
    node->setNodes(worker->nodes());
    return node;
}

TuneInAddRemovePresetsNode::TuneInAddRemovePresetsNode(CMTuneInWorker *worker, const CMPath &path)
    : CMActivateNode(path)
    , m_tiWorker(worker)
    , m_settings(&worker->settings())
{
    setInvoke(this, &TuneInAddRemovePresetsNode::on_node_invoke, Qt::DirectConnection);
    setMediaData(worker->serviceMediaData());
}

TuneInAddRemovePresetsNode::~TuneInAddRemovePresetsNode() = default;

bool TuneInAddRemovePresetsNode::isPreset(const QString &id)
{
    VESK_ASSERT_OWN_THREAD();
    VESK_TRACE("id: " << id);
    if (id.isEmpty())
        return false;
    VeskUrl url = TuneInApi::url(QStringLiteral("/Describe.ashx"));
    url.addQueryItem(QStringLiteral("id"), id);
    url.addQueryItem(QStringLiteral("render"), QStringLiteral("json"));
    TuneInApi::addDevice(url, *m_settings);

    VeskTuneInResponse response;
    const CMError error = TuneInRequest(m_tiWorker).request(url, TuneInRequest::Get, response);
    if (!error.value(CMError::Name()).toString().isEmpty()) {
        VESK_ERROR("CMTuneInWorker: reporting status: failed: error: '" << error << "'");
        return false;
    }
    const QString status = response.head().status();
    if (status != QLatin1String("200")) {
        VESK_ERROR("TuneInAddRemovePresetsNode::isPreset: failed, status: " << status);
        return false;
    }
    const VeskList<VeskTuneInBodyElement> body = response.body();
    const VeskTuneInBodyElement item = body.isEmpty() ? VeskTuneInBodyElement() : body.first();
    if (item.element() != QLatin1String("station") && item.element() != QLatin1String("show")) {
        VESK_ERROR("TuneInAddRemovePresetsNode::isPreset: Invalid response!");
        return false;
    }
    return item.isPreset() == QLatin1String("true");
}

QVariant TuneInAddRemovePresetsNode::getRoleData(const QString &role, const Params &params)
{
    if (role != VeskRoles::Title())
        return CMActivateNode::getRoleData(role, params);
    VESK_TRACE("role: '" << role << "' items: " << params);
    if (!params.contains(matchingPathKey())) {
        VESK_WARN("Query not including 'veskMatchingPath'");
        return titleText("Error");
    }
    const QString guideId
        = CMPath::fromEncoded(params.value(matchingPathKey())).param(QStringLiteral("veskGuideId"));
    VESK_ASSERT(!guideId.isEmpty());
    if (isPreset(favoriteId(guideId, params.value(QStringLiteral("sid"))))) {
        m_command = QStringLiteral("remove");
        return titleText("Remove from TuneIn Favorites");
    }
    m_command = QStringLiteral("add");
    return titleText("Add to TuneIn Favorites");
}

VeskUrl TuneInAddRemovePresetsNode::presetUrl(const QString &id) const
{
    VeskUrl url = TuneInApi::url(QStringLiteral("/Preset.ashx"));
    url.addQueryItem(QStringLiteral("c"), m_command);
    url.addQueryItem(QStringLiteral("render"), QStringLiteral("json"));
    TuneInApi::addDevice(url, *m_settings);
    url.addQueryItem(QStringLiteral("id"), id);
    return url;
}

void TuneInAddRemovePresetsNode::on_node_invoke(const CMSetDataRequest &request)
{
    VESK_ASSERT_OWN_THREAD();
    const CMPath &path = request.path();
    if (!path.hasParam(matchingPathKey())) {
        VESK_WARN("Query not including 'veskMatchingPath'");
        return;
    }
    const CMPath matching = CMPath::fromEncoded(path.param(matchingPathKey()));
    const QString guideId = matching.param(QStringLiteral("veskGuideId"));
    const QString sid = path.param(QStringLiteral("sid"));
    VESK_ASSERT(!guideId.isEmpty());
    VESK_DEBUG("TuneInAddRemovePresetsNode::on_node_invoke: path: '"
        << matching.toEncoded() << "', guideID: " << guideId << ", sid: " << sid
        << ", command: " << m_command);
    if (m_command != QLatin1String("add") && m_command != QLatin1String("remove")) {
        VESK_WARN("Invalid command: '" << m_command << "'");
        return;
    }

    VeskTuneInResponse response;
    const CMError error
        = TuneInRequest(m_tiWorker)
              .request(presetUrl(favoriteId(guideId, sid)), TuneInRequest::Get, response);
    const CMVoidReply reply(request.replyData());
    if (!error.value(CMError::Name()).toString().isEmpty()) {
        VESK_ERROR(
            "TuneInAddRemovePresetsNode::on_node_invoke: %1: failed, error: '" << error << "'");
        reply.setError(error);
        return;
    }
    const VeskTuneInHead head = response.head();
    if (head.status() != QLatin1String("200")) {
        VESK_ERROR("TuneInAddRemovePresetsNode::on_node_invoke: "
            << m_command << ": failed, status: '" << head.status() << "', fault: '" << head.fault()
            << "'");
        const QString text = m_command == QLatin1String("add")
            ? QStringLiteral("Failed to add station to presets (%1).")
            : QStringLiteral("Failed to remove station from presets (%1).");
        reply.setError(CMError(
            TrString(QStringLiteral("TuneIn"), text, QString(), -1, {TrArg(head.fault())})));
        return;
    }
    VESK_DEBUG("TuneInAddRemovePresetsNode::on_node_invoke: " << m_command << ": OK");
    announceChange(guideId);
    request.reply().setValue(QVariant());
}

/// Notifies the subscribers of the favorites screen and of the item's menus.
void TuneInAddRemovePresetsNode::announceChange(const QString &guideId)
{
    CMSubscribe *const subscribers = subscribe();
    if (!subscribers)
        return;
    VESK_ASSERT(m_tiWorker);
    const auto announce
        = [this, subscribers](const QString &relative, const char *key, const QString &value) {
              CMPath path = m_tiWorker->addPrefix(relative);
              path.addParam(QString::fromLatin1(key), value);
              subscribers->changedStartingWith(path, CMSubscribe::RowsChangeReset(), -1, -1);
          };
    announce(QStringLiteral("browse/uri/Browse.ashx"), "c", QStringLiteral("presets"));
    announce(QStringLiteral("player_context"), "guideId", guideId);
    announce(QStringLiteral("browser_context"), "guideId", guideId);
    VESK_INFO("Updating nodes with presets in it ...");
}

namespace {

/// What both menus share: their looks, and the favorites entry as their first row.
void fillMenu(CMListRowsNode *menu, CMTuneInWorker *worker)
{
    menu->setContainerType(VeskRolesContainerType::ContextMenu);
    menu->setCopyPathParams(true);
    menu->setMediaData(worker->serviceMediaData());
    menu->rowsAppend(
        TuneInAddRemovePresetsNode::create(worker, menu->path() + QStringLiteral("/presets"))
            ->path());
}

CMPath methodPath(CMTuneInWorker *worker, const QString &method)
{
    CMPath path = worker->addPrefix(QStringLiteral("browse"));
    path.addParam(QStringLiteral("veskTuneInMethod"), method);
    return path;
}

} // namespace

TuneInPlayerContextNode *TuneInPlayerContextNode::create(
    CMTuneInWorker *tiWorker, const CMPath &path, bool addTuneBrowse)
{
    VESK_ASSERT(tiWorker);
    auto *node = new TuneInPlayerContextNode(tiWorker, path, addTuneBrowse);
    node->setNodes(tiWorker->nodes());
    return node;
}

TuneInPlayerContextNode::TuneInPlayerContextNode(
    CMTuneInWorker *worker, const CMPath &path, bool addTuneBrowse)
    : CMListRowsNode(path)
    , m_tiWorker(worker)
    , m_settings(&worker->settings())
{
    VESK_DEBUG("TuneInPlayerContextNode: path: " << path);
    fillMenu(this, m_tiWorker);
    if (addTuneBrowse) {
        CMPath streams = methodPath(m_tiWorker, QStringLiteral("tune"));
        streams.addParam(QStringLiteral("c"), QStringLiteral("ebrowse"));
        rowsAppend(streams);
    }
    if (m_settings->enabledFixItWizard())
        rowsAppend(methodPath(m_tiWorker, QStringLiteral("wizard")));
}

TuneInPlayerContextNode::~TuneInPlayerContextNode() = default;

TuneInBrowserContextNode *TuneInBrowserContextNode::create(
    CMTuneInWorker *tiWorker, const CMPath &path)
{
    VESK_ASSERT(tiWorker);
    auto *node = new TuneInBrowserContextNode(tiWorker, path);
    node->setNodes(tiWorker->nodes());
    return node;
}

TuneInBrowserContextNode::TuneInBrowserContextNode(CMTuneInWorker *worker, const CMPath &path)
    : CMListRowsNode(path)
    , m_tiWorker(worker)
    , m_settings(&worker->settings())
{
    VESK_DEBUG("TuneInBrowserContextNode: path: " << path);
    fillMenu(this, m_tiWorker);
}

TuneInBrowserContextNode::~TuneInBrowserContextNode() = default;
