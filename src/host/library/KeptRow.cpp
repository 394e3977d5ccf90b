// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/library/KeptRow.h"

#include "api/core/Language.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QUrl>

#include <utility>

namespace {

/// Of matching rows, and of a text's arguments.
constexpr int MaxEntries = 16;

QString key(const char *name)
{
    return QLatin1String(name);
}

bool isWebAddress(const QString &text)
{
    const QUrl url = QUrl::fromEncoded(text.toUtf8(), QUrl::TolerantMode);
    const QString scheme = url.scheme().toLower();
    return !url.host().isEmpty()
        && (scheme == QLatin1String("http") || scheme == QLatin1String("https"));
}

/// What only the host may answer for.
bool isHosts(const CMPath &path)
{
    static const QStringList prefixes {QStringLiteral("host"), QStringLiteral("settings"),
        QStringLiteral("system"), QStringLiteral("network"), QStringLiteral("store"),
        QStringLiteral("plugins")};
    return prefixes.contains(path.prefix(), Qt::CaseInsensitive);
}

QJsonValue textToJson(const TrString &text)
{
    if (!text.isTranslatable())
        return text.toString();
    QJsonObject json {{key("context"), text.context()}, {key("text"), text.sourceText()}};
    if (!text.disambiguation().isEmpty())
        json.insert(key("disambiguation"), text.disambiguation());
    if (text.count() >= 0)
        json.insert(key("count"), text.count());
    QJsonArray arguments;
    const QVector<TrArg> args = text.arguments();
    for (const TrArg &argument : args)
        arguments.append(argument.value);
    if (!arguments.isEmpty())
        json.insert(key("arguments"), arguments);
    return json;
}

void insertText(QJsonObject &json, const char *name, const QString &text)
{
    if (!text.isEmpty())
        json.insert(key(name), text);
}

void insertPath(QJsonObject &json, const char *name, const CMPath &path)
{
    insertText(json, name, path.toEncoded());
}

void insertTranslatable(QJsonObject &json, const char *name, const TrString &text)
{
    if (!text.isEmpty())
        json.insert(key(name), textToJson(text));
}

QJsonObject metaDataToJson(const VeskMetaData &meta)
{
    QJsonObject json;
    insertText(json, "serviceID", meta.serviceID());
    insertText(json, "genre", meta.genre());
    insertPath(json, "prePlayPath", meta.prePlayPath());
    insertPath(json, "contentPlayContextPath", meta.contentPlayContextPath());
    insertPath(json, "playbackStateChangePath", meta.playbackStateChangePath());
    if (meta.live())
        json.insert(key("live"), true);
    if (meta.alternativeStreams())
        json.insert(key("alternativeStreams"), true);
    QJsonArray matching;
    const VeskList<VeskRoles> rows = meta.matchingMediaRoles();
    for (int i = 0; i < rows.size() && i < MaxEntries; ++i) {
        if (const CMPath path = rows.at(i).path(); !path.isEmpty())
            matching.append(QJsonObject {{VeskRoles::Path(), path.toEncoded()}});
    }
    if (!matching.isEmpty())
        json.insert(key("matchingMediaRoles"), matching);
    return json;
}

QJsonObject resourceToJson(const VeskResource &resource)
{
    QJsonObject json;
    if (isWebAddress(resource.uri()))
        json.insert(key("uri"), resource.uri());
    insertText(json, "mimeType", resource.mimeType());
    if (resource.bitRate() > 0)
        json.insert(key("bitRate"), resource.bitRate());
    return json;
}

/// Reads the members of one object. The first one that is wrong lasts as the fault.
class Members {
public:
    Members(QJsonObject json, QString &fault)
        : m_json(std::move(json))
        , m_fault(fault)
    {
    }

