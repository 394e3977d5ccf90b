#include "api/nodes/CMRootWorker.h"

#include "tests/api/nodes/TestNodes.h"
#include "tests/support/LogCapture.h"

#include <atomic>
#include <csignal>
#include <thread>

namespace {

const QStringList valueRole {VeskRoles::Value()};

/// Answers on the thread that asks, with its own name.
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

TEST(CMRootWorker, IsTheProcesssOneWhileItLives)
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

TEST(CMRootWorker, AnswersWithAnErrorWhereNoWorkerIs)
{
    CMRootWorker root;
    for (const CMPath &nowhere : {path("Nobody:x"), CMPath()})
        EXPECT_EQ(getData(root, nowhere, valueRole).errorName(), CMError::NoNodeName());
    root.request(CMRequest());
}

TEST(CMRootWorker, KeepsTheFirstWorkerOfAPrefixAndSaysSo)
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

TEST(CMRootWorker, KeepsTheFirstWorkerOfAForeignPathAndSaysSo)
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

TEST(CMRootWorker, RoutesWhileWorkersComeAndGo)
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

TEST(CMRootWorker, RoutesWhatNobodyServesToTheDefaultWorker)
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

TEST(CMRootWorker, TakesAPrefixFromItsWorkerOnly)
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

TEST(CMRootWorker, TellsOfRoutesThatComeAndGo)
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
    root.addWorker(QStringLiteral("A"), &b); // taken
    root.addForeignPath(path("P:x/y?z=1"), &a);
    root.setDefaultWorker(&b);
    EXPECT_EQ(told, (QStringList {QStringLiteral("+A:"), QStringLiteral("+P:x/y")}));
    told.clear();
    root.removeForeignPath(path("P:x/y"), &b); // not its route
    root.removeForeignPath(path("P:x/y"), &a);
    root.removeWorker(&a);
    root.removeWorker(&b);
    EXPECT_EQ(told, (QStringList {QStringLiteral("-P:x/y"), QStringLiteral("-A:")}));
}

} // namespace
