#include "worker/Confinement.h"

#include <linux/capability.h>
#include <linux/landlock.h>
#include <seccomp.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

/// What a plug-in may use of memory that is its own: screens of the largest answers take a tenth.
constexpr rlim_t MemoryBytes = 512UL * 1024 * 1024;
constexpr rlim_t Descriptors = 256;

QString problem(const char *what, int error)
{
    return QLatin1String(what) + QStringLiteral(": ")
        + QString::fromLocal8Bit(std::strerror(error));
}

void limit(int resource, rlim_t most)
{
    const rlimit limits {most, most};
    ::setrlimit(static_cast<__rlimit_resource_t>(resource), &limits);
}

void limitResources()
{
    limit(RLIMIT_CORE, 0);
    std::signal(SIGXFSZ, SIG_IGN);
    limit(RLIMIT_FSIZE, 0);
    limit(RLIMIT_NOFILE, Descriptors);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    limit(RLIMIT_DATA, MemoryBytes); // sanitizers map terabytes of it
#endif
}

/// What the administrator's account may do beyond what a file's or process's owner may.
QString dropCapabilities()
{
    __user_cap_header_struct header {_LINUX_CAPABILITY_VERSION_3, 0};
    const __user_cap_data_struct none[_LINUX_CAPABILITY_U32S_3] = {};
    return ::syscall(SYS_capset, &header, none) == 0 ? QString()
                                                     : problem("capabilities are kept", errno);
}

// Files: Landlock (Linux 5.13 and later). The C library has no wrappers.

constexpr quint64 ReadRights
    = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR | LANDLOCK_ACCESS_FS_EXECUTE;
constexpr quint64 FileRights = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_EXECUTE;

/// What there is to be forbidden in the given version of the interface.
quint64 allRights(long version)
{
    const int count = version >= 5 ? 16 : version >= 3 ? 15 : version == 2 ? 14 : 13;
    return (quint64(1) << count) - 1;
}

const QList<QByteArray> &alwaysReadable()
{
    static const QList<QByteArray> files {"/lib", "/lib64", "/usr/lib", "/usr/lib64",
        "/usr/local/lib", // the loader
        "/etc/ld.so.cache", "/etc/ld.so.preload", // the same
        "/etc/hosts", "/etc/resolv.conf", "/etc/nsswitch.conf", "/etc/host.conf", "/etc/gai.conf",
        "/etc/services", "/run/systemd/resolve", // names
        "/etc/ssl", "/usr/share/ca-certificates",
        "/usr/local/share/ca-certificates", // certificates
        "/etc/localtime", "/usr/share/zoneinfo", // dates in the log
        "/dev/null", "/dev/urandom", "/proc/self", "/proc/sys/vm", "/sys/devices/system/cpu"};
    return files;
}

void allow(int ruleset, const QByteArray &file)
{
    const int descriptor = ::open(file.constData(), O_PATH | O_CLOEXEC);
    if (descriptor < 0)
        return; // not on this machine
    struct stat status { };
    const bool isFolder = ::fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode);
    landlock_path_beneath_attr beneath {};
    beneath.allowed_access = isFolder ? ReadRights : FileRights;
    beneath.parent_fd = descriptor;
    ::syscall(SYS_landlock_add_rule, ruleset, LANDLOCK_RULE_PATH_BENEATH, &beneath, 0);
    ::close(descriptor);
}

QString confineFiles(const QList<QByteArray> &readable)
{
    const long version
        = ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
    if (version < 1)
        return problem("files are not confined (Landlock)", errno);
    landlock_ruleset_attr attributes {};
    attributes.handled_access_fs = allRights(version);
    const int ruleset = static_cast<int>(
        ::syscall(SYS_landlock_create_ruleset, &attributes, sizeof attributes, 0));
    if (ruleset < 0)
        return problem("files are not confined (Landlock)", errno);
    for (const QByteArray &file : alwaysReadable())
        allow(ruleset, file);
    for (const QByteArray &file : readable)
        allow(ruleset, file);
    const bool confined = ::syscall(SYS_landlock_restrict_self, ruleset, 0) == 0;
    const int error = errno;
    ::close(ruleset);
    return confined ? QString() : problem("files are not confined (Landlock)", error);
}

// System calls: seccomp.

constexpr scmp_datum_t NewNamespaces = CLONE_NEWCGROUP | CLONE_NEWIPC | CLONE_NEWNET | CLONE_NEWNS
    | CLONE_NEWPID | CLONE_NEWUSER | CLONE_NEWUTS;
constexpr scmp_datum_t TemporaryFile = O_TMPFILE & ~O_DIRECTORY;
constexpr scmp_datum_t WritingFlags
    = O_WRONLY | O_RDWR | O_CREAT | O_TRUNC | O_APPEND | TemporaryFile;
constexpr scmp_datum_t TypeOfSocket = ~(SOCK_CLOEXEC | SOCK_NONBLOCK) & 0xffffffff;
constexpr scmp_datum_t NameOfMemory = 0x53564d41; // PR_SET_VMA

