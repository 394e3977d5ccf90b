// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/supervision/PluginProcess.h"

#include "api/core/ThreadCheck.h"
#include "api/core/vesk.h"
#include "plugin/process/PluginProgram.h"
#include "plugin/runtime/Descriptors.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int KillMilliseconds = 5000;

} // namespace

PluginProcess::Process::Process()
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    setChildProcessModifier([this] { setUpChild(); });
#endif
}

void PluginProcess::Process::setUpChild() const
{
    // Between fork and exec: async-signal-safe calls only. A process group of its own, because a
    // terminal's Ctrl-C is for the host alone, which ends its plug-in processes in order.
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    ::dup2(childOutput, STDOUT_FILENO);
    ::dup2(childOutput, STDERR_FILENO);
    if (childSocket == PluginSocket)
        ::fcntl(PluginSocket, F_SETFD, 0);
    else
        ::dup2(childSocket, PluginSocket);
    // Libraries in the host open descriptors too, and not all of them close-on-exec.
    keepDescriptorsFromPrograms(PluginSocket + 1);
}

PluginProcess::PluginProcess(const QString &id, QObject *parent)
    : QObject(parent)
    , m_output(id)
{
    m_process.setProcessChannelMode(QProcess::ForwardedChannels);
    m_process.setStandardInputFile(QProcess::nullDevice());
    connect(&m_process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
        &PluginProcess::onFinished);
}

PluginProcess::~PluginProcess()
{
    m_process.disconnect(this);
    m_process.kill();
    m_process.waitForFinished(KillMilliseconds);
}

Result<int, QString> PluginProcess::start(const QString &program, const QString &plugin)
{
    VESK_ASSERT_OWN_THREAD();
    int sockets[2] = {-1, -1};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets) != 0)
        return failure(QString::fromLocal8Bit(std::strerror(errno)));
    m_process.childSocket = sockets[1];
    m_process.childOutput = m_output.writingEnd();
    m_process.start(program, {plugin});
    const bool started = m_process.waitForStarted();
    ::close(sockets[1]);
    m_output.closeWritingEnd();
    if (!started) {
        ::close(sockets[0]);
        return failure(program + QStringLiteral(": ") + m_process.errorString());
    }
    return sockets[0];
}

void PluginProcess::kill()
{
    VESK_ASSERT_OWN_THREAD();
    m_process.kill();
}

bool PluginProcess::isStopped() const
{
    siginfo_t info {};
    const auto id = static_cast<id_t>(m_process.processId());
    return id != 0 && ::waitid(P_PID, id, &info, WSTOPPED | WNOHANG | WNOWAIT) == 0
        && info.si_pid != 0;
}

QString PluginProcess::ending() const
{
    if (m_process.exitStatus() == QProcess::NormalExit)
        return QStringLiteral("exit status %1").arg(m_process.exitCode());
    // Qt gives the number of the signal as the exit code.
    const int signal = m_process.exitCode();
    return QStringLiteral("signal %1 (%2)")
        .arg(signal)
        .arg(QString::fromLocal8Bit(::strsignal(signal)));
}

void PluginProcess::onFinished()
{
    const QString lastLine = m_output.finish();
    QString reason = ending();
    // One that ended by itself may have printed why.
    const bool wasKilled
        = m_process.exitStatus() == QProcess::CrashExit && m_process.exitCode() != SIGABRT;
    if (!wasKilled && !lastLine.isEmpty())
        reason += QStringLiteral("; its last line: ") + lastLine;
    Q_EMIT finished(reason);
}
