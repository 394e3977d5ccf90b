// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/tunein/TuneInBrowseNode.h"

#include "api/core/Language.h"
#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "api/core/qtversions.h"
#include "api/core/vesk.h"
#include "api/nodes/CMListRowsNode.h"
#include "api/tunein/VeskTuneInIcons.h"
#include "api/values/MimeTypes.h"
#include "api/values/VeskRowsRoles.h"
#include "api/web/VeskJson.h"
#include "modules/tunein/TuneInApi.h"
#include "modules/tunein/TuneInClock.h"
#include "modules/tunein/TuneInHttpClient.h"
#include "modules/tunein/TuneInParams.h"
#include "modules/tunein/TuneInRequest.h"
#include "modules/tunein/TuneInRows.h"
#include "modules/tunein/TuneInScreenUrl.h"
#include "modules/tunein/cb_tunein.h"

#include <QRegularExpression>

#include <algorithm>
#include <atomic>

VESK_LOGGER("CB_TuneIn")

namespace Param = TuneInParams;

namespace {

/// fillRows()'s maxLevel for a whole screen: children are listed on two levels.
constexpr int InlineLevels = 1;
/// How long to wait after an attempt to fetch the names of genres.
constexpr qint64 GenreRetryMs = 10000;

const char FillRowsSignature[] = "QVariantList TuneInBrowseNode::fillRows(const CMGetRowsRequest&, "
                                 "VeskList<VeskTuneInBodyElement>, VeskUrl, QString, int)";
const char RoleDataSignature[]
    = "virtual QVariant TuneInBrowseNode::getRoleData(const QString&, const Params&)";

/// The rows that a client asks for.
struct Range {
    explicit Range(const CMGetRowsRequest &request)
        : first(qMax(0, request.first()))
        , count(qMax(qint64(0), qint64(request.last()) - request.first() + 1))
    {
    }
    bool contains(int row) const { return row >= first && row - first < count; }

    int first;
    qint64 count; ///< 64 bits hold the difference of any two indices; 0 for a range that ends
                  ///< before it starts
};

void failWith(const CMGetRowsRequest &request, const char *message)
{
    request.reply().setError(TuneInApi::error(message));
}

TrString nodeText(const char *text)
{
    return TrString(trExtractContext(RoleDataSignature), QString::fromLatin1(text));
}

} // namespace

/// The list that is being turned into rows.
struct TuneInBrowseNode::Screen {
    const CMGetRowsRequest &request;
    const VeskUrl &url;
    const QString &navigation;
    const int maxLevel;
    const Range range;
    const TuneInRows makeRow;

    /// Whether the next row is built. In the log at its most detailed each row leaves its traces.
    bool isAsked(const QVariantList &rows) const
    {
        return range.contains(rows.size()) || veskLogger().isEnabledFor(log4cplus::TRACE_LOG_LEVEL);
    }
    /// Appends the row that \a build makes of \a outline, or null in its place.
    void append(QVariantList &rows, const TuneInOutline &outline,
        QVariantList (TuneInRows::*build)(const TuneInItem &) const) const
    {
        if (isAsked(rows))
            rows.append(QVariant((makeRow.*build)(TuneInItem(outline))));
        else
            rows.append(QVariant());
    }
};

TuneInBrowseNode *TuneInBrowseNode::create(CMTuneInWorker *tiWorker, const CMPath &path)
{
    VESK_ASSERT(tiWorker);
    auto *node = new TuneInBrowseNode(tiWorker, path);
    node->setNodes(tiWorker->nodes());
    return node;
}

TuneInBrowseNode::TuneInBrowseNode(CMTuneInWorker *worker, const CMPath &path)
    : CMContainerNode(path)
    , m_settings(&worker->settings())
    , m_tiWorker(worker)
    , m_categoryIcons {
          {QStringLiteral("presets"), VeskTuneInMyPresetsIcon()},
          {QStringLiteral("local"), VeskTuneInLocalRadioIcon()},
          {QStringLiteral("music"), VeskTuneInMusicIcon()},
          {QStringLiteral("talk"), VeskTuneInTalkIcon()},
          {QStringLiteral("sports"), VeskTuneInSportsIcon()},
          {QStringLiteral("location"), VeskTuneInByLocationIcon()},
          {QStringLiteral("language"), VeskTuneInByLanguageIcon()},
          {QStringLiteral("podcast"), VeskTuneInPodcastsIcon()},
      }
{
    setMediaData(worker->serviceMediaData());
}

