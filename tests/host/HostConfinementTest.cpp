// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/HostConfinement.h"

#include "base/confinement/CallFilter.h"
#include "base/confinement/Confining.h"
#include "tests/host/HostProcess.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <functional>
#include <linux/netlink.h>
#include <netinet/in.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/personality.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/timerfd.h>
#include <sys/uio.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

/// Something that a host does, or should not be able to do. Returns -1 on failure, like a system
/// call.
struct Deed {
    const char *name;
    std::function<long()> call;
    int error; ///< that it fails with; 0 when it succeeds
};

template <class... Arguments>
std::function<long()> call(Arguments... arguments)
{
    return [=] { return ::syscall(arguments...); };
}

/// In a process of its own: confines itself and prints which of \a deeds had another outcome.
[[noreturn]] void attempt(const std::vector<Deed> &deeds)
{
    if (!confineHost().isEmpty())
        std::_Exit(2);
    int failures = 0;
    for (const Deed &deed : deeds) {
        errno = 0;
        const long result = deed.call();
        const int error = result == -1 ? errno : 0;
        if (error == deed.error)
            continue;
        std::fprintf(stderr, "%s: error %d, not %d\n", deed.name, error, deed.error);
        ++failures;
    }
    std::_Exit(failures == 0 ? 0 : 1);
}

void expectThat(const std::vector<Deed> &deeds)
{
    EXPECT_EXIT(attempt(deeds), testing::ExitedWithCode(0), "^$");
}

long listenAnywhere()
{
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    return ::bind(socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0
        ? ::listen(socket, 1)
        : -1;
}

long runProgram()
{
    return std::system("/bin/true") == 0 ? 0 : -1;
}

long startThread()
{
    long result = -1;
    std::thread([&result] { result = 0; }).join();
    return result;
}

/// As sound systems do for their buffers.
long shareMemory()
{
    const int memory = ::memfd_create("sound", MFD_CLOEXEC | MFD_ALLOW_SEALING);
    if (memory < 0 || ::ftruncate(memory, 4096) != 0 || ::fcntl(memory, F_ADD_SEALS, F_SEAL_SHRINK))
        return -1;
    return ::mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_SHARED, memory, 0) == MAP_FAILED ? -1
                                                                                              : 0;
}

long changeFile()
{
    char name[] = "/tmp/vesk-confinement-XXXXXX";
    const int file = ::mkstemp(name);
    const std::string other = std::string(name) + ".new";
    return file >= 0 && ::write(file, "x", 1) == 1 && ::fsync(file) == 0
            && ::rename(name, other.c_str()) == 0
        ? ::unlink(other.c_str())
        : -1;
}

/// What plug-ins' processes and decoders do at their start.
long confineFurther()
{
    if (!confineFiles({"/usr"}).empty()
        && ::syscall(SYS_landlock_create_ruleset, nullptr, 0, 1) > 0)
        return -1;
    if (!dropCapabilities().empty())
        return -1;
    CallFilter filter(SCMP_ACT_ALLOW);
    filter.fail(EXDEV, "getppid");
    return filter.load().empty() && ::syscall(SYS_getppid) == -1 && errno == EXDEV ? 0 : -1;
}

TEST(HostConfinementDeathTest, AllowsTheCallsThatPlayingNeeds)
{
    const auto socketOf = [](int family, int type) { return call(SYS_socket, family, type, 0); };
    expectThat({{"program", &runProgram, 0}, {"thread", &startThread, 0},
        {"listen", &listenAnywhere, 0}, {"file", &changeFile, 0}, {"memory", &shareMemory, 0},
        {"unix socket", socketOf(AF_UNIX, SOCK_STREAM), 0},
        {"internet 6 or none",
            [] {
                const int socket = ::socket(AF_INET6, SOCK_STREAM, 0);
                return socket >= 0 || errno == EAFNOSUPPORT ? 0L : -1L;
            },
            0},
        {"netlink", call(SYS_socket, AF_NETLINK, SOCK_RAW, NETLINK_ROUTE), 0},
        {"timer", [] { return long(::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC)); }, 0},
        {"own priority",
            [] {
                const sched_param parameters {};
                return long(::sched_setscheduler(0, SCHED_BATCH, &parameters));
            },
            0},
        {"personality as it is", call(SYS_personality, 0xffffffffUL), 0},
        {"descriptors", call(SYS_close_range, 1000U, ~0U, 0U), 0},
        {"further confinement", &confineFurther, 0}});
}

TEST(HostConfinementDeathTest, RefusesCallsThatControlOtherProcesses)
{
    expectThat({
#ifndef __SANITIZE_ADDRESS__
        {"ptrace", call(SYS_ptrace, PTRACE_TRACEME, 0, 0, 0), EPERM},
#endif
        {"process_vm_readv", call(SYS_process_vm_readv, ::getppid(), 0, 0, 0, 0, 0), EPERM},
        {"pidfd_getfd", call(SYS_pidfd_getfd, -1, 0, 0), EPERM},
        {"setns", call(SYS_setns, -1, 0), EPERM}, {"unshare", call(SYS_unshare, 0), EPERM},
        {"clone", call(SYS_clone, CLONE_NEWUSER | SIGCHLD, 0, 0, 0, 0), EPERM},
        {"clone with other bits", call(SYS_clone, CLONE_NEWNET | CLONE_FS | SIGCHLD, 0, 0, 0, 0),
            EPERM},
        {"clone3", call(SYS_clone3, nullptr, 0), ENOSYS}});
}

