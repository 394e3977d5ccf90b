// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/cli/CommandLine.h"
#include "ctl/HostSession.h"

#include <functional>

/// What a command line asks for: a command, or to print something and end.
struct CtlCommandLine {
    using Run = std::function<CtlResult<>(HostSession &)>;

    /// The command; none when it is not to run.
    Run run;
    CtlOptions options;
    /// When it does not run: the exit status (0 after a text that was asked for, 2 for bad usage)
    /// and the text.
    int status = 0;
    QString text;
};

/// Reads the arguments after the program's name; \a environmentHost, where it is not empty, stands
/// in for --host. Never throws.
CtlCommandLine parseCtlCommandLine(const QStringList &arguments, const QString &environmentHost);

/// Calls \a visit with all commands and options, for manual pages.
void visitCtlCommands(const std::function<void(const Command &program)> &visit);

/// Adds a command below \a parent, which \a run carries out when it is chosen. Its arguments are
/// read into the options of \a line, which must live as long as \a parent.
Command addCommand(Command parent, const char *name, const char *description, CtlCommandLine &line,
    CtlCommandLine::Run run);

/// The options of commands that show a list.
void addListOptions(Command command, CtlOptions &into);

/// The commands by subject: each with its arguments and code in one file.
void addScreenCommands(Command app, CtlCommandLine &line);
void addPlayerCommands(Command app, CtlCommandLine &line);
void addMenuCommands(Command app, CtlCommandLine &line);
void addAccountCommands(Command app, CtlCommandLine &line);
void addFileCommands(Command app, CtlCommandLine &line);
void addPairCommand(Command app, CtlCommandLine &line);
void addJoinCommand(Command app, CtlCommandLine &line);
void addDeviceCommands(Command app, CtlCommandLine &line);
void addVolumeCommands(Command app, CtlCommandLine &line);
void addOutputCommands(Command app, CtlCommandLine &line);
void addSeekCommand(Command app, CtlCommandLine &line);
void addPresetCommands(Command app, CtlCommandLine &line);
void addLibraryCommands(Command app, CtlCommandLine &line);
void addSleepCommand(Command app, CtlCommandLine &line);
void addAlarmCommands(Command app, CtlCommandLine &line);
void addConfigCommand(Command app, CtlCommandLine &line);
