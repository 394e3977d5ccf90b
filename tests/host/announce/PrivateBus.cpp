// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/host/announce/PrivateBus.h"

#include <QFile>

#include <csignal>

namespace {

constexpr char Configuration[] = R"(<!DOCTYPE busconfig PUBLIC
 "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <listen>unix:path=%1</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*"/>
    <allow receive_sender="*"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

} // namespace

PrivateBus::PrivateBus(const char *variable)
    : m_variable(variable)
{
    start();
    qputenv(m_variable, m_address);
}

void PrivateBus::start()
{
    const QString name = m_folder.filePath(QStringLiteral("bus.conf"));
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly))
        return;
    const QString socket = m_folder.filePath(QStringLiteral("socket"));
    file.write(QString::fromLatin1(Configuration).arg(socket).toUtf8());
    file.close();
    QFile::remove(socket);
    m_process.setProcessChannelMode(QProcess::SeparateChannels);
    m_process.start(QStringLiteral("dbus-daemon"),
        {QStringLiteral("--config-file=") + name, QStringLiteral("--nofork"),
            QStringLiteral("--nopidfile"), QStringLiteral("--print-address=1")});
    m_address.clear();
    // It prints the address once it listens there; the id behind it differs from start to start.
    while (m_address.isEmpty() && m_process.waitForReadyRead(30000)) {
        if (m_process.canReadLine())
            m_address = m_process.readLine().trimmed().split(',').first();
    }
}

PrivateBus::~PrivateBus()
{
    qunsetenv(m_variable);
    end();
}

void PrivateBus::signal(int number)
{
    ::kill(static_cast<pid_t>(m_process.processId()), number);
}

void PrivateBus::end()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.kill();
    m_process.waitForFinished();
}