TuneInBrowseNode::~TuneInBrowseNode() = default;

bool TuneInBrowseNode::getRowsRequest(const CMGetRowsRequest &request)
{
    VESK_ASSERT_OWN_THREAD();
    const CMPath &requestPath = request.path();
    VESK_TRACE("TuneInBrowseNode::getRowsRequest: range: "
        << request.first() << "-" << request.last() << ", path: \"" << path()
        << "\" requestPath: \"" << requestPath << "\"");
    const QString navigation = requestPath.param(Param::veskNavigation());
    VESK_ASSERT_TEXT(requestPath.base().startsWith(QLatin1String("browse")),
        "requestPath.base().startsWith(\"browse\")");
    TuneInScreenUrl::Fault fault;
    VeskUrl url = TuneInScreenUrl::ofPath(requestPath, fault);
    if (!fault.isEmpty()) {
        VESK_ERROR(fault.log);
        failWith(request, fault.message);
        return true;
    }
    if (TuneInScreenUrl::isRoot(requestPath))
        VESK_DEBUG("Browsing to root ...");
    TuneInScreenUrl::addCommonItems(url, *m_settings);

    QByteArray data;
    const CMError error = m_tiWorker->httpClient()->get(url, &data);
    if (!error.value(CMError::Name()).toString().isEmpty()) {
        request.reply().setError(error);
        VESK_ERROR("TuneInBrowseNode::getRowsRequest: Could not get remote data, error: .'" << error
                                                                                            << "'");
        return true;
    }
    QVariantList rows = parseData(request, data, url, navigation);
    if (!request.reply().error().isEmpty())
        return true;

    const int total = rows.length();
    const Range range(request);
    if (range.first > 0)
        rows = rows.mid(range.first);
    if (range.count < rows.length()) {
        VESK_TRACE(
            "Truncating: requestedCount: " << range.count << "' rows.length: " << rows.length());
        rows.erase(rows.begin() + static_cast<int>(range.count), rows.end());
    }
    VeskRowsRoles answer;
    answer.setRowsCount(total);
    answer.setRows(rows);
    VeskRoles roles = getDataRoles(request.roles(), requestPath.params());
    roles.setPath(requestPath);
    answer.setRoles(roles);
    request.reply().setValue(answer);
    VESK_TRACE("TuneInBrowseNode::getRowsRequest: returned  " << rows.length() << " lines");
    return true;
}

CMPath TuneInBrowseNode::tuneInUrlToCBPath(
    const VeskUrl &url, const QString &navigation, const QString &displayName) const
{
    CMPath path = this->path() + QStringLiteral("/uri") + url.path();
    const VeskUrl::QueryItems items = url.queryItems();
    for (const auto &item : items)
        path.addParam(item.first, item.second);
    if (!navigation.isEmpty())
        path.addParam(Param::veskNavigation(), navigation);
    if (!displayName.isEmpty())
        path.addParam(Param::veskDisplayName(), displayName);
    VESK_TRACE("tuneInUrlToCBPath: '" << url << "' -> '" << path << "'");
    return path;
}

VeskUrl TuneInBrowseNode::getElementUrl(const VeskTuneInBodyElement &element)
{
    // Lists name it "URL", the streams of a Tune call "url".
    const QString url = element.url();
    if (url.isEmpty())
        return VeskUrl(element.urlAlternative());
    return VeskUrl(url);
}

