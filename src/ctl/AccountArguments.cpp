#include "ctl/CtlArguments.h"

#include <CLI/CLI.hpp>

namespace {

using Operation = VeskTuneInAccountOperation;

CLI::App *addOperation(CLI::App &account, const char *name, const char *description,
    Operation::Enum operation, CtlArguments &into)
{
    CLI::App *command = account.add_subcommand(name, description);
    command->callback([&into, operation] {
        into.command = CtlOptions::Account;
        into.operation = operation;
    });
    return command;
}

void addUser(CLI::App *command, CtlArguments &into)
{
    command->add_option("USER", into.userName, "The account's user name")->required();
}

void addCreate(CLI::App &account, CtlArguments &into)
{
    CLI::App *create = addOperation(account, "create", "Make an account", Operation::create, into);
    addUser(create, into);
    create->add_option("--email", into.email, "Its e-mail address")->required();
    CLI::Option *postalCode
        = create->add_option("--postal-code", into.postalCode, "Where you live");
    CLI::Option *city = create->add_option("--city", into.city, "Where you live");
    CLI::Option *country = create->add_option("--country-id", into.countryId, "The city's country");
    postalCode->excludes(city)->excludes(country);
    city->needs(country);
    country->needs(city);
}

} // namespace

void addAccountCommands(CLI::App &app, CtlArguments &into)
{
    CLI::App *account = app.add_subcommand("account", "Link this device to an account");
    account->require_subcommand(1);
    addOperation(*account, "status", "Tell the account of this device", Operation::query, into);
    addOperation(*account, "claim", "Get a code to link this device with", Operation::claim, into);
    addUser(addOperation(*account, "join", "Link this device", Operation::join, into), into);
    addUser(addOperation(*account, "drop", "Undo the link", Operation::drop, into), into);
    addCreate(*account, into);
    addOperation(*account, "remind", "Have the user name sent", Operation::remind, into)
        ->add_option("EMAIL", into.email, "The account's e-mail address")
        ->required();
    // TuneIn would take a user name as well, the service's node none without its password.
    addOperation(*account, "reset", "Have a new password sent", Operation::reset, into)
        ->add_option("EMAIL", into.email, "The account's e-mail address")
        ->required();
}
