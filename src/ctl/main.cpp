#include "cli/CommandLine.h"
#include "ctl/Commands.h"
#include "ctl/CtlCommandLine.h"

#include <log4cplus/initializer.h>

#include <iostream>
#include <unistd.h>

int main(int argc, char **argv)
{
    const log4cplus::Initializer logging;
    const CtlCommandLine commandLine
        = parseCtlCommandLine(commandLineArguments(argc, argv), qEnvironmentVariable("VESK_HOST"));
    if (!commandLine.run) {
        std::ostream &stream = commandLine.status == 0 ? std::cout : std::cerr;
        stream << (commandLine.status == 0 ? "" : "veskctl: ") << commandLine.text.toStdString()
               << (commandLine.text.endsWith(QLatin1Char('\n')) ? "" : "\n") << std::flush;
        return commandLine.status;
    }
    CtlTerminal terminal {std::cout, std::cerr};
    terminal.colours = ::isatty(STDOUT_FILENO) && qEnvironmentVariableIsEmpty("NO_COLOR");
    terminal.input = STDIN_FILENO;
    terminal.output = STDOUT_FILENO;
    const CtlStatus status = runCommand(commandLine.options, terminal);
    std::cout.flush();
    return static_cast<int>(status);
}
