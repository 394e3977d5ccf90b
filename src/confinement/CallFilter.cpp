#include "confinement/CallFilter.h"

#include <cstring>

CallFilter::CallFilter(std::uint32_t otherwise)
    : m_context(::seccomp_init(otherwise), ::seccomp_release)
{
}

void CallFilter::addRule(
    std::uint32_t action, const char *name, unsigned count, const scmp_arg_cmp *conditions)
{
    const int number = ::seccomp_syscall_resolve_name(name);
    if (number != __NR_SCMP_ERROR)
        ::seccomp_rule_add_array(m_context.get(), action, number, count, conditions);
}

std::string CallFilter::load()
{
    const int error = m_context ? -::seccomp_load(m_context.get()) : ENOMEM;
    return error == 0
        ? std::string()
        : std::string("system calls are not confined (seccomp): ") + std::strerror(error);
}
