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
    return path && checkRegular(file) ? path.get() : file;
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

Result<std::string, Problem> readAll(int descriptor, std::size_t maxSize)
{
    std::string bytes;
    char buffer[65536];
    for (;;) {
        const ssize_t count = ::read(descriptor, buffer, sizeof buffer);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return failure(Problem::ofSystem("it cannot be read"));
        if (count == 0)
            return bytes;
        bytes.append(buffer, static_cast<std::size_t>(count));
        if (bytes.size() > maxSize)
            return failure(Problem {0, "the file is too large"});
    }
}

Result<void, Problem> writeAll(int descriptor, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return failure(Problem::ofSystem("it cannot be written"));
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return {};
}

Result<void, Problem> sync(int descriptor)
{
    while (::fsync(descriptor) != 0) {
        if (errno != EINTR)
            return failure(Problem::ofSystem("it cannot be brought to the disk"));
    }
    return {};
}

/// A new file's name is on the disk only once its folder is synchronised.
Result<void, Problem> syncFolder(const std::string &folder)
{
    const Descriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!descriptor.isOpen()) {
        // A folder may be writable but not readable; then it cannot be synchronised either.
        if (errno == EACCES)
            return {};
        return failure(Problem::ofSystem("its folder cannot be opened"));
    }
    auto synced = sync(descriptor.number());
    // Some file systems do not support it for folders.
    if (!synced && (synced.error().error == EINVAL || synced.error().error == ENOTSUP))
        return {};
    return synced;
}

/// A new file with these bytes, on the disk.
Result<void, Problem> writeNew(const std::string &file, std::string_view bytes)
{
    if (::unlink(file.c_str()) != 0 && errno != ENOENT)
        return failure(Problem::ofSystem(file + " is in the way"));
    Descriptor out(
        ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, OwnersFile));
    if (!out.isOpen())
        return failure(Problem::ofSystem("it cannot be made"));
    if (auto written = writeAll(out.number(), bytes); !written)
        return written;
    if (auto synced = sync(out.number()); !synced)
        return synced;
    return out.close();
}

Result<KeptFile::Content, Problem> contentOf(const std::string &file, std::size_t maxSize)
{
    if (!exists(file))
        return std::nullopt;
    auto opened = openRegular(file, O_RDONLY | O_NOFOLLOW);
    if (!opened)
        return failure(std::move(opened).error());
    auto bytes = readAll(opened->number(), maxSize);
    if (!bytes)
        return failure(std::move(bytes).error());
    if (bytes->empty())
        return failure(Problem {0, "the file is empty"});
    return *std::move(bytes);
}

} // namespace

KeptFile::KeptFile(const std::string &file, std::size_t maxSize)
    : m_file(behindLinks(file))
    , m_maxSize(maxSize)
{
}

Result<KeptFile::Content, Problem> KeptFile::read() const
{
    return contentOf(m_file, m_maxSize);
}

Result<KeptFile::Content, Problem> KeptFile::readLastGood() const
{
    return contentOf(m_file + ".last-good", m_maxSize);
}

Result<void, Problem> KeptFile::write(std::string_view bytes)
{
    return replace(m_file, bytes);
}

Result<void, Problem> KeptFile::writeLastGood(std::string_view bytes)
{
    return replace(m_file + ".last-good", bytes);
}

Result<void, Problem> KeptFile::replace(const std::string &file, std::string_view bytes) const
{
    if (bytes.size() > m_maxSize)
        return failure(Problem {EFBIG, "it would be too large"});
    const std::string fresh = m_file + ".new";
    auto replaced = writeNew(fresh, bytes);
    if (replaced && ::rename(fresh.c_str(), file.c_str()) != 0)
        replaced = failure(Problem::ofSystem("it cannot be replaced"));
    if (!replaced) {
        ::unlink(fresh.c_str());
        return replaced;
    }
    return syncFolder(folderOf(file));
}

Result<std::string, Problem> KeptFile::setAside()
{
    std::string name = m_file + ".damaged";
    for (int number = 2; exists(name) && number <= MaxDamaged; ++number)
        name = m_file + ".damaged." + std::to_string(number);
    if (::rename(m_file.c_str(), name.c_str()) != 0)
        return failure(Problem::ofSystem("it cannot be moved to " + name));
    if (auto synced = syncFolder(folderOf(m_file)); !synced)
        return failure(std::move(synced).error());
    return name;
}

void KeptFile::removeLeftovers()
{
    ::unlink((m_file + ".new").c_str());
}

Result<void, Problem> KeptFile::makeFolder(const std::string &folder)
{
    struct stat status { };
    if (::stat(folder.c_str(), &status) == 0) {
        if (S_ISDIR(status.st_mode))
            return {};
        return failure(Problem {ENOTDIR, folder + " is no folder"});
    }
    const std::string above = folderOf(folder);
    if (above != folder && above != ".") {
        if (auto made = makeFolder(above); !made)
            return made;
    }
    if (::mkdir(folder.c_str(), OwnersFolder) != 0 && errno != EEXIST)
        return failure(Problem::ofSystem("there is no folder " + folder));
    return syncFolder(above);
}

} // namespace files
