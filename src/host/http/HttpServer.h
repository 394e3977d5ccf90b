// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/Result.h"
#include "host/http/Caller.h"
#include "host/http/HttpRules.h"
#include "host/http/TlsIdentity.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

class HttpResource;
class MessageHandler;

/// Where the host listens.
struct ListenAddress {
    /// An IP address, "localhost", or 0.0.0.0 or :: for all interfaces of that family.
    QString address = QStringLiteral("127.0.0.1");
    quint16 port = 8765;

    /// Whether programs on other machines can get there.
    bool isBeyondLoopback() const;
    /// Whether it stands for all interfaces of its family.
    bool isAny() const;
};

/// Bounds of the server, apart from those of the messages. Times in milliseconds.
struct HttpServerLimits {
    int connections = 64;
    /// Of those, from other machines and without a token; in all, and of one address.
    int strangers = 32;
    int strangersOfAddress = 16;
    int bodySize = 64 * 1024;
    /// For a whole request to come, the TLS handshake included.
    int readTimeout = 30000;
    /// For a whole answer to be taken.
    int writeTimeout = 30000;
    /// How long a connection over TLS is kept for the next request.
    int idleTimeout = 15000;
};

/// Who may come in from beyond the loopback interface. Both functions are called on any thread.
struct HttpAccess {
    HttpNames names;
    /// Requests from other machines may come without TLS.
    bool plainHttp = false;
    std::optional<TlsIdentity> identity;
    /// The paired device with that token.
    std::function<std::optional<Caller>(const QByteArray &token)> findToken;
    /// The paired device with that id, as it is now.
    std::function<std::optional<Caller>(const QString &id)> findDevice;

    /// Whether anything says that others than programs on this machine are served.
    bool isForOthers() const;
};

class HttpServerPrivate;

/// The host's HTTP side: messages by POST at /jsonrpc and over WebSockets at /ws, and resources to
/// read. Programs on this machine need nothing; others need the token of a paired device, or get
/// no further than the resources at /pair. What it takes and refuses is described in docs/rpc.md.
///
/// Lives on the main thread; what comes from the network is read on a thread of the server's own.
class HttpServer : public QObject {
    Q_OBJECT

public:
    /// \a handler, which must outlive the server, gets the messages.
    explicit HttpServer(
        MessageHandler *handler, const HttpServerLimits &limits = {}, QObject *parent = nullptr);
    /// Closes what is open.
    ~HttpServer() override;

    /// Before listen().
    void setAccess(const HttpAccess &access);
    /// Another identity than that of setAccess(), for the connections to come. Says why it cannot
    /// be used; then the earlier one stays. After listen().
    Result<void, QString> setIdentity(const TlsIdentity &identity);
    /// Offers \a resource, which must outlive the server, before what the server has of its own.
    /// Before listen().
    void addResource(HttpResource *resource);
    /// May be called for several addresses. Port 0 picks a free one.
    Result<void, QString> listen(const ListenAddress &address);
    /// Of the first address.
    quint16 port() const;
    /// The addresses, with the ports that were taken.
    QVector<ListenAddress> addresses() const;
    /// For clients on this machine: "http://127.0.0.1:8765/"
    QString url() const;
    /// How many are open, WebSockets included.
    int connections() const;
    /// Whether the device has a WebSocket.
    bool isConnected(const QString &deviceId) const;
    /// To every client with a WebSocket whose role is \a role, or more.
    void sendToAll(const QByteArray &message, AccessRole role = AccessRole::Listener);
    /// Closes the connections of a device whose rights have changed.
    void closeDevice(const QString &id);
    /// Accepts no more connections, and closes the WebSockets with the code for "going away".
    void close();

Q_SIGNALS:
    /// A paired device has sent a request from that IP address.
    void deviceSeen(const QString &id, const QString &address);
    /// A paired device has opened a WebSocket, or has one less.
    void devicesChanged();

private:
    std::unique_ptr<HttpServerPrivate> d;
};
