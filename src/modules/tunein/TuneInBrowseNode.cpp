#include "modules/tunein/TuneInBrowseNode.h"

#include "api/core/Language.h"
#include "api/core/log.h"
#include "api/core/vesk.h"
#include "api/nodes/CMListRowsNode.h"
#include "api/nodes/CMRootWorker.h"
#include "api/tunein/VeskTuneInIcons.h"
#include "api/tunein/VeskTuneInPaths.h"
#include "api/values/MimeTypes.h"
#include "api/values/VeskRowsRoles.h"
#include "api/values/VeskValue.h"
#include "api/values/VeskValuePaths.h"
#include "api/web/VeskJson.h"
#include "modules/tunein/TuneInApi.h"
#include "modules/tunein/TuneInClock.h"
#include "modules/tunein/TuneInContextNode.h"
#include "modules/tunein/TuneInHttpClient.h"
#include "modules/tunein/TuneInRequest.h"
#include "modules/tunein/cb_tunein.h"

#include <QHash>

#include <algorithm>
#include <atomic>
#include <limits>

VESK_LOGGER("CB_TuneIn")

namespace {

/// How many levels of children are listed below their heading instead of behind a folder.
constexpr int inlineLevels = 1;
constexpr qint64 genreRetryMs = 10000;

const char fillRowsSignature[] = "QVariantList TuneInBrowseNode::fillRows(const CMGetRowsRequest&, "
                                 "VeskList<VeskTuneInBodyElement>, VeskUrl, QString, int)";
const char roleDataSignature[]
    = "virtual QVariant TuneInBrowseNode::getRoleData(const QString&, const Params&)";

// Keys of path parameters. Those that start with "vesk" stay between the host and this plug-in.
namespace Param {
#define VESK_PARAM(name)                                                                           \
    const QString &name()                                                                          \
    {                                                                                              \
        static const QString key = QStringLiteral(#name);                                          \
        return key;                                                                                \
    }
VESK_PARAM(veskNavigation)
VESK_PARAM(veskDisplayName)
VESK_PARAM(veskTuneInMethod)
VESK_PARAM(veskMatchingPath)
VESK_PARAM(veskGuideId)
VESK_PARAM(veskDirectStream)
VESK_PARAM(veskPrePlayCmd)
VESK_PARAM(veskPlayPath)
VESK_PARAM(veskTitle)
VESK_PARAM(veskDescription)
VESK_PARAM(veskIcon)
VESK_PARAM(guideId)
VESK_PARAM(stationId)
VESK_PARAM(sid)
VESK_PARAM(query)
VESK_PARAM(c)
#undef VESK_PARAM
} // namespace Param

const QString &browseBase()
{
    static const QString base = QStringLiteral("browse");
    return base;
}

bool isRootScreen(const CMPath &path)
{
    return path.base() == browseBase() && !path.hasParams();
}

void failWith(const CMGetRowsRequest &request, const char *message)
{
    request.reply().setError(TuneInApi::error(message));
}

/// From the directory's kbit/s. What is no rate, or none that can be, is 0: not known.
int bitsPerSecond(const QString &kilobits)
{
    constexpr int perKilobit = 1000;
    const int rate = kilobits.toInt();
    return rate > 0 && rate <= std::numeric_limits<int>::max() / perKilobit ? rate * perKilobit : 0;
}

TrString nodeText(const char *text)
{
    return TrString(trExtractContext(roleDataSignature), QString::fromLatin1(text));
}

} // namespace

/// The roles that a row may answer; all others are null in every row.
enum class TuneInBrowseNode::RowRole {
    Other,
    Title,
    Description,
    Icon,
    Type,
    AudioType,
    Path,
    Context,
    MediaData,
    Id,
    Preferred,
};

/// What all rows of one list have in common.
struct TuneInBrowseNode::Screen {
    Screen(const CMTuneInWorker &worker, const CMGetRowsRequest &rowsRequest,
        const VeskUrl &screenUrl, const QString &screenNavigation, int screenMaxLevel);

