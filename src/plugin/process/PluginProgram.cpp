// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/process/PluginProgram.h"

#include "api/core/Language.h"
#include "api/core/log.h"
#include "api/core/vesk.h"
#include "api/nodes/CMRootWorker.h"
#include "api/web/HttpClient.h"
#include "plugin/link/NodeLink.h"
#include "plugin/process/Cancellation.h"
#include "plugin/process/Confinement.h"
#include "plugin/process/PlayerMirror.h"
#include "plugin/process/Upstream.h"
#include "plugin/process/ValuesMirror.h"
#include "plugin/runtime/Logging.h"
#include "plugin/runtime/Memory.h"
#include "plugin/runtime/PluginThread.h"
#include "plugin/runtime/PluginWatch.h"
#include "plugin/runtime/UiLanguage.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <log4cplus/initializer.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <sys/socket.h>
#include <unistd.h>

VESK_LOGGER("Plugin")

namespace {

enum ExitStatus { Success = 0, Failed = 1, BadUsage = 2 };

constexpr int StartMilliseconds = 30000;
constexpr std::chrono::seconds AliveInterval {1};

bool isSocket(int descriptor)
{
    int type = 0;
    socklen_t size = sizeof type;
    return ::getsockopt(descriptor, SOL_SOCKET, SO_TYPE, &type, &size) == 0 && type == SOCK_STREAM;
}

int fail(int status, const char *text)
{
    std::fprintf(stderr, "vesk-plugin: %s\n", text);
    return status;
}

std::optional<StartMessage> greet(Channel &channel)
{
    channel.sender()->send(encode(HelloMessage()));
    const QByteArray payload = channel.receiveOne(StartMilliseconds);
    if (kindOf(payload) != MessageKind::Start)
        return std::nullopt;
    return decode<StartMessage>(payload);
}

/// The files that this plug-in needs, beside those that every plug-in does.
QList<QByteArray> readableFiles(const StartMessage &start)
{
    const QFileInfo plugin(start.file);
    QList<QByteArray> files {QFile::encodeName(plugin.absolutePath()),
        QFile::encodeName(QFileInfo(plugin.canonicalFilePath()).absolutePath())};
    for (const QString &folder : start.translations)
        files.append(QFile::encodeName(folder));
    if (!start.catalogueFolder.isEmpty())
        files.append(QFile::encodeName(start.catalogueFolder));
    const QString folder = start.config.value(QStringLiteral("folder")).toString();
    if (!folder.isEmpty())
        files.append(QFile::encodeName(folder));
    for (const QByteArray &name :
        qgetenv("SSL_CERT_DIR").split(':') + QList<QByteArray> {qgetenv("SSL_CERT_FILE")}) {
        if (!name.isEmpty())
            files.append(name);
    }
    return files;
}

/// Everything around the plug-in, once the host has sent its StartMessage. Main thread; the link
/// calls its handler on its own thread.
class PluginSide {
public:
    PluginSide(std::unique_ptr<Channel> channel, const StartMessage &start)
        : m_link(std::move(channel))
        , m_upstream(&m_link)
        , m_values([this](const CMRequest &request) { m_upstream.request(request); })
        , m_watch(&m_values,
              [this](PluginThread *, const CMPath &setting, const VeskValue &value, bool keeps) {
                  m_link.send(KeptMessage {setting, value.toHash(), keeps});
              })
        , m_player(VeskPlayLogicData(start.player))
        , m_thread(start.file, start.config)
    {
        m_watch.setAnswerForm(&m_thread, start.answerForm);
        for (const ValueMessage &value : start.values)
            m_values.apply(value);
        for (const QString &prefix : start.valuePrefixes)
            m_root.addWorker(prefix, &m_values);
        m_root.protectPrefixes();
        m_root.setDefaultWorker(&m_upstream);
        PlayLogicInterface::setPlayerInstance(&m_player);
        startLink();
        // A plug-in that waits for a slow exchange does not hang: exchanges have limits of their
        // own.
        HttpClient::setActivityListener([this] { sendAlive(); });
        if (!start.catalogueFolder.isEmpty())
            Language::addCatalogues(start.catalogueFolder, start.catalogueName);
        m_language = std::make_unique<UiLanguage>(start.translations);
        forwardRoutes();
    }

    ~PluginSide()
    {
        PlayLogicInterface::setPlayerInstance(nullptr);
        m_language.reset();
        m_root.removeWorker(&m_values);
        m_root.removeWorker(&m_upstream);
    }

