// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/link/NodeLink.h"

#include "api/core/Mutex.h"
#include "api/nodes/CMValuesWorker.h"
#include "tests/api/nodes/TestNodes.h"
#include "tests/plugin/link/Ends.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

#include <atomic>
#include <thread>

namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::HasSubstr;

const QStringList valueRole {VeskRoles::Value()};

CMError interruptedError()
{
    return CMError(QStringLiteral("interrupted"), text("Interrupted"), text("Title"));
}

/// Keeps its requests for the test to complete.
class HoldingWorker : public CMAbstractWorker {
public:
    void request(CMRequest request) override
    {
        const VeskMutexLock lock(m_mutex);
        m_requests.push_back(std::move(request));
    }

    std::size_t count() const
    {
        const VeskMutexLock lock(m_mutex);
        return m_requests.size();
    }

    std::vector<CMRequest> removeAll()
    {
        const VeskMutexLock lock(m_mutex);
        return std::exchange(m_requests, {});
    }

private:
    mutable VeskMutex m_mutex;
    std::vector<CMRequest> m_requests VESK_GUARDED_BY(m_mutex);
};

/// Counts the paths that have subscribers.
class CountingWorker : public CMAbstractWorker {
public:
    void request(CMRequest request) override { request.reply().setValue(QVariant()); }
    void connectChange(const CMPath &) override { ++subscribed; }
    void disconnectChange(const CMPath &) override { --subscribed; }

    std::atomic<int> subscribed {0};
};

/// Completes each request on a thread of its own.
class ScatteringWorker : public CMAbstractWorker {
public:
    ~ScatteringWorker() override
    {
        for (std::thread &thread : m_threads)
            thread.join();
    }

    void request(CMRequest request) override
    {
        const VeskMutexLock lock(m_mutex);
        m_threads.emplace_back([request] {
            std::this_thread::yield();
            request.reply().setValue(QVariantList {1});
        });
    }

private:
    VeskMutex m_mutex;
    std::vector<std::thread> m_threads VESK_GUARDED_BY(m_mutex);
};

/// A link, connected to a channel over which the test exchanges messages as the peer.
class NodeLinkTest : public testing::Test {
protected:
    NodeLinkTest() { connect(); }
    ~NodeLinkTest() override { disconnect(); }

    void connect()
    {
        const auto [mine, other] = connectedSockets();
        m_ended = std::make_unique<Received>();
        m_others = std::make_unique<Received>();
        m_received = std::make_unique<Received>();
        m_link = std::make_unique<NodeLink>(std::make_unique<Channel>(mine));
        m_peer = std::make_unique<Channel>(other);
        m_peer->start({[received = m_received.get()](
                           const QByteArray &payload) { return received->handle(payload); },
            [received = m_received.get()](const QString &reason) { received->end(reason); }});
        NodeLink::Handler handler;
        handler.received = [others = m_others.get()](MessageKind, const QByteArray &payload) {
            return others->handle(payload);
        };
        handler.ended = [ended = m_ended.get()](const QString &reason) { ended->end(reason); };
        handler.interrupted = [] { return interruptedError(); };
        m_link->start(std::move(handler));
    }

    void disconnect()
    {
        m_link.reset();
        m_peer.reset();
    }

    /// Sends a message as the peer.
    template <class Message>
    void tell(const Message &message)
    {
        ASSERT_TRUE(m_peer->sender()->send(encode(message)));
    }

    /// Sends a request as the peer.
    void ask(quint64 id, const CMPath &to)
    {
        tell(RequestMessage::of(id, CMGetDataRequest(to, valueRole, {})));
    }

