// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMRootWorker.h"

#include "tests/api/nodes/TestNodes.h"
#include "tests/support/LogCapture.h"

#include <QThread>

#include <atomic>
#include <csignal>
#include <memory>
#include <thread>
#include <vector>

namespace {

const QStringList valueRole {VeskRoles::Value()};

/// Responds with its own name, on the requesting thread.
class InlineWorker : public CMAbstractWorker {
public:
    explicit InlineWorker(const char *name, std::function<void()> whenAsked = nullptr)
        : m_name(QString::fromUtf8(name))
        , m_whenAsked(std::move(whenAsked))
    {
    }

    void request(CMRequest request) override
    {
        if (m_whenAsked)
            m_whenAsked();
        request.reply().setValue(QVariantList {m_name});
    }

private:
    const QString m_name;
    const std::function<void()> m_whenAsked;
};

TEST(CMRootWorker, IsTheProcesssRootWhileItExists)
{
    EXPECT_EQ(CMRoot(), nullptr);
    {
        const CMRootWorker root;
        EXPECT_EQ(CMRoot(), &root);
    }
    EXPECT_EQ(CMRoot(), nullptr);
}

TEST(CMRootWorkerDeathTest, HasNoSecond)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(
        {
            CMRootWorker first;
            CMRootWorker second;
        },
        testing::KilledBySignal(SIGABRT), "");
}

TEST(CMRootWorker, RoutesByPrefix)
{
    CMRootWorker root;
    InlineWorker a("a");
    InlineWorker b("b");
    EXPECT_TRUE(root.addWorker(QStringLiteral("A"), &a));
    EXPECT_TRUE(root.addWorker(QStringLiteral("B"), &b));
    EXPECT_EQ(root.getValue(path("A:x")), QStringLiteral("a"));
    EXPECT_EQ(root.getValue(path("B:x/y?z=1")), QStringLiteral("b"));
    EXPECT_EQ(root.prefixes(), (QStringList {QStringLiteral("A"), QStringLiteral("B")}));
}

TEST(CMRootWorker, AnAnswerThatIsNoListHasNoValue)
{
    CMRootWorker root;
    ScriptWorker worker(QStringLiteral("W"));
    ScriptNode::create(worker.nodes(), path("W:odd"), [](const CMRequest &request) {
        request.reply().setValue(QStringLiteral("no list"));
        return true;
    });
    EXPECT_FALSE(root.getValue(path("W:odd")).isValid());
}

TEST(CMRootWorker, AWorkerMayHaveSeveralPrefixes)
{
    CMRootWorker root;
    InlineWorker worker("w");
    root.addWorker(QStringLiteral("A"), &worker);
    root.addWorker(QStringLiteral("B"), &worker);
    EXPECT_EQ(root.getValue(path("B:x")), QStringLiteral("w"));
    root.removeWorker(&worker);
    EXPECT_EQ(root.prefixes(), QStringList());
    EXPECT_EQ(getData(root, path("A:x"), valueRole).errorName(), CMError::NoNodeName());
}

TEST(CMRootWorker, RoutesPostedRequestsAlike)
{
    CMRootWorker root;
    InlineWorker a("a");
    root.addWorker(QStringLiteral("A"), &a);
    const auto post = [&root](const char *to) {
        const auto answer = std::make_shared<CMReplyData<QVariant>>();
        root.post(CMGetDataRequest(path(to), valueRole, CMReply<QVariant>(answer)));
        return answer;
    };
    EXPECT_EQ(post("A:x")->value().toList(), QVariantList {QStringLiteral("a")});
    EXPECT_EQ(post("B:x")->error().name(), CMError::NoNodeName());
}

TEST(CMRootWorker, AnswersWithAnErrorWithoutAWorker)
{
    CMRootWorker root;
    for (const CMPath &nowhere : {path("Nobody:x"), CMPath()})
        EXPECT_EQ(getData(root, nowhere, valueRole).errorName(), CMError::NoNodeName());
    root.request(CMRequest());
}

