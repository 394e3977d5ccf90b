// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QString>

/// Ends the threads that log4cplus starts before main(), for a way of logging that is not used
/// here: a process that confines itself must have no thread that it does not confine. Before other
/// threads; returns whether it has one thread now.
bool endLoggingThreads();

/// Sets up log4cplus for the process: records of \a level ("trace" to "error") and above go to
/// \a file (a LogFile of at most \a maxSize bytes; 0: of any size), or to standard error when it is
/// empty, with time, level, logger, source:line, thread and message. Qt's own messages go the same
/// way, under the logger "Qt". Main thread, before anything logs. Returns what is wrong, empty when
/// nothing is.
QString setUpLogging(const QString &level, const QString &file, qint64 maxSize = 0);

/// Goes on with the file that now has the log's name, for those who rename it. Any thread, after
/// setUpLogging().
void reopenLog();

/// Brings a line of another process, which it has made a log record already, to where this one's
/// records go. Any thread, after setUpLogging().
void logLineOfPlugin(const QByteArray &line);
