// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/DeviceAccess.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "host/MachineAddresses.h"
#include "host/access/AccessMethods.h"
#include "host/access/OwnCertificate.h"
#include "host/http/HttpServer.h"
#include "host/rpc/JsonRpc.h"

#include <QSysInfo>

VESK_LOGGER("Host")

namespace {

constexpr std::chrono::hours RenewalInterval {24};

} // namespace

DeviceAccess::DeviceAccess(const HostOptions &options, const QString &stateFolder,
    const Result<void, files::Problem> &held, QObject *parent)
    : QObject(parent)
    , m_options(options)
    , m_stateFolder(stateFolder)
    , m_held(held)
    , m_devices(stateFolder, held)
    , m_pairing(&m_devices)
    , m_resource(&m_pairing, options.names.basePath.isEmpty() ? "/" : options.names.basePath)
{
    connect(&m_renewal, &QTimer::timeout, this, &DeviceAccess::renewIdentity);
    m_renewal.setTimerType(Qt::VeryCoarseTimer);
}

DeviceAccess::~DeviceAccess() = default;

Result<HttpAccess, QString> DeviceAccess::forServer()
{
    HttpAccess access;
    access.names = m_options.names;
    access.plainHttp = m_options.plainHttp;
    access.findToken = [this](const QByteArray &token) { return m_devices.find(token); };
    access.findDevice = [this](const QString &id) { return m_devices.current(id); };
    const auto present = identity();
    if (!present)
        return failure(present.error());
    m_identity = *present;
    access.identity = m_identity;
    m_isTls = access.identity && !m_options.plainHttp;
    return access;
}

Result<std::optional<TlsIdentity>, QString> DeviceAccess::identity() const
{
    if (!m_options.certificateFile.isEmpty()) {
        const auto read = TlsIdentity::read(m_options.certificateFile, m_options.keyFile);
        if (!read)
            return failure(read.error());
        return std::optional(*read);
    }
    if (!m_options.isBeyondLoopback() || m_options.plainHttp)
        return std::optional<TlsIdentity>();
    OwnCertificate own(m_stateFolder, m_held);
    const auto made = own.identity({QSysInfo::machineHostName(), machineAddresses()});
    if (!made)
        return failure(made.error());
    return std::optional(*made);
}

void DeviceAccess::renewIdentity()
{
    VESK_ASSERT_OWN_THREAD();
    if (!m_server || !m_identity)
        return;
    const bool isOwn = m_options.certificateFile.isEmpty();
    if (isOwn && !OwnCertificate::isDue(*m_identity))
        return;
    const auto present = identity();
    if (!present) {
        VESK_WARN("the certificate in use stays: " << present.error());
        return;
    }
    if ((*present)->certificates == m_identity->certificates)
        return;
    if (const auto taken = m_server->setIdentity(**present); !taken) {
        VESK_WARN("the certificate in use stays: " << taken.error());
        return;
    }
    m_identity = **present;
    VESK_INFO("another certificate is in use, with the fingerprint " << m_identity->fingerprint());
}

void DeviceAccess::addTo(HttpServer *server, JsonRpcDispatcher *dispatcher)
{
    m_server = server;
    if (m_identity)
        m_renewal.start(RenewalInterval);
    server->addResource(&m_resource);
    m_methods = std::make_unique<AccessMethods>(dispatcher, &m_devices, &m_pairing,
        AccessMethods::Surroundings {[this] { return urls(); },
            [this] { return m_identity ? m_identity->fingerprint() : QString(); },
            [server](const QString &id) { return server->isConnected(id); }});
    connect(m_methods.get(), &AccessMethods::notification, server,
        [server](const QString &method, const QVariant &params) {
            server->sendToAll(jsonRpcNotification(method, params), AccessRole::Owner);
        });
    connect(&m_devices, &PairedDevices::accessChanged, server, &HttpServer::closeDevice);
    connect(server, &HttpServer::deviceSeen, &m_devices, &PairedDevices::seen);
    connect(
        server, &HttpServer::devicesChanged, m_methods.get(), &AccessMethods::connectionsChanged);
}

void DeviceAccess::leave()
{
    m_renewal.stop();
    m_methods.reset();
    m_server = nullptr;
}

QStringList DeviceAccess::urls() const
{
    QStringList urls;
    for (const QByteArray &origin : m_options.names.origins)
        urls.append(QString::fromLatin1(origin + m_options.names.basePath) + QLatin1Char('/'));
    if (!m_server)
        return urls;
    const QStringList all = machineAddresses();
    const auto listening = m_server->addresses();
    for (const ListenAddress &address : listening) {
        if (!address.isBeyondLoopback())
            continue;
        const bool isIpv6 = address.address.contains(QLatin1Char(':'));
        for (const QString &own : address.isAny() ? all : QStringList {address.address}) {
            if (own.contains(QLatin1Char(':')) != isIpv6)
                continue;
            urls.append(QStringLiteral("%1://%2:%3%4/")
                            .arg(m_isTls ? QStringLiteral("https") : QStringLiteral("http"),
                                isIpv6 ? QStringLiteral("[%1]").arg(own) : own,
                                QString::number(address.port),
                                QString::fromLatin1(m_options.names.basePath)));
        }
    }
    return urls;
}

bool DeviceAccess::close(std::chrono::steady_clock::time_point deadline)
{
    return m_devices.close(deadline);
}
