// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMNodesWorker.h"

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

    /// The plug-in's thread that \a thread is, or works for: that it was started by, or by one that
    /// was. Null when there is none. For a thread that runs; any thread.
    static PluginThread *homeOf(QThread *thread);

    /// Calls \a done on the thread of \a context when the worker has taken up everything that it
    /// was asked for before, or cannot any more. Between loaded() and the end of the event loop.
    void whenIdle(QObject *context, std::function<void()> done);

Q_SIGNALS:
    /// The worker is there, with its root, or \a error tells why not. Once; from the thread.
    void loaded(const CMPath &root, const QString &error);

protected:
    void run() override;

private:
    std::unique_ptr<CMNodesWorker> createWorker(QString &error);

    const QString m_file;
    QVariantHash m_config;
    CMNodesWorker *m_worker = nullptr; ///< set before loaded()
};
