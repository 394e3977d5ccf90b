// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/tunein/TuneInHttpClient.h"

#include "modules/tunein/NewQThread.h"
#include "tests/modules/tunein/ProcessUsage.h"
#include "tests/modules/tunein/TuneInHost.h"
#include "tests/support/LogCapture.h"
#include "tests/support/WorkerThread.h"

#include <QEventLoop>
#include <QPointer>
#include <QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <log4cplus/logger.h>

#include <algorithm>
#include <arpa/inet.h>
#include <future>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

using testing::Contains;
using testing::ElementsAre;

namespace {

const char Signature[]
    = "CMError TuneInHttpClient::request(const VeskUrl&, QByteArray*, TuneInHttpClient::Type)";

VeskUrl api(const QString &target)
{
    return VeskUrl("http://opml.radiotime.com"_s + target);
}

/// Accepts one TLS connection on a free loopback port, reads the ClientHello, whose ALPN extension
/// is not encrypted (RFC 7301), and closes the connection.
class HelloListener {
public:
    HelloListener()
        : m_socket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        // Bounds the wait for a client that never connects.
        const timeval patience {10, 0};
        setsockopt(m_socket, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
        m_address.sin_family = AF_INET;
        m_address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        auto *generic = reinterpret_cast<sockaddr *>(&m_address);
        socklen_t size = sizeof m_address;
        EXPECT_EQ(bind(m_socket, generic, size), 0);
        EXPECT_EQ(listen(m_socket, 1), 0);
        EXPECT_EQ(getsockname(m_socket, generic, &size), 0);
    }
    ~HelloListener() { close(m_socket); }
    HelloListener(const HelloListener &) = delete;
    HelloListener &operator=(const HelloListener &) = delete;

    quint16 port() const { return ntohs(m_address.sin_port); }

    /// The first record; empty if no client connected.
    QByteArray take() const
    {
        const int peer = accept4(m_socket, nullptr, nullptr, SOCK_CLOEXEC);
        if (peer < 0)
            return {};
        const QByteArray head = receive(peer, 5);
        const auto byte = [&head](int i) { return int(static_cast<uchar>(head.at(i))); };
        const QByteArray record
            = head.size() == 5 ? receive(peer, byte(3) << 8 | byte(4)) : QByteArray();
        close(peer);
        return record;
    }

private:
    static QByteArray receive(int from, int count)
    {
        QByteArray bytes(count, Qt::Uninitialized);
        const auto received = recv(from, bytes.data(), static_cast<size_t>(count), MSG_WAITALL);
        bytes.truncate(static_cast<int>(std::max<ssize_t>(received, 0)));
        return bytes;
    }

    const int m_socket;
    sockaddr_in m_address {};
};

/// A client that a thread of its own creates and deletes, as a worker does.
class TuneInHttpClientTest : public testing::Test, protected TuneInHost {
protected:
    TuneInHttpClientTest()
        : m_thread(std::make_unique<WorkerThread>(
            [] { return createInNewQThread<TuneInHttpClient>("TuneInHttp"_s); }))
    {
    }

    TuneInHttpClient &client() { return *static_cast<TuneInHttpClient *>(m_thread->object()); }

    /// Queues an exchange on the client's thread, as request() does.
    void queue(const VeskUrl &url, int type, int index)
    {
        ASSERT_TRUE(QMetaObject::invokeMethod(&client(), "on_request", Qt::QueuedConnection,
            Q_ARG(VeskUrl, url), Q_ARG(int, type), Q_ARG(int, index)));
    }

    static QString completion(const QString &url, HttpClientStatus status, int code)
    {
        return "TRACE Enter TuneInHttpClient::on_request(VeskUrl, int, int)::<lambda(const Result&)>: "_s
            + url + " "_s + printed(status) + " "_s + QString::number(code);
    }

    void expectConnectError(const QString &target)
    {
        QByteArray out("untouched");
        const CMError error = client().get(api(target), &out);
        EXPECT_EQ(error.name(), CMError::DefaultName());
        EXPECT_EQ(error.message(),
            TrString(trExtractContext(Signature), "Failed to connect to TuneIn"_s));
        EXPECT_EQ(error.title(), TrString("CMError"_s, CMError::DefaultTitle()));
        EXPECT_EQ(error.size(), 3);
        EXPECT_EQ(out, QByteArray("untouched"));
    }

