// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/web/HttpClient.h"
#include "api/web/private/HttpBreaker.h"
#include "api/web/private/HttpCache.h"

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QHash>
#include <QObject>

#include <atomic>
#include <curl/curl.h>
#include <deque>
#include <list>
#include <memory>

class HttpTransfer;
class QSocketNotifier;

/// The exchanges of one HttpClient: libcurl's multi interface, driven by the event loop of the
/// engine's thread, and the cache. An engine and its client live on one thread and are destroyed
/// there; only the static functions may be called from any thread, the setters before the first
/// engine exists. libcurl is initialised by the first exchange, so that creating an engine is
/// cheap.
///
/// libcurl's callbacks only report sockets, timeouts and data, while drive() runs. The callers'
/// functions are called afterwards, when libcurl is no longer on the stack, so that they may start
/// further exchanges or destroy the client.
class HttpClientEngine : public QObject {
public:
    HttpClientEngine(QObject *parent, HttpClient::HttpVersion version, bool followRedirects);
    /// Call close() first.
    ~HttpClientEngine() override;

    void setCacheSize(qint64 bytes) { m_cache.setSize(bytes); }
    /// These implement the functions of HttpClient with the same names.
    void get(const VeskUrl &url, const HttpClientOptions &options, HttpClient::Function done);
    void post(const VeskUrl &url, const QByteArray &body, const HttpClientOptions &options,
        HttpClient::Function done);
    /// Ends every exchange with Cancelled, including those started later.
    void close();
    /// These implement the static functions of HttpClient with the same names.
    static void shutDownAll();
    static void abandonReading(bool abandon);
    static void setActivityListener(std::function<void()> listener);
    static void setExchangeListener(HttpClient::ExchangeListener listener);

protected:
    bool event(QEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    struct Finished {
        HttpClient::Function function;
        HttpClientResult result;
    };
    struct Watch {
        QSocketNotifier *read = nullptr;
        QSocketNotifier *write = nullptr;
    };
    using Transfers = std::list<std::unique_ptr<HttpTransfer>>;

    void requireOwnThread() const;
    bool refuse(const VeskUrl &url, HttpClient::Function &done);
    void dontSend(const VeskUrl &url, HttpClientStatus status, HttpClient::Function &done);
    void start(std::unique_ptr<HttpTransfer> transfer, const HttpClientOptions &options);
    std::unique_ptr<HttpTransfer> takeTransfer();
    void loadCurl();

    static int onSocketWanted(CURL *easy, curl_socket_t socket, int what, void *self, void *);
    static int onTimeoutWanted(CURLM *multi, long milliseconds, void *self);
    void watch(QSocketNotifier *&notifier, int socket, bool forWriting, bool wanted);
    void setDeadline(long milliseconds);

    void drive(curl_socket_t socket, int mask);
    void collect();
    void finish(HttpTransfer &transfer, CURLcode code);
    void updateCache(const HttpTransfer &transfer, HttpClientStatus status, int code);
    void finish(HttpClient::Function &&function, HttpClientResult &&result);
    void postDelivery();
    void deliver();
    void cancelAll();
    void cancelActive(bool onlyReading);

    const HttpClient::HttpVersion m_version;
    const bool m_followRedirects;
    HttpCache m_cache;
    HttpBreaker m_breaker;
    /// Set by shutDownAll() and abandonReading() on any thread.
    std::atomic<bool> m_closed {false};
    std::atomic<bool> m_abandonReading {false};

    CURLM *m_multi = nullptr;
    Transfers m_active;
    /// For reuse of their handles and buffers; at most MaxIdle.
    Transfers m_idle;
    QHash<int, Watch> m_watches;

    QElapsedTimer m_clock;
    QBasicTimer m_timer;
    /// When libcurl's timeout is due, in milliseconds on m_clock; -1 for never. The timer may fire
    /// earlier and is then restarted: libcurl cancels most timeouts long before they are due, and
    /// stopping a timer each time costs more than a few idle wake-ups.
    qint64 m_deadline = -1;
    qint64 m_timerEnd = 0;
    /// libcurl has asked to be called again at once.
    bool m_runNow = false;

    std::deque<Finished> m_finished;
    bool m_deliveryPosted = false;
};
