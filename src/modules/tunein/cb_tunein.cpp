// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/tunein/cb_tunein.h"

#include "api/core/Language.h"
#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "api/core/vesk.h"
#include "api/nodes/CMActivateNode.h"
#include "api/nodes/CMListRowsNode.h"
#include "api/nodes/CMQueryNode.h"
#include "api/nodes/CMRedirectRowsNode.h"
#include "api/nodes/CMValueItem.h"
#include "api/player/PlayLogicInterface.h"
#include "api/tunein/VeskTuneInPaths.h"
#include "api/values/MimeTypes.h"
#include "api/values/VeskValuePaths.h"
#include "modules/tunein/NewQThread.h"
#include "modules/tunein/TuneInAccount.h"
#include "modules/tunein/TuneInApi.h"
#include "modules/tunein/TuneInBrowseNode.h"
#include "modules/tunein/TuneInClock.h"
#include "modules/tunein/TuneInContextNode.h"
#include "modules/tunein/TuneInHttpClient.h"
#include "modules/tunein/TuneInRequest.h"

#include <QMutexLocker>
#include <QThread>

VESK_LOGGER("CB_TuneIn")

namespace {

/// A pause this long is reported as the end of listening.
constexpr int PauseReportMinutes = 5;
constexpr int PauseReportMs = PauseReportMinutes * 60 * 1000;

constexpr unsigned long NetworkPollMs = 10;

const char ConstructorSignature[] = "CMTuneInWorker::CMTuneInWorker(const QVariantHash&)";

/// Stations with unreliable streams, for trying out a player.
struct Station {
    const char *name;
    const char *url;
};

constexpr Station UnreliableStations[] = {
    {"Harbour Lights Radio", "http://harbourlights.example.net:8000/"},
    {"Radio Quicksilver", "http://quicksilver.example.org:8010/"},
    {"Night Owl Jazz", "http://owl.example.com:8002/"},
    {"Polar Circle FM", "http://polarcircle.example.net:9000/"},
    {"Studio Nine Classics", "http://nine.example.org:8100/"},
    {"Radio Hinterland", "http://hinterland.example.com:8000/"},
    {"Copper Kettle Folk", "http://copperkettle.example.net:7500/"},
    {"Mistral Info", "http://mistral.example.org:8080/"},
    {"Static and Stars", "http://staticstars.example.com:8006/"},
    {"Seven Hills Talk", "http://sevenhills.example.net:8004/"},
    {"Cloudbase Ambient", "http://cloudbase.example.org/ambient.mp3"},
    {"Tramline Radio", "http://tramline.example.com:8012/"},
    {"Estuary Sound", "http://estuary.example.net:8014/listen.m3u"},
    {"Paper Lantern", "http://paperlantern.example.org:8020/"},
    {"Two Bridges Soul", "http://twobridges.example.com:8888/"},
    {"Late Ferry", "http://lateferry.example.net:8016/"},
};

TrString workerText(const char *text)
{
    return TrString(ConstructorSignature, text);
}

} // namespace

extern "C" void *worker_create(const char *name, void *config)
{
    VESK_TRACE(
        "Enter " << dbglog_scopedFunction("void* worker_create(const char*, void*)", "CB_TuneIn")
                 << ": name: " << (name ? name : ""));
    return new CMTuneInWorker(*static_cast<const QVariantHash *>(config));
}

CMTuneInWorker::CMTuneInWorker(const QVariantHash &config)
    : CMNodesWorker(config, QStringLiteral("TuneIn"))
    , m_player(PlayLogicInterface::playerInstance())
    , m_listeningDurationTimer(this)
{
    VESK_TRACE("Enter " << dbglog_scopedFunction(ConstructorSignature, "CB_TuneIn") << ": ");
    m_settings.load();
    m_settings.setServiceId(config.value(VeskService_Id()).toString());
    createTree();

    m_networkStateConnectedItem = new CMValueItem(VeskNetworkStateConnected(), this);
    veskConnect(m_networkStateConnectedItem, &CMValueItem::changed, this,
        &CMTuneInWorker::on_networkStateConnectedItem_changed);
    CMActivateNode::create(nodes(), VeskTuneInStateChangePath())
        ->setInvoke(this, &CMTuneInWorker::handleStateChange, Qt::QueuedConnection);
    connect(&m_listeningDurationTimer, &QTimer::timeout, this,
        &CMTuneInWorker::on_listeningDurationTimer_timeout);
}

