// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/ThreadCheck.h"
#include "host/http/HttpResource.h"

#include <QByteArray>

class Pairing;

/// `POST /pair`, by which a device sends the code of a pairing and gets its token; docs/rpc.md
/// describes it for clients. Open to everybody; how often somebody may ask is bounded by the
/// server, and by the codes that may be wrong. Main thread; \a pairing outlives it.
class PairingResource : public HttpResource {
public:
    /// A longer body is refused unread.
    static constexpr int MaxBody = 4096;
    /// How long a browser keeps the cookie: 400 days, the longest that browsers allow.
    static constexpr int CookieSeconds = 34560000;

    /// \a basePath: the path of the page in URLs, "/" or "/radio", for the cookie.
    explicit PairingResource(Pairing *pairing, QByteArray basePath = QByteArrayLiteral("/"));

    QByteArray methods() const override { return QByteArrayLiteral("POST"); }
    bool owns(const QByteArray &path) const override;
    void get(const HttpRequest &request, Respond respond) override;

    static QByteArray cookieName() { return QByteArrayLiteral("vesk-token"); }

private:
    const VeskThreadCheck m_thread;
    Pairing *const m_pairing;
    const QByteArray m_basePath;
};
