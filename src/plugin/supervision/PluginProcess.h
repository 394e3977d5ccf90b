// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/Result.h"
#include "plugin/supervision/PluginOutput.h"

#include <QProcess>
#include <QString>

/// One vesk-plugin: the process, the socket to it, and its output, which goes to the host's log.
/// Main thread, which must outlive the process: the kernel kills it when the thread that started it
/// ends. So does this object's destructor.
class PluginProcess : public QObject {
    Q_OBJECT

public:
    /// \a id is the plug-in's, for the log.
    explicit PluginProcess(const QString &id, QObject *parent = nullptr);
    ~PluginProcess() override;

    /// Starts \a program for \a plugin, which it is given as an argument for `ps` to show. Returns
    /// the socket to it, for the caller to own.
    Result<int, QString> start(const QString &program, const QString &plugin);
    /// SIGKILL; finished() tells when it is gone.
    void kill();
    /// Whether it is stopped (SIGSTOP), so that it will not respond.
    bool isStopped() const;

Q_SIGNALS:
    /// The process has ended. \a reason: "exit status 1", "signal 11 (Segmentation fault)", with
    /// the last line that it printed if it ended by itself.
    void finished(const QString &reason);

private:
    /// Gives the new process its ends of the socket and the pipe.
    class Process : public QProcess {
    public:
        Process();

        int childSocket = -1;
        int childOutput = -1;

    private:
        void setUpChild() const;
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
        void setupChildProcess() override
        {
            setUpChild();
        }
#endif
    };

    void onFinished();
    QString ending() const;

    Process m_process;
    PluginOutput m_output;
};
