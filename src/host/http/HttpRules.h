// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QString>
#include <QVector>

#include <array>

/// \file
/// Which requests the server accepts, and from whom they come. Pure functions, any thread.
///
/// A page of another site in the user's browser can send requests to this machine and to the others
/// in the house. But it cannot choose the Host header, which reveals a name that was rebound to one
/// of them (DNS rebinding), or the Origin header, and it cannot send application/json without a
/// preflight request (CORS), which this server refuses.

/// Addresses that begin alike: "192.168.0.0/16", "fd00::/8", or a single one.
class AddressRange {
public:
    static Result<AddressRange, QString> parse(const QString &text);
    /// \a address is an IP address as text; anything else is in no range.
    bool contains(const QByteArray &address) const;

private:
    std::array<quint8, 16> m_address {}; ///< IPv4 as IPv6 (RFC 4291, section 2.5.5.2)
    int m_bits = 0;
};

/// The names under which clients may know the server, beyond those that it knows by itself.
struct HttpNames {
    /// "radio.example" with any port, or "radio.example:8443".
    QVector<QByteArray> hosts;
    /// "https://radio.example": pages of these may send requests, besides the server's own.
    QVector<QByteArray> origins;
    /// "/radio", when a reverse proxy serves this server below that path; else empty.
    QByteArray basePath;
    /// The proxies whose X-Forwarded-For and X-Forwarded-Proto say who their client is.
    QVector<AddressRange> proxies;
};

/// What counts as one client among those that nobody knows: an IPv4 address, or the first 64 bits
/// of an IPv6 address, below which a machine may choose as many as it likes.
QByteArray networkOf(const QByteArray &address);
/// Whether \a address, an IP address as text, is of the loopback interface.
bool isLoopbackAddress(const QByteArray &address);
/// Whether \a host, a Host header, names this machine: 127.0.0.1, localhost or [::1], with \a port
/// or without one.
bool isLoopbackHost(const QByteArray &host, quint16 port);
/// Whether \a host, a Host header, names this machine in its network: by \a address, the one that
/// the client has connected to, or by a name of \a machine ("radio", also as "radio.local"), with
/// \a port or without one.
bool isMachineHost(
    const QByteArray &host, quint16 port, const QByteArray &address, const QByteArray &machine);
/// Whether \a host, a Host header, is one of \a hosts.
bool isAllowedHost(const QByteArray &host, const QVector<QByteArray> &hosts);
/// Whether \a origin, an Origin header, is that of a page that came from \a host.
bool isSameOrigin(const QByteArray &origin, const QByteArray &host, bool isSecure);
/// Whether \a contentType is application/json, whatever its parameters.
bool isJsonContentType(const QByteArray &contentType);

/// The client of a proxy at \a peer: the last address of \a forwardedFor, an X-Forwarded-For
/// header, that is no proxy's own. \a peer itself when there is none.
QByteArray forwardedClient(
    const QByteArray &peer, const QByteArray &forwardedFor, const QVector<AddressRange> &proxies);
/// \a path without \a basePath, if it lies below it.
QByteArray withoutBasePath(const QByteArray &path, const QByteArray &basePath);
/// The token that a client shows, in the cookie "vesk-token" or as a bearer (RFC 6750); null
/// without one.
QByteArray tokenIn(const QByteArray &cookie, const QByteArray &authorization);
/// Whether \a path is for clients that are not paired: "/pair" and what lies below it.
bool isOpenPath(const QByteArray &path);

/// Whether the lines of \a head, everything before a request's body, end as they must (RFC 9112,
/// section 2.2) and begin with a name: no lone CR or LF, no NUL, no line that goes on the one
/// before. A proxy and this server could read such a head differently.
bool isStrictHead(const QByteArray &head);