    QString text(const char *name, int most = KeptRow::MaxText)
    {
        const QJsonValue value = take(name, QJsonValue::String);
        const QString text = value.toString();
        // Members may be left out, but what is there has a form.
        if (text.size() > most || text.contains(QChar::Null))
            return refuse(name);
        return text;
    }
    QString address(const char *name)
    {
        const QString address = text(name);
        return address.isEmpty() || isWebAddress(address) ? address : refuse(name);
    }
    CMPath path(const char *name)
    {
        const QString encoded = text(name);
        const CMPath path = CMPath::fromEncoded(encoded);
        if (path.isEmpty() != encoded.isEmpty() || (!path.isEmpty() && isHosts(path)))
            refuse(name);
        return path;
    }
    TrString translatable(const char *name)
    {
        if (!m_json.value(key(name)).isObject())
            return Language::ntr(text(name));
        Members members(m_json.value(key(name)).toObject(), m_fault);
        const QString context = members.text("context");
        const QString source = members.text("text");
        const QString disambiguation = members.text("disambiguation");
        const int count = members.number("count", 0, 1000000, -1);
        QVector<TrArg> arguments;
        const QJsonArray list = members.array("arguments");
        for (const QJsonValue &each : list) {
            if (!each.isString() || each.toString().size() > KeptRow::MaxText)
                members.refuse("arguments");
            arguments.append(TrArg(each.toString()));
        }
        return TrString(context, source, disambiguation, count, arguments);
    }
    int number(const char *name, int least, int most, int otherwise)
    {
        const QJsonValue value = take(name, QJsonValue::Double);
        if (!value.isDouble())
            return otherwise;
        const double number = value.toDouble();
        const bool isWhole = number >= least && number <= most && number == int(number);
        if (!isWhole)
            refuse(name);
        return isWhole ? int(number) : otherwise;
    }
    bool flag(const char *name) { return take(name, QJsonValue::Bool).toBool(); }
    Members object(const char *name)
    {
        return Members(take(name, QJsonValue::Object).toObject(), m_fault);
    }
    QJsonArray array(const char *name)
    {
        const QJsonArray list = take(name, QJsonValue::Array).toArray();
        if (list.size() > MaxEntries)
            refuse(name);
        return list.size() > MaxEntries ? QJsonArray() : list;
    }
    /// The element of an array, which must be an object.
    Members element(const char *name, const QJsonValue &value)
    {
        if (!value.isObject())
            refuse(name);
        return Members(value.toObject(), m_fault);
    }

    QString refuse(const char *name)
    {
        if (m_fault.isEmpty())
            m_fault = QStringLiteral("\"%1\" is wrong").arg(key(name));
        return {};
    }

private:
    QJsonValue take(const char *name, QJsonValue::Type type)
    {
        const QJsonValue value = m_json.value(key(name));
        if (value.isUndefined() || value.type() == type)
            return value;
        refuse(name);
        return {};
    }

    const QJsonObject m_json;
    QString &m_fault;
};

VeskMetaData metaDataOf(Members members)
{
    VeskMetaData meta;
    const QString service = members.text("serviceID");
    if (!service.isEmpty())
        meta.setServiceID(service);
    const QString genre = members.text("genre");
    if (!genre.isEmpty())
        meta.setGenre(genre);
    if (const CMPath path = members.path("prePlayPath"); !path.isEmpty())
        meta.setPrePlayPath(path);
    if (const CMPath path = members.path("contentPlayContextPath"); !path.isEmpty())
        meta.setContentPlayContextPath(path);
    if (const CMPath path = members.path("playbackStateChangePath"); !path.isEmpty())
        meta.setPlaybackStateChangePath(path);
    meta.setLive(members.flag("live"));
    meta.setAlternativeStreams(members.flag("alternativeStreams"));
    VeskList<VeskRoles> matching;
    const QJsonArray list = members.array("matchingMediaRoles");
    for (const QJsonValue &each : list) {
        VeskRoles roles;
        roles.setPath(members.element("matchingMediaRoles", each).path("path"));
        matching.append(roles);
    }
    if (!matching.isEmpty())
        meta.setMatchingMediaRoles(matching);
    return meta;
}

VeskResource resourceOf(Members members)
{
    VeskResource resource;
    resource.setUri(members.address("uri"));
    const QString type = members.text("mimeType");
    if (!type.isEmpty())
        resource.setMimeType(type);
    if (const int rate = members.number("bitRate", 0, INT_MAX, 0); rate > 0)
        resource.setBitRate(rate);
    return resource;
}

VeskMediaData mediaDataOf(Members members)
{
    VeskMediaData media;
    media.setMetaData(metaDataOf(members.object("metaData")));
    VeskList<VeskResource> resources;
    const QJsonArray list = members.array("resources");
    for (const QJsonValue &each : list)
        resources.append(resourceOf(members.element("resources", each)));
    media.setResources(resources);
    return media;
}

/// Whether a row at \a own may lead to \a path: playing and clicking it change data of its own
/// service only.
bool isOfService(const CMPath &path, const CMPath &own)
{
    return path.isEmpty() || path.prefix() == own.prefix()
        || path.prefix() == QLatin1String("player");
}

bool isOfOneService(const VeskRoles &row)
{
    const VeskMetaData meta = row.mediaData().metaData();
    const CMPath own = row.path();
    for (const CMPath &path : {row.context().path(), meta.prePlayPath(),
             meta.contentPlayContextPath(), meta.playbackStateChangePath()}) {
        if (!isOfService(path, own))
            return false;
    }
    return true;
}

} // namespace

