// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>

#include <functional>
#include <memory>

/// An HTTP/1.1 server on a free loopback port, for tests: each request is recorded and answered by
/// the handler, which runs on the server's threads, one per connection. Connections are kept alive.
/// Destroying the server closes everything, also what stalls.
class ScriptedServer {
public:
    using Headers = QList<QPair<QByteArray, QByteArray>>;

    struct Request {
        QByteArray method;
        QByteArray target; ///< as it came: "/Browse.ashx?render=json"
        Headers headers;
        QByteArray body;

        /// Case-insensitive; empty when there is none.
        QByteArray header(const QByteArray &name) const;
        /// The target's part before "?", and the part after it.
        QByteArray path() const;
        QByteArray query() const;
    };

    /// What happens after the body, or in its place.
    enum class End {
        Complete, ///< The connection is kept.
        Close, ///< The connection is closed after the body.
        Reset, ///< The connection is reset (RST) once `sendBytes` bytes of the body are sent.
        Truncate, ///< Closed once `sendBytes` bytes are sent, Content-Length says the whole.
        Stall, ///< Nothing more comes once `sendBytes` bytes are sent.
        StallBeforeHead, ///< Not even a status line comes.
        ResetBeforeHead, ///< The connection is reset at once.
        RawStall, ///< `body` is all that is sent, status line included, then nothing more comes.
        Raw, ///< `body` is all that is sent, status line included, then the connection is closed.
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
    /// Waits until that many requests came; false after \a milliseconds.
    bool waitForRequests(int count, int milliseconds = 10000) const;
    /// Connections accepted so far.
    int connections() const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};
