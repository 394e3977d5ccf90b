// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMNodes.h"

#include "tests/api/nodes/TestNodes.h"

#include <csignal>

namespace {

const QStringList valueRole {VeskRoles::Value()};

TEST(CMNodes, FindsTheNodeAtTheLongestPathThatTheBaseEqualsOrContinues)
{
    ScriptWorker worker(QStringLiteral("W"));
    CMNodes *nodes = worker.nodes();
    CMNode *browse = ScriptNode::create(nodes, path("W:browse"));
    CMNode *uri = ScriptNode::create(nodes, path("W:browse/uri"));
    EXPECT_EQ(nodes->find(path("W:browse")), browse);
    EXPECT_EQ(nodes->find(path("W:browse?c=music")), browse);
    EXPECT_EQ(nodes->find(path("W:browse/x")), browse);
    EXPECT_EQ(nodes->find(path("W:browse/uri")), uri);
    EXPECT_EQ(nodes->find(path("W:browse/uri/Browse.ashx")), uri);
    EXPECT_EQ(nodes->find(path("W:browser")), nullptr);
    EXPECT_EQ(nodes->find(path("W:brow")), nullptr);
    EXPECT_EQ(nodes->find(path("V:browse")), nullptr);
    EXPECT_EQ(nodes->find(CMPath()), nullptr);
}

TEST(CMNodes, ANodeAtTheRootServesOnlyTheRoot)
{
    ScriptWorker worker(QStringLiteral("W"));
    CMNode *root = ScriptNode::create(worker.nodes(), path("W:"));
    EXPECT_EQ(worker.nodes()->find(path("W:")), root);
    EXPECT_EQ(worker.nodes()->find(path("W:?p=1")), root);
    EXPECT_EQ(worker.nodes()->find(path("W:x")), nullptr);
    EXPECT_EQ(worker.nodes()->find(path("W:/x")), nullptr);
}

TEST(CMNodes, ANodeThatDoesNotServeBelowHidesTheOnesAbove)
{
    ScriptWorker worker(QStringLiteral("W"));
    ScriptNode::create(worker.nodes(), path("W:menu"));
    ScriptNode *presets = ScriptNode::create(worker.nodes(), path("W:menu/presets"));
    presets->setServesBelow(false);
    EXPECT_EQ(worker.nodes()->find(path("W:menu/presets")), presets);
    EXPECT_EQ(worker.nodes()->find(path("W:menu/presets/x")), nullptr);
    EXPECT_NE(worker.nodes()->find(path("W:menu/x")), nullptr);
}

TEST(CMNodes, DoesNotFindADestroyedNode)
{
    ScriptWorker worker(QStringLiteral("W"));
    CMNode *node = ScriptNode::create(worker.nodes(), path("W:x"));
    EXPECT_EQ(worker.nodes()->all(), QList<CMNode *> {node});
    EXPECT_EQ(node->nodes(), worker.nodes());
    EXPECT_NE(node->subscribe(), nullptr);
    delete node;
    EXPECT_EQ(worker.nodes()->find(path("W:x")), nullptr);
    EXPECT_TRUE(worker.nodes()->all().isEmpty());
    ScriptNode::create(worker.nodes(), path("W:x"));
}

TEST(CMNodesDeathTest, APathCannotBeTakenTwice)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(
        {
            ScriptWorker worker(QStringLiteral("W"));
            ScriptNode::create(worker.nodes(), path("W:x"));
            ScriptNode::create(worker.nodes(), path("W:x?p=1"));
        },
        testing::KilledBySignal(SIGABRT), "");
}

