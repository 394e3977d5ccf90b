// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QPair>
#include <QVector>

#include <functional>

/// A request to read something. Header values are as they were sent, empty without such a header.
struct HttpRequest {
    QByteArray path; ///< decoded, begins with "/"
    QByteArray host;
    QByteArray acceptEncoding;
    QByteArray ifNoneMatch;
};

struct HttpResponse {
    unsigned code = 200;
    /// The Content-Type; null sends no body.
    QByteArray type;
    QByteArray body;
    /// These replace the server's own headers of the same names.
    QVector<QPair<QByteArray, QByteArray>> headers;
};

/// Something that the HTTP server offers by GET and HEAD. Main thread.
class HttpResource {
public:
    using Respond = std::function<void(const HttpResponse &)>;

    HttpResource() = default;
    HttpResource(const HttpResource &) = delete;
    HttpResource &operator=(const HttpResource &) = delete;
    virtual ~HttpResource() = default;

    /// Whether \a path is one of this resource's.
    virtual bool owns(const QByteArray &path) const = 0;
    /// Calls \a answered once, maybe before this returns, or never when this is destroyed first.
    virtual void get(const HttpRequest &request, Respond respond) = 0;
};
