// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMError.h"
#include "api/web/HttpClient.h"
#include "modules/radiobrowser/RadioBrowserServers.h"

#include <QObject>
#include <QVariantList>

#include <functional>
#include <memory>

/// Asks the directory's servers (https://docs.radio-browser.info): one after another, until one
/// answers. Nothing blocks: answers come through the event loop of its thread, on which alone it
/// is used. The SDK's HTTP client sends the User-Agent that they want, "Vesk/1.2".
class RadioBrowserClient : public QObject {
    Q_OBJECT

public:
    /// With an empty \a error what the directory listed, else with no \a entries.
    using Done = std::function<void(const CMError &error, const QVariantList &entries)>;

    /// No question is answered with more entries.
    static constexpr int MaxEntries = 1000;

    explicit RadioBrowserClient(RadioBrowserServers::LookUp lookUp,
        RadioBrowserServers::Now now = &RadioBrowserServers::Clock::now);

    RadioBrowserServers &servers() { return m_servers; }

    /// The list at \a path ("/json/countries"). Calls \a done once. When the client is destroyed
    /// before, that is an error, or nothing.
    void list(const QString &path, const VeskUrl::QueryItems &query, Done done);
    /// Tells the directory that the station is listened to, by which it ranks them. What becomes of
    /// that is only logged.
    void countClick(const QString &stationUuid);

private:
    struct Exchange;

    void start(Exchange exchange);
    void tryNext(const std::shared_ptr<Exchange> &exchange);
    void take(const std::shared_ptr<Exchange> &exchange, const QString &server,
        const HttpClientResult &result);

    RadioBrowserServers m_servers;
    /// Destroyed first: it ends the exchanges under way, which use all else.
    HttpClient m_http;
};

/// A text of this plug-in that is translated.
TrString radioBrowserTr(const char *text);
