// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "base/files/Descriptor.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace files {

namespace {

Problem noFile()
{
    return {0, "this is no regular file"};
}

} // namespace

Problem Problem::ofSystem(const std::string &what)
{
    const int error = errno;
    return {error, what + ": " + std::system_category().message(error)};
}

Descriptor::~Descriptor()
{
    if (isOpen())
        ::close(m_number);
}

Problem Descriptor::close()
{
    // Linux lets go of the number whatever close() says.
    if (::close(std::exchange(m_number, -1)) != 0 && errno != EINTR)
        return Problem::ofSystem("it cannot be closed");
    return {};
}

Problem refusalToOpen(const std::string &file)
{
    struct stat status { };
    if (::stat(file.c_str(), &status) != 0)
        return errno == ENOENT ? Problem() : Problem::ofSystem("it cannot be looked at");
    return S_ISREG(status.st_mode) ? Problem() : noFile();
}

Problem openRegular(const std::string &file, int flags, mode_t mode, Descriptor &opened)
{
    // Opening alone can do something to a device; what takes the file's place now is seen after.
    if (Problem problem = refusalToOpen(file))
        return problem;
    Descriptor descriptor(::open(file.c_str(), flags | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, mode));
    if (!descriptor.isOpen())
        return Problem::ofSystem("it cannot be opened");
    struct stat status { };
    if (::fstat(descriptor.number(), &status) != 0 || !S_ISREG(status.st_mode))
        return noFile();
    opened = std::move(descriptor);
    return {};
}

} // namespace files
