// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/StreamChoice.h"

#include <gtest/gtest.h>

namespace {

int indexOf(const char *path, const QList<const char *> &paths)
{
    QList<VeskRoles> streams;
    for (const char *each : paths) {
        VeskRoles stream;
        stream.setPath(CMPath::fromEncoded(QString::fromLatin1(each)));
        streams.append(stream);
    }
    return StreamChoice::indexOf(streams, CMPath::fromEncoded(QString::fromLatin1(path)));
}

TEST(StreamChoice, RecognisesAStreamByTheParametersThatDiffer)
{
    const QList<const char *> english {"A:t?id=1&locale=en", "A:t?id=2&locale=en"};
    EXPECT_EQ(indexOf("A:t?id=2&locale=en", english), 1);
    EXPECT_EQ(indexOf("A:t?id=2&locale=de", english), 1);
    EXPECT_EQ(indexOf("A:t?id=2", english), 1);
    EXPECT_EQ(indexOf("A:t?id=3&locale=en", english), -1);
    EXPECT_EQ(indexOf("A:t?locale=en", english), -1);
    EXPECT_EQ(indexOf("A:u?id=2&locale=en", english), -1);
    EXPECT_EQ(indexOf("A:t?id=1", {}), -1);
}

TEST(StreamChoice, TakesNoneOfSeveralThatMatch)
{
    EXPECT_EQ(indexOf("A:t?x=1", {"A:t?x=2", "A:t?x=2"}), -1);
    EXPECT_EQ(indexOf("A:t?x=2", {"A:t?x=2", "A:t?x=2"}), 0);
}

TEST(StreamChoice, AParameterThatOnlySomeHaveCountsToo)
{
    const QList<const char *> streams {"A:t", "A:t?high=1"};
    EXPECT_EQ(indexOf("A:t?locale=de", streams), 0);
    EXPECT_EQ(indexOf("A:t?high=1&locale=de", streams), 1);
}

TEST(StreamChoice, AStreamMatchesItsStationAndAStationItself)
{
    VeskRoles row;
    EXPECT_FALSE(StreamChoice::isStream(row));
    row.setPath(CMPath::fromEncoded(QStringLiteral("A:stream")));
    EXPECT_FALSE(StreamChoice::isStream(row));
    VeskRoles match;
    match.setPath(CMPath::fromEncoded(QStringLiteral("A:station")));
    VeskList<VeskRoles> matching;
    matching.append(match);
    VeskMetaData meta;
    meta.setMatchingMediaRoles(matching);
    VeskMediaData media;
    media.setMetaData(meta);
    row.setMediaData(media);
    EXPECT_TRUE(StreamChoice::isStream(row));
    EXPECT_EQ(StreamChoice::itemOf(row), match.path());
    EXPECT_FALSE(StreamChoice::mayHave(row));
    meta.setAlternativeStreams(true);
    meta.setContentPlayContextPath(CMPath::fromEncoded(QStringLiteral("A:menu")));
    media.setMetaData(meta);
    row.setMediaData(media);
    EXPECT_TRUE(StreamChoice::mayHave(row));
}

} // namespace
