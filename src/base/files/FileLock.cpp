// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "base/files/FileLock.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace files {

namespace {

/// A lock of this kind belongs to the process: no child inherits it, and the system names its
/// holder. It goes with any descriptor of the file that the process closes, so there is but one.
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

FileLock::Outcome FileLock::take()
{
    if (isHeld())
        return Outcome::Taken;
    Descriptor descriptor;
    m_problem = openRegular(m_file, O_RDWR | O_CREAT | O_NOFOLLOW, 0600, descriptor);
    if (m_problem) {
        m_problem.text = m_file + ": " + m_problem.text;
        return Outcome::Failed;
    }
    struct flock lock = wholeFile();
    if (::fcntl(descriptor.number(), F_SETLK, &lock) == 0) {
        m_descriptor = std::move(descriptor);
        return Outcome::Taken;
    }
    if (errno != EAGAIN && errno != EACCES) {
        m_problem = Problem::ofSystem(m_file + ": it cannot be locked");
        return Outcome::Failed;
    }
    m_problem = {EAGAIN, holder(descriptor.number()) + " holds " + m_file};
    return Outcome::Elsewhere;
}

} // namespace files
