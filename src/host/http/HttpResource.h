// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/http/Caller.h"

#include <QByteArray>
#include <QPair>
#include <QString>
#include <QVector>

#include <functional>

/// A request for a resource. Header values are as they were sent, empty without such a header.
struct HttpRequest {
    QByteArray path; ///< decoded, begins with "/", without the base path
    QByteArray host;
    QByteArray acceptEncoding;
    QByteArray ifNoneMatch;
    QByteArray method = "GET"; ///< one of the resource's
    QByteArray body; ///< JSON for a POST
    /// The client's IP address.
    QString peer;
    /// Whether the client has come over TLS, to this server or to a proxy before it.
    bool isSecure = false;
    /// Nobody, for a client that is not paired: only open paths see those.
    Caller caller;
};

struct HttpResponse {
    unsigned code = 200;
    /// The Content-Type; null sends no body.
    QByteArray type;
    QByteArray body;
    /// These replace the server's own headers of the same names.
    QVector<QPair<QByteArray, QByteArray>> headers;
};

/// Something that the HTTP server offers. Main thread, if nothing else is said.
class HttpResource {
public:
    using Respond = std::function<void(const HttpResponse &)>;

    HttpResource() = default;
    HttpResource(const HttpResource &) = delete;
    HttpResource &operator=(const HttpResource &) = delete;
    virtual ~HttpResource() = default;

    /// Whether \a path is one of this resource's. Any thread; does not change while a server has
    /// the resource.
    virtual bool owns(const QByteArray &path) const = 0;
    /// "GET, HEAD" or "POST". Any thread.
    virtual QByteArray methods() const { return "GET, HEAD"; }
    /// Calls \a respond once, maybe before this returns, or never when this is destroyed first.
    virtual void get(const HttpRequest &request, Respond respond) = 0;
};
