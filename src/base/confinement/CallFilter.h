// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <seccomp.h>

#include <array>
#include <memory>
#include <set>
#include <string>

/// A seccomp filter of system calls. Calls of foreign architectures (of 32-bit programs, say) fail.
/// Build it while the process has one thread; load() is irrevocable, and inherited by later threads
/// and executed programs. Without Qt.
class CallFilter {
public:
    /// \a otherwise is the action for calls without a rule: SCMP_ACT_ALLOW or SCMP_ACT_ERRNO(...).
    explicit CallFilter(std::uint32_t otherwise);

    /// Whether rules can be added and loaded.
    explicit operator bool() const { return m_context != nullptr; }

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
    /// to come. They have the same numbers on all architectures.
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

private:
    template <class... Conditions>
    void add(std::uint32_t action, const char *name, Conditions... conditions)
    {
        const std::array<scmp_arg_cmp, sizeof...(conditions)> all {conditions...};
        addRule(action, name, static_cast<unsigned>(all.size()), all.data());
    }
    void addRule(
        std::uint32_t action, const char *name, unsigned count, const scmp_arg_cmp *conditions);

    const std::unique_ptr<void, decltype(&::seccomp_release)> m_context;
    std::set<int> m_named;
};
