// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/rpc/JsonRpcDispatcher.h"

#include "api/web/VeskJson.h"
#include "tests/host/rpc/Peer.h"
#include "tests/support/WorkerThread.h"

#include <gmock/gmock.h>

namespace {

/// A dispatcher with the methods echo (responds with its parameters), fail, keep (leaves the
/// response to the test) and forget (drops the call).
class JsonRpcDispatcherTest : public testing::Test {
protected:
    JsonRpcDispatcherTest()
    {
        m_dispatcher.addMethod(QStringLiteral("echo"),
            [](const JsonRpcCallPtr &call) { call->finish(QVariant(call->params())); });
        m_dispatcher.addMethod(QStringLiteral("fail"), [](const JsonRpcCallPtr &call) {
            call->fail({-32000, QStringLiteral("no luck"), {{QStringLiteral("name"), 1}}});
        });
        m_dispatcher.addMethod(
            QStringLiteral("keep"), [this](const JsonRpcCallPtr &call) { m_kept.append(call); });
        m_dispatcher.addMethod(QStringLiteral("forget"), [](const JsonRpcCallPtr &) {});
    }

    void send(const QByteArray &message, MessagePeer *peer = nullptr)
    {
        m_dispatcher.handle(message, {peer, peer, {}},
            [this](const QByteArray &answer) { m_answers.append(answer); });
    }

    QByteArray answerTo(const QByteArray &message)
    {
        m_answers.clear();
        send(message);
        EXPECT_EQ(m_answers.size(), 1);
        return m_answers.value(0);
    }

