// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/host/HostProcess.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <csignal>

HostProcess::HostProcess(const QString &program, const QStringList &arguments)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_STATE_HOME"), m_folder.path());
    // An empty file, so that none of this machine's is read.
    const QString folder = m_folder.filePath(QStringLiteral("config"));
    QFile config(folder + QStringLiteral("/vesk/vesk.conf"));
    if (QDir().mkpath(folder + QStringLiteral("/vesk")) && config.open(QIODevice::WriteOnly))
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), folder);
    m_process.setProcessEnvironment(environment);
    QStringList all = arguments;
    if (!all.contains(QStringLiteral("--listen")))
        all += {QStringLiteral("--listen"), QStringLiteral("127.0.0.1:0")};
    if (qEnvironmentVariableIsSet("VESK_TEST_IN_PROCESS"))
        all += QStringLiteral("--in-process");
    m_process.start(program, all);

    const QByteArray announcement = "vesk-host: ready at ";
    QElapsedTimer elapsed;
    elapsed.start();
    while (!output().endsWith('\n') && m_process.state() != QProcess::NotRunning
        && elapsed.elapsed() < 30000)
        m_process.waitForReadyRead(1000);
    if (m_output.startsWith(announcement))
        m_url = QString::fromLatin1(m_output.mid(announcement.size()).trimmed());
}

HostProcess::~HostProcess()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.terminate();
    if (!m_process.waitForFinished(20000))
        m_process.kill();
    m_process.waitForFinished();
}

void HostProcess::signal(int number)
{
    ::kill(static_cast<pid_t>(m_process.processId()), number);
}

QByteArray HostProcess::newErrors()
{
    m_process.setReadChannel(QProcess::StandardError);
    m_process.waitForReadyRead(1);
    return errors();
}

int HostProcess::waitForEnd(int milliseconds)
{
    if (m_process.state() != QProcess::NotRunning && !m_process.waitForFinished(milliseconds))
        return -1;
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}
