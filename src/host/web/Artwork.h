// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/ThreadCheck.h"
#include "api/web/HttpClient.h"
#include "host/http/HttpResource.h"
#include "host/web/ArtworkUrls.h"

#include <QHash>
#include <QVector>

/// Pictures of rows at /artwork/DIGEST, so that the page reaches nothing but its own host: fetches
/// the addresses that services named, as far as the AddressPolicy allows, and serves what is a
/// picture by its content. Main thread.
class Artwork : public HttpResource {
public:
    static constexpr int MaxBytes = 2 * 1024 * 1024;
    static constexpr int TimeoutMs = 15000;
    /// Pictures that are being fetched at a time.
    static constexpr int MaxRunning = 64;

    Artwork();
    ~Artwork() override;

    /// A service has named \a url as an icon.
    void remember(const QString &url) { m_urls.remember(url); }

    bool owns(const QByteArray &path) const override;
    void get(const HttpRequest &request, Respond respond) override;

private:
    void fetched(const QByteArray &url, const HttpClientResult &result);

    VeskThreadCheck m_thread;
    ArtworkUrls m_urls;
    /// The requests that wait for each address.
    QHash<QByteArray, QVector<Respond>> m_waiting;
    std::unique_ptr<HttpClient> m_client;
};