    QList<JsonRpcCallPtr> m_kept;
    QList<QByteArray> m_answers;
    JsonRpcDispatcher m_dispatcher; // destroyed first: kept calls get no response
};

TEST_F(JsonRpcDispatcherTest, AnswersACallWithItsIdAndResult)
{
    EXPECT_EQ(answerTo(R"({"jsonrpc":"2.0","id":"a","method":"echo","params":{"x":1}})"),
        R"({"id":"a","jsonrpc":"2.0","result":{"x":1}})");
}

TEST_F(JsonRpcDispatcherTest, AnswersAFailureWithCodeMessageAndData)
{
    EXPECT_EQ(answerTo(R"({"jsonrpc":"2.0","id":1,"method":"fail"})"),
        R"({"error":{"code":-32000,"data":{"name":1},"message":"no luck"},"id":1,"jsonrpc":"2.0"})");
}

TEST_F(JsonRpcDispatcherTest, AnswersInvalidJsonWithAParseErrorAndNoId)
{
    EXPECT_THAT(answerTo("{").toStdString(), testing::HasSubstr("-32700"));
    EXPECT_THAT(answerTo("{").toStdString(), testing::HasSubstr(R"("id":null)"));
}

TEST_F(JsonRpcDispatcherTest, AnswersAnUnknownMethod)
{
    EXPECT_THAT(answerTo(R"({"jsonrpc":"2.0","id":1,"method":"nothing"})").toStdString(),
        testing::HasSubstr("-32601"));
    EXPECT_THAT(answerTo(R"({"jsonrpc":"2.0","id":1,"method":""})").toStdString(),
        testing::HasSubstr("-32601"));
}

TEST_F(JsonRpcDispatcherTest, CancelFailsTheCallAndNotifiesItsMethod)
{
    QByteArray abandoned; // outlives the clients, whose calls are abandoned
    Peer peer;
    Peer other;
    send(R"([{"jsonrpc":"2.0","id":1,"method":"keep"},{"jsonrpc":"2.0","id":2,"method":"keep"}])",
        &peer);
    send(R"({"jsonrpc":"2.0","id":1,"method":"keep"})", &other);
    ASSERT_EQ(m_kept.size(), 3);
    for (int i = 0; i < m_kept.size(); ++i)
        m_kept.at(i)->whenAbandoned([&abandoned, i] { abandoned += static_cast<char>('0' + i); });

    send(R"({"jsonrpc":"2.0","method":"cancel","params":{"id":1}})", &peer);
    EXPECT_EQ(abandoned, "0");
    m_kept.at(1)->finish(2);
    ASSERT_EQ(m_answers.size(), 2); // the empty one to the notification, and the batch's
    EXPECT_THAT(m_answers.last().toStdString(), testing::HasSubstr("-32006"));
    EXPECT_THAT(m_answers.last().toStdString(), testing::HasSubstr("\"result\":2"));
    // Cancelling a completed or unknown call has no effect.
    send(R"({"jsonrpc":"2.0","id":9,"method":"cancel","params":{"id":2}})", &peer);
    EXPECT_EQ(abandoned, "0");
    send(R"({"jsonrpc":"2.0","id":9,"method":"cancel"})", &peer);
    EXPECT_THAT(m_answers.last().toStdString(), testing::HasSubstr("-32602"));
}

TEST_F(JsonRpcDispatcherTest, NotifiesAMethodWhenItsClientLeavesOrTheTimeIsUp)
{
    QByteArray abandoned;
    {
        Peer peer;
        send(R"({"jsonrpc":"2.0","id":1,"method":"keep"})", &peer);
        m_kept.at(0)->whenAbandoned([&abandoned] { abandoned += 'g'; });
    }
    EXPECT_EQ(abandoned, "g");
    m_dispatcher.setDeadline(50);
    send(R"({"jsonrpc":"2.0","id":1,"method":"keep"})");
    m_kept.at(1)->whenAbandoned([&abandoned] { abandoned += 't'; });
    EXPECT_TRUE(spinUntil([&abandoned] { return abandoned == "gt"; }));
    EXPECT_THAT(m_answers.last().toStdString(), testing::HasSubstr("-32002"));
}

TEST_F(JsonRpcDispatcherTest, AnswersACallThatItsMethodDrops)
{
    EXPECT_THAT(answerTo(R"({"jsonrpc":"2.0","id":1,"method":"forget"})").toStdString(),
        testing::HasSubstr("-32603"));
}

TEST_F(JsonRpcDispatcherTest, DoesNotAnswerNotifications)
{
    EXPECT_EQ(answerTo(R"({"jsonrpc":"2.0","method":"echo"})"), QByteArray());
    EXPECT_EQ(answerTo(R"({"jsonrpc":"2.0","method":"fail"})"), QByteArray());
    EXPECT_EQ(answerTo(R"({"jsonrpc":"2.0","method":"nothing"})"), QByteArray());
    EXPECT_EQ(answerTo(R"([{"jsonrpc":"2.0","method":"echo"}])"), QByteArray());
}

TEST_F(JsonRpcDispatcherTest, AnswersABatchInOrderWhenTheLastCallIsAnswered)
{
    send(R"([{"jsonrpc":"2.0","id":1,"method":"keep"},{"jsonrpc":"2.0","id":2,"method":"echo"},
             {"jsonrpc":"2.0","method":"keep"},7])");
    EXPECT_TRUE(m_answers.isEmpty());
    ASSERT_EQ(m_kept.size(), 2);
    m_kept.at(0)->finish(QStringLiteral("late"));
    EXPECT_TRUE(m_answers.isEmpty()) << "the notification is still open";
    m_kept.at(1)->finish({});

    ASSERT_EQ(m_answers.size(), 1);
    VeskError error;
    const QVariantList batch = VeskJson::parse(m_answers.first(), error).toList();
    ASSERT_EQ(batch.size(), 3);
    EXPECT_EQ(batch.at(0).toHash().value(QStringLiteral("result")), QStringLiteral("late"));
    EXPECT_EQ(batch.at(1).toHash().value(QStringLiteral("id")), 2);
    EXPECT_TRUE(batch.at(2).toHash().contains(QStringLiteral("error")));
}

TEST_F(JsonRpcDispatcherTest, AnswersABatchOfOneWithAList)
{
    EXPECT_EQ(answerTo(R"([{"jsonrpc":"2.0","id":1,"method":"echo"}])"),
        R"([{"id":1,"jsonrpc":"2.0","result":{}}])");
}

