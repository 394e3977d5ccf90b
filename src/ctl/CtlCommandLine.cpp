// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/CtlCommandLine.h"

#include "api/web/VeskUrl.h"
#include "ctl/UnknownWords.h"

#include <optional>
#include <string>
#include <vector>

namespace {

constexpr char Help[]
    = "A PLACE is what lists show and take: the number of a row of what this terminal\n"
      "was shown last (3, or 3/0/12 for rows behind it), the same from the first list\n"
      "on (/3/0/12), favorites or favorites/2, search:WORDS or search:WORDS/2, a row's\n"
      "path (ls -l) or its id.\n"
      "\n"
      "Examples:\n"
      "  veskctl ls                     what there is\n"
      "  veskctl search smooth jazz     then: veskctl play 2\n"
      "  veskctl play hafenlicht jazz   the best hit of a search\n"
      "  veskctl favorite add           what plays\n"
      "  veskctl status --watch\n"
      "\n"
      "VESK_HOST in the environment says where the host is when --host does not.";

struct Globals {
    std::optional<std::string> host;
    bool json = false;
    std::optional<std::string> service;
};

void addEverything(CommandLine &app, Globals &into, Commands &commands)
{
    app.setVersion("veskctl " VESK_VERSION);
    app.addOption("--host", into.host, "Where the host is (127.0.0.1:8765)").valueName("ADDRESS");
    app.addFlag("--json", into.json, "Print JSON, errors as well");
    app.addOption("--in", into.service, "The service; without it, the only one that there is")
        .valueName("PATH");
    app.requireCommand();
    app.allowOptionsAnywhere();
    app.setFooter(Help);
    addScreenCommands(app, commands);
    addPlayerCommands(app, commands);
    addMenuCommands(app, commands);
    addFavoriteCommands(app, commands);
    addAccountCommands(app, commands);
}

/// Returns what is wrong with it; empty when it is the host's address.
QString setHost(CtlOptions &options, const QString &host)
{
    const QString address
        = host.contains(QLatin1String("://")) ? host : QStringLiteral("http://") + host;
    const VeskUrl url(address);
    const bool isHttp
        = url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
    if (!isHttp || url.host().isEmpty() || host.contains(QLatin1Char(' ')))
        return QStringLiteral("\"%1\" is no address of a host (127.0.0.1:8765)").arg(host);
    options.host = address.endsWith(QLatin1Char('/')) ? address : address + QLatin1Char('/');
    return {};
}

QString apply(const Globals &globals, const QString &environmentHost, CtlOptions &options)
{
    options.json = globals.json;
    if (globals.service) {
        const QString service = QString::fromStdString(*globals.service);
        options.service = CMPath::fromEncoded(service);
        if (options.service.isEmpty())
            return QStringLiteral("\"%1\" is no path").arg(service);
    }
    if (globals.host)
        return setHost(options, QString::fromStdString(*globals.host));
    return environmentHost.isEmpty() ? QString() : setHost(options, environmentHost);
}

CtlCommandLine ended(int status, const QString &output, const QStringList &arguments)
{
    CtlCommandLine result;
    result.status = status;
    result.text = output;
    // Also where the command line could not be read to its end.
    result.options.json = arguments.contains(QLatin1String("--json"));
    return result;
}

} // namespace

Command Commands::add(Command parent, const char *name, const char *description, Run run)
{
    Command command = parent.add(name, description);
    command.onChosen([this, run = std::move(run)] { m_chosen = run; });
    return command;
}

void addPlace(Command command, std::vector<std::string> &words, const char *description)
{
    command.addOption("PLACE", words, description);
}

QStringList toTexts(const std::vector<std::string> &words)
{
    QStringList texts;
    for (const std::string &word : words)
        texts.append(QString::fromStdString(word));
    return texts;
}

CtlCommandLine parseCtlCommandLine(const QStringList &arguments, const QString &environmentHost)
{
    CommandLine app("Browses and plays what a vesk-host offers.", "veskctl");
    Globals globals;
    Commands commands;
    addEverything(app, globals, commands);
    const QString unknown = complainOfUnknownWord(app, arguments);
    if (!unknown.isEmpty())
        return ended(2, unknown, arguments);
    if (const auto end = app.read(arguments))
        return ended(end->status, end->text, arguments);

    CtlCommandLine result;
    const QString complaint = apply(globals, environmentHost, result.options);
    if (!complaint.isEmpty())
        return ended(2, complaint, arguments);
    result.run = commands.chosen();
    return result;
}