    /// After a failure the client serves the next one.
    void expectAlive()
    {
        answerAll(QByteArray("alive"));
        QByteArray out;
        EXPECT_TRUE(client().get(api("/alive"_s), &out).isEmpty());
        EXPECT_EQ(out, QByteArray("alive"));
    }

    LogCapture m_log {"CB_TuneIn"};
    std::unique_ptr<WorkerThread> m_thread;
};

ScriptedServer::Response ending(ScriptedServer::End end, const QByteArray &body, int sendBytes = 0)
{
    ScriptedServer::Response response;
    response.body = body;
    response.end = end;
    response.sendBytes = sendBytes;
    return response;
}

} // namespace

TEST_F(TuneInHttpClientTest, LivesOnAThreadNamedTuneInHttp)
{
    EXPECT_THAT(ProcessUsage::threadNames(), Contains("TuneInHttp"_s).Times(1));
    EXPECT_NE(client().thread(), QThread::currentThread());
    EXPECT_NE(client().thread(), m_thread.get());
    EXPECT_TRUE(client().thread()->isRunning());
    EXPECT_EQ(client().parent(), nullptr);
}

TEST_F(TuneInHttpClientTest, EndsItsThreadWhenItIsDeleted)
{
    const QPointer<QThread> thread(client().thread());
    m_thread.reset();
    EXPECT_TRUE(spinUntil([&] { return thread.isNull(); }));
    EXPECT_TRUE(spinUntil([] { return !ProcessUsage::threadNames().contains("TuneInHttp"_s); }));
}

TEST_F(TuneInHttpClientTest, ExitsTheDeletingThreadsEventLoopWithZero)
{
    int code = -1;
    const std::unique_ptr<QThread> thread(QThread::create([&code] {
        TuneInHttpClient *client = createInNewQThread<TuneInHttpClient>("TuneInHttp"_s);
        QEventLoop loop;
        QTimer::singleShot(0, &loop, [client] { delete client; });
        // Only the client's destructor ends the loop, or this timer after ten seconds.
        QTimer::singleShot(10000, &loop, [&loop] { loop.exit(1); });
        code = loop.exec();
    }));
    thread->start();
    thread->wait();
    EXPECT_EQ(code, 0);
}

TEST_F(TuneInHttpClientTest, HasOneInvokableSlotAndNothingElse)
{
    const QMetaObject *meta = client().metaObject();
    EXPECT_STREQ(meta->className(), "TuneInHttpClient");
    ASSERT_EQ(meta->methodCount() - meta->methodOffset(), 1);
    EXPECT_EQ(meta->method(meta->methodOffset()).methodSignature(),
        QByteArray("on_request(VeskUrl,int,int)"));
    EXPECT_EQ(meta->method(meta->methodOffset()).methodType(), QMetaMethod::Slot);
}

TEST_F(TuneInHttpClientTest, OwnsTheHostsClientAsItsChild)
{
    EXPECT_EQ(client().findChildren<HttpClient *>().size(), 1);
}

TEST_F(TuneInHttpClientTest, ReturnsTheBodyOfAGet)
{
    answerAll(QByteArray("the body"));
    QByteArray out;
    EXPECT_TRUE(client().get(api("/Browse.ashx?c=music&render=json"_s), &out).isEmpty());
    EXPECT_EQ(out, QByteArray("the body"));
    EXPECT_THAT(server().requestLines(), ElementsAre("GET /Browse.ashx?c=music&render=json"));
}

TEST_F(TuneInHttpClientTest, CachesAnAnswerForAsLongAsTheServerSays)
{
    ScriptedServer::Response response;
    response.body = "the body";
    response.headers.append(qMakePair(QByteArray("Cache-Control"), QByteArray("max-age=60")));
    answerAll(response);
    for (int i = 0; i < 2; ++i) {
        QByteArray out;
        EXPECT_TRUE(client().get(api("/Browse.ashx?c=music"_s), &out).isEmpty());
        EXPECT_EQ(out, QByteArray("the body"));
    }
    EXPECT_THAT(server().requestLines(), ElementsAre("GET /Browse.ashx?c=music"));
}