QVariantList TuneInBrowseNode::parseData(
    const CMGetRowsRequest &request, const QByteArray &data, VeskUrl url, QString navigation)
{
    VESK_DEBUG("parsing data: size: " << data.size() << ", navigation: " << navigation
                                      << ", URL: " << url);
    if (data.isEmpty()) {
        VESK_ERROR("Received empty data!");
        failWith(request, QT_TRANSLATE_NOOP("TuneIn", "Invalid response."));
        return {};
    }
    VeskError parseError;
    const VeskTuneInResponse response(VeskJson::parse(data, parseError).toHash());
    if (!parseError.isEmpty()) {
        VESK_ERROR("Failed to parse data, error: " << parseError << data);
        failWith(request, QT_TRANSLATE_NOOP("TuneIn", "Invalid data returned."));
        return {};
    }
    VESK_DEBUG("Data successfully parsed.");
    const VeskTuneInHead head = response.head();
    if (head.status() != QLatin1String("200")) {
        // A fault of TuneIn is an empty screen, not an error.
        VESK_ERROR("Browsing failed, fault: \"" << head.fault());
        TuneInRequest::parseTuneInFaultCode(head.faultCode());
        return {};
    }
    return fillRows(request, response.body(), url, navigation, InlineLevels);
}

QVariantList TuneInBrowseNode::fillRows(const CMGetRowsRequest &request,
    VeskList<VeskTuneInBodyElement> elements, VeskUrl url, QString navigation, int maxLevel)
{
    QVariantList rows;
    appendRows(request, std::move(elements), url, navigation, maxLevel, rows);
    return rows;
}

/// fillRows() for a list whose rows come after \a rows.
void TuneInBrowseNode::appendRows(const CMGetRowsRequest &request,
    VeskList<VeskTuneInBodyElement> elements, const VeskUrl &url, const QString &navigation,
    int maxLevel, QVariantList &rows)
{
    VESK_TRACE("Enter " << dbglog_scopedFunction(FillRowsSignature, "CB_TuneIn")
                        << ": navigation: '" << navigation << "', maxLevel: " << maxLevel
                        << ", url: '" << url << "'");
    if (!navigation.isEmpty() && !navigate(elements, navigation))
        return;

    // TuneIn's root menu has the favorites only for a partner id and a serial that it knows.
    const Screen screen {request, url, navigation, maxLevel, Range(request),
        TuneInRows(*this, *m_tiWorker, request)};
    const auto isPresets = [](const VeskTuneInBodyElement &element) {
        return element.key() == QLatin1String("presets");
    };
    if (screen.makeRow.isRoot() && !elements.isEmpty() && !elements.contains(isPresets)) {
        VESK_INFO("Browsing root and there is no folder 'My Presets' in it, so adding it at the "
                  "first position ...");
        VeskTuneInBodyElement presets;
        presets.setElement(QStringLiteral("outline"));
        presets.setType(QStringLiteral("link"));
        presets.setKey(QStringLiteral("presets"));
        presets.setText(TrString("TuneIn", QT_TRANSLATE_NOOP("TuneIn", "My Favorites")).toString());
        presets.setUrl(TuneInApi::url(QStringLiteral("/Browse.ashx?c=presets")).toString());
        elements.insert(0, presets);
    }

    rows.reserve(rows.size() + elements.size());
    for (int i = 0; i < elements.size(); ++i) {
        const TuneInOutline outline(elements.at(i), i);
        if (outline.showOrTopic && !getElementUrl(outline.element).hasQueryItem(Param::sid()))
            VESK_WARN("Browsing category with show item in it, but without 'sid' attribute set.");
        appendElement(screen, outline, rows);
    }
}

/// Replaces \a elements by the children that \a navigation leads to.
bool TuneInBrowseNode::navigate(
    VeskList<VeskTuneInBodyElement> &elements, const QString &navigation) const
{
    const QStringList keys = navigation.split(QLatin1Char('_'));
    for (const QString &key : keys) {
        VESK_DEBUG("Looking for key '" << key << "'");
        static const QRegularExpression form(
            QRegularExpression::anchoredPattern(QStringLiteral("~\\d+")));
        bool isIndex = form.match(key).hasMatch();
        const int index = isIndex ? veskMid(key, 1).toInt(&isIndex) : -1;
        int found = -1;
        for (int i = 0; i < elements.size() && found < 0; ++i) {
            if ((isIndex && index == i) || elements.at(i).key() == key)
                found = i;
        }
        if (found < 0) {
            VESK_ERROR("Invalid navigation: key '" << key << "' not found");
            return false;
        }
        VESK_DEBUG("key '" << key << "' found at " << found);
        elements = elements.at(found).children();
    }
    return true;
}

