// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "base/confinement/CallFilter.h"

#include <cerrno>
#include <cstring>

namespace {

/// pidfd_send_signal, the first one of Linux 5.1.
constexpr int FirstNewer = 424;
/// Enough for decades: about ten are added per year.
constexpr int EndOfNewer = 700;

} // namespace

CallFilter::CallFilter(std::uint32_t otherwise)
    : m_context(::seccomp_init(otherwise), ::seccomp_release)
{
    if (!m_context)
        return;
    // By default they would kill the thread.
    ::seccomp_attr_set(m_context.get(), SCMP_FLTATR_ACT_BADARCH, SCMP_ACT_ERRNO(ENOSYS));
    // Also for threads that libraries have already started.
    ::seccomp_attr_set(m_context.get(), SCMP_FLTATR_CTL_TSYNC, 1);
    // A binary tree of call numbers in place of a linear list.
    ::seccomp_attr_set(m_context.get(), SCMP_FLTATR_CTL_OPTIMIZE, 2);
}

void CallFilter::addRule(
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
        if (m_named.count(number) == 0)
            ::seccomp_rule_add_array(m_context.get(),
                SCMP_ACT_ERRNO(static_cast<std::uint32_t>(error)), number, 0, nullptr);
    }
}

std::string CallFilter::load()
{
    const int error = m_context ? -::seccomp_load(m_context.get()) : ENOMEM;
    return error == 0
        ? std::string()
        : std::string("system calls are not confined (seccomp): ") + std::strerror(error);
}
