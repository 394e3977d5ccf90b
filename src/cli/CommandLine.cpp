#include "cli/CommandLine.h"

#include <CLI/CLI.hpp>

#include <algorithm>

std::optional<CommandLineEnd> readCommandLine(CLI::App &app, const QStringList &arguments)
{
    std::vector<std::string> reversed;
    for (const QString &argument : arguments)
        reversed.push_back(argument.toStdString());
    std::reverse(reversed.begin(), reversed.end());
    try {
        app.parse(reversed);
    } catch (const CLI::CallForVersion &version) {
        return CommandLineEnd {0, QString::fromStdString(version.what())};
    } catch (const CLI::CallForHelp &) {
        return CommandLineEnd {0, QString::fromStdString(app.help())};
    } catch (const CLI::ParseError &error) {
        return CommandLineEnd {2, QString::fromStdString(error.what())};
    }
    return std::nullopt;
}

QStringList commandLineArguments(int argc, char **argv)
{
    QStringList arguments;
    for (int index = 1; index < argc; ++index)
        arguments.append(QString::fromUtf8(argv[index]));
    return arguments;
}
