// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/supervision/SupervisedPlugin.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "api/core/vesk.h"
#include "plugin/runtime/PluginWatch.h"

#include <utility>

VESK_LOGGER("Host")

namespace {

using std::chrono::milliseconds;

constexpr milliseconds ShortestWait {250};
/// Requests wait for a start that is no further away than this, and end with an error otherwise.
constexpr milliseconds ShortWait {1000};
constexpr milliseconds PatienceInterval {1000};
/// A shorter silence says nothing, so the process is not checked for being stopped.
constexpr milliseconds ShortSilence {500};

/// How long to wait with the next start after so many failures in a row.
milliseconds waitAfter(int failures, milliseconds longest)
{
    if (failures <= 1)
        return milliseconds(0);
    constexpr int MostDoublings = 20;
    return std::min(longest, ShortestWait * (1 << std::min(failures - 2, MostDoublings)));
}

} // namespace

SupervisedPlugin::SupervisedPlugin(
    const QString &file, const PluginProcessOptions &options, QObject *parent)
    : Plugin(file, parent)
    , m_options(options)
{
    m_restart.setSingleShot(true);
    m_deadline.setSingleShot(true);
    m_patience.setInterval(PatienceInterval);
    m_patience.setTimerType(Qt::VeryCoarseTimer);
    connect(&m_restart, &QTimer::timeout, this, &SupervisedPlugin::startProcess);
    veskConnect(&m_deadline, &QTimer::timeout, this, &SupervisedPlugin::onDeadline);
    connect(&m_patience, &QTimer::timeout, this, &SupervisedPlugin::checkPatience);
}

SupervisedPlugin::~SupervisedPlugin()
{
    m_remote.close();
}

void SupervisedPlugin::load()
{
    VESK_ASSERT_OWN_THREAD();
    startProcess();
}

bool SupervisedPlugin::isRunning() const
{
    return m_process != nullptr;
}

void SupervisedPlugin::startProcess()
{
    const bool isFirst = m_phase == Phase::Idle;
    if (!isFirst)
        VESK_INFO("starting the plug-in process of " << file() << " again");
    m_phase = Phase::Loading;
    m_why.clear();
    ++m_run;
    m_process = std::make_unique<PluginProcess>(m_options.id);
    veskConnect(
        m_process.get(), &PluginProcess::finished, this, &SupervisedPlugin::onProcessFinished);
    const Result<int, QString> socket = m_process->start(m_options.program, file());
    if (!socket) {
        m_process.reset();
        giveUp(socket.error());
        return;
    }
    expectProcess();
    openLink(*socket);
    m_deadline.start(LoadTime);
}

void SupervisedPlugin::onDeadline()
{
    if (isReplaced()) {
        VESK_WARN("the plug-in process of " << file() << " does not end; it is killed");
        m_phase = Phase::Leaving;
        m_process->kill();
        return;
    }
    endProcess(m_phase == Phase::Ending ? QStringLiteral("it does not end")
                                        : QStringLiteral("it does not load its plug-in"));
}

void SupervisedPlugin::expectProcess()
{
    if (m_remote.expectLink())
        Q_EMIT restarting();
}

void SupervisedPlugin::openLink(int socket)
{
    auto link = std::make_unique<NodeLink>(std::make_unique<Channel>(socket));
    NodeLink::Handler handler;
    handler.interrupted = [this] { return m_remote.interruptedError(); };
    handler.ended = [this, run = m_run](const QString &reason) {
        QMetaObject::invokeMethod(
            this, [=] { onLinkEnded(run, reason); }, Qt::QueuedConnection);
    };
    handler.requesting = [this] { startPatience(); };
    handler.requested = [this](const CMRequest &request) { return takeStoreRequest(request); };
    handler.received
        = [this, run = m_run, seen = Seen()](MessageKind kind, const QByteArray &payload) mutable {
              return received(kind, payload, run, seen);
          };
    NodeLink *const started = link.get();
    m_remote.setLink(std::move(link));
    // On this thread's event loop: nothing on it waits for a plug-in.
    started->start(std::move(handler), Channel::Reader::CallersLoop);
}