TEST_F(TuneInHttpClientTest, CachesAMillionBytesInAll)
{
    ScriptedServer::Response response;
    response.body = QByteArray(490000, 'x');
    response.headers.append(qMakePair(QByteArray("Cache-Control"), QByteArray("max-age=60")));
    answerAll(response);
    for (const char *target : {"/a", "/b", "/a", "/b"})
        EXPECT_TRUE(client().get(api(QLatin1String(target)), nullptr).isEmpty());
    EXPECT_THAT(server().requestLines(), ElementsAre("GET /a", "GET /b"));
    // There is no room for a third: the least recently used response is dropped.
    for (const char *target : {"/c", "/b", "/a"})
        EXPECT_TRUE(client().get(api(QLatin1String(target)), nullptr).isEmpty());
    EXPECT_THAT(server().requestLines(), ElementsAre("GET /a", "GET /b", "GET /c", "GET /a"));
}

TEST_F(TuneInHttpClientTest, OffersHttp2OverTls)
{
    const HelloListener listener;
    HttpClient::setConnectTo(
        {"opml.radiotime.com:443:127.0.0.1:"_s + QString::number(listener.port())});
    auto hello = std::async(std::launch::async, [&listener] { return listener.take(); });
    EXPECT_FALSE(client().get(VeskUrl("https://opml.radiotime.com/x"_s), nullptr).isEmpty());
    EXPECT_TRUE(hello.get().contains("\x02h2\x08http/1.1"));
}

TEST_F(TuneInHttpClientTest, PostsWithAnEmptyBody)
{
    answerAll(QByteArray("posted"));
    QByteArray out;
    EXPECT_TRUE(client().post(api("/Report.ashx?c=time"_s), &out).isEmpty());
    EXPECT_EQ(out, QByteArray("posted"));
    EXPECT_THAT(server().requestLines(), ElementsAre("POST /Report.ashx?c=time"));
    EXPECT_EQ(server().requests().constFirst().body, QByteArray());
}

TEST_F(TuneInHttpClientTest, ChoosesTheMethodByTheType)
{
    EXPECT_TRUE(client().request(api("/a"_s), nullptr, TuneInHttpClient::Get).isEmpty());
    EXPECT_TRUE(client().request(api("/b"_s), nullptr, TuneInHttpClient::Post).isEmpty());
    EXPECT_THAT(server().requestLines(), ElementsAre("GET /a", "POST /b"));
    EXPECT_EQ(int(TuneInHttpClient::Get), 0);
    EXPECT_EQ(int(TuneInHttpClient::Post), 1);
}

TEST_F(TuneInHttpClientTest, LogsTheRequestAndItsCompletion)
{
    client().get(api("/Browse.ashx"_s), nullptr);
    EXPECT_THAT(m_log.lines("TRACE"_s),
        ElementsAre(
            "Enter "_s + QLatin1String(Signature) + ": http://opml.radiotime.com/Browse.ashx"_s,
            completion("http://opml.radiotime.com/Browse.ashx"_s, HttpClientStatus::Success, 200)
                .mid(6)));
}

TEST_F(TuneInHttpClientTest, SucceedsForAnyHttpCode)
{
    ScriptedServer::Response response;
    response.code = 403;
    response.body = "<html>no</html>";
    answerAll(response);
    QByteArray out;
    EXPECT_TRUE(client().get(api("/x"_s), &out).isEmpty());
    EXPECT_EQ(out, response.body);
    EXPECT_TRUE(m_log.contains(
        completion("http://opml.radiotime.com/x"_s, HttpClientStatus::Success, 403)));
}

TEST_F(TuneInHttpClientTest, SucceedsForAnEmptyBody)
{
    answerAll(QByteArray());
    QByteArray out("before");
    EXPECT_TRUE(client().get(api("/x"_s), &out).isEmpty());
    EXPECT_EQ(out, QByteArray());
}

TEST_F(TuneInHttpClientTest, AcceptsANullOutputBuffer)
{
    answerAll(QByteArray("ignored"));
    EXPECT_TRUE(client().get(api("/x"_s), nullptr).isEmpty());
    expectAlive();
}

TEST_F(TuneInHttpClientTest, ReleasesCollectedResults)
{
    constexpr int BodySize = 100000;
    constexpr int Count = 300;
    answerAll(QByteArray(BodySize, 'x'));
    client().get(api("/x"_s), nullptr);
    const qint64 before = ProcessUsage::now().allocatedBytes;
    for (int i = 0; i < Count; ++i) {
        QByteArray out;
        client().get(api("/x"_s), i % 2 ? &out : nullptr);
    }
    EXPECT_LT(ProcessUsage::now().allocatedBytes - before, BodySize * Count / 10);
}

