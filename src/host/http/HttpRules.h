// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>

/// \file
/// Which requests a server for this machine's own users accepts. Pure functions, any thread.
///
/// A page of another site in the user's browser can send requests to the loopback interface. But it
/// cannot choose the Host header, which reveals a name that was rebound to 127.0.0.1 (DNS
/// rebinding), or the Origin header, and it cannot send application/json without a preflight
/// request (CORS), which this server refuses.

/// Whether \a host, a Host header, names this machine: 127.0.0.1, localhost or [::1], with \a port
/// or without one.
bool isLoopbackHost(const QByteArray &host, quint16 port);
/// Whether \a origin, an Origin header, is that of a page that came from \a host.
bool isSameOrigin(const QByteArray &origin, const QByteArray &host);
/// Whether \a contentType is application/json, whatever its parameters.
bool isJsonContentType(const QByteArray &contentType);
