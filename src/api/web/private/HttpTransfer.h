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

/// One exchange and its libcurl handle, which is reused for the next one. Lives on the thread of
/// the engine that drives it; its callbacks only collect.
class HttpTransfer {
public:
    HttpTransfer(HttpClient::HttpVersion version, bool followRedirects);
    ~HttpTransfer();
    Q_DISABLE_COPY(HttpTransfer)

    void prepare(const HttpClientOptions &options);
    HttpClientStatus status(CURLcode code) const;
    HttpCacheHeaders cacheHeaders() const;
    long info(CURLINFO what) const;
    /// Makes it ready for the next exchange.
    void clear();

    CURL *const easy = curl_easy_init();
    VeskUrl url;
    QByteArray cacheKey;
    HttpClient::Function function;
    bool isPost = false;
    bool onlyReads = false; ///< changes nothing at the server
    QByteArray sentBody;
    QByteArray body;
    qint64 requestedAt = 0;
    quint64 cacheRemovals = 0;
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
    /// Why a callback aborted the exchange; Success while none did.
    HttpClientStatus m_failure = HttpClientStatus::Success;
};
