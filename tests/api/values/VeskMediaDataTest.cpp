// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/VeskMediaData.h"

#include "api/values/MimeTypes.h"
#include "api/values/VeskRoles.h"

#include <gtest/gtest.h>

namespace {

const CMPath path = CMPath(QStringLiteral("TuneIn"), QStringLiteral("browse"),
    {{QStringLiteral("q"), QStringLiteral("a b&c")}});

VeskResource resource(const char *uri)
{
    VeskResource result;
    result.setUri(QString::fromLatin1(uri));
    return result;
}

} // namespace

TEST(MimeTypes, HaveFixedNames)
{
    EXPECT_EQ(MimeTypes::Audio::m3u(), QStringLiteral("audio/x-mpegurl"));
    EXPECT_EQ(MimeTypes::Audio::unknown(), QStringLiteral("audio/unknown"));
}

TEST(VeskResource, KeepsItsEntriesUnderTheirAccessorsNames)
{
    VeskResource r = resource("http://a/b");
    r.setMimeType(MimeTypes::Audio::m3u());
    r.setBitRate(128000);
    EXPECT_EQ(r.toHash(),
        QVariantHash({{QStringLiteral("uri"), QStringLiteral("http://a/b")},
            {QStringLiteral("mimeType"), QStringLiteral("audio/x-mpegurl")},
            {QStringLiteral("bitRate"), 128000}}));
    EXPECT_EQ(r.uri(), QStringLiteral("http://a/b"));
    EXPECT_EQ(r.mimeType(), QStringLiteral("audio/x-mpegurl"));
    EXPECT_EQ(r.bitRate(), 128000);
    EXPECT_EQ(VeskResource().bitRate(), 0);
    EXPECT_EQ(VeskResource().uri(), QString());
}

TEST(VeskMetaData, TakesPathsInTheirTextFormToo)
{
    VeskMetaData fromPaths;
    fromPaths.setPrePlayPath(path);
    fromPaths.setContentPlayContextPath(path + QStringLiteral("/a"));
    VeskMetaData fromTexts;
    fromTexts.setPrePlayPath(path.toEncoded());
    fromTexts.setContentPlayContextPath((path + QStringLiteral("/a")).toEncoded());
    EXPECT_EQ(fromTexts, fromPaths);
    EXPECT_EQ(fromTexts.prePlayPath(), path);
    EXPECT_EQ(fromTexts.contentPlayContextPath(), path + QStringLiteral("/a"));
}

TEST(VeskMetaData, KeepsItsEntriesUnderTheirAccessorsNames)
{
    VeskMetaData m;
    m.setServiceID(QStringLiteral("tunein"));
    m.setGenre(QStringLiteral("Folk"));
    m.setPrePlayPath(path);
    m.setContentPlayContextPath(path + QStringLiteral("/a"));
    m.setPlaybackStateChangePath(path + QStringLiteral("/b"));
    VeskRoles roles;
    roles.setId(QStringLiteral("s1"));
    VeskList<VeskRoles> matching;
    matching.append(roles);
    m.setMatchingMediaRoles(matching);
    m.setLive(true);
    m.setAlternativeStreams(true);

    EXPECT_EQ(m.toHash(),
        QVariantHash({{QStringLiteral("serviceID"), QStringLiteral("tunein")},
            {QStringLiteral("genre"), QStringLiteral("Folk")},
            {QStringLiteral("prePlayPath"), QStringLiteral("TuneIn:browse?q=a%20b%26c")},
            {QStringLiteral("contentPlayContextPath"),
                QStringLiteral("TuneIn:browse/a?q=a%20b%26c")},
            {QStringLiteral("playbackStateChangePath"),
                QStringLiteral("TuneIn:browse/b?q=a%20b%26c")},
            {QStringLiteral("matchingMediaRoles"),
                QVariantList {QVariantHash {{QStringLiteral("id"), QStringLiteral("s1")}}}},
            {QStringLiteral("live"), true}, {QStringLiteral("alternativeStreams"), true}}));

    EXPECT_EQ(m.serviceID(), QStringLiteral("tunein"));
    EXPECT_EQ(m.genre(), QStringLiteral("Folk"));
    EXPECT_EQ(m.prePlayPath(), path);
    EXPECT_EQ(m.contentPlayContextPath(), path + QStringLiteral("/a"));
    EXPECT_EQ(m.playbackStateChangePath(), path + QStringLiteral("/b"));
    ASSERT_EQ(m.matchingMediaRoles().size(), 1);
    EXPECT_EQ(m.matchingMediaRoles().first().id(), QStringLiteral("s1"));
    EXPECT_TRUE(m.live());
    EXPECT_TRUE(m.alternativeStreams());
}

TEST(VeskMetaData, ReadsEmptyWhenEmpty)
{
    const VeskMetaData m;
    EXPECT_EQ(m.serviceID(), QString());
    EXPECT_TRUE(m.prePlayPath().isEmpty());
    EXPECT_TRUE(m.matchingMediaRoles().isEmpty());
    EXPECT_FALSE(m.live());
    EXPECT_FALSE(m.alternativeStreams());
}

TEST(VeskMediaData, PlaysItsFirstResource)
{
    VeskMediaData media;
    EXPECT_TRUE(media.activeResource().isEmpty());
    VeskList<VeskResource> resources;
    resources.append(resource("http://first/"));
    resources.append(resource("http://second/"));
    media.setResources(resources);
    EXPECT_EQ(media.resources().size(), 2);
    EXPECT_EQ(media.activeResource().uri(), QStringLiteral("http://first/"));
    EXPECT_TRUE(media.contains(QStringLiteral("resources")));
}

TEST(VeskMediaData, KeepsItsMetaData)
{
    VeskMetaData meta;
    meta.setLive(true);
    VeskMediaData media;
    media.setMetaData(meta);
    EXPECT_TRUE(media.metaData().live());
    EXPECT_EQ(VeskMediaData(VeskHash(QVariant(media).toHash())), media);
    EXPECT_TRUE(media.contains(QStringLiteral("metaData")));
}

TEST(VeskMediaData, ReadsMistypedEntriesAsEmpty)
{
    const VeskMediaData media(VeskHash(QVariantHash {
        {QStringLiteral("metaData"), 1}, {QStringLiteral("resources"), QStringLiteral("x")}}));
    EXPECT_TRUE(media.metaData().isEmpty());
    EXPECT_TRUE(media.resources().isEmpty());
    EXPECT_TRUE(media.activeResource().isEmpty());
    const VeskMediaData odd(
        VeskHash(QVariantHash {{QStringLiteral("resources"), QVariantList {1}}}));
    EXPECT_EQ(odd.activeResource().uri(), QString());
}
