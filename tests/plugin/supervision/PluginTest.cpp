// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/supervision/InProcessPlugin.h"
#include "plugin/supervision/SupervisedPlugin.h"

#include "api/nodes/CMRootWorker.h"
#include "api/nodes/CMValuesWorker.h"
#include "api/values/VeskRowsRoles.h"
#include "api/values/VeskValuePaths.h"
#include "tests/api/nodes/TestNodes.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <optional>

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

/// What the one arrangement does, the other does too.
class RoamingPluginTest : public PluginTest {
protected:
    RoamingPluginTest()
        : m_plugin(make(file("roaming")))
    {
        EXPECT_TRUE(load(*m_plugin));
        EXPECT_EQ(m_plugin->error(), QString());
    }

    Answer ask(const char *what) { return getData(m_root, path(what), {VeskRoles::Value()}); }
    /// The plug-in's answer as text, or "error: " with the error's name.
    std::string get(const char *what)
    {
        const Answer answer = ask(what);
        EXPECT_TRUE(answer.spin()) << what;
        return answer.isError() ? "error: " + answer.errorName().toStdString()
                                : answer.list().value(0).toString().toStdString();
    }
    bool becomes(const char *what, const char *wanted)
    {
        return spinUntil([&] { return get(what) == wanted; });
    }

    const std::unique_ptr<Plugin> m_plugin;
};

const std::string NoNode = "error: " + CMError::NoNodeName().toStdString();

TEST_P(RoamingPluginTest, IsReachedAtForeignPathsAsLongAsItServesThem)
{
    const std::string instance = get("Roaming:instance");
    EXPECT_EQ(get("player:roaming"), instance);
    EXPECT_EQ(get("player:roaming/deep/down?a=b"), instance);
    EXPECT_EQ(get("player:roam"), NoNode);
    EXPECT_TRUE(m_plugin->serves(path("player:roaming/x")));
    EXPECT_EQ(get("Roaming:add?path=elsewhere%3Ax"), "1");
    EXPECT_EQ(get("elsewhere:x"), instance);
    EXPECT_EQ(get("Roaming:remove"), "1");
    EXPECT_EQ(get("player:roaming"), NoNode);
    EXPECT_EQ(get("elsewhere:x"), NoNode);
    EXPECT_FALSE(m_plugin->serves(path("player:roaming/x")));
    EXPECT_EQ(get("Roaming:add?path=player%3Aroaming"), "1");
    EXPECT_EQ(get("player:roaming"), instance);
    bool unloaded = false;
    QObject::connect(m_plugin.get(), &Plugin::unloaded, [&] { unloaded = true; });
    m_plugin->unload();
    ASSERT_TRUE(spinUntil([&] { return unloaded; }));
    EXPECT_EQ(get("player:roaming"), NoNode);
}

TEST_P(RoamingPluginTest, DoesNotAnswerForOthers)
{
    const std::string instance = get("Roaming:instance");
    EXPECT_EQ(get("Roaming:add?path=system%3Astolen"), "1");
    EXPECT_EQ(get("system:stolen"), NoNode);
    EXPECT_EQ(get("Roaming:instance"), instance) << "it goes on";
    // A prefix that only the host knows of.
    CMValuesWorker others;
    others.define(path("Others:x"), VeskValue::fromInt(7));
    m_root.addWorker(QStringLiteral("Others"), &others);
    EXPECT_EQ(get("Roaming:add?path=Others%3Ay"), "1");
    EXPECT_EQ(get("Others:y"), NoNode);
    EXPECT_EQ(get("Roaming:instance"), instance);
    m_root.removeWorker(&others);
}

TEST_P(RoamingPluginTest, ItsChangesAtForeignPathsReachTheSubscribers)
{
    QObject context;
    std::vector<CMChange> changes;
    const auto subscription = m_root.subscribe(path("player:roaming/a"), &context,
        [&](const CMChange &change) { changes.push_back(change); });
    EXPECT_EQ(get("Roaming:change?path=player%3Aroaming%2Fb"), "1");
    EXPECT_EQ(get("Roaming:change?path=player%3Aroaming%2Fa"), "1");
    ASSERT_TRUE(spinUntil([&] { return !changes.empty(); }));
    EXPECT_EQ(changes.size(), 1U);
    EXPECT_EQ(changes.front().path, path("player:roaming/a"));
    EXPECT_EQ(changes.front().kind, CMSubscribe::ValueChanged());
}

