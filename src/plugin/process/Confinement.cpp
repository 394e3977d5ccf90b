// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/process/Confinement.h"

#include "base/confinement/Confining.h"

#include <cerrno>
#include <fcntl.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

/// Private memory. The screens of the longest responses take a tenth.
constexpr unsigned long long MemoryBytes = 512ULL * 1024 * 1024;
constexpr unsigned long long Descriptors = 256;

/// Needed for name look-ups, certificates and local time, beside the loader's files.
const QList<QByteArray> &alwaysReadable()
{
    // What a link names at this moment is readable, too. A file in it that is replaced later is
    // only readable if its folder is.
    static const QList<QByteArray> files {// names
        "/etc/hosts", "/etc/resolv.conf", "/etc/nsswitch.conf", "/etc/host.conf", "/etc/gai.conf",
        "/etc/services", "/etc/protocols", "/usr/etc/nsswitch.conf", "/usr/etc/services",
        "/usr/etc/protocols", // openSUSE
        "/run/systemd/resolve", "/run/resolvconf", "/run/netconfig", "/run/connman/resolv.conf",
        "/run/NetworkManager/resolv.conf", // beside it are passwords
        // certificates, and what links in these folders lead to
        "/etc/ssl", "/etc/pki", "/usr/share/ca-certificates", "/usr/local/share/ca-certificates",
        "/etc/ca-certificates", // Arch
        "/var/lib/ca-certificates", // openSUSE
        "/usr/share/pki", "/etc/crypto-policies", "/usr/share/crypto-policies", // Fedora
        // time
        "/etc/localtime", "/etc/timezone", "/usr/share/zoneinfo", "/etc/zoneinfo"};
    return files;
}

std::vector<std::string> readableFiles(const QList<QByteArray> &readable)
{
    std::vector<std::string> files = loaderFiles();
    for (const QByteArray &file : alwaysReadable() + readable)
        files.push_back(file.toStdString());
    return files;
}

// System calls: seccomp.

constexpr scmp_datum_t NewNamespaces = CLONE_NEWCGROUP | CLONE_NEWIPC | CLONE_NEWNET | CLONE_NEWNS
    | CLONE_NEWPID | CLONE_NEWUSER | CLONE_NEWUTS;
constexpr scmp_datum_t TemporaryFile = O_TMPFILE & ~O_DIRECTORY;
constexpr scmp_datum_t WritingFlags
    = O_WRONLY | O_RDWR | O_CREAT | O_TRUNC | O_APPEND | TemporaryFile;
constexpr scmp_datum_t TypeOfSocket = ~(SOCK_CLOEXEC | SOCK_NONBLOCK) & 0xffffffff;
constexpr scmp_datum_t NameOfMemory = 0x53564d41; // PR_SET_VMA

/// Harmless with any arguments. A name stands for its 32-bit forms, too (CallFilter).
constexpr const char *HarmlessCalls[] = {
    // memory
    "brk", "madvise", "mprotect", "mremap", "munmap",
    // threads and signals
    "arch_prctl", "exit", "exit_group", "futex", "futex_waitv", "get_robust_list", "getcpu",
    "getpid", "getppid", "gettid", "membarrier", "restart_syscall", "rseq", "rt_sigaction",
    "rt_sigpending", "rt_sigprocmask", "rt_sigreturn", "rt_sigsuspend", "rt_sigtimedwait",
    "sched_get_priority_max", "sched_get_priority_min", "sched_getaffinity", "sched_getparam",
    "sched_getscheduler", "sched_yield", "set_robust_list", "set_tid_address", "sigaltstack",
    // time
    "clock_getres", "clock_gettime", "clock_nanosleep", "gettimeofday", "nanosleep", "time",
    "timerfd_create", "timerfd_gettime", "timerfd_settime", "times",
    // descriptors, and files as far as Landlock allows
    "access", "close", "close_range", "dup", "dup2", "dup3", "epoll_create", "epoll_create1",
    "epoll_ctl", "epoll_pwait", "epoll_pwait2", "epoll_wait", "eventfd", "eventfd2", "faccessat",
    "faccessat2", "fadvise64", "fstat", "fstatfs", "getcwd", "getdents64", "lseek", "lstat",
    "newfstatat", "pipe", "pipe2", "poll", "ppoll", "pread64", "preadv", "pselect6", "read",
    "readlink", "readlinkat", "readv", "select", "stat", "statfs", "statx", "write", "writev",
    // exchanges
    "bind", "connect", "getpeername", "getsockname", "getsockopt", "recvfrom", "recvmmsg",
    "recvmsg", "sendmmsg", "sendmsg", "sendto", "setsockopt", "shutdown",
    // the processor's own: the thread's area, and caches after code was written
    "cacheflush", "get_thread_area", "riscv_flush_icache", "set_thread_area", "set_tls",
    // the machine
    "getegid", "geteuid", "getgid", "getrandom", "getrlimit", "getrusage", "getuid", "sysinfo",
    "uname"};