TEST(CMNodes, AreReachedAtForeignPathsThroughTheRootUntilDestroyed)
{
    CMRootWorker root;
    ScriptThread player(QStringLiteral("player"));
    ScriptNode *node = nullptr;
    ScriptThread plugin(QStringLiteral("W"), [&](ScriptWorker &self) {
        node = ScriptNode::create(
            self.nodes(), path("player:tunein/stateChange"), [&](const CMRequest &request) {
                request.reply().setValue(QVariantList {QThread::currentThread() == &plugin});
                return true;
            });
    });
    EXPECT_EQ(root.getValue(path("player:tunein/stateChange")), QVariant(true));
    const Answer elsewhere = getData(root, path("player:tunein"), valueRole);
    ASSERT_TRUE(elsewhere.wait());
    EXPECT_EQ(elsewhere.errorName(), CMError::NoNodeName());

    plugin.call([&] { delete node; });
    const Answer withdrawn = getData(root, path("player:tunein/stateChange"), valueRole);
    ASSERT_TRUE(withdrawn.wait());
    EXPECT_EQ(withdrawn.errorName(), CMError::NoNodeName());
}

struct Unanswered {
    const char *name;
    ScriptNode::Handler handler;
};

class UnansweredRequest : public testing::TestWithParam<int> { };

TEST_P(UnansweredRequest, OfEachKindEndsWithAnError)
{
    std::vector<CMRequest> kept;
    const std::vector<Unanswered> sorts {
        {"refused", [](const CMRequest &) { return false; }},
        {"left untouched", [](const CMRequest &) { return true; }},
        {"refused, and kept for later",
            [&](const CMRequest &request) {
                kept.push_back(request);
                return false;
            }},
        {"not of the base class's kinds",
            [](const CMRequest &request) {
                return request.kind() == CMRequest::GetData ? false
                                                            : CMNode(CMPath()).request(request);
            }},
    };
    for (const Unanswered &sort : sorts) {
        CMRootWorker root;
        ScriptThread thread(QStringLiteral("W"), [&](ScriptWorker &self) {
            ScriptNode::create(self.nodes(), path("W:x"), sort.handler);
        });
        Answer answer;
        switch (static_cast<CMRequest::Kind>(GetParam())) {
        case CMRequest::GetData:
            answer = getData(root, path("W:x"), valueRole);
            break;
        case CMRequest::GetRows:
            answer = getRows(root, path("W:x"), valueRole, 0, 9);
            break;
        case CMRequest::SetData:
            answer = setData(root, path("W:x"), VeskRoles::Value(), 1);
            break;
        case CMRequest::MatchRow:
            answer = matchRow(root, path("W:x"), VeskRoles::Value(), 1);
            break;
        case CMRequest::None:
            FAIL();
        }
        ASSERT_TRUE(answer.wait()) << sort.name;
        EXPECT_EQ(answer.errorName(), CMError::UnansweredName()) << sort.name;
    }
    for (const CMRequest &late : kept)
        late.reply().setValue(1);
}

INSTANTIATE_TEST_SUITE_P(Kinds, UnansweredRequest,
    testing::Values(static_cast<int>(CMRequest::GetData), static_cast<int>(CMRequest::GetRows),
        static_cast<int>(CMRequest::SetData), static_cast<int>(CMRequest::MatchRow)));

TEST(CMNodes, ARequestThatANodeKeptEndsWithAnErrorWhenTheNodeIsDestroyed)
{
    CMRootWorker root;
    Answer answer;
    {
        ScriptThread thread(QStringLiteral("W"), [](ScriptWorker &self) {
            auto kept = std::make_shared<std::vector<CMRequest>>();
            ScriptNode::create(self.nodes(), path("W:x"), [kept](const CMRequest &request) {
                kept->push_back(request);
                return true;
            });
        });
        answer = getData(root, path("W:x"), valueRole);
        ASSERT_TRUE(getData(root, path("W:"), valueRole).wait()); // handled after the first request
        EXPECT_FALSE(answer.isThere());
    }
    ASSERT_TRUE(answer.isThere());
    EXPECT_EQ(answer.errorName(), CMError::UnansweredName());
}

