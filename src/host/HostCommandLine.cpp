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

void addOption(CommandLine &app, const HostOption &option, Argument &into)
{
    switch (option.kind) {
    case HostOption::Flag:
        app.addFlag(option.name, into.flag, option.description).plain();
        return;
    case HostOption::Single:
        app.addOption(option.name, into.single, option.description).valueName(option.valueName);
        return;
    case HostOption::Repeated:
    case HostOption::Assignment:
        app.addOption(option.name, into.repeated, option.description)
            .valueName(option.valueName)
            .oneAtATime();
        return;
    }
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

/// Other lists are those of the file and of the command line, but plug-ins are chosen as a whole.
Result<void, CommandLineEnd> setArguments(
    HostOptions &options, const std::vector<Argument> &given, HostConfigMembers which)
{
    for (std::size_t i = 0; i < given.size(); ++i) {
        const HostOption &option = hostOptions().at(static_cast<int>(i));
        const bool isValues = option.kind == HostOption::Assignment;
        if (isValues != (which == HostConfigMembers::Values))
            continue;
        const QVariantList values = valuesOf(given[i]);
        if (qstrcmp(option.name, "--plugin") == 0 && !values.isEmpty())
            options.plugins.clear();
        for (const QVariant &value : values) {
            if (const auto done = option.set(options, value, {}); !done)
                return failure(badUsage(option.name, done.error()));
        }
    }
    return {};
}

} // namespace

Result<HostOptions, CommandLineEnd> parseHostCommandLine(const QStringList &arguments)
{
    CommandLine app(
        "Plays internet radio through plug-ins; browse it with a web browser or veskctl.",
        "vesk-host");
    std::optional<std::string> config;
    app.addOption("--config", config, "A file with these options").valueName("FILE");
    const QVector<HostOption> &known = hostOptions();
    std::vector<Argument> given(static_cast<std::size_t>(known.size()));
    for (std::size_t i = 0; i < given.size(); ++i)
        addOption(app, known.at(static_cast<int>(i)), given[i]);
    if (const auto end = app.read(arguments))
        return failure(*end);

    HostOptions options;
    const QString file = config ? QString::fromStdString(*config) : QString();
    QVariantHash members;
    if (config) {
        const auto content = readHostConfigFile(file);
        if (!content)
            return failure(CommandLineEnd {2, content.error()});
        members = *content;
    }
    const auto apply = [&](HostConfigMembers which) -> Result<void, CommandLineEnd> {
        if (const auto done = applyHostConfig(members, file, which, options); !done)
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
    return options;
}
