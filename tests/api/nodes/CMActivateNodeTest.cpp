// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMActivateNode.h"

#include "tests/api/nodes/TestNodes.h"

#include <QThread>

namespace {

/// A receiver with one handler that completes activations with its value, and one that drops them.
class Receiver : public QObject {
public:
    explicit Receiver(int answerWith)
        : value(answerWith)
    {
    }

    void on_invoke(const CMSetDataRequest &request)
    {
        threads.push_back(QThread::currentThread());
        request.reply().setValue(QVariantList {value, request.value()});
    }
    void ignore(const CMSetDataRequest &) { }

    const int value;
    std::vector<QThread *> threads;
};

TEST(CMActivateNode, IsOfItsTypeAndServesNothingBelow)
{
    ScriptWorker worker(QStringLiteral("W"));
    CMActivateNode *node = CMActivateNode::create(worker.nodes(), path("W:x"));
    EXPECT_EQ(node->getRoleData(VeskRoles::Type(), {}), QVariant(6));
    EXPECT_FALSE(node->servesBelow());
    EXPECT_EQ(getData(worker, path("W:x/y"), {}).errorName(), CMError::NoNodeName());
}

TEST(CMActivateNode, PassesActivationsToTheBoundFunction)
{
    ScriptWorker worker(QStringLiteral("W"));
    CMActivateNode *node = CMActivateNode::create(worker.nodes(), path("W:x"));
    Receiver first(1);
    Receiver second(2);
    node->setInvoke(&first, &Receiver::on_invoke, Qt::DirectConnection);
    EXPECT_EQ(setData(worker, path("W:x"), VeskRoles::Activate(), 7).list(), (QVariantList {1, 7}));
    node->setInvoke(&second, &Receiver::on_invoke, Qt::DirectConnection);
    EXPECT_EQ(setData(worker, path("W:x"), VeskRoles::Activate(), 7).list(), (QVariantList {2, 7}));
    EXPECT_EQ(first.threads.size(), 1U);
}

TEST(CMActivateNode, RefusesOtherRoles)
{
    ScriptWorker worker(QStringLiteral("W"));
    CMActivateNode *node = CMActivateNode::create(worker.nodes(), path("W:x"));
    Receiver receiver(1);
    node->setInvoke(&receiver, &Receiver::on_invoke, Qt::DirectConnection);
    EXPECT_EQ(
        setData(worker, path("W:x"), VeskRoles::Value(), 7).errorName(), CMError::UnansweredName());
    EXPECT_TRUE(receiver.threads.empty());
}

TEST(CMActivateNode, AnswersWithAnErrorWhenNothingIsBoundOrTheReplyIsDropped)
{
    ScriptWorker worker(QStringLiteral("W"));
    CMActivateNode *node = CMActivateNode::create(worker.nodes(), path("W:x"));
    const auto activate
        = [&] { return setData(worker, path("W:x"), VeskRoles::Activate(), 7).errorName(); };
    EXPECT_EQ(activate(), CMError::UnansweredName());
    auto receiver = std::make_unique<Receiver>(1);
    node->setInvoke(receiver.get(), &Receiver::ignore, Qt::DirectConnection);
    EXPECT_EQ(activate(), CMError::UnansweredName());
    receiver.reset();
    EXPECT_EQ(activate(), CMError::UnansweredName());
}

TEST(CMActivateNode, QueuesActivationsToTheReceiversThread)
{
    CMRootWorker root;
    ScriptThread thread(QStringLiteral("W"));
    Receiver *receiver = nullptr;
    thread.call([&] {
        receiver = new Receiver(1);
        receiver->setParent(&thread.worker());
        CMActivateNode::create(thread.worker().nodes(), path("player:stateChange"))
            ->setInvoke(receiver, &Receiver::on_invoke, Qt::QueuedConnection);
    });
    std::vector<Answer> answers;
    for (int i = 0; i < 20; ++i)
        answers.push_back(setData(root, path("player:stateChange"), VeskRoles::Activate(), i));
    for (int i = 0; i < 20; ++i) {
        ASSERT_TRUE(answers[static_cast<std::size_t>(i)].wait());
        EXPECT_EQ(answers[static_cast<std::size_t>(i)].list(), (QVariantList {1, i}));
    }
    thread.call([&] { EXPECT_EQ(receiver->threads, std::vector<QThread *>(20, &thread)); });
}

TEST(CMActivateNode, AQueuedActivationEndsWithAnErrorWhenItsReceiverIsDestroyed)
{
    ScriptWorker worker(QStringLiteral("W"));
    CMActivateNode *node = CMActivateNode::create(worker.nodes(), path("W:x"));
    auto receiver = std::make_unique<Receiver>(1);
    node->setInvoke(receiver.get(), &Receiver::on_invoke, Qt::QueuedConnection);
    const Answer answer = setData(worker, path("W:x"), VeskRoles::Activate(), 7);
    EXPECT_FALSE(answer.isThere());
    receiver.reset();
    ASSERT_TRUE(answer.isThere());
    EXPECT_EQ(answer.errorName(), CMError::UnansweredName());
}

} // namespace
