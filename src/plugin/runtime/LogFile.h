// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/files/Descriptor.h"

#include <chrono>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>

/// The file that a log goes to: appended to, a record at a time and whole, by any thread. Never
/// longer than its limit: what it held is then in FILE.1, which is replaced. For its owner to write
/// and its group to read.
///
/// What cannot be written now, on a full disk for instance, is dropped without waiting, and the
/// number of such records is told once something can be written again.
class LogFile {
public:
    /// \a maxSize in bytes; 0: no limit.
    LogFile(std::string file, std::uint64_t maxSize);

    /// Opens what is now at the file's name, which may have been renamed, and makes one there if
    /// there is none. Refuses what is no regular file, without waiting for it.
    Result<void, files::Problem> open();
    /// \a record ends with a line feed.
    void write(std::string_view record);

private:
    using Clock = std::chrono::steady_clock;

    Result<void, files::Problem> openIt();
    void rotate();
    /// The bytes that the file holds.
    std::uint64_t size() const;
    bool append(std::string_view text);
    void tellOfLost();

    const std::string m_file;
    const std::uint64_t m_maxSize;

    std::mutex m_mutex;
    /// Guarded by m_mutex.
    files::Descriptor m_descriptor;
    Clock::time_point m_nextTry;
    std::uint64_t m_lost = 0;
    bool m_isTorn = false; ///< the last line has no end
    std::string m_reason;
};