/// Calls that do no harm with whatever arguments.
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
    // descriptors, and files that Landlock lets it have
    "access", "close", "close_range", "dup", "dup2", "dup3", "epoll_create", "epoll_create1",
    "epoll_ctl", "epoll_pwait", "epoll_pwait2", "epoll_wait", "eventfd", "eventfd2", "faccessat",
    "faccessat2", "fadvise64", "fstat", "fstatfs", "getcwd", "getdents64", "lseek", "lstat",
    "newfstatat", "pipe", "pipe2", "poll", "ppoll", "pread64", "preadv", "pselect6", "read",
    "readlink", "readlinkat", "readv", "select", "stat", "statfs", "statx", "write", "writev",
    // exchanges
    "bind", "connect", "getpeername", "getsockname", "getsockopt", "recvfrom", "recvmmsg",
    "recvmsg", "sendmmsg", "sendmsg", "sendto", "setsockopt", "shutdown",
    // the machine
    "getegid", "geteuid", "getgid", "getrandom", "getrlimit", "getrusage", "getuid", "sysinfo",
    "uname"};

/// That an argument, counted from 0, is \a value.
scmp_arg_cmp equals(unsigned argument, scmp_datum_t value)
{
    return {argument, SCMP_CMP_EQ, value, 0};
}

/// That an argument's bits in \a mask are those of \a value.
scmp_arg_cmp masked(unsigned argument, scmp_datum_t mask, scmp_datum_t value)
{
    return {argument, SCMP_CMP_MASKED_EQ, mask, value};
}

class CallFilter {
public:
    CallFilter()
        : m_context(::seccomp_init(SCMP_ACT_ERRNO(EPERM)), ::seccomp_release)
    {
    }

    explicit operator bool() const { return m_context != nullptr; }

    template <class... Conditions>
    void allow(const char *name, Conditions... conditions)
    {
        const int number = ::seccomp_syscall_resolve_name(name);
        if (number == __NR_SCMP_ERROR)
            return; // not on this architecture
        const std::array<scmp_arg_cmp, sizeof...(conditions)> all {conditions...};
        ::seccomp_rule_add_array(
            m_context.get(), SCMP_ACT_ALLOW, number, static_cast<unsigned>(all.size()), all.data());
    }

    /// The C library does without when a call is not there at all.
    void pretendMissing(const char *name)
    {
        const int number = ::seccomp_syscall_resolve_name(name);
        if (number != __NR_SCMP_ERROR)
            ::seccomp_rule_add_array(m_context.get(), SCMP_ACT_ERRNO(ENOSYS), number, 0, nullptr);
    }

    int load() { return -::seccomp_load(m_context.get()); }

private:
    const std::unique_ptr<void, decltype(&::seccomp_release)> m_context;
};

QString confineCalls()
{
    CallFilter filter;
    if (!filter)
        return QStringLiteral("system calls are not confined");
    for (const char *call : HarmlessCalls)
        filter.allow(call);
    // Memory that several could share is what no limit counts.
    for (const scmp_datum_t flags :
        {scmp_datum_t(0), scmp_datum_t(MAP_SHARED), scmp_datum_t(MAP_ANONYMOUS)})
        filter.allow("mmap", masked(3, MAP_SHARED | MAP_ANONYMOUS, flags));
    // Threads, but no processes; clone3 hides what it is for behind a pointer.
    filter.pretendMissing("clone3");
    filter.allow("clone", masked(0, NewNamespaces | CLONE_THREAD, CLONE_THREAD));
    filter.allow("tgkill", equals(0, static_cast<scmp_datum_t>(::getpid())));
    for (const scmp_datum_t option : {scmp_datum_t(PR_SET_NAME), scmp_datum_t(PR_GET_NAME),
             scmp_datum_t(PR_GET_DUMPABLE), NameOfMemory})
        filter.allow("prctl", equals(0, option));
    filter.allow("prlimit64", equals(2, 0)); // asking only
    filter.allow("open", masked(1, WritingFlags, 0));
    filter.allow("openat", masked(2, WritingFlags, 0));
    filter.pretendMissing("openat2");
    for (const int family : {AF_INET, AF_INET6, AF_NETLINK})
        filter.allow("socket", equals(0, static_cast<scmp_datum_t>(family)));
    // Only a stream's end cannot be turned to others' sockets.
    filter.allow("socketpair", equals(0, AF_UNIX), masked(1, TypeOfSocket, SOCK_STREAM));
    // Not F_SETOWN and F_SETSIG, which have the kernel send any signal to any process.
    for (const int command : {F_DUPFD, F_DUPFD_CLOEXEC, F_GETFD, F_SETFD, F_GETFL, F_SETFL})
        filter.allow("fcntl", equals(1, static_cast<scmp_datum_t>(command)));
    for (const unsigned long request : {FIONREAD, FIONBIO, FIOCLEX, TCGETS, TIOCGWINSZ})
        filter.allow("ioctl", equals(1, request));
    const int error = filter.load();
    return error == 0 ? QString() : problem("system calls are not confined (seccomp)", error);
}

} // namespace

QStringList confineProcess(const QList<QByteArray> &readable)
{
    QStringList missing;
    const auto note = [&missing](const QString &what) {
        if (!what.isEmpty())
            missing.append(what);
    };
    limitResources();
    if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0)
        note(problem("new privileges are not ruled out", errno));
    note(confineFiles(readable));
    note(dropCapabilities());
    note(confineCalls());
    return missing;
}
