// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/runtime/LogFile.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr mode_t Mode = 0640;
constexpr std::chrono::seconds TryAgain {1};

} // namespace

LogFile::LogFile(std::string file, std::uint64_t maxSize)
    : m_file(std::move(file))
    , m_maxSize(maxSize)
{
}

Result<void, files::Problem> LogFile::open()
{
    const VeskMutexLock lock(m_mutex);
    return openIt();
}

Result<void, files::Problem> LogFile::openIt()
{
    m_nextTry = Clock::now() + TryAgain;
    auto opened = files::openRegular(m_file, O_WRONLY | O_APPEND | O_CREAT, Mode);
    if (!opened) {
        m_descriptor = files::Descriptor();
        m_reason = opened.error().text;
        return failure(std::move(opened).error());
    }
    m_descriptor = *std::move(opened);
    return {};
}

void LogFile::setMaxSize(std::uint64_t maxSize)
{
    const VeskMutexLock lock(m_mutex);
    m_maxSize = maxSize;
}

void LogFile::write(std::string_view record)
{
    const VeskMutexLock lock(m_mutex);
    if (!m_descriptor.isOpen() && Clock::now() >= m_nextTry)
        static_cast<void>(openIt());
    if (m_maxSize > 0 && m_descriptor.isOpen()) {
        const std::uint64_t before = size();
        if (before > 0 && before + record.size() > m_maxSize)
            rotate();
    }
    if (m_dropped > 0)
        reportDropped();
    if (m_dropped > 0 || !append(record))
        ++m_dropped;
}

void LogFile::rotate()
{
    // Where the name is a symbolic link, the file that it leads to is renamed.
    const std::unique_ptr<char, decltype(&std::free)> real(
        ::realpath(m_file.c_str(), nullptr), &std::free);
    const std::string from = real ? real.get() : m_file;
    if (::rename(from.c_str(), (from + ".1").c_str()) == 0)
        static_cast<void>(openIt());
    else if (::ftruncate(m_descriptor.number(), 0) != 0) // in a folder that cannot be written
        m_descriptor = files::Descriptor();
}

std::uint64_t LogFile::size() const
{
    struct stat status { };
    const bool isKnown = ::fstat(m_descriptor.number(), &status) == 0;
    return isKnown ? static_cast<std::uint64_t>(status.st_size) : 0;
}

bool LogFile::append(std::string_view text)
{
    if (!m_descriptor.isOpen())
        return false;
    ssize_t count = -1;
    do
        count = ::write(m_descriptor.number(), text.data(), text.size());
    while (count < 0 && errno == EINTR);
    if (count == static_cast<ssize_t>(text.size()))
        return true;
    m_isTorn |= count > 0;
    m_reason = files::Problem::ofSystem("it cannot be written").text;
    return false;
}

void LogFile::reportDropped()
{
    if (m_isTorn && !append("\n"))
        return;
    m_isTorn = false;
    const std::string line
        = std::to_string(m_dropped) + " records are missing here: " + m_reason + '\n';
    if (append(line))
        m_dropped = 0;
}