TEST(CMNodes, ARequestThatWantsNoAnswerIsHandledAllTheSame)
{
    CMRootWorker root;
    std::promise<bool> isNull;
    ScriptThread thread(QStringLiteral("W"), [&](ScriptWorker &self) {
        ScriptNode::create(self.nodes(), path("W:x"), [&](const CMRequest &request) {
            isNull.set_value(request.reply().isNull() && !request.replyData());
            return false;
        });
    });
    root.request(CMSetDataRequest(path("W:x"), VeskRoles::Value(), 1, CMReply<QVariant>()));
    EXPECT_TRUE(isNull.get_future().get());
}

TEST(CMNodes, WorkWithoutARoot)
{
    ASSERT_EQ(CMRoot(), nullptr);
    ScriptThread thread(QStringLiteral("W"), [](ScriptWorker &self) {
        ScriptNode::create(self.nodes(), path("W:x"))->setTitle(text("X"));
        ScriptNode::create(self.nodes(), path("other:x"));
    });
    const Answer answer = getData(thread.worker(), path("W:x"), {VeskRoles::Title()});
    ASSERT_TRUE(answer.wait());
    EXPECT_EQ(TrString::fromVariant(answer.list().value(0)).toString(), QStringLiteral("X"));
    const Answer none = getData(thread.worker(), path("W:y"), {VeskRoles::Title()});
    ASSERT_TRUE(none.wait());
    EXPECT_EQ(none.errorName(), CMError::NoNodeName());
}

TEST(CMNodes, AreNotifiedOfTheFirstAndTheLastSubscriberOfAPathTheyServe)
{
    CMRootWorker root;
    ScriptNode *node = nullptr;
    ScriptThread thread(QStringLiteral("W"),
        [&](ScriptWorker &self) { node = ScriptNode::create(self.nodes(), path("W:browse")); });
    QObject context;
    auto one = root.subscribe(path("W:browse/x?p=1"), &context, [](const CMChange &) {});
    auto two = root.subscribe(path("W:browse/x?p=1"), &context, [](const CMChange &) {});
    const auto expect = [&](std::size_t added, std::size_t removed) {
        // Queued behind the notices of the subscriptions, so the worker has handled those.
        getData(root, path("W:browse"), {}).wait();
        thread.call([&] {
            EXPECT_EQ(node->added, std::vector<CMPath>(added, path("W:browse/x?p=1")));
            EXPECT_EQ(node->removed, std::vector<CMPath>(removed, path("W:browse/x?p=1")));
        });
    };
    expect(1, 0);
    one.reset();
    expect(1, 0);
    two.reset();
    expect(1, 1);
}

TEST(CMNodes, ALaterNodeIsNotifiedOfItsSubscribers)
{
    CMRootWorker root;
    QObject context;
    const auto subscription = root.subscribe(path("W:browse/x"), &context, [](const CMChange &) {});
    ScriptThread thread(QStringLiteral("W"));
    getData(root, path("W:"), {}).wait();
    thread.call([&] {
        const ScriptNode *node = ScriptNode::create(thread.worker().nodes(), path("W:browse"));
        EXPECT_EQ(node->added, std::vector<CMPath> {path("W:browse/x")});
    });
}

TEST(CMNodes, AreNotifiedOfALanguageChange)
{
    CMRootWorker root;
    ScriptThread thread(QStringLiteral("W"), [](ScriptWorker &self) {
        ScriptNode::create(self.nodes(), path("W:x"));
        (new CMNode(path("W:plain")))->setNodes(self.nodes());
    });
    QObject context;
    QString kind;
    const auto subscription = root.subscribe(
        path("W:x?p=1"), &context, [&](const CMChange &change) { kind = change.kind; });
    root.notifyLanguageChanged();
    EXPECT_TRUE(spinUntil([&] { return !kind.isEmpty(); }));
    EXPECT_EQ(kind, CMSubscribe::ValueChanged());
}

} // namespace
