#include "ctl/CtlArguments.h"

#include <CLI/CLI.hpp>

void addRange(CLI::App *command, CtlArguments &into)
{
    const CLI::Range count(0, 1000000000);
    command->add_option("--first", into.first, "The first row to show, from 0")->check(count);
    CLI::Option *last
        = command->add_option("--last", into.last, "The last row to show")->check(count);
    command->add_option("--limit", into.limit, "How many rows to show")
        ->check(CLI::Range(1, 1000000000))
        ->excludes(last);
}

void addScreenCommands(CLI::App &app, CtlArguments &into)
{
    CLI::App *ls = addCommand(app, "ls", "Show a screen", CtlOptions::Ls, into);
    ls->add_option("PLACE", into.place, "The screen; without it, what there is");
    addRange(ls, into);

    CLI::App *search
        = addCommand(app, "search", "Search and show what is found", CtlOptions::Search, into);
    search->add_option("TEXT", into.text, "What to search for")->required();
    addRange(search, into);

    addRange(addCommand(app, "favorites", "Show the favorites", CtlOptions::Favorites, into), into);

    CLI::App *get = addCommand(app, "get", "Print a value", CtlOptions::Get, into);
    get->add_option("PLACE", into.place, "The value, row or screen")->required();
    get->add_option("ROLE", into.roles, "What of it (value)");

    CLI::App *set = addCommand(app, "set", "Change a value", CtlOptions::Set, into);
    set->add_option("PLACE", into.place, "The value")->required();
    set->add_option("VALUE", into.text, "What it shall be")->required();
}