QJsonObject KeptRow::toJson(const VeskRoles &row)
{
    QJsonObject json;
    insertTranslatable(json, "title", row.title());
    // That of a station says what is on the air at the moment.
    if (row.audioType() != VeskRolesAudioType::AudioBroadcast())
        insertTranslatable(json, "description", row.description());
    if (isWebAddress(row.icon()))
        json.insert(key("icon"), row.icon());
    json.insert(key("audioType"), row.audioType());
    insertPath(json, "path", row.path());
    insertText(json, "id", row.id());
    if (const CMPath menu = row.context().path(); !menu.isEmpty())
        json.insert(key("context"), QJsonObject {{VeskRoles::Path(), menu.toEncoded()}});
    QJsonObject media {{key("metaData"), metaDataToJson(row.mediaData().metaData())}};
    // The player plays the first one.
    const QJsonObject resource = resourceToJson(row.mediaData().activeResource());
    if (!resource.isEmpty())
        media.insert(key("resources"), QJsonArray {resource});
    json.insert(key("mediaData"), media);
    return json;
}

Result<VeskRoles, QString> KeptRow::fromJson(const QJsonObject &json)
{
    QString fault;
    Members members(json, fault);
    VeskRoles row;
    row.setType(VeskRolesType::Audio());
    row.setTitle(members.translatable("title"));
    if (const TrString text = members.translatable("description"); !text.isEmpty())
        row.setDescription(text);
    if (const QString icon = members.address("icon"); !icon.isEmpty())
        row.setIcon(icon);
    row.setAudioType(members.number("audioType", VeskRolesAudioType::none,
        VeskRolesAudioType::audioBroadcast, VeskRolesAudioType::none));
    row.setPath(members.path("path"));
    if (const QString id = members.text("id"); !id.isEmpty())
        row.setId(id);
    if (const CMPath path = members.object("context").path("path"); !path.isEmpty()) {
        VeskRoles menu;
        menu.setType(VeskRolesType::Container());
        menu.setContainerType(VeskRolesContainerType::ContextMenu);
        menu.setPath(path);
        row.setContext(menu);
    }
    row.setMediaData(mediaDataOf(members.object("mediaData")));
    if (!fault.isEmpty())
        return failure(fault);
    if (row.path().isEmpty())
        return failure(QStringLiteral("it has no path"));
    if (row.mediaData().activeResource().uri().isEmpty())
        return failure(QStringLiteral("it has no address"));
    if (!isOfOneService(row))
        return failure(QStringLiteral("its paths belong to different services"));
    return row;
}

Result<QByteArray, QString> KeptRow::toText(const VeskRoles &row)
{
    const QJsonObject json = toJson(row);
    if (const auto read = fromJson(json); !read)
        return failure(read.error());
    const QByteArray text = QJsonDocument(json).toJson(QJsonDocument::Compact);
    if (text.size() > MaxBytes)
        return failure(QStringLiteral("it is too long"));
    return text;
}

Result<VeskRoles, QString> KeptRow::fromText(const QByteArray &text)
{
    const QJsonDocument document = QJsonDocument::fromJson(text);
    if (!document.isObject())
        return failure(QStringLiteral("it is no JSON object"));
    return fromJson(document.object());
}
