// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/HostConfinement.h"

#include "base/confinement/Confining.h"

#include <cerrno>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/socket.h>

namespace {

/// Refused whatever their arguments are.
constexpr const char *RefusedCalls[] = {
// other processes; the leak checker of a sanitized build looks at its own from another process
#ifndef __SANITIZE_ADDRESS__
    "ptrace",
#endif
    "kcmp", "migrate_pages", "move_pages", "pidfd_getfd", "process_madvise", "process_mrelease",
    "process_vm_readv", "process_vm_writev",
    // the kernel
    "bpf", "create_module", "delete_module", "finit_module", "get_kernel_syms", "init_module",
    "kexec_file_load", "kexec_load", "lookup_dcookie", "nfsservctl", "perf_event_open",
    "query_module", "syslog", "userfaultfd",
    // file systems
    "chroot", "fanotify_init", "fsconfig", "fsmount", "fsopen", "fspick", "mount", "mount_setattr",
    "move_mount", "open_by_handle_at", "open_tree", "pivot_root", "quotactl", "quotactl_fd",
    "swapoff", "swapon", "umount", "umount2",
    // namespaces
    "setns", "unshare",
    // keys of the system and of its users
    "add_key", "keyctl", "request_key",
    // the machine
    "acct", "adjtimex", "clock_adjtime", "clock_settime", "ioperm", "iopl", "reboot",
    "setdomainname", "sethostname", "settimeofday", "stime", "vhangup",
    // what old programs had
    "_sysctl", "modify_ldt", "sysfs", "uselib", "ustat", "vm86", "vm86old"};

/// Calls for which libraries have a fallback. io_uring performs operations that no filter sees, and
/// the arguments of clone3 are behind a pointer, which a filter cannot follow.
constexpr const char *MissingCalls[]
    = {"clone3", "io_uring_enter", "io_uring_register", "io_uring_setup"};

constexpr int Namespaces[] = {CLONE_NEWCGROUP, CLONE_NEWIPC, CLONE_NEWNET, CLONE_NEWNS,
    CLONE_NEWPID, CLONE_NEWUSER, CLONE_NEWUTS};

/// The kernel looks at the lower half of these arguments only.
constexpr scmp_datum_t LowerHalf = 0xffffffff;
/// Makes personality() return the present one and change nothing.
constexpr scmp_datum_t NoPersonality = 0xffffffff;

} // namespace

std::unique_ptr<CallFilter> callsOfHosts(std::uint32_t architecture)
{
    auto made = std::make_unique<CallFilter>(SCMP_ACT_ALLOW, architecture);
    CallFilter &filter = *made;
    for (const char *call : RefusedCalls)
        filter.fail(EPERM, call);
    for (const char *call : MissingCalls)
        filter.fail(ENOSYS, call);
    for (const int kind : Namespaces) {
        const auto flag = static_cast<scmp_datum_t>(kind);
        filter.fail(EPERM, "clone", CallFilter::masked(0, flag, flag));
    }
    filter.fail(EPERM, "personality", CallFilter::isNot(0, NoPersonality));
    // Of the families of sockets those that are for this machine and the internet.
    if (filter.seesArgumentsOfSockets())
        filter.fail(EAFNOSUPPORT, "socket", CallFilter::isAbove(0, AF_NETLINK));
    // Pushing input into a terminal, as if its user had typed it.
    for (const scmp_datum_t request : {scmp_datum_t(TIOCSTI), scmp_datum_t(TIOCLINUX)})
        filter.fail(EPERM, "ioctl", CallFilter::masked(1, LowerHalf, request));
    return made;
}

QStringList confineHost()
{
    QStringList missing;
    limitResource(RLIMIT_CORE, 0);
    for (const std::string &what : {forbidNewPrivileges(), callsOfHosts()->load()}) {
        if (!what.empty())
            missing.append(QString::fromStdString(what));
    }
    return missing;
}
