// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "bench/Plugin.h"

#include "api/tunein/VeskTuneInPaths.h"
#include "api/values/VeskValuePaths.h"
#include "api/web/HttpClient.h"
#include "bench/Answers.h"
#include "modules/tunein/TuneInClock.h"
#include "tests/support/ScriptedServer.h"

#include <QAtomicInt>
#include <QCoreApplication>
#include <QEventLoop>

#include <atomic>
#include <cstdio>
#include <unistd.h>

namespace {

/// The number of stations that fit into the 1,000,000 bytes that the plug-in reads.
constexpr int LongScreen = 1800;
/// The same for stations with the required entries only.
constexpr int LongestScreen = 10000;
/// The plug-ins of one process request the names of the genres once in ten seconds.
constexpr qint64 GenrePauseMs = 60'000;

ScriptedServer::Response serve(const ScriptedServer::Request &request)
{
    static QAtomicInt exchanges;
    static const QByteArray longAnswer = stationsAnswer(LongScreen);
    ScriptedServer::Response response;
    response.headers = {{"Content-Type", "application/json; charset=utf-8"}};
    if (request.path() == "/Describe.ashx")
        response.body = genresAnswer();
    else if (request.target.contains("id=g2"))
        response.body = shortStationsAnswer(LongestScreen, QByteArray::number(++exchanges));
    else if (request.target.contains("id=g3"))
        response.body = longAnswer.left(longAnswer.size() - 9); // damaged: it ends too soon
    else
        response.body = request.target.contains("id=g1") ? longAnswer : rootAnswer();
    return response;
}

} // namespace

QVariant answerTo(const std::function<CMRequest(const CMReply<QVariant> &reply)> &makeRequest)
{
    QEventLoop loop;
    const auto reply = std::make_shared<CMReplyData<QVariant>>();
    reply->whenFinished(&loop, [&loop] { loop.quit(); });
    CMRoot()->request(makeRequest(CMReply<QVariant>(reply)));
    loop.exec();
    return reply->value();
}

int serveBenchmarks()
{
    const ScriptedServer server(serve);
    std::printf("%d\n", int(server.port()));
    std::fflush(stdout);
    char nothing = 0;
    while (::read(STDIN_FILENO, &nothing, 1) > 0) { }
    return 0;
}

Surroundings::Surroundings()
{
    m_server.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_server.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--serve")});
    m_server.waitForReadyRead();
    m_port = m_server.readLine().trimmed().toInt();
    m_root.addWorker(QStringLiteral("settings"), &m_values);
    m_root.addWorker(QStringLiteral("system"), &m_values);
    m_root.addWorker(QStringLiteral("network"), &m_values);
    m_values.define(VeskTuneInPartnerIdPath(), VeskValue::fromString(QStringLiteral("local")));
    m_values.define(VeskTuneInBrowseIndexUrlPath(), VeskValue::fromString(QString()));
    m_values.define(
        VeskTuneInSupportedStreamsPath(), VeskValue::fromString(QStringLiteral("mp3,aac,ogg")));
    m_values.define(VeskTuneInEnabledFixItWizardPath(), VeskValue::fromBool(true));
    m_values.define(VeskChildElementsInSingleListPath(), VeskValue::fromBool(true));
    m_values.define(VeskUILanguagePath(), VeskValue::fromString(QStringLiteral("en-US")));
    m_values.define(VeskSystemMemberIdPath(),
        VeskValue::fromString(QStringLiteral("0123456789abcdef0123456789abcdef")));
    m_values.define(VeskNetworkStateEthernetMAC(), VeskValue::fromString(QString()));
    m_values.define(VeskNetworkStateConnected(), VeskValue::fromBool(true));
    HttpClient::setConnectTo({connectTo()});
}

Surroundings::~Surroundings()
{
    m_root.removeWorker(&m_values);
    m_server.closeWriteChannel();
    m_server.waitForFinished();
}

QByteArray Surroundings::rootUrl() const
{
    return "http://127.0.0.1:" + QByteArray::number(m_port) + "/Browse.ashx";
}

PluginOnThread::PluginOnThread()
{
    // This plug-in requests them, too, however shortly before another one did.
    static std::atomic<qint64> now {0};
    now += GenrePauseMs;
    TuneInClock::instance().monotonicMs = [] { return now.load(); };
    m_thread = std::make_unique<WorkerThread>([] {
        QVariantHash config {{VeskService_Id(), QStringLiteral("tunein")}};
        return static_cast<CMTuneInWorker *>(worker_create("tunein", &config));
    });
    // The network state arrives through the worker's event loop; this thread waits for it here.
    worker()->networkStateConnected();
}

QString Surroundings::connectTo() const
{
    return QStringLiteral("opml.radiotime.com:80:127.0.0.1:%1").arg(m_port);
}

PluginInProcess::PluginInProcess()
    : m_plugin(QStringLiteral(VESK_PLUGIN),
        {QStringLiteral(VESK_WORKER), [this] { return startMessage(); }})
{
    if (const auto descriptor
        = PluginDescriptor::read(PluginDescriptor::fileOf(QStringLiteral(VESK_PLUGIN))))
        m_plugin.setDescriptor(*descriptor);
    bool loaded = false;
    QObject::connect(&m_plugin, &Plugin::loadFinished, [&loaded] { loaded = true; });
    m_plugin.load();
    spinUntil([&loaded] { return loaded; });
    // The network state arrives through the worker's event loop; a request that succeeds shows that
    // it has.
    const CMPath root(QStringLiteral("TuneIn"), QStringLiteral("browse"));
    spinUntil([&root] {
        const QVariant answer = answerTo([&root](const CMReply<QVariant> &reply) {
            return CMGetRowsRequest(root, pageRoles(), 0, 99, reply);
        });
        return answer.isValid();
    });
}

StartMessage PluginInProcess::startMessage() const
{
    StartMessage message;
    message.file = QStringLiteral(VESK_PLUGIN);
    message.config = {{VeskService_Id(), QStringLiteral("tunein")}};
    message.logLevel = QStringLiteral("info");
    message.connectTo = QStringList {m_surroundings.connectTo()};
    message.valuePrefixes = QStringList {
        QStringLiteral("settings"), QStringLiteral("system"), QStringLiteral("network")};
    for (const CMPath &path : m_surroundings.values().paths())
        message.values.append({path, m_surroundings.values().value(path).toHash(), false, {}});
    return message;
}