TEST(CMRootWorker, KeepsTheFirstWorkerOfAPrefixAndLogsAnError)
{
    const LogCapture log("Nodes");
    CMRootWorker root;
    InlineWorker first("first");
    InlineWorker second("second");
    root.addWorker(QStringLiteral("A"), &first);
    EXPECT_FALSE(root.addWorker(QStringLiteral("A"), &second));
    EXPECT_EQ(root.getValue(path("A:x")), QStringLiteral("first"));
    EXPECT_EQ(log.lines(QStringLiteral("ERROR")),
        QStringList(QStringLiteral("There is already a worker for the prefix 'A'")));
}

TEST(CMRootWorker, RoutesAForeignPathAndWhatLiesBelowItBeforeThePrefix)
{
    CMRootWorker root;
    InlineWorker player("player");
    InlineWorker plugin("plugin");
    InlineWorker deeper("deeper");
    root.addWorker(QStringLiteral("player"), &player);
    root.addForeignPath(path("player:tunein/stateChange"), &plugin);
    root.addForeignPath(path("player:tunein/stateChange/a"), &deeper);
    EXPECT_EQ(root.getValue(path("player:tunein/stateChange")), QStringLiteral("plugin"));
    EXPECT_EQ(root.getValue(path("player:tunein/stateChange?x=1")), QStringLiteral("plugin"));
    EXPECT_EQ(root.getValue(path("player:tunein/stateChange/b/c")), QStringLiteral("plugin"));
    EXPECT_EQ(root.getValue(path("player:tunein/stateChange/a/c")), QStringLiteral("deeper"));
    EXPECT_EQ(root.getValue(path("player:tunein/stateChanged")), QStringLiteral("player"));
    EXPECT_EQ(root.getValue(path("player:tunein")), QStringLiteral("player"));
    EXPECT_EQ(root.getValue(path("player:")), QStringLiteral("player"));

    root.removeForeignPath(path("player:tunein/stateChange"), &deeper);
    EXPECT_EQ(root.getValue(path("player:tunein/stateChange")), QStringLiteral("plugin"));
    root.removeForeignPath(path("player:tunein/stateChange"), &plugin);
    EXPECT_EQ(root.getValue(path("player:tunein/stateChange")), QStringLiteral("player"));
    root.removeWorker(&deeper);
    EXPECT_EQ(root.getValue(path("player:tunein/stateChange/a/c")), QStringLiteral("player"));
}

TEST(CMRootWorker, KeepsTheFirstWorkerOfAForeignPathAndLogsAnError)
{
    const LogCapture log("Nodes");
    CMRootWorker root;
    InlineWorker first("first");
    InlineWorker second("second");
    root.addForeignPath(path("p:x"), &first);
    root.addForeignPath(path("p:x"), &second);
    EXPECT_EQ(root.getValue(path("p:x")), QStringLiteral("first"));
    EXPECT_EQ(log.lines(QStringLiteral("ERROR")),
        QStringList(QStringLiteral("There is already a worker for the path 'p:x'")));
}

TEST(CMRootWorker, RemovalWaitsForTheCallsOfOtherThreads)
{
    CMRootWorker root;
    for (int round = 0; round < 50; ++round) {
        Gate inside;
        std::atomic<bool> left {false};
        InlineWorker worker("w", [&] {
            inside.open();
            for (int i = 0; i < 100; ++i)
                std::this_thread::yield();
            left = true;
        });
        root.addWorker(QStringLiteral("A"), &worker);
        std::thread asking([&] { getData(root, path("A:x"), valueRole); });
        ASSERT_TRUE(inside.wait());
        root.removeWorker(&worker);
        EXPECT_TRUE(left);
        asking.join();
    }
}

TEST(CMRootWorker, AWorkerMayRemoveItselfInACall)
{
    CMRootWorker root;
    InlineWorker worker("w", [&] { root.removeWorker(&worker); });
    root.addWorker(QStringLiteral("A"), &worker);
    EXPECT_EQ(root.getValue(path("A:x")), QStringLiteral("w"));
    EXPECT_EQ(root.getValue(path("A:x")), QVariant());
}