void TuneInBrowseNode::appendElement(
    const Screen &screen, const TuneInOutline &outline, QVariantList &rows)
{
    const VeskTuneInBodyElement &element = outline.element;
    const bool isOutline = element.element() == QLatin1String("outline");
    if (isOutline && outline.type == QLatin1String("text")) {
        VESK_DEBUG("item " << outline.index << ": '" << element.text() << "' (text)");
        screen.append(rows, outline, &TuneInRows::text);
    } else if (isOutline && outline.type == QLatin1String("link")) {
        VESK_DEBUG("item " << outline.index << ": '" << element.text() << "' (link)");
        // It leads to a web page, which no screen can show.
        if (element.key() == QLatin1String("settings")
            && getElementUrl(element).path().contains(QLatin1String("/Settings.aspx"))) {
            VESK_DEBUG("Omitting the last root menu item: Settings");
            return;
        }
        screen.append(rows, outline, &TuneInRows::link);
    } else if (isOutline && outline.type.isEmpty()) {
        appendSeparator(screen, outline, rows);
    } else if (isOutline && outline.type == QLatin1String("audio")) {
        appendAudio(screen, outline, rows);
    } else {
        VESK_WARN("Browsing: unknown element: '" << element.element() << "', type: '"
                                                 << outline.type << "'");
        rows.append(QVariant(screen.makeRow.unknown()));
    }
}

void TuneInBrowseNode::appendSeparator(
    const Screen &screen, const TuneInOutline &outline, QVariantList &rows)
{
    const VeskTuneInBodyElement &element = outline.element;
    VESK_DEBUG("item " << outline.index << ": '" << element.text() << "' SEPARATOR (START)");
    const auto isPartOfNavigation
        = [](QChar c) { return c == QLatin1Char('_') || c == QLatin1Char('~'); };
    const QString elementKey = element.key();
    VESK_ASSERT_TEXT(std::none_of(elementKey.begin(), elementKey.end(), isPartOfNavigation),
        "!element.key().contains(QRegExp(\"[_~]\"))");

    if (screen.maxLevel < 0 || !m_settings->childElementsInSingleList()) {
        const QString key
            = elementKey.isEmpty() ? QLatin1Char('~') + QString::number(outline.index) : elementKey;
        // Joined by ";" although navigate() splits at "_": a folder inside a folder opens an empty
        // screen. Fixed behaviour: keep it.
        const QString navigation
            = screen.navigation.isEmpty() ? key : screen.navigation + QLatin1Char(';') + key;
        rows.append(screen.isAsked(rows)
                ? QVariant(screen.makeRow.folder(TuneInItem(outline), screen.url, navigation))
                : QVariant());
        VESK_TRACE("Added child element as folder '" << element.text() << "', navigation: '"
                                                     << navigation << "'");
        return;
    }
    screen.append(rows, outline, &TuneInRows::header);
    const VeskList<VeskTuneInBodyElement> children = element.children();
    VESK_TRACE("Adding " << children.size() << " child element(s) following separator '"
                         << element.text() << "'");
    appendRows(screen.request, children, screen.url, screen.navigation, screen.maxLevel - 1, rows);
    VESK_DEBUG("item " << outline.index << ": '" << element.text() << "' SEPARATOR (END)");
}

void TuneInBrowseNode::appendAudio(
    const Screen &screen, const TuneInOutline &outline, QVariantList &rows)
{
    const CMPath &opened = screen.request.path();
    const bool onDemand = outline.kind == QLatin1String("topic");
    VESK_DEBUG("item " << outline.index << ": '" << outline.element.text() << "' (audio - "
                       << (onDemand ? "On demand" : "Broadcast") << " item: '" << outline.kind
                       << "')");
    VESK_TRACE("element: " << outline.element);
    VESK_TRACE("parent URL: " << opened);
    VESK_DEBUG("isAvailableStreamBrowsing: " << screen.makeRow.isStreamChoice()
                                             << ", directStreamBrowsing: "
                                             << screen.makeRow.isDirectStream());
    if (screen.makeRow.isStreamChoice()) {
        const QString veskMatchingPath = opened.param(Param::veskMatchingPath());
        VESK_ASSERT(!veskMatchingPath.isEmpty());
    }
    if (!screen.isAsked(rows))
        screen.makeRow.omitAudio(outline);
    screen.append(rows, outline, &TuneInRows::audio);
    setPlayable(true);
}

