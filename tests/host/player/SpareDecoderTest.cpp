// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/SpareDecoder.h"

#include "host/player/DecoderProcess.h"
#include "tests/support/Text.h"
#include "tests/support/WorkerThread.h"

#include <QFile>

#include <gtest/gtest.h>

#include <csignal>
#include <unistd.h>

namespace {

/// The processes that this thread has started and not reaped.
QList<pid_t> children()
{
    QFile file(text("/proc/self/task/%1/children").arg(::gettid()));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QList<pid_t> pids;
    for (const QByteArray &pid : file.readAll().split(' ')) {
        if (pid.toInt() > 0)
            pids.append(pid.toInt());
    }
    return pids;
}

TEST(SpareDecoderTest, IsThereForTheNextStreamOnly)
{
    SpareDecoder spare;
    spare.prepare();
    spare.prepare();
    const QList<pid_t> waiting = children();
    ASSERT_EQ(waiting.size(), 1);
    const auto taken = spare.take();
    EXPECT_EQ(taken->pid(), waiting.first());
    const auto another = spare.take();
    ASSERT_TRUE(another->isRunning());
    EXPECT_NE(another->pid(), taken->pid());
}

TEST(SpareDecoderTest, OneThatHasDiedIsNotTaken)
{
    SpareDecoder spare;
    spare.prepare();
    const pid_t first = children().value(0);
    ASSERT_GT(first, 0);
    ::kill(first, SIGKILL);
    EXPECT_TRUE(spinUntil([&spare, first] {
        spare.prepare();
        return !children().contains(first);
    }));
    const auto taken = spare.take();
    EXPECT_NE(taken->pid(), first);
    EXPECT_FALSE(taken->hasEnded());
}

TEST(SpareDecoderTest, EndsWhenNobodyTakesIt)
{
    SpareDecoder spare(std::chrono::milliseconds(50));
    spare.prepare();
    ASSERT_EQ(children().size(), 1);
    EXPECT_TRUE(spinUntil([] { return children().isEmpty(); }));
    EXPECT_TRUE(spare.take()->isRunning());
}

TEST(SpareDecoderTest, LeavesNoProcessBehind)
{
    {
        SpareDecoder spare;
        spare.prepare();
        ASSERT_EQ(children().size(), 1);
    }
    EXPECT_EQ(children(), QList<pid_t>());
}

} // namespace
