// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>

/// \file
/// Which requests a server for this machine's own users takes. Pure functions, any thread.
///
/// A page from elsewhere in the user's browser can send requests to the loopback interface. It can
/// choose neither the Host header (which gives away a name that was rebound to 127.0.0.1) nor the
/// Origin header, and it cannot send application/json without being allowed to.

/// Whether \a host, a Host header, names this machine: 127.0.0.1, localhost or [::1], with \a port
/// or without one.
bool isLoopbackHost(const QByteArray &host, quint16 port);
/// Whether \a origin, an Origin header, is that of a page that came from \a host.
bool isSameOrigin(const QByteArray &origin, const QByteArray &host);
/// Whether \a contentType is application/json, whatever its parameters.
bool isJsonContentType(const QByteArray &contentType);