TEST(HostConfinementDeathTest, RefusesCallsThatControlTheMachine)
{
    expectThat({{"mount", call(SYS_mount, "none", "/nowhere", "tmpfs", 0, nullptr), EPERM},
        {"umount", call(SYS_umount2, "/nowhere", 0), EPERM},
        {"fsopen", call(SYS_fsopen, nullptr, 0), EPERM},
        {"pivot_root", call(SYS_pivot_root, "/nowhere", "/nowhere"), EPERM},
        {"chroot", call(SYS_chroot, "/"), EPERM},
        {"open_by_handle_at", call(SYS_open_by_handle_at, -1, nullptr, 0), EPERM},
        {"bpf", call(SYS_bpf, 0, nullptr, 0), EPERM},
        {"perf_event_open", call(SYS_perf_event_open, nullptr, 0, -1, -1, 0), EPERM},
        {"userfaultfd", call(SYS_userfaultfd, -1), EPERM},
        {"io_uring", call(SYS_io_uring_setup, 0, nullptr), ENOSYS},
        {"keyctl", call(SYS_keyctl, 0, 0, 0, 0, 0), EPERM},
        {"add_key", call(SYS_add_key, nullptr, nullptr, nullptr, 0, 0), EPERM},
        {"module", call(SYS_finit_module, -1, "", 0), EPERM},
        {"kexec", call(SYS_kexec_load, 0, 0, nullptr, -1), EPERM},
        {"reboot", call(SYS_reboot, 0, 0, 0, nullptr), EPERM},
        {"swapon", call(SYS_swapon, "/nowhere", 0), EPERM},
        {"acct", call(SYS_acct, "/nowhere"), EPERM},
        {"clock", call(SYS_clock_settime, CLOCK_MONOTONIC, nullptr), EPERM},
        {"hostname", call(SYS_sethostname, "x", -1), EPERM},
        {"personality", call(SYS_personality, ADDR_NO_RANDOMIZE), EPERM},
#ifndef __i386__ // whose C library needs socketcall, with its arguments behind a pointer
        {"packet socket", call(SYS_socket, AF_PACKET, SOCK_RAW, 0), EAFNOSUPPORT},
        {"kernel's ciphers", call(SYS_socket, AF_ALG, SOCK_SEQPACKET, 0), EAFNOSUPPORT},
#endif
        {"typing", call(SYS_ioctl, -1, TIOCSTI, "x"), EPERM},
#ifdef __LP64__
        {"typing, upper half", call(SYS_ioctl, -1, 0x100000000UL | TIOCSTI, "x"), EPERM},
#endif
        {"terminal", call(SYS_ioctl, -1, TCGETS, nullptr), EBADF}});
}

#ifdef __x86_64__
TEST(HostConfinementDeathTest, RefusesCallsOfForeignArchitectures)
{
    expectThat({{"x32", call(0x40000000L + SYS_getpid), ENOSYS},
        {"32 bits",
            [] {
                long result = 20; // getpid
                asm volatile("int $0x80" : "+a"(result) : : "memory", "r8", "r9", "r10", "r11");
                errno = static_cast<int>(-result);
                return result < 0 ? -1L : 0L;
            },
            ENOSYS}});
}
#endif

TEST(HostConfinementDeathTest, IsInheritedByPrograms)
{
    expectThat({{"a shell",
        [] {
            return std::system("grep -q 'NoNewPrivs:.1' /proc/self/status "
                               "&& grep -q 'Seccomp:.2' /proc/self/status "
                               "&& test \"$(ulimit -H -c)\" = 0")
                    == 0
                ? 0L
                : -1L;
        },
        0}});
}

QByteArray contentOf(const QString &file)
{
    QFile source(file);
    return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray();
}

TEST(HostConfinementTest, HoldsForAllThreadsOfTheHost)
{
    HostProcess host(QStringLiteral(HOST_PROGRAM),
        {QStringLiteral("--plugin"), QStringLiteral(TEST_PLUGINS "/libvesk_cb_good.so"),
            QStringLiteral("--audio"), QStringLiteral("null")});
    ASSERT_TRUE(host.isReady()) << host.errors().toStdString();
    const QString folder = QStringLiteral("/proc/%1/").arg(host.id());
    const QDir tasks(folder + QStringLiteral("task"));
    const QStringList threads = tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    EXPECT_GT(threads.size(), 1);
    for (const QString &thread : threads) {
        const QByteArray status = contentOf(tasks.filePath(thread + QStringLiteral("/status")));
        EXPECT_TRUE(status.contains("\nNoNewPrivs:\t1\n")) << status.toStdString();
        EXPECT_TRUE(status.contains("\nSeccomp:\t2\n")) << "a filter";
    }
    EXPECT_THAT(contentOf(folder + QStringLiteral("limits")).toStdString(),
        testing::ContainsRegex("Max core file size +0 +0 "));
}

} // namespace
