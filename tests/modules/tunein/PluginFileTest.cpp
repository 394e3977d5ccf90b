// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/VeskValuePaths.h"
#include "tests/modules/tunein/ProcessUsage.h"
#include "tests/modules/tunein/TuneInHost.h"
#include "tests/support/WorkerThread.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <dlfcn.h>

#include <array>
#include <cstdio>

using testing::ElementsAre;

namespace {

QStringList linesOf(const char *command)
{
    QByteArray output;
    FILE *pipe = popen(command, "r");
    EXPECT_NE(pipe, nullptr);
    std::array<char, 4096> buffer;
    while (const std::size_t size = fread(buffer.data(), 1, buffer.size(), pipe))
        output.append(buffer.data(), static_cast<int>(size));
    EXPECT_EQ(pclose(pipe), 0) << command;
    return QString::fromLocal8Bit(output).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

/// The plug-in, loaded as a host does.
class PluginFileTest : public testing::Test, protected TuneInHost {
protected:
    PluginFileTest()
        : m_library(dlopen(VESK_TUNEIN_PLUGIN, RTLD_NOW | RTLD_LOCAL))
    {
        EXPECT_NE(m_library, nullptr) << dlerror();
        answer("/Browse.ashx",
            screen(R"({"element":"outline","type":"link","text":"Music","key":"presets"})"));
    }

    std::unique_ptr<WorkerThread> create()
    {
        const auto entry
            = reinterpret_cast<void *(*)(const char *, void *)>(dlsym(m_library, "worker_create"));
        EXPECT_NE(entry, nullptr);
        return std::make_unique<WorkerThread>([entry]() -> QObject * {
            QVariantHash config {{VeskService_Id(), "tunein"_s}};
            return static_cast<QObject *>(entry("TuneIn", &config));
        });
    }

private:
    void *m_library;
};

} // namespace

TEST_F(PluginFileTest, ExportsOnlyItsEntry)
{
    const QStringList symbols
        = linesOf("nm -D --defined-only --extern-only --format=posix '" VESK_TUNEIN_PLUGIN "'");
    ASSERT_EQ(symbols.size(), 1) << symbols.join(QLatin1Char('\n')).toStdString();
    EXPECT_TRUE(symbols.constFirst().startsWith("worker_create T "_s));
}

TEST_F(PluginFileTest, ServesRequests)
{
    const std::unique_ptr<WorkerThread> worker = create();
    EXPECT_STREQ(worker->object()->metaObject()->className(), "CMTuneInWorker");
    EXPECT_EQ(rows("TuneIn:"_s).texts(), QStringList("Music"_s));
}

TEST_F(PluginFileTest, ReleasesThreadsAndDescriptorsWithItsWorker)
{
    create();
    closeServer();
    const ProcessUsage before = ProcessUsage::now();
    openServer();
    for (int i = 0; i < 50; ++i) {
        const std::unique_ptr<WorkerThread> worker = create();
        EXPECT_EQ(rows("TuneIn:"_s).count, 1);
    }
    closeServer();
    // The kernel still lists a thread for a moment after it was joined.
    EXPECT_TRUE(spinUntil([&] { return ProcessUsage::now().threads <= before.threads; }));
    EXPECT_EQ(ProcessUsage::now().descriptors, before.descriptors);
}
