// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/HostOptions.h"

/// What a command line asks for: a start with `options`, or to print something and end.
struct HostCommandLine {
    bool run = false;
    HostOptions options;
    /// When it does not run: the exit status (0 after a text that was asked for, 2 for bad usage)
    /// and the text.
    int status = 0;
    QString text;
};

/// Reads the arguments after the program's name, and the configuration file that they name. What
/// the command line says wins; values and connections that both name are those of both. Never
/// throws.
HostCommandLine parseHostCommandLine(const QStringList &arguments);
