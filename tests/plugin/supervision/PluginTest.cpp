// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/supervision/InProcessPlugin.h"
#include "plugin/supervision/SupervisedPlugin.h"

#include "api/nodes/CMRootWorker.h"
#include "api/nodes/CMValuesWorker.h"
#include "api/values/VeskRowsRoles.h"
#include "api/values/VeskValuePaths.h"
#include "tests/support/WorkerThread.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace {

QString file(const char *plugin)
{
    return QStringLiteral(TEST_PLUGINS "/libvesk_cb_%1.so").arg(QLatin1String(plugin));
}

enum class Arrangement { InProcess, ProcessOfItsOwn };

class PluginTest : public testing::TestWithParam<Arrangement> {
protected:
    PluginTest()
    {
        m_values.define(VeskSystemMemberIdPath(), VeskValue::fromString(QStringLiteral("me")));
        m_root.addWorker(QStringLiteral("system"), &m_values);
    }
    ~PluginTest() override { m_root.removeWorker(&m_values); }

    std::unique_ptr<Plugin> make(const QString &pluginFile, const QVariantHash &config = {})
    {
        if (GetParam() == Arrangement::InProcess)
            return std::make_unique<InProcessPlugin>(pluginFile, config);
        PluginProcessOptions options;
        options.program = QStringLiteral(PLUGIN_PROGRAM);
        options.start = [=] {
            StartMessage message;
            message.file = pluginFile;
            message.config = config;
            message.logLevel = QStringLiteral("error");
            message.valuePrefixes = QStringList {QStringLiteral("system")};
            const CMPath id = VeskSystemMemberIdPath();
            message.values.append({id, m_values.value(id).toHash(), false, TrString()});
            return message;
        };
        return std::make_unique<SupervisedPlugin>(pluginFile, options);
    }

    /// Waits until loading \a plugin has finished, with or without success.
    static bool load(Plugin &plugin)
    {
        bool finished = false;
        QObject::connect(&plugin, &Plugin::loadFinished, [&] { finished = true; });
        plugin.load();
        return spinUntil([&] { return finished; });
    }

    std::string errorOf(const QString &pluginFile)
    {
        const std::unique_ptr<Plugin> plugin = make(pluginFile);
        EXPECT_TRUE(load(*plugin));
        EXPECT_TRUE(plugin->root().isEmpty());
        EXPECT_TRUE(spinUntil([&] { return !plugin->isRunning(); }));
        return plugin->error().toStdString();
    }

    CMRootWorker m_root;
    CMValuesWorker m_values;
};

TEST_P(PluginTest, LoadsAWorkerOnAThreadOfItsOwn)
{
    const std::unique_ptr<Plugin> plugin
        = make(file("good"), {{VeskService_Id(), QStringLiteral("goodie")}});
    ASSERT_TRUE(load(*plugin));
    EXPECT_EQ(plugin->error(), QString());
    EXPECT_EQ(plugin->root().toEncoded(), QStringLiteral("Good:"));
    EXPECT_TRUE(plugin->isRunning());

    const auto rows = std::make_shared<CMReplyData<QVariant>>();
    m_root.request(CMGetRowsRequest(plugin->root(),
        {VeskRoles::Id(), VeskRoles::Description(), VeskRoles::Value()}, 0, 9,
        CMReply<QVariant>(rows)));
    ASSERT_TRUE(spinUntil([&] { return rows->isFinished(); }));
    const QVariantList row = VeskRowsRoles(rows->value().toHash()).rows().value(0).toList();
    EXPECT_EQ(row.value(0), QStringLiteral("goodie")) << "its configuration";
    EXPECT_EQ(row.value(1), QStringLiteral("libvesk_cb_good")) << "its thread";
    EXPECT_EQ(VeskValue(row.value(2).toHash()).string_(), QStringLiteral("me"))
        << "a value of the host's, read while it was created";
}

TEST_P(PluginTest, UnloadingRemovesItsPaths)
{
    const std::unique_ptr<Plugin> plugin = make(file("good"));
    ASSERT_TRUE(load(*plugin));
    EXPECT_TRUE(m_root.prefixes().contains(QStringLiteral("Good")));
    bool unloaded = false;
    QObject::connect(plugin.get(), &Plugin::unloaded, [&] { unloaded = true; });
    plugin->unload();
    ASSERT_TRUE(spinUntil([&] { return unloaded; }));
    EXPECT_FALSE(plugin->isRunning());
    EXPECT_FALSE(m_root.prefixes().contains(QStringLiteral("Good")));
}

TEST_P(PluginTest, CanBeLoadedRepeatedly)
{
    for (int i = 0; i < 20; ++i) {
        const std::unique_ptr<Plugin> plugin = make(file("good"));
        ASSERT_TRUE(load(*plugin));
        EXPECT_EQ(plugin->root().toEncoded(), QStringLiteral("Good:"));
    }
    EXPECT_FALSE(m_root.prefixes().contains(QStringLiteral("Good")));
}

TEST_P(PluginTest, CanBeUnloadedWhileItLoads)
{
    const std::unique_ptr<Plugin> plugin = make(file("good"));
    plugin->load();
    plugin->unload();
    EXPECT_TRUE(spinUntil([&] { return !plugin->isRunning(); }));
}

TEST_P(PluginTest, CanBeDestroyedWithoutHavingBeenLoaded)
{
    const std::unique_ptr<Plugin> plugin = make(file("good"));
    EXPECT_FALSE(plugin->isRunning());
}

TEST_P(PluginTest, ReportsWhyAFileCannotBeLoaded)
{
    EXPECT_THAT(errorOf(file("missing")), testing::HasSubstr("No such file"));
    EXPECT_THAT(errorOf(file("noentry")), testing::HasSubstr("worker_create"));
    EXPECT_THAT(errorOf(file("null")), testing::HasSubstr("made no worker"));
    EXPECT_THAT(errorOf(file("throwing")), testing::HasSubstr("no licence"));

    QTemporaryDir folder;
    QFile noLibrary(folder.filePath(QStringLiteral("no.so")));
    ASSERT_TRUE(noLibrary.open(QIODevice::WriteOnly));
    noLibrary.write("not a library");
    noLibrary.close();
    EXPECT_THAT(errorOf(noLibrary.fileName()), testing::Not(testing::IsEmpty()));
}

INSTANTIATE_TEST_SUITE_P(Arrangements, PluginTest,
    testing::Values(Arrangement::InProcess, Arrangement::ProcessOfItsOwn),
    [](const testing::TestParamInfo<Arrangement> &tested) {
        return tested.param == Arrangement::InProcess ? "inProcess" : "processOfItsOwn";
    });

} // namespace
