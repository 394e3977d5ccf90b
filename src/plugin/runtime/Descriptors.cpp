// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/runtime/Descriptors.h"

#include <fcntl.h>
#include <linux/close_range.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

void keepDescriptorsFromPrograms(int first)
{
    if (::syscall(SYS_close_range, first, ~0U, CLOSE_RANGE_CLOEXEC) == 0)
        return;
    // Linux before 5.11.
    rlimit limit {};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    for (int descriptor = first; static_cast<rlim_t>(descriptor) < limit.rlim_cur; ++descriptor) {
        const int flags = ::fcntl(descriptor, F_GETFD);
        if (flags >= 0)
            ::fcntl(descriptor, F_SETFD, flags | FD_CLOEXEC);
    }
}