    /// The messages of \a kind that the peer has received.
    template <class Message>
    std::vector<Message> told(MessageKind kind) const
    {
        std::vector<Message> messages;
        for (const QByteArray &payload : m_received->payloads()) {
            if (kindOf(payload) == kind)
                messages.push_back(decode<Message>(payload).value());
        }
        return messages;
    }
    std::vector<RequestMessage> asked() const { return told<RequestMessage>(MessageKind::Request); }
    std::vector<ResponseMessage> answered() const
    {
        return told<ResponseMessage>(MessageKind::Response);
    }
    std::vector<ChangeMessage> changes() const { return told<ChangeMessage>(MessageKind::Change); }

    bool spinUntilAsked(std::size_t count)
    {
        return spinUntil([&] { return asked().size() >= count; });
    }
    bool spinUntilAnswered(std::size_t count)
    {
        return spinUntil([&] { return answered().size() >= count; });
    }

    /// Sends a request through the link.
    Answer request(const CMPath &to)
    {
        const Answer answer;
        m_link->request(CMGetDataRequest(to, valueRole, answer.reply()));
        return answer;
    }

    /// Waits for the connection's end; the reason that the link's handler got for it.
    std::string reason()
    {
        EXPECT_TRUE(m_ended->waitForEnd());
        EXPECT_EQ(m_ended->reasons().size(), 1U);
        return m_ended->hasEnded() ? m_ended->reasons().front().toStdString() : "not ended";
    }

    CMRootWorker m_root;
    std::unique_ptr<Received> m_ended;
    std::unique_ptr<Received> m_others; ///< messages that the link passes to its handler
    std::unique_ptr<Received> m_received; ///< messages that the peer has received
    std::unique_ptr<NodeLink> m_link;
    std::unique_ptr<Channel> m_peer;
};

TEST_F(NodeLinkTest, RequestsAreSentAndCompletedByTheirResponses)
{
    const Answer value = request(path("A:x?y=z"));
    const Answer error = request(path("A:e"));
    ASSERT_TRUE(spinUntilAsked(2));
    const std::vector<RequestMessage> requests = asked();
    EXPECT_EQ(requests[0].path, path("A:x?y=z"));
    EXPECT_EQ(requests[0].kind, CMRequest::GetData);
    EXPECT_EQ(requests[0].roles, valueRole);
    EXPECT_NE(requests[0].id, requests[1].id);

    // Responses may arrive in any order.
    ResponseMessage failed;
    failed.id = requests[1].id;
    failed.error = CMNoNodeError();
    tell(failed);
    ResponseMessage good;
    good.id = requests[0].id;
    good.value = QVariantList {7};
    tell(good);
    ASSERT_TRUE(value.wait() && error.wait());
    EXPECT_EQ(value.list(), QVariantList {7});
    EXPECT_FALSE(value.isError());
    EXPECT_EQ(error.errorName(), CMError::NoNodeName());
    EXPECT_FALSE(m_ended->hasEnded());
}

TEST_F(NodeLinkTest, ServiceFaultsAreSentWithResponses)
{
    const Answer error = request(path("A:e"));
    const Answer value = request(path("A:x"));
    ASSERT_TRUE(spinUntilAsked(2));
    ResponseMessage message;
    message.id = asked()[0].id;
    message.error = CMNoNodeError();
    message.fault = {VeskServiceFault::HttpStatus, 403};
    tell(message);
    tell(ResponseMessage {asked()[1].id, QVariantList {7}, {}, {}});
    ASSERT_TRUE(error.wait() && value.wait());
    EXPECT_TRUE(error.data()->serviceFault() == message.fault);
    EXPECT_TRUE(value.data()->serviceFault().isEmpty());

    // In the other direction.
    HoldingWorker holding;
    m_root.addWorker(QStringLiteral("Held"), &holding);
    ask(1, path("Held:a"));
    ask(2, path("Held:b"));
    ASSERT_TRUE(spinUntil([&] { return holding.count() == 2; }));
    const VeskServiceFault late {VeskServiceFault::TimedOut, 0};
    for (const CMRequest &each : holding.removeAll()) {
        each.replyData()->setServiceFault([late] { return late; });
        if (each.path() == path("Held:a"))
            each.reply().setError(CMNoNodeError());
        else
            each.reply().setValue(QVariantList {1});
    }
    ASSERT_TRUE(spinUntilAnswered(2));
    for (const ResponseMessage &each : answered())
        EXPECT_TRUE(each.fault == (each.id == 1 ? late : VeskServiceFault())) << each.id;
    m_root.removeWorker(&holding);
}

