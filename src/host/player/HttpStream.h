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
struct Curl_multi; ///< CURLM of curl/multi.h

/// The head of a response.
struct HttpStreamHead {
    int code = 0;
    QUrl url; ///< after redirects
    qint64 length = -1; ///< Content-Length of the body; -1 if unknown
    qint64 offset = 0; ///< position of the body in the resource (Content-Range)
    qint64 fileSize = -1; ///< of the resource (Content-Range); -1 if unknown
    /// icy-metaint: audio bytes between two metadata blocks; 0 without metadata.
    int icyInterval = 0;
    int icyBitRate = 0; ///< icy-br, in bit/s; 0 if unknown
    /// Retry-After, at most a day; zero if absent.
    std::chrono::milliseconds retryAfter {0};
};

/// Receives a response from an HttpStream, on the thread that called get(). Any function may return
/// false to end the exchange, unless it says otherwise.
class HttpStreamReceiver {
public:
    virtual ~HttpStreamReceiver();

    /// The response head. Called once, before the first take(); not for redirects that are
    /// followed.
    virtual bool begin(const HttpStreamHead &head) = 0;
    /// Part of the body. May block: the time does not count as silence of the server.
    virtual bool take(const char *data, std::size_t size) = 0;
    /// Whether to continue. Called at least twice a second, also while no data arrives.
    virtual bool goOn() = 0;
    /// Whether enough is buffered to leave the socket unread for half a second. False does not end
    /// the exchange.
    virtual bool hasPlenty() const { return false; }
};

/// How an exchange ended.
struct HttpStreamResult {
    enum Kind {
        Complete, ///< The response was complete by its length or chunked encoding.
        Closed, ///< The connection was closed, and nothing else marks the end of the body.
        /// A function of the receiver returned false. Before the first byte of the body, `problem`
        /// says what was being waited for.
        Refused,
        Interrupted, ///< interrupt() was called.
        Failed, ///< `problem` says why.
    };
    Kind kind = Failed;
    TrString problem;
    /// Failed: repeating the request is pointless.
    bool isFinal = false;
};

/// Receives streams over HTTP with libcurl, one at a time. Reuses connections, but resolves the
/// server's name for each new one; follows at most five redirects within http and https, never from
/// https to http; connects to no address that the AddressPolicy forbids; verifies certificates;
/// accepts the status line "ICY 200 OK" of old SHOUTcast servers.
///
/// get() blocks and belongs to one thread; interrupt() and resume() may be called from any thread.
class HttpStream {
public:
    struct Times {
        std::chrono::milliseconds connect {8000}; ///< until the first byte of the body
        std::chrono::milliseconds silence {5000}; ///< the longest pause between bytes of the body
    };
    struct Request {
        QUrl url;
        qint64 offset = 0; ///< of the first byte to request (Range)
        /// A shorter limit than Times::connect; zero for none.
        std::chrono::milliseconds patience {0};
        qint64 length = 0; ///< how many bytes to request; 0: up to the end
    };

    explicit HttpStream(const Times &times);
    ~HttpStream();
    HttpStream(const HttpStream &) = delete;
    HttpStream &operator=(const HttpStream &) = delete;

    /// Performs the request and blocks until it ends. Only http and https; other addresses fail for
    /// good. Forbidden redirects, forbidden addresses and timeouts are reported as Failed.
    HttpStreamResult get(const Request &request, HttpStreamReceiver &receiver);
    /// Ends the current exchange, and each later one at once, until resume().
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
