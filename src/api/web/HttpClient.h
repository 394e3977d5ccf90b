// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"
#include "api/web/VeskUrl.h"

#include <QByteArray>
#include <QObject>
#include <QStringList>

#include <functional>
#include <iosfwd>
#include <memory>

/// How an exchange ended. Success means that a whole answer was received, whatever its HTTP code:
/// the directory reports its faults in the body.
enum class HttpClientStatus : int {
    Success = 0,
    InvalidRequest, ///< The URL is none, or not http or https.
    ResolveFailed, ///< The host's name has no address.
    ConnectFailed, ///< Refused or unreachable.
    TimedOut, ///< The exchange took longer than it may.
    TooLarge, ///< The decoded body is longer than it may be.
    TlsFailed, ///< The certificate is not good for the host, or the handshake failed.
    ConnectionLost, ///< Reset or closed before the whole answer was there.
    TooManyRedirects, ///< More than five, or one that leaves https or http(s).
    ProtocolError, ///< What came was no HTTP, or could not be decoded.
    Cancelled, ///< The client was destroyed or shut down first.
};

VESK_API std::ostream &operator<<(std::ostream &out, HttpClientStatus status);

/// Bounds and habits of one exchange.
class VESK_API HttpClientOptions {
public:
    /// For the whole exchange, redirects included; 0 waits for ever.
    void setTimeoutMs(int milliseconds) { m_timeoutMs = milliseconds; }
    int timeoutMs() const { return m_timeoutMs; }
    /// Longest decoded body in bytes; 0 sets no limit.
    void setReadSizeLimit(int bytes) { m_readSizeLimit = bytes; }
    int readSizeLimit() const { return m_readSizeLimit; }
    /// Whether the cache may give or keep the answer, whatever that says of its freshness. Not for
    /// a GET that changes something at the server, nor for one whose answer others may change.
    void setUseCache(bool use) { m_useCache = use; }
    bool useCache() const { return m_useCache; }
    /// Whether the AddressPolicy of the process holds for the exchange: for addresses that foreign
    /// answers name. What it refuses is ConnectFailed. A client keeps its connections for exchanges
    /// of both kinds, so use it for one.
    void setGuarded(bool guarded) { m_guarded = guarded; }
    bool isGuarded() const { return m_guarded; }

private:
    int m_timeoutMs = 30000;
    int m_readSizeLimit = 0;
    bool m_useCache = true;
    bool m_guarded = false;
};

/// What an exchange brought.
class VESK_API HttpClientResult {
public:
    HttpClientResult() = default;
    HttpClientResult(const VeskUrl &url, HttpClientStatus status, int code, const QByteArray &data)
        : m_url(url)
        , m_status(status)
        , m_code(code)
        , m_data(data)
    {
    }

    /// The URL that was asked for, before redirects.
    const VeskUrl &url() const { return m_url; }
    HttpClientStatus status() const { return m_status; }
    /// The HTTP code of the last answer; 0 when there was none.
    int code() const { return m_code; }
    /// The decoded body; empty unless the status is Success.
    const QByteArray &data() const { return m_data; }

private:
    VeskUrl m_url;
    HttpClientStatus m_status = HttpClientStatus::Success;
    int m_code = 0;
    QByteArray m_data;
};

class HttpClientEngine;

/// An asynchronous HTTP client in the event loop of the thread that creates it: libcurl's multi
/// interface with kept-alive connections, a DNS cache, HTTP/2 over TLS, compressed answers,
/// verified certificates, at most five redirects (http or https only, never from https to http) and
/// a memory cache that follows RFC 9111. Use and destroy it on that thread only; the static
/// functions may be called from any thread.
///
/// Each request's function is called exactly once, on that thread, never from within get() or
/// post(). It may start further exchanges and may destroy the client. Destroying the client first
/// calls it for every exchange that it was not yet called for, with Cancelled; what such a call
/// starts is cancelled as well.
class VESK_API HttpClient : public QObject {
    Q_OBJECT

public:
    enum HttpVersion { Default = 0, Http1 = 1 };
    using Result = HttpClientResult;
    using Function = std::function<void(const HttpClientResult &)>;

    /// \a followRedirects says whether redirects are followed or handed out as answers.
    HttpClient(QObject *parent, HttpVersion version, bool followRedirects);
    ~HttpClient() override;

    /// Bytes of answers kept in memory; 0, the default, keeps none.
    void setCacheSize(unsigned long bytes);

    void get(const VeskUrl &url, const HttpClientOptions &options, Function done);
    /// \a body is sent as application/x-www-form-urlencoded when it is not empty.
    void post(const VeskUrl &url, const QByteArray &body, const HttpClientOptions &options,
        Function done);

    /// Connections to a host and port go elsewhere, the request and the certificate check stay as
    /// they are: entries as curl's option of that name takes them, "HOST:PORT:ADDRESS:PORT". For
    /// the whole process and every exchange that starts later.
    static void setConnectTo(const QStringList &entries);
    /// A PEM file with one more certificate authority to trust, beside the system's (the folder
    /// that SSL_CERT_DIR names, /etc/ssl/certs without it); an empty name takes it back. For the
    /// whole process and every exchange that starts later. Returns false, and changes nothing, when
    /// the file holds no certificate.
    static bool setCaFile(const QString &file);
    /// Ends every exchange of every client that now exists with Cancelled, and all later ones of
    /// those clients at once: for a host that shuts down while a plug-in still waits for an answer.
    static void shutDownAll();

    /// While this is on, exchanges that only read, GETs that may use the cache, end with Cancelled
    /// at once, those under way and those that are started: what they are for is not wanted any
    /// more. For every client that now exists.
    static void abandonReading(bool abandon);
    /// Is called when an exchange of any client begins and when it ends, on the client's thread;
    /// must return soon. Set it before there are clients.
    static void setActivityListener(std::function<void()> listener);
    /// Is told of each exchange that has ended, on the client's thread, before the one who asked
    /// for it; must return soon. Set it before there are clients.
    using ExchangeListener = std::function<void(const HttpClientResult &)>;
    static void setExchangeListener(ExchangeListener listener);

private:
    std::unique_ptr<HttpClientEngine> m_engine;
};
