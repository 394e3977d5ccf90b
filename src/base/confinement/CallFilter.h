// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <seccomp.h>

#include <array>
#include <cstdint>
#include <memory>
#include <set>
#include <string>

/// A seccomp filter of system calls, for one architecture. Calls of all others (of 32-bit programs
/// in a 64-bit process, say) fail with ENOSYS. Build it while the process has one thread; load() is
/// irrevocable, and inherited by later threads and executed programs. Without Qt.
///
/// A rule names a call as 64-bit architectures do; it also holds for what 32-bit ones have in its
/// place, with the same conditions: "fcntl" for fcntl64, "futex" for futex_time64, "mmap" for
/// mmap2. A rule for a call that the architecture does not have has no effect.
class CallFilter {
public:
    /// \a otherwise is the action for calls without a rule: SCMP_ACT_ALLOW or SCMP_ACT_ERRNO(...).
    /// Filters of other architectures than this process's own can only be exported.
    explicit CallFilter(std::uint32_t otherwise, std::uint32_t architecture = SCMP_ARCH_NATIVE);

    /// Whether rules can be added and loaded.
    explicit operator bool() const { return m_context != nullptr; }

    /// Whether rules can have conditions on the arguments of calls for sockets. Where the C library
    /// may make them all through socketcall (i386), they are behind a pointer, which a filter
    /// cannot follow: a rule for "socket" with a condition would hold for all sockets or none.
    bool seesArgumentsOfSockets() const { return m_seesArgumentsOfSockets; }

    /// Allows the call of that name, if this architecture has it, where all \a conditions hold.
    template <class... Conditions>
    void allow(const char *name, Conditions... conditions)
    {
        add(SCMP_ACT_ALLOW, name, conditions...);
    }
    /// Makes the call fail with \a error. After ENOSYS the C library uses an older call.
    template <class... Conditions>
    void fail(int error, const char *name, Conditions... conditions)
    {
        add(SCMP_ACT_ERRNO(static_cast<std::uint32_t>(error)), name, conditions...);
    }

    /// Makes calls of Linux 5.1 and later without a rule fail with \a error, also those of kernels
    /// to come. They have the same numbers on all architectures. For another architecture than this
    /// process's own: only those that libseccomp knows.
    void failNewer(int error);

    /// That an argument, counted from 0, is \a value.
    static scmp_arg_cmp equals(unsigned argument, scmp_datum_t value)
    {
        return {argument, SCMP_CMP_EQ, value, 0};
    }
    static scmp_arg_cmp isNot(unsigned argument, scmp_datum_t value)
    {
        return {argument, SCMP_CMP_NE, value, 0};
    }
    static scmp_arg_cmp isAbove(unsigned argument, scmp_datum_t value)
    {
        return {argument, SCMP_CMP_GT, value, 0};
    }
    /// That an argument's bits in \a mask are those of \a value.
    static scmp_arg_cmp masked(unsigned argument, scmp_datum_t mask, scmp_datum_t value)
    {
        return {argument, SCMP_CMP_MASKED_EQ, mask, value};
    }

    /// Returns what is wrong; empty when the list holds from now on.
    std::string load();

    /// Writes the filter as the kernel takes it, an array of sock_filter, to \a descriptor. Returns
    /// whether that succeeded.
    bool write(int descriptor) const;

private:
    template <class... Conditions>
    void add(std::uint32_t action, const char *name, Conditions... conditions)
    {
        const std::array<scmp_arg_cmp, sizeof...(conditions)> all {conditions...};
        addRule(action, name, static_cast<unsigned>(all.size()), all.data());
    }
    void addRule(std::uint32_t action, const std::string &name, unsigned count,
        const scmp_arg_cmp *conditions);
    void addOne(
        std::uint32_t action, const char *name, unsigned count, const scmp_arg_cmp *conditions);
    bool isNative() const;
    /// By which number libseccomp takes the call that has \a number on the filter's architecture;
    /// __NR_SCMP_ERROR if it does not know the call.
    int numberHere(int number) const;

    const std::uint32_t m_architecture;
    const bool m_seesArgumentsOfSockets;
    const std::unique_ptr<void, decltype(&::seccomp_release)> m_context;
    /// libseccomp's numbers of the calls that have a rule.
    std::set<int> m_named;
};