TEST_F(NodeLinkTest, ReadsThatWereCompletedOtherwiseAreCancelled)
{
    const Answer answer = request(path("A:x"));
    ASSERT_TRUE(spinUntilAsked(1));
    answer.data()->setError(CMCancelledError());
    ASSERT_TRUE(spinUntil([&] { return !told<CancelMessage>(MessageKind::Cancel).empty(); }));
    const quint64 id = asked().front().id;
    EXPECT_EQ(told<CancelMessage>(MessageKind::Cancel).front().id, id);
    // The peer's response may cross the cancellation; it is dropped.
    ResponseMessage late;
    late.id = id;
    tell(late);
    // Completed requests are not cancelled, nor are those that change something.
    const Answer second = request(path("A:y"));
    ASSERT_TRUE(spinUntilAsked(2));
    late.id = asked().back().id;
    tell(late);
    ASSERT_TRUE(second.wait());
    const Answer change;
    m_link->request(CMSetDataRequest(path("A:z"), VeskRoles::Value(), 5, change.reply()));
    ASSERT_TRUE(spinUntilAsked(3));
    change.data()->setError(CMCancelledError());
    const Answer last = request(path("A:last"));
    ASSERT_TRUE(spinUntilAsked(4));
    EXPECT_EQ(told<CancelMessage>(MessageKind::Cancel).size(), 1U);
    EXPECT_FALSE(m_ended->hasEnded());
}

TEST_F(NodeLinkTest, PendingReadsCanBeReclaimed)
{
    const Answer moved = request(path("A:moved"));
    const Answer stays = request(path("A:stays"));
    const Answer unwanted = request(path("A:unwanted"));
    const Answer change;
    m_link->request(CMSetDataRequest(path("A:x"), VeskRoles::Value(), 5, change.reply()));
    ASSERT_TRUE(spinUntilAsked(4));
    unwanted.data()->setError(CMCancelledError());
    EXPECT_EQ(m_link->pending().size(), 3U);

    const std::vector<CMRequest> taken
        = m_link->reclaim([](const CMRequest &each) { return each.path() != path("A:stays"); });
    ASSERT_EQ(taken.size(), 1U) << "neither the change nor the one that was completed";
    EXPECT_EQ(taken[0].path(), path("A:moved"));
    EXPECT_EQ(m_link->pending().size(), 2U);
    EXPECT_FALSE(moved.isThere());
    // Responses to reclaimed requests are ignored.
    ResponseMessage late;
    late.id = asked().front().id;
    late.value = QVariantList {1};
    tell(late);
    late.id = asked()[1].id;
    tell(late);
    ASSERT_TRUE(stays.wait());
    EXPECT_FALSE(moved.isThere());
    taken[0].reply().setValue(QVariantList {2});
    EXPECT_EQ(moved.list().value(0), 2);
    EXPECT_EQ(m_link->pending().size(), 1U);
    EXPECT_FALSE(m_ended->hasEnded());
}

