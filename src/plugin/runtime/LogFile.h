// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "base/files/Descriptor.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

/// A log file, to which any thread appends whole records. Before it grows beyond its limit it is
/// renamed to FILE.1, in place of the one before it. Mode 0640.
///
/// A record that cannot be written now, on a full disk for instance, is dropped; once the file can
/// be written again, a line says how many were.
class LogFile {
public:
    /// \a maxSize in bytes; 0: no limit.
    LogFile(std::string file, std::uint64_t maxSize);

    /// Opens the file that has the name now, or creates one: for the start, and after a tool like
    /// logrotate has renamed it. Refuses anything but a regular file, without blocking on a FIFO.
    Result<void, files::Problem> open();
    /// For the records to come; \a maxSize as above.
    void setMaxSize(std::uint64_t maxSize);
    /// \a record ends with a line feed.
    void write(std::string_view record);

private:
    using Clock = std::chrono::steady_clock;

    Result<void, files::Problem> openIt() VESK_REQUIRES(m_mutex);
    void rotate() VESK_REQUIRES(m_mutex);
    std::uint64_t size() const VESK_REQUIRES(m_mutex);
    bool append(std::string_view text) VESK_REQUIRES(m_mutex);
    void reportDropped() VESK_REQUIRES(m_mutex);

    const std::string m_file;

    VeskMutex m_mutex;
    std::uint64_t m_maxSize VESK_GUARDED_BY(m_mutex);
    files::Descriptor m_descriptor VESK_GUARDED_BY(m_mutex);
    Clock::time_point m_nextTry VESK_GUARDED_BY(m_mutex); ///< to open a file that cannot be
    std::uint64_t m_dropped VESK_GUARDED_BY(m_mutex) = 0; ///< records since the last good one
    bool m_isTorn VESK_GUARDED_BY(m_mutex) = false; ///< the last line was written in part
    std::string m_reason VESK_GUARDED_BY(m_mutex); ///< of the last failure
};
