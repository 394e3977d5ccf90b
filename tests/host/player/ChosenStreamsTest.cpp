// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/ChosenStreams.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace {

CMPath station(int number)
{
    return CMPath::fromEncoded(QStringLiteral("Test:station?id=%1").arg(number));
}

CMPath stream(int number)
{
    return CMPath::fromEncoded(QStringLiteral("Test:stream?id=%1").arg(number));
}

class ChosenStreamsTest : public testing::Test {
protected:
    QTemporaryDir folder;
    const QString inside = folder.filePath(QStringLiteral("state"));
};

TEST_F(ChosenStreamsTest, AreKeptForTheNextRun)
{
    {
        ChosenStreams chosen(inside);
        EXPECT_TRUE(chosen.streamOf(station(1)).isEmpty());
        chosen.remember(station(1), stream(1));
        chosen.remember(station(2), stream(2));
        chosen.remember(station(1), stream(3));
        EXPECT_EQ(chosen.streamOf(station(1)), stream(3));
    }
    const ChosenStreams chosen(inside);
    EXPECT_EQ(chosen.streamOf(station(1)), stream(3));
    EXPECT_EQ(chosen.streamOf(station(2)), stream(2));
    EXPECT_TRUE(chosen.streamOf(station(3)).isEmpty());
    EXPECT_EQ(QFile::permissions(chosen.fileName())
            & (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther),
        QFile::Permissions());
}

TEST_F(ChosenStreamsTest, AreBoundedToTheLatestStations)
{
    ChosenStreams chosen(inside);
    for (int i = 0; i <= ChosenStreams::MaxStations; ++i)
        chosen.remember(station(i), stream(i));
    EXPECT_TRUE(chosen.streamOf(station(0)).isEmpty());
    EXPECT_EQ(chosen.streamOf(station(1)), stream(1));
    chosen.remember(station(1), stream(0));
    chosen.remember(station(0), stream(0));
    EXPECT_EQ(chosen.streamOf(station(1)), stream(0));
    EXPECT_TRUE(chosen.streamOf(station(2)).isEmpty());
    const ChosenStreams again(inside);
    EXPECT_EQ(again.streamOf(station(0)), stream(0));
    EXPECT_EQ(again.streamOf(station(3)), stream(3));
}

TEST_F(ChosenStreamsTest, AreEmptyWhenTheFileCannotBeRead)
{
    ASSERT_TRUE(folder.isValid());
    const QByteArray contents[] = {"", "{", "[]", "{\"chosenStreams\":1}",
        "{\"chosenStreams\":[1,{\"station\":\"x\"},{\"station\":\"%\",\"stream\":\"A:b\"}]}",
        QByteArray(int(ChosenStreams::MaxSize) + 1, ' ')};
    for (const QByteArray &content : contents) {
        QFile file(folder.filePath(QStringLiteral("streams.json")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        ChosenStreams chosen(folder.path());
        EXPECT_TRUE(chosen.streamOf(station(1)).isEmpty());
        chosen.remember(station(1), stream(1));
        EXPECT_EQ(ChosenStreams(folder.path()).streamOf(station(1)), stream(1));
    }
}

TEST_F(ChosenStreamsTest, DoNotBlockOnAFifo)
{
    const QByteArray name = QFile::encodeName(folder.filePath(QStringLiteral("streams.json")));
    ASSERT_EQ(::mkfifo(name.constData(), 0600), 0);
    const ChosenStreams chosen(folder.path());
    EXPECT_TRUE(chosen.streamOf(station(1)).isEmpty());
}

TEST_F(ChosenStreamsTest, AreKeptInMemoryWithoutAFolder)
{
    ChosenStreams chosen {QString()};
    chosen.remember(station(1), stream(1));
    EXPECT_EQ(chosen.streamOf(station(1)), stream(1));
}

TEST_F(ChosenStreamsTest, HoldForThisRunWhenTheyCannotBeWritten)
{
    QFile inTheWay(inside);
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    ChosenStreams chosen(inside);
    chosen.remember(station(1), stream(1));
    EXPECT_EQ(chosen.streamOf(station(1)), stream(1));
}

} // namespace
