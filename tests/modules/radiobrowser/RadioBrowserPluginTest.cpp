// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMRootWorker.h"
#include "api/values/VeskRowsRoles.h"
#include "api/values/VeskValuePaths.h"
#include "tests/support/Text.h"
#include "tests/support/WorkerThread.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <dlfcn.h>

#include <array>
#include <cstdio>

TEST(RadioBrowserPluginTest, ExportsItsEntryAndNothingElse)
{
    FILE *pipe
        = popen("nm -D --defined-only --extern-only --format=posix '" RADIOBROWSER_PLUGIN "'", "r");
    ASSERT_NE(pipe, nullptr);
    QByteArray output;
    std::array<char, 4096> buffer;
    while (const std::size_t size = fread(buffer.data(), 1, buffer.size(), pipe))
        output.append(buffer.data(), static_cast<int>(size));
    EXPECT_EQ(pclose(pipe), 0);
    EXPECT_EQ(output.count('\n'), 1) << output.toStdString();
    EXPECT_TRUE(output.startsWith("worker_create T ")) << output.toStdString();
}

TEST(RadioBrowserPluginTest, ServesItsFirstScreenWithoutTheNetwork)
{
    void *const library = dlopen(RADIOBROWSER_PLUGIN, RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    ASSERT_NE(library, nullptr) << dlerror();
    const auto entry
        = reinterpret_cast<void *(*)(const char *, void *)>(dlsym(library, "worker_create"));
    ASSERT_NE(entry, nullptr);
    CMRootWorker root;
    const WorkerThread worker([entry]() -> QObject * {
        QVariantHash config {{VeskService_Id(), text("radiobrowser")}};
        return static_cast<QObject *>(entry("RadioBrowser", &config));
    });
    const auto data = std::make_shared<CMReplyData<QVariant>>();
    root.request(CMGetRowsRequest(CMPath(text("RadioBrowser"), QString()), {VeskRoles::Title()}, 0,
        99, CMReply<QVariant>(data)));
    ASSERT_TRUE(data->waitForFinished(60000));
    EXPECT_EQ(VeskRowsRoles(VeskHash(data->value().toHash())).rowsCount(), 8);
}
