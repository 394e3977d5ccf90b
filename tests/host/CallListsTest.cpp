// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "base/confinement/CallFilter.h"
#include "base/confinement/Confining.h"
#include "decoder/DecoderConfinement.h"
#include "host/HostConfinement.h"
#include "plugin/process/Confinement.h"

#include <gmock/gmock.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <ifaddrs.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <memory>
#include <mutex>
#include <netinet/in.h>
#include <optional>
#include <ostream>
#include <poll.h>
#include <sched.h>
#include <string>
#include <sys/epoll.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/timerfd.h>
#include <sys/vfs.h>
#include <thread>
#include <time.h>
#include <unistd.h>
#include <vector>

// The lists of system calls, on each architecture: the filters are evaluated here as the kernel
// does it, so that those of machines other than this one are checked, too. The constants of flags
// in these tests are the same on all of them.
namespace {

struct Architecture {
    const char *name;
    std::uint32_t token; ///< libseccomp's, and the kernel's
    bool is32Bits;
    bool hasSocketcall;
};

constexpr Architecture All[] = {{"amd64", SCMP_ARCH_X86_64, false, false},
    {"i386", SCMP_ARCH_X86, true, true}, {"armhf", SCMP_ARCH_ARM, true, false},
    {"arm64", SCMP_ARCH_AARCH64, false, false}, {"riscv64", SCMP_ARCH_RISCV64, false, false}};

void PrintTo(const Architecture &architecture, std::ostream *out)
{
    *out << architecture.name;
}

/// What becomes of a call: it is made (0), or fails with this error.
using Verdict = int;
constexpr Verdict Made = 0;
/// An action of seccomp that no filter here should have.
constexpr Verdict Unknown = -1;

using Arguments = std::array<std::uint64_t, 6>;

/// A filter as the kernel has it: a program for its classic virtual machine.
class Program {
public:
    explicit Program(const CallFilter &filter)
    {
        std::FILE *const file = std::tmpfile();
        EXPECT_TRUE(file && filter.write(::fileno(file)));
        std::rewind(file);
        sock_filter instruction {};
        while (std::fread(&instruction, sizeof instruction, 1, file) == 1)
            m_instructions.push_back(instruction);
        std::fclose(file);
        EXPECT_FALSE(m_instructions.empty());
        EXPECT_LE(m_instructions.size(), std::size_t(BPF_MAXINSNS));
    }

    /// What becomes of the call with this number on the architecture \a token.
    Verdict operator()(std::uint32_t token, int number, const Arguments &arguments = {}) const
    {
        seccomp_data data {};
        data.nr = number;
        data.arch = token;
        std::copy(arguments.begin(), arguments.end(), data.args);
        const std::optional<std::uint32_t> action = run(data);
        if (!action)
            return Unknown;
        if (*action == SECCOMP_RET_ALLOW)
            return Made;
        return (*action & SECCOMP_RET_ACTION_FULL) == SECCOMP_RET_ERRNO
            ? static_cast<Verdict>(*action & SECCOMP_RET_DATA)
            : Unknown;
    }

private:
    std::optional<std::uint32_t> run(const seccomp_data &data) const
    {
        std::uint32_t value = 0;
        for (std::size_t at = 0; at < m_instructions.size(); ++at) {
            const sock_filter &now = m_instructions[at];
            switch (now.code) {
            case BPF_LD | BPF_W | BPF_ABS:
                if (now.k > sizeof data - sizeof value)
                    return std::nullopt;
                std::memcpy(&value, reinterpret_cast<const char *>(&data) + now.k, sizeof value);
                break;
            case BPF_ALU | BPF_AND | BPF_K:
                value &= now.k;
                break;
            case BPF_JMP | BPF_JA:
                at += now.k;
                break;
            case BPF_JMP | BPF_JEQ | BPF_K:
                at += value == now.k ? now.jt : now.jf;
                break;
            case BPF_JMP | BPF_JGT | BPF_K:
                at += value > now.k ? now.jt : now.jf;
                break;
            case BPF_JMP | BPF_JGE | BPF_K:
                at += value >= now.k ? now.jt : now.jf;
                break;
            case BPF_RET | BPF_K:
                return now.k;
            default:
                return std::nullopt;
            }
        }
        return std::nullopt;
    }