void allowSockets(CallFilter &filter, bool network)
{
    if (!filter.seesArgumentsOfSockets()) {
        // Sockets of any family with network, and without it pairs of any type.
        if (network)
            filter.allow("socket");
        filter.allow("socketpair");
        return;
    }
    if (network) {
        for (const int family : {AF_INET, AF_INET6, AF_NETLINK})
            filter.allow("socket", CallFilter::equals(0, static_cast<scmp_datum_t>(family)));
    }
    // Streams only: a datagram socket of a pair could be connected to other sockets.
    filter.allow("socketpair", CallFilter::equals(0, AF_UNIX),
        CallFilter::masked(1, TypeOfSocket, SOCK_STREAM));
}

} // namespace

std::unique_ptr<CallFilter> callsOfPluginProcesses(bool network, std::uint32_t architecture)
{
    const auto equals = CallFilter::equals;
    const auto masked = CallFilter::masked;
    auto made = std::make_unique<CallFilter>(SCMP_ACT_ERRNO(EPERM), architecture);
    CallFilter &filter = *made;
    for (const char *call : HarmlessCalls)
        filter.allow(call);
    // Not MAP_SHARED and MAP_ANONYMOUS together: RLIMIT_DATA does not count such memory.
    for (const scmp_datum_t flags :
        {scmp_datum_t(0), scmp_datum_t(MAP_SHARED), scmp_datum_t(MAP_ANONYMOUS)})
        filter.allow("mmap", masked(3, MAP_SHARED | MAP_ANONYMOUS, flags));
    // Threads, but no processes. clone3 has its flags behind a pointer, where a filter cannot look.
    filter.fail(ENOSYS, "clone3");
    filter.allow("clone", masked(0, NewNamespaces | CLONE_THREAD, CLONE_THREAD));
    filter.allow("tgkill", equals(0, static_cast<scmp_datum_t>(::getpid())));
    for (const scmp_datum_t option : {scmp_datum_t(PR_SET_NAME), scmp_datum_t(PR_GET_NAME),
             scmp_datum_t(PR_GET_DUMPABLE), NameOfMemory})
        filter.allow("prctl", equals(0, option));
    filter.allow("prlimit64", equals(2, 0)); // reading only
    filter.allow("open", masked(1, WritingFlags, 0));
    filter.allow("openat", masked(2, WritingFlags, 0));
    filter.fail(ENOSYS, "openat2");
    allowSockets(filter, network);
    // Not F_SETOWN and F_SETSIG, by which the kernel would send any signal to any process.
    for (const int command : {F_DUPFD, F_DUPFD_CLOEXEC, F_GETFD, F_SETFD, F_GETFL, F_SETFL})
        filter.allow("fcntl", equals(1, static_cast<scmp_datum_t>(command)));
    for (const unsigned long request : {FIONREAD, FIONBIO, FIOCLEX, TCGETS, TIOCGWINSZ})
        filter.allow("ioctl", equals(1, request));
    // A newer C library tries newer calls first, and does without them on ENOSYS.
    filter.failNewer(ENOSYS);
    return made;
}

QStringList confineProcess(const QList<QByteArray> &readable, bool network)
{
    QStringList missing;
    const auto note = [&missing](const std::string &what) {
        if (!what.empty())
            missing.append(QString::fromStdString(what));
    };
    limitResources(MemoryBytes, Descriptors);
    note(forbidNewPrivileges());
    note(confineFiles(readableFiles(readable)));
    note(dropCapabilities());
    note(callsOfPluginProcesses(network)->load());
    return missing;
}