CMTuneInWorker::~CMTuneInWorker()
{
    delete m_httpClient;
}

VeskMediaData CMTuneInWorker::serviceMediaData() const
{
    VeskMetaData metaData;
    metaData.setServiceID(m_settings.serviceId());
    VeskMediaData mediaData;
    mediaData.setMetaData(metaData);
    return mediaData;
}

void CMTuneInWorker::createTree()
{
    CMRedirectRowsNode::create(nodes(), addPrefix(QString()), addPrefix(QStringLiteral("browse")));
    m_httpClient = createInNewQThread<TuneInHttpClient>(QStringLiteral("TuneInHttp"));
    TuneInBrowseNode::create(this, addPrefix(QStringLiteral("browse")))
        ->setTitle(workerText("TuneIn"));
    m_playerContextNode
        = TuneInPlayerContextNode::create(this, addPrefix(QStringLiteral("player_context")), true);
    m_playerContextShowEpisodeNode = TuneInPlayerContextNode::create(
        this, addPrefix(QStringLiteral("player_context_show_episode")), false);
    m_browserContextNode
        = TuneInBrowserContextNode::create(this, addPrefix(QStringLiteral("browser_context")));
    createSearchNodes();
    TuneInAccountNode::create(this, addPrefix(QStringLiteral("account")));
    createTestTree();
}

void CMTuneInWorker::createSearchNodes()
{
    m_searchesNode = CMListRowsNode::create(nodes(), addPrefix(QStringLiteral("searches")));
    m_searchesNode->setTitle(workerText("Station, Show, Song, or Artist"));
    m_searchesNode->setContainerType(VeskRolesContainerType::SearchList);
    m_searchesNode->setMediaData(serviceMediaData());

    CMQueryNode *search = CMQueryNode::create(nodes(), addPrefix(QStringLiteral("search/search")));
    search->setTitle(workerText("Search Stations, Shows, Songs, or Artists"));
    search->setQuery(QStringLiteral("query"));
    CMPath found = addPrefix(QStringLiteral("browse"));
    found.addParam(QStringLiteral("veskTuneInMethod"), QStringLiteral("search"));
    search->setQueryPath(found);
    m_searchesNode->rowsAppend(search->path());
}

void CMTuneInWorker::createTestTree()
{
    CMListRowsNode *testing = CMListRowsNode::create(nodes(), addPrefix(QStringLiteral("testing")));
    testing->setTitle(workerText("TuneIn testing"));
    testing->setMediaData(serviceMediaData());

    appendRedirect(testing, QStringLiteral("testing_/aa1"),
        QStringLiteral("browse/uri/Search.ashx?query=aa1"), "Browse in various languages");
    appendRedirect(testing, QStringLiteral("testing_/aa2"),
        QStringLiteral("browse/uri/Search.ashx?query=aa2"), "Different stream types");
    testing->rowsAppend(createUnreliableStreams()->path());
    appendRedirect(testing, QStringLiteral("testing_/list_of_genres"),
        QStringLiteral("browse/uri/Describe.ashx?c=genres"), "List of all genres");
    appendRedirect(
        testing, QStringLiteral("testing_/searches"), QStringLiteral("searches"), "Search");
    testing->rowsAppend(VeskTuneInEnabledFixItWizardPath());
    testing->rowsAppend(VeskChildElementsInSingleListPath());
}