TEST_F(NodeLinkTest, ACancelledRequestIsCompletedAndGetsAResponse)
{
    HoldingWorker worker;
    ASSERT_TRUE(m_root.addWorker(QStringLiteral("H"), &worker));
    ask(1, path("H:x"));
    ask(2, path("H:y"));
    ASSERT_TRUE(spinUntil([&] { return worker.count() == 2; }));
    tell(CancelMessage {1});
    ASSERT_TRUE(spinUntilAnswered(1));
    EXPECT_EQ(answered().front().id, 1U);
    EXPECT_EQ(
        answered().front().error.message().sourceText(), CMCancelledError().message().sourceText());
    // A cancelled request's later outcome is not sent; cancelling a completed or unknown request
    // has no effect.
    std::vector<CMRequest> requests = worker.removeAll();
    requests[0].reply().setValue(QVariantList {1});
    requests[1].reply().setValue(QVariantList {2});
    ASSERT_TRUE(spinUntilAnswered(2));
    tell(CancelMessage {1});
    tell(CancelMessage {12345});
    ask(3, path("H:z"));
    ASSERT_TRUE(spinUntil([&] { return worker.count() == 1; }));
    EXPECT_EQ(answered().size(), 2U);
    EXPECT_FALSE(m_ended->hasEnded());
    m_root.removeWorker(&worker);
}

TEST_F(NodeLinkTest, AliveEndsTheSilence)
{
    const Answer answer = request(path("A:x"));
    ASSERT_TRUE(spinUntilAsked(1));
    ASSERT_TRUE(spinUntil([&] { return m_link->silence() > milliseconds(200); }));
    // Again and again: this thread may stand still for longer than the silence is short.
    EXPECT_TRUE(spinUntil([&] {
        tell(AliveMessage());
        return m_link->silence() < milliseconds(100);
    }));
    EXPECT_FALSE(answer.isThere());
}

TEST_F(NodeLinkTest, ARequestWithAnIdInUseEndsTheConnection)
{
    HoldingWorker worker;
    ASSERT_TRUE(m_root.addWorker(QStringLiteral("H"), &worker));
    ask(1, path("H:x"));
    ask(1, path("H:y"));
    EXPECT_EQ(reason(), "a request with the id of another one");
    m_root.removeWorker(&worker);
}

TEST_F(NodeLinkTest, ARequestWithoutReplyAcceptsAResponse)
{
    m_link->request(CMSetDataRequest(path("A:x"), VeskRoles::Value(), 5, {}));
    ASSERT_TRUE(spinUntilAsked(1));
    ResponseMessage answer;
    answer.id = asked().front().id;
    tell(answer);
    // The connection goes on.
    const Answer next = request(path("A:y"));
    ASSERT_TRUE(spinUntilAsked(2));
    answer.id = asked().back().id;
    tell(answer);
    EXPECT_TRUE(next.wait());
    EXPECT_FALSE(next.isError());
    EXPECT_FALSE(m_ended->hasEnded());
}

TEST_F(NodeLinkTest, AResponseWithoutARequestEndsTheConnection)
{
    ResponseMessage answer;
    answer.id = 12345;
    tell(answer);
    EXPECT_EQ(reason(), "a response without a request");
}

TEST_F(NodeLinkTest, ASecondResponseEndsTheConnection)
{
    const Answer first = request(path("A:x"));
    ASSERT_TRUE(spinUntilAsked(1));
    ResponseMessage answer;
    answer.id = asked().front().id;
    answer.value = 1;
    tell(answer);
    ASSERT_TRUE(first.wait());
    EXPECT_FALSE(m_ended->hasEnded());
    answer.value = 2;
    tell(answer);
    EXPECT_EQ(reason(), "a response without a request");
    EXPECT_EQ(first.value(), QVariant(1));
}

TEST_F(NodeLinkTest, PendingRequestsAreInterruptedAtTheEnd)
{
    std::vector<Answer> answers;
    for (int i = 0; i < 50; ++i)
        answers.push_back(request(path("A:x")));
    m_peer.reset();
    EXPECT_EQ(reason(), "");
    for (const Answer &answer : answers) {
        ASSERT_TRUE(answer.isThere()) << "before ended() is called";
        EXPECT_EQ(answer.errorName(), QStringLiteral("interrupted"));
    }
    const Answer late = request(path("A:x"));
    EXPECT_TRUE(late.isThere());
    EXPECT_EQ(late.errorName(), QStringLiteral("interrupted"));
    EXPECT_EQ(m_link->silence(), milliseconds(0));
    EXPECT_FALSE(m_link->send(StopMessage()));
}