TEST(CMRootWorker, RoutesWhileWorkersAreAddedAndRemoved)
{
    CMRootWorker root;
    std::atomic<bool> stop {false};
    std::atomic<int> answered {0};
    std::vector<std::thread> asking;
    for (int i = 0; i < 2; ++i) {
        asking.emplace_back([&] {
            while (!stop) {
                const Answer answer = getData(root, path("A:x/y"), valueRole);
                ASSERT_TRUE(answer.isThere());
                if (!answer.isError())
                    ++answered;
            }
        });
    }
    for (int round = 0; round < 150; ++round) {
        const auto worker = std::make_unique<InlineWorker>("w");
        root.addForeignPath(path("A:x"), worker.get());
        root.addWorker(QStringLiteral("A"), worker.get());
        const int before = answered;
        while (answered == before)
            std::this_thread::yield();
        root.removeWorker(worker.get());
    }
    stop = true;
    for (std::thread &one : asking)
        one.join();
}

TEST(CMRootWorker, RoutesUnservedPathsToTheDefaultWorker)
{
    CMRootWorker root;
    InlineWorker a("a");
    InlineWorker others("others");
    root.addWorker(QStringLiteral("A"), &a);
    root.setDefaultWorker(&others);
    EXPECT_EQ(root.getValue(path("A:x")), QStringLiteral("a"));
    EXPECT_EQ(root.getValue(path("B:x")), QStringLiteral("others"));
    EXPECT_EQ(root.prefixes(), QStringList {QStringLiteral("A")});
    root.removeWorker(&others);
    EXPECT_EQ(getData(root, path("B:x"), valueRole).errorName(), CMError::NoNodeName());
}

TEST(CMRootWorker, RemovesAPrefixFromItsWorkerOnly)
{
    CMRootWorker root;
    InlineWorker a("a");
    InlineWorker b("b");
    root.addWorker(QStringLiteral("A"), &a);
    root.removePrefix(QStringLiteral("A"), &b);
    EXPECT_EQ(root.getValue(path("A:x")), QStringLiteral("a"));
    root.removePrefix(QStringLiteral("A"), &a);
    EXPECT_EQ(root.prefixes(), QStringList());
    EXPECT_TRUE(root.addWorker(QStringLiteral("A"), &b));
    EXPECT_EQ(root.getValue(path("A:x")), QStringLiteral("b"));
}

TEST(CMRootWorker, EmitsSignalsForAddedAndRemovedRoutes)
{
    CMRootWorker root;
    QStringList told;
    QObject::connect(&root, &CMRootWorker::routeAdded,
        [&told](const CMPath &route) { told.append(QLatin1Char('+') + route.toEncoded()); });
    QObject::connect(&root, &CMRootWorker::routeRemoved,
        [&told](const CMPath &route) { told.append(QLatin1Char('-') + route.toEncoded()); });
    InlineWorker a("a");
    InlineWorker b("b");
    root.addWorker(QStringLiteral("A"), &a);
    root.addWorker(QStringLiteral("A"), &b); // the prefix is taken
    root.addForeignPath(path("P:x/y?z=1"), &a);
    root.setDefaultWorker(&b);
    EXPECT_EQ(told, (QStringList {QStringLiteral("+A:"), QStringLiteral("+P:x/y")}));
    told.clear();
    root.removeForeignPath(path("P:x/y"), &b); // the route belongs to a
    root.removeForeignPath(path("P:x/y"), &a);
    root.removeWorker(&a);
    root.removeWorker(&b);
    EXPECT_EQ(told, (QStringList {QStringLiteral("-P:x/y"), QStringLiteral("-A:")}));
}

/// An InlineWorker in a thread of its own: hold() queues the test's requests, which it would not do
/// for those of the worker's own thread.
class ElsewhereWorker : public InlineWorker {
public:
    explicit ElsewhereWorker(const char *name)
        : InlineWorker(name)
    {
        moveToThread(&m_thread);
    }

private:
    QThread m_thread;
};

