#pragma once

#include "ctl/HostSession.h"

#include <functional>

namespace CLI {
class App;
}

/// The commands of a command line, and the one that was chosen once it is parsed. Must live as long
/// as the command line's App.
class Commands {
public:
    using Run = std::function<CtlStatus(HostSession &)>;

    /// A command of that name below \a parent, which is carried out by \a run. What \a run needs of
    /// the command line belongs to it.
    CLI::App *add(CLI::App &parent, const char *name, const char *description, Run run);

    const Run &chosen() const { return m_chosen; }

private:
    Run m_chosen;
};

/// The commands by subject: each with its arguments, options and code in one file.
void addScreenCommands(CLI::App &app, Commands &commands);
void addPlayerCommands(CLI::App &app, Commands &commands);
void addMenuCommands(CLI::App &app, Commands &commands);
void addFavoriteCommands(CLI::App &app, Commands &commands);
void addAccountCommands(CLI::App &app, Commands &commands);

/// The positional words that name a place.
void addPlace(CLI::App *command, std::vector<std::string> &words, const char *description);
QStringList toTexts(const std::vector<std::string> &words);
