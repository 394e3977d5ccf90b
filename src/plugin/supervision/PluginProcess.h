// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "plugin/supervision/PluginOutput.h"

#include <QProcess>
#include <QString>

/// One vesk-plugin: the process, the socket to it, and what it prints, which goes to the host's log
/// as it stands. Main thread. The process dies with the thread that started it, and with this
/// object.
class PluginProcess : public QObject {
    Q_OBJECT

public:
    explicit PluginProcess(QObject *parent = nullptr);
    ~PluginProcess() override;

    /// Starts \a program for \a plugin, whose name is shown to those who list processes. Returns
    /// the socket to it, for the caller to own, or -1 and \a error.
    int start(const QString &program, const QString &plugin, QString &error);
    /// Ends it without a word; finished() tells when it is gone.
    void kill();
    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }
    /// Whether somebody has stopped it (SIGSTOP), so that it will not answer.
    bool isStopped() const;

Q_SIGNALS:
    /// It is gone; \a reason says how in words: "exit status 1", "signal 11 (Segmentation fault)",
    /// with the last line that it printed if it ended itself.
    void finished(const QString &reason);

private:
    /// Gives the new process its ends.
    class Process : public QProcess {
    public:
        int childSocket = -1;
        int childOutput = -1;

    protected:
        void setupChildProcess() override;
    };

    void onFinished();
    QString ending() const;

    Process m_process;
    PluginOutput m_output;
};
