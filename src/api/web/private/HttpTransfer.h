// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/web/ConnectionGuard.h"
#include "api/web/HttpClient.h"
#include "api/web/HttpSettings.h"
#include "api/web/private/HttpCache.h"

#include <QByteArray>
#include <QElapsedTimer>

#include <cstddef>
#include <curl/curl.h>
#include <memory>
#include <string_view>

/// An exchange and its libcurl handle, which is reused for the next one. Used on the thread of the
/// engine that drives it only; its callbacks only store what they receive.
class HttpTransfer {
public:
    HttpTransfer(HttpClient::HttpVersion version, bool followRedirects);
    ~HttpTransfer();
    Q_DISABLE_COPY(HttpTransfer)

    /// Sets up the handle for an exchange with the url, isPost and sentBody below.
    void prepare(const HttpClientOptions &options);
    /// How the exchange ended; \a code is libcurl's result.
    HttpClientStatus status(CURLcode code) const;
    /// Of the last response.
    HttpCacheHeaders cacheHeaders() const;
    long info(CURLINFO what) const;
    /// Resets everything for the next exchange.
    void clear();

    CURL *const easy = curl_easy_init();
    VeskUrl url;
    QByteArray cacheKey;
    HttpClient::Function function;
    bool isPost = false;
    bool onlyReads = false; ///< does not change anything on the server
    QByteArray sentBody;
    QByteArray body;
    qint64 requestedAt = 0; ///< by HttpCache::now()
    quint64 cacheRemovals = 0; ///< HttpCache::removals() at the start
    QElapsedTimer clock;

private:
    void setUp();
    static std::size_t onHead(char *data, std::size_t, std::size_t size, void *self);
    static std::size_t onBody(char *data, std::size_t, std::size_t size, void *self);
    bool takeHeadLine(std::string_view line);
    bool takeBody(const char *data, std::size_t size);
    bool fail(HttpClientStatus why);
    void setHeaders();

    const HttpClient::HttpVersion m_version;
    const bool m_followRedirects;
    std::shared_ptr<const HttpSettings> m_settings;
    curl_slist *m_headers = nullptr;
    int m_sizeLimit = 0;
    HttpRedirectRule m_redirects;
    ConnectionGuard m_guard;
    /// Why a callback aborted the exchange; Success if none did.
    HttpClientStatus m_failure = HttpClientStatus::Success;
};
