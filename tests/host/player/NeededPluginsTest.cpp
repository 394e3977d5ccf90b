// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "media/NeededPlugins.h"

#include "media/Decoders.h"
#include "media/GstHandles.h"

#include <QTemporaryDir>

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <string>

namespace fs = std::filesystem;

namespace {

constexpr const char *SystemPath = "GST_PLUGIN_SYSTEM_PATH_1_0";
constexpr const char *Registry = "GST_REGISTRY_1_0";

/// An environment that says nothing about GStreamer, until the end of the test.
class NeededPlugins : public testing::Test {
protected:
    NeededPlugins()
    {
        for (const char *name : {SystemPath, Registry, "GST_PLUGIN_SYSTEM_PATH", "GST_REGISTRY"}) {
            if (const char *value = std::getenv(name))
                m_before[name] = value;
            ::unsetenv(name);
            m_names.push_back(name);
        }
    }
    ~NeededPlugins() override
    {
        for (const char *name : m_names) {
            const auto before = m_before.find(name);
            if (before == m_before.end())
                ::unsetenv(name);
            else
                ::setenv(name, before->second.c_str(), 1);
        }
    }

    fs::path folder() const { return fs::path(m_folder.path().toStdString()) / "cache/gstreamer"; }
    fs::path links() const { return folder() / "plugins"; }

private:
    const QTemporaryDir m_folder;
    std::vector<const char *> m_names;
    std::map<std::string, std::string> m_before;
};

TEST_F(NeededPlugins, AreLinkedAndTheirRegistryIsBesideThem)
{
    ASSERT_TRUE(useNeededPluginsOnly(folder()));
    EXPECT_EQ(std::getenv(SystemPath), links().string());
    EXPECT_EQ(fs::path(std::getenv(Registry)).parent_path(), folder());
    EXPECT_TRUE(fs::is_regular_file(links() / "libgstcoreelements.so"));
    EXPECT_EQ(fs::status(folder()).permissions() & fs::perms::all, fs::perms::owner_all);
}

TEST_F(NeededPlugins, LinksThatLeadElsewhereAreMended)
{
    ASSERT_TRUE(useNeededPluginsOnly(folder()));
    ::unsetenv(SystemPath);
    ::unsetenv(Registry);
    const fs::path link = links() / "libgstapp.so";
    fs::remove(link);
    fs::create_symlink("/nowhere", link);
    ASSERT_TRUE(useNeededPluginsOnly(folder()));
    EXPECT_TRUE(fs::is_regular_file(link));
}

TEST_F(NeededPlugins, WhatTheEnvironmentSaysCounts)
{
    ::setenv("GST_REGISTRY", "/somewhere", 1);
    EXPECT_TRUE(useNeededPluginsOnly(folder()));
    EXPECT_FALSE(fs::exists(folder()));
    EXPECT_EQ(std::getenv(SystemPath), nullptr);
}

TEST_F(NeededPlugins, WithoutAFolderAllArePresent)
{
    const fs::path parent = folder().parent_path();
    std::ofstream(parent.string()).put('x');
    EXPECT_FALSE(useNeededPluginsOnly(folder()));
    EXPECT_EQ(std::getenv(SystemPath), nullptr);
    EXPECT_EQ(std::getenv(Registry), nullptr);
}

/// Of the elements that this machine has: those that decode, and those that autoaudiosink may
/// choose.
TEST_F(NeededPlugins, HaveEveryElementThatPlaysRadio)
{
    ASSERT_TRUE(useNeededPluginsOnly(folder()));
    const fs::path linked = links();
    ::unsetenv(SystemPath);
    ::unsetenv(Registry);
    startGStreamer(); // with all of its plug-ins, unless another test started it
    int seen = 0;
    GList *all = gst_registry_get_feature_list(gst_registry_get(), GST_TYPE_ELEMENT_FACTORY);
    for (GList *at = all; at; at = at->next) {
        auto *factory = GST_ELEMENT_FACTORY(at->data);
        const bool isDevice
            = gst_element_factory_list_is_type(factory, GST_ELEMENT_FACTORY_TYPE_AUDIOVIDEO_SINKS)
            && std::string(gst_element_factory_get_metadata(factory, GST_ELEMENT_METADATA_KLASS))
                == "Sink/Audio"
            && gst_plugin_feature_get_rank(GST_PLUGIN_FEATURE(factory)) >= GST_RANK_MARGINAL;
        if (!isDevice && !isAllowedDecoder(factory))
            continue;
        const std::string plugin = gst_plugin_feature_get_plugin_name(GST_PLUGIN_FEATURE(factory));
        EXPECT_TRUE(fs::is_symlink(linked / ("libgst" + plugin + ".so")))
            << GST_OBJECT_NAME(factory) << " of " << plugin;
        ++seen;
    }
    gst_plugin_feature_list_free(all);
    EXPECT_GT(seen, 10);
}

} // namespace