/// On the thread that receives, with the link's lock held: everything else is queued. Nothing is
/// accepted before the greeting.
Result<void, QString> SupervisedPlugin::received(
    MessageKind kind, const QByteArray &payload, int run, Seen &seen)
{
    if (kind == MessageKind::Hello && !std::exchange(seen.hello, true)) {
        const auto hello = decode<HelloMessage>(payload);
        if (!hello || hello->magic != HelloMessage::TheMagic
            || hello->version != HelloMessage::TheVersion)
            return failure(QStringLiteral("another program or version"));
        QMetaObject::invokeMethod(
            this, [=] { onHello(run); }, Qt::QueuedConnection);
        return {};
    }
    if (seen.hello && kind == MessageKind::Route) {
        const auto route = decode<RouteMessage>(payload);
        return route ? m_remote.handleRoute(*route)
                     : failure(QStringLiteral("an unreadable route"));
    }
    if (seen.hello && kind == MessageKind::Loaded && !std::exchange(seen.loaded, true)) {
        const auto loaded = decode<LoadedMessage>(payload);
        if (!loaded)
            return failure(QStringLiteral("an unreadable message"));
        QMetaObject::invokeMethod(
            this, [=] { onLoaded(run, *loaded); }, Qt::QueuedConnection);
        return {};
    }
    if (seen.hello && kind == MessageKind::Kept)
        return receivedKept(payload, run);
    return failure(QStringLiteral("a message of kind %1 out of place").arg(static_cast<int>(kind)));
}

Result<void, QString> SupervisedPlugin::receivedKept(const QByteArray &payload, int run)
{
    const auto kept = decode<KeptMessage>(payload);
    if (!kept || !PluginWatch::isSetting(kept->setting))
        return failure(QStringLiteral("an unreadable setting"));
    QMetaObject::invokeMethod(
        this,
        [=] {
            if (run != m_run)
                return;
            if (kept->keeps)
                readSettings().noteKept(kept->setting, VeskValue(VeskHash(kept->value)));
            else
                readSettings().noteFollowed(kept->setting);
        },
        Qt::QueuedConnection);
    return {};
}

void SupervisedPlugin::onHello(int run)
{
    if (run != m_run || m_phase != Phase::Loading || !m_remote.link())
        return;
    whenStartable([this, run] {
        if (run != m_run || m_phase != Phase::Loading || !m_remote.link())
            return;
        readSettings().begin();
        m_remote.release();
        m_remote.sendStart([this] {
            StartMessage start = m_options.start();
            start.config = completed(std::move(start.config));
            start.network = descriptor().needs.network;
            start.answerForm = descriptor().answers;
            return start;
        });
    });
}

/// A request of the process to the host's tree: whether it is for a store, and so handled here. Any
/// thread.
bool SupervisedPlugin::takeStoreRequest(const CMRequest &request) const
{
    if (request.path().prefix() != PluginStoreAccess::prefix())
        return false;
    if (store() && request.path() == store()->path())
        store()->request(request);
    else
        request.reply().setError(CMNoNodeError());
    return true;
}

void SupervisedPlugin::onLoaded(int run, const LoadedMessage &message)
{
    if (run != m_run || m_phase != Phase::Loading)
        return;
    const bool isFirst = root().isEmpty() && error().isEmpty();
    if (!message.error.isEmpty() || message.root.isEmpty()) {
        const QString problem = message.error.isEmpty() ? QStringLiteral("no root") : message.error;
        if (isFirst)
            giveUp(problem);
        else
            endProcess(problem);
        return;
    }
    m_deadline.stop();
    m_phase = Phase::Running;
    m_loadedAt.start();
    m_remote.open();
    if (isFirst) {
        finishLoading(message.root, {});
        return;
    }
    VESK_INFO("plug-in " << file() << " serves " << message.root << " again");
    m_remote.notifyReset();
    Q_EMIT restarted();
}

void SupervisedPlugin::onLinkEnded(int run, const QString &reason)
{
    // A process that crashes takes the connection along; why it ended, its status tells.
    if (run != m_run || !m_process || m_phase == Phase::Ending)
        return;
    if (isReplaced())
        m_process->kill();
    else
        endProcess(m_why.isEmpty() ? reason : m_why);
}

void SupervisedPlugin::holdRequests()
{
    m_remote.hold(root().prefix());
}

void SupervisedPlugin::releaseRequests()
{
    m_remote.release();
}