    std::vector<sock_filter> m_instructions;
};

/// A call with what becomes of it, on all architectures that have it.
struct Call {
    const char *name;
    Arguments arguments;
    Verdict verdict;
};

std::uint64_t number(int value)
{
    return static_cast<std::uint32_t>(value);
}

class CallListsTest : public testing::TestWithParam<Architecture> {
protected:
    int numberOf(const char *name) const
    {
        return ::seccomp_syscall_resolve_name_arch(GetParam().token, name);
    }

    void expectThat(const Program &program, const std::vector<Call> &calls) const
    {
        for (const Call &call : calls) {
            if (numberOf(call.name) < 0)
                continue;
            EXPECT_EQ(program(GetParam().token, numberOf(call.name), call.arguments), call.verdict)
                << call.name << ' ' << call.arguments[0] << ' ' << call.arguments[1] << ' '
                << call.arguments[2];
        }
    }

    /// That the architecture has these calls, and that they are made without arguments.
    void expectMade(const Program &program, const std::vector<const char *> &names) const
    {
        for (const char *name : names) {
            EXPECT_GE(numberOf(name), 0) << name;
            EXPECT_EQ(program(GetParam().token, numberOf(name)), Made) << name;
        }
    }

    Program pluginProgram(bool network = true) const
    {
        return Program(*callsOfPluginProcesses(network, GetParam().token));
    }
};

/// By which the C library and Qt do what any process does, beside what is the same everywhere.
std::vector<const char *> callsOfAnyProcess(const Architecture &architecture)
{
    const std::string name = architecture.name;
    std::vector<const char *> calls {"read", "write", "close", "brk", "munmap", "mprotect", "futex",
        "rt_sigaction", "rt_sigprocmask", "rt_sigreturn", "sigaltstack", "exit_group",
        "set_robust_list", "set_tid_address", "rseq", "statx", "readlinkat", "ppoll", "pipe2",
        "getrandom", "prlimit64", "getdents64", "clock_gettime", "clock_nanosleep", "uname",
        "restart_syscall", "sched_getaffinity", "faccessat", "eventfd2", "sendmsg", "recvmsg"};
    if (name == "i386")
        // socketcall's first argument, 0, is none of its calls.
        calls.erase(calls.end() - 2, calls.end());
    if (architecture.is32Bits) {
        for (const char *call : {"mmap2", "_llseek", "fstat64", "stat64", "lstat64", "fstatat64",
                 "fstatfs64", "futex_time64", "clock_gettime64", "clock_getres_time64",
                 "clock_nanosleep_time64", "ppoll_time64", "sigreturn", "getuid32", "geteuid32",
                 "getgid32", "getegid32", "poll", "access", "readlink"})
            calls.push_back(call);
    } else {
        for (const char *call : {"mmap", "lseek", "fstat", "newfstatat", "fstatfs", "getuid"})
            calls.push_back(call);
    }
    if (name == "i386")
        calls.insert(calls.end(), {"set_thread_area", "fadvise64_64", "time"});
    if (name == "armhf")
        calls.insert(calls.end(), {"set_tls", "cacheflush", "arm_fadvise64_64", "send", "recv"});
    if (name == "amd64")
        calls.insert(calls.end(), {"arch_prctl", "fadvise64", "stat", "poll"});
    if (name == "riscv64")
        calls.push_back("riscv_flush_icache");
    return calls;
}

TEST_P(CallListsTest, LeavePluginProcessesWhatTheCLibraryNeeds)
{
    const Program program = pluginProgram();
    std::vector<const char *> calls = callsOfAnyProcess(GetParam());
    for (const char *call : {"epoll_create1", "epoll_ctl", "epoll_pwait", "timerfd_settime",
             "pselect6", "dup3", "statfs", "sched_yield", "getrusage"})
        calls.push_back(call);
    if (GetParam().is32Bits)
        calls.insert(calls.end(),
            {"timerfd_settime64", "timerfd_gettime64", "pselect6_time64", "_newselect",
                "recvmmsg_time64", "rt_sigtimedwait_time64", "statfs64", "ugetrlimit"});
    if (!GetParam().hasSocketcall)
        calls.insert(calls.end(),
            {"connect", "bind", "getsockopt", "setsockopt", "getsockname", "getpeername", "sendto",
                "recvfrom", "sendmmsg", "shutdown"});
    expectMade(program, calls);
}

TEST_P(CallListsTest, LeaveDecodersWhatTheCLibraryNeeds)
{
    expectMade(Program(*callsOfDecoders(GetParam().token)), callsOfAnyProcess(GetParam()));
}

TEST_P(CallListsTest, ConditionsHoldForTheCallsOf32Bits)
{
    const std::uint64_t threadFlags = CLONE_VM | CLONE_FS | CLONE_FILES | CLONE_SIGHAND
        | CLONE_THREAD | CLONE_SYSVSEM | CLONE_SETTLS;
    const std::uint64_t anonymous = MAP_ANONYMOUS;
    const auto reading = number(O_RDONLY | O_CLOEXEC | O_DIRECTORY);
    const auto folder = number(AT_FDCWD);
    std::vector<Call> calls {
        {"mmap2", {0, 4096, PROT_READ, MAP_PRIVATE, number(3), 0}, Made},
        {"mmap2", {0, 4096, PROT_READ, MAP_PRIVATE | anonymous, number(-1), 0}, Made},
        {"mmap2", {0, 4096, PROT_READ, MAP_SHARED | anonymous, number(-1), 0}, EPERM},
        {"fcntl", {0, F_GETFL, 0}, Made},
        {"fcntl64", {0, F_GETFL, 0}, Made},
        {"fcntl", {0, F_SETOWN, 1}, EPERM},
        {"fcntl64", {0, F_SETOWN, 1}, EPERM},
        {"fcntl64", {0, 10 /* F_SETSIG */, SIGKILL}, EPERM},
        {"open", {0, O_RDONLY}, Made},
        {"open", {0, O_WRONLY}, EPERM},
        {"openat", {folder, 0, reading}, Made},
        {"openat", {folder, 0, O_RDWR}, EPERM},
        {"openat", {folder, 0, O_CREAT}, EPERM},
        {"clone", {threadFlags}, Made},
        {"clone", {SIGCHLD}, EPERM},
        {"clone", {threadFlags | CLONE_NEWNET}, EPERM},
        {"prlimit64", {0, 0, 0, 1}, Made},
        {"prlimit64", {0, 0, 1, 0}, EPERM},
        {"ioctl", {0, FIONREAD}, Made},
        {"ioctl", {0, TIOCSTI}, EPERM},
        {"tgkill", {number(::getpid()), 1, 1}, Made},
        {"tgkill", {number(::getpid() + 1), 1, 1}, EPERM},
    };
    // An old call, whose arguments are behind a pointer.
    const bool oldMmap = numberOf("mmap2") >= 0;
    calls.push_back({"mmap", {0, 0, 0, MAP_PRIVATE}, oldMmap ? EPERM : Made});
    calls.push_back({"mmap", {0, 0, 0, MAP_SHARED | anonymous}, EPERM});
    expectThat(pluginProgram(), calls);
}

TEST_P(CallListsTest, ConditionsHoldForTheCallsOf32BitsInDecoders)
{
    expectThat(Program(*callsOfDecoders(GetParam().token)),
        {{"fcntl", {0, F_GETFL, 0}, Made}, {"fcntl64", {0, F_GETFL, 0}, Made},
            {"fcntl", {0, F_SETOWN, 1}, ENOSYS}, {"fcntl64", {0, F_SETOWN, 1}, ENOSYS},
            {"clone", {SIGCHLD}, ENOSYS}, {"openat", {0, 0, O_RDWR}, ENOSYS},
            {"socket", {AF_INET}, ENOSYS}, {"socketpair", {AF_UNIX, SOCK_STREAM}, ENOSYS},
            {"connect", {}, ENOSYS}, {"socketcall", {1}, ENOSYS}, {"socketcall", {3}, ENOSYS},
            {"socketcall", {8}, ENOSYS}, {"ioctl", {0, FIONREAD}, ENOSYS}});
}

TEST_P(CallListsTest, RefusePluginProcessesWhatTheyDoNotNeed)
{
    expectThat(pluginProgram(),
        {{"fork", {}, EPERM}, {"vfork", {}, EPERM}, {"execve", {}, EPERM}, {"execveat", {}, EPERM},
            {"kill", {}, EPERM}, {"tkill", {}, EPERM}, {"ptrace", {}, EPERM},
            {"truncate", {}, EPERM}, {"truncate64", {}, EPERM}, {"ftruncate64", {}, EPERM},
            {"chmod", {}, EPERM}, {"fchmodat", {}, EPERM}, {"chown32", {}, EPERM},
            {"setuid", {}, EPERM}, {"setuid32", {}, EPERM}, {"setgroups32", {}, EPERM},
            {"setrlimit", {}, EPERM}, {"modify_ldt", {}, EPERM}, {"ipc", {}, EPERM},
            {"vm86", {}, EPERM}, {"listen", {}, EPERM}, {"accept4", {}, EPERM},
            {"socketcall", {4 /* listen */}, EPERM}, {"socketcall", {5 /* accept */}, EPERM},
            {"socketcall", {18 /* accept4 */}, EPERM}, {"socketcall", {0}, EPERM},
            {"socketcall", {99}, EPERM}, {"mknod", {}, EPERM}, {"rename", {}, EPERM}});
}

TEST_P(CallListsTest, LetPluginProcessesOpenSocketsToTheInternet)
{
    // Where a pointer hides the family, it makes no difference.
    const Verdict other = GetParam().hasSocketcall ? Made : EPERM;
    const Program program = pluginProgram();
    expectThat(program,
        {{"socket", {AF_INET, SOCK_STREAM}, Made}, {"socket", {AF_INET6, SOCK_DGRAM}, Made},
            {"socket", {AF_NETLINK, SOCK_RAW}, Made}, {"socketcall", {1}, Made},
            {"socketpair", {AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC}, Made}, {"socketcall", {8}, Made},
            {"socketcall", {3 /* connect */}, Made}, {"socketcall", {9 /* send */}, Made},
            {"socketcall", {10 /* recv */}, Made}, {"socketcall", {12 /* recvfrom */}, Made},
            {"socketcall", {17 /* recvmsg */}, Made}});
    expectThat(program,
        {{"socket", {AF_UNIX, SOCK_STREAM}, other}, {"socket", {AF_PACKET, SOCK_RAW}, other},
            {"socketpair", {AF_UNIX, SOCK_DGRAM}, other}});
    expectThat(pluginProgram(false),
        {{"socket", {AF_INET, SOCK_STREAM}, EPERM}, {"socket", {AF_UNIX, SOCK_STREAM}, EPERM},
            {"socketcall", {1}, EPERM}, {"socketpair", {AF_UNIX, SOCK_STREAM}, Made}});
}

TEST_P(CallListsTest, FailNewerCallsAsAnOlderKernelDoes)
{
    const Program program = pluginProgram();
    const std::uint32_t token = GetParam().token;
    expectThat(program, {{"clone3", {}, ENOSYS}, {"openat2", {}, ENOSYS}});
    constexpr int First64BitTimes = 403;
    constexpr int FirstOfAll = 424;
    constexpr int Known = 449; // futex_waitv; libseccomp may know more
    int allowed = 0;
    for (int call = First64BitTimes; call <= Known; ++call) {
        if (call < FirstOfAll && !GetParam().is32Bits)
            continue;
        const std::unique_ptr<char, decltype(&std::free)> name(
            ::seccomp_syscall_resolve_num_arch(token, call), std::free);
        if (!name) // as 415 nowhere, and memfd_secret on armhf
            continue;
        const Verdict verdict = program(token, call);
        EXPECT_THAT(verdict, testing::AnyOf(Made, ENOSYS)) << call;
        allowed += verdict == Made ? 1 : 0;
    }
    // close_range, faccessat2, epoll_pwait2, futex_waitv; eleven that take times
    EXPECT_EQ(allowed, GetParam().is32Bits ? 14 : 4);
    expectThat(program,
        {{"utimensat_time64", {}, ENOSYS}, {"semtimedop_time64", {}, ENOSYS},
            {"clock_settime64", {}, ENOSYS}, {"pidfd_open", {}, ENOSYS},
            {"landlock_create_ruleset", {}, ENOSYS}, {"io_uring_setup", {}, ENOSYS}});
}

TEST_P(CallListsTest, FailCallsOfOtherArchitectures)
{
    for (const Program &program : {pluginProgram(), Program(*callsOfDecoders(GetParam().token)),
             Program(*callsOfHosts(GetParam().token))}) {
        for (const Architecture &other : All) {
            if (other.token == GetParam().token)
                continue;
            const int read = ::seccomp_syscall_resolve_name_arch(other.token, "read");
            EXPECT_EQ(program(other.token, read), ENOSYS) << other.name;
        }
    }
}

TEST_P(CallListsTest, LetHostsPlay)
{
    const Verdict packets = GetParam().hasSocketcall ? Made : EAFNOSUPPORT;
    expectThat(Program(*callsOfHosts(GetParam().token)),
        {{"socket", {AF_UNIX}, Made}, {"socket", {AF_INET}, Made}, {"socket", {AF_NETLINK}, Made},
            {"socketcall", {1}, Made}, {"socketcall", {2}, Made}, {"socketcall", {4}, Made},
            {"execve", {}, Made}, {"clone", {SIGCHLD}, Made}, {"mmap", {}, Made},
            {"mmap2", {}, Made}, {"fcntl64", {}, Made}, {"ipc", {}, Made},
            {"futex_time64", {}, Made}, {"clock_gettime64", {}, Made},
            {"personality", {0xffffffff}, Made}, {"socket", {AF_PACKET}, packets},
            {"landlock_create_ruleset", {}, Made}, {"seccomp", {}, Made}});
}

TEST_P(CallListsTest, RefuseHostsWhatRulesTheMachine)
{
    expectThat(Program(*callsOfHosts(GetParam().token)),
        {
#ifndef __SANITIZE_ADDRESS__
            {"ptrace", {}, EPERM},
#endif
            {"mount", {}, EPERM}, {"umount", {}, EPERM}, {"umount2", {}, EPERM},
            {"clock_settime", {}, EPERM}, {"clock_settime64", {}, EPERM},
            {"clock_adjtime64", {}, EPERM}, {"stime", {}, EPERM}, {"settimeofday", {}, EPERM},
            {"vm86", {}, EPERM}, {"modify_ldt", {}, EPERM}, {"unshare", {}, EPERM},
            {"clone", {CLONE_NEWUSER | SIGCHLD}, EPERM}, {"clone3", {}, ENOSYS},
            {"io_uring_setup", {}, ENOSYS}, {"personality", {0}, EPERM},
            {"ioctl", {0, TIOCSTI}, EPERM}, {"kexec_load", {}, EPERM}, {"bpf", {}, EPERM}});
}

// What follows shows the lists of this architecture at work, with the C library that is here.

/// Something that the C library does for a process. Returns whether it succeeded.
struct Deed {
    const char *name;
    bool (*succeeds)();
};

bool startsThread()
{
    bool ran = false;
    std::thread([&ran] { ran = true; }).join();
    return ran;
}

bool waitsForThread()
{
    std::mutex mutex;
    std::condition_variable never;
    std::unique_lock lock(mutex);
    return never.wait_for(lock, std::chrono::milliseconds(1)) == std::cv_status::timeout;
}

bool readsFile()
{
    const int file = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    char byte = 0;
    return file >= 0 && ::read(file, &byte, 1) == 0 && ::lseek(file, 0, SEEK_SET) == 0
        && (::fcntl(file, F_GETFL) & O_ACCMODE) == O_RDONLY && ::close(file) == 0;
}

bool looksAtFiles()
{
    struct stat status { };
    struct statfs system { };
    return ::stat("/", &status) == 0 && ::lstat("/", &status) == 0 && ::fstat(0, &status) == 0
        && ::access("/", F_OK) == 0 && ::fstatfs(0, &system) == 0;
}

bool listsFolder()
{
    DIR *const folder = ::opendir("/");
    const bool listed = folder && ::readdir(folder);
    return folder && ::closedir(folder) == 0 && listed;
}

bool mapsMemory()
{
    void *const memory
        = ::mmap(nullptr, 1 << 20, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return memory != MAP_FAILED && ::mprotect(memory, 4096, PROT_READ) == 0
        && ::madvise(memory, 1 << 20, MADV_DONTNEED) == 0 && ::munmap(memory, 1 << 20) == 0;
}

bool tellsTime()
{
    timespec now {};
    const timespec brief {0, 1000};
    return ::time(nullptr) > 0 && ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now) == 0
        && ::clock_getres(CLOCK_MONOTONIC, &now) == 0
        && ::clock_nanosleep(CLOCK_MONOTONIC, 0, &brief, nullptr) == 0
        && ::nanosleep(&brief, nullptr) == 0;
}

bool waitsForDescriptors()
{
    int ends[2] = {-1, -1};
    if (::pipe2(ends, O_CLOEXEC) != 0 || ::write(ends[1], "x", 1) != 1)
        return false;
    pollfd polled {ends[0], POLLIN, 0};
    const timespec brief {0, 1000};
    return ::poll(&polled, 1, 1) == 1 && ::ppoll(&polled, 1, &brief, nullptr) == 1;
}

bool handlesSignal()
{
    static volatile std::sig_atomic_t handled = 0;
    struct sigaction action { };
    action.sa_handler = [](int) { handled = 1; };
    return ::sigaction(SIGUSR1, &action, nullptr) == 0 && ::raise(SIGUSR1) == 0 && handled == 1;
}

bool knowsItself()
{
    rlimit limit {};
    return ::getpid() > 0 && ::getuid() == ::geteuid() && ::getgid() == ::getegid()
        && ::getrlimit(RLIMIT_NOFILE, &limit) == 0 && ::sysconf(_SC_NPROCESSORS_ONLN) > 0;
}

bool usesSelectAndTimers()
{
    timeval none {0, 0};
    const timespec never {0, 0};
    const int timer = ::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK);
    const int queue = ::epoll_create1(EPOLL_CLOEXEC);
    const itimerspec times {{0, 0}, {0, 1}};
    epoll_event event {EPOLLIN, {}};
    return ::select(0, nullptr, nullptr, nullptr, &none) == 0
        && ::pselect(0, nullptr, nullptr, nullptr, &never, nullptr) == 0
        && ::timerfd_settime(timer, 0, &times, nullptr) == 0
        && ::epoll_ctl(queue, EPOLL_CTL_ADD, timer, &event) == 0
        && ::epoll_wait(queue, &event, 1, 1000) == 1;
}

