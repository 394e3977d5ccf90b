// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"

#include <QByteArray>
#include <QStringList>

#include <cstddef>
#include <curl/curl.h>
#include <memory>
#include <string_view>

/// What HttpClient's static functions set, for the whole process. Immutable: each exchange keeps
/// the settings that it started with, for as long as its handle refers to them. Any thread.
struct VESK_API HttpSettings {
    HttpSettings() = default;
    ~HttpSettings() { curl_slist_free_all(connectTo); }
    Q_DISABLE_COPY(HttpSettings)

    static std::shared_ptr<const HttpSettings> current();
    static void setConnectTo(const QStringList &entries);
    static void setCertificates(const QByteArray &pem);

    void applyTo(CURL *easy) const;

    curl_slist *connectTo = nullptr;
    /// PEM; empty when there is none.
    QByteArray certificates;
};

/// Sets the options that all exchanges of the system share: User-Agent, http and https only, at
/// most five redirects, certificates verified against what SSL_CERT_DIR and SSL_CERT_FILE
/// name, or without them the system's.
VESK_API void setUpHttpHandle(CURL *easy);

/// Checks the response heads of one exchange while libcurl follows its redirects: a redirect must
/// stay within http and https and must not lead from https to http; the heads' size is bounded.
class VESK_API HttpRedirectRule {
public:
    /// All heads of one exchange together: redirects, interim responses and trailers included.
    static constexpr std::size_t MaxHeadBytes = std::size_t(256) * 1024;
    enum Verdict { Fine, ForbiddenRedirect, TooLong };

    /// At the start of each exchange.
    void start(bool isHttps);
    /// Takes a line of a head of \a easy's exchange, in libcurl's callback for it.
    Verdict takeLine(std::string_view line, CURL *easy);
    /// The same for a head with that \a status.
    Verdict takeLine(std::string_view line, long status);

private:
    bool mayFollow(std::string_view location);

    std::size_t m_bytes = 0;
    bool m_hasLocation = false; ///< in this head
    bool m_isHttps = false;
};