TEST_P(RoamingPluginTest, IsAtItsForeignPathsAgainAfterARestart)
{
    const std::string former = get("player:roaming");
    QObject context;
    int resets = 0;
    const auto subscription
        = m_root.subscribe(path("player:roaming/a"), &context, [&](const CMChange &change) {
              resets += change.kind == CMSubscribe::RowsChangeReset() ? 1 : 0;
          });
    bool restarted = false;
    std::optional<Answer> foreign;
    // As soon as the restart has begun: a moment later it may be over.
    QObject::connect(
        m_plugin.get(), &Plugin::restarting, &context,
        [&] {
            EXPECT_FALSE(restarted);
            foreign.emplace(ask("player:roaming"));
        },
        Qt::QueuedConnection);
    QObject::connect(m_plugin.get(), &Plugin::restarted, [&] { restarted = true; });
    // So that the former one has answered before the restart, also if the machine stands still.
    m_plugin->readSettings().setTimes({std::chrono::seconds(4), std::chrono::seconds(8)});
    m_plugin->readSettings().noteKept(path("settings:a"), VeskValue::fromInt(1));
    m_plugin->readSettings().noteChanged(path("settings:a"), VeskValue::fromInt(2));
    EXPECT_EQ(get("player:roaming"), former) << "its own paths are held alone until the restart";
    const Answer own = ask("Roaming:instance");
    ASSERT_TRUE(spinUntil([&] { return foreign.has_value(); }, 20000));
    ASSERT_TRUE(own.spin() && foreign->spin());
    ASSERT_TRUE(spinUntil([&] { return restarted; }));
    EXPECT_FALSE(foreign->isError()) << foreign->errorText().toStdString();
    EXPECT_NE(foreign->list().value(0).toString().toStdString(), former);
    EXPECT_EQ(foreign->list(), own.list());
    EXPECT_TRUE(spinUntil([&] { return resets > 0; })) << "subscribers have to read again";
}

TEST_P(RoamingPluginTest, IsToldWhichRequestsAreCancelled)
{
    const Answer read = ask("Roaming:wait");
    const Answer row = matchRow(m_root, path("Roaming:wait"), VeskRoles::Value(), 1);
    const Answer change = setData(m_root, path("Roaming:wait"), VeskRoles::Value(), 1);
    const Answer kept = ask("Roaming:wait");
    ASSERT_TRUE(becomes("Roaming:waiting", "4"));
    EXPECT_EQ(get("Roaming:cancelled"), "0");
    read.data()->setError(CMCancelledError());
    EXPECT_TRUE(becomes("Roaming:cancelled", "1"));
    row.data()->setError(CMCancelledError());
    EXPECT_TRUE(becomes("Roaming:cancelled", "2"));
    change.data()->setError(CMCancelledError());
    EXPECT_EQ(get("Roaming:answer"), "1");
    ASSERT_TRUE(kept.spin());
    EXPECT_EQ(kept.list(), QVariantList {QStringLiteral("late")});
    EXPECT_EQ(get("Roaming:cancelled"), "2") << "neither the change nor what was answered";
}

INSTANTIATE_TEST_SUITE_P(Arrangements, RoamingPluginTest,
    testing::Values(Arrangement::InProcess, Arrangement::ProcessOfItsOwn),
    [](const testing::TestParamInfo<Arrangement> &tested) {
        return tested.param == Arrangement::InProcess ? "inProcess" : "processOfItsOwn";
    });

TEST_P(PluginTest, ReportsWhyAFileCannotBeLoaded)
{
    EXPECT_THAT(errorOf(file("missing")), testing::HasSubstr("No such file"));
    EXPECT_THAT(errorOf(file("noentry")), testing::HasSubstr("worker_create"));
    EXPECT_THAT(errorOf(file("null")), testing::HasSubstr("made no worker"));
    EXPECT_THAT(errorOf(file("throwing")), testing::HasSubstr("no licence"));
    EXPECT_THAT(errorOf(file("tracing_later")), testing::HasSubstr("0.9 of the SDK"));
    EXPECT_THAT(errorOf(file("tracing_none")), testing::HasSubstr("does not say"));

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
