// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/http/Caller.h"
#include "host/http/HttpResource.h"

#include <QByteArray>
#include <QPair>
#include <QVector>

#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/string_body.hpp>

#include <optional>

class ServerThread;

/// One request as far as it was received: what it asks for, from whom it comes, and whether it is
/// refused. Knows the server's rules, and nothing of its connections. Server's thread.
class ClientRequest {
public:
    /// Of a head, and of what lies between the chunks of a body.
    static constexpr int MaxHead = 16 * 1024;

    struct Refusal {
        unsigned code;
        QByteArray reason;
        QVector<QPair<QByteArray, QByteArray>> headers {};
        /// The client has shown a token that is nobody's.
        bool isWrongToken = false;
    };
    /// Of the connection: the client's address, and the server's with its port.
    struct Ends {
        QByteArray peer;
        QByteArray local;
        quint16 port;
    };

    ClientRequest(ServerThread &server, const Ends &ends, bool isTls);

    /// Takes the head, with the empty line at its end. Once.
    std::optional<Refusal> takeHead(const QByteArray &head);
    /// Takes what there is of the body from the beginning of \a bytes.
    std::optional<Refusal> takeBody(QByteArray &bytes);
    bool isWhole() const { return m_parser.is_done(); }

    // From takeHead() on:

    /// The client's address; a proxy's client's.
    const QByteArray &client() const { return m_client; }
    const Caller &caller() const { return m_caller; }
    /// Comes from another machine and has shown no token.
    bool isStranger() const { return m_isStranger; }

    // If it was not refused:

    /// Without escapes, query and base path.
    const QByteArray &path() const { return m_path; }
    /// The client sends the body once it is told to (RFC 9110, section 10.1.1).
    bool wantsContinue() const;
    bool isHttp11() const { return m_parser.get().version() == 11; }
    bool isHead() const;
    /// Whether it asks for a WebSocket, in the version that there is.
    bool isUpgrade() const;
    /// A request that needs no body and leaves the connection to the next one.
    bool mayBeFollowed() const;
    QByteArray body() const { return QByteArray::fromStdString(m_parser.get().body()); }
    /// Which one answers; null when none does.
    HttpResource *resource() const;
    HttpRequest forResource() const;

private:
    using Parser = boost::beast::http::request_parser<boost::beast::http::string_body>;

    QByteArray header(boost::beast::http::field name) const;
    QByteArray header(const char *name) const;
    QByteArray method() const;
    QByteArray target() const;
    std::optional<Refusal> parseHead(const QByteArray &head);
    bool hasPlainFraming() const;
    /// Finds out from whom the request comes.
    void identify();
    /// Whether a program on this machine asks for itself.
    bool isLocal() const;
    std::optional<Refusal> judge();
    /// Whether the client calls the server by one of its names.
    bool isNamed() const;
    /// Of the target; takes m_path from it.
    std::optional<Refusal> judgeTarget();
    /// Of where the request comes from.
    std::optional<Refusal> judgeOrigin();
    Refusal refusalOfStranger() const;
    /// Of what it asks for.
    std::optional<Refusal> judgePurpose();
    /// The methods that the path takes; empty when there is nothing at it.
    QByteArray methods() const;

    ServerThread &m_server;
    const Ends m_ends;
    const bool m_isTls;
    Parser m_parser;
    QByteArray m_client;
    Caller m_caller;
    /// Path and query, without the server's name.
    QByteArray m_target;
    QByteArray m_path;
    bool m_isSecure = false;
    /// Whether it comes through a proxy, or somebody wants it to look so.
    bool m_isForwarded = false;
    bool m_isStranger = false;
};