TEST_F(NodeLinkTest, CloseEndsTheConnection)
{
    const Answer answer = request(path("A:x"));
    m_link->close();
    ASSERT_TRUE(answer.wait());
    EXPECT_EQ(answer.errorName(), QStringLiteral("interrupted"));
    EXPECT_EQ(reason(), "");
    EXPECT_TRUE(m_received->waitForEnd());
}

TEST_F(NodeLinkTest, PendingRequestsAreInterruptedByTheDestructor)
{
    const Answer answer = request(path("A:x"));
    m_link.reset();
    EXPECT_TRUE(answer.isThere());
    EXPECT_EQ(answer.errorName(), QStringLiteral("interrupted"));
    EXPECT_EQ(reason(), "");
}

TEST_F(NodeLinkTest, RequestsOfTheOtherSideGoToTheRoot)
{
    CMValuesWorker values;
    values.define(path("S:a"), VeskValue::fromInt(42), CMValuesWorker::Writable);
    m_root.addWorker(QStringLiteral("S"), &values);
    const ScriptThread nodes(QStringLiteral("N"), [](ScriptWorker &worker) {
        ScriptNode::create(worker.nodes(), path("N:rows"), [](const CMRequest &asked) {
            const CMGetRowsRequest rows(asked);
            asked.reply().setValue(QVariantList {rows.first(), rows.last(), asked.hops()});
            return true;
        });
    });

    ask(1, path("S:a"));
    ask(2, path("Nobody:x"));
    ask(3, path("N:nothing"));
    tell(RequestMessage::of(4, CMGetRowsRequest(path("N:rows"), valueRole, 2, 9, {}).withHops(5)));
    tell(RequestMessage::of(
        5, CMSetDataRequest(path("S:a"), VeskRoles::Value(), VeskValue::fromInt(43).toHash(), {})));
    ASSERT_TRUE(spinUntilAnswered(5));
    std::map<quint64, ResponseMessage> answers;
    for (const ResponseMessage &answer : answered())
        answers[answer.id] = answer;
    ASSERT_EQ(answers.size(), 5U);
    EXPECT_EQ(VeskValue(answers[1].value.toList().value(0).toHash()).int_(), 42);
    EXPECT_EQ(answers[2].error.name(), CMError::NoNodeName());
    EXPECT_EQ(answers[3].error.name(), CMError::NoNodeName());
    EXPECT_EQ(answers[4].value, QVariant(QVariantList {2, 9, 5}));
    EXPECT_TRUE(answers[5].error.isEmpty());
    EXPECT_EQ(values.value(path("S:a")).int_(), 43);
    m_root.removeWorker(&values);
}

TEST_F(NodeLinkTest, ARequestThatIsDroppedGetsAResponse)
{
    HoldingWorker worker;
    m_root.addWorker(QStringLiteral("H"), &worker);
    ask(8, path("H:x"));
    ASSERT_TRUE(spinUntil([&] { return worker.count() == 1; }));
    worker.removeAll();
    ASSERT_TRUE(spinUntilAnswered(1));
    EXPECT_EQ(answered().front().id, 8U);
    EXPECT_EQ(answered().front().error.name(), CMError::UnansweredName());
    m_root.removeWorker(&worker);
}