TEST_F(TuneInHttpClientTest, ReleasesCollectedFailures)
{
    constexpr int Count = 5000;
    // The log capture would keep each record in memory.
    log4cplus::Logger::getInstance("CB_TuneIn").setLogLevel(log4cplus::OFF_LOG_LEVEL);
    const auto failOften = [this] {
        for (int i = 0; i < Count; ++i)
            EXPECT_FALSE(client().get(VeskUrl(), nullptr).isEmpty());
    };
    failOften();
    const qint64 before = ProcessUsage::now().allocatedBytes;
    failOften();
    // A block of 16 bytes lost with each failure would show.
    EXPECT_LT(ProcessUsage::now().allocatedBytes - before, 16 * Count);
}

TEST_F(TuneInHttpClientTest, GivesTheFirstTwoRequestsTheIndicesZeroAndOne)
{
    // A request collects the result that is already stored under its index.
    answer("/planted0", QByteArray("zero"));
    answer("/planted1", QByteArray("one"));
    queue(api("/planted0"_s), TuneInHttpClient::Get, 0);
    queue(api("/planted1"_s), TuneInHttpClient::Get, 1);
    ASSERT_TRUE(spinUntil([this] {
        return m_log.contains(completion(
                   "http://opml.radiotime.com/planted0"_s, HttpClientStatus::Success, 200))
            && m_log.contains(
                completion("http://opml.radiotime.com/planted1"_s, HttpClientStatus::Success, 200));
    }));

    QByteArray out;
    EXPECT_TRUE(client().get(api("/first"_s), &out).isEmpty());
    EXPECT_EQ(out, QByteArray("zero"));
    EXPECT_TRUE(client().get(api("/second"_s), &out).isEmpty());
    EXPECT_EQ(out, QByteArray("one"));
}

TEST_F(TuneInHttpClientTest, GivesEachCallerItsOwnBodyWhenAnswersComeInReverse)
{
    std::promise<void> fastDone;
    std::shared_future<void> mayAnswer(fastDone.get_future());
    server().setHandler([mayAnswer](const ScriptedServer::Request &request) {
        ScriptedServer::Response response;
        if (request.path() == "/slow")
            mayAnswer.wait();
        response.body = request.path();
        return response;
    });

    auto slow = std::async(std::launch::async, [this] {
        QByteArray out;
        const CMError error = client().get(api("/slow"_s), &out);
        return error.isEmpty() ? out : QByteArray("error");
    });
    ASSERT_TRUE(server().waitForRequests(1));
    QByteArray fast;
    EXPECT_TRUE(client().get(api("/fast"_s), &fast).isEmpty());
    EXPECT_EQ(fast, QByteArray("/fast"));
    fastDone.set_value();
    EXPECT_EQ(slow.get(), QByteArray("/slow"));
}

TEST_F(TuneInHttpClientTest, ServesManyThreadsAtOnce)
{
    server().setHandler([](const ScriptedServer::Request &request) {
        ScriptedServer::Response response;
        response.body = request.target;
        return response;
    });
    std::vector<std::future<int>> callers;
    for (int caller = 0; caller < 8; ++caller) {
        callers.push_back(std::async(std::launch::async, [this, caller] {
            int right = 0;
            for (int i = 0; i < 25; ++i) {
                const QString target = QStringLiteral("/%1?i=%2").arg(caller).arg(i);
                QByteArray out;
                if (client().get(api(target), &out).isEmpty() && out == target.toLatin1())
                    ++right;
            }
            return right;
        }));
    }
    for (std::future<int> &caller : callers)
        EXPECT_EQ(caller.get(), 25);
}

TEST_F(TuneInHttpClientTest, StartsNothingForAnUnknownType)
{
    queue(api("/unknown"_s), 2, 1000);
    queue(api("/unknown"_s), -1, 1001);
    expectAlive();
    EXPECT_THAT(server().requestLines(), ElementsAre("GET /alive"));
}

TEST_F(TuneInHttpClientTest, FailsWhenTheConnectionIsRefused)
{
    closeServer();
    expectConnectError("/x"_s);
    openServer();
    expectAlive();
}

TEST_F(TuneInHttpClientTest, FailsWhenTheConnectionIsReset)
{
    for (const ScriptedServer::Response &response :
        {ending(ScriptedServer::End::ResetBeforeHead, {}),
            ending(ScriptedServer::End::Reset, QByteArray(1000, 'x'), 10)}) {
        answerAll(response);
        expectConnectError("/x"_s);
    }
    expectAlive();
}

