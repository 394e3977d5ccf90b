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

/// How an exchange ended. Success means that a whole response was received, whatever its HTTP code:
/// the directory reports its faults in the body. Callers mostly tell Success from the rest; the
/// kinds of failure are for logs and for serviceFaultOf().
enum class HttpClientStatus : int {
    Success = 0,
    InvalidRequest, ///< The URL is none, or not http or https.
    ResolveFailed, ///< The host's name has no address.
    ConnectFailed, ///< Refused or unreachable.
    TimedOut, ///< The exchange took longer than it may.
    TooLarge, ///< The decoded body is longer than it may be.
    TlsFailed, ///< The certificate is not valid for the host, or the handshake failed.
    TooManyRedirects, ///< More than five, or one that leaves https or http(s).
    Broken, ///< Reset or closed before the whole response was there, or no HTTP, or not decodable.
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
    /// Whether the cache may supply or store the response. Switch it off for a GET that changes
    /// something at the server, and for one whose response other requests may change.
    void setUseCache(bool use) { m_useCache = use; }
    bool useCache() const { return m_useCache; }
    /// Whether the AddressPolicy of the process applies: for addresses that come from a service's
    /// answers. What it refuses ends with ConnectFailed. A client shares its connections among its
    /// exchanges, so guard all exchanges of a client or none.
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

    /// The requested URL, before redirects.
    const VeskUrl &url() const { return m_url; }
    HttpClientStatus status() const { return m_status; }
    /// The HTTP code of the last response; 0 when there was none.
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
/// interface with kept-alive connections, a DNS cache, HTTP/2 over TLS, compressed responses,
/// verified certificates, at most five redirects (http or https only, never from https to http) and
/// a memory cache that follows RFC 9111. Use and destroy it on that thread only; the static
/// functions may be called from any thread.
///
/// Each request's function is called exactly once, on that thread, never from within get() or
/// post(). It may start further exchanges and may destroy the client. The destructor calls it with
/// Cancelled for every exchange that has not ended; what such a call starts is cancelled as well.
class VESK_API HttpClient : public QObject {
    Q_OBJECT

public:
    enum HttpVersion { Default = 0, Http1 = 1 };
    using Result = HttpClientResult;
    using Function = std::function<void(const HttpClientResult &)>;

    /// \a followRedirects says whether redirects are followed or returned as responses.
    HttpClient(QObject *parent, HttpVersion version, bool followRedirects);
    ~HttpClient() override;

    /// Bytes of responses kept in memory; 0, the default, keeps none.
    void setCacheSize(unsigned long bytes);

    void get(const VeskUrl &url, const HttpClientOptions &options, Function done);
    /// \a body is sent as application/x-www-form-urlencoded when it is not empty.
    void post(const VeskUrl &url, const QByteArray &body, const HttpClientOptions &options,
        Function done);

    /// Redirects connections to a host and port, without changing the request or the certificate
    /// check: entries as curl's option of that name takes them, "HOST:PORT:ADDRESS:PORT". For the
    /// whole process and every exchange that starts later.
    static void setConnectTo(const QStringList &entries);
    /// Trusts the certificate authorities in a PEM file beside the system's (the folder that
    /// SSL_CERT_DIR names, /etc/ssl/certs without it); an empty name undoes that. For the whole
    /// process and every exchange that starts later. Returns false, and changes nothing, when the
    /// file holds no certificate.
    static bool setCaFile(const QString &file);
    /// Ends every exchange of every client that exists with Cancelled, and all later ones of those
    /// clients at once: for a host that shuts down while a plug-in still waits for a response.
    static void shutDownAll();

    /// While this is on, exchanges that only read (GETs that may use the cache) end with Cancelled
    /// at once, those in progress and new ones: the request that they were for was cancelled. For
    /// every client that exists.
    static void abandonReading(bool abandon);
    /// Is called when an exchange of any client begins and when it ends, on the client's thread;
    /// must return soon. Set it before there are clients.
    static void setActivityListener(std::function<void()> listener);
    /// Is called with each exchange that has ended, on the client's thread, before the caller's
    /// function; must return soon. Set it before there are clients.
    using ExchangeListener = std::function<void(const HttpClientResult &)>;
    static void setExchangeListener(ExchangeListener listener);

private:
    std::unique_ptr<HttpClientEngine> m_engine;
};