TEST_F(NodeLinkTest, TooManyRequestsAtATimeEndTheConnection)
{
    HoldingWorker worker;
    m_root.addWorker(QStringLiteral("H"), &worker);
    const auto askAll = [this] {
        for (int i = 0; i < NodeLink::MaxRequests; ++i)
            ask(static_cast<quint64>(i), path("H:x"));
    };
    askAll();
    ASSERT_TRUE(spinUntil([&] { return worker.count() == NodeLink::MaxRequests; }));
    // Completed requests do not count.
    for (const CMRequest &request : worker.removeAll())
        request.reply().setValue(1);
    ASSERT_TRUE(spinUntilAnswered(NodeLink::MaxRequests));
    askAll();
    ASSERT_TRUE(spinUntil([&] { return worker.count() == NodeLink::MaxRequests; }));
    EXPECT_FALSE(m_ended->hasEnded());
    ask(NodeLink::MaxRequests, path("H:x"));
    EXPECT_EQ(reason(), "more than 1024 requests at a time");
    EXPECT_EQ(worker.count(), std::size_t(NodeLink::MaxRequests));
    m_root.removeWorker(&worker);
}

TEST_F(NodeLinkTest, ChangesAreSentToSubscribers)
{
    CountingWorker worker;
    m_root.addWorker(QStringLiteral("W"), &worker);
    tell(SubscribeMessage {path("W:x"), true});
    tell(SubscribeMessage {path("W:x"), true});
    ASSERT_TRUE(spinUntil([&] { return worker.subscribed == 1; }));
    m_root.notifyChanged({path("W:x"), CMSubscribe::RowsChangeInserted(), 3, 5, 2});
    m_root.notifyChanged({path("W:other"), CMSubscribe::RowsChangeReset(), -1, -1});
    ASSERT_TRUE(spinUntil([&] { return !changes().empty(); }));
    const CMChange change = changes().front().change;
    EXPECT_EQ(change.path, path("W:x"));
    EXPECT_EQ(change.kind, CMSubscribe::RowsChangeInserted());
    EXPECT_EQ(change.first, 3);
    EXPECT_EQ(change.last, 5);
    EXPECT_EQ(change.hops, 2);
    EXPECT_FALSE(changes().front().startingWith);

    tell(SubscribeMessage {path("W:x"), false});
    tell(SubscribeMessage {path("W:never"), false});
    ASSERT_TRUE(spinUntil([&] { return worker.subscribed == 0; }));
    m_root.notifyChanged({path("W:x"), CMSubscribe::RowsChangeReset(), -1, -1});
    QCoreApplication::processEvents();
    ask(1, path("W:x")); // its response arrives after all earlier messages
    ASSERT_TRUE(spinUntilAnswered(1));
    EXPECT_EQ(changes().size(), 1U);
    EXPECT_FALSE(m_ended->hasEnded());
    m_root.removeWorker(&worker);
}

TEST_F(NodeLinkTest, SubscriptionsEndWithTheLink)
{
    CountingWorker worker;
    m_root.addWorker(QStringLiteral("W"), &worker);
    for (int i = 0; i < 20; ++i)
        tell(SubscribeMessage {CMPath(QStringLiteral("W"), QString::number(i)), true});
    ASSERT_TRUE(spinUntil([&] { return worker.subscribed == 20; }));
    for (int i = 0; i < 5; ++i)
        tell(SubscribeMessage {CMPath(QStringLiteral("W"), QString::number(i)), false});
    m_link.reset();
    EXPECT_EQ(worker.subscribed, 0);
    m_root.removeWorker(&worker);
}

TEST_F(NodeLinkTest, SubscriptionsComeAndGoQuickly)
{
    CountingWorker worker;
    m_root.addWorker(QStringLiteral("W"), &worker);
    for (int round = 0; round < 20; ++round) {
        for (int i = 0; i < 200; ++i)
            tell(SubscribeMessage {path("W:x"), i % 2 == 0});
        QCoreApplication::processEvents();
    }
    ask(1, path("W:x"));
    ASSERT_TRUE(spinUntilAnswered(1));
    EXPECT_TRUE(spinUntil([&] { return worker.subscribed == 0; }));
    m_root.removeWorker(&worker);
}

