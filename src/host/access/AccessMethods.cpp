// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/access/AccessMethods.h"

#include "api/core/ThreadCheck.h"
#include "host/rpc/RpcMethods.h"

#include <utility>

namespace {

QVariant nullable(const QString &text)
{
    return text.isEmpty() ? QVariant() : QVariant(text);
}

QVariant nameOf(const QString &id, const QString &name)
{
    return QVariantHash {{QStringLiteral("id"), id}, {QStringLiteral("name"), name}};
}

QString stateName(Pairing::State state)
{
    switch (state) {
    case Pairing::State::Open:
        return QStringLiteral("open");
    case Pairing::State::Paired:
        return QStringLiteral("paired");
    case Pairing::State::Failed:
        return QStringLiteral("failed");
    case Pairing::State::Expired:
        return QStringLiteral("expired");
    case Pairing::State::Closed:
        break;
    }
    return QStringLiteral("closed");
}

JsonRpcError failureOf(const char *text)
{
    return RpcMethods::toRpcError(CMError(TrString("Host", text)));
}

void failParams(const JsonRpcCallPtr &call, const char *text)
{
    call->fail({JsonRpcError::InvalidParams, QString::fromLatin1(text), {}});
}

/// The text at \a name; null for what is none.
QString textParam(const JsonRpcCallPtr &call, const char *name)
{
    const QVariant value = call->params().value(QString::fromLatin1(name));
    return value.userType() == QMetaType::QString ? value.toString() : QString();
}

PairedDevices::Answer answerTo(const JsonRpcCallPtr &call)
{
    return [call](const CMError &error) {
        if (error.isEmpty())
            call->finish(QVariantHash());
        else
            call->fail(RpcMethods::toRpcError(error));
    };
}

} // namespace

AccessMethods::AccessMethods(JsonRpcDispatcher *dispatcher, PairedDevices *devices,
    Pairing *pairing, Surroundings surroundings, QObject *parent)
    : QObject(parent)
    , m_devices(devices)
    , m_pairing(pairing)
    , m_surroundings(std::move(surroundings))
{
    using Method = void (AccessMethods::*)(const JsonRpcCallPtr &);
    const auto add = [&](const char *name, Method method, AccessRole role) {
        dispatcher->addMethod(
            QString::fromLatin1(name),
            [this, method](const JsonRpcCallPtr &call) { (this->*method)(call); }, role);
    };
    add("access.info", &AccessMethods::info, AccessRole::Listener);
    add("pairing.start", &AccessMethods::startPairing, AccessRole::Owner);
    add("pairing.stop", &AccessMethods::stopPairing, AccessRole::Owner);
    add("pairing.state", &AccessMethods::tellPairing, AccessRole::Owner);
    add("devices.list", &AccessMethods::listDevices, AccessRole::Owner);
    add("devices.rename", &AccessMethods::renameDevice, AccessRole::Owner);
    add("devices.setRole", &AccessMethods::setDeviceRole, AccessRole::Owner);
    add("devices.revoke", &AccessMethods::revokeDevice, AccessRole::Listener);
    veskConnect(devices, &PairedDevices::changed, this, &AccessMethods::announceDevices);
    veskConnect(pairing, &Pairing::changed, this, &AccessMethods::announcePairing);
}

QVariant AccessMethods::fingerprint() const
{
    return nullable(m_surroundings.fingerprint());
}

void AccessMethods::info(const JsonRpcCallPtr &call)
{
    const Caller &caller = call->caller();
    QVariant device;
    const QVector<PairedDevice> devices = m_devices->devices();
    for (const PairedDevice &other : devices) {
        if (other.id == caller.deviceId)
            device = nameOf(other.id, other.name);
    }
    call->finish(QVariantHash {{QStringLiteral("role"), accessRoleName(caller.role)},
        {QStringLiteral("device"), device}, {QStringLiteral("urls"), m_surroundings.urls()},
        {QStringLiteral("fingerprint"), fingerprint()}});
}

