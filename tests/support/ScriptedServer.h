// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>

#include <functional>
#include <memory>

/// An HTTP/1.1 server on a free loopback port, for tests. It records each request and sends the
/// handler's response; the handler runs on the server's threads, one per connection. Connections
/// are kept alive. Destroying the server closes all connections, even stalled ones.
class ScriptedServer {
public:
    using Headers = QList<QPair<QByteArray, QByteArray>>;

    struct Request {
        QByteArray method;
        QByteArray target; ///< as received: "/Browse.ashx?render=json"
        Headers headers;
        QByteArray body;

        /// Case-insensitive; empty when there is none.
        QByteArray header(const QByteArray &name) const;
        /// The target's part before "?", and the part after it.
        QByteArray path() const;
        QByteArray query() const;
    };

    /// What the server does after the body, or in its place.
    enum class End {
        Complete, ///< The connection is kept.
        Close, ///< The connection is closed after the body.
        Reset, ///< The connection is reset (RST) once `sendBytes` bytes of the body are sent.
        Truncate, ///< Closed after `sendBytes` bytes although Content-Length announces all.
        Stall, ///< Nothing is sent after `sendBytes` bytes.
        StallBeforeHead, ///< Nothing is sent, not even a status line.
        ResetBeforeHead, ///< The connection is reset at once.
        RawStall, ///< `body` is the whole response, status line included; then nothing more is
                  ///< sent.
        Raw, ///< `body` is the whole response, status line included; then the connection is closed.
    };

    struct Response {
        int code = 200;
        QByteArray body;
        Headers headers; ///< Content-Length is added.
        End end = End::Complete;
        int sendBytes = 0;
    };

    using Handler = std::function<Response(const Request &)>;

    explicit ScriptedServer(Handler handler);
    /// Over TLS, with PEM files.
    ScriptedServer(Handler handler, const QByteArray &certificateFile, const QByteArray &keyFile);
    ~ScriptedServer();

    quint16 port() const;
    /// "HOST:80:127.0.0.1:PORT" for HttpClient::setConnectTo; port 443 for a TLS server.
    QByteArray connectTo(const QByteArray &host) const;
    void setHandler(Handler handler);

    QList<Request> requests() const;
    /// "METHOD TARGET" of each request so far.
    QList<QByteArray> requestLines() const;
    void clearRequests();
    /// Waits until \a count requests have arrived; false after \a milliseconds.
    bool waitForRequests(int count, int milliseconds = 10000) const;
    /// Connections accepted so far.
    int connections() const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};