TEST_F(NodeLinkTest, TooManySubscriptionsEndTheConnection)
{
    for (int i = 0; i < NodeLink::MaxSubscriptions; ++i)
        tell(SubscribeMessage {CMPath(QStringLiteral("W"), QString::number(i)), true});
    ask(1, path("W:x"));
    ASSERT_TRUE(spinUntilAnswered(1));
    EXPECT_FALSE(m_ended->hasEnded());
    tell(SubscribeMessage {path("W:more"), true});
    EXPECT_EQ(reason(), "more than 16384 subscriptions");
}

TEST_F(NodeLinkTest, ReceivedChangesAreNotified)
{
    QObject context;
    std::vector<CMChange> seen;
    const auto note = [&](const CMChange &change) { seen.push_back(change); };
    const auto exact = m_root.subscribe(path("A:x"), &context, note);
    const auto below = m_root.subscribe(path("A:x/y?z=1"), &context, note);

    tell(ChangeMessage {{path("A:x"), CMSubscribe::RowsChangeRemoved(), 1, 2, 4}, false});
    ASSERT_TRUE(spinUntil([&] { return seen.size() == 1; }));
    EXPECT_EQ(seen[0].path, path("A:x"));
    EXPECT_EQ(seen[0].kind, CMSubscribe::RowsChangeRemoved());
    EXPECT_EQ(seen[0].first, 1);
    EXPECT_EQ(seen[0].last, 2);
    EXPECT_EQ(seen[0].hops, 4);

    tell(ChangeMessage {{path("A:x"), CMSubscribe::RowsChangeReset(), -1, -1, 0}, true});
    ASSERT_TRUE(spinUntil([&] { return seen.size() == 3; }));
    EXPECT_NE(seen[1].path, seen[2].path);
    tell(ChangeMessage {{CMPath(), QString(), -1, -1, 0}, false});
    // The response shows that the link has handled the earlier messages.
    ask(1, path("Nobody:x"));
    ASSERT_TRUE(spinUntilAnswered(1));
    QCoreApplication::processEvents();
    EXPECT_EQ(seen.size(), 3U);
}

TEST_F(NodeLinkTest, SubscribesToChanges)
{
    m_link->subscribe(path("A:x"), true);
    m_link->subscribe(path("A:x"), false);
    ASSERT_TRUE(m_received->waitFor(2));
    const auto sent = told<SubscribeMessage>(MessageKind::Subscribe);
    ASSERT_EQ(sent.size(), 2U);
    EXPECT_EQ(sent[0].path, path("A:x"));
    EXPECT_TRUE(sent[0].on);
    EXPECT_FALSE(sent[1].on);
}

TEST_F(NodeLinkTest, AMessageThatCannotBeDecodedEndsTheConnection)
{
    for (const MessageKind kind : {MessageKind::Request, MessageKind::Response,
             MessageKind::Subscribe, MessageKind::Change}) {
        const QByteArray byte(1, static_cast<char>(kind));
        for (const QByteArray &payload : {byte, byte + QByteArray(100, '\xff')}) {
            disconnect();
            connect();
            const Answer waiting = request(path("A:x"));
            ASSERT_TRUE(m_peer->sender()->send(payload));
            EXPECT_EQ(reason(),
                "a message of kind " + std::to_string(int(kind)) + " that cannot be read");
            EXPECT_EQ(waiting.errorName(), QStringLiteral("interrupted"));
        }
    }
}

TEST_F(NodeLinkTest, OtherMessagesGoToTheHandler)
{
    const std::vector<QByteArray> payloads {
        encode(StopMessage()), encode(RouteMessage {path("A:"), true}), "\xf0", ""};
    for (const QByteArray &payload : payloads)
        ASSERT_TRUE(m_peer->sender()->send(payload));
    ASSERT_TRUE(m_others->waitFor(payloads.size()));
    EXPECT_EQ(m_others->payloads(), payloads);
    m_others->complain(QStringLiteral("no more"));
    ASSERT_TRUE(m_peer->sender()->send("\xf1"));
    EXPECT_EQ(reason(), "no more");
}

