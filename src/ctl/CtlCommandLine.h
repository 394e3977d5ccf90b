#pragma once

#include "api/values/CMPath.h"

#include <QString>
#include <QStringList>

/// What one call of veskctl is to do.
struct CtlOptions {
    enum Command { Ls, Search, Get, Set };

    /// Ends with "/".
    QString host = QStringLiteral("http://127.0.0.1:8765/");
    bool json = false;
    Command command = Ls;
    /// Ls, Get, Set: the path. Search: where to search. Empty: where the host leads.
    CMPath path;
    /// Search: what for. Set: the value.
    QString text;
    /// Get.
    QStringList roles;
    /// Ls, Search: the range of rows, inclusive; -1: to the end.
    int first = 0;
    int last = -1;
};

/// What a command line asks for: a command, or to print something and end.
struct CtlCommandLine {
    bool run = false;
    CtlOptions options;
    /// When it does not run: the exit status (0 after a text that was asked for, 2 for bad usage)
    /// and the text.
    int status = 0;
    QString text;
};

/// Reads the arguments after the program's name; \a environmentHost, where it is not empty, stands
/// in for --host. Never throws.
CtlCommandLine parseCtlCommandLine(const QStringList &arguments, const QString &environmentHost);
