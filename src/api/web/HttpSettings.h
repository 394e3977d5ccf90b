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

/// What HttpClient's static functions set, for the whole process. Immutable: each exchange holds on
/// to the settings it started with, and to this as long as its handle is in use. Any thread.
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

/// What every exchange of the system has in common: who asks, http and https only, at most five
/// redirects, verified certificates from the folder that SSL_CERT_DIR names (/etc/ssl/certs without
/// it).
VESK_API void setUpHttpHandle(CURL *easy);

/// Reads the heads of one exchange as libcurl follows redirects: a redirect must not leave http and
/// https, nor take to plain http what was asked for over TLS; the heads have a bound.
class VESK_API HttpRedirectRule {
public:
    /// All heads of one exchange together: redirects, interim answers and trailers included.
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
