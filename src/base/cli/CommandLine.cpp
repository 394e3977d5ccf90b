// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "base/cli/CommandLine.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace {

std::vector<CLI::App *> below(CLI::App *app)
{
    return app->get_subcommands([](CLI::App *) { return true; });
}

/// The name of an option's value, without the bounds that CLI11 adds to it.
QString valueNameOf(CLI::Option *option)
{
    std::string name = option->get_type_name();
    try {
        const std::string bounds = ':' + option->get_validator(0)->get_description();
        if (bounds.size() > 1 && name.size() > bounds.size()
            && name.compare(name.size() - bounds.size(), bounds.size(), bounds) == 0)
            name.resize(name.size() - bounds.size());
    } catch (const CLI::OptionNotFound &) {
        // It takes any value.
    }
    return QString::fromStdString(name);
}

OptionDescription described(CLI::Option *option)
{
    OptionDescription description;
    description.isArgument = option->get_positional();
    if (description.isArgument)
        description.names.append(QString::fromStdString(option->get_name(true)));
    for (const std::string &name : option->get_snames())
        description.names.append(QStringLiteral("-") + QString::fromStdString(name));
    for (const std::string &name : option->get_lnames())
        description.names.append(QStringLiteral("--") + QString::fromStdString(name));
    if (!description.isArgument && option->get_items_expected_max() > 0)
        description.valueName = valueNameOf(option);
    description.description = QString::fromStdString(option->get_description());
    description.isRequired = option->get_required();
    description.isRepeated = option->get_items_expected_max() > 1
        || option->get_multi_option_policy() == CLI::MultiOptionPolicy::TakeAll;
    return description;
}

} // namespace

CommandOption &CommandOption::required()
{
    m_option->required();
    return *this;
}

CommandOption &CommandOption::valueName(const char *name)
{
    m_option->type_name(name);
    return *this;
}

CommandOption &CommandOption::between(int least, int most)
{
    m_option->check(CLI::Range(least, most));
    return *this;
}

CommandOption &CommandOption::between(double least, double most)
{
    m_option->check(CLI::Range(least, most));
    return *this;
}

CommandOption &CommandOption::oneAtATime()
{
    m_option->allow_extra_args(false);
    return *this;
}

CommandOption &CommandOption::plain()
{
    m_option->disable_flag_override();
    return *this;
}

CommandOption &CommandOption::excludes(const CommandOption &other)
{
    m_option->excludes(other.m_option);
    return *this;
}

CommandOption &CommandOption::needs(const CommandOption &other)
{
    m_option->needs(other.m_option);
    return *this;
}

bool CommandOption::isGiven() const
{
    return m_option->count() > 0;
}

Command Command::add(const char *name, const char *description)
{
    return Command(m_app->add_subcommand(name, description));
}

CommandOption Command::addOption(const char *names, std::string &into, const char *description)
{
    return CommandOption(m_app->add_option(names, into, description));
}

CommandOption Command::addOption(
    const char *names, std::optional<std::string> &into, const char *description)
{
    return CommandOption(m_app->add_option(names, into, description));
}

CommandOption Command::addOption(
    const char *names, std::vector<std::string> &into, const char *description)
{
    return CommandOption(m_app->add_option(names, into, description));
}

CommandOption Command::addOption(const char *names, QString &into, const char *description)
{
    const auto take = [&into](const std::string &text) { into = QString::fromStdString(text); };
    return CommandOption(m_app->add_option_function<std::string>(names, take, description));
}

CommandOption Command::addOption(const char *names, QStringList &into, const char *description)
{
    const auto take = [&into](const std::vector<std::string> &texts) {
        for (const std::string &text : texts)
            into.append(QString::fromStdString(text));
    };
    return CommandOption(
        m_app->add_option_function<std::vector<std::string>>(names, take, description));
}

CommandOption Command::addOption(const char *names, int &into, const char *description)
{
    return CommandOption(m_app->add_option(names, into, description));
}

CommandOption Command::addOption(const char *names, unsigned &into, const char *description)
{
    return CommandOption(m_app->add_option(names, into, description));
}

CommandOption Command::addOption(const char *names, double &into, const char *description)
{
    return CommandOption(m_app->add_option(names, into, description));
}

CommandOption Command::addFlag(const char *names, bool &into, const char *description)
{
    return CommandOption(m_app->add_flag(names, into, description));
}

void Command::requireCommand()
{
    m_app->require_subcommand(1);
}

void Command::onChosen(std::function<void()> chosen)
{
    m_app->callback(std::move(chosen));
}

QString Command::description() const
{
    return QString::fromStdString(m_app->get_description());
}

bool Command::requiresCommand() const
{
    return m_app->get_require_subcommand_min() > 0;
}

QVector<OptionDescription> Command::describedOptions() const
{
    QVector<OptionDescription> all;
    for (CLI::Option *option : m_app->get_options()) {
        if (option != m_app->get_help_ptr())
            all.append(described(option));
    }
    return all;
}

QString Command::name() const
{
    return QString::fromStdString(m_app->get_name());
}

bool Command::takesArguments() const
{
    const auto options = m_app->get_options();
    return std::any_of(options.begin(), options.end(),
        [](const CLI::Option *option) { return option->get_positional(); });
}

QStringList Command::commands() const
{
    QStringList names;
    for (const CLI::App *command : below(m_app))
        names.append(QString::fromStdString(command->get_name()));
    return names;
}

std::optional<Command> Command::command(const QString &name) const
{
    for (CLI::App *command : below(m_app)) {
        if (command->get_name() == name.toStdString())
            return Command(command);
    }
    return std::nullopt;
}

QStringList Command::options() const
{
    QStringList names;
    for (const CLI::App *app = m_app; app; app = app->get_parent()) {
        for (const CLI::Option *option : app->get_options()) {
            for (const std::string &name : option->get_lnames())
                names.append(QStringLiteral("--") + QString::fromStdString(name));
        }
    }
    return names;
}

std::optional<bool> Command::takesValue(const QString &name) const
{
    for (const CLI::App *app = m_app; app; app = app->get_parent()) {
        if (const CLI::Option *option = app->get_option_no_throw(name.toStdString()))
            return option->get_items_expected_max() > 0;
    }
    return std::nullopt;
}

CommandLine::CommandLine(const char *description, const char *program)
    : Command(new CLI::App(description, program))
    , m_owned(m_app)
{
}

CommandLine::~CommandLine() = default;

void CommandLine::setVersion(const char *version)
{
    m_app->set_version_flag("--version", version, "Print the version, and end");
}

void CommandLine::setFooter(const char *footer)
{
    m_app->footer(footer);
}

void CommandLine::allowOptionsAnywhere()
{
    m_app->fallthrough();
}

std::optional<CommandLineEnd> CommandLine::read(const QStringList &arguments)
{
    std::vector<std::string> reversed;
    for (const QString &argument : arguments)
        reversed.push_back(argument.toStdString());
    std::reverse(reversed.begin(), reversed.end());
    try {
        m_app->parse(reversed);
    } catch (const CLI::CallForVersion &version) {
        return CommandLineEnd {0, QString::fromStdString(version.what())};
    } catch (const CLI::CallForHelp &) {
        return CommandLineEnd {0, QString::fromStdString(m_app->help())};
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
