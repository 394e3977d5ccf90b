#include "host/HostCommandLine.h"

#include "cli/CommandLine.h"
#include "host/HostConfigFile.h"

#include <CLI/CLI.hpp>

#include <optional>

namespace {

struct Arguments {
    std::optional<std::string> config;
    std::vector<std::string> plugins;
    std::optional<std::string> listen;
    std::vector<std::string> values;
    std::vector<std::string> connectTo;
    std::optional<std::string> caFile;
    std::optional<std::string> audio;
    bool inProcess = false;
    std::optional<std::string> restartWait;
    std::optional<std::string> watchdog;
    std::optional<std::string> stateFolder;
    std::optional<std::string> logLevel;
    std::optional<std::string> logFile;
    std::optional<std::string> logSize;
};

void addOptions(CLI::App &app, Arguments &into)
{
    app.add_option("--config", into.config, "A file with these options")->type_name("FILE");
    app.add_option("--plugin", into.plugins, "A plug-in to load")
        ->type_name("FILE.so")
        ->allow_extra_args(false);
    app.add_option("--listen", into.listen, "Where to serve clients (127.0.0.1:8765)")
        ->type_name("ADDRESS:PORT");
    app.add_option("--set", into.values, "Sets a value and keeps it as it is")
        ->type_name("PATH=VALUE")
        ->allow_extra_args(false);
    app.add_option("--connect-to", into.connectTo, "Connects elsewhere for HOST:PORT")
        ->type_name("HOST:PORT:ADDRESS:PORT")
        ->allow_extra_args(false);
    app.add_option("--ca-file", into.caFile, "One more certificate authority to trust")
        ->type_name("FILE");
    app.add_option("--audio", into.audio, "Where sound goes (auto)")
        ->type_name("auto|null|wav:FILE");
    app.add_flag("--in-process", into.inProcess,
           "Runs plug-ins in this process, where one that crashes ends the host")
        ->disable_flag_override();
    app.add_option("--restart-wait", into.restartWait,
           "The longest wait before a plug-in that crashed is started again (30)")
        ->type_name("SECONDS");
    app.add_option("--watchdog", into.watchdog,
           "How long the main loop may stand still before the host aborts, 0 for ever (10)")
        ->type_name("SECONDS");
    app.add_option("--state-dir", into.stateFolder, "Where settings are kept")->type_name("DIR");
    app.add_option("--log-level", into.logLevel, "How much is logged (info)")
        ->type_name("trace|debug|info|warn|error");
    app.add_option("--log-file", into.logFile, "Where the log goes (standard error)")
        ->type_name("FILE");
    app.add_option("--log-size", into.logSize, "How large the log's file grows (10), 0: any size")
        ->type_name("MIB");
}

QString text(const std::string &argument)
{
    return QString::fromStdString(argument);
}

QString setValue(HostOptions &options, const QString &assignment)
{
    const int equals = assignment.indexOf(QLatin1Char('='));
    if (equals < 0)
        return QStringLiteral("\"%1\" is no PATH=VALUE").arg(assignment);
    return HostOption::addPinned(options, assignment.left(equals), assignment.mid(equals + 1));
}

QString setFile(QString &option, const QString &name)
{
    option = name;
    return name.isEmpty() ? QStringLiteral("a name is needed") : QString();
}

/// Puts what the command line says over what the configuration file said.
QString apply(const Arguments &arguments, HostOptions &options)
{
    QString complaint;
    const auto check = [&](const char *option, const QString &result) {
        if (complaint.isEmpty() && !result.isEmpty())
            complaint = QStringLiteral("%1: %2").arg(QLatin1String(option), result);
    };

    if (!arguments.plugins.empty())
        options.plugins.clear();
    for (const std::string &file : arguments.plugins)
        check("--plugin", HostOption::addPlugin(options, text(file), {}));
    for (const std::string &value : arguments.values)
        check("--set", setValue(options, text(value)));
    for (const std::string &entry : arguments.connectTo)
        check("--connect-to", HostOption::addConnectTo(options, text(entry)));
    if (arguments.listen)
        check("--listen", HostOption::setListen(options, text(*arguments.listen)));
    if (arguments.audio)
        check("--audio", HostOption::setAudio(options, text(*arguments.audio)));
    if (arguments.inProcess)
        options.inProcess = true;
    if (arguments.restartWait)
        check("--restart-wait", HostOption::setRestartWait(options, text(*arguments.restartWait)));
    if (arguments.watchdog)
        check("--watchdog", HostOption::setWatchdog(options, text(*arguments.watchdog)));
    if (arguments.logLevel)
        check("--log-level", HostOption::setLogLevel(options, text(*arguments.logLevel)));
    if (arguments.caFile)
        check("--ca-file", setFile(options.caFile, text(*arguments.caFile)));
    if (arguments.stateFolder)
        check("--state-dir", setFile(options.stateFolder, text(*arguments.stateFolder)));
    if (arguments.logSize)
        check("--log-size", HostOption::setLogSize(options, text(*arguments.logSize)));
    if (arguments.logFile)
        check("--log-file", setFile(options.logFile, text(*arguments.logFile)));
    return complaint;
}

HostCommandLine ended(int status, const QString &output)
{
    HostCommandLine result;
    result.status = status;
    result.text = output;
    return result;
}

} // namespace

HostCommandLine parseHostCommandLine(const QStringList &arguments)
{
    CLI::App app("Plays internet radio through plug-ins; browse it with a web browser or veskctl.",
        "vesk-host");
    Arguments read;
    addOptions(app, read);
    if (const auto end = readCommandLine(app, arguments))
        return ended(end->status, end->text);

    HostCommandLine result;
    QString complaint;
    if (read.config)
        complaint = readHostConfigFile(text(*read.config), result.options);
    if (complaint.isEmpty())
        complaint = apply(read, result.options);
    if (complaint.isEmpty() && !result.options.audio.problem().isEmpty())
        complaint = QStringLiteral("--audio: ") + result.options.audio.problem();
    if (!complaint.isEmpty())
        return ended(2, complaint);
    result.run = true;
    return result;
}
