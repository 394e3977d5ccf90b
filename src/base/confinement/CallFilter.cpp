// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "base/confinement/CallFilter.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace {

/// The first number that all architectures have in common. The calls from here on are of Linux 5.1
/// and later; those up to 423 are only on 32-bit architectures, and take 64-bit times.
constexpr int FirstNewer = 403;
/// Enough for decades: about ten are added per year.
constexpr int EndOfNewer = 700;

struct CallOf32Bits {
    const char *call; ///< as 64-bit architectures name it
    const char *instead; ///< what 32-bit ones have in its place, or beside it
};

/// Arguments have the same positions in both, but for the 64-bit ones that take two of them.
constexpr CallOf32Bits CallsOf32Bits[] = {
    // with times of 64 bits
    {"clock_adjtime", "clock_adjtime64"}, {"clock_getres", "clock_getres_time64"},
    {"clock_gettime", "clock_gettime64"}, {"clock_nanosleep", "clock_nanosleep_time64"},
    {"clock_settime", "clock_settime64"}, {"futex", "futex_time64"}, {"ppoll", "ppoll_time64"},
    {"pselect6", "pselect6_time64"}, {"recvmmsg", "recvmmsg_time64"},
    {"rt_sigtimedwait", "rt_sigtimedwait_time64"}, {"timerfd_gettime", "timerfd_gettime64"},
    {"timerfd_settime", "timerfd_settime64"},
    // with sizes and positions in files of 64 bits
    {"fadvise64", "fadvise64_64"}, {"fadvise64", "arm_fadvise64_64"}, {"fcntl", "fcntl64"},
    {"fstat", "fstat64"}, {"fstatfs", "fstatfs64"}, {"lseek", "_llseek"}, {"lstat", "lstat64"},
    {"newfstatat", "fstatat64"}, {"stat", "stat64"}, {"statfs", "statfs64"},
    // with users and groups of 32 bits
    {"getegid", "getegid32"}, {"geteuid", "geteuid32"}, {"getgid", "getgid32"},
    {"getuid", "getuid32"},
    // others
    {"getrlimit", "ugetrlimit"}, {"recvfrom", "recv"}, {"rt_sigreturn", "sigreturn"},
    {"select", "_newselect"}, {"sendto", "send"}};

bool has(std::uint32_t architecture, const char *call)
{
    return ::seccomp_syscall_resolve_name_arch(architecture, call) >= 0;
}

} // namespace

CallFilter::CallFilter(std::uint32_t otherwise, std::uint32_t architecture)
    : m_architecture(
        architecture == std::uint32_t(SCMP_ARCH_NATIVE) ? ::seccomp_arch_native() : architecture)
    , m_seesArgumentsOfSockets(!has(m_architecture, "socketcall"))
    , m_context(::seccomp_init(otherwise), ::seccomp_release)
{
    if (!m_context)
        return;
    if (!isNative()) {
        ::seccomp_arch_add(m_context.get(), m_architecture);
        ::seccomp_arch_remove(m_context.get(), SCMP_ARCH_NATIVE);
    }
    // By default they would kill the thread.
    ::seccomp_attr_set(m_context.get(), SCMP_FLTATR_ACT_BADARCH, SCMP_ACT_ERRNO(ENOSYS));
    // Also for threads that libraries have already started.
    ::seccomp_attr_set(m_context.get(), SCMP_FLTATR_CTL_TSYNC, 1);
    // A binary tree of call numbers in place of a linear list.
    ::seccomp_attr_set(m_context.get(), SCMP_FLTATR_CTL_OPTIMIZE, 2);
}

bool CallFilter::isNative() const
{
    return m_architecture == ::seccomp_arch_native();
}

void CallFilter::addRule(
    std::uint32_t action, const std::string &name, unsigned count, const scmp_arg_cmp *conditions)
{
    // Where there is mmap2, mmap is an old call with its arguments behind a pointer, or none at
    // all.
    if (name == "mmap" && has(m_architecture, "mmap2")) {
        addOne(action, "mmap2", count, conditions);
        return;
    }
    addOne(action, name.c_str(), count, conditions);
    for (const CallOf32Bits &pair : CallsOf32Bits) {
        if (name == pair.call)
            addOne(action, pair.instead, count, conditions);
    }
}

void CallFilter::addOne(
    std::uint32_t action, const char *name, unsigned count, const scmp_arg_cmp *conditions)
{
    const int number = ::seccomp_syscall_resolve_name(name);
    if (number == __NR_SCMP_ERROR)
        return;
    ::seccomp_rule_add_array(m_context.get(), action, number, count, conditions);
    m_named.insert(number);
}

void CallFilter::failNewer(int error)
{
    for (int number = FirstNewer; number < EndOfNewer; ++number) {
        const int known = isNative() ? number : numberHere(number);
        if (known != __NR_SCMP_ERROR && m_named.count(known) == 0)
            ::seccomp_rule_add_array(m_context.get(),
                SCMP_ACT_ERRNO(static_cast<std::uint32_t>(error)), known, 0, nullptr);
    }
}

int CallFilter::numberHere(int number) const
{
    const std::unique_ptr<char, decltype(&std::free)> name(
        ::seccomp_syscall_resolve_num_arch(m_architecture, number), std::free);
    return name ? ::seccomp_syscall_resolve_name(name.get()) : __NR_SCMP_ERROR;
}

std::string CallFilter::load()
{
    const int error = m_context ? -::seccomp_load(m_context.get()) : ENOMEM;
    return error == 0
        ? std::string()
        : std::string("system calls are not confined (seccomp): ") + std::strerror(error);
}

bool CallFilter::write(int descriptor) const
{
    return m_context && ::seccomp_export_bpf(m_context.get(), descriptor) == 0;
}
