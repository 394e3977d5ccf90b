// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMWorker.h"

#include "tests/api/nodes/TestNodes.h"
#include "tests/support/LogCapture.h"

#include <QThread>
#include <QTimer>

#include <atomic>
#include <mutex>
#include <thread>

namespace {

const QStringList valueRole {VeskRoles::Value()};

/// Responds to each request with the request's own value, or as \a handle does.
class EchoWorker : public CMWorker {
public:
    using Handle = std::function<bool(const CMRequest &)>;

    explicit EchoWorker(const QString &name, Handle handle = nullptr)
        : CMWorker(QVariantHash(), name)
        , m_handle(std::move(handle))
    {
    }
    ~EchoWorker() override { stop(); }

    std::vector<QThread *> languageChangedOn;

protected:
    bool handleRequest(const CMRequest &request) override
    {
        if (m_handle)
            return m_handle(request);
        request.reply().setValue(CMSetDataRequest(request).value());
        return true;
    }
    void handleConnectChange(const CMPath &) override { }
    void handleDisconnectChange(const CMPath &) override { }
    void handleLanguageChanged() override { languageChangedOn.push_back(QThread::currentThread()); }

private:
    const Handle m_handle;
};

std::unique_ptr<WorkerThread> echoThread(EchoWorker::Handle handle = nullptr)
{
    return std::make_unique<WorkerThread>(
        [handle] { return new EchoWorker(QStringLiteral("Echo"), handle); });
}

EchoWorker &workerOf(const std::unique_ptr<WorkerThread> &thread)
{
    return *static_cast<EchoWorker *>(thread->object());
}

TEST(CMWorker, MakesPathsUnderItsNameFromTheirTextForm)
{
    const EchoWorker worker(QStringLiteral("Echo"));
    EXPECT_EQ(worker.addPrefix(QString()).toEncoded(), QStringLiteral("Echo:"));
    const CMPath made = worker.addPrefix(QStringLiteral("browse/uri/Search.ashx?query=aa1"));
    EXPECT_EQ(made.prefix(), QStringLiteral("Echo"));
    EXPECT_EQ(made.base(), QStringLiteral("browse/uri/Search.ashx"));
    EXPECT_EQ(made.param(QStringLiteral("query")), QStringLiteral("aa1"));
}

TEST(CMWorker, MakesPathsUnderANameThatNeedsEncoding)
{
    const EchoWorker worker(QStringLiteral("E c:o"));
    EXPECT_EQ(worker.addPrefix(QStringLiteral("a")).prefix(), QStringLiteral("E c:o"));
}

TEST(CMWorker, KeepsItsConfiguration)
{
    const QVariantHash config {{QStringLiteral("key"), 3}};
    class Configured : public CMWorker {
    public:
        explicit Configured(const QVariantHash &hash)
            : CMWorker(hash, QStringLiteral("Echo"))
        {
        }

    protected:
        bool handleRequest(const CMRequest &) override { return false; }
        void handleConnectChange(const CMPath &) override { }
        void handleDisconnectChange(const CMPath &) override { }
    } const worker(config);
    EXPECT_EQ(worker.config(), config);
    EXPECT_EQ(worker.name(), QStringLiteral("Echo"));
}

TEST(CMWorker, HandlesRequestsOfOtherThreadsOnItsOwnInTheirOrder)
{
    std::vector<int> order;
    std::vector<QThread *> threads;
    const auto thread = echoThread([&](const CMRequest &request) {
        order.push_back(CMSetDataRequest(request).value().toInt());
        threads.push_back(QThread::currentThread());
        request.reply().setValue(order.back());
        return true;
    });
    std::vector<Answer> answers;
    for (int i = 0; i < 100; ++i)
        answers.push_back(setData(workerOf(thread), path("Echo:x"), VeskRoles::Value(), i));
    for (int i = 0; i < 100; ++i) {
        ASSERT_TRUE(answers[static_cast<std::size_t>(i)].wait());
        EXPECT_EQ(answers[static_cast<std::size_t>(i)].value(), QVariant(i));
    }
    thread->call([&] {
        for (std::size_t i = 0; i < order.size(); ++i) {
            EXPECT_EQ(order[i], static_cast<int>(i));
            EXPECT_EQ(threads[i], thread.get());
        }
    });
}

TEST(CMWorker, HandlesRequestsOfItsOwnThreadAtOnce)
{
    const auto thread = echoThread();
    thread->call([&] {
        const Answer answer = setData(workerOf(thread), path("Echo:x"), VeskRoles::Value(), 5);
        EXPECT_TRUE(answer.isThere());
        EXPECT_EQ(answer.value(), QVariant(5));
    });
}

TEST(CMWorker, HandlesPostedRequestsOfItsOwnThreadAfterTheQueue)
{
    std::vector<int> handled;
    const auto thread = echoThread([&handled](const CMRequest &request) {
        handled.push_back(CMSetDataRequest(request).value().toInt());
        request.reply().setValue(QVariant());
        return true;
    });
    std::vector<std::shared_ptr<CMReplyData<QVariant>>> answers;
    const auto request = [&answers](int number) {
        answers.push_back(std::make_shared<CMReplyData<QVariant>>());
        return CMSetDataRequest(
            path("Echo:x"), VeskRoles::Value(), number, CMReply<QVariant>(answers.back()));
    };
    thread->call([&] {
        // A request from another thread stays queued until this function returns.
        std::thread other([&] { workerOf(thread).request(request(1)); });
        other.join();
        workerOf(thread).post(request(2));
        EXPECT_TRUE(handled.empty());
        workerOf(thread).request(request(3));
        EXPECT_EQ(handled, std::vector<int> {3});
    });
    for (const auto &answer : answers)
        EXPECT_TRUE(answer->waitForFinished(10000));
    EXPECT_EQ(handled, (std::vector<int> {3, 1, 2}));
}

TEST(CMWorker, ARequestThatIsNotForItEndsWithAnError)
{
    const auto thread = echoThread([](const CMRequest &) { return false; });
    const Answer answer = getData(workerOf(thread), path("Echo:x"), valueRole);
    ASSERT_TRUE(answer.wait());
    EXPECT_EQ(answer.errorName(), CMError::NoNodeName());
    EXPECT_EQ(answer.errorText(), QStringLiteral("There is nothing at this address."));
}

TEST(CMWorker, AnAcceptedRequestThatIsDroppedEndsWithAnError)
{
    const auto thread = echoThread([](const CMRequest &) { return true; });
    const Answer answer = getData(workerOf(thread), path("Echo:x"), valueRole);
    ASSERT_TRUE(answer.wait());
    EXPECT_EQ(answer.errorName(), CMError::UnansweredName());
}

TEST(CMWorker, AHandlerMayAnswerLater)
{
    std::vector<CMReply<QVariant>> kept;
    const auto thread = echoThread([&](const CMRequest &request) {
        if (request.path().base() == QStringLiteral("next"))
            return false;
        kept.push_back(request.reply());
        return true;
    });
    const Answer answer = getData(workerOf(thread), path("Echo:x"), valueRole);
    ASSERT_TRUE(getData(workerOf(thread), path("Echo:next"), valueRole).wait());
    thread->call([&] { EXPECT_EQ(kept.size(), 1U); });
    EXPECT_FALSE(answer.isThere());
    kept.front().setValue(9);
    EXPECT_EQ(answer.value(), QVariant(9));
}

TEST(CMWorker, RequestsThatArriveDuringConstructionWaitForTheEventLoop)
{
    class SlowWorker : public EchoWorker {
    public:
        SlowWorker(std::atomic<bool> *handled, const std::function<void()> &construct)
            : EchoWorker(QStringLiteral("Echo"), [handled](const CMRequest &request) {
                *handled = true;
                request.reply().setValue(1);
                return true;
            })
        {
            construct();
        }
    };

    CMRootWorker root;
    const Answer answer;
    std::atomic<bool> handled {false};
    bool handledEarly = false;
    WorkerThread thread([&] {
        return new SlowWorker(&handled, [&] {
            std::thread asking(
                [&] { root.request(CMGetDataRequest(path("Echo:x"), valueRole, answer.reply())); });
            asking.join();
            handledEarly = handled;
        });
    });
    ASSERT_TRUE(answer.wait());
    EXPECT_EQ(answer.value(), QVariant(1));
    thread.call([&] { EXPECT_FALSE(handledEarly); });
}

TEST(CMWorker, AnswersAllOfAThousandRequestsWhenItIsDestroyed)
{
    CMRootWorker root;
    Gate entered;
    Gate released;
    std::atomic<int> handled {0};
    auto thread = echoThread([&](const CMRequest &request) {
        if (handled++ == 0) {
            entered.open();
            EXPECT_TRUE(released.wait());
        }
        request.reply().setValue(1);
        return true;
    });

    std::mutex mutex;
    std::vector<Answer> answers {getData(root, path("Echo:first"), valueRole)};
    ASSERT_TRUE(entered.wait());
    std::vector<std::thread> asking;
    for (int i = 0; i < 4; ++i) {
        asking.emplace_back([&] {
            for (int n = 0; n < 250; ++n) {
                const Answer answer = getData(root, path("Echo:x"), valueRole);
                const std::lock_guard<std::mutex> lock(mutex);
                answers.push_back(answer);
            }
        });
    }
    for (std::thread &one : asking)
        one.join();
    // The loop ends after the request being handled; the others are still in the inbox.
    thread->quit();
    released.open();
    thread.reset();

    int values = 0;
    for (const Answer &answer : answers) {
        ASSERT_TRUE(answer.isThere());
        if (answer.isError())
            EXPECT_EQ(answer.errorName(), CMError::UnansweredName());
        else
            ++values;
    }
    EXPECT_EQ(answers.size(), 1001U);
    EXPECT_EQ(values, handled);
    EXPECT_LT(values, 1001);
}

TEST(CMWorker, MayBeDeletedInItsEventLoopWhileOtherThreadsAsk)
{
    CMRootWorker root;
    for (int round = 0; round < 25; ++round) {
        auto thread = std::make_unique<WorkerThread>([] { return new QObject; });
        CMWorker *worker = nullptr;
        thread->call([&] { worker = new EchoWorker(QStringLiteral("Echo")); });
        std::atomic<bool> stop {false};
        std::vector<std::thread> asking;
        std::atomic<int> asked {0};
        for (int i = 0; i < 2; ++i) {
            asking.emplace_back([&] {
                while (!stop) {
                    const Answer answer
                        = setData(root, path("Echo:x"), VeskRoles::Value(), QVariant(1));
                    ++asked;
                    ASSERT_TRUE(answer.wait());
                    ASSERT_TRUE(answer.isError() || answer.value() == QVariant(1));
                }
            });
        }
        while (asked < 10)
            std::this_thread::yield();
        thread->call([&] { delete worker; });
        const Answer late = getData(root, path("Echo:x"), valueRole);
        EXPECT_EQ(late.errorName(), CMError::NoNodeName());
        stop = true;
        for (std::thread &one : asking)
            one.join();
    }
}

TEST(CMWorker, AStoppedWorkerAcceptsNoRequests)
{
    ScriptThread thread(QStringLiteral("Echo"));
    thread.call([&] {
        thread.worker().stop();
        EXPECT_EQ(getData(thread.worker(), path("Echo:x"), valueRole).errorName(),
            CMError::UnansweredName());
    });
    EXPECT_EQ(
        getData(thread.worker(), path("Echo:x"), valueRole).errorName(), CMError::UnansweredName());
    // A synchronization that ThreadSanitizer sees: the thread ends after the request.
    thread.call([] {});
}

TEST(CMWorker, GivesTimersTheirTurnBetweenRequests)
{
    constexpr int Requests = 200;
    Gate queued;
    int handled = 0;
    int handledAtTimeout = -1;
    const auto thread = echoThread([&](const CMRequest &request) {
        if (handled == 0) {
            EXPECT_TRUE(queued.wait());
            QTimer::singleShot(0, [&] { handledAtTimeout = handled; });
        }
        ++handled;
        request.reply().setValue(1);
        return true;
    });
    std::vector<Answer> answers;
    for (int i = 0; i < Requests; ++i)
        answers.push_back(getData(workerOf(thread), path("Echo:x"), valueRole));
    queued.open();
    for (const Answer &answer : answers)
        ASSERT_TRUE(answer.wait());
    thread->call([&] {
        EXPECT_GE(handledAtTimeout, 0);
        EXPECT_LT(handledAtTimeout, Requests);
    });
}

TEST(CMWorker, AnswersASignOfLifeAtItsRoot)
{
    const auto thread = echoThread([](const CMRequest &) { return false; });
    const Answer answer = setData(workerOf(thread), path("Echo:"), CMPingRole(), 42);
    ASSERT_TRUE(answer.wait());
    EXPECT_EQ(answer.value(), QVariant(42));

    for (const char *elsewhere : {"Echo:x", "Other:"}) {
        const Answer other = setData(workerOf(thread), path(elsewhere), CMPingRole(), 42);
        ASSERT_TRUE(other.wait());
        EXPECT_EQ(other.errorName(), CMError::NoNodeName());
    }
}

TEST(CMWorker, IsNotifiedOfALanguageChangeOnItsThread)
{
    CMRootWorker root;
    const auto thread = echoThread();
    root.notifyLanguageChanged();
    const Answer after = setData(root, path("Echo:x"), VeskRoles::Value(), 1);
    ASSERT_TRUE(after.wait());
    thread->call([&] {
        EXPECT_EQ(workerOf(thread).languageChangedOn, std::vector<QThread *> {thread.get()});
    });
}

TEST(CMWorker, WritesItsStateToTheLog)
{
    const LogCapture log("Nodes");
    ScriptWorker worker(QStringLiteral("Echo"),
        [](ScriptWorker &self) { ScriptNode::create(self.nodes(), path("Echo:browse")); });
    worker.trace();
    EXPECT_EQ(log.lines(),
        (QStringList {QStringLiteral("DEBUG Worker 'Echo': 0 waiting"),
            QStringLiteral("DEBUG   CMUINode at 'Echo:browse'")}));
}

TEST(CMWorkerGetValue, ReadsTheValueRoleFromAnyThread)
{
    const auto thread = echoThread([](const CMRequest &request) {
        EXPECT_EQ(CMGetDataRequest(request).roles(), valueRole);
        request.reply().setValue(QVariantList {QVariant(11)});
        return true;
    });
    EXPECT_EQ(workerOf(thread).getValue(path("Echo:x")), QVariant(11));
    thread->call([&] { EXPECT_EQ(workerOf(thread).getValue(path("Echo:x")), QVariant(11)); });
}

TEST(CMWorkerGetValue, IsNullWhereThereIsNoAnswer)
{
    const auto thread = echoThread([](const CMRequest &) { return true; });
    EXPECT_EQ(workerOf(thread).getValue(path("Echo:x")), QVariant());
    thread->call([&] { EXPECT_EQ(workerOf(thread).getValue(path("Echo:x")), QVariant()); });
}

TEST(CMWorkerGetValue, MayBeCalledByTheWorkersOwnHandlers)
{
    CMRootWorker root;
    const auto thread = echoThread([&root](const CMRequest &request) {
        if (request.path().base() == QStringLiteral("inner"))
            request.reply().setValue(QVariantList {QVariant(3)});
        else
            request.reply().setValue(QVariantList {root.getValue(path("Echo:inner"))});
        return true;
    });
    EXPECT_EQ(root.getValue(path("Echo:outer")), QVariant(3));
}

} // namespace
