// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/NetworkMonitor.h"

#include "api/core/ThreadCheck.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <gio/gio.h>

namespace {

/// The kernel's ARPHRD_ETHER.
constexpr char EthernetType[] = "1";

QByteArray readLine(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.read(256).trimmed() : QByteArray();
}

/// Bridges, tunnels and container interfaces have no device; wireless ones say that they are.
bool isWiredAdapter(const QString &interface)
{
    return QFileInfo::exists(interface + QStringLiteral("/device"))
        && !QFileInfo::exists(interface + QStringLiteral("/wireless"))
        && !QFileInfo::exists(interface + QStringLiteral("/phy80211"))
        && readLine(interface + QStringLiteral("/type")) == EthernetType;
}

void networkChanged(GNetworkMonitor *, gboolean connected, gpointer data)
{
    Q_EMIT static_cast<NetworkMonitor *>(data)->connectedChanged(connected);
}

} // namespace

NetworkMonitor::NetworkMonitor(QObject *parent)
    : QObject(parent)
    , m_monitor(G_NETWORK_MONITOR(g_object_ref(g_network_monitor_get_default())))
{
    g_signal_connect(m_monitor, "network-changed", G_CALLBACK(&networkChanged), this);
}

NetworkMonitor::~NetworkMonitor()
{
    g_signal_handlers_disconnect_by_data(m_monitor, this);
    g_object_unref(m_monitor);
}

bool NetworkMonitor::isConnected() const
{
    VESK_ASSERT_OWN_THREAD();
    return g_network_monitor_get_network_available(m_monitor);
}

QString NetworkMonitor::ethernetMac(const QString &folder)
{
    static const QRegularExpression form(QStringLiteral("^([0-9a-f]{2}:){5}[0-9a-f]{2}\\z"));
    const QStringList names = QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString &name : names) {
        const QString interface = folder + QLatin1Char('/') + name;
        if (!isWiredAdapter(interface))
            continue;
        const QString address
            = QString::fromLatin1(readLine(interface + QStringLiteral("/address"))).toLower();
        if (form.match(address).hasMatch() && address != QLatin1String("00:00:00:00:00:00"))
            return address;
    }
    return {};
}
