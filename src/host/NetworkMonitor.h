// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QObject>
#include <QString>

struct _GNetworkMonitor;

/// Whether the machine is connected to a network, as GLib's network monitor sees it: by a default
/// route. Main thread, in the GLib main loop that Qt runs there.
class NetworkMonitor : public QObject {
    Q_OBJECT

public:
    explicit NetworkMonitor(QObject *parent = nullptr);
    ~NetworkMonitor() override;

    bool isConnected() const;

    /// The address of the first wired network adapter among the interfaces in \a folder, as the
    /// kernel shows them: "00:1a:2b:3c:4d:5e". Empty when there is none.
    static QString ethernetMac(const QString &folder = QStringLiteral("/sys/class/net"));

Q_SIGNALS:
    void connectedChanged(bool connected);

private:
    _GNetworkMonitor *const m_monitor;
};
