// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

#include <string>

/// A shell command's output on a terminal, and its exit status; -1 when a signal ended it.
struct Shown {
    std::string text;
    int status = -1;
};

/// Runs \a command in a shell on a new terminal that is \a columns wide, as a user would type it
/// there. \a environment is "NAME=value"s, separated by blanks. Kills it after a minute.
Shown showOnTerminal(const QString &command, int columns, const QString &environment);
