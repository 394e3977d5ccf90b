// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QVariant>

#include <memory>

class HttpResource;
class JsonRpcDispatcher;

/// Where the host listens; a loopback address.
struct ListenAddress {
    QString address = QStringLiteral("127.0.0.1");
    quint16 port = 8765;
};

/// Bounds of the server, apart from those of the messages. Times in milliseconds.
struct HttpServerLimits {
    int connections = 64;
    int bodySize = 64 * 1024;
    /// For a whole request to come.
    int readTimeout = 30000;
    /// For a whole answer to be taken.
    int writeTimeout = 30000;
};

class HttpServerPrivate;

/// The host's HTTP side: JSON-RPC by POST at /jsonrpc and over WebSockets at /ws, and resources to
/// read, for clients on this machine. Lives on the main thread, in the GLib main loop that Qt runs
/// there. What it takes and refuses is described in docs/rpc.md.
class HttpServer : public QObject {
    Q_OBJECT

public:
    explicit HttpServer(JsonRpcDispatcher *dispatcher, const HttpServerLimits &limits = {},
        QObject *parent = nullptr);
    /// Closes what is open.
    ~HttpServer() override;

    /// Offers \a resource, which must outlive the server, before what the server has of its own.
    void addResource(HttpResource *resource);
    /// Port 0 picks a free one. Returns false, with the reason in \a error, when that fails.
    bool listen(const ListenAddress &address, QString &error);
    /// The port that was picked.
    quint16 port() const;
    /// "http://127.0.0.1:8765/"
    QString url() const;
    /// How many are open, WebSockets included.
    int connections() const;
    /// To every client with a WebSocket.
    void notifyAll(const QString &method, const QVariant &params);
    /// Takes no more connections and says good-bye on the WebSockets.
    void close();

private:
    std::unique_ptr<HttpServerPrivate> d;
};
