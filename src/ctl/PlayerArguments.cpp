#include "ctl/CtlArguments.h"

#include <CLI/CLI.hpp>

void addPlayerCommands(CLI::App &app, CtlArguments &into)
{
    addRow(addCommand(app, "play", "Play a row", CtlOptions::Play, into), into);
    addCommand(app, "pause", "Pause what plays", CtlOptions::Pause, into);
    addCommand(app, "resume", "Go on after a pause", CtlOptions::Resume, into);
    addCommand(app, "stop", "Stop what plays", CtlOptions::Stop, into);

    addCommand(app, "status", "Tell what plays", CtlOptions::Status, into)
        ->add_flag("--watch", into.watch, "Go on with every change");

    addCommand(
        app, "streams", "Show the streams of what plays, or play one", CtlOptions::Streams, into)
        ->add_option("ROW", into.row, "The one to play")
        ->check(CLI::Range(0, 1000000000));
}
