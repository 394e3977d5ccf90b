// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "ctl/Commands.h"
#include "ctl/CtlOptions.h"

/// What a command line asks for: a command, or to print something and end.
struct CtlCommandLine {
    /// The command; none when it is not to run.
    Commands::Run run;
    CtlOptions options;
    /// When it does not run: the exit status (0 after a text that was asked for, 2 for bad usage)
    /// and the text.
    int status = 0;
    QString text;
};

/// Reads the arguments after the program's name; \a environmentHost, where it is not empty, stands
/// in for --host. Never throws.
CtlCommandLine parseCtlCommandLine(const QStringList &arguments, const QString &environmentHost);
