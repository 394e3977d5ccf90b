// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "base/cli/CommandLine.h"
#include "ctl/CtlCommandLine.h"
#include "ctl/ShownLists.h"

#include <QCoreApplication>

#include <log4cplus/initializer.h>

#include <iostream>
#include <langinfo.h>
#include <unistd.h>

namespace {

int end(const CtlCommandLine &commandLine, const CtlTerminal &terminal)
{
    if (commandLine.status == 0) {
        terminal.out << commandLine.text.toStdString()
                     << (commandLine.text.endsWith(QLatin1Char('\n')) ? "" : "\n") << std::flush;
        return commandLine.status;
    }
    static_cast<void>(
        HostSession(commandLine.options, terminal).fail(CtlStatus::BadUsage, commandLine.text));
    return commandLine.status;
}

} // namespace

int main(int argc, char **argv)
{
    const log4cplus::Initializer logging;
    const QStringList arguments = commandLineArguments(argc, argv);
    const QCoreApplication application(argc, argv);
    const CtlCommandLine commandLine
        = parseCtlCommandLine(arguments, qEnvironmentVariable("VESK_HOST"));
    CtlTerminal terminal {std::cout, std::cerr};
    terminal.width = terminalWidth(STDOUT_FILENO);
    terminal.colours = ::isatty(STDOUT_FILENO) && qEnvironmentVariableIsEmpty("NO_COLOR");
    terminal.unicode = qstrcmp(::nl_langinfo(CODESET), "UTF-8") == 0;
    terminal.input = STDIN_FILENO;
    terminal.output = STDOUT_FILENO;
    terminal.memory = shownListsFolder();
    terminal.knownHosts = knownHostsFile();
    terminal.name = terminalName();
    terminal.catalogues = QStringList {
        QCoreApplication::applicationDirPath() + QStringLiteral("/../share/vesk/translations")};
    if (!commandLine.run)
        return end(commandLine, terminal);
    HostSession session(commandLine.options, terminal);
    const CtlResult<> result = commandLine.run(session);
    std::cout.flush();
    return result ? 0 : static_cast<int>(result.error());
}
