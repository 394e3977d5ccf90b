// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/runtime/Journal.h"

#include <QRegularExpression>

#include <log4cplus/loglevel.h>
#include <log4cplus/spi/loggingevent.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

constexpr int PatienceMs = 10;

void append(std::string &record, const JournalField &field)
{
    const std::string_view value = std::string_view(field.value).substr(0, Journal::MaxValue);
    record += field.name;
    if (value.find('\n') == std::string_view::npos) {
        record += '=';
    } else {
        // A value of several lines: its length as a little-endian number of 64 bits.
        record += '\n';
        for (unsigned shift = 0; shift < 64; shift += 8)
            record += static_cast<char>(static_cast<std::uint64_t>(value.size()) >> shift & 0xFF);
    }
    record += value;
    record += '\n';
}

std::string encoded(const std::vector<JournalField> &fields)
{
    std::string record = "SYSLOG_IDENTIFIER=" + std::string(program_invocation_short_name) + '\n';
    for (const JournalField &field : fields)
        append(record, field);
    return record;
}

class JournalAppender : public log4cplus::Appender {
public:
    JournalAppender(std::shared_ptr<Journal> journal, std::string (*station)())
        : m_journal(std::move(journal))
        , m_station(station)
    {
    }
    ~JournalAppender() override { destructorImpl(); }

    void close() override { closed = true; }

protected:
    void append(const log4cplus::spi::InternalLoggingEvent &event) override
    {
        std::vector<JournalField> fields {{"MESSAGE", event.getMessage()},
            {"PRIORITY", std::to_string(journalPriority(event.getLogLevel()))},
            {"VESK_LOGGER", event.getLoggerName()}, {"VESK_THREAD", event.getThread()}};
        if (!event.getFile().empty()) {
            fields.push_back({"CODE_FILE", event.getFile()});
            fields.push_back({"CODE_LINE", std::to_string(event.getLine())});
            fields.push_back({"CODE_FUNC", event.getFunction()});
        }
        if (std::string station = m_station(); !station.empty())
            fields.push_back({"VESK_STATION", std::move(station)});
        m_journal->send(fields);
    }

private:
    const std::shared_ptr<Journal> m_journal;
    std::string (*const m_station)();
};

} // namespace

Journal::Journal(std::string socket)
    : m_file(std::move(socket))
{
}

bool Journal::isStandardError()
{
    const char *stream = std::getenv("JOURNAL_STREAM"); // NOLINT(concurrency-mt-unsafe)
    struct stat status { };
    if (!stream || ::fstat(STDERR_FILENO, &status) != 0)
        return false;
    return stream == std::to_string(status.st_dev) + ':' + std::to_string(status.st_ino);
}

void Journal::send(const std::vector<JournalField> &fields)
{
    const VeskMutexLock lock(m_mutex);
    if (m_dropped > 0) {
        const std::string text = std::to_string(m_dropped) + " records are missing here";
        if (write(encoded({{"MESSAGE", text}, {"PRIORITY", "4"}})))
            m_dropped = 0;
    }
    if (m_dropped > 0 || !write(encoded(fields)))
        ++m_dropped;
}

bool Journal::connect()
{
    sockaddr_un address {};
    address.sun_family = AF_UNIX;
    if (m_file.size() >= sizeof address.sun_path)
        return false;
    std::copy(m_file.begin(), m_file.end(), address.sun_path);
    files::Descriptor made(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!made.isOpen()
        || ::connect(made.number(), reinterpret_cast<const sockaddr *>(&address), sizeof address)
            != 0)
        return false;
    m_socket = std::move(made);
    return true;
}

bool Journal::attempt(const std::string &record)
{
    return m_socket.isOpen()
        && ::send(m_socket.number(), record.data(), record.size(), MSG_NOSIGNAL) >= 0;
}

bool Journal::write(const std::string &record)
{
    bool isSent = attempt(record);
    if (!isSent && m_socket.isOpen() && errno == EAGAIN) {
        if (m_isStalled)
            return false;
        pollfd ready {m_socket.number(), POLLOUT, 0};
        ::poll(&ready, 1, PatienceMs);
        isSent = attempt(record);
        m_isStalled = !isSent;
    } else if (!isSent) {
        // Not opened yet, or the journal that had it open has ended.
        isSent = connect() && attempt(record);
    } else {
        m_isStalled = false;
    }
    return isSent;
}

int journalPriority(log4cplus::LogLevel level)
{
    if (level >= log4cplus::FATAL_LOG_LEVEL)
        return 2;
    if (level >= log4cplus::ERROR_LOG_LEVEL)
        return 3;
    if (level >= log4cplus::WARN_LOG_LEVEL)
        return 4;
    return level >= log4cplus::INFO_LOG_LEVEL ? 6 : 7;
}

std::vector<JournalField> journalFieldsOfLine(std::string_view line, const std::string &plugin)
{
    // Of the beginning alone: the text behind it may be long.
    constexpr std::size_t MaxHead = 400;
    static const QRegularExpression head(
        QStringLiteral("\\A[-0-9]{10} [:.0-9]{12} ([A-Z]{4,5}) +([^ ]+) ([^ :]+):([0-9]+) "
                       "\\[([^\\]]*)\\] "));
    std::vector<JournalField> fields {{"VESK_PLUGIN", plugin}};
    // Latin-1 has a character for each byte.
    const QRegularExpressionMatch match = head.match(
        QString::fromLatin1(line.data(), static_cast<int>(std::min(line.size(), MaxHead))));
    if (!match.hasMatch()) {
        fields.push_back({"MESSAGE", std::string(line)});
        fields.push_back({"PRIORITY", "6"});
        return fields;
    }
    const auto part
        = [&match](int number) { return match.captured(number).toLatin1().toStdString(); };
    const log4cplus::LogLevel level = log4cplus::getLogLevelManager().fromString(part(1));
    const auto length = static_cast<std::size_t>(match.capturedLength(0));
    fields.push_back({"MESSAGE", std::string(line.substr(length))});
    fields.push_back({"PRIORITY", std::to_string(journalPriority(level))});
    fields.push_back({"VESK_LOGGER", part(2)});
    fields.push_back({"CODE_FILE", part(3)});
    fields.push_back({"CODE_LINE", part(4)});
    fields.push_back({"VESK_THREAD", part(5)});
    return fields;
}

log4cplus::SharedAppenderPtr makeJournalAppender(
    std::shared_ptr<Journal> journal, std::string (*station)())
{
    return log4cplus::SharedAppenderPtr(new JournalAppender(std::move(journal), station));
}