TEST_F(NodeLinkTest, SilenceGrowsWhileResponsesAreOwed)
{
    constexpr milliseconds Long {100};
    EXPECT_EQ(m_link->silence(), milliseconds(0));
    const Answer first = request(path("A:x"));
    const Answer second = request(path("A:y"));
    ASSERT_TRUE(spinUntilAsked(2));
    ASSERT_TRUE(spinUntil([&] { return m_link->silence() >= Long; }));

    ResponseMessage answer;
    answer.id = asked()[0].id;
    const auto begin = std::chrono::steady_clock::now();
    tell(answer);
    ASSERT_TRUE(first.wait());
    const milliseconds silence = m_link->silence(); // starts again with the response
    EXPECT_LE(silence, std::chrono::steady_clock::now() - begin);
    ASSERT_TRUE(spinUntil([&] { return m_link->silence() >= Long; }));
    answer.id = asked()[1].id;
    tell(answer);
    ASSERT_TRUE(second.wait());
    EXPECT_EQ(m_link->silence(), milliseconds(0));

    // A later request starts its own silence.
    const auto asking = std::chrono::steady_clock::now();
    const Answer third = request(path("A:z"));
    EXPECT_LE(m_link->silence(), std::chrono::steady_clock::now() - asking);
}

TEST_F(NodeLinkTest, AResponseThatIsTooLongBecomesAnError)
{
    HoldingWorker worker;
    m_root.addWorker(QStringLiteral("H"), &worker);
    ask(1, path("H:x"));
    ask(2, path("H:y"));
    ASSERT_TRUE(spinUntil([&] { return worker.count() == 2; }));
    const std::vector<CMRequest> requests = worker.removeAll();
    requests[0].reply().setValue(QByteArray(Channel::MaxPayload, 'x'));
    requests[1].reply().setValue(QByteArray(Channel::MaxPayload - 100, 'x'));
    ASSERT_TRUE(spinUntilAnswered(2));
    const std::vector<ResponseMessage> answers = answered();
    EXPECT_EQ(answers[0].id, 1U);
    EXPECT_EQ(answers[0].error.message().toString(), QStringLiteral("The answer is too long."));
    EXPECT_FALSE(answers[0].value.isValid());
    EXPECT_EQ(answers[1].value.toByteArray().size(), Channel::MaxPayload - 100);
    m_root.removeWorker(&worker);
}

TEST_F(NodeLinkTest, ARequestThatIsTooLongEndsWithAnError)
{
    const Answer answer;
    m_link->request(CMSetDataRequest(
        path("A:x"), VeskRoles::Value(), QByteArray(Channel::MaxPayload, 'x'), answer.reply()));
    ASSERT_TRUE(answer.isThere());
    EXPECT_TRUE(answer.isError());
    EXPECT_EQ(m_link->silence(), milliseconds(0));
    request(path("A:y"));
    ASSERT_TRUE(spinUntilAsked(1));
    EXPECT_EQ(asked().front().path, path("A:y"));
}

TEST_F(NodeLinkTest, IsDestroyedWhileOtherThreadsUseIt)
{
    for (int round = 0; round < 60; ++round) {
        ScatteringWorker worker;
        m_root.addWorker(QStringLiteral("T"), &worker);
        disconnect();
        connect();
        constexpr int Count = 20;
        for (quint64 id = 1; id <= Count; ++id)
            ask(id, path("T:x"));
        std::vector<Answer> answers(Count);
        std::thread asking([&] {
            for (const Answer &answer : answers)
                m_link->request(CMGetDataRequest(path("A:x"), valueRole, answer.reply()));
        });
        tell(SubscribeMessage {path("T:x"), true});
        ASSERT_TRUE(m_received->waitFor(static_cast<std::size_t>(round % Count)));
        asking.join();
        m_link.reset();
        for (const Answer &answer : answers)
            EXPECT_EQ(answer.errorName(), QStringLiteral("interrupted"));
        m_root.removeWorker(&worker);
    }
}

} // namespace
