#include "ctl/CtlCommandLine.h"

#include "api/web/VeskUrl.h"
#include "cli/CommandLine.h"
#include "ctl/CtlArguments.h"

#include <CLI/CLI.hpp>

namespace {

void addEverything(CLI::App &app, CtlArguments &into)
{
    app.add_option("--host", into.host, "Where the host is (http://127.0.0.1:8765/)")
        ->type_name("URL");
    app.add_flag("--json", into.json, "Print answers as JSON");
    app.add_option("--in", into.service, "The service; without it, the only one that there is")
        ->type_name("PATH");
    app.require_subcommand(1);
    app.fallthrough();
    app.footer("A PLACE is a path, row numbers from the first screen on (3/0/12), \"favorites\",\n"
               "row numbers from there on (favorites/0), or what is found (search:TEXT).");
    addScreenCommands(app, into);
    addPlayerCommands(app, into);
    addMenuCommands(app, into);
    addAccountCommands(app, into);
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

QString setService(CtlOptions &options, const QString &service)
{
    options.service = CMPath::fromEncoded(service);
    return options.service.isEmpty() ? QStringLiteral("\"%1\" is no path").arg(service) : QString();
}

QString setPlace(CtlOptions &options, const QString &place)
{
    return CtlPlace::parse(place, options.place) ? QString()
                                                 : QStringLiteral("\"%1\" is no place").arg(place);
}

QString setRange(CtlOptions &options, const CtlArguments &arguments)
{
    options.first = arguments.first;
    options.last = arguments.limit > 0 ? arguments.first + arguments.limit - 1 : arguments.last;
    if (options.last >= 0 && options.last < options.first)
        return QStringLiteral("--last is before --first");
    return {};
}

void setRoles(CtlOptions &options, const CtlArguments &arguments)
{
    for (const std::string &role : arguments.roles)
        options.roles.append(text(role));
    if (options.roles.isEmpty())
        options.roles.append(QStringLiteral("value"));
}

void setAccount(CtlOptions &options, const CtlArguments &arguments)
{
    options.account.setOperation(arguments.operation);
    options.account.setUserName(text(arguments.userName));
    options.account.setEmail(text(arguments.email));
    options.account.setPostalCode(text(arguments.postalCode));
    options.account.setCity(text(arguments.city));
    options.account.setCountryId(text(arguments.countryId));
}

QString apply(const CLI::App &app, const CtlArguments &arguments, CtlOptions &options)
{
    options.json = arguments.json;
    options.command = arguments.command;
    options.row = arguments.row;
    options.choice = arguments.choice;
    options.watch = arguments.watch;
    options.text = text(arguments.text);
    setRoles(options, arguments);
    setAccount(options, arguments);
    QString complaint = setRange(options, arguments);
    if (complaint.isEmpty() && app.count("--in") > 0)
        complaint = setService(options, text(arguments.service));
    const CLI::App *command = app.get_subcommands().front();
    if (!command->get_subcommands().empty())
        command = command->get_subcommands().front();
    const CLI::Option *place = command->get_option_no_throw("PLACE");
    if (complaint.isEmpty() && place && place->count() > 0)
        complaint = setPlace(options, text(arguments.place));
    if (options.command == CtlOptions::Favorites)
        options.place.start = CtlPlace::Favorites;
    if (options.command == CtlOptions::Search) {
        options.place.start = CtlPlace::Search;
        options.place.text = options.text;
    }
    return complaint;
}

CtlCommandLine ended(int status, const QString &output)
{
    CtlCommandLine result;
    result.status = status;
    result.text = output;
    return result;
}

} // namespace

CLI::App *addCommand(CLI::App &app, const char *name, const char *description,
    CtlOptions::Command command, CtlArguments &into)
{
    CLI::App *added = app.add_subcommand(name, description);
    added->callback([&into, command] { into.command = command; });
    return added;
}

CtlCommandLine parseCtlCommandLine(const QStringList &arguments, const QString &environmentHost)
{
    CLI::App app("Browses and plays what a vesk-host offers.", "veskctl");
    CtlArguments read;
    addEverything(app, read);
    if (const auto end = readCommandLine(app, arguments))
        return ended(end->status, end->text);

    CtlCommandLine result;
    QString complaint;
    if (app.count("--host") > 0)
        complaint = setHost(result.options, text(read.host));
    else if (!environmentHost.isEmpty())
        complaint = setHost(result.options, environmentHost);
    if (complaint.isEmpty())
        complaint = apply(app, read, result.options);
    if (!complaint.isEmpty())
        return ended(2, complaint);
    result.run = true;
    return result;
}
