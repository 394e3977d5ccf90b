// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QString>

/// Ends the threads that log4cplus starts before main() for asynchronous logging, which is not used
/// here: confinement covers only the thread that asks for it and those started later. To be called
/// before other threads are started; returns whether the process has one thread now.
bool endLoggingThreads();

/// Sets up log4cplus for the process: records of \a level ("trace" to "error") and above go to
/// \a file (a LogFile of at most \a maxSize bytes; 0: of any size), or to standard error when it is
/// empty, with time, level, logger, source:line, thread and message. If standard error is systemd's
/// journal, records are sent there with these as fields. Qt's own messages go the same
/// way, under the logger "Qt". Main thread, before anything logs. Fails when \a file cannot be
/// opened, with a line that says why.
Result<void, QString> setUpLogging(const QString &level, const QString &file, qint64 maxSize = 0);

/// Reopens the log file by its name, after a tool like logrotate has renamed it. Any thread, after
/// setUpLogging().
void reopenLog();

/// Changes what setUpLogging() was given. Main thread.
void changeLogging(const QString &level, qint64 maxSize);

/// Logs a line of the process of \a plugin, which is a formatted record already, as it stands. Any
/// thread, after setUpLogging().
void logLineOfPlugin(const QByteArray &line, const QString &plugin);

/// What plays, for records in the journal; empty for nothing. Any thread.
void setLogStation(const QString &station);
