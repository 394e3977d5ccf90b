// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "base/files/Descriptor.h"

#include <log4cplus/appender.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// One field of a journal's record, such as MESSAGE.
struct JournalField {
    const char *name;
    std::string value;
};

/// systemd's journal, to which any thread sends whole records, in its native protocol
/// (systemd.journal-fields(7)). libsystemd's own functions are not used, because they wait as long
/// as the journal takes no records. This waits 10 ms at most, and only once: what it does not take
/// then is dropped, and counted in a record as soon as it takes records again.
class Journal {
public:
    /// A longer value is cut off.
    static constexpr std::size_t MaxValue = 48 * 1024;

    explicit Journal(std::string socket = "/run/systemd/journal/socket");

    /// Whether what this process prints to standard error goes to the journal anyway.
    static bool isStandardError();

    void send(const std::vector<JournalField> &fields);

private:
    bool attempt(const std::string &record) VESK_REQUIRES(m_mutex);
    bool write(const std::string &record) VESK_REQUIRES(m_mutex);
    bool connect() VESK_REQUIRES(m_mutex);

    const std::string m_file;

    VeskMutex m_mutex;
    files::Descriptor m_socket VESK_GUARDED_BY(m_mutex);
    bool m_isStalled VESK_GUARDED_BY(m_mutex) = false; ///< it did not take the last record in time
    std::uint64_t m_dropped VESK_GUARDED_BY(m_mutex) = 0; ///< records since the last good one
};

/// Which of syslog's priorities records of \a level have: 2 (critical) to 7 (debug).
int journalPriority(log4cplus::LogLevel level);

/// The fields of \a line, a line that the plug-in process of \a plugin has printed: those of a log
/// record if it looks like one ("TIME LEVEL LOGGER FILE:LINE [THREAD] TEXT"), else the line alone.
std::vector<JournalField> journalFieldsOfLine(std::string_view line, const std::string &plugin);

/// Sends each record to \a journal, with the station that \a station returns, if it is not empty.
log4cplus::SharedAppenderPtr makeJournalAppender(
    std::shared_ptr<Journal> journal, std::string (*station)());
