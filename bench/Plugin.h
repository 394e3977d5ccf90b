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

/// Makes a request and returns the value of its response. The calling thread waits in its event
/// loop, as the host's main thread does while a client's request is pending.
QVariant answerTo(const std::function<CMRequest(const CMReply<QVariant> &reply)> &makeRequest);

/// Runs a server in place of the directory: prints its port to standard output and serves until
/// standard input is closed. Returns the exit status.
int serveBenchmarks();

/// The environment of a plug-in: a root, the values that it reads, and a server in place of its
/// directory. The server runs in a process of its own, as a real one does.
class Surroundings {
public:
    Surroundings();
    ~Surroundings();

    /// "http://127.0.0.1:PORT/Browse.ashx"
    QByteArray rootUrl() const;
    /// The entry of HttpClient::setConnectTo() that leads to the server.
    QString connectTo() const;
    const CMValuesWorker &values() const { return m_values; }

private:
    QProcess m_server;
    int m_port = 0;
    CMRootWorker m_root;
    CMValuesWorker m_values;
};

/// A plug-in on a thread of this process, with the network connected.
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

/// A plug-in in a process of its own, with the network connected.
class PluginInProcess {
public:
    PluginInProcess();

private:
    StartMessage startMessage() const;

    Surroundings m_surroundings;
    SupervisedPlugin m_plugin;
};
