// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/HostCommandLine.h"

#include "base/cli/CommandLine.h"
#include "host/HostConfigFile.h"

#include <optional>
#include <string>
#include <vector>

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

void addOptions(CommandLine &app, Arguments &into)
{
    app.addOption("--config", into.config, "A file with these options").valueName("FILE");
    app.addOption("--plugin", into.plugins, "A plug-in to load").valueName("FILE.so").oneAtATime();
    app.addOption("--listen", into.listen, "Where to serve clients (127.0.0.1:8765)")
        .valueName("ADDRESS:PORT");
    app.addOption("--set", into.values, "Sets a value and keeps it as it is")
        .valueName("PATH=VALUE")
        .oneAtATime();
    app.addOption("--connect-to", into.connectTo, "Connects elsewhere for HOST:PORT")
        .valueName("HOST:PORT:ADDRESS:PORT")
        .oneAtATime();
    app.addOption("--ca-file", into.caFile, "One more certificate authority to trust")
        .valueName("FILE");
    app.addOption("--audio", into.audio, "Where sound goes (auto)").valueName("auto|null|wav:FILE");
    app.addFlag("--in-process", into.inProcess,
           "Runs plug-ins in this process, where one that crashes ends the host")
        .plain();
    app.addOption("--restart-wait", into.restartWait,
           "The longest wait before a plug-in that crashed is started again (30)")
        .valueName("SECONDS");
    app.addOption("--watchdog", into.watchdog,
           "How long the main loop may stand still before the host aborts, 0 for ever (10)")
        .valueName("SECONDS");
    app.addOption("--state-dir", into.stateFolder, "Where settings are kept").valueName("DIR");
    app.addOption("--log-level", into.logLevel, "How much is logged (info)")
        .valueName("trace|debug|info|warn|error");
    app.addOption("--log-file", into.logFile, "Where the log goes (standard error)")
        .valueName("FILE");
    app.addOption("--log-size", into.logSize, "How large the log's file grows (10), 0: any size")
        .valueName("MIB");
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
    CommandLine app(
        "Plays internet radio through plug-ins; browse it with a web browser or veskctl.",
        "vesk-host");
    Arguments read;
    addOptions(app, read);
    if (const auto end = app.read(arguments))
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
