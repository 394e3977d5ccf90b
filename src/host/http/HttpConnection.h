// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/http/ClientRequest.h"
#include "host/http/ServerThread.h"

#include <QByteArray>

#include <chrono>
#include <memory>

class WebSocketSession;

/// A client's connection, from its first byte to its end: maybe TLS, then requests, one of which
/// may turn it into a WebSocket. Exists as long as something is under way on it. Server's thread.
class HttpConnection : public std::enable_shared_from_this<HttpConnection> {
public:
    HttpConnection(ServerThread &server, ClientId id, ClientStream::Socket socket);
    ~HttpConnection();
    HttpConnection(const HttpConnection &) = delete;
    HttpConnection &operator=(const HttpConnection &) = delete;

    void start();
    /// The response to the request that was told.
    void respond(const HttpResponse &response);
    /// Null until the connection is one.
    WebSocketSession *session() const { return m_session.get(); }
    /// Ends the connection at once.
    void shutDown();
    /// Ends it such that the client gets what was sent: closing a socket with unread bytes would
    /// reset the connection.
    void linger();
    /// (Re)starts the time limit, after which the connection is shut down; 0 lifts it.
    void limit(std::chrono::milliseconds time);
    /// The client has sent something.
    void touch() { m_active = std::chrono::steady_clock::now(); }

    /// The client's address; a proxy's client's.
    const QByteArray &peer() const { return m_peer; }
    const Caller &caller() const { return m_caller; }
    /// Comes from another machine and has shown no token.
    bool isStranger() const { return m_isStranger; }
    bool isShutDown() const { return m_isShutDown; }
    bool isLingering() const { return m_isLingering; }
    /// Whether the client waits for nothing: it has not finished a request, has its response, or is
    /// a WebSocket without an open request or subscription.
    bool isIdle() const;
    ServerThread::Timer::time_point activeAt() const { return m_active; }

private:
    using Error = boost::system::error_code;

    /// \a member(arguments...), with the connection kept until it is called.
    template <class Member>
    auto kept(Member member);

    void waitForFirst();
    void begin(const Error &error);
    /// Adds what comes next of the request to the buffer, then calls \a then with this.
    template <class Then>
    void readMore(Then then);
    void readHead();
    void headRead();
    void refuseLater(const ClientRequest::Refusal &refusal);
    void readBody();
    /// Whether the main thread has a request, for which the connection is kept.
    void setAnswering(bool answering);
    void bodyRead();
    void tell();
    void upgrade();
    void refuseWith(const ClientRequest::Refusal &refusal);
    void write(const HttpResponse &response);
    /// Sends the response; nothing else is being written.
    void send();
    void discard();
    void probe();
    /// The client has gone before it had its response.
    void leave();

    ServerThread &m_server;
    const ClientId m_id;
    ClientStream m_stream;
    ServerThread::Timer m_limit;
    const ClientRequest::Ends m_ends;
    QByteArray m_peer;
    Caller m_caller;
    ServerThread::Timer::time_point m_active;

    // The request.
    QByteArray m_buffer; ///< bytes that were read and not yet used
    QByteArray m_head;
    std::unique_ptr<ClientRequest> m_request;

    // The response.
    QByteArray m_responseHead;
    QByteArray m_responseBody;

    std::unique_ptr<WebSocketSession> m_session;
    bool m_isStranger = false;
    bool m_isAnswering = false;
    bool m_isWriting = false;
    bool m_keepsAlive = false;
    bool m_isShutDown = false;
    bool m_isLingering = false;
    bool m_isDiscarding = false;
    /// Nothing more comes from the client.
    bool m_hasClientFinished = false;
};
