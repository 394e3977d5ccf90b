// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/access/Pairing.h"
#include "host/rpc/JsonRpcDispatcher.h"

#include <QObject>
#include <QStringList>

#include <functional>

/// The methods about who may come in: access.info; pairing.start, .stop and .state; devices.list,
/// .rename, .setRole and .revoke. docs/rpc.md describes them for clients. Main thread; what it is
/// made with outlives it.
class AccessMethods : public QObject {
    Q_OBJECT

public:
    /// What only the host knows. Called on the main thread.
    struct Surroundings {
        /// Where other devices find this host, "https://192.168.1.5:8765/"; empty when they cannot.
        std::function<QStringList()> urls;
        /// Of the server's certificate; empty without one.
        std::function<QString()> fingerprint;
        /// Whether the device with this id has a WebSocket.
        std::function<bool(const QString &deviceId)> isConnected;
    };

    AccessMethods(JsonRpcDispatcher *dispatcher, PairedDevices *devices, Pairing *pairing,
        Surroundings surroundings, QObject *parent = nullptr);

    /// A device has opened its first WebSocket, or closed its last one.
    void connectionsChanged() { announceDevices(); }

Q_SIGNALS:
    /// pairing.changed or devices.changed, for every owner with a WebSocket. Changes of devices
    /// that come together are one.
    void notification(const QString &method, const QVariant &params);

private:
    void info(const JsonRpcCallPtr &call);
    void startPairing(const JsonRpcCallPtr &call);
    void stopPairing(const JsonRpcCallPtr &call);
    void tellPairing(const JsonRpcCallPtr &call);
    void listDevices(const JsonRpcCallPtr &call);
    void renameDevice(const JsonRpcCallPtr &call);
    void setDeviceRole(const JsonRpcCallPtr &call);
    void revokeDevice(const JsonRpcCallPtr &call);
    QVariant pairingState() const;
    QVariant fingerprint() const;
    void announcePairing();
    void announceDevices();

    PairedDevices *const m_devices;
    Pairing *const m_pairing;
    const Surroundings m_surroundings;
    bool m_isAnnounced = false; ///< devices.changed is on its way
};