TEST_F(TuneInHttpClientTest, FailsWhenTheBodyEndsEarly)
{
    answerAll(ending(ScriptedServer::End::Truncate, QByteArray(1000, 'x'), 999));
    expectConnectError("/x"_s);
    expectAlive();
}

TEST_F(TuneInHttpClientTest, FailsForAnAnswerThatIsNotHttp)
{
    answerAll(ending(ScriptedServer::End::Raw, "220 mail.example ESMTP\r\n"));
    expectConnectError("/x"_s);
    expectAlive();
}

TEST_F(TuneInHttpClientTest, FailsWhenRedirectsGoInACircle)
{
    ScriptedServer::Response response;
    response.code = 302;
    response.headers.append(
        qMakePair(QByteArray("Location"), QByteArray("http://opml.radiotime.com/circle")));
    answerAll(response);
    expectConnectError("/circle"_s);
    EXPECT_LE(server().requests().size(), 6);
    expectAlive();
}

TEST_F(TuneInHttpClientTest, FollowsARedirect)
{
    ScriptedServer::Response response;
    response.code = 302;
    response.headers.append(
        qMakePair(QByteArray("Location"), QByteArray("http://opml.radiotime.com/there?a=b")));
    answer("/here", response);
    answer("/there", QByteArray("arrived"));
    QByteArray out;
    EXPECT_TRUE(client().get(api("/here"_s), &out).isEmpty());
    EXPECT_EQ(out, QByteArray("arrived"));
}

TEST_F(TuneInHttpClientTest, AcceptsABodyOfExactlyTheLimit)
{
    answerAll(QByteArray(1000000, 'x'));
    QByteArray out;
    EXPECT_TRUE(client().get(api("/x"_s), &out).isEmpty());
    EXPECT_EQ(out.size(), 1000000);
}

TEST_F(TuneInHttpClientTest, FailsForABodyOverTheLimit)
{
    answerAll(QByteArray(1000001, 'x'));
    expectConnectError("/x"_s);
    EXPECT_TRUE(m_log.contains(
        completion("http://opml.radiotime.com/x"_s, HttpClientStatus::TooLarge, 200)));
    answerAll(QByteArray(10000000, 'x'));
    expectConnectError("/x"_s);
    expectAlive();
}

TEST_F(TuneInHttpClientTest, FailsForAnInvalidUrl)
{
    QByteArray out("untouched");
    EXPECT_FALSE(client().get(VeskUrl(), &out).isEmpty());
    EXPECT_FALSE(client().get(VeskUrl("file:///etc/passwd"_s), &out).isEmpty());
    EXPECT_EQ(out, QByteArray("untouched"));
    expectAlive();
}

TEST_F(TuneInHttpClientTest, FailsWhenTheHostShutsDownWhileTheServerStalls)
{
    answerAll(ending(ScriptedServer::End::Stall, QByteArray(1000, 'x'), 10));
    auto caller = std::async(std::launch::async, [this] { expectConnectError("/stall"_s); });
    ASSERT_TRUE(server().waitForRequests(1));
    HttpClient::shutDownAll();
    caller.get();
}

TEST_F(TuneInHttpClientTest, FailsWhenAStallingServerGoesAway)
{
    answerAll(ending(ScriptedServer::End::StallBeforeHead, {}));
    auto caller = std::async(std::launch::async, [this] { expectConnectError("/stall"_s); });
    ASSERT_TRUE(server().waitForRequests(1));
    closeServer();
    caller.get();
}

TEST_F(TuneInHttpClientTest, CanBeDeletedWithAnExchangeUnderWay)
{
    answerAll(ending(ScriptedServer::End::StallBeforeHead, {}));
    queue(api("/stall"_s), TuneInHttpClient::Get, 500);
    ASSERT_TRUE(server().waitForRequests(1));
    const QPointer<QThread> thread(client().thread());
    m_thread.reset();
    EXPECT_TRUE(spinUntil([&] { return thread.isNull(); }));
}

TEST_F(TuneInHttpClientTest, KeepsSecretsOfAUrlOutOfTheLog)
{
    client().get(api("/Account.ashx?c=auth&username=me&password=sesame"_s), nullptr);
    EXPECT_FALSE(m_log.lines().join("\n"_s).contains("sesame"_s));
}
