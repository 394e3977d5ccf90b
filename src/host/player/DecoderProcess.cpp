// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/DecoderProcess.h"

#include "decoder/DecoderFrames.h"
#include "plugin/runtime/HostFolders.h"

#include <QFile>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// Attributes of the new process: its own process group, so that Ctrl-C in a terminal reaches only
/// the host; no blocked signals; no open descriptors except its socket and /dev/null as standard
/// streams.
class SpawnSettings {
public:
    explicit SpawnSettings(int socket)
    {
        sigset_t none;
        sigemptyset(&none);
        sigset_t ignored;
        sigemptyset(&ignored);
        sigaddset(&ignored, SIGPIPE);
        posix_spawnattr_init(&m_attributes);
        posix_spawnattr_setpgroup(&m_attributes, 0);
        posix_spawnattr_setsigmask(&m_attributes, &none);
        posix_spawnattr_setsigdefault(&m_attributes, &ignored);
        posix_spawnattr_setflags(
            &m_attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
        posix_spawn_file_actions_init(&m_files);
        posix_spawn_file_actions_addopen(&m_files, STDIN_FILENO, "/dev/null", O_RDWR, 0);
        posix_spawn_file_actions_adddup2(&m_files, STDIN_FILENO, STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&m_files, STDIN_FILENO, STDERR_FILENO);
        posix_spawn_file_actions_adddup2(&m_files, socket, DecoderSocket);
        posix_spawn_file_actions_addclosefrom_np(&m_files, DecoderSocket + 1);
    }
    ~SpawnSettings()
    {
        posix_spawn_file_actions_destroy(&m_files);
        posix_spawnattr_destroy(&m_attributes);
    }
    Q_DISABLE_COPY(SpawnSettings)

    const posix_spawnattr_t *attributes() const { return &m_attributes; }
    const posix_spawn_file_actions_t *files() const { return &m_files; }

private:
    posix_spawnattr_t m_attributes {};
    posix_spawn_file_actions_t m_files {};
};

} // namespace

DecoderProcess::DecoderProcess()
{
    int sockets[2] = {-1, -1};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets) != 0) {
        m_problem = QString::fromLocal8Bit(std::strerror(errno));
        return;
    }
    // The host's end only: vesk-decoder uses blocking sends.
    ::fcntl(sockets[0], F_SETFL, O_NONBLOCK);
    m_socket = sockets[0];
    QByteArray program = QFile::encodeName(HostFolders::decoderProgram());
    char *const arguments[] = {program.data(), nullptr};
    const SpawnSettings settings(sockets[1]);
    const int error = ::posix_spawn(
        &m_pid, program.constData(), settings.files(), settings.attributes(), arguments, environ);
    ::close(sockets[1]);
    if (error != 0) {
        m_pid = -1;
        m_problem = QStringLiteral("%1: %2").arg(
            HostFolders::decoderProgram(), QString::fromLocal8Bit(std::strerror(error)));
    }
}

bool DecoderProcess::hasEnded() const
{
    pollfd end {m_socket, 0, 0};
    return !isRunning() || (::poll(&end, 1, 0) == 1 && (end.revents & (POLLHUP | POLLERR)) != 0);
}

DecoderProcess::~DecoderProcess()
{
    kill();
    if (m_pid > 0) {
        while (::waitpid(m_pid, nullptr, 0) < 0 && errno == EINTR) { }
    }
    if (m_socket >= 0)
        ::close(m_socket);
}

void DecoderProcess::kill()
{
    if (m_socket >= 0)
        ::shutdown(m_socket, SHUT_RDWR);
    // The process is reaped only by the destructor, so the pid cannot have been reused.
    if (m_pid > 0)
        ::kill(m_pid, SIGKILL);
}
