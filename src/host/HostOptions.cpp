// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/HostOptions.h"

#include "api/nodes/CMValuesWorker.h"
#include "host/settings/SettingsFile.h"
#include "plugin/runtime/HostFolders.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

namespace {

using Done = Result<void, QString>;

constexpr int MaxListeners = 16;

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

Done addListen(HostOptions &options, const QVariant &value, const QString &)
{
    const QString address = value.toString();
    const QRegularExpression form(QStringLiteral("^(?:\\[([^\\[\\]]*)\\]|([^:]*)):(\\d{1,5})$"));
    const QRegularExpressionMatch match = form.match(address);
    const int port = match.captured(3).toInt();
    if (!match.hasMatch() || port > 65535)
        return failure(QStringLiteral("\"%1\" is no ADDRESS:PORT").arg(address));
    const QString name = match.captured(1) + match.captured(2);
    if (name != QLatin1String("localhost")
        && (name.contains(QLatin1Char('/')) || !AddressRange::parse(name)))
        return failure(QStringLiteral("\"%1\" is no IP address").arg(name));
    if (options.listen.size() >= MaxListeners)
        return failure(QStringLiteral("that are too many addresses"));
    options.listen.append({name, static_cast<quint16>(port)});
    return {};
}

/// A text of at most a host name's length that \a form matches.
Result<QByteArray, QString> textOf(const QVariant &value, const char *form, const char *what)
{
    const QString text = value.toString();
    const QRegularExpression whole(QRegularExpression::anchoredPattern(QString::fromLatin1(form)));
    if (value.userType() != QMetaType::QString || text.size() > 300
        || !whole.match(text).hasMatch())
        return failure(QStringLiteral("\"%1\" is no %2").arg(text, QLatin1String(what)));
    return text.toLatin1();
}

Done addHost(HostOptions &options, const QVariant &value, const QString &)
{
    const auto host = textOf(
        value, "(?:[A-Za-z0-9._-]+|\\[[0-9A-Fa-f:.]+\\])(?::\\d{1,5})?", "NAME or NAME:PORT");
    if (!host)
        return failure(host.error());
    options.names.hosts.append(host->toLower());
    return {};
}

Done addOrigin(HostOptions &options, const QVariant &value, const QString &)
{
    const auto origin = textOf(value,
        "https?://(?:[A-Za-z0-9._-]+|\\[[0-9A-Fa-f:.]+\\])(?::\\d{1,5})?", "http(s)://NAME[:PORT]");
    if (!origin)
        return failure(origin.error());
    options.names.origins.append(origin->toLower());
    return {};
}

Done setBasePath(HostOptions &options, const QVariant &value, const QString &)
{
    const auto path = textOf(value, "(?:/[A-Za-z0-9._~-]+)*/?", "path like /radio");
    if (!path)
        return failure(path.error());
    options.names.basePath = path->endsWith('/') ? path->chopped(1) : *path;
    return {};
}

Done addProxy(HostOptions &options, const QVariant &value, const QString &)
{
    const auto range = AddressRange::parse(value.toString());
    if (!range)
        return failure(range.error());
    options.names.proxies.append(*range);
    return {};
}

Done setFlag(bool &option, const QVariant &value)
{
    if (value.userType() != QMetaType::Bool)
        return failure(QStringLiteral("true or false is needed"));
    option = value.toBool();
    return {};
}

Done addPinned(HostOptions &options, const QString &path, const QVariant &value)
{
    const CMPath valuePath = CMPath::fromEncoded(path);
    const HostValueDefinition *definition = options.values.find(valuePath);
    if (!definition)
        return failure(QStringLiteral("there is no value \"%1\"").arg(path));
    const VeskValue read = CMValuesWorker::fromPlain(value, definition->initial.type());
    const bool isSecret = isSecretValue(valuePath);
    const CMError wrong
        = checkHostValue(*definition, isSecret ? QVariant(QStringLiteral("***")) : value, read);
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
    // An unquoted null is no text in YAML.
    const auto spec
        = AudioOutputSpec::parse(value.isValid() ? value.toString() : QStringLiteral("null"));
    if (!spec)
        return failure(spec.error());
    options.audio = *spec;
    options.isAudioGiven = true;
    if (!options.audio.file.isEmpty())
        return setFile(options.audio.file, options.audio.file, folder);
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

Done setConnections(HostOptions &options, const QVariant &value, const QString &)
{
    bool ok = false;
    const int connections = value.toString().toInt(&ok);
    if (!ok || connections < 8 || connections > 10000) {
        return failure(QStringLiteral("\"%1\" is no number from 8 to 10000").arg(value.toString()));
    }
    options.connections = connections;
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

QVector<ListenAddress> HostOptions::listenAddresses() const
{
    if (listen.isEmpty())
        return {ListenAddress()};
    const auto servesLoopback = [](const ListenAddress &address) {
        return !address.isBeyondLoopback() || address.isAny();
    };
    if (std::any_of(listen.begin(), listen.end(), servesLoopback))
        return listen;
    return listen + QVector<ListenAddress> {{ListenAddress().address, listen.first().port}};
}

bool HostOptions::isBeyondLoopback() const
{
    return std::any_of(listen.begin(), listen.end(),
        [](const ListenAddress &address) { return address.isBeyondLoopback(); });
}

QString HostOptions::stateFolderInUse() const
{
    return stateFolder.isEmpty() ? SettingsFile::defaultFolder() : stateFolder;
}

bool isSecretValue(const CMPath &path)
{
    static const QStringList ends {QStringLiteral("partnerid"), QStringLiteral("password"),
        QStringLiteral("token"), QStringLiteral("secret"), QStringLiteral("key"),
        QStringLiteral("session"), QStringLiteral("sessionid")};
    const QString name = path.toEncoded().toLower();
    return std::any_of(
        ends.begin(), ends.end(), [&name](const QString &end) { return name.endsWith(end); });
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
        {HostOption::Repeated, "--plugin", "plugins", "FILE.so", "A plug-in to load", nullptr,
            &addPlugin, [](HostOptions &into) { into.plugins.clear(); }},
        {HostOption::OneOrMore, "--listen", "listen", "ADDRESS:PORT",
            "Where to serve clients; devices beyond this one need to be paired", "127.0.0.1:8765",
            &addListen, [](HostOptions &into) { into.listen.clear(); }},
        {HostOption::Single, "--cert", "cert", "FILE",
            "The certificate for other devices (one that the host makes)", nullptr,
            [](HostOptions &into, const QVariant &value, const QString &folder) {
                return setFile(into.certificateFile, value, folder);
            }},
        {HostOption::Single, "--key", "key", "FILE", "The private key of --cert", nullptr,
            [](HostOptions &into, const QVariant &value, const QString &folder) {
                return setFile(into.keyFile, value, folder);
            }},
        {HostOption::Flag, "--plain-http", "plainHttp", nullptr,
            "Serves other devices without TLS, so that everybody in the network can read along",
            "false",
            [](HostOptions &into, const QVariant &value, const QString &) {
                return setFlag(into.plainHttp, value);
            }},
        {HostOption::Repeated, "--allow-host", "allowHosts", "NAME[:PORT]",
            "One more name by which devices may know this host", nullptr, &addHost},
        {HostOption::Repeated, "--allow-origin", "allowOrigins", "https://NAME",
            "Where a proxy serves the page", nullptr, &addOrigin},
        {HostOption::Single, "--base-path", "basePath", "/PATH",
            "Below which path a proxy serves the page", nullptr, &setBasePath},
        {HostOption::Repeated, "--trust-proxy", "trustProxies", "ADDRESS[/BITS]",
            "A proxy that says who its clients are", nullptr, &addProxy},
        {HostOption::Single, "--connections", "connections", "NUMBER",
            "How many clients may be connected", "64", &setConnections},
        {HostOption::Assignment, "--set", "values", "PATH=VALUE",
            "Sets a value and keeps it as it is", nullptr, &addAssignment},
        {HostOption::Repeated, "--connect-to", "connectTo", "HOST:PORT:ADDRESS:PORT",
            "Connects elsewhere for HOST:PORT", nullptr, &addConnectTo},
        {HostOption::Single, "--ca-file", "caFile", "FILE",
            "One more certificate authority to trust", nullptr,
            [](HostOptions &into, const QVariant &value, const QString &folder) {
                return setFile(into.caFile, value, folder);
            }},
        {HostOption::Single, "--audio", "audio", "OUTPUT",
            "Where sound goes: auto, null, wav:FILE, alsa[:DEVICE], pulse[:NAME], pipewire[:NAME], "
            "jack, pipe:FILE or tcp:HOST:PORT",
            "auto", &setAudio},
        {HostOption::Flag, "--in-process", "inProcess", nullptr,
            "Runs plug-ins in this process, where one that crashes ends the host", "false",
            [](HostOptions &into, const QVariant &value, const QString &) {
                return setFlag(into.inProcess, value);
            }},
        {HostOption::Single, "--restart-wait", "restartWait", "SECONDS",
            "The longest wait before a plug-in that crashed is started again", "30",
            [](HostOptions &into, const QVariant &value, const QString &) {
                return setSeconds(into.restartWait, value);
            }},
        {HostOption::Single, "--watchdog", "watchdog", "SECONDS",
            "How long the main loop may stand still before the host aborts, 0 for ever", "10",
            [](HostOptions &into, const QVariant &value, const QString &) {
                return setSeconds(into.watchdog, value);
            }},
        {HostOption::Single, "--state-dir", "stateFolder", "DIR", "Where settings are kept",
            nullptr,
            [](HostOptions &into, const QVariant &value, const QString &folder) {
                return setFile(into.stateFolder, value, folder);
            }},
        {HostOption::Single, "--log-level", "logLevel", "trace|debug|info|warn|error",
            "How much is logged", "info", &setLogLevel, nullptr, true},
        {HostOption::Single, "--log-file", "logFile", "FILE", "Where the log goes (standard error)",
            nullptr,
            [](HostOptions &into, const QVariant &value, const QString &folder) {
                return setFile(into.logFile, value, folder);
            }},
        {HostOption::Single, "--log-size", "logSize", "MIB",
            "How large the log's file grows, 0: to any size", "10", &setLogSize, nullptr, true},
    };
    return options;
}
