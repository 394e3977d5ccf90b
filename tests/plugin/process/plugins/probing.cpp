// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMNodesWorker.h"
#include "api/nodes/CMUINode.h"

#include <QByteArray>
#include <QFile>
#include <QMap>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <functional>
#include <grp.h>
#include <netinet/in.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

// A plug-in that attempts what its confinement forbids. A set-data request's role names the
// attempt, its value the file to use; the response is the resulting errno, 0 for success.
namespace {

/// The errno of a call that returned \a result: -1 on failure; 0 on success.
int outcome(long result)
{
    return result == -1 ? errno : 0;
}

int opened(const QByteArray &file, int flags)
{
    return outcome(::open(file.constData(), flags | O_CLOEXEC, 0600));
}

int forked(pid_t process)
{
    if (process == 0)
        ::_exit(0);
    return outcome(process);
}

int tryExec()
{
    char program[] = "/bin/true";
    char *arguments[] = {program, nullptr};
    return outcome(::execve(program, arguments, nullptr));
}

/// Listens on a free TCP port.
int tryListen()
{
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (::bind(socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
        return -1; // failed before the attempt itself
    return outcome(::listen(socket, 1));
}

/// Sends to the named socket \a file from an unnamed one: socketpair() works where socket() does
/// not.
int tryDatagram(const QByteArray &file)
{
    int sockets[2] = {-1, -1};
    if (::socketpair(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0, sockets) != 0)
        return errno;
    sockaddr_un address {};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, file.constData(), sizeof address.sun_path);
    return outcome(::sendto(
        sockets[0], "x", 1, 0, reinterpret_cast<const sockaddr *>(&address), sizeof address));
}

/// Makes the host the owner of a socket: the kernel would send it the socket's SIGIO and SIGURG.
int trySignalOfFile()
{
    int sockets[2] = {-1, -1};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets) != 0)
        return -1;
    return outcome(::fcntl(sockets[0], F_SETOWN, ::getppid()));
}

