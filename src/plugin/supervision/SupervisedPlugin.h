// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "plugin/link/Message.h"
#include "plugin/supervision/Plugin.h"
#include "plugin/supervision/PluginProcess.h"
#include "plugin/supervision/RemoteWorker.h"

#include <QElapsedTimer>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>

/// How the processes of a plug-in are started and supervised.
struct PluginProcessOptions {
    QString program;
    /// Makes the message that each new process is sent; called on the main thread.
    std::function<StartMessage()> start;
    /// The longest wait before another start of a process that ended.
    std::chrono::milliseconds longestWait = std::chrono::seconds(30);
    /// A process that owes responses and sends none for so long is killed.
    std::chrono::milliseconds patience = std::chrono::seconds(60);
    /// The plug-in's, for the log.
    QString id = {};
};

/// A plug-in in a process of its own. When the process ends, its requests end with an error and
/// another process is started, at once the first time and later after growing waits. Where the
/// first process does not manage to load the plug-in, no other one is started. A process that is
/// replaced because of a setting is no failure: nothing is logged as an error, and the next one is
/// started at once.
class SupervisedPlugin : public Plugin {
    Q_OBJECT

public:
    /// How long a process may take to load its plug-in.
    static constexpr std::chrono::seconds LoadTime {30};
    /// How long it may take to end after StopMessage.
    static constexpr std::chrono::seconds EndTime {10};
    /// How long one that is replaced may take for the requests that it has to finish: longer than
    /// an exchange with its service may take.
    static constexpr std::chrono::seconds FinishTime {35};
    /// When a process ends that ran for so long, its failures before that do not count any more.
    static constexpr std::chrono::seconds StableTime {60};

    SupervisedPlugin(
        const QString &file, const PluginProcessOptions &options, QObject *parent = nullptr);
    ~SupervisedPlugin() override;

    void load() override;
    void unload() override;
    bool isRunning() const override;
    bool serves(const CMPath &path) const override { return m_remote.serves(path); }

    /// Sends a value or the player's state to the process. Any thread.
    void tell(const ValueMessage &message) { m_remote.send(message); }
    void tell(const PlayerMessage &message) { m_remote.send(message); }

protected:
    void holdRequests() override;
    void releaseRequests() override;
    void renew() override;

private:
    enum class Phase {
        Idle, ///< there is no process, and none is wanted
        Loading,
        Running,
        Waiting, ///< for the time to start the next process
        Finishing, ///< to be replaced, once its requests are finished
        Leaving, ///< to be replaced, once it has ended
        Ending ///< for good
    };

    /// The messages that come once.
    struct Seen {
        bool hello = false;
        bool loaded = false;
    };

    void startProcess();
    void expectProcess();
    void openLink(int socket);
    void onHello(int run);
    bool takeStoreRequest(const CMRequest &request) const;
    void onLoaded(int run, const LoadedMessage &message);
    void onLinkEnded(int run, const QString &reason);
    void onProcessFinished(const QString &reason);
    Result<void, QString> received(
        MessageKind kind, const QByteArray &payload, int run, Seen &seen);
    Result<void, QString> receivedKept(const QByteArray &payload, int run);
    void leaveWhenFinished();
    void onDeadline();
    bool isReplaced() const { return m_phase == Phase::Finishing || m_phase == Phase::Leaving; }
    void giveUp(const QString &error);
    void endProcess(const QString &why);
    void startPatience();
    void checkPatience();

    const PluginProcessOptions m_options;
    Phase m_phase = Phase::Idle;
    int m_run = 0; ///< counts processes, so that late events of a former one can be told apart
    int m_failures = 0; ///< ends in a row
    QString m_why; ///< for which the host itself killed the process
    QElapsedTimer m_loadedAt;
    QTimer m_restart;
    QTimer m_deadline; ///< of loading or ending
    QTimer m_patience; ///< runs while the process owes responses, and for a moment after
    std::atomic<bool> m_hasPatience {false}; ///< m_patience runs, or is about to be started
    std::unique_ptr<PluginProcess> m_process;
    RemoteWorker m_remote;
};
