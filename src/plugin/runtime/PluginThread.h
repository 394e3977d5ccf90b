// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMNodesWorker.h"
#include "base/Result.h"

#include <QString>
#include <QThread>
#include <QVariantHash>

#include <functional>
#include <memory>

/// The thread of one plug-in: loads the library, creates the worker, runs its event loop, and
/// deletes the worker as the last thing that it does, because a plug-in may end the event loop of
/// the thread it is deleted on.
class PluginThread : public QThread {
    Q_OBJECT

public:
    PluginThread(const QString &file, const QVariantHash &config);
    /// Must have ended.
    ~PluginThread() override;

    /// The plug-in's thread that \a thread is or descends from: that started it, or started the one
    /// that did. Null when there is none. \a thread must be running; any thread may ask.
    static PluginThread *homeOf(QThread *thread);

    /// Of the plug-in's store; empty when its configuration has none. Any thread.
    const CMPath &storePath() const { return m_storePath; }

    /// Calls \a done on the thread of \a context when the worker has handled all requests that were
    /// made before, or when it cannot. Between loaded() and the end of the event loop.
    void whenIdle(QObject *context, std::function<void()> done);

Q_SIGNALS:
    /// The worker was created and has this root, or \a error says why not. Once; from the thread.
    void loaded(const CMPath &root, const QString &error);

protected:
    void run() override;

private:
    Result<std::unique_ptr<CMNodesWorker>, QString> createWorker();

    const QString m_file;
    QVariantHash m_config;
    const CMPath m_storePath;
    CMNodesWorker *m_worker = nullptr; ///< set before loaded()
};
