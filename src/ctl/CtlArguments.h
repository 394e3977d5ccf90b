#pragma once

#include "ctl/CtlOptions.h"

#include <string>
#include <vector>

namespace CLI {
class App;
}

/// What CLI11 reads from a command line, before it is looked at more closely.
struct CtlArguments {
    std::string host;
    bool json = false;
    std::string service;
    CtlOptions::Command command = CtlOptions::Ls;
    std::string place;
    int row = -1;
    int choice = -1;
    bool watch = false;
    std::string text;
    std::vector<std::string> roles;
    int first = 0;
    int last = -1;
    int limit = -1;

    VeskTuneInAccountOperation::Enum operation = VeskTuneInAccountOperation::none;
    std::string userName;
    std::string email;
    std::string postalCode;
    std::string city;
    std::string countryId;
};

/// The commands by subject. \a into must live as long as \a app.
void addScreenCommands(CLI::App &app, CtlArguments &into);
void addPlayerCommands(CLI::App &app, CtlArguments &into);
void addMenuCommands(CLI::App &app, CtlArguments &into);
void addAccountCommands(CLI::App &app, CtlArguments &into);

/// A command of that name, which chooses \a command.
CLI::App *addCommand(CLI::App &app, const char *name, const char *description,
    CtlOptions::Command command, CtlArguments &into);
/// The positional pair that names a row.
void addRow(CLI::App *command, CtlArguments &into);
/// --first, --last and --limit.
void addRange(CLI::App *command, CtlArguments &into);
