// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "decoder/DecoderConfinement.h"

#include "base/confinement/Confining.h"

#include <cerrno>
#include <fcntl.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace {

/// Limit of private memory: ten times what a stream needs, and little compared to what a malicious
/// header can ask for.
constexpr unsigned long long MemoryBytes = 192ULL * 1024 * 1024;
constexpr unsigned long long Descriptors = 64;

constexpr scmp_datum_t NewNamespaces = CLONE_NEWCGROUP | CLONE_NEWIPC | CLONE_NEWNET | CLONE_NEWNS
    | CLONE_NEWPID | CLONE_NEWUSER | CLONE_NEWUTS;
constexpr scmp_datum_t WritingFlags = O_WRONLY | O_RDWR | O_CREAT | O_TRUNC | O_APPEND;
constexpr scmp_datum_t NameOfMemory = 0x53564d41; // PR_SET_VMA

/// Harmless with any arguments. A name stands for its 32-bit forms, too (CallFilter).
constexpr const char *HarmlessCalls[] = {
    // memory
    "brk", "madvise", "mmap", "mprotect", "mremap", "munmap",
    // threads and signals
    "arch_prctl", "exit", "exit_group", "futex", "get_robust_list", "getcpu", "getpid", "gettid",
    "membarrier", "restart_syscall", "rseq", "rt_sigaction", "rt_sigprocmask", "rt_sigreturn",
    "sched_get_priority_max", "sched_get_priority_min", "sched_getaffinity", "sched_getparam",
    "sched_getscheduler", "sched_yield", "set_robust_list", "set_tid_address", "sigaltstack",
    // time
    "clock_getres", "clock_gettime", "clock_nanosleep", "gettimeofday", "nanosleep", "time",
    "times",
    // open descriptors, and the files that Landlock permits
    "access", "close", "dup", "eventfd2", "faccessat", "faccessat2", "fadvise64", "fstat",
    "fstatfs", "getcwd", "getdents64", "lseek", "lstat", "newfstatat", "pipe2", "poll", "ppoll",
    "pread64", "read", "readlink", "readlinkat", "readv", "stat", "statx", "write", "writev",
    // the socket to the host
    "getsockopt", "recvfrom", "recvmsg", "sendmsg", "sendto",
    // the processor's own: the thread's area, and caches after code was written
    "cacheflush", "get_thread_area", "riscv_flush_icache", "set_thread_area", "set_tls",
    // information about the process and the system
    "getegid", "geteuid", "getgid", "getrandom", "getrusage", "getuid", "sysinfo", "uname"};

} // namespace

std::unique_ptr<CallFilter> callsOfDecoders(std::uint32_t architecture)
{
    const auto equals = CallFilter::equals;
    const auto masked = CallFilter::masked;
    // ENOSYS, as from a kernel without the call: libraries fall back to another one or do without.
    auto made = std::make_unique<CallFilter>(SCMP_ACT_ERRNO(ENOSYS), architecture);
    CallFilter &filter = *made;
    for (const char *call : HarmlessCalls)
        filter.allow(call);
    // Threads only: CLONE_THREAD set, no new namespaces. Without an allowed clone3, whose flags a
    // filter cannot read, libc falls back to clone.
    filter.allow("clone", masked(0, NewNamespaces | CLONE_THREAD, CLONE_THREAD));
    // Signals to its own threads only.
    filter.allow("tgkill", equals(0, static_cast<scmp_datum_t>(::getpid())));
    for (const scmp_datum_t option : {scmp_datum_t(PR_SET_NAME), scmp_datum_t(PR_GET_NAME),
             scmp_datum_t(PR_GET_DUMPABLE), NameOfMemory})
        filter.allow("prctl", equals(0, option));
    filter.allow("prlimit64", equals(2, 0)); // without new limits: reading only
    // Reading only.
    filter.allow("open", masked(1, WritingFlags, 0));
    filter.allow("openat", masked(2, WritingFlags, 0));
    for (const int command : {F_GETFD, F_SETFD, F_GETFL, F_SETFL})
        filter.allow("fcntl", equals(1, static_cast<scmp_datum_t>(command)));
    return made;
}

void confineDecoder()
{
    limitResources(MemoryBytes, Descriptors);
    forbidNewPrivileges();
    confineFiles(loaderFiles());
    dropCapabilities();
    callsOfDecoders()->load();
}
