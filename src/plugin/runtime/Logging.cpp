// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/runtime/Logging.h"

#include "api/core/Mutex.h"
#include "api/core/log.h"
#include "plugin/runtime/Journal.h"
#include "plugin/runtime/LogFile.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QThread>

#include <log4cplus/appender.h>
#include <log4cplus/config.hxx>
#include <log4cplus/consoleappender.h>
#include <log4cplus/layout.h>
#include <log4cplus/loglevel.h>

#include <cstdio>
#include <iostream>

VESK_LOGGER("Qt")

namespace {

constexpr char Pattern[] = "%D{%Y-%m-%d %H:%M:%S.%q} %-5p %c %F:%L [%t] %m%n";
/// For lines that were formatted by another process.
constexpr char LinePattern[] = "%m%n";

log4cplus::Logger linesOfPlugins()
{
    static const log4cplus::Logger logger
        = log4cplus::Logger::getInstance(LOG4CPLUS_TEXT("LinesOfPlugins"));
    return logger;
}

/// Null while the log goes to standard error.
std::shared_ptr<LogFile> &logFile()
{
    static std::shared_ptr<LogFile> file;
    return file;
}

/// Null while the log goes elsewhere.
std::shared_ptr<Journal> &journal()
{
    static std::shared_ptr<Journal> sink;
    return sink;
}

struct Station {
    VeskMutex mutex;
    std::string title VESK_GUARDED_BY(mutex);
};

Station &station()
{
    static Station present;
    return present;
}

std::string stationTitle()
{
    const VeskMutexLock lock(station().mutex);
    return station().title;
}

/// log4cplus's own file appenders block on a FIFO, leave the mode to the umask, and cannot share
/// one file, as the two layouts here have to.
class LogFileAppender : public log4cplus::Appender {
public:
    explicit LogFileAppender(std::shared_ptr<LogFile> file)
        : m_file(std::move(file))
    {
    }
    ~LogFileAppender() override { destructorImpl(); }

    void close() override { closed = true; }

protected:
    void append(const log4cplus::spi::InternalLoggingEvent &event) override
    {
        m_file->write(formatEvent(event));
    }

private:
    const std::shared_ptr<LogFile> m_file;
};

log4cplus::SharedAppenderPtr makeAppender(const char *pattern)
{
    log4cplus::SharedAppenderPtr appender;
    if (journal())
        return makeJournalAppender(journal(), &stationTitle);
    if (logFile())
        appender = new LogFileAppender(logFile());
    else
        appender = new log4cplus::ConsoleAppender(true, true);
    appender->setLayout(std::make_unique<log4cplus::PatternLayout>(pattern));
    return appender;
}

log4cplus::LogLevel logLevelOf(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return log4cplus::DEBUG_LOG_LEVEL;
    case QtInfoMsg:
        return log4cplus::INFO_LOG_LEVEL;
    case QtWarningMsg:
        return log4cplus::WARN_LOG_LEVEL;
    case QtCriticalMsg:
        return log4cplus::ERROR_LOG_LEVEL;
    case QtFatalMsg:
        break;
    }
    return log4cplus::FATAL_LOG_LEVEL; // after which Qt itself aborts
}

void logQtMessage(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    const log4cplus::LogLevel level = logLevelOf(type);
    if (!veskLogger().isEnabledFor(level))
        return;
    veskWriteLog(veskLogger(), level, message.toStdString(), context.file ? context.file : "",
        context.line, context.function ? context.function : "");
}

} // namespace

bool endLoggingThreads()
{
    constexpr int PatienceMs = 2000;
    log4cplus::deinitialize();
    // log4cplus has joined them, but the kernel may list them for a moment longer.
    const QDir tasks(QStringLiteral("/proc/self/task"));
    QDeadlineTimer patience(PatienceMs);
    const auto count
        = [&tasks] { return tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(); };
    while (count() > 1 && !patience.hasExpired())
        QThread::yieldCurrentThread();
    return count() == 1;
}

void setLogStation(const QString &title)
{
    const VeskMutexLock lock(station().mutex);
    station().title = title.toStdString();
}

void logLineOfPlugin(const QByteArray &line, const QString &plugin)
{
    if (journal())
        return journal()->send(journalFieldsOfLine(
            {line.constData(), static_cast<std::size_t>(line.size())}, plugin.toStdString()));
    linesOfPlugins().forcedLog(log4cplus::INFO_LOG_LEVEL, line.toStdString());
}

Result<void, QString> setUpLogging(const QString &level, const QString &file, qint64 maxSize)
{
    logFile().reset();
    journal().reset();
    if (file.isEmpty() && Journal::isStandardError()) {
        journal() = std::make_shared<Journal>();
    } else if (file.isEmpty()) {
        // One write for each record, instead of one for each of its parts.
        std::cerr.unsetf(std::ios::unitbuf);
        ::setvbuf(stderr, nullptr, _IOLBF, 0);
    } else {
        const auto made = std::make_shared<LogFile>(
            QFile::encodeName(file).toStdString(), static_cast<std::uint64_t>(maxSize));
        if (const auto opened = made->open(); !opened) {
            return failure(
                QStringLiteral("%1: %2").arg(file, QString::fromStdString(opened.error().text)));
        }
        logFile() = made;
    }
    log4cplus::Logger root = log4cplus::Logger::getRoot();
    root.removeAllAppenders();
    root.addAppender(makeAppender(Pattern));
    changeLogging(level, maxSize);
    log4cplus::Logger lines = linesOfPlugins();
    lines.setAdditivity(false);
    lines.removeAllAppenders();
    lines.addAppender(makeAppender(LinePattern));
    qInstallMessageHandler(logQtMessage);
    return {};
}

void changeLogging(const QString &level, qint64 maxSize)
{
    log4cplus::Logger::getRoot().setLogLevel(
        log4cplus::getLogLevelManager().fromString(level.toUpper().toStdString()));
    if (logFile())
        logFile()->setMaxSize(static_cast<std::uint64_t>(maxSize));
}

void reopenLog()
{
    if (!logFile())
        return;
    if (const auto opened = logFile()->open(); !opened)
        std::cerr << "The log cannot be opened: " << opened.error().text << std::endl;
}
