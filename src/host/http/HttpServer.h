// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/Result.h"

#include <QObject>
#include <QString>

#include <memory>

class HttpResource;
class MessageHandler;

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

/// The host's HTTP side, for clients on this machine: messages by POST at /jsonrpc and over
/// WebSockets at /ws, and resources to read. Lives on the main thread, in the GLib main loop that
/// Qt runs there. What it takes and refuses is described in docs/rpc.md.
class HttpServer : public QObject {
    Q_OBJECT

public:
    /// \a handler, which must outlive the server, gets the messages.
    explicit HttpServer(
        MessageHandler *handler, const HttpServerLimits &limits = {}, QObject *parent = nullptr);
    /// Closes what is open.
    ~HttpServer() override;

    /// Offers \a resource, which must outlive the server, before what the server has of its own.
    void addResource(HttpResource *resource);
    /// Port 0 picks a free one.
    Result<void, QString> listen(const ListenAddress &address);
    /// The port that was picked.
    quint16 port() const;
    /// "http://127.0.0.1:8765/"
    QString url() const;
    /// How many are open, WebSockets included.
    int connections() const;
    /// To every client with a WebSocket.
    void sendToAll(const QByteArray &message);
    /// Accepts no more connections, and closes the WebSockets with the code for "going away".
    void close();

private:
    std::unique_ptr<HttpServerPrivate> d;
};