void CMTuneInWorker::appendRedirect(
    CMListRowsNode *list, const QString &path, const QString &target, const char *title)
{
    CMRedirectRowsNode *redirect
        = CMRedirectRowsNode::create(nodes(), addPrefix(path), addPrefix(target));
    redirect->setTitle(workerText(title));
    list->rowsAppend(redirect->path());
}

CMListRowsNode *CMTuneInWorker::createUnreliableStreams()
{
    CMListRowsNode *list
        = CMListRowsNode::create(nodes(), addPrefix(QStringLiteral("testing/unreliableStreams")));
    list->setTitle(workerText("Unreliable streams"));
    list->setMediaData(serviceMediaData());
    for (const Station &station : UnreliableStations) {
        VeskResource resource;
        resource.setMimeType(MimeTypes::Audio::m3u());
        resource.setUri(QString::fromLatin1(station.url));
        VeskList<VeskResource> resources;
        resources.append(resource);
        VeskMediaData mediaData = serviceMediaData();
        mediaData.setResources(resources);

        VeskRoles row;
        row.setType(VeskRolesType::Audio());
        row.setAudioType(VeskRolesAudioType::AudioBroadcast());
        row.setTitle(Language::ntr(QString::fromLatin1(station.name)));
        row.setMediaData(mediaData);
        list->rowsAppend(row);
    }
    return list;
}

void CMTuneInWorker::on_networkStateConnectedItem_changed(const VeskValue &newValue)
{
    VESK_ASSERT_OWN_THREAD();
    const bool connected = newValue.bool_();
    VESK_TRACE("Enter " << dbglog_scopedFunction(
                   "void CMTuneInWorker::on_networkStateConnectedItem_changed(const VeskValue&)",
                   "CB_TuneIn")
                        << ": " << connected);
    VESK_DEBUG((connected ? "Network is up." : "Network is down."));
    QMutexLocker lock(&m_networkMutex);
    m_networkConnected = connected;
    m_networkStateKnown = true;
}

bool CMTuneInWorker::networkStateConnected() const
{
    const auto isKnown = [this] {
        QMutexLocker lock(&m_networkMutex);
        return m_networkStateKnown;
    };
    // The state arrives through the worker's event loop: waiting there would never end.
    while (!isKnown() && QThread::currentThread() != thread())
        QThread::msleep(NetworkPollMs);
    QMutexLocker lock(&m_networkMutex);
    return m_networkConnected;
}

void CMTuneInWorker::handleStateChange(const CMSetDataRequest &r)
{
    VESK_ASSERT_OWN_THREAD();
    const VeskPlayLogicData data(r.value().toHash());
    VESK_TRACE("previous state: " << VeskPlayLogicState::toString(m_playState)
                                  << ", new state: " << VeskPlayLogicState::toString(data.state())
                                  << ", playId: " << data.playId() << ", error:" << data.error());
    if (data.state() != m_playState)
        changeState(data.state());
    decideStreamReport(data);
    r.reply().setValue(QVariant());
}

void CMTuneInWorker::changeState(VeskPlayLogicState::Enum state)
{
    QMutexLocker lock(&m_stateMutex);
    m_playState = state;
    if (state == VeskPlayLogicState::playing)
        noteStarted();
    else if (state == VeskPlayLogicState::paused)
        notePaused();
    else if (state == VeskPlayLogicState::stopped)
        noteStopped();
}

/// Expects m_stateMutex held, as the next two do.
void CMTuneInWorker::noteStarted()
{
    if (m_playingSince != 0)
        return;
    if (m_paused) {
        m_paused = false;
        m_listeningDurationTimer.stop();
    } else {
        m_listenedMs = 0;
    }
    m_playingSince = TuneInClock::instance().monotonicMs();
    VESK_INFO("TuneIn playback started.");
}

