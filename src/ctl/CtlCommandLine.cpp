#include "ctl/CtlCommandLine.h"

#include "api/web/VeskUrl.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace {

struct Arguments {
    std::string host;
    bool json = false;
    std::string path;
    std::string text;
    std::vector<std::string> roles;
    int first = 0;
    int last = -1;
    int limit = -1;
};

struct Commands {
    CLI::App *ls;
    CLI::App *search;
    CLI::App *get;
    CLI::App *set;
};

void addRange(CLI::App *command, Arguments &into)
{
    const CLI::Range count(0, 1000000000);
    command->add_option("--first", into.first, "The first row to show, from 0")->check(count);
    CLI::Option *last
        = command->add_option("--last", into.last, "The last row to show")->check(count);
    command->add_option("--limit", into.limit, "How many rows to show")
        ->check(CLI::Range(1, 1000000000))
        ->excludes(last);
}

Commands addCommands(CLI::App &app, Arguments &into)
{
    app.add_option("--host", into.host, "Where the host is (http://127.0.0.1:8765/)")
        ->type_name("URL");
    app.add_flag("--json", into.json, "Print answers as JSON");
    app.require_subcommand(1);
    app.fallthrough();

    Commands commands {};
    commands.ls = app.add_subcommand("ls", "Show a screen");
    commands.ls->add_option("PATH", into.path, "The screen; without it, what there is");
    addRange(commands.ls, into);

    commands.search = app.add_subcommand("search", "Search and show what is found");
    commands.search->add_option("TEXT", into.text, "What to search for")->required();
    commands.search->add_option("--in", into.path, "The service to search")->type_name("PATH");
    addRange(commands.search, into);

    commands.get = app.add_subcommand("get", "Print a value");
    commands.get->add_option("PATH", into.path, "The value, row or screen")->required();
    commands.get->add_option("ROLE", into.roles, "What of it (value)");

    commands.set = app.add_subcommand("set", "Change a value");
    commands.set->add_option("PATH", into.path, "The value")->required();
    commands.set->add_option("VALUE", into.text, "What it shall be")->required();
    return commands;
}

QString text(const std::string &argument)
{
    return QString::fromStdString(argument);
}

QString setHost(CtlOptions &options, const QString &host)
{
    const VeskUrl url(host);
    const bool isHttp
        = url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
    if (!isHttp || url.host().isEmpty())
        return QStringLiteral("\"%1\" is no http address").arg(host);
    options.host = host.endsWith(QLatin1Char('/')) ? host : host + QLatin1Char('/');
    return {};
}

QString setPath(CtlOptions &options, const QString &path)
{
    options.path = CMPath::fromEncoded(path);
    return options.path.isEmpty() ? QStringLiteral("\"%1\" is no path").arg(path) : QString();
}

QString setRange(CtlOptions &options, const Arguments &arguments)
{
    options.first = arguments.first;
    options.last = arguments.limit > 0 ? arguments.first + arguments.limit - 1 : arguments.last;
    if (options.last >= 0 && options.last < options.first)
        return QStringLiteral("--last is before --first");
    return {};
}

QString apply(
    const Arguments &arguments, const Commands &commands, bool hasPath, CtlOptions &options)
{
    options.json = arguments.json;
    options.text = text(arguments.text);
    for (const std::string &role : arguments.roles)
        options.roles.append(text(role));
    if (options.roles.isEmpty())
        options.roles.append(QStringLiteral("value"));
    options.command = commands.search->parsed() ? CtlOptions::Search
        : commands.get->parsed()                ? CtlOptions::Get
        : commands.set->parsed()                ? CtlOptions::Set
                                                : CtlOptions::Ls;
    const QString complaint = setRange(options, arguments);
    if (!complaint.isEmpty() || !hasPath)
        return complaint;
    return setPath(options, text(arguments.path));
}

CtlCommandLine ended(int status, const QString &output)
{
    CtlCommandLine result;
    result.status = status;
    result.text = output;
    return result;
}

} // namespace

CtlCommandLine parseCtlCommandLine(const QStringList &arguments, const QString &environmentHost)
{
    CLI::App app("Browses what a vesk-host offers.", "veskctl");
    Arguments read;
    const Commands commands = addCommands(app, read);
    std::vector<std::string> reversed;
    for (const QString &argument : arguments)
        reversed.push_back(argument.toStdString());
    std::reverse(reversed.begin(), reversed.end());
    try {
        app.parse(reversed);
    } catch (const CLI::CallForHelp &) {
        return ended(0, text(app.help()));
    } catch (const CLI::ParseError &error) {
        return ended(2, text(error.what()));
    }

    CtlCommandLine result;
    const bool hasPath = commands.ls->count("PATH") + commands.search->count("--in")
            + commands.get->count("PATH") + commands.set->count("PATH")
        > 0;
    QString complaint;
    if (app.count("--host") > 0)
        complaint = setHost(result.options, text(read.host));
    else if (!environmentHost.isEmpty())
        complaint = setHost(result.options, environmentHost);
    if (complaint.isEmpty())
        complaint = apply(read, commands, hasPath, result.options);
    if (!complaint.isEmpty())
        return ended(2, complaint);
    result.run = true;
    return result;
}