QVariant TuneInBrowseNode::getRoleData(const QString &role, const Params &params)
{
    const QString method = params.value(Param::veskTuneInMethod());
    if (role == VeskRoles::Title()) {
        const QString displayName = params.value(Param::veskDisplayName());
        if (!displayName.isEmpty())
            return Language::ntr(displayName);
        if (method == QLatin1String("tune"))
            return nodeText("Choose stream");
        if (method == QLatin1String("search"))
            return nodeText("Search Stations, Shows, Songs, or Artists");
        if (method == QLatin1String("wizard"))
            return nodeText("Report a problem");
        if (!method.isEmpty()) {
            VESK_ERROR("getRoleData: unknown method: '" << method);
            return Language::ntr(QStringLiteral("TuneIn-") + method);
        }
    } else if (role == VeskRoles::Cancel() && method == QLatin1String("tune")) {
        VeskRoles cancel;
        cancel.setTitle(TrString(
            QStringLiteral("TuneIn"), QStringLiteral("Done"), QStringLiteral("Tune cancel title")));
        return cancel;
    } else if (role == VeskRoles::Search() && params.isEmpty()) {
        return m_tiWorker->searchesNode()->getDataRoles(CMAllRoles(), {});
    } else if (role == VeskRoles::Activity() && method == QLatin1String("tune")) {
        return true;
    }
    return CMContainerNode::getRoleData(role, params);
}

bool TuneInBrowseNode::setDataRequest(const CMSetDataRequest &request)
{
    VESK_ASSERT_OWN_THREAD();
    if (request.role() != VeskRoles::PrePlay())
        return CMNode::setDataRequest(request);
    const CMPath &path = request.path();
    const QString command = path.param(Param::veskPrePlayCmd());
    VESK_TRACE("veskPrePlayCmd: '" << command << "' request path: '" << path << "'");
    VeskRoles roles(request.value().toHash());
    VESK_TRACE("Previous VeskRoles:" << roles);
    if (command == QLatin1String("fetchAvailableStreams")) {
        if (!fetchAvailableStreams(request, roles))
            return true;
    } else if (command == QLatin1String("updateVeskRoles")) {
        VeskMediaData mediaData = roles.mediaData();
        const VeskMetaData metaData = mediaData.metaData();
        roles.setTitle(Language::ntr(path.param(Param::veskTitle())));
        roles.setDescription(Language::ntr(path.param(Param::veskDescription())));
        roles.setIcon(path.param(Param::veskIcon()));
        mediaData.setMetaData(metaData);
        roles.setMediaData(mediaData);
    } else {
        VESK_ERROR("Not implemented pre-play command: '" << command);
        request.reply().setError(
            TuneInApi::error(QT_TRANSLATE_NOOP("TuneIn", "Invalid pre-play command")));
        return true;
    }
    request.reply().setValue(roles);
    VESK_TRACE("New VeskRoles:" << roles);
    return true;
}

