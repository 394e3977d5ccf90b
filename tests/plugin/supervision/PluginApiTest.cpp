// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/runtime/PluginApi.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <sys/stat.h>

namespace {

using testing::HasSubstr;

QString library(const char *plugin)
{
    return QStringLiteral(TEST_PLUGINS "/libvesk_cb_%1.so").arg(QLatin1String(plugin));
}

/// The reason against the library; empty when there is none.
std::string problemOf(const QString &file)
{
    const auto checked = checkPluginApi(file);
    return checked ? std::string() : checked.error().toStdString();
}

TEST(PluginApi, IsOfTheSameVersionBeforeTheFirstStableOne)
{
    EXPECT_EQ(apiProblem(0, 1), QString());
    for (const auto &[major, minor] : {std::pair(0, 0), std::pair(0, 2), std::pair(1, 0),
             std::pair(1, 1), std::pair(0, -1), std::pair(-1, 1)})
        EXPECT_NE(apiProblem(major, minor), QString()) << major << '.' << minor;
}

TEST(PluginApi, StandsInANoteOfTheLibrary)
{
    EXPECT_EQ(problemOf(library("good")), "");
    EXPECT_EQ(problemOf(library("tracing")), "");
    EXPECT_EQ(problemOf(library("tracing_later")),
        "it was built with version 0.9 of the SDK, and this host has 0.1");
    EXPECT_EQ(problemOf(library("tracing_none")),
        "it does not say with which version of the SDK it was built");
}

TEST(PluginApi, IsMissingInWhatIsNoLibrary)
{
    const QTemporaryDir folder;
    const auto written = [&folder](const QByteArray &content) {
        const QString name = folder.filePath(QStringLiteral("x.so"));
        QFile file(name);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(content);
        return name;
    };
    EXPECT_THAT(problemOf(folder.filePath(QStringLiteral("missing"))), HasSubstr("No such file"));
    EXPECT_NE(problemOf(folder.path()), "");
    const QString fifo = folder.filePath(QStringLiteral("fifo"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    EXPECT_NE(problemOf(fifo), "") << "and nobody waits for a writer";
    EXPECT_THAT(problemOf(written("")), HasSubstr("is no library"));
    EXPECT_THAT(problemOf(written("no library")), HasSubstr("is no library"));

    // Cut off and damaged at any place: an answer, and no crash.
    QFile good(library("tracing"));
    ASSERT_TRUE(good.open(QIODevice::ReadOnly));
    const QByteArray whole = good.readAll();
    // The owner, padded to eight bytes, and the two numbers.
    const int end = whole.indexOf(QByteArray("Vesk\0\0\0\0", 8)) + 16;
    ASSERT_GT(end, 16);
    for (int size = 4; size < end; ++size)
        EXPECT_NE(problemOf(written(whole.left(size))), "") << size;
    for (int at = 4; at < 1024; ++at) {
        QByteArray damaged = whole;
        damaged[at] = static_cast<char>(~damaged.at(at));
        static_cast<void>(checkPluginApi(written(damaged)));
    }
}

} // namespace
