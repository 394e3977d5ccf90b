// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/HostOptions.h"

#include "api/nodes/CMValuesWorker.h"
#include "plugin/runtime/HostFolders.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace {

using Done = Result<void, QString>;

Done setFile(QString &option, const QVariant &value, const QString &folder)
{
    const QString name = value.toString();
    if (value.userType() != QMetaType::QString || name.isEmpty())
        return failure(QStringLiteral("a file's name is needed"));
    option = folder.isEmpty() ? name : QDir(folder).absoluteFilePath(name);
    return {};
}

Done addPlugin(HostOptions &options, const QVariant &value, const QString &folder)
{
    const bool isObject = value.userType() == QMetaType::QVariantHash;
    const QVariantHash object = value.toHash();
    PluginOptions plugin;
    plugin.serviceId = object.value(QStringLiteral("serviceId")).toString();
    const Done done
        = setFile(plugin.file, isObject ? object.value(QStringLiteral("file")) : value, folder);
    if (done)
        options.plugins.append(plugin);
    return done;
}

Done setListen(HostOptions &options, const QVariant &value, const QString &)
{
    const QString address = value.toString();
    const QRegularExpression form(QStringLiteral("^(?:\\[([^\\[\\]]*)\\]|([^:]*)):(\\d{1,5})$"));
    const QRegularExpressionMatch match = form.match(address);
    const int port = match.captured(3).toInt();
    if (!match.hasMatch() || port > 65535)
        return failure(QStringLiteral("\"%1\" is no ADDRESS:PORT").arg(address));
    const QString name = match.captured(1) + match.captured(2);
    const QStringList loopback {
        QStringLiteral("127.0.0.1"), QStringLiteral("localhost"), QStringLiteral("::1")};
    if (!loopback.contains(name)) {
        return failure(
            QStringLiteral("\"%1\" is not 127.0.0.1, localhost or [::1]: everybody in the "
                           "network could use this host")
                .arg(name));
    }
    options.listen = {name, static_cast<quint16>(port)};
    return {};
}

Done addPinned(HostOptions &options, const QString &path, const QVariant &value)
{
    const CMPath valuePath = CMPath::fromEncoded(path);
    const HostValueDefinition *definition = options.values.find(valuePath);
    if (!definition)
        return failure(QStringLiteral("there is no value \"%1\"").arg(path));
    const VeskValue read = CMValuesWorker::fromPlain(value, definition->initial.type());
    const CMError wrong = checkHostValue(*definition, value, read);
    if (!wrong.isEmpty())
        return failure(QStringLiteral("%1: %2").arg(path, wrong.message().toString()));
    options.pinned.append({valuePath, read});
    return {};
}

Done addAssignment(HostOptions &options, const QVariant &value, const QString &)
{
    if (value.userType() == QMetaType::QVariantHash) {
        const QVariantHash entry = value.toHash();
        return addPinned(options, entry.begin().key(), entry.begin().value());
    }
    const QString assignment = value.toString();
    const int equals = assignment.indexOf(QLatin1Char('='));
    if (equals < 0)
        return failure(QStringLiteral("\"%1\" is no PATH=VALUE").arg(assignment));
    return addPinned(options, assignment.left(equals), assignment.mid(equals + 1));
}

/// As curl's option of that name: each of host, port, address and port may be left out.
Done addConnectTo(HostOptions &options, const QVariant &value, const QString &)
{
    const QRegularExpression form(
        QStringLiteral("^(?:[^:\\[\\]]*|\\[[0-9a-fA-F:.]+\\]):\\d{0,5}"
                       ":(?:[^:\\[\\]]*|\\[[0-9a-fA-F:.]+\\]):\\d{0,5}$"));
    const QString entry = value.toString();
    if (!form.match(entry).hasMatch())
        return failure(QStringLiteral("\"%1\" is no HOST:PORT:ADDRESS:PORT").arg(entry));
    options.connectTo.append(entry);
    return {};
}

Done setAudio(HostOptions &options, const QVariant &value, const QString &folder)
{
    const auto spec = AudioOutputSpec::parse(value.toString());
    if (!spec)
        return failure(
            QStringLiteral("\"%1\" is not auto, null or wav:FILE").arg(value.toString()));
    options.audio = *spec;
    if (options.audio.kind == AudioOutputSpec::Wav)
        return setFile(options.audio.file, options.audio.file, folder);
    return {};
}

Done setInProcess(HostOptions &options, const QVariant &value, const QString &)
{
    if (value.userType() != QMetaType::Bool)
        return failure(QStringLiteral("true or false is needed"));
    options.inProcess = value.toBool();
    return {};
}

/// A number from 0 to \a largest, for which a text may stand, too.
Result<double, QString> number(const QVariant &value, int largest, const char *unit)
{
    bool ok = false;
    const double number = value.toDouble(&ok);
    if (ok && number >= 0 && number <= largest) // not so for NaN
        return number;
    return failure(QStringLiteral("\"%1\" is no number of %2 up to %3")
                       .arg(value.toString(), QLatin1String(unit), QString::number(largest)));
}