/// Puts the first stream that TuneIn lists into \a roles. Returns false when it set an error.
bool TuneInBrowseNode::fetchAvailableStreams(const CMSetDataRequest &request, VeskRoles &roles)
{
    const auto fail = [&request](const char *text) {
        request.reply().setError(TuneInApi::error(text));
        return false;
    };
    const QString playPath = request.path().param(Param::veskPlayPath());
    if (playPath.isEmpty()) {
        VESK_ERROR("Play path is empty!");
        return fail(QT_TRANSLATE_NOOP("TuneIn", "Empty play path"));
    }
    VeskUrl url = VeskUrl::fromEncoded(playPath.toUtf8());
    const auto addOnce = [&url](const QString &key, const QString &value) {
        if (!url.hasQueryItem(key) && !value.isEmpty())
            url.addQueryItem(key, value);
    };
    addOnce(QStringLiteral("render"), QStringLiteral("json"));
    addOnce(QStringLiteral("partnerId"), m_settings->partnerId());
    addOnce(QStringLiteral("serial"), m_settings->serial());

    VeskTuneInResponse response;
    const CMError error = TuneInRequest(m_tiWorker).request(url, TuneInRequest::Get, response);
    if (!error.value(CMError::Name()).toString().isEmpty()) {
        VESK_ERROR("TuneInBrowseNode::setDataRequest: failed to get available streams: failed: "
                   "error: '"
            << error);
        request.reply().setError(error);
        return false;
    }
    if (response.head().status() != QLatin1String("200")) {
        VESK_ERROR("TuneInBrowseNode::setDataRequest: failed to get available streams, status: "
            << response.head().status());
        request.reply().setError(error);
        return false;
    }
    const VeskList<VeskTuneInBodyElement> body = response.body();
    if (body.isEmpty()) {
        VESK_ERROR("No available streams.");
        return fail(QT_TRANSLATE_NOOP("TuneIn", "No available streams."));
    }

    const VeskTuneInBodyElement stream = body.first();
    const VeskUrl streamUrl = getElementUrl(stream);
    VeskMediaData mediaData = roles.mediaData();
    VeskMetaData metaData = mediaData.metaData();
    VeskResource resource = mediaData.activeResource();
    resource.setUri(streamUrl.toString());
    resource.setBitRate(TuneInApi::bitsPerSecond(stream.bitrate()));
    if (stream.playlist_type().isEmpty()) {
        resource.setMimeType(MimeTypes::Audio::unknown());
        metaData.setAlternativeStreams(false);
    } else {
        resource.setMimeType(MimeTypes::Audio::m3u());
    }
    CMPath path = tuneInUrlToCBPath(streamUrl, QString(), QString());
    path.addParam(Param::veskMatchingPath(), roles.path().toEncoded());
    roles.setPath(path);
    VESK_DEBUG("Selected first available stream: url: " << streamUrl);
    VeskList<VeskResource> resources;
    resources.append(resource);
    mediaData.setMetaData(metaData);
    mediaData.setResources(resources);
    roles.setMediaData(mediaData);
    return true;
}

QString TuneInBrowseNode::getGenreName(const QString &genreId)
{
    // One attempt every ten seconds for the whole process. The clock starts with the system: its
    // first ten seconds count as a wait.
    static std::atomic<qint64> lastAttempt {0};
    if (genreId.isEmpty())
        return QString();
    if (m_genreNames.isEmpty()) {
        const qint64 now = TuneInClock::instance().monotonicMs();
        if (now - lastAttempt < GenreRetryMs) {
            VESK_ERROR("Request failed, try later.");
            return QString();
        }
        lastAttempt = now;
        VeskUrl url = TuneInApi::url(QStringLiteral("/Describe.ashx?c=genres"));
        url.addQueryItem(QStringLiteral("partnerId"), m_settings->partnerId());
        url.addQueryItem(QStringLiteral("serial"), m_settings->serial());
        url.addQueryItem(QStringLiteral("render"), QStringLiteral("json"));
        VeskTuneInResponse response;
        const CMError error = TuneInRequest(m_tiWorker).request(url, TuneInRequest::Get, response);
        if (!error.value(CMError::Name()).toString().isEmpty()) {
            VESK_ERROR("Failed to get genre name: " << error);
            return QString();
        }
        if (response.head().status() != QLatin1String("200")) {
            VESK_ERROR("Failed to get genre name: " << response);
            return QString();
        }
        const VeskList<VeskTuneInBodyElement> body = response.body();
        for (int i = 0; i < body.size(); ++i) {
            const VeskTuneInBodyElement genre = body.at(i);
            if (genre.type() == QLatin1String("text") && !genre.guideId().isEmpty())
                m_genreNames.insert(genre.guideId(), genre.text());
        }
    }
    return m_genreNames.value(genreId);
}
