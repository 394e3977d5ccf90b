// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/CtlCommandLine.h"

#include <QDateTime>
#include <QVector>

#include <algorithm>

namespace {

/// A device that may come into the host.
struct Device {
    QString id;
    QString name;
    QString role;
    /// ISO 8601, UTC; the second one is empty for a device that was never seen.
    QString paired;
    QString seen;
    QString address;
    bool connected = false;
    /// The one that asks.
    bool current = false;
};

Device deviceIn(const QVariantHash &json)
{
    const auto text = [&](const char *name) { return json.value(QLatin1String(name)).toString(); };
    return {text("id"), text("name"), text("role"), text("paired"), text("seen"), text("address"),
        json.value(QStringLiteral("connected")).toBool(),
        json.value(QStringLiteral("current")).toBool()};
}

QString roleText(const QString &role)
{
    if (role == QLatin1String("owner"))
        return ctlText("owner");
    return role == QLatin1String("listener") ? ctlText("listener") : role;
}

/// In the local time zone; empty for no time.
QString timeText(const QString &time)
{
    const QDateTime utc = QDateTime::fromString(time, Qt::ISODate);
    return utc.isValid() ? utc.toLocalTime().toString(QStringLiteral("yyyy-MM-dd hh:mm"))
                         : QString();
}

QString presence(const Device &device)
{
    if (device.current)
        return ctlText("this device");
    if (device.connected)
        return ctlText("connected");
    const QString seen = timeText(device.seen);
    return seen.isEmpty() ? ctlText("never seen") : ctlText("seen %1").arg(seen);
}

class Devices {
public:
    explicit Devices(HostSession &session)
        : m_session(session)
    {
    }

    CtlResult<> list();
    CtlResult<> rename();
    CtlResult<> setRole();
    CtlResult<> revoke();

private:
    CtlResult<QVariantList> read();
    CtlResult<Device> named();
    CtlResult<Device> named(const QVector<Device> &devices);
    CtlResult<Device> namedForRevoking();
    bool isThrownOut(const RpcAnswer &answer);
    void print(const QVector<Device> &devices);
    void printFields(const Device &device);