Done setSeconds(std::chrono::milliseconds &option, const QVariant &value)
{
    const auto seconds = number(value, 3600, "seconds");
    if (!seconds)
        return failure(seconds.error());
    option = std::chrono::milliseconds(qRound64(*seconds * 1000));
    return {};
}

Done setLogLevel(HostOptions &options, const QVariant &value, const QString &)
{
    const QStringList levels {QStringLiteral("trace"), QStringLiteral("debug"),
        QStringLiteral("info"), QStringLiteral("warn"), QStringLiteral("error")};
    const QString level = value.toString();
    if (!levels.contains(level)) {
        return failure(
            QStringLiteral("\"%1\" is not %2").arg(level, levels.join(QStringLiteral(", "))));
    }
    options.logLevel = level;
    return {};
}

Done setLogSize(HostOptions &options, const QVariant &value, const QString &)
{
    const auto mebibytes = number(value, 1024 * 1024, "MiB");
    if (!mebibytes)
        return failure(mebibytes.error());
    options.logSize = qRound64(*mebibytes * 1024 * 1024);
    return {};
}

} // namespace

QString PluginOptions::effectiveServiceId() const
{
    if (!serviceId.isEmpty())
        return serviceId;
    const QString name = QFileInfo(file).baseName();
    const QString prefix = QStringLiteral("libvesk_cb_");
    return name.startsWith(prefix) ? name.mid(prefix.size()) : name;
}

void readPlugins(HostOptions &options)
{
    if (options.plugins.isEmpty()) {
        const auto found = HostFolders::pluginsIn(HostFolders::pluginFolders());
        for (int i = 0; i < found.hidden.size(); ++i) {
            options.pluginNotes.append(QStringLiteral("%1 is not used: %2 has the same name")
                                           .arg(found.hidden.at(i), found.instead.at(i)));
        }
        for (const QString &file : found.used) {
            PluginOptions plugin;
            plugin.file = file;
            options.plugins.append(plugin);
        }
    }
    QStringList ids;
    for (PluginOptions &plugin : options.plugins) {
        const QString file = PluginDescriptor::fileOf(plugin.file);
        const auto descriptor = PluginDescriptor::read(file);
        Done done;
        if (!descriptor)
            done = failure(descriptor.error());
        else if (ids.contains(descriptor->id))
            done = failure(
                QStringLiteral("there is a plug-in with the id %1 already").arg(descriptor->id));
        else
            done = options.values.add(*descriptor);
        if (!done) {
            plugin.problem = QFileInfo(file).fileName() + QStringLiteral(": ") + done.error();
            continue;
        }
        plugin.descriptor = *descriptor;
        ids.append(descriptor->id);
    }
}

const QVector<HostOption> &hostOptions()
{
    static const QVector<HostOption> options {
        {HostOption::Repeated, "--plugin", "plugins", "FILE.so", "A plug-in to load", &addPlugin},
        {HostOption::Single, "--listen", "listen", "ADDRESS:PORT",
            "Where to serve clients (127.0.0.1:8765)", &setListen},
        {HostOption::Assignment, "--set", "values", "PATH=VALUE",
            "Sets a value and keeps it as it is", &addAssignment},
        {HostOption::Repeated, "--connect-to", "connectTo", "HOST:PORT:ADDRESS:PORT",
            "Connects elsewhere for HOST:PORT", &addConnectTo},
        {HostOption::Single, "--ca-file", "caFile", "FILE",
            "One more certificate authority to trust",
            [](HostOptions &into, const QVariant &value, const QString &folder) {
                return setFile(into.caFile, value, folder);
            }},
        {HostOption::Single, "--audio", "audio", "auto|null|wav:FILE", "Where sound goes (auto)",
            &setAudio},
        {HostOption::Flag, "--in-process", "inProcess", nullptr,
            "Runs plug-ins in this process, where one that crashes ends the host", &setInProcess},
        {HostOption::Single, "--restart-wait", "restartWait", "SECONDS",
            "The longest wait before a plug-in that crashed is started again (30)",
            [](HostOptions &into, const QVariant &value, const QString &) {
                return setSeconds(into.restartWait, value);
            }},
        {HostOption::Single, "--watchdog", "watchdog", "SECONDS",
            "How long the main loop may stand still before the host aborts, 0 for ever (10)",
            [](HostOptions &into, const QVariant &value, const QString &) {
                return setSeconds(into.watchdog, value);
            }},
        {HostOption::Single, "--state-dir", "stateFolder", "DIR", "Where settings are kept",
            [](HostOptions &into, const QVariant &value, const QString &folder) {
                return setFile(into.stateFolder, value, folder);
            }},
        {HostOption::Single, "--log-level", "logLevel", "trace|debug|info|warn|error",
            "How much is logged (info)", &setLogLevel},
        {HostOption::Single, "--log-file", "logFile", "FILE", "Where the log goes (standard error)",
            [](HostOptions &into, const QVariant &value, const QString &folder) {
                return setFile(into.logFile, value, folder);
            }},
        {HostOption::Single, "--log-size", "logSize", "MIB",
            "How large the log's file grows (10), 0: any size", &setLogSize},
    };
    return options;
}
