// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/access/DeviceList.h"

#include "api/web/VeskJson.h"

#include <QVariant>

#include <algorithm>
#include <arpa/inet.h>

namespace {

constexpr int IdLength = 16;

QString devicesKey()
{
    return QStringLiteral("devices");
}

QString textOf(const QVariant &value)
{
    return value.userType() == QMetaType::QString ? value.toString() : QString();
}

/// Invalid for what is no time in UTC.
QDateTime timeOf(const QVariant &value)
{
    const QString text = textOf(value);
    const QDateTime time = QDateTime::fromString(text, Qt::ISODate);
    return accessTimeText(time) == text ? time : QDateTime();
}

/// Empty for other texts.
QByteArray bytesOfHex(const QString &text, int size)
{
    const QByteArray bytes = QByteArray::fromHex(text.toLatin1());
    return bytes.size() == size && QString::fromLatin1(bytes.toHex()) == text ? bytes
                                                                              : QByteArray();
}

QVariant toEntry(const KeptDevice &device)
{
    QVariantHash entry {{QStringLiteral("id"), device.id}, {QStringLiteral("name"), device.name},
        {QStringLiteral("role"), accessRoleName(device.role)},
        {QStringLiteral("paired"), accessTimeText(device.paired)},
        {QStringLiteral("tokenSha256"), QString::fromLatin1(device.digest.toHex())}};
    if (device.seen.isValid())
        entry.insert(QStringLiteral("seen"), accessTimeText(device.seen));
    if (!device.address.isEmpty())
        entry.insert(QStringLiteral("address"), device.address);
    return entry;
}

std::optional<KeptDevice> fromEntry(const QVariant &value)
{
    const QVariantHash entry = value.toHash();
    const auto member = [&entry](const char *key) { return entry.value(QString::fromLatin1(key)); };
    KeptDevice device;
    device.id = textOf(member("id"));
    device.name = textOf(member("name"));
    device.paired = timeOf(member("paired"));
    device.seen = timeOf(member("seen"));
    device.address = textOf(member("address"));
    device.digest = bytesOfHex(textOf(member("tokenSha256")), DeviceList::DigestSize);
    const auto role = accessRoleOf(textOf(member("role")));
    const bool isDevice = role && !bytesOfHex(device.id, IdLength / 2).isEmpty()
        && DeviceList::isName(device.name) && device.paired.isValid()
        && (member("seen").isNull() || device.seen.isValid())
        && (member("address").isNull() || DeviceList::isAddress(device.address))
        && !device.digest.isEmpty();
    if (!isDevice)
        return std::nullopt;
    device.role = *role;
    return device;
}

bool turnsDirection(uint character)
{
    switch (QChar::direction(character)) {
    case QChar::DirLRE:
    case QChar::DirLRO:
    case QChar::DirRLE:
    case QChar::DirRLO:
    case QChar::DirPDF:
    case QChar::DirLRI:
    case QChar::DirRLI:
    case QChar::DirFSI:
    case QChar::DirPDI:
        return true;
    default:
        return false;
    }
}

} // namespace

const KeptDevice *DeviceList::find(const QString &id) const
{
    const auto found = std::find_if(devices.constBegin(), devices.constEnd(),
        [&id](const KeptDevice &device) { return device.id == id; });
    return found == devices.constEnd() ? nullptr : &*found;
}

KeptDevice *DeviceList::find(const QString &id)
{
    const auto found = std::find_if(devices.begin(), devices.end(),
        [&id](const KeptDevice &device) { return device.id == id; });
    return found == devices.end() ? nullptr : &*found;
}

void DeviceList::remove(const QString &id)
{
    devices.erase(std::remove_if(devices.begin(), devices.end(),
                      [&id](const KeptDevice &device) { return device.id == id; }),
        devices.end());
}

QByteArray DeviceList::toFile() const
{
    QVariantList entries;
    for (const KeptDevice &device : devices)
        entries.append(toEntry(device));
    return VeskJson::write(QVariantHash {{devicesKey(), entries}}) + '\n';
}

std::optional<DeviceList> DeviceList::fromFile(const QByteArray &file)
{
    VeskError error;
    const QVariant value = VeskJson::parse(file, error).toHash().value(devicesKey());
    const QVariantList entries = value.toList();
    if (value.userType() != QMetaType::QVariantList || entries.size() > MaxDevices)
        return std::nullopt;
    DeviceList list;
    for (const QVariant &entry : entries) {
        const auto device = fromEntry(entry);
        if (!device || list.find(device->id))
            return std::nullopt;
        const bool isTaken = std::any_of(list.devices.constBegin(), list.devices.constEnd(),
            [&device](const KeptDevice &other) { return other.digest == device->digest; });
        if (isTaken)
            return std::nullopt;
        list.devices.append(*device);
    }
    return list;
}

bool DeviceList::isName(const QString &name)
{
    // What is no Unicode has no UTF-8 of its own.
    if (name.size() > 2 * MaxNameLength || name != name.trimmed()
        || QString::fromUtf8(name.toUtf8()) != name)
        return false;
    const QVector<uint> characters = name.toUcs4();
    bool isVisible = false;
    for (const uint character : characters) {
        const QChar::Category category = QChar::category(character);
        if (category == QChar::Other_Control || category == QChar::Separator_Line
            || category == QChar::Separator_Paragraph || turnsDirection(character))
            return false;
        isVisible |= category != QChar::Other_Format && category != QChar::Separator_Space;
    }
    return isVisible && characters.size() <= MaxNameLength;
}

bool DeviceList::isAddress(const QString &text)
{
    in6_addr address {};
    const QByteArray bytes = text.toLatin1();
    if (bytes.contains('\0'))
        return false;
    return ::inet_pton(AF_INET, bytes.constData(), &address) == 1
        || ::inet_pton(AF_INET6, bytes.constData(), &address) == 1;
}

QString accessRoleName(AccessRole role)
{
    return role == AccessRole::Owner ? QStringLiteral("owner") : QStringLiteral("listener");
}

std::optional<AccessRole> accessRoleOf(const QString &name)
{
    for (const AccessRole role : {AccessRole::Listener, AccessRole::Owner}) {
        if (accessRoleName(role) == name)
            return role;
    }
    return std::nullopt;
}

QString accessTimeText(const QDateTime &time)
{
    return time.toUTC().toString(Qt::ISODate);
}
