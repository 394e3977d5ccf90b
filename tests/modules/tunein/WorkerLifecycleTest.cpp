// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/tunein/VeskTuneInPaths.h"
#include "api/web/HttpClient.h"
#include "modules/tunein/TuneInHttpClient.h"
#include "tests/modules/tunein/ProcessUsage.h"
#include "tests/modules/tunein/TuneInFixture.h"

#include <future>
#include <malloc.h>

namespace {

constexpr int WarmUpRounds = 10;
constexpr int Rounds = 1000;
constexpr int MostRounds = 4 * Rounds;

const QByteArray Root = screen(R"({"element":"outline","type":"link","text":"Music","key":"music",)"
                               R"("URL":"http://opml.radiotime.com/Browse.ashx?c=music"})");

class WorkerLifecycleTest : public TuneInFixture {
protected:
    static void SetUpTestSuite() { s_threadsBefore = ProcessUsage::now().threads; }

    /// The process's usage without the server, whose threads and connections are closed meanwhile.
    /// The kernel still lists a thread for a moment after it was joined.
    ProcessUsage settle()
    {
        closeServer();
        malloc_trim(0);
        EXPECT_TRUE(spinUntil([] { return ProcessUsage::now().threads == s_threadsBefore; }))
            << ProcessUsage::now().threads << " threads, not " << s_threadsBefore;
        const ProcessUsage usage = ProcessUsage::now();
        openServer();
        return usage;
    }

    /// Compares the usage after the first rounds with that after all rounds. What is allocated at
    /// the moment of a comparison varies by up to 22 KB on a busy machine, however many rounds
    /// there were; so when there seems to be a leak, there are more rounds, among which a real one
    /// shows all the more.
    int expectNothingLeft(const std::function<void()> &round)
    {
        // Log records cost time, and this test does not read them.
        log4cplus::Logger::getInstance("CB_TuneIn").setLogLevel(log4cplus::OFF_LOG_LEVEL);
        for (int i = 0; i < WarmUpRounds; ++i)
            round();
        const ProcessUsage before = settle();
        ProcessUsage after = before;
        int rounds = 0;
        // A block of 16 bytes lost in each round would show.
        const auto isMore
            = [&] { return after.allocatedBytes - before.allocatedBytes >= 16 * rounds; };
        while (rounds == 0 || (isMore() && rounds < MostRounds)) {
            for (int i = 0; i < Rounds; ++i)
                round();
            rounds += Rounds;
            after = settle();
        }
        EXPECT_EQ(after.threads, before.threads);
        EXPECT_EQ(after.descriptors, before.descriptors);
        EXPECT_FALSE(isMore()) << after.allocatedBytes - before.allocatedBytes << " bytes after "
                               << rounds << " rounds";
#ifndef VESK_SANITIZED
        // Looser: free memory between blocks in use stays with the process.
        EXPECT_LT(after.residentBytes - before.residentBytes, 2 * 1024 * rounds);
#endif
        return WarmUpRounds + rounds;
    }

    static std::unique_ptr<WorkerThread> createWorker()
    {
        return std::make_unique<WorkerThread>([]() -> QObject * {
            QVariantHash config = defaultConfig();
            return static_cast<CMTuneInWorker *>(worker_create("TuneIn", &config));
        });
    }

    static TuneInHttpClient *client(const WorkerThread &thread)
    {
        return static_cast<CMTuneInWorker *>(thread.object())->httpClient();
    }

    static void stall(ScriptedServer::Response &response)
    {
        response.end = ScriptedServer::End::StallBeforeHead;
    }

private:
    static int s_threadsBefore;
};

int WorkerLifecycleTest::s_threadsBefore = 0;

/// A request and its reply.
struct Pending {
    explicit Pending(const QString &path)
    {
        CMRoot()->request(CMGetRowsRequest(
            CMPath::fromEncoded(path), {"title"_s}, 0, 9, CMReply<QVariant>(data)));
    }

    std::shared_ptr<CMReplyData<QVariant>> data = std::make_shared<CMReplyData<QVariant>>();
};

} // namespace

TEST_F(WorkerLifecycleTest, LeavesNothingBehindAfterARequest)
{
    answer("/Browse.ashx", Root);
    int served = 0;
    const int rounds = expectNothingLeft([&] {
        const std::unique_ptr<WorkerThread> thread = createWorker();
        served += rows("TuneIn:"_s).rows.size();
    });
    EXPECT_EQ(served, 2 * rounds);
}

TEST_F(WorkerLifecycleTest, LeavesNothingBehindWithoutARequest)
{
    expectNothingLeft([] { createWorker(); });
}

TEST_F(WorkerLifecycleTest, LeavesNothingBehindWithAnExchangeUnderWay)
{
    ScriptedServer::Response response;
    stall(response);
    answerAll(response);
    int started = 0;
    const int rounds = expectNothingLeft([&] {
        const std::unique_ptr<WorkerThread> thread = createWorker();
        server().clearRequests();
        ASSERT_TRUE(QMetaObject::invokeMethod(client(*thread), "on_request", Qt::QueuedConnection,
            Q_ARG(VeskUrl, VeskUrl("http://opml.radiotime.com/stall"_s)),
            Q_ARG(int, TuneInHttpClient::Get), Q_ARG(int, 0)));
        if (server().waitForRequests(1))
            ++started;
    });
    EXPECT_EQ(started, rounds);
}

TEST_F(WorkerLifecycleTest, LeavesNothingBehindWithQueuedExchanges)
{
    answer("/Browse.ashx", Root);
    expectNothingLeft([] {
        const std::unique_ptr<WorkerThread> thread = createWorker();
        for (int i = 0; i < 3; ++i)
            QMetaObject::invokeMethod(client(*thread), "on_request", Qt::QueuedConnection,
                Q_ARG(VeskUrl, VeskUrl("http://opml.radiotime.com/Browse.ashx"_s)),
                Q_ARG(int, TuneInHttpClient::Get), Q_ARG(int, i));
    });
}

TEST_F(WorkerLifecycleTest, AnswersQueuedRequestsWithAnErrorWhenDeleted)
{
    answer("/Browse.ashx", Root);
    expectNothingLeft([] {
        std::vector<Pending> pending;
        std::vector<std::shared_ptr<CMReplyData<QVariant>>> states;
        // The worker is deleted before its event loop ever runs, so every request is still queued.
        const std::unique_ptr<QThread> thread(QThread::create([&] {
            QVariantHash config = defaultConfig();
            const std::unique_ptr<CMTuneInWorker> worker(
                static_cast<CMTuneInWorker *>(worker_create("TuneIn", &config)));
            std::thread asker([&] {
                for (const char *path :
                    {"TuneIn:browse", "TuneIn:searches", "TuneIn:", "TuneIn:nothing"})
                    pending.emplace_back(QLatin1String(path));
                const auto state = std::make_shared<CMReplyData<QVariant>>();
                CMRoot()->request(CMSetDataRequest(VeskTuneInStateChangePath(),
                    VeskRoles::Activate(), {}, CMReply<QVariant>(state)));
                states.push_back(state);
            });
            asker.join();
        }));
        thread->start();
        thread->wait();
        for (const Pending &request : pending) {
            ASSERT_TRUE(request.data->waitForFinished(10000));
            EXPECT_FALSE(request.data->error().isEmpty());
        }
        ASSERT_TRUE(states.at(0)->waitForFinished(10000));
        EXPECT_FALSE(states.at(0)->error().isEmpty());
    });
}

TEST_F(WorkerLifecycleTest, AnswersEveryRequestWhenTheHostShutsDownDuringAStall)
{
    for (int i = 0; i < 20; ++i) {
        ScriptedServer::Response response;
        stall(response);
        answerAll(response);
        server().clearRequests();
        std::unique_ptr<WorkerThread> thread = createWorker();
        std::vector<Pending> pending;
        for (int request = 0; request < 5; ++request)
            pending.emplace_back("TuneIn:browse"_s);
        ASSERT_TRUE(server().waitForRequests(1));
        HttpClient::shutDownAll();
        thread.reset();
        for (const Pending &request : pending) {
            ASSERT_TRUE(request.data->waitForFinished(10000));
            EXPECT_FALSE(request.data->error().isEmpty());
        }
    }
}

TEST_F(WorkerLifecycleTest, AnswersEveryRequestOfManyThreadsWhenDeleted)
{
    answer("/Browse.ashx", Root);
    std::unique_ptr<WorkerThread> thread = createWorker();
    std::vector<std::future<int>> callers;
    for (int caller = 0; caller < 4; ++caller) {
        callers.push_back(std::async(std::launch::async, [] {
            int answered = 0;
            for (int i = 0; i < 200; ++i)
                answered += rows("TuneIn:browse"_s).finished ? 1 : 0;
            return answered;
        }));
    }
    ASSERT_TRUE(server().waitForRequests(50));
    thread.reset();
    for (std::future<int> &caller : callers)
        EXPECT_EQ(caller.get(), 200);
}

TEST_F(WorkerLifecycleTest, CanBeDeletedDuringAPause)
{
    answerAll(QByteArray(R"({"head":{"status":"200"},"body":[]})"));
    start();
    VeskPlayLogicData data;
    data.setState(VeskPlayLogicState::paused);
    setData(VeskTuneInStateChangePath().toEncoded(), VeskRoles::Activate(), data.toHash());
    bool active = false;
    onWorker([&] { active = worker()->findChild<QTimer *>()->isActive(); });
    EXPECT_TRUE(active);
    stop();
}