void CMTuneInWorker::notePaused()
{
    if (m_paused)
        return;
    m_listeningDurationTimer.start(PauseReportMs);
    m_paused = true;
    // m_playingSince is 0 without an interval: a pause that follows no playing then counts the
    // whole clock.
    m_listenedMs += TuneInClock::instance().monotonicMs() - m_playingSince;
    m_playingSince = 0;
    VESK_INFO("TuneIn playback paused.");
}

void CMTuneInWorker::noteStopped()
{
    if (m_paused)
        m_listeningDurationTimer.stop();
    else
        m_listenedMs += TuneInClock::instance().monotonicMs() - m_playingSince;
    VESK_INFO("TuneIn playback stopped.");
    VESK_TRACE("Performing duration report");
    const qint64 seconds = m_listenedMs / 1000;
    if (hasDurationToReport(seconds))
        sendDurationReport(m_guideId, static_cast<int>(seconds), true);
    m_playingSince = 0;
    m_listenedMs = 0;
    m_paused = false;
}

/// Logs why when there is none.
bool CMTuneInWorker::hasDurationToReport(qint64 seconds) const
{
    if (seconds == 0) {
        VESK_INFO("Skipped reporting duration, zero listening duration.");
        return false;
    }
    if (m_guideId.isEmpty()) {
        VESK_INFO("Skipped reporting duration, station without a guideID.");
        return false;
    }
    return true;
}

void CMTuneInWorker::on_listeningDurationTimer_timeout()
{
    VESK_ASSERT_OWN_THREAD();
    QMutexLocker lock(&m_stateMutex);
    VESK_TRACE("Enter " << dbglog_scopedFunction(
                   "void CMTuneInWorker::on_listeningDurationTimer_timeout()", "CB_TuneIn")
                        << ": ");
    m_listeningDurationTimer.stop();
    if (!m_paused) {
        VESK_WARN("Not sending duration report, not in paused state (timer should be already "
                  "stopped).");
        return;
    }
    const qint64 seconds = m_listenedMs / 1000;
    if (hasDurationToReport(seconds)) {
        VESK_INFO("Sending duration report after " << PauseReportMinutes << " minutes ...");
        sendDurationReport(m_guideId, static_cast<int>(seconds), false);
    }
    m_playingSince = 0;
    m_listenedMs = 0;
}

void CMTuneInWorker::decideStreamReport(const VeskPlayLogicData &data)
{
    const VeskRoles track = data.trackRoles();
    const VeskResource resource = track.mediaData().activeResource();
    if (resource.isEmpty() || resource.uri().isEmpty())
        return;
    if (data.playId() != m_lastPlayId) {
        m_lastPlayId = data.playId();
        m_errorReported = false;
        m_successReported = false;
        m_playStartTime = TuneInClock::instance().epochMs() / 1000;
        m_guideId.clear();
    }
    const QString error = data.error();
    if (!takeReport(data.state(), error))
        return;
    const CMPath matching
        = CMPath::fromEncoded(track.path().param(QStringLiteral("veskMatchingPath")));
    m_guideId = matching.param(QStringLiteral("veskGuideId"));
    sendAutomaticStreamReport(m_guideId, resource.uri(), error);
}

/// Whether this state or error has not been reported for the play yet; marks it as reported.
bool CMTuneInWorker::takeReport(VeskPlayLogicState::Enum state, const QString &error)
{
    if (error.isEmpty()) {
        if (state != VeskPlayLogicState::playing || m_successReported)
            return false;
    } else if (m_errorReported) {
        return false;
    }
    m_successReported = error.isEmpty();
    m_errorReported = !error.isEmpty();
    return true;
}

