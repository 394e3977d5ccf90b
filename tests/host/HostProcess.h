// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

/// The host as a process of its own, on a free port, with a state folder of its own and nothing of
/// the test's environment that it would read. Ended, if need be by force, with this object. With
/// VESK_TEST_IN_PROCESS in the environment plug-ins run in its process.
class HostProcess {
public:
    /// Runs \a program until it says that it is ready, or ends; gives up after 30 seconds.
    explicit HostProcess(const QString &program, const QStringList &arguments);
    ~HostProcess();

    bool isReady() const { return !m_url.isEmpty(); }
    /// Ends with "/".
    QString url() const { return m_url; }
    QString stateFolder() const { return m_folder.path(); }
    pid_t id() const { return static_cast<pid_t>(m_process.processId()); }
    /// Everything on standard output so far.
    QByteArray output() { return m_output += m_process.readAllStandardOutput(); }
    QByteArray errors() { return m_errors += m_process.readAllStandardError(); }

    /// errors(), with what has been written by now though no event loop runs.
    QByteArray newErrors();

    void terminate() { m_process.terminate(); }
    void signal(int number);
    /// Waits for the end and returns the exit status; -1 when it does not end in time or crashes.
    int waitForEnd(int milliseconds = 20000);

private:
    QTemporaryDir m_folder;
    QProcess m_process;
    QString m_url;
    QByteArray m_output;
    QByteArray m_errors;
};
