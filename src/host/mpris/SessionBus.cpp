// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/mpris/SessionBus.h"

#include <QList>

#include <gio/gio.h>
#include <memory>

namespace {

using Text = std::unique_ptr<char, decltype(&g_free)>;

QByteArray addressOf(const QByteArray &socket)
{
    const Text escaped(g_dbus_address_escape_value(socket.constData()), &g_free);
    return QByteArray("unix:path=").append(escaped.get());
}

} // namespace

QByteArray sessionBusAddress()
{
    const QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    if (!address.isEmpty()) {
        // For "autolaunch:" GLib would start a bus, and wait for it.
        const bool isUsable = !address.contains("autolaunch:")
            && g_dbus_is_supported_address(address.constData(), nullptr);
        return isUsable ? address : QByteArray();
    }
    const QByteArray folder = qgetenv("XDG_RUNTIME_DIR");
    return folder.startsWith('/') ? addressOf(folder + "/bus") : QByteArray();
}

QString busSocketOf(const QByteArray &address)
{
    const QByteArray unixPrefix = "unix:";
    const QByteArray pathPrefix = "path=";
    if (!address.startsWith(unixPrefix))
        return {};
    for (const QByteArray &part : address.mid(unixPrefix.size()).split(',')) {
        if (part.startsWith(pathPrefix))
            return QString::fromLocal8Bit(
                QByteArray::fromPercentEncoding(part.mid(pathPrefix.size())));
    }
    return {};
}
