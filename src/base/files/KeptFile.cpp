// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "base/files/KeptFile.h"

#include "base/files/Descriptor.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace files {

namespace {

constexpr mode_t OwnersFile = 0600;
constexpr mode_t OwnersFolder = 0700;

/// Where a link to a file leads, so that the file there is replaced and not the link.
std::string behindLinks(const std::string &file)
{
    const std::unique_ptr<char, decltype(&std::free)> path(
        ::realpath(file.c_str(), nullptr), &std::free);
    return path && !refusalToOpen(file) ? path.get() : file;
}

std::string folderOf(const std::string &file)
{
    const std::size_t slash = file.rfind('/');
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? "/" : file.substr(0, slash);
}

bool exists(const std::string &file)
{
    struct stat status { };
    return ::lstat(file.c_str(), &status) == 0;
}

Problem readAll(int descriptor, std::size_t maxSize, std::string &bytes)
{
    char buffer[65536];
    for (;;) {
        const ssize_t count = ::read(descriptor, buffer, sizeof buffer);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return Problem::ofSystem("it cannot be read");
        if (count == 0)
            return {};
        bytes.append(buffer, static_cast<std::size_t>(count));
        if (bytes.size() > maxSize)
            return {0, "the file is too large"};
    }
}

Problem writeAll(int descriptor, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return Problem::ofSystem("it cannot be written");
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return {};
}

Problem sync(int descriptor)
{
    while (::fsync(descriptor) != 0) {
        if (errno != EINTR)
            return Problem::ofSystem("it cannot be brought to the disk");
    }
    return {};
}

/// The name of a new file is on the disk only once its folder is.
Problem syncFolder(const std::string &folder)
{
    const Descriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // One may write into a folder that one may not read, but not ask for more.
    if (!descriptor.isOpen())
        return errno == EACCES ? Problem() : Problem::ofSystem("its folder cannot be opened");
    const Problem problem = sync(descriptor.number());
    // Some file systems keep names by themselves and cannot be asked to.
    return problem.error == EINVAL || problem.error == ENOTSUP ? Problem() : problem;
}

/// A new file with these bytes, on the disk.
Problem writeNew(const std::string &file, std::string_view bytes)
{
    if (::unlink(file.c_str()) != 0 && errno != ENOENT)
        return Problem::ofSystem(file + " is in the way");
    Descriptor out(
        ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, OwnersFile));
    if (!out.isOpen())
        return Problem::ofSystem("it cannot be made");
    Problem problem = writeAll(out.number(), bytes);
    if (!problem)
        problem = sync(out.number());
    const Problem closing = out.close();
    return problem ? problem : closing;
}

KeptFile::Content contentOf(const std::string &file, std::size_t maxSize)
{
    using Content = KeptFile::Content;
    if (!exists(file))
        return {};
    Content content;
    Descriptor descriptor;
    Problem problem = openRegular(file, O_RDONLY | O_NOFOLLOW, 0, descriptor);
    if (!problem)
        problem = readAll(descriptor.number(), maxSize, content.bytes);
    if (!problem && content.bytes.empty())
        problem.text = "the file is empty";
    if (problem)
        return {Content::Damaged, {}, problem.text};
    content.state = Content::Read;
    return content;
}

} // namespace

KeptFile::KeptFile(const std::string &file, std::size_t maxSize)
    : m_file(behindLinks(file))
    , m_maxSize(maxSize)
{
}

KeptFile::Content KeptFile::read() const
{
    return contentOf(m_file, m_maxSize);
}

KeptFile::Content KeptFile::readLastGood() const
{
    return contentOf(m_file + ".last-good", m_maxSize);
}

Problem KeptFile::write(std::string_view bytes)
{
    return replace(m_file, bytes);
}

Problem KeptFile::writeLastGood(std::string_view bytes)
{
    return replace(m_file + ".last-good", bytes);
}

Problem KeptFile::replace(const std::string &file, std::string_view bytes) const
{
    if (bytes.size() > m_maxSize)
        return {EFBIG, "it would be too large"};
    const std::string fresh = m_file + ".new";
    Problem problem = writeNew(fresh, bytes);
    if (!problem && ::rename(fresh.c_str(), file.c_str()) != 0)
        problem = Problem::ofSystem("it cannot be replaced");
    if (problem) {
        ::unlink(fresh.c_str());
        return problem;
    }
    return syncFolder(folderOf(file));
}

Problem KeptFile::setAside(std::string &name)
{
    name = m_file + ".damaged";
    for (int number = 2; exists(name) && number <= MaxDamaged; ++number)
        name = m_file + ".damaged." + std::to_string(number);
    if (::rename(m_file.c_str(), name.c_str()) != 0)
        return Problem::ofSystem("it cannot be moved to " + name);
    return syncFolder(folderOf(m_file));
}

void KeptFile::removeLeftovers()
{
    ::unlink((m_file + ".new").c_str());
}

Problem KeptFile::makeFolder(const std::string &folder)
{
    struct stat status { };
    if (::stat(folder.c_str(), &status) == 0) {
        if (S_ISDIR(status.st_mode))
            return {};
        return {ENOTDIR, folder + " is no folder"};
    }
    const std::string above = folderOf(folder);
    if (above != folder && above != ".") {
        if (Problem problem = makeFolder(above))
            return problem;
    }
    if (::mkdir(folder.c_str(), OwnersFolder) != 0 && errno != EEXIST)
        return Problem::ofSystem("there is no folder " + folder);
    return syncFolder(above);
}

} // namespace files
