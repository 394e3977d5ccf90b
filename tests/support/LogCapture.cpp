// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/support/LogCapture.h"

#include "api/core/Mutex.h"

#include <log4cplus/appender.h>
#include <log4cplus/logger.h>
#include <log4cplus/loglevel.h>
#include <log4cplus/spi/loggingevent.h>

#include <vector>

namespace {

struct Record {
    QString level;
    QString text;
    QString source;
};

} // namespace

class LogCapture::Appender : public log4cplus::Appender {
public:
    ~Appender() override { destructorImpl(); }

    void close() override { closed = true; }

    std::vector<Record> records() const
    {
        const VeskMutexLock lock(m_mutex);
        return m_records;
    }

    void clear()
    {
        const VeskMutexLock lock(m_mutex);
        m_records.clear();
    }

protected:
    void append(const log4cplus::spi::InternalLoggingEvent &event) override
    {
        const std::string &level = log4cplus::getLogLevelManager().toString(event.getLogLevel());
        const Record record {QString::fromStdString(level),
            QString::fromStdString(event.getMessage()),
            QString::fromStdString(event.getFile() + ':' + event.getFunction())};
        const VeskMutexLock lock(m_mutex);
        m_records.push_back(record);
    }

private:
    mutable VeskMutex m_mutex;
    std::vector<Record> m_records VESK_GUARDED_BY(m_mutex);
};

struct LogCapture::Private {
    log4cplus::Logger logger;
    log4cplus::LogLevel formerLevel;
    Appender *appender;
    log4cplus::SharedAppenderPtr owner;
};

LogCapture::LogCapture(const char *loggerName)
    : d(new Private)
{
    d->logger
        = *loggerName ? log4cplus::Logger::getInstance(loggerName) : log4cplus::Logger::getRoot();
    d->formerLevel = d->logger.getLogLevel();
    d->appender = new Appender;
    d->owner = log4cplus::SharedAppenderPtr(d->appender);
    d->logger.addAppender(d->owner);
    d->logger.setLogLevel(log4cplus::ALL_LOG_LEVEL);
}

LogCapture::~LogCapture()
{
    d->logger.setLogLevel(d->formerLevel);
    d->logger.removeAppender(d->owner);
}

QStringList LogCapture::lines() const
{
    QStringList lines;
    for (const Record &record : d->appender->records())
        lines.append(record.level + QLatin1Char(' ') + record.text);
    return lines;
}

bool LogCapture::contains(const QString &line) const
{
    return lines().contains(line);
}

QStringList LogCapture::lines(const QString &level) const
{
    QStringList lines;
    for (const Record &record : d->appender->records()) {
        if (record.level == level)
            lines.append(record.text);
    }
    return lines;
}

QStringList LogCapture::sources() const
{
    QStringList sources;
    for (const Record &record : d->appender->records())
        sources.append(record.source);
    return sources;
}

void LogCapture::clear()
{
    d->appender->clear();
}
