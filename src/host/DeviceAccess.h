// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/Result.h"
#include "base/files/Problem.h"
#include "host/HostOptions.h"
#include "host/access/PairedDevices.h"
#include "host/access/Pairing.h"
#include "host/access/PairingResource.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <memory>
#include <optional>

class AccessMethods;
class JsonRpcDispatcher;

/// How devices beyond this one come in: who is paired, the methods that pair them, the certificate,
/// and the addresses at which they find the host. Main thread.
class DeviceAccess : public QObject {
    Q_OBJECT

public:
    /// \a stateFolder: where devices and certificate are kept; empty: nowhere. \a held: why it must
    /// not be written, if that is so.
    DeviceAccess(const HostOptions &options, const QString &stateFolder,
        const Result<void, files::Problem> &held, QObject *parent = nullptr);
    ~DeviceAccess() override;

    /// What the server has to know; reads or makes the certificate if other devices can come. Says
    /// why there is none.
    Result<HttpAccess, QString> forServer();
    /// Reads the certificate again, or makes another one when the host's own nears its end, and
    /// gives it to the server if it has changed. A certificate that cannot be used is logged, and
    /// the earlier one stays. Called once a day from addTo() on, too.
    void renewIdentity();
    /// Offers the server, which does not listen yet, what pairs devices, and adds the methods.
    void addTo(HttpServer *server, JsonRpcDispatcher *dispatcher);
    /// Before the server and the dispatcher go.
    void leave();
    /// Where other devices find the host, "https://192.168.1.5:8765/"; empty when they cannot.
    QStringList urls() const;
    /// Whether devices are sent to these addresses by TLS.
    bool isTls() const { return m_isTls; }
    /// The same as PairedDevices::close().
    bool close(std::chrono::steady_clock::time_point deadline);

private:
    /// None when other devices cannot come, or not by TLS.
    Result<std::optional<TlsIdentity>, QString> identity() const;

    const HostOptions m_options;
    const QString m_stateFolder;
    const Result<void, files::Problem> m_held;
    PairedDevices m_devices;
    Pairing m_pairing;
    PairingResource m_resource;
    std::unique_ptr<AccessMethods> m_methods;
    HttpServer *m_server = nullptr;
    QTimer m_renewal;
    std::optional<TlsIdentity> m_identity;
    bool m_isTls = false;
};