TEST_F(JsonRpcDispatcherTest, OnlyTheFirstAnswerOfACallCounts)
{
    send(R"({"jsonrpc":"2.0","id":1,"method":"keep"})");
    m_kept.first()->finish(1);
    m_kept.first()->finish(2);
    m_kept.first()->fail({});
    EXPECT_EQ(m_answers, QList<QByteArray> {R"({"id":1,"jsonrpc":"2.0","result":1})"});
}

TEST_F(JsonRpcDispatcherTest, AnswersWithATimeOutAfterTheDeadline)
{
    m_dispatcher.setDeadline(1);
    send(R"([{"jsonrpc":"2.0","id":1,"method":"keep"},{"jsonrpc":"2.0","id":2,"method":"echo"}])");
    ASSERT_TRUE(spinUntil([&] { return !m_answers.isEmpty(); }));
    EXPECT_THAT(m_answers.first().toStdString(), testing::HasSubstr("-32002"));
    EXPECT_THAT(
        m_answers.first().toStdString(), testing::HasSubstr(R"("id":2,"jsonrpc":"2.0","result")"));
    m_kept.first()->finish(1);
    EXPECT_EQ(m_answers.size(), 1);
}

TEST_F(JsonRpcDispatcherTest, RefusesMoreThanSixtyFourOpenCallsOfOnePeer)
{
    Peer peer;
    for (int i = 0; i < 64; ++i)
        send(R"({"jsonrpc":"2.0","id":1,"method":"keep"})", &peer);
    EXPECT_TRUE(m_answers.isEmpty());
    send(R"({"jsonrpc":"2.0","id":1,"method":"echo"})", &peer);
    ASSERT_EQ(m_answers.size(), 1);
    EXPECT_THAT(m_answers.first().toStdString(), testing::HasSubstr("-32003"));

    m_kept.takeFirst()->finish({});
    EXPECT_EQ(m_answers.size(), 2);
    send(R"({"jsonrpc":"2.0","id":1,"method":"echo"})", &peer);
    EXPECT_THAT(m_answers.last().toStdString(), testing::HasSubstr("result"));
}

TEST_F(JsonRpcDispatcherTest, ACallHasNoPeerOnceTheClientHasLeft)
{
    auto peer = std::make_unique<Peer>();
    send(R"({"jsonrpc":"2.0","id":1,"method":"keep"})", peer.get());
    EXPECT_EQ(m_kept.first()->peer(), peer.get());
    peer.reset();
    EXPECT_EQ(m_kept.first()->peer(), nullptr);
    m_kept.first()->finish({});
    EXPECT_EQ(m_answers.size(), 1);
}

TEST(JsonRpcDispatcherLifeTest, ACallMayOutliveItsDispatcher)
{
    auto dispatcher = std::make_unique<JsonRpcDispatcher>();
    JsonRpcCallPtr kept;
    dispatcher->addMethod(QStringLiteral("keep"), [&](const JsonRpcCallPtr &call) { kept = call; });
    bool answered = false;
    dispatcher->handle(R"({"jsonrpc":"2.0","id":1,"method":"keep"})", {},
        [&](const QByteArray &) { answered = true; });
    dispatcher.reset();
    kept->finish({});
    kept.reset();
    EXPECT_FALSE(answered);
}

TEST_F(JsonRpcDispatcherTest, RefusesACallerWithoutTheRoleThatAMethodNeeds)
{
    int called = 0;
    m_dispatcher.addMethod(
        QStringLiteral("owners"),
        [&](const JsonRpcCallPtr &call) {
            ++called;
            call->finish(call->caller().deviceId);
        },
        AccessRole::Owner);
    const auto ask = [&](AccessRole role) {
        QByteArray answer;
        m_dispatcher.handle(R"({"jsonrpc":"2.0","id":1,"method":"owners"})",
            {nullptr, nullptr, {role, QStringLiteral("tablet")}},
            [&](const QByteArray &bytes) { answer = bytes; });
        return answer;
    };
    EXPECT_TRUE(ask(AccessRole::Listener).contains("-32007"));
    EXPECT_EQ(called, 0);
    EXPECT_TRUE(ask(AccessRole::Owner).contains("tablet"));
    EXPECT_EQ(called, 1);
}

} // namespace
