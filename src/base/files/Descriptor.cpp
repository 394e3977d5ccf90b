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

Failure<Problem> noFile()
{
    return failure(Problem {0, "this is no regular file"});
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

Result<void, Problem> Descriptor::close()
{
    // Linux releases the number whatever close() returns, so it must not be called again.
    if (::close(std::exchange(m_number, -1)) != 0 && errno != EINTR)
        return failure(Problem::ofSystem("it cannot be closed"));
    return {};
}

Result<void, Problem> checkRegular(const std::string &file)
{
    struct stat status { };
    if (::stat(file.c_str(), &status) != 0) {
        if (errno == ENOENT)
            return {};
        return failure(Problem::ofSystem("it cannot be looked at"));
    }
    if (!S_ISREG(status.st_mode))
        return noFile();
    return {};
}

Result<Descriptor, Problem> openRegular(const std::string &file, int flags, mode_t mode)
{
    // Merely opening a device can have effects, so it is checked before; what replaces the file
    // between the two calls is found by fstat().
    if (auto checked = checkRegular(file); !checked)
        return failure(std::move(checked).error());
    Descriptor descriptor(::open(file.c_str(), flags | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, mode));
    if (!descriptor.isOpen())
        return failure(Problem::ofSystem("it cannot be opened"));
    struct stat status { };
    if (::fstat(descriptor.number(), &status) != 0 || !S_ISREG(status.st_mode))
        return noFile();
    return descriptor;
}

} // namespace files
