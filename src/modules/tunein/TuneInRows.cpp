// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/tunein/TuneInRows.h"

#include "api/tunein/VeskTuneInPaths.h"
#include "api/values/MimeTypes.h"
#include "modules/tunein/TuneInApi.h"
#include "modules/tunein/TuneInBrowseNode.h"
#include "modules/tunein/TuneInContextNode.h"
#include "modules/tunein/TuneInParams.h"
#include "modules/tunein/TuneInScreenUrl.h"
#include "modules/tunein/cb_tunein.h"

#include <QHash>

#include <utility>

namespace {

namespace Param = TuneInParams;

bool isStreamChoice(const CMPath &path)
{
    return path.base() == QLatin1String("browse")
        && path.param(Param::veskTuneInMethod()) == QLatin1String("tune")
        && path.param(Param::c()) == QLatin1String("ebrowse");
}

bool isDirectStream(const CMPath &path)
{
    return path.base() == QLatin1String("browse/uri/Search.ashx")
        && path.param(Param::query()) == QLatin1String("aa2");
}

CMPathForm::Blank optional(const QString &key)
{
    return {key, true};
}

CMPathForm playerMenuForm(const CMNode *menu)
{
    return CMPathForm(menu->path(),
        {{Param::guideId()}, optional(Param::sid()), optional(Param::stationId()),
            {Param::veskDescription()}, {Param::veskIcon()}, {Param::veskMatchingPath()},
            {Param::veskTitle()}});
}

CMPath prePlayPath(const CMPath &nodePath, const QString &command)
{
    CMPath path = nodePath;
    path.addParam(Param::veskPrePlayCmd(), command);
    return path;
}

} // namespace

TuneInOutline::TuneInOutline(VeskTuneInBodyElement itsElement, int itsIndex)
    : element(std::move(itsElement))
    , index(itsIndex)
    , type(element.type())
    , kind(element.item())
    , showOrTopic(kind == QLatin1String("topic") || kind == QLatin1String("show"))
{
}

TuneInItem::TuneInItem(const TuneInOutline &outline)
    : TuneInOutline(outline)
    , text(element.text())
    , guideId(element.guideId())
    , url(TuneInBrowseNode::getElementUrl(element))
    , sid(showOrTopic ? url.queryItemValue(Param::sid()) : QString())
{
}

