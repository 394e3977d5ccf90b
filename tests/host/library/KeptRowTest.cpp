// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/library/KeptRow.h"

#include "api/core/Language.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <gmock/gmock.h>

namespace {

CMPath path(const char *encoded)
{
    return CMPath::fromEncoded(QString::fromLatin1(encoded));
}

VeskRoles station()
{
    VeskRoles matching;
    matching.setPath(path("radio:station?id=7"));
    VeskMetaData meta;
    meta.setServiceID(QStringLiteral("9999"));
    meta.setGenre(QStringLiteral("g61"));
    meta.setPrePlayPath(path("radio:browse?cmd=prepare"));
    meta.setContentPlayContextPath(path("radio:menu?id=7"));
    meta.setPlaybackStateChangePath(path("player:radio/state"));
    meta.setMatchingMediaRoles(VeskList<VeskRoles>({matching.toHash()}));
    meta.setLive(true);
    meta.setAlternativeStreams(true);
    VeskResource resource;
    resource.setUri(QStringLiteral("http://radio.example/Tune?id=7"));
    resource.setMimeType(QStringLiteral("audio/x-mpegurl"));
    resource.setBitRate(128000);
    VeskMediaData media;
    media.setMetaData(meta);
    media.setResources(VeskList<VeskResource>({resource.toHash()}));
    VeskRoles menu;
    menu.setType(VeskRolesType::Container());
    menu.setContainerType(VeskRolesContainerType::ContextMenu);
    menu.setPath(path("radio:menu?id=7"));
    VeskRoles row;
    row.setType(VeskRolesType::Audio());
    row.setAudioType(VeskRolesAudioType::AudioBroadcast());
    row.setTitle(Language::ntr(QStringLiteral("Radio Übung")));
    row.setIcon(QStringLiteral("https://radio.example/7.png"));
    row.setPath(path("radio:station?id=7"));
    row.setId(QStringLiteral("id=7"));
    row.setContext(menu);
    row.setMediaData(media);
    return row;
}

QJsonObject objectOf(const char *json)
{
    return QJsonDocument::fromJson(json).object();
}

QJsonObject changed(QJsonObject row, const QStringList &names, const QJsonValue &value)
{
    const QString name = names.first();
    if (names.size() == 1)
        row.insert(name, value);
    else
        row.insert(name, changed(row.value(name).toObject(), names.mid(1), value));
    return row;
}

TEST(KeptRowTest, KeepsAllThatPlayingNeeds)
{
    VeskRoles episode = station();
    episode.setAudioType(VeskRolesAudioType::Audio());
    episode.setDescription(TrString(QStringLiteral("Radio"), QStringLiteral("%1 of %2"), QString(),
        2, {TrArg(QStringLiteral("one")), TrArg(QStringLiteral("two"))}));
    const auto read = KeptRow::fromJson(KeptRow::toJson(episode));
    ASSERT_TRUE(read) << read.error().toStdString();
    EXPECT_EQ(*read, episode);
    EXPECT_EQ(read->description(), episode.description());
    EXPECT_TRUE(read->description().isTranslatable());
    EXPECT_FALSE(read->title().isTranslatable());
}

TEST(KeptRowTest, WhatIsOnTheAirIsNotKept)
{
    VeskRoles row = station();
    row.setDescription(Language::ntr(QStringLiteral("Odile Marchetti - Minor Weather")));
    const auto read = KeptRow::fromJson(KeptRow::toJson(row));
    ASSERT_TRUE(read);
    EXPECT_EQ(*read, station());
}

TEST(KeptRowTest, AsTextItIsTheSame)
{
    const auto text = KeptRow::toText(station());
    ASSERT_TRUE(text);
    const auto read = KeptRow::fromText(*text);
    ASSERT_TRUE(read);
    EXPECT_EQ(*read, station());
    for (const char *broken : {"", "[]", "null", "{", "{\"path\": 1}"})
        EXPECT_FALSE(KeptRow::fromText(broken)) << broken;
}

TEST(KeptRowTest, OnlyTheResourceThatIsPlayedIsKept)
{
    VeskRoles row = station();
    VeskMediaData media = row.mediaData();
    VeskList<VeskResource> resources = media.resources();
    VeskResource other;
    other.setUri(QStringLiteral("http://radio.example/other"));
    resources.append(other);
    media.setResources(resources);
    row.setMediaData(media);
    row.insert(VeskRoles::PrePlay(), QStringLiteral("x"));
    const auto read = KeptRow::fromJson(KeptRow::toJson(row));
    ASSERT_TRUE(read);
    EXPECT_EQ(*read, station());
}

TEST(KeptRowTest, UnknownMembersAreDropped)
{
    QJsonObject json = KeptRow::toJson(station());
    json.insert(QStringLiteral("activate"), QStringLiteral("settings:tunein/account"));
    json = changed(json, {QStringLiteral("mediaData"), QStringLiteral("deep")}, QJsonArray {1, 2});
    const auto read = KeptRow::fromJson(json);
    ASSERT_TRUE(read);
    EXPECT_EQ(*read, station());
}

TEST(KeptRowTest, WhatIsNotHttpIsNotKept)
{
    VeskRoles row = station();
    row.setIcon(QStringLiteral("javascript:alert(1)"));
    const auto read = KeptRow::fromJson(KeptRow::toJson(row));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->icon(), QString());
    VeskMediaData media = row.mediaData();
    VeskResource resource;
    resource.setUri(QStringLiteral("file:///etc/passwd"));
    media.setResources(VeskList<VeskResource>({resource.toHash()}));
    row.setMediaData(media);
    EXPECT_FALSE(KeptRow::toText(row));
}

