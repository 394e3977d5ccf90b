// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMReply.h"

#include "api/values/VeskRowsRoles.h"

#include "tests/api/nodes/TestNodes.h"

#include <QCoreApplication>

#include <atomic>
#include <thread>

namespace {

using Data = CMReplyData<QVariant>;

CMError someError()
{
    return CMError(QStringLiteral("some"), text("Some error"), text("Title"));
}

TEST(CMReply, KeepsItsFirstOutcome)
{
    const Answer answer;
    const CMReply<QVariant> reply = answer.reply();
    EXPECT_FALSE(reply.isFinished());
    reply.setValue(1);
    reply.setError(someError());
    reply.setValue(2);
    EXPECT_TRUE(reply.isFinished());
    EXPECT_EQ(answer.value(), QVariant(1));
    EXPECT_FALSE(answer.isError());

    const Answer failed;
    const CMReply<QVariant> failing = failed.reply();
    failing.setError(someError());
    failing.setValue(3);
    EXPECT_EQ(failed.errorName(), QStringLiteral("some"));
    EXPECT_EQ(failed.value(), QVariant());
}

TEST(CMReply, CarriesANullValueAsAnAnswer)
{
    const Answer answer;
    answer.reply().setValue(QVariant());
    EXPECT_TRUE(answer.isThere());
    EXPECT_FALSE(answer.isError());
}

TEST(CMReply, ReadsTheValueAsItsType)
{
    const auto data = std::make_shared<CMReplyData<int>>();
    CMReply<int>(data).setValue(QStringLiteral("17"));
    EXPECT_EQ(data->value(), 17);
}

TEST(CMReply, TheFirstCompletionWinsAndAllWaitingThreadsSeeIt)
{
    constexpr int Sides = 4;
    for (int round = 0; round < 200; ++round) {
        const Answer answer;
        CMReply<QVariant> reply = answer.reply();
        std::atomic<int> ready {0};
        std::vector<QVariant> seen(Sides);
        std::vector<std::thread> threads;
        const auto meet = [&ready] {
            for (++ready; ready < 2 * Sides;)
                std::this_thread::yield();
        };
        for (int i = 0; i < Sides; ++i) {
            threads.emplace_back([&, i] {
                meet();
                if (i % 2)
                    reply.setValue(i);
                else
                    reply.setError(someError());
            });
            threads.emplace_back([&, i] {
                meet();
                ASSERT_TRUE(answer.wait());
                seen[static_cast<std::size_t>(i)]
                    = answer.isError() ? QVariant(-1) : answer.value();
            });
        }
        for (std::thread &thread : threads)
            thread.join();
        for (const QVariant &value : seen)
            ASSERT_EQ(value, seen.front());
        ASSERT_TRUE(seen.front().isValid());
    }
}

TEST(CMReply, DestroyingTheLastCopyAnswersWithAnError)
{
    const Answer answer;
    {
        CMReply<QVariant> reply = answer.reply();
        const CMReply<QVariant> copy = reply;
        reply = CMReply<QVariant>();
        EXPECT_FALSE(answer.isThere());
    }
    EXPECT_TRUE(answer.isThere());
    EXPECT_EQ(answer.errorName(), CMError::UnansweredName());
    EXPECT_EQ(answer.errorText(), QStringLiteral("The request was not answered."));
}

TEST(CMReply, DoesNothingWhenItIsNull)
{
    const CMReply<QVariant> null;
    null.setValue(1);
    null.setError(someError());
    EXPECT_TRUE(null.isNull());
    EXPECT_FALSE(null.isFinished());
    EXPECT_EQ(null.data(), nullptr);
    EXPECT_TRUE(CMReply<QVariant>(nullptr).isNull());

    const CMVoidReply nothing(null.data());
    nothing.setError(someError());
    nothing.setFinished();
    EXPECT_TRUE(nothing.isNull());
    EXPECT_TRUE(nothing.error().isEmpty());
}

TEST(CMReply, CompletesThroughAVoidReplyOnce)
{
    const Answer failed;
    const CMReply<QVariant> reply = failed.reply();
    const CMVoidReply voidReply(reply.data());
    voidReply.setError(someError());
    voidReply.setFinished();
    EXPECT_EQ(voidReply.error().name(), QStringLiteral("some"));

    const Answer succeeded;
    const CMReply<QVariant> other = succeeded.reply();
    CMVoidReply(other.data()).setFinished();
    EXPECT_TRUE(succeeded.isThere());
    EXPECT_FALSE(succeeded.isError());
}

TEST(CMReply, WaitingEndsAfterItsTimeOut)
{
    const Answer answer;
    const CMReply<QVariant> reply = answer.reply();
    EXPECT_FALSE(answer.data()->waitForFinished(0));
    EXPECT_FALSE(answer.data()->waitForFinished(1));
    reply.setValue(1);
    EXPECT_TRUE(answer.data()->waitForFinished(0));
    EXPECT_TRUE(answer.data()->waitForFinished());
}

TEST(CMReply, CallsAWatcherAtOnceOnItsOwnThreadWhenItIsComplete)
{
    const Answer answer;
    answer.reply().setValue(1);
    QObject context;
    bool told = false;
    answer.data()->whenFinished(&context, [&] { told = true; });
    EXPECT_TRUE(told);
}

TEST(CMReply, CallsAWatcherThroughTheEventLoopOtherwise)
{
    const Answer answer;
    CMReply<QVariant> reply = answer.reply();
    QObject context;
    int told = 0;
    // The watcher is called without the lock, so it may read the value.
    answer.data()->whenFinished(&context, [&] { told += answer.value().toInt(); });
    reply.setValue(7);
    EXPECT_EQ(told, 0);
    EXPECT_TRUE(spinUntil([&] { return told != 0; }));
    EXPECT_EQ(told, 7);
}

TEST(CMReply, CallsAWatcherOnItsContextsThread)
{
    WorkerThread thread([] { return new QObject; });
    for (const bool before : {true, false}) {
        const Answer answer;
        CMReply<QVariant> reply = answer.reply();
        if (before)
            reply.setValue(1);
        std::promise<QThread *> toldOn;
        answer.data()->whenFinished(
            thread.object(), [&] { toldOn.set_value(QThread::currentThread()); });
        if (!before)
            reply.setValue(1);
        EXPECT_EQ(toldOn.get_future().get(), &thread);
    }
}

TEST(CMReply, ReleasesAWatcherWithItsContext)
{
    const Answer answer;
    CMReply<QVariant> reply = answer.reply();
    auto context = std::make_unique<QObject>();
    bool told = false;
    auto held = std::make_shared<int>();
    const std::weak_ptr<int> watched = held;
    answer.data()->whenFinished(context.get(), [&told, held] { told = true; });
    held.reset();
    EXPECT_FALSE(watched.expired());
    context.reset();
    EXPECT_TRUE(watched.expired()) << "what the watcher holds must not wait for the answer";
    reply.setValue(1);
    QCoreApplication::processEvents();
    EXPECT_FALSE(told);
}

TEST(CMReply, ReleasesAWatcherWhoseContextIsDestroyedBeforeItsEventLoopRuns)
{
    const Answer answer;
    CMReply<QVariant> reply = answer.reply();
    auto context = std::make_unique<QObject>();
    bool told = false;
    answer.data()->whenFinished(context.get(), [&told] { told = true; });
    reply.setValue(1);
    context.reset();
    QCoreApplication::processEvents();
    EXPECT_FALSE(told);
}

TEST(CMReply, ReleasesItsWatchersWhenBothSidesAreGone)
{
    auto data = std::make_shared<Data>();
    QObject context;
    auto held = std::make_shared<int>();
    const std::weak_ptr<int> watched = held;
    data->whenFinished(&context, [held] {});
    held.reset();
    data.reset();
    EXPECT_TRUE(watched.expired());
}

TEST(CMReply, AWatcherMayDestroyItsContext)
{
    const Answer answer;
    CMReply<QVariant> reply = answer.reply();
    auto *context = new QObject;
    bool told = false;
    answer.data()->whenFinished(context, [&told, context] {
        delete context;
        told = true;
    });
    reply.setValue(1);
    EXPECT_TRUE(spinUntil([&] { return told; }));
}

TEST(CMReply, AContextMayBeDestroyedWhileAnotherThreadCompletes)
{
    WorkerThread thread([] { return new QObject; });
    int told = 0;
    for (int round = 0; round < 500; ++round) {
        const Answer answer;
        CMReply<QVariant> reply = answer.reply();
        auto *context = new QObject;
        context->moveToThread(&thread);
        answer.data()->whenFinished(context, [&told] { ++told; });
        std::thread completing([&reply] { reply.setValue(1); });
        thread.call([context] { delete context; });
        completing.join();
    }
    thread.call([] {});
    EXPECT_LE(told, 500);
}

TEST(CMReply, CallsItsFollowerOnTheThreadThatCompletesIt)
{
    const auto data = std::make_shared<Data>();
    std::thread::id calledOn;
    QVariant seen;
    data->whenFinished([&] {
        calledOn = std::this_thread::get_id();
        seen = data->value();
    });
    std::thread::id completedOn;
    std::thread([&] {
        completedOn = std::this_thread::get_id();
        data->setValue(7);
        data->setValue(8);
    }).join();
    EXPECT_EQ(calledOn, completedOn);
    EXPECT_EQ(seen, QVariant(7));
}

TEST(CMReply, CallsAFollowerAtOnceWhenItIsComplete)
{
    const auto data = std::make_shared<Data>();
    data->setError(someError());
    int calls = 0;
    data->whenFinished([&calls] { ++calls; });
    EXPECT_EQ(calls, 1);
}

TEST(CMReply, CallsItsFollowerWhenTheLastCopyIsDestroyed)
{
    const auto data = std::make_shared<Data>();
    int calls = 0;
    data->whenFinished([&calls] { ++calls; });
    {
        const CMReply<QVariant> reply(data);
    }
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(data->error().name(), CMError::UnansweredName());
}

TEST(CMReply, KeepsTheServiceFaultThatWasSetBeforeTheAnswer)
{
    const VeskServiceFault first {VeskServiceFault::TimedOut, 0};
    const VeskServiceFault second {VeskServiceFault::HttpStatus, 503};
    Data data;
    EXPECT_TRUE(data.serviceFault().isEmpty());
    int asked = 0;
    data.setServiceFault([&] { return ++asked, first; });
    data.setServiceFault([&] { return ++asked, second; });
    EXPECT_EQ(asked, 0);
    EXPECT_TRUE(data.serviceFault() == second);
    data.setError(someError());
    data.setServiceFault([&] { return first; });
    EXPECT_TRUE(data.serviceFault() == second);
    EXPECT_EQ(asked, 2);
}

TEST(CMReply, AFaultExplainsErrorsAndScreensWithoutRowsOnly)
{
    const VeskServiceFault fault {VeskServiceFault::HttpStatus, 503};
    const auto explained = [&fault](const std::function<void(Data &)> &complete) {
        Data data;
        data.setServiceFault([&fault] { return fault; });
        complete(data);
        return CMUnexplainedFault(data) == fault;
    };
    VeskRowsRoles screen;
    screen.setRowsCount(0);
    EXPECT_TRUE(explained([](Data &data) { data.setError(someError()); }));
    EXPECT_TRUE(explained([&](Data &data) { data.setValue(screen); }));
    EXPECT_TRUE(explained([&](Data &data) { data.setValue(screen.toHash()); }));
    screen.setRowsCount(1);
    EXPECT_FALSE(explained([&](Data &data) { data.setValue(screen); }));
    EXPECT_FALSE(explained([](Data &data) { data.setValue(QVariantList {1}); }));
    EXPECT_FALSE(explained([](Data &data) { data.setValue(QVariant()); }));
    EXPECT_FALSE(explained([](Data &) {})) << "nothing is answered yet";
}

} // namespace