    /// A row with \a value(role) for each requested role.
    template <class Function>
    QVariantList row(Function value) const
    {
        QVariantList values;
        values.reserve(roles.size());
        for (int i = 0; i < roles.size(); ++i)
            values.append(QVariant());
        auto out = values.begin();
        for (const RowRole role : roles)
            *out++ = value(role);
        return values;
    }

    const CMGetRowsRequest &request;
    const VeskUrl &url;
    const QString &navigation;
    const int maxLevel;
    const bool isRoot;
    /// The list of a station's streams, of which one is to be chosen.
    const bool streamChoice;
    /// The test search whose rows name streams themselves.
    const bool directStream;
    /// Media data of rows that only lead somewhere.
    const VeskMediaData serviceMediaData;
    /// What the context menus of all rows have in common.
    const VeskRoles menuRoles;
    /// What the meta data of all audio rows begins with.
    VeskMetaData audioMetaData;
    QVector<RowRole> roles;
};

TuneInBrowseNode::Screen::Screen(const CMTuneInWorker &worker, const CMGetRowsRequest &rowsRequest,
    const VeskUrl &screenUrl, const QString &screenNavigation, int screenMaxLevel)
    : request(rowsRequest)
    , url(screenUrl)
    , navigation(screenNavigation)
    , maxLevel(screenMaxLevel)
    , isRoot(isRootScreen(request.path()))
    , streamChoice(request.path().base() == browseBase()
          && request.path().param(Param::veskTuneInMethod()) == QLatin1String("tune")
          && request.path().param(Param::c()) == QLatin1String("ebrowse"))
    , directStream(request.path().base() == QLatin1String("browse/uri/Search.ashx")
          && request.path().param(Param::query()) == QLatin1String("aa2"))
    , serviceMediaData(worker.serviceMediaData())
    , menuRoles(worker.browserContextNode()->getDataRoles(CMAllRoles(), {}))
{
    constexpr int metaDataEntries = 8;
    audioMetaData.reserve(metaDataEntries);
    audioMetaData.setServiceID(worker.settings().serviceId());
    audioMetaData.setPlaybackStateChangePath(VeskTuneInStateChangePath());
    audioMetaData.setAlternativeStreams(true);
    static const QHash<QString, RowRole> known {
        {VeskRoles::Title(), RowRole::Title},
        {VeskRoles::Description(), RowRole::Description},
        {VeskRoles::Icon(), RowRole::Icon},
        {VeskRoles::Type(), RowRole::Type},
        {VeskRoles::AudioType(), RowRole::AudioType},
        {VeskRoles::Path(), RowRole::Path},
        {VeskRoles::Context(), RowRole::Context},
        {VeskRoles::MediaData(), RowRole::MediaData},
        {VeskRoles::Id(), RowRole::Id},
        {VeskRoles::Preferred(), RowRole::Preferred},
    };
    for (const QString &role : request.roles())
        roles.append(known.value(role, RowRole::Other));
}

/// One element of an outline, with what several of its values need.
struct TuneInBrowseNode::Item {
    const VeskTuneInBodyElement &element;
    const int index;
    const VeskUrl url;
    const bool showOrTopic;
    const QString sid;
    const QString kind; ///< "station", "show", "topic" or none
    const QString text;
    const QString guideId;
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
    const CMPath &requestPath = request.path();
    VESK_TRACE("TuneInBrowseNode::getRowsRequest: range: "
        << request.first() << "-" << request.last() << ", path: \"" << path()
        << "\" requestPath: \"" << requestPath << "\"");
    const QString navigation = requestPath.param(Param::veskNavigation());
    VESK_ASSERT_TEXT(
        requestPath.base().startsWith(browseBase()), "requestPath.base().startsWith(\"browse\")");
    VeskUrl url = TuneInApi::url(QString());
    if (!setDirectoryUrl(request, url))
        return true;
    addCommonItems(url);

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
    if (request.first() > 0)
        rows = rows.mid(request.first());
    // Wide enough for any two indices; a range that ends before it starts has no rows.
    const qint64 requestedCount = qMax(qint64(0), qint64(request.last()) - request.first() + 1);
    if (requestedCount < rows.length()) {
        VESK_TRACE(
            "Truncating: requestedCount: " << requestedCount << "' rows.length: " << rows.length());
        rows.erase(rows.begin() + static_cast<int>(requestedCount), rows.end());
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

bool TuneInBrowseNode::setDirectoryUrl(const CMGetRowsRequest &request, VeskUrl &url) const
{
    const CMPath &path = request.path();
    QString rest = path.base();
    rest.remove(browseBase());
    if (rest.startsWith(QLatin1String("/uri/"))) {
        setUriForm(path, rest, url);
        return true;
    }
    if (!path.param(Param::veskTuneInMethod()).isEmpty())
        return setMethodForm(request, url);
    return setRootForm(request, url);
}

void TuneInBrowseNode::setUriForm(const CMPath &path, QString rest, VeskUrl &url) const
{
    url.setPath(rest.remove(QStringLiteral("/uri")));
    VeskUrl::QueryItems items;
    for (const auto &param : path.paramList()) {
        if (!param.first.startsWith(QLatin1String("vesk")))
            items.append(param);
    }
    if (!items.isEmpty())
        url.setQueryItems(items);
}

bool TuneInBrowseNode::setMethodForm(const CMGetRowsRequest &request, VeskUrl &url) const
{
    const CMPath &path = request.path();
    const QString method = path.param(Param::veskTuneInMethod());
    if (method == QLatin1String("tune"))
        return setTuneMethod(request, url);
    if (method == QLatin1String("search")) {
        url.setPath(QStringLiteral("/Search.ashx"));
        if (!path.hasParam(Param::query())) {
            VESK_ERROR("Missing query parameter");
            failWith(request, QT_TRANSLATE_NOOP("TuneIn", "Missing query parameter"));
            return false;
        }
        url.addQueryItem(QStringLiteral("query"), path.param(Param::query()));
        return true;
    }
    if (method == QLatin1String("wizard")) {
        url.setPath(QStringLiteral("/Report.ashx"));
        url.addQueryItem(QStringLiteral("c"), QStringLiteral("wizard"));
        if (!path.hasParam(Param::guideId())) {
            VESK_ERROR("Missing guideId parameter");
            failWith(request, QT_TRANSLATE_NOOP("TuneIn", "Missing guideId parameter"));
            return false;
        }
        url.addQueryItem(QStringLiteral("id"), path.param(Param::guideId()));
        return true;
    }
    VESK_ERROR("Unsupported method: " << method);
    failWith(request, QT_TRANSLATE_NOOP("TuneIn", "Unsupported method!"));
    return false;
}

bool TuneInBrowseNode::setTuneMethod(const CMGetRowsRequest &request, VeskUrl &url) const
{
    const CMPath &path = request.path();
    url.setPath(QStringLiteral("/Tune.ashx"));
    if (!path.hasParam(Param::guideId())) {
        VESK_ERROR("Missing guideId parameter");
        failWith(request, QT_TRANSLATE_NOOP("TuneIn", "Missing guideId parameter"));
        return false;
    }
    QString id = path.param(Param::guideId());
    const QString stationId = path.param(Param::stationId());
    // A stream instance is tuned to by its station.
    if (id.startsWith(QLatin1Char('e')) && !stationId.isEmpty())
        id = stationId.at(0).isDigit() ? QLatin1Char('s') + stationId : stationId;
    url.addQueryItem(QStringLiteral("id"), id);
    if (path.hasParam(Param::c()))
        url.addQueryItem(QStringLiteral("c"), path.param(Param::c()));
    return true;
}

bool TuneInBrowseNode::setRootForm(const CMGetRowsRequest &request, VeskUrl &url) const
{
    if (!isRootScreen(request.path())) {
        VESK_ERROR("Unspecified browse method!");
        failWith(request, QT_TRANSLATE_NOOP("TuneIn", "Unspecified method!"));
        return false;
    }
    VESK_DEBUG("Browsing to root ...");
    url.setPath(QStringLiteral("/Browse.ashx"));
    return true;
}

void TuneInBrowseNode::addCommonItems(VeskUrl &url) const
{
    const auto addOnce = [&url](const QString &key, const QString &value) {
        if (!url.hasQueryItem(key))
            url.addQueryItem(key, value);
    };
    // The test is the wrong way round, and stays so: no item of this name is ever stripped here.
    if (!url.hasQueryItem(Param::veskNavigation()))
        url.removeQueryItem(Param::veskNavigation());
    addOnce(QStringLiteral("render"), QStringLiteral("json"));
    if (!m_settings->supportedStreams().isEmpty())
        addOnce(QStringLiteral("formats"), m_settings->supportedStreams());
    addOnce(QStringLiteral("partnerId"), m_settings->partnerId());
    addOnce(QStringLiteral("serial"), m_settings->serial());
    const VeskHash language(CMRoot()->getValue(VeskUILanguagePath()).toHash());
    addOnce(QStringLiteral("locale"), VeskValue(language).string_());
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
    const QString url = element.url();
    return VeskUrl(url.isEmpty() ? element.urlAlternative() : url);
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
        // The user sees an empty screen: a fault of TuneIn is no error of this node.
        VESK_ERROR("Browsing failed, fault: \"" << head.fault());
        TuneInRequest::parseTuneInFaultCode(head.faultCode());
        return {};
    }
    return fillRows(request, response.body(), url, navigation, inlineLevels);
}

QVariantList TuneInBrowseNode::fillRows(const CMGetRowsRequest &request,
    VeskList<VeskTuneInBodyElement> elements, VeskUrl url, QString navigation, int maxLevel)
{
    VESK_TRACE("Enter " << dbglog_scopedFunction(fillRowsSignature, "CB_TuneIn")
                        << ": navigation: '" << navigation << "', maxLevel: " << maxLevel
                        << ", url: '" << url << "'");
    if (!navigation.isEmpty() && !navigate(elements, navigation))
        return {};

    const Screen screen(*m_tiWorker, request, url, navigation, maxLevel);
    const auto isPresets = [](const VeskTuneInBodyElement &element) {
        return element.key() == QLatin1String("presets");
    };
    if (screen.isRoot && !elements.isEmpty() && !elements.contains(isPresets)) {
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

    QVariantList rows;
    rows.reserve(elements.size());
    for (int i = 0; i < elements.size(); ++i) {
        const VeskTuneInBodyElement element = elements.at(i);
        const VeskUrl elementUrl = getElementUrl(element);
        const QString kind = element.item();
        const bool showOrTopic = kind == QLatin1String("topic") || kind == QLatin1String("show");
        QString sid;
        if (showOrTopic) {
            sid = elementUrl.queryItemValue(Param::sid());
            if (!elementUrl.hasQueryItem(Param::sid()))
                VESK_WARN("Browsing category with show item in it, but without 'sid' attribute "
                          "set.");
        }
        appendElement(screen,
            Item {
                element, i, elementUrl, showOrTopic, sid, kind, element.text(), element.guideId()},
            rows);
    }
    return rows;
}

/// Replaces \a elements by the children that \a navigation leads to.
bool TuneInBrowseNode::navigate(
    VeskList<VeskTuneInBodyElement> &elements, const QString &navigation) const
{
    const QStringList keys = navigation.split(QLatin1Char('_'));
    for (const QString &key : keys) {
        VESK_DEBUG("Looking for key '" << key << "'");
        bool isIndex = QRegExp(QStringLiteral("^~\\d+$")).exactMatch(key);
        const int index = isIndex ? key.midRef(1).toInt(&isIndex) : -1;
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

void TuneInBrowseNode::appendElement(const Screen &screen, const Item &item, QVariantList &rows)
{
    const VeskTuneInBodyElement &element = item.element;
    const QString type = element.type();
    const bool isOutline = element.element() == QLatin1String("outline");
    if (isOutline && type == QLatin1String("text")) {
        VESK_DEBUG("item " << item.index << ": '" << element.text() << "' (text)");
        rows.append(QVariant(textRow(screen, item)));
    } else if (isOutline && type == QLatin1String("link")) {
        VESK_DEBUG("item " << item.index << ": '" << element.text() << "' (link)");
        if (element.key() == QLatin1String("settings")
            && item.url.path().contains(QLatin1String("/Settings.aspx"))) {
            VESK_DEBUG("Omitting the last root menu item: Settings");
            return;
        }
        rows.append(QVariant(linkRow(screen, item)));
    } else if (isOutline && type.isEmpty()) {
        appendSeparator(screen, item, rows);
    } else if (isOutline && type == QLatin1String("audio")) {
        rows.append(QVariant(audioRow(screen, item)));
    } else {
        VESK_WARN(
            "Browsing: unknown element: '" << element.element() << "', type: '" << type << "'");
        rows.append(QVariant(screen.row([](RowRole) { return QVariant(); })));
    }
}

QVariantList TuneInBrowseNode::textRow(const Screen &screen, const Item &item) const
{
    const VeskTuneInBodyElement &element = item.element;
    return screen.row([&](RowRole role) -> QVariant {
        switch (role) {
        case RowRole::Title:
            return item.text;
        case RowRole::Id:
            if (!item.guideId.isEmpty())
                return QStringLiteral("id=") + item.guideId;
            return element.key().isEmpty() ? QString() : QStringLiteral("c=") + element.key();
        case RowRole::Preferred:
            return element.isDefault() == QLatin1String("true");
        default:
            return QVariant();
        }
    });
}

QVariantList TuneInBrowseNode::linkRow(const Screen &screen, const Item &item) const
{
    const VeskTuneInBodyElement &element = item.element;
    const bool showContext = item.showOrTopic && !screen.isRoot;
    return screen.row([&](RowRole role) -> QVariant {
        switch (role) {
        case RowRole::Title:
            return item.text;
        case RowRole::Type:
            return VeskRolesType::Container();
        case RowRole::Path:
            return tuneInUrlToCBPath(item.url, QString(), item.text).toEncoded();
        case RowRole::Context: {
            if (!showContext || item.guideId.isEmpty())
                return QVariant();
            CMPath matchPath = path();
            matchPath.addParam(Param::veskGuideId(), item.guideId);
            return browserContextRoles(screen, item, matchPath.toEncoded());
        }
        case RowRole::MediaData:
            return screen.serviceMediaData;
        case RowRole::Icon: {
            const QString icon = m_categoryIcons.value(element.key());
            if (!icon.isEmpty())
                return icon;
            return showContext && !element.image().isEmpty() ? QVariant(element.image())
                                                             : QVariant();
        }
        default:
            return QVariant();
        }
    });
}

void TuneInBrowseNode::appendSeparator(const Screen &screen, const Item &item, QVariantList &rows)
{
    const VeskTuneInBodyElement &element = item.element;
    VESK_DEBUG("item " << item.index << ": '" << item.text << "' SEPARATOR (START)");
    const auto isPartOfNavigation
        = [](QChar c) { return c == QLatin1Char('_') || c == QLatin1Char('~'); };
    const QString elementKey = element.key();
    VESK_ASSERT_TEXT(std::none_of(elementKey.begin(), elementKey.end(), isPartOfNavigation),
        "!element.key().contains(QRegExp(\"[_~]\"))");
    const QString key
        = elementKey.isEmpty() ? QLatin1Char('~') + QString::number(item.index) : elementKey;

    const bool asFolder = screen.maxLevel < 0 || !m_settings->childElementsInSingleList();
    // Joined by ";" although it is split at "_": two levels of folders lead nowhere, and stay so.
    const QString navigation
        = screen.navigation.isEmpty() ? key : screen.navigation + QLatin1Char(';') + key;
    rows.append(QVariant(screen.row([&](RowRole role) -> QVariant {
        switch (role) {
        case RowRole::Title:
            return item.text;
        case RowRole::Type:
            return asFolder ? VeskRolesType::Container() : VeskRolesType::Header();
        case RowRole::MediaData:
            return screen.serviceMediaData;
        case RowRole::Path:
            return asFolder ? tuneInUrlToCBPath(screen.url, navigation, QString()).toEncoded()
                            : QVariant();
        default:
            return QVariant();
        }
    })));
    if (asFolder) {
        VESK_TRACE("Added child element as folder '" << item.text << "', navigation: '"
                                                     << navigation << "'");
        return;
    }
    const VeskList<VeskTuneInBodyElement> children = element.children();
    VESK_TRACE("Adding " << children.size() << " child element(s) following separator '"
                         << item.text << "'");
    rows += fillRows(screen.request, children, screen.url, screen.navigation, screen.maxLevel - 1);
    VESK_DEBUG("item " << item.index << ": '" << item.text << "' SEPARATOR (END)");
}

QVariantList TuneInBrowseNode::audioRow(const Screen &screen, const Item &item)
{
    const VeskTuneInBodyElement &element = item.element;
    const CMPath &opened = screen.request.path();
    const QString &kind = item.kind;
    const bool onDemand = kind == QLatin1String("topic");
    VESK_DEBUG("item " << item.index << ": '" << item.text << "' (audio - "
                       << (onDemand ? "On demand" : "Broadcast") << " item: '" << kind << "')");
    VESK_TRACE("element: " << element);
    VESK_TRACE("parent URL: " << opened);
    VESK_DEBUG("isAvailableStreamBrowsing: " << screen.streamChoice
                                             << ", directStreamBrowsing: " << screen.directStream);
    CMPath matchPath;
    if (screen.streamChoice) {
        const QString veskMatchingPath = opened.param(Param::veskMatchingPath());
        VESK_ASSERT(!veskMatchingPath.isEmpty());
        matchPath = CMPath::fromEncoded(veskMatchingPath);
    } else {
        matchPath = path();
        if (screen.directStream)
            matchPath.addParam(Param::veskDirectStream(), QString::number(item.index));
        else
            matchPath.addParam(Param::veskGuideId(), item.guideId);
    }
    const QString encodedMatchPath = matchPath.toEncoded();

    QVariantList row = screen.row([&](RowRole role) -> QVariant {
        switch (role) {
        case RowRole::Title:
            return screen.streamChoice ? opened.param(Param::veskTitle()) : item.text;
        case RowRole::Description:
            return screen.streamChoice ? item.text : element.subtext();
        case RowRole::Icon:
            return element.image();
        case RowRole::Type:
            return VeskRolesType::Audio();
        case RowRole::AudioType:
            return onDemand ? VeskRolesAudioType::None() : VeskRolesAudioType::AudioBroadcast();
        case RowRole::Path: {
            if (!screen.streamChoice)
                return encodedMatchPath;
            VeskUrl url = item.url;
            url.addQueryItem(Param::veskMatchingPath(), encodedMatchPath);
            return tuneInUrlToCBPath(url, QString(), QString()).toEncoded();
        }
        case RowRole::Context:
            if (screen.streamChoice || screen.directStream || item.showOrTopic)
                return QVariant();
            return browserContextRoles(screen, item, encodedMatchPath);
        case RowRole::MediaData:
            return audioMediaData(screen, item, encodedMatchPath);
        default:
            return QVariant();
        }
    });
    setPlayable(true);
    return row;
}

VeskMediaData TuneInBrowseNode::audioMediaData(
    const Screen &screen, const Item &item, const QString &encodedMatchPath)
{
    const VeskTuneInBodyElement &element = item.element;
    const CMPath &opened = screen.request.path();
    const QString title = screen.streamChoice ? opened.param(Param::veskTitle()) : item.text;
    const QString description
        = screen.streamChoice ? opened.param(Param::veskDescription()) : element.subtext();
    const QString icon = screen.streamChoice ? opened.param(Param::veskIcon()) : element.image();

    CMPath context = item.showOrTopic ? m_tiWorker->playerContextShowEpisodeNode()->path()
                                      : m_tiWorker->playerContextNode()->path();
    // In the order in which a path keeps them: each is then put at the end.
    context.addParam(Param::guideId(), item.guideId);
    if (!item.sid.isEmpty())
        context.addParam(Param::sid(), item.sid);
    const QString stationId = element.stationId();
    if (!stationId.isEmpty())
        context.addParam(Param::stationId(), stationId);
    context.addParam(Param::veskDescription(), description);
    context.addParam(Param::veskIcon(), icon);
    context.addParam(Param::veskMatchingPath(), encodedMatchPath);
    context.addParam(Param::veskTitle(), title);

    VeskRoles matching;
    matching.insert(VeskRoles::Path(), encodedMatchPath);
    VeskList<VeskRoles> matchingRoles;
    matchingRoles.append(matching);

    VeskMetaData metaData = screen.audioMetaData;
    metaData.setGenre(getGenreName(element.genreId()));
    metaData.setMatchingMediaRoles(matchingRoles);
    metaData.setContentPlayContextPath(context);
    if (screen.streamChoice) {
        CMPath prePlay = path();
        prePlay.addParam(Param::veskPrePlayCmd(), QStringLiteral("updateVeskRoles"));
        prePlay.addParam(Param::veskTitle(), title);
        prePlay.addParam(Param::veskDescription(), description);
        prePlay.addParam(Param::veskIcon(), icon);
        metaData.setPrePlayPath(prePlay);
    } else if (!screen.directStream) {
        CMPath prePlay = path();
        prePlay.addParam(Param::veskPlayPath(), item.url.toString());
        prePlay.addParam(Param::veskPrePlayCmd(), QStringLiteral("fetchAvailableStreams"));
        metaData.setPrePlayPath(prePlay);
    }
    metaData.setLive(item.kind == QLatin1String("station"));

    VeskResource resource;
    if (screen.directStream) {
        resource.setMimeType(MimeTypes::Audio::unknown());
    } else {
        const QString bitrate = element.bitrate();
        if (!bitrate.isEmpty())
            resource.setBitRate(bitsPerSecond(bitrate));
        resource.setMimeType(MimeTypes::Audio::m3u());
    }
    resource.setUri(item.url.toString());
    VeskList<VeskResource> resources;
    resources.append(resource);

    VeskMediaData mediaData;
    mediaData.setMetaData(metaData);
    mediaData.setResources(resources);
    return mediaData;
}

/// The menu's roles, opened for the item. Only their path depends on the item, so the rest is asked
/// for once a screen.
VeskHash TuneInBrowseNode::browserContextRoles(
    const Screen &screen, const Item &item, const QString &encodedMatchPath) const
{
    CMPath menu = m_tiWorker->browserContextNode()->path();
    menu.addParam(Param::guideId(), item.guideId);
    if (!item.sid.isEmpty())
        menu.addParam(Param::sid(), item.sid);
    menu.addParam(Param::veskMatchingPath(), encodedMatchPath);
    VeskRoles roles = screen.menuRoles;
    roles.setPath(menu);
    return roles;
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
    resource.setBitRate(bitsPerSecond(stream.bitrate()));
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

/// Empty when it is not known, also while TuneIn's list of genres cannot be had.
QString TuneInBrowseNode::getGenreName(const QString &genreId)
{
    // One attempt in ten seconds for the whole process, however many nodes ask.
    static std::atomic<qint64> lastAttempt {0};
    if (genreId.isEmpty())
        return QString();
    if (m_genreNames.isEmpty()) {
        const qint64 now = TuneInClock::instance().monotonicMs();
        if (now - lastAttempt < genreRetryMs) {
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
