// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMContextCall.h"

#include "tests/support/WorkerThread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace {

TEST(CMContextCall, RunsOnceForAllTriggersBeforeTheLoopRuns)
{
    QObject context;
    int calls = 0;
    const auto call
        = CMContextCall::create(&context, CMContextCall::EachTime, [&calls] { ++calls; });
    call->trigger();
    call->trigger();
    EXPECT_EQ(calls, 0);
    QCoreApplication::processEvents();
    EXPECT_EQ(calls, 1);
    call->trigger();
    QCoreApplication::processEvents();
    EXPECT_EQ(calls, 2);
    call->close();
}

TEST(CMContextCall, RunsAgainForATriggerFromInside)
{
    QObject context;
    int calls = 0;
    std::shared_ptr<CMContextCall> call;
    call = CMContextCall::create(&context, CMContextCall::EachTime, [&] {
        if (++calls < 3)
            call->trigger();
    });
    call->trigger();
    EXPECT_TRUE(spinUntil([&] { return calls == 3; }));
    call->close();
}

TEST(CMContextCall, DoesNotRunOnceItIsClosed)
{
    QObject context;
    int calls = 0;
    const auto call
        = CMContextCall::create(&context, CMContextCall::EachTime, [&calls] { ++calls; });
    call->trigger();
    call->close();
    call->trigger();
    QCoreApplication::processEvents();
    EXPECT_EQ(calls, 0);
    EXPECT_FALSE(call->isOpen());
}

TEST(CMContextCall, MayBeClosedFromInside)
{
    QObject context;
    int calls = 0;
    std::shared_ptr<CMContextCall> call;
    call = CMContextCall::create(&context, CMContextCall::EachTime, [&] {
        ++calls;
        call->trigger();
        call->close();
    });
    call->trigger();
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    EXPECT_EQ(calls, 1);
}

TEST(CMContextCall, ReleasesItsFunctionWithTheContext)
{
    auto held = std::make_shared<int>();
    const std::weak_ptr<int> watched = held;
    auto context = std::make_unique<QObject>();
    const auto call = CMContextCall::create(context.get(), CMContextCall::EachTime, [held] {});
    held.reset();
    context.reset();
    EXPECT_TRUE(watched.expired());
    EXPECT_FALSE(call->isOpen());
    call->trigger();
}

TEST(CMContextCall, CanBeClosedAfterItsThreadHasEnded)
{
    QObject *context = nullptr;
    std::shared_ptr<CMContextCall> call;
    {
        WorkerThread thread([&] {
            context = new QObject;
            call = CMContextCall::create(context, CMContextCall::EachTime, [] {});
            return new QObject;
        });
    }
    EXPECT_FALSE(call->isElsewhere());
    call->close();
    delete context;
}

TEST(CMContextCall, ManyThreadsMayTriggerItWhileItsContextIsDestroyed)
{
    WorkerThread home([] { return new QObject; });
    for (int round = 0; round < 200; ++round) {
        QObject *context = nullptr;
        std::shared_ptr<CMContextCall> call;
        bool gone = false;
        bool calledLate = false;
        home.call([&] {
            context = new QObject;
            call = CMContextCall::create(
                context, CMContextCall::EachTime, [&] { calledLate = calledLate || gone; });
        });
        std::vector<std::thread> threads;
        for (int i = 0; i < 3; ++i) {
            threads.emplace_back([&call] {
                for (int n = 0; n < 50; ++n)
                    call->trigger();
            });
        }
        home.call([&] {
            delete context;
            gone = true;
        });
        for (std::thread &thread : threads)
            thread.join();
        home.call([] {});
        ASSERT_FALSE(calledLate);
    }
}

} // namespace