TEST(KeptRowTest, HostileRowsAreRefused)
{
    const QString meta = QStringLiteral("metaData");
    const QString media = QStringLiteral("mediaData");
    const QString longText(KeptRow::MaxText + 1, QLatin1Char('x'));
    const auto uri = [](const char *address) {
        return QJsonArray {QJsonObject {{QStringLiteral("uri"), QString::fromLatin1(address)}}};
    };
    QJsonArray many;
    for (int i = 0; i < 17; ++i)
        many.append(QJsonObject {{QStringLiteral("path"), QStringLiteral("radio:x")}});
    struct Case {
        QStringList names;
        QJsonValue value;
    };
    const std::vector<Case> cases {
        {{QStringLiteral("path")}, QString()},
        {{QStringLiteral("path")}, 7},
        {{QStringLiteral("path")}, QStringLiteral("no path")},
        {{QStringLiteral("path")}, QStringLiteral("settings:ui/language")},
        {{QStringLiteral("path")}, QStringLiteral("radio:") + longText},
        {{QStringLiteral("title")}, longText},
        {{QStringLiteral("title")}, true},
        {{QStringLiteral("title")}, QJsonObject {{QStringLiteral("text"), 7}}},
        {{QStringLiteral("title")},
            QJsonObject {{QStringLiteral("arguments"), QJsonArray {QJsonArray()}}}},
        {{QStringLiteral("icon")}, QStringLiteral("javascript:alert(1)")},
        {{QStringLiteral("icon")}, QStringLiteral("data:image/png;base64,AAAA")},
        {{QStringLiteral("icon")}, QStringLiteral("//radio.example/x.png")},
        {{QStringLiteral("audioType")}, 3},
        {{QStringLiteral("audioType")}, 0.5},
        {{QStringLiteral("audioType")}, QStringLiteral("2")},
        {{QStringLiteral("context")}, QStringLiteral("radio:menu")},
        {{QStringLiteral("context"), QStringLiteral("path")}, QStringLiteral("other:menu")},
        {{media}, QJsonArray()},
        {{media}, QJsonObject()},
        {{media, QStringLiteral("resources")}, QJsonArray {1}},
        {{media, QStringLiteral("resources")}, uri("javascript:alert(1)")},
        {{media, QStringLiteral("resources")}, uri("file:///etc/passwd")},
        {{media, QStringLiteral("resources")}, uri("http://")},
        {{media, meta, QStringLiteral("prePlayPath")}, QStringLiteral("settings:ui/language")},
        {{media, meta, QStringLiteral("prePlayPath")}, QStringLiteral("other:browse")},
        {{media, meta, QStringLiteral("playbackStateChangePath")}, QStringLiteral("host:x")},
        {{media, meta, QStringLiteral("contentPlayContextPath")}, QStringLiteral("Store:x")},
        {{media, meta, QStringLiteral("live")}, 1},
        {{media, meta, QStringLiteral("matchingMediaRoles")}, many},
    };
    for (const Case &each : cases) {
        const QJsonObject json = changed(KeptRow::toJson(station()), each.names, each.value);
        EXPECT_FALSE(KeptRow::fromJson(json))
            << QJsonDocument(json).toJson(QJsonDocument::Compact).left(300).toStdString();
    }
    EXPECT_FALSE(KeptRow::fromJson(objectOf("{}")));
}

} // namespace
