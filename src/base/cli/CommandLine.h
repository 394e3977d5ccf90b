// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

/// \file
/// Command lines of all programs here. One thread; variables that options are read into must
/// outlive read(). CLI11 is hidden behind this header: a source that includes it takes ten seconds
/// to compile.

/// Why a program ends after reading its command line: the exit status (0 after --help and
/// --version, 2 for bad usage) and the text to print.
struct CommandLineEnd {
    int status = 0;
    QString text;
};

/// An option, a flag or an argument of a command. A handle: copy freely while the CommandLine
/// lives.
class CommandOption {
public:
    explicit CommandOption(CLI::Option *option)
        : m_option(option)
    {
    }

    CommandOption &required();
    /// The name of its value in the help.
    CommandOption &valueName(const char *name);
    CommandOption &between(int least, int most);
    CommandOption &between(double least, double most);
    /// Takes one value each time it is given.
    CommandOption &oneAtATime();
    /// A flag that takes no "=false".
    CommandOption &plain();
    CommandOption &excludes(const CommandOption &other);
    CommandOption &needs(const CommandOption &other);

    /// Whether it was on the command line.
    bool isGiven() const;

private:
    CLI::Option *m_option;
};

/// What is known of an option, a flag or an argument, for manual pages and completion.
struct OptionDescription {
    /// "-l" and "--long"; of an argument its name.
    QStringList names;
    /// Of an option's value; empty for flags and arguments.
    QString valueName;
    QString description;
    bool isArgument = false;
    bool isRequired = false;
    /// Takes several values, or can be given several times.
    bool isRepeated = false;
};

/// A command with its options, arguments and commands below it. A handle as well.
///
/// Names are those of CLI11: "-l,--long", or "PLACE" for an argument.
class Command {
public:
    explicit Command(CLI::App *app)
        : m_app(app)
    {
    }

    Command add(const char *name, const char *description);
    CommandOption addOption(const char *names, std::string &into, const char *description);
    CommandOption addOption(
        const char *names, std::optional<std::string> &into, const char *description);
    CommandOption addOption(
        const char *names, std::vector<std::string> &into, const char *description);
    CommandOption addOption(const char *names, QString &into, const char *description);
    CommandOption addOption(const char *names, QStringList &into, const char *description);
    CommandOption addOption(const char *names, int &into, const char *description);
    CommandOption addOption(const char *names, unsigned &into, const char *description);
    CommandOption addOption(const char *names, double &into, const char *description);
    CommandOption addFlag(const char *names, bool &into, const char *description);

    /// One of the commands below it must be given.
    void requireCommand();
    /// \a chosen is called after reading when this command was given.
    void onChosen(std::function<void()> chosen);

    QString name() const;
    QString description() const;
    /// Whether requireCommand() was called.
    bool requiresCommand() const;
    /// Its own options and arguments, in the order in which they were added; of those above it
    /// none, and not --help, which every command has.
    QVector<OptionDescription> describedOptions() const;
    /// Whether it takes arguments that are no options.
    bool takesArguments() const;
    /// The commands below it.
    QStringList commands() const;
    std::optional<Command> command(const QString &name) const;
    /// The long options of this command and of those above it.
    QStringList options() const;
    /// Whether the option \a name of this command, or of one above, takes a value; nothing when
    /// there is no such option.
    std::optional<bool> takesValue(const QString &name) const;

protected:
    CLI::App *m_app;
};

/// A program's command line.
class CommandLine : public Command {
public:
    CommandLine(const char *description, const char *program = "");
    ~CommandLine();
    CommandLine(const CommandLine &) = delete;
    CommandLine &operator=(const CommandLine &) = delete;

    /// The text of --version.
    void setVersion(const char *version);
    /// The last paragraphs of the help.
    void setFooter(const char *footer);
    /// Allows its options also after a command.
    void allowOptionsAnywhere();

    /// Reads \a arguments, without the program's name. Nothing when the program should go on. Never
    /// throws.
    std::optional<CommandLineEnd> read(const QStringList &arguments);

private:
    std::unique_ptr<CLI::App> m_owned;
};

/// The arguments of main() after the program's name.
QStringList commandLineArguments(int argc, char **argv);