/// The roles that a row may answer; all others are null in every row.
enum class TuneInRows::Role {
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

/// How an audio row is shown while it plays.
struct TuneInRows::Playing {
    const QString &matchPath;
    const QString &title;
    const QString &description;
    const QString &icon;
};

TuneInRows::TuneInRows(
    TuneInBrowseNode &node, const CMTuneInWorker &worker, const CMGetRowsRequest &request)
    : m_node(node)
    , m_opened(request.path())
    , m_isRoot(TuneInScreenUrl::isRoot(m_opened))
    , m_streamChoice(::isStreamChoice(m_opened))
    , m_directStream(::isDirectStream(m_opened))
    , m_serviceMediaData(worker.serviceMediaData())
    , m_browserMenu(worker.browserContextNode()->getDataRoles(CMAllRoles(), {}))
    , m_matchPath(
          node.path(), {{m_directStream ? Param::veskDirectStream() : Param::veskGuideId()}})
    , m_browserMenuPath(worker.browserContextNode()->path(),
          {{Param::guideId()}, optional(Param::sid()), {Param::veskMatchingPath()}})
    , m_playerMenuPath(playerMenuForm(worker.playerContextNode()))
    , m_episodeMenuPath(playerMenuForm(worker.playerContextShowEpisodeNode()))
    , m_prePlayPath(prePlayPath(node.path(), QStringLiteral("fetchAvailableStreams")),
          {{Param::veskPlayPath()}})
    , m_chosen(m_streamChoice ? chosen() : Chosen())
{
    m_commonMetaData.setServiceID(worker.settings().serviceId());
    m_commonMetaData.setPlaybackStateChangePath(VeskTuneInStateChangePath());
    m_commonMetaData.setAlternativeStreams(true);
    static const QHash<QString, Role> known {
        {VeskRoles::Title(), Role::Title},
        {VeskRoles::Description(), Role::Description},
        {VeskRoles::Icon(), Role::Icon},
        {VeskRoles::Type(), Role::Type},
        {VeskRoles::AudioType(), Role::AudioType},
        {VeskRoles::Path(), Role::Path},
        {VeskRoles::Context(), Role::Context},
        {VeskRoles::MediaData(), Role::MediaData},
        {VeskRoles::Id(), Role::Id},
        {VeskRoles::Preferred(), Role::Preferred},
    };
    for (const QString &role : request.roles()) {
        m_roles.append(known.value(role, Role::Other));
        m_nulls.append(QVariant());
    }
}

TuneInRows::Chosen TuneInRows::chosen() const
{
    Chosen chosen;
    chosen.matchPath = CMPath::fromEncoded(m_opened.param(Param::veskMatchingPath())).toEncoded();
    chosen.title = m_opened.param(Param::veskTitle());
    chosen.description = m_opened.param(Param::veskDescription());
    chosen.icon = m_opened.param(Param::veskIcon());
    CMPath prePlay = prePlayPath(m_node.path(), QStringLiteral("updateVeskRoles"));
    prePlay.addParam(Param::veskTitle(), chosen.title);
    prePlay.addParam(Param::veskDescription(), chosen.description);
    prePlay.addParam(Param::veskIcon(), chosen.icon);
    chosen.prePlayPath = prePlay.toEncoded();
    return chosen;
}

/// A row with \a value(role) for each role.
template <class Function>
QVariantList TuneInRows::row(Function value) const
{
    QVariantList values = m_nulls;
    auto out = values.begin();
    for (const Role role : m_roles)
        *out++ = value(role);
    return values;
}

QVariantList TuneInRows::text(const TuneInItem &item) const
{
    const VeskTuneInBodyElement &element = item.element;
    return row([&](Role role) -> QVariant {
        switch (role) {
        case Role::Title:
            return item.text;
        case Role::Id:
            if (!item.guideId.isEmpty())
                return QStringLiteral("id=") + item.guideId;
            return element.key().isEmpty() ? QString() : QStringLiteral("c=") + element.key();
        case Role::Preferred:
            return element.isDefault() == QLatin1String("true");
        default:
            return QVariant();
        }
    });
}

QVariantList TuneInRows::link(const TuneInItem &item) const
{
    const VeskTuneInBodyElement &element = item.element;
    const bool showContext = item.showOrTopic && !m_isRoot;
    return row([&](Role role) -> QVariant {
        switch (role) {
        case Role::Title:
            return item.text;
        case Role::Type:
            return VeskRolesType::Container();
        case Role::Path:
            return m_node.tuneInUrlToCBPath(item.url, QString(), item.text).toEncoded();
        case Role::Context: {
            if (!showContext || item.guideId.isEmpty())
                return QVariant();
            CMPath matchPath = m_node.path();
            matchPath.addParam(Param::veskGuideId(), item.guideId);
            return browserMenu(item, matchPath.toEncoded());
        }
        case Role::MediaData:
            return m_serviceMediaData;
        case Role::Icon: {
            const QString icon = m_node.categoryIcon(element.key());
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

QVariantList TuneInRows::header(const TuneInItem &item) const
{
    return row([&](Role role) -> QVariant {
        switch (role) {
        case Role::Title:
            return item.text;
        case Role::Type:
            return VeskRolesType::Header();
        case Role::MediaData:
            return m_serviceMediaData;
        default:
            return QVariant();
        }
    });
}

QVariantList TuneInRows::folder(
    const TuneInItem &item, const VeskUrl &url, const QString &navigation) const
{
    return row([&](Role role) -> QVariant {
        switch (role) {
        case Role::Title:
            return item.text;
        case Role::Type:
            return VeskRolesType::Container();
        case Role::MediaData:
            return m_serviceMediaData;
        case Role::Path:
            return m_node.tuneInUrlToCBPath(url, navigation, QString()).toEncoded();
        default:
            return QVariant();
        }
    });
}

QVariantList TuneInRows::audio(const TuneInItem &item) const
{
    const QString path = matchPath(item);
    const QString subtext = item.element.subtext();
    const QString image = item.element.image();
    const Playing playing = m_streamChoice
        ? Playing {path, m_chosen.title, m_chosen.description, m_chosen.icon}
        : Playing {path, item.text, subtext, image};
    return row([&](Role role) -> QVariant {
        switch (role) {
        case Role::Title:
            return playing.title;
        case Role::Description:
            return m_streamChoice ? item.text : subtext;
        case Role::Icon:
            return image;
        case Role::Type:
            return VeskRolesType::Audio();
        case Role::AudioType:
            return item.kind == QLatin1String("topic") ? VeskRolesAudioType::None()
                                                       : VeskRolesAudioType::AudioBroadcast();
        case Role::Path:
            return m_streamChoice ? streamPath(item) : path;
        case Role::Context:
            if (m_streamChoice || m_directStream || item.showOrTopic)
                return QVariant();
            return browserMenu(item, path);
        case Role::MediaData:
            return mediaData(item, playing);
        default:
            return QVariant();
        }
    });
}

void TuneInRows::omitAudio(const TuneInOutline &outline) const
{
    if (!m_node.hasGenreNames() && m_roles.contains(Role::MediaData))
        m_node.getGenreName(outline.element.genreId());
}

/// The path that identifies an audio row in its list and while it plays.
QString TuneInRows::matchPath(const TuneInItem &item) const
{
    if (m_streamChoice)
        return m_chosen.matchPath;
    return m_matchPath.toEncoded({m_directStream ? QString::number(item.index) : item.guideId});
}

QString TuneInRows::streamPath(const TuneInItem &item) const
{
    VeskUrl url = item.url;
    url.addQueryItem(Param::veskMatchingPath(), m_chosen.matchPath);
    return m_node.tuneInUrlToCBPath(url, QString(), QString()).toEncoded();
}

VeskHash TuneInRows::browserMenu(const TuneInItem &item, const QString &matchPath) const
{
    VeskRoles roles = m_browserMenu;
    roles.insert(
        VeskRoles::Path(), m_browserMenuPath.toEncoded({item.guideId, item.sid, matchPath}));
    return roles;
}

VeskMediaData TuneInRows::mediaData(const TuneInItem &item, const Playing &playing) const
{
    VeskList<VeskResource> resources;
    VeskMediaData mediaData;
    mediaData.setMetaData(metaData(item, playing));
    resources.append(resource(item));
    mediaData.setResources(resources);
    return mediaData;
}

VeskMetaData TuneInRows::metaData(const TuneInItem &item, const Playing &playing) const
{
    VeskRoles matching;
    matching.insert(VeskRoles::Path(), playing.matchPath);
    VeskList<VeskRoles> matchingRoles;
    matchingRoles.append(matching);

    VeskMetaData metaData = m_commonMetaData;
    metaData.setGenre(m_node.getGenreName(item.element.genreId()));
    metaData.setMatchingMediaRoles(matchingRoles);
    const CMPathForm &menu = item.showOrTopic ? m_episodeMenuPath : m_playerMenuPath;
    const QString stationId = item.element.stationId();
    metaData.setContentPlayContextPath(menu.toEncoded({item.guideId, item.sid, stationId,
        playing.description, playing.icon, playing.matchPath, playing.title}));
    if (m_streamChoice)
        metaData.setPrePlayPath(m_chosen.prePlayPath);
    else if (!m_directStream)
        metaData.setPrePlayPath(m_prePlayPath.toEncoded({item.url.toString()}));
    metaData.setLive(item.kind == QLatin1String("station"));
    return metaData;
}

VeskResource TuneInRows::resource(const TuneInItem &item) const
{
    VeskResource resource;
    if (m_directStream) {
        resource.setMimeType(MimeTypes::Audio::unknown());
    } else {
        const QString bitrate = item.element.bitrate();
        if (!bitrate.isEmpty())
            resource.setBitRate(TuneInApi::bitsPerSecond(bitrate));
        resource.setMimeType(MimeTypes::Audio::m3u());
    }
    resource.setUri(item.url.toString());
    return resource;
}
