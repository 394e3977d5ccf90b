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

/// Where worker processes come from, and how they are looked after.
struct PluginProcessOptions {
    QString program;
    /// What each new process is told; called on the main thread.
    std::function<StartMessage()> start;
    /// The longest wait before another start of a process that ended.
    std::chrono::milliseconds longestWait = std::chrono::seconds(30);
    /// A worker that owes answers and gives none for so long is ended.
    std::chrono::milliseconds patience = std::chrono::seconds(60);
};

/// A plug-in in a process of its own, which may end at any time: everything it owed is answered
/// with an error then, and another process is started, at once the first time and later after
/// growing waits. A process that never came so far as to load the plug-in is not tried again. One
/// that is replaced for the sake of a setting goes quietly: it is no failure, and waits for
/// nothing.
class SupervisedPlugin : public Plugin {
    Q_OBJECT

public:
    /// How long a process may take to load its plug-in.
    static constexpr std::chrono::seconds LoadTime {30};
    /// How long it may take to end by itself.
    static constexpr std::chrono::seconds EndTime {10};
    /// How long one that is replaced may take for what it cannot leave to the next one: longer than
    /// its service may take.
    static constexpr std::chrono::seconds AnswerTime {35};
    /// One that ran for so long begins anew with an immediate start when it ends.
    static constexpr std::chrono::seconds StableTime {60};

    SupervisedPlugin(
        const QString &file, const PluginProcessOptions &options, QObject *parent = nullptr);
    ~SupervisedPlugin() override;

    void load() override;
    void unload() override;
    bool isRunning() const override;
    bool serves(const CMPath &path) const override { return m_remote.serves(path); }

    /// Brings a value or the player's state to the worker. Any thread.
    void tell(const ValueMessage &message) { m_remote.send(message); }
    void tell(const PlayerMessage &message) { m_remote.send(message); }

protected:
    void holdRequests() override;
    void releaseRequests() override;
    void renew() override;

private:
    /// A process that is replaced finishes what it has begun, and then leaves.
    enum class Phase { Idle, Loading, Running, Waiting, Finishing, Leaving, Ending };

    void startProcess();
    void expectProcess();
    void openLink(int socket);
    void onHello(int run);
    void onLoaded(int run, const LoadedMessage &message);
    void onLinkEnded(int run, const QString &reason);
    void onProcessFinished(const QString &reason);
    QString takeKept(const QByteArray &payload, int run);
    void leaveWhenFinished();
    void onDeadline();
    bool isReplaced() const { return m_phase == Phase::Finishing || m_phase == Phase::Leaving; }
    void giveUp(const QString &error);
    void endProcess(const QString &why);
    void watchWhileItOwes();
    void look();

    const PluginProcessOptions m_options;
    Phase m_phase = Phase::Idle;
    int m_run = 0; ///< counts processes, so that news of a former one is known
    int m_failures = 0; ///< ends in a row
    QString m_why; ///< for which the host ended the process itself
    QElapsedTimer m_loadedAt;
    QTimer m_restart;
    QTimer m_deadline; ///< of loading or ending
    QTimer m_watch; ///< while the process owes answers, and for a moment after
    std::atomic<bool> m_isWatched {false};
    std::unique_ptr<PluginProcess> m_process;
    RemoteWorker m_remote;
};
