#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace CLI {
class App;
}

/// \file
/// Command lines as all programs here read them. Pure functions, any thread.

/// Why a program ends before it begins: the exit status (0 after a text that was asked for, 2 for
/// bad usage) and the text.
struct CommandLineEnd {
    int status = 0;
    QString text;
};

/// Reads \a arguments, without the program's name, into what \a app is bound to. Nothing when the
/// program is to go on. Never throws.
std::optional<CommandLineEnd> readCommandLine(CLI::App &app, const QStringList &arguments);

/// The arguments of main() after the program's name.
QStringList commandLineArguments(int argc, char **argv);
