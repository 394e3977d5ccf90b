// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/Result.h"
#include "base/cli/CommandLine.h"
#include "host/HostOptions.h"

#include <functional>

/// Reads the arguments after the program's name, and the configuration file that they name, or else
/// the one of defaultHostConfigFile(). What the command line says wins; values and connections that
/// both name are those of both. Without options the program is to end, after a text that was asked
/// for or bad usage. Never throws.
Result<HostOptions, CommandLineEnd> parseHostCommandLine(const QStringList &arguments);

/// Calls \a visit with all options, for manual pages.
void visitHostCommandLine(const std::function<void(const Command &program)> &visit);