/// Maps a gibibyte of memory; \a kind is MAP_PRIVATE or MAP_SHARED.
int tryMemory(int kind)
{
    constexpr std::size_t Bytes = 1024UL * 1024 * 1024;
    void *const memory
        = ::mmap(nullptr, Bytes, PROT_READ | PROT_WRITE, kind | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
        return errno;
    ::munmap(memory, Bytes);
    return 0;
}

/// The limit on open descriptors, as the highest one that can be opened.
int countDescriptors()
{
    constexpr int Enough = 10'000;
    QList<int> descriptors;
    int highest = -1;
    while (descriptors.size() < Enough) {
        const int descriptor = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
        if (descriptor < 0)
            break;
        highest = qMax(highest, descriptor);
        descriptors.append(descriptor);
    }
    for (const int descriptor : std::as_const(descriptors))
        ::close(descriptor);
    return highest + 1;
}

int tryThread()
{
    int result = -1;
    std::thread([&result] { result = 0; }).join();
    return result;
}

int raiseLimit(int resource)
{
    const rlimit limits {RLIM_INFINITY, RLIM_INFINITY};
    return outcome(::setrlimit(static_cast<__rlimit_resource_t>(resource), &limits));
}

using Deed = std::function<int(const QByteArray &file)>;

const QMap<QString, Deed> &deeds()
{
    const auto call = [](auto... arguments) {
        return [=](const QByteArray &) { return outcome(::syscall(arguments...)); };
    };
    static const QMap<QString, Deed> all {
        {QStringLiteral("pid"), [](auto &) { return static_cast<int>(::getpid()); }},
        // what plug-ins need
        {QStringLiteral("thread"), [](auto &) { return tryThread(); }},
        {QStringLiteral("internet"), call(SYS_socket, AF_INET, SOCK_STREAM, 0)},
        {QStringLiteral("internet6"), call(SYS_socket, AF_INET6, SOCK_STREAM, 0)},
        {QStringLiteral("datagrams"), call(SYS_socket, AF_INET, SOCK_DGRAM, 0)},
        {QStringLiteral("netlink"), call(SYS_socket, AF_NETLINK, SOCK_RAW, 0)},
        {QStringLiteral("read"), [](auto &file) { return opened(file, O_RDONLY); }},
        {QStringLiteral("descriptors"), [](auto &) { return countDescriptors(); }},
        // files
        {QStringLiteral("create"), [](auto &file) { return opened(file, O_WRONLY | O_CREAT); }},
        {QStringLiteral("change"), [](auto &file) { return opened(file, O_RDWR); }},
        {QStringLiteral("empty"), [](auto &file) { return opened(file, O_RDONLY | O_TRUNC); }},
        {QStringLiteral("truncate"),
            [](auto &file) { return outcome(::truncate(file.constData(), 0)); }},
        {QStringLiteral("remove"), [](auto &file) { return outcome(::unlink(file.constData())); }},
        {QStringLiteral("rename"),
            [](auto &file) { return outcome(::rename(file.constData(), "/tmp/renamed")); }},
        {QStringLiteral("chmod"),
            [](auto &file) { return outcome(::chmod(file.constData(), 0777)); }},
        {QStringLiteral("folder"),
            [](auto &file) { return outcome(::mkdir((file + ".d").constData(), 0700)); }},
        {QStringLiteral("link"),
            [](auto &file) { return outcome(::symlink("/", (file + ".l").constData())); }},
        // processes
        {QStringLiteral("fork"), [](auto &) { return forked(::fork()); }},
        {QStringLiteral("rawfork"),
            [](auto &) {
                return forked(static_cast<pid_t>(::syscall(SYS_clone, SIGCHLD, 0, 0, 0, 0)));
            }},
        {QStringLiteral("exec"), [](auto &) { return tryExec(); }},
        {QStringLiteral("ptrace"), call(SYS_ptrace, PTRACE_TRACEME, 0, 0, 0)},
        {QStringLiteral("kill"), [](auto &) { return outcome(::kill(::getppid(), 0)); }},
        {QStringLiteral("tgkill"),
            [](auto &) { return outcome(::syscall(SYS_tgkill, ::getppid(), ::getppid(), 0)); }},
        {QStringLiteral("pidfd"),
            [](auto &) { return outcome(::syscall(SYS_pidfd_open, ::getppid(), 0)); }},
        {QStringLiteral("signaloffile"), [](auto &) { return trySignalOfFile(); }},
        // system calls newer than the filter
        {QStringLiteral("clone3"), call(SYS_clone3, nullptr, 0)},
        {QStringLiteral("openat2"), call(SYS_openat2, AT_FDCWD, "/", nullptr, 0)},
        {QStringLiteral("landlock"), call(SYS_landlock_create_ruleset, nullptr, 0, 1)},
        {QStringLiteral("newest"), call(460, 0, 0, 0)},
        {QStringLiteral("yettocome"), call(600, 0, 0, 0)},
        // privileges
        {QStringLiteral("setuid"),
            [](auto &) { return outcome(::syscall(SYS_setuid, ::getuid())); }},
        {QStringLiteral("setgid"),
            [](auto &) { return outcome(::syscall(SYS_setgid, ::getgid())); }},
        {QStringLiteral("setgroups"), call(SYS_setgroups, 0, nullptr)},
        {QStringLiteral("namespace"), call(SYS_unshare, CLONE_NEWUSER)},
        {QStringLiteral("chroot"), call(SYS_chroot, "/")},
        {QStringLiteral("mount"), call(SYS_mount, "none", "/nowhere", "tmpfs", 0, nullptr)},
        {QStringLiteral("dumpable"), call(SYS_prctl, PR_SET_DUMPABLE, 1, 0, 0, 0)},
        {QStringLiteral("survive"), call(SYS_prctl, PR_SET_PDEATHSIG, 0, 0, 0, 0)},
        {QStringLiteral("corelimit"), [](auto &) { return raiseLimit(RLIMIT_CORE); }},
        {QStringLiteral("memorylimit"), [](auto &) { return raiseLimit(RLIMIT_DATA); }},
        {QStringLiteral("memory"), [](auto &) { return tryMemory(MAP_PRIVATE); }},
        {QStringLiteral("sharedmemory"), [](auto &) { return tryMemory(MAP_SHARED); }},
        // sockets
        {QStringLiteral("local"), call(SYS_socket, AF_UNIX, SOCK_STREAM, 0)},
        {QStringLiteral("raw"), call(SYS_socket, AF_INET, SOCK_RAW, IPPROTO_ICMP)},
        {QStringLiteral("packet"), call(SYS_socket, AF_PACKET, SOCK_RAW, 0)},
        {QStringLiteral("listen"), [](auto &) { return tryListen(); }},
        {QStringLiteral("datagram"), [](auto &file) { return tryDatagram(file); }},
    };
    return all;
}

class ProbingNode : public CMUINode {
public:
    explicit ProbingNode(const CMPath &path)
        : CMUINode(path)
    {
    }

    bool request(const CMRequest &request) override
    {
        if (request.kind() != CMRequest::SetData)
            return CMUINode::request(request);
        const CMSetDataRequest setData(request);
        const Deed deed = deeds().value(setData.role());
        if (!deed)
            return false;
        request.reply().setValue(deed(QFile::encodeName(setData.value().toString())));
        return true;
    }
};

class ProbingWorker : public CMNodesWorker {
public:
    explicit ProbingWorker(const QVariantHash &config)
        : CMNodesWorker(config, QStringLiteral("Probing"))
    {
        (new ProbingNode(addPrefix(QString())))->setNodes(nodes());
    }
};

} // namespace

extern "C" Q_DECL_EXPORT void *worker_create(const char *, void *config)
{
    return new ProbingWorker(*static_cast<const QVariantHash *>(config));
}
