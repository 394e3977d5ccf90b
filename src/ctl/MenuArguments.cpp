#include "ctl/CtlArguments.h"

#include <CLI/CLI.hpp>

void addRow(CLI::App *command, CtlArguments &into)
{
    command->add_option("PLACE", into.place, "The screen")->required();
    command->add_option("ROW", into.row, "The row, from 0")
        ->required()
        ->check(CLI::Range(0, 1000000000));
}

void addMenuCommands(CLI::App &app, CtlArguments &into)
{
    CLI::App *menu = addCommand(
        app, "menu", "Show the menu of a row, or of what plays", CtlOptions::Menu, into);
    CLI::Option *place = menu->add_option("PLACE", into.place, "The screen");
    CLI::Option *row
        = menu->add_option("ROW", into.row, "The row, from 0")->check(CLI::Range(0, 1000000000));
    place->needs(row);
    menu->add_option("--choose", into.choice, "Run, open or play an entry of the menu")
        ->type_name("N")
        ->check(CLI::Range(0, 1000000000));

    CLI::App *favorite = app.add_subcommand("favorite", "Change the favorites");
    favorite->require_subcommand(1);
    addRow(
        addCommand(*favorite, "add", "Make a row a favorite", CtlOptions::FavoriteAdd, into), into);
    addRow(addCommand(*favorite, "remove", "Make a row no favorite any more",
               CtlOptions::FavoriteRemove, into),
        into);
}