void AccessMethods::startPairing(const JsonRpcCallPtr &call)
{
    const bool isAsked = !call->params().value(QStringLiteral("role")).isNull();
    const auto role
        = isAsked ? accessRoleOf(textParam(call, "role")) : std::optional(AccessRole::Listener);
    if (!role)
        return failParams(call, R"("role" is "listener" or "owner".)");
    const QStringList urls = m_surroundings.urls();
    if (urls.isEmpty()) {
        return call->fail(failureOf(QT_TRANSLATE_NOOP("Host",
            "Only programs on this machine can reach this host. Start it with --listen to let "
            "other devices in.")));
    }
    if (m_devices->isFull())
        return call->fail(RpcMethods::toRpcError(PairedDevices::fullError()));
    const QString code = m_pairing->start(*role);
    call->finish(QVariantHash {{QStringLiteral("code"), code},
        {QStringLiteral("role"), accessRoleName(*role)},
        {QStringLiteral("seconds"), m_pairing->status().seconds}, {QStringLiteral("urls"), urls},
        {QStringLiteral("fingerprint"), fingerprint()}});
}

void AccessMethods::stopPairing(const JsonRpcCallPtr &call)
{
    m_pairing->stop();
    call->finish(QVariantHash());
}

void AccessMethods::tellPairing(const JsonRpcCallPtr &call)
{
    call->finish(pairingState());
}

QVariant AccessMethods::pairingState() const
{
    const Pairing::Status status = m_pairing->status();
    const QVariant device
        = status.deviceId.isEmpty() ? QVariant() : nameOf(status.deviceId, status.deviceName);
    return QVariantHash {{QStringLiteral("state"), stateName(status.state)},
        {QStringLiteral("seconds"), status.seconds}, {QStringLiteral("device"), device}};
}

void AccessMethods::announcePairing()
{
    Q_EMIT notification(QStringLiteral("pairing.changed"), pairingState());
}

void AccessMethods::listDevices(const JsonRpcCallPtr &call)
{
    QVariantList list;
    const QVector<PairedDevice> devices = m_devices->devices();
    for (const PairedDevice &device : devices) {
        list.append(
            QVariantHash {{QStringLiteral("id"), device.id}, {QStringLiteral("name"), device.name},
                {QStringLiteral("role"), accessRoleName(device.role)},
                {QStringLiteral("paired"), accessTimeText(device.paired)},
                {QStringLiteral("seen"), nullable(accessTimeText(device.seen))},
                {QStringLiteral("address"), nullable(device.address)},
                {QStringLiteral("connected"), m_surroundings.isConnected(device.id)},
                {QStringLiteral("current"), device.id == call->caller().deviceId}});
    }
    call->finish(QVariantHash {{QStringLiteral("devices"), list}});
}

void AccessMethods::renameDevice(const JsonRpcCallPtr &call)
{
    const QString id = textParam(call, "id");
    const QString name = textParam(call, "name").trimmed();
    if (id.isEmpty())
        return failParams(call, R"("id" is the id of a device.)");
    if (!DeviceList::isName(name)) {
        return failParams(call,
            R"("name" is a text of at most 64 characters, none of which is a control character.)");
    }
    m_devices->rename(id, name, answerTo(call));
}

void AccessMethods::setDeviceRole(const JsonRpcCallPtr &call)
{
    const QString id = textParam(call, "id");
    const auto role = accessRoleOf(textParam(call, "role"));
    if (id.isEmpty())
        return failParams(call, R"("id" is the id of a device.)");
    if (!role)
        return failParams(call, R"("role" is "listener" or "owner".)");
    m_devices->setRole(id, *role, answerTo(call));
}

void AccessMethods::revokeDevice(const JsonRpcCallPtr &call)
{
    const QString id = textParam(call, "id");
    if (id.isEmpty())
        return failParams(call, R"("id" is the id of a device.)");
    if (id != call->caller().deviceId && !call->requireRole(AccessRole::Owner))
        return;
    m_devices->revoke(id, answerTo(call));
}

void AccessMethods::announceDevices()
{
    VESK_ASSERT_OWN_THREAD();
    if (std::exchange(m_isAnnounced, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_isAnnounced = false;
            Q_EMIT notification(QStringLiteral("devices.changed"), QVariantHash());
        },
        Qt::QueuedConnection);
}
