// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/TrString.h"

#include <QByteArray>
#include <QUrl>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <memory>

class HttpStreamExchange;
struct Curl_multi; ///< CURLM

/// What a server says before the first byte of a stream.
struct HttpStreamHead {
    int code = 0;
    QUrl url; ///< after redirects
    qint64 length = -1; ///< of the body; -1 when it is not known
    qint64 offset = 0; ///< where in the resource the body begins
    int icyInterval = 0; ///< audio bytes between two titles; 0 without titles
    int icyBitRate = 0; ///< bit/s; 0 when it is not said
    std::chrono::milliseconds retryAfter {0};
};

/// Takes what an HttpStream receives, on the thread that called get(). Each function returns false
/// to end the exchange.
class HttpStreamReceiver {
public:
    virtual ~HttpStreamReceiver();

    /// Once, before the first take(); of a redirect only the last head counts.
    virtual bool begin(const HttpStreamHead &head) = 0;
    /// May block for as long as it likes; that counts as no silence of the server.
    virtual bool take(const char *data, std::size_t size) = 0;
    /// At least twice a second, also while nothing comes.
    virtual bool goOn() = 0;
    /// Whether what was taken lasts for so long that what follows may come half a second late.
    virtual bool hasPlenty() const { return false; }
};

/// How an exchange ended.
struct HttpStreamResult {
    enum Kind {
        Complete, ///< The server said that this was all.
        Closed, ///< The connection was closed where nothing else tells the end.
        /// A receiver's function returned false; `problem` tells what it had waited for, if that
        /// was the first byte.
        Refused,
        Interrupted, ///< By interrupt().
        Failed, ///< `problem` tells why.
    };
    Kind kind = Failed;
    TrString problem;
    /// The same request will fail in the same way again.
    bool isFinal = false;
};

/// Receives streams over HTTP, one at a time, by libcurl: keeps connections for the next request,
/// asks for a server's address anew for each connection, follows at most five redirects within http
/// and https, never from https to http, connects to no address that the AddressPolicy forbids,
/// verifies certificates, understands the "ICY 200 OK" of old servers. Lives on one thread, which
/// get() blocks; interrupt() may be called from any thread.
class HttpStream {
public:
    struct Times {
        std::chrono::milliseconds connect {8000}; ///< until the first byte of the body
        std::chrono::milliseconds silence {5000}; ///< the longest without a byte
    };
    struct Request {
        QUrl url;
        qint64 offset = 0; ///< the first byte wanted
        /// In place of Times::connect where that is longer; none when it is zero.
        std::chrono::milliseconds patience {0};
    };

    explicit HttpStream(const Times &times);
    ~HttpStream();
    HttpStream(const HttpStream &) = delete;
    HttpStream &operator=(const HttpStream &) = delete;

    HttpStreamResult get(const Request &request, HttpStreamReceiver &receiver);
    /// Ends the exchange that runs and every later one at once, until resume().
    void interrupt();
    void resume() { m_interrupted = false; }

private:
    HttpStreamResult drive(HttpStreamExchange &exchange, std::chrono::milliseconds connect);
    void poll(std::chrono::milliseconds time);
    void rest(const HttpStreamExchange &exchange);

    const Times m_times;
    Curl_multi *const m_multi;
    std::atomic<bool> m_interrupted {false};
};
