// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "base/files/FileLock.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace files {

namespace {

/// A lock of this kind belongs to the process: no child inherits it, and F_GETLK names its holder.
/// Closing any descriptor of the file releases it, so the process must open the file only once.
struct flock wholeFile()
{
    struct flock lock { };
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    return lock;
}

std::string holder(int descriptor)
{
    struct flock lock = wholeFile();
    const bool known
        = ::fcntl(descriptor, F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK && lock.l_pid > 0;
    return known ? "process " + std::to_string(lock.l_pid) : "another process";
}

} // namespace

FileLock::FileLock(std::string file)
    : m_file(std::move(file))
{
}

Result<void, Problem> FileLock::take()
{
    if (isHeld())
        return {};
    auto opened = openRegular(m_file, O_RDWR | O_CREAT | O_NOFOLLOW, 0600);
    if (!opened)
        return failure(Problem {opened.error().error, m_file + ": " + opened.error().text});
    struct flock lock = wholeFile();
    if (::fcntl(opened->number(), F_SETLK, &lock) == 0) {
        m_descriptor = *std::move(opened);
        return {};
    }
    // POSIX allows both for a lock that another process holds.
    if (errno != EAGAIN && errno != EACCES)
        return failure(Problem::ofSystem(m_file + ": it cannot be locked"));
    return failure(Problem {HeldElsewhere, holder(opened->number()) + " holds " + m_file});
}

} // namespace files
