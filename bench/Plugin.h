// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMRootWorker.h"
#include "api/nodes/CMValuesWorker.h"
#include "modules/tunein/cb_tunein.h"
#include "plugin/supervision/SupervisedPlugin.h"
#include "tests/support/WorkerThread.h"

#include <QProcess>

#include <functional>
#include <memory>

/// The answer to a request. The calling thread waits in its event loop, as the host's main thread
/// does while a client's request is open.
QVariant answerTo(const std::function<CMRequest(const CMReply<QVariant> &reply)> &makeRequest);

/// Serves what a directory would, says on standard output on which port, and ends with its standard
/// input. Returns the exit status.
int serveBenchmarks();

/// What a plug-in needs around it; and, in a process of its own as everywhere else, a server in its
/// directory's place.
class Surroundings {
public:
    Surroundings();
    ~Surroundings();

    /// "http://127.0.0.1:PORT/Browse.ashx"
    QByteArray rootUrl() const;
    /// HOST:PORT:ADDRESS:PORT of the server.
    QString connectTo() const;
    const CMValuesWorker &values() const { return m_values; }

private:
    QProcess m_server;
    int m_port = 0;
    CMRootWorker m_root;
    CMValuesWorker m_values;
};

/// A plug-in on its thread, with its network up.
class PluginOnThread {
public:
    PluginOnThread();

    CMTuneInWorker *worker() const { return static_cast<CMTuneInWorker *>(m_thread->object()); }
    /// Runs \a function on the worker's thread and waits for it.
    void call(const std::function<void()> &function) { m_thread->call(function); }

private:
    Surroundings m_surroundings;
    std::unique_ptr<WorkerThread> m_thread;

public:
    const Surroundings &surroundings() const { return m_surroundings; }
};

/// A plug-in in a process of its own, with its network up.
class PluginInProcess {
public:
    PluginInProcess();

private:
    StartMessage startMessage() const;

    Surroundings m_surroundings;
    SupervisedPlugin m_plugin;
};
