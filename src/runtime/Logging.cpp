#include "runtime/Logging.h"

#include "api/core/log.h"

#include <QFile>

#include <log4cplus/consoleappender.h>
#include <log4cplus/fileappender.h>
#include <log4cplus/layout.h>
#include <log4cplus/loglevel.h>

#include <cstdio>
#include <iostream>

VESK_LOGGER("Qt")

namespace {

constexpr char Pattern[] = "%D{%Y-%m-%d %H:%M:%S.%q} %-5p %c %F:%L [%t] %m%n";
/// For lines that have all of that already.
constexpr char LinePattern[] = "%m%n";

log4cplus::Logger linesOfWorkers()
{
    static const log4cplus::Logger logger
        = log4cplus::Logger::getInstance(LOG4CPLUS_TEXT("LinesOfWorkers"));
    return logger;
}

/// Two appenders for one file write whole records: each opens it for appending and flushes every
/// one.
log4cplus::SharedAppenderPtr makeAppender(const QString &file, const char *pattern)
{
    log4cplus::SharedAppenderPtr appender;
    if (file.isEmpty()) {
        // A record is one write, not one for each of its parts.
        std::cerr.unsetf(std::ios::unitbuf);
        ::setvbuf(stderr, nullptr, _IOLBF, 0);
        appender = new log4cplus::ConsoleAppender(true, true);
    } else
        appender = new log4cplus::FileAppender(
            QFile::encodeName(file).toStdString(), std::ios_base::app, true);
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

void logLineOfWorker(const QByteArray &line)
{
    linesOfWorkers().forcedLog(log4cplus::INFO_LOG_LEVEL, line.toStdString());
}

QString setUpLogging(const QString &level, const QString &file)
{
    if (!file.isEmpty()) {
        // log4cplus itself complains about a file that it cannot open only when it first writes.
        QFile probe(file);
        if (!probe.open(QIODevice::Append))
            return QStringLiteral("%1: %2").arg(file, probe.errorString());
    }
    log4cplus::Logger root = log4cplus::Logger::getRoot();
    root.removeAllAppenders();
    root.addAppender(makeAppender(file, Pattern));
    root.setLogLevel(log4cplus::getLogLevelManager().fromString(level.toUpper().toStdString()));
    log4cplus::Logger lines = linesOfWorkers();
    lines.setAdditivity(false);
    lines.removeAllAppenders();
    lines.addAppender(makeAppender(file, LinePattern));
    qInstallMessageHandler(logQtMessage);
    return {};
}