void CMTuneInWorker::sendAutomaticStreamReport(
    const QString &guideId, const QString &streamUrl, const QString &error)
{
    VESK_ASSERT_OWN_THREAD();
    const QString shownUrl = VeskUrl::displayText(streamUrl);
    VESK_TRACE("Enter " << dbglog_scopedFunction(
                   "void CMTuneInWorker::sendAutomaticStreamReport(const QString&, const QString&, "
                   "const QString&)",
                   "CB_TuneIn")
                        << ": guideId: " << guideId << ", streamUrl: '" << shownUrl
                        << "', error: " << (error.isEmpty() ? QStringLiteral("OK") : error));
    VESK_ASSERT(!guideId.isEmpty() || !streamUrl.isEmpty());

    VeskUrl url = TuneInApi::url(QStringLiteral("/Report.ashx?c=stream"));
    if (!guideId.isEmpty())
        url.addQueryItem(QStringLiteral("id"), guideId);
    if (!streamUrl.isEmpty())
        url.addQueryItem(QStringLiteral("streamUrl"), streamUrl);
    url.addQueryItem(QStringLiteral("listenId"), QString::number(m_playStartTime));
    if (!error.isEmpty()) {
        url.addQueryItem(QStringLiteral("error"), QString::number(404));
        url.addQueryItem(QStringLiteral("message"), error);
        VESK_INFO("CMTuneInWorker::handleStateChange: playback ERROR: id:'"
            << guideId << "', uri: '" << shownUrl << "', error: '" << error << "'");
    } else {
        VESK_INFO("CMTuneInWorker::handleStateChange: playback OK: id:'" << guideId << "', uri: '"
                                                                         << shownUrl << "'");
    }
    url.addQueryItem(QStringLiteral("render"), QStringLiteral("json"));
    TuneInApi::addDevice(url, m_settings);
    VESK_INFO("Reporting status: status: " << (error.isEmpty() ? "OK" : "fail") << " guideId: '"
                                           << guideId << "', URL:' " << url << "'");

    VeskTuneInResponse response;
    const CMError failure = TuneInRequest(this).request(url, TuneInRequest::Get, response);
    if (!failure.value(CMError::Name()).toString().isEmpty()) {
        VESK_ERROR("sendAutomaticStreamReport: reporting status: failed: error: '"
            << failure.message() << "'");
    } else if (response.head().status() == QLatin1String("200")) {
        VESK_DEBUG("sendAutomaticStreamReport: reporting status: OK");
    } else {
        VESK_ERROR("sendAutomaticStreamReport: reporting status: failed, status: "
            << response.head().status());
    }
}

void CMTuneInWorker::sendDurationReport(const QString &guideId, int duration, bool stopped)
{
    VESK_ASSERT_OWN_THREAD();
    VESK_TRACE(
        "Enter " << dbglog_scopedFunction(
            "void CMTuneInWorker::sendDurationReport(const QString&, int, bool)", "CB_TuneIn")
                 << ": guideId: " << guideId << ", duration: " << duration
                 << ", stopped: " << stopped);
    VESK_ASSERT(!guideId.isEmpty());

    VeskUrl url = TuneInApi::url(QStringLiteral("/Report.ashx?c=time"));
    url.addQueryItem(QStringLiteral("id"), guideId);
    url.addQueryItem(QStringLiteral("duration"), QString::number(duration));
    url.addQueryItem(QStringLiteral("listenId"), QString::number(m_playStartTime));
    if (stopped)
        url.addQueryItem(QStringLiteral("trigger"), QStringLiteral("stop"));
    url.addQueryItem(QStringLiteral("render"), QStringLiteral("json"));
    TuneInApi::addDevice(url, m_settings);
    VESK_INFO("sendDurationReport: reporting duration: id: " << guideId << ", time: " << duration
                                                             << " seconds");

    VeskTuneInResponse response;
    const CMError failure = TuneInRequest(this).request(url, TuneInRequest::Post, response);
    if (!failure.value(CMError::Name()).toString().isEmpty()) {
        VESK_ERROR(
            "sendDurationReport: reporting duration: failed: error: '" << failure.message() << "'");
    } else if (response.head().status() == QLatin1String("200")) {
        VESK_DEBUG("sendDurationReport: reporting duration: OK");
    } else {
        VESK_ERROR(
            "sendDurationReport: reporting duration: failed, status: " << response.head().status());
    }
}