bool usesSockets()
{
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    const int socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    auto *const any = reinterpret_cast<sockaddr *>(&address);
    char byte = 0;
    if (::bind(socket, any, size) != 0 || ::getsockname(socket, any, &size) != 0
        || ::connect(socket, any, size) != 0 || ::send(socket, "x", 1, 0) != 1
        || ::recv(socket, &byte, 1, 0) != 1)
        return false;
    ifaddrs *interfaces = nullptr; // by netlink
    if (::getifaddrs(&interfaces) != 0)
        return false;
    ::freeifaddrs(interfaces);
    return byte == 'x';
}

bool startsNoProcess()
{
    return ::fork() == -1;
}

constexpr Deed DeedsOfAll[] = {{"thread", startsThread}, {"wait", waitsForThread},
    {"read", readsFile}, {"look", looksAtFiles}, {"list", listsFolder}, {"memory", mapsMemory},
    {"time", tellsTime}, {"poll", waitsForDescriptors}, {"signal", handlesSignal},
    {"self", knowsItself}, {"no process", startsNoProcess}};
constexpr Deed DeedsOfPlugins[] = {{"timers", usesSelectAndTimers}, {"sockets", usesSockets}};

/// In a process of its own: lets \a filter hold and prints which deeds fail.
template <class Deeds>
[[noreturn]] void doUnder(CallFilter &filter, const Deeds &more)
{
    if (!forbidNewPrivileges().empty() || !filter.load().empty())
        std::_Exit(2);
    int failures = 0;
    const auto attempt = [&failures](const Deed &deed) {
        errno = 0;
        if (deed.succeeds())
            return;
        std::fprintf(stderr, "%s: error %d\n", deed.name, errno);
        ++failures;
    };
    for (const Deed &deed : DeedsOfAll)
        attempt(deed);
    for (const Deed &deed : more)
        attempt(deed);
    std::_Exit(failures == 0 ? 0 : 1);
}

TEST(CallListsDeathTest, TheCLibraryWorksInPluginProcesses)
{
    EXPECT_EXIT(
        doUnder(*callsOfPluginProcesses(true), DeedsOfPlugins), testing::ExitedWithCode(0), "^$");
}

TEST(CallListsDeathTest, TheCLibraryWorksInDecoders)
{
    constexpr std::array<Deed, 0> None {};
    EXPECT_EXIT(doUnder(*callsOfDecoders(), None), testing::ExitedWithCode(0), "^$");
}

INSTANTIATE_TEST_SUITE_P(Architectures, CallListsTest, testing::ValuesIn(All),
    [](const auto &instance) { return std::string(instance.param.name); });

} // namespace
