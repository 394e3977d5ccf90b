// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/radiobrowser/RadioBrowserClient.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "modules/radiobrowser/RadioBrowserData.h"

#include <utility>

VESK_LOGGER("CB_RadioBrowser")

namespace {

constexpr unsigned long CacheBytes = 4UL * 1024 * 1024;
/// Five hundred stations take half a megabyte.
constexpr int LongestBody = 4 * 1024 * 1024;
/// Of one server: with the two after it a listener waits half a minute at the most.
constexpr int TimeoutMs = 8000;
constexpr int MostAttempts = 3;

constexpr int HttpOk = 200;
constexpr int FirstServerError = 500;

/// What another server may do better.
bool isServersFault(const HttpClientResult &result)
{
    switch (result.status()) {
    case HttpClientStatus::Success:
        return result.code() >= FirstServerError;
    case HttpClientStatus::InvalidRequest:
    case HttpClientStatus::TooLarge:
    case HttpClientStatus::Cancelled:
        return false;
    default:
        return true;
    }
}

CMError error(const char *text)
{
    return CMError(radioBrowserTr(text));
}

} // namespace

TrString radioBrowserTr(const char *text)
{
    return TrString("RadioBrowser", text);
}

struct RadioBrowserClient::Exchange {
    QString path;
    VeskUrl::QueryItems query;
    HttpClientOptions options;
    std::function<void(const HttpClientResult &)> done;
    QStringList servers {}; ///< those left to try
};

RadioBrowserClient::RadioBrowserClient(
    RadioBrowserServers::LookUp lookUp, RadioBrowserServers::Now now)
    : m_servers(std::move(lookUp), std::move(now))
    , m_http(nullptr, HttpClient::Default, true)
{
    m_http.setCacheSize(CacheBytes);
}

void RadioBrowserClient::list(const QString &path, const VeskUrl::QueryItems &query, Done done)
{
    VESK_ASSERT_OWN_THREAD();
    const auto read = [done = std::move(done)](const HttpClientResult &result) {
        if (result.status() == HttpClientStatus::TooLarge) {
            return done(error(QT_TRANSLATE_NOOP(
                            "RadioBrowser", "The answer of Radio Browser is too long.")),
                {});
        }
        if (result.status() != HttpClientStatus::Success || result.code() >= FirstServerError) {
            return done(error(QT_TRANSLATE_NOOP("RadioBrowser",
                            "No server of Radio Browser answers. Please try again later.")),
                {});
        }
        if (result.code() != HttpOk) {
            return done(
                error(QT_TRANSLATE_NOOP("RadioBrowser", "Radio Browser refused the request.")), {});
        }
        const std::optional<QVariantList> entries = radioBrowserEntries(result.data(), MaxEntries);
        if (!entries) {
            return done(error(QT_TRANSLATE_NOOP(
                            "RadioBrowser", "The answer of Radio Browser cannot be read.")),
                {});
        }
        done({}, *entries);
    };
    start({path, query, {}, read});
}

void RadioBrowserClient::countClick(const QString &stationUuid)
{
    VESK_ASSERT_OWN_THREAD();
    HttpClientOptions options;
    options.setUseCache(false);
    const auto log = [stationUuid](const HttpClientResult &result) {
        if (result.status() == HttpClientStatus::Success && result.code() == HttpOk)
            VESK_DEBUG("the click on " << stationUuid << " was counted");
        else
            VESK_WARN("the click on " << stationUuid << " was not counted: " << result.status()
                                      << ", HTTP " << result.code());
    };
    start({QStringLiteral("/json/url/") + stationUuid, {}, options, log});
}

void RadioBrowserClient::start(Exchange exchange)
{
    exchange.options.setTimeoutMs(TimeoutMs);
    exchange.options.setReadSizeLimit(LongestBody);
    const auto shared = std::make_shared<Exchange>(std::move(exchange));
    m_servers.find([this, shared](const QStringList &servers) {
        shared->servers = servers.mid(0, MostAttempts);
        tryNext(shared);
    });
}

void RadioBrowserClient::tryNext(const std::shared_ptr<Exchange> &exchange)
{
    const QString server = exchange->servers.takeFirst();
    VeskUrl url(server + exchange->path);
    url.setQueryItems(exchange->query);
    m_http.get(url, exchange->options, [this, exchange, server](const HttpClientResult &result) {
        take(exchange, server, result);
    });
}

void RadioBrowserClient::take(const std::shared_ptr<Exchange> &exchange, const QString &server,
    const HttpClientResult &result)
{
    if (isServersFault(result)) {
        VESK_WARN(server << " failed: " << result.status() << ", HTTP " << result.code());
        m_servers.noteFailed(server);
        if (!exchange->servers.isEmpty())
            return tryNext(exchange);
    }
    exchange->done(result);
}