    HostSession &m_session;
};

CtlResult<QVariantList> Devices::read()
{
    const auto result = m_session.call(QStringLiteral("devices.list"));
    if (!result)
        return failure(result.error());
    return result->value(QStringLiteral("devices")).toList();
}

QVector<Device> devicesIn(const QVariantList &list)
{
    QVector<Device> devices;
    for (const QVariant &device : list)
        devices.append(deviceIn(device.toHash()));
    return devices;
}

CtlResult<> Devices::list()
{
    const auto list = read();
    if (!list)
        return failure(list.error());
    if (m_session.options().json) {
        m_session.printJson(QVariantHash {{QStringLiteral("devices"), *list}});
        return {};
    }
    const QVector<Device> devices = devicesIn(*list);
    if (devices.isEmpty())
        m_session.note(ctlText("no device is paired"));
    else if (m_session.isForTerminal())
        print(devices);
    else
        std::for_each(
            devices.begin(), devices.end(), [this](const Device &device) { printFields(device); });
    return {};
}

/// A device's line, and below it what is needed less often.
void Devices::print(const QVector<Device> &devices)
{
    const CtlTerminal &terminal = m_session.terminal();
    const int half = terminal.width / 2;
    int column = 0;
    for (const Device &device : devices)
        column = std::max(column, textWidth(printableText(device.name)));
    column = std::min(column, half);
    for (const Device &device : devices) {
        const QString name = elided(printableText(device.name), column);
        const QString rest
            = elided(printableText(roleText(device.role) + QStringLiteral(", ") + presence(device)),
                terminal.width - column - 2);
        const QString details = QStringList {device.id, device.address}.join(QLatin1Char(' '));
        terminal.out << m_session.style().bold(name)
                     << padded(QString(), column - textWidth(name) + 2).toStdString()
                     << rest.toStdString() << '\n'
                     << m_session.style().dim(QStringLiteral("  ")
                            + elided(printableText(details).trimmed(), terminal.width - 2))
                     << '\n';
    }
}

void Devices::printFields(const Device &device)
{
    m_session.printFields({device.id, device.name, device.role, device.paired, device.seen,
        device.address, device.connected ? QStringLiteral("connected") : QString(),
        device.current ? QStringLiteral("current") : QString()});
}

CtlResult<Device> Devices::named(const QVector<Device> &devices)
{
    const QString &wanted = m_session.options().device;
    QStringList ids;
    Device found;
    for (const Device &device : devices) {
        if (device.id == wanted)
            return device;
        if (device.name.compare(wanted, Qt::CaseInsensitive) == 0) {
            ids.append(device.id);
            found = device;
        }
    }
    if (ids.isEmpty())
        return m_session.fail(CtlStatus::Failed, ctlText("there is no device \"%1\"").arg(wanted));
    if (ids.size() > 1) {
        return m_session.fail(CtlStatus::BadUsage,
            ctlText("several devices are called \"%1\": name one by its id (%2)")
                .arg(wanted, ids.join(QLatin1String(", "))));
    }
    return found;
}

CtlResult<Device> Devices::named()
{
    const auto list = read();
    if (!list)
        return failure(list.error());
    return named(devicesIn(*list));
}

CtlResult<> Devices::rename()
{
    const auto device = named();
    if (!device)
        return failure(device.error());
    const QString name = m_session.options().words.join(QLatin1Char(' '));
    const auto renamed = m_session.call(QStringLiteral("devices.rename"),
        {{QStringLiteral("id"), device->id}, {QStringLiteral("name"), name}});
    if (!renamed)
        return failure(renamed.error());
    m_session.tell(ctlText("%1: now called \"%2\"").arg(device->name, name),
        {{QStringLiteral("id"), device->id}, {QStringLiteral("name"), name}});
    return {};
}

CtlResult<> Devices::setRole()
{
    const QString &role = m_session.options().role;
    if (role != QLatin1String("listener") && role != QLatin1String("owner")) {
        return m_session.fail(CtlStatus::BadUsage,
            ctlText("\"%1\" is no role; there are: %2")
                .arg(role, QStringLiteral("listener, owner")));
    }
    const auto device = named();
    if (!device)
        return failure(device.error());
    const auto changed = m_session.call(QStringLiteral("devices.setRole"),
        {{QStringLiteral("id"), device->id}, {QStringLiteral("role"), role}});
    if (!changed)
        return failure(changed.error());
    m_session.tell((role == QLatin1String("owner") ? ctlText("%1: an owner now")
                                                   : ctlText("%1: a listener now"))
                       .arg(device->name),
        {{QStringLiteral("id"), device->id}, {QStringLiteral("name"), device->name},
            {QStringLiteral("role"), role}});
    return {};
}

/// A listener sees no list, but may leave.
CtlResult<Device> Devices::namedForRevoking()
{
    const RpcAnswer list = m_session.answer(QStringLiteral("devices.list"));
    if (list.kind == RpcAnswer::Result)
        return named(devicesIn(list.result.toHash().value(QStringLiteral("devices")).toList()));
    if (list.kind != RpcAnswer::Error || list.code != RpcAnswer::NotAllowed)
        return m_session.report(list);
    const auto info = m_session.call(QStringLiteral("access.info"));
    if (!info)
        return failure(info.error());
    Device own = deviceIn(info->value(QStringLiteral("device")).toHash());
    own.current = true;
    const QString &wanted = m_session.options().device;
    if (own.id == wanted || own.name.compare(wanted, Qt::CaseInsensitive) == 0)
        return own;
    return m_session.report(list);
}

CtlResult<> Devices::revoke()
{
    const auto device = namedForRevoking();
    if (!device)
        return failure(device.error());
    const RpcAnswer answer
        = m_session.answer(QStringLiteral("devices.revoke"), {{QStringLiteral("id"), device->id}});
    if (answer.kind != RpcAnswer::Result && !(device->current && isThrownOut(answer)))
        return m_session.report(answer);
    if (device->current) {
        KnownHosts known(m_session.terminal().knownHosts);
        if (const auto forgotten = known.forget(m_session.options().host); !forgotten)
            m_session.note(forgotten.error());
    }
    m_session.tell(ctlText("%1: not paired any more").arg(device->name),
        {{QStringLiteral("id"), device->id}, {QStringLiteral("name"), device->name},
            {QStringLiteral("paired"), false}});
    return {};
}

/// The host closes the connections of a device at once, maybe before it answers.
bool Devices::isThrownOut(const RpcAnswer &answer)
{
    return answer.kind == RpcAnswer::NoHost
        && m_session.answer(QStringLiteral("access.info")).refusal == HostRefusal::Revoked;
}

} // namespace

void addDeviceCommands(Command app, CtlCommandLine &line)
{
    CtlOptions &options = line.options;
    Command devices = app.add("devices", "Show the devices that are paired with the host");
    // CLI11 chooses a command below this one first.
    devices.onChosen([&line] {
        if (!line.run)
            line.run = [](HostSession &session) { return Devices(session).list(); };
    });
    const auto add = [&](const char *name, const char *description, CtlResult<> (Devices::*run)()) {
        Command command = addCommand(devices, name, description, line,
            [run](HostSession &session) { return (Devices(session).*run)(); });
        command.addOption("DEVICE", options.device, "Its id, or its name").required();
        return command;
    };
    add("rename", "Give a device another name", &Devices::rename)
        .addOption("NAME", options.words, "The new name")
        .required();
    add("role", "Change what a device may do", &Devices::setRole)
        .addOption("ROLE", options.role, "listener or owner")
        .required();
    add("revoke", "Let a device in no more", &Devices::revoke);
}