TEST(CMRootWorker, HoldsRequestsUntilTheirWorkerIsReplaced)
{
    CMRootWorker root;
    auto former = std::make_unique<ElsewhereWorker>("former");
    ElsewhereWorker other("other");
    root.addWorker(QStringLiteral("A"), former.get());
    root.addWorker(QStringLiteral("B"), &other);
    root.addForeignPath(path("P:x"), former.get());
    root.addForeignPath(path("P:y"), &other);
    root.hold(QStringLiteral("A"), CMRootWorker::Prefix);
    const Answer first = getData(root, path("A:1"), valueRole);
    EXPECT_FALSE(first.isThere());
    EXPECT_EQ(root.getValue(path("P:x")), QStringLiteral("former"));
    root.hold(QStringLiteral("A"), CMRootWorker::PrefixAndForeignPaths);
    const Answer foreign = getData(root, path("P:x/1"), valueRole);
    root.removeWorker(former.get());
    former.reset();
    const Answer orphan = getData(root, path("A:2"), valueRole);
    EXPECT_FALSE(foreign.isThere() || orphan.isThere());
    EXPECT_EQ(root.getValue(path("B:1")), QStringLiteral("other"));
    EXPECT_EQ(root.getValue(path("P:y")), QStringLiteral("other"));

    ElsewhereWorker next("next");
    root.addWorker(QStringLiteral("A"), &next);
    root.addForeignPath(path("P:x"), &next);
    EXPECT_FALSE(first.isThere());
    root.release(QStringLiteral("A"));
    for (const Answer &answer : {first, foreign, orphan})
        EXPECT_EQ(answer.list().value(0), QStringLiteral("next"));
    EXPECT_EQ(root.getValue(path("A:3")), QStringLiteral("next"));
    root.release(QStringLiteral("A")); // has no effect
}

TEST(CMRootWorker, AnswersRequestsBeyondTheQueuesLimitWithAnError)
{
    CMRootWorker root;
    root.hold(QStringLiteral("A"), CMRootWorker::Prefix);
    std::vector<Answer> answers;
    for (int i = 0; i <= CMRootWorker::MaxHeld; ++i)
        answers.push_back(getData(root, path("A:x"), valueRole));
    EXPECT_FALSE(answers[CMRootWorker::MaxHeld - 1].isThere());
    EXPECT_EQ(answers[CMRootWorker::MaxHeld].errorName(), CMError::UnansweredName());
    root.release(QStringLiteral("A"));
    EXPECT_EQ(answers[0].errorName(), CMError::NoNodeName()) << "it is not served any more";
}

TEST(CMRootWorker, AHeldWorkersOwnThreadIsServed)
{
    CMRootWorker root;
    InlineWorker own("own"); // lives in this thread
    root.addWorker(QStringLiteral("A"), &own);
    root.hold(QStringLiteral("A"), CMRootWorker::Prefix);
    EXPECT_EQ(root.getValue(path("A:x")), QStringLiteral("own"));
}

TEST(CMRootWorker, TellsSubscribersForThemselvesFromForwardingOnes)
{
    CMRootWorker root;
    QThread other;
    QObject context;
    const QThread *const here = QThread::currentThread();
    EXPECT_FALSE(root.isSubscribed(path("A:x"), here));
    const auto ignore = [](const CMChange &) {};
    {
        const auto passing = root.subscribe(path("A:x"), &context, ignore, CMRootWorker::ForOthers);
        EXPECT_FALSE(root.isSubscribed(path("A:x"), here));
        const auto acting = root.subscribe(path("A:x"), &context, ignore);
        EXPECT_TRUE(root.isSubscribed(path("A:x"), here));
        EXPECT_FALSE(root.isSubscribed(path("A:y"), here));
        EXPECT_FALSE(root.isSubscribed(path("A:x"), &other));
    }
    EXPECT_FALSE(root.isSubscribed(path("A:x"), here));
    const auto direct = root.subscribeDirectly(path("A:x"), ignore);
    EXPECT_TRUE(root.isSubscribed(path("A:x"), here));
}

TEST(CMRootWorker, KnowsWhichPathsAWorkerServesBesideItsPrefix)
{
    CMRootWorker root;
    InlineWorker a("a");
    root.addWorker(QStringLiteral("A"), &a);
    root.addForeignPath(path("P:x"), &a);
    EXPECT_TRUE(root.isServedBy(path("A:x"), QStringLiteral("A")));
    EXPECT_TRUE(root.isServedBy(path("P:x/y"), QStringLiteral("A")));
    EXPECT_FALSE(root.isServedBy(path("P:z"), QStringLiteral("A")));
    EXPECT_FALSE(root.isServedBy(path("P:z"), QStringLiteral("P")));
}

} // namespace