void SupervisedPlugin::renew()
{
    if (m_phase == Phase::Loading)
        return readSettings().settleAgain();
    if (m_phase == Phase::Waiting) {
        // The setting that has changed may be what made the former one fail.
        m_restart.stop();
        return startProcess();
    }
    if (m_phase != Phase::Running)
        return; // the next process is told the settings as they are then
    VESK_INFO("the plug-in process of " << file()
                                        << " is replaced: a setting that it has read has changed");
    m_phase = Phase::Finishing;
    Q_EMIT restarting();
    const auto onlyShows = [this](const CMRequest &request) {
        return !changesSomething(descriptor().changing, root(), request.path());
    };
    for (const CMRequest &request : m_remote.beginReplacing(onlyShows)) {
        request.replyData()->whenFinished(this, [this, run = m_run] {
            if (run == m_run)
                leaveWhenFinished();
        });
    }
    m_deadline.start(FinishTime);
    leaveWhenFinished();
}

void SupervisedPlugin::leaveWhenFinished()
{
    if (m_phase != Phase::Finishing || !m_remote.link() || !m_remote.link()->pending().empty())
        return;
    m_phase = Phase::Leaving;
    m_deadline.start(EndTime);
    m_remote.send(StopMessage());
}

/// Kills a process that is of no use any more.
void SupervisedPlugin::endProcess(const QString &why)
{
    m_why = why;
    m_remote.close();
    if (m_process)
        m_process->kill();
}

void SupervisedPlugin::onProcessFinished(const QString &reason)
{
    m_deadline.stop();
    m_patience.stop();
    m_hasPatience = false;
    if (isReplaced())
        m_remote.endReplacing();
    else
        m_remote.close();
    m_process.release()->deleteLater(); // whose signal this is
    if (isReplaced())
        return startProcess();
    if (m_phase == Phase::Ending || m_phase == Phase::Idle) {
        m_phase = Phase::Idle;
        m_remote.leave();
        Q_EMIT unloaded();
        return;
    }
    const QString why = m_why.isEmpty() ? reason : m_why + QStringLiteral(": ") + reason;
    if (root().isEmpty()) {
        giveUp(why);
        return;
    }
    if (m_phase == Phase::Running && m_loadedAt.hasExpired(milliseconds(StableTime).count()))
        m_failures = 0;
    ++m_failures;
    const milliseconds wait = waitAfter(m_failures, m_options.longestWait);
    VESK_ERROR("the plug-in process of " << file() << " ended: " << why << "; starting again in "
                                         << wait.count() << " ms");
    m_phase = Phase::Waiting;
    // Requests that come meanwhile wait for the next process, if that is not too far away.
    if (wait <= ShortWait)
        expectProcess();
    if (wait.count() == 0)
        startProcess();
    else
        m_restart.start(wait);
}

void SupervisedPlugin::giveUp(const QString &error)
{
    if (!root().isEmpty()) {
        // It could be started once, so what is missing now is memory or descriptors.
        m_phase = Phase::Waiting;
        m_remote.close();
        m_restart.start(m_options.longestWait);
        VESK_ERROR("the plug-in process of " << file() << " cannot be started: " << error);
        return;
    }
    m_phase = Phase::Idle;
    endProcess(error);
    finishLoading(CMPath(), error);
}

void SupervisedPlugin::unload()
{
    VESK_ASSERT_OWN_THREAD();
    m_restart.stop();
    if (!isRunning()) {
        m_phase = Phase::Idle;
        m_remote.close();
        m_remote.leave();
        Q_EMIT unloaded();
        return;
    }
    const bool wasRunning = m_phase == Phase::Running || m_phase == Phase::Finishing;
    const bool isLeaving = m_phase == Phase::Leaving;
    m_phase = Phase::Ending;
    m_deadline.start(EndTime);
    if (isLeaving)
        return;
    if (wasRunning)
        m_remote.send(StopMessage());
    else
        endProcess(QStringLiteral("not needed any more"));
}

/// Any thread.
void SupervisedPlugin::startPatience()
{
    if (m_hasPatience.exchange(true))
        return;
    QMetaObject::invokeMethod(
        this, [this] { m_patience.start(); }, Qt::QueuedConnection);
}

/// Kills a process that hangs or was stopped while it owes responses.
void SupervisedPlugin::checkPatience()
{
    // Before the look at what is owed: a request that comes after it starts the timer again.
    m_hasPatience = false;
    if (m_phase != Phase::Running || !m_remote.link() || !m_remote.link()->isOwedResponses())
        return m_patience.stop();
    m_hasPatience = true;
    const milliseconds silence = m_remote.link()->silence();
    if (silence >= m_options.patience)
        endProcess(QStringLiteral("no answer within %1 s").arg(silence.count() / 1000));
    else if (silence >= ShortSilence && m_process->isStopped())
        endProcess(QStringLiteral("somebody stopped it"));
}
