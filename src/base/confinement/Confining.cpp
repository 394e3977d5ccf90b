// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "base/confinement/Confining.h"

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <linux/capability.h>
#include <linux/landlock.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

std::string problem(const char *what, int error)
{
    return std::string(what) + ": " + std::strerror(error);
}

// The C library has no wrappers for Landlock.

constexpr std::uint64_t FileRights = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_EXECUTE;
constexpr std::uint64_t FolderRights = FileRights | LANDLOCK_ACCESS_FS_READ_DIR;

/// The kinds of access that the given version of the interface can forbid.
std::uint64_t allRights(long version)
{
    const int count = version >= 5 ? 16 : version >= 3 ? 15 : version == 2 ? 14 : 13;
    return (std::uint64_t(1) << count) - 1;
}

void allow(int ruleset, const std::string &file)
{
    const int descriptor = ::open(file.c_str(), O_PATH | O_CLOEXEC);
    if (descriptor < 0)
        return; // not on this machine
    struct stat status { };
    const bool isFolder = ::fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode);
    landlock_path_beneath_attr beneath {};
    beneath.allowed_access = isFolder ? FolderRights : FileRights;
    beneath.parent_fd = descriptor;
    ::syscall(SYS_landlock_add_rule, ruleset, LANDLOCK_RULE_PATH_BENEATH, &beneath, 0);
    ::close(descriptor);
}

} // namespace

std::string forbidNewPrivileges()
{
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0
        ? std::string()
        : problem("new privileges are not ruled out", errno);
}

std::string dropCapabilities()
{
    __user_cap_header_struct header {_LINUX_CAPABILITY_VERSION_3, 0};
    const __user_cap_data_struct none[_LINUX_CAPABILITY_U32S_3] = {};
    return ::syscall(SYS_capset, &header, none) == 0 ? std::string()
                                                     : problem("capabilities are kept", errno);
}

void limitResource(int resource, unsigned long long most)
{
    const rlimit limits {static_cast<rlim_t>(most), static_cast<rlim_t>(most)};
#ifdef __GLIBC__ // where it is an enumeration
    ::setrlimit(static_cast<__rlimit_resource_t>(resource), &limits);
#else
    ::setrlimit(resource, &limits);
#endif
}

void limitResources(unsigned long long memoryBytes, unsigned long long descriptors)
{
    limitResource(RLIMIT_CORE, 0);
    std::signal(SIGXFSZ, SIG_IGN); // a write beyond the limit then fails with EFBIG
    limitResource(RLIMIT_FSIZE, 0);
    limitResource(RLIMIT_NOFILE, descriptors);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    limitResource(RLIMIT_DATA, memoryBytes);
#else
    static_cast<void>(memoryBytes);
#endif
}

std::string confineFiles(const std::vector<std::string> &readable)
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
    for (const std::string &file : readable)
        allow(ruleset, file);
    const bool confined = ::syscall(SYS_landlock_restrict_self, ruleset, 0) == 0;
    const int error = errno;
    ::close(ruleset);
    return confined ? std::string() : problem("files are not confined (Landlock)", error);
}

std::vector<std::string> loaderFiles()
{
    return {"/lib", "/lib64", "/usr/lib", "/usr/lib64", "/usr/local/lib", "/etc/ld.so.cache",
        "/etc/ld.so.preload", "/dev/null", "/dev/urandom", "/proc/self", "/proc/sys/vm",
        "/sys/devices/system/cpu"};
}
