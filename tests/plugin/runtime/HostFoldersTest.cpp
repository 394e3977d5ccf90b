// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/runtime/HostFolders.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

/// Sets an environment variable until it is destroyed.
class Variable {
public:
    Variable(const char *name, const QByteArray &value)
        : m_name(name)
        , m_before(qgetenv(name))
    {
        qputenv(name, value);
    }
    ~Variable() { m_before.isNull() ? qunsetenv(m_name) : qputenv(m_name, m_before); }
    Q_DISABLE_COPY(Variable)

private:
    const char *const m_name;
    const QByteArray m_before;
};

void make(const QString &file)
{
    QDir().mkpath(QFileInfo(file).path());
    QFile made(file);
    EXPECT_TRUE(made.open(QIODevice::WriteOnly));
}

TEST(HostFolders, ThoseOfTheEnvironmentAndTheUserComeBeforeTheProgramsOwn)
{
    const Variable path("VESK_PLUGIN_PATH", "/one::/two/../three");
    const Variable home("HOME", "/home/somebody");
    const QStringList folders = HostFolders::pluginFolders();
    EXPECT_EQ(folders.mid(0, folders.size() - 1),
        QStringList({QStringLiteral("/one"), QStringLiteral("/three"),
            QStringLiteral("/home/somebody/.local/lib/vesk/plugins")}));
    EXPECT_TRUE(folders.last().endsWith(QStringLiteral("/vesk/plugins")));
}

TEST(HostFolders, WithoutAHomeThereIsNoFolderOfTheUsers)
{
    const Variable path("VESK_PLUGIN_PATH", "");
    for (const char *none : {"", "/", "//", "relative"}) {
        const Variable home("HOME", none);
        EXPECT_EQ(HostFolders::pluginFolders().size(), 1) << none;
    }
}

TEST(HostFolders, TheCacheIsTheUsers)
{
    {
        const Variable cache("XDG_CACHE_HOME", "/var/cache/somebody/");
        EXPECT_EQ(HostFolders::cache(), QStringLiteral("/var/cache/somebody/vesk"));
    }
    for (const char *none : {"", "relative"}) {
        const Variable cache("XDG_CACHE_HOME", none);
        const Variable home("HOME", "/home/somebody");
        EXPECT_EQ(HostFolders::cache(), QStringLiteral("/home/somebody/.cache/vesk"));
        const Variable noHome("HOME", "/");
        EXPECT_EQ(HostFolders::cache(), QString());
    }
}

TEST(HostFolders, TheFirstPluginOfANameCounts)
{
    const QTemporaryDir folder;
    const auto file = [&folder](const char *name) { return folder.filePath(QLatin1String(name)); };
    for (const char *each : {"a/two.so", "a/one.so", "a/one.json", "b/one.so", "b/three.so"})
        make(file(each));
    const auto found = HostFolders::pluginsIn({file("a"), file("missing"), file("b"), file("a")});
    EXPECT_EQ(found.used, QStringList({file("a/one.so"), file("a/two.so"), file("b/three.so")}));
    EXPECT_EQ(found.hidden, QStringList({file("b/one.so")}));
    EXPECT_EQ(found.instead, QStringList({file("a/one.so")}));
}

} // namespace
