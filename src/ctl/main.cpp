#include "ctl/Commands.h"
#include "ctl/CtlCommandLine.h"

#include <log4cplus/initializer.h>

#include <iostream>
#include <unistd.h>

int main(int argc, char **argv)
{
    const log4cplus::Initializer logging;
    QStringList arguments;
    for (int index = 1; index < argc; ++index)
        arguments.append(QString::fromUtf8(argv[index]));

    const CtlCommandLine commandLine
        = parseCtlCommandLine(arguments, qEnvironmentVariable("VESK_HOST"));
    if (!commandLine.run) {
        std::ostream &stream = commandLine.status == 0 ? std::cout : std::cerr;
        stream << (commandLine.status == 0 ? "" : "veskctl: ") << commandLine.text.toStdString()
               << (commandLine.text.endsWith(QLatin1Char('\n')) ? "" : "\n") << std::flush;
        return commandLine.status;
    }
    const bool colours = ::isatty(STDOUT_FILENO) && qEnvironmentVariableIsEmpty("NO_COLOR");
    Commands commands(commandLine.options, colours, std::cout, std::cerr);
    const CtlStatus status = commands.run();
    std::cout.flush();
    return static_cast<int>(status);
}
