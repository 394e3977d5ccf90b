// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/HostCommandLine.h"

#include "host/HostConfigFile.h"

#include <optional>
#include <string>
#include <vector>

namespace {

/// What the command line says about one option.
struct Argument {
    std::optional<std::string> single;
    std::vector<std::string> repeated;
    bool flag = false;
};

/// With the default, as it is called.
std::string descriptionOf(const HostOption &option)
{
    const std::string description = option.description;
    const bool isShown = option.fallback && option.kind != HostOption::Flag;
    return isShown ? description + " (" + option.fallback + ')' : description;
}

void addOption(CommandLine &app, const HostOption &option, Argument &into)
{
    const std::string text = descriptionOf(option);
    const char *description = text.c_str();
    switch (option.kind) {
    case HostOption::Flag:
        app.addFlag(option.name, into.flag, description).plain();
        return;
    case HostOption::Single:
        app.addOption(option.name, into.single, description).valueName(option.valueName);
        return;
    case HostOption::Repeated:
    case HostOption::OneOrMore:
    case HostOption::Assignment:
        app.addOption(option.name, into.repeated, description)
            .valueName(option.valueName)
            .oneAtATime();
        return;
    }
}

/// The options, and what is read into.
struct HostProgram {
    HostProgram();

    std::optional<std::string> config;
    std::vector<Argument> given;
    CommandLine app {
        "Plays internet radio through plug-ins; browse it with a web browser or veskctl.",
        "vesk-host"};
};

HostProgram::HostProgram()
    : given(static_cast<std::size_t>(hostOptions().size()))
{
    app.addOption("--config", config,
           "A file with these options (~/.config/vesk/vesk.conf, or else /etc/vesk/vesk.conf)")
        .valueName("FILE");
    for (std::size_t i = 0; i < given.size(); ++i)
        addOption(app, hostOptions().at(static_cast<int>(i)), given[i]);
}

QVariantList valuesOf(const Argument &argument)
{
    QVariantList values;
    if (argument.single)
        values.append(QString::fromStdString(*argument.single));
    for (const std::string &text : argument.repeated)
        values.append(QString::fromStdString(text));
    if (argument.flag)
        values.append(true);
    return values;
}

CommandLineEnd badUsage(const char *option, const QString &problem)
{
    return {2, QStringLiteral("%1: %2").arg(QLatin1String(option), problem)};
}

void noteGiven(HostOptions &options, const HostOption &option, const QVariant &value)
{
    QString key = QLatin1String(option.key);
    QVariant said = value;
    if (option.kind == HostOption::Assignment) {
        const QString assignment = value.toString();
        const int equals = assignment.indexOf(QLatin1Char('='));
        key = CMPath::fromEncoded(assignment.left(equals)).toEncoded();
        said = assignment.mid(equals + 1);
    }
    HostGiven &given = options.given[key];
    if (option.kind != HostOption::Repeated && option.kind != HostOption::OneOrMore)
        given.values.clear();
    given.values.append(said);
    given.file.clear();
    given.line = 0;
}

Result<void, CommandLineEnd> setArguments(
    HostOptions &options, const std::vector<Argument> &given, HostConfigMembers which)
{
    for (std::size_t i = 0; i < given.size(); ++i) {
        const HostOption &option = hostOptions().at(static_cast<int>(i));
        const bool isValues = option.kind == HostOption::Assignment;
        if (isValues != (which == HostConfigMembers::Values))
            continue;
        const QVariantList values = valuesOf(given[i]);
        if (option.clear && !values.isEmpty()) {
            option.clear(options);
            options.given.remove(QLatin1String(option.key));
        }
        for (const QVariant &value : values) {
            if (const auto done = option.set(options, value, {}); !done)
                return failure(badUsage(option.name, done.error()));
            noteGiven(options, option, value);
        }
    }
    return {};
}

} // namespace

Result<HostOptions, CommandLineEnd> parseHostCommandLine(const QStringList &arguments)
{
    HostProgram program;
    if (const auto end = program.app.read(arguments))
        return failure(*end);

    const std::optional<std::string> &config = program.config;
    const std::vector<Argument> &given = program.given;
    HostOptions options;
    options.configFile = config ? QString::fromStdString(*config) : defaultHostConfigFile();
    HostConfigFile content;
    if (config || !options.configFile.isEmpty()) {
        const auto read = readHostConfigFile(options.configFile);
        if (!read)
            return failure(CommandLineEnd {2, read.error()});
        content = *read;
    }
    const auto apply = [&](HostConfigMembers which) -> Result<void, CommandLineEnd> {
        if (const auto done = applyHostConfig(content, which, options); !done)
            return failure(CommandLineEnd {2, done.error()});
        return setArguments(options, given, which);
    };
    if (const auto done = apply(HostConfigMembers::AllButValues); !done)
        return failure(done.error());
    readPlugins(options);
    if (const auto done = apply(HostConfigMembers::Values); !done)
        return failure(done.error());
    if (const QString problem = options.audio.problem(); !problem.isEmpty())
        return failure(badUsage("--audio", problem));
    if (options.certificateFile.isEmpty() != options.keyFile.isEmpty())
        return failure(badUsage("--cert", QStringLiteral("it needs --key, and --key needs it")));
    return options;
}

void visitHostCommandLine(const std::function<void(const Command &program)> &visit)
{
    const HostProgram program;
    visit(program.app);
}