    void run()
    {
        QObject::connect(&m_thread, &PluginThread::loaded, qApp,
            [this](const CMPath &root, const QString &error) {
                m_link.send(LoadedMessage {root, error});
            });
        QObject::connect(&m_thread, &QThread::finished, qApp, [this] {
            // After a plug-in that could not be loaded it is the host that ends the process.
            if (m_stopping)
                QCoreApplication::exit(Success);
        });
        m_thread.start();
        QCoreApplication::exec();
        m_thread.wait();
        m_done = true;
    }

private:
    void forwardRoutes()
    {
        // Directly: a route is sent before what the plug-in does next.
        const auto forward = [this](const CMPath &route, bool added) {
            m_link.send(RouteMessage {route, added});
        };
        QObject::connect(
            &m_root, &CMRootWorker::routeAdded, &m_root,
            [forward](const CMPath &route) { forward(route, true); }, Qt::DirectConnection);
        QObject::connect(
            &m_root, &CMRootWorker::routeRemoved, &m_root,
            [forward](const CMPath &route) { forward(route, false); }, Qt::DirectConnection);
        QObject::connect(
            &m_root, &CMRootWorker::changedElsewhere, &m_root,
            [this](const CMChange &change, bool startingWith) {
                m_link.send(ChangeMessage {change, startingWith});
            },
            Qt::DirectConnection);
    }

    /// Often enough for the host's patience, but not with each short exchange. Any thread.
    void sendAlive()
    {
        const auto now = std::chrono::steady_clock::now().time_since_epoch();
        auto last = m_lastAlive.load();
        if (now - last > AliveInterval && m_lastAlive.compare_exchange_strong(last, now))
            m_link.send(AliveMessage());
    }

    void startLink()
    {
        NodeLink::Handler handler;
        handler.received = [this](MessageKind kind, const QByteArray &payload) {
            return received(kind, payload);
        };
        // Without the host there is nothing left to do, and nothing to save.
        handler.ended = [this](const QString &) {
            if (!m_done)
                ::_exit(Failed);
        };
        handler.interrupted = [] { return CMUnansweredError(); };
        handler.cancelled = [this](const std::shared_ptr<CMReplyAbstractData> &reply) {
            m_cancellation.cancel(reply);
        };
        m_link.start(std::move(handler));
    }

    /// On the link's thread.
    Result<void, QString> received(MessageKind kind, const QByteArray &payload)
    {
        if (kind == MessageKind::Value) {
            if (const auto value = decode<ValueMessage>(payload)) {
                m_values.apply(*value);
                m_watch.settingChanged(value->path);
            }
        } else if (kind == MessageKind::Player) {
            if (const auto player = decode<PlayerMessage>(payload))
                m_player.setData(VeskPlayLogicData(player->data));
        } else if (kind == MessageKind::Stop) {
            QMetaObject::invokeMethod(
                qApp, [this] { stop(); }, Qt::QueuedConnection);
        } else {
            return failure(QStringLiteral("an unknown message"));
        }
        return {};
    }

    void stop()
    {
        m_stopping = true;
        // Ends exchanges that the plug-in waits for.
        HttpClient::shutDownAll();
        if (m_thread.isRunning())
            m_thread.quit();
        else
            QCoreApplication::exit(Success);
    }

    CMRootWorker m_root;
    Cancellation m_cancellation;
    NodeLink m_link;
    Upstream m_upstream;
    ValuesMirror m_values;
    PluginWatch m_watch;
    PlayerMirror m_player;
    std::unique_ptr<UiLanguage> m_language;
    PluginThread m_thread;
    std::atomic<std::chrono::steady_clock::duration> m_lastAlive {};
    bool m_stopping = false;
    std::atomic<bool> m_done {false};
};

} // namespace

int runPlugin(int argc, char **argv)
{
    if (!isSocket(PluginSocket))
        return fail(BadUsage, "only vesk-host can start this program");
    setUpMemory();
    const bool isAlone = endLoggingThreads();
    std::signal(SIGPIPE, SIG_IGN);
    auto channel = std::make_unique<Channel>(PluginSocket);
    const std::optional<StartMessage> start = greet(*channel);
    if (!start)
        return fail(Failed, "the host did not say what to do");
    const bool trusts = start->caFile.isEmpty() || HttpClient::setCaFile(start->caFile);
    // Before the first byte from outside.
    const QStringList notConfined = confineProcess(readableFiles(*start), start->network);

    const log4cplus::Initializer logging;
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("vesk-plugin"));
    if (const auto logged = setUpLogging(start->logLevel, QString()); !logged)
        return fail(Failed, qPrintable(logged.error()));
    if (!isAlone)
        VESK_WARN("There are threads that are not confined.");
    for (const QString &line : notConfined)
        VESK_INFO(line);
    if (!trusts)
        VESK_ERROR("There is no certificate in " << start->caFile);
    HttpClient::setConnectTo(start->connectTo);
    {
        PluginSide plugin(std::move(channel), *start);
        plugin.run();
    }
    // Without the exit handlers of libraries, which may need privileges that were dropped.
    std::_Exit(Success);
}
