// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/core/log.h"
#include "api/web/HttpClient.h"
#include "base/cli/CommandLine.h"
#include "host/Host.h"
#include "host/HostCommandLine.h"
#include "host/HostConfigFile.h"
#include "host/HostConfinement.h"
#include "host/TerminationSignals.h"
#include "host/Watchdog.h"
#include "host/player/StreamFormats.h"
#include "host/store/StateVersion.h"
#include "plugin/runtime/Descriptors.h"
#include "plugin/runtime/Logging.h"
#include "plugin/runtime/Memory.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <log4cplus/initializer.h>

#include <csignal>
#include <iostream>
#include <optional>
#include <unistd.h>

VESK_LOGGER("Host")

namespace {

enum ExitStatus { Success = 0, Failure = 1, BadUsage = 2 };

/// One line, whatever the text holds.
int complain(int status, const QString &text)
{
    std::cerr << "vesk-host: " << text.simplified().toStdString() << std::endl;
    return status;
}

/// Opens the log's file anew, reads the certificate again, and takes over what can change of the
/// configuration.
void readAgain(Host &host, const QStringList &arguments)
{
    reopenLog();
    host.renewIdentity();
    if (const auto commandLine = parseHostCommandLine(arguments))
        host.reconfigure(*commandLine);
    else
        VESK_ERROR("The configuration stays as it was: " << commandLine.error().text);
}

int run(const HostOptions &options, const QStringList &arguments)
{
    std::optional<Watchdog> watchdog;
    if (options.watchdog.count() > 0)
        watchdog.emplace(options.watchdog);
    Host host(options);
    TerminationSignals signals;
    int status = Success;
    QObject::connect(&host, &Host::ready, [](const QString &url) {
        std::cout << "vesk-host: ready at " << url.toStdString() << std::endl;
    });
    QObject::connect(&host, &Host::failed, [&](const QString &reason) {
        status = complain(Failure, reason);
        host.stop();
    });
    QObject::connect(&signals, &TerminationSignals::requested, &host, &Host::stop);
    QObject::connect(&signals, &TerminationSignals::hungUp, &host,
        [&host, &arguments] { readAgain(host, arguments); });
    QObject::connect(&host, &Host::stopped, [&](bool complete) {
        if (!complete)
            ::_exit(Failure);
        QCoreApplication::exit(status);
    });
    host.start();
    QCoreApplication::exec();
    return status;
}

} // namespace

int main(int argc, char **argv)
{
    TerminationSignals::hold();
    // What the host itself was started with is not for its own programs.
    keepDescriptorsFromPrograms(STDERR_FILENO + 1);
    setUpMemory();
    const bool isAlone = endLoggingThreads();
    const QStringList notConfined = confineHost();
    // The server and the network monitor live in GLib's main loop, which Qt must therefore run.
    qunsetenv("QT_NO_GLIB");
    // GLib would ask NetworkManager otherwise, by calls that wait for a system bus that hangs, and
    // over a connection that ends the process with the bus.
    qputenv("GIO_USE_NETWORK_MONITOR", "netlink");
    const bool hasChosenPlugins = useRadioPluginsOnly();
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN); // a file that may grow no more is an error of its write
    const log4cplus::Initializer logging;
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("vesk-host"));

    const QStringList arguments = commandLineArguments(argc, argv);
    const auto commandLine = parseHostCommandLine(arguments);
    if (!commandLine) {
        const CommandLineEnd &end = commandLine.error();
        if (end.status != Success)
            return complain(end.status, end.text);
        std::cout << end.text.toStdString() << std::flush;
        return Success;
    }
    const HostOptions &options = *commandLine;
    // Before anything is opened that may lie in the folder.
    if (const auto state = StateVersion(options.stateFolderInUse()).check(); !state)
        return complain(ExitStatus::Failure, state.error());
    const auto logged = setUpLogging(options.logLevel, options.logFile, options.logSize);
    if (!logged)
        return complain(BadUsage, QStringLiteral("--log-file: ") + logged.error());
    if (!isAlone)
        VESK_WARN("There are threads that are not confined.");
    for (const QString &line : notConfined)
        VESK_INFO(line);
    if (!hasChosenPlugins)
        VESK_INFO("GStreamer looks at all of its plug-ins: a cache folder has no links to some.");
    if (options.configFile.isEmpty() && QFileInfo::exists(machineHostConfigFile()))
        VESK_WARN(machineHostConfigFile() << " is left out: this user may not read it.");
    if (!options.caFile.isEmpty() && !HttpClient::setCaFile(options.caFile)) {
        return complain(BadUsage,
            QStringLiteral("--ca-file: there is no certificate in %1").arg(options.caFile));
    }
    return run(options, arguments);
}
