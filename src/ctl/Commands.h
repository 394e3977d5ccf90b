// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/cli/CommandLine.h"
#include "ctl/HostSession.h"

#include <functional>
#include <string>
#include <vector>

/// The commands of a command line, and the one that was chosen once it is parsed. Must live as long
/// as the command line.
class Commands {
public:
    using Run = std::function<CtlStatus(HostSession &)>;

    /// A command of that name below \a parent, which is carried out by \a run. What \a run needs of
    /// the command line belongs to it.
    Command add(Command parent, const char *name, const char *description, Run run);

    const Run &chosen() const { return m_chosen; }

private:
    Run m_chosen;
};

/// The commands by subject: each with its arguments, options and code in one file.
void addScreenCommands(Command app, Commands &commands);
void addPlayerCommands(Command app, Commands &commands);
void addMenuCommands(Command app, Commands &commands);
void addFavoriteCommands(Command app, Commands &commands);
void addAccountCommands(Command app, Commands &commands);

/// The positional words that name a place.
void addPlace(Command command, std::vector<std::string> &words, const char *description);
QStringList toTexts(const std::vector<std::string> &words);
