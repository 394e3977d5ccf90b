// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/HostOptions.h"

#include "api/nodes/CMValuesWorker.h"
#include "host/settings/HostValues.h"

#include <QFileInfo>
#include <QRegularExpression>

QString PluginOptions::effectiveServiceId() const
{
    if (!serviceId.isEmpty())
        return serviceId;
    const QString name = QFileInfo(file).baseName();
    const QString prefix = QStringLiteral("libvesk_cb_");
    return name.startsWith(prefix) ? name.mid(prefix.size()) : name;
}

QString HostOption::addPlugin(HostOptions &options, const QString &file, const QString &serviceId)
{
    if (file.isEmpty())
        return QStringLiteral("a plug-in's file is missing");
    options.plugins.append({file, serviceId});
    return {};
}

QString HostOption::setListen(HostOptions &options, const QString &address)
{
    const QRegularExpression form(QStringLiteral("^(?:\\[([^\\[\\]]*)\\]|([^:]*)):(\\d{1,5})$"));
    const QRegularExpressionMatch match = form.match(address);
    const int port = match.captured(3).toInt();
    if (!match.hasMatch() || port > 65535)
        return QStringLiteral("\"%1\" is no ADDRESS:PORT").arg(address);
    const QString name = match.captured(1) + match.captured(2);
    const QStringList loopback {
        QStringLiteral("127.0.0.1"), QStringLiteral("localhost"), QStringLiteral("::1")};
    if (!loopback.contains(name)) {
        return QStringLiteral("\"%1\" is not 127.0.0.1, localhost or [::1]: everybody in the "
                              "network could use this host")
            .arg(name);
    }
    options.listen = {name, static_cast<quint16>(port)};
    return {};
}

QString HostOption::addPinned(HostOptions &options, const QString &path, const QVariant &value)
{
    const CMPath valuePath = CMPath::fromEncoded(path);
    const HostValueDefinition *definition = findHostValue(valuePath);
    if (!definition)
        return QStringLiteral("there is no value \"%1\"").arg(path);
    const VeskValue read = CMValuesWorker::fromPlain(value, definition->initial.type());
    const CMError wrong = checkHostValue(*definition, value, read);
    if (!wrong.isEmpty())
        return QStringLiteral("%1: %2").arg(path, wrong.message().toString());
    options.pinned.append({valuePath, read});
    return {};
}

QString HostOption::addConnectTo(HostOptions &options, const QString &entry)
{
    // As curl's option of that name: host and port, where they are given, go elsewhere.
    const QRegularExpression form(
        QStringLiteral("^(?:[^:\\[\\]]*|\\[[0-9a-fA-F:.]+\\]):\\d{0,5}"
                       ":(?:[^:\\[\\]]*|\\[[0-9a-fA-F:.]+\\]):\\d{0,5}$"));
    if (!form.match(entry).hasMatch())
        return QStringLiteral("\"%1\" is no HOST:PORT:ADDRESS:PORT").arg(entry);
    options.connectTo.append(entry);
    return {};
}

QString HostOption::setAudio(HostOptions &options, const QString &audio)
{
    bool ok = false;
    const AudioOutputSpec spec = AudioOutputSpec::parse(audio, ok);
    if (!ok)
        return QStringLiteral("\"%1\" is not auto, null or wav:FILE").arg(audio);
    options.audio = spec;
    return {};
}

namespace {

QString setSeconds(std::chrono::milliseconds &option, const QVariant &seconds)
{
    constexpr double Longest = 3600;
    bool ok = false;
    const double number = seconds.toDouble(&ok);
    if (!ok || !(number >= 0 && number <= Longest))
        return QStringLiteral("\"%1\" is no number of seconds up to 3600").arg(seconds.toString());
    option = std::chrono::milliseconds(qRound64(number * 1000));
    return {};
}

} // namespace

QString HostOption::setRestartWait(HostOptions &options, const QVariant &seconds)
{
    return setSeconds(options.restartWait, seconds);
}

QString HostOption::setWatchdog(HostOptions &options, const QVariant &seconds)
{
    return setSeconds(options.watchdog, seconds);
}

QString HostOption::setLogLevel(HostOptions &options, const QString &level)
{
    const QStringList levels {QStringLiteral("trace"), QStringLiteral("debug"),
        QStringLiteral("info"), QStringLiteral("warn"), QStringLiteral("error")};
    if (!levels.contains(level))
        return QStringLiteral("\"%1\" is not %2").arg(level, levels.join(QStringLiteral(", ")));
    options.logLevel = level;
    return {};
}

QString HostOption::setLogSize(HostOptions &options, const QVariant &mebibytes)
{
    constexpr int Largest = 1024 * 1024;
    bool ok = false;
    const double size = mebibytes.toDouble(&ok);
    if (!ok || !(size >= 0 && size <= Largest)) {
        return QStringLiteral("\"%1\" is no number of MiB up to %2")
            .arg(mebibytes.toString(), QString::number(Largest));
    }
    options.logSize = qRound64(size * 1024 * 1024);
    return {};
}
